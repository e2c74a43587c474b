#include "execution/run_state.h"

#include <gtest/gtest.h>

#include <string>

namespace vorex {
namespace {

TEST(RunStates, AStepIsPossibleWhereTheTableHasIt) {
    // A column for each step: open, start, redo, hold, release, end, close. A letter for the state after it,
    // "." where the step is not possible.
    struct Row {
        RunState from;
        const char* after;
    };
    const std::string letters = "CIRhDd";  // closed, idle, running, held, redoing, held in a redo
    const Row rows[] = {
        {RunState::kClosed, "I.....C"},  {RunState::kIdle, ".RD..IC"},    {RunState::kRunning, "...h.IC"},
        {RunState::kRunHeld, "...hRIC"}, {RunState::kRedoing, "...d.IC"}, {RunState::kRedoHeld, "...dDIC"},
    };
    for (const Row& row : rows) {
        std::string after;
        for (int step = 0; step <= static_cast<int>(RunStep::kClose); ++step) {
            const auto next = StateAfter(row.from, static_cast<RunStep>(step));
            after += next ? letters[static_cast<std::size_t>(*next)] : '.';
        }
        EXPECT_EQ(after, row.after) << letters[static_cast<std::size_t>(row.from)];
    }
}

TEST(RunStates, StatesAreGrouped) {
    const std::pair<RunState, const char*> rows[] = {{RunState::kClosed, ""},
                                                     {RunState::kIdle, ""},
                                                     {RunState::kRunning, "taking"},
                                                     {RunState::kRunHeld, "taking held"},
                                                     {RunState::kRedoing, "taking redo"},
                                                     {RunState::kRedoHeld, "taking redo held"}};
    for (const auto& [state, groups] : rows) {
        const std::string_view in = groups;
        EXPECT_EQ(IsTaking(state), in.find("taking") != in.npos) << groups;
        EXPECT_EQ(IsRedo(state), in.find("redo") != in.npos) << groups;
        EXPECT_EQ(IsHeld(state), in.find("held") != in.npos) << groups;
    }
}

}  // namespace
}  // namespace vorex

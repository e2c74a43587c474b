#include "execution/run_state.h"

#include <algorithm>
#include <iterator>

namespace vorex {

namespace {

struct Transition {
    RunState from;
    RunStep step;
    RunState to;
};

// clang-format off
constexpr Transition kTransitions[] = {
    {RunState::kClosed,   RunStep::kOpen,    RunState::kIdle},
    {RunState::kIdle,     RunStep::kStart,   RunState::kRunning},
    {RunState::kIdle,     RunStep::kRedo,    RunState::kRedoing},
    {RunState::kRunning,  RunStep::kHold,    RunState::kRunHeld},
    {RunState::kRunHeld,  RunStep::kHold,    RunState::kRunHeld},
    {RunState::kRunHeld,  RunStep::kRelease, RunState::kRunning},
    {RunState::kRedoing,  RunStep::kHold,    RunState::kRedoHeld},
    {RunState::kRedoHeld, RunStep::kHold,    RunState::kRedoHeld},
    {RunState::kRedoHeld, RunStep::kRelease, RunState::kRedoing},
    // A run that ended under an open menu is already idle when its loop continues, and ends once more.
    {RunState::kIdle,     RunStep::kEnd,     RunState::kIdle},
    {RunState::kRunning,  RunStep::kEnd,     RunState::kIdle},
    {RunState::kRunHeld,  RunStep::kEnd,     RunState::kIdle},
    {RunState::kRedoing,  RunStep::kEnd,     RunState::kIdle},
    {RunState::kRedoHeld, RunStep::kEnd,     RunState::kIdle},
    {RunState::kIdle,     RunStep::kClose,   RunState::kClosed},
    {RunState::kRunning,  RunStep::kClose,   RunState::kClosed},
    {RunState::kRunHeld,  RunStep::kClose,   RunState::kClosed},
    {RunState::kRedoing,  RunStep::kClose,   RunState::kClosed},
    {RunState::kRedoHeld, RunStep::kClose,   RunState::kClosed},
    {RunState::kClosed,   RunStep::kClose,   RunState::kClosed},
};
// clang-format on

}  // namespace

std::optional<RunState> StateAfter(RunState state, RunStep step) {
    const auto* found =
        std::find_if(std::begin(kTransitions), std::end(kTransitions),
                     [&](const Transition& row) { return row.from == state && row.step == step; });
    if (found == std::end(kTransitions)) return std::nullopt;
    return found->to;
}

}  // namespace vorex

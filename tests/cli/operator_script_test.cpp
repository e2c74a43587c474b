#include "cli/operator_script.h"

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vorex {

// Found by argument-dependent look-up when steps are printed.
static void PrintTo(const OperatorStep& step, std::ostream* out) {
    *out << static_cast<int>(step.kind) << '/' << step.number << '/' << step.text;
}

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string Refusal(const std::string& script) {
    try {
        ParseOperatorScript(script);
        return {};
    } catch (const OperatorScriptError& error) {
        return error.what();
    }
}

TEST(OperatorScript, EveryStepIsRead) {
    const std::vector<ElementSteps> elements =
        ParseOperatorScript("start,stop@0,next,previous,skip,na,abort,redo 3,stop@255");
    ASSERT_EQ(elements.size(), 1U);
    EXPECT_THAT(
        elements[0],
        ElementsAre(OperatorStep{StepKind::kStart, 0, "start"}, OperatorStep{StepKind::kStop, 0, "stop@0"},
                    OperatorStep{StepKind::kNext, 0, "next"},
                    OperatorStep{StepKind::kPrevious, 0, "previous"},
                    OperatorStep{StepKind::kSkip, 0, "skip"}, OperatorStep{StepKind::kNa, 0, "na"},
                    OperatorStep{StepKind::kAbort, 0, "abort"}, OperatorStep{StepKind::kRedo, 3, "redo 3"},
                    OperatorStep{StepKind::kStop, 255, "stop@255"}));
}

TEST(OperatorScript, SemicolonsSeparateElementsAndBlanksAreIgnored) {
    const std::vector<ElementSteps> elements = ParseOperatorScript("  start ,\tstop@2 ; ;redo  255, next;");
    ASSERT_EQ(elements.size(), 4U);
    EXPECT_THAT(elements[0], ElementsAre(OperatorStep{StepKind::kStart, 0, "start"},
                                         OperatorStep{StepKind::kStop, 2, "stop@2"}));
    EXPECT_THAT(elements[1], IsEmpty());
    EXPECT_THAT(elements[2], ElementsAre(OperatorStep{StepKind::kRedo, 255, "redo  255"},
                                         OperatorStep{StepKind::kNext, 0, "next"}));
    EXPECT_THAT(elements[3], IsEmpty());
}

TEST(OperatorScript, TheEmptyScriptHasOneElementWithTheDefaultSteps) {
    EXPECT_THAT(ParseOperatorScript(""), ElementsAre(IsEmpty()));
}

TEST(OperatorScript, AFaultNamesTheStepItsPlaceAndWhatWasExpected) {
    const std::string known = "steps are start, stop@n, next, previous, skip, na, abort, redo n";
    const std::pair<const char*, std::string> rows[] = {
        {"strat", "operator script, element 1, step 1: \"strat\" is no step; " + known},
        {"start,next;skip;start, Next", "element 3, step 2: \"Next\" is no step; " + known},
        {"start,,next", "element 1, step 2: \"\" is no step; " + known},
        {"start,", "element 1, step 2: \"\" is no step"},
        {"startnext", "\"startnext\" is no step"},
        {"redo", "\"redo\" is no step"},
        {"redo3", "\"redo3\" is no step"},
        {"redo 0", "\"redo 0\" needs a whole number from 1 to 255, as in redo n"},
        {"redo 256", "\"redo 256\" needs a whole number from 1 to 255"},
        {"redo 99999999999", "\"redo 99999999999\" needs a whole number"},
        {"redo 1 2", "\"redo 1 2\" needs a whole number"},
        {"start,stop@", "\"stop@\" needs a whole number from 0 to 255, as in stop@n"},
        {"start,stop@-1", "\"stop@-1\" needs a whole number from 0"},
        {"start,stop@2.5", "\"stop@2.5\" needs a whole number"},
        {"start,stop@256", "\"stop@256\" needs a whole number from 0 to 255"},
        {"stop@2", "element 1, step 1: \"stop@2\" stops no run; it must follow start or redo n"},
        {"start,next,stop@2", "element 1, step 3: \"stop@2\" stops no run"},
        {"start,stop@1,stop@2", "element 1, step 3: \"stop@2\" stops no run"},
        {"start;stop@2", "element 2, step 1: \"stop@2\" stops no run"},
    };
    for (const auto& [script, message] : rows) EXPECT_THAT(Refusal(script), HasSubstr(message)) << script;
}

}  // namespace
}  // namespace vorex

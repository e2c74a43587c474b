#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vorex {

enum class StepKind { kStart, kStop, kNext, kPrevious, kSkip, kNa, kAbort, kRedo };

/// One thing that the operator does while the guide is idle.
struct OperatorStep {
    StepKind kind = StepKind::kStart;
    int32_t number = 0;  ///< stop: after so many stored exposures; redo: the exposure, from 1; else 0
    std::string text;    ///< as it was written, for messages

    bool operator==(const OperatorStep&) const = default;
};

/// What the operator does at one element; empty for the default steps.
using ElementSteps = std::vector<OperatorStep>;

/// A script that cannot be followed. The message names the step, its position and what was expected.
class OperatorScriptError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Reads an operator script: elements separated by ";", steps by ","; blanks around them are ignored.
/// "stop@n" belongs to the run that the step before it starts, so it follows "start" or "redo n". Throws
/// OperatorScriptError. The empty script has one element with the default steps.
std::vector<ElementSteps> ParseOperatorScript(std::string_view script);

/// The steps at an element, counted from 0: those of the script, or "start,next", or "next" where there is
/// nothing to start, as at a survey.
ElementSteps StepsOf(const std::vector<ElementSteps>& script, std::size_t element, bool nothingToStart);

/// The script of a run that another script continues: the first one up to the steps already taken at the last
/// opened element, then the second one, whose first element continues that element.
std::vector<ElementSteps> JoinedScript(const std::vector<ElementSteps>& before, std::size_t opened,
                                       std::size_t steps, const std::vector<ElementSteps>& after);

}  // namespace vorex

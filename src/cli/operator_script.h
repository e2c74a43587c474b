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
};

/// What the operator does at one element; empty leaves the element to the default drive.
using ElementSteps = std::vector<OperatorStep>;

/// A script that cannot be followed. The message names the step, its place and what could stand there.
class OperatorScriptError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Reads an operator script: elements between ";", steps between ",", blanks around them without meaning.
/// "stop@n" belongs to the run that the step before it starts, so it follows "start" or "redo n".
/// Throws OperatorScriptError. The empty script has one element, left to the default drive.
std::vector<ElementSteps> ParseOperatorScript(std::string_view script);

/// The steps at an element, counted from 0: those of the script, or "start,next", or "next" at a survey,
/// which has nothing to start.
ElementSteps StepsOf(const std::vector<ElementSteps>& script, std::size_t element, bool survey);

/// The script of a run that goes on by another one: the first up to the steps taken at the last of the opened
/// elements, from there on the second, whose first element goes on with that one.
std::vector<ElementSteps> JoinedScript(const std::vector<ElementSteps>& before, std::size_t opened,
                                       std::size_t steps, const std::vector<ElementSteps>& after);

}  // namespace vorex

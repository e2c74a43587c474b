#include "cli/operator_script.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

#include "foundation/number_text.h"

namespace vorex {

namespace {

/// Numbers of exposures are 8-bit.
constexpr int32_t kHighestNumber = 255;
constexpr int32_t kNoNumber = -1;

struct StepRow {
    StepKind kind;
    std::string_view word;       ///< the step, or the part before its number
    std::string_view shown;      ///< for a person
    int32_t lowest = kNoNumber;  ///< smallest number; without one the step is its word
};

constexpr StepRow kSteps[] = {
    {StepKind::kStart, "start", "start"}, {StepKind::kStop, "stop@", "stop@n", 0},
    {StepKind::kNext, "next", "next"},    {StepKind::kPrevious, "previous", "previous"},
    {StepKind::kSkip, "skip", "skip"},    {StepKind::kNa, "na", "na"},
    {StepKind::kAbort, "abort", "abort"}, {StepKind::kRedo, "redo ", "redo n", 1},
};

bool StartsRun(StepKind kind) {
    return kind == StepKind::kStart || kind == StepKind::kRedo;
}

std::string ListOfSteps() {
    std::string list;
    for (const StepRow& row : kSteps) list += (list.empty() ? "" : ", ") + std::string(row.shown);
    return list;
}

/// The step that is being read, and its position.
struct Place {
    std::string_view text;
    std::size_t element;  ///< from 1
    std::size_t step;     ///< from 1

    [[noreturn]] void Fail(std::string_view why) const {
        throw OperatorScriptError("operator script, element " + std::to_string(element) + ", step " +
                                  std::to_string(step) + ": \"" + std::string(text) + "\" " +
                                  std::string(why));
    }
};

int32_t ReadStepNumber(const Place& place, const StepRow& row) {
    const std::string_view digits = Trimmed(place.text.substr(row.word.size()));
    int32_t number = kNoNumber;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool whole = error == std::errc() && end == digits.data() + digits.size();
    if (!whole || number < row.lowest || number > kHighestNumber)
        place.Fail("needs a whole number from " + std::to_string(row.lowest) + " to " +
                   std::to_string(kHighestNumber) + ", as in " + std::string(row.shown));
    return number;
}

OperatorStep ReadStep(const Place& place, const ElementSteps& before) {
    const auto* row = std::find_if(std::begin(kSteps), std::end(kSteps), [&](const StepRow& candidate) {
        return candidate.lowest == kNoNumber ? place.text == candidate.word
                                             : place.text.starts_with(candidate.word);
    });
    if (row == std::end(kSteps)) place.Fail("is no step; steps are " + ListOfSteps());
    if (row->kind == StepKind::kStop && (before.empty() || !StartsRun(before.back().kind)))
        place.Fail("stops no run; it must follow start or redo n");
    const int32_t number = row->lowest == kNoNumber ? 0 : ReadStepNumber(place, *row);
    return {row->kind, number, std::string(place.text)};
}

ElementSteps ReadElement(std::string_view text, std::size_t element) {
    ElementSteps steps;
    if (Trimmed(text).empty()) return steps;
    ForEachPart(text, ',', [&](std::string_view part) {
        steps.push_back(ReadStep({Trimmed(part), element, steps.size() + 1}, steps));
    });
    return steps;
}

}  // namespace

std::vector<ElementSteps> ParseOperatorScript(std::string_view script) {
    std::vector<ElementSteps> elements;
    ForEachPart(script, ';',
                [&](std::string_view part) { elements.push_back(ReadElement(part, elements.size() + 1)); });
    return elements;
}

ElementSteps StepsOf(const std::vector<ElementSteps>& script, std::size_t element, bool nothingToStart) {
    if (element < script.size() && !script[element].empty()) return script[element];
    const OperatorStep next{StepKind::kNext, 0, "next"};
    if (nothingToStart) return {next};
    return {{StepKind::kStart, 0, "start"}, next};
}

std::vector<ElementSteps> JoinedScript(const std::vector<ElementSteps>& before, std::size_t opened,
                                       std::size_t steps, const std::vector<ElementSteps>& after) {
    if (opened == 0) return after;
    std::vector<ElementSteps> joined;
    for (std::size_t element = 0; element < opened; ++element)
        joined.push_back(StepsOf(before, element, false));
    ElementSteps& last = joined.back();
    last.resize(std::min(steps, last.size()));
    last.insert(last.end(), after.front().begin(), after.front().end());
    joined.insert(joined.end(), after.begin() + 1, after.end());
    return joined;
}

}  // namespace vorex

#include "cli/standards_text.h"

#include <cmath>
#include <cstddef>
#include <string_view>

#include "foundation/limit_expression.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "reports/report_wrap.h"

namespace vorex {

namespace {

constexpr std::size_t kWidth = 100;

/// Words in lines of at most the width, each indented.
std::string Wrapped(std::string_view words, std::size_t indent) {
    std::string text;
    for (const ReportLine& line : TerminalWrapper().Wrap(words, kWidth - indent))
        text.append(indent, ' ').append(IndentedText(line)).append("\n");
    return text;
}

/// A number of a limit in words, according to its form; X is the set value.
std::string NumberWords(const StandardSide& side, double value, const std::string& unit) {
    std::string words = PlainText(std::abs(value)) + (unit.empty() ? "" : " " + unit);
    const std::string sign = value < 0 ? "-" : "+";
    const LimitExpressionRow& form = RowOf(LimitExpressionOf(side.expression));
    if (form.usesPreset) return "X " + sign + " " + words;
    if (value < 0) words = "-" + words;
    return form.judgesVariation ? Translate(text::kShowAsExpression, {words, std::string(form.text)}) : words;
}

std::string SideWords(const StandardSide& side, const std::string& unit, std::string_view relation) {
    std::string words = Translate(relation) + " ";
    if (side.value) return words + NumberWords(side, *side.value, unit);
    for (const VoltagePoint& point : side.byVoltage)
        words +=
            (&point == &side.byVoltage.front() ? "" : ", ") +
            Translate(text::kStandardAtVoltage, {NumberWords(side, point.value, unit), PlainText(point.kv)});
    return words;
}

std::string LimitWords(const StandardLimit& limit) {
    std::string words = limit.low.IsSet() ? SideWords(limit.low, limit.unit, text::kShowAtLeast) : "";
    if (limit.high.IsSet())
        words += (words.empty() ? "" : ", ") + SideWords(limit.high, limit.unit, text::kShowAtMost);
    return limit.readings.empty() ? words : Translate(text::kStandardReadings, {words, limit.readings});
}

std::string LimitText(const StandardLimit& limit) {
    constexpr std::size_t kLimitIndent = 4;
    constexpr std::size_t kSourceIndent = 8;
    std::string text = Wrapped(limit.key + ": " + LimitWords(limit), kLimitIndent) +
                       Wrapped(limit.authority + ", " + limit.clause, kSourceIndent);
    if (!limit.note.empty()) text += Wrapped(limit.note, kSourceIndent);
    return text;
}

}  // namespace

std::string StandardsText(const StandardsLibrary& library) {
    std::string text;
    for (const StandardFile& file : library.Standards()) {
        text += (text.empty() ? "" : "\n") + file.name + ":" + file.version + "\n";
        if (!file.about.empty()) text += Wrapped(file.about, 2);
        for (int32_t test : kMeasuringTests) {
            if (!file.HasTest(test)) continue;
            text += "  " + PlainText(test) + " " + Translate(TitleKey(test)) + "\n";
            for (const StandardLimit& limit : file.limits)
                if (limit.IsFor(test)) text += LimitText(limit);
        }
    }
    return text.empty() ? Translate(text::kNoStandards) + "\n" : text;
}

}  // namespace vorex

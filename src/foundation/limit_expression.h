#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// The expressions of limits: spelling, computation, what they judge, and the unit of their number. Judging,
/// fitting, converting and printing a limit all use this module.
namespace vorex {

/// How a side of a limit follows from its number Y and the preset X of the measurement.
enum class LimitExpression : uint8_t { kValue, kOffset, kPercent, kVariation };

/// The unit of the number Y.
enum class LimitNumberUnit : uint8_t { kOfColumn, kPercent, kNone };

struct LimitExpressionRow {
    LimitExpression expression;
    std::string_view text;  ///< as files and the limit editor spell it
    double (*limit)(double x, double y);
    bool usesPreset;       ///< the limit depends on X
    bool judgesVariation;  ///< judges the coefficient of variation of a quantity and not its readings
    LimitNumberUnit unit;
};

// clang-format off
inline constexpr std::array kLimitExpressions = {
    LimitExpressionRow{LimitExpression::kValue,     "Y",        [](double, double y) { return y; },
                       false, false, LimitNumberUnit::kOfColumn},
    LimitExpressionRow{LimitExpression::kOffset,    "X+Y",      [](double x, double y) { return x + y; },
                       true,  false, LimitNumberUnit::kOfColumn},
    LimitExpressionRow{LimitExpression::kPercent,   "X+(X*Y%)", [](double x, double y) { return x + x * y / 100; },
                       true,  false, LimitNumberUnit::kPercent},
    LimitExpressionRow{LimitExpression::kVariation, "CV",       [](double, double y) { return y; },
                       false, true,  LimitNumberUnit::kNone},
};
// clang-format on

constexpr const LimitExpressionRow& RowOf(LimitExpression expression) {
    return kLimitExpressions[static_cast<std::size_t>(expression)];
}
static_assert(
    [] {
        for (std::size_t i = 0; i < kLimitExpressions.size(); ++i)
            if (static_cast<std::size_t>(kLimitExpressions[i].expression) != i) return false;
        return kLimitExpressions.back().expression == LimitExpression::kVariation;
    }(),
    "every expression has its row, in the order of the enumeration");

/// The expression of a text such as "X+Y"; nothing for any other text.
std::optional<LimitExpression> FindLimitExpression(std::string_view text);
/// The same for a text of a limit, where no text means "Y".
LimitExpression LimitExpressionOf(std::string_view text);
/// True when a side with this expression judges a coefficient of variation.
bool JudgesVariation(std::string_view text);
/// Unit in which the number of a limit is typed, from the unit of the values it judges.
std::string LimitNumberUnitOf(LimitExpression expression, std::string_view columnUnit);
/// All expressions, for a message: "Y, X+Y, X+(X*Y%), CV".
std::string LimitExpressionList();

/// The forms of a row as the limit editor takes them: "<op>CV;Y</op>".
std::string LimitEditorForms(std::span<const LimitExpression> forms);

}  // namespace vorex

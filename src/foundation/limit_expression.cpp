#include "foundation/limit_expression.h"

#include <algorithm>

#include "foundation/text_keys.h"

namespace vorex {

std::optional<LimitExpression> FindLimitExpression(std::string_view text) {
    const auto at = std::find_if(kLimitExpressions.begin(), kLimitExpressions.end(),
                                 [&](const LimitExpressionRow& row) { return row.text == text; });
    return at == kLimitExpressions.end() ? std::nullopt : std::optional(at->expression);
}

LimitExpression LimitExpressionOf(std::string_view text) {
    return FindLimitExpression(text).value_or(LimitExpression::kValue);
}

bool JudgesVariation(std::string_view text) {
    return RowOf(LimitExpressionOf(text)).judgesVariation;
}

std::string LimitNumberUnitOf(LimitExpression expression, std::string_view columnUnit) {
    switch (RowOf(expression).unit) {
        case LimitNumberUnit::kOfColumn:
            return std::string(columnUnit);
        case LimitNumberUnit::kPercent:
            return std::string(text::kUnitPercent);
        case LimitNumberUnit::kNone:
            break;
    }
    return {};
}

std::string LimitExpressionList() {
    std::string list;
    for (const LimitExpressionRow& row : kLimitExpressions)
        list.append(list.empty() ? "" : ", ").append(row.text);
    return list;
}

std::string LimitEditorForms(std::span<const LimitExpression> forms) {
    std::string list;
    for (const LimitExpression form : forms) list.append(list.empty() ? "" : ";").append(RowOf(form).text);
    return "<op>" + list + "</op>";
}

}  // namespace vorex

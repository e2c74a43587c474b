#include "foundation/limit_expression.h"

#include <gtest/gtest.h>

namespace vorex {
namespace {

TEST(LimitExpressions, EachIsSpelledComputedAndMeasuredInItsWay) {
    struct Case {
        const char* text;
        LimitExpression expression;
        double limit;  ///< with X 80 and Y 5
        bool usesPreset, judgesVariation;
        const char* unit;  ///< of Y, for a column in KV
    };
    const Case cases[] = {
        {"Y", LimitExpression::kValue, 5, false, false, "KV"},
        {"X+Y", LimitExpression::kOffset, 85, true, false, "KV"},
        {"X+(X*Y%)", LimitExpression::kPercent, 84, true, false, "%"},
        {"CV", LimitExpression::kVariation, 5, false, true, ""},
    };
    ASSERT_EQ(std::size(cases), kLimitExpressions.size());
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const LimitExpressionRow& row = RowOf(c.expression);
        EXPECT_EQ(row.text, c.text);
        EXPECT_EQ(FindLimitExpression(c.text), c.expression);
        EXPECT_EQ(row.limit(80, 5), c.limit);
        EXPECT_EQ(row.usesPreset, c.usesPreset);
        EXPECT_EQ(JudgesVariation(c.text), c.judgesVariation);
        EXPECT_EQ(LimitNumberUnitOf(c.expression, "KV"), c.unit);
    }
    for (const char* none : {"", "y", "X*Y", "CV "}) {
        EXPECT_EQ(FindLimitExpression(none), std::nullopt) << none;
        EXPECT_EQ(LimitExpressionOf(none), LimitExpression::kValue) << none;
    }
    EXPECT_EQ(LimitExpressionList(), "Y, X+Y, X+(X*Y%), CV");
}

}  // namespace
}  // namespace vorex

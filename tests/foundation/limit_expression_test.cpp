#include "foundation/limit_expression.h"

#include <gtest/gtest.h>

namespace vorex {
namespace {

TEST(LimitExpressions, TheNumberOfALimitHasTheUnitOfItsColumnPercentOrNone) {
    const std::pair<LimitExpression, const char*> units[] = {{LimitExpression::kOffset, "KV"},
                                                             {LimitExpression::kPercent, "%"},
                                                             {LimitExpression::kVariation, ""}};
    for (const auto& [expression, unit] : units) EXPECT_EQ(LimitNumberUnitOf(expression, "KV"), unit);
}

}  // namespace
}  // namespace vorex

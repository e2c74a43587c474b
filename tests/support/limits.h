#pragma once

#include <initializer_list>
#include <memory>
#include <string_view>

#include "host/standards.h"

namespace vorex::test {

/// A limit with the numbers of its sides, empty for a side that is not set, and one expression for both.
inline std::shared_ptr<ExpectedResult> Limit(std::string_view limitKey, std::string_view high,
                                             std::string_view low = {}, std::string_view expression = {}) {
    auto limit = std::make_shared<ExpectedResult>();
    limit->Setup(limitKey, "", high, low);
    for (const int32_t side : {kHighSide, kLowSide}) limit->Expression(side, expression);
    return limit;
}

/// Version 1 of a standard.
inline std::shared_ptr<Standard> StandardOf(
    std::string_view name, std::initializer_list<std::shared_ptr<ExpectedResult>> limits = {}) {
    auto standard = std::make_shared<Standard>(name, "1");
    for (const auto& limit : limits) standard->AddExpectedResult(limit);
    return standard;
}

}  // namespace vorex::test

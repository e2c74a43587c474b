#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
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

/// A plug-in that knows the standard "Known" of test 100, and keeps what it was asked for.
class FakePlugIn : public IZRD47500PlugIn {
  public:
    explicit FakePlugIn(std::string id = "ZRD47500") : mId(std::move(id)) {}
    std::string PlugInID() const override { return mId; }
    std::shared_ptr<IStandard> LoadStandard(int32_t testId, std::string& name,
                                            std::string& version) override {
        asked += std::to_string(testId) + " " + name + " " + version + ";";
        if (testId != kRadioRepro || name != "Known") return nullptr;
        return std::make_shared<Standard>(name, version);
    }
    std::string asked;

  private:
    std::string mId;
};

}  // namespace vorex::test

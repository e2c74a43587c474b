#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "foundation/host_contract.h"

namespace vorex::test {

/// A limit with plain numbers on its sides.
class FakeLimit : public IExpectedResult {
  public:
    FakeLimit(std::string key, std::optional<float> low, std::optional<float> high)
        : mKey(std::move(key)), mLow(low), mHigh(high) {}
    std::string Key() const override { return mKey; }
    void Key(std::string_view limitKey) override { mKey = limitKey; }
    float Value(int32_t side) const override { return Side(side).value_or(0.0F); }
    bool IsSet(int32_t side) const override { return Side(side).has_value(); }
    void Setup(std::string_view, std::string_view, std::string_view, std::string_view) override {}
    void Expression(int32_t, std::string_view) override {}
    std::string Expression(int32_t) const override { return "Y"; }
    std::string Unit() const override { return {}; }
    void Unit(std::string_view) override {}

  private:
    const std::optional<float>& Side(int32_t side) const { return side == kHighSide ? mHigh : mLow; }
    std::string mKey;
    std::optional<float> mLow, mHigh;
};

/// A standard that fails no value; tests look only at its limits.
class NamedStandard : public IStandard {
  public:
    explicit NamedStandard(StandardName name, ExpectedResults limits = {})
        : mName(std::move(name)), mLimits(std::move(limits)) {}
    std::string Name() const override { return mName.name; }
    std::string Version() const override { return mName.version; }
    const ExpectedResults& Results() const override { return mLimits; }
    void AddExpectedResult(std::shared_ptr<IExpectedResult> limit) override {
        mLimits.push_back(std::move(limit));
    }
    void RemoveExpectedResults(std::string_view) override {}
    int32_t Evaluate(std::string_view, float, const TaggedValue&, JudgedAs) const override { return 0; }

  private:
    StandardName mName;
    ExpectedResults mLimits;
};

class StandardList : public IStandardCollection {
  public:
    int32_t Count() const override { return static_cast<int32_t>(mItems.size()); }
    std::shared_ptr<IStandard> Item(int32_t index) const override {
        return index >= 0 && index < Count() ? mItems[static_cast<std::size_t>(index)] : nullptr;
    }
    std::shared_ptr<IStandard> FindExpectedResult(int32_t, std::string_view name,
                                                  std::string_view version) const override {
        for (const auto& item : mItems)
            if (item->Name() == name && item->Version() == version) return item;
        return nullptr;
    }
    void Add(std::shared_ptr<IStandard> standard) override { mItems.push_back(std::move(standard)); }
    void Remove(std::string_view, std::string_view) override {}
    void Load(const std::shared_ptr<IXmlElement>&) override {}
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>&) override { return nullptr; }
    void Clear() override { mItems.clear(); }
    std::shared_ptr<IStandardCollection> Clone() const override { return nullptr; }
    void Owner(const std::shared_ptr<ITestElement>&) override {}

  private:
    std::vector<std::shared_ptr<IStandard>> mItems;
};

class FakeSelection : public ISelectedStandards {
  public:
    std::span<const StandardName> Standards() const override { return names; }
    std::vector<StandardName> names;
};

}  // namespace vorex::test

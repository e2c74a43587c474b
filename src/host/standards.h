#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/host_contract.h"
#include "foundation/limit_expression.h"

namespace vorex {

/// A limit of the reference host.
class ExpectedResult final : public IExpectedResult, public IExpectedResult2 {
  public:
    std::string Key() const override { return mKey; }
    void Key(std::string_view limitKey) override { mKey = limitKey; }
    float Value(int32_t side) const override;
    bool IsSet(int32_t side) const override;
    /// An empty number leaves its side unset; std::invalid_argument for a text that is no number.
    void Setup(std::string_view limitKey, std::string_view unit, std::string_view high,
               std::string_view low) override;
    /// std::invalid_argument for a text that is no expression.
    void Expression(int32_t side, std::string_view text) override;
    /// "Y" when none was given.
    std::string Expression(int32_t side) const override;
    std::string Unit() const override { return mUnit; }
    void Unit(std::string_view unit) override { mUnit = unit; }

    float CalculateValue(float preset, int32_t side) const override;

    bool HasKey(std::string_view limitKey) const { return mKey == limitKey; }
    /// 2 when a side that judges this kind of value fails it, else 0.
    int32_t Judge(float value, float preset, JudgedAs judgedAs) const;
    void Load(const IXmlElement& element);
    std::shared_ptr<IXmlElement> Save(IXmlDocument& owner) const;

  private:
    struct Side {
        std::string number;      ///< as typed or read; empty is not set
        std::string expression;  ///< as given; empty is "Y"
        double y = 0;
        LimitExpression form = LimitExpression::kValue;
    };

    const Side& At(int32_t side) const { return mSides[side == kHighSide ? 0 : 1]; }
    Side& At(int32_t side) { return mSides[side == kHighSide ? 0 : 1]; }
    void SetNumber(int32_t side, std::string_view number);

    std::string mKey;
    std::string mUnit;
    std::array<Side, 2> mSides;
};

class Standard final : public IStandard {
  public:
    Standard(std::string_view name, std::string_view version) : mName(name), mVersion(version) {}

    std::string Name() const override { return mName; }
    std::string Version() const override { return mVersion; }
    bool IsCalled(std::string_view name, std::string_view version) const {
        return mName == name && mVersion == version;
    }
    const ExpectedResults& Results() const override { return mResults; }
    void AddExpectedResult(std::shared_ptr<IExpectedResult> limit) override;
    void RemoveExpectedResults(std::string_view limitKey) override;
    int32_t Evaluate(std::string_view limitKey, float value, const TaggedValue& preset,
                     JudgedAs judgedAs) const override;

    std::shared_ptr<Standard> Clone() const;
    void Load(const IXmlElement& element);
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) const;

  private:
    std::string mName;
    std::string mVersion;
    ExpectedResults mResults;
};

class StandardCollection final : public IStandardCollection {
  public:
    int32_t Count() const override { return static_cast<int32_t>(mStandards.size()); }
    std::shared_ptr<IStandard> Item(int32_t index) const override;
    std::shared_ptr<IStandard> FindExpectedResult(int32_t flags, std::string_view name,
                                                  std::string_view version) const override;
    void Add(std::shared_ptr<IStandard> standard) override;
    void Remove(std::string_view name, std::string_view version) override;
    /// Replaces the standards by those of an "ExpectedResult".
    void Load(const std::shared_ptr<IXmlElement>& element) override;
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) override;
    void Clear() override { mStandards.clear(); }
    std::shared_ptr<IStandardCollection> Clone() const override;
    /// Does nothing: these standards judge the same way in every element.
    void Owner(const std::shared_ptr<ITestElement>& /*element*/) override {}

  private:
    std::vector<std::shared_ptr<Standard>> mStandards;
};

}  // namespace vorex

#pragma once

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/host_contract.h"
#include "foundation/number_text.h"
#include "foundation/vocabulary.h"

/// A limit of plain numbers: each side is Y itself, "CV" when it judges the coefficient of variation.
class OwnLimit final : public vorex::IExpectedResult {
  public:
    std::string Key() const override { return mKey; }
    void Key(std::string_view limitKey) override { mKey = limitKey; }
    float Value(int32_t side) const override {
        return static_cast<float>(vorex::ReadNumber(At(side).number));
    }
    bool IsSet(int32_t side) const override { return !At(side).number.empty(); }
    void Setup(std::string_view limitKey, std::string_view unit, std::string_view high,
               std::string_view low) override {
        mKey = limitKey;
        mUnit = unit;
        mSides[vorex::kHighSide].number = high;
        mSides[vorex::kLowSide].number = low;
    }
    void Expression(int32_t side, std::string_view text) override {
        mSides[static_cast<std::size_t>(side)].expression = text;
    }
    std::string Expression(int32_t side) const override { return At(side).expression; }
    std::string Unit() const override { return mUnit; }
    void Unit(std::string_view unit) override { mUnit = unit; }

    bool Fails(float value, vorex::JudgedAs judgedAs) const {
        const auto judges = [&](int32_t side) {
            const bool variation = At(side).expression == "CV";
            return IsSet(side) && variation == (judgedAs == vorex::JudgedAs::kVariation);
        };
        return (judges(vorex::kHighSide) && value > Value(vorex::kHighSide)) ||
               (judges(vorex::kLowSide) && value < Value(vorex::kLowSide));
    }

  private:
    struct Side {
        std::string number;
        std::string expression = "Y";
    };
    const Side& At(int32_t side) const { return mSides[static_cast<std::size_t>(side)]; }

    std::string mKey;
    std::string mUnit;
    std::array<Side, 2> mSides;
};

class OwnStandard final : public vorex::IStandard {
  public:
    OwnStandard(std::string_view name, std::string_view version) : mName(name), mVersion(version) {}
    std::string Name() const override { return mName; }
    std::string Version() const override { return mVersion; }
    const vorex::ExpectedResults& Results() const override { return mLimits; }
    void AddExpectedResult(std::shared_ptr<vorex::IExpectedResult> limit) override {
        mLimits.push_back(std::move(limit));
    }
    void RemoveExpectedResults(std::string_view limitKey) override {
        std::erase_if(mLimits, [&](const auto& limit) { return limit->Key() == limitKey; });
    }
    int32_t Evaluate(std::string_view limitKey, float value, const vorex::TaggedValue& /*preset*/,
                     vorex::JudgedAs judgedAs) const override {
        const bool fails = std::any_of(mLimits.begin(), mLimits.end(), [&](const auto& limit) {
            return limit->Key() == limitKey && static_cast<const OwnLimit&>(*limit).Fails(value, judgedAs);
        });
        return fails ? vorex::kFailed : vorex::kNotTested;
    }

  private:
    std::string mName;
    std::string mVersion;
    vorex::ExpectedResults mLimits;
};

/// The standards of an element. This host keeps its standards in the program, so none are in its files.
class OwnStandards final : public vorex::IStandardCollection {
  public:
    int32_t Count() const override { return static_cast<int32_t>(mStandards.size()); }
    std::shared_ptr<vorex::IStandard> Item(int32_t index) const override {
        return index >= 0 && index < Count() ? mStandards[static_cast<std::size_t>(index)] : nullptr;
    }
    std::shared_ptr<vorex::IStandard> FindExpectedResult(int32_t /*flags*/, std::string_view name,
                                                         std::string_view version) const override {
        for (const auto& standard : mStandards)
            if (standard->Name() == name && standard->Version() == version) return standard;
        return nullptr;
    }
    void Add(std::shared_ptr<vorex::IStandard> standard) override {
        mStandards.push_back(std::move(standard));
    }
    void Remove(std::string_view name, std::string_view version) override {
        std::erase(mStandards, FindExpectedResult(0, name, version));
    }
    void Load(const std::shared_ptr<vorex::IXmlElement>& /*node*/) override {}
    std::shared_ptr<vorex::IXmlElement> Save(const std::shared_ptr<vorex::IXmlDocument>& owner) override {
        return owner->CreateElement(vorex::tag::kExpectedResult);
    }
    void Clear() override { mStandards.clear(); }
    /// The standards of this host never change, so copies of an element share them.
    std::shared_ptr<vorex::IStandardCollection> Clone() const override {
        return std::make_shared<OwnStandards>(*this);
    }
    void Owner(const std::shared_ptr<vorex::ITestElement>& /*element*/) override {}

  private:
    std::vector<std::shared_ptr<vorex::IStandard>> mStandards;
};

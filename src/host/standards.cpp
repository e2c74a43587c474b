#include "host/standards.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "foundation/number_text.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

// clang-format off
struct SideRow {
    int32_t side;
    std::string_view name;
};

constexpr SideRow kSides[] = {
    {kHighSide, tag::kHigh},
    {kLowSide,  tag::kLow},
};
// clang-format on

std::shared_ptr<Standard> OwnStandard(const std::shared_ptr<IStandard>& standard) {
    auto own = std::dynamic_pointer_cast<Standard>(standard);
    if (!own) throw std::invalid_argument("the standard is not one of this host");
    return own;
}

}  // namespace

// --------------------------------------------------------------------------------------------- limit

float ExpectedResult::Value(int32_t side) const {
    return ToSingle(At(side).y);
}

bool ExpectedResult::IsSet(int32_t side) const {
    return !At(side).number.empty();
}

void ExpectedResult::SetNumber(int32_t side, std::string_view number) {
    number = Trimmed(number);
    if (!number.empty() && !IsNumber(number))
        throw std::invalid_argument("limit \"" + mKey + "\": \"" + std::string(number) + "\" is no number");
    At(side).number = number;
    At(side).y = ReadNumber(number);
}

void ExpectedResult::Setup(std::string_view limitKey, std::string_view unit, std::string_view high,
                           std::string_view low) {
    mKey = limitKey;
    mUnit = unit;
    SetNumber(kHighSide, high);
    SetNumber(kLowSide, low);
}

void ExpectedResult::Expression(int32_t side, std::string_view text) {
    if (!text.empty() && !FindLimitExpression(text))
        throw std::invalid_argument("limit \"" + mKey + "\": \"" + std::string(text) + "\" is no expression");
    At(side).expression = text;
    At(side).form = LimitExpressionOf(text);
}

std::string ExpectedResult::Expression(int32_t side) const {
    return std::string(RowOf(At(side).form).text);
}

float ExpectedResult::CalculateValue(float preset, int32_t side) const {
    const LimitExpressionRow& row = RowOf(At(side).form);
    // Reading a single through its text is slow, so it is done only if the limit depends on X.
    return ToSingle(row.limit(row.usesPreset ? NumberOf(preset) : 0, At(side).y));
}

int32_t ExpectedResult::Judge(float value, float preset, JudgedAs judgedAs) const {
    for (const auto& [side, name] : kSides) {
        if (!IsSet(side)) continue;
        const bool judges = RowOf(At(side).form).judgesVariation ? judgedAs == JudgedAs::kVariation
                                                                 : judgedAs == JudgedAs::kValue;
        if (!judges) continue;
        const float limit = CalculateValue(preset, side);
        if (side == kHighSide ? limit < value : limit > value) return kFailed;
    }
    return kNotTested;
}

void ExpectedResult::Load(const IXmlElement& element) {
    Setup(element.GetAttribute(tag::kKey), element.GetAttribute(tag::kUnit), {}, {});
    ForEachChild(element, [this](const IXmlElement& child) {
        for (const auto& [side, name] : kSides) {
            if (child.Name() != name) continue;
            SetNumber(side, child.GetAttribute(tag::kValue));
            Expression(side, child.GetAttribute(tag::kExpression));
        }
    });
}

std::shared_ptr<IXmlElement> ExpectedResult::Save(IXmlDocument& owner) const {
    auto element = owner.CreateElement(tag::kLimit);
    element->SetAttribute(tag::kKey, mKey);
    element->SetAttribute(tag::kUnit, mUnit);
    for (const auto& [side, name] : kSides) {
        const Side& saved = At(side);
        if (saved.number.empty() && saved.expression.empty()) continue;
        const auto child = owner.CreateElement(name);
        if (!saved.number.empty()) child->SetAttribute(tag::kValue, saved.number);
        if (!saved.expression.empty()) child->SetAttribute(tag::kExpression, saved.expression);
        element->AddChild(child);
    }
    return element;
}

// ------------------------------------------------------------------------------------------ standard

void Standard::AddExpectedResult(std::shared_ptr<IExpectedResult> limit) {
    if (!std::dynamic_pointer_cast<ExpectedResult>(limit))
        throw std::invalid_argument("the limit is not one of this host");
    mResults.push_back(std::move(limit));
}

void Standard::RemoveExpectedResults(std::string_view limitKey) {
    std::erase_if(mResults, [&](const auto& limit) { return limit->Key() == limitKey; });
}

int32_t Standard::Evaluate(std::string_view limitKey, float value, const TaggedValue& preset,
                           JudgedAs judgedAs) const {
    const bool failed = std::any_of(mResults.begin(), mResults.end(), [&](const auto& limit) {
        const auto& own = static_cast<const ExpectedResult&>(*limit);
        return own.HasKey(limitKey) && own.Judge(value, ToSingle(NumberOf(preset)), judgedAs) == kFailed;
    });
    return failed ? kFailed : kNotTested;
}

std::shared_ptr<Standard> Standard::Clone() const {
    auto clone = std::make_shared<Standard>(mName, mVersion);
    for (const auto& limit : mResults)
        clone->mResults.push_back(
            std::make_shared<ExpectedResult>(static_cast<const ExpectedResult&>(*limit)));
    return clone;
}

void Standard::Load(const IXmlElement& element) {
    for (const auto& child : element.FindChild(tag::kLimit)) {
        auto limit = std::make_shared<ExpectedResult>();
        limit->Load(*child);
        mResults.push_back(std::move(limit));
    }
}

std::shared_ptr<IXmlElement> Standard::Save(const std::shared_ptr<IXmlDocument>& owner) const {
    auto element = owner->CreateElement(tag::kStandard);
    element->SetAttribute(tag::kName, mName);
    element->SetAttribute(tag::kVersion, mVersion);
    for (const auto& limit : mResults)
        element->AddChild(static_cast<const ExpectedResult&>(*limit).Save(*owner));
    return element;
}

// ---------------------------------------------------------------------------------------- collection

std::shared_ptr<IStandard> StandardCollection::Item(int32_t index) const {
    if (index < 0 || index >= Count()) return nullptr;
    return mStandards[static_cast<std::size_t>(index)];
}

std::shared_ptr<IStandard> StandardCollection::FindExpectedResult(int32_t /*flags*/, std::string_view name,
                                                                  std::string_view version) const {
    for (const auto& standard : mStandards)
        if (standard->IsCalled(name, version)) return standard;
    return nullptr;
}

void StandardCollection::Add(std::shared_ptr<IStandard> standard) {
    mStandards.push_back(OwnStandard(standard));
}

void StandardCollection::Remove(std::string_view name, std::string_view version) {
    std::erase_if(mStandards, [&](const auto& standard) {
        return standard->Name() == name && standard->Version() == version;
    });
}

void StandardCollection::Load(const std::shared_ptr<IXmlElement>& element) {
    std::vector<std::shared_ptr<Standard>> standards;
    for (const auto& child : element->FindChild(tag::kStandard)) {
        auto standard =
            std::make_shared<Standard>(child->GetAttribute(tag::kName), child->GetAttribute(tag::kVersion));
        standard->Load(*child);
        standards.push_back(std::move(standard));
    }
    mStandards = std::move(standards);
}

std::shared_ptr<IXmlElement> StandardCollection::Save(const std::shared_ptr<IXmlDocument>& owner) {
    auto element = owner->CreateElement(tag::kExpectedResult);
    for (const auto& standard : mStandards) element->AddChild(standard->Save(owner));
    return element;
}

std::shared_ptr<IStandardCollection> StandardCollection::Clone() const {
    auto clone = std::make_shared<StandardCollection>();
    for (const auto& standard : mStandards) clone->mStandards.push_back(standard->Clone());
    return clone;
}

}  // namespace vorex

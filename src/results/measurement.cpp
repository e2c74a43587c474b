#include "results/measurement.h"

#include <algorithm>

#include "foundation/host_error.h"
#include "foundation/host_services.h"
#include "foundation/limit_expression.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

constexpr std::string_view kClassName = "CMeasurement";

// clang-format off
/// Statistics in files of older versions that no longer have a column.
constexpr std::string_view kFormerStatistics[] = {key::kCriterionHvl, key::kCalculatedHvl};
/// Texts that are stored as their keys, so that files are language-neutral. The first one found in a value
/// wins.
constexpr std::string_view kNeutralTexts[] = {
    text::kPass, text::kFail, text::kNotApplicable, text::kOverRange, text::kUnderRange, text::kTrue, text::kFalse,
};
// clang-format on

/// Values that are stored as text when empty, and are numbers again when loaded.
bool IsStatistic(const CMeasurement& measurement) {
    return measurement.Facts().Is(kLoadsAsNumber | kCvOfReadings) ||
           std::find(std::begin(kFormerStatistics), std::end(kFormerStatistics), measurement.RawKey()) !=
               std::end(kFormerStatistics);
}

bool IsVerdict(std::string_view shown) {
    return EqualsIgnoringCase(shown, Translate(text::kPass)) ||
           EqualsIgnoringCase(shown, Translate(text::kFail)) ||
           EqualsIgnoringCase(shown, Translate(text::kNotApplicable));
}

}  // namespace

CMeasurement::CMeasurement() {
    static const auto kNone = std::make_shared<MeasurementLabels>();
    mLabels = kNone;
}

void CMeasurement::SetLabel(std::string MeasurementLabels::*label, std::string_view text) {
    if ((*mLabels).*label == text) return;
    if (mLabels.use_count() > 1) mLabels = std::make_shared<MeasurementLabels>(*mLabels);
    (*mLabels).*label = text;
}

void CMeasurement::Initialize(std::string_view key, std::string_view description, std::string_view unit,
                              int32_t valueType) {
    Key(key);
    SetLabel(&MeasurementLabels::description, description);
    SetLabel(&MeasurementLabels::unit, unit);
    mValueType = valueType;
}

void CMeasurement::Key(std::string_view key) {
    if (mLabels->key == key) return;
    SetLabel(&MeasurementLabels::key, key);
    mLabels->limitKey = LimitKeyOf(key);
    mLabels->facts = FactsOf(key);
}

std::string CMeasurement::Description() const {
    return Translate(mLabels->description);
}

void CMeasurement::ReadValue() const {
    const auto* reading = std::get_if<std::string>(&mValue);
    const bool number = reading == nullptr || IsValidReading(*reading);
    if (number) mReading = NumberOf(mValue);
    mReadingState = number ? ReadingState::kNumber : ReadingState::kMark;
}

void CMeasurement::UpdateStatus(const ILimitData* limits, const ISelectedStandards* selected) {
    mStatus = kPassed;
    if (limits == nullptr || selected == nullptr) return;
    if (!limits->FindFailedStandards(this, selected).empty()) mStatus = kFailed;
}

bool CMeasurement::IsJudgedBy(const IExpectedResult& limit, int32_t side) const {
    return limit.IsSet(side) && limit.Key() == mLabels->limitKey &&
           JudgesVariation(limit.Expression(side)) == Facts().Is(kCvOfReadings);
}

float CMeasurement::CalculateLimitValue(const IExpectedResult& limit, int32_t side) const {
    if (const auto* calculated = dynamic_cast<const IExpectedResult2*>(&limit))
        return calculated->CalculateValue(static_cast<float>(NumberOf(mPresetValue)), side);
    return limit.Value(side);
}

int32_t CMeasurement::CheckLimit(const IExpectedResult& limit) const {
    const auto number = static_cast<float>(NumberOf(mValue));
    if (IsJudgedBy(limit, kHighSide) && CalculateLimitValue(limit, kHighSide) < number) return kFailed;
    if (IsJudgedBy(limit, kLowSide) && CalculateLimitValue(limit, kLowSide) > number) return kFailed;
    return kNotTested;
}

int32_t CMeasurement::ValidateLimits(const IStandard& standard) const {
    const auto& limits = standard.Results();
    const bool failed = std::any_of(limits.begin(), limits.end(),
                                    [&](const auto& limit) { return CheckLimit(*limit) == kFailed; });
    return failed ? kFailed : kNotTested;
}

CMeasurement::FoundLimit CMeasurement::GetLimit(int32_t side, const IStandard& standard, bool calculate,
                                                int32_t ordinal) const {
    FoundLimit found;
    const auto read = [&](const IExpectedResult& limit) {
        return calculate ? CalculateLimitValue(limit, side) : limit.Value(side);
    };
    const ExpectedResults& limits = standard.Results();
    if (ordinal != 0) {
        const auto index = static_cast<std::size_t>(ordinal - 1);
        if (ordinal < 0 || index >= limits.size()) return found;
        const IExpectedResult& limit = *limits[index];
        const bool counts = limit.Key() == mLabels->key || IsMaxExposureRate(mLabels->key) ||
                            mLabels->key == key::kCalculatedHvl;
        if (counts && limit.IsSet(side)) found = {true, read(limit), mLabels->unit};
        return found;
    }
    for (const auto& limit : limits) {
        if (!IsJudgedBy(*limit, side)) continue;
        const float number = read(*limit);
        // High: the smallest of several. Low: the last one that differs, even if it is smaller.
        const bool takes =
            !found.found || (side == kHighSide ? number < found.number : number != found.number);
        if (takes) found.number = number;
        found.found = true;
        const bool percent = !calculate && RowOf(LimitExpressionOf(limit->Expression(kHighSide))).unit ==
                                               LimitNumberUnit::kPercent;
        found.unit = percent ? std::string(text::kUnitPercent) : mLabels->unit;
        if (IsMaxExposureRate(mLabels->key)) break;
    }
    return found;
}

TaggedValue CMeasurement::GetLimitValue(const IStandard& standard, int32_t side, int32_t flags) const {
    const FoundLimit limit = GetLimit(side, standard, (flags & kCalculatedValue) != 0, 0);
    if (!limit.found) return {};
    if ((flags & kAsText) == 0) return limit.number;
    std::string shown = Trimmed(mLabels->format).empty()
                            ? PlainText(limit.number)
                            : FormatPicture(NumberOf(limit.number), mLabels->format);
    if ((flags & kWithUnit) != 0) shown += " " + limit.unit;
    return shown;
}

TaggedValue CMeasurement::GetResultValue(int32_t flags) const {
    if ((flags & kAsText) == 0) return mValue;
    std::string shown = ShownText();
    if ((flags & kWithUnit) != 0 && !mLabels->unit.empty()) shown += " " + mLabels->unit;
    return shown;
}

bool CMeasurement::SupportsLimit(int32_t /*side*/) const {
    return mValueType == kJudgedNumber || mValueType == kOtherJudgedNumber;
}

std::string CMeasurement::FormatValue(const TaggedValue& shown) const {
    const std::string plain = TextOf(shown);
    if (plain.empty()) return {};
    if (mValueType == kTruthValue && mLabels->key.starts_with("::")) return {};
    const std::string_view picture = Trimmed(mLabels->format);
    if (Facts().Is(kTypedText) || IsWritten(plain, picture) || !IsValidReading(plain)) return plain;
    if (!picture.empty()) return FormatPicture(ReadNumber(plain), picture);
    if (plain.find('*') != std::string::npos) return PlainText(ReadNumber(plain)) + "*";
    if (IsVerdict(plain)) return plain;
    return PlainText(ReadNumber(plain));
}

std::string CMeasurement::GetDisplayText() const {
    const auto& formatter = Services().formatter;
    if (mValueType == kTruthValue)
        return std::string(EqualsIgnoringCase(ValueText(), kStoredTrue) || NumberOf(mValue) != 0
                               ? kStoredTrue
                               : kStoredFalse);
    if (!SupportsLimit(kHighSide) || !formatter) return ValueText();
    // A loaded number reads as before it was saved: in the picture of its column.
    return std::holds_alternative<double>(mValue) ? FormatValue(mValue) : formatter->ToText(mValue);
}

int32_t CMeasurement::StoredType() const {
    const std::string plain = ValueText();
    if (IsMaxExposureRate(mLabels->key) && (!IsValidReading(plain) || plain.find('*') != std::string::npos))
        return kTextOnly;
    if (plain.empty() && IsStatistic(*this)) return kTextOnly;
    return mValueType;
}

TaggedValue CMeasurement::StoredValue(int32_t type) const {
    if (type == kJudgedNumber) return NumberOf(mValue);
    const auto* plain = std::get_if<std::string>(&mValue);
    if (plain == nullptr || plain->empty() || IsNumber(*plain)) return mValue;
    for (std::string_view textKey : kNeutralTexts) {
        const std::string word = Translate(textKey);
        if (!word.empty() && plain->find(word) != std::string::npos) return std::string(textKey);
    }
    return mValue;
}

std::shared_ptr<IXmlElement> CMeasurement::Save(const std::shared_ptr<IXmlDocument>& owner) {
    if (mLabels->key.empty()) return nullptr;
    const auto element = owner->CreateElement(tag::kMeasurement);
    if (!element) RaiseHostError(kErrorMeasurementSave, kClassName, 4);
    element->SetAttribute(tag::kKey, mLabels->key);
    if (!mLabels->description.empty()) element->AddValue(tag::kDescription, mLabels->description);
    const auto& codec = Services().codec;
    const int32_t type = StoredType();
    if (const auto value = codec->WriteValue(owner, StoredValue(type), type)) element->AddChild(value);
    if (!mLabels->unit.empty()) element->AddValue(tag::kUnit, mLabels->unit);
    if (const std::string preset = TextOf(mPresetValue); !preset.empty())
        element->AddValue(tag::kPresetValue, preset);
    if (const auto status = codec->WriteStatus(owner, mStatus, mStatusExtra)) element->AddChild(status);
    return element;
}

void CMeasurement::Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) {
    const std::string_view key = element->GetAttribute(tag::kKey);
    if (log != nullptr) log->Position(tag::kMeasurement, key);
    if (element->Name() != tag::kMeasurement)
        RaiseHostError(kErrorMeasurementKey, kClassName, 4,
                       {"found \"" + std::string(element->Name()) + "\""});
    if (key.empty()) {
        constexpr std::string_view kMessage = "Can not load a measurement because its key is missing";
        if (log != nullptr) log->LogMessage(kErrorMeasurementKey, 2, kMessage);
        RaiseHostError(kErrorMeasurementKey, kClassName, 2);
    }
    Key(key);
    std::string_view description;
    std::string_view unit;
    ForEachChild(*element, [&](const IXmlElement& child) {
        const std::string_view name = child.Name();
        if (name == tag::kDescription) {
            description = child.Text();
        } else if (name == tag::kValue) {
            mReadingState = ReadingState::kUnknown;
            Services().codec->ReadValue(child, mValue, mValueType);
            mStoredAsNumber = mValueType == kJudgedNumber;
            if (IsStatistic(*this)) mValueType = kJudgedNumber;
            auto* plain = std::get_if<std::string>(&mValue);
            if (plain != nullptr && plain->find("::") != std::string::npos) *plain = Translate(*plain);
        } else if (name == tag::kUnit) {
            unit = child.Text();
        } else if (name == tag::kStatus) {
            Services().codec->ReadStatus(child, mStatus, mStatusExtra);
        } else if (name == tag::kPresetValue) {
            mPresetValue = std::string(child.Text());
        }
    });
    Description(description);
    SetLabel(&MeasurementLabels::unit, unit);
    if (log != nullptr) log->Advance(1);
}

void AddCells(MeasurementRow& row, std::size_t count) {
    row.reserve(row.size() + count);
    const auto cells = std::make_shared<CMeasurement[]>(count);
    for (std::size_t i = 0; i < count; ++i) row.emplace_back(cells, &cells[i]);
}

CMeasurement* FindMeasurement(const MeasurementRow& row, std::string_view key, std::size_t hint) {
    return hint < row.size() && row[hint]->RawKey() == key ? row[hint].get() : FindMeasurement(row, key);
}

CMeasurement* FindMeasurement(const MeasurementRow& row, std::string_view key) {
    const auto at =
        std::find_if(row.begin(), row.end(), [&](const auto& item) { return item->RawKey() == key; });
    return at == row.end() ? nullptr : at->get();
}

}  // namespace vorex

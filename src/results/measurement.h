#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/host_contract.h"

namespace vorex {

/// How a value is to be taken.
inline constexpr int32_t kPlainValue = 0;
inline constexpr int32_t kJudgedNumber = 1;
inline constexpr int32_t kOtherJudgedNumber = 2;
inline constexpr int32_t kTruthValue = 3;
inline constexpr int32_t kTextOnly = 5;

/// Number pictures of measurements.
inline constexpr std::string_view kFourDecimals = "0.0###";
inline constexpr std::string_view kTwoDecimals = "0.0#";

/// One named value of a result: a cell of an exposure, or a statistic of the test.
class CMeasurement : public IMeasurement, public IMeasurement2 {
  public:
    void Initialize(std::string_view key, std::string_view description, std::string_view unit,
                    int32_t valueType);

    // IMeasurement. The description is translated; the limit key is the key itself, unmapped.
    std::string Description() const override;
    std::string Key() const override { return mKey; }
    std::string LimitKey() const override { return mKey; }
    int32_t Status() const override { return mStatus; }
    std::string Unit() const override { return mUnit; }
    TaggedValue value() const override { return mValue; }
    TaggedValue PresetValue() const override { return mPresetValue; }
    int32_t ValueType() const override { return mValueType; }
    std::string ValueFormat() const override { return mValueFormat; }
    int32_t Flags() const override { return 0; }
    std::string ToolTipText() const override { return {}; }
    /// Raises 0x8004A3FF for another element (severity 4) or one without a key (severity 2).
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override;
    /// Empty without a key. Normalises type and value to their stored form. Raises 0x8004A400.
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) override;

    // IMeasurement2
    TaggedValue GetLimitValue(const IStandard& standard, int32_t side, int32_t flags) const override;
    TaggedValue GetResultValue(int32_t flags) const override;
    bool SupportsLimit(int32_t side) const override;
    float CalculateLimitValue(const IExpectedResult& limit, int32_t side) const override;
    int32_t ValidateLimits(const IStandard& standard) const override;

    // Raw access inside the library.
    const std::string& RawKey() const { return mKey; }
    void Key(std::string_view key) { mKey = key; }
    const std::string& RawDescription() const { return mDescription; }
    void Description(std::string_view description) { mDescription = description; }
    const std::string& RawUnit() const { return mUnit; }
    void ValueType(int32_t type) { mValueType = type; }
    void ValueFormat(std::string_view picture) { mValueFormat = picture; }
    const std::string& RawValueFormat() const { return mValueFormat; }
    const TaggedValue& RawPresetValue() const { return mPresetValue; }
    void PresetValue(TaggedValue preset) { mPresetValue = std::move(preset); }
    const TaggedValue& RawValue() const { return mValue; }
    void Value(TaggedValue newValue) {
        mValue = std::move(newValue);
        mReadingKnown = false;
    }
    void Status(int32_t status) { mStatus = status; }

    /// The value as text, without the picture.
    std::string ValueText() const { return TextOf(mValue); }
    /// The value as a number; empty for the over-range and under-range marks. Read once and kept: with each
    /// exposure the statistics of a test read all of its cells.
    const std::optional<double>& Reading() const;
    /// False for the over-range and under-range marks.
    bool HasValidReading() const { return Reading().has_value(); }

    /// Judges the value against the selected standards: 1, or 2 when any of them fails it. Nothing else.
    void UpdateStatus(const ILimitData* limits, const ISelectedStandards* selected);

    /// 2 when a side of the limit that is set excludes the value, else 0. Single precision; equal passes.
    int32_t CheckLimit(const IExpectedResult& limit) const;
    /// A value as this measurement shows it: in its picture; words of the detector and the verdicts as they
    /// are; a hand-typed number with its star.
    std::string FormatValue(const TaggedValue& shown) const;
    /// The text of the value as it is shown.
    std::string ShownText() const { return FormatValue(mValue); }

    struct FoundLimit {
        bool found = false;
        float number = 0;
        std::string unit;
    };
    /// Reads one side of the limit of this measurement. With several matching limits the high side keeps
    /// the smallest, the low side the last that differs. Ordinal above 0 looks at the limit of that position
    /// only.
    FoundLimit GetLimit(int32_t side, const IStandard& standard, bool calculate, int32_t ordinal) const;

  private:
    /// True when a side of a limit is the one that judges this measurement.
    bool IsJudgedBy(const IExpectedResult& limit, int32_t side) const;
    int32_t StoredType() const;
    TaggedValue StoredValue(int32_t type) const;

    std::string mKey;
    mutable std::optional<double> mReading;  ///< of `mValue`, once it is known
    mutable bool mReadingKnown = false;
    TaggedValue mValue;
    int32_t mValueType = kPlainValue;
    int32_t mStatus = 0;
    std::string mDescription;
    TaggedValue mPresetValue;
    std::string mUnit;
    int32_t mStatusExtra = 0;
    std::string mValueFormat;
};

/// The measurements of one exposure, in column order.
using MeasurementRow = std::vector<std::shared_ptr<CMeasurement>>;

/// The measurement of a key, or null. The hint is the index where it is looked for first.
CMeasurement* FindMeasurement(const MeasurementRow& row, std::string_view key, std::size_t hint = 0);

}  // namespace vorex

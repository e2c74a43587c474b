#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/host_contract.h"
#include "results/column_facts.h"

namespace vorex {

/// How a value is treated.
inline constexpr int32_t kPlainValue = 0;
inline constexpr int32_t kJudgedNumber = 1;
inline constexpr int32_t kOtherJudgedNumber = 2;
inline constexpr int32_t kTruthValue = 3;
inline constexpr int32_t kTextOnly = 5;

/// Number pictures of measurements.
inline constexpr std::string_view kFourDecimals = "0.0###";
inline constexpr std::string_view kTwoDecimals = "0.0#";

/// The common properties of the measurements of a column.
struct MeasurementLabels {
    std::string key;
    std::string limitKey;  ///< of the key
    ColumnFacts facts;     ///< of the key
    std::string description;
    std::string unit;
    std::string format;
};

/// One named value of a result: a cell of an exposure, or a statistic of the test.
class CMeasurement : public IMeasurement, public IMeasurement2 {
  public:
    CMeasurement();
    void Initialize(std::string_view key, std::string_view description, std::string_view unit,
                    int32_t valueType);

    // IMeasurement. The description is translated; the limit key is the key itself, unmapped.
    std::string Description() const override;
    std::string Key() const override { return mLabels->key; }
    std::string LimitKey() const override { return mLabels->key; }
    int32_t Status() const override { return mStatus; }
    std::string Unit() const override { return mLabels->unit; }
    TaggedValue value() const override { return mValue; }
    TaggedValue PresetValue() const override { return mPresetValue; }
    int32_t ValueType() const override { return mValueType; }
    std::string ValueFormat() const override { return mLabels->format; }
    int32_t Flags() const override { return 0; }
    std::string ToolTipText() const override { return {}; }
    /// Raises 0x8004A3FF for another element (severity 4) or one without a key (severity 2). A missing
    /// description or unit reads as empty.
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override;
    /// Returns nothing without a key. Normalises type and value to their stored form. Raises 0x8004A400.
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) override;

    // IMeasurement2
    TaggedValue GetLimitValue(const IStandard& standard, int32_t side, int32_t flags) const override;
    TaggedValue GetResultValue(int32_t flags) const override;
    bool SupportsLimit(int32_t side) const override;
    float CalculateLimitValue(const IExpectedResult& limit, int32_t side) const override;
    int32_t ValidateLimits(const IStandard& standard) const override;

    // Raw access inside the library.
    const std::string& RawKey() const { return mLabels->key; }
    void Key(std::string_view key);
    /// The key under which limits are looked up.
    const std::string& RawLimitKey() const { return mLabels->limitKey; }
    /// The properties of the measurement's column.
    const ColumnFacts& Facts() const { return mLabels->facts; }
    const std::string& RawDescription() const { return mLabels->description; }
    void Description(std::string_view text) { SetLabel(&MeasurementLabels::description, text); }
    const std::string& RawUnit() const { return mLabels->unit; }
    void ValueType(int32_t type) { mValueType = type; }
    void ValueFormat(std::string_view picture) { SetLabel(&MeasurementLabels::format, picture); }
    const std::string& RawValueFormat() const { return mLabels->format; }
    /// Takes key, description, unit and picture of a measurement of the same column, and shares them until
    /// one of the two changes.
    void ShareLabels(const CMeasurement& other) {
        if (mLabels != other.mLabels) mLabels = other.mLabels;
    }
    bool SharesLabels(const CMeasurement& other) const { return mLabels == other.mLabels; }
    const TaggedValue& RawPresetValue() const { return mPresetValue; }
    void PresetValue(TaggedValue preset) { mPresetValue = std::move(preset); }
    const TaggedValue& RawValue() const { return mValue; }
    void Value(TaggedValue newValue) {
        mValue = std::move(newValue);
        mReadingState = ReadingState::kUnknown;
    }
    /// Copies value, preset and status of another measurement.
    void CopyReading(const CMeasurement& other) {
        mValue = other.mValue;
        mReading = other.mReading;
        mReadingState = other.mReadingState;
        mPresetValue = other.mPresetValue;
        mStatus = other.mStatus;
    }
    void Status(int32_t status) { mStatus = status; }

    /// The value as text, without the picture.
    std::string ValueText() const { return TextOf(mValue); }
    /// True without a value, and for an empty text.
    bool IsEmpty() const {
        const auto* words = std::get_if<std::string>(&mValue);
        return words == nullptr ? std::holds_alternative<std::monostate>(mValue) : words->empty();
    }
    /// The value as a number; empty for the over-range and under-range marks. Read once and kept, because
    /// with each exposure the statistics of a test read all cells.
    std::optional<double> Reading() const {
        if (mReadingState == ReadingState::kUnknown) ReadValue();
        return mReadingState == ReadingState::kNumber ? std::optional(mReading) : std::nullopt;
    }
    /// True when its file had it as a number that limits judge.
    bool WasStoredAsNumber() const { return mStoredAsNumber; }
    /// False for the over-range and under-range marks.
    bool HasValidReading() const { return Reading().has_value(); }

    /// Judges the value against the selected standards: 1, or 2 when any of them fails it. Changes nothing.
    void UpdateStatus(const ILimitData* limits, const ISelectedStandards* selected);

    /// 2 when a side that is set excludes the value, else 0. Single precision; an equal value passes.
    int32_t CheckLimit(const IExpectedResult& limit) const;
    /// A value as this measurement shows it: numbers in its picture; words of the detector and verdicts
    /// unchanged; a typed number with its star.
    std::string FormatValue(const TaggedValue& shown) const;
    /// The text of the value as it is shown.
    std::string ShownText() const { return FormatValue(mValue); }
    /// The text of the value as read or derived, with all digits; a judged number as the host writes it.
    std::string GetDisplayText() const;

    struct FoundLimit {
        bool found = false;
        float number = 0;
        std::string unit;
    };
    /// Reads one side of the limit of this measurement. With several matching limits the high side keeps
    /// the smallest, the low side the last that differs. An ordinal above 0 selects the limit at that
    /// position only.
    FoundLimit GetLimit(int32_t side, const IStandard& standard, bool calculate, int32_t ordinal) const;
    /// The rows of this measurement in a report, in table mark-up: one, and, if limits apply to it, one more
    /// for each further standard that has a limit for it. Empty when a failures-only report leaves it out.
    /// The set value is printed in place of the preset.
    std::string BuildReportLine(const IReportDocument& report, bool heldAgainstLimits,
                                const TaggedValue& setValue) const;

  private:
    enum class ReadingState : uint8_t { kUnknown, kNumber, kMark };

    /// True when a side of a limit is the one that judges this measurement.
    bool IsJudgedBy(const IExpectedResult& limit, int32_t side) const;
    int32_t StoredType() const;
    TaggedValue StoredValue(int32_t type) const;
    void ReadValue() const;
    void SetLabel(std::string MeasurementLabels::*label, std::string_view text);

    std::shared_ptr<MeasurementLabels> mLabels;  ///< never empty; a result has thousands of cells
    mutable double mReading = 0;                 ///< the number of `mValue`, once read
    mutable ReadingState mReadingState = ReadingState::kUnknown;
    bool mStoredAsNumber = false;
    int32_t mValueType = kPlainValue;
    int32_t mStatus = 0;
    int32_t mStatusExtra = 0;
    TaggedValue mValue;
    TaggedValue mPresetValue;
};

/// The measurements of one exposure, in column order.
using MeasurementRow = std::vector<std::shared_ptr<CMeasurement>>;

/// Adds cells without a key and a value. They lie side by side in memory: with each exposure the statistics
/// read all rows of a long test.
void AddCells(MeasurementRow& row, std::size_t count);
/// The measurement of a key, or null.
CMeasurement* FindMeasurement(const MeasurementRow& row, std::string_view key);
/// The same; looks at an index first.
CMeasurement* FindMeasurement(const MeasurementRow& row, std::string_view key, std::size_t hint);

}  // namespace vorex

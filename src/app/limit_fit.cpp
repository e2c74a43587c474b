#include "app/limit_fit.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

#include "foundation/limit_expression.h"
#include "foundation/number_text.h"
#include "foundation/test_sets.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "results/result_columns.h"

namespace vorex {

namespace {

/// The expression of a limit; `FormFault` checks that both sides have the same.
LimitExpression FormOf(const StandardLimit& limit) {
    return LimitExpressionOf((limit.low.IsSet() ? limit.low : limit.high).expression);
}

/// True when a limit judges the numbers of a column.
bool Judges(const StandardLimit& limit, const CMeasurement& column) {
    // The adjacent mark becomes part of the key only while a test is judged.
    const std::string_view wanted = limit.key == key::kErAdjacent ? key::kErNonAdjacent : limit.key;
    return IsVariationRow(column.RawKey()) == RowOf(FormOf(limit)).judgesVariation &&
           LimitKeyOf(column.RawKey()) == wanted;
}

/// The unit of the column, without a language.
std::string UnitOf(const CMeasurement& column) {
    return DefaultUnitText(column.RawUnit());
}

/// The factor for a column's number when the units differ only in their time base.
struct TimeBase {
    std::string_view name;
    double seconds;
};
constexpr TimeBase kTimeBases[] = {{"sec", 1}, {"min", 60}, {"hr", 3600}};

std::optional<double> Conversion(std::string_view from, std::string_view to) {
    if (from == to) return 1;
    const auto secondsOf = [](std::string_view unit) -> std::optional<double> {
        for (const TimeBase& base : kTimeBases)
            if (unit.ends_with("/" + std::string(base.name))) return base.seconds;
        return std::nullopt;
    };
    const auto sameQuantity = [&] { return from.substr(0, from.find('/')) == to.substr(0, to.find('/')); };
    const std::optional<double> fromSeconds = secondsOf(from);
    const std::optional<double> toSeconds = secondsOf(to);
    if (!fromSeconds || !toSeconds || !sameQuantity()) return std::nullopt;
    return *toSeconds / *fromSeconds;
}

/// The unit of a limit's numbers, according to its form.
std::string UnitOfNumbers(const StandardLimit& limit, const CMeasurement& column) {
    return LimitNumberUnitOf(FormOf(limit), UnitOf(column));
}

/// Tests whose exposures share one voltage.
constexpr TestSet kWithVoltage = kWithOneKv | kMammoAec;

/// Voltage of all exposures of a test; nothing if each has its own.
std::optional<double> VoltageOf(const CConfigCommon& config) {
    if (kWithOneKv.Has(config.pTestID)) return NumberOf(config.pMachineKV);
    if (config.pTestID == kMammoAec) return ReadNumber(config.pNominalKV);
    return std::nullopt;
}

std::optional<double> ValueAt(const std::vector<VoltagePoint>& points, double kv) {
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (points[i].kv == kv) return points[i].value;
        if (points[i].kv < kv || i == 0) continue;
        const auto& [lowKv, lowValue] = points[i - 1];
        if (lowKv > kv) break;
        return PlainValue(lowValue + (points[i].value - lowValue) * (kv - lowKv) / (points[i].kv - lowKv));
    }
    return std::nullopt;
}

/// The columns that a test can have, each once per possible unit.
MeasurementRow PossibleColumns(int32_t testId) {
    constexpr int32_t kRateBases = 4;
    MeasurementRow columns;
    CConfigCommon config;
    config.pTestID = testId;
    config.pGeneratorSetup = kSetupMaTime;
    config.pMeasurementFluoroType = kPulsed;
    const auto takeNew = [&] {
        for (const auto& item : BuildColumns(config))
            if (std::none_of(columns.begin(), columns.end(), [&](const auto& known) {
                    return known->RawKey() == item->RawKey() && known->RawUnit() == item->RawUnit();
                }))
                columns.push_back(item);
    };
    const auto takeAllUnits = [&] {
        for (int32_t unit : {kUnitR, kUnitGy})
            for (int32_t base = 1; base <= kRateBases; ++base) {
                config.pMeasurementExposure = unit;
                config.pMeasurementExposureRateUnit = base;
                config.PKDoseUnit = unit - 1;  // R and Gy, counted from 0, as the bases are
                config.PKDoseRateUnit = base - 1;
                takeNew();
            }
    };
    for (int32_t kind = kZrd; kind <= kPelomarkAndMas; ++kind)
        for (int32_t mode : {kRadio, kFluoro})
            for (int32_t time : {kMilliseconds, kPulses}) {
                config.DetectorName = kind;
                config.pMeasurementMode = mode;
                config.pMeasurementTimeUnit = time;
                takeAllUnits();
            }
    return columns;
}

const MeasurementRow& KnownColumns(int32_t testId) {
    static std::map<int32_t, MeasurementRow> known;
    MeasurementRow& columns = known[testId];
    if (columns.empty()) columns = PossibleColumns(testId);
    return columns;
}

std::string Quoted(const std::string& text) {
    return text.empty() ? "none" : "\"" + text + "\"";
}

/// The numbers of tests: "(100, 300)".
std::string NumbersOf(TestSet tests) {
    std::string numbers;
    for (int32_t id : kMeasuringTests)
        if (tests.Has(id)) numbers += (numbers.empty() ? "" : ", ") + PlainText(id);
    return "(" + numbers + ")";
}

std::string FormFault(int32_t testId, const StandardLimit& limit, const CMeasurement& column) {
    if (limit.low.IsSet() && limit.high.IsSet() &&
        LimitExpressionOf(limit.low.expression) != LimitExpressionOf(limit.high.expression))
        return "both sides need the same expression";
    if (RowOf(FormOf(limit)).usesPreset &&
        !(kWithOneKv.Has(testId) && !TextOf(column.RawPresetValue()).empty()))
        return "an expression with X needs a voltage of a test with one set voltage " + NumbersOf(kWithOneKv);
    const bool byVoltage = !limit.low.byVoltage.empty() || !limit.high.byVoltage.empty();
    if (byVoltage && !kWithVoltage.Has(testId))
        return "\"byVoltage\" needs a test with one set voltage " + NumbersOf(kWithVoltage);
    return {};
}

/// Fits one limit to the columns, units and voltage of one element.
class Fitting {
  public:
    Fitting(const StandardLimit& limit, const CConfigCommon& config) : mConfig(config), mFitted(limit) {}

    /// Why the limit cannot judge the element; empty when it can, then `Result` returns the fitted limit.
    std::string Fault() {
        const MeasurementRow columns = BuildColumns(mConfig);
        const auto at = std::find_if(columns.begin(), columns.end(),
                                     [&](const auto& column) { return Judges(mFitted, *column); });
        if (at == columns.end()) return "the element does not measure it as it is set up";
        if (!mFitted.readings.empty() && Readings() != mFitted.readings)
            return "it holds for a detector that reads in " + mFitted.readings;
        const std::string unit = UnitOfNumbers(mFitted, **at);
        const std::optional<double> factor = Conversion(mFitted.unit, unit);
        if (!factor) return "it is stated in " + mFitted.unit + ", the element measures in " + unit;
        mFitted.unit = unit;
        const bool byVoltage = !mFitted.low.byVoltage.empty() || !mFitted.high.byVoltage.empty();
        const double kv = VoltageOf(mConfig).value_or(0);
        for (StandardSide* side : {&mFitted.low, &mFitted.high}) {
            if (std::string fault = TakeValue(*side, kv); !fault.empty()) return fault;
            if (side->value) side->value = PlainValue(*side->value * *factor);
        }
        // The unit names the voltage, so that the number is not mistaken after the voltage changes.
        if (byVoltage) mFitted.unit += " at " + PlainText(kv) + " kV";
        return {};
    }

    std::vector<StandardLimit> Result() const {
        if (mFitted.key != key::kMaxExposureRate) return {mFitted};
        std::vector<StandardLimit> perExposure;
        for (int32_t exposure = 1; exposure <= mConfig.pNoOfExposures; ++exposure) {
            perExposure.push_back(mFitted);
            perExposure.back().key += PlainText(exposure);
        }
        return perExposure;
    }

  private:
    /// The unit of the detector's exposures; empty for instruments whose unit the derived values do not use.
    std::string Readings() const {
        if (!HasZrd(mConfig.DetectorName)) return {};
        return mConfig.pMeasurementExposure == kUnitR ? "R" : "Gy";
    }

    /// Looks a number up by the voltage; returns why there is none.
    static std::string TakeValue(StandardSide& side, double kv) {
        if (side.byVoltage.empty()) return {};
        side.value = ValueAt(side.byVoltage, kv);
        if (!side.value)
            return "it is stated for " + PlainText(side.byVoltage.front().kv) + " to " +
                   PlainText(side.byVoltage.back().kv) + " kV, the element sets " + PlainText(kv) + " kV";
        side.byVoltage.clear();
        return {};
    }

    const CConfigCommon& mConfig;
    StandardLimit mFitted;
};

}  // namespace

std::string LimitFault(int32_t testId, const StandardLimit& limit) {
    std::vector<std::string> units;
    for (const auto& column : KnownColumns(testId)) {
        if (!Judges(limit, *column)) continue;
        if (std::string fault = FormFault(testId, limit, *column); !fault.empty()) return fault;
        std::string unit = UnitOfNumbers(limit, *column);
        if (unit == limit.unit) return {};
        if (std::find(units.begin(), units.end(), unit) == units.end()) units.push_back(std::move(unit));
    }
    if (units.empty()) return "no column is judged by this key with this expression";
    std::string known;
    for (const std::string& unit : units) known += (known.empty() ? "" : ", ") + Quoted(unit);
    return "the unit " + Quoted(limit.unit) + " is not one of the column (" + known + ")";
}

std::vector<StandardLimit> FitLimit(const StandardLimit& limit, const CConfigCommon& config,
                                    const std::function<void(const std::string&)>& report) {
    Fitting fitting(limit, config);
    if (const std::string fault = fitting.Fault(); !fault.empty()) {
        const std::string unit = limit.unit.empty() ? "" : " in " + limit.unit;
        report("\"" + limit.key + "\"" + unit + " is left out: " + fault);
        return {};
    }
    return fitting.Result();
}

}  // namespace vorex

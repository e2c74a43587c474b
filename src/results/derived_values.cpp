#include "results/derived_values.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/verdict_figures.h"
#include "foundation/vocabulary.h"
#include "mqsa/mammo_calculation.h"
#include "results/result_columns.h"

namespace vorex {

namespace {

/// Columns of the exposure tables that readings are compared with, by test.
namespace table_column {
constexpr uint8_t kImport = 1;
constexpr uint8_t kAccuracyKv = 4;
constexpr uint8_t kAccuracyTime = 6;
constexpr uint8_t kLinearityAdjacent = 2;
constexpr uint8_t kLinearityCharge = 4;
constexpr uint8_t kFluoroKv = 2;
constexpr uint8_t kFluoroPhantom = 4;
constexpr uint8_t kFluoroMode = 5;
}  // namespace table_column

/// Collects the fields of a row.
class RowBuilder {
  public:
    RowBuilder() { mRow.fields.reserve(kMostFields); }

    RowBuilder& Add(std::string_view columnKey, std::string text) {
        mRow.fields.push_back({columnKey, std::move(text)});
        return *this;
    }
    /// A number of an instrument or of the table: its decimal sign is a point.
    RowBuilder& AddReading(std::string_view columnKey, std::string_view reading) {
        std::string& text = mRow.fields.emplace_back(RowField{columnKey, std::string(reading)}).text;
        std::replace(text.begin(), text.end(), ',', '.');
        return *this;
    }
    const std::vector<RowField>& Fields() const { return mRow.fields; }
    SurveyOutcomes& Outcomes() { return mRow.outcomes; }
    DerivedRow Take() { return std::move(mRow); }

  private:
    static constexpr std::size_t kMostFields = 24;
    DerivedRow mRow;
};

/// A named quantity keeps what a person would read of it: 15 significant digits.
double Named(double value) {
    return PlainValue(value);
}

std::string Shown(double value) {
    return FormatPicture(value, kTwoDecimals);
}
std::string Shown(const std::optional<double>& value) {
    return value ? Shown(*value) : std::string();
}

std::string TableCell(const ReadingContext& context, uint8_t column) {
    return context.config.GetValue(context.exposureIndex, column);
}
double TableNumber(const ReadingContext& context, uint8_t column) {
    return ReadNumber(TableCell(context, column));
}

/// The fields that every row begins with.
RowBuilder BeginRow(const ReadingContext& context) {
    const bool planned = context.config.pNoOfExposures > 0;
    RowBuilder row;
    row.AddReading(key::kImportWaveform, planned ? TableCell(context, table_column::kImport) : std::string());
    return row;
}

void AddAdjacentFlag(RowBuilder& row, const ReadingContext& context) {
    if (context.config.pTestID == kRadioLinearity)
        row.AddReading(key::kAdjacent, TableCell(context, table_column::kLinearityAdjacent));
}

/// A column and its new reading.
struct ColumnReading {
    std::string_view key;
    std::string_view reading;
};

/// A column that test 100 has statistics of, and the columns of these.
struct StatisticColumns {
    std::string_view key;
    std::string_view mean;
    std::string_view variation;
};

constexpr StatisticColumns kStatistics[] = {
    {key::kKvpAvg, key::kAvgKvpAvg, key::kErKvpAvg},
    {key::kKvpMax, key::kAvgKvpMax, key::kErKvpMax},
    {key::kKvPpv, key::kAvgKvPpv, key::kErKvPpv},
    {key::kExposure, key::kAvgExposure, key::kErExposure},
    {key::kExposureRate, key::kAvgExposureRate, key::kErExposureRate},
    {key::kExposureTime, key::kAvgExposureTime, key::kErExposureTime},
    {key::kExposureInPulses, key::kAvgExposureInPulses, key::kErExposureInPulses},
    {key::kHvl, key::kAvgHvl, key::kErHvl},
    {key::kMa, key::kAvgMa, key::kCvMa},
    {key::kMas, key::kAvgMas, key::kCvMas},
    {key::kMasPulse, key::kAvgMasPulse, key::kCvMasPulse},
    {key::kDoseMas, key::kAvgDoseMas, key::kCvDoseMas},
};

using History = std::optional<std::vector<double>>;

/// The cell of a column in a stored row, or null. Mostly it stands where the working row has it, and is
/// labelled by it.
const CMeasurement* FindStored(const MeasurementRow& row, std::string_view columnKey,
                               const MeasurementRow& working, std::size_t place) {
    const bool same =
        place < std::min(row.size(), working.size()) && row[place]->SharesLabels(*working[place]);
    return same ? row[place].get() : FindMeasurement(row, columnKey);
}

/// Takes the reading of a stored row into the history of its column, if the row has it.
void TakeStored(History& history, std::size_t row, const CMeasurement* cell) {
    if (cell == nullptr || !history) return;
    if (const std::optional<double> reading = cell->Reading())
        (*history)[row] = *reading;
    else
        history.reset();
}

/// Readings of columns over the test, the new ones in their place; empty for a column as soon as one of its
/// readings is an over-range or under-range mark. A row that was never stored counts as 0.
std::vector<History> ColumnHistories(const ReadingContext& context, std::span<const ColumnReading> columns) {
    const auto& rows = context.result.Rows();
    const std::size_t index = context.exposureIndex;
    const std::size_t stored = index > 0 || context.redo ? rows.size() : 0;
    std::vector<History> histories(columns.size(), std::vector<double>(std::max(stored, index + 1)));
    const MeasurementRow& working = context.result.Current();
    std::vector<std::size_t> places;
    for (const ColumnReading& column : columns)
        places.push_back(ColumnNumber(working, column.key) - std::size_t{1});
    // Row by row, as the readings lie in memory: long tests are read as a whole with each exposure.
    for (std::size_t row = 0; row < stored; ++row)
        if (row != index)
            for (std::size_t i = 0; i < columns.size(); ++i)
                TakeStored(histories[i], row, FindStored(*rows[row], columns[i].key, working, places[i]));
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (!IsValidReading(columns[i].reading)) histories[i].reset();
        if (histories[i]) (*histories[i])[index] = ReadNumber(columns[i].reading);
    }
    return histories;
}

double SumOf(const std::vector<double>& values) {
    double sum = 0;
    for (double value : values) sum += value;
    return Named(sum);
}

struct MeanAndCv {
    std::string mean;
    std::string cv;
};

MeanAndCv MeanAndVariation(const History& values) {
    if (!values) return {};
    const double mean = Named(SumOf(*values) / static_cast<double>(values->size()));
    if (mean <= 0) return {PlainText(mean), {}};
    return {Shown(mean), Shown(SampleStdDev(*values) / mean)};
}

/// Adds the means of the columns that have statistics, then their coefficients of variation.
void AddStatistics(RowBuilder& row, const ReadingContext& context) {
    std::vector<const StatisticColumns*> statistics;
    std::vector<ColumnReading> readings;
    for (const RowField& field : row.Fields()) {
        const auto* columns =
            std::find_if(std::begin(kStatistics), std::end(kStatistics),
                         [&](const StatisticColumns& known) { return known.key == field.key; });
        if (columns == std::end(kStatistics)) continue;
        statistics.push_back(columns);
        readings.push_back({field.key, field.text});
    }
    std::vector<MeanAndCv> values;
    for (const History& history : ColumnHistories(context, readings))
        values.push_back(MeanAndVariation(history));
    for (std::size_t i = 0; i < values.size(); ++i) row.Add(statistics[i]->mean, std::move(values[i].mean));
    for (std::size_t i = 0; i < values.size(); ++i)
        row.Add(statistics[i]->variation, std::move(values[i].cv));
}

bool CountsPulses(const CConfigCommon& config) {
    return config.pMeasurementTimeUnit != kMilliseconds && config.pMeasurementMode != kFluoro;
}

/// The key of the column that holds the length of an exposure.
std::string_view TimeColumn(const CConfigCommon& config) {
    return CountsPulses(config) ? key::kExposureInPulses : key::kExposureTime;
}

void AddVoltages(RowBuilder& row, const ZrdReading& r) {
    row.AddReading(key::kKvpAvg, r.kvpAvg)
        .AddReading(key::kKvpMax, r.kvpMax)
        .AddReading(key::kKvPpv, r.kvPpv)
        .AddReading(key::kExposure, r.exposure);
}

/// The flags and the readings that most tests begin with.
RowBuilder BaseRow(const ReadingContext& context, const ZrdReading& r) {
    RowBuilder row = BeginRow(context);
    AddAdjacentFlag(row, context);
    AddVoltages(row, r);
    const bool pulses = CountsPulses(context.config);
    return std::move(row.AddReading(key::kExposureRate, r.exposureRate)
                         .AddReading(TimeColumn(context.config), pulses ? r.exposurePulses : r.exposureTime)
                         .AddReading(key::kHvl, r.hvl));
}

/// (measured - set) / set * 100; empty when the reading is a mark or the set value is not above 0.
std::optional<double> PercentError(std::string_view measured, double set) {
    if (!IsValidReading(measured) || !(set > 0)) return std::nullopt;
    return (ReadNumber(measured) - set) / set * 100;
}

DerivedRow Reproducibility(const ReadingContext& context, const ZrdReading& r) {
    RowBuilder row = BaseRow(context, r);
    AddStatistics(row, context);
    return row.Take();
}

DerivedRow RadiographyAccuracy(const ReadingContext& context, const ZrdReading& r) {
    RowBuilder row = BaseRow(context, r);
    const double set = TableNumber(context, table_column::kAccuracyKv);
    const std::optional<double> percent = PercentError(r.kvpAvg, set);
    row.Add(key::kPercentKvpError, Shown(percent));
    std::string absolute;
    if (IsValidReading(r.kvpAvg)) {
        const double difference = ReadNumber(r.kvpAvg) - set;
        absolute = percent ? Shown(difference) : PlainText(difference);
    }
    row.Add(key::kAbsoluteKvpError, std::move(absolute));
    if (context.config.pGeneratorSetup == kSetupMaTime)
        row.Add(key::kPercentTimerError,
                Shown(PercentError(r.exposureTime, TableNumber(context, table_column::kAccuracyTime))));
    return row.Take();
}

/// Exposure per mAs; the charge is the set mAs, or the set mA times the measured time.
std::string ExposurePerMas(const ReadingContext& context, const ZrdReading& r) {
    const double exposure = ReadNumber(r.exposure);
    const double set = TableNumber(context, table_column::kLinearityCharge);
    if (!(exposure > 0) || !(set > 0)) return {};
    if (context.config.pGeneratorSetup == kSetupMas) return Shown(exposure / set);
    const double time = ReadNumber(r.exposureTime);
    if (context.config.pMeasurementTimeUnit != kMilliseconds || !(time > 0)) return {};
    constexpr double kSecondsPerMs = 0.001;
    return Shown(exposure / (set * time * kSecondsPerMs));
}

DerivedRow RadiographyLinearity(const ReadingContext& context, const ZrdReading& r) {
    RowBuilder row = BaseRow(context, r);
    const std::string perMas = ExposurePerMas(context, r);
    row.Add(key::kExposurePerMas, perMas);
    std::string linearity;
    if (context.exposureIndex > 0 && !perMas.empty()) {
        const uint8_t column = ColumnNumber(context.result.Current(), key::kExposurePerMas);
        const auto before = static_cast<uint8_t>(context.exposureIndex - 1);
        const double present = ReadNumber(perMas);
        const double previous = ReadNumber(context.result.GetValue(before, column));
        // |X1 - X2| <= L (X1 + X2): the coefficient of linearity of 21 CFR 1020.31(c).
        if (present + previous > 0) linearity = Shown(std::abs(present - previous) / (present + previous));
    }
    return row.Add(key::kErNonAdjacent, std::move(linearity)).Take();
}

/// Tests 500 and 700: readings with the pulse columns where the mode has them. The time is shown whatever
/// it is measured in.
RowBuilder FluoroscopyRow(const ReadingContext& context, const ZrdReading& r, std::string_view rateColumn) {
    const CConfigCommon& config = context.config;
    RowBuilder row = BeginRow(context);
    AddVoltages(row, r);
    row.AddReading(rateColumn, r.exposureRate).AddReading(TimeColumn(config), r.exposureTime);
    if (config.pMeasurementMode == kFluoro && config.pMeasurementFluoroType == kPulsed)
        row.AddReading(key::kPulseRate, r.pulseRate).AddReading(key::kPulseWidth, r.pulseWidth);
    return std::move(row.AddReading(key::kHvl, r.hvl));
}

DerivedRow FluoroscopyAccuracy(const ReadingContext& context, const ZrdReading& r) {
    const double set = TableNumber(context, table_column::kFluoroKv);
    return FluoroscopyRow(context, r, key::kExposureRate)
        .Add(key::kFluoroKvpError, Shown(PercentError(r.kvpAvg, set)))
        .Take();
}

DerivedRow FluoroscopyExposure(const ReadingContext& context, const ZrdReading& r) {
    return FluoroscopyRow(context, r, key::kMaxExposureRate)
        .AddReading(key::kPhantomThickness, TableCell(context, table_column::kFluoroPhantom))
        .Add(key::kMode, TableCell(context, table_column::kFluoroMode))
        .Take();
}

/// Tube voltages of the test so far. Marks among earlier readings count as 0: only the new reading decides
/// whether the statistics are shown.
std::vector<double> VoltagesSoFar(const ReadingContext& context, std::string_view reading) {
    const auto& rows = context.result.Rows();
    const std::size_t index = context.exposureIndex;
    const std::size_t stored = index > 0 || context.redo ? rows.size() : 0;
    std::vector<double> values(std::max(stored, index + 1));
    for (std::size_t row = 0; row < stored; ++row)
        if (const CMeasurement* cell = FindMeasurement(*rows[row], key::kKvpAvg, 1))
            values[row] = NumberOf(cell->RawValue());
    values[index] = ReadNumber(reading);
    return values;
}

DerivedRow MammographyAccuracy(const ReadingContext& context, const ZrdReading& r) {
    constexpr std::size_t kHalf = 4;
    RowBuilder row = BaseRow(context, r);
    const double nominal = NumberOf(context.config.pMachineKV);
    std::string halfMean, halfDeviation, shownMean, shownDeviation, difference, percent, cv;
    if (IsValidReading(r.kvpAvg)) {
        const std::vector<double> all = VoltagesSoFar(context, r.kvpAvg);
        const auto halfCount = static_cast<std::ptrdiff_t>(std::min(kHalf, all.size()));
        const std::vector<double> half(all.begin(), all.begin() + halfCount);
        const double mean = Named(SumOf(all) / static_cast<double>(all.size()));
        const double deviation = Named(SampleStdDev(all));
        halfMean = Shown(SumOf(half) / static_cast<double>(half.size()));
        halfDeviation = Shown(SampleStdDev(half));
        shownMean = Shown(mean);
        shownDeviation = Shown(deviation);
        difference = Shown(mean - nominal);
        if (nominal > 0) percent = Shown((mean - nominal) / nominal * 100);
        if (mean > 0) cv = Shown(deviation / mean);
    }
    row.Add(key::kHalfMeanKvp, std::move(halfMean));
    row.Add(key::kHalfStandardDeviation, std::move(halfDeviation));
    row.Add(key::kMeanKvp, std::move(shownMean));
    row.Add(key::kStandardDeviation, std::move(shownDeviation));
    row.Add(key::kMeanMinusNominal, std::move(difference));
    row.Add(key::kFivePercentNominal, Shown(nominal * figure::kVoltagePart));
    row.Add(key::kPercentError, std::move(percent));
    return row.Add(key::kCv, std::move(cv)).Take();
}

/// What a formatted value comes to in the survey. An empty one reads as 0.
int32_t OutcomeBy(const VerdictFigure& figure, std::string_view shown) {
    return figure.Excludes(ReadNumber(shown)) ? kFailed : kPassed;
}

/// The six derived values of test 1100, formatted; empty where a value cannot be had.
struct GlandularDose {
    std::string energyCorrectedMean;
    std::string standardDeviation;
    std::string cv;
    std::string skinExposure;
    std::string factor;
    std::string dose;
};

/// Entrance exposure at the breast surface by the inverse square law; distances in cm.
std::optional<double> SkinExposure(const CConfigCommon& config, double exposure) {
    const double detector = ReadNumber(config.pSourceToDetectorDistance);
    const double bucky = ReadNumber(config.pSourceToBuckyDistance);
    const double thickness = ReadNumber(config.pBreastThickness);
    if (!(detector > 0 && bucky > 0 && thickness > 0 && bucky - thickness > 0)) return std::nullopt;
    const double ratio = detector / (bucky - thickness);
    return ratio * ratio * exposure;
}

/// The chain from exposures to the average glandular dose. The unit factor brings readings to R or Gy.
GlandularDose ComputeGlandularDose(const ReadingContext& context, std::string_view reading,
                                   double unitFactor) {
    GlandularDose result;
    const ColumnReading column{key::kExposure, reading};
    History exposures = ColumnHistories(context, {&column, 1}).front();
    if (exposures) {
        for (double& exposure : *exposures) exposure = Named(exposure * unitFactor);
        const CConfigCommon& config = context.config;
        const double mean = Named(SumOf(*exposures) / static_cast<double>(exposures->size()));
        const double corrected = Named(ReadNumber(config.pEnergyCorrectionFactor) * mean);
        const double deviation = Named(SampleStdDev(*exposures));
        result.energyCorrectedMean = Shown(corrected);
        result.standardDeviation = Shown(deviation);
        if (corrected > 0) result.cv = Shown(deviation / corrected);
        const std::optional<double> skin = SkinExposure(config, corrected);
        result.skinExposure = Shown(skin);
        const std::optional<double> factor =
            DoseConversionFactor(config.pTargetMaterial, config.pFilter, ReadNumber(config.pNominalKV),
                                 ReadNumber(config.pMeasuredHVL), ReadNumber(config.pBreastThickness),
                                 ReadNumber(config.pGlandularFraction));
        result.factor = Shown(factor);
        if (factor && skin && *factor > 0) result.dose = Shown(Named(*factor) * Named(*skin));
    }
    return result;
}

void AddMeanAndVariation(RowBuilder& row, const GlandularDose& dose) {
    row.Add(key::kEnergyCorrectedMean, dose.energyCorrectedMean)
        .Add(key::kStandardDeviations, dose.standardDeviation)
        .Add(key::kCvExposure, dose.cv);
}

/// Adds the rest of the chain, and what it leaves for the survey: a value that cannot be had reads as 0.
void AddDose(RowBuilder& row, const GlandularDose& dose) {
    row.Add(key::kSkinExposure, dose.skinExposure)
        .Add(key::kDoseConversionFactor, dose.factor)
        .Add(key::kGlandularDose, dose.dose);
    row.Outcomes().Dose78 = OutcomeBy(figure::kExposureVariation, dose.cv);
    row.Outcomes().Dose80 = OutcomeBy(figure::kGlandularDose, dose.dose);
}

DerivedRow MammographyAec(const ReadingContext& context, const ZrdReading& r) {
    const CConfigCommon& config = context.config;
    const double milli = config.pMeasurementMode == kFluoro ? 1 : 0.001;
    const double unitFactor = config.pMeasurementExposure == kUnitGy ? milli * 0.001 : milli;
    const GlandularDose dose = ComputeGlandularDose(context, r.exposure, unitFactor);
    RowBuilder row = BaseRow(context, r);
    AddMeanAndVariation(row, dose);
    row.Add(key::kCvMasSettings, config.GetmASCV());
    AddDose(row, dose);
    return row.Take();
}

DerivedRow MammographyOutput(const ReadingContext& context, const ZrdReading& r) {
    RowBuilder row = BaseRow(context, r);
    const double time = ReadNumber(r.exposureTime);
    if (!IsValidReading(r.exposure) || !IsValidReading(r.exposureTime) || !(time > 0))
        return row.Add(key::kOutputRate, {}).Add(key::kAirKermaRate, {}).Take();
    const double exposure = ReadNumber(r.exposure);
    const bool gray = context.config.pMeasurementExposure == kUnitGy;
    // mR per s: readings are R in s and mGy in s for fluoroscopy, mR in ms and uGy in ms otherwise.
    const double rate = context.config.pMeasurementMode == kFluoro
                            ? exposure * (gray ? 100 : 1000) / time
                            : exposure * (gray ? 0.1 : 1) / (time * 0.001);
    constexpr double kMilligrayPerMilliroentgen = 0.00873;
    const std::string shown = Shown(rate);
    row.Outcomes().Dose82 = OutcomeBy(figure::kAcrOutput, shown);
    row.Outcomes().Dose75 = OutcomeBy(figure::kMqsaOutput, shown);
    return row.Add(key::kOutputRate, shown)
        .Add(key::kAirKermaRate, Shown(Named(rate) * kMilligrayPerMilliroentgen))
        .Take();
}

struct DetectorRow {
    int32_t testId;
    DerivedRow (*build)(const ReadingContext&, const ZrdReading&);
};

constexpr DetectorRow kDetectorRows[] = {
    {kRadioRepro, Reproducibility},
    {kRadioAccuracy, RadiographyAccuracy},
    {kRadioLinearity, RadiographyLinearity},
    {kFluoroAccuracy, FluoroscopyAccuracy},
    {kFluoroExposure, FluoroscopyExposure},
    {kMammoAccRepro, MammographyAccuracy},
    {kMammoAec, MammographyAec},
    {kMammoRadiation, MammographyOutput},
};

constexpr bool EveryTestHasARow() {
    for (int32_t test : kMeasuringTests) {
        const bool found = std::any_of(std::begin(kDetectorRows), std::end(kDetectorRows),
                                       [&](const DetectorRow& row) { return row.testId == test; });
        if (!found) return false;
    }
    return true;
}
static_assert(EveryTestHasARow(), "a measuring test derives nothing from its readings");

}  // namespace

std::string JoinedFields(const DerivedRow& row) {
    std::string joined;
    for (const RowField& field : row.fields) {
        if (&field != &row.fields.front()) joined.push_back(',');
        joined += WithPoint(field.text);
    }
    return joined;
}

DerivedRow BuildDetectorResult(const ReadingContext& context, const ZrdReading& reading) {
    for (const DetectorRow& row : kDetectorRows)
        if (row.testId == context.config.pTestID) return row.build(context, reading);
    throw std::logic_error("test " + PlainText(context.config.pTestID) + " takes no exposures");
}

DerivedRow BuildDosimeterResult(const ReadingContext& context, const PelomarkReading& r) {
    const CConfigCommon& config = context.config;
    const bool doseMode = config.PKMode == 0;
    RowBuilder row = BeginRow(context);
    AddAdjacentFlag(row, context);
    if (doseMode) row.AddReading(key::kExposure, r.dose);
    row.AddReading(key::kExposureRate, r.doseRate)
        .AddReading(key::kTemperature, r.temperature)
        .AddReading(key::kPressure, r.pressure)
        .AddReading(key::kAdcf, r.adcf)
        .AddReading(key::kBiasVoltage, r.biasVoltage)
        .AddReading(key::kLeakCurrent, r.leakCurrent);
    if (config.pTestID == kRadioRepro) {
        AddStatistics(row, context);
    } else if (config.pTestID == kMammoAec && doseMode) {
        GlandularDose dose = ComputeGlandularDose(context, r.dose, config.PKDoseUnit != 0 ? 0.000001 : 0.001);
        if (dose.dose.empty()) dose.dose = "0";
        AddMeanAndVariation(row, dose);
        AddDose(row, dose);
    }
    return row.Take();
}

DerivedRow BuildMasResult(const ReadingContext& context, const MasReading& r) {
    RowBuilder row = BeginRow(context);
    row.AddReading(key::kMa, r.ma)
        .AddReading(key::kMas, r.mas)
        .AddReading(key::kMasPulse, r.masPerPulse)
        .AddReading(key::kDoseMas, r.dosePerMas);
    if (context.config.pTestID == kRadioRepro) AddStatistics(row, context);
    return row.Take();
}

}  // namespace vorex

#include "results/derived_values.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "foundation/library_state.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
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

/// Joins fields by ",".
class RowBuilder {
  public:
    RowBuilder& Add(std::string_view field) {
        if (mStarted) mText.push_back(',');
        mStarted = true;
        mText += field;
        return *this;
    }
    /// A field of an instrument or of the table: a decimal comma in it would split the row.
    RowBuilder& AddReading(std::string_view field) {
        Add(field);
        std::replace(mText.end() - static_cast<std::ptrdiff_t>(field.size()), mText.end(), ',', '.');
        return *this;
    }
    RowBuilder& AddAll(std::initializer_list<std::string_view> fields) {
        for (std::string_view field : fields) AddReading(field);
        return *this;
    }
    std::string Take() { return std::move(mText); }

  private:
    std::string mText;
    bool mStarted = false;
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

std::string ImportFlag(const ReadingContext& context) {
    return context.config.pNoOfExposures > 0 ? TableCell(context, table_column::kImport) : std::string();
}

/// A column and its new reading.
struct ColumnReading {
    std::string_view key;
    std::string_view reading;
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

/// Adds the means of the columns, then their coefficients of variation.
void AddStatistics(RowBuilder& row, const ReadingContext& context,
                   std::initializer_list<ColumnReading> columns) {
    std::vector<MeanAndCv> statistics;
    for (const History& history : ColumnHistories(context, columns))
        statistics.push_back(MeanAndVariation(history));
    for (const MeanAndCv& statistic : statistics) row.Add(statistic.mean);
    for (const MeanAndCv& statistic : statistics) row.Add(statistic.cv);
}

bool CountsPulses(const CConfigCommon& config) {
    return config.pMeasurementTimeUnit != kMilliseconds && config.pMeasurementMode != kFluoro;
}

/// Import flag and the readings that most tests begin with.
RowBuilder BaseRow(const ReadingContext& context, const ZrdReading& r) {
    RowBuilder row;
    row.Add(ImportFlag(context));
    if (context.config.pTestID == kRadioLinearity)
        row.AddReading(TableCell(context, table_column::kLinearityAdjacent));
    row.AddAll({r.kvpAvg, r.kvpMax, r.kvPpv, r.exposure, r.exposureRate,
                CountsPulses(context.config) ? r.exposurePulses : r.exposureTime, r.hvl});
    return row;
}

/// (measured - set) / set * 100; empty when the reading is a mark or the set value is not above 0.
std::optional<double> PercentError(std::string_view measured, double set) {
    if (!IsValidReading(measured) || !(set > 0)) return std::nullopt;
    return (ReadNumber(measured) - set) / set * 100;
}

std::string Reproducibility(const ReadingContext& context, const ZrdReading& r) {
    const bool pulses = CountsPulses(context.config);
    RowBuilder row = BaseRow(context, r);
    AddStatistics(
        row, context,
        {{key::kKvpAvg, r.kvpAvg},
         {key::kKvpMax, r.kvpMax},
         {key::kKvPpv, r.kvPpv},
         {key::kExposure, r.exposure},
         {key::kExposureRate, r.exposureRate},
         {pulses ? key::kExposureInPulses : key::kExposureTime, pulses ? r.exposurePulses : r.exposureTime},
         {key::kHvl, r.hvl}});
    return row.Take();
}

std::string RadiographyAccuracy(const ReadingContext& context, const ZrdReading& r) {
    RowBuilder row = BaseRow(context, r);
    const double set = TableNumber(context, table_column::kAccuracyKv);
    const std::optional<double> percent = PercentError(r.kvpAvg, set);
    row.Add(Shown(percent));
    if (IsValidReading(r.kvpAvg)) {
        const double difference = ReadNumber(r.kvpAvg) - set;
        row.Add(percent ? Shown(difference) : PlainText(difference));
    } else {
        row.Add({});
    }
    if (context.config.pGeneratorSetup == kSetupMaTime)
        row.Add(Shown(PercentError(r.exposureTime, TableNumber(context, table_column::kAccuracyTime))));
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

std::string RadiographyLinearity(const ReadingContext& context, const ZrdReading& r) {
    RowBuilder row = BaseRow(context, r);
    const std::string perMas = ExposurePerMas(context, r);
    row.Add(perMas);
    std::string linearity;
    if (context.exposureIndex > 0 && !perMas.empty()) {
        const uint8_t column = ColumnNumber(context.result.Current(), key::kExposurePerMas);
        const auto before = static_cast<uint8_t>(context.exposureIndex - 1);
        const double present = ReadNumber(perMas);
        const double previous = ReadNumber(context.result.GetValue(before, column));
        // |X1 - X2| <= L (X1 + X2): the coefficient of linearity of 21 CFR 1020.31(c).
        if (present + previous > 0) linearity = Shown(std::abs(present - previous) / (present + previous));
    }
    return row.Add(linearity).Take();
}

/// Tests 500 and 700: readings with the pulse columns where the mode has them.
RowBuilder FluoroscopyRow(const ReadingContext& context, const ZrdReading& r) {
    RowBuilder row;
    row.Add(ImportFlag(context));
    row.AddAll({r.kvpAvg, r.kvpMax, r.kvPpv, r.exposure, r.exposureRate, r.exposureTime});
    if (context.config.pMeasurementMode == kFluoro && context.config.pMeasurementFluoroType == kPulsed)
        row.AddAll({r.pulseRate, r.pulseWidth});
    row.AddReading(r.hvl);
    return row;
}

std::string FluoroscopyAccuracy(const ReadingContext& context, const ZrdReading& r) {
    return FluoroscopyRow(context, r)
        .Add(Shown(PercentError(r.kvpAvg, TableNumber(context, table_column::kFluoroKv))))
        .Take();
}

std::string FluoroscopyExposure(const ReadingContext& context, const ZrdReading& r) {
    return FluoroscopyRow(context, r)
        .AddReading(TableCell(context, table_column::kFluoroPhantom))
        .AddReading(TableCell(context, table_column::kFluoroMode))
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

std::string MammographyAccuracy(const ReadingContext& context, const ZrdReading& r) {
    constexpr std::size_t kHalf = 4;
    constexpr double kAllowedPart = 0.05;
    RowBuilder row = BaseRow(context, r);
    const double nominal = NumberOf(context.config.pMachineKV);
    const std::string allowed = Shown(nominal * kAllowedPart);
    if (!IsValidReading(r.kvpAvg)) {
        for (int empty = 0; empty < 5; ++empty) row.Add({});
        return row.Add(allowed).Add({}).Add({}).Take();
    }
    const std::vector<double> all = VoltagesSoFar(context, r.kvpAvg);
    const std::vector<double> half(all.begin(),
                                   all.begin() + static_cast<std::ptrdiff_t>(std::min(kHalf, all.size())));
    const double mean = Named(SumOf(all) / static_cast<double>(all.size()));
    const double deviation = Named(SampleStdDev(all));
    row.Add(Shown(SumOf(half) / static_cast<double>(half.size())));
    row.Add(Shown(SampleStdDev(half)));
    row.Add(Shown(mean)).Add(Shown(deviation)).Add(Shown(mean - nominal)).Add(allowed);
    row.Add(nominal > 0 ? Shown((mean - nominal) / nominal * 100) : std::string());
    row.Add(mean > 0 ? Shown(deviation / mean) : std::string());
    return row.Take();
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
    constexpr double kHighestVariation = 0.005;
    constexpr double kHighestDose = 300;  // mrad
    State().cells.Dose78 = ReadNumber(result.cv) <= kHighestVariation ? kPassed : kFailed;
    State().cells.Dose80 = ReadNumber(result.dose) <= kHighestDose ? kPassed : kFailed;
    return result;
}

std::string MammographyAec(const ReadingContext& context, const ZrdReading& r) {
    const CConfigCommon& config = context.config;
    const double milli = config.pMeasurementMode == kFluoro ? 1 : 0.001;
    const double unitFactor = config.pMeasurementExposure == kUnitGy ? milli * 0.001 : milli;
    const GlandularDose dose = ComputeGlandularDose(context, r.exposure, unitFactor);
    RowBuilder row = BaseRow(context, r);
    row.Add(dose.energyCorrectedMean).Add(dose.standardDeviation).Add(dose.cv).Add(config.GetmASCV());
    return row.Add(dose.skinExposure).Add(dose.factor).Add(dose.dose).Take();
}

std::string MammographyOutput(const ReadingContext& context, const ZrdReading& r) {
    RowBuilder row = BaseRow(context, r);
    const double time = ReadNumber(r.exposureTime);
    if (!IsValidReading(r.exposure) || !IsValidReading(r.exposureTime) || !(time > 0))
        return row.Add({}).Add({}).Take();
    const double exposure = ReadNumber(r.exposure);
    const bool gray = context.config.pMeasurementExposure == kUnitGy;
    // mR per s: readings are R in s and mGy in s for fluoroscopy, mR in ms and uGy in ms otherwise.
    const double rate = context.config.pMeasurementMode == kFluoro
                            ? exposure * (gray ? 100 : 1000) / time
                            : exposure * (gray ? 0.1 : 1) / (time * 0.001);
    constexpr double kMilligrayPerMilliroentgen = 0.00873;
    constexpr double kAcrOutput = 800;   // mR/s
    constexpr double kMqsaOutput = 513;  // mR/s
    const std::string shown = Shown(rate);
    State().cells.Dose82 = ReadNumber(shown) >= kAcrOutput ? kPassed : kFailed;
    State().cells.Dose75 = ReadNumber(shown) >= kMqsaOutput ? kPassed : kFailed;
    return row.Add(shown).Add(Shown(Named(rate) * kMilligrayPerMilliroentgen)).Take();
}

struct DetectorRow {
    int32_t testId;
    std::string (*build)(const ReadingContext&, const ZrdReading&);
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

}  // namespace

std::string BuildDetectorResult(const ReadingContext& context, const ZrdReading& reading) {
    for (const DetectorRow& row : kDetectorRows)
        if (row.testId == context.config.pTestID) return row.build(context, reading);
    return {};
}

std::string BuildDosimeterResult(const ReadingContext& context, const PelomarkReading& r) {
    const CConfigCommon& config = context.config;
    const bool doseMode = config.PKMode == 0;
    RowBuilder row;
    row.Add(ImportFlag(context));
    if (config.pTestID == kRadioLinearity)
        row.AddReading(TableCell(context, table_column::kLinearityAdjacent));
    if (doseMode) row.AddReading(r.dose);
    row.AddAll({r.doseRate, r.temperature, r.pressure, r.adcf, r.biasVoltage, r.leakCurrent});
    if (config.pTestID == kRadioRepro) {
        if (doseMode)
            AddStatistics(row, context, {{key::kExposure, r.dose}, {key::kExposureRate, r.doseRate}});
        else
            AddStatistics(row, context, {{key::kExposureRate, r.doseRate}});
    } else if (config.pTestID == kMammoAec && doseMode) {
        const GlandularDose dose =
            ComputeGlandularDose(context, r.dose, config.PKDoseUnit != 0 ? 0.000001 : 0.001);
        row.Add(dose.energyCorrectedMean).Add(dose.standardDeviation).Add(dose.cv);
        row.Add(dose.skinExposure).Add(dose.factor).Add(dose.dose.empty() ? "0" : dose.dose);
    }
    return row.Take();
}

std::string BuildMasResult(const ReadingContext& context, const MasReading& r) {
    RowBuilder row;
    row.Add(ImportFlag(context));
    row.AddAll({r.ma, r.mas, r.masPerPulse, r.dosePerMas});
    if (context.config.pTestID == kRadioRepro)
        AddStatistics(row, context,
                      {{key::kMa, r.ma},
                       {key::kMas, r.mas},
                       {key::kMasPulse, r.masPerPulse},
                       {key::kDoseMas, r.dosePerMas}});
    return row.Take();
}

}  // namespace vorex

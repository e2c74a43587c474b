#include "results/derived_values.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/number_text.h"
#include "foundation/test_sets.h"
#include "foundation/utilities.h"
#include "foundation/verdict_figures.h"
#include "foundation/vocabulary.h"
#include "mqsa/mammo_calculation.h"
#include "results/result_columns.h"

namespace vorex {

namespace {

/// Collects the fields of a row.
class RowBuilder {
  public:
    RowBuilder() { mRow.fields.reserve(kMostFields); }

    RowBuilder& Add(std::string_view columnKey, std::string text) {
        mRow.fields.push_back({columnKey, std::move(text)});
        return *this;
    }
    /// A number from an instrument or the table, with a decimal point.
    RowBuilder& AddReading(std::string_view columnKey, std::string_view reading) {
        std::string& text = mRow.fields.emplace_back(RowField{columnKey, std::string(reading)}).text;
        std::replace(text.begin(), text.end(), ',', '.');
        return *this;
    }
    const std::vector<RowField>& Fields() const { return mRow.fields; }
    std::string TextOf(std::string_view columnKey) const {
        const auto at = std::find_if(mRow.fields.begin(), mRow.fields.end(),
                                     [&](const RowField& field) { return field.key == columnKey; });
        return at == mRow.fields.end() ? std::string() : at->text;
    }
    void ForNext(std::string_view columnKey, std::string text) {
        mRow.next.push_back({columnKey, std::move(text)});
    }
    SurveyOutcomes& Outcomes() { return mRow.outcomes; }
    DerivedRow Take() { return std::move(mRow); }

  private:
    static constexpr std::size_t kMostFields = 24;
    DerivedRow mRow;
};

/// A named quantity is rounded to the 15 significant digits that its text shows.
double Named(double value) {
    return PlainValue(value);
}

std::string Shown(double value) {
    return FormatPicture(value, kTwoDecimals);
}
std::string Shown(const std::optional<double>& value) {
    return value ? Shown(*value) : std::string();
}

std::string TableCell(const ReadingContext& context, ExposureColumn column) {
    return context.config.GetValue(context.exposureIndex, column);
}
double TableNumber(const ReadingContext& context, ExposureColumn column) {
    return ReadNumber(TableCell(context, column));
}

/// The fields that every row begins with.
RowBuilder BeginRow(const ReadingContext& context) {
    const bool planned = context.config.pNoOfExposures > 0;
    RowBuilder row;
    row.AddReading(key::kImportWaveform,
                   planned ? TableCell(context, ExposureColumn::kImport) : std::string());
    return row;
}

void AddAdjacentFlag(RowBuilder& row, const ReadingContext& context) {
    if (context.config.pTestID == kRadioLinearity)
        row.AddReading(key::kAdjacent, TableCell(context, ExposureColumn::kAdjacent));
}

/// A column and its new reading.
struct ColumnReading {
    std::string_view key;
    std::string_view reading;
    const CMeasurement* working = nullptr;  ///< cell of the working row; null for a column that it lacks
    std::size_t place = 0;                  ///< of that cell
};

/// The readings of a column over the test; unusable if any is an over-range or under-range mark.
struct History {
    std::vector<double> values;
    bool usable = true;

    void Take(std::optional<double> reading) {
        usable = usable && reading.has_value();
        if (usable) values.push_back(*reading);
    }
};

/// The cell of a column in a stored row, or null. It is usually at the same index as in the working row, and
/// shares its labels.
const CMeasurement* FindStored(const MeasurementRow& row, const ColumnReading& column) {
    const bool same = column.working != nullptr && column.place < row.size() &&
                      row[column.place]->SharesLabels(*column.working);
    return same ? row[column.place].get() : FindMeasurement(row, column.key);
}

ColumnReading MakeColumnReading(const ReadingContext& context, std::string_view columnKey,
                                std::string_view reading, std::size_t likelyPlace) {
    const MeasurementRow& working = context.result.Current();
    const bool there = likelyPlace < working.size() && working[likelyPlace]->RawKey() == columnKey;
    const std::size_t place = there ? likelyPlace : ColumnNumber(working, columnKey) - std::size_t{1};
    return {columnKey, reading, place < working.size() ? working[place].get() : nullptr, place};
}

/// Visits the stored rows that count together with the new reading, and the position of that reading among
/// them.
template <typename Stored, typename New>
void ForEachExposure(const ReadingContext& context, const Stored& stored, const New& taken) {
    const auto& rows = context.result.Rows();
    const std::size_t index = context.exposureIndex;
    const std::size_t count = index > 0 || context.redo ? rows.size() : 0;
    for (std::size_t row = 0; row < std::min(index, count); ++row)
        if (context.result.HasReading(row)) stored(*rows[row]);
    taken();
    for (std::size_t row = index + 1; row < count; ++row)
        if (context.result.HasReading(row)) stored(*rows[row]);
}

/// Readings of columns over the test, with the new ones in their positions. Exposures without a reading are
/// left out.
std::vector<History> ColumnHistories(const ReadingContext& context, std::span<const ColumnReading> columns) {
    std::vector<History> histories(columns.size());
    for (History& history : histories) history.values.reserve(context.result.Rows().size() + 1);
    // Row by row, the order in memory: each exposure of a long test reads all rows.
    ForEachExposure(
        context,
        [&](const MeasurementRow& row) {
            for (std::size_t i = 0; i < columns.size(); ++i)
                if (const CMeasurement* cell = FindStored(row, columns[i]))
                    histories[i].Take(cell->Reading());
        },
        [&] {
            for (std::size_t i = 0; i < columns.size(); ++i) {
                const std::string_view reading = columns[i].reading;
                histories[i].Take(IsValidReading(reading) ? std::optional(ReadNumber(reading))
                                                          : std::nullopt);
            }
        });
    return histories;
}

double PlainSumOf(const std::vector<double>& values) {
    return std::accumulate(values.begin(), values.end(), 0.0);
}
double SumOf(const std::vector<double>& values) {
    return Named(PlainSumOf(values));
}

struct MeanAndCv {
    std::string mean;
    std::string cv;
};

MeanAndCv MeanAndVariation(const History& history) {
    if (!history.usable || history.values.empty()) return {};
    const double sum = PlainSumOf(history.values);
    const double mean = Named(Named(sum) / static_cast<double>(history.values.size()));
    if (mean <= 0) return {PlainText(mean), {}};
    return {Shown(mean), Shown(SampleStdDev(history.values, sum) / mean)};
}

/// The Dose/mAs that the result stores when this reading of the mAs meter arrives.
std::string StoredDosePerMas(const ReadingContext& context, const RowBuilder& row) {
    const CResultCommon& result = context.result;
    const bool combined = result.DetectorName == kZrdAndMas || result.DetectorName == kPelomarkAndMas;
    const CMeasurement* exposure = FindMeasurement(result.Current(), key::kExposure);
    if (!combined || exposure == nullptr || exposure->ValueText().empty()) return {};
    return DosePerMas(exposure->ValueText(), row.TextOf(key::kMas));
}

/// Adds the means of the columns that have statistics, then their coefficients of variation.
void AddStatistics(RowBuilder& row, const ReadingContext& context) {
    std::vector<StatisticColumns> statistics;
    std::vector<ColumnReading> readings;
    statistics.reserve(row.Fields().size());
    readings.reserve(row.Fields().size());
    std::string dosePerMas;
    for (const RowField& field : row.Fields()) {
        const auto place = static_cast<std::size_t>(&field - row.Fields().data());
        ColumnReading reading = MakeColumnReading(context, field.key, field.text, place);
        const ColumnFacts& facts = reading.working != nullptr ? reading.working->Facts() : FactsOf(field.key);
        if (facts.statistics.mean.empty()) continue;
        if (field.key == key::kDoseMas) dosePerMas = StoredDosePerMas(context, row);
        if (field.key == key::kDoseMas && !dosePerMas.empty()) reading.reading = dosePerMas;
        statistics.push_back(facts.statistics);
        readings.push_back(reading);
    }
    std::vector<MeanAndCv> values;
    for (const History& history : ColumnHistories(context, readings))
        values.push_back(MeanAndVariation(history));
    for (std::size_t i = 0; i < values.size(); ++i) row.Add(statistics[i].mean, std::move(values[i].mean));
    for (std::size_t i = 0; i < values.size(); ++i) row.Add(statistics[i].variation, std::move(values[i].cv));
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

/// The flags and readings at the beginning of the rows of most tests.
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
    const double set = TableNumber(context, ExposureColumn::kKv);
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
                Shown(PercentError(r.exposureTime, TableNumber(context, ExposureColumn::kTime))));
    return row.Take();
}

/// Exposure per mAs: the set mAs, or the set mA times the measured time.
std::string ExposurePerMas(const ReadingContext& context, const ZrdReading& r) {
    const double exposure = ReadNumber(r.exposure);
    const double set = TableNumber(context, ExposureColumn::kMasOrMa);
    if (!(exposure > 0) || !(set > 0)) return {};
    if (context.config.pGeneratorSetup == kSetupMas) return Shown(exposure / set);
    const double time = ReadNumber(r.exposureTime);
    if (context.config.pMeasurementTimeUnit != kMilliseconds || !(time > 0)) return {};
    constexpr double kSecondsPerMs = 0.001;
    return Shown(exposure / (set * time * kSecondsPerMs));
}

/// |X1 - X2| <= L (X1 + X2): the coefficient of linearity of 21 CFR 1020.31(c). Empty without both.
std::string Linearity(const std::string& perMas, const std::string& other) {
    const double present = ReadNumber(perMas);
    const double previous = ReadNumber(other);
    if (perMas.empty() || !(present + previous > 0)) return {};
    return Shown(std::abs(present - previous) / (present + previous));
}

std::string StoredPerMas(const MeasurementRow& row) {
    const CMeasurement* cell = FindMeasurement(row, key::kExposurePerMas);
    return cell == nullptr ? std::string() : cell->ValueText();
}

DerivedRow RadiographyLinearity(const ReadingContext& context, const ZrdReading& r) {
    RowBuilder row = BaseRow(context, r);
    const std::string perMas = ExposurePerMas(context, r);
    const auto& rows = context.result.Rows();
    const auto hasReading = [](const auto& stored) { return !stored->empty(); };
    const auto begin = rows.begin();
    const auto index = std::min<std::ptrdiff_t>(context.exposureIndex, std::ssize(rows));
    const auto before = std::find_if(std::make_reverse_iterator(begin + index), rows.rend(), hasReading);
    row.Add(key::kExposurePerMas, perMas);
    row.Add(key::kErNonAdjacent, before == rows.rend() ? "" : Linearity(perMas, StoredPerMas(**before)));
    const auto after = std::find_if(begin + std::min(index + 1, std::ssize(rows)), rows.end(), hasReading);
    if (after != rows.end()) row.ForNext(key::kErNonAdjacent, Linearity(StoredPerMas(**after), perMas));
    return row.Take();
}

/// Tests 500 and 700: readings, with the pulse columns if the mode has them. The time is shown in any unit.
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
    const double set = TableNumber(context, ExposureColumn::kKv);
    return FluoroscopyRow(context, r, key::kExposureRate)
        .Add(key::kFluoroKvpError, Shown(PercentError(r.kvpAvg, set)))
        .Take();
}

DerivedRow FluoroscopyExposure(const ReadingContext& context, const ZrdReading& r) {
    return FluoroscopyRow(context, r, key::kMaxExposureRate)
        .AddReading(key::kPhantomThickness, TableCell(context, ExposureColumn::kThickness))
        .Add(key::kMode, TableCell(context, ExposureColumn::kMode))
        .Take();
}

/// Tube voltages of the test so far. Marks among earlier readings count as 0; only the new reading decides
/// whether the statistics are shown.
std::vector<double> VoltagesSoFar(const ReadingContext& context, std::string_view reading) {
    std::vector<double> values;
    ForEachExposure(
        context,
        [&](const MeasurementRow& row) {
            if (const CMeasurement* cell = FindMeasurement(row, key::kKvpAvg, 1))
                values.push_back(NumberOf(cell->RawValue()));
        },
        [&] { values.push_back(ReadNumber(reading)); });
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

/// The number of a formatted value for the survey; 0 if it is empty.
int32_t OutcomeBy(const VerdictFigure& figure, std::string_view shown) {
    return figure.Excludes(ReadNumber(shown)) ? kFailed : kPassed;
}

/// The six derived values of test 1100, formatted; empty for a value that cannot be computed.
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
    const ColumnReading column = MakeColumnReading(context, key::kExposure, reading, 0);
    History history = ColumnHistories(context, {&column, 1}).front();
    std::vector<double>& exposures = history.values;
    if (history.usable) {
        for (double& exposure : exposures) exposure = Named(exposure * unitFactor);
        const CConfigCommon& config = context.config;
        const double mean = Named(SumOf(exposures) / static_cast<double>(exposures.size()));
        const double corrected = Named(ReadNumber(config.pEnergyCorrectionFactor) * mean);
        const double deviation = Named(SampleStdDev(exposures));
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

/// Adds the rest of the chain, and its outcomes for the survey: a value that cannot be computed reads as 0.
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

static_assert(HasOneRowPerMeasuringTest(kDetectorRows));

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

std::string DosePerMas(const std::string& exposure, const std::string& mas) {
    if (!IsValidReading(exposure) || !IsValidReading(mas) || !(ReadNumber(mas) > 0)) return {};
    return PlainText(ReadNumber(exposure) / ReadNumber(mas));
}

std::vector<RowField> StatisticsOfColumn(const CResultCommon& result, std::string_view columnKey) {
    const StatisticColumns& columns = FactsOf(columnKey).statistics;
    if (columns.mean.empty() || result.TestId != kRadioRepro) return {};
    History history;
    for (const auto& row : result.Rows())
        if (const CMeasurement* cell = FindMeasurement(*row, columnKey)) history.Take(cell->Reading());
    MeanAndCv statistics = MeanAndVariation(history);
    return {{columns.mean, std::move(statistics.mean)}, {columns.variation, std::move(statistics.cv)}};
}

}  // namespace vorex

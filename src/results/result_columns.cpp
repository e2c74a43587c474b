#include "results/result_columns.h"

#include <algorithm>
#include <unordered_map>

#include "foundation/test_sets.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

constexpr KindSet kBothZrd = {kZrdAndMas};
constexpr KindSet kMasAlone = {kMasMeter};

/// The unit of a column: a fixed key, or one that the configuration chooses.
enum class UnitRule {
    kNone,
    kPercent,
    kKv,
    kVolt,
    kMa,
    kMas,
    kPicoampere,
    kMmAl,
    kPulses,
    kPulsesPerSecond,
    kMs,
    kExposure,
    kRate,
    kTime,
    kExposurePerMas,
    kDose,
    kDoseRate,
    kTemperature,
    kPressure,
    kRoentgenOrGray,
    kMilliradPerR,
    kMillirad,
    kOutputRate,
    kAirKermaRate,
};

/// The condition for a column to exist.
enum class When { kAlways, kTimeBase, kPulseBase, kPulsedFluoro, kDoseMode, kMaTimeSetup };

struct ColumnRow {
    TestSet tests;
    KindSet kinds;
    std::string_view key;
    std::string_view caption;
    UnitRule unit;
    int32_t type;
    unsigned flags;
    std::string_view picture = {};
    When when = When::kAlways;
    std::string_view of = {};  ///< column that a mean or a coefficient of variation is computed from
};

constexpr TestSet kFluoroTests = kFluoroscopy;
constexpr TestSet kNotExposure = TestSet::AllBut(kFluoroExposure);
constexpr TestSet kLinearity = kRadioLinearity;
constexpr TestSet kRepro = kRadioRepro;
constexpr TestSet kAec = kMammoAec;
constexpr TestSet kAccRepro = kMammoAccRepro;
constexpr TestSet kAccuracy = kRadioAccuracy;
constexpr TestSet kOutput = kMammoRadiation;

constexpr int32_t kText = kTextOnly;
constexpr int32_t kNumber = kJudgedNumber;

// clang-format off
constexpr ColumnRow kReadings[] = {
    // tests, kinds, key, caption, unit, type, flags, picture, when, of
    {kAllTests,                kZrdKinds | kPelomarkKinds, key::kImportWaveform,   text::kImportWaveform,   UnitRule::kNone,            kText, kCheckMark | kAlwaysShown | kOfEveryReading},
    {kLinearity,               kZrdKinds | kPelomarkKinds, key::kAdjacent,         text::kAdjacent,         UnitRule::kNone,            kText, kCheckMark},
    {kAllTests,                kZrdKinds,                  key::kKvpAvg,           text::kKvpAvg,           UnitRule::kKv,              kText, kHasPreset | kQuantity},
    {kAllTests,                kZrdKinds,                  key::kKvpMax,           text::kKvpMax,           UnitRule::kKv,              kText, kHasPreset | kQuantity},
    {kAllTests,                kZrdKinds,                  key::kKvPpv,            text::kKvPpv,            UnitRule::kKv,              kText, kHasPreset | kQuantity},
    {kAllTests,                kZrdKinds,                  key::kExposure,         text::kExposure,         UnitRule::kExposure,        kText, kQuantity},
    {kNotExposure,             kZrdKinds,                  key::kExposureRate,     text::kExposureRate,     UnitRule::kRate,            kText, kQuantity},
    {kFluoroExposure,          kZrdKinds,                  key::kMaxExposureRate,  text::kExposureRate,     UnitRule::kRate,            kText, kJudged | kLoadsAsNumber},
    {kAllTests,                kZrdKinds,                  key::kExposureTime,     text::kExposureTime,     UnitRule::kTime,            kText, kQuantity,                 {},            When::kTimeBase},
    {kAllTests,                kZrdKinds,                  key::kExposureInPulses, text::kExposureInPulses, UnitRule::kPulses,          kText, kQuantity,                 {},            When::kPulseBase},
    {kFluoroTests,             kZrdKinds,                  key::kPulseRate,        text::kPulseRate,        UnitRule::kPulsesPerSecond, kText, 0,                         {},            When::kPulsedFluoro},
    {kFluoroTests,             kZrdKinds,                  key::kPulseWidth,       text::kPulseWidth,       UnitRule::kMs,              kText, 0,                         {},            When::kPulsedFluoro},
    {kAllTests,                kZrdKinds,                  key::kHvl,              text::kHvl,              UnitRule::kMmAl,            kText, kQuantity},

    {kAllTests,                kPelomarkKinds,             key::kExposure,         text::kDose,             UnitRule::kDose,            kText, kQuantity,                 {},            When::kDoseMode},
    {kAllTests,                kPelomarkKinds,             key::kExposureRate,     text::kDoseRate,         UnitRule::kDoseRate,        kText, kQuantity},
    {kAllTests,                kPelomarkKinds,             key::kTemperature,      text::kTemperature,      UnitRule::kTemperature,     kText, kAlwaysShown,              kFourDecimals},
    {kAllTests,                kPelomarkKinds,             key::kPressure,         text::kPressure,         UnitRule::kPressure,        kText, kAlwaysShown,              kFourDecimals},
    {kAllTests,                kPelomarkKinds,             key::kAdcf,             text::kAdcf,             UnitRule::kNone,            kText, kAlwaysShown,              kFourDecimals},
    {kAllTests,                kPelomarkKinds,             key::kBiasVoltage,      text::kBiasVoltage,      UnitRule::kVolt,            kText, kAlwaysShown,              kFourDecimals},
    {kAllTests,                kPelomarkKinds,             key::kLeakCurrent,      text::kLeakCurrent,      UnitRule::kPicoampere,      kText, kAlwaysShown,              kFourDecimals},
};

constexpr ColumnRow kMasReadings[] = {
    {kAllTests, kMasAlone, key::kImportWaveform, text::kImportWaveform, UnitRule::kNone, kText,   kCheckMark | kAlwaysShown | kOfEveryReading},
    {kAllTests, kMasKinds, key::kMa,             text::kMa,             UnitRule::kMa,   kNumber, kOfMasMeter,               kFourDecimals},
    {kAllTests, kMasKinds, key::kMas,            text::kMas,            UnitRule::kMas,  kNumber, kOfMasMeter,               kFourDecimals},
    {kAllTests, kMasKinds, key::kMasPulse,       text::kMasPerPulse,    UnitRule::kNone, kNumber, kOfMasMeter,               kFourDecimals},
    {kAllTests, kMasKinds, key::kDoseMas,        text::kDosePerMas,     UnitRule::kNone, kNumber, kOfMasMeter,               kFourDecimals},
};

constexpr ColumnRow kTestColumns[] = {
    {kAccuracy,                kZrdKinds,                  key::kPercentKvpError,       text::kPercentKvpAvgError,     UnitRule::kPercent,        kNumber, kJudged | kLoadsAsNumber,             kFourDecimals},
    {kAccuracy,                kZrdKinds,                  key::kAbsoluteKvpError,      text::kAbsoluteKvpAvgError,    UnitRule::kKv,             kNumber, kJudged | kLoadsAsNumber,             kTwoDecimals},
    {kAccuracy,                kZrdKinds,                  key::kPercentTimerError,     text::kPercentTimerError,      UnitRule::kPercent,        kNumber, kJudged | kLoadsAsNumber,             kFourDecimals, When::kMaTimeSetup},

    {kLinearity,               kZrdKinds,                  key::kExposurePerMas,        text::kExposurePerMas,         UnitRule::kExposurePerMas, kText,   0},
    {kLinearity,               kZrdKinds,                  key::kErNonAdjacent,         text::kCoefficientOfLinearity, UnitRule::kNone,           kNumber, kJudged,                              kFourDecimals},

    {kFluoroAccuracy,          kZrdKinds,                  key::kFluoroKvpError,        text::kPercentKvpAvgError,     UnitRule::kPercent,        kNumber, kJudged | kLoadsAsNumber,             kFourDecimals},
    {kFluoroExposure,          kZrdKinds,                  key::kPhantomThickness,      text::kPhantomThickness,       UnitRule::kNone,           kText,   kTypedText},
    {kFluoroExposure,          kZrdKinds,                  key::kMode,                  text::kFluoroMode,             UnitRule::kNone,           kText,   kTypedText},

    {kAccRepro,                kZrdKinds,                  key::kHalfMeanKvp,           text::kHalfMeanKvp,            UnitRule::kKv,             kText,   kTestWide},
    {kAccRepro,                kZrdKinds,                  key::kHalfStandardDeviation, text::kHalfStandardDeviation,  UnitRule::kNone,           kText,   kTestWide},
    {kAccRepro,                kZrdKinds,                  key::kMeanKvp,               text::kMeanKvp,                UnitRule::kKv,             kText,   kTestWide},
    {kAccRepro,                kZrdKinds,                  key::kStandardDeviation,     text::kStandardDeviation,      UnitRule::kNone,           kText,   kTestWide},
    {kAccRepro,                kZrdKinds,                  key::kMeanMinusNominal,      text::kMeanMinusNominal,       UnitRule::kKv,             kText,   kTestWide},
    {kAccRepro,                kZrdKinds,                  key::kFivePercentNominal,    text::kFivePercentNominal,     UnitRule::kKv,             kText,   kTestWide},
    {kAccRepro,                kZrdKinds,                  key::kPercentError,          text::kPercentError,           UnitRule::kPercent,        kNumber, kJudged | kLoadsAsNumber | kTestWide, kFourDecimals},
    {kAccRepro,                kZrdKinds,                  key::kCv,                    text::kCv,                     UnitRule::kNone,           kNumber, kJudged | kLoadsAsNumber | kTestWide, kFourDecimals},

    {kAec,                     kZrdKinds,                  key::kEnergyCorrectedMean,   text::kEnergyCorrectedMean,    UnitRule::kRoentgenOrGray, kText,   kTestWide},
    {kAec,                     kZrdKinds,                  key::kStandardDeviations,    text::kSdExposure,             UnitRule::kNone,           kText,   kTestWide},
    {kAec,                     kZrdKinds,                  key::kCvExposure,            text::kCvExposure,             UnitRule::kNone,           kNumber, kJudged | kLoadsAsNumber | kTestWide, kFourDecimals},
    {kAec,                     kZrdKinds,                  key::kCvMasSettings,         text::kCvMasOfSettings,        UnitRule::kNone,           kNumber, kJudged | kLoadsAsNumber | kTestWide, kFourDecimals},
    {kAec,                     kPelomarkKinds,             key::kEnergyCorrectedMean,   text::kEnergyCorrectedMean,    UnitRule::kDose,           kText,   kTestWide,                            {},            When::kDoseMode},
    {kAec,                     kPelomarkKinds,             key::kStandardDeviations,    text::kSdDose,                 UnitRule::kNone,           kText,   kTestWide,                            {},            When::kDoseMode},
    {kAec,                     kPelomarkKinds,             key::kCvExposure,            text::kCvDose,                 UnitRule::kNone,           kNumber, kJudged | kLoadsAsNumber | kTestWide, kFourDecimals, When::kDoseMode},
    {kAec,                     kZrdKinds | kPelomarkKinds, key::kSkinExposure,          text::kSkinExposure,           UnitRule::kNone,           kText,   kTestWide,                            {},            When::kDoseMode},
    {kAec,                     kZrdKinds | kPelomarkKinds, key::kDoseConversionFactor,  text::kDoseConversionFactor,   UnitRule::kMilliradPerR,   kText,   kTestWide,                            {},            When::kDoseMode},
    {kAec,                     kZrdKinds | kPelomarkKinds, key::kGlandularDose,         text::kGlandularDose,          UnitRule::kMillirad,       kNumber, kJudged | kLoadsAsNumber | kTestWide, kFourDecimals, When::kDoseMode},

    {kOutput,                  kZrdKinds,                  key::kOutputRate,            text::kExposureRate,           UnitRule::kOutputRate,     kNumber, kJudged | kLoadsAsNumber,             kFourDecimals},
    {kOutput,                  kZrdKinds,                  key::kAirKermaRate,          text::kAirKermaRate,           UnitRule::kAirKermaRate,   kNumber, kJudged | kLoadsAsNumber,             kFourDecimals},

    {kRepro,                   kZrdKinds,                  key::kAvgKvpAvg,             text::kAvgKvpAvg,              UnitRule::kKv,             kText,   kMean,                                {},            When::kAlways,      key::kKvpAvg},
    {kRepro,                   kZrdKinds,                  key::kAvgKvpMax,             text::kAvgKvpMax,              UnitRule::kKv,             kText,   kMean,                                {},            When::kAlways,      key::kKvpMax},
    {kRepro,                   kZrdKinds,                  key::kAvgKvPpv,              text::kAvgKvPpv,               UnitRule::kKv,             kText,   kMean,                                {},            When::kAlways,      key::kKvPpv},
    {kRepro,                   kZrdKinds,                  key::kAvgExposure,           text::kAvgExposure,            UnitRule::kExposure,       kText,   kMean,                                {},            When::kAlways,      key::kExposure},
    {kRepro,                   kZrdKinds,                  key::kAvgExposureRate,       text::kAvgExposureRate,        UnitRule::kRate,           kText,   kMean,                                {},            When::kAlways,      key::kExposureRate},
    {kRepro,                   kZrdKinds,                  key::kAvgExposureTime,       text::kAvgExposureTime,        UnitRule::kTime,           kText,   kMean,                                {},            When::kTimeBase,    key::kExposureTime},
    {kRepro,                   kZrdKinds,                  key::kAvgExposureInPulses,   text::kAvgExposureInPulses,    UnitRule::kPulses,         kText,   kMean,                                {},            When::kPulseBase,   key::kExposureInPulses},
    {kRepro,                   kZrdKinds,                  key::kAvgHvl,                text::kAvgHvl,                 UnitRule::kMmAl,           kText,   kMean,                                {},            When::kAlways,      key::kHvl},
    {kRepro,                   kBothZrd,                   key::kAvgMa,                 text::kAvgMa,                  UnitRule::kMa,             kNumber, kOfMasMeter | kMean,                  kFourDecimals, When::kAlways,      key::kMa},
    {kRepro,                   kBothZrd,                   key::kAvgMas,                text::kAvgMas,                 UnitRule::kMas,            kNumber, kOfMasMeter | kMean,                  kFourDecimals, When::kAlways,      key::kMas},
    {kRepro,                   kBothZrd,                   key::kAvgMasPulse,           text::kAvgMasPerPulse,         UnitRule::kNone,           kNumber, kOfMasMeter | kMean,                  kFourDecimals, When::kAlways,      key::kMasPulse},
    {kRepro,                   kBothZrd,                   key::kAvgDoseMas,            text::kAvgDosePerMas,          UnitRule::kNone,           kNumber, kOfMasMeter | kMean,                  kFourDecimals, When::kAlways,      key::kDoseMas},
    {kRepro,                   kZrdKinds,                  key::kErKvpAvg,              text::kCvKvpAvg,               UnitRule::kNone,           kNumber, kJudged | kCvOfReadings,                 kFourDecimals, When::kAlways,      key::kKvpAvg},
    {kRepro,                   kZrdKinds,                  key::kErKvpMax,              text::kCvKvpMax,               UnitRule::kNone,           kNumber, kJudged | kCvOfReadings,                 kFourDecimals, When::kAlways,      key::kKvpMax},
    {kRepro,                   kZrdKinds,                  key::kErKvPpv,               text::kCvKvPpv,                UnitRule::kNone,           kNumber, kJudged | kCvOfReadings,                 kFourDecimals, When::kAlways,      key::kKvPpv},
    {kRepro,                   kZrdKinds,                  key::kErExposure,            text::kCvExposure,             UnitRule::kNone,           kNumber, kCvOfReadings,                           kFourDecimals, When::kAlways,      key::kExposure},
    {kRepro,                   kZrdKinds,                  key::kErExposureRate,        text::kCvExposureRate,         UnitRule::kNone,           kNumber, kCvOfReadings,                           kFourDecimals, When::kAlways,      key::kExposureRate},
    {kRepro,                   kZrdKinds,                  key::kErExposureTime,        text::kCvExposureTime,         UnitRule::kNone,           kNumber, kCvOfReadings,                           kFourDecimals, When::kTimeBase,    key::kExposureTime},
    {kRepro,                   kZrdKinds,                  key::kErExposureInPulses,    text::kCvExposureInPulses,     UnitRule::kNone,           kNumber, kCvOfReadings,                           kFourDecimals, When::kPulseBase,   key::kExposureInPulses},
    {kRepro,                   kZrdKinds,                  key::kErHvl,                 text::kCvHvl,                  UnitRule::kNone,           kNumber, kCvOfReadings,                           kFourDecimals, When::kAlways,      key::kHvl},
    {kRepro,                   kBothZrd,                   key::kCvMa,                  text::kCvMa,                   UnitRule::kMa,             kNumber, kOfMasMeter | kCoefficient,           kFourDecimals, When::kAlways,      key::kMa},
    {kRepro,                   kBothZrd,                   key::kCvMas,                 text::kCvMas,                  UnitRule::kMas,            kNumber, kOfMasMeter | kCoefficient,           kFourDecimals, When::kAlways,      key::kMas},
    {kRepro,                   kBothZrd,                   key::kCvMasPulse,            text::kCvMasPerPulse,          UnitRule::kNone,           kNumber, kOfMasMeter | kCoefficient,           kFourDecimals, When::kAlways,      key::kMasPulse},
    {kRepro,                   kBothZrd,                   key::kCvDoseMas,             text::kCvDosePerMas,           UnitRule::kNone,           kNumber, kOfMasMeter | kCoefficient,           kFourDecimals, When::kAlways,      key::kDoseMas},

    {kRepro,                   kPelomarkKinds,             key::kAvgExposure,           text::kAvgDose,                UnitRule::kDose,           kText,   kMean,                                {},            When::kDoseMode,    key::kExposure},
    {kRepro,                   kPelomarkKinds,             key::kAvgExposureRate,       text::kAvgDoseRate,            UnitRule::kDoseRate,       kText,   kMean,                                {},            When::kAlways,      key::kExposureRate},
    {kRepro,                   kPelomarkKinds,             key::kErExposure,            text::kCvDoseOfExposures,      UnitRule::kNone,           kNumber, kCvOfReadings,                           kFourDecimals, When::kDoseMode,    key::kExposure},
    {kRepro,                   kPelomarkKinds,             key::kErExposureRate,        text::kCvDoseRate,             UnitRule::kNone,           kNumber, kCvOfReadings,                           kFourDecimals, When::kAlways,      key::kExposureRate},
};

/// Statistics of the mAs meter for the detector kinds whose test columns do not include them.
constexpr KindSet kMasStatisticsKinds = {kMasMeter, kPelomarkAndMas};
constexpr ColumnRow kMasStatistics[] = {
    {kRepro, kMasStatisticsKinds, key::kAvgMa,       text::kAvgMa,          UnitRule::kMa,   kNumber, kOfMasMeter | kMean,        kFourDecimals, When::kAlways, key::kMa},
    {kRepro, kMasStatisticsKinds, key::kAvgMas,      text::kAvgMas,         UnitRule::kMas,  kNumber, kOfMasMeter | kMean,        kFourDecimals, When::kAlways, key::kMas},
    {kRepro, kMasStatisticsKinds, key::kAvgMasPulse, text::kAvgMasPerPulse, UnitRule::kNone, kNumber, kOfMasMeter | kMean,        kFourDecimals, When::kAlways, key::kMasPulse},
    {kRepro, kMasStatisticsKinds, key::kAvgDoseMas,  text::kAvgDosePerMas,  UnitRule::kNone, kNumber, kOfMasMeter | kMean,        kFourDecimals, When::kAlways, key::kDoseMas},
    {kRepro, kMasStatisticsKinds, key::kCvMa,        text::kCvMa,           UnitRule::kMa,   kNumber, kOfMasMeter | kCoefficient, kFourDecimals, When::kAlways, key::kMa},
    {kRepro, kMasStatisticsKinds, key::kCvMas,       text::kCvMas,          UnitRule::kMas,  kNumber, kOfMasMeter | kCoefficient, kFourDecimals, When::kAlways, key::kMas},
    {kRepro, kMasStatisticsKinds, key::kCvMasPulse,  text::kCvMasPerPulse,  UnitRule::kNone, kNumber, kOfMasMeter | kCoefficient, kFourDecimals, When::kAlways, key::kMasPulse},
    {kRepro, kMasStatisticsKinds, key::kCvDoseMas,   text::kCvDosePerMas,   UnitRule::kNone, kNumber, kOfMasMeter | kCoefficient, kFourDecimals, When::kAlways, key::kDoseMas},
};
// clang-format on

bool Applies(const ColumnRow& row, const CConfigCommon& config) {
    const int32_t kind = config.DetectorName;
    if (!row.kinds.Has(kind)) return false;
    if (!row.tests.Has(config.pTestID)) return false;
    const bool fluoro = config.pMeasurementMode == kFluoro;
    const bool pulses = !fluoro && config.pMeasurementTimeUnit != kMilliseconds;
    switch (row.when) {
        case When::kTimeBase:
            return !pulses;
        case When::kPulseBase:
            return pulses;
        case When::kPulsedFluoro:
            return fluoro && config.pMeasurementFluoroType == kPulsed;
        case When::kDoseMode:
            return HasZrd(config.DetectorName) || config.PKMode == 0;
        case When::kMaTimeSetup:
            return config.pGeneratorSetup == kSetupMaTime;
        case When::kAlways:
            break;
    }
    return true;
}

std::string UnitOf(UnitRule rule, const CConfigCommon& config) {
    const int32_t mode = config.pMeasurementMode;
    const int32_t exposure = config.pMeasurementExposure;
    switch (rule) {
        case UnitRule::kNone:
            return {};
        case UnitRule::kPercent:
            return std::string(text::kUnitPercent);
        case UnitRule::kKv:
            return std::string(text::kUnitKv);
        case UnitRule::kVolt:
            return std::string(text::kUnitVolt);
        case UnitRule::kMa:
            return std::string(text::kMa);
        case UnitRule::kMas:
            return std::string(text::kMas);
        case UnitRule::kPicoampere:
            return std::string(text::kUnitPicoampere);
        case UnitRule::kMmAl:
            return std::string(text::kUnitMmAl);
        case UnitRule::kPulses:
            return std::string(text::kTimePulses);
        case UnitRule::kPulsesPerSecond:
            return std::string(text::kUnitPulsesPerSecond);
        case UnitRule::kMs:
            return std::string(text::kUnitMs);
        case UnitRule::kExposure:
            return std::string(ExposureUnitKey(mode, exposure));
        case UnitRule::kRate:
            return std::string(ExposureRateUnitKey(mode, exposure, config.pMeasurementExposureRateUnit));
        case UnitRule::kTime:
            return std::string(TimeUnitKey(mode));
        case UnitRule::kExposurePerMas:
            return std::string(ExposurePerMasUnitKey(mode, exposure));
        case UnitRule::kDose:
            return std::string(TextKeyOf(kDoseUnits, config.PKDoseUnit));
        case UnitRule::kDoseRate:
            return DosimeterRateUnitKey(config.PKDoseUnit, config.PKDoseRateUnit);
        case UnitRule::kTemperature:
            return std::string(TextKeyOf(kTemperatureUnits, config.PKTemperatureUnit));
        case UnitRule::kPressure:
            return std::string(TextKeyOf(kPressureUnits, config.PKPressureUnit));
        case UnitRule::kRoentgenOrGray:
            return std::string(exposure == kUnitR ? text::kExposureUnitR : text::kExposureUnitGy);
        case UnitRule::kMilliradPerR:
            return std::string(text::kUnitMilliradPerR);
        case UnitRule::kMillirad:
            return std::string(text::kUnitMillirad);
        case UnitRule::kOutputRate:
            return std::string(text::kOutputRateUnit);
        case UnitRule::kAirKermaRate:
            return std::string(text::kAirKermaRateUnit);
    }
    return {};
}

template <std::size_t N>
void AddColumns(const ColumnRow (&table)[N], const CConfigCommon& config, MeasurementRow& row) {
    for (const ColumnRow& column : table) {
        if (!Applies(column, config)) continue;
        auto item = std::make_shared<CMeasurement>();
        item->Initialize(column.key, column.caption, UnitOf(column.unit, config), column.type);
        item->ValueFormat(column.picture);
        if ((column.flags & kHasPreset) != 0) item->PresetValue(config.pMachineKV);
        row.push_back(std::move(item));
    }
}

template <std::size_t N>
const ColumnRow* FindColumn(const ColumnRow (&table)[N], int32_t testId, std::string_view measurementKey) {
    const auto* row = std::find_if(std::begin(table), std::end(table), [&](const ColumnRow& r) {
        return r.tests.Has(testId) && r.key == measurementKey;
    });
    return row == std::end(table) ? nullptr : row;
}

template <typename Visit>
void ForEachColumn(const Visit& visit) {
    for (const ColumnRow& row : kReadings) visit(row);
    for (const ColumnRow& row : kMasReadings) visit(row);
    for (const ColumnRow& row : kTestColumns) visit(row);
    for (const ColumnRow& row : kMasStatistics) visit(row);
}

static_assert(HoldsOwnRows(kOwnColumns, kTestColumns));

constexpr bool EveryKindHasColumns() {
    for (int32_t kind : kDetectorKinds) {
        const auto serves = [kind](const ColumnRow& row) { return row.kinds.Has(kind); };
        if (kind != kNoDetector && std::none_of(std::begin(kReadings), std::end(kReadings), serves) &&
            std::none_of(std::begin(kMasReadings), std::end(kMasReadings), serves))
            return false;
    }
    return true;
}
static_assert(EveryKindHasColumns(), "a detector kind has no columns");

}  // namespace

MeasurementRow BuildColumns(const CConfigCommon& configuration) {
    MeasurementRow row;
    const bool combined =
        configuration.DetectorName == kZrdAndMas || configuration.DetectorName == kPelomarkAndMas;
    const bool statisticsLast = combined && kWithStatistics.Has(configuration.pTestID);
    AddColumns(kReadings, configuration, row);
    if (!statisticsLast) AddColumns(kTestColumns, configuration, row);
    AddColumns(kMasReadings, configuration, row);
    if (statisticsLast) AddColumns(kTestColumns, configuration, row);
    AddColumns(kMasStatistics, configuration, row);
    return row;
}

std::string_view ColumnKeyOf(std::string_view measurementKey) {
    if (IsMaxExposureRate(measurementKey)) return key::kMaxExposureRate;
    return measurementKey == key::kErAdjacent ? key::kErNonAdjacent : measurementKey;
}

const ColumnFacts& FactsOf(std::string_view measurementKey) {
    static const std::unordered_map<std::string_view, ColumnFacts> kFacts = [] {
        std::unordered_map<std::string_view, ColumnFacts> facts;
        ForEachColumn([&](const ColumnRow& row) {
            ColumnFacts& column = facts[row.key];
            column.flags |= row.flags;
            column.tests = column.tests | row.tests;
            if (row.of.empty()) return;
            StatisticColumns& statistics = facts[row.of].statistics;
            ((row.flags & kMean) != 0 ? statistics.mean : statistics.variation) = row.key;
        });
        return facts;
    }();
    static const ColumnFacts kNone;
    const auto at = kFacts.find(ColumnKeyOf(measurementKey));
    return at == kFacts.end() ? kNone : at->second;
}

bool IsVariationRow(std::string_view measurementKey) {
    return FactsOf(measurementKey).Is(kCvOfReadings);
}

bool IsMasFamily(std::string_view measurementKey) {
    return FactsOf(measurementKey).Is(kOfMasMeter);
}

bool IsWaveformQuantity(std::string_view measurementKey) {
    return FactsOf(measurementKey).Is(kQuantity);
}

bool IsFilledBy(int32_t source, const ColumnFacts& column) {
    return source == kSourceMas ? column.Is(kOfMasMeter | kOfEveryReading) : !column.Is(kOfMasMeter);
}

std::string_view PictureOfColumn(int32_t testId, std::string_view measurementKey) {
    measurementKey = ColumnKeyOf(measurementKey);
    const ColumnRow* row = FindColumn(kTestColumns, testId, measurementKey);
    if (row == nullptr) row = FindColumn(kMasStatistics, testId, measurementKey);
    if (row == nullptr) row = FindColumn(kMasReadings, testId, measurementKey);
    if (row == nullptr) row = FindColumn(kReadings, testId, measurementKey);
    return row == nullptr ? std::string_view{} : row->picture;
}

bool IsTestWideKey(int32_t testId, std::string_view measurementKey) {
    return FactsOf(measurementKey).IsTestWide(testId);
}

uint8_t ColumnNumber(const MeasurementRow& row, std::string_view measurementKey) {
    const auto at = std::find_if(row.begin(), row.end(),
                                 [&](const auto& item) { return item->RawKey() == measurementKey; });
    return at == row.end() ? 0 : static_cast<uint8_t>(at - row.begin() + 1);
}

}  // namespace vorex

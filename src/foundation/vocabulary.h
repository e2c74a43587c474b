#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "foundation/text_keys.h"

/// The vocabulary of the library: tests, detector kinds, choices with their stored codes, keys of
/// measurements and of the element file. Constant data, and a few functions that look a row up.
namespace vorex {

/// Plug-in identifier of every element, section of every text look-up, attribute of saved configurations.
inline constexpr std::string_view kPlugInId = "ZRD47500";
/// First part of every error source and class name.
inline constexpr std::string_view kProjectName = "VorexZRD47500Test";
/// Joins cells, and marks texts, inside one stored string.
inline constexpr std::string_view kDelimiter = "[¤]";
/// Separates the operator's words of a comment from the log of edited values after them.
inline constexpr std::string_view kOverrideMarker = "[¤]override[¤]";

// ---------------------------------------------------------------------------------------------- tests

inline constexpr int32_t kGroupId = 0;
inline constexpr int32_t kRadioRepro = 100;
inline constexpr int32_t kRadioAccuracy = 200;
inline constexpr int32_t kRadioLinearity = 300;
inline constexpr int32_t kFluoroAccuracy = 500;
inline constexpr int32_t kFluoroExposure = 700;
inline constexpr int32_t kMammoAccRepro = 900;
inline constexpr int32_t kMammoAec = 1100;
inline constexpr int32_t kMammoRadiation = 1200;
inline constexpr int32_t kMqsaSurvey = 1300;
// Only in the limit tables; no element has them.
inline constexpr int32_t kOldRadioHvl = 400;
inline constexpr int32_t kOldFluoroHvl = 600;
inline constexpr int32_t kOldMammoHvl = 1000;

/// Detector modes. Values of the configuration; a test of the catalogue is measured in one of them.
inline constexpr int32_t kRadio = 1;
inline constexpr int32_t kMammo = 2;
inline constexpr int32_t kFluoro = 3;
inline constexpr int32_t kDental = 4;
inline constexpr int32_t kEnteredByHand = 0;  ///< in the place of a mode: a test without exposures

/// Rows that a test has of its own in the tables; a bit set. A test without them has what all tests have.
enum OwnRows : uint8_t {
    kNothingOwn = 0,
    kOwnColumns = 1,   ///< of the result, next to the readings
    kOwnLimits = 2,    ///< next to those of the readings
    kOwnDefaults = 4,  ///< settings of a new test that differ from those of the construction
    kOwnTable = 8,     ///< settings of each exposure, next to the import flag
    kAllOwn = kOwnColumns | kOwnLimits | kOwnDefaults | kOwnTable,
};

/// One row of the test catalogue.
struct TestRow {
    int32_t id;
    int32_t mode;                  ///< detector mode that a new test starts with
    uint8_t exposures;             ///< how many a new test plans
    std::string_view name;         ///< short name in English
    std::string_view title;        ///< text key of its name for a person
    std::string_view setupClass;   ///< class of the setup control, without the project name
    std::string_view resultClass;  ///< class of the result view, without the project name
    uint8_t own = kAllOwn;  ///< `OwnRows`: a table that lacks one, or has one too many, does not compile
};

// clang-format off
inline constexpr auto kTestCatalogue = std::to_array<TestRow>({
    {kRadioRepro,     kRadio,  2, "RadioRepro",     text::kTestRadioRepro,     "XRadioReproConfig",     "XResultFlxGrid", kOwnColumns | kOwnDefaults},
    {kRadioAccuracy,  kRadio,  1, "RadioAccuracy",  text::kTestRadioAccuracy,  "XRadioAccuracyConfig",  "XResultListView"},
    {kRadioLinearity, kRadio,  2, "RadioLinearity", text::kTestRadioLinearity, "XRadioLinearityConfig", "XResultFlxGrid"},
    {kFluoroAccuracy, kFluoro, 1, "FluoroAccuracy", text::kTestFluoroAccuracy, "XFluoroAccuracyConfig", "XResultListView"},
    {kFluoroExposure, kFluoro, 1, "FluoroExposure", text::kTestFluoroExposure, "XFluoroExposureConfig", "XResultListView"},
    {kMammoAccRepro,  kMammo,  4, "MammoAccRepro",  text::kTestMammoAccRepro,  "XMammoAccReproConfig",  "XResultListView", kOwnColumns | kOwnLimits | kOwnDefaults},
    {kMammoAec,       kMammo,  2, "MammoAEC",       text::kTestMammoAec,       "XMammoAECConfig",       "XResultListView"},
    {kMammoRadiation, kMammo,  2, "MammoRadiation", text::kTestMammoRadiation, "XMammoRadiationConfig", "XResultListView"},
    {kMqsaSurvey, kEnteredByHand, 0, "MQSA",     text::kTestSurvey,         "XMQSAConfig",           "XResultMQSA"},
});
// clang-format on

/// The tests that take exposures: the rows of the catalogue with a mode, in its order.
inline constexpr auto kMeasuringTests = [] {
    constexpr auto measures = [](const TestRow& row) { return row.mode != kEnteredByHand; };
    constexpr auto count =
        static_cast<std::size_t>(std::count_if(kTestCatalogue.begin(), kTestCatalogue.end(), measures));
    std::array<int32_t, count> ids{};
    std::size_t next = 0;
    for (const TestRow& row : kTestCatalogue)
        if (measures(row)) ids[next++] = row.id;
    return ids;
}();

/// The catalogue row of a test; null for any other identifier (a group is not in the catalogue).
const TestRow* FindTest(int32_t testId);
/// True for the tests that take exposures.
bool IsMeasuringTest(int32_t testId);

// --------------------------------------------------------------------------------------- detector kinds

inline constexpr int32_t kNoDetector = 0;
inline constexpr int32_t kZrd = 1;
inline constexpr int32_t kMasMeter = 2;
inline constexpr int32_t kPelomark = 3;
inline constexpr int32_t kZrdAndMas = 4;
inline constexpr int32_t kPelomarkAndMas = 5;
inline constexpr std::array<int32_t, 5> kDetectorKinds = {kZrd, kMasMeter, kPelomark, kZrdAndMas,
                                                          kPelomarkAndMas};

constexpr bool HasZrd(int32_t kind) {
    return kind == kZrd || kind == kZrdAndMas;
}
constexpr bool HasPelomark(int32_t kind) {
    return kind == kPelomark || kind == kPelomarkAndMas;
}
constexpr bool HasMasMeter(int32_t kind) {
    return kind == kMasMeter || kind == kZrdAndMas || kind == kPelomarkAndMas;
}

/// Which instrument a result row came from.
inline constexpr int32_t kSourceZrd = 1;
inline constexpr int32_t kSourcePelomark = 2;
inline constexpr int32_t kSourceMas = 3;

/// Waveform types; any other value than the mA type selects the kV waveform.
inline constexpr uint8_t kKvWaveform = 1;
inline constexpr uint8_t kMaWaveform = 3;

// ------------------------------------------------------------------------------- status and navigation

inline constexpr int32_t kNotTested = 0;
inline constexpr int32_t kPassed = 1;
inline constexpr int32_t kFailed = 2;
inline constexpr int32_t kNotApplicable = 3;

/// The navigation code that an element leaves in the pipe when it is done.
inline constexpr int32_t kGoNext = 0;
inline constexpr int32_t kGoPrevious = 1;
inline constexpr int32_t kGoAbort = 2;
inline constexpr int32_t kGoSkip = 3;

// -------------------------------------------------------------------------------------------- choices

inline constexpr int32_t kAutoSettings = 1;
inline constexpr int32_t kUnitR = 1;
inline constexpr int32_t kUnitGy = 2;
inline constexpr int32_t kContinuous = 1;
inline constexpr int32_t kPulsed = 2;
inline constexpr int32_t kMilliseconds = 1;
inline constexpr int32_t kPulses = 2;
inline constexpr int32_t kSetupMas = 1;
inline constexpr int32_t kSetupMaTime = 2;
inline constexpr int32_t kInch = 1;
inline constexpr int32_t kCentimeter = 2;
inline constexpr int32_t kLargeSpot = 1;
inline constexpr int32_t kSmallSpot = 2;
inline constexpr int32_t kDoseInCoulomb = 2;  ///< `PKDoseUnit` of the Pelomark

/// Which of the two kVp errors of test 200 decide, by `PassFailCriterion` of the exposure.
inline constexpr int32_t kJudgePercent = 1;
inline constexpr int32_t kJudgeAbsolute = 2;
inline constexpr int32_t kJudgeEither = 3;
inline constexpr int32_t kJudgeBoth = 4;

/// One choice of an enumeration: its value in memory, its text and its code in a file.
struct ChoiceRow {
    int32_t value;
    std::string_view text;
    int32_t stored;
    std::string_view secondText = {};  ///< joined to the first by "*"
};

/// An enumeration. A value without a row takes the fallback text and code; a code without a row reads as the
/// fallback value.
struct Choice {
    std::span<const ChoiceRow> rows;
    std::string_view fallbackText;
    int32_t fallbackStored;
    int32_t fallbackValue;
};

extern const Choice kDetectorModes;
extern const Choice kDetectorSettings;
extern const Choice kExposureUnits;
extern const Choice kRateTimeBases;
extern const Choice kFluoroTypes;
extern const Choice kTimeUnits;
extern const Choice kFlags;
extern const Choice kGeneratorSetups;
extern const Choice kSddUnits;
extern const Choice kFocalSpots;
extern const Choice kPressureUnits;
extern const Choice kTemperatureUnits;
extern const Choice kDoseUnits;
extern const Choice kDoseRateBases;
extern const Choice kPelomarkModes;

/// The row of a value, or null.
const ChoiceRow* FindRow(const Choice& choice, int32_t value);
/// Text key of a value; the fallback's for a value without a row.
std::string_view TextKeyOf(const Choice& choice, int32_t value);
/// Value in memory of a stored code.
int32_t ValueOfStored(const Choice& choice, int32_t stored);
/// Stored code of a value in memory.
int32_t StoredOfValue(const Choice& choice, int32_t value);

/// Unit keys of the ZRD 47500 columns, by detector mode, exposure unit and rate time base.
std::string_view ExposureUnitKey(int32_t mode, int32_t exposureUnit);
std::string_view ExposureRateUnitKey(int32_t mode, int32_t exposureUnit, int32_t timeBase);
std::string_view ExposurePerMasUnitKey(int32_t mode, int32_t exposureUnit);
std::string_view TimeUnitKey(int32_t mode);

// --------------------------------------------------------------------------------- measurement keys

/// Keys of measurements and limits. They are in saved files as they are, misspellings included.
namespace key {
// clang-format off
inline constexpr std::string_view kErPrefix              = "ER ";
inline constexpr std::string_view kAvgPrefix             = "ER Avg ";
inline constexpr std::string_view kCvPrefix              = "ER CV ";

inline constexpr std::string_view kImportWaveform        = "Import Waveform";
inline constexpr std::string_view kAdjacent              = "Adjacent";
inline constexpr std::string_view kKvpAvg                = "kVp Avg";
inline constexpr std::string_view kKvpMax                = "kVp Max";
inline constexpr std::string_view kKvPpv                 = "kV PPV";
inline constexpr std::string_view kExposure              = "Exposure";
inline constexpr std::string_view kExposureRate          = "Exposure Rate";
inline constexpr std::string_view kExposureTime          = "Exposure Time";
inline constexpr std::string_view kExposureInPulses      = "Exposure In Pulses";
inline constexpr std::string_view kPulseRate             = "Pulse Rate";
inline constexpr std::string_view kPulseWidth            = "Pulse Width";
inline constexpr std::string_view kHvl                   = "HVL";

inline constexpr std::string_view kErKvpAvg              = "ER kVp Avg";
inline constexpr std::string_view kErKvpMax              = "ER kVp Max";
inline constexpr std::string_view kErKvPpv               = "ER kV PPV";
inline constexpr std::string_view kErExposure            = "ER Exposure";
inline constexpr std::string_view kErExposureRate        = "ER Exposure Rate";
inline constexpr std::string_view kErExposureTime        = "ER Exposure Time";
inline constexpr std::string_view kErExposureInPulses    = "ER Exposure In Pulses";
inline constexpr std::string_view kErHvl                 = "ER HVL";

inline constexpr std::string_view kAvgKvpAvg             = "ER Avg kVp Avg";
inline constexpr std::string_view kAvgKvpMax             = "ER Avg kVp Max";
inline constexpr std::string_view kAvgKvPpv              = "ER Avg kV PPV";
inline constexpr std::string_view kAvgExposure           = "ER Avg Exposure";
inline constexpr std::string_view kAvgExposureRate       = "ER Avg Exposure Rate";
inline constexpr std::string_view kAvgExposureTime       = "ER Avg Exposure Time";
inline constexpr std::string_view kAvgExposureInPulses   = "ER Avg Exposure In Pulses";
inline constexpr std::string_view kAvgHvl                = "ER Avg HVL";

inline constexpr std::string_view kMa                    = "ER mA";
inline constexpr std::string_view kMas                   = "ER mAs";
inline constexpr std::string_view kMasPulse              = "ER mAsPulse";
inline constexpr std::string_view kDoseMas               = "ER DosemAs";
inline constexpr std::string_view kAvgMa                 = "ER Avg mA";
inline constexpr std::string_view kAvgMas                = "ER Avg mAs";
inline constexpr std::string_view kAvgMasPulse           = "ER Avg mAsPulse";
inline constexpr std::string_view kAvgDoseMas            = "ER Avg DosemAs";
inline constexpr std::string_view kCvMa                  = "ER CV mA";
inline constexpr std::string_view kCvMas                 = "ER CV mAs";
inline constexpr std::string_view kCvMasPulse            = "ER CV mAsPulse";
inline constexpr std::string_view kCvDoseMas             = "ER CV DosemAs";

inline constexpr std::string_view kPercentKvpError       = "ER RA Percentage kVp Avg Error";
inline constexpr std::string_view kAbsoluteKvpError      = "ER RA Absolute kVp Avg Error";
inline constexpr std::string_view kPercentTimerError     = "ER RA Percentage Timer Error";
inline constexpr std::string_view kExposurePerMas        = "Exposure/mAs";
inline constexpr std::string_view kErAdjacent            = "ER Adjacent";
inline constexpr std::string_view kErNonAdjacent         = "ER Non Adjacent";
inline constexpr std::string_view kFluoroKvpError        = "ER FA kVp Avg";
inline constexpr std::string_view kMaxExposureRate       = "ER Maxi. Exposure Rate";
inline constexpr std::string_view kPhantomThickness      = "Phantom Thickness";
inline constexpr std::string_view kMode                  = "Mode";
inline constexpr std::string_view kHalfMeanKvp           = "ER Half Mean kVp";
inline constexpr std::string_view kHalfStandardDeviation = "ER Half Standard deviation";
inline constexpr std::string_view kMeanKvp               = "ER Mean kVp";
inline constexpr std::string_view kStandardDeviation     = "ER Standard deviation";
inline constexpr std::string_view kMeanMinusNominal      = "ER Mean kVp - Nominal kVp";
inline constexpr std::string_view kFivePercentNominal    = "ER 0.05 X Nominal kVp";
inline constexpr std::string_view kPercentError          = "ER Percentage Error";
inline constexpr std::string_view kCv                    = "ER CV";
inline constexpr std::string_view kCalculatedHvl         = "ER Calculted HVL(mmAl)";
inline constexpr std::string_view kCriterionHvl          = "ER Criterion Minimum HVL";
inline constexpr std::string_view kMqsaHvl               = "ER MQSA HVL";
inline constexpr std::string_view kAcrHvl                = "ER ACR HVL";
inline constexpr std::string_view kEnergyCorrectedMean   = "ER Energy Corrected Mean Values";
inline constexpr std::string_view kStandardDeviations    = "ER Standard Deviations";
inline constexpr std::string_view kCvExposure            = "ER Coefficient of Variation Exposure";
inline constexpr std::string_view kCvMasSettings         = "ER Coefficient of Variation mAs";
inline constexpr std::string_view kSkinExposure          = "ER Inverse Square Corrected Skin Exposure";
inline constexpr std::string_view kGlandularDose         = "ER Computed Average Glandular Dose";
inline constexpr std::string_view kDoseConversionFactor  = "ER Dose Conversion Factor";
inline constexpr std::string_view kOutputRate            = "ER Exposure Rate(mR/sec)";
inline constexpr std::string_view kAirKermaRate          = "ER Air Kerma Rate(mGy/sec)";

inline constexpr std::string_view kTemperature           = "Temperature";
inline constexpr std::string_view kPressure              = "Pressure";
inline constexpr std::string_view kAdcf                  = "ADCF";
inline constexpr std::string_view kBiasVoltage           = "Bias Voltage";
inline constexpr std::string_view kLeakCurrent           = "Leak Current";

inline constexpr std::string_view kDescription           = "Description";
inline constexpr std::string_view kPass                  = "Pass";
inline constexpr std::string_view kFail                  = "Fail";
inline constexpr std::string_view kNotApplicable         = "NA";
// clang-format on
}  // namespace key

/// "ER Maxi. Exposure Rate", with or without an exposure number after it.
bool IsMaxExposureRate(std::string_view measurementKey);
/// The key under which limits are looked up: "ER " in front of a key that does not have it, the delimiter
/// taken out.
std::string LimitKeyOf(std::string_view measurementKey);

// ------------------------------------------------------------------------- keys of the element file

/// Element and attribute names of the element file, misspellings included: saved files carry them.
namespace tag {
// clang-format off
inline constexpr std::string_view kPlugInData            = "PlugInData";
inline constexpr std::string_view kPlugIn                = "PlugIn";
inline constexpr std::string_view kTestElement           = "TestElement";
inline constexpr std::string_view kResultItem            = "ResultItem";
inline constexpr std::string_view kMeasurement           = "Measurement";
inline constexpr std::string_view kExpectedResult        = "ExpectedResult";
inline constexpr std::string_view kMti                   = "MTI";
inline constexpr std::string_view kComment               = "Comment";
inline constexpr std::string_view kServiceRecord         = "ServiceRecord";
inline constexpr std::string_view kTestGuideSettings     = "TestGuideSettings";
inline constexpr std::string_view kKey                   = "Key";
inline constexpr std::string_view kDescription           = "Description";
inline constexpr std::string_view kValue                 = "Value";
inline constexpr std::string_view kUnit                  = "Unit";
inline constexpr std::string_view kStatus                = "Status";
inline constexpr std::string_view kPresetValue           = "PresetValue";

inline constexpr std::string_view kVorexSequence         = "VorexSequence";
inline constexpr std::string_view kVersion               = "Version";
inline constexpr std::string_view kSelectedStandards     = "SelectedStandards";
inline constexpr std::string_view kStandard              = "Standard";
inline constexpr std::string_view kLimit                 = "Limit";
inline constexpr std::string_view kHigh                  = "High";
inline constexpr std::string_view kLow                   = "Low";
inline constexpr std::string_view kExpression            = "Expression";
inline constexpr std::string_view kMtiList               = "MtiList";
inline constexpr std::string_view kNumber                = "Number";
inline constexpr std::string_view kSerialNumber          = "SerialNumber";
inline constexpr std::string_view kCalibrationDate       = "CalibrationDate";
inline constexpr std::string_view kTestId                = "TestID";
inline constexpr std::string_view kId                    = "ID";
inline constexpr std::string_view kName                  = "Name";
inline constexpr std::string_view kElementFilter         = "Filter";
inline constexpr std::string_view kSave                  = "Save";
inline constexpr std::string_view kPrint                 = "Print";
inline constexpr std::string_view kEvaluate              = "Evaluate";
inline constexpr std::string_view kType                  = "Type";
inline constexpr std::string_view kExtra                 = "Extra";
inline constexpr std::string_view kCode                  = "Code";
inline constexpr std::string_view kButtons               = "Buttons";

inline constexpr std::string_view kDetectorName          = "DetectorName";
inline constexpr std::string_view kNumberOfExposures     = "NumberOfExposures";
inline constexpr std::string_view kImportWaveformStatus  = "ImportWaveformStatus";
inline constexpr std::string_view kGeneratorSetup        = "GeneratorSetup";
inline constexpr std::string_view kMachineKV             = "MachineKV";
inline constexpr std::string_view kMachinemA             = "MachinemA";
inline constexpr std::string_view kMachinemAs            = "MachinemAs";
inline constexpr std::string_view kMachineTime           = "MachineTime";
inline constexpr std::string_view kMachineAdjacent       = "MachineAdjacent";
inline constexpr std::string_view kSddValue              = "SDDValue";
inline constexpr std::string_view kSddUnit               = "SDDUnit";
inline constexpr std::string_view kSdd                   = "SDD";
inline constexpr std::string_view kFocalSpotSize         = "FocalSpotSize";
inline constexpr std::string_view kFocalSpot             = "FocalSpot";
inline constexpr std::string_view kPassFailCriterion     = "PassFailRadioAccuracyKVP";
inline constexpr std::string_view kPhantomThickness      = "PhantomThickness";
inline constexpr std::string_view kMode                  = "Mode";
inline constexpr std::string_view kSid                   = "SID";
inline constexpr std::string_view kAnode                 = "Anode";
inline constexpr std::string_view kFilter                = "Filter";
inline constexpr std::string_view kNominalKV             = "NominalKV";
inline constexpr std::string_view kAecMode               = "AECMode";
inline constexpr std::string_view kCassetteSize          = "CassetteSize";
inline constexpr std::string_view kImagingMode           = "ImagingMode";
inline constexpr std::string_view kScreenType            = "ScreenType";
inline constexpr std::string_view kFilmType              = "FilmType";
inline constexpr std::string_view kTargetMaterial        = "TargetMaterial";
inline constexpr std::string_view kFieldRestriction      = "FieldRestriction";
inline constexpr std::string_view kSourceToBucky         = "SouceToBuckyDistance";
inline constexpr std::string_view kSourceToDetector      = "SourceToDetectorDistance";
inline constexpr std::string_view kDensityControl        = "DensityControlSettings";
inline constexpr std::string_view kCorrectionFactor      = "CorrectionFactor";
inline constexpr std::string_view kGlandularFraction     = "GlandularFraction";
inline constexpr std::string_view kMeasuredHvl           = "MeasuredHVL";
inline constexpr std::string_view kPhantom               = "Phantom";
inline constexpr std::string_view kBreastThickness       = "BreastThickness";
inline constexpr std::string_view kTargetFilterName      = "NameOfTargetFilter";
inline constexpr std::string_view kMeasurementMode       = "MeasurementMode";
inline constexpr std::string_view kMeasurementSettings   = "MeasurementSettings";
inline constexpr std::string_view kMeasurementExposure   = "MeasurementExposure";
inline constexpr std::string_view kMeasurementRateUnit   = "MeasurementExposureRateUnit";
inline constexpr std::string_view kMeasurementFluoroType = "MeasurementFluoroType";
inline constexpr std::string_view kMeasurementTimeUnit   = "MeasurementTimeUnit";
inline constexpr std::string_view kMeasurementPercentKV  = "MeasurementPercentKV";
inline constexpr std::string_view kMeasurementDelay      = "MeasurementDelay";
inline constexpr std::string_view kMeasurementIncludeDelay = "MeasurementIncludeDelay";
inline constexpr std::string_view kPkAdcf                = "PKADCF";
inline constexpr std::string_view kPkUserSetTemp         = "PKUserSetTemp";
inline constexpr std::string_view kPkTemperature         = "PKTemperature";
inline constexpr std::string_view kPkUserSetPres         = "PKUserSetPres";
inline constexpr std::string_view kPkPressure            = "PKPressure";
inline constexpr std::string_view kPkRefTemp             = "PKRefTemp";
inline constexpr std::string_view kPkMode                = "PKMode";
inline constexpr std::string_view kPkAutoReset           = "PKAutoReset";
inline constexpr std::string_view kPkDoseUnit            = "PKDoseUnit";
inline constexpr std::string_view kPkDoseRateUnit        = "PKDoseRateUnit";
inline constexpr std::string_view kPkFrameRate           = "PKFrameRate";
inline constexpr std::string_view kPkTempUnit            = "PKTempUnit";
inline constexpr std::string_view kPkPresUnit            = "PKPresUnit";
// The next four are swapped: "Temp" holds the pressure offset, "CalFactor" the constant, and vice versa.
// Existing files have them so, and saving and loading agree.
inline constexpr std::string_view kPkPressureOffset      = "PKOffsetTemp";
inline constexpr std::string_view kPkTemperatureOffset   = "PKOffsetPres";
inline constexpr std::string_view kPkIonChamberName      = "PKIonChamName";
inline constexpr std::string_view kPkIonCalConstant      = "PKIonCalFactor";
inline constexpr std::string_view kPkIonCalFactor        = "PKIonCalConst";
inline constexpr std::string_view kMasInput              = "MASInput";
inline constexpr std::string_view kMasInputOverride      = "MASInOver";
inline constexpr std::string_view kMasOption             = "MASOption";
inline constexpr std::string_view kTestGuideMasInput     = "TestguidemAsInput";
inline constexpr std::string_view kOverridePrint         = "OverridePrint";
inline constexpr std::string_view kDetectorOption        = "DetectorOption";

inline constexpr std::string_view kWaveform              = "Waveform";
inline constexpr std::string_view kMasWaveform           = "mAsWaveform";
inline constexpr std::string_view kSupersededExposure    = "SupersededExposure";
inline constexpr std::string_view kExposure              = "Exposure";
inline constexpr std::string_view kMissing               = "Missing";
inline constexpr std::string_view kOrder                 = "Order";
inline constexpr std::string_view kTime                  = "Time";
inline constexpr std::string_view kRun                   = "Run";
inline constexpr std::string_view kStart                 = "Start";
inline constexpr std::string_view kEnd                   = "End";
inline constexpr std::string_view kEnding                = "Ending";
inline constexpr std::string_view kReason                = "Reason";
inline constexpr std::string_view kPlanned               = "Planned";
inline constexpr std::string_view kProgram               = "Program";
inline constexpr std::string_view kFormulas              = "Formulas";
inline constexpr std::string_view kMeasuredBy            = "MeasuredBy";
inline constexpr std::string_view kTechnique             = "Technique";
inline constexpr std::string_view kSetting               = "Setting";
inline constexpr std::string_view kJudgedBy              = "JudgedBy";
inline constexpr std::string_view kPrintWaveform         = "PrintWaveform";
inline constexpr std::string_view kWaveformResolution    = "WaveformResolution";
// clang-format on
}  // namespace tag

/// Truth values as the element file writes them, in every language.
inline constexpr std::string_view kStoredTrue = "True";
inline constexpr std::string_view kStoredFalse = "False";

/// How a run ended, as the element file writes it.
inline constexpr std::string_view kEndedComplete = "Complete";
inline constexpr std::string_view kEndedStopped = "Stopped";
inline constexpr std::string_view kEndedBroken = "Broken";

/// Keys and values of the settings store, below the local machine root.
namespace setting {
inline constexpr std::string_view kPlugInPath = "Software\\Brenlo\\vorex\\ZRD47500";
inline constexpr std::string_view kUninstallPath =
    "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\{5D3A71C2-9E04-4B68-8F21-7C60E1A2B934}";
inline constexpr std::string_view kDisplayVersion = "DisplayVersion";
inline constexpr std::string_view kSleepTimeOut = "SleepTimeOut";
inline constexpr std::string_view kShutdownTimeout = "ShutdownTimeout";
inline constexpr std::string_view kDoseUnit = "DoseUnit";
inline constexpr std::string_view kDoseRateUnit = "DoseRateUnit";
inline constexpr std::string_view kFluoroType = "FluoroType";
inline constexpr std::string_view kTimeUnit = "TimeUnit";
inline constexpr std::string_view kPercentKV = "PercentKV";
inline constexpr std::string_view kDelay = "Delay";
inline constexpr std::string_view kIncludeDelay = "IncludeDelay";
inline constexpr std::string_view kSddUnit = "SDDUnit";
inline constexpr std::string_view kWaveformIndex = "WaveformIndex";
}  // namespace setting

}  // namespace vorex

#include "app/console.h"

#include <string>

#include "foundation/number_text.h"
#include "foundation/test_sets.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

std::string Cell(const TextArray& column, uint8_t row) {
    return row < column.size() ? column[row] : std::string();
}
double CellNumber(const TextArray& column, uint8_t row) {
    return ReadNumber(Cell(column, row));
}

double SetDistanceCm(const CConfigCommon& config) {
    constexpr double kCmPerInch = 2.54;
    return static_cast<double>(config.pSDDValue) * (config.pSDDUnit == kInch ? kCmPerInch : 1);
}

std::string Joined(const std::string& target, const std::string& filter) {
    return target.empty() && filter.empty() ? std::string() : target + "/" + filter;
}

/// A thickness in cm; with any other text the phantom is the room's.
std::optional<double> ThicknessCm(const std::string& text) {
    constexpr std::string_view kUnit = "cm";
    const std::string_view words = Trimmed(text);
    if (!words.ends_with(kUnit)) return std::nullopt;
    const std::string number(Trimmed(words.substr(0, words.size() - kUnit.size())));
    if (!IsNumber(number)) return std::nullopt;
    return ReadNumber(number);
}

/// Tests without machine settings in their table: one setting for all exposures.
void SetOnce(const CConfigCommon& config, uint8_t, Technique& to) {
    to.kv = static_cast<double>(config.pMachineKV);
    to.ma = static_cast<double>(config.pMachineMA);
    to.mas = static_cast<double>(config.pMachineMAS);
    to.timeMs = static_cast<double>(config.pMachineTime);
}

void SetReproducibility(const CConfigCommon& config, uint8_t row, Technique& to) {
    SetOnce(config, row, to);
    to.timed = config.pGeneratorSetup == kSetupMaTime;
    to.distanceCm = SetDistanceCm(config);
}

void SetAccuracy(const CConfigCommon& config, uint8_t row, Technique& to) {
    SetReproducibility(config, row, to);
    to.kv = CellNumber(config.machineKv, row);
    to.ma = CellNumber(config.machineMa, row);
    to.mas = CellNumber(config.machineMas, row);
    to.timeMs = CellNumber(config.machineTime, row);
}

void SetLinearity(const CConfigCommon& config, uint8_t row, Technique& to) {
    SetReproducibility(config, row, to);
    to.ma = CellNumber(config.machineMa, row);
    to.mas = CellNumber(config.machineMas, row);
}

void SetFluoroscopy(const CConfigCommon& config, uint8_t row, Technique& to) {
    to.unit = UnitKind::kFluoroscopic;
    to.kv = CellNumber(config.machineKv, row);
    to.ma = CellNumber(config.machineMa, row);
    to.distanceCm = SetDistanceCm(config);
    to.pulsed = config.pMeasurementFluoroType == kPulsed;
}

/// The brightness control sets the rate, with the phantom in the beam.
void SetEntranceRate(const CConfigCommon& config, uint8_t row, Technique& to) {
    SetFluoroscopy(config, row, to);
    to.automatic = true;
    to.phantomCm = ThicknessCm(Cell(config.phantomThickness, row));
    const std::string mode(Trimmed(Cell(config.mode, row)));
    to.highLevel = !mode.empty() && !EqualsIgnoringCase(mode, Translate(text::kModeNormal));
}

void SetMammography(const CConfigCommon& config, uint8_t row, Technique& to) {
    SetOnce(config, row, to);
    to.unit = UnitKind::kMammographic;
    to.targetFilter = config.pTargetFilterName;
}

void SetAec(const CConfigCommon& config, uint8_t row, Technique& to) {
    to.unit = UnitKind::kMammographic;
    to.automatic = true;
    to.kv = ReadNumber(config.pNominalKV);
    to.mas = CellNumber(config.machineMas, row);
    to.distanceCm = ReadNumber(config.pSourceToDetectorDistance);
    to.targetFilter = Joined(config.pTargetMaterial, config.pFilter);
    if (IsNumber(WithPoint(config.pBreastThickness))) to.phantomCm = ReadNumber(config.pBreastThickness);
}

void SetOutput(const CConfigCommon& config, uint8_t row, Technique& to) {
    constexpr double kMsPerSecond = 1000;
    SetOnce(config, row, to);
    to.unit = UnitKind::kMammographic;
    to.mas = CellNumber(config.machineMas, row);
    // The mA that gives the mAs in the time of the test.
    to.ma = to.timeMs > 0 ? to.mas * kMsPerSecond / to.timeMs : 0;
    to.distanceCm = static_cast<double>(config.pMachineSDD);
    to.targetFilter = Joined(config.pMachineAnode, config.pMachineFilter);
}

struct TestSetup {
    int32_t testId;
    void (*set)(const CConfigCommon& config, uint8_t row, Technique& to);
};
constexpr TestSetup kSetups[] = {
    {kRadioRepro, SetReproducibility},
    {kRadioAccuracy, SetAccuracy},
    {kRadioLinearity, SetLinearity},
    {kFluoroAccuracy, SetFluoroscopy},
    {kFluoroExposure, SetEntranceRate},
    {kMammoAccRepro, SetMammography},
    {kMammoAec, SetAec},
    {kMammoRadiation, SetOutput},
};
static_assert(HasOneRowPerMeasuringTest(kSetups));

}  // namespace

Technique TechniqueOf(const CConfigCommon& config, uint8_t row) {
    Technique technique;
    technique.detectorKind =
        config.DetectorOption != kNoDetector ? config.DetectorOption : config.DetectorName;
    for (const TestSetup& setup : kSetups)
        if (setup.testId == config.pTestID) setup.set(config, row, technique);
    return technique;
}

}  // namespace vorex

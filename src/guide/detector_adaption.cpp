#include "guide/detector_adaption.h"

#include "foundation/number_text.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

/// Selections count from 0 in the configuration and from 1 in the instrument.
struct SelectionRow {
    int32_t ConfigFields::*configured;
    int32_t DosimeterSettings::*sent;
};
constexpr SelectionRow kSelections[] = {
    {&ConfigFields::PKMode, &DosimeterSettings::mode},
    {&ConfigFields::PKDoseUnit, &DosimeterSettings::doseUnit},
    {&ConfigFields::PKDoseRateUnit, &DosimeterSettings::doseRateUnit},
    {&ConfigFields::PKTemperatureUnit, &DosimeterSettings::temperatureUnit},
    {&ConfigFields::PKPressureUnit, &DosimeterSettings::pressureUnit},
};

struct NumberRow {
    float ConfigFields::*configured;
    float DosimeterSettings::*sent;
};
constexpr NumberRow kNumbers[] = {
    {&ConfigFields::TemperatureValue, &DosimeterSettings::temperature},
    {&ConfigFields::PressureValue, &DosimeterSettings::pressure},
    {&ConfigFields::InternalPressureOffset, &DosimeterSettings::internalPressureOffset},
    {&ConfigFields::InternalTemperatureOffset, &DosimeterSettings::internalTemperatureOffset},
};

struct FlagRow {
    bool ConfigFields::*configured;
    int32_t DosimeterSettings::*sent;
    int32_t off;  ///< on is 1
};
constexpr FlagRow kFlagRows[] = {
    {&ConfigFields::AirDensityCorrection, &DosimeterSettings::airDensityCorrection, 2},
    {&ConfigFields::UserSetTemperature, &DosimeterSettings::userSetTemperature, 0},
    {&ConfigFields::UserSetPressure, &DosimeterSettings::userSetPressure, 0},
    {&ConfigFields::AutoReset, &DosimeterSettings::autoReset, 0},
};
constexpr int32_t kOn = 1;

}  // namespace

bool DetectorFits(int32_t connected, int32_t configured) {
    return !(HasZrd(connected) && HasPelomark(configured)) && !(HasPelomark(connected) && HasZrd(configured));
}

int32_t EffectiveKind(int32_t connected, int32_t configured) {
    if (configured == kMasMeter && connected == kZrd) return kZrdAndMas;
    if (configured == kMasMeter && connected == kPelomark) return kPelomarkAndMas;
    if (connected == kMasMeter && (configured == kZrd || configured == kPelomark)) return kMasMeter;
    return configured < connected ? connected : configured;
}

DosimeterSettings DosimeterSettingsOf(const CConfigCommon& configuration) {
    DosimeterSettings settings;
    for (const SelectionRow& row : kSelections) settings.*row.sent = configuration.*row.configured + 1;
    for (const NumberRow& row : kNumbers) settings.*row.sent = configuration.*row.configured;
    for (const FlagRow& row : kFlagRows) settings.*row.sent = configuration.*row.configured ? kOn : row.off;
    settings.referenceTemperature = configuration.ReferenceTemperature;
    settings.frameRate = ReadInteger(configuration.PKFrameRate);
    return settings;
}

void TakeDosimeterSettings(const DosimeterSettings& settings, CConfigCommon& configuration) {
    for (const SelectionRow& row : kSelections) configuration.*row.configured = settings.*row.sent - 1;
    for (const NumberRow& row : kNumbers) configuration.*row.configured = settings.*row.sent;
    for (const FlagRow& row : kFlagRows) configuration.*row.configured = settings.*row.sent == kOn;
    configuration.ReferenceTemperature = settings.referenceTemperature;
    // A rate that the instrument did not change stays as typed.
    if (settings.frameRate != ReadInteger(configuration.PKFrameRate))
        configuration.PKFrameRate = PlainText(settings.frameRate);
}

}  // namespace vorex

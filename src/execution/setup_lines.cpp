#include "execution/setup_lines.h"

#include <string_view>

#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

using ValueText = std::string (*)(const CConfigCommon&, uint8_t);

struct LineRow {
    TestSet tests;
    std::string_view text;
    ValueText value;
    int32_t setup = 0;  ///< generator setup that the line belongs to, 0 for every one
};

template <float ConfigFields::*Field>
std::string Number(const CConfigCommon& config, uint8_t /*row*/) {
    return LocaleText(config.*Field);
}

template <std::string ConfigFields::*Field>
std::string Words(const CConfigCommon& config, uint8_t /*row*/) {
    return config.*Field;
}

template <uint8_t Column>
std::string Cell(const CConfigCommon& config, uint8_t row) {
    return config.GetValue(row, Column);
}

std::string Distance(const CConfigCommon& config, uint8_t /*row*/) {
    return LocaleText(config.pSDDValue) + " " + DisplayText(kSddUnits, config.pSDDUnit);
}

std::string FocalSpot(const CConfigCommon& config, uint8_t /*row*/) {
    return DisplayText(kFocalSpots, config.pFocalSpotSize);
}

template <uint8_t Column>
std::string FocalSpotCell(const CConfigCommon& config, uint8_t row) {
    return DisplayText(kFocalSpots, ReadInteger(config.GetValue(row, Column)));
}

using C = ConfigFields;
constexpr TestSet kT100 = Tests({kRadioRepro});
constexpr TestSet kT200 = Tests({kRadioAccuracy});
constexpr TestSet kT300 = Tests({kRadioLinearity});
constexpr TestSet kT700 = Tests({kFluoroExposure});
constexpr TestSet kT900 = Tests({kMammoAccRepro});
constexpr TestSet kT1100 = Tests({kMammoAec});
constexpr TestSet kT1200 = Tests({kMammoRadiation});
constexpr TestSet kFluoro = Tests({kFluoroAccuracy, kFluoroExposure});
constexpr TestSet kInUnits =
    Tests({kRadioRepro, kRadioAccuracy, kRadioLinearity, kFluoroAccuracy, kFluoroExposure});

// clang-format off
constexpr LineRow kLines[] = {
    {kInUnits, text::kSetSdd,              Distance},
    {kT1100,   text::kSetSdd,              Words<&C::pSourceToDetectorDistance>},
    {kT1200,   text::kSetSdd,              Number<&C::pMachineSDD>},

    {kT100,    text::kSetFss,              FocalSpot},
    {kT100,    text::kSetKvp,              Number<&C::pMachineKV>},
    {kT100,    text::kSetMa,               Number<&C::pMachineMA>,   kSetupMaTime},
    {kT100,    text::kSetTime,             Number<&C::pMachineTime>, kSetupMaTime},
    {kT100,    text::kSetMas,              Number<&C::pMachineMAS>,  kSetupMas},

    {kT200,    text::kSetFocalSpotSize,    FocalSpotCell<2>},
    {kT200,    text::kSetKvp,              Cell<4>},
    {kT200,    text::kSetMa,               Cell<5>, kSetupMaTime},
    {kT200,    text::kSetTime,             Cell<6>, kSetupMaTime},
    {kT200,    text::kSetMas,              Cell<5>, kSetupMas},

    {kT300,    text::kSetFocalSpotSize,    FocalSpotCell<3>},
    {kT300,    text::kSetKvp,              Number<&C::pMachineKV>},
    {kT300,    text::kSetMa,               Cell<4>,                  kSetupMaTime},
    {kT300,    text::kSetTime,             Number<&C::pMachineTime>, kSetupMaTime},
    {kT300,    text::kSetMas,              Cell<4>,                  kSetupMas},

    {kFluoro,  text::kSetFss,              FocalSpot},
    {kFluoro,  text::kSetKvp,              Cell<2>},
    {kFluoro,  text::kSetMa,               Cell<3>},
    {kT700,    text::kSetPhantomThickness, Cell<4>},
    {kT700,    text::kSetMode,             Cell<5>},

    {kT900,    text::kSetKvpFirst,         Number<&C::pMachineKV>},
    {kT900,    text::kSetMa,               Number<&C::pMachineMA>},
    {kT900,    text::kSetMas,              Number<&C::pMachineMAS>},
    {kT900,    text::kSetTime,             Number<&C::pMachineTime>},
    {kT900,    text::kSetFss,              FocalSpot},

    {kT1100,   text::kSetKvp,              Words<&C::pNominalKV>},
    {kT1100,   text::kSetMas,              Cell<2>},
    {kT1100,   text::kSetBreastThickness,  Words<&C::pBreastThickness>},
    {kT1100,   text::kSetSbd,              Words<&C::pSourceToBuckyDistance>},
    {kT1100,   text::kSetSid,              Words<&C::pSID>},
    {kT1100,   text::kSetFilter,           Words<&C::pFilter>},
    {kT1100,   text::kSetTargetMaterial,   Words<&C::pTargetMaterial>},
    {kT1100,   text::kSetGlandularFraction, Words<&C::pGlandularFraction>},
    {kT1100,   text::kSetEnergyCorrection, Words<&C::pEnergyCorrectionFactor>},
    {kT1100,   text::kSetDensityControl,   Words<&C::pDensityControlSettings>},
    {kT1100,   text::kSetCassetteSize,     Words<&C::pCassetteSize>},
    {kT1100,   text::kSetFilmType,         Words<&C::pFilmType>},
    {kT1100,   text::kSetAecMode,          Words<&C::pAECMode>},
    {kT1100,   text::kSetFieldRestriction, Words<&C::pFileldRestriction>},
    {kT1100,   text::kSetImagingMode,      Words<&C::pImagingMode>},
    {kT1100,   text::kSetScreenType,       Words<&C::pScreenType>},
    {kT1100,   text::kSetMeasuredHvl,      Words<&C::pMeasuredHVL>},
    {kT1100,   text::kSetPhantom,          Words<&C::pPhantom>},

    {kT1200,   text::kSetKvp,              Number<&C::pMachineKV>},
    {kT1200,   text::kSetTime,             Number<&C::pMachineTime>},
    {kT1200,   text::kSetAnode,            Words<&C::pMachineAnode>},
    {kT1200,   text::kSetFilter,           Words<&C::pMachineFilter>},
    {kT1200,   text::kSetSid,              Cell<2>},
    {kT1200,   text::kSetMas,              Cell<3>},
};
// clang-format on

}  // namespace

std::vector<std::string> BuildSetupLines(const CConfigCommon& configuration, uint8_t row) {
    std::vector<std::string> lines;
    const int32_t setup = configuration.pGeneratorSetup == kSetupMaTime ? kSetupMaTime : kSetupMas;
    for (const LineRow& line : kLines) {
        if (!line.tests.Has(configuration.pTestID) || (line.setup != 0 && line.setup != setup)) continue;
        const std::string value = line.value(configuration, row);
        lines.push_back(value.empty() ? std::string() : Translate(line.text, {value}));
    }
    return lines;
}

}  // namespace vorex

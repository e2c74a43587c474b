#include "execution/setup_lines.h"

#include <stdexcept>
#include <string_view>

#include "foundation/number_text.h"
#include "foundation/test_sets.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

using Column = ExposureColumn;
using ValueText = std::string (*)(const CConfigCommon&, uint8_t);

/// Where the value of a line comes from.
struct LineValue {
    ValueText text;
    bool perExposure;  ///< from the exposure table
};

struct LineRow {
    TestSet tests;
    std::string_view text;
    LineValue value;
    int32_t setup = 0;  ///< generator setup that the line belongs to, 0 for all
};

template <float ConfigFields::*Field>
std::string NumberText(const CConfigCommon& config, uint8_t /*row*/) {
    return LocaleText(config.*Field);
}
template <float ConfigFields::*Field>
constexpr LineValue Number = {NumberText<Field>, false};

template <std::string ConfigFields::*Field>
std::string WordsText(const CConfigCommon& config, uint8_t /*row*/) {
    return config.*Field;
}
template <std::string ConfigFields::*Field>
constexpr LineValue Words = {WordsText<Field>, false};

template <Column Place>
std::string CellText(const CConfigCommon& config, uint8_t row) {
    return config.GetValue(row, Place);
}
template <Column Place>
constexpr LineValue Cell = {CellText<Place>, true};

template <Column Place>
std::string FocalSpotCellText(const CConfigCommon& config, uint8_t row) {
    return DisplayText(kFocalSpots, ReadInteger(config.GetValue(row, Place)));
}
template <Column Place>
constexpr LineValue FocalSpotCell = {FocalSpotCellText<Place>, true};

std::string DistanceText(const CConfigCommon& config, uint8_t /*row*/) {
    return LocaleText(config.pSDDValue) + " " + DisplayText(kSddUnits, config.pSDDUnit);
}
constexpr LineValue Distance = {DistanceText, false};

std::string FocalSpotText(const CConfigCommon& config, uint8_t /*row*/) {
    return DisplayText(kFocalSpots, config.pFocalSpotSize);
}
constexpr LineValue FocalSpot = {FocalSpotText, false};

using C = ConfigFields;

// clang-format off
constexpr LineRow kLines[] = {
    {kWithDistanceUnit, text::kSetSdd,               Distance},
    {kMammoAec,         text::kSetSdd,               Words<&C::pSourceToDetectorDistance>},
    {kMammoRadiation,   text::kSetSdd,               Number<&C::pMachineSDD>},

    {kRadioRepro,       text::kSetFss,               FocalSpot},
    {kRadioRepro,       text::kSetKvp,               Number<&C::pMachineKV>},
    {kRadioRepro,       text::kSetMa,                Number<&C::pMachineMA>,   kSetupMaTime},
    {kRadioRepro,       text::kSetTime,              Number<&C::pMachineTime>, kSetupMaTime},
    {kRadioRepro,       text::kSetMas,               Number<&C::pMachineMAS>,  kSetupMas},

    {kRadioAccuracy,    text::kSetFocalSpotSize,     FocalSpotCell<Column::kFocalSpot>},
    {kRadioAccuracy,    text::kSetKvp,               Cell<Column::kKv>},
    {kRadioAccuracy,    text::kSetMa,                Cell<Column::kMasOrMa>,   kSetupMaTime},
    {kRadioAccuracy,    text::kSetTime,              Cell<Column::kTime>,      kSetupMaTime},
    {kRadioAccuracy,    text::kSetMas,               Cell<Column::kMasOrMa>,   kSetupMas},

    {kRadioLinearity,   text::kSetFocalSpotSize,     FocalSpotCell<Column::kFocalSpot>},
    {kRadioLinearity,   text::kSetKvp,               Number<&C::pMachineKV>},
    {kRadioLinearity,   text::kSetMa,                Cell<Column::kMasOrMa>,   kSetupMaTime},
    {kRadioLinearity,   text::kSetTime,              Number<&C::pMachineTime>, kSetupMaTime},
    {kRadioLinearity,   text::kSetMas,               Cell<Column::kMasOrMa>,   kSetupMas},

    {kFluoroscopy,      text::kSetFss,               FocalSpot},
    {kFluoroscopy,      text::kSetKvp,               Cell<Column::kKv>},
    {kFluoroscopy,      text::kSetMa,                Cell<Column::kMa>},
    {kFluoroExposure,   text::kSetPhantomThickness,  Cell<Column::kThickness>},
    {kFluoroExposure,   text::kSetMode,              Cell<Column::kMode>},

    {kMammoAccRepro,    text::kSetKvpFirst,          Number<&C::pMachineKV>},
    {kMammoAccRepro,    text::kSetMa,                Number<&C::pMachineMA>},
    {kMammoAccRepro,    text::kSetMas,               Number<&C::pMachineMAS>},
    {kMammoAccRepro,    text::kSetTime,              Number<&C::pMachineTime>},
    {kMammoAccRepro,    text::kSetFss,               FocalSpot},

    {kMammoAec,         text::kSetKvp,               Words<&C::pNominalKV>},
    {kMammoAec,         text::kSetMas,               Cell<Column::kMas>},
    {kMammoAec,         text::kSetBreastThickness,   Words<&C::pBreastThickness>},
    {kMammoAec,         text::kSetSbd,               Words<&C::pSourceToBuckyDistance>},
    {kMammoAec,         text::kSetSid,               Words<&C::pSID>},
    {kMammoAec,         text::kSetFilter,            Words<&C::pFilter>},
    {kMammoAec,         text::kSetTargetMaterial,    Words<&C::pTargetMaterial>},
    {kMammoAec,         text::kSetGlandularFraction, Words<&C::pGlandularFraction>},
    {kMammoAec,         text::kSetEnergyCorrection,  Words<&C::pEnergyCorrectionFactor>},
    {kMammoAec,         text::kSetDensityControl,    Words<&C::pDensityControlSettings>},
    {kMammoAec,         text::kSetCassetteSize,      Words<&C::pCassetteSize>},
    {kMammoAec,         text::kSetFilmType,          Words<&C::pFilmType>},
    {kMammoAec,         text::kSetAecMode,           Words<&C::pAECMode>},
    {kMammoAec,         text::kSetFieldRestriction,  Words<&C::pFileldRestriction>},
    {kMammoAec,         text::kSetImagingMode,       Words<&C::pImagingMode>},
    {kMammoAec,         text::kSetScreenType,        Words<&C::pScreenType>},
    {kMammoAec,         text::kSetMeasuredHvl,       Words<&C::pMeasuredHVL>},
    {kMammoAec,         text::kSetPhantom,           Words<&C::pPhantom>},

    {kMammoRadiation,   text::kSetKvp,               Number<&C::pMachineKV>},
    {kMammoRadiation,   text::kSetTime,              Number<&C::pMachineTime>},
    {kMammoRadiation,   text::kSetAnode,             Words<&C::pMachineAnode>},
    {kMammoRadiation,   text::kSetFilter,            Words<&C::pMachineFilter>},
    {kMammoRadiation,   text::kSetSid,               Cell<Column::kSid>},
    {kMammoRadiation,   text::kSetMas,               Cell<Column::kMas>},
};
static_assert(CoversEveryMeasuringTest(kLines));
// clang-format on

/// The lines of a test, in order. A test without lines is missing from the table.
std::vector<const LineRow*> LinesOf(int32_t testId, int32_t generatorSetup) {
    std::vector<const LineRow*> lines;
    const int32_t setup = generatorSetup == kSetupMaTime ? kSetupMaTime : kSetupMas;
    for (const LineRow& line : kLines)
        if (line.tests.Has(testId) && (line.setup == 0 || line.setup == setup)) lines.push_back(&line);
    if (lines.empty()) throw std::logic_error("no setup lines for test " + PlainText(testId));
    return lines;
}

}  // namespace

std::vector<std::string> BuildSetupLines(const CConfigCommon& configuration, uint8_t row) {
    std::vector<std::string> texts;
    for (const LineRow* line : LinesOf(configuration.pTestID, configuration.pGeneratorSetup)) {
        const std::string value = line->value.text(configuration, row);
        texts.push_back(value.empty() ? std::string() : Translate(line->text, {value}));
    }
    return texts;
}

SetupLineNumbers NumberSetupLines(int32_t testId, int32_t generatorSetup) {
    SetupLineNumbers numbers;
    for (const LineRow* line : LinesOf(testId, generatorSetup)) {
        ++numbers.count;
        if (line->value.perExposure) numbers.perExposure.push_back(numbers.count);
    }
    return numbers;
}

}  // namespace vorex

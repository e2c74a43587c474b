#include "config/config_common.h"
#include "foundation/utilities.h"

// What a new test of each kind starts with. A field that no row names keeps its construction value.

namespace vorex {

namespace {

using C = ConfigFields;

/// The frame of a test's defaults.
struct TestDefaults {
    int32_t testId;
    int32_t mode;
    uint8_t exposures;
};

/// A number of a test's defaults.
template <typename Field>
struct FieldDefault {
    TestSet tests;
    Field C::*field;
    Field value;
};

/// A text of a test's defaults: a table key, or the text itself.
struct TextDefault {
    TestSet tests;
    std::string C::*field;
    std::string_view text;
};

/// An array filled with one text over all planned exposures.
struct ArrayDefault {
    TestSet tests;
    TextArray C::*array;
    std::string_view text;
};

constexpr TestSet kRadiography = Tests({kRadioRepro, kRadioAccuracy, kRadioLinearity});
constexpr TestSet kWithDistance =
    Tests({kRadioRepro, kRadioAccuracy, kRadioLinearity, kFluoroAccuracy, kFluoroExposure});
constexpr TestSet kFluoroscopy = Tests({kFluoroAccuracy, kFluoroExposure});
/// Fluoroscopy leaves the two flags of the construction.
constexpr TestSet kWithFlags =
    Tests({kRadioRepro, kRadioAccuracy, kRadioLinearity, kMammoAccRepro, kMammoAec, kMammoRadiation});

// clang-format off
constexpr TestDefaults kTests[] = {
    {kRadioRepro,     kRadio,  2},
    {kRadioAccuracy,  kRadio,  1},
    {kRadioLinearity, kRadio,  2},
    {kFluoroAccuracy, kFluoro, 1},
    {kFluoroExposure, kFluoro, 1},
    {kMammoAccRepro,  kMammo,  4},
    {kMammoAec,       kMammo,  2},
    {kMammoRadiation, kMammo,  2},
};

constexpr FieldDefault<int32_t> kChoices[] = {
    {kWithDistance, &C::pSDDUnit, kInch},
    {kRadiography, &C::pGeneratorSetup, kSetupMas},
    {Tests({kRadioRepro, kFluoroAccuracy, kFluoroExposure, kMammoAccRepro}), &C::pFocalSpotSize, kLargeSpot},
};

constexpr FieldDefault<float> kNumbers[] = {
    {kWithDistance,                          &C::pSDDValue,    26},
    {Tests({kMammoRadiation}),               &C::pMachineSDD,  26},
    {Tests({kRadioRepro, kRadioLinearity}),  &C::pMachineKV,   80},
    {Tests({kMammoAccRepro}),                &C::pMachineKV,   25},
    {Tests({kMammoRadiation}),               &C::pMachineKV,   28},
    {Tests({kRadioRepro}),                   &C::pMachineMA,   200},
    {Tests({kMammoAccRepro}),                &C::pMachineMA,   100},
    {Tests({kRadioRepro, kMammoAccRepro}),   &C::pMachineMAS,  10},
    {Tests({kRadioRepro, kRadioLinearity, kMammoAccRepro, kMammoRadiation}), &C::pMachineTime, 100},
};

constexpr TextDefault kTexts[] = {
    {Tests({kMammoAec}),       &C::pNominalKV,      "25"},
    {Tests({kMammoAec}),       &C::pFilter,         text::kMolybdenum},
    {Tests({kMammoAec}),       &C::pTargetMaterial, text::kMolybdenum},
    {Tests({kMammoRadiation}), &C::pMachineAnode,   text::kMolybdenum},
    {Tests({kMammoRadiation}), &C::pMachineFilter,  text::kMolybdenum},
};

constexpr ArrayDefault kArrays[] = {
    {kWithFlags,                               &C::importFlags,       "0"},
    {Tests({kRadioAccuracy, kRadioLinearity}), &C::focalSpot,         "1"},
    {Tests({kRadioAccuracy}),                  &C::machineKv,         "80"},
    {kFluoroscopy,                             &C::machineKv,         "80"},
    {Tests({kRadioAccuracy, kRadioLinearity}), &C::machineMa,         "100"},
    {kFluoroscopy,                             &C::machineMa,         "10"},
    {Tests({kRadioAccuracy, kRadioLinearity, kMammoAec, kMammoRadiation}), &C::machineMas, "10"},
    {Tests({kRadioAccuracy}),                  &C::machineTime,       "100"},
    {Tests({kRadioAccuracy}),                  &C::passFailCriterion, "1"},
    {Tests({kRadioLinearity}),                 &C::machineAdjacent,   "0"},
    {Tests({kFluoroExposure}),                 &C::phantomThickness,  text::kPhantom5cm},
    {Tests({kFluoroExposure}),                 &C::mode,              text::kModeNormal},
    {Tests({kMammoRadiation}),                 &C::sid,               "10"},
};
// clang-format on

}  // namespace

void CConfigCommon::DefaultValues(int32_t testId) {
    pTestID = testId;
    for (const TestDefaults& row : kTests) {
        if (row.testId != testId) continue;
        pMeasurementMode = row.mode;
        pMeasurementSettings = kAutoSettings;
        pNoOfExposures = row.exposures;
    }
    for (const auto& row : kChoices)
        if (row.tests.Has(testId)) this->*row.field = row.value;
    for (const auto& row : kNumbers)
        if (row.tests.Has(testId)) this->*row.field = row.value;
    for (const TextDefault& row : kTexts)
        if (row.tests.Has(testId)) this->*row.field = Translate(row.text);
    for (const ArrayDefault& row : kArrays)
        if (row.tests.Has(testId)) (this->*row.array).assign(pNoOfExposures, Translate(row.text));
}

}  // namespace vorex

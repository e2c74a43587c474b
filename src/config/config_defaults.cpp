#include "config/config_common.h"
#include "foundation/test_sets.h"
#include "foundation/utilities.h"

// The defaults of a new test of each kind. A field without a row keeps its construction value.

namespace vorex {

namespace {

using C = ConfigFields;

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

// clang-format off
constexpr FieldDefault<int32_t> kChoices[] = {
    {kWithDistanceUnit,   &C::pSDDUnit,        kInch},
    {kWithGeneratorSetup, &C::pGeneratorSetup, kSetupMas},
    {kWithOneFocalSpot,   &C::pFocalSpotSize,  kLargeSpot},
};

constexpr FieldDefault<float> kNumbers[] = {
    {kWithDistanceUnit,              &C::pSDDValue,    26},
    {kMammoRadiation,                &C::pMachineSDD,  26},
    {{kRadioRepro, kRadioLinearity}, &C::pMachineKV,   80},
    {kMammoAccRepro,                 &C::pMachineKV,   25},
    {kMammoRadiation,                &C::pMachineKV,   28},
    {kRadioRepro,                    &C::pMachineMA,   200},
    {kMammoAccRepro,                 &C::pMachineMA,   100},
    {{kRadioRepro, kMammoAccRepro},  &C::pMachineMAS,  10},
    {kWithOneKv,                     &C::pMachineTime, 100},
};

constexpr TextDefault kTexts[] = {
    {kMammoAec,       &C::pNominalKV,      "25"},
    {kMammoAec,       &C::pFilter,         text::kMolybdenum},
    {kMammoAec,       &C::pTargetMaterial, text::kMolybdenum},
    {kMammoRadiation, &C::pMachineAnode,   text::kMolybdenum},
    {kMammoRadiation, &C::pMachineFilter,  text::kMolybdenum},
};

constexpr ArrayDefault kArrays[] = {
    {TestSet::AllBut(kFluoroscopy),     &C::importFlags,       "0"},
    {kWithFocalSpots,                   &C::focalSpot,         "1"},
    {kRadioAccuracy,                    &C::machineKv,         "80"},
    {kFluoroscopy,                      &C::machineKv,         "80"},
    {{kRadioAccuracy, kRadioLinearity}, &C::machineMa,         "100"},
    {kFluoroscopy,                      &C::machineMa,         "10"},
    {kWithMas,                          &C::machineMas,        "10"},
    {kRadioAccuracy,                    &C::machineTime,       "100"},
    {kRadioAccuracy,                    &C::passFailCriterion, "1"},
    {kRadioLinearity,                   &C::machineAdjacent,   "0"},
    {kFluoroExposure,                   &C::phantomThickness,  text::kPhantom5cm},
    {kFluoroExposure,                   &C::mode,              text::kModeNormal},
    {kMammoRadiation,                   &C::sid,               "10"},
};
// The arrays do not count: a new test has import flags like every other.
static_assert(HoldsOwnRows(kOwnDefaults, kChoices, kNumbers, kTexts));
// clang-format on

}  // namespace

void CConfigCommon::DefaultValues(int32_t testId) {
    pTestID = testId;
    if (!IsMeasuringTest(testId)) return;
    const TestRow& test = *FindTest(testId);
    pMeasurementMode = test.mode;
    pMeasurementSettings = kAutoSettings;
    pNoOfExposures = test.exposures;
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

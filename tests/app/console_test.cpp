#include "app/console.h"

#include <optional>

#include "support/library_test.h"

namespace vorex {
namespace {

using ConsoleTest = test::LibraryTest;

struct Setting {
    UnitKind unit = UnitKind::kRadiographic;
    double kv = 0, ma = 0, mas = 0, timeMs = 0, distanceCm = 0;
    const char* targetFilter = "";
    std::optional<double> phantomCm;
    bool timed = false, automatic = false, highLevel = false, pulsed = false;
};

TEST_F(ConsoleTest, TheOperatorSetsWhatTheGuideAsksForInEachRow) {
    InstallReferenceHost();
    const auto config = [](int32_t test) {
        CConfigCommon made;
        made.DefaultValues(test);
        made.pMachineKV = 81;
        made.pMachineMA = 201;
        made.pMachineMAS = 11;
        made.pMachineTime = 500;
        made.pSDDValue = 50;
        made.pSDDUnit = kInch;
        made.pMachineSDD = 61;
        made.pGeneratorSetup = kSetupMaTime;
        made.pMeasurementFluoroType = kPulsed;
        made.pTargetFilterName = "Mo/Rh";
        made.pTargetMaterial = "Rh";
        made.pFilter = "Rh";
        made.pMachineAnode = "Mo";
        made.pMachineFilter = "Mo";
        made.pNominalKV = "28";
        made.pSourceToDetectorDistance = "62";
        made.pBreastThickness = "4.2";
        made.machineKv = {"60", "70"};
        made.machineMa = {"100", "110"};
        made.machineMas = {"20", "21"};
        made.machineTime = {"200", "210"};
        made.phantomThickness = {"20 cm", "a water phantom"};
        made.mode = {"High level", ""};
        return made;
    };
    struct Case {
        int32_t test;
        uint8_t row;
        Setting expected;
    };
    // 50 inches are 127 cm; 21 mAs in 500 ms are 42 mA.
    constexpr auto kFluoro = UnitKind::kFluoroscopic;
    constexpr auto kMammo = UnitKind::kMammographic;
    // clang-format off
    const std::vector<Case> cases = {
        {kRadioRepro, 1, {.kv = 81, .ma = 201, .mas = 11, .timeMs = 500, .distanceCm = 127, .timed = true}},
        {kRadioAccuracy, 1, {.kv = 70, .ma = 110, .mas = 21, .timeMs = 210, .distanceCm = 127, .timed = true}},
        {kRadioLinearity, 0, {.kv = 81, .ma = 100, .mas = 20, .timeMs = 500, .distanceCm = 127, .timed = true}},
        {kFluoroAccuracy, 1, {.unit = kFluoro, .kv = 70, .ma = 110, .distanceCm = 127, .pulsed = true}},
        {kFluoroExposure, 0, {.unit = kFluoro, .kv = 60, .ma = 100, .distanceCm = 127, .phantomCm = 20,
                              .automatic = true, .highLevel = true, .pulsed = true}},
        {kFluoroExposure, 1, {.unit = kFluoro, .kv = 70, .ma = 110, .distanceCm = 127, .automatic = true,
                              .pulsed = true}},
        {kMammoAccRepro, 0, {.unit = kMammo, .kv = 81, .ma = 201, .mas = 11, .timeMs = 500,
                             .targetFilter = "Mo/Rh"}},
        {kMammoAec, 1, {.unit = kMammo, .kv = 28, .mas = 21, .distanceCm = 62, .targetFilter = "Rh/Rh",
                        .phantomCm = 4.2, .automatic = true}},
        {kMammoRadiation, 1, {.unit = kMammo, .kv = 81, .ma = 42, .mas = 21, .timeMs = 500, .distanceCm = 61,
                              .targetFilter = "Mo/Mo"}},
    };
    // clang-format on
    for (const Case& c : cases) {
        const Technique set = TechniqueOf(config(c.test), c.row);
        const Setting& expected = c.expected;
        SCOPED_TRACE(c.test);
        EXPECT_EQ(set.unit, expected.unit);
        EXPECT_DOUBLE_EQ(set.kv, expected.kv);
        EXPECT_DOUBLE_EQ(set.ma, expected.ma);
        EXPECT_DOUBLE_EQ(set.mas, expected.mas);
        EXPECT_DOUBLE_EQ(set.timeMs, expected.timeMs);
        EXPECT_DOUBLE_EQ(set.distanceCm, expected.distanceCm);
        EXPECT_EQ(set.targetFilter, expected.targetFilter);
        EXPECT_EQ(set.phantomCm, expected.phantomCm);
        EXPECT_EQ(set.timed, expected.timed);
        EXPECT_EQ(set.automatic, expected.automatic);
        EXPECT_EQ(set.highLevel, expected.highLevel);
        EXPECT_EQ(set.pulsed, expected.pulsed);
    }
    for (const auto& [target, filter, both] :
         {std::tuple("Rh", "", "Rh/"), std::tuple("", "Rh", "/Rh"), std::tuple("", "", "")}) {
        CConfigCommon aec = config(kMammoAec);
        aec.pTargetMaterial = target;
        aec.pFilter = filter;
        EXPECT_EQ(TechniqueOf(aec, 0).targetFilter, both);
    }
    CConfigCommon centimetres = config(kRadioRepro);
    centimetres.pSDDUnit = kCentimeter;
    EXPECT_DOUBLE_EQ(TechniqueOf(centimetres, 0).distanceCm, 50);
    for (const int32_t option : {0, kPelomarkAndMas}) {
        centimetres.DetectorName = kMasMeter;
        centimetres.DetectorOption = option;
        EXPECT_EQ(TechniqueOf(centimetres, 0).detectorKind, option == 0 ? kMasMeter : kPelomarkAndMas);
    }
}

}  // namespace
}  // namespace vorex

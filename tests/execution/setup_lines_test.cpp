#include "execution/setup_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "foundation/host_services.h"
#include "foundation/test_sets.h"

namespace vorex {
namespace {

/// A configuration in which no two settings have the same value.
CConfigCommon Distinct(int32_t testId, int32_t generatorSetup) {
    CConfigCommon config;
    config.DefaultValues(testId);
    config.pNoOfExposures = 2;
    config.pGeneratorSetup = generatorSetup;
    config.pSDDValue = 61.5F;
    config.pSDDUnit = kInch;
    config.pFocalSpotSize = kLargeSpot;
    config.pMachineKV = 81;
    config.pMachineMA = 82;
    config.pMachineMAS = 83;
    config.pMachineTime = 84;
    config.pMachineSDD = 85;
    config.pMachineAnode = "anode";
    config.pMachineFilter = "machine filter";
    config.importFlags = {"1", "0"};
    config.machineKv = {"71", "91"};
    config.machineMa = {"72", "92"};
    config.machineMas = {"73", "93"};
    config.machineTime = {"74", "94"};
    config.focalSpot = {"1", "2"};
    config.passFailCriterion = {"3", "4"};
    config.machineAdjacent = {"0", "1"};
    config.phantomThickness = {"7 cm", "9 cm"};
    config.mode = {"low", "high"};
    config.sid = {"75", "95"};
    config.pNominalKV = "26";
    config.pSourceToDetectorDistance = "27";
    config.pBreastThickness = "4.5";
    config.pSourceToBuckyDistance = "64";
    config.pSID = "65";
    config.pFilter = "filter";
    config.pTargetMaterial = "target";
    config.pGlandularFraction = "0.4";
    config.pEnergyCorrectionFactor = "1.1";
    config.pDensityControlSettings = "dc";
    config.pCassetteSize = "18";
    config.pFilmType = "film";
    config.pAECMode = "aec";
    config.pFileldRestriction = "field";
    config.pImagingMode = "imaging";
    config.pScreenType = "screen";
    config.pMeasuredHVL = "0.31";
    config.pPhantom = "phantom";
    return config;
}

using Lines = std::vector<std::string>;

struct Row {
    int32_t testId;
    int32_t setup;
    Lines lines;  ///< of the second exposure
    std::vector<int32_t> perExposure;
};

const std::vector<Row>& Rows() {
    static const std::string sdd = "1. Set SDD to 61.5 Inches.";
    static const std::vector<Row> rows = {
        {100,
         kSetupMas,
         {sdd, "    Set FSS to Large.", "    Set Machine kVp to 81 KV.", "    Set Machine mAs to 83."},
         {}},
        {100,
         kSetupMaTime,
         {sdd, "    Set FSS to Large.", "    Set Machine kVp to 81 KV.", "    Set Machine mA to 82 mA.",
          "    Set Machine Time to 84 ms."},
         {}},
        {200,
         kSetupMas,
         {sdd, "    Set Focal Spot Size to Small.", "    Set Machine kVp to 91 KV.",
          "    Set Machine mAs to 93."},
         {2, 3, 4}},
        {200,
         kSetupMaTime,
         {sdd, "    Set Focal Spot Size to Small.", "    Set Machine kVp to 91 KV.",
          "    Set Machine mA to 92 mA.", "    Set Machine Time to 94 ms."},
         {2, 3, 4, 5}},
        {300,
         kSetupMas,
         {sdd, "    Set Focal Spot Size to Small.", "    Set Machine kVp to 81 KV.",
          "    Set Machine mAs to 93."},
         {2, 4}},
        {300,
         kSetupMaTime,
         {sdd, "    Set Focal Spot Size to Small.", "    Set Machine kVp to 81 KV.",
          "    Set Machine mA to 92 mA.", "    Set Machine Time to 84 ms."},
         {2, 4}},
        {500,
         kSetupMas,
         {sdd, "    Set FSS to Large.", "    Set Machine kVp to 91 KV.", "    Set Machine mA to 92 mA."},
         {3, 4}},
        {700,
         kSetupMas,
         {sdd, "    Set FSS to Large.", "    Set Machine kVp to 91 KV.", "    Set Machine mA to 92 mA.",
          "    Set Phantom Thickness to 9 cm.", "    Set Mode to high."},
         {3, 4, 5, 6}},
        {900,
         kSetupMas,
         {"1. Set Machine kVp to 81 KV.", "    Set Machine mA to 82 mA.", "    Set Machine mAs to 83.",
          "    Set Machine Time to 84 ms.", "    Set FSS to Large."},
         {}},
        {1100,
         kSetupMas,
         {"1. Set SDD to 27.", "    Set Machine kVp to 26 KV.", "    Set Machine mAs to 93.",
          "    Set Breast Thickness to 4.5 cm.", "    Set SBD to 64 cm.", "    Set SID to 65 cm.",
          "    Set Filter to filter.", "    Set Target Material to target.",
          "    Set Glandular Fraction to 0.4.", "    Set Energy Correction Factor to 1.1.",
          "    Set Density Control Settings to dc.", "    Set Cassette Size to 18 cm.",
          "    Set Film Type to film.", "    Set AEC Mode to aec.", "    Set Field Restriction to field.",
          "    Set Imaging Mode to imaging.", "    Set Screen Type to screen.",
          "    Set Measured HVL to 0.31.", "    Set Phantom to phantom."},
         {3}},
        {1200,
         kSetupMas,
         {"1. Set SDD to 85.", "    Set Machine kVp to 81 KV.", "    Set Machine Time to 84 ms.",
          "    Set Anode to anode.", "    Set Filter to machine filter.", "    Set SID to 95 cm.",
          "    Set Machine mAs to 93."},
         {6, 7}},
    };
    return rows;
}

TEST(SetupLines, EachLineHasTheSettingOfItsTestAndExposureForEveryKind) {
    InstallServices({});
    TestSet seen;
    for (const Row& row : Rows()) {
        seen = seen | row.testId;
        for (int32_t kind : kDetectorKinds) {
            CConfigCommon config = Distinct(row.testId, row.setup);
            config.DetectorName = kind;
            EXPECT_EQ(BuildSetupLines(config, 1), row.lines) << row.testId << " kind " << kind;
        }
        const SetupLineNumbers numbers = NumberSetupLines(row.testId, row.setup);
        EXPECT_EQ(numbers.count, static_cast<int32_t>(row.lines.size())) << row.testId;
        EXPECT_EQ(numbers.perExposure, row.perExposure) << row.testId;
        // The lines that change with the exposure are exactly these.
        const Lines first = BuildSetupLines(Distinct(row.testId, row.setup), 0);
        for (std::size_t i = 0; i < first.size(); ++i) {
            const bool changes =
                std::count(row.perExposure.begin(), row.perExposure.end(), static_cast<int32_t>(i) + 1) == 1;
            EXPECT_EQ(first[i] != row.lines[i], changes) << row.testId << ": " << first[i];
        }
    }
    EXPECT_TRUE(seen == TestSet::AllBut({})) << "a test has no row here";
}

TEST(SetupLines, AnEmptySettingKeepsItsPlace) {
    CConfigCommon config = Distinct(kMammoAec, kSetupMas);
    config.pSID.clear();
    const Lines lines = BuildSetupLines(config, 0);
    ASSERT_EQ(lines.size(), 19U);
    EXPECT_EQ(lines[5], "");
    EXPECT_EQ(lines[6], "    Set Filter to filter.");
}

TEST(SetupLines, ATestWithoutLinesIsAnError) {
    CConfigCommon config;
    config.DefaultValues(kOldRadioHvl);
    EXPECT_THROW(BuildSetupLines(config, 0), std::logic_error);
    EXPECT_THROW(NumberSetupLines(kOldRadioHvl, kSetupMas), std::logic_error);
}

}  // namespace
}  // namespace vorex

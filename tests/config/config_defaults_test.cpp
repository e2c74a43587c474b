#include "config/config_fixture.h"

namespace vorex {
namespace {

class ConfigDefaults : public test::ConfigTest {};

struct Defaults {
    int32_t testId;
    int32_t mode;
    int exposures;
    float kv, ma, mas, time;
    std::size_t flags;
    const char* firstRow;  ///< of the columns behind the flag, joined by "|"
};

// A field that a test does not set keeps its construction value: 80 kV, 200 mA, 10 mAs, 100 ms.
constexpr Defaults kDefaults[] = {{100, kRadio, 2, 80, 200, 10, 100, 2, "0|0|0|0|0"},
                                  {200, kRadio, 1, 80, 200, 10, 100, 1, "1|1|80|10|100"},
                                  {300, kRadio, 2, 80, 200, 10, 100, 2, "0|1|10|0|0"},
                                  {500, kFluoro, 1, 80, 200, 10, 100, 2, "80|10|0|0|0"},
                                  {700, kFluoro, 1, 80, 200, 10, 100, 2, "80|10|5 cm|Normal|0"},
                                  {900, kMammo, 4, 25, 100, 10, 100, 4, "0|0|0|0|0"},
                                  {1100, kMammo, 2, 80, 200, 10, 100, 2, "10|0|0|0|0"},
                                  {1200, kMammo, 2, 28, 200, 10, 100, 2, "10|10|0|0|0"}};

TEST_F(ConfigDefaults, EachTestStartsWithItsOwnValues) {
    for (const Defaults& row : kDefaults) {
        const auto config = New(row.testId);
        EXPECT_EQ(config->pTestID, row.testId);
        EXPECT_EQ(config->pMeasurementMode, row.mode) << row.testId;
        EXPECT_EQ(config->pMeasurementSettings, kAutoSettings);
        EXPECT_EQ(config->pNoOfExposures, row.exposures) << row.testId;
        EXPECT_EQ(config->pMachineKV, row.kv) << row.testId;
        EXPECT_EQ(config->pMachineMA, row.ma) << row.testId;
        EXPECT_EQ(config->pMachineMAS, row.mas);
        EXPECT_EQ(config->pMachineTime, row.time);
        EXPECT_EQ(config->pSDDUnit, kInch);
        EXPECT_EQ(config->pSDDValue, 26.0F);
        EXPECT_EQ(config->pGeneratorSetup, kSetupMas);
        EXPECT_EQ(config->importFlags, TextArray(row.flags, "0")) << row.testId;
        const auto last = static_cast<uint8_t>(config->pNoOfExposures - 1);
        for (const uint8_t exposure : {uint8_t{0}, last}) {
            std::string cells;
            for (uint8_t column = 2; column <= 6; ++column)
                cells += (cells.empty() ? "" : "|") + config->GetValue(exposure, column);
            EXPECT_EQ(cells, row.firstRow) << row.testId << " row " << int{exposure};
        }
    }
}

TEST_F(ConfigDefaults, AMaTableStartsWithMoreThanTheFluoroscopyOne) {
    EXPECT_EQ(New(200)->machineMa, TextArray(1, "100"));
    EXPECT_EQ(New(300)->machineMa, TextArray(2, "100"));
    EXPECT_EQ(New(500)->machineMa, TextArray(1, "10"));
    EXPECT_EQ(New(100)->machineMa, TextArray(2, "10")) << "not a table of this test";
}

TEST_F(ConfigDefaults, ValuesChangedBeforeAreSetBack) {
    CConfigCommon config;
    config.pMachineKV = 1;
    config.pSDDValue = 2;
    config.pFocalSpotSize = kSmallSpot;
    config.pGeneratorSetup = kSetupMaTime;
    config.machineMas = {"3"};
    config.pNominalKV = "4";
    config.pFilter = "Al";
    config.DefaultValues(300);
    EXPECT_EQ(config.pMachineKV, 80.0F);
    EXPECT_EQ(config.pSDDValue, 26.0F);
    EXPECT_EQ(config.pGeneratorSetup, kSetupMas);
    EXPECT_EQ(config.machineMas, TextArray(2, "10"));
    EXPECT_EQ(config.pFocalSpotSize, kSmallSpot) << "not a setting of test 300";
    EXPECT_EQ(config.pNominalKV, "4");
    config.DefaultValues(1100);
    EXPECT_EQ(config.pNominalKV, "25");
    EXPECT_EQ(config.pFilter, "Mo");
}

TEST_F(ConfigDefaults, TextsComeInThePresentLanguage) {
    texts->words["22357::Mo"] = "Molibdeno";
    texts->words["23122::Normal"] = "Habitual";
    EXPECT_EQ(New(1200)->pMachineAnode, "Molibdeno");
    EXPECT_EQ(New(700)->mode, TextArray{"Habitual"});
}

TEST_F(ConfigDefaults, AnUnknownTestOnlyStoresItsIdentifier) {
    CConfigCommon config;
    config.pNoOfExposures = 7;
    config.DefaultValues(400);
    EXPECT_EQ(config.pTestID, 400);
    EXPECT_EQ(config.pNoOfExposures, 7);
    EXPECT_EQ(config.pMeasurementMode, 0);
    EXPECT_EQ(config.importFlags, TextArray(2, "0"));
}

}  // namespace
}  // namespace vorex

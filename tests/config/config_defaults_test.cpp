#include "config/config_fixture.h"

namespace vorex {
namespace {

class ConfigDefaults : public test::ConfigTest {};

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

}  // namespace
}  // namespace vorex

#include "config/config_common.h"

#include "config/config_fixture.h"
#include "support/distinct_config.h"

namespace vorex {
namespace {

class ConfigCommon : public test::ConfigTest {};
using Texts = TextArray;

TEST_F(ConfigCommon, ANewObjectHasTheValuesOfItsConstruction) {
    texts->words["22357::Mo"] = "Molybdän";
    texts->words["23123::5 cm"] = "50 mm";
    const CConfigCommon config;
    EXPECT_EQ(config.pTestID, 0);
    for (const std::string* material :
         {&config.pMachineAnode, &config.pMachineFilter, &config.pTargetMaterial, &config.pFilter})
        EXPECT_EQ(*material, "Molybdän");
    EXPECT_EQ(config.phantomThickness, Texts(2, "50 mm"));
    EXPECT_EQ(config.focalSpot, Texts(2));
    EXPECT_EQ(config.machineKv, Texts(2, "80"));
    EXPECT_EQ(config.pMeasurementExposure, 0) << "the site defaults are not taken yet";
    EXPECT_TRUE(config.TestGuideConfig());
    EXPECT_TRUE(config.HasDialog());
    Install(',');
    EXPECT_EQ(CConfigCommon().pBreastThickness, "4,2");
    EXPECT_EQ(CConfigCommon().pGlandularFraction, "0,5");
    InstallServices({});
    const auto bare = std::make_shared<CConfigCommon>();
    EXPECT_FALSE(bare->TestGuideConfig()) << "the host makes none";
    EXPECT_TRUE(bare->Clone());
}

TEST_F(ConfigCommon, AColumnNumberMeansAnArrayOfTheTest) {
    struct Row {
        int32_t testId, setup;
        Texts columns;  ///< of columns 1 to 7; "0" where the test has none
    };
    const Row kRows[] = {{100, 1, {"flag", "0", "0", "0", "0", "0", "0"}},
                         {200, 1, {"flag", "spot", "criterion", "kV", "mAs", "ms", "0"}},
                         {200, 2, {"flag", "spot", "criterion", "kV", "mA", "ms", "0"}},
                         {300, 1, {"flag", "adjacent", "spot", "mAs", "0", "0", "0"}},
                         {300, 2, {"flag", "adjacent", "spot", "mA", "0", "0", "0"}},
                         {500, 1, {"flag", "kV", "mA", "0", "0", "0", "0"}},
                         {700, 2, {"flag", "kV", "mA", "thickness", "mode", "0", "0"}},
                         {900, 1, {"flag", "0", "0", "0", "0", "0", "0"}},
                         {1100, 2, {"flag", "mAs", "0", "0", "0", "0", "0"}},
                         {1200, 2, {"flag", "sid", "mAs", "0", "0", "0", "0"}}};
    for (const Row& row : kRows) {
        CConfigCommon config;
        config.pTestID = row.testId;
        config.pGeneratorSetup = row.setup;
        config.importFlags[1] = "flag";
        config.focalSpot[1] = "spot";
        config.passFailCriterion[1] = "criterion";
        config.machineKv[1] = "kV";
        config.machineMa[1] = "mA";
        config.machineMas[1] = "mAs";
        config.machineTime[1] = "ms";
        config.machineAdjacent[1] = "adjacent";
        config.phantomThickness[1] = "thickness";
        config.mode[1] = "mode";
        config.sid[1] = "sid";
        for (uint8_t column = 1; column <= 7; ++column) {
            const std::string& expected = row.columns[column - 1U];
            EXPECT_EQ(config.GetValue(1, column), expected) << row.testId << " column " << int{column};
            Texts whole;
            config.GetArrayData(column, whole);
            ASSERT_EQ(whole.size(), 2U);
            EXPECT_EQ(whole[1], expected == "0" ? "" : expected) << row.testId << " column " << int{column};
        }
    }
}

TEST_F(ConfigCommon, BeyondTheTableTheFirstChoiceOrZeroIsRead) {
    for (int32_t testId : kMeasuringTests) {
        const auto config = New(testId);
        for (uint8_t column = 1; column <= 6; ++column) {
            const bool choice =
                (testId == 200 && (column == 2 || column == 3)) || (testId == 300 && column == 3);
            EXPECT_EQ(config->GetValue(config->pNoOfExposures, column), choice ? "1" : "0")
                << testId << " column " << int{column};
        }
        EXPECT_EQ(config->GetValue(0, testId == 700 ? ExposureColumn::kSid : ExposureColumn::kMode), "0");
    }
}

TEST_F(ConfigCommon, OnlyTheFlagIsSetForOtherDetectorsThanTheFirst) {
    const auto config = New(500);
    for (int32_t kind = 2; kind <= 5; ++kind) {
        config->DetectorName = kind;
        config->SetValue(0, 2, "99");
        config->SetValue(0, 1, std::to_string(kind));
        EXPECT_EQ(config->GetValue(0, 2), "80") << kind;
        EXPECT_EQ(config->GetValue(0, 1), std::to_string(kind));
    }
    config->DetectorName = kZrd;
    config->SetValue(0, 2, "99");
    config->SetValue(1, 2, "beyond");
    EXPECT_EQ(config->machineKv, Texts{"99"});
}

TEST_F(ConfigCommon, AnArrayShorterThanTheTableReadsEmptyAndGrowsWhenSet) {
    const auto config = New(500);
    config->pNoOfExposures = 4;
    EXPECT_EQ(config->GetValue(3, 2), "");
    Texts column;
    config->GetArrayData(2, column);
    EXPECT_EQ(column, (Texts{"80", "", "", ""}));
    config->SetValue(2, 2, "70");
    EXPECT_EQ(config->machineKv, (Texts{"80", "", "70"}));
}

TEST_F(ConfigCommon, AnEmptyTableIsNeitherReadNorStored) {
    const auto config = New(500);
    config->pNoOfExposures = 0;
    Texts column = {"as it was"};
    config->GetArrayData(2, column);
    EXPECT_EQ(column, Texts{"as it was"});
    config->SetArrayData(2, {"1"});
    config->ReDimArrayData(1, {"1"});
    EXPECT_EQ((Texts{config->machineKv.at(0), config->machineMa.at(0)}), (Texts{"80", "10"}));
    EXPECT_EQ(config->importFlags, Texts(2, "0"));
}

TEST_F(ConfigCommon, StoringAColumnEmptiesTheFlagsUnlessItIsTheirs) {
    const auto config = New(700);
    config->pNoOfExposures = 3;
    config->SetArrayData(1, {"1", "0", "1"});
    EXPECT_EQ(config->importFlags, (Texts{"1", "0", "1"}));
    config->SetArrayData(4, {"1 cm", "2 cm", "3 cm"});
    EXPECT_EQ(config->phantomThickness, (Texts{"1 cm", "2 cm", "3 cm"}));
    EXPECT_EQ(config->importFlags, Texts(3));
    config->SetArrayData(2, {"70"});
    EXPECT_EQ(config->machineKv, (Texts{"70", "", ""})) << "a short input fills what it has";
    // The mAs column is stored where the generator setup says.
    const auto linearity = New(300);
    linearity->SetArrayData(4, {"5", "6"});
    linearity->pGeneratorSetup = kSetupMaTime;
    linearity->SetArrayData(4, {"50", "60"});
    EXPECT_EQ(linearity->machineMas, (Texts{"5", "6"}));
    EXPECT_EQ(linearity->machineMa, (Texts{"50", "60"}));
    // Three columns that are not on the screen have numbers of their own.
    for (const uint8_t column : {0, 1, 2, 3, 4})
        linearity->ReDimArrayData(column, {std::to_string(column), "x"});
    EXPECT_EQ((Texts{linearity->machineMa[0], linearity->machineMas[0], linearity->machineTime[0]}),
              (Texts{"1", "2", "3"}));
    EXPECT_EQ(linearity->focalSpot[0], "1") << "no other column";
}

TEST_F(ConfigCommon, TheVariationOfTheSetMasIsARatioInTwoDecimals) {
    const std::tuple<Texts, uint8_t, const char*> kRows[] = {{{"10", "10"}, 2, "0.0"},
                                                             {{"10", "12"}, 2, "0.13"},  // 1.41421 / 11
                                                             {{"9,5", "10", "10.5"}, 3, "0.05"},  // 0.5 / 10
                                                             {{"10"}, 1, ""},
                                                             {{"10", "OL"}, 2, ""},
                                                             {{"ul", "10"}, 2, ""},
                                                             {{"0", "0"}, 2, ""},
                                                             {{"-1", "0.5"}, 2, ""}};
    for (const auto& [mas, exposures, variation] : kRows) {
        CConfigCommon config;
        config.machineMas = mas;
        config.pNoOfExposures = exposures;
        EXPECT_EQ(config.GetmASCV(), variation) << mas.front();
    }
}

TEST_F(ConfigCommon, TheFirstCloneTakesTheSiteDefaultsIntoItsSource) {
    for (const auto& [name, value] : {std::pair{"DoseUnit", "2"},
                                      {"DoseRateUnit", "4"},
                                      {"FluoroType", "2"},
                                      {"TimeUnit", "2"},
                                      {"PercentKV", "300"},
                                      {"Delay", "-3"},
                                      {"IncludeDelay", "1"},
                                      {"SDDUnit", "2"}})
        settings->Set(name, std::string(value));
    const auto source = New(500);
    source->ManualSelectedInTestGuide = true;
    const auto clone = std::dynamic_pointer_cast<CConfigCommon>(source->Clone());
    const char* taken =  // a percentage is no more than its field holds
        "MeasurementExposure=2;MeasurementExposureRateUnit=4;MeasurementFluoroType=2;MeasurementTimeUnit=2;"
        "MeasurementPercentKV=255;MeasurementDelay=-3;MeasurementIncludeDelay=1;SDDUnit=1;";
    for (const auto& config : {source, clone}) {
        const std::string saved = test::Listed(*config->Save(document));
        EXPECT_NE(saved.find(taken), std::string::npos) << saved;
    }
    EXPECT_FALSE(source->pReadFromRegStatus);
    EXPECT_TRUE(clone->pReadFromRegStatus);
    EXPECT_FALSE(clone->ManualSelectedInTestGuide) << "it belongs to the guide that is open";
    clone->TestGuideConfig()->Buttons(kSkipButtonBit);
    clone->machineMa[0] = "77";
    EXPECT_EQ(source->TestGuideConfig()->Buttons(), kSkipButtonBit | kNaButtonBit);
    EXPECT_EQ(source->machineMa[0], "10");
}

TEST_F(ConfigCommon, WhatTheStoreDoesNotHoldBecomesTheFirstChoiceOrStays) {
    for (const char* unusable : {"", "0", "9", "-1", "word"}) {
        for (const char* name : {"DoseUnit", "DoseRateUnit", "FluoroType", "TimeUnit"})
            settings->Set(name, std::string(unusable));
        const auto source = test::DistinctConfig(500);
        source->pSDDUnit = kCentimeter;
        source->Clone();
        const std::string saved = test::Listed(*source->Save(document));
        EXPECT_NE(saved.find("MeasurementExposure=1;MeasurementExposureRateUnit=1;MeasurementFluoroType=1;"
                             "MeasurementTimeUnit=1;MeasurementPercentKV=76;MeasurementDelay=-120;"
                             "MeasurementIncludeDelay=1;SDDUnit=1;"),
                  std::string::npos)
            << unusable << ": " << saved;
    }
}

TEST_F(ConfigCommon, AChainOfClonesAlternates) {
    const auto first = New(500);
    const auto second = std::dynamic_pointer_cast<CConfigCommon>(first->Clone());
    settings->Set("DoseUnit", std::string("2"));
    second->pMeasurementFluoroType = second->pMeasurementTimeUnit = 2;
    const auto third = std::dynamic_pointer_cast<CConfigCommon>(second->Clone());
    EXPECT_EQ(second->pMeasurementFluoroType, 1) << "automatic settings are continuous";
    EXPECT_EQ(second->pMeasurementTimeUnit, 1);
    EXPECT_EQ(third->pMeasurementExposure, 1) << "a clone of a flagged object asks the store no more";
    EXPECT_FALSE(third->pReadFromRegStatus);
    third->Clone();
    EXPECT_EQ(third->pMeasurementExposure, 2);

    second->pReadFromRegStatus = true;
    second->pMeasurementSettings = 2;
    second->pMeasurementFluoroType = second->pMeasurementTimeUnit = 2;
    second->Clone();
    EXPECT_EQ(second->pMeasurementFluoroType, 2) << "manual settings stay";
    EXPECT_EQ(second->pMeasurementTimeUnit, 2);
}

}  // namespace
}  // namespace vorex

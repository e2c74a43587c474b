#include "config/config_fixture.h"
#include "foundation/host_error.h"
#include "support/distinct_config.h"

namespace vorex {
namespace {

class ConfigPersistence : public test::ConfigTest {
  protected:
    std::string Save(CConfigCommon& config) { return test::Listed(*config.Save(document)); }

    static std::shared_ptr<CConfigCommon> Loaded(int32_t testId, const std::string& keys) {
        auto config = New(testId);
        config->Load(test::XmlText("<PlugInData PlugIn=\"ZRD47500\">" + keys + "</PlugInData>").Root(),
                     nullptr);
        return config;
    }
};

const std::string kMeasurement =
    "MeasurementMode=1;MeasurementSettings=1;MeasurementExposure=1;MeasurementExposureRateUnit=1;"
    "MeasurementFluoroType=1;MeasurementTimeUnit=1;MeasurementPercentKV=0;MeasurementDelay=0;"
    "MeasurementIncludeDelay=0;";
const std::string kFluoroMeasurement = "MeasurementMode=2" + kMeasurement.substr(17);
const std::string kMammoMeasurement = "MeasurementMode=3" + kMeasurement.substr(17);
const std::string kRest =
    "NameOfTargetFilter=;PKADCF=True;PKUserSetTemp=False;PKTemperature=22;PKUserSetPres=False;PKPressure=610;"
    "PKRefTemp=20;PKMode=0;PKAutoReset=False;PKDoseUnit=0;PKDoseRateUnit=0;PKFrameRate=10;PKTempUnit=0;"
    "PKPresUnit=1;PKOffsetTemp=1.2;PKOffsetPres=1.2;PKIonChamName=;PKIonCalFactor=;PKIonCalConst=;"
    "MASInput=True;MASInOver=True;MASOption=False;TestguidemAsInput=;OverridePrint=True;DetectorOption=0;"
    "TestGuideSettings=";

TEST_F(ConfigPersistence, ANewTestIsWrittenKeyByKeyInThisOrder) {
    // clang-format off
    const std::tuple<int32_t, std::string, std::string, std::string> kBlocks[] = {
        {100, "2;NumberOfExposures0=0;NumberOfExposures1=0;", kMeasurement,
         "GeneratorSetup=1;MachineKV=80;MachinemA=200;MachinemAs=10;MachineTime=100;SDDUnit=2;SDDValue=26;"
         "FocalSpotSize=1;"},
        {200, "1;NumberOfExposures0=0;MachineKV0=80;MachinemA0=100;MachinemAs0=10;MachineTime0=100;"
              "FocalSpotSize0=1;PassFailRadioAccuracyKVP0=1;",
         kMeasurement, "GeneratorSetup=1;SDDUnit=2;SDDValue=26;"},
        {300, "2;NumberOfExposures0=0;MachinemA0=100;MachinemAs0=10;MachineAdjacent0=0;FocalSpot0=1;"
              "NumberOfExposures1=0;MachinemA1=100;MachinemAs1=10;MachineAdjacent1=0;FocalSpot1=1;",
         kMeasurement, "MachineKV=80;MachineTime=100;GeneratorSetup=1;SDDUnit=2;SDDValue=26;"},
        {500, "1;NumberOfExposures0=0;MachineKV0=80;MachinemA0=10;",
         kFluoroMeasurement, "SDDUnit=2;SDDValue=26;FocalSpotSize=1;"},
        {700, "1;NumberOfExposures0=0;MachineKV0=80;MachinemA0=10;PhantomThickness0=5 cm;Mode0=Normal;",
         kFluoroMeasurement, "SDDUnit=2;SDDValue=26;FocalSpotSize=1;"},
        {900, "4;NumberOfExposures0=0;NumberOfExposures1=0;NumberOfExposures2=0;NumberOfExposures3=0;",
         kMammoMeasurement, "MachineKV=25;MachinemA=100;MachinemAs=10;MachineTime=100;FocalSpotSize=1;"},
        {1100, "2;NumberOfExposures0=0;MachinemAs0=10;NumberOfExposures1=0;MachinemAs1=10;", kMammoMeasurement,
         "NominalKV=25;AECMode=;CassetteSize=0;ImagingMode=;ScreenType=;FilmType=;Filter=Mo;TargetMaterial=Mo;"
         "FieldRestriction=;SouceToBuckyDistance=0;SourceToDetectorDistance=26;SID=0;DensityControlSettings=0;"
         "CorrectionFactor=1;GlandularFraction=0.5;MeasuredHVL=0;Phantom=;BreastThickness=4.2;"},
        {1200, "2;NumberOfExposures0=0;MachinemAs0=10;SID0=10;NumberOfExposures1=0;MachinemAs1=10;SID1=10;",
         kMammoMeasurement, "MachineKV=28;Anode=Mo;MachineTime=100;Filter=Mo;SDD=26;"},
    };
    // clang-format on
    for (const auto& [testId, table, measurement, machine] : kBlocks)
        EXPECT_EQ(Save(*New(testId)),
                  "DetectorName=1;NumberOfExposures=" + table + measurement + machine + kRest)
            << testId;
    const auto element = New(100)->Save(document);
    EXPECT_EQ(element->Name(), "PlugInData");
    EXPECT_EQ(element->GetAttribute("PlugIn"), "ZRD47500");
}

TEST_F(ConfigPersistence, EverySettingComesBackFromTheFileAndFromAClone) {
    for (int32_t testId : kMeasuringTests) {
        const auto config = test::DistinctConfig(testId, kSetupMaTime);
        config->TestGuideConfig()->Buttons(kNaButtonBit);
        config->mode = {"a", "b & <c>"};
        const auto clone = std::dynamic_pointer_cast<CConfigCommon>(config->Clone());
        EXPECT_EQ(Save(*clone), Save(*config)) << testId;
        EXPECT_EQ(clone->PrintTheComment, "comment");
        const auto element = config->Save(document);
        const auto loaded = New(testId);
        loaded->Load(element, nullptr);
        if (testId == kFluoroExposure)  // the thickness column is filled from the mA column
            config->phantomThickness = config->machineMa;
        EXPECT_EQ(Save(*loaded), Save(*config)) << testId;
        EXPECT_EQ(loaded->importFlags, config->importFlags) << testId;
        EXPECT_FALSE(loaded->pReadFromRegStatus);
    }
}

TEST_F(ConfigPersistence, FourKeysOfTheDosimeterAreSwapped) {
    const auto config = Loaded(100,
                               "<PKOffsetTemp>5</PKOffsetTemp><PKOffsetPres>6</PKOffsetPres>"
                               "<PKIonCalFactor>c</PKIonCalFactor><PKIonCalConst>f</PKIonCalConst>");
    EXPECT_EQ(config->InternalPressureOffset, 5.0F);
    EXPECT_EQ(config->InternalTemperatureOffset, 6.0F);
    EXPECT_EQ(config->CalConstant, "c");
    EXPECT_EQ(config->CalFactor, "f");
}

TEST_F(ConfigPersistence, CodesOfTheFileBecomeChoicesInMemory) {
    struct Row {
        const char* code;
        std::vector<int32_t> choices;  ///< mode, settings, rate base, distance unit, focal spot, setup, delay
    };
    const Row kRows[] = {{"1", {1, 1, 1, 2, 1, 1, 1}}, {"2", {3, 2, 2, 1, 2, 2, 0}},
                         {"3", {2, 3, 3, 2, 2, 1, 0}}, {"4", {4, 1, 4, 2, 2, 1, 0}},
                         {"7", {1, 1, 1, 2, 2, 1, 0}}, {"0", {1, 1, 1, 2, 2, 1, 0}},
                         {"", {1, 1, 1, 2, 2, 1, 0}},  {"word", {1, 1, 1, 2, 2, 1, 0}}};
    for (const Row& row : kRows) {
        std::string keys;
        for (const char* name : {"MeasurementMode", "MeasurementSettings", "MeasurementExposureRateUnit",
                                 "SDDUnit", "FocalSpotSize", "GeneratorSetup", "MeasurementIncludeDelay"})
            keys += "<" + std::string(name) + ">" + row.code + "</" + name + ">";
        const auto c = Loaded(100, keys);
        EXPECT_EQ((std::vector<int32_t>{c->pMeasurementMode, c->pMeasurementSettings,
                                        c->pMeasurementExposureRateUnit, c->pSDDUnit, c->pFocalSpotSize,
                                        c->pGeneratorSetup, c->pMeasurementIncludeDelay}),
                  row.choices)
            << row.code;
    }
}

TEST_F(ConfigPersistence, ACodeThatNoChoiceHasStaysUntilTheSettingChanges) {
    const auto savedCode = [&](CConfigCommon& config, std::string_view name) {
        return config.Save(document)->ReadValue(name, "absent");
    };
    const auto config = Loaded(100,
                               "<SDDUnit>7</SDDUnit><FocalSpotSize>9</FocalSpotSize>"
                               "<MeasurementExposureRateUnit>5</MeasurementExposureRateUnit>"
                               "<MeasurementIncludeDelay>4</MeasurementIncludeDelay>"
                               "<MeasurementTimeUnit>word</MeasurementTimeUnit>");
    EXPECT_EQ(config->pSDDUnit, kCentimeter);
    const auto clone = std::dynamic_pointer_cast<CConfigCommon>(config->Clone());
    for (CConfigCommon* each : {config.get(), clone.get()}) {
        EXPECT_EQ(savedCode(*each, "SDDUnit"), "7");
        EXPECT_EQ(savedCode(*each, "FocalSpotSize"), "9");
        EXPECT_EQ(savedCode(*each, "MeasurementExposureRateUnit"), "5");
        EXPECT_EQ(savedCode(*each, "MeasurementIncludeDelay"), "4");
        EXPECT_EQ(savedCode(*each, "MeasurementTimeUnit"), "1") << "a word is no code";
    }
    config->pSDDUnit = kInch;
    EXPECT_EQ(savedCode(*config, "SDDUnit"), "2");
    config->Load(
        test::XmlText("<PlugInData PlugIn=\"ZRD47500\"><FocalSpotSize>1</FocalSpotSize></PlugInData>").Root(),
        nullptr);
    EXPECT_EQ(savedCode(*config, "FocalSpotSize"), "1") << "another file forgets the code";
}

TEST_F(ConfigPersistence, AnAbsentChoiceIsItsFirstAndAnAbsentValueStays) {
    const auto config = test::DistinctConfig(100, kSetupMaTime);
    config->pSDDUnit = kCentimeter;
    config->pFocalSpotSize = kSmallSpot;
    config->pMeasurementMode = kFluoro;
    config->DetectorName = 3;
    config->Load(test::XmlText("<PlugInData PlugIn=\"ZRD47500\"/>").Root(), nullptr);
    EXPECT_EQ((std::vector<int32_t>{config->pSDDUnit, config->pFocalSpotSize, config->pGeneratorSetup,
                                    config->pMeasurementMode, config->pMeasurementIncludeDelay}),
              (std::vector<int32_t>{kInch, kLargeSpot, kSetupMas, 1, 0}));
    EXPECT_EQ(config->pMachineKV, 81.0F);
    EXPECT_EQ((std::vector<int32_t>{config->PKMode, config->AirDensityCorrection, config->DetectorName,
                                    config->pNoOfExposures}),
              (std::vector<int32_t>{2, 0, 3, 0}));
    EXPECT_EQ(config->importFlags.size(), 2U) << "without a count the arrays keep their size";
}

TEST_F(ConfigPersistence, TruthIsSpelledTrueAndAnEmptyTextIsTheDefault) {
    struct Row {
        const char* key;
        bool ConfigFields::*field;
        bool emptyIs;
    };
    constexpr Row kRows[] = {{"PKADCF", &ConfigFields::AirDensityCorrection, true},
                             {"PKUserSetTemp", &ConfigFields::UserSetTemperature, false},
                             {"PKUserSetPres", &ConfigFields::UserSetPressure, false},
                             {"PKAutoReset", &ConfigFields::AutoReset, false},
                             {"MASInput", &ConfigFields::MASInput, true},
                             {"MASInOver", &ConfigFields::MASInputOverride, true},
                             {"MASOption", &ConfigFields::MASOption, false},
                             {"OverridePrint", &ConfigFields::OverridePrintReport, true}};
    for (const Row& row : kRows) {
        const auto read = [&](const std::string& value) {
            const std::string tag(row.key);
            return (*Loaded(900, "<" + tag + ">" + value + "</" + tag + ">")).*row.field;
        };
        EXPECT_TRUE(read("True")) << row.key;
        for (const char* other : {"False", "true", "1", "Yes"}) EXPECT_FALSE(read(other)) << row.key << other;
        EXPECT_EQ(read(""), row.emptyIs) << row.key;
    }
}

TEST_F(ConfigPersistence, NumbersStayWithinTheirFields) {
    const auto config = Loaded(100,
                               "<DetectorName>0</DetectorName><NumberOfExposures>300</NumberOfExposures>"
                               "<MeasurementPercentKV>-5</MeasurementPercentKV>"
                               "<MeasurementDelay>99999</MeasurementDelay><MachineKV>27,5 %</MachineKV>"
                               "<MachinemA>word</MachinemA>");
    EXPECT_EQ((std::vector<int32_t>{config->DetectorName, config->pNoOfExposures,
                                    config->pMeasurementPercentKV, config->pMeasurementDelay}),
              (std::vector<int32_t>{kZrd, 255, 0, 32767}));
    EXPECT_EQ((std::pair{config->pMachineKV, config->pMachineMA}), (std::pair{27.5F, 0.0F}));
}

TEST_F(ConfigPersistence, TheTableIsResizedWithoutItsContent) {
    const auto config =
        Loaded(500,
               "<NumberOfExposures>3</NumberOfExposures><NumberOfExposures1>1</NumberOfExposures1>"
               "<MachineKV1>70,50</MachineKV1><MachinemA2/>");
    EXPECT_EQ(config->importFlags, (TextArray{"", "1", ""}));
    EXPECT_EQ(config->machineKv, (TextArray{"", "70.5", ""}));
    EXPECT_EQ(config->machineMa, (TextArray{"", "", "0"}));
    for (TextArray ConfigFields::*array :
         {&ConfigFields::machineTime, &ConfigFields::sid, &ConfigFields::mode})
        EXPECT_EQ((*config).*array, TextArray(3));
    EXPECT_EQ(Loaded(200,
                     "<NumberOfExposures>3</NumberOfExposures><FocalSpotSize0/>"
                     "<FocalSpotSize1>2 small</FocalSpotSize1>")
                  ->focalSpot,
              (TextArray{"", "2", ""}))
        << "the leading number, and none stays none";
}

TEST_F(ConfigPersistence, TheThicknessColumnIsFilledFromTheMaOfItsRow) {
    const auto config =
        Loaded(700,
               "<NumberOfExposures>3</NumberOfExposures>"
               "<MachinemA0>1,50</MachinemA0><PhantomThickness0>5 cm</PhantomThickness0><Mode0>High</Mode0>"
               "<PhantomThickness1>7 cm</PhantomThickness1><MachinemA2>about 2</MachinemA2>");
    EXPECT_EQ(config->machineMa, (TextArray{"1.5", "", "0"}));
    EXPECT_EQ(config->phantomThickness, (TextArray{"1.50", "", "about 2"}));
    EXPECT_EQ(config->mode, (TextArray{"High", "", ""}));
}

TEST_F(ConfigPersistence, OldFilesKeepTheirImportFlagsUnderAnotherKey) {
    for (int32_t testId : kMeasuringTests) {
        const auto config =
            Loaded(testId,
                   "<NumberOfExposures>2</NumberOfExposures><ImportWaveformStatus0>1</ImportWaveformStatus0>"
                   "<NumberOfExposures1>0</NumberOfExposures1>"
                   "<ImportWaveformStatus1>1</ImportWaveformStatus1>");
        const bool old = testId == 200 || testId == 300 || testId == 500 || testId == 700;
        EXPECT_EQ(config->importFlags, (TextArray{old ? "1" : "", "0"})) << testId;
    }
}

TEST_F(ConfigPersistence, UnderADecimalCommaNumbersAreWrittenWithIt) {
    Install(',');
    const auto config = New(700);
    config->pSDDValue = 66.5F;
    config->machineMa = {"1.5"};
    config->phantomThickness = {"5.5 cm"};
    const std::string saved = Save(*config);
    EXPECT_NE(saved.find("MachinemA0=1,5;PhantomThickness0=5,5 cm;"), std::string::npos) << saved;
    EXPECT_NE(saved.find("SDDValue=66,5;"), std::string::npos) << saved;
    EXPECT_NE(saved.find("PKOffsetTemp=1,2;"), std::string::npos) << saved;
    const auto element = config->Save(document);
    Install('.');
    const auto loaded = New(700);
    loaded->Load(element, nullptr);
    EXPECT_EQ(loaded->pSDDValue, 66.5F) << "read under a point as well";
    EXPECT_EQ(loaded->machineMa, TextArray{"1.5"});
    EXPECT_EQ(loaded->phantomThickness, TextArray{"1.5"});
}

TEST_F(ConfigPersistence, ABlockOfAnotherPlugInIsRefused) {
    for (const char* xml :
         {"<PlugInData PlugIn=\"Other\"/>", "<PlugInData/>", "<Result PlugIn=\"ZRD47500\"/>"}) {
        auto config = New(500);
        EXPECT_EQ(test::FaultOf([&] { config->Load(test::XmlText(xml).Root(), nullptr); }),
                  (test::HostFault{0x8004A3C2U, "VorexZRD47500Test.CConfigCommon", 4}))
            << xml;
        EXPECT_EQ(config->pNoOfExposures, 1) << "nothing is changed";
    }
}

TEST_F(ConfigPersistence, ADocumentThatMakesNoElementIsAnError) {
    const test::HostFault fault =
        test::FaultOf([] { New(100)->Save(std::make_shared<test::FullDocument>()); });
    EXPECT_EQ(fault, (test::HostFault{0x8004A3C3U, "VorexZRD47500Test.CConfigCommon", 3}));
}

TEST_F(ConfigPersistence, ArraysShorterThanTheTableAreWrittenEmpty) {
    const auto config = New(1200);
    config->pNoOfExposures = 3;
    const std::string saved = Save(*config);
    EXPECT_NE(saved.find("NumberOfExposures2=;MachinemAs2=0;SID2=0;Measurement"), std::string::npos) << saved;
}

TEST_F(ConfigPersistence, WithoutATestTheCommonSettingsAreKept) {
    CConfigCommon config;
    EXPECT_EQ(Save(config), "DetectorName=1;NumberOfExposures=2;NumberOfExposures0=0;NumberOfExposures1=0;" +
                                kMeasurement + kRest);
}

}  // namespace
}  // namespace vorex

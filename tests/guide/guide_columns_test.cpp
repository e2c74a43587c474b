#include "guide/guide_columns.h"

#include "foundation/vocabulary.h"
#include "guide/guide_fixture.h"

namespace vorex::test {
namespace {

CConfigCommon Config(int32_t testId, int32_t kind) {
    InstallServices({});
    CConfigCommon config;
    config.pTestID = testId;
    config.DetectorName = kind;
    config.pMeasurementMode = kRadio;
    config.pMeasurementTimeUnit = kMilliseconds;
    return config;
}

std::string Keys(const std::vector<GuideColumn>& columns) {
    std::string keys;
    for (const GuideColumn& column : columns) keys += (keys.empty() ? "" : "|") + column.key;
    return keys;
}

// The seven readings of the ZRD 47500, the four of the mAs meter, the seven of the Pelomark.
const std::string kZrdKeys =
    "ER kVp Avg|ER kVp Max|ER kV PPV|ER Exposure|ER Exposure Rate|ER Exposure Time|ER HVL";
const std::string kMasKeys = "ER mA|ER mAs|ER mAsPulse|ER DosemAs";
const std::string kPelomarkKeys =
    "ER Exposure|ER Exposure Rate|Temperature|Pressure|ADCF|Bias Voltage|Leak Current";
const std::string kAccReproKeys =
    "ER Half Mean kVp|ER Half Standard deviation|ER Mean kVp|ER Standard deviation|ER Mean kVp - Nominal kVp|"
    "ER 0.05 X Nominal kVp|ER Percentage Error|ER CV";

TEST(GuideColumns, EachTestAndKindHasItsColumnsInOrder) {
    struct Case {
        int32_t test, kind;
        std::string keys;
    };
    const std::string import = "Import Waveform|";
    const Case cases[] = {
        {kRadioRepro, kZrd, import + kZrdKeys},
        {kRadioRepro, kMasMeter, import + kMasKeys},
        {kRadioRepro, kPelomark, import + kPelomarkKeys},
        {kRadioRepro, kZrdAndMas, import + kZrdKeys + "|" + kMasKeys},
        {kRadioRepro, kPelomarkAndMas, import + kPelomarkKeys + "|" + kMasKeys},
        {kRadioAccuracy, kZrdAndMas,
         import + kZrdKeys + "|ER RA Percentage kVp Avg Error|ER RA Absolute kVp Avg Error|" + kMasKeys},
        {kRadioAccuracy, kPelomark, import + kPelomarkKeys},
        {kRadioLinearity, kZrd, import + "Adjacent|" + kZrdKeys + "|Exposure/mAs|ER Non Adjacent"},
        {kMammoAccRepro, kZrdAndMas, import + kZrdKeys + "|" + kMasKeys + "|" + kAccReproKeys},
        {kMammoRadiation, kZrd, import + kZrdKeys + "|ER Exposure Rate(mR/sec)|ER Air Kerma Rate(mGy/sec)"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Keys(GuideColumns(Config(c.test, c.kind))), c.keys)
            << "test " << c.test << " kind " << c.kind;
}

TEST(GuideColumns, TheTimerErrorNeedsMaAndTime) {
    CConfigCommon config = Config(kRadioAccuracy, kZrd);
    EXPECT_EQ(Keys(GuideColumns(config)).find("ER RA Percentage Timer Error"), std::string::npos);
    config.pGeneratorSetup = kSetupMaTime;
    EXPECT_NE(Keys(GuideColumns(config)).find("ER RA Percentage Timer Error"), std::string::npos);
}

TEST(GuideColumns, PulsesReplaceTheTimeOutsideFluoroscopy) {
    CConfigCommon config = Config(kRadioRepro, kZrd);
    config.pMeasurementTimeUnit = kPulses;
    EXPECT_EQ(GuideColumns(config)[6].key, "ER Exposure In Pulses");
    config.pMeasurementMode = kFluoro;
    EXPECT_EQ(GuideColumns(config)[6].key, "ER Exposure Time");
}

TEST(GuideColumns, PulsedFluoroscopyShowsThePulseColumns) {
    CConfigCommon config = Config(kFluoroExposure, kZrd);
    config.pMeasurementMode = kFluoro;
    config.pMeasurementFluoroType = kPulsed;
    EXPECT_EQ(
        Keys(GuideColumns(config)),
        "Import Waveform|ER kVp Avg|ER kVp Max|ER kV PPV|ER Exposure|ER Maxi. Exposure Rate|ER Exposure Time|"
        "Pulse Rate|Pulse Width|ER HVL|Phantom Thickness|Mode");
}

TEST(GuideColumns, WidthsAndCaptionsDifferWhereTheGuideSaysSo) {
    struct Case {
        int32_t test, kind;
        std::size_t index;
        std::string_view caption;
        int16_t width;
    };
    const Case cases[] = {
        {kRadioRepro, kZrd, 0, text::kImportWaveform, 1650},
        {kRadioRepro, kPelomark, 0, text::kExposures, 1200},
        {kRadioRepro, kPelomarkAndMas, 0, text::kImportWaveform, 1650},
        {kRadioRepro, kZrd, 1, text::kKvpAvg, 1650},
        {kRadioRepro, kPelomark, 1, text::kDose, 1650},
        {kFluoroAccuracy, kZrd, 8, text::kPercentKvError, 1650},
        {kFluoroExposure, kZrd, 7, text::kHvl, 1650},
        {kFluoroExposure, kZrd, 8, text::kPhantomThickness, 1600},
        {kFluoroExposure, kZrd, 9, text::kFluoroMode, 1200},
    };
    for (const Case& c : cases) {
        const GuideColumn column = GuideColumns(Config(c.test, c.kind)).at(c.index);
        EXPECT_EQ(column.caption, c.caption) << "test " << c.test << " kind " << c.kind;
        EXPECT_EQ(column.width, c.width) << column.key;
    }
}

Standards OneStandard(std::initializer_list<const char*> limitKeys) {
    auto standard = std::make_shared<NamedStandard>(StandardName{"Site", "1"});
    for (const char* key : limitKeys)
        standard->AddExpectedResult(std::make_shared<FakeLimit>(key, std::nullopt, 5.0F));
    return {standard};
}

TEST(HiddenColumns, AreThoseThatNoChosenStandardKnows) {
    const auto columns = GuideColumns(Config(kRadioRepro, kZrd));
    EXPECT_EQ(HiddenColumns(columns, {}), "");
    EXPECT_EQ(HiddenColumns(columns, OneStandard({"ER kVp Avg", "ER Exposure"})), "3,4,6,7,8");
    Standards two = OneStandard({"ER kVp Avg"});
    two.push_back(OneStandard({"ER HVL"})[0]);
    EXPECT_EQ(HiddenColumns(columns, two), "3,4,5,6,7");
}

TEST(HiddenColumns, NeverHoldTheReadingsOfTheEnvironment) {
    const auto columns = GuideColumns(Config(kRadioRepro, kPelomark));
    EXPECT_EQ(HiddenColumns(columns, OneStandard({"ER HVL"})), "2,3");
}

TEST(HiddenColumns, TheMaximumRateIsKnownByTheLimitOfAnyExposure) {
    const auto columns = GuideColumns(Config(kFluoroExposure, kZrd));
    EXPECT_EQ(HiddenColumns(columns, OneStandard({"ER Maxi. Exposure Rate2"})), "2,3,4,5,7,8,9,10");
}

TEST(ChosenStandards, AreTheSelectedOnesThatTheElementHolds) {
    GuideLimits limits;
    for (const char* name : {"A", "B", "C"})
        limits.list->Add(std::make_shared<NamedStandard>(StandardName{name, "1"}));
    FakeSelection selection;
    selection.names = {{"C", "1"}, {"A", "2"}, {"A", "1"}, {"X", "1"}};
    const Standards chosen = ChosenStandards(&limits, &selection);
    ASSERT_EQ(chosen.size(), 2U);
    EXPECT_EQ(chosen[0]->Name(), "C");
    EXPECT_EQ(chosen[1]->Name(), "A");
    EXPECT_TRUE(ChosenStandards(nullptr, &selection).empty());
    EXPECT_TRUE(ChosenStandards(&limits, nullptr).empty());
}

}  // namespace
}  // namespace vorex::test

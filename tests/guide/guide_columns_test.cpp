#include "guide/guide_columns.h"

#include "foundation/vocabulary.h"
#include "guide/guide_fixture.h"

namespace vorex::test {
namespace {

using GuideColumnsTest = LibraryTest;
using HiddenColumnsTest = LibraryTest;
using ChosenStandardsTest = LibraryTest;

CConfigCommon Config(int32_t testId, int32_t kind) {
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

// The columns of the result, those of a waveform quantity under the key of its row, without the statistics of
// test 100.
TEST_F(GuideColumnsTest, AreThoseOfTheResult) {
    const std::string zrd =
        "Import Waveform|ER kVp Avg|ER kVp Max|ER kV PPV|ER Exposure|ER Exposure Rate|ER Exposure Time|ER "
        "HVL";
    const std::string mas = "|ER mA|ER mAs|ER mAsPulse|ER DosemAs";
    const std::tuple<int32_t, int32_t, std::string> cases[] = {
        {kRadioRepro, kZrdAndMas, zrd + mas},
        {kRadioRepro, kPelomark,
         "Import Waveform|ER Exposure|ER Exposure Rate|Temperature|Pressure|ADCF|Bias Voltage|Leak Current"},
        {kMammoAccRepro, kZrdAndMas,
         zrd + mas +
             "|ER Half Mean kVp|ER Half Standard deviation|ER Mean kVp|ER Standard deviation|"
             "ER Mean kVp - Nominal kVp|ER 0.05 X Nominal kVp|ER Percentage Error|ER CV"},
    };
    for (const auto& [test, kind, keys] : cases)
        EXPECT_EQ(Keys(GuideColumns(Config(test, kind))), keys) << "test " << test << " kind " << kind;
}

TEST_F(GuideColumnsTest, WidthsAndCaptionsDifferWhereTheGuideSaysSo) {
    const std::tuple<int32_t, int32_t, std::size_t, std::string_view, int16_t> cases[] = {
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
    for (const auto& [test, kind, index, caption, width] : cases) {
        const GuideColumn column = GuideColumns(Config(test, kind)).at(index);
        EXPECT_EQ(column.caption, caption) << "test " << test << " kind " << kind;
        EXPECT_EQ(column.width, width) << column.key;
    }
}

TEST_F(HiddenColumnsTest, AreThoseThatNoChosenStandardKnows) {
    const auto columns = GuideColumns(Config(kRadioRepro, kZrd));
    EXPECT_EQ(HiddenColumns(columns, {}), "");
    const auto kvp = StandardOf("A", {Limit("ER kVp Avg", "5"), Limit("ER Exposure", "5")});
    const auto hvl = StandardOf("B", {Limit("ER HVL", "5")});
    EXPECT_EQ(HiddenColumns(columns, {kvp}), "3,4,6,7,8");
    EXPECT_EQ(HiddenColumns(columns, {kvp, hvl}), "3,4,6,7");
    EXPECT_EQ(HiddenColumns(GuideColumns(Config(kRadioRepro, kPelomark)), {hvl}), "2,3")
        << "never the readings of the environment";
    const auto rate = StandardOf("C", {Limit("ER Maxi. Exposure Rate2", "5")});
    EXPECT_EQ(HiddenColumns(GuideColumns(Config(kFluoroExposure, kZrd)), {rate}), "2,3,4,5,7,8,9,10")
        << "the limit of any exposure";
}

TEST_F(ChosenStandardsTest, AreTheSelectedOnesThatTheElementHolds) {
    GuideLimits limits;
    for (const char* name : {"A", "B", "C"}) limits.list->Add(StandardOf(name));
    const SelectedStandards selection({{"C", "1"}, {"A", "2"}, {"A", "1"}, {"X", "1"}});
    const Standards chosen = ChosenStandards(&limits, &selection);
    ASSERT_EQ(chosen.size(), 2U);
    EXPECT_EQ(chosen[0]->Name(), "C");
    EXPECT_EQ(chosen[1]->Name(), "A");
    EXPECT_TRUE(ChosenStandards(nullptr, &selection).empty());
    EXPECT_TRUE(ChosenStandards(&limits, nullptr).empty());
}

}  // namespace
}  // namespace vorex::test

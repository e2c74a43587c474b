#include "foundation/vocabulary.h"

#include <gtest/gtest.h>

namespace vorex {
namespace {

struct StoredRow {
    const Choice& choice;
    int32_t value, stored;
    std::string_view text;
};

// clang-format off
const StoredRow kStoredRows[] = {
    {kDetectorModes, 1, 1, "22465::RADIO"}, {kDetectorModes, 2, 3, "22466::MAMMO"},
    {kDetectorModes, 3, 2, "22464::FLUORO"}, {kDetectorModes, 4, 4, "22467::DENTAL"},
    {kDetectorSettings, 1, 1, "22469::AUTO"}, {kDetectorSettings, 2, 2, "22470::MANUAL"},
    {kDetectorSettings, 3, 3, "22471::DEFAULT"}, {kExposureUnits, 1, 1, "22020::R"},
    {kExposureUnits, 2, 2, "22021::Gy"}, {kRateTimeBases, 1, 1, "22022::Sec"},
    {kRateTimeBases, 2, 2, "22023::Min"}, {kRateTimeBases, 3, 3, "22024::Hour"},
    {kRateTimeBases, 4, 4, "22025::Pulse"}, {kFluoroTypes, 1, 1, "22028::Cont"},
    {kFluoroTypes, 2, 2, "22029::Pulsed"}, {kTimeUnits, 1, 1, "22142::mSec"},
    {kTimeUnits, 2, 2, "22027::Pulses"}, {kFlags, 1, 1, "22235::True"}, {kFlags, 0, 0, "22236::False"},
    {kGeneratorSetups, 1, 1, "22103::mAs"}, {kGeneratorSetups, 2, 2, "22110::mA"},
    {kSddUnits, 1, 2, "22101::Inches"}, {kSddUnits, 2, 1, "22102::Centimeters"},
    {kFocalSpots, 1, 1, "23001::Large"}, {kFocalSpots, 2, 2, "23002::Small"},
};
// clang-format on

TEST(Vocabulary, ChoicesAreStoredByTheirCodes) {
    for (const StoredRow& row : kStoredRows) {
        EXPECT_EQ(StoredOfValue(row.choice, row.value), row.stored) << row.text;
        EXPECT_EQ(ValueOfStored(row.choice, row.stored), row.value) << row.text;
        EXPECT_EQ(TextKeyOf(row.choice, row.value), row.text);
    }
}

TEST(Vocabulary, TheDosimetersListsCountFromZero) {
    const std::pair<const Choice&, std::vector<std::string_view>> kLists[] = {
        {kDoseUnits, {"25114::R", "25115::Gy", "25121::C"}},
        {kDoseRateBases, {"25116::/Sec", "25117::/Min", "25118::/Hour", "25119::/Pulse"}},
        {kTemperatureUnits, {"25102::°C", "25103::°F", "25104::K"}},
        {kPressureUnits,
         {"25105::inHg", "25106::mmHg", "25107::mbar", "25108::hPa", "25109::feet", "25110::meter"}},
        {kPelomarkModes, {"25111::Dose", "25112::Rate", "25113::Low Rate"}}};
    for (const auto& [choice, texts] : kLists) {
        ASSERT_EQ(choice.rows.size(), texts.size());
        for (std::size_t i = 0; i < texts.size(); ++i)
            EXPECT_EQ(TextKeyOf(choice, static_cast<int32_t>(i)), texts[i]);
    }
}

TEST(Vocabulary, LimitsAreFoundUnderErAndTheKey) {
    EXPECT_EQ(LimitKeyOf("kVp Avg"), "ER kVp Avg");
    EXPECT_EQ(LimitKeyOf("ER CV"), "ER CV");
    EXPECT_EQ(LimitKeyOf("ERROR"), "ER ERROR") << "the blank belongs to the prefix";
    EXPECT_EQ(LimitKeyOf("HVL[¤]2[¤]"), "ER HVL2");
    EXPECT_EQ(LimitKeyOf("ER HVL[¤]2"), "ER HVL[¤]2");
    EXPECT_EQ(LimitKeyOf(""), "ER ");
}

}  // namespace
}  // namespace vorex

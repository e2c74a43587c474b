#include <gmock/gmock.h>

#include <algorithm>

#include "execution/execution_fixture.h"

namespace vorex::test {
namespace {

using testing::ElementsAre;
using TestInfoTest = ExecutionTest;
using Lines = std::vector<std::string>;

TEST_F(TestInfoTest, TheHeaderFollowsTheKindAndTheBattery) {
    struct Case {
        int32_t kind;
        bool charging;
        const char* serials;
        Lines header;
    };
    const std::string battery = " Battery Status: 80%", filter = " Target/Filter: Mo/Rh";
    const std::string input = "mAs Input  : Shunt", chamber = "Ion Chamber : 6 cc";
    const Case cases[] = {
        {kZrd, false, "4711", {battery, filter}},
        {kZrd, true, "4711", {"Charging", filter}},
        {kMasMeter, false, "4711", {battery, input}},
        {kPelomark, false, "4711", {battery, chamber}},
        {kZrdAndMas, false, "4711,8", {battery, filter, input}},
        {kPelomarkAndMas, false, "47", {battery, chamber, input}},
        {kZrd, false, "0", {"Detector not connected", " ", " "}},
    };
    for (const Case& c : cases) {
        const auto element = Make(kRadioRepro, 1, c.kind);
        ConfigOf(*element).pTargetFilterName = "Mo/Rh";
        ConfigOf(*element).MASInput = true;
        room->charging = c.charging;
        room->serialNumbers = c.serials;
        room->ionChamber = "6 cc";
        Perform(*element, {Step([&](FZRD47500TestGuide& guide) {
            Lines shown = guide.VisibleLines();
            shown.resize(c.header.size());
            EXPECT_EQ(shown, c.header) << c.kind;
        })});
    }
}

TEST_F(TestInfoTest, ABatteryOrFilterThatChangesInARunRedrawsTheLines) {
    const auto element = Make(kRadioRepro, 2);
    Lines seen;
    const auto change = [&](const std::function<void()>& happens) {
        Queue([happens](DetectorEvents&) { happens(); });
        Queue(
            [&](DetectorEvents&) { seen.push_back(Guide().VisibleLines()[0] + Guide().VisibleLines()[1]); });
    };
    change([] {});
    change([this] { room->batteryLevel = 79; });
    change([this] { room->charging = true; });
    change([this] { room->charging = false; });
    change([&] { ConfigOf(*element).pTargetFilterName = "Rh/Rh"; });
    Expose("80");
    Expose("80");
    ConfigOf(*element).pTargetFilterName = "Mo/Mo";
    Perform(*element, {Start()});
    EXPECT_THAT(
        seen,
        ElementsAre(" Battery Status: 80% Target/Filter: Mo/Mo", " Battery Status: 79% Target/Filter: Mo/Mo",
                    "Charging Target/Filter: Mo/Mo", " Battery Status: 79% Target/Filter: Mo/Mo",
                    " Battery Status: 79% Target/Filter: Rh/Rh"));
}

TEST_F(TestInfoTest, ARunShowsTheHeaderAndItsOwnLinesAndThenAllOfThem) {
    // 100, 1 and 2: header; 8 or 9: "Take exposure", by the generator setup.
    struct Case {
        int32_t kind, setup;
        Lines lines;
        std::size_t all;
    };
    const std::string battery = " Battery Status: 80%",
                      filter = " Target/Filter: ", take = "3. Take exposure.";
    const Case cases[] = {
        {kZrd, kSetupMas, {battery, filter, take}, 8},
        {kZrd, kSetupMaTime, {battery, filter, take}, 9},
        {kZrdAndMas, kSetupMas, {battery, filter, "mAs Input  : Clamp", take}, 9},
    };
    for (const Case& c : cases) {
        const auto element = Make(kRadioRepro, 1, c.kind);
        ConfigOf(*element).pGeneratorSetup = c.setup;
        ConfigOf(*element).pTargetFilterName.clear();
        ConfigOf(*element).MASInput = false;
        Lines seen;
        Queue([&](DetectorEvents&) { seen = Guide().VisibleLines(); });
        Expose("80");
        const auto all = [&](FZRD47500TestGuide& guide) {
            EXPECT_EQ(guide.VisibleLines().size(), c.all) << c.kind << " " << c.setup;
        };
        Perform(*element, {Step(all), Start(), Step(all)});
        EXPECT_EQ(seen, c.lines) << c.kind << " " << c.setup;
    }
}

TEST_F(TestInfoTest, ALineWithoutAValueKeepsItsNumberAndIsNotShown) {
    const auto element = Make(kMammoAec, 1);
    ConfigOf(*element).pFilter.clear();
    const auto look = [](std::size_t lines) {
        return Step([lines](FZRD47500TestGuide& guide) {
            const Lines shown = guide.VisibleLines();
            EXPECT_EQ(guide.InfoLines().size(), 23U);
            EXPECT_EQ(std::count(shown.begin(), shown.end(), ""), 0);
            EXPECT_LT(shown.size(), lines);
            EXPECT_EQ(shown.back(), "3. Take exposure.");
        });
    };
    Lines seen;
    Queue([&](DetectorEvents&) { seen = Guide().VisibleLines(); });
    Expose("28");
    Perform(*element, {look(23), Start(), look(23)});
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen.back(), "3. Take exposure.");
}

TEST_F(TestInfoTest, TheLinesAreThoseOfTheNextExposureAndNeverBeyondTheTable) {
    const auto element = Make(kFluoroAccuracy, 2);
    ConfigOf(*element).SetValue(0, 2, "70");
    ConfigOf(*element).SetValue(1, 2, "90");
    Lines seen;
    const auto voltage = [&] {
        for (const std::string& line : Guide().InfoLines())
            if (line.find("kVp to") != std::string::npos) seen.push_back(line);
    };
    Queue([&](DetectorEvents&) { voltage(); });
    Expose("70");
    Queue([&](DetectorEvents&) { voltage(); });
    Expose("90");
    Perform(*element, {Start(), Step([&](FZRD47500TestGuide& guide) {
                           guide.events.MASInputChanged.Raise();  // lines are built after the last exposure
                           voltage();
                           Queue([&](DetectorEvents&) { voltage(); });
                           Expose("71");
                           EXPECT_TRUE(guide.RedoExposure(1));
                       })});
    EXPECT_THAT(seen, ElementsAre("    Set Machine kVp to 70 KV.", "    Set Machine kVp to 90 KV.",
                                  "    Set Machine kVp to 90 KV.", "    Set Machine kVp to 70 KV."));
}

TEST_F(TestInfoTest, TheChamberIsNotedWithItsCalibrationWhenItHasAName) {
    const auto element = Make(kRadioRepro, 1, kPelomark);
    ConfigOf(*element).CalFactor = ConfigOf(*element).CalConstant = "earlier";
    Perform(*element, {});
    EXPECT_EQ(ConfigOf(*element).IonChamberName, "");
    EXPECT_EQ(ConfigOf(*element).CalFactor, "earlier");
    EXPECT_EQ(ConfigOf(*element).CalConstant, "earlier");
    Perform(*element, {Step([this](FZRD47500TestGuide& guide) {
        room->ionChamber = "6 cc";  // as the person chooses in the dialog
        EXPECT_TRUE(guide.PressButton(guide_button::kIonChamber));
        EXPECT_EQ(room->Count("ShowIonChamberDialog"), 1);
        EXPECT_EQ(guide.InfoLines().at(1), "Ion Chamber : 6 cc");
    })});
    EXPECT_EQ(ConfigOf(*element).IonChamberName, "6 cc");
    EXPECT_EQ(ConfigOf(*element).CalFactor, "factor of 6 cc");
    EXPECT_EQ(ConfigOf(*element).CalConstant, "constant of 6 cc");
}

}  // namespace
}  // namespace vorex::test

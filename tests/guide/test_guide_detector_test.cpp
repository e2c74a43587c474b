#include "guide/guide_fixture.h"

namespace vorex::test {
namespace {

using namespace guide_button;

// ---------------------------------------------------------------------------------------------- watch

using Watch = GuideTest;

TEST_F(Watch, PollsEveryTwoSecondsWithTheTimeOuts) {
    Open(kRadioRepro);
    EXPECT_EQ(room->Count("BeginRun"), 1);
    platform->Advance(1999);
    EXPECT_EQ(room->Count("Poll 300000 1200000"), 0);
    platform->Advance(1);
    EXPECT_EQ(room->Count("Poll 300000 1200000"), 1);
    platform->Advance(4000);
    EXPECT_EQ(room->Count("Poll 300000 1200000"), 3);
    element->Sequence()->gRunActive = true;
    platform->Advance(4000);
    EXPECT_EQ(room->Count("LinkState"), 3) << "not while exposures are taken";
    element->Sequence()->gRunActive = false;
    platform->Advance(2000);
    EXPECT_EQ(room->Count("LinkState"), 4);
    EXPECT_EQ(Events(), "");
}

TEST_F(Watch, AnySuccessfulPollBeginsTheCountAnewAndAFailingServiceIsAFailedPoll) {
    Open(kRadioRepro);
    room->alive = false;
    platform->Advance(6000);
    EXPECT_EQ(element->Sequence()->watchFailures, 3);
    room->alive = true;
    platform->Advance(2000);
    EXPECT_EQ(element->Sequence()->watchFailures, 0);
    Events();
    room->failing = {"LinkState"};
    platform->Advance(4000);
    EXPECT_EQ(Events(), "ConnectionLost");
    EXPECT_EQ(element->Sequence()->watchFailures, 2);
    EXPECT_TRUE(guide->Watching());
}

TEST_F(Watch, ALostLinkIsAnnouncedOnceAndEndsTheWatch) {
    Open(kRadioRepro);
    room->targetFilters = {"Mo/Mo"};
    guide->PressButton(kStart);
    guide->SetWakeUpButton(true);
    Events();
    room->linkState = 0;
    platform->Advance(10000);
    EXPECT_EQ(Events(), "ConnectionLost");
    EXPECT_FALSE(guide->Watching());
    EXPECT_EQ(guide->Button(kFirstTargetFilter), nullptr);
    EXPECT_FALSE(Button(kWakeUp).enabled);
    EXPECT_EQ(guide->MenuItems().size(), 1U);
    // Any press wakes the watch.
    room->linkState = 1;
    guide->PressButton(kPrevious);
    EXPECT_TRUE(guide->Watching());
}

TEST_F(Watch, TheFirstFailedPollIsAnnouncedAndTheHundredthEndsTheWatch) {
    Open(kRadioRepro);
    room->alive = false;
    platform->Advance(2000);
    EXPECT_EQ(Events(), "ConnectionLost");
    EXPECT_EQ(element->Sequence()->watchFailures, 1);
    platform->Advance(2000 * 98);
    EXPECT_EQ(Events(), "");
    EXPECT_EQ(element->Sequence()->watchFailures, 99);
    EXPECT_TRUE(guide->Watching());
    platform->Advance(2000);
    EXPECT_EQ(element->Sequence()->watchFailures, 1);
    EXPECT_FALSE(guide->Watching());
    // Begun anew, the same loss is not announced again.
    guide->PressButton(kPrevious);
    platform->Advance(2000);
    EXPECT_EQ(Events(), "Previous");
    EXPECT_EQ(element->Sequence()->watchFailures, 2);
}

TEST_F(Watch, APressInsideATickLeavesTheTimerToTheTick) {
    Open(kRadioRepro);
    bool watchedInTick = true;
    room->onPoll = [&](DetectorEvents&) {
        guide->PressButton(kPrevious);
        watchedInTick = guide->Watching();
    };
    platform->Advance(2000);
    EXPECT_FALSE(watchedInTick);
    EXPECT_TRUE(guide->Watching());
}

// ------------------------------------------------------------------------------------------- adaption

using Adaption = GuideTest;

TEST_F(Adaption, EveryPairOfKindsStartsAdaptedOrIsRefused) {
    constexpr int32_t kRefused = -1;
    // Rows: configured 0 to 5. Columns: connected 0 to 5. With nothing on either side nothing changes.
    constexpr int32_t kExpected[6][6] = {
        {1, 1, 2, 3, 4, 5},
        {1, 1, 2, kRefused, 4, kRefused},
        {2, 4, 2, 5, 4, 5},
        {3, kRefused, 2, 3, kRefused, 5},
        {4, 4, 4, kRefused, 4, kRefused},
        {5, kRefused, 5, 5, kRefused, 5},
    };
    for (int32_t configured = 0; configured <= 5; ++configured)
        for (int32_t connected = 0; connected <= 5; ++connected) {
            SCOPED_TRACE("configured " + std::to_string(configured) + ", connected " +
                         std::to_string(connected));
            room->linkOpen = false;
            platform->messages.clear();
            Open(kRadioRepro, configured == 0 ? kZrd : configured, configured);
            room->kind = connected;
            guide->PressButton(kStart);
            const std::string events = Events();
            const int32_t expected = kExpected[configured][connected];
            EXPECT_EQ(events.find("Start") != std::string::npos, expected != kRefused);
            EXPECT_EQ(platform->messages.size(), expected == kRefused ? 1U : 0U);
            EXPECT_EQ(room->linkOpen, expected != kRefused);
            EXPECT_EQ(Button(kDisconnect).enabled, expected != kRefused);
            if (expected == kRefused) {
                const std::string name = HasZrd(configured) ? "ZRD47500" : "Pelomark";
                EXPECT_EQ(platform->messages.at(0).first, "Vorex ZRD47500 Plug-In Response");
                EXPECT_EQ(platform->messages[0].second,
                          "The connected detector does not support " + name +
                              ". Please click Start button to scan for detectors.");
                EXPECT_EQ(config->DetectorName, configured);
                continue;
            }
            EXPECT_EQ(guide->DetectorType(), expected);
            EXPECT_EQ(config->DetectorName, expected);
            EXPECT_EQ(element->result->DetectorName, expected);
            EXPECT_EQ(Button(kIonChamber).visible, expected == 3 || expected == 5);
            EXPECT_EQ(Button(kShunt).visible, expected == 2 || expected == 4 || expected == 5);
            const int typed = (connected == 1 || connected == 3) && (configured == 2 || configured >= 4);
            EXPECT_EQ(events, typed ? "MASInputChanged Start" : "Start");
            EXPECT_EQ(Button(kManual).checked, typed != 0);
        }
}

TEST_F(Adaption, AConfiguredTargetFilterStaysWhereTheDetectorOffersItOrNone) {
    // The number of the checked button is -1 for none.
    const std::tuple<const char*, std::vector<std::string>, const char*, int> cases[] = {
        {"mo/RH", {"Mo/Mo", "Mo/Rh"}, "mo/RH", 1},
        {"W/Ag", {"Rh/Rh", "Mo/Rh", "Mo/Mo"}, "Mo/Mo", 2},
        {"W/Al", {}, "W/Al", -1}};
    for (const auto& [configured, offered, kept, checked] : cases) {
        Configure(kMammoAec, kZrd, kNoDetector);
        config->pTargetFilterName = configured;
        room->calls.clear();
        room->linkOpen = false;
        Open();
        room->targetFilters = offered;
        room->defaultTargetFilter = "Mo/Mo";
        guide->PressButton(kStart);
        EXPECT_EQ(room->Count("Mode MAMMO"), 1);
        EXPECT_EQ(config->pTargetFilterName, kept);
        EXPECT_EQ(room->Count(std::string("TargetFilter ") + kept), offered.empty() ? 0 : 1);
        int number = 0;
        for (; guide->Button(kFirstTargetFilter + number) != nullptr; ++number) {
            const auto& button = Button(kFirstTargetFilter + number);
            EXPECT_EQ(button.checked, number == checked) << configured;
            EXPECT_EQ(button.caption, offered[static_cast<std::size_t>(number)]);
        }
        EXPECT_EQ(static_cast<std::size_t>(number), offered.size());
    }
}

TEST_F(Adaption, TheChosenTargetFilterIsSentStoredAndAnnounced) {
    Open(kMammoAec);
    room->targetFilters = {"Mo/Mo", "Mo/Rh"};
    room->defaultTargetFilter = "Mo/Mo";
    guide->PressButton(kStart);
    Events();
    EXPECT_TRUE(guide->PressButton(kFirstTargetFilter + 1));
    EXPECT_EQ(Events(), "Mo/Rh");
    EXPECT_EQ(config->pTargetFilterName, "Mo/Rh");
    EXPECT_EQ(room->Count("TargetFilter Mo/Rh"), 1);
    EXPECT_EQ(room->Count("ActivateTargetFilter"), 1);
    EXPECT_FALSE(Button(kFirstTargetFilter).checked);
    EXPECT_TRUE(Button(kFirstTargetFilter + 1).checked);
}

TEST_F(Adaption, AnAcceptedDosimeterSettingIsTakenOver) {
    Configure(kRadioRepro, kPelomark, kPelomark);
    config->PKMode = 0;
    Open();
    room->kind = kPelomark;
    room->answerDosimeter = [](DosimeterSettings& settings) { settings.mode = 2; };
    guide->PressButton(kStart);
    EXPECT_EQ(room->dosimeter.mode, 1);
    EXPECT_EQ(config->PKMode, 1);
    EXPECT_EQ(guide->FirmwareVersion(), 12);
    // Rate mode has no dose column: result and table follow.
    EXPECT_EQ(element->result->PKMode, 1);
    EXPECT_EQ(Table().Columns()[1].key, "ER Exposure Rate");
}

TEST_F(Adaption, AResultWithExposuresIsLeftToTheStartOfTheRun) {
    Open(kRadioRepro, kZrd);
    Expose(1, "0,80.1,80.9,80.4,12.3,123,100,3.1");
    room->kind = kMasMeter;
    guide->PressButton(kStart);
    EXPECT_EQ(config->DetectorName, kMasMeter);
    EXPECT_EQ(element->result->DetectorName, kZrd);
    EXPECT_EQ(element->result->ExposureCount(), 1);
}

}  // namespace
}  // namespace vorex::test

#include <map>

#include "guide/guide_fixture.h"

namespace vorex::test {
namespace {

using namespace guide_button;

using Press = GuideTest;

TEST_F(Press, ButtonsRaiseTheirEvents) {
    Configure(kRadioRepro, kPelomark, kPelomark);
    Open();
    guide->EnableNext(true);
    guide->SetWakeUpButton(true);
    for (const auto& [button, event] : {std::pair{kAbort, "Abort"},
                                        {kPrevious, "Previous"},
                                        {kNext, "Next"},
                                        {kSkip, "Skip"},
                                        {kNa, "NA"},
                                        {kWakeUp, "WakeUp"},
                                        {kIonChamber, "IonChamber"}}) {
        EXPECT_TRUE(guide->PressButton(button)) << event;
        EXPECT_EQ(Events(), event);
    }
    platform->confirms = false;
    EXPECT_TRUE(guide->PressButton(kAbort));
    EXPECT_EQ(Events(), "") << "it asks first";
    EXPECT_EQ(platform->questions.size(), 2U);
}

TEST_F(Press, SkipAndNaShowByTheSettingsBitsAndManualInputByTheLeaveOfTheSetup) {
    for (int32_t bits = 0; bits <= 3; ++bits) {
        const bool skip = (bits & 1) != 0, na = (bits & 2) != 0;
        Configure(kRadioRepro, kZrdAndMas, kZrdAndMas);
        config->TestGuideConfig()->Buttons(bits);
        config->MASInputOverride = skip;
        Open();
        EXPECT_EQ(Button(kSkip).visible, skip) << bits;
        EXPECT_EQ(Button(kNa).visible, na) << bits;
        EXPECT_EQ(guide->PressButton(kSkip), skip) << bits;
        EXPECT_EQ(guide->PressButton(kNa), na) << bits;
        EXPECT_TRUE(Button(kShunt).visible);
        EXPECT_EQ(Button(kManual).visible, skip);
    }
}

TEST_F(Press, ButtonsThatAreHiddenDisabledOrUnknownTakeNoPress) {
    Open(kRadioRepro);
    guide->SetToolBarButtonStatus(kStatusPanel, true);
    for (int32_t key : {kNext, kStop, kWakeUp, kIonChamber, kStatusPanel, kSpacer, kDisconnect, kShunt,
                        kFirstTargetFilter, 999})
        EXPECT_FALSE(guide->PressButton(key)) << key;
    EXPECT_EQ(Events(), "");
}

TEST_F(Press, TheBarFollowsTheRun) {
    Configure(kRadioRepro, kZrd, kNoDetector);
    config->TestGuideConfig()->Buttons(3);
    Open();
    guide->ToolbarState(GuideState::kRunning, true);
    for (int32_t key : {kAbort, kPrevious, kNext, kSkip, kNa, kStart})
        EXPECT_FALSE(Button(key).enabled) << key;
    EXPECT_TRUE(Button(kStop).enabled);
    guide->EnableStop(false);
    EXPECT_FALSE(guide->GetToolBarButtonStatus(kStop));
    guide->EnableStop(true);
    EXPECT_TRUE(guide->GetToolBarButtonStatus(kStop));
    guide->ToolbarState(GuideState::kIdle, false);
    for (int32_t key : {kAbort, kPrevious, kSkip, kNa, kStart}) EXPECT_TRUE(Button(key).enabled) << key;
    EXPECT_FALSE(Button(kStop).enabled);
    EXPECT_FALSE(Button(kNext).enabled);
    guide->ToolbarState(GuideState::kIdle, true);
    EXPECT_TRUE(Button(kNext).enabled);
}

TEST_F(Press, StartOpensTheLinkWithTheConfiguredKind) {
    Open(kRadioRepro, kZrd, kZrdAndMas);
    EXPECT_TRUE(guide->PressButton(kStart));
    EXPECT_EQ(Events(), "MASInputChanged Start");
    EXPECT_EQ(room->Count("SelectDetector 4"), 1);
    EXPECT_EQ(room->Count("OpenLink"), 1);
    EXPECT_TRUE(Button(kDisconnect).enabled);
    EXPECT_TRUE(guide->PressButton(kStart));
    EXPECT_EQ(room->Count("OpenLink"), 1);
    EXPECT_TRUE(guide->PressButton(kDisconnect));
    EXPECT_FALSE(room->linkOpen);
    EXPECT_FALSE(guide->PressButton(kDisconnect));
    Events();
    room->calls.clear();
    room->linkOpens = false;
    EXPECT_TRUE(guide->PressButton(kStart));
    EXPECT_EQ(Events(), "") << "the link stays closed";
    EXPECT_EQ(room->Count("DetectorKind"), 0);
    EXPECT_FALSE(Button(kDisconnect).enabled);
    EXPECT_TRUE(Button(kStart).enabled);
}

TEST_F(Press, APlainClickAlwaysStartsAndAShortcutGoesWithTheState) {
    Open(kRadioRepro);
    guide->ToolbarState(GuideState::kIdle, true);
    guide->PressButton(kStart);
    EXPECT_EQ(Events(), "Start");
    guide->PressButton(kStart, true);
    EXPECT_EQ(Events(), "Start") << "whether or not Next is enabled";
    guide->ToolbarState(GuideState::kRunning, false);
    EXPECT_FALSE(guide->PressButton(kStart));
    EXPECT_TRUE(guide->PressButton(kStart, true));
    EXPECT_EQ(Events(), "Stop");
}

TEST_F(Press, AFailingInstrumentLeavesTheGuideIdleAndWatching) {
    for (const char* operation : {"DetectorKind", "Mode", "QueryTargetFilters", "OpenLink"}) {
        room->failing = {operation};
        room->linkOpen = false;
        Open(kRadioRepro, kZrd);
        room->kind = kZrdAndMas;
        EXPECT_TRUE(guide->PressButton(kStart)) << operation;
        EXPECT_EQ(Events(), "") << operation;
        EXPECT_EQ(guide->RunState(), GuideState::kIdle);
        EXPECT_TRUE(Button(kStart).enabled) << operation;
        EXPECT_TRUE(guide->Watching()) << operation;
        EXPECT_EQ(config->DetectorName, kZrd) << operation;
        EXPECT_EQ(guide->DetectorType(), kZrd) << operation;
        EXPECT_FALSE(log.empty()) << operation;
        room->failing.clear();
        EXPECT_TRUE(guide->PressButton(kStart)) << operation;
        EXPECT_EQ(Events(), "Start") << operation;
    }
}

TEST_F(Press, ARunThatBreaksOffUnlocksTheBar) {
    Open(kRadioRepro);
    guide->events.StartTest.Connect([&] {
        guide->ToolbarState(GuideState::kRunning, false);
        guide->SetStatusText(text::kTestInProgress);
        element->Sequence()->gRunActive = true;
        throw std::runtime_error("detector gone");
    });
    EXPECT_TRUE(guide->PressButton(kStart));
    EXPECT_EQ(guide->RunState(), GuideState::kIdle);
    EXPECT_TRUE(Button(kStart).enabled);
    EXPECT_FALSE(Button(kStop).enabled);
    EXPECT_EQ(guide->StatusLine(), "");
    EXPECT_FALSE(element->Sequence()->gRunActive);
}

TEST_F(Press, TheWatchRestsDuringAPressAndTheRunItStarts) {
    Open(kRadioRepro);
    bool watchedInRun = true;
    bool watchedAfterStop = true;
    guide->events.StartTest.Connect([&] {
        guide->ToolbarState(GuideState::kRunning, false);
        watchedInRun = guide->Watching();
        guide->PressButton(kStop);
        watchedAfterStop = guide->Watching();
        guide->ToolbarState(GuideState::kIdle, true);
    });
    guide->PressButton(kStart);
    EXPECT_FALSE(watchedInRun);
    EXPECT_FALSE(watchedAfterStop);
    EXPECT_TRUE(guide->Watching());
}

TEST_F(Press, TheWakeUpButtonShowsWhileTheServiceAsksForIt) {
    Open(kRadioRepro);
    room->onPoll = [](DetectorEvents& events) { events.vti_AddWakeUpButton.Raise(true); };
    platform->Advance(2000);
    EXPECT_TRUE(Button(kWakeUp).visible && Button(kWakeUp).enabled);
    room->onPoll = [](DetectorEvents& events) { events.vti_AddWakeUpButton.Raise(false); };
    platform->Advance(2000);
    EXPECT_FALSE(Button(kWakeUp).visible);
}

TEST_F(Press, TheChosenMasInputIsCheckedStoredAndSent) {
    Open(kRadioRepro, kZrdAndMas, kZrdAndMas);
    EXPECT_TRUE(guide->PressButton(kClamp));
    EXPECT_EQ(room->Count("MASInput 0"), 0) << "the link is closed";
    EXPECT_FALSE(config->MASInput);
    room->linkOpen = true;
    room->kind = kZrdAndMas;
    guide->PressButton(kStart);
    Events();
    for (const auto& [chosen, shunt, manual, textKey] : {std::tuple{kClamp, false, false, text::kClamp},
                                                         {kManual, false, true, text::kManual},
                                                         {kShunt, true, false, text::kShunt}}) {
        room->calls.clear();
        EXPECT_TRUE(guide->PressButton(chosen));
        EXPECT_EQ(Events(), "MASInputChanged");
        for (int32_t key : kMasButtons) EXPECT_EQ(Button(key).checked, key == chosen) << key;
        EXPECT_EQ(config->MASInput, shunt);
        EXPECT_EQ(config->ManualSelectedInTestGuide, manual);
        EXPECT_EQ(config->TestGuideMASInput, textKey);
        EXPECT_EQ(room->Count("MASInput 1"), chosen == kShunt ? 1 : 0);
        EXPECT_EQ(room->Count("MASInput 0"), chosen == kClamp ? 1 : 0);
    }
}

TEST_F(Press, TheMeterAloneWithTypedValuesHasNothingToStart) {
    Open(kRadioRepro, kMasMeter, kMasMeter);
    room->kind = kMasMeter;
    guide->PressButton(kStart);
    EXPECT_EQ(Events(), "Start");
    guide->PressButton(kManual);
    EXPECT_FALSE(Button(kStart).enabled);
    guide->ToolbarState(GuideState::kIdle, true);
    EXPECT_FALSE(Button(kStart).enabled);
    guide->PressButton(kClamp);
    EXPECT_TRUE(Button(kStart).enabled);
}

TEST_F(Press, NextPutsTheManualInputBackWhileItIsTheLastChoice) {
    Open(kRadioRepro, kZrdAndMas, kZrdAndMas);
    guide->EnableNext(true);
    guide->PressButton(kManual);
    config->TestGuideMASInput = text::kShunt;
    guide->PressButton(kNext);
    EXPECT_EQ(config->TestGuideMASInput, text::kManual);
    guide->PressButton(kShunt);
    guide->PressButton(kNext);
    EXPECT_EQ(config->TestGuideMASInput, text::kShunt);
}

TEST_F(Press, TheSurveyHasNoneOfTheDetectorsButtons) {
    element->fakeTestId = kMqsaSurvey;
    Open();
    guide->SetWakeUpButton(true);
    for (int32_t key : {kWakeUp, kIonChamber, kDisconnect, kShunt, kClamp, kManual})
        EXPECT_FALSE(Button(key).visible) << key;
    guide->SelectTargetFilter(0);
    EXPECT_TRUE(guide->PressButton(kStart));
    EXPECT_EQ(room->Count("DetectorKind"), 1) << "on opening";
}

}  // namespace
}  // namespace vorex::test

#include "foundation/host_services.h"
#include "foundation/sequence_state.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "guide/test_guide_form.h"

// The actions of the guide's buttons.

namespace vorex {

using namespace guide_button;  // NOLINT(google-build-using-namespace): the keys are this file's subject

namespace {

/// Buttons that end or leave the test, locked while exposures are taken.
constexpr int32_t kNavigation[] = {kAbort, kPrevious, kSkip, kNa};

/// Buttons that only raise their event.
struct PlainButton {
    int32_t key;
    Event<> TestGuideEvents::*event;
};
constexpr PlainButton kPlainButtons[] = {
    {kPrevious, &TestGuideEvents::Previous},
    {kStop, &TestGuideEvents::StopTest},
    {kWakeUp, &TestGuideEvents::WakeUpDetector},
    {kSkip, &TestGuideEvents::Skip},
    {kNa, &TestGuideEvents::NA},
    {kIonChamber, &TestGuideEvents::DisplayIonChamber},
};

}  // namespace

// ------------------------------------------------------------------------------------ state of the bar

void FZRD47500TestGuide::ToolbarState(GuideState state, bool enableNext) {
    mState = state;
    const bool idle = state == GuideState::kIdle;
    for (int32_t key : kNavigation) mToolbar.Enable(key, idle);
    mToolbar.Enable(kNext, idle && enableNext);
    mToolbar.Enable(kStop, !idle);
    mToolbar.Enable(kStart, false);
    EnableStartButton();
    Report(WindowPart::kToolbar);
    Report(WindowPart::kMenu);
}

/// A test with only the mAs meter and typed values has nothing to start.
void FZRD47500TestGuide::EnableStartButton() {
    const bool typedOnly = mToolbar.Checked(kManual) && mConnectedKind == kMasMeter && mConfig &&
                           mConfig->DetectorOption == kMasMeter;
    if (mState == GuideState::kIdle) mToolbar.Enable(kStart, !typedOnly);
}

void FZRD47500TestGuide::EnableNext(bool enable) {
    SetToolBarButtonStatus(kNext, enable);
}
void FZRD47500TestGuide::EnableStop(bool enable) {
    SetToolBarButtonStatus(kStop, enable);
}
void FZRD47500TestGuide::EnableStart(bool enable) {
    SetToolBarButtonStatus(kStart, enable);
}

void FZRD47500TestGuide::SetToolBarButtonStatus(int32_t button, bool enabled) {
    mToolbar.Enable(button, enabled);
    Report(WindowPart::kToolbar);
}

void FZRD47500TestGuide::SetWakeUpButton(bool enable) {
    mToolbar.Show(kWakeUp, enable && !IsSurvey());
    SetToolBarButtonStatus(kWakeUp, enable);
}

/// A run that ended because a handler failed must not leave the bar locked.
void FZRD47500TestGuide::LeaveRunningState() {
    if (mState != GuideState::kRunning) return;
    mSequence->gRunActive = false;
    SetStatusText({});
    const auto result = Result();
    ToolbarState(GuideState::kIdle, result && result->Status() != kNotTested);
}

// ------------------------------------------------------------------------------------------- presses

FZRD47500TestGuide::WatchPause::WatchPause(FZRD47500TestGuide& guide) : mGuide(guide) {
    ++mGuide.mPauses;
    if (mGuide.mWatch) mGuide.mWatch->Stop();
}

FZRD47500TestGuide::WatchPause::~WatchPause() {
    if (--mGuide.mPauses == 0 && mGuide.mWatch) mGuide.mWatch->Start(kWatchInterval);
}

bool FZRD47500TestGuide::Takes(const OperatorAct& act) const {
    using Kind = OperatorAct::Kind;
    if (IsAnswer(act.kind)) return false;
    if (act.kind == Kind::kPress) return mToolbar.Takes(act.number);
    if (act.kind == Kind::kShortcut)
        return mToolbar.Takes(act.number) || (act.number == kStart && mToolbar.Takes(kStop));
    if (act.kind == Kind::kRedo) return CanRedo(act.number);
    if (act.kind == Kind::kMenu && act.number == 0) return true;
    return mView && mView->Takes(act);
}

void FZRD47500TestGuide::Do(const OperatorAct& act) {
    using Kind = OperatorAct::Kind;
    if (act.kind == Kind::kPress || act.kind == Kind::kShortcut)
        PressKey(act.number, act.kind == Kind::kShortcut);
    else if (act.kind == Kind::kRedo)
        Redo(static_cast<uint8_t>(act.number));
    else if (act.kind == Kind::kMenu && act.number == 0)
        ShowMenu();
    else
        mView->Do(act);
}

void FZRD47500TestGuide::PressKey(int32_t key, bool shortcut) {
    const WatchPause pause(*this);
    Guarded("xtbToolbar_ButtonClick", [&] { HandleButton(key, shortcut); });
    Report(WindowPart::kToolbar);
}

void FZRD47500TestGuide::HandleButton(int32_t key, bool shortcut) {
    for (const PlainButton& button : kPlainButtons)
        if (button.key == key) return (events.*button.event).Raise();
    // clang-format off
    switch (key) {
        case kAbort: return PressAbort();
        case kNext: return PressNext();
        case kStart: return PressStart(shortcut);
        case kDisconnect: return PressDisconnect();
        case kShunt: return PressMasInput(true);
        case kClamp: return PressMasInput(false);
        case kManual: return PressManual();
        default: return SelectTargetFilter(key - kFirstTargetFilter);
    }
    // clang-format on
}

void FZRD47500TestGuide::PressAbort() {
    const auto& platform = Services().platform;
    if (!platform || platform->Confirm(Translate(text::kConfirmAbort))) events.AbortTest.Raise();
}

void FZRD47500TestGuide::PressNext() {
    if (mManualNote && mConfig) mConfig->TestGuideMASInput = text::kManual;
    events.NextTest.Raise();
}

void FZRD47500TestGuide::PressStart(bool shortcut) {
    if (mState == GuideState::kRunning || mSequence->gRunActive)
        return shortcut ? events.StopTest.Raise() : events.StartTest.Raise();
    if (!OpenLink()) return;
    mManualNote = false;
    mToolbar.Enable(kDisconnect, true);
    if (!AdaptToDetector()) return;
    events.StartTest.Raise();
    LeaveRunningState();
}

bool FZRD47500TestGuide::OpenLink() {
    if (!mLink && Services().createDetectorLink) mLink = Services().createDetectorLink();
    if (!mLink) return false;
    if (!mLink->LinkOpen()) {
        mLink->SelectDetector(mConfig ? mConfig->DetectorOption : kNoDetector);
        mLink->OpenLink();
    }
    return mLink->LinkOpen();
}

void FZRD47500TestGuide::PressDisconnect() {
    if (mLink) mLink->CloseLink();
    mToolbar.Enable(kDisconnect, false);
}

// --------------------------------------------------------------------------------------- mAs buttons

void FZRD47500TestGuide::RefreshMASButtons() {
    const bool hasMeter = mConfig && HasMasMeter(mKind);
    mToolbar.Show(kShunt, hasMeter);
    mToolbar.Show(kClamp, hasMeter);
    mToolbar.Show(kManual, hasMeter && mConfig->MASInputOverride);
    if (!hasMeter) return;
    const int32_t input = mConfig->MASInput ? kShunt : kClamp;
    mToolbar.CheckOnly(kMasButtons, mConfig->ManualSelectedInTestGuide ? kManual : input);
}

void FZRD47500TestGuide::PressMasInput(bool shunt) {
    if (IsSurvey()) return;
    mToolbar.CheckOnly(kMasButtons, shunt ? kShunt : kClamp);
    EnableStartButton();
    mManualNote = false;
    mConfig->MASInput = shunt;
    mConfig->TestGuideMASInput = shunt ? text::kShunt : text::kClamp;
    mConfig->ManualSelectedInTestGuide = false;
    TypeMasValues(false);
    if (LinkIsOpen() && vti) {
        mToolbar.Enable(kDisconnect, true);
        vti->MASInput(shunt);
    }
    events.MASInputChanged.Raise();
}

void FZRD47500TestGuide::PressManual() {
    if (IsSurvey()) return;
    mToolbar.CheckOnly(kMasButtons, kManual);
    EnableStartButton();
    mConfig->TestGuideMASInput = text::kManual;
    mConfig->ManualSelectedInTestGuide = true;
    TypeMasValues(true);
    events.MASInputChanged.Raise();
    mManualNote = true;
}

}  // namespace vorex

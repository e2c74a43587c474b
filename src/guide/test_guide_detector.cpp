#include <algorithm>
#include <utility>

#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/sequence_state.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "guide/detector_adaption.h"
#include "guide/test_guide_form.h"

// The guide and the detector: the watch of the link while idle, and the adaption of the test on Start.

namespace vorex {

namespace {

/// Consecutive failed polls after which the watch gives up.
constexpr int32_t kGivesUpAfter = 100;

}  // namespace

// --------------------------------------------------------------------------------------------- watch

void FZRD47500TestGuide::StartWatch() {
    const auto& platform = Services().platform;
    if (!vti || !platform) return;
    mSleepTimeOut = SleepTimeOut();
    mShutdownTimeout = ShutdownTimeOut();
    Guarded("StartWatch", [&] { vti->BeginRun(); });
    if (!mWatch) mWatch = platform->CreateTimer([this] { WatchTick(); });
    mWatch->Start(kWatchInterval);
}

void FZRD47500TestGuide::WatchTick() {
    mWatch->Stop();
    // A press during the tick's poll leaves the timer to the tick.
    ++mPauses;
    bool goesOn = true;
    if (!mSequence->gRunActive) goesOn = WatchGoesOn();
    --mPauses;
    if (goesOn && mWatch) mWatch->Start(kWatchInterval);
}

bool FZRD47500TestGuide::WatchGoesOn() {
    bool linked = false;
    bool alive = false;
    const bool answered = Guarded("Timer1_Timer", [&] {
        linked = vti->LinkState() != 0;
        if (!linked) return;
        vti->DosimeterConnected();
        alive = vti->Poll(mSleepTimeOut, mShutdownTimeout);
    });
    if (answered && !linked) {
        LoseConnection();
        return false;
    }
    int32_t& failures = mSequence->watchFailures;
    if (alive) {
        failures = 0;
        if (std::exchange(mLinkLost, false)) events.ConnectionFound.Raise();
        return true;
    }
    // The first failure is announced; the watch continues, so that it notices when the link is back.
    if (++failures == 1) LoseConnection();
    if (failures < kGivesUpAfter) return true;
    failures = 1;
    return false;
}

void FZRD47500TestGuide::LoseConnection() {
    if (std::exchange(mLinkLost, true)) return;
    mToolbar.SetTargetFilters({}, -1);
    mToolbar.Enable(guide_button::kWakeUp, false);
    Report(WindowPart::kToolbar);
    Report(WindowPart::kMenu);
    events.ConnectionLost.Raise();
}

// ------------------------------------------------------------------------------------------ adaption

bool FZRD47500TestGuide::AdaptToDetector() {
    if (IsSurvey() || !vti) return true;
    mConnectedKind = ReadInteger(vti->DetectorKind());
    const int32_t configured = mConfig->DetectorOption;
    if (!DetectorFits(mConnectedKind, configured)) {
        RefuseDetector(configured);
        return false;
    }
    const int32_t kind = EffectiveKind(mConnectedKind, configured);
    if (kind == kNoDetector) return true;  // no instrument connected, none requested
    const int32_t kindBefore = mKind;
    const int32_t nameBefore = mConfig->DetectorName;
    try {
        AdaptTo(kind, configured);
    } catch (...) {
        // The instruments failed half-way: the test keeps the kind that its columns show.
        mKind = kindBefore;
        mConfig->DetectorName = nameBefore;
        ShowOptionalButtons();
        throw;
    }
    return true;
}

void FZRD47500TestGuide::RefuseDetector(int32_t configured) {
    if (mLink) mLink->CloseLink();
    mToolbar.Enable(guide_button::kDisconnect, false);
    const std::string name = Translate(HasZrd(configured) ? text::kDetectorZrd : text::kDetectorPelomark);
    const auto& platform = Services().platform;
    if (platform)
        platform->ShowMessage(
            Translate(text::kPlugInResponse),
            Translate(text::kDetectorUnsupported, {name}) + " " + Translate(text::kScanForDetectors));
}

void FZRD47500TestGuide::AdaptTo(int32_t kind, int32_t configured) {
    mKind = kind;
    mConfig->DetectorName = kind;
    ShowOptionalButtons();
    if (HasPelomark(kind)) AdaptDosimeter();
    if (HasZrd(kind))
        AdaptTargetFilters();
    else
        mToolbar.SetTargetFilters({}, -1);
    if (HasMasMeter(kind)) vti->MASInput(mConfig->MASInput);
    InitializeResultAgain();
    Report(WindowPart::kToolbar);
    Report(WindowPart::kMenu);
    BuildColumns(mConfig, true);
    // The configured mAs meter is missing: its values are typed in, if that is allowed.
    const bool meterMissing = mConnectedKind == kZrd || mConnectedKind == kPelomark;
    if (meterMissing && HasMasMeter(configured) && mConfig->MASInputOverride) PressManual();
}

void FZRD47500TestGuide::AdaptDosimeter() {
    DosimeterSettings settings = DosimeterSettingsOf(*mConfig);
    if (vti->SyncDosimeter(settings) == 0) TakeDosimeterSettings(settings, *mConfig);
    mFirmwareVersion = vti->FirmwareVersion();
}

void FZRD47500TestGuide::AdaptTargetFilters() {
    vti->Mode(DisplayText(kDetectorModes, mConfig->pMeasurementMode));
    vti->QueryTargetFilters();
    const int32_t count = vti->TargetFilterCount();
    std::vector<std::string> names;
    if (count <= 0) {
        mToolbar.SetTargetFilters(names, -1);
        return;
    }
    vti->GetTargetFilters(names, count);
    const auto indexOf = [&](std::string_view wanted) {
        const auto at = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
            return EqualsIgnoringCase(name, wanted);
        });
        return at == names.end() ? -1 : static_cast<int32_t>(at - names.begin());
    };
    int32_t index = indexOf(mConfig->pTargetFilterName);
    if (index < 0) {
        mConfig->pTargetFilterName = vti->DefaultTargetFilter();
        index = indexOf(mConfig->pTargetFilterName);
    }
    vti->TargetFilter(mConfig->pTargetFilterName);
    mToolbar.SetTargetFilters(names, index);
}

/// A result without exposures follows the detector; the start of a run replaces one with exposures.
void FZRD47500TestGuide::InitializeResultAgain() {
    const auto result = Result();
    if (!result || !result->Rows().empty()) return;
    // The dosimeter may have changed its mode and units as well.
    if (result->DetectorName != mKind || HasPelomark(mKind)) result->Initialize(mConfig);
}

void FZRD47500TestGuide::SelectTargetFilter(int32_t index) {
    const auto& names = mToolbar.TargetFilters();
    if (IsSurvey() || !vti || index < 0 || static_cast<std::size_t>(index) >= names.size()) return;
    const std::string name = names[static_cast<std::size_t>(index)];
    mToolbar.CheckTargetFilter(index);
    vti->TargetFilter(name);
    vti->ActivateTargetFilter();
    mConfig->pTargetFilterName = name;
    Report(WindowPart::kToolbar);
    Report(WindowPart::kMenu);
    events.TargetFilterChangedEvent.Raise(name);
}

}  // namespace vorex

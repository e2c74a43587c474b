#include <algorithm>
#include <utility>

#include "execution/survey_feed.h"
#include "execution/test_common.h"
#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/sequence_state.h"
#include "foundation/utilities.h"

// The element's handlers for the events of the instruments. The row of exposure n is stored while n - 1
// exposures are counted, because the counter advances later in the same tick.

namespace vorex {

namespace {

void Announce(const StoredExposure& stored) {
    if (Services().exposureStored) Services().exposureStored(stored);
}

}  // namespace

void CTestCommon::ConnectInstruments() {
    DetectorEvents& events = vti->events;
    const auto overlay = [this](std::string_view words) {
        return [this, words](bool show) {
            if (mfrmTestGuide) mfrmTestGuide->ShowOverlay(show, words);
        };
    };
    mListening.clear();
    const auto listen = [this](auto& event, auto handler) {
        mListening.push_back(event.Listen(std::move(handler)));
    };
    listen(events.VTI_DataReady, [this](const ZrdReading& reading) { VTI_DataReady(reading); });
    listen(events.vti_AddWakeUpButton, [this](bool wakeUp) { vti_AddWakeUpButton(wakeUp); });
    listen(events.vti_EnableStopButton, [this](bool enable) { vti_EnableStopButton(enable); });
    listen(events.vti_CheckExposureWaveform, [this](uint8_t type) { vti_CheckExposureWaveform(type); });
    listen(events.vti_TestSWDataReady, [this](const PelomarkReading& r) { vti_TestSWDataReady(r); });
    listen(events.vti_TestmAsDataReady, [this](const MasReading& r) { vti_TestmAsDataReady(r); });
    listen(events.vti_DisplaySensorResetMsg, overlay(text::kResettingPleaseWait));
    listen(events.vti_ZeroingmAs, overlay(text::kZeroingPleaseWait));
}

ReadingContext CTestCommon::Reading() const {
    return {*Config(), *mResult, mExposureNo, IsRedo(mState)};
}

void CTestCommon::StoreRow(const DerivedRow& row, int32_t source) {
    const auto exposure = static_cast<uint8_t>(std::min(mExposureNo + 1, 255));
    FeedSurveys(*this, row.outcomes);
    const std::string fault = mResult->StoreResult(row, source);
    if (!fault.empty() && mFault.empty())
        mFault = StoredMessage(text::kReasonInExposure, {PlainText(static_cast<int32_t>(exposure)), fault});
    mResult->UpdateStatus(*this, mPipe->SelectedStandards().get(), exposure);
    if (Services().exposureStored) Announce({*this, exposure, source, JoinedFields(row), 0});
    mfrmTestGuide->ShowResult(shared_from_this(), exposure);
    if (source != kSourceZrd) mfrmTestGuide->SetWaveformExposure(exposure);
}

void CTestCommon::VTI_DataReady(const ZrdReading& reading) {
    if (mStopDone) return;  // Stop has already ended this exposure
    mLastKvp = WithPoint(reading.kvpAvg);
    mExposureTime = WithPoint(reading.exposureTime);
    StoreRow(BuildDetectorResult(Reading(), reading), kSourceZrd);
}

void CTestCommon::vti_TestSWDataReady(const PelomarkReading& reading) {
    StoreRow(BuildDosimeterResult(Reading(), reading), kSourcePelomark);
}

void CTestCommon::vti_TestmAsDataReady(const MasReading& reading) {
    StoreRow(BuildMasResult(Reading(), reading), kSourceMas);
}

void CTestCommon::vti_AddWakeUpButton(bool wakeUp) {
    if (mfrmTestGuide) mfrmTestGuide->SetWakeUpButton(wakeUp);
}

void CTestCommon::vti_EnableStopButton(bool enable) {
    mFetchWaveforms = !enable;
    Take(enable ? RunStep::kHold : RunStep::kRelease);
    if (enable) mStopDone = mSkipCount = false;
}

void CTestCommon::vti_CheckExposureWaveform(uint8_t type) {
    if (mfrmTestGuide) mfrmTestGuide->WaveformType(type);
    if (!mStopDone) FetchWaveforms(type);
}

/// Runs with the timer stopped; the timer is always started again.
void CTestCommon::FetchWaveforms(uint8_t type) {
    if (mFrmTimer) mFrmTimer->StopTimer();
    std::string failure;
    // If the instruments cannot be armed again, waiting for them would never end.
    if (!Guarded(
            "FetchWaveforms", [&] { TransferWaveform(type); }, &failure))
        BreakOff(failure);
    if (mFrmTimer && Sequence()->gRunActive) mFrmTimer->StartTimer();
}

/// The instrument gives the time in the unit of its column: seconds in fluoroscopy.
float CTestCommon::ExposureTimeMs() const {
    constexpr double kMsASecond = 1000;
    const bool seconds = TimeUnitKey(Config()->pMeasurementMode) == text::kUnitSec;
    return static_cast<float>(ReadNumber(mExposureTime) * (seconds ? kMsASecond : 1));
}

void CTestCommon::TransferWaveform(uint8_t type) {
    constexpr float kMaLengthMs = 1000;
    constexpr int32_t kPoints = 1000;
    if (!mFetchWaveforms) return;
    const auto exposure = static_cast<uint8_t>(std::min(mExposureNo + 1, 255));
    const bool import = Config()->pNoOfExposures > 0 &&
                        ReadNumber(Config()->GetValue(mExposureNo, ExposureColumn::kImport)) == 1;
    const auto show = [&] {
        mfrmTestGuide->SetWaveformExposure(exposure);
        mfrmTestGuide->DrawWaveform(mResult->WaveformOfRow(exposure));
    };
    mResult->WaveformType = type;
    mResult->StoreWaveForm("", exposure);
    show();
    const bool exposed = ReadNumber(mLastKvp) > 0 && ReadNumber(mExposureTime) > 0;
    if (!import || (type != kMaWaveform && !exposed)) return;
    mfrmTestGuide->SetStatusText(text::kRetrievingWaveform);
    Services().platform->PumpMessages();
    Vti().Armed(false);
    std::string failure;
    const auto transfer = [&] {
        const float length = type == kMaWaveform ? kMaLengthMs : ExposureTimeMs();
        const std::string data = Vti().GetWaveform(0, length, kPoints, type);
        if (data.empty() || mStopped) return;
        mResult->Resolution(Vti().WaveformResolution());
        mResult->StoreWaveForm(data, exposure);
        Announce({*this, exposure, 0, {}, type});
        show();
    };
    if (!Guarded("GetWaveform", transfer, &failure) && mFault.empty()) mFault = failure;
    Vti().Armed(true);
    mfrmTestGuide->SetStatusText(text::kTestInProgress);
}

}  // namespace vorex

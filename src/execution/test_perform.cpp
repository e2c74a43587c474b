#include <algorithm>
#include <exception>
#include <utility>

#include "execution/survey_feed.h"
#include "execution/test_common.h"
#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/sequence_state.h"
#include "foundation/utilities.h"

// The exposure cycle: what `Perform` does, how the guide's events drive it, how exposures are polled and
// counted. A failing instrument stops the run like a lost link: the exposures so far are kept and judged.

namespace vorex {

namespace {

constexpr int32_t kPollMs = 500;
constexpr int32_t kFluoroscopyPollMs = 1000;
constexpr uint8_t kMostExposures = 255;
/// The host's list has room for two instruments of a test.
constexpr std::size_t kMostInstruments = 2;

/// Runs a function at the end of a scope, also when an exception ends it.
template <typename Function>
class AtEnd {
  public:
    explicit AtEnd(Function function) : mFunction(std::move(function)) {}
    ~AtEnd() { mFunction(); }
    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;

  private:
    Function mFunction;
};

bool NamesInstrument(std::string_view serialNumber) {
    return !serialNumber.empty() && serialNumber != "0";
}

bool NamesAny(const std::vector<CMtiData2>& instruments) {
    return std::any_of(instruments.begin(), instruments.end(),
                       [](const CMtiData2& instrument) { return !instrument.SerialNumber().empty(); });
}

}  // namespace

void CTestCommon::Perform(const std::shared_ptr<IExecutionPipe>& pipe) {
    if (!pipe->BeginElement(*this)) return;
    mStopped = mRan = mLogTaken = false;
    mExposureNo = 0;
    mInstrumentsAtStart.clear();
    if (vti) ConnectInstruments();
    AdoptDetectorOption();
    CreateResult(false);
    const bool earlierResult = mResult && mResult->Status() != kNotTested;
    mPipe = pipe;
    const PassedOver passed = TakePassedOver(*Sequence(), *mPipe);
    mOutcome = passed == PassedOver::kSkipped    ? Outcome::kDiscarded
               : passed == PassedOver::kMarkedNA ? Outcome::kMarkedNA
                                                 : Outcome::kUnchanged;
    if (passed == PassedOver::kNo) RunGuide(earlierResult);
    std::vector<CMtiData2> instruments = ReadInstruments();
    // A lost link answers no serial numbers.
    if (!NamesAny(instruments)) instruments = mInstrumentsAtStart;
    if (mRan) NoteInstruments(instruments);
    Guarded("Disconnect", [&] { Vti().Disconnect(); });
    mListening.clear();
    mFrmTimer.reset();
    Take(RunStep::kClose);
    ReturnLog();
    if (mfrmTestGuide) Guarded("Unload", [&] { mfrmTestGuide->Unload(); });
    mfrmTestGuide.reset();
    FinishTest(!instruments.empty() ? &instruments[0] : nullptr,
               instruments.size() > 1 ? &instruments[1] : nullptr);
    mPipe.reset();
}

void CTestCommon::RunGuide(bool earlierResult) {
    mfrmTestGuide = CreateObjectAs<ITestGuide>(kTestGuideClass);
    if (!mfrmTestGuide) return;
    Take(RunStep::kOpen);
    ConnectGuide();
    Guarded("Load", [&] { mfrmTestGuide->Load(); });
    mExposureCount = Config()->pNoOfExposures;
    TakeLog();
    mfrmTestGuide->ToolbarState(GuideState::kIdle, earlierResult);
    mfrmTestGuide->ShowStatus(mResult.get());
    mfrmTestGuide->Initialize(shared_from_this(), mPipe, BuildGuideInfo());
    mfrmTestGuide->BuildColumns(Config(), false);
    mResult->pTestGuide = true;
    if (earlierResult) RedrawEarlierResult();
    RefreshInfo();
    Services().platform->ShowModal(*mfrmTestGuide);
    mResult->pTestGuide = false;
}

void CTestCommon::ConnectGuide() {
    TestGuideEvents& events = mfrmTestGuide->events;
    events.DrawWaveForm.Connect(
        [this](uint8_t exposure, bool, uint8_t type) { mfrmTestGuide_DrawWaveForm(exposure, type); });
    events.StartTest.Connect([this] { mfrmTestGuide_StartTest(); });
    events.StopTest.Connect([this] { mfrmTestGuide_StopTest(); });
    events.AbortTest.Connect([this] { mfrmTestGuide_AbortTest(); });
    events.Skip.Connect([this] { mfrmTestGuide_Skip(); });
    events.NextTest.Connect([this] { mfrmTestGuide_NextTest(); });
    events.Previous.Connect([this] { mfrmTestGuide_Previous(); });
    events.NA.Connect([this] { mfrmTestGuide_NA(); });
    events.ReDoExposure.Connect([this](uint8_t exposure) { mfrmTestGuide_ReDoExposure(exposure); });
    events.WakeUpDetector.Connect([this] { mfrmTestGuide_WakeUpDetector(); });
    events.DisplayIonChamber.Connect([this] { mfrmTestGuide_DisplayIonChamber(); });
    events.TargetFilterChangedEvent.Connect([this](const std::string&) { RefreshLiveInfo(); });
    events.MASInputChanged.Connect([this] { RefreshLiveInfo(); });
    events.ConnectionLost.Connect([this] { RefreshInfo(); });
    events.ConnectionFound.Connect([this] { RefreshInfo(); });
}

/// False when the step is not possible now.
bool CTestCommon::Take(RunStep step) {
    const auto next = StateAfter(mState, step);
    mState = next.value_or(mState);
    return next.has_value();
}

/// The operator's words stay with the result; the log of its edited values moves to the configuration.
void CTestCommon::TakeLog() {
    const std::string comment = mResult->Comment();
    Config()->PrintTheComment = CommentLog(comment);
    mLogTaken = !Config()->PrintTheComment.empty();
    if (!comment.empty()) mResult->Comment(CommentWords(comment));
}

/// A new log goes to a judged result only; a log that was taken from the result always returns to it.
void CTestCommon::ReturnLog() {
    const auto config = Config();
    const std::string log = config ? std::exchange(config->PrintTheComment, {}) : std::string();
    const bool judged = mResult && (mResult->Status() == kPassed || mResult->Status() == kFailed);
    if (log.empty() || !mResult || !(judged || mLogTaken)) return;
    mResult->Comment(AppendComment(mResult->Comment(), log));
}

void CTestCommon::RedrawEarlierResult() {
    for (int32_t exposure = 1; exposure <= mExposureCount; ++exposure) {
        if (!mResult->ShowResultInTestguide(exposure - 1)) continue;
        mfrmTestGuide->ShowResult(shared_from_this(), static_cast<uint8_t>(exposure));
        for (uint8_t type : {kKvWaveform, kMaWaveform}) {
            mResult->WaveformType = type;
            mfrmTestGuide->WaveformType(type);
            const auto waveform = mResult->WaveformOfRow(exposure);
            if (waveform && waveform->ValueCount() > 0) mfrmTestGuide->DrawWaveform(waveform);
        }
        mResult->WaveformType = kKvWaveform;
        mfrmTestGuide->WaveformType(kKvWaveform);
    }
}

IDetectorService& CTestCommon::Vti() {
    if (!vti) {
        vti = Services().createDetectorService();
        ConnectInstruments();
    }
    return *vti;
}

/// An entry without a serial number stays empty but keeps its position. If an instrument fails to answer one
/// question, the other answers are kept.
std::vector<CMtiData2> CTestCommon::ReadInstruments() {
    std::string serials;
    std::string dates;
    Guarded("SerialNumbers", [&] { serials = Vti().SerialNumbers(); });
    Guarded("CalibrationDates", [&] { dates = Vti().CalibrationDates(); });
    const auto serialParts = SplitText(serials, ',');
    const auto dateParts = SplitText(dates, ',');
    std::vector<CMtiData2> records(std::min(serialParts.size(), kMostInstruments));
    for (std::size_t i = 0; i < records.size(); ++i) {
        const std::string serial(Trimmed(serialParts[i]));
        if (!NamesInstrument(serial)) continue;
        records[i].SerialNumber(serial);
        if (i < dateParts.size()) records[i].CalibrationDate(std::string(Trimmed(dateParts[i])));
        Guarded("InstrumentName", [&] { records[i].Name(Vti().InstrumentName(static_cast<int32_t>(i))); });
    }
    return records;
}

void CTestCommon::NoteInstruments(const std::vector<CMtiData2>& instruments) {
    if (!mResult || !mResult->Run()) return;
    RunRecord run = *mResult->Run();
    for (const CMtiData2& instrument : instruments)
        if (!instrument.SerialNumber().empty()) run.AddInstrument(instrument);
    mResult->Run(std::move(run));
}

bool CTestCommon::MoreExposures() const {
    return mExposureNo < Config()->pNoOfExposures;
}

bool CTestCommon::InFluoroscopy() const {
    return EqualsIgnoringCase(DisplayText(kDetectorModes, Config()->pMeasurementMode),
                              Translate(text::kModeFluoro));
}

// ------------------------------------------------------------------------------------------ the run

void CTestCommon::mfrmTestGuide_StartTest() {
    if (Sequence()->gRunActive || !Take(RunStep::kStart)) return;
    const AtEnd end([this] { Take(RunStep::kEnd); });
    mStopped = false;
    mOutcome = Outcome::kKept;
    BeginRecord();
    const std::string start = PresentTime();
    mInstrumentsAtStart = ReadInstruments();
    mfrmTestGuide->ClearTable();
    if (mResult->Status() != kNotTested || !mResult->Rows().empty()) BeginResult();
    ShowRunning();
    mResult->pTestGuide = true;
    std::string failure;
    if (!Guarded(
            "RunExposures", [&] { RunExposures(); }, &failure))
        BreakOff(failure);
    StopPolling();
    mResult->pTestGuide = false;
    JudgeAll();
    NoteRun(start);
    ShowIdle();
}

/// The log of edited values is discarded together with the result that it describes.
void CTestCommon::BeginResult() {
    CreateResult(true);
    Config()->PrintTheComment.clear();
    mLogTaken = false;
    mfrmTestGuide->ShowResult(shared_from_this(), 0);
}

void CTestCommon::BeginRecord() {
    mRan = true;
    mEnding = RunEnding::kComplete;
    mFault.clear();
}

/// A failure of the instruments ends the run; the first one is the reason.
void CTestCommon::BreakOff(std::string_view reason) {
    mStopped = true;
    if (mEnding == RunEnding::kBroken) return;
    mEnding = RunEnding::kBroken;
    mFault = reason;
}

void CTestCommon::NoteRun(const std::string& start) {
    RunRecord run;
    run.start = start;
    run.end = PresentTime();
    run.ending = mEnding;
    run.reason = mFault;
    run.planned = Config()->pNoOfExposures;
    run.origin = PresentOrigin();
    run.technique = TechniqueOf(*Config());
    mResult->Run(std::move(run));
}

/// A redo belongs to the run that it corrects; only a failed redo changes how the run ended.
void CTestCommon::NoteRedo(uint8_t exposureNumber) {
    const bool failed = mEnding != RunEnding::kComplete || !mFault.empty();
    if (!mResult->Run() && !failed) return;
    RunRecord run = mResult->Run().value_or(RunRecord{});
    run.end = PresentTime();
    if (failed) {
        if (mEnding != RunEnding::kComplete) run.ending = mEnding;
        const std::string exposure = PlainText(static_cast<int32_t>(exposureNumber));
        run.reason = mFault.empty() ? StoredMessage(text::kReasonRedo, {exposure})
                                    : StoredMessage(text::kReasonInRedo, {exposure, mFault});
        run.planned = Config()->pNoOfExposures;
    }
    mResult->Run(std::move(run));
}

void CTestCommon::ShowRunning() {
    mfrmTestGuide->ResetSelection();
    mfrmTestGuide->ToolbarState(GuideState::kRunning, false);
    mfrmTestGuide->SetStatusText(text::kTestInProgress);
}

void CTestCommon::JudgeAll() {
    if (mExposureNo == 0 && mResult->ExposureCount() == 0) return;
    JudgeResult();
}

void CTestCommon::JudgeResult() {
    const auto selected = mPipe->SelectedStandards();
    FeedSurveys(*this, mResult->UpdateAllStatus(*this, selected.get()));
    mResult->NoteJudgement(*this, selected.get());
}

void CTestCommon::ShowIdle() {
    mfrmTestGuide->SetStatusText("");
    mfrmTestGuide->ShowStatus(mResult.get());
    mfrmTestGuide->ToolbarState(GuideState::kIdle, !mStopped);
    const bool taken = mExposureNo != 0 || mResult->ExposureCount() != 0;
    if (taken && mStopped) mfrmTestGuide->EnableNext(true);
    ShowAllRows();
}

void CTestCommon::SendSettings() {
    const auto config = Config();
    IDetectorService& service = Vti();
    service.ExposureUnit(config->pMeasurementExposure);
    service.ExposureRateUnit(config->pMeasurementExposureRateUnit);
    service.FluoroType(config->pMeasurementFluoroType);
    service.TimeUnit(config->pMeasurementTimeUnit);
    service.PercentKV(config->pMeasurementPercentKV);
    service.Delay(config->pMeasurementDelay);
    service.IncludeDelay(config->pMeasurementIncludeDelay);
    service.Mode(DisplayText(kDetectorModes, config->pMeasurementMode));
    service.Settings(DisplayText(kDetectorSettings, config->pMeasurementSettings));
    service.TargetFilter(config->pTargetFilterName);
    service.ApplySettings();
    service.Armed(true);
}

void CTestCommon::StartPolling() {
    if (!mFrmTimer) {
        mFrmTimer = std::make_unique<FrmTimer>();
        mFrmTimer->FireTimer.Connect([this] { mFrmTimer_FireTimer(); });
    }
    mFrmTimer->Interval(InFluoroscopy() ? kFluoroscopyPollMs : kPollMs);
    Vti().BeginRun();
    mSkipCount = mDataReady = mStopDone = false;
    mFetchWaveforms = true;
    Sequence()->gRunActive = true;
    mFrmTimer->StartTimer();
}

void CTestCommon::StopPolling() {
    if (mFrmTimer) mFrmTimer->StopTimer();
    Take(RunStep::kRelease);
    Sequence()->gRunActive = false;
    std::string failure;
    if (!Guarded(
            "Armed", [&] { Vti().Armed(false); }, &failure) &&
        mFault.empty())
        mFault = failure;
}

void CTestCommon::RunExposures() {
    mExposureNo = 0;
    mSleepTimeOut = SleepTimeOut();
    mShutdownTimeout = ShutdownTimeOut();
    RefreshInfo();
    ShowLiveRows();
    SendSettings();
    StartPolling();
    // The count is read on every turn, because the exposure table may change while the test runs.
    while (MoreExposures() && !mStopped)
        if (!Services().platform->WaitForEvent()) BreakOff(text::kReasonNothingToCome);
}

void CTestCommon::mFrmTimer_FireTimer() {
    mFrmTimer->StopTimer();
    std::string failure;
    if (Guarded(
            "mFrmTimer_FireTimer", [&] { Tick(); }, &failure))
        return;
    BreakOff(failure);
    if (Sequence()->gMenuOpen) FinishFromTimer();
}

/// One poll. The timer is stopped first and started again last, so that ticks never overlap.
void CTestCommon::Tick() {
    mInfoChanged = false;
    const std::vector<std::string> lines = BuildGuideInfo();
    if (mInfoChanged) {
        mfrmTestGuide->SetInfoLines(lines);
        ShowLiveRows();
    }
    mDataReady = Vti().ExposureDone();
    if (!Vti().Poll(mSleepTimeOut, mShutdownTimeout)) {
        const std::string fault = Services().instrumentFault ? Services().instrumentFault() : std::string();
        BreakOff(fault.empty() ? text::kReasonLinkLost : fault);
    }
    if (mDataReady) CountExposure();
    const bool finished = (IsRedo(mState) && mDataReady) || mExposureNo == mExposureCount;
    if (!finished && !mStopped)
        mFrmTimer->StartTimer();
    else if (Sequence()->gMenuOpen)
        FinishFromTimer();
}

void CTestCommon::CountExposure() {
    if (mSkipCount) {
        mSkipCount = false;
        return;
    }
    if (mExposureNo < kMostExposures) ++mExposureNo;
    if (!MoreExposures() || IsRedo(mState)) return;
    if (mResult) mResult->ResetTheMeasurements();
    RefreshInfo();
    ShowLiveRows();
}

/// An open menu of the guide blocks the run's own loop, so the last tick does what follows the loop.
void CTestCommon::FinishFromTimer() {
    StopPolling();
    JudgeAll();
    ShowIdle();
    mfrmTestGuide->EnableMenuRedoExposure(true);
    Take(RunStep::kEnd);
    mExposureNo = static_cast<uint8_t>(mExposureCount);
}

// --------------------------------------------------------------------------------- the guide's events

void CTestCommon::mfrmTestGuide_StopTest() {
    if (InFluoroscopy() && IsHeld(mState)) return EndHeldExposure();
    mfrmTestGuide->SetToolBarButtonStatus(guide_button::kStop, false);
    mStopped = true;
    mSkipCount = false;
    if (mEnding == RunEnding::kComplete) mEnding = RunEnding::kStopped;
}

/// Stop ends the held exposure and counts it.
void CTestCommon::EndHeldExposure() {
    mStopDone = mFetchWaveforms = mSkipCount = true;
    Take(RunStep::kRelease);
    const auto exposure = static_cast<uint8_t>(std::min(mExposureNo + 1, 255));
    // It counts even without a reading; a reading that it already has is kept. After the last exposure none
    // is due.
    if (MoreExposures()) mResult->StoreMissing(exposure);
    const int32_t kind = mfrmTestGuide->DetectorType();
    if (HasZrd(kind)) FetchWaveforms(kKvWaveform);
    if (HasMasMeter(kind)) FetchWaveforms(kMaWaveform);
    if (mExposureNo < kMostExposures) ++mExposureNo;
    mfrmTestGuide->ShowResult(shared_from_this(), exposure);
    RefreshInfo();
    ShowLiveRows();
}

void CTestCommon::Leave(int32_t navigation) {
    mPipe->NextAction(navigation);
    mfrmTestGuide->Visible(false);
}

void CTestCommon::mfrmTestGuide_AbortTest() {
    mfrmTestGuide_StopTest();
    mOutcome = Outcome::kDiscarded;
    mStopped = true;
    Leave(kGoAbort);
}

void CTestCommon::mfrmTestGuide_NextTest() {
    Leave(kGoNext);
}

void CTestCommon::mfrmTestGuide_Previous() {
    Leave(kGoPrevious);
}

void CTestCommon::mfrmTestGuide_Skip() {
    mOutcome = Outcome::kDiscarded;
    Leave(kGoSkip);
}

void CTestCommon::mfrmTestGuide_NA() {
    mStopped = false;
    mOutcome = Outcome::kMarkedNA;
    Leave(kGoNext);
}

void CTestCommon::mfrmTestGuide_ReDoExposure(uint8_t exposureNumber) {
    if (Sequence()->gRunActive || exposureNumber == 0) return;
    if (!(ReadNumber(Vti().SerialNumbers()) > 0) || !Take(RunStep::kRedo)) return;
    const AtEnd end([this] { Take(RunStep::kEnd); });
    mStopDone = false;
    const uint8_t exposureBefore = mExposureNo;
    const bool stoppedBefore = mStopped;
    mStopped = false;
    BeginRecord();
    std::string failure;
    mExposureNo = static_cast<uint8_t>(exposureNumber - 1);
    mResult->BeginRedo(exposureNumber);
    mResult->ShowResultInTestguide(mExposureNo, true);
    mResult->pTestGuide = true;
    const bool ended = Guarded(
        "ReDoExposure",
        [&] {
            mSleepTimeOut = SleepTimeOut();
            mShutdownTimeout = ShutdownTimeOut();
            Vti().Armed(true);
            RefreshInfo();
            ShowRunning();
            ShowLiveRows();
            StartPolling();
            while (mExposureNo < exposureNumber && !mDataReady && !mStopped)
                if (!Services().platform->WaitForEvent()) BreakOff(text::kReasonNothingToCome);
        },
        &failure);
    if (!ended) BreakOff(failure);
    mStopped = mStopped || stoppedBefore;
    mResult->pTestGuide = false;
    StopPolling();
    mResult->EndRedo();
    JudgeResult();
    NoteRedo(exposureNumber);
    Take(RunStep::kEnd);
    ShowIdle();
    mExposureNo = exposureBefore;
}

void CTestCommon::mfrmTestGuide_DrawWaveForm(uint8_t exposure, uint8_t type) {
    if (exposure == 0) return;
    const uint8_t exposureBefore = mExposureNo;
    mExposureNo = static_cast<uint8_t>(exposure - 1);
    Guarded("RefreshInfo", [&] { RefreshInfo(); });
    mExposureNo = exposureBefore;
    const auto result = std::dynamic_pointer_cast<CResultCommon>(mBase->Result());
    if (!result) return;
    result->WaveformType = type;
    mfrmTestGuide->DrawWaveform(result->WaveformOfRow(exposure));
}

void CTestCommon::mfrmTestGuide_WakeUpDetector() {
    Vti().WakeUp();
    mfrmTestGuide->SetWakeUpButton(false);
}

void CTestCommon::mfrmTestGuide_DisplayIonChamber() {
    if (vti) vti->ShowIonChamberDialog();
    RefreshInfo();
}

}  // namespace vorex

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "config/config_common.h"
#include "execution/element_on_base.h"
#include "execution/run_state.h"
#include "execution/test_guide_contract.h"
#include "foundation/class_registry.h"
#include "foundation/detector_service.h"
#include "foundation/event.h"
#include "foundation/host_contract.h"
#include "guide/frm_timer.h"
#include "results/derived_values.h"
#include "results/mti_data.h"
#include "results/result_common.h"

namespace vorex {

/// The element of the eight measuring tests, which differ by their identifier only.
///
/// `Perform` shows the guide modally; Start runs the exposure loop inside the guide's event; the loop waits
/// for events; the poll timer's ticks and all events of the instruments arrive nested in that wait.
class CTestCommon : public ElementOnBase<ITestElementBase>,
                    public LibraryObject,
                    public std::enable_shared_from_this<CTestCommon> {
  public:
    /// A new element with helper, configuration and limits.
    static std::shared_ptr<CTestCommon> Create();
    ~CTestCommon() override;

    /// Builds helper, configuration and limits. [once, by `Create`]
    void Class_Initialize();
    /// The operator pressed Start: takes all exposures of the test. Ignored while a run is active.
    void mfrmTestGuide_StartTest();
    /// Row of the exposure table for the next exposure, from 0; in a redo, the row that is redone.
    uint8_t ExposureRow() const { return mExposureNo; }

    // ITestElement
    void Initialize(const std::shared_ptr<ITestElement>& parent, std::string_view plugInId,
                    int32_t testId) override;
    std::shared_ptr<ITestElement> Clone() override;
    void Perform(const std::shared_ptr<IExecutionPipe>& pipe) override;
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override;
    void UpdateReferences() override;

  private:
    // Construction and persistence (test_common.cpp).
    std::shared_ptr<CConfigCommon> Config() const;
    void CreateResult(bool force);
    void AttachBase(const std::shared_ptr<ITestElementBase>& newBase);
    void AttachOwner(const std::shared_ptr<ITestElement>& element);
    void AdoptDetectorOption();
    void FollowExposures();
    void AppendExposureLimit(int32_t exposure);
    void ReorderLimits(int32_t exposure);
    void FinishTest(const CMtiData2* first, const CMtiData2* second);

    // Exposure cycle (test_perform.cpp).
    void RunGuide(bool earlierResult);
    void ConnectGuide();
    bool Take(RunStep step);
    void TakeLog();
    void ReturnLog();
    void BeginResult();
    void EndHeldExposure();
    void RedrawEarlierResult();
    std::vector<CMtiData2> ReadInstruments();
    IDetectorService& Vti();
    void RunExposures();
    void SendSettings();
    void StartPolling();
    void StopPolling();
    void JudgeAll();
    void JudgeResult();
    void BeginRecord();
    void BreakOff(std::string_view reason);
    void NoteRun(const std::string& start);
    void NoteRedo(uint8_t exposureNumber);
    void NoteInstruments(const std::vector<CMtiData2>& instruments);
    void ShowIdle();
    void ShowRunning();
    bool MoreExposures() const;
    bool InFluoroscopy() const;
    void Leave(int32_t navigation);
    void mfrmTestGuide_StopTest();
    void mfrmTestGuide_AbortTest();
    void mfrmTestGuide_NextTest();
    void mfrmTestGuide_Previous();
    void mfrmTestGuide_Skip();
    void mfrmTestGuide_NA();
    void mfrmTestGuide_ReDoExposure(uint8_t exposureNumber);
    void mfrmTestGuide_DrawWaveForm(uint8_t exposure, uint8_t type);
    void mfrmTestGuide_WakeUpDetector();
    void mfrmTestGuide_DisplayIonChamber();
    void mFrmTimer_FireTimer();
    void Tick();
    void CountExposure();
    void FinishFromTimer();

    // Instruction lines (test_info.cpp).
    std::vector<std::string> BuildGuideInfo();
    void AddHeader(std::vector<std::string>& lines);
    void RefreshInfo();
    void RefreshLiveInfo();
    void ShowLiveRows();
    void ShowAllRows();
    void ShowRows(std::vector<int32_t> rows);

    // Readings (test_intake.cpp).
    void ConnectInstruments();
    void VTI_DataReady(const ZrdReading& reading);
    void vti_TestSWDataReady(const PelomarkReading& reading);
    void vti_TestmAsDataReady(const MasReading& reading);
    void vti_CheckExposureWaveform(uint8_t type);
    void vti_AddWakeUpButton(bool wakeUp);
    void vti_EnableStopButton(bool enable);
    ReadingContext Reading() const;
    void StoreRow(const DerivedRow& row, int32_t source);
    void FetchWaveforms(uint8_t type);
    float ExposureTimeMs() const;
    void TransferWaveform(uint8_t type);

    Connection mLimitAdded;
    Connection mLimitDeleted;
    std::shared_ptr<IExecutionPipe> mPipe;
    std::shared_ptr<CResultCommon> mResult;
    RunState mState = RunState::kClosed;
    Outcome mOutcome = Outcome::kUnchanged;
    bool mStopped = false;
    bool mRan = false;       ///< a run was started since `Perform` began
    bool mLogTaken = false;  ///< the configuration holds the log of edited values
    std::vector<CMtiData2> mInstrumentsAtStart;
    RunEnding mEnding = RunEnding::kComplete;
    std::string mFault;  ///< the run's first fault of the instruments
    uint8_t mExposureNo = 0;
    bool mDataReady = false;
    int32_t mSleepTimeOut = 0;
    int32_t mShutdownTimeout = 0;
    bool mStopDone = false;
    std::string mExposureTime;
    std::string mLastKvp;
    bool mFetchWaveforms = false;
    bool mSkipCount = false;
    bool mInfoChanged = false;
    bool mCharging = false;
    uint8_t mBatteryLevel = 0;
    std::string mTargetFilter;
    std::size_t mHeaderLines = 2;
    int32_t mExposureCount = 0;
    bool mLimitsFlag = false;
    std::shared_ptr<IDetectorService> vti;
    std::unique_ptr<FrmTimer> mFrmTimer;
    std::shared_ptr<ITestGuide> mfrmTestGuide;
    std::vector<Connection>
        mListening;  ///< to the instruments, during `Perform`; last, so that they are disconnected first
};

}  // namespace vorex

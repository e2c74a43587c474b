#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "config/config_common.h"
#include "execution/test_guide_contract.h"
#include "foundation/detector_service.h"
#include "foundation/platform.h"
#include "foundation/sequence_state.h"
#include "guide/guide_menu.h"
#include "guide/guide_toolbar.h"
#include "guide/transparent_overlay.h"
#include "results/result_common.h"
#include "views/result_view.h"

namespace vorex {

/// The window in which the operator runs a test, without its widgets: what is shown, what can be pressed, and
/// what a press does. It measures nothing itself. While no exposures are taken it watches the link to the
/// detector, and on Start it adapts the test to the connected detector.
class FZRD47500TestGuide : public ITestGuide {
  public:
    FZRD47500TestGuide();
    ~FZRD47500TestGuide() override;

    // IModalWindow
    bool Visible() const override { return mVisible; }
    void Visible(bool visible) override;
    std::shared_ptr<ITestElement> Element() const override { return mElement.lock(); }
    const std::vector<WindowButton>& Buttons() const override { return mToolbar.Buttons(); }
    /// An empty line keeps its number, and is never shown.
    std::vector<std::string> VisibleLines() const override;
    const std::string& StatusLine() const override { return mStatusLine; }
    int32_t StatusShown() const override { return mStatusShown; }
    const IResultTable* ShownTable() const override { return mView.get(); }
    const std::vector<WindowTab>& Tabs() const override { return mTabs; }
    std::string OverlayText() const override;
    const std::vector<std::string>& Details() const override { return mDetails; }
    std::vector<MenuItem> MenuItems() const override;
    /// A shortcut press of Start stops a run that is active; a plain press always starts.
    bool Takes(const OperatorAct& act) const override;

    // ITestGuide
    void Load() override;
    void Initialize(const std::shared_ptr<ITestElement>& element, const std::shared_ptr<IExecutionPipe>& pipe,
                    const std::vector<std::string>& lines) override;
    void SetInfoLines(const std::vector<std::string>& lines) override;
    void ShowRows(std::span<const int32_t> rows) override;
    void ToolbarState(GuideState state, bool enableNext) override;
    void EnableNext(bool enable) override;
    void SetStatusText(std::string_view text) override;
    void ShowStatus(const IResultData* result) override;
    void ShowResult(const std::shared_ptr<ITestElement>& element, uint8_t exposure) override;
    void DrawWaveform(const std::shared_ptr<IWaveform>& waveform) override;
    void EnableStop(bool enable) override;
    void EnableStart(bool enable) override;
    void ResetSelection() override;
    void ClearTable() override;
    void SetWakeUpButton(bool enable) override;
    void SetWaveformExposure(uint8_t exposure) override { mWaveformExposure = exposure; }
    void WaveformType(uint8_t type) override { mWaveformType = type; }
    void ShowOverlay(bool show, std::string_view text) override;
    int32_t DetectorType() const override { return mKind; }
    bool GetToolBarButtonStatus(int32_t button) const override { return mToolbar.Enabled(button); }
    void SetToolBarButtonStatus(int32_t button, bool enabled) override;
    void EnableMenuRedoExposure(bool enable) override;
    void BuildColumns(const std::shared_ptr<CConfigCommon>& configuration, bool refresh) override;
    void Unload() override;

    /// Index counts from 0; an index without a target/filter is ignored.
    void SelectTargetFilter(int32_t index);

    const WindowButton* Button(int32_t key) const { return mToolbar.Find(key); }
    const std::vector<std::string>& InfoLines() const { return mLines; }
    GuideState RunState() const { return mState; }
    uint8_t CurrentExposure() const { return mCurrentExposure; }
    uint8_t WaveformExposure() const { return mWaveformExposure; }
    const std::shared_ptr<IZRD47500Result>& Table() const { return mView; }
    const XTransparent& Overlay() const { return mOverlay; }
    /// Firmware of the dosimeter, 0 until it is known.
    int32_t FirmwareVersion() const { return mFirmwareVersion; }
    bool Watching() const { return mWatch && mWatch->Running(); }

  private:
    static constexpr int32_t kWatchInterval = 2000;  ///< ms

    /// Pauses the watch while a press sends its commands; nested presses count.
    class WatchPause {
      public:
        explicit WatchPause(FZRD47500TestGuide& guide);
        ~WatchPause();
        WatchPause(const WatchPause&) = delete;
        WatchPause& operator=(const WatchPause&) = delete;

      private:
        FZRD47500TestGuide& mGuide;
    };

    void Report(WindowPart part, uint8_t number = 0) const { Changed.Raise({part, number}); }
    void ReportAll() const;

    // Life (test_guide_form.cpp).
    bool IsSurvey() const { return !mConfig; }
    std::shared_ptr<CResultCommon> Result() const;
    const ISelectedStandards* SelectedStandards() const;
    void ShowOptionalButtons();
    void ClearTabs();

    // Presses (test_guide_press.cpp).
    void Do(const OperatorAct& act) override;
    void PressKey(int32_t key, bool shortcut);
    void HandleButton(int32_t key, bool shortcut);
    void PressAbort();
    void PressNext();
    void PressStart(bool shortcut);
    void PressDisconnect();
    void PressMasInput(bool shunt);
    void PressManual();
    void EnableStartButton();
    void LeaveRunningState();
    void RefreshMASButtons();
    bool OpenLink();
    bool LinkIsOpen() const { return mLink && mLink->LinkOpen(); }

    // Detector (test_guide_detector.cpp).
    void StartWatch();
    void WatchTick();
    bool WatchGoesOn();
    void LoseConnection();
    bool AdaptToDetector();
    void AdaptTo(int32_t kind, int32_t configured);
    void RefuseDetector(int32_t configured);
    void AdaptDosimeter();
    void AdaptTargetFilters();
    void InitializeResultAgain();

    // Table and menu (test_guide_table.cpp).
    void CreateView(const std::shared_ptr<ITestElement>& element);
    void FillColumnSettings();
    void TypeMasValues(bool allowed);
    void ClickItem(uint8_t exposure, uint8_t column, const std::string& columnKey);
    void RequestWaveforms(uint8_t exposure);
    void EditCell(uint8_t exposure, uint8_t column, const std::string& text);
    void StoreTypedValue(uint8_t exposure, const std::string& columnKey, const std::string& text);
    void LogTypedValue(uint8_t exposure, const CMeasurement& measurement);
    void ToggleAllColumns();
    bool CanRedo(int32_t exposure) const;
    void Redo(uint8_t exposure);
    void ShowMenu();

    bool mVisible = false;
    std::shared_ptr<IDetectorService> vti;
    std::shared_ptr<IDetectorLink> mLink;
    std::unique_ptr<IPlatformTimer> mWatch;
    int32_t mSleepTimeOut = 0;
    int32_t mShutdownTimeout = 0;
    int32_t mPauses = 0;  ///< of the watch, nested

    std::weak_ptr<ITestElement> mElement;
    std::shared_ptr<SequenceState> mSequence = std::make_shared<SequenceState>();  ///< of the element
    std::shared_ptr<IExecutionPipe> mPipe;
    std::shared_ptr<CConfigCommon> mConfig;  ///< empty for the survey
    std::shared_ptr<IZRD47500Result> mView;
    std::vector<std::string> mColumnKeys;
    std::weak_ptr<const IResultData> mTableResult;  ///< the result that the table shows

    GuideToolbar mToolbar;
    GuideState mState = GuideState::kIdle;
    std::vector<WindowTab> mTabs;
    std::vector<std::string> mLines;
    std::optional<std::vector<int32_t>> mVisibleRows;  ///< from 1; not set: all lines
    std::vector<std::string> mDetails;
    std::string mStatusLine;
    int32_t mStatusShown = kNotTested;
    XTransparent mOverlay;

    int32_t mConnectedKind = kNoDetector;
    int32_t mKind = kNoDetector;
    uint8_t mCurrentExposure = 0;
    uint8_t mWaveformExposure = 0;
    uint8_t mWaveformType = kKvWaveform;
    bool mRedoAllowed = true;
    std::string mHiddenColumns;
    bool mAllShown = false;
    bool mManualNote = false;
    bool mLinkLost = false;  ///< and the loss was announced
    int32_t mFirmwareVersion = 0;
    std::vector<Connection>
        mListening;  ///< to the view and the detector; last, so that they are disconnected first
};

}  // namespace vorex

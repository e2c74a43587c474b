#include "guide/test_guide_form.h"

#include <algorithm>

#include "config/config_mqsa.h"
#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"

namespace vorex {

FZRD47500TestGuide::FZRD47500TestGuide() {
    mTabs = {{"TAB_GRAPH_1", kKvWaveform, Translate(text::kKvWaveformTab)},
             {"TAB_GRAPH_2", kMaWaveform, Translate(text::kMaWaveformTab)}};
}

FZRD47500TestGuide::~FZRD47500TestGuide() = default;

void FZRD47500TestGuide::ReportAll() const {
    for (WindowPart part : {WindowPart::kWindow, WindowPart::kToolbar, WindowPart::kStatusText,
                            WindowPart::kStatus, WindowPart::kLines, WindowPart::kColumns, WindowPart::kTable,
                            WindowPart::kOverlay, WindowPart::kDetails, WindowPart::kMenu})
        Report(part);
    for (const WindowTab& tab : mTabs) Report(WindowPart::kWaveform, tab.type);
}

void FZRD47500TestGuide::Visible(bool visible) {
    mVisible = visible;
    Report(WindowPart::kWindow);
}

void FZRD47500TestGuide::Load() {
    Guarded("Form_Load", [&] {
        if (!vti && Services().createDetectorService) vti = Services().createDetectorService();
        if (!vti) return;
        mListening.push_back(
            vti->events.vti_AddWakeUpButton.Listen([this](bool wakeUp) { SetWakeUpButton(wakeUp); }));
        mConnectedKind = ReadInteger(vti->DetectorKind());
    });
    StartWatch();
}

void FZRD47500TestGuide::Initialize(const std::shared_ptr<ITestElement>& element,
                                    const std::shared_ptr<IExecutionPipe>& pipe,
                                    const std::vector<std::string>& lines) {
    mElement = element;
    mSequence = element->Sequence();
    mPipe = pipe;
    mConfig = std::dynamic_pointer_cast<CConfigCommon>(element->Configuration());
    if (mConfig) {
        // Before the first run the guide follows the connected instruments, if there are any.
        const auto result = Result();
        const bool measured = result && (result->Status() == kPassed || result->Status() == kFailed);
        mKind = measured || mConnectedKind == kNoDetector ? mConfig->DetectorName : mConnectedKind;
        std::string_view input = mConfig->MASInput ? text::kShunt : text::kClamp;
        if (mConfig->ManualSelectedInTestGuide) input = text::kManual;
        mConfig->TestGuideMASInput = input;  // a key, so that the file is language-neutral
    }
    SetInfoLines(lines);
    CreateView(element);
    ShowOptionalButtons();
    if (mConfig && mConfig->ManualSelectedInTestGuide) TypeMasValues(true);
    ReportAll();
}

/// Buttons that only some tests, kinds or settings have.
void FZRD47500TestGuide::ShowOptionalButtons() {
    const auto element = mElement.lock();
    const auto survey = element ? std::dynamic_pointer_cast<CConfigMQSA>(element->Configuration()) : nullptr;
    auto settings = survey ? survey->TestGuideConfig() : nullptr;
    if (mConfig) settings = mConfig->TestGuideConfig();
    const int32_t bits = settings ? settings->Buttons() : 0;
    mToolbar.Show(guide_button::kSkip, (bits & kSkipButtonBit) != 0);
    mToolbar.Show(guide_button::kNa, (bits & kNaButtonBit) != 0);
    mToolbar.Show(guide_button::kDisconnect, !IsSurvey());
    mToolbar.Show(guide_button::kIonChamber, HasPelomark(mKind));
    RefreshMASButtons();
    Report(WindowPart::kToolbar);
}

void FZRD47500TestGuide::Unload() {
    if (mWatch) mWatch->Stop();
    mWatch.reset();
    if (vti) {
        Guarded("Form_Unload", [&] { vti->Disconnect(); });
        vti.reset();
    }
    mListening.clear();
    if (mView) mView->UnInitialize();
    mView.reset();
    ClearTabs();
    mElement.reset();
    mPipe.reset();
    mConfig.reset();
    mVisible = false;
    ReportAll();
}

std::shared_ptr<CResultCommon> FZRD47500TestGuide::Result() const {
    const auto element = mElement.lock();
    return element ? std::dynamic_pointer_cast<CResultCommon>(element->Result()) : nullptr;
}

const ISelectedStandards* FZRD47500TestGuide::SelectedStandards() const {
    return mPipe ? mPipe->SelectedStandards().get() : nullptr;  // the pipe keeps it alive
}

// ------------------------------------------------------------------------- what the element lets it show

void FZRD47500TestGuide::SetInfoLines(const std::vector<std::string>& lines) {
    mLines = lines;
    Report(WindowPart::kLines);
}

void FZRD47500TestGuide::ShowRows(std::span<const int32_t> rows) {
    mVisibleRows.emplace(rows.begin(), rows.end());
    Report(WindowPart::kLines);
}

std::vector<std::string> FZRD47500TestGuide::VisibleLines() const {
    std::vector<std::string> lines;
    for (std::size_t line = 0; line < mLines.size(); ++line) {
        const auto row = static_cast<int32_t>(line + 1);
        const bool shown = !mVisibleRows ||
                           std::find(mVisibleRows->begin(), mVisibleRows->end(), row) != mVisibleRows->end();
        if (shown && !mLines[line].empty()) lines.push_back(mLines[line]);
    }
    return lines;
}

void FZRD47500TestGuide::SetStatusText(std::string_view text) {
    mStatusLine = text.empty() ? std::string() : Translate(text);
    Report(WindowPart::kStatusText);
}

void FZRD47500TestGuide::ShowStatus(const IResultData* result) {
    mStatusShown = result != nullptr ? result->Status() : kNotTested;
    Report(WindowPart::kStatus);
}

void FZRD47500TestGuide::ShowOverlay(bool show, std::string_view text) {
    if (show) mOverlay.LabelCaption(text);
    mOverlay.Visible(show);
    Report(WindowPart::kOverlay);
}

std::string FZRD47500TestGuide::OverlayText() const {
    return mOverlay.Visible() ? mOverlay.LabelCaption() : std::string();
}

void FZRD47500TestGuide::DrawWaveform(const std::shared_ptr<IWaveform>& waveform) {
    const bool hasChannel = mWaveformType == kMaWaveform ? HasMasMeter(mKind) : HasZrd(mKind);
    for (WindowTab& tab : mTabs) {
        const bool maTab = tab.type == kMaWaveform;
        if (maTab != (mWaveformType == kMaWaveform)) continue;
        tab.waveform = waveform && waveform->ValueCount() > 0 ? waveform : nullptr;
        tab.visible = hasChannel && tab.waveform != nullptr && !IsSurvey();
    }
    Report(WindowPart::kWaveform, mWaveformType == kMaWaveform ? kMaWaveform : kKvWaveform);
}

void FZRD47500TestGuide::ClearTabs() {
    for (WindowTab& tab : mTabs) {
        tab.waveform.reset();
        tab.visible = false;
        Report(WindowPart::kWaveform, tab.type);
    }
}

void FZRD47500TestGuide::ResetSelection() {
    mCurrentExposure = 0;
    mDetails.clear();
    if (mView) mView->UpdateTestResult(true, 0);
    for (WindowPart part : {WindowPart::kTable, WindowPart::kDetails, WindowPart::kMenu}) Report(part);
}

void FZRD47500TestGuide::ClearTable() {
    mCurrentExposure = 0;
    mDetails.clear();
    ClearTabs();
    if (mView) mView->Clear();
    FillColumnSettings();
    for (WindowPart part : {WindowPart::kTable, WindowPart::kDetails, WindowPart::kMenu}) Report(part);
}

}  // namespace vorex

#include <algorithm>

#include "execution/survey_feed.h"
#include "foundation/class_registry.h"
#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/sequence_state.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "guide/guide_columns.h"
#include "guide/guide_details.h"
#include "guide/test_guide_form.h"
#include "mqsa/result_mqsa.h"
#include "results/result_columns.h"

// The table of the guide: its columns, what the operator does in it, and its pop-up menu.

namespace vorex {

namespace {

/// The check-mark columns, and their columns in the configuration.
struct FlagColumn {
    std::string_view key;
    ExposureColumn configured;
};
constexpr FlagColumn kFlagColumns[] = {{key::kImportWaveform, ExposureColumn::kImport},
                                       {key::kAdjacent, ExposureColumn::kAdjacent}};

/// True while the menu is open.
class MenuOpen {
  public:
    explicit MenuOpen(SequenceState& state) : mState(state) { mState.gMenuOpen = true; }
    ~MenuOpen() { mState.gMenuOpen = false; }
    MenuOpen(const MenuOpen&) = delete;
    MenuOpen& operator=(const MenuOpen&) = delete;

  private:
    SequenceState& mState;
};

}  // namespace

// ------------------------------------------------------------------------------------------- columns

void FZRD47500TestGuide::CreateView(const std::shared_ptr<ITestElement>& element) {
    const TestRow* test = FindTest(element->TestID());
    mView = test != nullptr ? CreateObjectAs<IZRD47500Result>(ClassName(test->resultClass)) : nullptr;
    if (!mView) return;
    ResultViewEvents& view = mView->events;
    mListening.push_back(
        view.ItemClick.Listen([this](uint8_t exposure, uint8_t column, const std::string& columnKey) {
            ClickItem(exposure, column, columnKey);
        }));
    mListening.push_back(view.ItemClicked.Listen([this](bool flag) { events.ItemClicked.Raise(flag); }));
    mListening.push_back(view.MouseDown.Listen([this](bool right, uint8_t exposure) {
        if (exposure != 0) mCurrentExposure = exposure;
        Report(WindowPart::kTableRow, exposure);
        Report(WindowPart::kMenu);
        if (right) ShowMenu();
    }));
    mListening.push_back(
        view.CellEdited.Listen([this](uint8_t exposure, uint8_t column, const std::string& text) {
            EditCell(exposure, column, text);
        }));
    mListening.push_back(view.MQSAHelpText.Listen([this](const std::string& text) {
        mDetails = {text};
        Report(WindowPart::kDetails);
    }));
    mListening.push_back(view.MQSAClick.Listen([this](int32_t row, int32_t column) {
        const auto survey = mElement.lock();
        const auto result = survey ? std::dynamic_pointer_cast<CResultMQSA>(survey->Result()) : nullptr;
        if (!result) return;
        result->MQSAClickHandle(static_cast<uint8_t>(row), static_cast<uint8_t>(column));
        events.ItemClicked.Raise(true);
        Report(WindowPart::kTable);
        ShowStatus(result.get());
    }));
    mView->Initialize(true, element);
    mView->Limits(element->Limits());
}

void FZRD47500TestGuide::BuildColumns(const std::shared_ptr<CConfigCommon>& configuration, bool refresh) {
    const auto element = mElement.lock();
    if (!mView || !element) return;
    const std::vector<GuideColumn> columns = configuration ? GuideColumns(*configuration) : SurveyColumns();
    mView->DetectorType(configuration ? configuration->DetectorName : kNoDetector);
    mView->RemoveColumns();
    mColumnKeys.clear();
    for (const GuideColumn& column : columns) {
        mView->AddColumnHeader(column.key, column.caption, column.width);
        mColumnKeys.push_back(column.key);
    }
    FillColumnSettings();
    const auto limits = element->Limits();
    const Standards chosen = ChosenStandards(limits.get(), SelectedStandards());
    if (!chosen.empty()) mView->SelectStandard(chosen.front()->Name(), chosen.front()->Version(), true);
    mView->Limits(limits);
    mHiddenColumns = HiddenColumns(columns, chosen);
    if (!mHiddenColumns.empty()) mView->DisplayAllColumns(mAllShown, mHiddenColumns);
    if (refresh) mView->ShowTestResult(element, mCurrentExposure);
    for (WindowPart part : {WindowPart::kColumns, WindowPart::kTable, WindowPart::kMenu}) Report(part);
}

/// Values from the setup for each exposure before it is taken.
void FZRD47500TestGuide::FillColumnSettings() {
    if (!mView || !mConfig) return;
    mView->pNoOfExposures(mConfig->pNoOfExposures);
    for (const FlagColumn& flag : kFlagColumns) {
        const auto at = std::find(mColumnKeys.begin(), mColumnKeys.end(), flag.key);
        if (at == mColumnKeys.end()) continue;
        TextArray flags;
        mConfig->GetArrayData(ColumnNumber(mConfig->pTestID, flag.configured), flags);
        mView->SetColumnSettings(static_cast<uint8_t>(at - mColumnKeys.begin() + 1), flags, true);
    }
}

void FZRD47500TestGuide::ShowResult(const std::shared_ptr<ITestElement>& element, uint8_t exposure) {
    mCurrentExposure = exposure;
    if (!mView) return;
    const auto result = element->Result();
    // Each row has the statistics of these tests, and a table with a new result fills all rows.
    const int32_t test = element->TestID();
    const bool allRows =
        exposure == 0 || test == kMammoAccRepro || test == kMammoAec || mTableResult.lock() != result;
    mTableResult = result;
    if (exposure == 0)
        mView->ShowTestResult(element, exposure);
    else
        mView->UpdateTestResult(true, exposure);
    Report(allRows ? WindowPart::kTable : WindowPart::kTableRow, exposure);
    Report(WindowPart::kMenu);
}

void FZRD47500TestGuide::ToggleAllColumns() {
    if (!mView) return;
    mAllShown = !mAllShown;
    mView->DisplayAllColumns(mAllShown, mHiddenColumns);
    // With both instruments the mAs columns may be hidden; when they are shown, they can be typed into.
    if (mKind == kZrdAndMas) mToolbar.Enable(guide_button::kManual, mAllShown);
    for (WindowPart part : {WindowPart::kColumns, WindowPart::kToolbar, WindowPart::kMenu}) Report(part);
}

void FZRD47500TestGuide::TypeMasValues(bool allowed) {
    if (!mView) return;
    mView->MASInputOverride(allowed);
    if (allowed) mView->ClickedMeasurementColumn(key::kMa, key::kMas, key::kMasPulse, key::kDoseMas);
}

// ---------------------------------------------------------------------------------- clicks and edits

void FZRD47500TestGuide::ClickItem(uint8_t exposure, uint8_t /*column*/, const std::string& columnKey) {
    const auto result = Result();
    if (exposure != 0) mCurrentExposure = exposure;
    Report(WindowPart::kTableRow, exposure);
    Report(WindowPart::kMenu);
    if (!result) return;
    const bool stored = exposure >= 1 && exposure <= result->Rows().size();
    if (stored && !mSequence->gRunActive && !IsMasFamily(LimitKeyOf(columnKey))) RequestWaveforms(exposure);
    const auto element = mElement.lock();
    const auto limits = element ? element->Limits() : nullptr;
    mDetails = CellDetails(*result, {exposure, columnKey, mColumnKeys},
                           ChosenStandards(limits.get(), SelectedStandards()));
    Report(WindowPart::kDetails);
}

/// Asks for the waveform of each channel of the detector, so that both panes show the same exposure.
void FZRD47500TestGuide::RequestWaveforms(uint8_t exposure) {
    const uint8_t shownLast = mWaveformType;
    const bool kv = HasZrd(mKind) || !HasMasMeter(mKind);
    for (uint8_t type : {kMaWaveform, kKvWaveform}) {
        if (type == kMaWaveform ? !HasMasMeter(mKind) : !kv) continue;
        mWaveformType = type;
        events.DrawWaveForm.Raise(exposure, true, type);
    }
    mWaveformType = shownLast;
}

void FZRD47500TestGuide::EditCell(uint8_t exposure, uint8_t column, const std::string& text) {
    const auto result = Result();
    const auto element = mElement.lock();
    if (!result || !element || !mConfig || exposure == 0 || column == 0 || column > mColumnKeys.size())
        return;
    const std::string& columnKey = mColumnKeys[column - 1U];
    const auto row = static_cast<uint8_t>(exposure - 1);
    if (columnKey == key::kImportWaveform) {
        mConfig->SetValue(row, ExposureColumn::kImport, text);
        result->SetValue(row, column, text);
        Report(WindowPart::kTableRow, exposure);
        return;
    }
    // Judging now would interfere with the exposures of a run.
    if (!mSequence->gRunActive) {
        if (columnKey == key::kAdjacent) {
            mConfig->SetValue(row, ExposureColumn::kAdjacent, text);
            result->UpdateAdjacentResult(*element, SelectedStandards(), row, text == "1" ? 1 : 0);
        } else if (IsMasFamily(columnKey)) {
            StoreTypedValue(exposure, columnKey, text);
        }
        ShowStatus(result.get());
    }
    // A typed value changes the statistics, which may be in other rows.
    mView->UpdateTestResult(true, 0);
    mView->UpdateTestResult(true, exposure);
    Report(WindowPart::kTable);
}

void FZRD47500TestGuide::StoreTypedValue(uint8_t exposure, const std::string& columnKey,
                                         const std::string& text) {
    const auto result = Result();
    const auto element = mElement.lock();
    const auto row = static_cast<uint8_t>(exposure - 1);
    if (row >= result->Rows().size()) return;
    const MeasurementRow& stored = *result->Rows()[row];
    const uint8_t number = ColumnNumber(stored, columnKey);
    if (number == 0) return;
    result->SetValue(row, number, text.empty() ? text : text + "*");
    FeedSurveys(*element, result->UpdateAllStatus(*element, SelectedStandards()));
    LogTypedValue(exposure, *stored[number - 1U]);
}

/// The printed comment lists typed values, a line each.
void FZRD47500TestGuide::LogTypedValue(uint8_t exposure, const CMeasurement& measurement) {
    std::string& log = mConfig->PrintTheComment;
    if (!log.empty()) log += "\n";
    log += StoredMessage(text::kEditedValue, {PlainText(static_cast<int32_t>(exposure)),
                                              measurement.ValueText(), measurement.RawDescription()});
}

// --------------------------------------------------------------------------------------- pop-up menu

void FZRD47500TestGuide::EnableMenuRedoExposure(bool enable) {
    mRedoAllowed = enable;
    Report(WindowPart::kMenu);
}

bool FZRD47500TestGuide::CanRedo(int32_t exposure) const {
    const auto result = Result();
    const bool runs = mSequence->gRunActive || mState == GuideState::kRunning;
    if (!result || !vti || !mRedoAllowed || runs) return false;
    if (exposure <= 0 || static_cast<std::size_t>(exposure) > result->Rows().size()) return false;
    bool answers = false;
    Guarded("mnuRedo", [&] { answers = ReadNumber(vti->SerialNumbers()) > 0; });
    return answers;
}

std::vector<MenuItem> FZRD47500TestGuide::MenuItems() const {
    return BuildGuideMenu({CanRedo(mCurrentExposure), mToolbar.TargetFilters(),
                           mToolbar.CheckedTargetFilter(), !mHiddenColumns.empty(), mAllShown});
}

void FZRD47500TestGuide::ShowMenu() {
    const auto& platform = Services().platform;
    if (!platform) return;
    int32_t chosen = 0;
    Guarded("mnuPopup", [&] {
        const MenuOpen open(*mSequence);
        chosen = platform->ShowPopupMenu(MenuItems());
    });
    // A run may have ended while the menu was open; then Redo is available.
    if (!CanChoose(MenuItems(), chosen)) return;
    const WatchPause pause(*this);
    Guarded("mnuPopup_Click", [&] {
        if (chosen == guide_menu::kRedo)
            Redo(mCurrentExposure);
        else if (chosen == guide_menu::kShowAll)
            ToggleAllColumns();
        else
            SelectTargetFilter(chosen - guide_button::kFirstTargetFilter);
    });
}

void FZRD47500TestGuide::Redo(uint8_t exposure) {
    const WatchPause pause(*this);
    mCurrentExposure = exposure;
    events.ReDoExposure.Raise(exposure);
    LeaveRunningState();
}

}  // namespace vorex

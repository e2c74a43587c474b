#include "results/result_common.h"

#include <algorithm>

#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/test_sets.h"
#include "foundation/trace.h"
#include "foundation/utilities.h"
#include "guide/dialog_wrapper.h"
#include "results/derived_values.h"
#include "results/result_columns.h"

namespace vorex {

namespace {

constexpr std::string_view kWaveformDisplay = "VorexZRD47500Test.XDischargeWaveform";

/// The fields of a row by the keys of their columns. Usually they are in the order of the columns.
class FieldFinder {
  public:
    explicit FieldFinder(const std::vector<RowField>& fields) : mFields(fields), mTaken(fields.size()) {}

    /// The field of a column, or null.
    const RowField* Take(std::string_view columnKey) {
        if (mNext >= mFields.size() || mFields[mNext].key != columnKey) {
            columnKey = ColumnKeyOf(columnKey);
            const auto at = std::find_if(mFields.begin(), mFields.end(),
                                         [&](const RowField& field) { return field.key == columnKey; });
            if (at == mFields.end()) return nullptr;
            mNext = static_cast<std::size_t>(at - mFields.begin());
        }
        mTaken[mNext] = true;
        return &mFields[mNext++];
    }
    /// The first field without a column, or null.
    const RowField* Left() const {
        const auto at = std::find(mTaken.begin(), mTaken.end(), false);
        return at == mTaken.end() ? nullptr : &mFields[static_cast<std::size_t>(at - mTaken.begin())];
    }

  private:
    const std::vector<RowField>& mFields;
    std::vector<bool> mTaken;
    std::size_t mNext = 0;
};

std::string ValueOf(const MeasurementRow& row, std::string_view measurementKey) {
    const CMeasurement* item = FindMeasurement(row, measurementKey);
    return item == nullptr ? std::string() : item->ValueText();
}

std::shared_ptr<IWaveform> WaveformAt(const std::vector<std::shared_ptr<CWaveform>>& waveforms,
                                      int32_t exposureNumber) {
    if (exposureNumber < 1 || static_cast<std::size_t>(exposureNumber) > waveforms.size()) return nullptr;
    return waveforms[static_cast<std::size_t>(exposureNumber) - 1];
}

/// Tests whose flat list has a heading for each exposure and one for the statistics.
bool HasHeadings(int32_t testId) {
    return kWithStatistics.Has(testId);
}

/// A cell of the same column without a value.
std::shared_ptr<CMeasurement> EmptyCell(const CMeasurement& cell) {
    auto empty = std::make_shared<CMeasurement>();
    empty->ShareLabels(cell);
    empty->ValueType(cell.ValueType());
    empty->PresetValue(cell.RawPresetValue());
    return empty;
}

std::string NameOfSource(int32_t source) {
    return source == kSourceZrd ? "ZRD 47500" : source == kSourcePelomark ? "Pelomark" : "mAs meter";
}

}  // namespace

CResultCommon::CResultCommon() : mCurrent(std::make_shared<MeasurementRow>()) {}

void CResultCommon::Initialize(const std::shared_ptr<CConfigCommon>& configuration) {
    mConfig = configuration;
    DetectorName = configuration->DetectorName;
    PKMode = configuration->PKMode;
    TestId = configuration->pTestID;
    mExposureCount = 0;
    mLastExposure = 0;
    mRows.clear();
    mWaveforms.clear();
    mMaWaveforms.clear();
    mSuperseded.clear();
    mRedo.reset();
    mNewStatistics.clear();
    mNextFields.clear();
    mCurrent = std::make_shared<MeasurementRow>(BuildColumns(*configuration));
    mLastColumnKey = ColumnNumber(*mCurrent, key::kPercentTimerError) != 0 ? key::kPercentTimerError
                                                                           : key::kAbsoluteKvpError;
}

const CMeasurement* CResultCommon::Cell(std::size_t row, uint8_t column) const {
    if (row >= mRows.size() || column == 0 || column > mRows[row]->size()) return nullptr;
    return (*mRows[row])[column - 1U].get();
}

std::string CResultCommon::GetMeasurementValue(uint8_t exposureNumber, uint8_t column) const {
    return exposureNumber == 0 ? std::string() : GetValue(static_cast<uint8_t>(exposureNumber - 1), column);
}

std::string CResultCommon::GetValue(uint8_t row, uint8_t column) const {
    const CMeasurement* cell = Cell(row, column);
    return cell == nullptr ? std::string() : cell->ValueText();
}

void CResultCommon::SetValue(uint8_t row, uint8_t column, std::string_view text) {
    if (Cell(row, column) == nullptr) return;
    CMeasurement& cell = *(*mRows[row])[column - 1U];
    cell.Value(std::string(text));
    RenewStatistics(cell.RawKey());
}

void CResultCommon::RenewStatistics(std::string_view columnKey) {
    const bool ownWorkingRow = std::find(mRows.begin(), mRows.end(), mCurrent) == mRows.end();
    const std::size_t last = LastReadingIndex();
    for (const RowField& statistic : StatisticsOfColumn(*this, columnKey)) {
        if (CMeasurement* cell = FindMeasurement(*mRows[last], statistic.key)) cell->Value(statistic.text);
        CMeasurement* cell = ownWorkingRow ? FindMeasurement(*mCurrent, statistic.key) : nullptr;
        if (cell != nullptr) cell->Value(statistic.text);
    }
}

std::size_t CResultCommon::LastReadingIndex() const {
    const auto at = std::find_if(mRows.rbegin(), mRows.rend(), [](const auto& row) { return !row->empty(); });
    return static_cast<std::size_t>(mRows.rend() - at) - 1U;
}

const MeasurementRow* CResultCommon::LastReading() const {
    const std::size_t last = LastReadingIndex();
    return last < mRows.size() ? mRows[last].get() : nullptr;
}

void CResultCommon::GetMeasurementColumn(uint8_t column, std::vector<std::string>& values) const {
    if (Cell(0, column) == nullptr) return;
    values.resize(std::max(values.size(), mRows.size()));
    for (std::size_t row = 0; row < mRows.size(); ++row)
        values[row] = GetValue(static_cast<uint8_t>(row), column);
}

std::string CResultCommon::StoreResult(const DerivedRow& row, int32_t source) {
    if (row.fields.empty()) return {};
    const bool combined = (DetectorName == kZrdAndMas && source != kSourcePelomark) ||
                          (DetectorName == kPelomarkAndMas && source != kSourceZrd);
    FieldFinder fields(row.fields);
    std::string computedDosePerMas;
    std::string fault;
    mNewStatistics.clear();
    mNextFields = row.next;
    for (std::size_t column = 0; column < mCurrent->size(); ++column) {
        const auto& item = (*mCurrent)[column];
        const std::string& columnKey = item->RawKey();
        const ColumnFacts& facts = item->Facts();
        if (!IsFilledBy(source, facts)) continue;
        const RowField* field = fields.Take(columnKey);
        if (field == nullptr) {
            if (fault.empty()) fault = "no text for the column \"" + columnKey + "\"";
            continue;
        }
        std::string value = field->text;
        if (combined && source != kSourceMas && columnKey == key::kExposure) {
            const std::string computed = DosePerMas(value, ValueOf(*mCurrent, key::kMas));
            CMeasurement* dosePerMas = FindMeasurement(*mCurrent, key::kDoseMas);
            if (!computed.empty() && dosePerMas != nullptr) dosePerMas->Value(computed);
        }
        if (combined && source == kSourceMas && columnKey == key::kMas) {
            const std::string exposure = ValueOf(*mCurrent, key::kExposure);
            if (!exposure.empty()) computedDosePerMas = DosePerMas(exposure, value);
        }
        if (columnKey == key::kDoseMas && !computedDosePerMas.empty()) value = computedDosePerMas;
        item->Value(std::move(value));
        if (facts.IsTestWide(TestId)) mNewStatistics.push_back(column);
    }
    if (const RowField* left = fields.Left(); left != nullptr && fault.empty())
        fault = "no column for \"" + std::string(left->key) + "\"";
    if (fault.empty()) return {};
    fault = "the reading of the " + NameOfSource(source) + " has " + fault;
    LogDiagnostic(fault);
    return fault;
}

bool CResultCommon::ShowResultInTestguide(int32_t row, bool withWaveforms) {
    if (mExposureCount == 0 || row < 0 || static_cast<std::size_t>(row) >= mRows.size()) return false;
    const auto index = static_cast<std::size_t>(row);
    if (HasReading(index)) mCurrent = mRows[index];
    if (withWaveforms) {
        mCurrentWaveform = mWaveforms[index];
        mCurrentMaWaveform = mMaWaveforms[index];
    }
    return true;
}

void CResultCommon::ResetTheMeasurements() {
    if (DetectorName != kZrdAndMas && DetectorName != kPelomarkAndMas) return;
    for (const auto& item : *mCurrent) {
        if (item->RawKey().starts_with(key::kErPrefix)) continue;
        if (item->Status() != kPassed && item->Status() != kFailed) continue;
        item->Status(kNotTested);
        item->Value(std::string());
    }
}

void CResultCommon::AddRow(std::shared_ptr<MeasurementRow> row) {
    mRows.push_back(std::move(row));
    mWaveforms.push_back(std::make_shared<CWaveform>());
    mMaWaveforms.push_back(std::make_shared<CWaveform>());
}

// ------------------------------------------------------------------------------------------ waveforms

const CResultCommon::Waveforms& CResultCommon::SelectedWaveforms() const {
    return WaveformType == kMaWaveform ? mMaWaveforms : mWaveforms;
}

CResultCommon::Waveforms& CResultCommon::SelectedWaveforms() {
    return WaveformType == kMaWaveform ? mMaWaveforms : mWaveforms;
}

void CResultCommon::AddRowsUpTo(uint8_t exposureNumber) {
    if (exposureNumber <= mExposureCount) return;
    mExposureCount = exposureNumber;
    while (mRows.size() < exposureNumber) AddRow(std::make_shared<MeasurementRow>());
}

void CResultCommon::StoreMissing(uint8_t exposureNumber) {
    AddRowsUpTo(exposureNumber);
}

void CResultCommon::BeginRedo(uint8_t exposureNumber) {
    mRedo.reset();
    const std::size_t index = exposureNumber - 1U;
    if (exposureNumber == 0 || index >= mRows.size()) return;
    Redo& redo =
        mRedo.emplace(Redo{{}, std::make_shared<CWaveform>(), std::make_shared<CWaveform>(), nullptr});
    redo.former.exposure = exposureNumber;
    redo.former.row = CopyOf(*mRows[index]);
    redo.former.kvWaveform = mWaveforms[index];
    redo.former.maWaveform = mMaWaveforms[index];
    redo.workingRow = mCurrent;
    if (HasReading(index)) return;
    // An exposure without a reading has no row that could become the working row.
    auto working = std::make_shared<MeasurementRow>();
    for (const auto& item : *mCurrent) working->push_back(EmptyCell(*item));
    mCurrent = std::move(working);
}

void CResultCommon::EndRedo() {
    if (!mRedo) return;
    const std::size_t index = mRedo->former.exposure - 1U;
    if (!HasReading(index)) {
        mCurrent = mRedo->workingRow;
        if (mRedo->kvWaveform->ValueCount() > 0) mWaveforms[index] = mRedo->kvWaveform;
        if (mRedo->maWaveform->ValueCount() > 0) mMaWaveforms[index] = mRedo->maWaveform;
    } else if (mRedo->kvWaveform->ValueCount() + mRedo->maWaveform->ValueCount() > 0) {
        LogDiagnostic("the redo of exposure " + PlainText(static_cast<int32_t>(mRedo->former.exposure)) +
                      " ended without a reading; its waveform is dropped");
    }
    mRedo.reset();
}

/// Only a reading supersedes: a redo that was stopped before its reading leaves the exposure unchanged. A
/// second instrument adds to the new readings.
void CResultCommon::KeepSuperseded(uint8_t exposureNumber) {
    if (!mRedo || mRedo->former.exposure != exposureNumber) return;
    SupersededExposure& former = mRedo->former;
    const std::size_t index = exposureNumber - 1U;
    mWaveforms[index] = mRedo->kvWaveform;
    mMaWaveforms[index] = mRedo->maWaveform;
    mCurrentWaveform = mWaveforms[index];
    mCurrentMaWaveform = mMaWaveforms[index];
    const bool hadWaveform = former.kvWaveform->ValueCount() + former.maWaveform->ValueCount() > 0;
    if (!former.row.empty() || hadWaveform) {
        former.order = 1 + static_cast<int32_t>(std::count_if(
                               mSuperseded.begin(), mSuperseded.end(),
                               [&](const auto& kept) { return kept.exposure == exposureNumber; }));
        former.time = PresentTime();
        mSuperseded.push_back(std::move(former));
    }
    mRedo.reset();
}

void CResultCommon::ShowWaveform(std::shared_ptr<CWaveform> waveform) const {
    (WaveformType == kMaWaveform ? mCurrentMaWaveform : mCurrentWaveform) = std::move(waveform);
}

void CResultCommon::StoreWaveForm(std::string_view data, uint8_t exposureNumber) {
    const bool ma = WaveformType == kMaWaveform;
    if (HaveTraceWindow()) {
        Trace(PlainText(static_cast<int32_t>(WaveformType)) +
              (ma ? "$StoreWaveForm$ - mAs Waveform :: " : "$StoreWaveForm$ - AIO Waveform :: ") +
              std::string(data));
    }
    const auto waveform = std::make_shared<CWaveform>();
    waveform->WaveformType(WaveformType);
    waveform->IncludeInReport(true);
    waveform->Resolution(mResolution);
    waveform->Initialize(data);
    ShowWaveform(waveform);
    Waveforms& waveforms = SelectedWaveforms();
    if (mRedo && mRedo->former.exposure == exposureNumber)
        (ma ? mRedo->maWaveform : mRedo->kvWaveform) = waveform;
    else if (exposureNumber != 0 && exposureNumber <= waveforms.size())
        waveforms[exposureNumber - 1U] = waveform;
}

std::shared_ptr<IWaveform> CResultCommon::CurrentWaveformObject() const {
    return WaveformType == kMaWaveform ? mCurrentMaWaveform : mCurrentWaveform;
}

void CResultCommon::SelectWaveform(int32_t row) {
    const Waveforms& waveforms = SelectedWaveforms();
    if (row < 0 || static_cast<std::size_t>(row) >= waveforms.size()) return;
    ShowWaveform(waveforms[static_cast<std::size_t>(row)]);
}

std::shared_ptr<IWaveform> CResultCommon::KvWaveform(int32_t exposureNumber) const {
    return WaveformAt(mWaveforms, exposureNumber);
}

std::shared_ptr<IWaveform> CResultCommon::MaWaveform(int32_t exposureNumber) const {
    return WaveformAt(mMaWaveforms, exposureNumber);
}

std::shared_ptr<IWaveform> CResultCommon::WaveformOfRow(int32_t exposureNumber) const {
    if (mRedo && mRedo->former.exposure == exposureNumber)
        return WaveformType == kMaWaveform ? mRedo->maWaveform : mRedo->kvWaveform;
    return WaveformAt(SelectedWaveforms(), exposureNumber);
}

int32_t CResultCommon::SelectedRowOfSettings() const {
    const int32_t exposure = ReadSetting(setting::kWaveformIndex, 0);
    return exposure > 0 && static_cast<std::size_t>(exposure) <= mRows.size() ? exposure - 1 : -1;
}

void CResultCommon::SelectLastWaveform() const {
    if (mWaveforms.empty()) return;
    const int32_t row = SelectedRowOfSettings();
    const auto index = static_cast<std::size_t>(row);
    mCurrentWaveform = row < 0 ? std::make_shared<CWaveform>() : mWaveforms[index];
    mCurrentMaWaveform = row < 0 ? std::make_shared<CWaveform>() : mMaWaveforms[index];
}

bool CResultCommon::HasDialog() const {
    SelectLastWaveform();
    const auto hasSamples = [](const auto& waveform) { return waveform && waveform->ValueCount() > 0; };
    if (hasSamples(mCurrentWaveform) || hasSamples(mCurrentMaWaveform)) return true;
    // A host with a viewer opens it even for a result without waveforms.
    return Services().text && !Services().text->Translate(kPlugInId, text::kKvWaveform, {}).empty();
}

std::shared_ptr<IDialog> CResultCommon::CreateDialog() {
    auto wrapper = std::make_shared<FDialogWrapper>();
    if (!wrapper->CreateSetupCtrl(kWaveformDisplay)) return nullptr;
    wrapper->Initialize(shared_from_this());
    return wrapper;
}

// ------------------------------------------------------------------------------- the host's flat list

bool CResultCommon::IsTestWideColumn(std::string_view measurementKey) const {
    return IsTestWideKey(TestId, measurementKey);
}

ColumnCounts CResultCommon::GetColumnCounts() const {
    ColumnCounts counts;
    counts.total = static_cast<int32_t>(mCurrent->size());
    counts.calculated =
        static_cast<int32_t>(std::count_if(mCurrent->begin(), mCurrent->end(), [&](const auto& item) {
            return IsTestWideColumn(item->RawKey());
        }));
    counts.row = counts.total - counts.calculated;
    return counts;
}

int32_t CResultCommon::MeasurementCount() const {
    const auto columns = static_cast<int32_t>(mCurrent->size());
    if (pTestGuide) return columns;
    return columns * static_cast<int32_t>(mRows.size()) + (HasHeadings(TestId) ? 1 : 0);
}

std::shared_ptr<IMeasurement> CResultCommon::Heading(std::string_view caption) const {
    auto heading = std::make_shared<CMeasurement>();
    heading->Initialize(key::kImportWaveform, caption, "", kTextOnly);
    heading->Value(std::string(caption));
    return heading;
}

/// For the host, an exposure without a reading is a row of empty values.
std::shared_ptr<IMeasurement> CResultCommon::CellOfHost(std::size_t row, std::size_t column) const {
    if (!HasReading(row)) return EmptyCell(*(*mCurrent)[column]);
    return column < mRows[row]->size() ? (*mRows[row])[column] : nullptr;
}

std::shared_ptr<IMeasurement> CResultCommon::Measurement(int32_t index) const {
    if (index < 0) return nullptr;
    auto at = static_cast<std::size_t>(index);
    if (pTestGuide) return at < mCurrent->size() ? (*mCurrent)[at] : nullptr;
    if (mRows.empty() || mCurrent->empty()) return nullptr;
    if (!HasHeadings(TestId)) {
        const std::size_t row = at / mCurrent->size();
        return row < mRows.size() ? CellOfHost(row, at % mCurrent->size()) : nullptr;
    }
    // A heading takes the place of each row's import flag; the statistics follow once, at the end.
    const auto perRow = static_cast<std::size_t>(GetColumnCounts().row);
    if (at < mRows.size() * perRow) {
        const std::size_t row = at / perRow;
        if (at % perRow == 0)
            return Heading("++" + Translate(Services().exposureCaption) + "#" +
                           PlainText(static_cast<int32_t>(row + 1)) + "++");
        std::size_t left = at % perRow;
        for (std::size_t column = 0; column < mCurrent->size(); ++column)
            if (!IsTestWideColumn((*mCurrent)[column]->RawKey()) && left-- == 0)
                return CellOfHost(row, column);
        return nullptr;
    }
    at -= mRows.size() * perRow;
    if (at == 0) return Heading("--" + Translate(text::kCalculations) + "--");
    if (const MeasurementRow* last = LastReading())
        for (const auto& item : *last)
            if (IsTestWideColumn(item->RawKey()) && --at == 0) return item;
    return nullptr;
}

std::shared_ptr<IMeasurement> CResultCommon::Measurement(std::string_view key) const {
    const auto at = std::find_if(mCurrent->begin(), mCurrent->end(),
                                 [&](const auto& item) { return item->RawKey() == key; });
    return at == mCurrent->end() ? nullptr : *at;
}

}  // namespace vorex

#include "results/result_common.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "foundation/host_error.h"
#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/test_sets.h"
#include "foundation/trace.h"
#include "foundation/utilities.h"
#include "guide/dialog_wrapper.h"
#include "results/derived_values.h"
#include "results/result_columns.h"
#include "results/result_persistence.h"
#include "results/result_report.h"

namespace vorex {

namespace {

constexpr std::string_view kClassName = "CResultCommon";
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
    mLastExposure = 0;
    mExposures.Clear();
    mRowBeforeRedo.reset();
    mNewStatistics.clear();
    mNextFields.clear();
    mCurrent = std::make_shared<MeasurementRow>(BuildColumns(*configuration));
    mLastColumnKey = ColumnNumber(*mCurrent, key::kPercentTimerError) != 0 ? key::kPercentTimerError
                                                                           : key::kAbsoluteKvpError;
}

std::string CResultCommon::GetMeasurementValue(uint8_t exposureNumber, uint8_t column) const {
    return exposureNumber == 0 ? std::string() : GetValue(static_cast<uint8_t>(exposureNumber - 1), column);
}

std::string CResultCommon::GetValue(uint8_t row, uint8_t column) const {
    const CMeasurement* cell = mExposures.Cell(row, column);
    return cell == nullptr ? std::string() : cell->ValueText();
}

void CResultCommon::SetValue(uint8_t row, uint8_t column, std::string_view text) {
    CMeasurement* cell = mExposures.Cell(row, column);
    if (cell == nullptr) return;
    cell->Value(std::string(text));
    RenewStatistics(cell->RawKey());
}

void CResultCommon::RenewStatistics(std::string_view columnKey) {
    const bool ownWorkingRow = std::find(Rows().begin(), Rows().end(), mCurrent) == Rows().end();
    MeasurementRow* const last = mExposures.LastReading();
    for (const RowField& statistic : StatisticsOfColumn(*this, columnKey)) {
        if (CMeasurement* cell = FindMeasurement(*last, statistic.key)) cell->Value(statistic.text);
        CMeasurement* cell = ownWorkingRow ? FindMeasurement(*mCurrent, statistic.key) : nullptr;
        if (cell != nullptr) cell->Value(statistic.text);
    }
}

void CResultCommon::GetMeasurementColumn(uint8_t column, std::vector<std::string>& values) const {
    if (mExposures.Cell(0, column) == nullptr) return;
    values.resize(std::max(values.size(), Rows().size()));
    for (std::size_t row = 0; row < Rows().size(); ++row)
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
    if (row < 0 || row >= ExposureCount()) return false;
    const auto index = static_cast<std::size_t>(row);
    if (HasReading(index)) mCurrent = Rows()[index];
    if (withWaveforms) ShowWaveformsOf(row + 1);
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

// ------------------------------------------------------------------------------------------ waveforms

void CResultCommon::BeginRedo(uint8_t exposureNumber) {
    mExposures.ForgetRedo();
    if (exposureNumber == 0 || exposureNumber > ExposureCount()) return;
    const std::size_t index = exposureNumber - 1U;
    mExposures.BeginRedo(exposureNumber, CopyOf(*Rows()[index]));
    mRowBeforeRedo = mCurrent;
    if (HasReading(index)) return;
    // An exposure without a reading has no row that could become the working row.
    auto working = std::make_shared<MeasurementRow>();
    for (const auto& item : *mCurrent) working->push_back(EmptyCell(*item));
    mCurrent = std::move(working);
}

void CResultCommon::EndRedo() {
    if (mExposures.EndRedo()) mCurrent = mRowBeforeRedo;
    mRowBeforeRedo.reset();
}

void CResultCommon::ShowWaveformsOf(int32_t exposure) const {
    mCurrentWaveform = mExposures.Waveform(kKvWaveform, exposure);
    mCurrentMaWaveform = mExposures.Waveform(kMaWaveform, exposure);
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
    mExposures.Keep(WaveformType, exposureNumber, waveform);
}

std::shared_ptr<IWaveform> CResultCommon::CurrentWaveformObject() const {
    return WaveformType == kMaWaveform ? mCurrentMaWaveform : mCurrentWaveform;
}

void CResultCommon::SelectWaveform(int32_t row) {
    if (row < 0 || row >= ExposureCount()) return;
    ShowWaveform(mExposures.Waveform(WaveformType, row + 1));
}

std::shared_ptr<IWaveform> CResultCommon::KvWaveform(int32_t exposureNumber) const {
    return mExposures.Waveform(kKvWaveform, exposureNumber);
}

std::shared_ptr<IWaveform> CResultCommon::MaWaveform(int32_t exposureNumber) const {
    return mExposures.Waveform(kMaWaveform, exposureNumber);
}

std::shared_ptr<IWaveform> CResultCommon::WaveformOfRow(int32_t exposureNumber) const {
    return mExposures.NewestWaveform(WaveformType, exposureNumber);
}

void CResultCommon::SelectLastWaveform() const {
    if (Rows().empty()) return;
    const int32_t exposure = ReadSetting(setting::kWaveformIndex, 0);
    if (exposure > 0 && exposure <= ExposureCount()) return ShowWaveformsOf(exposure);
    mCurrentWaveform = std::make_shared<CWaveform>();
    mCurrentMaWaveform = std::make_shared<CWaveform>();
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
    return columns * static_cast<int32_t>(Rows().size()) + (HasHeadings(TestId) ? 1 : 0);
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
    return column < Rows()[row]->size() ? (*Rows()[row])[column] : nullptr;
}

std::shared_ptr<IMeasurement> CResultCommon::Measurement(int32_t index) const {
    if (index < 0) return nullptr;
    auto at = static_cast<std::size_t>(index);
    if (pTestGuide) return at < mCurrent->size() ? (*mCurrent)[at] : nullptr;
    if (Rows().empty() || mCurrent->empty()) return nullptr;
    if (!HasHeadings(TestId)) {
        const std::size_t row = at / mCurrent->size();
        return row < Rows().size() ? CellOfHost(row, at % mCurrent->size()) : nullptr;
    }
    // A heading takes the place of each row's import flag; the statistics follow once, at the end.
    const auto perRow = static_cast<std::size_t>(GetColumnCounts().row);
    if (at < Rows().size() * perRow) {
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
    at -= Rows().size() * perRow;
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

// ----------------------------------------------------------------------------------- persistence, print

std::shared_ptr<IXmlElement> CResultCommon::Save(const std::shared_ptr<IXmlDocument>& owner) {
    const auto element = owner->CreateElement(tag::kResultItem);
    if (!element) RaiseHostError(kErrorResultSave, kClassName, 4, {std::string(tag::kResultItem)});
    const auto add = [&](const std::shared_ptr<IXmlElement>& child) {
        if (child) element->AddChild(child);
    };
    if (mMtiId > 0) element->SetAttribute(tag::kMti, PlainText(mMtiId));
    add(Services().codec->WriteStatus(owner, mStatus, mStatusExtra));
    if (!mComment.empty()) element->AddValue(tag::kComment, mComment);
    if (mServiceRecord) add(mServiceRecord->Save(owner));
    // A result that was not tested, or is not applicable, keeps no measurements.
    if (mStatus == kNotTested || mStatus == kNotApplicable) {
        // The reason is saved even for a run that broke off before its first exposure.
        if (mRun && mStatus == kNotTested) mRun->Save(*element, owner);
        return element;
    }
    SaveExposures(mExposures, *mCurrent, *element, owner);
    if (mRun) mRun->Save(*element, owner);
    if (mJudgedBy) mJudgedBy->Save(*element, owner);
    return element;
}

/// Reads the record of the verdict; ignores other elements.
void CResultCommon::LoadRecord(const std::shared_ptr<IXmlElement>& child) {
    const std::string_view name = child->Name();
    if (name == tag::kJudgedBy) return mJudgedBy.emplace().Load(child);
    static constexpr std::pair<std::string_view, void (RunRecord::*)(const IXmlElement&)> kLoaders[] = {
        {tag::kRun, &RunRecord::LoadRun},
        {tag::kMeasuredBy, &RunRecord::LoadInstrument},
        {tag::kTechnique, &RunRecord::LoadTechnique},
    };
    for (const auto& [known, load] : kLoaders) {
        if (name != known) continue;
        if (!mRun && name == tag::kRun) mRun.emplace();
        if (mRun) ((*mRun).*load)(*child);
    }
}

void CResultCommon::Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) {
    if (log != nullptr) log->Position(tag::kResultItem, Translate(text::kLoadingResultData));
    if (element->Name() != tag::kResultItem)
        RaiseHostError(kErrorResultMissing, kClassName, 4,
                       {"found \"" + std::string(element->Name()) + "\""});
    if (const std::string_view mti = element->GetAttribute(tag::kMti); !mti.empty())
        mMtiId = ReadInteger(mti);
    ExposureLoader exposures(mExposures, TestId, log);
    for (const auto& child : element->Children()) {
        const std::string_view name = child->Name();
        if (exposures.Take(child)) continue;
        if (name == tag::kStatus) {
            Services().codec->ReadStatus(*child, mStatus, mStatusExtra);
        } else if (name == tag::kComment) {
            mComment = child->Text();
        } else if (name == tag::kServiceRecord && Services().createServiceRecord) {
            mServiceRecord = Services().createServiceRecord();
            mServiceRecord->Load(child);
        } else {
            LoadRecord(child);
        }
    }
    constexpr std::size_t kMostExposures = std::numeric_limits<uint8_t>::max();
    if (Rows().size() > kMostExposures)
        RaiseHostError(
            kErrorResultMissing, kClassName, 4,
            {"the result holds " + std::to_string(Rows().size()) + " exposures, at most 255 are expected"});
    // The working row becomes a copy of the last stored one, so that views show the latest exposure.
    if (const MeasurementRow* last = LastReading())
        mCurrent = std::make_shared<MeasurementRow>(CopyOf(*last));
}

void CResultCommon::PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& /*setup*/) {
    if (report != nullptr && !Rows().empty()) PrintResult(*this, mConfig.get(), *report);
}

}  // namespace vorex

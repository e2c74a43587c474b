#include <algorithm>
#include <limits>
#include <utility>

#include "foundation/host_error.h"
#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "results/judging.h"
#include "results/result_columns.h"
#include "results/result_common.h"

namespace vorex {

namespace {

constexpr std::string_view kClassName = "CResultCommon";

/// The cell above the next one of the last row, when it is in the same column, whose properties it has. Null
/// otherwise.
const CMeasurement* CellAbove(const std::vector<std::shared_ptr<MeasurementRow>>& rows,
                              std::string_view measurementKey) {
    if (rows.empty()) return nullptr;
    const auto above =
        std::find_if(rows.rbegin() + 1, rows.rend(), [](const auto& row) { return !row->empty(); });
    if (above == rows.rend()) return nullptr;
    const std::size_t place = rows.back()->size();
    const bool same = place < (*above)->size() && (**above)[place]->RawKey() == measurementKey;
    return same ? (**above)[place].get() : nullptr;
}

/// An exposure without a reading keeps its number in the file.
std::shared_ptr<IXmlElement> SaveMissing(std::string_view firstKey,
                                         const std::shared_ptr<IXmlDocument>& owner) {
    const auto element = owner->CreateElement(tag::kMeasurement);
    if (!element) return nullptr;
    element->SetAttribute(tag::kKey, firstKey);
    element->SetAttribute(tag::kMissing, kStoredTrue);
    return element;
}

/// Superseded readings are saved in a separate element, which older versions ignore.
std::shared_ptr<IXmlElement> SaveSuperseded(const SupersededExposure& superseded,
                                            const std::shared_ptr<IXmlDocument>& owner) {
    const auto element = owner->CreateElement(tag::kSupersededExposure);
    if (!element) return nullptr;
    element->SetAttribute(tag::kExposure, PlainText(static_cast<int32_t>(superseded.exposure)));
    element->SetAttribute(tag::kOrder, PlainText(superseded.order));
    element->SetAttribute(tag::kTime, superseded.time);
    for (const auto& item : superseded.row)
        if (const auto cell = item->Save(owner)) element->AddChild(cell);
    for (const auto& [waveform, type] :
         {std::pair(superseded.kvWaveform, kKvWaveform), std::pair(superseded.maWaveform, kMaWaveform)}) {
        if (!waveform || waveform->ValueCount() == 0) continue;
        waveform->WaveformType(type);
        element->AddChild(waveform->Save(owner));
    }
    return element;
}

}  // namespace

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
    for (const auto& row : mRows) {
        if (row->empty()) add(SaveMissing(mCurrent->front()->RawKey(), owner));
        for (const auto& item : *row) add(item->Save(owner));
    }
    for (const auto& waveform : mWaveforms) {
        waveform->WaveformType(kKvWaveform);
        add(waveform->Save(owner));
    }
    for (const auto& waveform : mMaWaveforms) {
        waveform->WaveformType(kMaWaveform);
        add(waveform->Save(owner));
    }
    for (const SupersededExposure& superseded : mSuperseded) add(SaveSuperseded(superseded, owner));
    if (mRun) mRun->Save(*element, owner);
    if (mJudgedBy) mJudgedBy->Save(*element, owner);
    return element;
}

void CResultCommon::LoadMeasurement(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) {
    if (element->GetAttribute(tag::kMissing) == kStoredTrue)
        return AddRow(std::make_shared<MeasurementRow>());
    const std::string_view measurementKey = element->GetAttribute(tag::kKey);
    const bool newRow =
        mRows.empty() || mRows.back()->empty() || mRows.back()->front()->RawKey() == measurementKey;
    if (newRow) {
        AddRow(std::make_shared<MeasurementRow>());
        mRows.back()->reserve(mRows.front()->size());
    }
    mRows.back()->push_back(LoadCell(element, log, CellAbove(mRows, measurementKey)));
}

std::shared_ptr<CMeasurement> CResultCommon::LoadCell(const std::shared_ptr<IXmlElement>& element,
                                                      IProgressLog* log, const CMeasurement* above) const {
    auto item = std::make_shared<CMeasurement>();
    if (above != nullptr) item->ShareLabels(*above);
    item->Load(element, log);
    if (above == nullptr) item->ValueFormat(PictureOfColumn(TestId, item->RawKey()));
    const bool linearity = item->RawKey() == key::kErAdjacent || item->RawKey() == key::kErNonAdjacent;
    if (TestId == kRadioLinearity && linearity) item->Description(text::kCoefficientOfLinearity);
    // A number stays a number; otherwise the type of a stored cell follows from its column, so that a result
    // saves the same before and after a load.
    const bool number =
        item->WasStoredAsNumber() || (IsJudgedColumn(TestId, *item) && TestId != kFluoroExposure);
    item->ValueType(number ? kJudgedNumber : kTextOnly);
    return item;
}

void CResultCommon::LoadSuperseded(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) {
    SupersededExposure superseded;
    superseded.exposure = static_cast<uint8_t>(ReadInteger(element->GetAttribute(tag::kExposure)));
    superseded.order = ReadInteger(element->GetAttribute(tag::kOrder));
    superseded.time = element->GetAttribute(tag::kTime);
    for (const auto& child : element->Children()) {
        const std::string_view name = child->Name();
        if (name == tag::kMeasurement) {
            superseded.row.push_back(LoadCell(child, log, nullptr));
        } else if (name == tag::kWaveform || name == tag::kMasWaveform) {
            const auto waveform = std::make_shared<CWaveform>();
            waveform->Load(child, log);
            (name == tag::kWaveform ? superseded.kvWaveform : superseded.maWaveform) = waveform;
        }
    }
    mSuperseded.push_back(std::move(superseded));
}

void CResultCommon::LoadWaveform(const std::shared_ptr<IXmlElement>& element, IProgressLog* log, uint8_t type,
                                 std::size_t& slot) {
    Waveforms& waveforms = type == kMaWaveform ? mMaWaveforms : mWaveforms;
    if (slot >= waveforms.size()) return;
    const auto waveform = std::make_shared<CWaveform>();
    waveform->WaveformType(type);
    waveform->Load(element, log);
    waveforms[slot++] = waveform;
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
    std::size_t kvSlot = 0;
    std::size_t maSlot = 0;
    for (const auto& child : element->Children()) {
        const std::string_view name = child->Name();
        if (name == tag::kMeasurement) {
            LoadMeasurement(child, log);
        } else if (name == tag::kStatus) {
            Services().codec->ReadStatus(*child, mStatus, mStatusExtra);
        } else if (name == tag::kComment) {
            mComment = child->Text();
        } else if (name == tag::kServiceRecord && Services().createServiceRecord) {
            mServiceRecord = Services().createServiceRecord();
            mServiceRecord->Load(child);
        } else if (name == tag::kWaveform) {
            LoadWaveform(child, log, kKvWaveform, kvSlot);
        } else if (name == tag::kMasWaveform) {
            LoadWaveform(child, log, kMaWaveform, maSlot);
        } else if (name == tag::kSupersededExposure) {
            LoadSuperseded(child, log);
        } else {
            LoadRecord(child);
        }
    }
    constexpr std::size_t kMostExposures = std::numeric_limits<uint8_t>::max();
    if (mRows.size() > kMostExposures)
        RaiseHostError(
            kErrorResultMissing, kClassName, 4,
            {"the result holds " + std::to_string(mRows.size()) + " exposures, at most 255 are expected"});
    mExposureCount = static_cast<uint8_t>(mRows.size());
    RebuildWorkingRow();
}

/// The working row becomes a copy of the last stored one, so that views show the latest exposure.
void CResultCommon::RebuildWorkingRow() {
    if (const MeasurementRow* last = LastReading())
        mCurrent = std::make_shared<MeasurementRow>(CopyOf(*last));
}

}  // namespace vorex

#include "results/result_persistence.h"

#include <algorithm>
#include <utility>

#include "foundation/number_text.h"
#include "results/judging.h"
#include "results/result_columns.h"

namespace vorex {

namespace {

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

void SaveExposures(const ExposureStore& exposures, const MeasurementRow& columns, IXmlElement& to,
                   const std::shared_ptr<IXmlDocument>& owner) {
    const auto add = [&](const std::shared_ptr<IXmlElement>& child) {
        if (child) to.AddChild(child);
    };
    for (const auto& row : exposures.Rows()) {
        if (row->empty()) add(SaveMissing(columns.front()->RawKey(), owner));
        for (const auto& item : *row) add(item->Save(owner));
    }
    for (const uint8_t type : {kKvWaveform, kMaWaveform})
        for (int32_t exposure = 1; exposure <= exposures.Count(); ++exposure) {
            const auto waveform = exposures.Waveform(type, exposure);
            waveform->WaveformType(type);
            add(waveform->Save(owner));
        }
    for (const SupersededExposure& superseded : exposures.Superseded())
        add(SaveSuperseded(superseded, owner));
}

bool ExposureLoader::Take(const std::shared_ptr<IXmlElement>& element) {
    const std::string_view name = element->Name();
    if (name == tag::kMeasurement)
        LoadMeasurement(element);
    else if (name == tag::kWaveform)
        LoadWaveform(element, kKvWaveform, mNextKvWaveform);
    else if (name == tag::kMasWaveform)
        LoadWaveform(element, kMaWaveform, mNextMaWaveform);
    else if (name == tag::kSupersededExposure)
        LoadSuperseded(element);
    else
        return false;
    return true;
}

void ExposureLoader::LoadMeasurement(const std::shared_ptr<IXmlElement>& element) {
    if (element->GetAttribute(tag::kMissing) == kStoredTrue)
        return mExposures.Add(std::make_shared<MeasurementRow>());
    const auto& rows = mExposures.Rows();
    const std::string_view measurementKey = element->GetAttribute(tag::kKey);
    const bool newRow =
        rows.empty() || rows.back()->empty() || rows.back()->front()->RawKey() == measurementKey;
    if (newRow) {
        mExposures.Add(std::make_shared<MeasurementRow>());
        rows.back()->reserve(rows.front()->size());
        mCells.clear();
        AddCells(mCells, rows.front()->size());
    }
    // Rows usually have the same cells. A longer one gets its further cells one by one.
    const std::size_t place = rows.back()->size();
    const auto cell = place < mCells.size() ? mCells[place] : std::make_shared<CMeasurement>();
    LoadCell(*cell, element, CellAbove(rows, measurementKey));
    rows.back()->push_back(cell);
}

/// Waveforms met while a result loads belong to the exposures met so far, in order.
void ExposureLoader::LoadWaveform(const std::shared_ptr<IXmlElement>& element, uint8_t type, int32_t& next) {
    if (next > static_cast<int32_t>(mExposures.Rows().size())) return;
    const auto waveform = std::make_shared<CWaveform>();
    waveform->WaveformType(type);
    waveform->Load(element, mLog);
    mExposures.Keep(type, next++, waveform);
}

void ExposureLoader::LoadCell(CMeasurement& item, const std::shared_ptr<IXmlElement>& element,
                              const CMeasurement* above) const {
    if (above != nullptr) item.ShareLabels(*above);
    item.Load(element, mLog);
    if (above == nullptr) item.ValueFormat(PictureOfColumn(mTestId, item.RawKey()));
    const bool linearity = item.RawKey() == key::kErAdjacent || item.RawKey() == key::kErNonAdjacent;
    if (mTestId == kRadioLinearity && linearity) item.Description(text::kCoefficientOfLinearity);
    // A number stays a number; otherwise the type of a stored cell follows from its column, so that a result
    // saves the same before and after a load.
    const bool number =
        item.WasStoredAsNumber() || (IsJudgedColumn(mTestId, item) && mTestId != kFluoroExposure);
    item.ValueType(number ? kJudgedNumber : kTextOnly);
}

void ExposureLoader::LoadSuperseded(const std::shared_ptr<IXmlElement>& element) {
    SupersededExposure superseded;
    superseded.exposure = static_cast<uint8_t>(ReadInteger(element->GetAttribute(tag::kExposure)));
    superseded.order = ReadInteger(element->GetAttribute(tag::kOrder));
    superseded.time = element->GetAttribute(tag::kTime);
    for (const auto& child : element->Children()) {
        const std::string_view name = child->Name();
        if (name == tag::kMeasurement) {
            superseded.row.push_back(std::make_shared<CMeasurement>());
            LoadCell(*superseded.row.back(), child, nullptr);
        } else if (name == tag::kWaveform || name == tag::kMasWaveform) {
            const auto waveform = std::make_shared<CWaveform>();
            waveform->Load(child, mLog);
            (name == tag::kWaveform ? superseded.kvWaveform : superseded.maWaveform) = waveform;
        }
    }
    mExposures.Add(std::move(superseded));
}

}  // namespace vorex

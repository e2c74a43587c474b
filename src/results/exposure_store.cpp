#include "results/exposure_store.h"

#include <algorithm>
#include <utility>

#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "results/result_record.h"

namespace vorex {

namespace {

bool HasSamples(const CWaveform& waveform) {
    return waveform.ValueCount() > 0;
}

}  // namespace

void ExposureStore::Add(std::shared_ptr<MeasurementRow> row) {
    mRows.push_back(std::move(row));
    mKvWaveforms.push_back(std::make_shared<CWaveform>());
    mMaWaveforms.push_back(std::make_shared<CWaveform>());
}

void ExposureStore::AddUpTo(uint8_t exposure) {
    while (mRows.size() < exposure) Add(std::make_shared<MeasurementRow>());
}

std::size_t ExposureStore::LastReadingIndex() const {
    const auto at = std::find_if(mRows.rbegin(), mRows.rend(), [](const auto& row) { return !row->empty(); });
    return static_cast<std::size_t>(mRows.rend() - at) - 1U;
}

MeasurementRow* ExposureStore::LastReading() const {
    const std::size_t last = LastReadingIndex();
    return last < mRows.size() ? mRows[last].get() : nullptr;
}

MeasurementRow* ExposureStore::NextReading(std::size_t row) const {
    for (std::size_t next = row + 1; next < mRows.size(); ++next)
        if (HasReading(next)) return mRows[next].get();
    return nullptr;
}

CMeasurement* ExposureStore::Cell(std::size_t row, uint8_t column) const {
    if (row >= mRows.size() || column == 0 || column > mRows[row]->size()) return nullptr;
    return (*mRows[row])[column - 1U].get();
}

// ------------------------------------------------------------------------------------------ waveforms

std::shared_ptr<CWaveform> ExposureStore::Waveform(uint8_t type, int32_t exposure) const {
    const Waveforms& waveforms = type == kMaWaveform ? mMaWaveforms : mKvWaveforms;
    if (exposure < 1 || static_cast<std::size_t>(exposure) > waveforms.size()) return nullptr;
    return waveforms[static_cast<std::size_t>(exposure) - 1];
}

std::shared_ptr<CWaveform> ExposureStore::NewestWaveform(uint8_t type, int32_t exposure) const {
    if (IsRedone(exposure)) return type == kMaWaveform ? mRedo->maWaveform : mRedo->kvWaveform;
    return Waveform(type, exposure);
}

void ExposureStore::Keep(uint8_t type, int32_t exposure, std::shared_ptr<CWaveform> waveform) {
    if (IsRedone(exposure))
        (type == kMaWaveform ? mRedo->maWaveform : mRedo->kvWaveform) = std::move(waveform);
    else if (Waveform(type, exposure))
        WaveformsOf(type)[static_cast<std::size_t>(exposure) - 1] = std::move(waveform);
}

// ----------------------------------------------------------------------------------------------- redo

void ExposureStore::BeginRedo(uint8_t exposure, MeasurementRow former) {
    SupersededExposure kept;
    kept.exposure = exposure;
    kept.row = std::move(former);
    kept.kvWaveform = Waveform(kKvWaveform, exposure);
    kept.maWaveform = Waveform(kMaWaveform, exposure);
    mRedo = Redo{std::move(kept), std::make_shared<CWaveform>(), std::make_shared<CWaveform>()};
}

bool ExposureStore::Supersede(uint8_t exposure) {
    if (!IsRedone(exposure)) return false;
    Redo redo = std::move(*mRedo);
    mRedo.reset();
    Keep(kKvWaveform, exposure, redo.kvWaveform);
    Keep(kMaWaveform, exposure, redo.maWaveform);
    SupersededExposure& former = redo.former;
    if (former.row.empty() && !HasSamples(*former.kvWaveform) && !HasSamples(*former.maWaveform)) return true;
    former.order =
        1 + static_cast<int32_t>(std::count_if(mSuperseded.begin(), mSuperseded.end(),
                                               [&](const auto& kept) { return kept.exposure == exposure; }));
    former.time = PresentTime();
    mSuperseded.push_back(std::move(former));
    return true;
}

bool ExposureStore::EndRedo() {
    if (!mRedo) return false;
    const Redo redo = std::move(*mRedo);
    mRedo.reset();
    const uint8_t exposure = redo.former.exposure;
    const bool missing = !HasReading(exposure - 1U);
    if (!HasSamples(*redo.kvWaveform) && !HasSamples(*redo.maWaveform)) return missing;
    if (!missing) {
        LogDiagnostic("the redo of exposure " + PlainText(static_cast<int32_t>(exposure)) +
                      " ended without a reading; its waveform is dropped");
        return false;
    }
    if (HasSamples(*redo.kvWaveform)) Keep(kKvWaveform, exposure, redo.kvWaveform);
    if (HasSamples(*redo.maWaveform)) Keep(kMaWaveform, exposure, redo.maWaveform);
    return true;
}

}  // namespace vorex

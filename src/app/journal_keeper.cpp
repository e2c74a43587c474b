#include "app/journal_keeper.h"

#include <exception>
#include <utility>

namespace vorex {

namespace {

/// The statuses of the last stored row, a digit each.
std::string StatusesOf(const ITestElement& element) {
    std::string statuses;
    const auto result = element.Result();
    for (int32_t i = 0; result && i < result->MeasurementCount(); ++i)
        if (const auto item = result->Measurement(i)) statuses += std::to_string(item->Status());
    return statuses;
}

std::string NameOf(const JournalRecord& record) {
    return "exposure " + std::to_string(record.exposure) + " of element " + std::to_string(record.element);
}

}  // namespace

void JournalKeeper::Keep(std::unique_ptr<RunJournal> journal, IPlatform& platform) {
    mJournal = std::move(journal);
    mPlatform = &platform;
}

void JournalKeeper::Replay(const JournalContent& content) {
    mRecords = content.records;
    std::vector<RunNote> notes;
    for (const JournalRecord& record : mRecords)
        notes.insert(notes.end(), record.notes.begin(), record.notes.end());
    mTape.Rewind(std::move(notes), mRecords.empty() ? 0 : mRecords.back().polls);
    if (mRecords.empty()) mTape.GoOn();
}

JournalRecord JournalKeeper::RecordOf(const StoredExposure& stored, const OperatorPlace& place) const {
    JournalRecord record;
    record.element = stored.element.ID();
    record.exposure = stored.exposure;
    record.source = stored.source;
    record.waveform = stored.waveform;
    record.row = stored.row;
    record.statuses = StatusesOf(stored.element);
    record.time = mPlatform->TimeStamp();
    record.opened = static_cast<int32_t>(place.opened);
    record.polls = static_cast<int32_t>(mTape.Polls());
    record.steps = static_cast<int32_t>(place.steps);
    return record;
}

void JournalKeeper::Stored(const StoredExposure& stored, const OperatorPlace& place) {
    if (!mJournal || mTape.Broken()) return;
    JournalRecord record = RecordOf(stored, place);
    if (mTape.Reading()) return Follow(record);
    record.notes = mTape.TakeNotes();
    if (!mFault.empty()) return;
    try {
        mJournal->Append(record);
    } catch (const std::exception& error) {
        // The measurement continues without the journal.
        mFault = std::string(error.what()) + "; the exposures from " + NameOf(record) + " on are not in it";
    }
}

void JournalKeeper::Follow(const JournalRecord& record) {
    JournalRecord kept = mRecords[mNext];
    kept.notes.clear();
    if (record != kept) {
        mTape.Break();
        mFault = "the readings, statuses or steps of " + NameOf(kept) + " have changed";
        return;
    }
    if (++mNext == mRecords.size()) mTape.GoOn();
}

std::string JournalKeeper::WayLost() const {
    std::string what;
    if (mTape.Broken())
        what = mFault.empty() ? "it has passed " + NameOf(mRecords[mNext]) : mFault;
    else if (mNext < mRecords.size())
        what = "it ended before " + NameOf(mRecords[mNext]);
    else
        return {};
    return mJournal->Path().string() + ": the run could not be repeated as it was: " + what +
           "; the journal stays. Were the settings, the script or the program changed?";
}

void JournalKeeper::Finish() {
    if (mJournal) mJournal->Remove();
    mJournal.reset();
}

std::string JournalKeeper::Needed() const {
    return mJournal && mJournal->Needed() ? mJournal->Path().string() : std::string();
}

}  // namespace vorex

#include "app/journal_keeper.h"

#include <algorithm>
#include <exception>
#include <iterator>
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

}  // namespace

void JournalKeeper::Keep(std::unique_ptr<RunJournal> journal, IPlatform& platform) {
    mJournal = std::move(journal);
    mPlatform = &platform;
}

void JournalKeeper::Replay(const JournalContent& content) {
    std::copy_if(content.records.begin(), content.records.end(), std::back_inserter(mRecords),
                 [](const JournalRecord& record) { return record.script.empty(); });
    std::vector<RunNote> notes;
    for (const JournalRecord& record : mRecords)
        notes.insert(notes.end(), record.notes.begin(), record.notes.end());
    mTape.Rewind(std::move(notes), mRecords.empty() ? 0 : mRecords.back().polls);
    mKeepsActs = content.ByHand();
    if (mRecords.empty()) mTape.GoOn();
}

void JournalKeeper::KeepActs(bool keep) {
    if (mRecords.empty()) mKeepsActs = keep;
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
    // Another operator may have continued: only the acts say how far the run is.
    if (!mKeepsActs) record.steps = static_cast<int32_t>(place.steps);
    return record;
}

void JournalKeeper::Stored(const StoredExposure& stored, const OperatorPlace& place) {
    if (!mJournal || mTape.Broken()) return;
    JournalRecord record = RecordOf(stored, place);
    if (mTape.Reading()) return Follow(record);
    Append(std::move(record));
}

void JournalKeeper::Acted(const OperatorAct& act, int32_t element) {
    if (!mJournal || !mKeepsActs || mTape.Broken()) return;
    JournalRecord record;
    record.element = element;
    record.act = act;
    record.polls = static_cast<int32_t>(mTape.Polls());
    Append(std::move(record));
}

void JournalKeeper::Append(JournalRecord record) {
    record.notes = mTape.TakeNotes();
    if (!mFault.empty()) return;
    try {
        // A person's acts say it all.
        if (!mKeepsActs && !mScript.empty()) {
            JournalRecord taken;
            taken.script = mScript;
            mJournal->Append(taken);
        }
        mScript.clear();
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
        mFault = kept.act ? NameOf(record) + " comes before " + NameOf(kept)
                          : "the readings, statuses or steps of " + NameOf(kept) + " have changed";
        return;
    }
    Advance();
}

void JournalKeeper::Advance() {
    if (++mNext == mRecords.size()) mTape.GoOn();
}

const OperatorAct* JournalKeeper::DueAct() const {
    if (!Repeating() || mTape.Broken() || mNext == mRecords.size()) return nullptr;
    const JournalRecord& next = mRecords[mNext];
    return next.act && next.polls <= mTape.Polls() ? &*next.act : nullptr;
}

OperatorAct JournalKeeper::TakeAct() {
    OperatorAct act = *mRecords[mNext].act;
    Advance();
    return act;
}

void JournalKeeper::Refused(const OperatorAct& act, int32_t element) {
    mTape.Break();
    JournalRecord record;
    record.element = element;
    record.act = act;
    mFault = NameOf(record) + " is not possible now";
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

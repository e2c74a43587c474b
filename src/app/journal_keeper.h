#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "files/run_journal.h"
#include "foundation/host_services.h"
#include "foundation/platform.h"
#include "instruments/taped_instruments.h"

namespace vorex {

/// The progress of the operator in a run.
struct OperatorPlace {
    std::size_t opened = 0;  ///< guides so far
    std::size_t steps = 0;   ///< at the last of them
};

/// Keeps the journal of a run, and leads a resumed run through its journal: the run starts again with the
/// recorded answers, a person's acts are repeated, each exposure is compared with the journal, and the run
/// continues where the journal ends.
class JournalKeeper {
  public:
    explicit JournalKeeper(RunTape& tape) : mTape(tape) {}

    /// From now on everything that is stored goes to the journal. The platform must outlive the keeper.
    /// [before the run]
    void Keep(std::unique_ptr<RunJournal> journal, IPlatform& platform);
    bool Keeping() const { return mJournal != nullptr; }
    /// Replays the records of a journal first. [after `Keep`]
    void Replay(const JournalContent& content);
    /// The script that continues after the replay goes to the journal with the first exposure it takes, so
    /// that the run can be resumed once more. [after `Replay`]
    void TakeOver(std::string script) { mScript = std::move(script); }
    /// Whether the operator's acts go to the journal too. A journal that already has records continues as it
    /// began. [before the run]
    void KeepActs(bool keep);

    /// Called with everything that is stored, before it is shown.
    void Stored(const StoredExposure& stored, const OperatorPlace& place);
    /// Called with every act of a person at an element, before it takes effect.
    void Acted(const OperatorAct& act, int32_t element);

    /// True while the acts of the journal are repeated.
    bool Repeating() const { return mKeepsActs && mTape.Reading(); }
    /// The next act, when the run has reached its place; else null.
    const OperatorAct* DueAct() const;
    /// Takes it. [when one is due]
    OperatorAct TakeAct();
    /// Called when the window refused the act: the run cannot be repeated.
    void Refused(const OperatorAct& act, int32_t element);

    /// Why the journal could not be kept to the end; empty when it could.
    const std::string& Fault() const { return mFault; }
    /// How the run differed from its journal, which ended it; empty when it did not differ.
    std::string WayLost() const;
    /// Call when the result is saved. Raises FileError.
    void Finish();
    /// The journal that would be lost with the run; empty when there is none.
    std::string Needed() const;

  private:
    JournalRecord RecordOf(const StoredExposure& stored, const OperatorPlace& place) const;
    void Follow(const JournalRecord& record);
    void Append(JournalRecord record);
    void Advance();

    RunTape& mTape;
    std::unique_ptr<RunJournal> mJournal;
    IPlatform* mPlatform = nullptr;
    std::vector<JournalRecord> mRecords;  ///< to follow
    std::size_t mNext = 0;
    bool mKeepsActs = false;
    std::string mScript;
    std::string mFault;
};

}  // namespace vorex

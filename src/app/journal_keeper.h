#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/operator.h"
#include "files/run_journal.h"
#include "foundation/host_services.h"
#include "host/headless_platform.h"
#include "instruments/taped_instruments.h"

namespace vorex {

/// Keeps the journal of a run, and leads a resumed run through what its journal holds: the run begins anew on
/// the tape of the journal, is compared with it exposure by exposure, and goes on where it ends.
class JournalKeeper {
  public:
    explicit JournalKeeper(RunTape& tape) : mTape(tape) {}

    /// From now on what is stored goes to the journal; a journal without an object keeps nothing. Operator
    /// and platform must outlive the keeper. [before the run]
    void Keep(std::unique_ptr<RunJournal> journal, const IOperator& person, HeadlessPlatform& platform);
    /// Begins with the records of a journal. [behind `Keep`]
    void Replay(const JournalContent& content);

    /// To be told of everything that is stored, before it is shown.
    void Stored(const StoredExposure& stored);

    /// Why the journal could not be kept to the end; empty when it could.
    const std::string& Fault() const { return mFault; }
    /// How the run left its journal, which ended it; empty when it did not.
    std::string WayLost() const;
    /// The result is saved. Raises FileError.
    void Finish();
    /// The journal that would be lost with the run; empty when there is none.
    std::string Needed() const;

  private:
    JournalRecord RecordOf(const StoredExposure& stored) const;
    void Follow(const JournalRecord& record);
    void GoOn();

    RunTape& mTape;
    std::unique_ptr<RunJournal> mJournal;
    const IOperator* mPerson = nullptr;
    HeadlessPlatform* mPlatform = nullptr;
    std::vector<JournalRecord> mRecords;  ///< to follow
    std::size_t mNext = 0;
    bool mRealTime = false;  ///< once the journal is used up
    std::string mFault;
};

}  // namespace vorex

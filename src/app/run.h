#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/journal_keeper.h"
#include "app/listener.h"
#include "app/open_file.h"
#include "app/operator.h"
#include "app/session.h"
#include "files/run_journal.h"
#include "host/execution_pipe.h"
#include "instruments/instruments.h"
#include "instruments/taped_instruments.h"

namespace vorex {

enum class RunEnd {
    kFinished,       ///< every element was performed or skipped
    kLeftBackwards,  ///< Previous on the first element
    kAborted,        ///< by the operator
    kBroken,         ///< ended by instruments, platform or operator; what was measured is in the file
    kOperatorError,  ///< the operator could not continue; what was measured is in the file
    kWayLost,        ///< a resumed run that differs from its journal; the file must not be saved
};

struct RunOutcome {
    RunEnd end = RunEnd::kFinished;
    std::string reason;  ///< of kOperatorError and kWayLost
};

/// One run of the elements of a file. Order of calls: `Keep` or `Resume` for a run with a journal, `Perform`,
/// then, after the result is saved, `Saved`.
class Run final : private IRunUnderWay {
  public:
    /// The session must outlive the run.
    Run(Session& session, std::unique_ptr<IInstruments> instruments);
    ~Run() override;
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    /// `Keep` and `Resume` change them.
    IInstruments& Instruments() override { return *mInstruments; }

    /// Keeps a journal next to the output. Fills in program, start and language of the head. Raises
    /// FileError, for example when the journal of another run exists. [before `Perform`]
    void Keep(const std::filesystem::path& output, JournalHead head);
    /// Repeats the run of the journal and continues it. The platform's clock must start at the same time, and
    /// a script must take the same steps. A person's acts are repeated; until `CaughtUp` the windows accept
    /// no others. A script that replaces the rest of the earlier one goes to the journal. [before `Perform`]
    void Resume(std::unique_ptr<RunJournal> journal, const JournalContent& content, std::string script = {});

    /// Performs the elements. Faults go to the listener when the run has ended.
    RunOutcome Perform(OpenFile& file, const IOperator& person, IAppListener& listener);

    /// Call when the result is on the disk and the journal is no longer needed. Raises FileError.
    void Saved() { mKeeper.Finish(); }
    /// The journal with measured exposures that are not saved yet; empty when there is none.
    std::string JournalNeeded() const { return mKeeper.Needed(); }

  private:
    void Stored(const StoredExposure& stored) override;
    void WindowOpened() override { ++mOpened; }
    void WindowClosed(ModalEnd end) override;
    std::string TimeStamp(std::string now) override;
    void Message(std::string_view title, std::string_view message) override;
    std::optional<bool> Asked(std::string_view question) override;
    bool Acted(const OperatorAct& act) override;
    bool Repeating() const override { return mKeeper.Repeating(); }
    bool WayIsLost() const override { return mTape.Broken(); }
    const OperatorAct* DueAct() const override { return mKeeper.DueAct(); }
    OperatorAct TakeAct() override;
    void Refused(const OperatorAct& act) override { mKeeper.Refused(act, ElementAtWork()); }

    int32_t ElementAtWork() const;
    void GoOverTape();
    void ReportFaults();
    RunOutcome OutcomeOf(SequenceEnd end) const;

    Session& mSession;
    RunTape mTape;
    std::unique_ptr<IInstruments> mInstruments;
    JournalKeeper mKeeper;
    const IOperator* mPerson = nullptr;
    IAppListener* mListener = nullptr;
    bool mResumed = false;
    std::size_t mOpened = 0;  ///< guides
    ModalEnd mStall = ModalEnd::kHidden;
    std::vector<std::string> mMessages;
};

}  // namespace vorex

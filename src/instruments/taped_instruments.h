#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/run_note.h"
#include "instruments/instruments.h"

namespace vorex {

/// The measurements of a run, call by call. A new run writes them; a resumed run reads them to the end and
/// then writes on.
///
/// A run that starts with the same file and the same operator makes the same calls in the same order. So the
/// number of calls identifies a point in the run, and no other state of the program has to be kept.
class RunTape {
  public:
    /// Answers with these notes first; the last of them was written in that poll. [before the run]
    void Rewind(std::vector<RunNote> notes, int64_t lastPoll);
    bool Reading() const { return mReading; }
    /// Ends the replay: instruments and clock answer from now on.
    void GoOn() { mReading = false; }

    /// Number of the last poll: how far the run has come.
    int64_t Polls() const;
    /// A run that polls beyond the last recorded poll during the replay has left the tape.
    void BreakBehind(int64_t poll) { mBroken = mBroken || (mReading && poll > mLastPoll); }
    /// The number of the present call.
    int64_t Count(std::string_view operation);
    void Note(std::string_view operation, int64_t call, std::vector<std::string> values);
    /// Takes the note of a call; an empty list when the call had the ordinary answer.
    std::vector<std::string> Read(std::string_view operation, int64_t call);
    /// Takes the next event if it belongs to this poll; otherwise nothing.
    std::optional<RunNote> NextEvent(int64_t poll);
    /// The notes written since the last call.
    std::vector<RunNote> TakeNotes() { return std::exchange(mWritten, {}); }

    /// Records the time of the clock, such as "2026-01-15T09:00:04Z", or reads it from the tape. A recorded
    /// time is never before one that was read.
    std::string Clock(std::string now);

    /// Called when the run has left the tape: its instruments do not answer any more.
    void Break() { mBroken = true; }
    bool Broken() const { return mBroken; }

  private:
    bool mReading = false;
    bool mBroken = false;
    int64_t mLastPoll = 0;  ///< of the notes to read
    std::map<std::string, int64_t, std::less<>> mCalls;
    std::map<std::string, std::deque<RunNote>, std::less<>> mAnswers;  ///< to read, by operation
    std::deque<RunNote> mEvents;                                       ///< to read, in their order
    std::vector<RunNote> mWritten;
    std::string mLatest;  ///< time that was read
};

/// Instruments with a tape. While the tape is read, its answers replace those of the instruments, which get
/// the same calls. So deterministic instruments are in the right state when the tape ends; others have
/// nothing to measure during the replay and are ready for the next exposure.
class TapedInstruments final : public IInstruments {
  public:
    /// The tape must outlive the services.
    TapedInstruments(std::unique_ptr<IInstruments> instruments, RunTape& tape)
        : mInstruments(std::move(instruments)), mTape(tape) {}

    std::shared_ptr<IDetectorService> CreateService() override;
    std::shared_ptr<IDetectorLink> CreateLink() override { return mInstruments->CreateLink(); }
    const std::vector<std::string>& Faults() const override { return mInstruments->Faults(); }
    std::string LatestFault() const override { return mInstruments->LatestFault(); }
    bool Ended() const override { return mInstruments->Ended() || mTape.Broken(); }

  private:
    std::unique_ptr<IInstruments> mInstruments;
    RunTape& mTape;
};

}  // namespace vorex

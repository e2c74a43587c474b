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

/// What was measured in a run, call by call. A run that is new writes it; a run that is resumed reads it
/// until it is used up, and writes from there on.
///
/// A run asks its instruments in the same order whenever it starts from the same file and the same operator.
/// So the count of the calls is a place in the run, and nothing else need be kept of the program.
class RunTape {
  public:
    /// Answers with these notes first; the last of them was written in the poll of that number. [before the
    /// run]
    void Rewind(std::vector<RunNote> notes, int64_t lastPoll);
    bool Reading() const { return mReading; }
    /// The notes are used up: instruments and clock answer from now on.
    void GoOn() { mReading = false; }

    /// Number of the last poll: how far the run has come.
    int64_t Polls() const;
    /// A run that polls again after its last note has left the tape.
    void BreakBehind(int64_t poll) { mBroken = mBroken || (mReading && poll > mLastPoll); }
    /// The number of the call that begins now.
    int64_t Count(std::string_view operation);
    void Note(std::string_view operation, int64_t call, std::vector<std::string> values);
    /// Takes the note of a call; an empty list when the call answered the ordinary.
    std::vector<std::string> Read(std::string_view operation, int64_t call);
    /// Takes the event that is next, when this poll raised it; nothing when it did not.
    std::optional<RunNote> NextEvent(int64_t poll);
    /// What was written since it was asked last.
    std::vector<RunNote> TakeNotes() { return std::exchange(mWritten, {}); }

    /// Tells, or reads, what the clock says.
    std::string Clock(std::string now);

    /// The run has left the tape: its instruments answer no more.
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
};

/// Instruments with a tape. While the tape is read, its answers replace those of the instruments, which get
/// the same calls. So deterministic instruments are in the right state when the tape ends; others, which have
/// no exposure to measure during the replay, are ready for the next one.
class TapedInstruments final : public IInstruments {
  public:
    /// The tape must outlive the services.
    TapedInstruments(std::unique_ptr<IInstruments> instruments, RunTape& tape)
        : mInstruments(std::move(instruments)), mTape(tape) {}

    std::shared_ptr<IDetectorService> CreateService() override;
    std::shared_ptr<IDetectorLink> CreateLink() override { return mInstruments->CreateLink(); }
    const SentSettings& Sent() const override { return mInstruments->Sent(); }
    const std::vector<std::string>& Faults() const override { return mInstruments->Faults(); }
    std::string LatestFault() const override { return mInstruments->LatestFault(); }
    bool Ended() const override { return mInstruments->Ended() || mTape.Broken(); }

  private:
    std::unique_ptr<IInstruments> mInstruments;
    RunTape& mTape;
};

}  // namespace vorex

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "foundation/host_contract.h"
#include "foundation/vocabulary.h"

namespace vorex {

class MtiList final : public IMtiList {
  public:
    std::span<const MtiEntry> Entries() const override { return mEntries; }
    void Add(MtiEntry entry) override { mEntries.push_back(std::move(entry)); }

  private:
    std::vector<MtiEntry> mEntries;
};

class SelectedStandards final : public ISelectedStandards {
  public:
    SelectedStandards() = default;
    explicit SelectedStandards(std::vector<StandardName> standards) : mStandards(std::move(standards)) {}
    std::span<const StandardName> Standards() const override { return mStandards; }

  private:
    std::vector<StandardName> mStandards;
};

/// Callbacks that watch a run of elements and can end it. Empty members do nothing.
struct ExecutionHooks {
    /// True once the run has to end, for example after a fault of the instruments: no further element begins.
    std::function<bool()> stopped;
    std::function<void(ITestElement& element)> begins;
    std::function<void(ITestElement& element)> ended;  ///< its result is stored
};

class ExecutionPipe final : public IExecutionPipe {
  public:
    ExecutionPipe(std::shared_ptr<IMtiList> mtiList, std::shared_ptr<ISelectedStandards> selected,
                  ExecutionHooks hooks = {});

    int32_t NextAction() const override { return mNextAction; }
    void NextAction(int32_t code) override { mNextAction = code; }
    std::shared_ptr<IMtiList> MtiList() const override { return mMtiList; }
    std::shared_ptr<ISelectedStandards> SelectedStandards() const override { return mSelected; }
    bool BeginElement(ITestElement& element) override;
    void EndElement(ITestElement& element) override;

    bool Stopped() const { return mHooks.stopped && mHooks.stopped(); }

  private:
    std::shared_ptr<IMtiList> mMtiList;
    std::shared_ptr<ISelectedStandards> mSelected;
    ExecutionHooks mHooks;
    int32_t mNextAction = kGoNext;
};

/// How a sequence ended.
enum class SequenceEnd { kFinished, kLeftBackwards, kAborted, kStopped };

/// Runs elements in order. Previous goes back, and on the first element ends the sequence; Skip goes to the
/// next.
SequenceEnd RunSequence(std::span<const std::shared_ptr<ITestElement>> elements,
                        const std::shared_ptr<ExecutionPipe>& pipe);

}  // namespace vorex

#include "host/execution_pipe.h"

#include "foundation/sequence_state.h"

namespace vorex {

ExecutionPipe::ExecutionPipe(std::shared_ptr<IMtiList> mtiList, std::shared_ptr<ISelectedStandards> selected,
                             ExecutionHooks hooks)
    : mMtiList(std::move(mtiList)), mSelected(std::move(selected)), mHooks(std::move(hooks)) {}

bool ExecutionPipe::BeginElement(ITestElement& element) {
    if (Stopped()) return false;
    if (mHooks.begins) mHooks.begins(element);
    return true;
}

void ExecutionPipe::EndElement(ITestElement& element) {
    if (mHooks.ended) mHooks.ended(element);
}

SequenceEnd RunSequence(std::span<const std::shared_ptr<ITestElement>> elements,
                        const std::shared_ptr<ExecutionPipe>& pipe) {
    std::size_t index = 0;
    // Set once, and not before each element as in a group: an empty group leaves the code as it is, so
    // Previous passes over it to the element before.
    pipe->NextAction(kGoNext);
    if (!elements.empty()) elements.front()->Sequence()->Reset();
    while (index < elements.size()) {
        if (pipe->Stopped()) return SequenceEnd::kStopped;
        const auto state = elements[index]->Sequence();
        state->gSkipRemaining = state->gNARemaining = false;
        elements[index]->Perform(pipe);
        switch (pipe->NextAction()) {
            case kGoAbort:
                return SequenceEnd::kAborted;
            case kGoPrevious:
                if (index == 0) return SequenceEnd::kLeftBackwards;
                --index;
                break;
            default:
                ++index;
        }
    }
    return pipe->Stopped() ? SequenceEnd::kStopped : SequenceEnd::kFinished;
}

}  // namespace vorex

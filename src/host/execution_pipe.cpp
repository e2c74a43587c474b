#include "host/execution_pipe.h"

#include "foundation/library_state.h"

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
    while (index < elements.size()) {
        if (pipe->Stopped()) return SequenceEnd::kStopped;
        // What an earlier element left is not this one's: an empty group leaves no code of its own.
        pipe->NextAction(kGoNext);
        State().gSkipRemaining = State().gNARemaining = false;
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

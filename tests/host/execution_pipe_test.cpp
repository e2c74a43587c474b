#include "host/execution_pipe.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_element.h"

namespace vorex::host_test {
namespace {

using testing::ElementsAre;

/// An element that leaves one code after the other in the pipe.
class CodeElement : public test::FakeElement {
  public:
    CodeElement(std::string name, std::vector<std::string>& performed, std::vector<int32_t> codes)
        : mName(std::move(name)), mPerformed(performed), mCodes(std::move(codes)) {}
    void Perform(const std::shared_ptr<IExecutionPipe>& pipe) override {
        if (!pipe->BeginElement(*this)) return;
        const auto state = Sequence();
        mPerformed.push_back(mName + (state->gSkipRemaining || state->gNARemaining ? " flagged" : ""));
        state->gSkipRemaining = true;  // as a group that was left in the middle does
        if (mNext < mCodes.size()) pipe->NextAction(mCodes[mNext++]);
        pipe->EndElement(*this);
    }

  private:
    std::string mName;
    std::vector<std::string>& mPerformed;
    std::vector<int32_t> mCodes;
    std::size_t mNext = 0;
};

class ExecutionPipeTest : public testing::Test {
  protected:
    SequenceEnd Run(const std::vector<std::vector<int32_t>>& codes, ExecutionHooks hooks = {}) {
        std::vector<std::shared_ptr<ITestElement>> elements;
        for (const auto& ofElement : codes)
            elements.push_back(std::make_shared<CodeElement>(
                std::string(1, static_cast<char>('a' + elements.size())), performed, ofElement));
        return RunSequence(elements,
                           std::make_shared<ExecutionPipe>(std::make_shared<MtiList>(),
                                                           std::make_shared<SelectedStandards>(), hooks));
    }

    std::vector<std::string> performed;
};

TEST_F(ExecutionPipeTest, ElementsRunInOrderAndSkipGoesOn) {
    EXPECT_EQ(Run({{kGoNext}, {kGoSkip}, {kGoNext}}), SequenceEnd::kFinished);
    EXPECT_THAT(performed, ElementsAre("a", "b", "c"));
}

TEST_F(ExecutionPipeTest, PreviousGoesBackOneElement) {
    EXPECT_EQ(Run({{kGoNext, kGoNext}, {kGoPrevious, kGoNext}}), SequenceEnd::kFinished);
    EXPECT_THAT(performed, ElementsAre("a", "b", "a", "b"));
}

TEST_F(ExecutionPipeTest, PreviousPassesAnElementThatLeavesNoCode) {
    EXPECT_EQ(Run({{kGoNext, kGoNext}, {}, {kGoPrevious, kGoNext}}), SequenceEnd::kFinished);
    EXPECT_THAT(performed, ElementsAre("a", "b", "c", "b", "a", "b", "c"));
}

TEST_F(ExecutionPipeTest, PreviousOntoAFirstElementThatLeavesNoCodeEndsTheSequence) {
    EXPECT_EQ(Run({{}, {kGoPrevious}, {kGoNext}}), SequenceEnd::kLeftBackwards);
    EXPECT_THAT(performed, ElementsAre("a", "b", "a"));
}

TEST_F(ExecutionPipeTest, PreviousOnTheFirstElementEndsTheSequence) {
    EXPECT_EQ(Run({{kGoPrevious}, {kGoNext}}), SequenceEnd::kLeftBackwards);
    EXPECT_THAT(performed, ElementsAre("a"));
}

TEST_F(ExecutionPipeTest, AbortEndsTheSequence) {
    EXPECT_EQ(Run({{kGoNext}, {kGoAbort}, {kGoNext}}), SequenceEnd::kAborted);
    EXPECT_THAT(performed, ElementsAre("a", "b"));
}

TEST_F(ExecutionPipeTest, NothingBeginsOnceTheRunHasToEnd) {
    std::vector<std::string> seen;
    ExecutionHooks hooks;
    hooks.stopped = [&] { return performed.size() == 2; };
    hooks.begins = [&](ITestElement&) { seen.push_back("begins"); };
    hooks.ended = [&](ITestElement&) { seen.push_back("ended"); };
    EXPECT_EQ(Run({{}, {}, {}}, hooks), SequenceEnd::kStopped);
    EXPECT_THAT(performed, ElementsAre("a", "b"));
    EXPECT_THAT(seen, ElementsAre("begins", "ended", "begins", "ended"));

    ExecutionPipe pipe(nullptr, nullptr, {[] { return true; }, {}, {}});
    test::FakeElement element;
    EXPECT_FALSE(pipe.BeginElement(element));
}

TEST_F(ExecutionPipeTest, NoElementAtAllIsAFinishedSequence) {
    EXPECT_EQ(Run({}), SequenceEnd::kFinished);
}

}  // namespace
}  // namespace vorex::host_test

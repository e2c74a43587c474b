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

TEST_F(ExecutionPipeTest, TheCodeOfAnElementDecidesWhatComesNext) {
    struct Case {
        std::vector<std::vector<int32_t>> codes;  ///< of each element, one for each time that it is performed
        SequenceEnd end;
        const char* performed;
    };
    const Case cases[] = {
        {{}, SequenceEnd::kFinished, ""},
        {{{kGoNext}, {kGoSkip}, {kGoNext}}, SequenceEnd::kFinished, "abc"},
        {{{kGoNext, kGoNext}, {kGoPrevious, kGoNext}}, SequenceEnd::kFinished, "abab"},
        // Previous passes an element that leaves no code; onto the first one it ends the sequence.
        {{{kGoNext, kGoNext}, {}, {kGoPrevious, kGoNext}}, SequenceEnd::kFinished, "abcbabc"},
        {{{}, {kGoPrevious}, {kGoNext}}, SequenceEnd::kLeftBackwards, "aba"},
        {{{kGoPrevious}, {kGoNext}}, SequenceEnd::kLeftBackwards, "a"},
        {{{kGoNext}, {kGoAbort}, {kGoNext}}, SequenceEnd::kAborted, "ab"},
    };
    for (const Case& c : cases) {
        performed.clear();
        EXPECT_EQ(Run(c.codes), c.end) << c.performed;
        std::string all;
        for (const std::string& name : performed) all += name;
        EXPECT_EQ(all, c.performed);
    }
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

}  // namespace
}  // namespace vorex::host_test

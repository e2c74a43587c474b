#include "execution/test_mqsa.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "guide/test_guide_form.h"
#include "host/execution_pipe.h"
#include "host/headless_platform.h"
#include "host/reference_host.h"
#include "library.h"

namespace vorex::test {
namespace {

/// Does one thing with the open guide; lets time pass when that cannot be done.
class Person : public IHeadlessOperator {
  public:
    explicit Person(std::function<bool(FZRD47500TestGuide&)> act) : mAct(std::move(act)) {}
    bool OnIdle(IModalWindow& window) override {
        auto& guide = dynamic_cast<FZRD47500TestGuide&>(window);
        return mAct(guide);
    }
    bool Confirm(std::string_view /*question*/) override { return true; }

  private:
    std::function<bool(FZRD47500TestGuide&)> mAct;
};

class TestMqsa : public ::testing::Test {
  protected:
    void SetUp() override {
        ReferenceHostOptions options;
        options.platform = platform;
        InstallLibrary(MakeReferenceHost(options));
        element = CTestMQSA::Create();
        element->Initialize(nullptr, kPlugInId, kMqsaSurvey);
    }
    void TearDown() override {
        element.reset();
        InstallServices({});
    }
    int32_t Perform(const std::function<bool(FZRD47500TestGuide&)>& act) {
        Person person(act);
        platform->Operator(&person);
        const auto pipe = std::make_shared<ExecutionPipe>(std::make_shared<MtiList>(),
                                                          std::make_shared<SelectedStandards>());
        element->Perform(pipe);
        platform->Operator(nullptr);
        return pipe->NextAction();
    }

    std::shared_ptr<HeadlessPlatform> platform = std::make_shared<HeadlessPlatform>();
    std::shared_ptr<CTestMQSA> element;
};

TEST_F(TestMqsa, ASurveyCannotBeStartedAndCanBeLeft) {
    bool start = true;
    bool next = false;
    std::vector<std::string> lines;
    const int32_t code = Perform([&](FZRD47500TestGuide& guide) {
        start = guide.Button(guide_button::kStart)->enabled || guide.PressButton(guide_button::kStart);
        next = guide.Button(guide_button::kNext)->enabled;
        lines = guide.InfoLines();
        return guide.PressButton(guide_button::kNext);
    });
    EXPECT_FALSE(start);
    EXPECT_TRUE(next);
    EXPECT_EQ(lines, std::vector<std::string>{"Please select Pass, Fail or NA."});
    EXPECT_EQ(code, kGoNext);
    EXPECT_TRUE(element->Result());
}

TEST_F(TestMqsa, HowTheGuideIsLeftDecidesWhatIsKept) {
    const struct {
        int32_t button;
        int32_t code;
        bool kept;
        int32_t status;
    } cases[] = {
        {guide_button::kNext, kGoNext, true, kNotTested},
        {guide_button::kPrevious, kGoPrevious, true, kNotTested},
        {guide_button::kNa, kGoNext, true, kNotApplicable},
        {guide_button::kSkip, kGoSkip, false, kNotTested},
        {guide_button::kAbort, kGoAbort, false, kNotTested},
    };
    for (const auto& c : cases) {
        SetUp();
        const int32_t code = Perform([&](FZRD47500TestGuide& guide) { return guide.PressButton(c.button); });
        EXPECT_EQ(code, c.code) << c.button;
        ASSERT_EQ(element->Result() != nullptr, c.kept) << c.button;
        EXPECT_EQ(c.kept ? element->Result()->Status() : kNotTested, c.status) << c.button;
    }
}

TEST_F(TestMqsa, OutcomesOutliveADiscardedResult) {
    element->TakeOutcomes({.kVpL36 = kFailed});
    Perform([](FZRD47500TestGuide& guide) { return guide.PressButton(guide_button::kSkip); });
    ASSERT_FALSE(element->Result());
    element->TakeOutcomes({.Dose80 = kPassed});
    const StatusCells expected{.kVpL36 = kFailed, .Dose80 = kPassed};
    EXPECT_EQ(element->Survey()->Cells(), expected);
}

TEST_F(TestMqsa, TheWordsOfACommentAreApartFromItsLogWhileTheGuideIsOpen) {
    element->Survey()->Comment("my words[¤]override[¤]mAs of exposure 1");
    std::string words;
    Perform([&](FZRD47500TestGuide& guide) {
        words = element->Survey()->Comment();
        return guide.PressButton(guide_button::kNext);
    });
    EXPECT_EQ(words, "my words");
    const auto config = std::dynamic_pointer_cast<CConfigMQSA>(element->Configuration());
    EXPECT_EQ(config->PrintTheComment, "mAs of exposure 1");
}

}  // namespace
}  // namespace vorex::test

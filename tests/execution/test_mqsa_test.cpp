#include "execution/test_mqsa.h"

#include "execution/execution_fixture.h"

namespace vorex::test {
namespace {

class TestMqsaTest : public ExecutionTest {
  protected:
    TestMqsaTest() { element->Initialize(nullptr, kPlugInId, kMqsaSurvey); }

    std::shared_ptr<CTestMQSA> element = CTestMQSA::Create();
};

TEST_F(TestMqsaTest, ASurveyCannotBeStartedAndCanBeLeft) {
    Perform(*element, {Step([](FZRD47500TestGuide& guide) {
                           EXPECT_FALSE(guide.Button(guide_button::kStart)->enabled);
                           EXPECT_FALSE(guide.PressButton(guide_button::kStart));
                           EXPECT_EQ(guide.InfoLines(),
                                     std::vector<std::string>{"Please select Pass, Fail or NA."});
                       }),
                       Press(guide_button::kNext)});
    EXPECT_EQ(pipe->NextAction(), kGoNext);
    EXPECT_TRUE(element->Result());
}

TEST_F(TestMqsaTest, PreviousLeavesTheSurveyAsItIs) {
    Perform(*element, {Press(guide_button::kPrevious)});
    EXPECT_EQ(pipe->NextAction(), kGoPrevious);
    EXPECT_TRUE(element->Result());
}

TEST_F(TestMqsaTest, OutcomesOutliveADiscardedResult) {
    element->TakeOutcomes({.kVpL36 = kFailed});
    Perform(*element, {Press(guide_button::kSkip)});
    EXPECT_EQ(pipe->NextAction(), kGoSkip);
    ASSERT_FALSE(element->Result());
    element->TakeOutcomes({.Dose80 = kPassed});
    const StatusCells expected{.kVpL36 = kFailed, .Dose80 = kPassed};
    EXPECT_EQ(element->Survey()->Cells(), expected);
}

TEST_F(TestMqsaTest, TheWordsOfACommentAreApartFromItsLogWhileTheGuideIsOpen) {
    element->Survey()->Comment("my words[¤]override[¤]mAs of exposure 1");
    Perform(*element,
            {Step([&](FZRD47500TestGuide&) { EXPECT_EQ(element->Survey()->Comment(), "my words"); })});
    const auto config = std::dynamic_pointer_cast<CConfigMQSA>(element->Configuration());
    EXPECT_EQ(config->PrintTheComment, "mAs of exposure 1");
}

}  // namespace
}  // namespace vorex::test

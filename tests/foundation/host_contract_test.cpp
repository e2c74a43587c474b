#include "foundation/host_contract.h"

#include <algorithm>

#include "config/config_common.h"
#include "guide/test_guide_form.h"
#include "host/execution_pipe.h"
#include "support/fake_detector.h"
#include "support/fake_platform.h"
#include "support/library_test.h"
#include "support/recording_report.h"

namespace vorex::test {
namespace {

using Calls = std::vector<std::string>;

/// An operator who takes the exposures of a test, if it has any, and continues.
class StartAndNext : public FakePlatform {
  public:
    ModalEnd ShowModal(IModalWindow& guide) override {
        guide.Visible(true);
        guide.PressButton(guide_button::kStart);
        EXPECT_TRUE(guide.PressButton(guide_button::kNext));
        EXPECT_FALSE(guide.Visible());
        return ModalEnd::kHidden;
    }
};

class ElementLife : public LibraryTest, public ::testing::WithParamInterface<int32_t> {
  protected:
    ElementLife() {
        room->onPoll = [this](DetectorEvents& events) {
            events.VTI_DataReady.Raise({"80", "81", "79", "100", "1000", "100", "0", "0", "0", "3"});
            room->exposureDone = true;
        };
        ReferenceHostOptions options;
        options.platform = std::make_shared<StartAndNext>();
        options.createDetectorService = [this] { return std::make_shared<FakeDetector>(room); };
        options.createDetectorLink = [this] { return std::make_shared<FakeLink>(room); };
        InstallReferenceHost(options);
    }

    std::shared_ptr<FakeInstruments> room = std::make_shared<FakeInstruments>();
    std::shared_ptr<OutputDocument> document = std::make_shared<OutputDocument>();
};

INSTANTIATE_TEST_SUITE_P(AllTests, ElementLife, ::testing::ValuesIn([] {
                             std::vector<int32_t> tests(std::begin(kMeasuringTests),
                                                        std::end(kMeasuringTests));
                             tests.push_back(kMqsaSurvey);
                             return tests;
                         }()),
                         ::testing::PrintToStringParamName());

/// The whole life of an element, from its creation to `Terminate`. The helper, the fixture and the
/// instruments check that each call is in order and that nothing is left.
TEST_P(ElementLife, EachCallComesInOrderAndNothingIsLeft) {
    const bool measures = GetParam() != kMqsaSurvey;
    Calls begun, ended;
    const auto pipe = std::make_shared<ExecutionPipe>(
        std::make_shared<MtiList>(), std::make_shared<SelectedStandards>(),
        ExecutionHooks{{},
                       [&](ITestElement& element) { begun.push_back(std::to_string(element.TestID())); },
                       [&](ITestElement& element) { ended.push_back(std::to_string(element.TestID())); }});
    auto element = CreateTestElement(GetParam());
    element->Perform(pipe);
    EXPECT_EQ(begun, Calls{std::to_string(GetParam())});
    EXPECT_EQ(ended, begun);
    ASSERT_TRUE(element->Result());
    if (measures) {
        EXPECT_EQ(element->Result()->Status(), kPassed);
        EXPECT_EQ(room->calls.back(), "Disconnect");
        std::string polls;
        for (const std::string& call : room->calls)
            if (call.starts_with("Armed") || call.starts_with("Poll")) polls += call.back();
        EXPECT_TRUE(polls.starts_with("1") && polls.ends_with("0")) << "polled while armed: " << polls;
    }
    const auto node = element->Save(document, 0);
    element->Terminate();
    EXPECT_EQ(helpers.calls,
              (Calls{"1 Configuration", "1 Limits", "1 Initialize", "1 Result", "1 Save", "1 Terminate"}));
    element.reset();
    EXPECT_EQ(live.Alive(), Calls{}) << "of the element that was performed";
    EXPECT_GE(live.Count(), measures ? 5U : 4U) << "helper, configuration, limits, result, and instruments";

    helpers = {};
    element = LoadTestElement(node, nullptr);
    RecordingReport report;
    element->PrintReport(&report, nullptr);
    auto clone = element->Clone();
    clone->UpdateReferences();
    EXPECT_EQ(clone->TestID(), GetParam());
    EXPECT_FALSE(clone->Result());
    clone->Terminate();
    element->Terminate();
    EXPECT_EQ(helpers.calls, (Calls{"1 Configuration", "1 Limits", "1 Initialize", "1 Load TestElement",
                                    "1 Result", "1 Load ResultItem", "1 PrintReport", "2 Configuration",
                                    "2 Limits", "1 Clone", "2 Terminate", "3 Terminate", "1 Terminate"}));
}

TEST_F(ElementLife, AGroupLivesAndEndsWithAllTestsInIt) {
    auto group = CreateTestElement(kGroupId);
    const auto container = std::dynamic_pointer_cast<ITestContainer>(group);
    for (int32_t test : kMeasuringTests) container->Add(CreateTestElement(test), nullptr, kAddAtEnd);
    container->Add(CreateTestElement(kMqsaSurvey), nullptr, kAddAtEnd);
    group->Perform(
        std::make_shared<ExecutionPipe>(std::make_shared<MtiList>(), std::make_shared<SelectedStandards>()));
    EXPECT_EQ(group->Result()->Status(), kPassed);
    auto loaded = LoadTestElement(group->Save(document, 0), nullptr);
    auto clone = loaded->Clone();
    clone->UpdateReferences();
    EXPECT_EQ(std::dynamic_pointer_cast<ITestContainer>(clone)->Count(), 9);
    for (const auto& each : {group, loaded, clone}) each->Terminate();
    EXPECT_EQ(std::count(helpers.calls.begin(), helpers.calls.end(), "1 Terminate"), 1);
}

}  // namespace
}  // namespace vorex::test

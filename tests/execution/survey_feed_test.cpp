#include "execution/survey_feed.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "execution/test_group.h"
#include "files/element_file.h"
#include "foundation/sequence_state.h"
#include "host/element_base.h"
#include "host/host_fixture.h"
#include "mqsa/result_mqsa.h"
#include "results/result_common.h"
#include "support/recording_report.h"

namespace vorex::host_test {
namespace {

using Elements = std::vector<std::shared_ptr<ITestElement>>;

void ForEach(const Elements& elements, const std::function<void(ITestElement&)>& visit) {
    for (const auto& element : elements) {
        visit(*element);
        if (const auto group = std::dynamic_pointer_cast<ITestContainer>(element))
            ForEach(group->NewEnum(), visit);
    }
}

/// A file with what it comes to: judged, printed and saved.
class OpenFile {
  public:
    explicit OpenFile(const std::string& text) : mFile(ElementFile::FromText(text, "file")) {}

    void Judge() {
        const auto selected = mFile->Selected();
        ForEach(mFile->Elements(), [&](ITestElement& element) {
            if (const auto result = std::dynamic_pointer_cast<CResultCommon>(element.Result()))
                FeedSurveys(element, result->UpdateAllStatus(element, selected.get()));
        });
        ForEach(mFile->Elements(), [&](ITestElement& element) {
            if (const auto survey = std::dynamic_pointer_cast<CResultMQSA>(element.Result()))
                survey->UpdateStatus(element, selected.get());
        });
    }
    std::string Content() {
        test::RecordingReport report;
        report.options = kReportLimits | kReportComments;
        for (const auto& element : mFile->Elements()) element->PrintReport(&report, nullptr);
        return mFile->Text() + report.Rows();
    }

  private:
    std::unique_ptr<ElementFile> mFile;
};

std::string Survey(int id, const std::string& cells) {
    return "<TestElement PlugIn=\"ZRD47500\" TestID=\"1300\" ID=\"" + std::to_string(id) +
           "\"><PlugInData PlugIn=\"ZRD47500\"/><ResultItem><Status>1</Status>" + cells +
           "</ResultItem></TestElement>";
}
/// Test 900 with one stored exposure of a percentage error, and a limit of 5 for it.
std::string Voltage(int id, const std::string& error) {
    return "<TestElement PlugIn=\"ZRD47500\" TestID=\"900\" ID=\"" + std::to_string(id) +
           "\"><PlugInData PlugIn=\"ZRD47500\"><NumberOfExposures>1</NumberOfExposures></PlugInData>"
           "<ExpectedResult><Standard Name=\"Site\" Version=\"1\"><Limit Key=\"ER Percentage Error\">"
           "<High Value=\"5\"/></Limit></Standard></ExpectedResult>"
           "<ResultItem><Status>1</Status><Measurement Key=\"Import Waveform\"><Value Type=\"5\">0</Value>"
           "<Status>0</Status></Measurement><Measurement Key=\"ER Percentage Error\"><Value Type=\"1\">" +
           error + "</Value><Status>1</Status></Measurement></ResultItem></TestElement>";
}

// A file is judged, printed and saved like alone, whatever files are open or were open before.
TEST_F(HostTest, NoFileLeavesATraceInAnother) {
    const std::vector<std::string> texts = {
        Sequence(Survey(1, "<kVpL36>2</kVpL36><Dose80>2</Dose80><BQC79>2</BQC79>")),
        Sequence(Survey(1, "<kVpL36>1</kVpL36><Dose80>1</Dose80>")),
        Sequence(Test100(1)),
        Sequence(Group(1, Voltage(2, "9") + Survey(3, {}))),
        Sequence(Group(1, Voltage(2, "1") + Survey(3, "<Dose78>2</Dose78>")) + Group(4, Survey(5, {}))),
    };
    std::vector<std::string> alone;
    for (const std::string& text : texts) {
        OpenFile file(text);
        file.Judge();
        alone.push_back(file.Content());
    }
    EXPECT_NE(alone[3].find("<kVpL38>2"), std::string::npos) << "the test fails its survey";
    std::vector<std::size_t> order = {0, 1, 2, 3, 4};
    do {
        std::vector<std::unique_ptr<OpenFile>> open;
        for (std::size_t at : order) open.push_back(std::make_unique<OpenFile>(texts[at]));
        for (const auto& file : open) file->Judge();
        for (std::size_t i = 0; i < order.size(); ++i)
            ASSERT_EQ(open[i]->Content(), alone[order[i]])
                << "file " << order[i] << ", opened as number " << i;
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(HostTest, AllSurveysOfAGroupAreFedAlikeAlsoInFrontOfTheTest) {
    const auto file = ElementFile::FromText(
        Sequence(Group(1, Survey(2, {}) + Voltage(3, "9") + Survey(4, {})) + Group(5, Survey(6, {}))),
        "file");
    const auto cells = [&](int32_t id) {
        return std::dynamic_pointer_cast<CResultMQSA>(file->FindElement(id)->Result())->Cells();
    };
    FeedSurveys(*file->FindElement(3), {.kVpL36 = kFailed, .Dose80 = kPassed});
    const StatusCells fed{.kVpL36 = kFailed, .Dose80 = kPassed};
    EXPECT_EQ(cells(2), fed);
    EXPECT_EQ(cells(4), fed);
    EXPECT_EQ(cells(6), StatusCells());
    const auto survey = std::dynamic_pointer_cast<CResultMQSA>(file->FindElement(2)->Result());
    EXPECT_EQ(survey->Tables().preliminary[6][0], text::kFail) << "the tables agree with the cells";
}

TEST_F(HostTest, AnElementHasTheStateOfItsTree) {
    const auto first = ElementFile::FromText(Sequence(Group(1, Test100(2))), "first");
    const auto second = ElementFile::FromText(Sequence(Group(1, {}) + Test100(2)), "second");
    const auto test = first->FindElement(2);
    EXPECT_EQ(test->Sequence(), first->FindElement(1)->Sequence());
    EXPECT_NE(test->Sequence(), second->FindElement(2)->Sequence());
    EXPECT_EQ(second->FindElement(1)->Sequence(), second->FindElement(2)->Sequence());
    const auto group = std::dynamic_pointer_cast<ITestContainer>(first->FindElement(1));
    group->Remove(test);
    EXPECT_NE(test->Sequence(), first->FindElement(1)->Sequence()) << "on its own";
    std::dynamic_pointer_cast<ITestContainer>(second->FindElement(1))->Add(test, nullptr, kAddAtEnd);
    EXPECT_EQ(test->Sequence(), second->FindElement(2)->Sequence());
    EXPECT_NE(test->Clone()->Sequence(), test->Sequence());
}

TEST_F(HostTest, ARunBeginsWithClearedFlagsAndKeepsTheRoots) {
    const auto file = ElementFile::FromText(Sequence(Test100(1)), "file");
    const auto state = file->FindElement(1)->Sequence();
    state->gSkipRemaining = state->gNARemaining = state->gRunActive = state->gMenuOpen = true;
    state->watchFailures = 3;
    state->Reset();
    EXPECT_FALSE(state->gSkipRemaining || state->gNARemaining || state->gRunActive || state->gMenuOpen);
    EXPECT_EQ(state->watchFailures, 0);
    EXPECT_EQ(state->Roots(), file->Elements());
}

}  // namespace
}  // namespace vorex::host_test

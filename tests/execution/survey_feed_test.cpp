#include "execution/survey_feed.h"

#include "files/element_file.h"
#include "host/host_fixture.h"
#include "mqsa/result_mqsa.h"

namespace vorex::host_test {
namespace {

std::string Survey(int id) {
    return "<TestElement PlugIn=\"ZRD47500\" TestID=\"1300\" ID=\"" + std::to_string(id) +
           "\"><PlugInData PlugIn=\"ZRD47500\"/><ResultItem><Status>1</Status></ResultItem></TestElement>";
}
std::string Voltage(int id) {
    return "<TestElement PlugIn=\"ZRD47500\" TestID=\"900\" ID=\"" + std::to_string(id) +
           "\"><PlugInData "
           "PlugIn=\"ZRD47500\"><NumberOfExposures>1</NumberOfExposures></PlugInData></TestElement>";
}

TEST_F(HostTest, AllSurveysOfAGroupGetTheSameOutcomesEvenBeforeTheTest) {
    const auto file = ElementFile::FromText(
        Sequence(Group(1, Survey(2) + Voltage(3) + Survey(4)) + Group(5, Survey(6))), "file");
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

}  // namespace
}  // namespace vorex::host_test

#include "results/judging.h"

#include <tuple>

#include "foundation/vocabulary.h"
#include "host/execution_pipe.h"
#include "support/fake_element.h"
#include "support/library_test.h"

namespace vorex {
namespace {

using Values = std::vector<std::pair<std::string_view, const char*>>;

std::shared_ptr<MeasurementRow> Row(const Values& values) {
    auto row = std::make_shared<MeasurementRow>();
    for (const auto& [measurementKey, value] : values) {
        row->push_back(std::make_shared<CMeasurement>());
        row->back()->Initialize(measurementKey, "", "", kJudgedNumber);
        row->back()->Value(std::string(value));
    }
    return row;
}

/// The statuses of a row, a digit each.
std::string Statuses(const MeasurementRow& row) {
    std::string statuses;
    for (const auto& item : row) statuses += std::to_string(item->Status());
    return statuses;
}

class JudgingTest : public test::LibraryTest {
  protected:
    Judging For(int32_t testId) const { return {testId, config, limits, &selected}; }

    std::shared_ptr<CConfigCommon> config = std::make_shared<CConfigCommon>();
    std::shared_ptr<test::FakeLimits> limits = std::make_shared<test::FakeLimits>();
    SelectedStandards selected;
};

TEST_F(JudgingTest, ATestFailsWithAnyOfItsValuesAndWithAMark) {
    limits->AtMost("ER HVL", 3);
    for (const auto& [hvl, exposure, statuses] :
         {std::tuple{"3", "10", "11"}, {"3.1", "10", "21"}, {"3", "OL", "12"}, {"ul", "10", "21"}}) {
        const auto row = Row({{key::kHvl, hvl}, {key::kExposure, exposure}});
        const int32_t expected = std::string(statuses) == "11" ? kPassed : kFailed;
        EXPECT_EQ(For(kRadioRepro).JudgeExposure(*row, 1).status, expected) << hvl << exposure;
        EXPECT_EQ(Statuses(*row), statuses);
        for (const auto& item : *row) item->Status(kNotTested);
        EXPECT_EQ(For(kRadioRepro).JudgeAll(std::vector{row}).status, expected) << hvl << exposure;
        EXPECT_EQ(Statuses(*row), statuses);
    }
}

TEST_F(JudgingTest, AnExposureWithoutAReadingHasNoVerdict) {
    limits->AtMost("ER kVp Avg CV", 0.05);
    const std::vector rows = {Row({{key::kErKvpAvg, "0.06"}}), Row({{key::kErKvpAvg, "0.04"}}), Row({})};
    EXPECT_EQ(For(kRadioRepro).JudgeAll(rows).status, kPassed) << "the second row holds the statistics";
    EXPECT_EQ(limits->judged.size(), 1U);
    EXPECT_EQ(For(kRadioRepro).JudgeAll(std::vector{Row({}), rows[0]}).status, kFailed);
}

TEST_F(JudgingTest, OnlyTest900ReturnsOutcomesAndAllAreClearedForATestThatIsNotApplicable) {
    limits->AtMost("ER CV", 0.02);
    const std::vector rows = {Row({{key::kPercentError, "1"}, {key::kCv, "0.03"}})};
    for (const int32_t testId : kMeasuringTests) {
        SurveyOutcomes expected;
        if (testId == kMammoAccRepro) expected.kVpL36 = kFailed;
        if (testId == kMammoAccRepro) expected.kVpL38 = kPassed;
        if (testId == kMammoAccRepro) expected.kVpL39 = kFailed;
        EXPECT_EQ(For(testId).JudgeAll(rows).outcomes, expected) << testId;
        EXPECT_EQ(For(testId).JudgeExposure(*rows[0], 1).outcomes, SurveyOutcomes()) << testId;
    }
    const RowsVerdict none = Judging::NotApplicable();
    EXPECT_EQ(none.status, kNotApplicable);
    EXPECT_EQ(none.outcomes, (SurveyOutcomes{0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(JudgingTest, WithoutAConfigurationNoErrorOfTest200IsJudgedByLimits) {
    limits->AtMost("ER RA Percentage kVp Avg Error", 5);
    const auto row = Row({{key::kPercentKvpError, "9"}, {key::kPercentTimerError, "9"}});
    EXPECT_EQ(Judging(kRadioAccuracy, nullptr, limits, &selected).JudgeExposure(*row, 1).status, kPassed);
    EXPECT_EQ(Statuses(*row), "01") << "an error without a criterion keeps its status";
}

}  // namespace
}  // namespace vorex

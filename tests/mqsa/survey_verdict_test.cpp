#include "mqsa/survey_verdict.h"

#include "survey_fixture.h"

namespace vorex {
namespace {

class SurveyVerdict : public test::SurveyTest {
  protected:
    /// An optical density of 1.5 at each thickness and in each mode.
    void ExposeAll() {
        for (const GridId grid : {GridId::kThickness, GridId::kImageMode})
            for (int32_t row = 4; row <= 6; ++row) Cell(grid, row, 7) = "1.5";
    }
};

TEST_F(SurveyVerdict, EachFigureDecidesAtJustBelowAndJustAboveIt) {
    struct Case {
        GridId grid;
        int32_t row, column;
        const char *passes, *fails;
        std::size_t preliminary;  ///< row, 99 for none
        std::size_t summary;
        const char* failed;
    };
    constexpr std::size_t kNone = 99;
    const Case cases[] = {
        {GridId::kLightField, 3, 1, "200", "200.01", 1, 2, "Fail/Fail"},
        {GridId::kLightField, 7, 1, "200", "201", 1, 2, "Fail/Fail"},
        {GridId::kReceptorEdge, 5, 1, "200%", "200.1%", 1, 3, "Fail/Fail"},
        {GridId::kAlignment, 1, 1, "200%", "200,1%", 1, 4, "Fail/Fail"},
        {GridId::kResolution, 7, 2, "13", "12", 2, 6, "Fail/Fail"},
        {GridId::kResolution, 7, 5, "13 lp", "12.99", 2, 7, "Fail/Fail"},
        {GridId::kResolution, 8, 5, "11", "10.9", 2, 7, "Fail/Fail"},
        {GridId::kResolution, 8, 2, "11", "abc", 2, 6, "Fail/Fail"},
        {GridId::kSmallCassettes, 6, 3, "0.05", "0.06", 4, 9, "Fail/Fail"},
        {GridId::kLargeCassettes, 6, 3, "0,05", "0,051", 4, 13, "Fail/Fail"},
        {GridId::kSmallCassettes, 34, 3, "0.3", "0.31", 4, 13, "Fail/Fail"},
        {GridId::kLargeCassettes, 34, 3, "0.30", "0.301", 4, 13, "Fail/Fail"},
        {GridId::kArtifacts, 8, 5, "Pass", "FALSE", 5, 15, "Fail/Fail"},
        {GridId::kArtifacts, 11, 1, "0", "False", 5, 15, "Fail/Fail"},
        {GridId::kImageQuality, 7, 2, "1.2", "1.19", kNone, 17, "Fail/Fail"},
        {GridId::kImageQuality, 13, 2, "4", "3.9", kNone, 17, "Fail/Fail"},
        {GridId::kImageQuality, 16, 2, "3", "2.5", kNone, 17, "Fail/Fail"},
        {GridId::kImageQuality, 19, 2, "3", "2", kNone, 17, "Fail/Fail"},
        {GridId::kViewbox, 3, 4, "3000", "2999", 12, 31, "Fail/NA"},
        {GridId::kViewbox, 4, 1, "50", "50.1", 12, 32, "Fail/NA"},
        {GridId::kViewbox, 5, 4, "50", "51", 12, 32, "Fail/NA"},
    };
    for (const Case& c : cases) {
        std::string& cell = Cell(c.grid, c.row, c.column);
        const std::string before = cell;
        for (const char* text : {c.passes, c.fails}) {
            cell = text;
            const std::string tail = c.failed + 4;
            const std::string expected =
                text == c.passes ? "Pass" + (tail == "/NA" ? tail : "/Pass") : c.failed;
            const std::string place = CellAddress(c.grid, c.row, c.column) + "=" + text;
            if (c.preliminary != kNone) {
                EXPECT_EQ(Preliminary(c.preliminary), expected) << place;
            }
            EXPECT_EQ(Summary(c.summary), expected) << place;
        }
        cell = before;
    }
}

TEST_F(SurveyVerdict, OnlyTheFirstColumnOfTheCollimationPageIsJudged) {
    Cell(GridId::kLightField, 3, 2) = "300%";
    Cell(GridId::kReceptorEdge, 1, 5) = "300%";
    EXPECT_EQ(Preliminary(1), "Pass/Pass");
}

TEST_F(SurveyVerdict, TrackingJudgesTheMqsaColumnOnlyAndAGapInItCountsAsZero) {
    EXPECT_EQ(Preliminary(3), "Pass/Pass");  // nothing was exposed
    ExposeAll();
    Cell(GridId::kThickness, 7, 7) = "1.2";
    survey->GridChanged(GridId::kThickness);
    EXPECT_EQ(Preliminary(3), "Pass/Pass");
    EXPECT_EQ(Summary(10), "Pass/Pass");
    Cell(GridId::kThickness, 7, 7) = "1.19";
    EXPECT_EQ(Preliminary(3), "Pass/Fail");
    EXPECT_EQ(Summary(10), "Fail/Fail");
    Cell(GridId::kThickness, 7, 7).clear();
    Cell(GridId::kImageMode, 5, 7).clear();
    EXPECT_EQ(Preliminary(3), "Pass/Fail");  // an empty exposure reads 0
    EXPECT_EQ(Summary(10), "Pass/Pass");     // this row leaves it out
}

TEST_F(SurveyVerdict, TheMeasuredRangeMustBeInTheAllowedOne) {
    ExposeAll();
    const std::tuple<int32_t, const char*, const char*> cases[] = {{5, "  1.5", "Pass/Pass"},
                                                                   {5, "  1.51", "Pass/Fail"},
                                                                   {5, "  1.2", "Pass/Pass"},
                                                                   {7, " 1.5", "Pass/Pass"},
                                                                   {7, " 1.49", "Pass/Fail"}};
    survey->GridChanged(GridId::kThickness);
    for (const auto& [column, text, verdict] : cases) {
        Cell(GridId::kThickness, 9, column) = text;
        EXPECT_EQ(Preliminary(3), verdict) << column << text;
    }
}

TEST_F(SurveyVerdict, DensityStepsAreRoundedBeforeTheyAreJudged) {
    struct Case {
        const char* step;     ///< percent change of row 10, row 9 has 0
        const char* density;  ///< density change of row 10, row 9 has 0
        const char* verdict;
    };
    const Case cases[] = {
        {"12%", "", "Pass/Pass"},      {"11.5%", "", "Pass/Pass"},  {"11.4%", "", "Fail/Pass"},
        {"15.4%", "", "Pass/Pass"},    {"15.5%", "", "Fail/Pass"},  {"14,9", "", "Pass/Pass"},
        {"13%", "0.4", "Pass/Pass"},   {"13%", "0.5", "Pass/Pass"}, {"13%", "0.51", "Fail/Pass"},
        {"-13%", "-0.6", "Fail/Pass"},
    };
    Cell(GridId::kDensityControl, 9, 4) = "0%";
    Cell(GridId::kDensityControl, 9, 5) = "0";
    for (const Case& c : cases) {
        Cell(GridId::kDensityControl, 10, 4) = c.step;
        Cell(GridId::kDensityControl, 10, 5) = c.density;
        EXPECT_EQ(Preliminary(3), c.verdict) << c.step << " " << c.density;
        EXPECT_EQ(Summary(11), std::string(c.verdict).substr(0, 4) + "/NA") << c.step << " " << c.density;
    }
}

TEST_F(SurveyVerdict, AGapTowardsTheNormalStepEndsTheEvaluationAtItsRow) {
    Cell(GridId::kDensityControl, 7, 4) = "-26%";
    Cell(GridId::kSmallCassettes, 34, 3) = "0.9";
    Cell(GridId::kResolution, 7, 2) = "1";
    survey->Cells({.kVpL36 = kFailed});
    EXPECT_EQ(Preliminary(4), "Pass/Pass");  // not reached
    EXPECT_EQ(Preliminary(2), "Fail/Fail");
    EXPECT_EQ(Preliminary(7), "Fail/Fail");  // outcomes of other tests are copied anyway
    EXPECT_NE(survey->Fault().find("AEC page, density control step -2"), std::string::npos)
        << survey->Fault();
    EXPECT_NE(survey->Fault().find("DensityControlFunction(8,4)"), std::string::npos) << survey->Fault();
    Cell(GridId::kDensityControl, 8, 4) = "-13%";
    Cell(GridId::kDensityControl, 9, 4) = "0%";
    Cell(GridId::kDensityControl, 12, 4) = "40%";  // beyond the normal step a gap is ignored
    EXPECT_EQ(Preliminary(4), "Fail/Fail");
    EXPECT_EQ(survey->Fault(), "");
}

TEST_F(SurveyVerdict, RowsOfTheAcrColumnReadNotApplicableInTheOtherWhateverAFileHas) {
    SurveyTables tables;
    for (VerdictRow& row : tables.summary) row.fill(std::string(text::kPass));
    Cell(GridId::kViewbox, 3, 2) = "2999";
    EvaluateSurvey(survey->Record(), survey->Statuses(), {}, tables);
    EXPECT_EQ(Row(tables.summary, 11), "Pass/NA");
    EXPECT_EQ(Row(tables.summary, 31), "Fail/NA");
    EXPECT_EQ(Row(tables.summary, 32), "Pass/NA");
}

TEST_F(SurveyVerdict, OutcomesOfTheAutomaticTestsFillTheirRows) {
    const struct {
        int32_t StatusCells::*cell;
        bool summary;
        std::size_t row;
        const char* failed;
    } cases[] = {
        {&StatusCells::kVpL36, false, 6, "Fail/Fail"}, {&StatusCells::kVpL36, false, 7, "Fail/Fail"},
        {&StatusCells::BQC79, false, 8, "Fail/NA"},    {&StatusCells::BQC69, false, 8, "NA/Fail"},
        {&StatusCells::Dose78, false, 9, "Fail/Fail"}, {&StatusCells::Dose80, false, 10, "Fail/Fail"},
        {&StatusCells::kVpL38, true, 22, "Fail/Fail"}, {&StatusCells::kVpL39, true, 23, "Fail/Fail"},
        {&StatusCells::BQC79, true, 25, "Fail/NA"},    {&StatusCells::BQC69, true, 25, "NA/Fail"},
        {&StatusCells::Dose80, true, 27, "Fail/Fail"}, {&StatusCells::Dose80, true, 28, "Fail/Fail"},
        {&StatusCells::Dose82, true, 29, "Fail/NA"},   {&StatusCells::Dose75, true, 29, "NA/Fail"},
    };
    for (const auto& c : cases) {
        StatusCells cells;
        survey->Cells(cells);
        EXPECT_EQ(c.summary ? Summary(c.row) : Preliminary(c.row), "NA/NA") << c.row;
        cells.*c.cell = kFailed;
        survey->Cells(cells);
        EXPECT_EQ(c.summary ? Summary(c.row) : Preliminary(c.row), c.failed) << c.row;
    }
    EXPECT_EQ(Preliminary(11), "Pass/Pass");  // has no source
}

TEST_F(SurveyVerdict, TheAssemblyRowFollowsItsThirteenAnswers) {
    EXPECT_EQ(Preliminary(0), "NA/NA");
    for (uint8_t row = 0; row < kAssemblyItemCount; ++row) survey->MQSAClickHandle(row, 4);
    EXPECT_EQ(Preliminary(0), "NA/NA");
    survey->MQSAClickHandle(12, 2);
    EXPECT_EQ(Preliminary(0), "Pass/Pass");
    survey->MQSAClickHandle(3, 3);
    EXPECT_EQ(Summary(0), "Fail/Fail");
}

TEST_F(SurveyVerdict, TheAnswersDecideTheOverallStatus) {
    survey->pUpdateMQSATestStatus();
    EXPECT_EQ(survey->Status(), kNotTested);
    AnswerAll(2);
    EXPECT_EQ(survey->Status(), kPassed);
    survey->MQSAClickHandle(20, 4);
    EXPECT_EQ(survey->Status(), kPassed);
    survey->MQSAClickHandle(48, 3);
    EXPECT_EQ(survey->Status(), kFailed);
    AnswerAll(4);
    EXPECT_EQ(survey->Status(), kNotApplicable);
    EXPECT_THROW(survey->MQSAClickHandle(49, 2), std::out_of_range);
}

TEST_F(SurveyVerdict, AFindingNamesCellFigureAndClause) {
    Cell(GridId::kDensityControl, 9, 4) = "0%";
    Cell(GridId::kDensityControl, 10, 4) = "17%";
    Cell(GridId::kViewbox, 3, 2) = "2999";
    SurveyTables tables;
    std::string findings;  // one for each cell, though it fails two rows
    for (const SurveyFinding& finding :
         EvaluateSurvey(survey->Record(), survey->Statuses(), {}, tables).findings)
        findings += finding.place + " " + finding.words + "\n";
    EXPECT_EQ(findings,
              "DensityControlFunction(9,4) change of mAs between density control steps: 17 from step 0 "
              "(normal) to step +1, "
              "expected below 16 % (ACR 1999, AEC system performance)\n"
              "Viewbox(3,2) viewbox luminance: 2999, expected at least 3000 cd/m2 (ACR 1999, viewbox "
              "measurements)\n");
}

}  // namespace
}  // namespace vorex

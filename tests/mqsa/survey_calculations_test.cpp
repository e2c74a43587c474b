#include "mqsa/survey_calculations.h"

#include "survey_fixture.h"

namespace vorex {
namespace {

using SurveyCalculations = test::SurveyTest;

/// Cells of a row, joined by "|".
std::string RowOf(const SurveyGrid& grid, int32_t row) {
    std::string cells;
    for (int32_t column = 0; column < grid.Columns(); ++column)
        cells += (column == 0 ? "" : "|") + grid.At(row, column);
    return cells;
}

TEST_F(SurveyCalculations, EdgesAreSummedAndGivenInPercentOfTheDistance) {
    const std::tuple<const char*, const char*, const char*, const char*, const char*> cases[] = {
        {"650", "2", "1.5", "3.5", "0.54%"},   // 0.53846
        {"650", "2", "", "", ""},              // a gap
        {"650", "2,5", "1", "3.5", "0.54%"},   // a decimal comma
        {"650", " ", "13", "13", "2%"},        // a blank reads 0
        {"800", "0.5", "0.5", "1", "0.12%"},   // 0.125 goes to the even digit
        {"650", "-3", "abc", "-3", "-0.46%"},  // letters read 0
        {"0", "2", "1.5", "", ""},             // no distance clears
    };
    for (const auto& [sid, left, right, sum, percent] : cases) {
        SurveyGrid light = survey->Record().Grid(GridId::kLightField);
        SurveyGrid receptor = survey->Record().Grid(GridId::kReceptorEdge);
        SurveyGrid alignment = survey->Record().Grid(GridId::kAlignment);
        light.At(6, 5) = left;
        light.At(7, 5) = right;
        light.At(8, 5) = "old";
        CalculateCollimation(sid, light, receptor, alignment);
        EXPECT_EQ(light.At(8, 5), sum) << sid << " " << left << " " << right;
        EXPECT_EQ(light.At(9, 5), percent) << sid << " " << left << " " << right;
    }
}

TEST_F(SurveyCalculations, AReceptorDeviationKeepsItsSignAndANegativeDistanceChangesNothing) {
    SurveyGrid& receptor = survey->Record().Grid(GridId::kReceptorEdge);
    SurveyGrid& alignment = survey->Record().Grid(GridId::kAlignment);
    SurveyGrid& light = survey->Record().Grid(GridId::kLightField);
    receptor.At(4, 3) = "-6.5";
    alignment.At(0, 2) = "5";
    for (const int32_t column : {1, 5}) receptor.At(0, column) = "13";
    for (const int32_t column : {1, 5}) light.At(2, column) = light.At(3, column) = "1";
    CalculateCollimation("650", light, receptor, alignment);
    EXPECT_EQ(receptor.At(5, 3), "-1%");
    for (const int32_t column : {1, 5}) EXPECT_EQ(receptor.At(1, column), "2%") << column;
    for (const int32_t column : {1, 5}) EXPECT_EQ(light.At(4, column), "2") << column;
    EXPECT_EQ(receptor.At(1, 0), "% of SID (retain sign)");
    EXPECT_EQ(alignment.At(1, 2), "0.77%");  // 0.76923
    CalculateCollimation("-1", light, receptor, alignment);
    EXPECT_EQ(receptor.At(5, 3), "-1%");
    CalculateCollimation("", light, receptor, alignment);
    EXPECT_EQ(receptor.At(5, 3), "");
}

TEST_F(SurveyCalculations, TrackingHasMeanMeasuredAndAllowedRange) {
    SurveyGrid& thickness = survey->Record().Grid(GridId::kThickness);
    SurveyGrid& modes = survey->Record().Grid(GridId::kImageMode);
    thickness.At(4, 7) = "1.50";
    thickness.At(5, 7) = "1.62";
    thickness.At(6, 7) = "1.5";
    modes.At(4, 7) = "1.3";
    modes.At(5, 7) = "1.4";
    modes.At(6, 7) = "1.5";
    CalculateTracking(thickness, modes);
    // 4.62 / 3; of equal numbers the first; the mean and 0.3 on either side.
    EXPECT_EQ(RowOf(thickness, 9), " 1.54| 1.54|  1.50|To| 1.62|  1.24|To| 1.84");
    // The empty 8 cm exposure counts as 0: (4.62 + 4.2) / 7 = 1.26.
    EXPECT_EQ(RowOf(modes, 10), " 1.26| 1.26|  1.3|To| 1.62|  0.96|To| 1.56");
    modes.At(5, 7).clear();
    thickness.At(4, 7).clear();
    CalculateTracking(thickness, modes);
    for (const std::string& row : {RowOf(thickness, 9), RowOf(modes, 10)}) EXPECT_EQ(row, " | ||To|||To|");
}

TEST_F(SurveyCalculations, DensityStepsAreRelativeToTheNormalStep) {
    SurveyGrid& grid = survey->Record().Grid(GridId::kDensityControl);
    grid.At(9, 2) = "80";
    grid.At(9, 3) = "1.5";
    grid.At(5, 2) = "50";
    grid.At(13, 2) = "120,5";
    grid.At(13, 3) = "1.655";
    CalculateDensityControl(grid);
    EXPECT_EQ(grid.At(5, 4), "-37.5%");
    EXPECT_EQ(grid.At(9, 4), "0%");
    EXPECT_EQ(grid.At(13, 4), "50.62%");  // 50.625 goes to the even digit
    EXPECT_EQ(grid.At(13, 5), "0.16");    // 0.155: the even digit
    EXPECT_EQ(grid.At(6, 4), "");
    grid.At(9, 2) = "0";
    CalculateDensityControl(grid);
    EXPECT_EQ(grid.At(5, 4), "-37.5%");  // no normal mAs: the cell stays
    grid.At(9, 2).clear();
    CalculateDensityControl(grid);
    EXPECT_EQ(grid.At(5, 4), "");
}

TEST_F(SurveyCalculations, ControlCassetteReadingsGiveMeanAndDeviation) {
    struct Case {
        const char* readings[3];
        const char *mean, *deviation;
    };
    const Case cases[] = {
        {{"1.60", "1.62", "1.64"}, "1.62", "0.02"},  // root of (0.0004 + 0.0004) / 2
        {{"1.60", "1.62", ""}, "1.61", "1.61"},      // the gap counts as 0: root of 2.5923
        {{"1.60", "", ""}, "1.6", "kept"},           // one reading has no deviation
        {{"0", "0", "0"}, "", ""},                   // zeros are no readings
        {{"", "", ""}, "", ""},
    };
    for (const Case& c : cases) {
        SurveyGrid grid = survey->Record().Grid(GridId::kSmallCassettes);
        for (int32_t i = 0; i < 3; ++i) grid.At(2 + i, 3) = c.readings[i];
        grid.At(6, 3) = "kept";
        CalculateCassettes(grid);
        EXPECT_EQ(grid.At(5, 3), c.mean) << c.readings[1];
        EXPECT_EQ(grid.At(6, 3), c.deviation) << c.readings[1];
    }
}

TEST_F(SurveyCalculations, OtherCassettesGiveMeanExtremesAndRange) {
    SurveyGrid& grid = survey->Record().Grid(GridId::kLargeCassettes);
    grid.At(8, 3) = "1.5";
    grid.At(20, 3) = "1.65";
    grid.At(30, 3) = "1.50";
    CalculateCassettes(grid);
    EXPECT_EQ(grid.At(31, 3), "1.55");
    EXPECT_EQ(grid.At(32, 3), "1.5");
    EXPECT_EQ(grid.At(33, 3), "1.65");
    EXPECT_EQ(grid.At(34, 3), "0.15");  // without the noise of floating point
    for (const int32_t row : {8, 20, 30}) grid.At(row, 3).clear();
    CalculateCassettes(grid);
    for (const int32_t row : {31, 32, 33, 34}) EXPECT_EQ(grid.At(row, 3), "") << row;
}

TEST_F(SurveyCalculations, ImageQualityShowsTheChangeFromThePreviousFilm) {
    SurveyGrid& grid = survey->Record().Grid(GridId::kImageQuality);
    const struct {
        int32_t row;
        const char *previous, *current;
    } typed[] = {{4, "80", "84"},  {7, "1.45", "1.5"}, {9, "1.6", "1.62"}, {10, "1.2", "1.25"},
                 {14, "5", "4.5"}, {17, "3.5", "4"},   {20, "4", ""}};
    for (const auto& row : typed) {
        grid.At(row.row, 1) = row.previous;
        grid.At(row.row, 2) = row.current;
    }
    CalculateImageQuality(grid);
    const struct {
        int32_t row, column;
        const char* text;
    } expected[] = {{5, 2, "4"},      {6, 2, "5.0%"}, {8, 2, "0.05"},  {11, 1, "0.4"}, {11, 2, "0.37"},
                    {12, 2, "-0.03"}, {15, 2, "0.5"}, {18, 2, "-0.5"}, {21, 2, ""}};
    for (const auto& cell : expected) EXPECT_EQ(grid.At(cell.row, cell.column), cell.text) << cell.row;
    grid.At(4, 1) = "0";
    CalculateImageQuality(grid);
    EXPECT_EQ(grid.At(6, 2), "");
}

}  // namespace
}  // namespace vorex

#include "mqsa/survey_record.h"

#include <algorithm>
#include <charconv>

#include "host/headless_platform.h"
#include "mqsa/survey_fixture.h"

namespace vorex::test {
namespace {

struct NewGrid {
    GridId grid;
    const char* cells;  ///< "row,column text" or "row,first-last text"; all others are empty
};

// clang-format off
constexpr const char* kCassettes =
     "1,1-3  ;7,1-3  ;0,0 Cassette ID;0,1 Artifacts;0,2 mAs;0,3 Density;1,0 Control Cassette;"
     "5,0-2 Mean of control cassette densities;"
     "6,0-2 Standard deviation of control cassette densities;7,0 Other Cassettes;"
     "31,0-2 Mean Density;32,0-2 Minimum Density;33,0-2 Maximum Density;34,0-2 Density Range";
constexpr NewGrid kNewGrids[] = {
    {GridId::kEvaluation,
     "0,0 Compressed breast thickness;0,1-4 Fatty Breast;0,5-8 50% Fatty - 50% Dense Breast;"
     "0,9-12 Dense Breast;1,0 Compressed breast thickness;1,1 Target;1,2 Filter;1,3 kVp;"
     "1,4 Density;1,5 Target;1,6 Filter;1,7 kVp;1,8 Density;1,9 Target;1,10 Filter;1,11 kVp;"
     "1,12 Density;2,0 <3 cm;3,0 3 to 5 cm;4,0 5 to 7 cm;5,0 >7 cm"},
    {GridId::kLightField,
     "0,0 Target Material;0,1-2 Mo;1,0 Collimator (cm);1,1 18x24;1,2 24x30;"
     "2,0 Left edge deviation;3,0 Right edge deviation;"
     "4,0 Sum of left and right edge deviations;5,0 Sum as % of SID;"
     "6,0 Anterior edge deviation;7,0 Chest edge deviation;"
     "8,0 Sum of anterior and chest edge deviations;9,0 Sum as % of SID"},
    {GridId::kReceptorEdge,
     "0,0 Left edge deviation;1,0 % of SID (retain sign);2,0 Right edge deviation;"
     "3,0 % of SID (retain sign);4,0 Anterior edge deviation;5,0 % of SID (retain sign);"
     "6,0 Chest edge deviation;7,0 % of SID (retain sign)"},
    {GridId::kAlignment,
     "0,0 Difference between paddle edge and film;1,0 Difference as % of SID"},
    {GridId::kResolution,
     "0,0-1 Nominal Focal Spot size(mm);1,0-1 Target Material;2,0-1 Nominal kVp setting;"
     "3,0-1 Nominal mA setting;4,0-1 Density Control Setting;5,0-1 mAs;"
     "6,0-1 Magnification factor;7,0 Limiting resolution in line-pairs per mm;"
     "7,1 bars parallel to A-C axis;8,0 Limiting resolution in line-pairs per mm;"
     "8,1 bars perpendicular to A-C axis"},
    {GridId::kThickness,
     "2,1-7  ;9,0-1  ;0,0 Imaging mode;0,1-7 Small image receptor with grid;1,0 Focal Spot;"
     "1,1-7 Large Focal Spot;2,0 mA;3,0 Phantom thickness;3,1 Image ID;3,2 AEC Mode;"
     "3,3 Target-Filter;3,4 kVp;3,5 Density Control Setting;3,6 mAs;3,7 Film Optical Density;"
     "4,0 2 cm;5,0 4 cm;6,0 6 cm;7,0 8 cm;8,0-1 Mean Optical Density (2-6 cm);"
     "8,2-4 Optical Density Range;8,5-7 MQSA Allowed Optical Density Range;9,3 To;9,6 To"},
    {GridId::kDensityControl,
     "0,0 Imaging mode;0,1-2 Small Grid;0,3 Focal Spot;0,4-5 Large;1,0 mA;1,3 kVp;"
     "2,0 Phantom thickness;2,3 Cassette ID;3,0 Density Control Setting;3,1 Image ID;3,2 mAs;"
     "3,3 Measured Optical Density;3,4-5 Relative to Normal;4,0 Density Control Setting;"
     "4,1 Image ID;4,2 mAs;4,3 Measured Optical Density;4,4 % mAs change;"
     "4,5 Optical Density Change;5,0 -4;5,1 1;6,0 -3;6,1 2;7,0 -2;7,1 3;8,0 -1;8,1 4;"
     "9,0 0 (normal);9,1 5;10,0 +1;10,1 6;11,0 +2;11,1 7;12,0 +3;12,1 8;13,0 +4;13,1 10"},
    {GridId::kImageMode,
     "0,1-7  ;1,1-7  ;7,0-7  ;10,0-1  ;0,0 mA;1,0 Phantom thickness;2,0 Target-Filter;"
     "2,1-7 Mo/Mo;3,0 Imaging mode;3,1 Image ID;3,2 AEC Mode;3,3 Target-Filter;3,4 kVp;"
     "3,5 Density Control Setting;3,6 mAs;3,7 Film Optical Density;4,0 Small Grid;"
     "5,0 Large Grid;6,0 Magnification/no grid;8,0-7 Overall AEC Performance;"
     "9,0-1 Mean Optical Density;9,2-4 Optical Density Range;"
     "9,5-7 Recommended Optical Density Range;10,3 To;10,6 To"},
    {GridId::kSmallCassettes, kCassettes},
    {GridId::kLargeCassettes, kCassettes},
    {GridId::kArtifacts,
     "5,1-5 0;8,1-5 0;11,1-5 0;0,0 Cassette;1,0 Emulsion orientation;"
     "2,0 Resultant film optical density;3,0 Artifacts visible (y/n);"
     "4,0 Processor artifact (y/n);5,0 Acceptable;6,0 Describe artifact;"
     "7,0 Cassette-film-screen artifact (y/n);8,0 Acceptable;9,0 Describe artifact;"
     "10,0 X-ray equipment artifact (y/n);11,0 Acceptable;12,0 Describe artifact"},
    {GridId::kImageQuality,
     "1,1-2 2026-03-15;1,3  ;2,3  ;3,3  ;4,3  ;5,3  ;6,3  ;7,3  ;8,3  ;9,3  ;10,3  ;11,3  ;"
     "12,3  ;13,3  ;14,3  ;15,3  ;16,3  ;17,3  ;18,3  ;19,3  ;20,3  ;21,3  ;0,1 Previous Film;"
     "0,2 Current Film;0,3 Comments;1,0 Date;2,0 kVp Setting;3,0 Density control;"
     "4,0 Phototimed mAs;5,0-1 mAs change;6,0-1 % mAs change = mAs change/mAsx100;"
     "7,0 Background density;8,0-1 Background density change;9,0 Density outside disc;"
     "10,0 Density inside disc;11,0 Density diff = outside-inside;"
     "12,0-1 Density difference change;13,0 Number of fibers seen;"
     "14,0 Fibers seen after deduction;15,0-1 Fiber change;16,0 Number of speck groups seen;"
     "17,0 Speck groups after deduction;18,0-1 Speck group change;19,0 Number of masses seen;"
     "20,0 Masses seen after deduction;21,0-1 Mass change"},
    {GridId::kViewbox,
     "0,0  ;1,0  ;0,1-3 Radiologist's Viewboxes;0,4 Technologist's Viewboxes;1,1  1;1,2  2;"
     "1,3  3;1,4 Technologist's Viewboxes;2,0 Viewbox location;3,0 Viewbox luminance (cd/m2);"
     "4,0 Illuminance on viewbox surface (lux);5,0 Illuminance seen by observer (lux);"
     "6,0 Dirt and Marks (y/n);7,0 Color Difference (y/n);8,0 Luminance Difference (y/n);"
     "9,0 Uniformity (y/n);10,0 Functioning Masks (y/n)"},
};
// clang-format on

int32_t TakeNumber(std::string_view& text) {
    int32_t number = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number).ptr;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()) + 1);
    return number;
}

/// Writes one "row,first-last text" into a grid.
void WriteCell(SurveyGrid& grid, std::string_view cell) {
    const int32_t row = TakeNumber(cell);
    const bool several = cell.find('-') < cell.find(' ');
    const int32_t first = TakeNumber(cell);
    const int32_t last = several ? TakeNumber(cell) : first;
    for (int32_t column = first; column <= last; ++column) grid.At(row, column) = cell;
}

class SurveyRecordTest : public SurveyTest {
  protected:
    void SetUp() override {
        SurveyTest::SetUp();
        HostServices services = Services();
        services.platform = std::make_shared<HeadlessPlatform>();
        platform = dynamic_cast<HeadlessPlatform*>(services.platform.get());
        platform->StartAt("2026-03-15T09:00:00Z");
        InstallServices(services);
        survey = std::make_shared<CResultMQSA>();
        survey->Initialize(std::make_shared<CConfigMQSA>());
    }
    HeadlessPlatform* platform = nullptr;
};

TEST_F(SurveyRecordTest, ANewSurveyHasItsLabelsAndPresetCellsAndNothingElse) {
    for (const NewGrid& expected : kNewGrids) {
        const SurveyGrid& grid = survey->Record().Grid(expected.grid);
        SurveyGrid wanted(grid.Rows(), grid.Columns());
        std::string_view cells = expected.cells;
        while (!cells.empty()) {
            const std::size_t end = std::min(cells.find(';'), cells.size());
            WriteCell(wanted, cells.substr(0, end));
            cells.remove_prefix(std::min(end + 1, cells.size()));
        }
        for (int32_t row = 0; row < grid.Rows(); ++row)
            for (int32_t column = 0; column < grid.Columns(); ++column)
                EXPECT_EQ(grid.At(row, column), wanted.At(row, column))
                    << GridKey(expected.grid) << "(" << row << "," << column << ")";
    }
}

TEST_F(SurveyRecordTest, TheDatesOfANewSurveyAreTodayWithoutAForm) {
    for (const SurveyDateKeys& keys :
         {survey::kSurveyDate, survey::kPreviousFilmDate, survey::kCurrentFilmDate}) {
        EXPECT_EQ(survey->Record().Field(survey::kGeneralInformation, keys.day), "15");
        EXPECT_EQ(survey->Record().Field(survey::kGeneralInformation, keys.month), "3");
        EXPECT_EQ(survey->Record().Field(survey::kGeneralInformation, keys.year), "2026");
    }
    EXPECT_EQ(survey->Record().surveyDate, "2026-03-15");
    for (const auto& [row, column] : {std::pair{-1, 0}, {0, -1}, {11, 0}, {0, 5}})
        EXPECT_THROW(Cell(GridId::kViewbox, row, column), std::out_of_range) << row << "," << column;
    EXPECT_THROW(survey->Record().Field("GeneralInformation", "Nothing"), std::out_of_range);
}

}  // namespace
}  // namespace vorex::test

#include "mqsa/survey_record.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "config/config_mqsa.h"
#include "foundation/calendar.h"
#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/survey_cells.h"
#include "foundation/survey_text_keys.h"
#include "foundation/utilities.h"

namespace vorex {

namespace {

namespace st = survey_text;

// clang-format off
constexpr FixedCell kEvaluationLabels[] = {
    { 0,  0,  0, st::kCompressedBreastThickness},
    { 0,  1,  4, st::kFattyBreast},
    { 0,  5,  8, st::kHalfDenseBreast},
    { 0,  9, 12, st::kDenseBreast},
    { 1,  0,  0, st::kCompressedBreastThickness},
    { 1,  1,  1, st::kTarget},
    { 1,  2,  2, st::kFilter},
    { 1,  3,  3, st::kKvp},
    { 1,  4,  4, st::kDensity},
    { 1,  5,  5, st::kTarget},
    { 1,  6,  6, st::kFilter},
    { 1,  7,  7, st::kKvp},
    { 1,  8,  8, st::kDensity},
    { 1,  9,  9, st::kTarget},
    { 1, 10, 10, st::kFilter},
    { 1, 11, 11, st::kKvp},
    { 1, 12, 12, st::kDensity},
    { 2,  0,  0, st::kBreastBelow3cm},
    { 3,  0,  0, st::kBreast3To5cm},
    { 4,  0,  0, st::kBreast5To7cm},
    { 5,  0,  0, st::kBreastAbove7cm},
};
constexpr FixedCell kLightFieldLabels[] = {
    { 2,  0,  0, st::kLeftEdgeDeviation},
    { 3,  0,  0, st::kRightEdgeDeviation},
    { 4,  0,  0, st::kSumOfLeftAndRightEdgeDeviations},
    { 5,  0,  0, st::kSumPercentOfSid},
    { 6,  0,  0, st::kAnteriorEdgeDeviation},
    { 7,  0,  0, st::kChestEdgeDeviation},
    { 8,  0,  0, st::kSumOfAnteriorAndChestEdgeDeviations},
    { 9,  0,  0, st::kSumPercentOfSid},
};
constexpr FixedCell kReceptorEdgeLabels[] = {
    { 0,  0,  0, st::kLeftEdgeDeviation},
    { 1,  0,  0, st::kPercentOfSid},
    { 2,  0,  0, st::kRightEdgeDeviation},
    { 3,  0,  0, st::kPercentOfSid},
    { 4,  0,  0, st::kAnteriorEdgeDeviation},
    { 5,  0,  0, st::kPercentOfSid},
    { 6,  0,  0, st::kChestEdgeDeviation},
    { 7,  0,  0, st::kPercentOfSid},
};
constexpr FixedCell kAlignmentLabels[] = {
    { 0,  0,  0, st::kPaddleDifference},
    { 1,  0,  0, st::kPaddleDifferencePercent},
};
constexpr FixedCell kResolutionLabels[] = {
    { 0,  0,  1, st::kNominalFocalSpotSizeMm},
    { 1,  0,  1, st::kTargetMaterial},
    { 2,  0,  1, st::kNominalKvpSetting},
    { 3,  0,  1, st::kNominalMaSetting},
    { 4,  0,  1, st::kDensityControlSetting},
    { 5,  0,  1, text::kMas},
    { 6,  0,  1, st::kMagnificationFactor},
    { 7,  0,  0, st::kLimitingResolutionInLinePairsPerMm},
    { 7,  1,  1, st::kBarsParallelToAcAxis},
    { 8,  0,  0, st::kLimitingResolutionInLinePairsPerMm},
    { 8,  1,  1, st::kBarsPerpendicularToAcAxis},
};
constexpr FixedCell kThicknessLabels[] = {
    { 0,  0,  0, st::kImagingMode},
    { 0,  1,  7, st::kSmallImageReceptorWithGrid},
    { 1,  0,  0, st::kFocalSpotLabel},
    { 1,  1,  7, st::kLargeFocalSpot},
    { 2,  0,  0, text::kMa},
    { 3,  0,  0, st::kPhantomThicknessLabel},
    { 3,  1,  1, st::kImageId},
    { 3,  2,  2, st::kAecMode},
    { 3,  3,  3, st::kTargetFilter},
    { 3,  4,  4, st::kKvp},
    { 3,  5,  5, st::kDensityControlSetting},
    { 3,  6,  6, text::kMas},
    { 3,  7,  7, st::kFilmOpticalDensity},
    { 4,  0,  0, st::kTwoCm},
    { 5,  0,  0, st::kFourCm},
    { 6,  0,  0, st::kSixCm},
    { 7,  0,  0, st::kEightCm},
    { 8,  0,  1, st::kMeanOpticalDensity2To6cm},
    { 8,  2,  4, st::kOpticalDensityRange},
    { 8,  5,  7, st::kAllowedOpticalDensityRange},
    { 9,  3,  3, st::kTo},
    { 9,  6,  6, st::kTo},
};
constexpr FixedCell kDensityControlLabels[] = {
    { 0,  0,  0, st::kImagingMode},
    { 0,  1,  2, st::kSmallGrid},
    { 0,  3,  3, st::kFocalSpotLabel},
    { 0,  4,  5, text::kFocalSpotLarge},
    { 1,  0,  0, text::kMa},
    { 1,  3,  3, st::kKvp},
    { 2,  0,  0, st::kPhantomThicknessLabel},
    { 2,  3,  3, st::kCassetteId},
    { 3,  0,  0, st::kDensityControlSetting},
    { 3,  1,  1, st::kImageId},
    { 3,  2,  2, text::kMas},
    { 3,  3,  3, st::kMeasuredOpticalDensity},
    { 3,  4,  5, st::kRelativeToNormal},
    { 4,  0,  0, st::kDensityControlSetting},
    { 4,  1,  1, st::kImageId},
    { 4,  2,  2, text::kMas},
    { 4,  3,  3, st::kMeasuredOpticalDensity},
    { 4,  4,  4, st::kPercentMasChange},
    { 4,  5,  5, st::kOpticalDensityChange},
    { 5,  0,  0, "-4"},
    { 5,  1,  1, "1"},
    { 6,  0,  0, "-3"},
    { 6,  1,  1, "2"},
    { 7,  0,  0, "-2"},
    { 7,  1,  1, "3"},
    { 8,  0,  0, "-1"},
    { 8,  1,  1, "4"},
    { 9,  0,  0, st::kNormalStep},
    { 9,  1,  1, "5"},
    {10,  0,  0, "+1"},
    {10,  1,  1, "6"},
    {11,  0,  0, "+2"},
    {11,  1,  1, "7"},
    {12,  0,  0, "+3"},
    {12,  1,  1, "8"},
    {13,  0,  0, "+4"},
    {13,  1,  1, "10"},
};
constexpr FixedCell kImageModeLabels[] = {
    { 0,  0,  0, text::kMa},
    { 1,  0,  0, st::kPhantomThicknessLabel},
    { 2,  0,  0, st::kTargetFilter},
    { 2,  1,  7, st::kMoMo},
    { 3,  0,  0, st::kImagingMode},
    { 3,  1,  1, st::kImageId},
    { 3,  2,  2, st::kAecMode},
    { 3,  3,  3, st::kTargetFilter},
    { 3,  4,  4, st::kKvp},
    { 3,  5,  5, st::kDensityControlSetting},
    { 3,  6,  6, text::kMas},
    { 3,  7,  7, st::kFilmOpticalDensity},
    { 4,  0,  0, st::kSmallGrid},
    { 5,  0,  0, st::kLargeGrid},
    { 6,  0,  0, st::kMagnificationNoGrid},
    { 8,  0,  7, st::kOverallAecPerformance},
    { 9,  0,  1, st::kMeanOpticalDensity},
    { 9,  2,  4, st::kOpticalDensityRange},
    { 9,  5,  7, st::kRecommendedOpticalDensityRange},
    {10,  3,  3, st::kTo},
    {10,  6,  6, st::kTo},
};
constexpr FixedCell kCassetteLabels[] = {
    { 0,  0,  0, st::kCassetteId},
    { 0,  1,  1, st::kArtifacts},
    { 0,  2,  2, text::kMas},
    { 0,  3,  3, st::kDensity},
    { 1,  0,  0, st::kControlCassette},
    { 5,  0,  2, st::kMeanOfControlCassetteDensities},
    { 6,  0,  2, st::kStandardDeviationOfControlCassetteDensities},
    { 7,  0,  0, st::kOtherCassettes},
    {31,  0,  2, st::kMeanDensity},
    {32,  0,  2, st::kMinimumDensity},
    {33,  0,  2, st::kMaximumDensity},
    {34,  0,  2, st::kDensityRange},
};
constexpr FixedCell kArtifactLabels[] = {
    { 0,  0,  0, st::kCassette},
    { 1,  0,  0, st::kEmulsionOrientation},
    { 2,  0,  0, st::kResultantFilmOpticalDensity},
    { 3,  0,  0, st::kArtifactsVisibleYesNo},
    { 4,  0,  0, st::kProcessorArtifactYesNo},
    { 5,  0,  0, st::kAcceptable},
    { 6,  0,  0, st::kDescribeArtifact},
    { 7,  0,  0, st::kCassetteFilmScreenArtifactYesNo},
    { 8,  0,  0, st::kAcceptable},
    { 9,  0,  0, st::kDescribeArtifact},
    {10,  0,  0, st::kXRayEquipmentArtifactYesNo},
    {11,  0,  0, st::kAcceptable},
    {12,  0,  0, st::kDescribeArtifact},
};
constexpr FixedCell kImageQualityLabels[] = {
    { 0,  1,  1, st::kPreviousFilm},
    { 0,  2,  2, st::kCurrentFilm},
    { 0,  3,  3, st::kComments},
    { 1,  0,  0, st::kDate},
    { 2,  0,  0, st::kKvpSetting},
    { 3,  0,  0, st::kDensityControlLabel},
    { 4,  0,  0, st::kPhototimedMas},
    { 5,  0,  1, st::kMasChange},
    { 6,  0,  1, st::kPercentMasChangeFormula},
    { 7,  0,  0, st::kBackgroundDensity},
    { 8,  0,  1, st::kBackgroundDensityChange},
    { 9,  0,  0, st::kDensityOutsideDisc},
    {10,  0,  0, st::kDensityInsideDisc},
    {11,  0,  0, st::kDensityDiffOutsideInside},
    {12,  0,  1, st::kDensityDifferenceChange},
    {13,  0,  0, st::kFibersSeen},
    {14,  0,  0, st::kFibersAfterDeduction},
    {15,  0,  1, st::kFiberChange},
    {16,  0,  0, st::kSpeckGroupsSeen},
    {17,  0,  0, st::kSpeckGroupsAfterDeduction},
    {18,  0,  1, st::kSpeckGroupChange},
    {19,  0,  0, st::kMassesSeen},
    {20,  0,  0, st::kMassesAfterDeduction},
    {21,  0,  1, st::kMassChange},
};
constexpr FixedCell kViewboxLabels[] = {
    { 0,  1,  3, st::kRadiologistViewboxes},
    { 0,  4,  4, st::kTechnologistViewboxes},
    { 1,  1,  1, " 1"},
    { 1,  2,  2, " 2"},
    { 1,  3,  3, " 3"},
    { 1,  4,  4, st::kTechnologistViewboxes},
    { 2,  0,  0, st::kViewboxLocation},
    { 3,  0,  0, st::kViewboxLuminanceCdM2},
    { 4,  0,  0, st::kIlluminanceOnViewboxSurfaceLux},
    { 5,  0,  0, st::kIlluminanceSeenByObserverLux},
    { 6,  0,  0, st::kDirtAndMarksYesNo},
    { 7,  0,  0, st::kColorDifferenceYesNo},
    { 8,  0,  0, st::kLuminanceDifferenceYesNo},
    { 9,  0,  0, st::kUniformityYesNo},
    {10,  0,  0, st::kFunctioningMasksYesNo},
};

// First and last row, first and last column.
constexpr CellArea kEvaluationTyped[]     = {{2, 5, 1, 12}};
constexpr CellArea kEvaluationNumbers[]   = {{2, 5, 3, 4}, {2, 5, 7, 8}, {2, 5, 11, 12}};
constexpr CellArea kLightFieldTyped[]     = {{0, 3, 1, 5}, {6, 7, 1, 5}};
constexpr CellArea kReceptorEdgeTyped[]   = {{0, 0, 1, 5}, {2, 2, 1, 5}, {4, 4, 1, 5}, {6, 6, 1, 5}};
constexpr CellArea kAlignmentTyped[]      = {{0, 0, 1, 5}};
constexpr CellArea kCollimationNumbers[]  = {{0, 9, 1, 5}};
constexpr CellArea kResolutionTyped[]     = {{0, 8, 2, 5}};
constexpr CellArea kThicknessTyped[]      = {{0, 2, 1, 7}, {4, 7, 1, 7}};
constexpr CellArea kThicknessSpacers[]    = {{2, 2, 1, 7}, {9, 9, 0, 1}};
constexpr CellArea kThicknessNumbers[]    = {{2, 2, 1, 7}, {4, 7, 4, 7}, {9, 9, 0, 7}};
constexpr CellArea kDensityTyped[]        = {{0, 2, 1, 2}, {0, 2, 4, 5}, {5, 13, 1, 3}};
constexpr CellArea kDensityNumbers[]      = {{1, 1, 1, 2}, {1, 1, 4, 5}, {5, 13, 2, 5}};
constexpr CellArea kImageModeTyped[]      = {{0, 2, 1, 7}, {4, 6, 1, 7}};
constexpr CellArea kImageModeSpacers[]    = {{0, 1, 1, 7}, {7, 7, 0, 7}, {10, 10, 0, 1}};
constexpr CellArea kImageModeNumbers[]    = {{0, 0, 1, 7}, {4, 6, 4, 7}, {10, 10, 0, 7}};
constexpr CellArea kCassetteTyped[]       = {{2, 4, 0, 3}, {8, 30, 0, 3}};
constexpr CellArea kCassetteSpacers[]     = {{1, 1, 1, 3}, {7, 7, 1, 3}};
constexpr CellArea kCassetteNumbers[]     = {{2, 4, 2, 2}, {8, 30, 2, 2}, {2, 6, 3, 3}, {8, 34, 3, 3}};
constexpr CellArea kArtifactTyped[]       = {{0, 4, 1, 5}, {6, 7, 1, 5}, {9, 10, 1, 5}, {12, 12, 1, 5}};
constexpr CellArea kArtifactNumbers[]     = {{2, 2, 1, 5}};
constexpr CellArea kArtifactAnswers[]     = {{5, 5, 1, 5}, {8, 8, 1, 5}, {11, 11, 1, 5}};
constexpr CellArea kImageQualityTyped[]   = {{2, 4, 1, 2}, {7, 7, 1, 2}, {9, 10, 1, 2}, {13, 14, 1, 2},
                                             {16, 17, 1, 2}, {19, 20, 1, 2}, {1, 21, 3, 3}};
constexpr CellArea kImageQualitySpacers[] = {{1, 21, 3, 3}};
constexpr CellArea kImageQualityNumbers[] = {{2, 21, 1, 2}};
constexpr CellArea kImageQualityDates[]   = {{1, 1, 1, 2}};
constexpr CellArea kViewboxTyped[]        = {{2, 10, 1, 4}};
constexpr CellArea kViewboxSpacers[]      = {{0, 1, 0, 0}};
constexpr CellArea kViewboxNumbers[]      = {{3, 5, 1, 4}};

constexpr CellArea kLightFieldFigures[]   = {{2, 3, 1, 5}, {6, 7, 1, 5}};
constexpr CellArea kResolutionFigures[]   = {{7, 8, 2, 5}};
constexpr CellArea kThicknessFigures[]    = {{4, 7, 7, 7}};
constexpr CellArea kDensityFigures[]      = {{5, 13, 2, 3}};
constexpr CellArea kImageModeFigures[]    = {{4, 6, 7, 7}};
constexpr CellArea kCassetteFigures[]     = {{2, 4, 3, 3}, {8, 30, 3, 3}};
constexpr CellArea kImageQualityFigures[] = {{4, 4, 1, 2}, {7, 7, 1, 2}, {9, 10, 1, 2}, {13, 14, 1, 2},
                                             {16, 17, 1, 2}, {19, 20, 1, 2}};

constexpr bool Fits(const GridRow& grid) {
    const auto inside = [&](int32_t lastRow, int32_t lastColumn) {
        return lastRow >= 0 && lastRow < grid.rows && lastColumn >= 0 && lastColumn < grid.columns;
    };
    for (const FixedCell& label : grid.labels)
        if (!inside(label.row, label.lastColumn) || label.firstColumn > label.lastColumn || label.text.empty())
            return false;
    for (const auto& areas : {grid.typed, grid.spacers, grid.figures, grid.answers, grid.dates})
        for (const CellArea& area : areas)
            if (!inside(area.lastRow, area.lastColumn)) return false;
    return !grid.labels.empty() && !grid.typed.empty() && grid.savedRows > 0 && grid.savedRows <= grid.rows;
}

constexpr auto kGridIds = [] {
    std::array<GridId, kGridCount> ids{};
    for (std::size_t i = 0; i < kGridCount; ++i) ids[i] = static_cast<GridId>(i);
    return ids;
}();

constexpr std::ptrdiff_t PagesWith(GridId grid) {
    std::ptrdiff_t pages = 0;
    for (const SurveyGroupRow& group : survey::kGroups) pages += std::ranges::count(group.grids, grid);
    return pages;
}

/// By the identity of the grid. The last two rows of the light field are calculated and not saved.
constexpr GridRow kGrids[kGridCount] = {
    // rows, columns, saved rows, labels, typed, spacers, numbers, figures, answers, dates
    { 6, 13,  6, kEvaluationLabels, kEvaluationTyped, {}, kEvaluationNumbers, {}},
    {10,  6,  8, kLightFieldLabels, kLightFieldTyped, {}, kCollimationNumbers, kLightFieldFigures},
    { 8,  6,  8, kReceptorEdgeLabels, kReceptorEdgeTyped, {}, kCollimationNumbers, kReceptorEdgeTyped},
    { 2,  6,  2, kAlignmentLabels, kAlignmentTyped, {}, kCollimationNumbers, kAlignmentTyped},
    { 9,  6,  9, kResolutionLabels, kResolutionTyped, {}, kResolutionTyped, kResolutionFigures},
    {10,  8, 10, kThicknessLabels, kThicknessTyped, kThicknessSpacers, kThicknessNumbers, kThicknessFigures},
    {14,  6, 14, kDensityControlLabels, kDensityTyped, {}, kDensityNumbers, kDensityFigures},
    {11,  8, 11, kImageModeLabels, kImageModeTyped, kImageModeSpacers, kImageModeNumbers, kImageModeFigures},
    {35,  4, 35, kCassetteLabels, kCassetteTyped, kCassetteSpacers, kCassetteNumbers, kCassetteFigures},
    {35,  4, 35, kCassetteLabels, kCassetteTyped, kCassetteSpacers, kCassetteNumbers, kCassetteFigures},
    {13,  6, 13, kArtifactLabels, kArtifactTyped, {}, kArtifactNumbers, {}, kArtifactAnswers},
    {22,  4, 22, kImageQualityLabels, kImageQualityTyped, kImageQualitySpacers, kImageQualityNumbers,
     kImageQualityFigures, {}, kImageQualityDates},
    {11,  5, 11, kViewboxLabels, kViewboxTyped, kViewboxSpacers, kViewboxNumbers, kViewboxNumbers},
};

static_assert(std::ranges::all_of(kGrids, Fits), "each grid has a row, and its areas are inside it");
static_assert(std::ranges::all_of(kGridIds, [](GridId grid) { return PagesWith(grid) == 1; }),
              "each grid is on one page");

constexpr std::string_view kPageTexts[kPageCount] = {
    st::kPageGeneralInformation, st::kPageTechniqueChart, st::kPageAssemblyEvaluation, st::kPageCollimation,
    st::kPageResolution, st::kPageAec, st::kPageUniformity, st::kPageArtifactEval, st::kPageImageQuality,
    st::kPageViewbox,
};

constexpr std::string_view kAssemblyTexts[] = {
    st::kAssembly1, st::kAssembly2, st::kAssembly3, st::kAssembly4, st::kAssembly5, st::kAssembly6,
    st::kAssembly7, st::kAssembly8, st::kAssembly9, st::kAssembly10, st::kAssembly11, st::kAssembly12,
    st::kAssembly13
};
constexpr std::string_view kTechnologistTexts[] = {
    st::kTechnologist1, st::kTechnologist2, st::kTechnologist3, st::kTechnologist4, st::kTechnologist5,
    st::kTechnologist6, st::kTechnologist7, st::kTechnologist8, st::kTechnologist9, st::kTechnologist10,
    st::kTechnologist11
};
constexpr std::string_view kAssistantTexts[] = {
    st::kLog1, st::kLog2, st::kLog3, st::kLog4, st::kLog5, st::kLog6, st::kLog7, st::kLog8, st::kLog9,
    st::kLog10, st::kLogAecReproducibility, st::kLogOutputRate, st::kLog13, st::kLog14
};

constexpr std::string_view kPreliminaryTexts[kPreliminaryRows] = {
    st::kTest1, st::kTest2, st::kTest3, st::kTest4, st::kTest5, st::kTest6, st::kTest7, st::kTest8,
    st::kTest9, st::kTest10, st::kTest11, st::kTest12, st::kTest13
};
constexpr std::string_view kSummaryTexts[kSummaryRows] = {
    st::kTest1, st::kTest2, st::kSummaryLine2, st::kSummaryLine3, st::kSummaryLine4, st::kTest3,
    st::kSummaryLine6, st::kSummaryLine7, st::kTest4, st::kSummaryLine9, st::kSummaryLine10,
    st::kSummaryLine11, st::kTest5, st::kSummaryLine13, st::kTest6, st::kSummaryLine15,
    st::kSummaryLine16, st::kSummaryLine17, st::kSummaryLine18, st::kSummaryLine19, st::kSummaryLine20,
    st::kTest8, st::kSummaryLine22, st::kSummaryLine23, st::kTest9, st::kSummaryLine25,
    st::kSummaryLine26, st::kSummaryLine27, st::kSummaryLine28, st::kSummaryLine29, st::kTest13,
    st::kSummaryLine31, st::kSummaryLine32
};
constexpr auto kHasText = [](std::string_view text) { return !text.empty(); };
static_assert(std::ranges::all_of(kPageTexts, kHasText) && std::ranges::all_of(kPreliminaryTexts, kHasText) &&
                  std::ranges::all_of(kSummaryTexts, kHasText) &&
                  std::ranges::all_of(survey::kGridKeys, kHasText),
              "each page, row and grid has a text");
constexpr std::size_t kHeadingRows[] = {1, 5, 8, 12, 14, 16, 18, 19, 20, 21, 24, 26, 30};
/// Rows that only the ACR column judges.
constexpr std::size_t kAcrSummaryRows[] = {11, 31, 32};
constexpr std::size_t kAcrPreliminaryRow = 12;
// clang-format on

/// Items of one prefix, with numbers that continue those of the earlier items of that prefix.
struct ItemBlock {
    std::string_view prefix;
    int32_t firstNumber;
    std::span<const std::string_view> descriptions;
};
constexpr ItemBlock kItemBlocks[] = {
    {survey::kAssemblyItem, 1, kAssemblyTexts},
    {survey::kTechnologistItem, 1, kTechnologistTexts},
    {survey::kTechnologistItem, 12, kTechnologistTexts},
    {survey::kAssistantItem, 1, kAssistantTexts},
};
static_assert(std::size(kAssemblyTexts) == kAssemblyItemCount &&
                  std::size(kTechnologistTexts) == kTechnologistItemCount &&
                  std::size(kAssemblyTexts) + 2 * std::size(kTechnologistTexts) +
                          std::size(kAssistantTexts) ==
                      kSurveyItemCount,
              "each item has a description");

template <typename Visit>
void ForEachCell(const CellArea& area, const SurveyGrid& grid, Visit&& visit) {
    for (int32_t row = area.firstRow; row <= std::min(area.lastRow, grid.Rows() - 1); ++row)
        for (int32_t column = area.firstColumn; column <= area.lastColumn; ++column) visit(row, column);
}

/// Answers are kept in English, so that a saved Fail counts in every language.
std::string NeutralAnswer(const std::string& answer) {
    for (std::string_view textKey : {text::kPass, text::kFalse})
        if (EqualsIgnoringCase(answer, Translate(textKey))) return DefaultText(textKey, {});
    return answer;
}

}  // namespace

SurveyGrid::SurveyGrid(int32_t rows, int32_t columns)
    : mRows(rows),
      mColumns(columns),
      mCells(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns)) {}

std::size_t SurveyGrid::Index(int32_t row, int32_t column) const {
    if (row < 0 || row >= mRows || column < 0 || column >= mColumns)
        throw std::out_of_range("cell (" + PlainText(row) + "," + PlainText(column) + ") of a grid of " +
                                PlainText(mRows) + " by " + PlainText(mColumns));
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(mColumns) +
           static_cast<std::size_t>(column);
}

double SurveyGrid::Number(int32_t row, int32_t column) const {
    return ReadNumber(At(row, column));
}

const GridRow& GridRowOf(GridId grid) {
    return kGrids[static_cast<std::size_t>(grid)];
}

bool IsIn(std::span<const CellArea> areas, int32_t row, int32_t column) {
    return std::any_of(areas.begin(), areas.end(),
                       [&](const CellArea& area) { return area.Has(row, column); });
}

std::string_view LabelOf(GridId grid, int32_t row, int32_t column) {
    for (const FixedCell& label : GridRowOf(grid).labels)
        if (label.row == row && column >= label.firstColumn && column <= label.lastColumn) return label.text;
    // The first rows of the light field come from the configuration.
    return grid == GridId::kLightField ? CConfigMQSA::CollimationText(row, column) : std::string_view();
}

std::string SavedCell(GridId id, int32_t row, int32_t column, const std::string& text) {
    const GridRow& grid = GridRowOf(id);
    if (IsIn(grid.answers, row, column)) return NeutralAnswer(text);
    const std::string_view label = LabelOf(id, row, column);
    if (!label.empty()) return NeutralWord(text, label);
    const bool comma = Services().decimalSign == ',' && IsIn(grid.numbers, row, column);
    return comma ? WithPoint(text) : text;
}

std::string_view PageText(SurveyPage page) {
    return kPageTexts[static_cast<std::size_t>(page)];
}

SurveyPage PageOf(GridId grid) {
    for (const SurveyGroupRow& group : survey::kGroups)
        if (std::find(group.grids.begin(), group.grids.end(), grid) != group.grids.end()) return group.page;
    throw std::out_of_range("a grid without a page");
}

std::size_t FieldIndex(const SurveyGroupRow& group, const SurveyFieldRow& field) {
    std::size_t index = 0;
    for (const SurveyGroupRow* before = survey::kGroups; before != &group; ++before)
        index += before->fields.size();
    return index + static_cast<std::size_t>(&field - group.fields.data());
}

std::size_t FieldIndex(std::string_view group, std::string_view field) {
    std::size_t index = 0;
    for (const SurveyGroupRow& row : survey::kGroups)
        for (const SurveyFieldRow& at : row.fields) {
            if (row.name == group && at.key == field) return index;
            ++index;
        }
    throw std::out_of_range("no field " + std::string(group) + "." + std::string(field));
}

// ------------------------------------------------------------------------------------------- record

SurveyRecord::SurveyRecord() {
    for (std::size_t i = 0; i < kGridCount; ++i) {
        const GridRow& row = kGrids[i];
        SurveyGrid& grid = grids[i] = SurveyGrid(row.rows, row.columns);
        for (const CellArea& area : row.spacers)
            ForEachCell(area, grid, [&](int32_t r, int32_t c) { grid.At(r, c) = " "; });
        for (const CellArea& area : row.answers)
            ForEachCell(area, grid, [&](int32_t r, int32_t c) { grid.At(r, c) = "0"; });
        for (const FixedCell& label : row.labels)
            for (int32_t c = label.firstColumn; c <= label.lastColumn; ++c)
                grid.At(label.row, c) = Translate(label.text);
    }
    const CalendarDate date = DateOf({}, {}, {});
    std::size_t index = 0;
    for (const SurveyGroupRow& group : survey::kGroups)
        for (const SurveyFieldRow& field : group.fields) {
            std::string& text = fields[index++];
            if (field.kind == FieldKind::kDay) text = PlainText(date.day);
            if (field.kind == FieldKind::kMonth) text = PlainText(date.month);
            if (field.kind == FieldKind::kYear) text = PlainText(date.year);
        }
    BuildDates();
    SurveyGrid& quality = Grid(GridId::kImageQuality);
    quality.At(1, 1) = previousFilmDate;
    quality.At(1, 2) = currentFilmDate;
}

void SurveyRecord::WriteLabels(GridId id) {
    const GridRow& row = GridRowOf(id);
    SurveyGrid& grid = Grid(id);
    for (const FixedCell& label : row.labels) {
        const std::string text = Translate(label.text);
        for (int32_t c = label.firstColumn; c <= label.lastColumn; ++c) {
            std::string& cell = grid.At(label.row, c);
            if (!IsIn(row.typed, label.row, c) || cell == DefaultText(label.text, {})) cell = text;
        }
    }
    if (id != GridId::kLightField) return;
    for (int32_t r = 0; r < CConfigMQSA::kCollimationRows; ++r)
        for (int32_t c = 0; c < CConfigMQSA::kTableColumns; ++c)
            grid.At(r, c) = WordOfToday(grid.At(r, c), CConfigMQSA::CollimationText(r, c));
}

void SurveyRecord::BuildDates() {
    const std::string_view general = survey::kGeneralInformation;
    const auto dateOf = [&](const SurveyDateKeys& keys) {
        return DateText(
            DateOf(Field(general, keys.day), Field(general, keys.month), Field(general, keys.year)));
    };
    surveyDate = dateOf(survey::kSurveyDate);
    previousFilmDate = dateOf(survey::kPreviousFilmDate);
    currentFilmDate = dateOf(survey::kCurrentFilmDate);
}

// ------------------------------------------------------------------------------------ items, tables

const std::array<SurveyItem, kSurveyItemCount>& SurveyItems() {
    static const std::array<SurveyItem, kSurveyItemCount> kItems = [] {
        std::array<SurveyItem, kSurveyItemCount> items;
        std::size_t next = 0;
        for (const ItemBlock& block : kItemBlocks) {
            int32_t number = block.firstNumber;
            for (std::string_view description : block.descriptions)
                items.at(next++) = {std::string(block.prefix) + PlainText(number++), description};
        }
        return items;
    }();
    return kItems;
}

SurveyTables::SurveyTables() {
    for (VerdictRow& row : preliminary) row.fill(std::string(text::kPass));
    for (VerdictRow& row : summary) row.fill(std::string(text::kPass));
    for (std::size_t row : kHeadingRows) summary[row].fill(std::string(kHeadingMark));
    for (std::size_t row : kAcrSummaryRows) summary[row][kMqsaColumn] = text::kNotApplicable;
    preliminary[kAcrPreliminaryRow][kMqsaColumn] = text::kNotApplicable;
}

std::span<const std::string_view> PreliminaryTexts() {
    return kPreliminaryTexts;
}
std::span<const std::string_view> SummaryTexts() {
    return kSummaryTexts;
}

}  // namespace vorex

#include "mqsa/survey_calculations.h"

#include <cmath>
#include <vector>

#include "foundation/number_text.h"
#include "foundation/verdict_figures.h"

namespace vorex {

namespace {

constexpr int32_t kFirstDataColumn = 1;
constexpr int32_t kLastDataColumn = 5;
constexpr int32_t kDensityColumn = 7;
/// A single-precision constant, as the allowed range has always been computed.
constexpr double kDensityTolerance = static_cast<double>(static_cast<float>(figure::kTrackingRange.figure));

double Rounded2(double value) {
    return RoundHalfEven(value, 2);
}
std::string Round2(double value) {
    return LocaleText(Rounded2(value));
}
std::string Percent2(double value) {
    return Round2(value) + "%";
}
std::string Difference(const std::string& a, const std::string& b) {
    return LocaleDecimal(DifferenceRounded(a, b));
}

/// The smallest and the largest of some cell texts, by number; the first of equal ones.
struct Range {
    explicit Range(const std::vector<std::string>& texts) : smallest(texts.front()), largest(texts.front()) {
        for (const std::string& text : texts) {
            if (ReadNumber(text) < ReadNumber(smallest)) smallest = text;
            if (ReadNumber(text) > ReadNumber(largest)) largest = text;
        }
    }
    std::string smallest;
    std::string largest;
};

constexpr int32_t kRangeColumns[] = {2, 4, 5, 7};

void ClearDensityRow(SurveyGrid& grid, int32_t row) {
    grid.At(row, 0) = grid.At(row, 1) = " ";
    for (int32_t column : kRangeColumns) grid.Clear(row, column);
}

/// Mean, measured range and allowed range, with the blanks that set them off from the cell borders.
void WriteDensityRow(SurveyGrid& grid, int32_t row, double mean, const Range& range) {
    grid.At(row, 0) = grid.At(row, 1) = " " + Round2(mean);
    grid.At(row, 2) = "  " + range.smallest;
    grid.At(row, 4) = " " + range.largest;
    const double shownMean = grid.Number(row, 0);
    grid.At(row, 5) = "  " + Round2(shownMean - kDensityTolerance);
    grid.At(row, 7) = " " + Round2(shownMean + kDensityTolerance);
}

bool AnyBlank(const SurveyGrid& grid, int32_t firstRow, int32_t lastRow, int32_t column) {
    for (int32_t row = firstRow; row <= lastRow; ++row)
        if (grid.IsBlank(row, column)) return true;
    return false;
}

double Sum(const SurveyGrid& grid, int32_t firstRow, int32_t lastRow, int32_t column) {
    double sum = 0;
    for (int32_t row = firstRow; row <= lastRow; ++row) sum += grid.Number(row, column);
    return sum;
}

std::vector<std::string> FilledTexts(const SurveyGrid& grid, int32_t firstRow, int32_t lastRow,
                                     int32_t column) {
    std::vector<std::string> texts;
    for (int32_t row = firstRow; row <= lastRow; ++row)
        if (!grid.IsBlank(row, column)) texts.push_back(grid.At(row, column));
    return texts;
}

void CalculateEdges(double distance, SurveyGrid& grid) {
    for (int32_t row : {2, 6}) {
        for (int32_t column = kFirstDataColumn; column <= kLastDataColumn; ++column) {
            std::string& sum = grid.At(row + 2, column);
            std::string& percent = grid.At(row + 3, column);
            sum.clear();
            percent.clear();
            if (distance == 0 || AnyBlank(grid, row, row + 1, column)) continue;
            sum = LocaleText(grid.Number(row, column) + grid.Number(row + 1, column));
            percent = Percent2(ReadNumber(sum) / distance * 100);
        }
    }
}

/// Each even row in percent of the distance, in the row below.
void CalculatePercents(double distance, SurveyGrid& grid) {
    for (int32_t row = 0; row < grid.Rows(); row += 2) {
        for (int32_t column = kFirstDataColumn; column <= kLastDataColumn; ++column) {
            std::string& percent = grid.At(row + 1, column);
            percent.clear();
            if (distance == 0 || grid.IsBlank(row, column)) continue;
            percent = Percent2(grid.Number(row, column) / distance * 100);
        }
    }
}

void CalculateThickness(SurveyGrid& grid) {
    constexpr int32_t kResult = 9;
    if (AnyBlank(grid, 4, 6, kDensityColumn)) return ClearDensityRow(grid, kResult);
    WriteDensityRow(grid, kResult, Sum(grid, 4, 6, kDensityColumn) / 3,
                    Range(FilledTexts(grid, 4, 6, kDensityColumn)));
}

/// A blank 8 cm cell counts as 0, and the divisor does not change.
void CalculateOverallAec(const SurveyGrid& thickness, SurveyGrid& grid) {
    constexpr int32_t kResult = 10;
    constexpr double kExposures = 7;
    if (AnyBlank(grid, 4, 6, kDensityColumn)) return ClearDensityRow(grid, kResult);
    const double sum = Sum(thickness, 4, 7, kDensityColumn) + Sum(grid, 4, 6, kDensityColumn);
    std::vector<std::string> texts = FilledTexts(thickness, 4, 7, kDensityColumn);
    for (std::string& text : FilledTexts(grid, 4, 6, kDensityColumn)) texts.push_back(std::move(text));
    WriteDensityRow(grid, kResult, sum / kExposures, Range(texts));
}

constexpr int32_t kFirstStep = 5;
constexpr int32_t kNormalStep = 9;
constexpr int32_t kLastStep = 13;

void CalculateControlCassette(SurveyGrid& grid) {
    constexpr int32_t kDensity = 3;
    const auto count = static_cast<double>(FilledTexts(grid, 2, 4, kDensity).size());
    const double sum = Sum(grid, 2, 4, kDensity);
    if (sum == 0) {
        grid.Clear(5, kDensity);
        grid.Clear(6, kDensity);
        return;
    }
    const double mean = Rounded2(sum / count);
    grid.At(5, kDensity) = LocaleText(mean);
    // A blank reading does not count in the mean, but enters the squares as 0.
    double squares = 0;
    for (int32_t row = 2; row <= 4; ++row) squares += std::pow(grid.Number(row, kDensity) - mean, 2);
    if (count > 1) grid.At(6, kDensity) = Round2(std::sqrt(squares / (count - 1)));
}

void CalculateOtherCassettes(SurveyGrid& grid) {
    constexpr int32_t kDensity = 3;
    const std::vector<std::string> texts = FilledTexts(grid, 8, 30, kDensity);
    const double sum = Sum(grid, 8, 30, kDensity);
    if (sum == 0) {
        for (int32_t row = 31; row <= 34; ++row) grid.Clear(row, kDensity);
        return;
    }
    const Range range(texts);
    grid.At(31, kDensity) = Round2(sum / static_cast<double>(texts.size()));
    grid.At(32, kDensity) = range.smallest;
    grid.At(33, kDensity) = range.largest;
    grid.At(34, kDensity) = Difference(range.largest, range.smallest);
}

/// Cell (row, column) = first - second, when both are filled.
struct DifferenceRow {
    int32_t row;
    int32_t column;
    int32_t firstRow;
    int32_t firstColumn;
    int32_t secondRow;
    int32_t secondColumn;
};

// The scores run the other way round than the densities: a drop is a positive change.
constexpr DifferenceRow kDifferences[] = {
    {5, 2, 4, 2, 4, 1},    {8, 2, 7, 2, 7, 1},    {11, 1, 9, 1, 10, 1},  {11, 2, 9, 2, 10, 2},
    {12, 2, 11, 2, 11, 1}, {15, 2, 14, 1, 14, 2}, {18, 2, 17, 1, 17, 2}, {21, 2, 20, 1, 20, 2},
};

}  // namespace

void CalculateCollimation(std::string_view sid, SurveyGrid& lightField, SurveyGrid& receptorEdge,
                          SurveyGrid& alignment) {
    const double distance = ReadNumber(sid);
    if (distance < 0) return;
    CalculateEdges(distance, lightField);
    CalculatePercents(distance, receptorEdge);
    CalculatePercents(distance, alignment);
}

void CalculateTracking(SurveyGrid& thickness, SurveyGrid& imageMode) {
    CalculateThickness(thickness);
    CalculateOverallAec(thickness, imageMode);
}

void CalculateDensityControl(SurveyGrid& grid) {
    constexpr int32_t kMas = 2;
    constexpr int32_t kDensity = 3;
    constexpr int32_t kMasChange = 4;
    constexpr int32_t kDensityChange = 5;
    const double normal = grid.Number(kNormalStep, kMas);
    for (int32_t row = kFirstStep; row <= kLastStep; ++row) {
        if (grid.IsBlank(kNormalStep, kMas) || grid.IsBlank(row, kMas))
            grid.Clear(row, kMasChange);
        else if (normal > 0)
            grid.At(row, kMasChange) = Percent2((grid.Number(row, kMas) - normal) / normal * 100);
        if (grid.IsBlank(kNormalStep, kDensity) || grid.IsBlank(row, kDensity))
            grid.Clear(row, kDensityChange);
        else
            grid.At(row, kDensityChange) =
                Round2(grid.Number(row, kDensity) - grid.Number(kNormalStep, kDensity));
    }
}

void CalculateCassettes(SurveyGrid& grid) {
    CalculateControlCassette(grid);
    CalculateOtherCassettes(grid);
}

void CalculateImageQuality(SurveyGrid& grid) {
    for (const DifferenceRow& row : kDifferences) {
        std::string& target = grid.At(row.row, row.column);
        target.clear();
        if (grid.IsBlank(row.firstRow, row.firstColumn) || grid.IsBlank(row.secondRow, row.secondColumn))
            continue;
        target = Difference(grid.At(row.firstRow, row.firstColumn), grid.At(row.secondRow, row.secondColumn));
    }
    const double previousMas = grid.Number(4, 1);
    std::string& percent = grid.At(6, 2);
    percent.clear();
    if (!grid.IsBlank(5, 2) && previousMas > 0)
        percent = LocaleDecimal(FormatPicture(grid.Number(5, 2) / previousMas * 100, "0.0#")) + "%";
}

void Recalculate(SurveyRecord& record, GridId grid) {
    switch (grid) {
        case GridId::kLightField:
        case GridId::kReceptorEdge:
        case GridId::kAlignment:
            return CalculateCollimation(record.Field("Collimation", "SID"), record.Grid(GridId::kLightField),
                                        record.Grid(GridId::kReceptorEdge), record.Grid(GridId::kAlignment));
        case GridId::kThickness:
        case GridId::kImageMode:
            return CalculateTracking(record.Grid(GridId::kThickness), record.Grid(GridId::kImageMode));
        case GridId::kDensityControl:
            return CalculateDensityControl(record.Grid(grid));
        case GridId::kSmallCassettes:
        case GridId::kLargeCassettes:
            return CalculateCassettes(record.Grid(grid));
        case GridId::kImageQuality:
            return CalculateImageQuality(record.Grid(grid));
        case GridId::kEvaluation:
        case GridId::kResolution:
        case GridId::kArtifacts:
        case GridId::kViewbox:
            return;  // nothing is calculated there
    }
}

void RecalculateAll(SurveyRecord& record) {
    for (GridId grid : {GridId::kLightField, GridId::kThickness, GridId::kDensityControl,
                        GridId::kSmallCassettes, GridId::kLargeCassettes, GridId::kImageQuality})
        Recalculate(record, grid);
}

}  // namespace vorex

#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/library_state.h"
#include "mqsa/survey_record.h"

/// The verdicts of the survey: which cell of the two tables passes, and by which figure one fails.
namespace vorex {

enum class Bound : uint8_t { kAtMost, kAtLeast, kBelow };

/// A limit of the survey, with the rule that it comes from. The system's figure and that of the regulation
/// are told side by side where they differ.
struct SurveyFigure {
    std::string_view name;
    Bound bound;
    double figure;
    std::string_view unit;
    std::string_view clause;
    std::string_view regulation = {};  ///< the regulation's own figure, where the system's differs

    bool Excludes(double value) const;
    /// "at most 0.3 OD".
    std::string Words() const;
};

namespace figure {
// clang-format off
inline constexpr SurveyFigure kLightFieldDeviation{
    "deviation of the X-ray field from the light field, one edge", Bound::kAtMost, 200, "",
    "21 CFR 900.12(e)(5)(vii)(B)", "2 % of SID, the sum of two edges"};
inline constexpr SurveyFigure kReceptorDeviation{
    "X-ray field beyond the edge of the image receptor", Bound::kAtMost, 200, "% of SID",
    "21 CFR 900.12(e)(5)(vii)(A)", "2 % of SID"};
inline constexpr SurveyFigure kPaddleDeviation{
    "compression paddle beyond the edge of the image receptor", Bound::kAtMost, 200, "% of SID",
    "21 CFR 900.12(e)(5)(vii)(C)", "1 % of SID"};
inline constexpr SurveyFigure kParallelResolution{
    "resolution, bars parallel to the anode-cathode axis", Bound::kAtLeast, 13, "lp/mm",
    "21 CFR 900.12(e)(5)(iii)(A)(1)"};
inline constexpr SurveyFigure kPerpendicularResolution{
    "resolution, bars perpendicular to the anode-cathode axis", Bound::kAtLeast, 11, "lp/mm",
    "21 CFR 900.12(e)(5)(iii)(A)(1)"};
inline constexpr SurveyFigure kTrackingRange{
    "optical density, distance from the mean", Bound::kAtMost, 0.3, "OD",
    "21 CFR 900.12(e)(5)(i)(A)", "0.15 OD from 2002-10-28, (e)(5)(i)(B)"};
inline constexpr SurveyFigure kLeastDensity{
    "optical density of the film", Bound::kAtLeast, 1.2, "OD", "21 CFR 900.12(e)(5)(i)(C)"};
inline constexpr SurveyFigure kLeastStep{
    "change of mAs between density control steps", Bound::kAtLeast, 12, "%", "ACR 1999, AEC system performance"};
inline constexpr SurveyFigure kMostStep{
    "change of mAs between density control steps", Bound::kBelow, 16, "%", "ACR 1999, AEC system performance", "15 %"};
inline constexpr SurveyFigure kDensityStep{
    "change of density between density control steps, as a whole number", Bound::kAtMost, 0.2, "OD",
    "no clause: a figure of the system"};
inline constexpr SurveyFigure kControlDeviation{
    "standard deviation of the control cassette densities", Bound::kAtMost, 0.05, "OD",
    "ACR 1999, uniformity of screen speed"};
inline constexpr SurveyFigure kScreenRange{
    "density range of the cassettes", Bound::kAtMost, 0.3, "OD", "21 CFR 900.12(e)(5)(viii)"};
inline constexpr SurveyFigure kBackgroundDensity{
    "background density of the phantom image", Bound::kAtLeast, 1.2, "OD", "21 CFR 900.12(e)(2)(i)"};
inline constexpr SurveyFigure kFibers{
    "number of fibers seen", Bound::kAtLeast, 4, "", "ACR accreditation, phantom image quality"};
inline constexpr SurveyFigure kSpeckGroups{
    "number of speck groups seen", Bound::kAtLeast, 3, "", "ACR accreditation, phantom image quality"};
inline constexpr SurveyFigure kMasses{
    "number of masses seen", Bound::kAtLeast, 3, "", "ACR accreditation, phantom image quality"};
inline constexpr SurveyFigure kLuminance{
    "viewbox luminance", Bound::kAtLeast, 3000, "cd/m2", "ACR 1999, viewbox measurements"};
inline constexpr SurveyFigure kIlluminance{
    "illuminance", Bound::kAtMost, 50, "lux", "ACR 1999, viewbox measurements"};
// clang-format on
}  // namespace figure

/// Why a row of the tables fails.
struct SurveyFinding {
    SurveyPage page;
    std::string place;  ///< address of the cell, key of the item or of the status cell
    std::string words;  ///< the value, and the figure that excludes it, for a person
    bool operator==(const SurveyFinding&) const = default;
};

/// Statuses of the 49 items, in their order.
using ItemStatuses = std::array<int32_t, kSurveyItemCount>;

struct SurveyEvaluation {
    std::vector<SurveyFinding> findings;
    /// A gap that ended the evaluation of a table early: page, step and the missing cell. Empty for none.
    std::string fault;
};

/// Evaluates the survey into the tables: first the preliminary results, then the summary page, row by row,
/// then the outcomes of the automatic tests. A gap in the density control steps ends the evaluation of each
/// table at its row; what stands below is left as it was.
SurveyEvaluation EvaluateSurvey(const SurveyRecord& record, const ItemStatuses& items,
                                const StatusCells& cells, SurveyTables& tables);
/// Copies the outcomes of the automatic mammography tests into both tables.
void CopyStatusCells(const StatusCells& cells, SurveyTables& tables);

/// "DeviXrayLightField(3,1)".
std::string CellAddress(GridId grid, int32_t row, int32_t column);

}  // namespace vorex

#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/library_state.h"
#include "foundation/survey_text_keys.h"
#include "mqsa/survey_record.h"

/// The verdicts of the survey: which cell of the two tables passes, and by which figure one fails.
namespace vorex {

enum class Bound : uint8_t { kAtMost, kAtLeast, kBelow };

/// A limit of the survey, with the rule that it comes from. Texts are text keys where they are words.
struct SurveyFigure {
    std::string_view name;
    Bound bound;
    double figure;
    std::string_view unit;
    std::string_view clause;

    bool Excludes(double value) const;
    /// "at most 0.3 OD".
    std::string Words() const;
    /// "optical density: 0.9, expected at least 1.2 OD (21 CFR ...)", for what was found.
    std::string Excluding(const std::string& found) const;
};

namespace figure {
namespace st = survey_text;
// clang-format off
inline constexpr SurveyFigure kLightFieldDeviation{
    st::kFigureLightField, Bound::kAtMost, 200, "",
    "21 CFR 900.12(e)(5)(vii)(B)"};
inline constexpr SurveyFigure kReceptorDeviation{
    st::kFigureReceptor, Bound::kAtMost, 200, st::kOfSid,
    "21 CFR 900.12(e)(5)(vii)(A)"};
inline constexpr SurveyFigure kPaddleDeviation{
    st::kFigurePaddle, Bound::kAtMost, 200, st::kOfSid,
    "21 CFR 900.12(e)(5)(vii)(C)"};
inline constexpr SurveyFigure kParallelResolution{
    st::kFigureParallel, Bound::kAtLeast, 13, "lp/mm",
    "21 CFR 900.12(e)(5)(iii)(A)(1)"};
inline constexpr SurveyFigure kPerpendicularResolution{
    st::kFigurePerpendicular, Bound::kAtLeast, 11, "lp/mm",
    "21 CFR 900.12(e)(5)(iii)(A)(1)"};
inline constexpr SurveyFigure kTrackingRange{
    st::kFigureTracking, Bound::kAtMost, 0.3, "OD",
    "21 CFR 900.12(e)(5)(i)(A)"};
inline constexpr SurveyFigure kLeastDensity{
    st::kFigureDensity, Bound::kAtLeast, 1.2, "OD", "21 CFR 900.12(e)(5)(i)(C)"};
inline constexpr SurveyFigure kLeastStep{
    st::kFigureMasStep, Bound::kAtLeast, 12, "%", "ACR 1999, AEC system performance"};
inline constexpr SurveyFigure kMostStep{
    st::kFigureMasStep, Bound::kBelow, 16, "%", "ACR 1999, AEC system performance"};
inline constexpr SurveyFigure kDensityStep{
    st::kFigureDensityStep, Bound::kAtMost, 0.2, "OD",
    st::kFigureOfSystem};
inline constexpr SurveyFigure kControlDeviation{
    st::kFigureControlCassette, Bound::kAtMost, 0.05, "OD",
    "ACR 1999, uniformity of screen speed"};
inline constexpr SurveyFigure kScreenRange{
    st::kFigureCassettes, Bound::kAtMost, 0.3, "OD", "21 CFR 900.12(e)(5)(viii)"};
inline constexpr SurveyFigure kBackgroundDensity{
    st::kFigureBackground, Bound::kAtLeast, 1.2, "OD", "21 CFR 900.12(e)(2)(i)"};
inline constexpr SurveyFigure kFibers{
    st::kFigureFibers, Bound::kAtLeast, 4, "", "ACR accreditation, phantom image quality"};
inline constexpr SurveyFigure kSpeckGroups{
    st::kFigureSpecks, Bound::kAtLeast, 3, "", "ACR accreditation, phantom image quality"};
inline constexpr SurveyFigure kMasses{
    st::kFigureMasses, Bound::kAtLeast, 3, "", "ACR accreditation, phantom image quality"};
inline constexpr SurveyFigure kLuminance{
    st::kFigureLuminance, Bound::kAtLeast, 3000, "cd/m2", "ACR 1999, viewbox measurements"};
inline constexpr SurveyFigure kIlluminance{
    st::kFigureIlluminance, Bound::kAtMost, 50, "lux", "ACR 1999, viewbox measurements"};
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

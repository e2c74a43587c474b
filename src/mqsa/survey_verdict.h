#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/status_cells.h"
#include "foundation/verdict_figures.h"
#include "mqsa/survey_record.h"

/// The verdicts of the survey: which cell of the two tables passes, and by which figure one fails.
namespace vorex {

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
    /// A gap that ended the evaluation of a table early: page, step and missing cell. Empty for none.
    std::string fault;
};

/// Evaluates the survey into the tables: first the preliminary results, then the summary page, row by row,
/// then the outcomes of the automatic tests. A gap in the density control steps ends the evaluation of each
/// table at its row; the rows below stay unchanged.
SurveyEvaluation EvaluateSurvey(const SurveyRecord& record, const ItemStatuses& items,
                                const StatusCells& cells, SurveyTables& tables);
/// Copies the outcomes of the automatic mammography tests into both tables.
void CopyStatusCells(const StatusCells& cells, SurveyTables& tables);

/// "DeviXrayLightField(3,1)".
std::string CellAddress(GridId grid, int32_t row, int32_t column);

}  // namespace vorex

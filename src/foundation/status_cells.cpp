#include "foundation/status_cells.h"

namespace vorex {

namespace {

struct OutcomeRow {
    std::optional<int32_t> SurveyOutcomes::*outcome;
    int32_t StatusCells::*cell;
};

constexpr OutcomeRow kOutcomes[] = {
    {&SurveyOutcomes::kVpL36, &StatusCells::kVpL36}, {&SurveyOutcomes::kVpL38, &StatusCells::kVpL38},
    {&SurveyOutcomes::kVpL39, &StatusCells::kVpL39}, {&SurveyOutcomes::Dose75, &StatusCells::Dose75},
    {&SurveyOutcomes::Dose78, &StatusCells::Dose78}, {&SurveyOutcomes::Dose80, &StatusCells::Dose80},
    {&SurveyOutcomes::Dose82, &StatusCells::Dose82},
};
static_assert(sizeof(SurveyOutcomes) ==
                  sizeof(kOutcomes) / sizeof(OutcomeRow) * sizeof(std::optional<int32_t>),
              "each outcome has a row");

}  // namespace

StatusCells WithOutcomes(StatusCells cells, const SurveyOutcomes& outcomes) {
    for (const OutcomeRow& row : kOutcomes)
        if (const auto& outcome = outcomes.*row.outcome) cells.*row.cell = *outcome;
    return cells;
}

}  // namespace vorex

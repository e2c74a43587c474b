#pragma once

#include <cstdint>
#include <optional>

namespace vorex {

/// Outcomes that the mammography tests leave for the annual survey: 0 none, 1 Pass, 2 Fail.
struct StatusCells {
    int32_t kVpL36 = 0;  ///< test 900: both of the next two
    int32_t kVpL38 = 0;  ///< test 900: percentage error
    int32_t kVpL39 = 0;  ///< test 900: coefficient of variation
    int32_t BQC69 = 0;   ///< only from a saved survey
    int32_t BQC79 = 0;   ///< only from a saved survey
    int32_t Dose75 = 0;  ///< test 1200: output for the MQSA column
    int32_t Dose78 = 0;  ///< test 1100: coefficient of variation
    int32_t Dose80 = 0;  ///< test 1100: average glandular dose
    int32_t Dose82 = 0;  ///< test 1200: output for the ACR column
    bool operator==(const StatusCells&) const = default;
};

/// The outcomes of one reading or judgement of a mammography test for the survey; empty for a cell that it
/// does not decide.
struct SurveyOutcomes {
    std::optional<int32_t> kVpL36;
    std::optional<int32_t> kVpL38;
    std::optional<int32_t> kVpL39;
    std::optional<int32_t> Dose75;
    std::optional<int32_t> Dose78;
    std::optional<int32_t> Dose80;
    std::optional<int32_t> Dose82;
    bool operator==(const SurveyOutcomes&) const = default;
};

/// The cells after the outcomes.
StatusCells WithOutcomes(StatusCells cells, const SurveyOutcomes& outcomes);

}  // namespace vorex

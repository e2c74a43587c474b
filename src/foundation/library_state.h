#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "foundation/host_contract.h"

namespace vorex {

/// Outcomes that the mammography tests leave for the annual survey: 0 none, 1 Pass, 2 Fail.
struct StatusCells {
    int32_t kVpL36 = 0;  ///< test 900: both of the next two
    int32_t kVpL38 = 0;  ///< test 900: percentage error
    int32_t kVpL39 = 0;  ///< test 900: coefficient of variation
    int32_t BQC69 = 0;   ///< only from a saved survey
    int32_t BQC79 = 0;   ///< only from a saved survey
    int32_t Dose75 = 0;  ///< test 1200: output at least 513 mR/s
    int32_t Dose78 = 0;  ///< test 1100: coefficient of variation at most 0.005
    int32_t Dose80 = 0;  ///< test 1100: average glandular dose at most 300 mrad
    int32_t Dose82 = 0;  ///< test 1200: output at least 800 mR/s
    bool operator==(const StatusCells&) const = default;
};

/// The few values that the whole library shares.
struct LibraryState {
    // Sequence flags: navigation state between a group and its children, and between a run and the guide.
    bool gSkipRemaining = false;
    bool gNARemaining = false;
    bool gRunActive = false;
    bool gMenuOpen = false;

    StatusCells cells;
    /// The same as the survey that was loaded last left them.
    StatusCells loadedCells;

    /// Caption of an exposure: a text key, or a text of nine characters for one version of the host.
    std::string exposureCaption;
    std::shared_ptr<IZRD47500PlugIn> plugIn;
    /// Standards whose limits a report shows beside the results.
    std::vector<std::shared_ptr<IStandard>> SelectedStandardsForReport;
    /// The standard made last by `CreateStandard`.
    std::shared_ptr<IStandard> newStandard;
    /// Polls of the idle guide that failed in a row.
    int32_t watchFailures = 0;
};

LibraryState& State();
/// Puts everything back to its start.
void ResetState();

}  // namespace vorex

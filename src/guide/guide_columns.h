#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "config/config_common.h"
#include "foundation/host_contract.h"

namespace vorex {

/// A column of the guide's table. A reading has the key of its limit, "ER kVp Avg"; every other column has
/// the key of its measurement.
struct GuideColumn {
    std::string key;
    std::string caption;  ///< text key
    int16_t width = 0;
};

/// The columns of the table for the test, detector kind, mode and units of a configuration: those of the
/// result, without the statistics that a grid shows in separate rows.
std::vector<GuideColumn> GuideColumns(const CConfigCommon& configuration);
/// The columns of the survey.
std::vector<GuideColumn> SurveyColumns();

using Standards = std::vector<std::shared_ptr<IStandard>>;

/// The chosen standards that an element's limits contain, in the order of choice.
Standards ChosenStandards(const ILimitData* limits, const ISelectedStandards* selected);

/// Numbers, from 1 and joined by ",", of the columns without a limit in any chosen standard. The import
/// column and the readings of the environment are never hidden; without a chosen standard nothing is.
std::string HiddenColumns(const std::vector<GuideColumn>& columns, const Standards& chosen);

}  // namespace vorex

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "config/config_common.h"
#include "files/standard_file.h"

namespace vorex {

/// Why a limit cannot judge any element of a test; empty when it can judge some.
std::string LimitFault(int32_t testId, const StandardLimit& limit);

/// The limit fitted to an element with this configuration: converted to the unit of the column, with a number
/// by voltage for the set voltage, and for test 700 one limit per exposure. Nothing for a limit that cannot
/// judge the element; the reason goes to `report`.
std::vector<StandardLimit> FitLimit(const StandardLimit& limit, const CConfigCommon& config,
                                    const std::function<void(const std::string&)>& report);

}  // namespace vorex

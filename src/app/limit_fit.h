#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "config/config_common.h"
#include "files/standard_file.h"

namespace vorex {

/// Why no element of a test could be judged by a limit as it is stated; empty when one could.
std::string LimitFault(int32_t testId, const StandardLimit& limit);

/// The limit as an element with this configuration has it: converted to the unit of the column, a number by
/// voltage taken at the voltage that is set, and for test 700 one for each exposure. Nothing for a limit that
/// cannot judge the element; the reason goes to `report`.
std::vector<StandardLimit> FitLimit(const StandardLimit& limit, const CConfigCommon& config,
                                    const std::function<void(const std::string&)>& report);

}  // namespace vorex

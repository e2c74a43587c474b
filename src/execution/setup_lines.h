#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "config/config_common.h"

namespace vorex {

/// What to set on the X-ray unit before an exposure, a line each, for a row of the exposure table counted
/// from 0. A setting without a value leaves its line empty, so that the lines keep their places. The
/// lines together are step 1.
std::vector<std::string> BuildSetupLines(const CConfigCommon& configuration, uint8_t row);

/// Number of the step behind the setup lines.
inline constexpr int32_t kStepAfterSetup = 2;

}  // namespace vorex

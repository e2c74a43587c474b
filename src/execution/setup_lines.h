#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "config/config_common.h"

namespace vorex {

/// What to set on the X-ray unit before an exposure, one line per setting. Rows of the exposure table count
/// from 0. A setting without a value leaves its line empty, so that the lines keep their numbers. Together
/// the lines are step 1. Raises std::logic_error for a test that has no lines.
std::vector<std::string> BuildSetupLines(const CConfigCommon& configuration, uint8_t row);

/// The numbers of the setup lines of a test, from 1.
struct SetupLineNumbers {
    int32_t count = 0;
    std::vector<int32_t> perExposure;  ///< lines whose value comes from the exposure table
};
/// Raises std::logic_error for a test that has no lines.
SetupLineNumbers NumberSetupLines(int32_t testId, int32_t generatorSetup);

/// Number of the step after the setup lines.
inline constexpr int32_t kStepAfterSetup = 2;

}  // namespace vorex

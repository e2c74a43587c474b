#pragma once

#include <cstdint>

#include "config/config_common.h"
#include "instruments/technique.h"

namespace vorex {

/// The settings of the X-ray unit for an exposure of a test, as the guide's lines request them. Rows of the
/// exposure table count from 0.
Technique TechniqueOf(const CConfigCommon& config, uint8_t row);

}  // namespace vorex

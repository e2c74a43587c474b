#pragma once

#include <string>

#include "files/standards_library.h"

namespace vorex {

/// The standards with their limits and the sources of these, at most 100 columns wide.
std::string StandardsText(const StandardsLibrary& library);

}  // namespace vorex

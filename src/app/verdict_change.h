#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vorex {

/// A value that began or ceased to fail.
struct ValueChange {
    std::string description;  ///< of the measurement, translated
    int32_t exposure = 0;     ///< from 1
    std::string value;        ///< with its unit
    std::string limits;       ///< that fail it now or failed it before, in words; empty for none
};

/// A change of an element's verdict by judging.
struct VerdictChange {
    int32_t element = 0;  ///< its ID
    int32_t before = 0;   ///< status
    int32_t after = 0;
    std::vector<ValueChange> values;  ///< empty: no value has changed, so the settings that decide have
};

}  // namespace vorex

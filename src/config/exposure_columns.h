#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vorex {

using TextArray = std::vector<std::string>;

/// A column of the exposure table. `ColumnNumber` gives its number in a test, if the test has it.
enum class ExposureColumn : uint8_t {
    kImport,     ///< whether the waveform is imported, "1" or "0"
    kFocalSpot,  ///< code of the focal spot
    kCriterion,  ///< code of the kVp criterion
    kKv,
    kMasOrMa,  ///< mAs or mA, as the generator setup says
    kTime,     ///< ms
    kAdjacent,
    kMa,
    kThickness,
    kMode,
    kMas,
    kSid,  ///< cm
};

/// Number of a column in the table of a test, from 1; 0 when the test does not have it.
uint8_t ColumnNumber(int32_t testId, ExposureColumn column);

}  // namespace vorex

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "foundation/vocabulary.h"

namespace vorex {

enum class UnitKind : uint8_t { kRadiographic, kFluoroscopic, kMammographic };

/// The settings of the X-ray unit for an exposure, and the phantom in its beam.
struct Technique {
    UnitKind unit = UnitKind::kRadiographic;
    /// Identifies the exposure: its random part depends on this, not on earlier exposures.
    uint64_t exposure = 0;
    int32_t detectorKind = kZrd;  ///< instruments that the test asks for
    double kv = 0;
    double ma = 0;
    double mas = 0;
    double timeMs = 0;
    bool timed = false;        ///< mA and time are set; otherwise the unit ends the exposure at the mAs
    bool automatic = false;    ///< the unit's exposure or brightness control ends or drives the exposure
    double distanceCm = 0;     ///< source to detector; 0: that of the room
    std::string targetFilter;  ///< "Mo/Mo"; empty: the unit's first
    std::optional<double> phantomCm;  ///< empty: that of the room
    bool highLevel = false;           ///< high level control of fluoroscopy
    bool pulsed = false;              ///< pulsed fluoroscopy
};

/// Returns the settings for the next exposure; empty without an operator at the unit.
using Console = std::function<std::optional<Technique>()>;

}  // namespace vorex

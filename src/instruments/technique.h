#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "foundation/vocabulary.h"

namespace vorex {

enum class UnitKind : uint8_t { kRadiographic, kFluoroscopic, kMammographic };

/// What the operator sets on an X-ray unit for the exposure at hand, and puts into its beam.
struct Technique {
    UnitKind unit = UnitKind::kRadiographic;
    /// Names the exposure: what is random about it depends on this, not on what was exposed before it.
    uint64_t exposure = 0;
    int32_t detectorKind = kZrd;  ///< instruments that the test asks for
    double kv = 0;
    double ma = 0;
    double mas = 0;
    double timeMs = 0;
    bool timed = false;        ///< mA and time are set; otherwise the unit ends the exposure at the mAs
    bool automatic = false;    ///< the unit's exposure or brightness control ends or drives the exposure
    double distanceCm = 0;     ///< source to detector; 0: where the room has it
    std::string targetFilter;  ///< "Mo/Mo"; empty: the unit's first
    std::optional<double> phantomCm;  ///< empty: what the room has in the beam
    bool highLevel = false;           ///< high level control of fluoroscopy
    bool pulsed = false;              ///< pulsed fluoroscopy
};

/// Asks what is set for the exposure that comes next; empty while nobody is at the unit.
using Console = std::function<std::optional<Technique>()>;

}  // namespace vorex

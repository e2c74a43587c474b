#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "instruments/random_source.h"
#include "instruments/room.h"
#include "instruments/technique.h"

namespace vorex {

/// The true values of an exposure, before any instrument measures it.
struct Shot {
    double kv = 0;               ///< peak voltage
    double ripple = 0;           ///< (Umax - Umin) / Umax
    double pulsesPerSecond = 0;  ///< of the ripple
    double ma = 0;               ///< while the beam is on
    double mas = 0;
    double timeMs = 0;       ///< in fluoroscopy while the pedal is held
    double airKermaMgy = 0;  ///< at the detector
    double hvlMm = 0;        ///< mm Al
    double riseMs = 0;
    double fallMs = 0;
    double pulseRate = 0;  ///< of pulsed fluoroscopy, per second; 0: continuous
    double pulseWidthMs = 0;
};

/// A virtual X-ray unit.
class XrayUnit {
  public:
    /// The seed determines how the unit's mA stations differ, which never changes.
    XrayUnit(const UnitSettings& settings, UnitKind kind, uint64_t seed);

    /// Why the unit refuses the exposure; empty when it does not.
    std::string Refusal(const Technique& technique) const;
    /// Makes an exposure; in fluoroscopy, `heldSeconds` is how long the pedal is held.
    Shot Expose(const Technique& technique, double heldSeconds, RandomSource& random);

  private:
    double StationFactor(double ma) const;
    double TimerMs(double setMs);
    double AecMas(const Technique& technique, RandomSource& random);
    void ExposeOnce(const Technique& technique, RandomSource& random, Shot& shot);
    void Fluoroscope(const Technique& technique, double heldSeconds, RandomSource& random, Shot& shot) const;

    const UnitSettings mSettings;
    const UnitKind mKind;
    const uint64_t mSeed;
    int32_t mTimedExposures = 0;
    int32_t mAutomaticExposures = 0;
};

/// mGy in air of 1 R: 2.58e-4 C/kg times 33.97 J/C.
inline constexpr double kMgyPerR = 8.76;

/// Targets and filters of a unit; the first of a mammographic unit is "Mo/Mo".
std::span<const std::string_view> TargetFiltersOf(UnitKind kind);

// Each of these is a line of docs/PHYSICS.md.

/// Air kerma in mGy per mAs at 1 m, tungsten with added aluminium, constant potential.
double TungstenOutput(double kv, double addedFiltrationMm);
/// Half-value layer in mm Al of the same beam.
double TungstenHvl(double kv, double addedFiltrationMm);
/// Air kerma in mGy per mAs at 1 m of a mammographic tube; 0 for a target/filter without data.
double MammographyOutput(std::string_view targetFilter, double kv);
double MammographyHvl(std::string_view targetFilter, double kv);
/// Output and half-value layer relative to constant potential at the same peak voltage.
double RippleOutputFactor(double ripple);
double RippleHvlFactor(double ripple);
/// Practical peak voltage relative to the peak voltage.
double PracticalPeakFactor(double ripple);
/// Voltage relative to its peak, at a phase of the ripple with period 1.
double RippleShape(double ripple, double phase);

}  // namespace vorex

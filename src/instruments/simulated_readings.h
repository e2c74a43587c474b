#pragma once

#include <cstdint>
#include <string>

#include "foundation/detector_service.h"
#include "instruments/instruments.h"
#include "instruments/random_source.h"
#include "instruments/room.h"
#include "instruments/xray_unit.h"

namespace vorex {

/// The readings of an exposure in the instruments' units, with their noise and resolution. A value outside an
/// instrument's range reads over or under range.
ZrdReading ReadZrd(const Shot& shot, const InstrumentSettings& instruments, const SentSettings& sent,
                   RandomSource& random);
PelomarkReading ReadPelomark(const Shot& shot, const InstrumentSettings& instruments,
                             const SentSettings& sent, RandomSource& random);
/// `dose` is the reading of the dose instrument used with the meter; empty without one.
MasReading ReadMas(const Shot& shot, const InstrumentSettings& instruments, const SentSettings& sent,
                   const std::string& dose, RandomSource& random);

/// Samples over a length in ms, joined by ","; kV in tenths, mA in the meter's resolution.
std::string SampleWaveform(const Shot& shot, uint8_t type, double lengthMs, int32_t points,
                           RandomSource& random);

/// Factor that refers a reading of a vented chamber to 101.325 kPa and a reference temperature (degrees
/// Celsius).
double AirDensityFactor(double temperatureC, double pressureKpa, double referenceC);
/// Charge of a vented chamber per R at its reference temperature, in C.
double ChamberChargePerR(double volumeCm3, double referenceC);

}  // namespace vorex

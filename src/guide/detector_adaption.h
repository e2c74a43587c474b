#pragma once

#include <cstdint>

#include "config/config_common.h"
#include "foundation/detector_service.h"

namespace vorex {

/// False when the configured instruments and the connected ones are of different families: a ZRD 47500
/// instead of a Pelomark, or the reverse. An unknown kind fits everything.
bool DetectorFits(int32_t connected, int32_t configured);

/// Detector kind that a test runs with: the configured kind, extended by connected instruments. A configured
/// mAs meter joins the detector that is found.
int32_t EffectiveKind(int32_t connected, int32_t configured);

/// The dosimeter settings of a configuration, in the instrument's codes.
DosimeterSettings DosimeterSettingsOf(const CConfigCommon& configuration);
/// Stores the settings that the instrument uses in the configuration.
void TakeDosimeterSettings(const DosimeterSettings& settings, CConfigCommon& configuration);

}  // namespace vorex

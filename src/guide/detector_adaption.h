#pragma once

#include <cstdint>

#include "config/config_common.h"
#include "foundation/detector_service.h"

namespace vorex {

/// False when the configured instruments and the connected ones are of different families: a ZRD 47500 where
/// a Pelomark is asked for, or the reverse. A kind that is not known fits everything.
bool DetectorFits(int32_t connected, int32_t configured);

/// Detector kind that a test runs with. What is connected extends what is configured, and an mAs meter that
/// is configured alone joins the detector that is found.
int32_t EffectiveKind(int32_t connected, int32_t configured);

/// The dosimeter settings of a configuration, as the instrument counts them.
DosimeterSettings DosimeterSettingsOf(const CConfigCommon& configuration);
/// Takes over what the instrument uses.
void TakeDosimeterSettings(const DosimeterSettings& settings, CConfigCommon& configuration);

}  // namespace vorex

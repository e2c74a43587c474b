#pragma once

#include <cstdint>

#include "config/config_common.h"
#include "foundation/detector_service.h"
#include "results/derived_row.h"
#include "results/result_common.h"

/// Turns a reading of an instrument into the row that the result stores: a text for each column that the
/// instrument fills, readings first, then the derived values of the test. A value that cannot be computed
/// is an empty text, never an error.
///
/// Readings are texts. Each named quantity passes through its plain text; inside one formula doubles are
/// used, and rounding happens only where a picture ("0.0#") is applied.
namespace vorex {

/// The exposure that a reading belongs to.
struct ReadingContext {
    const CConfigCommon& config;
    const CResultCommon& result;
    uint8_t exposureIndex = 0;  ///< counted from 0
    bool redo = false;          ///< the exposure replaces a stored one
};

/// Row of a ZRD 47500 exposure. Raises std::logic_error for a test that takes no exposures.
DerivedRow BuildDetectorResult(const ReadingContext& context, const ZrdReading& reading);
/// Row of a Pelomark reading.
DerivedRow BuildDosimeterResult(const ReadingContext& context, const PelomarkReading& reading);
/// Row of an mAs meter reading.
DerivedRow BuildMasResult(const ReadingContext& context, const MasReading& reading);

}  // namespace vorex

#pragma once

#include <cstdint>
#include <string>

#include "config/config_common.h"
#include "foundation/detector_service.h"
#include "results/result_common.h"

/// Turns a reading of an instrument into the row that the result stores: the readings, then the derived
/// values of the test, joined by ",". A value that cannot be computed is an empty field, never an error.
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

/// Row of a ZRD 47500 exposure. Sets the status cells of tests 1100 and 1200.
std::string BuildDetectorResult(const ReadingContext& context, const ZrdReading& reading);
/// Row of a Pelomark reading. Sets the status cells of test 1100 in dose mode.
std::string BuildDosimeterResult(const ReadingContext& context, const PelomarkReading& reading);
/// Row of an mAs meter reading.
std::string BuildMasResult(const ReadingContext& context, const MasReading& reading);

}  // namespace vorex

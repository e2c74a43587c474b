#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "config/config_common.h"
#include "foundation/detector_service.h"
#include "results/derived_row.h"
#include "results/result_common.h"

/// Turns a reading of an instrument into the row that the result stores: a text for each column that the
/// instrument fills, readings first, then the derived values of the test. A value that cannot be computed
/// is an empty text, never an error.
///
/// Readings are texts. Each named quantity is rounded to its plain text; within a formula numbers are
/// doubles, and only a picture ("0.0#") rounds.
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

/// Dose per mAs from an exposure and its mAs; empty unless both are usable and the mAs is above 0.
std::string DosePerMas(const std::string& exposure, const std::string& mas);
/// Mean and coefficient of variation of a column over the stored exposures; none for a column without
/// statistics.
std::vector<RowField> StatisticsOfColumn(const CResultCommon& result, std::string_view columnKey);

}  // namespace vorex

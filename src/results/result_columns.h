#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "config/config_common.h"
#include "results/column_facts.h"
#include "results/measurement.h"

namespace vorex {

/// The eight rows of test 100, "ER kVp Avg" to "ER HVL", that hold a coefficient of variation under the limit
/// key of the reading.
bool IsVariationRow(std::string_view measurementKey);
/// The twelve columns of the mAs meter: four readings, their means and their coefficients of variation.
bool IsMasFamily(std::string_view measurementKey);
/// The quantities of an exposure whose readings a limit judges: "kVp Avg" to "HVL".
bool IsWaveformQuantity(std::string_view measurementKey);

/// The columns of a result for the test, detector kind, mode and units of a configuration, in order, as the
/// measurements of a working row without values.
MeasurementRow BuildColumns(const CConfigCommon& configuration);

/// The key of the column that a measurement belongs to. Two columns change their key while a test runs: the
/// maximum exposure rate takes the number of its exposure, the coefficient of linearity the kind of its pair.
std::string_view ColumnKeyOf(std::string_view measurementKey);

/// True for the columns that a source fills: 1 ZRD 47500, 2 Pelomark, 3 mAs meter.
bool IsFilledBy(int32_t source, const ColumnFacts& column);

/// Number picture of a column, by its key; empty for a column without one.
std::string_view PictureOfColumn(int32_t testId, std::string_view measurementKey);

/// True for a column that holds a statistic of the whole test (tests 100, 900 and 1100).
bool IsTestWideKey(int32_t testId, std::string_view measurementKey);

/// 1-based number of a column in a row; 0 when the row does not have it.
uint8_t ColumnNumber(const MeasurementRow& row, std::string_view measurementKey);

}  // namespace vorex

#pragma once

#include <string>
#include <string_view>

#include "results/measurement.h"

/// The keys of the columns of a result view. A reading has the key of its limit, "ER kVp Avg"; every other
/// quantity has the key of its measurement.
namespace vorex {

/// Key of the measurement that a column shows for an exposure.
std::string ValueKeyOf(std::string_view columnKey);
/// Keys of the mean and of the coefficient of variation of a column of test 100.
std::string MeanKeyOf(std::string_view columnKey);
std::string VariationKeyOf(std::string_view columnKey);

/// True when a key names a measurement, including one that changed its key during the test: the maximum
/// exposure rate takes the number of its exposure, the coefficient of linearity the kind of its pair.
bool NamesMeasurement(std::string_view key, std::string_view measurementKey);
/// The measurement that a key names, or null.
const CMeasurement* FindNamed(const MeasurementRow& row, std::string_view key);

}  // namespace vorex

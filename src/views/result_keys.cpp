#include "views/result_keys.h"

#include <algorithm>

#include "foundation/vocabulary.h"
#include "results/result_columns.h"

namespace vorex {

namespace {

std::string_view WithoutPrefix(std::string_view key) {
    return key.starts_with(key::kErPrefix) ? key.substr(key::kErPrefix.size()) : key;
}

}  // namespace

std::string ValueKeyOf(std::string_view columnKey) {
    const std::string_view quantity = WithoutPrefix(columnKey);
    return std::string(IsWaveformQuantity(quantity) ? quantity : columnKey);
}

std::string MeanKeyOf(std::string_view columnKey) {
    return std::string(key::kAvgPrefix).append(WithoutPrefix(columnKey));
}

std::string VariationKeyOf(std::string_view columnKey) {
    const std::string_view quantity = WithoutPrefix(columnKey);
    return std::string(IsWaveformQuantity(quantity) ? key::kErPrefix : key::kCvPrefix).append(quantity);
}

bool NamesMeasurement(std::string_view key, std::string_view measurementKey) {
    return measurementKey == key || ColumnKeyOf(measurementKey) == ColumnKeyOf(key);
}

const CMeasurement* FindNamed(const MeasurementRow& row, std::string_view key) {
    const auto at = std::find_if(row.begin(), row.end(),
                                 [&](const auto& item) { return NamesMeasurement(key, item->RawKey()); });
    return at == row.end() ? nullptr : at->get();
}

}  // namespace vorex

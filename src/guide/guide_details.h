#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "guide/guide_columns.h"
#include "results/result_common.h"

namespace vorex {

/// A cell of the guide's table that the operator pressed.
struct PressedCell {
    uint8_t exposure = 0;  ///< 0 for a row of statistics
    std::string_view columnKey;
    std::vector<std::string> columnKeys;  ///< of the whole table
};

/// The details of a pressed cell: the value, its verdict and the limits that judge it, a line each. The four
/// mAs columns are shown together, and so are the columns of a narrow table; test 100 adds the mean and the
/// coefficient of variation.
std::vector<std::string> CellDetails(const CResultCommon& result, const PressedCell& cell,
                                     const Standards& chosen);

}  // namespace vorex

#pragma once

#include <cstdint>
#include <string_view>

#include "foundation/test_sets.h"

namespace vorex {

/// Properties of a column; its row in `result_columns.cpp` sets them.
inline constexpr unsigned kCheckMark = 1U << 0;   ///< a flag of the exposure
inline constexpr unsigned kHasPreset = 1U << 1;   ///< carries the set voltage as the X of its limits
inline constexpr unsigned kQuantity = 1U << 2;    ///< a reading that is judged under "ER " and its key
inline constexpr unsigned kOfMasMeter = 1U << 3;  ///< filled by the mAs meter
inline constexpr unsigned kTypedText = 1U << 4;   ///< typed by a person, shown unchanged
inline constexpr unsigned kJudged = 1U << 5;      ///< derived; stays a number in a stored row
inline constexpr unsigned kLoadsAsNumber = 1U
                                           << 6;  ///< a number again when loaded; stored as text while empty
inline constexpr unsigned kTestWide = 1U << 7;    ///< a result of the whole test
inline constexpr unsigned kMean = 1U << 8;        ///< of test 100, like all that follow
inline constexpr unsigned kCvOfReadings = 1U << 9;     ///< judged by limits with the expression "CV"
inline constexpr unsigned kCoefficient = 1U << 10;     ///< of variation, of the mAs meter
inline constexpr unsigned kAlwaysShown = 1U << 11;     ///< even if the chosen standard has no limit for it
inline constexpr unsigned kOfEveryReading = 1U << 12;  ///< filled with the reading of any instrument

/// The columns that hold the mean and the coefficient of variation of a column in test 100.
struct StatisticColumns {
    std::string_view mean;
    std::string_view variation;
};

struct ColumnFacts {
    unsigned flags = 0;
    TestSet tests;
    StatisticColumns statistics;  ///< empty keys for a column without statistics
    /// True when any of the flags is set.
    bool Is(unsigned any) const { return (flags & any) != 0; }
    /// True for a statistic or a result of the whole test.
    bool IsTestWide(int32_t testId) const {
        return Is(kTestWide | kMean | kCvOfReadings | kCoefficient) && tests.Has(testId);
    }
};

/// The facts of the column that a measurement belongs to; none for a key without a column.
const ColumnFacts& FactsOf(std::string_view measurementKey);

}  // namespace vorex

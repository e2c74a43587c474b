#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "foundation/status_cells.h"

namespace vorex {

/// A text for one column. The key is a constant of the vocabulary, so it outlives the row.
struct RowField {
    std::string_view key;
    std::string text;
    bool operator==(const RowField&) const = default;
};

/// The reading of one instrument with the values derived from it.
struct DerivedRow {
    std::vector<RowField> fields;
    /// Fields of the next exposure with a reading that change because they compare it with this one; empty if
    /// there is none.
    std::vector<RowField> next;
    SurveyOutcomes outcomes;
};

/// The texts in their order, joined by ","; a comma inside a text is written as a point.
std::string JoinedFields(const DerivedRow& row);

}  // namespace vorex

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vorex {

/// A text for one column. The key is a constant of the vocabulary, so it outlives the row.
struct RowField {
    std::string_view key;
    std::string text;
    bool operator==(const RowField&) const = default;
};

/// What an exposure leaves for the annual survey: Pass or Fail; empty for a cell that it says nothing about.
struct SurveyOutcomes {
    std::optional<int32_t> Dose75;
    std::optional<int32_t> Dose78;
    std::optional<int32_t> Dose80;
    std::optional<int32_t> Dose82;
    bool operator==(const SurveyOutcomes&) const = default;
};

/// The reading of one instrument with the values derived from it.
struct DerivedRow {
    std::vector<RowField> fields;
    SurveyOutcomes outcomes;
};

/// The texts in their order, joined by ","; a comma inside a text is written as a point.
std::string JoinedFields(const DerivedRow& row);

}  // namespace vorex

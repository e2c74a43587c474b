#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "reports/report_model.h"

namespace vorex {

/// The columns of a definition, fitted to a width: columns that together are too wide are scaled down, and a
/// column that could not hold a number gets room from the others. The same definition gives the same
/// proportions on every paper.
///
/// "<", ">" and "^" align; the number is the width in twips; "!" is the narrow column of the fail mark; "+"
/// has no effect.
std::vector<ReportColumn> ParseReportColumns(std::string_view definition, int32_t usableWidth);

/// The rows of a table string. Empty cells are left out. Texts are kept in the store; invalid UTF-8 and
/// control characters are replaced.
std::vector<ReportRow> ParseReportRows(std::string_view rows, const std::vector<ReportColumn>& columns,
                                       TextStore& texts);

/// The mark of a cell that passed; `markup::kFailMark` is that of one that failed.
inline constexpr std::string_view kReportPassMark = "{{\\fonttbl{\\f0\\fcharset2 Wingdings}}\\f0\\fs18 ü}";

/// A text as a report may hold it: valid UTF-8 without control characters except the line feed.
std::string CleanReportText(std::string_view text);

}  // namespace vorex

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "reports/report_model.h"

namespace vorex {

/// The columns of a definition, fitted to a width: what reaches beyond it is scaled down, and a column that
/// could not hold a number gets room from the others. The same definition gives the same proportions on every
/// paper.
///
/// "<", ">" and "^" align; the number is the width in twips; "!" is the narrow column of the fail mark; "+"
/// keeps its column in the table and asks for nothing else.
std::vector<ReportColumn> ParseReportColumns(std::string_view definition, int32_t usableWidth);

/// The rows of a table string. Cells that hold nothing are left out. Texts are kept in the store; what is no
/// valid UTF-8, and control characters, are replaced.
std::vector<ReportRow> ParseReportRows(std::string_view rows, const std::vector<ReportColumn>& columns,
                                       TextStore& texts);

/// The mark of a cell that passed, as `markup::kFailMark` is of one that failed.
inline constexpr std::string_view kReportPassMark = "{{\\fonttbl{\\f0\\fcharset2 Wingdings}}\\f0\\fs18 ü}";

/// A text that a report may hold: valid UTF-8 without control characters but the line feed.
std::string CleanReportText(std::string_view text);

}  // namespace vorex

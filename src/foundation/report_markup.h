#pragma once

#include <string>
#include <string_view>

#include "foundation/host_contract.h"

/// The mark-up of report tables, as the library writes it and a report engine reads it.
///
/// A column definition: "<" a column to the left, ">" to the right, each but the first after "|"; then flags
/// "+" and "!" of the host's table, before or after them the width in twips; ";" at the end. "!" is the
/// narrow column of the fail mark; "#" in front of the width is a ruled column: the engine frames each of its
/// cells, and a line feed at the end of a cell is room to write by hand.
///
/// Rows: cells separated by "|", ended by ";". The first cell, in front of the first "|", is the margin. A
/// cell is a text, a heading in bold italic, or the fail mark. In texts "|", ";", "{", "}" and "\" have "\"
/// in front.
namespace vorex::markup {

inline constexpr char kCell = '|';
inline constexpr char kRowEnd = ';';
inline constexpr char kEscape = '\\';
inline constexpr char kRuled = '#';
inline constexpr std::string_view kSpecials = "|;{}\\";
inline constexpr std::string_view kHeadingBegin = "{\\i\\b ";
inline constexpr std::string_view kHeadingEnd = "}";
/// A cross of the Wingdings symbol font at 9 points.
inline constexpr std::string_view kFailMark = "{{\\fonttbl{\\f0\\fcharset2 Wingdings}}\\f0\\fs18 û}";

/// A text, escaped as the content of a cell.
std::string Text(std::string_view text);
/// A heading cell, with the "|" in front.
std::string Heading(std::string_view text);
/// A row of one cell after the margin: a heading inside a table.
std::string Line(std::string_view text);

/// A number as the report shows it: a text that is a number, with or without a star after it, gets the
/// decimal sign of the report's language; any other text stays unchanged.
std::string Number(std::string_view number, const IReportDocument& report);

}  // namespace vorex::markup

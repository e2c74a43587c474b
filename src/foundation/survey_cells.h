#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Tables of texts that are in one stored string.
namespace vorex {

/// The cells joined by the delimiter. A delimiter inside a cell is written with round brackets, so that no
/// other cell moves.
std::string JoinCells(const std::vector<std::string>& cells);
/// The parts between delimiters; the empty text has one empty part.
std::vector<std::string> SplitCells(std::string_view text);
/// The first `count` parts. Throws std::runtime_error that names the table and both counts when there are
/// fewer; more are left out.
std::vector<std::string> SplitCells(std::string_view table, std::string_view text, std::size_t count);

/// The default text of a key for its text in the present language: what a file keeps. Any other text stays.
std::string NeutralWord(std::string_view text, std::string_view textKey);
/// The reverse: the text of a key in the present language for its default text.
std::string WordOfToday(std::string_view text, std::string_view textKey);

}  // namespace vorex

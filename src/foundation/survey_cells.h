#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Tables of texts that are stored in one string.
namespace vorex {

/// The cells joined by the delimiter. A delimiter inside a cell is written with round brackets, so that the
/// other cells keep their places.
std::string JoinCells(const std::vector<std::string>& cells);
/// The parts between delimiters; the empty text has one empty part.
std::vector<std::string> SplitCells(std::string_view text);
/// The first `count` parts. Throws std::runtime_error that names the table and both counts when there are
/// fewer; more are left out.
std::vector<std::string> SplitCells(std::string_view table, std::string_view text, std::size_t count);

/// For the text of a key in the present language, the default text, which files keep. Any other text stays
/// unchanged.
std::string NeutralWord(std::string_view text, std::string_view textKey);
/// The reverse: the text of a key in the present language for its default text.
std::string WordOfToday(std::string_view text, std::string_view textKey);

}  // namespace vorex

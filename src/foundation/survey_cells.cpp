#include "foundation/survey_cells.h"

#include <stdexcept>

#include "foundation/utilities.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

constexpr std::string_view kHarmlessDelimiter = "(¤)";

}  // namespace

std::string JoinCells(const std::vector<std::string>& cells) {
    std::string joined;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (i > 0) joined += kDelimiter;
        std::size_t begin = 0;
        for (std::size_t at = cells[i].find(kDelimiter); at != std::string::npos;
             at = cells[i].find(kDelimiter, begin)) {
            joined.append(cells[i], begin, at - begin).append(kHarmlessDelimiter);
            begin = at + kDelimiter.size();
        }
        joined.append(cells[i], begin);
    }
    return joined;
}

std::vector<std::string> SplitCells(std::string_view text) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (std::size_t end = text.find(kDelimiter); end != std::string_view::npos;
         end = text.find(kDelimiter, begin)) {
        parts.emplace_back(text.substr(begin, end - begin));
        begin = end + kDelimiter.size();
    }
    parts.emplace_back(text.substr(begin));
    return parts;
}

std::vector<std::string> SplitCells(std::string_view table, std::string_view text, std::size_t count) {
    std::vector<std::string> parts = SplitCells(text);
    if (parts.size() < count)
        throw std::runtime_error("\"" + std::string(table) + "\" has " + std::to_string(parts.size()) +
                                 " cells, expected " + std::to_string(count));
    parts.resize(count);
    return parts;
}

std::string NeutralWord(std::string_view text, std::string_view textKey) {
    return !textKey.empty() && text == Translate(textKey) ? DefaultText(textKey, {}) : std::string(text);
}

std::string WordOfToday(std::string_view text, std::string_view textKey) {
    return !textKey.empty() && text == DefaultText(textKey, {}) ? Translate(textKey) : std::string(text);
}

}  // namespace vorex

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vorex {

/// Where a heading stands.
struct Bookmark {
    std::string title;
    int level = 0;         ///< depth in the tree of headings
    std::size_t page = 0;  ///< from 0
    int top = 0;           ///< points above the lower edge of the paper
};

/// The PDF with its headings in the outline and its language told, neither of which the toolkit's writer can.
/// It stays what PDF/A-1 asks for.
std::string WithBookmarks(std::string_view pdf, const std::vector<Bookmark>& bookmarks,
                          const std::string& language);

}  // namespace vorex

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vorex {

/// The position of a heading.
struct Bookmark {
    std::string title;
    int level = 0;         ///< depth in the tree of headings
    std::size_t page = 0;  ///< from 0
    int top = 0;           ///< points above the lower edge of the paper
};

/// Adds to a PDF the outline of its headings and its language, which the toolkit's writer cannot. The file
/// stays PDF/A-1.
std::string WithBookmarks(std::string_view pdf, const std::vector<Bookmark>& bookmarks,
                          const std::string& language);

}  // namespace vorex

#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

namespace vorex {

inline constexpr std::string_view kStandards = "standards";
inline constexpr std::string_view kLanguages = "languages";

/// Folders with a kind of data that is installed with the running program.
std::vector<std::filesystem::path> DataFolders(std::string_view kind);

}  // namespace vorex

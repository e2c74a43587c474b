#pragma once

#include <string>
#include <string_view>

/// What a load costs a user can only be measured in a fresh process: memory that was used before is neither
/// new to the process nor cold. The benchmark program starts itself with one of these words and the name of a
/// file.
namespace vorex::bench {

inline constexpr std::string_view kLoadElements = "--load-elements";
inline constexpr std::string_view kLoadXmlOnly = "--load-xml-only";

/// Loads the file, prints the seconds of processor time and by how many bytes the largest resident size
/// exceeds the size before, and returns the exit code.
int PrintLoad(std::string_view what, const std::string& path);

}  // namespace vorex::bench

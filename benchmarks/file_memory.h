#pragma once

#include <string>
#include <string_view>

/// How much memory a load takes can only be told in a process that has done nothing else: the benchmark
/// program starts itself with one of these words and the name of a file.
namespace vorex::bench {

inline constexpr std::string_view kLoadElements = "--load-elements";
inline constexpr std::string_view kLoadXmlOnly = "--load-xml-only";

/// Loads the file, prints by how many bytes the largest resident size exceeds the size before, and returns
/// the exit code.
int PrintLoadMemory(std::string_view what, const std::string& path);

}  // namespace vorex::bench

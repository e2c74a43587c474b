#pragma once

#include <cstdlib>
#include <optional>
#include <string_view>

#include "foundation/file_error.h"

namespace vorex::fuzz {

/// What is read, or nothing when the input is refused. A message goes to a terminal: it names the file, and
/// has no control characters, whatever is in the file.
template <typename Read>
auto ReadOrRefused(std::string_view file, Read read) -> std::optional<decltype(read())> {
    try {
        return read();
    } catch (const FileError& error) {
        const std::string_view message = error.what();
        if (!message.starts_with(file)) std::abort();
        for (const char c : message)
            if ((c >= '\0' && c < ' ') || c == '\x7f') std::abort();
        return std::nullopt;
    }
}

}  // namespace vorex::fuzz

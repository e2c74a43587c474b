#pragma once

#include <optional>
#include <string>

#include "foundation/file_error.h"

namespace vorex::test {

/// The error that an action on a file raises; nothing if it raises none.
template <typename Action>
std::optional<FileError> FileFaultOf(Action action) {
    try {
        action();
    } catch (const FileError& error) {
        return error;
    }
    return std::nullopt;
}
/// Its message; empty if there is none.
template <typename Action>
std::string MessageOf(Action action) {
    const auto fault = FileFaultOf(action);
    return fault ? fault->what() : std::string();
}

}  // namespace vorex::test

#pragma once

#include <cstddef>
#include <string_view>

namespace vorex {

/// Length in bytes of the UTF-8 character that a text begins with; 0 when it begins with none. The text is
/// not empty.
std::size_t Utf8Length(std::string_view text);

}  // namespace vorex

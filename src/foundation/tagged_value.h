#pragma once

#include <string>
#include <variant>

namespace vorex {

/// A value that crosses the host boundary: nothing, a text, or a number of single or double precision.
using TaggedValue = std::variant<std::monostate, std::string, float, double>;

/// The value as plain text: numbers in their shortest form, nothing as the empty text.
std::string TextOf(const TaggedValue& value);
/// The value as a number: texts through `ReadNumber`, nothing as 0.
double NumberOf(const TaggedValue& value);

}  // namespace vorex

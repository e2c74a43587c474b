#pragma once

#include <cstdint>
#include <set>

namespace vorex {

class XmlSource;

/// Checks a whole document before any object is made from it. Raises FileError, with file, line and element,
/// if a word is in place of a number, a required attribute or block is missing, something that must be unique
/// occurs twice, or elements are nested too deep.
///
/// Returns the IDs of the elements whose results contain only what this system writes.
std::set<int32_t> CheckElementFile(const XmlSource& source);

}  // namespace vorex

#pragma once

#include <cstdint>
#include <set>

namespace vorex {

class XmlSource;

/// Looks through a whole document before anything is made of it. Raises FileError, with file, line and
/// element, where a number is a word, a required attribute or block is missing, something is there twice that
/// must stand once, or elements are nested too deep.
///
/// Returns the IDs of the elements whose results hold nothing but what this system writes.
std::set<int32_t> CheckElementFile(const XmlSource& source);

}  // namespace vorex

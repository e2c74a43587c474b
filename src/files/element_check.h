#pragma once

#include <cstdint>
#include <functional>
#include <pugixml.hpp>
#include <set>

namespace vorex {

class XmlSource;

/// Receives each test below the root element, in order, once everything in it is checked.
using CheckedElement = std::function<void(pugi::xml_node element)>;

/// Checks a whole document. Raises FileError, with file, line and element, if a word is in place of a number,
/// a required attribute or block is missing, something that must be unique occurs twice, or elements are
/// nested too deep. What was made from the tests before must then be dropped.
///
/// Returns the IDs of the elements whose results contain only what this system writes.
std::set<int32_t> CheckElementFile(
    const XmlSource& source, const CheckedElement& checked = [](pugi::xml_node /*element*/) {});

}  // namespace vorex

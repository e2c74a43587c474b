#pragma once

namespace vorex {

class XmlSource;

/// Looks through a whole document before anything is made of it. Raises FileError, with file, line and
/// element, where a number is a word, a required attribute or block is missing, something stands twice that
/// must stand once, or elements are nested too deep.
void CheckElementFile(const XmlSource& source);

}  // namespace vorex

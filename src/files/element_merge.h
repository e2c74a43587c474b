#pragma once

#include <cstdint>
#include <pugixml.hpp>
#include <set>

namespace vorex {

class OutputDocument;
class OutputElement;

/// Copies foreign content of a file (elements, attributes, comments, instructions unknown to this system)
/// into the tree that will be written, after the counterparts of its old neighbours; attributes keep their
/// order. Content that this system knows and no longer writes is not copied.
///
/// A deferred element gets its counterpart, and is merged when it is made. The loaded document must outlive
/// the written one.
void MergeForeign(OutputDocument& written, const pugi::xml_document& read);

/// The same for one test element and its counterpart. The results of the elements in the set are left out:
/// either they replace the file's results, or those have no foreign content.
void MergeForeign(OutputElement& written, pugi::xml_node read, const std::set<int32_t>& skippedResults);

}  // namespace vorex

#pragma once

#include <cstdint>
#include <pugixml.hpp>
#include <set>

namespace vorex {

class OutputDocument;
class OutputElement;

/// Puts what a file holds and this system does not know (elements, attributes, comments, instructions) into
/// the tree that is about to be written, after the counterparts of its old neighbours; attributes keep
/// the order that they had. What this system knows and no longer writes does not come back.
///
/// A deferred element learns its counterpart, and is merged when it is made. The document that was read has
/// to outlive the written one.
void MergeForeign(OutputDocument& written, const pugi::xml_document& read);

/// The same for one test element and its counterpart. The results of the elements in the set are left out:
/// they took the place of the file's, or the file's hold nothing that is not known.
void MergeForeign(OutputElement& written, pugi::xml_node read, const std::set<int32_t>& skippedResults);

}  // namespace vorex

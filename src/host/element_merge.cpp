#include "host/element_merge.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "foundation/number_text.h"
#include "foundation/vocabulary.h"
#include "host/element_document.h"
#include "host/element_schema.h"

namespace vorex {

namespace {

using Node = pugi::xml_node;

/// Attributes that tell elements of one name apart; a missing one is empty.
std::pair<std::string_view, std::string_view> IdentityAttributes(const ElementRow* row) {
    switch (row == nullptr ? Identity::kOrder : row->identity) {
        case Identity::kId:
            return {tag::kId, {}};
        case Identity::kKey:
            return {tag::kKey, {}};
        case Identity::kNumber:
            return {tag::kNumber, {}};
        case Identity::kNameAndVersion:
            return {tag::kName, tag::kVersion};
        default:
            return {};
    }
}

bool SameAttribute(Node a, Node b, std::string_view name) {
    return name.empty() || SameText(FindAttribute(a, name).value(), FindAttribute(b, name).value());
}

bool AreCounterparts(Node a, Node b, const ElementRow* row) {
    if (!SameText(a.name(), b.name())) return false;
    const auto [first, second] = IdentityAttributes(row);
    return SameAttribute(a, b, first) && SameAttribute(a, b, second);
}

std::string IdentityOf(Node node, const ElementRow* row) {
    std::string identity = node.name();
    const auto [first, second] = IdentityAttributes(row);
    for (std::string_view name : {first, second}) {
        if (name.empty()) continue;
        identity += '\n';
        identity += FindAttribute(node, name).value();
    }
    return identity;
}

/// Finds the counterparts of one parent's children. Mostly both sides have the same order and the next
/// child is the one; from the first that is not, the rest is looked up by identity.
class Counterparts {
  public:
    Counterparts(Node parent, Place place) : mPlace(place), mNext(FirstElement(parent.first_child())) {}

    Node Find(Node old, const ElementRow* row) {
        if (!mIndexed) {
            if (mNext && AreCounterparts(mNext, old, row)) {
                const Node found = mNext;
                mNext = FirstElement(mNext.next_sibling());
                return found;
            }
            Index();
        }
        const auto at = mRest.find(IdentityOf(old, row));
        if (at == mRest.end() || at->second.empty()) return {};
        const Node found = at->second.back();
        at->second.pop_back();
        return found;
    }

  private:
    static Node FirstElement(Node node) {
        while (node && node.type() != pugi::node_element) node = node.next_sibling();
        return node;
    }

    void Index() {
        mIndexed = true;
        std::vector<Node> rest;
        for (Node node = mNext; node; node = FirstElement(node.next_sibling())) rest.push_back(node);
        // From the back, so that the first of several alike is taken first.
        for (auto node = rest.rbegin(); node != rest.rend(); ++node)
            mRest[IdentityOf(*node, FindElementRow(mPlace, node->name()))].push_back(*node);
    }

    Place mPlace;
    Node mNext;
    bool mIndexed = false;
    std::unordered_map<std::string, std::vector<Node>> mRest;
};

class Merge {
  public:
    explicit Merge(const std::set<int32_t>& replacedResults) : mReplacedResults(replacedResults) {}

    void MergeChildren(Node into, Node from, Place place) const;

  private:
    void MergeElement(Node into, Node from, Place place) const;
    static void MergeAttributes(Node into, Node from, Place place);
    static bool IsForeign(Node child, const ElementRow* row, Place place);
    bool IsReplaced(Node result) const;

    const std::set<int32_t>& mReplacedResults;
};

/// What stands before everything that is merged: the declaration of a document, the text of an element.
Node StartOf(Node into) {
    const pugi::xml_node_type type = into.first_child().type();
    return type == pugi::node_declaration || type == pugi::node_pcdata ? into.first_child() : Node();
}

/// True where a text between the known elements belongs to nobody here. A written element without a row of
/// its own is a single value.
bool IsTextForeign(Place place) {
    return place != Place::kForeign && !OwnsText(place);
}

/// True for what is kept although nothing in the new tree stands for it.
bool Merge::IsForeign(Node child, const ElementRow* row, Place place) {
    switch (child.type()) {
        case pugi::node_element:
            if (row != nullptr) return false;
            // A row of the exposure table that went away; a key of another test stays.
            return place != Place::kPlugInData || FindConfigKey(child.name()).row < 0;
        case pugi::node_pcdata:
        case pugi::node_cdata:
            return IsTextForeign(place);
        case pugi::node_declaration:
            return false;
        default:
            return true;
    }
}

bool Merge::IsReplaced(Node result) const {
    return mReplacedResults.contains(ReadInteger(FindAttribute(result.parent(), tag::kId).value()));
}

void Merge::MergeChildren(Node into, Node from, Place place) const {
    Counterparts counterparts(into, place);
    Node behind = StartOf(into);
    for (Node child = from.first_child(); child; child = child.next_sibling()) {
        const ElementRow* row = nullptr;
        if (child.type() == pugi::node_element) {
            row = FindElementRow(place, child.name());
            if (const Node counterpart = counterparts.Find(child, row)) {
                const Place below = row == nullptr ? Place::kForeign : row->place;
                if (below != Place::kResultItem || !IsReplaced(child))
                    MergeElement(counterpart, child, below);
                behind = counterpart;
                continue;
            }
        }
        if (!IsForeign(child, row, place)) continue;
        behind = behind ? into.insert_copy_after(child, behind) : into.prepend_copy(child);
    }
}

void Merge::MergeElement(Node into, Node from, Place place) const {
    if (from.first_attribute()) MergeAttributes(into, from, place);
    if (place == Place::kTest) place = PlaceOfTest(FindAttribute(from, tag::kTestId).value());
    if (IsTextForeign(place) && *from.value() != '\0')
        into.prepend_child(pugi::node_pcdata).set_value(from.value());
    if (from.first_child()) MergeChildren(into, from, place);
}

void Merge::MergeAttributes(Node into, Node from, Place place) {
    pugi::xml_attribute old = from.first_attribute();
    pugi::xml_attribute now = into.first_attribute();
    while (old && now && SameText(old.name(), now.name())) {
        old = old.next_attribute();
        now = now.next_attribute();
    }
    if (!old) return;
    // Something is foreign, gone or in another order: the old order, then what is new.
    std::vector<std::pair<std::string, std::string>> attributes;
    for (old = from.first_attribute(); old; old = old.next_attribute()) {
        const pugi::xml_attribute written = FindAttribute(into, old.name());
        if (written)
            attributes.emplace_back(old.name(), written.value());
        else if (FindAttributeRow(place, old.name()) == nullptr)
            attributes.emplace_back(old.name(), old.value());
    }
    for (now = into.first_attribute(); now; now = now.next_attribute())
        if (!FindAttribute(from, now.name())) attributes.emplace_back(now.name(), now.value());
    into.remove_attributes();
    for (const auto& [name, value] : attributes) into.append_attribute(name.c_str()) = value.c_str();
}

}  // namespace

void MergeForeign(pugi::xml_document& written, const pugi::xml_document& read,
                  const std::set<int32_t>& replacedResults) {
    Merge(replacedResults).MergeChildren(written, read, Place::kDocument);
}

}  // namespace vorex

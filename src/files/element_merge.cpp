#include "files/element_merge.h"

#include <array>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "files/element_document.h"
#include "files/element_output.h"
#include "files/element_schema.h"
#include "foundation/number_text.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

using Node = pugi::xml_node;

/// Attributes that distinguish elements of the same name; a missing one is empty.
using IdentityNames = std::array<std::string_view, 2>;

IdentityNames IdentityAttributes(const ElementRow* row) {
    switch (row == nullptr ? Identity::kOrder : row->identity) {
        case Identity::kId:
            return {tag::kId};
        case Identity::kKey:
            return {tag::kKey};
        case Identity::kNumber:
            return {tag::kNumber};
        case Identity::kNameAndVersion:
            return {tag::kName, tag::kVersion};
        default:
            return {};
    }
}

bool AreCounterparts(const OutputElement& written, Node read, std::string_view name, const ElementRow* row) {
    if (written.Name() != name) return false;
    if (row == nullptr || row->identity == Identity::kOnly) return true;
    for (std::string_view part : IdentityAttributes(row))
        if (!part.empty() && !SameText(FindAttribute(read, part).value(), written.GetAttribute(part)))
            return false;
    return true;
}

template <typename GetAttribute>
std::string IdentityOf(std::string_view name, const ElementRow* row, GetAttribute&& attribute) {
    std::string identity(name);
    for (std::string_view part : IdentityAttributes(row))
        if (!part.empty()) identity.append("\n").append(attribute(part));
    return identity;
}

/// Finds the counterparts of one parent's children. Usually both sides have the same order, so the next child
/// is the counterpart; from the first mismatch on, the rest is looked up by identity.
class Counterparts {
  public:
    Counterparts(const OutputElement& parent, Place place) : mPlace(place), mNext(parent.First()) {}

    OutputElement* Find(Node read, std::string_view name, const ElementRow* row) {
        if (!mIndexed) {
            if (mNext != nullptr && AreCounterparts(*mNext, read, name, row))
                return std::exchange(mNext, mNext->Next());
            Index();
        }
        const auto at = mRest.find(
            IdentityOf(name, row, [&](std::string_view part) { return FindAttribute(read, part).value(); }));
        if (at == mRest.end() || at->second.empty()) return nullptr;
        OutputElement* const found = at->second.back();
        at->second.pop_back();
        return found;
    }

  private:
    void Index() {
        mIndexed = true;
        std::vector<OutputElement*> rest;
        for (OutputElement* at = mNext; at != nullptr; at = at->Next()) rest.push_back(at);
        // From the back, so that the first of several equal ones is taken first.
        for (auto at = rest.rbegin(); at != rest.rend(); ++at) {
            const OutputElement& element = **at;
            mRest[IdentityOf(element.Name(), FindElementRow(mPlace, element.Name()),
                             [&](std::string_view name) { return element.GetAttribute(name); })]
                .push_back(*at);
        }
    }

    Place mPlace;
    OutputElement* mNext;
    bool mIndexed = false;
    std::unordered_map<std::string, std::vector<OutputElement*>> mRest;
};

class Merge {
  public:
    /// The document makes the deferred elements; without one there are none.
    Merge(OutputDocument* document, const std::set<int32_t>& skippedResults)
        : mDocument(document), mSkippedResults(skippedResults) {}

    void MergeChildren(OutputElement& into, Node from, Place place) const;
    void MergeElement(OutputElement& into, Node from, Place place) const;

  private:
    bool IsSkipped(Node result) const;

    OutputDocument* mDocument;
    const std::set<int32_t>& mSkippedResults;
};

/// True where a text between the known elements is foreign. A written element without a row of its own is a
/// single value.
bool IsTextForeign(Place place) {
    return place != Place::kForeign && !OwnsText(place);
}

/// True for content that is kept although the new tree has no counterpart.
bool IsForeign(Node child, const ElementRow* row, Place place) {
    switch (child.type()) {
        case pugi::node_element:
            if (row != nullptr) return false;
            // A removed row of the exposure table is dropped; a key of another test is kept.
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

void MergeAttributes(OutputElement& into, Node from, Place place) {
    pugi::xml_attribute old = from.first_attribute();
    const OutputElement::Attribute* now = into.FirstAttribute();
    while (old && now != nullptr && SameText(old.name(), now->name)) {
        old = old.next_attribute();
        now = now->next;
    }
    if (!old) return;
    // Foreign, removed or reordered content: the old order, then the new elements.
    std::vector<std::pair<std::string_view, std::string_view>> attributes;
    for (old = from.first_attribute(); old; old = old.next_attribute()) {
        if (const auto* written = into.FindAttribute(old.name()))
            attributes.emplace_back(written->name, written->value);
        else if (FindAttributeRow(place, old.name()) == nullptr)
            attributes.emplace_back(old.name(), old.value());
    }
    for (now = into.FirstAttribute(); now != nullptr; now = now->next)
        if (!FindAttribute(from, now->name)) attributes.emplace_back(now->name, now->value);
    into.ClearAttributes();
    for (const auto& [name, value] : attributes) into.SetAttribute(name, value);
}

bool Merge::IsSkipped(Node result) const {
    return mSkippedResults.contains(ReadInteger(FindAttribute(result.parent(), tag::kId).value()));
}

void Merge::MergeChildren(OutputElement& into, Node from, Place place) const {
    Counterparts counterparts(into, place);
    OutputElement* behind = nullptr;
    pugi::xml_node_type type = pugi::node_null;
    for (Node child = from.first_child(); (type = child.type()) != pugi::node_null;
         child = child.next_sibling()) {
        const ElementRow* row = nullptr;
        if (type == pugi::node_element) {
            const std::string_view name = child.name();
            row = FindElementRow(place, name);
            if (OutputElement* const counterpart = counterparts.Find(child, name, row)) {
                const Place below = row == nullptr ? Place::kForeign : row->place;
                if (counterpart->IsDeferred())
                    mDocument->SetCounterpart(*counterpart, child);
                else if ((below != Place::kResultItem && below != Place::kSurveyResult) || !IsSkipped(child))
                    MergeElement(*counterpart, child, below);
                behind = counterpart;
                continue;
            }
        }
        if (IsForeign(child, row, place)) behind = into.InsertForeign(behind, child);
    }
}

void Merge::MergeElement(OutputElement& into, Node from, Place place) const {
    if (from.first_attribute()) MergeAttributes(into, from, place);
    if (place == Place::kTest) place = PlaceOfTest(FindAttribute(from, tag::kTestId).value());
    if (IsTextForeign(place)) into.Text(from.value());
    if (from.first_child()) MergeChildren(into, from, place);
}

}  // namespace

void MergeForeign(OutputDocument& written, const pugi::xml_document& read) {
    const std::set<int32_t> none;
    Merge(&written, none).MergeChildren(written.Top(), read, Place::kDocument);
}

void MergeForeign(OutputElement& written, pugi::xml_node read, const std::set<int32_t>& skippedResults) {
    Merge(nullptr, skippedResults).MergeElement(written, read, Place::kTest);
}

}  // namespace vorex

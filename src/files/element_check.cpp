#include "files/element_check.h"

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "files/element_document.h"
#include "files/element_schema.h"
#include "foundation/class_registry.h"
#include "foundation/file_error.h"
#include "foundation/number_text.h"
#include "foundation/vocabulary.h"
#include "host/element_base.h"

namespace vorex {

namespace {

/// A text of the file in quotes, for a one-line message: without control characters, and shortened.
std::string Quoted(std::string_view text) {
    constexpr std::size_t kMost = 60;
    std::size_t size = std::min(text.size(), kMost);
    while (size < text.size() && CodePoints(text.substr(size, 1)) == 0) --size;  // no character is cut
    std::string shown(text.substr(0, size));
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; },
        '?');
    return "\"" + shown + (size < text.size() ? "..." : "") + "\"";
}

/// The known tests, for messages.
std::string KnownTests() {
    std::string names;
    for (const TestRow& row : kTestCatalogue) names += (names.empty() ? "" : ", ") + std::to_string(row.id);
    return names;
}

/// True when the attributes of an element are those of its place, in the order of the table, in their forms
/// and with all required ones. Almost every element of a file is like this; the others are looked at closely.
bool HasUsualAttributes(pugi::xml_node element, Place place) {
    pugi::xml_attribute at = element.first_attribute();
    for (const AttributeRow& row : AttributeRows(place)) {
        const bool there = at && SameText(at.name(), row.name);
        if (there ? !Has(row.form, at.value()) : row.required) return false;
        if (there) at = at.next_attribute();
    }
    return !at;
}

/// Which configuration keys a block has: a bit for the test and one for each row of the exposure table.
class MetConfigKeys {
  public:
    bool Again(const ConfigKey& key) {
        const std::size_t row = static_cast<std::size_t>(key.row) + 1;  // the test itself has row -1
        if (row >= kRowsAndTest) return false;
        const std::size_t bit = static_cast<std::size_t>(key.index) * kRowsAndTest + row;
        const bool again = mBits.test(bit);
        mBits.set(bit);
        return again;
    }

  private:
    static constexpr std::size_t kRowsAndTest = 256;
    static constexpr std::size_t kKeys = 96;

    std::bitset<kKeys * kRowsAndTest> mBits;
};

class FileCheck {
  public:
    FileCheck(const XmlSource& source, const CheckedElement& checked) : mSource(source), mChecked(checked) {}
    std::set<int32_t> Run();

  private:
    using Node = pugi::xml_node;

    void CheckElement(Node element, Place place, int32_t level);
    void CheckChildren(Node element, Place place, int32_t level);
    void CheckAttributes(Node element, Place place);
    void CheckTest(Node element);
    void CheckConfigBlock(Node block) const;
    void CheckOnePiece(Node element) const;
    void CheckText(Node element, Form form) const;
    [[noreturn]] void Fail(Node element, std::string fault, std::string_view expected) const;

    const XmlSource& mSource;
    const CheckedElement& mChecked;
    std::unordered_set<int32_t> mIds;
    std::size_t mForeign = 0;  ///< pieces of content so far that this system does not write
    std::set<int32_t> mPlainResults;
};

/// An element in words, with the measurement, limit or instrument that contains it.
std::string NameOf(pugi::xml_node element) {
    std::string name = Quoted(element.name());
    for (pugi::xml_node at = element; at && !SameText(at.name(), tag::kTestElement); at = at.parent()) {
        for (std::string_view attribute : {tag::kKey, tag::kNumber}) {
            const char* const value = FindAttribute(at, attribute).value();
            if (*value != '\0') return name + " of " + Quoted(value);
        }
    }
    return name;
}

/// ID of the test that contains an element, as in the file.
std::string TestOf(pugi::xml_node element) {
    while (element && !SameText(element.name(), tag::kTestElement)) element = element.parent();
    if (!element) return {};
    const std::string id = FindAttribute(element, tag::kId).value();
    return Has(Form::kWhole, id) ? id : Quoted(id);
}

void FileCheck::Fail(Node element, std::string fault, std::string_view expected) const {
    throw FileError({mSource.FileName(), mSource.LineOf(element), TestOf(element)}, std::move(fault),
                    std::string(expected));
}

std::set<int32_t> FileCheck::Run() {
    Node root;
    for (Node node = mSource.Document().first_child(); node; node = node.next_sibling()) {
        if (node.type() == pugi::node_doctype)
            Fail(node, "has a document type definition", "a document without one");
        if (node.type() != pugi::node_element) continue;
        if (root) Fail(node, "a second root element " + Quoted(node.name()), "one root element");
        root = node;
    }
    if (!SameText(root.name(), tag::kVorexSequence))
        Fail(root, "the root element is " + Quoted(root.name()), Quoted(tag::kVorexSequence));
    CheckElement(root, Place::kSequence, 1);
    if (mIds.empty()) Fail(root, "holds no test", "at least one " + Quoted(tag::kTestElement));
    return std::move(mPlainResults);
}

void FileCheck::CheckElement(Node element, Place place, int32_t level) {
    if (level > kMostLevels)
        Fail(element, "elements are nested deeper than " + std::to_string(kMostLevels) + " levels",
             "an element file");
    CheckAttributes(element, place);
    if (place == Place::kGroup || place == Place::kTest || place == Place::kSurvey) CheckTest(element);
    if (place == Place::kPlugInData) CheckConfigBlock(element);
    constexpr int32_t kNumberType = 1;
    if (place == Place::kMeasuredValue &&
        ReadInteger(FindAttribute(element, tag::kType).value()) == kNumberType)
        CheckText(element, Form::kNumber);
    const bool ownsText = OwnsText(place);
    if (!ownsText && *element.value() != '\0') ++mForeign;
    if (!element.first_child()) return;
    if (ownsText) CheckOnePiece(element);
    CheckChildren(element, place, level);
}

/// The row of an element below a place, given that of the element before it; null for one that is not known.
/// Files have most elements in the order of the table, some of them several times.
const ElementRow* RowAfter(const ElementRow* before, Place place, const char* name) {
    if (before != nullptr) {
        if (SameText(name, before->name)) return before;
        const ElementRow* const next = before + 1;
        const bool there = next < ElementRows().data() + ElementRows().size() && next->parent == place;
        if (there && SameText(name, next->name)) return next;
    }
    return FindElementRow(place, name);
}

void FileCheck::CheckChildren(Node element, Place place, int32_t level) {
    std::bitset<kMostElementRows> met;
    const ElementRow* row = nullptr;
    pugi::xml_node_type type = pugi::node_null;
    for (Node child = element.first_child(); (type = child.type()) != pugi::node_null;
         child = child.next_sibling()) {
        if (type != pugi::node_element) {
            ++mForeign;
            continue;
        }
        row = RowAfter(row, place, child.name());
        if (row == nullptr) {
            ++mForeign;
            if ((place == Place::kTest || place == Place::kSurvey) &&
                SameText(child.name(), tag::kTestElement))
                Fail(child, "is inside a test that is not a group", "tests inside groups only");
            CheckElement(child, Place::kForeign, level + 1);
            continue;
        }
        const auto bit = static_cast<std::size_t>(row - ElementRows().data());
        if (row->identity == Identity::kOnly && met.test(bit))
            Fail(child, NameOf(child) + " occurs twice", "one");
        met.set(bit);
        if (row->form != Form::kAny) CheckText(child, row->form);
        const std::size_t foreignBefore = mForeign;
        const bool test = row->place == Place::kTest;
        CheckElement(child, test ? PlaceOfTest(FindAttribute(child, tag::kTestId).value()) : row->place,
                     level + 1);
        if ((row->place == Place::kResultItem || row->place == Place::kSurveyResult) &&
            mForeign == foreignBefore)
            mPlainResults.insert(ReadInteger(FindAttribute(element, tag::kId).value()));
        if (test && place == Place::kSequence) mChecked(child);
    }
}

void FileCheck::CheckAttributes(Node element, Place place) {
    if (HasUsualAttributes(element, place)) return;
    constexpr int kMostAttributes = 1000;
    int count = 0;
    for (auto at = element.first_attribute(); at;) {
        if (++count > kMostAttributes) Fail(element, NameOf(element) + " has too many attributes", "a few");
        const auto next = at.next_attribute();
        for (auto later = next; later; later = later.next_attribute())
            if (SameText(at.name(), later.name()))
                Fail(element, "attribute " + Quoted(at.name()) + " occurs twice", "one");
        at = next;
    }
    for (const AttributeRow& row : AttributeRows(place)) {
        const pugi::xml_attribute attribute = FindAttribute(element, row.name);
        if (attribute) --count;
        if (!attribute && row.required)
            Fail(element, NameOf(element) + " has no attribute " + Quoted(row.name), InWords(row.form));
        if (attribute && !Has(row.form, attribute.value()))
            Fail(element,
                 "attribute " + Quoted(row.name) + " of " + NameOf(element) + " is " +
                     Quoted(attribute.value()),
                 InWords(row.form));
    }
    if (count > 0) ++mForeign;
}

void FileCheck::CheckTest(Node element) {
    const int32_t testId = ReadInteger(FindAttribute(element, tag::kTestId).value());
    if (!mIds.insert(ReadInteger(FindAttribute(element, tag::kId).value())).second)
        Fail(element, "its ID occurs twice", "an ID for each element");
    if (testId == kGroupId) return;
    const std::string_view className = ElementClassOf(testId);
    if (className.empty())
        Fail(element, "TestID " + std::to_string(testId) + " is not known",
             "0 for a group, or one of " + KnownTests());
    const Node block = ChildNamed(element, tag::kPlugInData);
    if (!block) Fail(element, "has no " + Quoted(tag::kPlugInData), "the configuration of the test");
    if (IsMeasuringTest(testId) && !ChildNamed(block, tag::kNumberOfExposures))
        Fail(block, Quoted(tag::kPlugInData) + " has no " + Quoted(tag::kNumberOfExposures),
             InWords(Form::kExposureCount));
}

void FileCheck::CheckConfigBlock(Node block) const {
    MetConfigKeys met;
    for (Node child = block.first_child(); child; child = child.next_sibling()) {
        if (child.type() != pugi::node_element) continue;
        const ConfigKey key = FindConfigKey(child.name());
        if (key.index < 0) continue;
        if (met.Again(key)) Fail(child, NameOf(child) + " occurs twice", "one");
        CheckOnePiece(child);
        CheckText(child, key.form);
    }
}

/// A comment or an element inside a value would hide the part after it.
void FileCheck::CheckOnePiece(Node element) const {
    int pieces = *element.value() == '\0' ? 0 : 1;
    for (Node child = element.first_child(); child; child = child.next_sibling())
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) ++pieces;
    if (pieces > 1) Fail(element, "the text of " + NameOf(element) + " is in several pieces", "one piece");
}

void FileCheck::CheckText(Node element, Form form) const {
    const char* const text = NodeText(element);
    if (!Has(form, text)) Fail(element, NameOf(element) + " is " + Quoted(text), InWords(form));
}

}  // namespace

std::set<int32_t> CheckElementFile(const XmlSource& source, const CheckedElement& checked) {
    return FileCheck(source, checked).Run();
}

}  // namespace vorex

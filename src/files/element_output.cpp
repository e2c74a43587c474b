#include "files/element_output.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

#include "foundation/utf8.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr std::string_view kIndent = "  ";
constexpr std::size_t kPieceSize = std::size_t{1} << 18U;

bool IsXmlName(std::string_view name) {
    const auto letter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
               static_cast<unsigned char>(c) >= 0x80U;
    };
    const auto later = [&](char c) { return letter(c) || (c >= '0' && c <= '9') || c == '-' || c == '.'; };
    return !name.empty() && letter(name.front()) && std::all_of(name.begin() + 1, name.end(), later);
}

}  // namespace

// ------------------------------------------------------------------------------------------- element

void OutputElement::Name(std::string_view name) {
    mName = mDocument.Keep(name);
}

const OutputElement::Attribute* OutputElement::FindAttribute(std::string_view name) const {
    for (const Attribute* at = mFirstAttribute; at != nullptr; at = at->next)
        if (at->name == name) return at;
    return nullptr;
}

std::string_view OutputElement::GetAttribute(std::string_view name) const {
    const Attribute* found = FindAttribute(name);
    return found == nullptr ? std::string_view() : found->value;
}

void OutputElement::SetAttribute(std::string_view name, std::string_view value) {
    Attribute** at = &mFirstAttribute;
    while (*at != nullptr && (*at)->name != name) at = &(*at)->next;
    if (*at == nullptr) *at = mDocument.New<Attribute>(Attribute{mDocument.Keep(name), {}});
    (*at)->value = mDocument.Keep(value);
}

template <typename Select>
XmlElements OutputElement::Collect(Select&& select) const {
    XmlElements elements;
    for (OutputElement* child = mFirst; child != nullptr; child = child->mNext)
        if (!child->mForeign && select(*child)) elements.emplace_back(std::shared_ptr<void>(), child);
    return elements;
}

XmlElements OutputElement::Children() const {
    return Collect([](const OutputElement&) { return true; });
}

XmlElements OutputElement::FindChild(std::string_view name) const {
    return Collect([&](const OutputElement& child) { return child.mName == name; });
}

void OutputElement::Append(OutputElement* child) {
    (mLast == nullptr ? mFirst : mLast->mNext) = child;
    mLast = child;
    child->mPlaced = true;
}

std::shared_ptr<IXmlElement> OutputElement::AddChild(const std::shared_ptr<IXmlElement>& child) {
    auto& own = static_cast<OutputElement&>(*child);
    if (own.mPlaced) throw std::logic_error("the element has a place already");
    Append(&own);
    return child;
}

void OutputElement::Text(std::string_view text) {
    mText = mDocument.Keep(text);
}

std::shared_ptr<IXmlElement> OutputElement::AddValue(std::string_view name, std::string_view value) {
    OutputElement* child = mDocument.Make(name);
    if (child == nullptr) return nullptr;
    child->Text(value);
    Append(child);
    return {std::shared_ptr<void>(), child};
}

std::string OutputElement::ReadValue(std::string_view name, std::string_view defaultValue) const {
    for (const OutputElement* child = mFirst; child != nullptr; child = child->mNext)
        if (child->mName == name) return std::string(child->mText);
    return std::string(defaultValue);
}

OutputElement* OutputElement::InsertForeign(OutputElement* behind, pugi::xml_node node) {
    auto* entry = mDocument.New<OutputElement>(mDocument, node);
    entry->mPlaced = true;
    OutputElement*& place = behind == nullptr ? mFirst : behind->mNext;
    entry->mNext = place;
    place = entry;
    if (entry->mNext == nullptr) mLast = entry;
    return entry;
}

// ------------------------------------------------------------------------------------------ document

OutputDocument::OutputDocument(std::size_t room)
    : mRoom(room == 0 ? nullptr : new std::byte[room]),
      mMemory(mRoom.get(), room),
      mTop(New<OutputElement>(*this, std::string_view())) {}

void OutputDocument::Clear() {
    mDeferred.clear();
    mNames.fill({});
    mMemory.release();
    mTop = New<OutputElement>(*this, std::string_view());
}

std::shared_ptr<IXmlElement> OutputDocument::Defer(std::string_view name, std::string_view id, Maker maker) {
    OutputElement* const element = Make(name);
    element->SetAttribute(tag::kId, id);
    element->mDeferred = true;
    mDeferred[element] = {std::move(maker), {}};
    return {std::shared_ptr<void>(), element};
}

template <typename Object, typename... Args>
Object* OutputDocument::New(Args&&... args) {
    return new (mMemory.allocate(sizeof(Object), alignof(Object))) Object(std::forward<Args>(args)...);
}

std::string_view OutputDocument::Keep(std::string_view text) {
    if (text.empty()) return {};
    auto* copy = static_cast<char*>(mMemory.allocate(text.size(), 1));
    text.copy(copy, text.size());
    return {copy, text.size()};
}

std::string_view OutputDocument::KeepName(std::string_view name) {
    if (name.empty()) return {};
    const auto code = [&](std::size_t at) { return std::size_t{static_cast<unsigned char>(name[at])}; };
    std::string_view& kept =
        mNames[(name.size() + 5 * code(0) + 11 * code(name.size() / 2) + 3 * code(name.size() - 1)) %
               kNamePlaces];
    if (kept == name) return kept;
    return IsXmlName(name) ? kept = Keep(name) : std::string_view();
}

OutputElement* OutputDocument::Make(std::string_view name) {
    const std::string_view kept = KeepName(name);
    return kept.empty() ? nullptr : New<OutputElement>(*this, kept);
}

std::shared_ptr<IXmlElement> OutputDocument::CreateElement(std::string_view name) {
    return {std::shared_ptr<void>(), Make(name)};
}

// -------------------------------------------------------------------------------------------- writer

namespace {

enum class In : uint8_t { kText = 1, kAttribute = 2 };

/// The bytes of a text, or of an attribute, that must be escaped.
constexpr auto kSpecial = [] {
    constexpr uint8_t kBoth = static_cast<uint8_t>(In::kText) | static_cast<uint8_t>(In::kAttribute);
    std::array<uint8_t, 256> table{};
    for (std::size_t c = 0; c < 32; ++c) table[c] = kBoth;
    table['\t'] = table['\n'] = static_cast<uint8_t>(In::kAttribute);
    table['&'] = table['<'] = table['>'] = kBoth;
    table['"'] = static_cast<uint8_t>(In::kAttribute);
    for (std::size_t c = 128; c < 256; ++c) table[c] = kBoth;
    return table;
}();

}  // namespace

class DocumentWriter {
  public:
    DocumentWriter(const OutputDocument& document, const OutputDocument::Sink& sink)
        : mDocument(document), mSink(sink), mPiece(kPieceSize) {}

    void Children(const OutputElement& parent, std::size_t depth, bool inlined);
    void Raw(std::string_view text) {
        if (text.size() > mPiece.size() - mUsed) {
            Flush();
            if (text.size() > mPiece.size()) return mSink(text);
        }
        std::copy(text.begin(), text.end(), mPiece.data() + mUsed);
        mUsed += text.size();
    }
    void Flush() {
        mSink({mPiece.data(), mUsed});
        mUsed = 0;
    }

  private:
    /// The most bytes that one call of Mark writes.
    static constexpr std::size_t kLongestMark = 8;

    void Element(const OutputElement& element, std::size_t depth);
    void Deferred(const OutputElement& element, std::size_t depth, bool inlined);
    void Foreign(pugi::xml_node node, std::size_t depth);
    void Escaped(std::string_view text, In place);
    void Special(unsigned char byte);
    /// A few characters that are constants at compile time.
    template <std::size_t size>
    void Mark(const char (&text)[size]) {
        static_assert(size <= kLongestMark);
        if (mPiece.size() - mUsed < kLongestMark) Flush();
        std::memcpy(mPiece.data() + mUsed, text, size - 1);
        mUsed += size - 1;
    }
    void NewLine(std::size_t depth) {
        static constexpr std::string_view kBlanks = "\n                                ";
        if (depth * kIndent.size() < kBlanks.size())
            return Raw(kBlanks.substr(0, 1 + depth * kIndent.size()));
        Mark("\n");
        for (std::size_t i = 0; i < depth; ++i) Raw(kIndent);
    }

    const OutputDocument& mDocument;
    const OutputDocument::Sink& mSink;
    std::vector<char> mPiece;
    std::size_t mUsed = 0;
    std::shared_ptr<OutputDocument> mScratch;  ///< of the deferred element being written
};

/// Each child is on its own line, except after a text: there a line break would become part of the text.
void DocumentWriter::Children(const OutputElement& parent, std::size_t depth, bool inlined) {
    for (const OutputElement* child = parent.First(); child != nullptr; child = child->Next()) {
        if (child->IsDeferred()) {
            Deferred(*child, depth, inlined);
            inlined = false;
            continue;
        }
        const pugi::xml_node foreign = child->Foreign();
        const bool text =
            foreign && (foreign.type() == pugi::node_pcdata || foreign.type() == pugi::node_cdata);
        if (!inlined && !text) NewLine(depth);
        if (foreign)
            Foreign(foreign, depth);
        else
            Element(*child, depth);
        inlined = text;
    }
    if (!inlined && depth > 0) NewLine(depth - 1);
}

void DocumentWriter::Deferred(const OutputElement& element, std::size_t depth, bool inlined) {
    constexpr std::size_t kUsualRoom = std::size_t{1} << 20U;
    if (mScratch)
        mScratch->Clear();
    else
        mScratch = std::make_shared<OutputDocument>(kUsualRoom);
    const auto& deferred = mDocument.mDeferred.at(&element);
    const auto made = deferred.maker(mScratch, deferred.counterpart);
    if (!made) return;
    if (!inlined) NewLine(depth);
    Element(static_cast<const OutputElement&>(*made), depth);
}

void DocumentWriter::Element(const OutputElement& element, std::size_t depth) {
    Mark("<");
    Raw(element.Name());
    for (const auto* at = element.FirstAttribute(); at != nullptr; at = at->next) {
        Mark(" ");
        Raw(at->name);
        Mark("=\"");
        Escaped(at->value, In::kAttribute);
        Mark("\"");
    }
    if (element.Text().empty() && element.First() == nullptr) return Mark(" />");
    Mark(">");
    Escaped(element.Text(), In::kText);
    if (element.First() != nullptr) Children(element, depth + 1, !element.Text().empty());
    Mark("</");
    Raw(element.Name());
    Mark(">");
}

void DocumentWriter::Foreign(pugi::xml_node node, std::size_t depth) {
    class Collector : public pugi::xml_writer {
      public:
        void write(const void* data, std::size_t size) override {
            text.append(static_cast<const char*>(data), size);
        }
        std::string text;
    };
    Collector collector;
    node.print(collector, kIndent.data(), pugi::format_indent, pugi::encoding_utf8,
               static_cast<unsigned>(depth));
    std::string_view text = collector.text;
    if (node.type() != pugi::node_pcdata && node.type() != pugi::node_cdata) {
        // The library's print adds indent and line end, which this writer writes itself.
        text.remove_prefix(std::min(text.size(), kIndent.size() * depth));
        if (text.ends_with('\n')) text.remove_suffix(1);
    }
    Raw(text);
}

void DocumentWriter::Special(unsigned char byte) {
    switch (byte) {
        case '&':
            return Mark("&amp;");
        case '<':
            return Mark("&lt;");
        case '>':
            return Mark("&gt;");
        case '"':
            return Mark("&quot;");
        case '\t':
            return Mark("&#9;");
        case '\n':
            return Mark("&#10;");
        case '\r':
            return Mark("&#13;");
        default:
            return Mark("\xEF\xBF\xBD");  // the replacement character
    }
}

void DocumentWriter::Escaped(std::string_view text, In place) {
    std::size_t at = 0;
    if (text.size() <= mPiece.size() - mUsed) {
        // Most texts are short and plain: they are copied while they are checked.
        char* const to = mPiece.data() + mUsed;
        const auto isPlain = [&](char c) {
            return (kSpecial[static_cast<unsigned char>(c)] & static_cast<uint8_t>(place)) == 0;
        };
        while (at < text.size() && isPlain(text[at])) {
            to[at] = text[at];
            ++at;
        }
        mUsed += at;
    }
    std::size_t begin = at;
    for (; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if ((kSpecial[byte] & static_cast<uint8_t>(place)) == 0) continue;
        const std::size_t length = byte < 0x80U ? 0 : Utf8Length(text.substr(at));
        if (length > 0) {
            at += length - 1;
            continue;
        }
        Raw(text.substr(begin, at - begin));
        begin = at + 1;
        Special(byte);
    }
    Raw(text.substr(begin));
}

void OutputDocument::Write(const Sink& sink) const {
    DocumentWriter writer(*this, sink);
    writer.Raw(kDeclaration);
    writer.Children(*mTop, 0, true);
    writer.Raw("\n");
    writer.Flush();
}

std::string OutputDocument::Text() const {
    std::string text;
    Write([&](std::string_view piece) { text.append(piece); });
    return text;
}

}  // namespace vorex

#include "files/element_output.h"

#include <algorithm>
#include <array>
#include <new>
#include <stdexcept>
#include <utility>
#include <vector>

#include "foundation/utf8.h"

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

OutputDocument::OutputDocument() : mTop(New<OutputElement>(*this, std::string_view())) {}

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

OutputElement* OutputDocument::Make(std::string_view name) {
    return IsXmlName(name) ? New<OutputElement>(*this, Keep(name)) : nullptr;
}

std::shared_ptr<IXmlElement> OutputDocument::CreateElement(std::string_view name) {
    return {std::shared_ptr<void>(), Make(name)};
}

// -------------------------------------------------------------------------------------------- writer

namespace {

enum class In : uint8_t { kText = 1, kAttribute = 2 };

/// Which bytes of a text, or of an attribute, cannot be written as they are.
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

class Writer {
  public:
    explicit Writer(const OutputDocument::Sink& sink) : mSink(sink), mPiece(kPieceSize) {}

    void Children(const OutputElement& parent, int depth, bool inlined);
    void Raw(std::string_view text) {
        if (text.size() > mPiece.size() - mUsed) {
            Flush();
            if (text.size() > mPiece.size()) return mSink(text);
        }
        std::copy(text.begin(), text.end(), mPiece.begin() + static_cast<std::ptrdiff_t>(mUsed));
        mUsed += text.size();
    }
    void Flush() {
        mSink({mPiece.data(), mUsed});
        mUsed = 0;
    }

  private:
    void Element(const OutputElement& element, int depth);
    void Foreign(pugi::xml_node node, int depth);
    void Escaped(std::string_view text, In place);
    void NewLine(int depth) {
        Raw("\n");
        for (int i = 0; i < depth; ++i) Raw(kIndent);
    }

    const OutputDocument::Sink& mSink;
    std::vector<char> mPiece;
    std::size_t mUsed = 0;
};

/// Children stand on lines of their own, but for what follows a text: there a line break would become part of
/// the text.
void Writer::Children(const OutputElement& parent, int depth, bool inlined) {
    for (const OutputElement* child = parent.First(); child != nullptr; child = child->Next()) {
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

void Writer::Element(const OutputElement& element, int depth) {
    Raw("<");
    Raw(element.Name());
    for (const auto* at = element.FirstAttribute(); at != nullptr; at = at->next) {
        Raw(" ");
        Raw(at->name);
        Raw("=\"");
        Escaped(at->value, In::kAttribute);
        Raw("\"");
    }
    if (element.Text().empty() && element.First() == nullptr) {
        Raw(" />");
        return;
    }
    Raw(">");
    Escaped(element.Text(), In::kText);
    if (element.First() != nullptr) Children(element, depth + 1, !element.Text().empty());
    Raw("</");
    Raw(element.Name());
    Raw(">");
}

void Writer::Foreign(pugi::xml_node node, int depth) {
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
        // The print indents the node and ends its line; both are this writer's.
        text.remove_prefix(std::min(text.size(), kIndent.size() * static_cast<std::size_t>(depth)));
        if (text.ends_with('\n')) text.remove_suffix(1);
    }
    Raw(text);
}

void Writer::Escaped(std::string_view text, In place) {
    constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
    std::size_t begin = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if ((kSpecial[byte] & static_cast<uint8_t>(place)) == 0) continue;
        const std::size_t length = byte < 0x80U ? 0 : Utf8Length(text.substr(at));
        if (length > 0) {
            at += length - 1;
            continue;
        }
        Raw(text.substr(begin, at - begin));
        begin = at + 1;
        switch (byte) {
            case '&':
                Raw("&amp;");
                break;
            case '<':
                Raw("&lt;");
                break;
            case '>':
                Raw("&gt;");
                break;
            case '"':
                Raw("&quot;");
                break;
            case '\t':
                Raw("&#9;");
                break;
            case '\n':
                Raw("&#10;");
                break;
            case '\r':
                Raw("&#13;");
                break;
            default:
                Raw(kReplacement);
        }
    }
    Raw(text.substr(begin));
}

}  // namespace

void OutputDocument::Write(const Sink& sink) const {
    Writer writer(sink);
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

#include "host/element_document.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <new>
#include <system_error>
#include <utility>
#include <vector>

#include "host/atomic_file.h"
#include "host/file_error.h"

namespace vorex {

namespace {

constexpr unsigned kParseFlags = pugi::parse_default | pugi::parse_comments | pugi::parse_pi |
                                 pugi::parse_declaration | pugi::parse_doctype | pugi::parse_embed_pcdata |
                                 pugi::parse_ws_pcdata_single;
constexpr const char* kIndent = "  ";

/// Calls an operation that wants a name with a zero behind it.
template <typename Operation>
auto WithZero(std::string_view name, Operation&& operation) {
    std::array<char, 64> buffer;
    if (name.size() >= buffer.size()) return operation(std::string(name).c_str());
    std::memcpy(buffer.data(), name.data(), name.size());
    buffer[name.size()] = '\0';
    return operation(static_cast<const char*>(buffer.data()));
}

bool IsXmlName(std::string_view name) {
    const auto letter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' ||
               static_cast<unsigned char>(c) >= 0x80U;
    };
    const auto later = [&](char c) { return letter(c) || (c >= '0' && c <= '9') || c == '-' || c == '.'; };
    return !name.empty() && letter(name.front()) && std::all_of(name.begin(), name.end(), later);
}

/// Elements in one block of memory, which the last of them frees.
template <typename Select>
XmlElements Collect(pugi::xml_node parent, Select&& select) {
    auto block = std::make_shared<std::vector<XmlElement>>();
    for (pugi::xml_node node = parent.first_child(); node; node = node.next_sibling())
        if (node.type() == pugi::node_element && select(node)) block->emplace_back(node);
    XmlElements elements;
    elements.reserve(block->size());
    for (XmlElement& element : *block) elements.emplace_back(block, &element);
    return elements;
}

bool IsText(pugi::xml_node node) {
    return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

/// Puts a text in front of what an element holds.
void PutText(pugi::xml_node element, std::string_view text) {
    if (!text.empty()) element.prepend_child(pugi::node_pcdata).set_value(text.data(), text.size());
}

/// Length of the UTF-8 character at the start of a text that is not ASCII; 0 when it is none.
std::size_t CharacterLength(const unsigned char* at, std::size_t rest) {
    const unsigned char lead = at[0];
    const std::size_t length = lead >= 0xF0U ? 4 : lead >= 0xE0U ? 3 : 2;
    if (lead < 0xC2U || lead > 0xF4U || rest < length) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((at[i] & 0xC0U) != 0x80U) return 0;
    // Forms that are too long, halves of pairs, and what lies beyond the last character.
    if ((lead == 0xE0U && at[1] < 0xA0U) || (lead == 0xEDU && at[1] > 0x9FU)) return 0;
    if ((lead == 0xF0U && at[1] < 0x90U) || (lead == 0xF4U && at[1] > 0x8FU)) return 0;
    return length;
}

/// Index of the first byte that is not part of UTF-8 text, or of a zero byte; the size when there is none.
std::size_t FirstBadByte(const char* text, std::size_t size) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(text);
    std::size_t at = 0;
    while (at < size) {
        constexpr uint64_t kHigh = 0x8080808080808080U;
        constexpr uint64_t kOnes = 0x0101010101010101U;
        uint64_t word = 0;
        while (at + sizeof word <= size) {
            std::memcpy(&word, bytes + at, sizeof word);
            // A high bit of the word or of the word less one in each byte: not ASCII, or zero.
            if (((word | (word - kOnes)) & kHigh) != 0) break;
            at += sizeof word;
        }
        if (at >= size) break;
        if (bytes[at] == 0) return at;
        const std::size_t length = bytes[at] < 0x80U ? 1 : CharacterLength(bytes + at, size - at);
        if (length == 0) return at;
        at += length;
    }
    return size;
}

}  // namespace

bool SameText(const char* text, std::string_view other) {
    return std::strncmp(text, other.data(), other.size()) == 0 && text[other.size()] == '\0';
}

const char* NodeText(pugi::xml_node element) {
    const char* embedded = element.value();
    if (*embedded != '\0') return embedded;
    for (pugi::xml_node child = element.first_child(); child; child = child.next_sibling())
        if (IsText(child)) return child.value();
    return embedded;
}

pugi::xml_node ChildNamed(pugi::xml_node parent, std::string_view name) {
    for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling())
        if (child.type() == pugi::node_element && SameText(child.name(), name)) return child;
    return {};
}

pugi::xml_attribute FindAttribute(pugi::xml_node element, std::string_view name) {
    for (pugi::xml_attribute at = element.first_attribute(); at; at = at.next_attribute())
        if (SameText(at.name(), name)) return at;
    return {};
}

// ------------------------------------------------------------------------------------------- element

void XmlElement::Name(std::string_view name) {
    WithZero(name, [&](const char* text) { return mNode.set_name(text); });
}

std::string_view XmlElement::GetAttribute(std::string_view name) const {
    return FindAttribute(mNode, name).value();
}

void XmlElement::SetAttribute(std::string_view name, std::string_view value) {
    pugi::xml_attribute attribute = FindAttribute(mNode, name);
    if (!attribute)
        attribute = WithZero(name, [&](const char* text) { return mNode.append_attribute(text); });
    attribute.set_value(value.data(), value.size());
}

XmlElements XmlElement::Children() const {
    return Collect(mNode, [](pugi::xml_node) { return true; });
}

std::shared_ptr<IXmlElement> XmlElement::AddChild(const std::shared_ptr<IXmlElement>& child) {
    mNode.append_move(static_cast<const XmlElement&>(*child).Node());
    return child;
}

XmlElements XmlElement::FindChild(std::string_view name) const {
    return Collect(mNode, [&](pugi::xml_node node) { return SameText(node.name(), name); });
}

std::string_view XmlElement::Text() const {
    return NodeText(mNode);
}

void XmlElement::Text(std::string_view text) {
    for (pugi::xml_node child = mNode.first_child(); child;) {
        const pugi::xml_node next = child.next_sibling();
        if (IsText(child)) mNode.remove_child(child);
        child = next;
    }
    PutText(mNode, text);
}

std::shared_ptr<IXmlElement> XmlElement::AddValue(std::string_view name, std::string_view value) {
    if (!IsXmlName(name)) return nullptr;
    const pugi::xml_node child = WithZero(name, [&](const char* text) { return mNode.append_child(text); });
    PutText(child, value);
    return std::make_shared<XmlElement>(child);
}

std::string XmlElement::ReadValue(std::string_view name, std::string_view defaultValue) const {
    const pugi::xml_node found = ChildNamed(mNode, name);
    return found ? std::string(NodeText(found)) : std::string(defaultValue);
}

// ------------------------------------------------------------------------------------------ document

XmlDocument::XmlDocument() : mUnplaced(mDocument.append_child("Unplaced")) {}

std::shared_ptr<IXmlElement> XmlDocument::CreateElement(std::string_view name) {
    if (!IsXmlName(name)) return nullptr;
    return std::make_shared<XmlElement>(
        WithZero(name, [&](const char* text) { return mUnplaced.append_child(text); }));
}

std::shared_ptr<XmlElement> XmlDocument::CreateRoot(std::string_view name) {
    return std::make_shared<XmlElement>(
        WithZero(name, [&](const char* text) { return mDocument.append_child(text); }));
}

pugi::xml_document& XmlDocument::Finish() {
    mDocument.remove_child(mUnplaced);
    mUnplaced = {};
    pugi::xml_node declaration = mDocument.prepend_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
    return mDocument;
}

void XmlDocument::Write(AtomicFile& file) const {
    class Writer : public pugi::xml_writer {
      public:
        explicit Writer(AtomicFile& out) : mOut(out) {}
        void write(const void* data, std::size_t size) override {
            mOut.Write({static_cast<const char*>(data), size});
        }

      private:
        AtomicFile& mOut;
    };
    Writer writer(file);
    mDocument.save(writer, kIndent, pugi::format_indent, pugi::encoding_utf8);
}

std::string XmlDocument::Text() const {
    class Writer : public pugi::xml_writer {
      public:
        void write(const void* data, std::size_t size) override {
            text.append(static_cast<const char*>(data), size);
        }
        std::string text;
    };
    Writer writer;
    mDocument.save(writer, kIndent, pugi::format_indent, pugi::encoding_utf8);
    return std::move(writer.text);
}

// -------------------------------------------------------------------------------------------- source

std::unique_ptr<XmlSource> XmlSource::Read(const std::filesystem::path& path) {
    auto source = std::make_unique<XmlSource>();
    source->mName = path.string();
    source->mIsFile = true;
    source->ReadFile();
    source->Parse();
    return source;
}

std::unique_ptr<XmlSource> XmlSource::FromText(std::string_view text, std::string name) {
    auto source = std::make_unique<XmlSource>();
    source->mName = std::move(name);
    source->mBuffer.reset(static_cast<char*>(std::malloc(text.size() + 1)));
    if (!source->mBuffer) throw std::bad_alloc();
    std::memcpy(source->mBuffer.get(), text.data(), text.size());
    source->mSize = text.size();
    source->Parse();
    return source;
}

void XmlSource::Fail(int32_t line, std::string fault, std::string expected) const {
    throw FileError({mName, line, {}}, std::move(fault), std::move(expected));
}

void XmlSource::ReadFile() {
    class Descriptor {
      public:
        explicit Descriptor(int value) : mValue(value) {}
        ~Descriptor() {
            if (mValue >= 0) ::close(mValue);
        }
        Descriptor(const Descriptor&) = delete;
        Descriptor& operator=(const Descriptor&) = delete;
        int Value() const { return mValue; }

      private:
        int mValue;
    };
    const auto failed = [this] {
        Fail(0, "cannot be read: " + std::generic_category().message(errno), "an element file");
    };
    const Descriptor file(::open(mName.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.Value() < 0) failed();
    struct stat status {};
    if (::fstat(file.Value(), &status) != 0) failed();
    constexpr std::size_t kFirstRead = std::size_t{1} << 16U;
    // One byte more than the file has tells its end without another round.
    std::size_t capacity = std::max(kFirstRead, static_cast<std::size_t>(status.st_size) + 1);
    mSize = 0;
    for (;;) {
        if (mSize > kLargestFile || capacity > kLargestFile + kFirstRead)
            Fail(0, "is larger than " + std::to_string(kLargestFile >> 20U) + " MB", "an element file");
        auto* memory = static_cast<char*>(std::realloc(mBuffer.get(), capacity));
        if (memory == nullptr) throw std::bad_alloc();
        (void)mBuffer.release();
        mBuffer.reset(memory);
        const ssize_t count = ::read(file.Value(), memory + mSize, capacity - mSize);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) failed();
        if (count == 0) return;
        mSize += static_cast<std::size_t>(count);
        if (mSize == capacity) capacity = std::min(capacity * 2, kLargestFile + kFirstRead);
    }
}

void XmlSource::Parse() {
    const std::size_t bad = FirstBadByte(mBuffer.get(), mSize);
    if (bad < mSize) Fail(LineAt(bad), "holds a byte that is no UTF-8 text", "a UTF-8 document");
    const pugi::xml_parse_result result =
        mDocument.load_buffer_inplace(mBuffer.get(), mSize, kParseFlags, pugi::encoding_utf8);
    if (!result)
        Fail(LineAt(static_cast<std::size_t>(result.offset)), result.description(), "an XML document");
}

int32_t XmlSource::LineOf(pugi::xml_node node) const {
    const ptrdiff_t offset = node.offset_debug();
    return offset < 0 ? 0 : LineAt(static_cast<std::size_t>(offset));
}

int32_t XmlSource::LineAt(std::size_t offset) const {
    // The parser works in the buffer, so lines are counted in the file itself.
    if (!mIsFile) return 0;
    XmlSource again;
    again.mName = mName;
    try {
        again.ReadFile();
    } catch (const FileError&) {
        return 0;
    }
    const char* text = again.mBuffer.get();
    return 1 + static_cast<int32_t>(std::count(text, text + std::min(offset, again.mSize), '\n'));
}

}  // namespace vorex

#include "files/element_document.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "foundation/file_error.h"
#include "foundation/number_text.h"
#include "foundation/utf8.h"
#include "system/system.h"

namespace vorex {

namespace {

constexpr unsigned kParseFlags = pugi::parse_default | pugi::parse_comments | pugi::parse_pi |
                                 pugi::parse_declaration | pugi::parse_doctype | pugi::parse_embed_pcdata |
                                 pugi::parse_ws_pcdata_single | pugi::parse_fragment;

/// An element of a loaded document.
class SourceElement final : public IXmlElement {
  public:
    SourceElement(pugi::xml_node node, std::pmr::memory_resource& memory) : mNode(node), mMemory(memory) {}

    static std::shared_ptr<IXmlElement> Make(pugi::xml_node node, std::pmr::memory_resource& memory) {
        // Elements are not reference counted: they are released with their memory.
        return {std::shared_ptr<void>(), new (memory.allocate(sizeof(SourceElement), alignof(SourceElement)))
                                             SourceElement(node, memory)};
    }

    std::string_view Name() const override { return mNode.name(); }
    std::string_view GetAttribute(std::string_view name) const override {
        return FindAttribute(mNode, name).value();
    }
    XmlElements Children() const override {
        return Collect([](pugi::xml_node) { return true; });
    }
    XmlElements FindChild(std::string_view name) const override {
        return Collect([&](pugi::xml_node node) { return SameText(node.name(), name); });
    }
    std::string_view Text() const override { return NodeText(mNode); }
    std::string ReadValue(std::string_view name, std::string_view defaultValue) const override {
        const pugi::xml_node found = ChildNamed(mNode, name);
        return found ? std::string(NodeText(found)) : std::string(defaultValue);
    }

    void VisitChildren(IXmlVisitor& visitor) const override {
        pugi::xml_node_type type = pugi::node_null;
        for (pugi::xml_node node = mNode.first_child(); (type = node.type()) != pugi::node_null;
             node = node.next_sibling())
            if (type == pugi::node_element) visitor.Visit(SourceElement(node, mMemory));
    }

    void Name(std::string_view /*name*/) override { Refuse(); }
    void SetAttribute(std::string_view /*name*/, std::string_view /*value*/) override { Refuse(); }
    std::shared_ptr<IXmlElement> AddChild(const std::shared_ptr<IXmlElement>& /*child*/) override {
        Refuse();
    }
    void Text(std::string_view /*text*/) override { Refuse(); }
    std::shared_ptr<IXmlElement> AddValue(std::string_view /*name*/, std::string_view /*value*/) override {
        Refuse();
    }

  private:
    template <typename Select>
    XmlElements Collect(Select&& select) const {
        constexpr std::size_t kUsualCount = 8;
        XmlElements elements;
        pugi::xml_node_type type = pugi::node_null;
        for (pugi::xml_node node = mNode.first_child(); (type = node.type()) != pugi::node_null;
             node = node.next_sibling())
            if (type == pugi::node_element && select(node)) {
                if (elements.empty()) elements.reserve(kUsualCount);
                elements.push_back(Make(node, mMemory));
            }
        return elements;
    }

    [[noreturn]] static void Refuse() { throw std::logic_error("a loaded document cannot be changed"); }

    pugi::xml_node mNode;
    std::pmr::memory_resource& mMemory;
};

bool IsText(pugi::xml_node node) {
    return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

/// Index of the first zero byte or byte that is not UTF-8 text; the size when there is none.
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
        const std::size_t length = bytes[at] < 0x80U ? 1 : Utf8Length({text + at, size - at});
        if (length == 0) return at;
        at += length;
    }
    return size;
}

}  // namespace

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

std::shared_ptr<IXmlElement> XmlSource::Element(pugi::xml_node node) {
    return SourceElement::Make(node, mElements);
}

std::unique_ptr<XmlSource> XmlSource::Read(const std::filesystem::path& path, std::string* content) {
    auto source = std::make_unique<XmlSource>();
    source->mName = path.string();
    source->mIsFile = true;
    source->ReadFile();
    if (content != nullptr) content->assign(source->mBuffer.get(), source->mSize);
    source->Parse();
    return source;
}

std::unique_ptr<XmlSource> XmlSource::FromText(std::string_view text, std::string name) {
    auto source = std::make_unique<XmlSource>();
    source->mName = std::move(name);
    source->mBuffer.reset(static_cast<char*>(std::malloc(text.size() + 1)));
    if (!source->mBuffer) throw std::bad_alloc();
    text.copy(source->mBuffer.get(), text.size());
    source->mSize = text.size();
    source->Parse();
    return source;
}

void XmlSource::Fail(int32_t line, std::string fault, std::string expected) const {
    throw FileError({mName, line, {}}, std::move(fault), std::move(expected));
}

void XmlSource::ReadFile() {
    std::error_code error;
    const auto check = [&] {
        if (error) Fail(0, "cannot be read: " + error.message(), "an element file");
    };
    os::File file = os::File::Open(mName, os::Access::kRead, error);
    check();
    constexpr std::size_t kFirstRead = std::size_t{1} << 16U;
    // Reading one byte more than the file has finds its end without another call.
    std::size_t capacity = std::max(kFirstRead, static_cast<std::size_t>(file.Size()) + 1);
    mSize = 0;
    for (;;) {
        if (mSize > kLargestFile || capacity > kLargestFile + kFirstRead)
            Fail(0, "is larger than " + std::to_string(kLargestFile >> 20U) + " MB", "an element file");
        auto* memory = static_cast<char*>(std::realloc(mBuffer.get(), capacity));
        if (memory == nullptr) throw std::bad_alloc();
        (void)mBuffer.release();
        mBuffer.reset(memory);
        const std::size_t count = file.Read(memory + mSize, capacity - mSize, error);
        check();
        if (count == 0) return;
        mSize += count;
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
    bool hasRoot = false;
    for (const pugi::xml_node node : mDocument.children()) {
        hasRoot = hasRoot || node.type() == pugi::node_element;
        if (IsText(node) && !Trimmed(node.value()).empty())
            Fail(LineOf(node), "holds text outside its root element", "an XML document");
    }
    if (!hasRoot)
        Fail(LineAt(std::max<std::size_t>(mSize, 1) - 1), "No document element found", "an XML document");
}

int32_t XmlSource::LineOf(pugi::xml_node node) const {
    const ptrdiff_t offset = node.offset_debug();
    return offset < 0 ? 0 : LineAt(static_cast<std::size_t>(offset));
}

int32_t XmlSource::LineAt(std::size_t offset) const {
    // The parser changes the buffer, so lines are counted in the file itself.
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

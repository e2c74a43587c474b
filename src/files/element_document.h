#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <memory_resource>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "foundation/host_contract.h"

/// The loaded document of an element file.
namespace vorex {

/// Limits of a file: this system writes nothing larger.
inline constexpr int32_t kMostLevels = 200;
inline constexpr std::size_t kLargestFile = std::size_t{512} << 20U;

/// A loaded document, unchanged, with its comments. Only numeric entities and the five of XML are expanded.
/// Raises FileError for a file that cannot be read or is not a well-formed UTF-8 document of ordinary size.
class XmlSource {
  public:
    /// Stores the bytes of the file in the content, if given.
    static std::unique_ptr<XmlSource> Read(const std::filesystem::path& path, std::string* content = nullptr);
    /// The name is used as the file name in messages.
    static std::unique_ptr<XmlSource> FromText(std::string_view text, std::string name);

    const std::string& FileName() const { return mName; }
    const pugi::xml_document& Document() const { return mDocument; }
    /// Line of an element in the file, from 1; 0 when it is not known. Reads the file again.
    int32_t LineOf(pugi::xml_node node) const;

    /// An element for the library, which cannot change it. It and the elements below it live until the next
    /// ReleaseElements.
    std::shared_ptr<IXmlElement> Element(pugi::xml_node node);
    /// Call between two elements of a large file, to reuse their memory.
    void ReleaseElements() { mElements.release(); }

  private:
    struct Free {
        void operator()(char* memory) const { std::free(memory); }
    };

    void ReadFile();
    void Parse();
    int32_t LineAt(std::size_t offset) const;
    [[noreturn]] void Fail(int32_t line, std::string fault, std::string expected) const;

    std::string mName;
    bool mIsFile = false;
    std::unique_ptr<char, Free> mBuffer;  ///< holds the names and texts of the document
    std::size_t mSize = 0;
    pugi::xml_document mDocument;
    static constexpr std::size_t kUsualRoom = std::size_t{1} << 19U;
    std::unique_ptr<std::byte[]> mRoom{new std::byte[kUsualRoom]};
    std::pmr::monotonic_buffer_resource mElements{mRoom.get(), kUsualRoom};
};

/// True when a text of the document equals another; does not compute its length first.
inline bool SameText(const char* text, std::string_view other) {
    if (other.empty()) return *text == '\0';
    return *text == other.front() && std::strncmp(text, other.data(), other.size()) == 0 &&
           text[other.size()] == '\0';
}
/// Text of an element: its first piece of character data.
const char* NodeText(pugi::xml_node element);
/// First child element of a name; empty when there is none.
pugi::xml_node ChildNamed(pugi::xml_node parent, std::string_view name);
/// Attribute of an element; empty when it is absent.
pugi::xml_attribute FindAttribute(pugi::xml_node element, std::string_view name);

}  // namespace vorex

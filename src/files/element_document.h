#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <memory_resource>
#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "foundation/host_contract.h"

/// The document of an element file that was read.
namespace vorex {

/// Limits of a file: what lies beyond was not written by this system.
inline constexpr int32_t kMostLevels = 200;
inline constexpr std::size_t kLargestFile = std::size_t{512} << 20U;

/// A document that was read and is kept as it is, comments and all. Entities other than the five of XML
/// and numeric ones are not expanded. Raises FileError for what cannot be read or is no well-formed UTF-8
/// document of ordinary size.
class XmlSource {
  public:
    /// The bytes of the file go to the content, if one is given.
    static std::unique_ptr<XmlSource> Read(const std::filesystem::path& path, std::string* content = nullptr);
    /// The name stands for the file in messages.
    static std::unique_ptr<XmlSource> FromText(std::string_view text, std::string name);

    const std::string& FileName() const { return mName; }
    const pugi::xml_document& Document() const { return mDocument; }
    /// Line of an element in the file, from 1; 0 when it is not known. Reads the file again.
    int32_t LineOf(pugi::xml_node node) const;

    /// An element as the library sees it; it cannot be changed. It and those below it live until the next
    /// ReleaseElements.
    std::shared_ptr<IXmlElement> Element(pugi::xml_node node);
    /// To be called between two elements of a large file: their memory is used again.
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
    std::unique_ptr<char, Free> mBuffer;  ///< names and texts of the document lie in it
    std::size_t mSize = 0;
    pugi::xml_document mDocument;
    static constexpr std::size_t kUsualRoom = std::size_t{1} << 19U;
    std::unique_ptr<std::byte[]> mRoom{new std::byte[kUsualRoom]};
    std::pmr::monotonic_buffer_resource mElements{mRoom.get(), kUsualRoom};
};

/// True when a text of the document equals another, without measuring it first.
bool SameText(const char* text, std::string_view other);
/// Text of an element: of its first piece of character data.
const char* NodeText(pugi::xml_node element);
/// First child element of a name; empty when there is none.
pugi::xml_node ChildNamed(pugi::xml_node parent, std::string_view name);
/// Attribute of an element; empty when it is absent.
pugi::xml_attribute FindAttribute(pugi::xml_node element, std::string_view name);

}  // namespace vorex

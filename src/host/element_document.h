#pragma once

#include <pugixml.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "foundation/host_contract.h"

/// The documents behind element files: one that is read from a file and kept, and one that is built to be
/// written.
namespace vorex {

class AtomicFile;

/// Limits of a file that is read: what lies beyond was not written by this system.
inline constexpr int32_t kMostLevels = 200;
inline constexpr std::size_t kLargestFile = std::size_t{512} << 20U;

/// An element of either document. It does not keep its document alive.
class XmlElement final : public IXmlElement {
  public:
    XmlElement() = default;
    explicit XmlElement(pugi::xml_node node) : mNode(node) {}

    pugi::xml_node Node() const { return mNode; }

    std::string_view Name() const override { return mNode.name(); }
    void Name(std::string_view name) override;
    std::string_view GetAttribute(std::string_view name) const override;
    void SetAttribute(std::string_view name, std::string_view value) override;
    XmlElements Children() const override;
    std::shared_ptr<IXmlElement> AddChild(const std::shared_ptr<IXmlElement>& child) override;
    XmlElements FindChild(std::string_view name) const override;
    std::string_view Text() const override;
    void Text(std::string_view text) override;
    std::shared_ptr<IXmlElement> AddValue(std::string_view name, std::string_view value) override;
    std::string ReadValue(std::string_view name, std::string_view defaultValue) const override;

  private:
    pugi::xml_node mNode;
};

/// A document that is built to be written. Elements are made without a place and put below others; what
/// was never placed is not written.
class XmlDocument final : public IXmlDocument {
  public:
    XmlDocument();

    std::shared_ptr<IXmlElement> CreateElement(std::string_view name) override;
    /// Makes a placed root element; the document has one.
    std::shared_ptr<XmlElement> CreateRoot(std::string_view name);
    /// The finished tree, without what was never placed. [no new elements afterwards]
    pugi::xml_document& Finish();
    /// Indented by two blanks, with an XML declaration. [after `Finish`]
    void Write(AtomicFile& file) const;
    std::string Text() const;

  private:
    pugi::xml_document mDocument;
    pugi::xml_node mUnplaced;
};

/// A document that was read. Entities other than the five of XML and numeric ones are not expanded; texts
/// are kept as they stand, comments too. Raises FileError for what cannot be read or is no well-formed
/// UTF-8 document of ordinary depth and size.
class XmlSource {
  public:
    static std::unique_ptr<XmlSource> Read(const std::filesystem::path& path);
    /// The name stands for the file in messages.
    static std::unique_ptr<XmlSource> FromText(std::string_view text, std::string name);

    const std::string& FileName() const { return mName; }
    const pugi::xml_document& Document() const { return mDocument; }
    /// Line of an element in the file, from 1; 0 when it is not known. Reads the file again.
    int32_t LineOf(pugi::xml_node node) const;

  private:
    struct Free {
        void operator()(char* memory) const { std::free(memory); }
    };
    using Buffer = std::unique_ptr<char, Free>;

    void ReadFile();
    void Parse();
    int32_t LineAt(std::size_t offset) const;
    [[noreturn]] void Fail(int32_t line, std::string fault, std::string expected) const;

    std::string mName;
    bool mIsFile = false;
    Buffer mBuffer;  ///< names and texts of the document lie in it
    std::size_t mSize = 0;
    pugi::xml_document mDocument;
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

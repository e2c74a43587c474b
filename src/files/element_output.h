#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <memory_resource>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>

#include "foundation/host_contract.h"

/// The tree of an element file that will be written.
namespace vorex {

class OutputDocument;

/// An element of the tree, or an unchanged node of a loaded document. Elements live as long as their
/// document.
class OutputElement final : public IXmlElement {
  public:
    struct Attribute {
        std::string_view name;
        std::string_view value;
        Attribute* next = nullptr;
    };

    OutputElement(OutputDocument& document, std::string_view name) : mDocument(document), mName(name) {}
    OutputElement(OutputDocument& document, pugi::xml_node foreign)
        : mDocument(document), mForeign(foreign) {}

    // IXmlElement
    std::string_view Name() const override { return mName; }
    void Name(std::string_view name) override;
    std::string_view GetAttribute(std::string_view name) const override;
    void SetAttribute(std::string_view name, std::string_view value) override;
    XmlElements Children() const override;
    /// Throws std::logic_error for an element that already has a parent.
    std::shared_ptr<IXmlElement> AddChild(const std::shared_ptr<IXmlElement>& child) override;
    XmlElements FindChild(std::string_view name) const override;
    std::string_view Text() const override { return mText; }
    void Text(std::string_view text) override;
    std::shared_ptr<IXmlElement> AddValue(std::string_view name, std::string_view value) override;
    std::string ReadValue(std::string_view name, std::string_view defaultValue) const override;

    // Access for the merge and the writer.
    OutputElement* First() const { return mFirst; }
    OutputElement* Next() const { return mNext; }
    pugi::xml_node Foreign() const { return mForeign; }
    const Attribute* FirstAttribute() const { return mFirstAttribute; }
    const Attribute* FindAttribute(std::string_view name) const;
    void ClearAttributes() { mFirstAttribute = nullptr; }
    /// Its content is made when it is written.
    bool IsDeferred() const { return mDeferred; }
    /// Inserts a node of a loaded document, which must outlive this one, after a child, or before all
    /// children.
    OutputElement* InsertForeign(OutputElement* behind, pugi::xml_node node);

  private:
    friend class OutputDocument;

    void Append(OutputElement* child);
    template <typename Select>
    XmlElements Collect(Select&& select) const;

    OutputDocument& mDocument;
    std::string_view mName;
    std::string_view mText;
    Attribute* mFirstAttribute = nullptr;
    OutputElement* mFirst = nullptr;
    OutputElement* mLast = nullptr;
    OutputElement* mNext = nullptr;
    bool mPlaced = false;
    bool mDeferred = false;
    pugi::xml_node mForeign;
};

/// A document to be written. An element that was never placed is not written.
class OutputDocument final : public IXmlDocument {
  public:
    /// Bytes that are allocated at once and kept; a larger document allocates more.
    explicit OutputDocument(std::size_t room = 0);
    OutputDocument(const OutputDocument&) = delete;
    OutputDocument& operator=(const OutputDocument&) = delete;

    /// Empty for a text that is no element name.
    std::shared_ptr<IXmlElement> CreateElement(std::string_view name) override;
    /// The document's own children: the root element, and comments around it.
    OutputElement& Top() { return *mTop; }

    /// Makes the content of a deferred element in a document of its own, with the foreign content of its
    /// counterpart in the loaded document, which may be empty. Returns an empty reference for an element that
    /// is not written.
    using Maker = std::function<std::shared_ptr<IXmlElement>(const std::shared_ptr<OutputDocument>& document,
                                                             pugi::xml_node counterpart)>;
    /// An element whose content is made when it is written, and then released: a large document needs memory
    /// for one element at a time, which stays in the processor's cache. Until then it has only its name and
    /// identifier.
    std::shared_ptr<IXmlElement> Defer(std::string_view name, std::string_view id, Maker maker);
    void SetCounterpart(const OutputElement& deferred, pugi::xml_node counterpart) {
        mDeferred.at(&deferred).counterpart = counterpart;
    }

    using Sink = std::function<void(std::string_view text)>;
    /// Writes UTF-8 with an XML declaration, indented by two blanks, in pieces. Invalid characters become the
    /// replacement character, so that the file can always be read again.
    void Write(const Sink& sink) const;
    std::string Text() const;

  private:
    friend class OutputElement;
    friend class DocumentWriter;

    struct Deferred {
        Maker maker;
        pugi::xml_node counterpart;
    };

    /// Releases all elements.
    void Clear();
    OutputElement* Make(std::string_view name);
    template <typename Object, typename... Args>
    Object* New(Args&&... args);
    std::string_view Keep(std::string_view text);
    /// A kept element name, shared by elements; empty for a text that is no element name.
    std::string_view KeepName(std::string_view name);

    static constexpr std::size_t kNamePlaces = 128;

    std::unique_ptr<std::byte[]> mRoom;
    std::pmr::monotonic_buffer_resource mMemory;
    /// Names that were met, each at a place that follows from its characters: a file repeats few names often.
    std::array<std::string_view, kNamePlaces> mNames{};
    std::unordered_map<const OutputElement*, Deferred> mDeferred;
    OutputElement* mTop;
};

}  // namespace vorex

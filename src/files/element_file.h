#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/host_contract.h"

namespace vorex {

class MtiList;
class OutputDocument;
class SequenceState;
class XmlSource;

/// An element file in memory: the elements, the instruments and the choice of standards. Any other content of
/// the file is kept and written back in its place.
class ElementFile {
  public:
    /// An empty new file.
    ElementFile();
    /// Ends the elements.
    ~ElementFile();
    ElementFile(const ElementFile&) = delete;
    ElementFile& operator=(const ElementFile&) = delete;

    /// Raises FileError, and changes nothing, for a file that cannot be read completely. Stores the bytes of
    /// the file in the content, if given.
    static std::unique_ptr<ElementFile> Load(const std::filesystem::path& path, IProgressLog* log = nullptr,
                                             std::string* content = nullptr);
    /// The same from a text; the name is used as the file name in messages.
    static std::unique_ptr<ElementFile> FromText(std::string_view text, std::string name,
                                                 IProgressLog* log = nullptr);

    /// Writes the file completely or not at all. Raises FileError. An element without an ID, or with the ID
    /// of an earlier element, gets a new one.
    void Save(const std::filesystem::path& path);
    /// The text that `Save` would write.
    std::string Text();
    /// The same text in pieces. A large text that grows in one place would be copied again and again.
    std::vector<std::string> TextPieces();

    const std::vector<std::shared_ptr<ITestElement>>& Elements() const { return mElements; }
    /// Adds a root at the end; an element without an ID gets one.
    void Add(const std::shared_ptr<ITestElement>& element);
    /// Removes a root and terminates it.
    void Remove(const std::shared_ptr<ITestElement>& element);
    /// The element with an ID, at any depth; empty when there is none.
    std::shared_ptr<ITestElement> FindElement(int32_t id) const;

    std::shared_ptr<IMtiList> Instruments() const;
    /// The standards chosen in the file; without a choice, all that the elements have.
    std::shared_ptr<ISelectedStandards> Selected() const;
    /// Chooses standards; nothing means all that the elements have.
    void Select(std::optional<std::vector<StandardName>> standards) { mChosen = std::move(standards); }

  private:
    static std::unique_ptr<ElementFile> Build(std::unique_ptr<XmlSource> source, IProgressLog* log);
    void LoadFrame(const IXmlElement& root);
    void NumberElements();
    void AddRoot(std::shared_ptr<ITestElement> element);
    /// IDs of the elements whose results have no foreign content to take over from the file.
    std::set<int32_t> UnmergedResults() const;
    std::shared_ptr<OutputDocument> Written(const std::string& name);

    std::unique_ptr<XmlSource> mSource;  ///< empty for a new file
    std::vector<std::shared_ptr<ITestElement>> mElements;
    std::shared_ptr<vorex::MtiList> mInstruments;
    bool mHasInstrumentList = false;
    std::optional<std::vector<StandardName>> mChosen;
    std::shared_ptr<SequenceState> mSequence;  ///< of all elements of the file
    std::map<int32_t, std::weak_ptr<IResultData>> mLoadedResults;
    std::set<int32_t> mPlainResults;
};

}  // namespace vorex

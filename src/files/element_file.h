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

/// An element file in memory: the elements, the instruments and the choice of standards. What the file holds
/// apart from these stays with it and is written back in its place.
class ElementFile {
  public:
    /// A new file without elements.
    ElementFile();
    /// Ends the elements.
    ~ElementFile();
    ElementFile(const ElementFile&) = delete;
    ElementFile& operator=(const ElementFile&) = delete;

    /// Raises FileError for a file that cannot be read as a whole; nothing has changed then.
    /// The bytes of the file go to the content, if one is given.
    static std::unique_ptr<ElementFile> Load(const std::filesystem::path& path, IProgressLog* log = nullptr,
                                             std::string* content = nullptr);
    /// The same from a text; the name stands for the file in messages.
    static std::unique_ptr<ElementFile> FromText(std::string_view text, std::string name,
                                                 IProgressLog* log = nullptr);

    /// Writes the file as a whole or not at all. Raises FileError. An element without an ID, or with one
    /// that an earlier element has, is given a new one.
    void Save(const std::filesystem::path& path);
    /// What `Save` would write.
    std::string Text();

    const std::vector<std::shared_ptr<ITestElement>>& Elements() const { return mElements; }
    /// Puts an element at the end; one without an ID gets one.
    void Add(const std::shared_ptr<ITestElement>& element);
    /// Takes a root out and ends it.
    void Remove(const std::shared_ptr<ITestElement>& element);
    /// The element of an ID, at any depth; empty when there is none.
    std::shared_ptr<ITestElement> FindElement(int32_t id) const;

    std::shared_ptr<IMtiList> Instruments() const;
    /// The standards chosen in the file; without a choice, all that the elements have.
    std::shared_ptr<ISelectedStandards> Selected() const;
    /// Chooses standards; nothing leaves the choice to what the elements have.
    void Select(std::optional<std::vector<StandardName>> standards) { mChosen = std::move(standards); }

  private:
    static std::unique_ptr<ElementFile> Build(std::unique_ptr<XmlSource> source, IProgressLog* log);
    void LoadFrame(const IXmlElement& root);
    void LoadElements(XmlSource& source, IProgressLog* log);
    void NumberElements();
    void AddRoot(std::shared_ptr<ITestElement> element);
    /// IDs of the elements whose results have nothing to take over from those of the file.
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

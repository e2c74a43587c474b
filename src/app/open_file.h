#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/listener.h"
#include "files/element_file.h"
#include "files/standards_library.h"

namespace vorex {

enum class FileVerdict {
    kGood,  ///< passed, or not judged
    kBad,   ///< an element that counts has failed
};

struct AddedStandard {
    StandardName name;
    bool selected = false;  ///< the file selects it
};

/// An element file that is open in a session. Several can be open at once. The session must outlive it.
class OpenFile {
  public:
    /// A new file with one test, or group, and its defaults.
    static std::unique_ptr<OpenFile> New(int32_t testId);
    /// Raises FileError for a file that cannot be read. The bytes of the file go to `content`, if given.
    static std::unique_ptr<OpenFile> Load(const std::filesystem::path& path, std::string* content = nullptr);
    /// The same from a text; the name is for messages.
    static std::unique_ptr<OpenFile> FromText(std::string_view text, const std::string& name);

    /// The name it was opened with, for messages.
    const std::string& Name() const { return mName; }
    ElementFile& File() { return *mFile; }
    const ElementFile& File() const { return *mFile; }
    const std::vector<std::shared_ptr<ITestElement>>& Elements() const { return mFile->Elements(); }

    /// Raises FileError; then the file on disk is unchanged.
    void Save(const std::filesystem::path& path) { mFile->Save(path); }
    /// The text that `Save` would write.
    std::string Text() { return mFile->Text(); }
    /// The same text in pieces, for a large file.
    std::vector<std::string> TextPieces() { return mFile->TextPieces(); }

    /// ID of the first element that measures; nothing when a run of the file needs no instruments.
    std::optional<int32_t> FirstMeasuring() const;
    FileVerdict Verdict() const;
    /// The surveys that could not be judged completely, and why.
    std::vector<AppFault> SurveyFaults() const;

    /// Judges stored results again by the limits of the file, recalculates surveys, and updates groups. A
    /// group without a result gets one when a child has one.
    void Judge(IAppListener& listener);

    /// Puts a standard, NAME or NAME:VERSION, into the elements that it has limits for, replacing its earlier
    /// limits; with IDs, only into these elements and those below them. Limits that fit no element are
    /// faults. Raises std::runtime_error when there is no such standard or it fits no element.
    AddedStandard AddStandard(StandardsLibrary& library, const std::string& wanted,
                              std::span<const int32_t> ids, IAppListener& listener);
    /// Chooses the standards that judge. Raises std::runtime_error for a standard that no element has.
    void SelectStandards(std::span<const std::string> wanted);

  private:
    OpenFile(std::unique_ptr<ElementFile> file, std::string name);

    std::unique_ptr<ElementFile> mFile;
    std::string mName;
};

}  // namespace vorex

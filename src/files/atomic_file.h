#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "system/system.h"

namespace vorex {

/// Writes a file as a whole or not at all: into a temporary file of the same folder, which takes the place of
/// the old one when everything has reached the disk. Raises FileError; whatever fails leaves the old file as
/// it was and leaves no temporary file.
///
/// A symbolic link is followed. A target that is no ordinary file (a device, a pipe) is written directly.
class AtomicFile {
  public:
    explicit AtomicFile(const std::filesystem::path& target);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// Goes to the system at once: meant for large pieces.
    void Write(std::string_view bytes);
    /// Puts the new file in place. [last; without it the target stays as it was]
    void Commit();

  private:
    [[noreturn]] void Fail(std::string_view what, const std::error_code& reason) const;

    std::filesystem::path mShown;      ///< as the caller named it
    std::filesystem::path mTarget;     ///< after symbolic links
    std::filesystem::path mTemporary;  ///< empty when the target is written directly
    os::File mFile;
};

/// Writes a text as a file, as `AtomicFile` does.
void WriteWholeFile(const std::filesystem::path& target, std::string_view text);

}  // namespace vorex

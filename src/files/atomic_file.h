#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "system/system.h"

namespace vorex {

/// Writes a file completely or not at all: into a temporary file in the same folder, which replaces the old
/// one when all data has reached the disk. Raises FileError; then the old file is unchanged and no temporary
/// file remains.
///
/// A symbolic link is followed. A target that is not an ordinary file (a device, a pipe) is written directly.
class AtomicFile {
  public:
    explicit AtomicFile(const std::filesystem::path& target);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    /// Unbuffered: meant for large pieces.
    void Write(std::string_view bytes);
    /// Puts the new file in place. [last; without it the target stays as it was]
    void Commit();

  private:
    [[noreturn]] void Fail(std::string_view what, const std::error_code& reason) const;

    std::filesystem::path mShown;      ///< the name from the caller
    std::filesystem::path mTarget;     ///< after symbolic links
    std::filesystem::path mTemporary;  ///< empty when the target is written directly
    os::File mFile;
};

/// Writes a text as a file, with `AtomicFile`.
void WriteWholeFile(const std::filesystem::path& target, std::string_view text);

}  // namespace vorex

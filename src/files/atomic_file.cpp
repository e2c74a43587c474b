#include "files/atomic_file.h"

#include "foundation/file_error.h"

namespace vorex {

namespace fs = std::filesystem;

namespace {

/// The target of a symbolic link, even if it does not exist yet.
fs::path BehindLinks(fs::path path) {
    constexpr int kMostLinks = 40;
    std::error_code error;
    for (int i = 0; i < kMostLinks && fs::is_symlink(path, error); ++i) {
        const fs::path next = fs::read_symlink(path, error);
        if (error) break;
        path = next.is_absolute() ? next : path.parent_path() / next;
    }
    return path;
}

}  // namespace

AtomicFile::AtomicFile(const fs::path& target) : mShown(target), mTarget(BehindLinks(target)) {
    std::error_code error;
    const fs::file_status status = fs::status(mTarget, error);
    if (fs::is_directory(status))
        throw FileError({mShown.string(), 0, {}}, "is a folder", "the name of a file");
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        mFile = os::File::Open(mTarget, os::Access::kOverwrite, error);
        if (error) Fail("cannot be opened for writing", error);
    } else {
        if (fs::exists(status) && !os::MayWrite(mTarget, error)) Fail("cannot be written", error);
        mFile = os::File::OpenTemporary(mTarget, mTemporary, error);
        if (error) Fail("cannot be written into its folder", error);
    }
}

AtomicFile::~AtomicFile() {
    (void)mFile.Close();
    std::error_code error;
    if (!mTemporary.empty()) fs::remove(mTemporary, error);
}

void AtomicFile::Fail(std::string_view what, const std::error_code& reason) const {
    throw FileWriteError({mShown.string(), 0, {}}, std::string(what) + ": " + reason.message());
}

void AtomicFile::Write(std::string_view bytes) {
    if (const std::error_code error = mFile.Write(bytes)) Fail("cannot be written", error);
}

void AtomicFile::Commit() {
    const bool direct = mTemporary.empty();
    if (!direct)
        if (const std::error_code error = mFile.Flush()) Fail("cannot be written to the disk", error);
    if (const std::error_code error = mFile.Close()) Fail("cannot be written", error);
    if (direct) return;
    if (const std::error_code error = os::Replace(mTemporary, mTarget)) Fail("cannot be replaced", error);
    mTemporary.clear();
    // This makes the new name survive a power failure; the file is complete either way.
    os::FlushFolderOf(mTarget);
}

void WriteWholeFile(const fs::path& target, std::string_view text) {
    AtomicFile file(target);
    file.Write(text);
    file.Commit();
}

}  // namespace vorex

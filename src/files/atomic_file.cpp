#include "files/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <system_error>

#include "foundation/file_error.h"

namespace vorex {

namespace fs = std::filesystem;

namespace {

constexpr mode_t kNewFileMode = 0666;

/// The file behind a symbolic link, also when it does not exist yet.
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

/// Access rights of the new file: those of the old one, or what the process gives a new file.
mode_t ModeFor(const fs::path& target) {
    struct stat status {};
    if (::stat(target.c_str(), &status) == 0) return status.st_mode & 07777U;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return kNewFileMode & ~mask;
}

}  // namespace

AtomicFile::AtomicFile(const fs::path& target) : mShown(target), mTarget(BehindLinks(target)) {
    std::error_code error;
    const fs::file_status status = fs::status(mTarget, error);
    if (fs::is_directory(status))
        throw FileError({mShown.string(), 0, {}}, "is a folder", "the name of a file");
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        mDescriptor = ::open(mTarget.c_str(), O_WRONLY | O_CLOEXEC);
        if (mDescriptor < 0) Fail("cannot be opened for writing");
    } else {
        if (fs::exists(status) && ::access(mTarget.c_str(), W_OK) != 0) Fail("cannot be written");
        OpenTemporary();
    }
}

void AtomicFile::OpenTemporary() {
    const fs::path folder = mTarget.parent_path();
    const mode_t mode = ModeFor(mTarget);
    std::string name = (folder / ("." + mTarget.filename().string() + ".XXXXXX")).string();
    mDescriptor = ::mkostemp(name.data(), O_CLOEXEC);
    if (mDescriptor < 0) Fail("cannot be written into its folder");
    mTemporary = name;
    // Rights that cannot be given are no reason to lose the work: the file stays the user's alone.
    (void)::fchmod(mDescriptor, mode);
}

AtomicFile::~AtomicFile() {
    if (mDescriptor >= 0) ::close(mDescriptor);
    if (!mTemporary.empty()) ::unlink(mTemporary.c_str());
}

void AtomicFile::Fail(std::string_view what) const {
    const std::string reason = std::generic_category().message(errno);
    throw FileWriteError({mShown.string(), 0, {}}, std::string(what) + ": " + reason);
}

void AtomicFile::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(mDescriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) Fail("cannot be written");
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void AtomicFile::Commit() {
    const bool direct = mTemporary.empty();
    if (!direct && ::fsync(mDescriptor) != 0) Fail("cannot be written to the disk");
    const int descriptor = mDescriptor;
    mDescriptor = -1;
    if (::close(descriptor) != 0) Fail("cannot be written");
    if (direct) return;
    if (::rename(mTemporary.c_str(), mTarget.c_str()) != 0) Fail("cannot be replaced");
    mTemporary.clear();
    // The new name itself shall survive a power failure; the file is whole either way.
    const fs::path parent = mTarget.parent_path();
    const int folder = ::open(parent.empty() ? "." : parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0) return;
    (void)::fsync(folder);
    ::close(folder);
}

void WriteWholeFile(const fs::path& target, std::string_view text) {
    AtomicFile file(target);
    file.Write(text);
    file.Commit();
}

}  // namespace vorex

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <utility>

#include "system/system.h"

namespace vorex::os {

namespace fs = std::filesystem;

namespace {

constexpr mode_t kNewFileMode = 0666;

std::error_code LastError() {
    return {errno, std::generic_category()};
}

/// A call's result as an error code.
std::error_code Checked(int result) {
    return result == 0 ? std::error_code() : LastError();
}

int Descriptor(intptr_t handle) {
    return static_cast<int>(handle);
}

int FlagsOf(Access access) {
    switch (access) {
        case Access::kRead:
            return O_RDONLY;
        case Access::kOverwrite:
            return O_WRONLY;
        case Access::kAppend:
            return O_RDWR | O_APPEND;
        case Access::kAppendToNew:
            return O_RDWR | O_APPEND | O_CREAT | O_EXCL;
    }
    return O_RDONLY;
}

/// Access rights of the new file: those of the old one, or the process's default.
mode_t ModeFor(const fs::path& target) {
    struct stat status {};
    if (::stat(target.c_str(), &status) == 0) return status.st_mode & 07777U;
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return kNewFileMode & ~mask;
}

}  // namespace

File::File(File&& other) noexcept : mHandle(std::exchange(other.mHandle, kClosed)) {}

File& File::operator=(File&& other) noexcept {
    std::swap(mHandle, other.mHandle);
    return *this;
}

File File::Open(const fs::path& path, Access access, std::error_code& error) {
    const int descriptor = ::open(path.c_str(), FlagsOf(access) | O_CLOEXEC, kNewFileMode);
    error = descriptor < 0 ? LastError() : std::error_code();
    return File(descriptor);
}

File File::OpenTemporary(const fs::path& target, fs::path& name, std::error_code& error) {
    const mode_t mode = ModeFor(target);
    std::string text = (target.parent_path() / ("." + target.filename().string() + ".XXXXXX")).string();
    const int descriptor = ::mkostemp(text.data(), O_CLOEXEC);
    error = descriptor < 0 ? LastError() : std::error_code();
    if (error) return {};
    name = text;
    // Rights that cannot be set must not lose the work: the file then stays private to the user.
    (void)::fchmod(descriptor, mode);
    return File(descriptor);
}

bool File::IsRegular() const {
    struct stat status {};
    return ::fstat(Descriptor(mHandle), &status) == 0 && S_ISREG(status.st_mode);
}

uint64_t File::Size() const {
    struct stat status {};
    return ::fstat(Descriptor(mHandle), &status) == 0 ? static_cast<uint64_t>(status.st_size) : 0;
}

std::size_t File::Read(char* memory, std::size_t size, std::error_code& error) {
    for (;;) {
        const ssize_t count = ::read(Descriptor(mHandle), memory, size);
        if (count < 0 && errno == EINTR) continue;
        error = count < 0 ? LastError() : std::error_code();
        return count < 0 ? 0 : static_cast<std::size_t>(count);
    }
}

std::error_code File::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(Descriptor(mHandle), bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return LastError();
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

std::error_code File::Truncate(uint64_t size) {
    return Checked(::ftruncate(Descriptor(mHandle), static_cast<off_t>(size)));
}

std::error_code File::Flush() {
    // The size is flushed as well: without it the content could not be read again.
    return Checked(::fdatasync(Descriptor(mHandle)));
}

bool File::Lock() {
    return ::flock(Descriptor(mHandle), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

std::error_code File::Close() {
    if (!IsOpen()) return {};
    return Checked(::close(Descriptor(std::exchange(mHandle, kClosed))));
}

std::error_code Replace(const fs::path& from, const fs::path& to) {
    return Checked(::rename(from.c_str(), to.c_str()));
}

void FlushFolderOf(const fs::path& file) {
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    (void)::fsync(descriptor);
    ::close(descriptor);
}

bool MayWrite(const fs::path& file, std::error_code& error) {
    error = Checked(::access(file.c_str(), W_OK));
    return !error;
}

fs::path ProgramFile() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error);
}

std::string Environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

std::string LocaleName() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (std::string value = Environment(variable); !value.empty()) return value;
    return {};
}

int32_t UtcOffset(std::time_t moment) {
    std::tm local{};
    ::localtime_r(&moment, &local);
    return static_cast<int32_t>(local.tm_gmtoff);
}

bool IsTerminal(Output output) {
    return ::isatty(output == Output::kStandard ? STDOUT_FILENO : STDERR_FILENO) != 0;
}

Function LoadFunction(const fs::path& module, const char* name, std::string& reason) {
    void* const loaded = ::dlopen(module.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const found = loaded == nullptr ? nullptr : ::dlsym(loaded, name);
    if (found == nullptr) {
        const char* const words = ::dlerror();
        reason = words == nullptr ? "" : words;
    }
    return reinterpret_cast<Function>(found);
}

}  // namespace vorex::os

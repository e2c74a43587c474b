#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

/// Everything that depends on the operating system. There is one source per system, and no other folder
/// includes a header of an operating system.
///
/// Failures are returned as error codes, whose messages are the system's.
namespace vorex::os {

enum class Access {
    kRead,
    kOverwrite,   ///< an existing file or device, from its start
    kAppend,      ///< an existing file, read from its start and written at its end
    kAppendToNew  ///< as kAppend, but fails with std::errc::file_exists when the file is there
};

/// An open file. It is not inherited by child processes.
class File {
  public:
    File() = default;
    ~File() { (void)Close(); }
    File(File&& other) noexcept;
    File& operator=(File&& other) noexcept;

    static File Open(const std::filesystem::path& path, Access access, std::error_code& error);
    /// A new file with a unique name in the folder of the target, with the access rights that the target has
    /// or would get, if the system allows it.
    static File OpenTemporary(const std::filesystem::path& target, std::filesystem::path& name,
                              std::error_code& error);

    bool IsOpen() const { return mHandle != kClosed; }
    /// True for an ordinary file: no folder, device or pipe.
    bool IsRegular() const;
    /// In bytes; 0 if the file has no size.
    uint64_t Size() const;
    /// The next bytes, at most so many; 0 at the end of the file.
    std::size_t Read(char* memory, std::size_t size, std::error_code& error);
    /// All of the bytes, or an error.
    std::error_code Write(std::string_view bytes);
    std::error_code Truncate(uint64_t size);
    /// Returns when the content has reached the disk.
    std::error_code Flush();
    /// False while another process has the lock. A file system without locks grants it.
    bool Lock();
    std::error_code Close();

  private:
    static constexpr intptr_t kClosed = -1;
    explicit File(intptr_t handle) : mHandle(handle) {}

    intptr_t mHandle = kClosed;
};

/// Gives a file the name of another, which it replaces in one step.
std::error_code Replace(const std::filesystem::path& from, const std::filesystem::path& to);
/// Flushes the names in the folder of a file to the disk, if the system requires it.
void FlushFolderOf(const std::filesystem::path& file);
/// True when the user may write an existing file.
bool MayWrite(const std::filesystem::path& file, std::error_code& error);

/// The running program's own file; empty when it is not known.
std::filesystem::path ProgramFile();
/// An environment variable; empty when it is not set.
std::string Environment(const char* name);
/// The user's language and country, e.g. "de_DE.UTF-8" or "de-DE"; empty when it is not known.
std::string LocaleName();
/// Local time minus universal time at a moment, in seconds.
int32_t UtcOffset(std::time_t moment);

enum class Output { kStandard, kError };
/// True when the output is a terminal.
bool IsTerminal(Output output);

using Function = void (*)();
/// A function that a module exports. The module stays loaded. Null when either cannot be found, with the
/// reason.
Function LoadFunction(const std::filesystem::path& module, const char* name, std::string& reason);

}  // namespace vorex::os

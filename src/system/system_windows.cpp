#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

#include "system/system.h"

namespace vorex::os {

namespace fs = std::filesystem;

namespace {

std::error_code LastError() {
    return {static_cast<int>(::GetLastError()), std::system_category()};
}

std::error_code Checked(BOOL done) {
    return done != FALSE ? std::error_code() : LastError();
}

HANDLE Handle(intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

/// Others may read, rename and delete the file meanwhile, as on other systems.
HANDLE OpenHandle(const fs::path& path, DWORD rights, DWORD disposition) {
    return ::CreateFileW(path.c_str(), rights, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                         nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
}

std::string Narrow(const wchar_t* wide) {
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 1) return {};
    std::string text(static_cast<std::size_t>(size), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, wide, -1, text.data(), size, nullptr, nullptr);
    text.pop_back();
    return text;
}

}  // namespace

File::File(File&& other) noexcept : mHandle(std::exchange(other.mHandle, kClosed)) {}

File& File::operator=(File&& other) noexcept {
    std::swap(mHandle, other.mHandle);
    return *this;
}

File File::Open(const fs::path& path, Access access, std::error_code& error) {
    const DWORD append = GENERIC_READ | FILE_APPEND_DATA | FILE_WRITE_DATA | SYNCHRONIZE;
    HANDLE handle = INVALID_HANDLE_VALUE;
    switch (access) {
        case Access::kRead:
            handle = OpenHandle(path, GENERIC_READ, OPEN_EXISTING);
            break;
        case Access::kOverwrite:
            handle = OpenHandle(path, GENERIC_WRITE, OPEN_EXISTING);
            break;
        case Access::kAppend:
            handle = OpenHandle(path, append, OPEN_EXISTING);
            break;
        case Access::kAppendToNew:
            handle = OpenHandle(path, append, CREATE_NEW);
            break;
    }
    error = handle == INVALID_HANDLE_VALUE ? LastError() : std::error_code();
    return File(reinterpret_cast<intptr_t>(handle));
}

File File::OpenTemporary(const fs::path& target, fs::path& name, std::error_code& error) {
    // A new file takes the rights of its folder, as the target did.
    constexpr int kAttempts = 100;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        LARGE_INTEGER ticks;
        ::QueryPerformanceCounter(&ticks);
        name = target;
        name.replace_filename(L"." + target.filename().wstring() + L"." +
                              std::to_wstring(::GetCurrentProcessId()) + L"." +
                              std::to_wstring(ticks.QuadPart % 1'000'000));
        const HANDLE handle = OpenHandle(name, GENERIC_WRITE, CREATE_NEW);
        error = handle == INVALID_HANDLE_VALUE ? LastError() : std::error_code();
        if (!error) return File(reinterpret_cast<intptr_t>(handle));
        if (error != std::errc::file_exists) break;
    }
    return {};
}

bool File::IsRegular() const {
    return ::GetFileType(Handle(mHandle)) == FILE_TYPE_DISK;
}

uint64_t File::Size() const {
    LARGE_INTEGER size;
    return ::GetFileSizeEx(Handle(mHandle), &size) != FALSE ? static_cast<uint64_t>(size.QuadPart) : 0;
}

std::size_t File::Read(char* memory, std::size_t size, std::error_code& error) {
    constexpr std::size_t kMost = std::size_t{1} << 30U;
    DWORD count = 0;
    const BOOL done =
        ::ReadFile(Handle(mHandle), memory, static_cast<DWORD>(std::min(size, kMost)), &count, nullptr);
    // When the writer of a pipe is gone, the pipe has ended.
    error = done != FALSE || ::GetLastError() == ERROR_BROKEN_PIPE ? std::error_code() : LastError();
    return count;
}

std::error_code File::Write(std::string_view bytes) {
    constexpr std::size_t kMost = std::size_t{1} << 30U;
    while (!bytes.empty()) {
        DWORD count = 0;
        if (::WriteFile(Handle(mHandle), bytes.data(), static_cast<DWORD>(std::min(bytes.size(), kMost)),
                        &count, nullptr) == FALSE)
            return LastError();
        bytes.remove_prefix(count);
    }
    return {};
}

std::error_code File::Truncate(uint64_t size) {
    LARGE_INTEGER place;
    place.QuadPart = static_cast<LONGLONG>(size);
    if (::SetFilePointerEx(Handle(mHandle), place, nullptr, FILE_BEGIN) == FALSE) return LastError();
    return Checked(::SetEndOfFile(Handle(mHandle)));
}

std::error_code File::Flush() {
    return Checked(::FlushFileBuffers(Handle(mHandle)));
}

bool File::Lock() {
    // A lock keeps others from reading what it covers, so it covers a byte that the file never has.
    OVERLAPPED beyond{};
    beyond.Offset = MAXDWORD;
    beyond.OffsetHigh = MAXDWORD >> 1U;
    return ::LockFileEx(Handle(mHandle), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                        &beyond) != FALSE ||
           ::GetLastError() != ERROR_LOCK_VIOLATION;
}

std::error_code File::Close() {
    if (!IsOpen()) return {};
    return Checked(::CloseHandle(Handle(std::exchange(mHandle, kClosed))));
}

std::error_code Replace(const fs::path& from, const fs::path& to) {
    return Checked(
        ::MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH));
}

void FlushFolderOf(const fs::path& /*file*/) {
    // The file system journals its names, and Replace waits for that.
}

bool MayWrite(const fs::path& file, std::error_code& error) {
    return File::Open(file, Access::kOverwrite, error).IsOpen();
}

fs::path ProgramFile() {
    std::array<wchar_t, 32768> name{};
    const DWORD length = ::GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
    return length == name.size() ? fs::path() : fs::path(name.data());
}

std::string Environment(const char* name) {
    const wchar_t* const value = ::_wgetenv(fs::path(name).c_str());
    return value == nullptr ? std::string() : Narrow(value);
}

std::string LocaleName() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (std::string value = Environment(variable); !value.empty()) return value;
    std::array<wchar_t, LOCALE_NAME_MAX_LENGTH> name{};
    return ::GetUserDefaultLocaleName(name.data(), static_cast<int>(name.size())) > 0 ? Narrow(name.data())
                                                                                      : std::string();
}

int32_t UtcOffset(std::time_t moment) {
    // Local time read as universal time is later by the offset.
    std::tm local{};
    ::localtime_s(&local, &moment);
    return static_cast<int32_t>(::_mkgmtime(&local) - moment);
}

bool IsTerminal(Output output) {
    DWORD mode = 0;
    const DWORD which = output == Output::kStandard ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE;
    return ::GetConsoleMode(::GetStdHandle(which), &mode) != FALSE;
}

Function LoadFunction(const fs::path& module, const char* name, std::string& reason) {
    const HMODULE loaded = ::LoadLibraryW(module.c_str());
    const FARPROC found = loaded == nullptr ? nullptr : ::GetProcAddress(loaded, name);
    if (found == nullptr) reason = LastError().message();
    return reinterpret_cast<Function>(found);
}

}  // namespace vorex::os

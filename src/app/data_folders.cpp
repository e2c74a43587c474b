#include "app/data_folders.h"

#include <system_error>

namespace vorex {

namespace fs = std::filesystem;

std::vector<fs::path> DataFolders(std::string_view kind) {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    if (error) return {};
    return {program.parent_path().parent_path() / "share" / "vorex" / kind};
}

}  // namespace vorex

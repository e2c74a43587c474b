#include "app/data_folders.h"

#include "system/system.h"

namespace vorex {

namespace fs = std::filesystem;

std::vector<fs::path> DataFolders(std::string_view kind) {
    const fs::path program = os::ProgramFile();
    if (program.empty()) return {};
    return {program.parent_path().parent_path() / "share" / "vorex" / kind};
}

}  // namespace vorex

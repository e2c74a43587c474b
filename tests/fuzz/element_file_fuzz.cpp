#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "host/element_file.h"
#include "host/file_error.h"
#include "host/reference_host.h"
#include "library.h"

/// Any bytes are an element file or a clear error, and a file that was read is written so that it reads as
/// the same file again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    using namespace vorex;
    static const bool installed = [] {
        InstallLibrary(MakeReferenceHost({}));
        return true;
    }();
    (void)installed;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::unique_ptr<ElementFile> file;
    try {
        file = ElementFile::FromText(text, "input");
    } catch (const FileError&) {
        return 0;
    }
    const std::string first = file->Text();
    if (file->Text() != first) std::abort();
    // The thickness column of test 700 is filled from another one: it settles with the first load.
    const std::string second = ElementFile::FromText(first, "written")->Text();
    if (ElementFile::FromText(second, "written again")->Text() != second) std::abort();
    return 0;
}

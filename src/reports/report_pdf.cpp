#include "reports/report_pdf.h"

#include <dlfcn.h>

#include <stdexcept>
#include <system_error>

#include "foundation/file_error.h"

namespace vorex {

namespace fs = std::filesystem;

namespace {

/// Beside the program's folder once it is installed; below its own in the build.
fs::path ModuleFile() {
    std::error_code error;
    const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
    const fs::path below = fs::path("lib") / "vorex" / kPdfModule;
    for (const fs::path& file : {folder.parent_path() / below, folder / below})
        if (fs::is_regular_file(file, error)) return file;
    throw FileError({(folder.parent_path() / below).string(), 0, {}}, "is missing",
                    "the module that writes PDF, which is installed with the program");
}

IPdfRenderer* Load() {
    const fs::path file = ModuleFile();
    void* const module = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* const maker = module == nullptr ? nullptr : ::dlsym(module, kPdfRendererMaker);
    if (maker == nullptr) {
        const char* const reason = ::dlerror();
        throw FileError({file.string(), 0, {}},
                        std::string("cannot be loaded: ") + (reason == nullptr ? "" : reason));
    }
    std::string fault;
    IPdfRenderer* const renderer = reinterpret_cast<PdfRendererMaker*>(maker)(fault);
    if (renderer == nullptr) throw std::runtime_error(fault);
    return renderer;
}

}  // namespace

IPdfRenderer& PdfRenderer() {
    // Never ended: the toolkit's own end needs a program that is still whole.
    static IPdfRenderer* const renderer = Load();
    return *renderer;
}

}  // namespace vorex

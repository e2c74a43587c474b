#include "reports/report_pdf.h"

#include <stdexcept>
#include <system_error>

#include "foundation/file_error.h"
#include "reports/pdf_painter.h"
#include "system/system.h"

namespace vorex {

namespace fs = std::filesystem;

namespace {

constexpr const char* kPdfModule = "vorex_pdf.so";

/// Next to the program's folder in an installation; below the program's folder in the build tree.
fs::path ModuleFile() {
    std::error_code error;
    const fs::path folder = os::ProgramFile().parent_path();
    const fs::path below = fs::path("lib") / "vorex" / kPdfModule;
    for (const fs::path& file : {folder.parent_path() / below, folder / below})
        if (fs::is_regular_file(file, error)) return file;
    throw FileError({(folder.parent_path() / below).string(), 0, {}}, "is missing",
                    "the module that writes PDF, which is installed with the program");
}

}  // namespace

PdfRenderer::PdfRenderer(const VorexPdfModule& module) : mModule(module), mMetrics(module) {
    std::string fault;
    const auto append = [](void* words, const char* bytes, size_t size) {
        static_cast<std::string*>(words)->append(bytes, size);
    };
    if (module.start(append, &fault) == 0) throw std::runtime_error(fault);
}

int32_t PdfRenderer::FontMetrics::Advance(char32_t character, ReportFace face) const {
    return mModule.advance(character, static_cast<int32_t>(face));
}

std::string PdfRenderer::Render(const ReportModel& report) const {
    return PaintPdf(report, mModule);
}

const VorexPdfModule& LoadPdfModule(const fs::path& file) {
    std::string reason;
    const auto entry = reinterpret_cast<VorexPdfEntry>(os::LoadFunction(file, VOREX_PDF_ENTRY_NAME, reason));
    if (entry == nullptr) throw FileError({file.string(), 0, {}}, "cannot be loaded: " + reason);
    const VorexPdfModule* const module = entry();
    if (module == nullptr || module->version != kVorexPdfVersion)
        throw FileError(
            {file.string(), 0, {}},
            "has version " + std::to_string(module == nullptr ? 0 : module->version) + " of the PDF module",
            "version " + std::to_string(kVorexPdfVersion) + ", which is installed with this program");
    return *module;
}

const PdfRenderer& InstalledPdfRenderer() {
    static const PdfRenderer renderer(LoadPdfModule(ModuleFile()));
    return renderer;
}

}  // namespace vorex

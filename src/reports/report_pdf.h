#pragma once

#include <filesystem>
#include <string>

#include "reports/pdf/pdf_module.h"
#include "reports/report_model.h"
#include "reports/report_wrap.h"

namespace vorex {

/// Makes a PDF of a report. It is created before the report is laid out, because its fonts measure the texts.
class PdfRenderer {
  public:
    /// Starts the fonts of a module. Raises std::runtime_error when one is not installed.
    explicit PdfRenderer(const VorexPdfModule& module);

    const ITextMetrics& Metrics() const { return mMetrics; }
    /// The bytes of a PDF/A-1b file. Raises std::runtime_error.
    std::string Render(const ReportModel& report) const;

  private:
    class FontMetrics final : public ITextMetrics {
      public:
        explicit FontMetrics(const VorexPdfModule& module) : mModule(module) {}
        int32_t Advance(char32_t character, ReportFace face) const override;

      private:
        const VorexPdfModule& mModule;
    };

    const VorexPdfModule& mModule;
    FontMetrics mMetrics;
};

/// The functions of a module, which stays loaded. Raises FileError when the file is not a module that writes
/// PDF, or has another version.
const VorexPdfModule& LoadPdfModule(const std::filesystem::path& file);

/// The renderer of the module that is installed with the program. Only the module uses fonts and a toolkit,
/// which takes longer to start than any other report takes to write; so the first call loads it. It works
/// without a display. Raises FileError when the module is missing or cannot be used, std::runtime_error when
/// its fonts are missing.
const PdfRenderer& InstalledPdfRenderer();

}  // namespace vorex

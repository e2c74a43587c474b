#pragma once

#include <filesystem>
#include <memory>
#include <span>
#include <string>

#include "reports/report_model.h"
#include "reports/report_wrap.h"

namespace vorex {

/// Makes a PDF of a report. Its fonts measure the texts, so it exists before the report is laid out.
class IPdfRenderer {
  public:
    virtual ~IPdfRenderer() = default;
    virtual const ITextMetrics& Metrics() const = 0;
    /// The bytes of a PDF/A-1b file. Raises std::runtime_error.
    virtual std::string Render(const ReportModel& report) = 0;
};

/// The renderer of the module that stands beside the program. Only it knows fonts and a toolkit, whose start
/// takes longer than any other report: it is loaded by the first call, and works without a display. Raises
/// FileError when the module is missing, std::runtime_error when its fonts are.
IPdfRenderer& PdfRenderer();

/// What the module exports, by this name; a fault's words come back in its argument.
using PdfRendererMaker = IPdfRenderer*(std::string& fault);
inline constexpr const char* kPdfRendererMaker = "VorexMakePdfRenderer";
inline constexpr const char* kPdfModule = "vorex_pdf.so";

}  // namespace vorex

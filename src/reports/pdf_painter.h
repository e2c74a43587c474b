#pragma once

#include <string>

#include "reports/pdf/pdf_module.h"
#include "reports/report_model.h"

namespace vorex {

/// Draws a report with what a module offers. The bytes of a PDF/A-1b file. Raises std::runtime_error with the
/// words of the module's fault.
std::string PaintPdf(const ReportModel& report, const VorexPdfModule& module);

}  // namespace vorex

#pragma once

#include <string>

#include "reports/pdf/pdf_module.h"
#include "reports/report_model.h"

namespace vorex {

/// Draws a report with the functions of a module. Returns the bytes of a PDF/A-1b file. Raises
/// std::runtime_error with the module's message.
std::string PaintPdf(const ReportModel& report, const VorexPdfModule& module);

}  // namespace vorex

#pragma once

#include <string>

#include "reports/report_model.h"

namespace vorex {

/// The report as one self-contained web page: no script, no other file.
std::string ReportHtml(const ReportModel& report);

}  // namespace vorex

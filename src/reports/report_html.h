#pragma once

#include <string>

#include "reports/report_model.h"

namespace vorex {

/// The report as one web page that needs nothing next to it: no script, no other file.
std::string ReportHtml(const ReportModel& report);

}  // namespace vorex

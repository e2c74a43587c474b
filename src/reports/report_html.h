#pragma once

#include <string>

#include "reports/report_model.h"

namespace vorex {

/// The report as one web page that needs nothing beside it: no script, no other file.
std::string ReportHtml(const ReportModel& report);

}  // namespace vorex

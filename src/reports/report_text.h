#pragma once

#include <string>

#include "reports/report_model.h"

namespace vorex {

/// The report as text of at most 100 columns, readable in a terminal and line by line in a comparison.
std::string ReportText(const ReportModel& report);

}  // namespace vorex

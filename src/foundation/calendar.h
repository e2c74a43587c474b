#pragma once

#include <string>
#include <string_view>

#include "foundation/platform.h"

namespace vorex {

/// The date of the platform; the first day of year 1 without one.
CalendarDate PresentDate();
/// The date of three texts; an empty part takes today's. A part that does not exist becomes the nearest one
/// that does.
CalendarDate DateOf(std::string_view day, std::string_view month, std::string_view year);
/// Year-month-day, "2026-01-15".
std::string DateText(const CalendarDate& date);

}  // namespace vorex

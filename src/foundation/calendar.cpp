#include "foundation/calendar.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "foundation/host_services.h"
#include "foundation/number_text.h"

namespace vorex {

namespace {

constexpr int32_t kMonths = 12;
constexpr int32_t kLastYear = 9999;

int32_t DaysOf(int32_t month, int32_t year) {
    constexpr std::array<int32_t, kMonths> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    const int32_t days = kDays[static_cast<std::size_t>(month - 1)];
    return month == 2 && leap ? days + 1 : days;
}

int32_t PartOr(std::string_view part, int32_t today) {
    return part.empty() ? today : ReadInteger(part);
}

}  // namespace

CalendarDate PresentDate() {
    const auto& platform = Services().platform;
    return platform ? platform->Today() : CalendarDate{1, 1, 1};
}

CalendarDate DateOf(std::string_view day, std::string_view month, std::string_view year) {
    const CalendarDate today = PresentDate();
    CalendarDate date;
    date.year = std::clamp(PartOr(year, today.year), 1, kLastYear);
    date.month = std::clamp(PartOr(month, today.month), 1, kMonths);
    date.day = std::clamp(PartOr(day, today.day), 1, DaysOf(date.month, date.year));
    return date;
}

std::string DateText(const CalendarDate& date) {
    std::array<char, 40> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%04d-%02d-%02d", date.year, date.month, date.day);
    return buffer.data();
}

}  // namespace vorex

#include "guide/frm_timer.h"

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

FrmTimer::FrmTimer() {
    const auto& platform = Services().platform;
    if (!platform) return;
    mTimer = platform->CreateTimer([this] { FireTimer.Raise(); });
    mDate = platform->Today();
}

void FrmTimer::StartTimer() {
    if (mTimer) mTimer->Start(mInterval);
}

void FrmTimer::StopTimer() {
    if (mTimer) mTimer->Stop();
}

void FrmTimer::SetDTPicketDate(std::string_view day, std::string_view month, std::string_view year) {
    const CalendarDate today = Services().platform ? Services().platform->Today() : CalendarDate{1, 1, 1};
    // A date picker holds no day that the calendar does not have.
    mDate.year = std::clamp(PartOr(year, today.year), 1, kLastYear);
    mDate.month = std::clamp(PartOr(month, today.month), 1, kMonths);
    mDate.day = std::clamp(PartOr(day, today.day), 1, DaysOf(mDate.month, mDate.year));
}

std::string FrmTimer::GetDTPicketDate() const {
    std::array<char, 40> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%04d-%02d-%02d", mDate.year, mDate.month, mDate.day);
    return buffer.data();
}

}  // namespace vorex

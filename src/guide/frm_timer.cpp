#include "guide/frm_timer.h"

#include "foundation/calendar.h"
#include "foundation/host_services.h"

namespace vorex {

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
    mDate = DateOf(day, month, year);
}

std::string FrmTimer::GetDTPicketDate() const {
    return DateText(mDate);
}

}  // namespace vorex

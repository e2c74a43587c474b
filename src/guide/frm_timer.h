#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "foundation/event.h"
#include "foundation/platform.h"

namespace vorex {

/// A timer and a date for classes without a window.
class FrmTimer {
  public:
    FrmTimer();

    int32_t Interval() const { return mInterval; }
    /// In ms; applies from the next start on.
    void Interval(int32_t milliseconds) { mInterval = milliseconds; }
    void StartTimer();
    void StopTimer();

    /// Selects a date; an empty part is today's.
    void SetDTPicketDate(std::string_view day, std::string_view month, std::string_view year);
    /// The selected date as year-month-day.
    std::string GetDTPicketDate() const;
    CalendarDate Date() const { return mDate; }

    /// Once per tick.
    Event<> FireTimer{"mFrmTimer_FireTimer"};

  private:
    int32_t mInterval = 0;
    std::unique_ptr<IPlatformTimer> mTimer;
    CalendarDate mDate;
};

}  // namespace vorex

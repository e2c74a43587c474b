#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/platform.h"

namespace vorex {

/// Who sits at a platform without windows. The defaults choose nothing, confirm nothing and look away.
class IHeadlessOperator {
  public:
    virtual ~IHeadlessOperator() = default;
    /// Asked whenever a modal window waits. True when the operator did something; False lets time pass.
    virtual bool OnIdle(IModalWindow& window) = 0;
    /// Told after each event, also inside a run that a step of the operator started.
    virtual void AfterEvent() {}
    virtual int32_t MenuChoice(const std::vector<MenuItem>& /*items*/) { return 0; }
    virtual void Message(std::string_view /*title*/, std::string_view /*message*/) {}
    virtual bool Confirm(std::string_view /*question*/) { return false; }
};

/// Where a window was docked; there is nothing to see.
struct WindowRecord {
    WindowHandle parent = 0;
    int32_t left = 0;
    int32_t top = 0;
    int32_t width = 0;
    int32_t height = 0;
};

/// A platform without windows, whose only events are timers. Its clock is virtual: waiting moves it to the
/// next due timer, so that minutes of ticks pass at once and alike every time. In real time a wait sleeps.
///
/// Timers may be made, started, stopped and destroyed while one fires. A tick that fails is written to the
/// diagnostic log.
class HeadlessPlatform final : public IPlatform {
  public:
    enum class Time { kVirtual, kReal };

    /// Throws std::invalid_argument when VOREX_NOW is set and holds no date such as "2026-02-28".
    explicit HeadlessPlatform(Time time = Time::kVirtual);
    ~HeadlessPlatform() override;

    /// Not owned; null for nobody.
    void Operator(IHeadlessOperator* person) { mOperator = person; }

    std::unique_ptr<IPlatformTimer> CreateTimer(std::function<void()> onTick) override;
    /// Fires what is due now.
    void PumpMessages() override;
    /// Moves the clock to the earliest due timer and fires it. False when no timer runs.
    bool WaitForEvent() override;
    /// Hides the window itself when nothing will ever happen: no timer runs, or the operator has let a day
    /// of the clock pass.
    void ShowModal(IModalWindow& window) override;
    int32_t ShowPopupMenu(const std::vector<MenuItem>& items) override;
    void ShowMessage(std::string_view title, std::string_view message) override;
    bool Confirm(std::string_view question) override;
    /// The date of VOREX_NOW, or of the system.
    CalendarDate Today() override;
    void SetParent(WindowHandle window, WindowHandle parent) override;
    void MoveWindow(WindowHandle window, int32_t left, int32_t top, int32_t width, int32_t height) override;

    /// Time since the start, in ms.
    int64_t Now() const;
    /// How many modal windows waited for nothing.
    int32_t Stalls() const { return mStalls; }
    WindowRecord RecordOf(WindowHandle window) const;

  private:
    class Timer;
    struct Schedule;

    void Fire(int64_t due);

    Time mTime;
    std::chrono::steady_clock::time_point mStart = std::chrono::steady_clock::now();
    std::optional<CalendarDate> mFixedDate;
    std::shared_ptr<Schedule> mSchedule;
    IHeadlessOperator* mOperator = nullptr;
    int32_t mStalls = 0;
    std::map<WindowHandle, WindowRecord> mWindows;
};

}  // namespace vorex

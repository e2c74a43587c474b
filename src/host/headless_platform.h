#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/platform.h"

namespace vorex {

/// The operator of a platform without windows. The defaults choose nothing, confirm nothing and ignore all
/// events.
class IHeadlessOperator {
  public:
    virtual ~IHeadlessOperator() = default;
    /// Asked whenever a modal window waits. True when the operator did something; False lets time pass.
    virtual bool OnIdle(IModalWindow& window) = 0;
    /// Asked before time passes, also inside a run that a step of the operator started. True when the
    /// operator did something. The window is the one that is shown, null for none.
    virtual bool BeforeWait(IModalWindow* /*shown*/) { return false; }
    /// Called after each event, also inside such a run.
    virtual void AfterEvent(IModalWindow* /*shown*/) {}
    virtual int32_t MenuChoice(const std::vector<MenuItem>& /*items*/) { return 0; }
    virtual void Message(std::string_view /*title*/, std::string_view /*message*/) {}
    virtual bool Confirm(std::string_view /*question*/) { return false; }
};

/// Where a window was docked; nothing is shown.
struct WindowRecord {
    WindowHandle parent = 0;
    int32_t left = 0;
    int32_t top = 0;
    int32_t width = 0;
    int32_t height = 0;
};

/// A moment in local time: seconds since 1970 as if the local clock were UTC's, and its offset in words.
struct ClockTime {
    int64_t seconds = 0;
    std::string offset;  ///< "Z", "+01:00"
};

/// A platform without windows, whose only events are timers. Its clock is virtual: waiting moves it to the
/// next due timer, so that minutes of ticks take no time and are the same in every run. In real time a wait
/// sleeps.
///
/// Timers may be made, started, stopped and destroyed while one fires. A tick that fails is written to the
/// diagnostic log.
class HeadlessPlatform final : public IPlatform {
  public:
    enum class Time { kVirtual, kReal };

    /// VOREX_NOW sets date and time of the start; without it the virtual clock starts at midnight of today.
    /// Throws std::invalid_argument when VOREX_NOW holds neither "2026-02-28" nor "2026-02-28T10:00:00Z".
    explicit HeadlessPlatform(Time time = Time::kVirtual);
    ~HeadlessPlatform() override;

    /// Not owned; null for none.
    void Operator(IHeadlessOperator* person) { mOperator = person; }

    std::unique_ptr<IPlatformTimer> CreateTimer(std::function<void()> onTick) override;
    /// Fires what is due now.
    void PumpMessages() override;
    /// Moves the clock to the earliest due timer and fires it. False when no timer runs.
    bool WaitForEvent() override;
    /// Hides the window itself when no event can come: no timer runs, or nobody has acted for a day of the
    /// clock. Also hides it when the operator acts again and again while no time passes.
    ModalEnd ShowModal(IModalWindow& window) override;
    int32_t ShowPopupMenu(const std::vector<MenuItem>& items) override;
    void ShowMessage(std::string_view title, std::string_view message) override;
    bool Confirm(std::string_view question) override;
    /// The date of VOREX_NOW, or of the system.
    CalendarDate Today() override;
    std::string TimeStamp() override;
    /// Sets date and time of the start, in the form of `TimeStamp`. [before the first event]
    void StartAt(std::string_view timeStamp);
    /// From now on waits sleep; the past was replayed in virtual time.
    void GoRealTime();
    void SetParent(WindowHandle window, WindowHandle parent) override;
    void MoveWindow(WindowHandle window, int32_t left, int32_t top, int32_t width, int32_t height) override;

    /// Time since the start, in ms.
    int64_t Now() const;
    WindowRecord RecordOf(WindowHandle window) const;

  private:
    class Timer;
    struct Schedule;

    void Fire(int64_t due);
    bool ActsInVain();

    Time mTime;
    std::chrono::steady_clock::time_point mStart = std::chrono::steady_clock::now();
    std::shared_ptr<Schedule> mSchedule;
    ClockTime mStartTime;
    bool mFixed = false;  ///< the date is given and does not follow the system's
    IHeadlessOperator* mOperator = nullptr;
    IModalWindow* mShown = nullptr;
    int32_t mActsInARow = 0;  ///< of the operator, while no time passed
    std::map<WindowHandle, WindowRecord> mWindows;
};

}  // namespace vorex

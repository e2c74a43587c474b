#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/host_contract.h"
#include "foundation/modal_window.h"

/// What the library needs from a window system. Waiting for an event blocks; nothing polls in a loop.
namespace vorex {

struct CalendarDate {
    int32_t day = 0;
    int32_t month = 0;
    int32_t year = 0;
    bool operator==(const CalendarDate&) const = default;
};

/// A timer that fires again and again until it is stopped. It may be stopped and destroyed by its own tick.
class IPlatformTimer {
  public:
    virtual ~IPlatformTimer() = default;
    /// Starts, or starts again, with an interval in ms.
    virtual void Start(int32_t milliseconds) = 0;
    virtual void Stop() = 0;
    virtual bool Running() const = 0;
};

/// Why a modal window was hidden.
enum class ModalEnd : uint8_t {
    kHidden,         ///< by itself
    kNothingToCome,  ///< by the platform: no event could come
    kEndlessActs,    ///< by the platform: its operator kept acting, and no time passed
};

class IPlatform {
  public:
    virtual ~IPlatform() = default;
    virtual std::unique_ptr<IPlatformTimer> CreateTimer(std::function<void()> onTick) = 0;
    /// Handles what is pending, without waiting.
    virtual void PumpMessages() = 0;
    /// Blocks until the next event and handles it. False when no event can ever come.
    virtual bool WaitForEvent() = 0;
    /// Shows a window and returns when it is hidden.
    virtual ModalEnd ShowModal(IModalWindow& window) = 0;
    /// Shows a pop-up menu and returns the chosen id, 0 for none.
    virtual int32_t ShowPopupMenu(const std::vector<MenuItem>& items) = 0;
    virtual void ShowMessage(std::string_view title, std::string_view message) = 0;
    virtual bool Confirm(std::string_view question) = 0;
    virtual CalendarDate Today() = 0;
    /// Date and time of the clock with its offset from UTC, such as "2026-01-15T09:00:04Z".
    virtual std::string TimeStamp() = 0;

    // Windows of controls, for docking them into another window.
    virtual void SetParent(WindowHandle window, WindowHandle parent) = 0;
    virtual void MoveWindow(WindowHandle window, int32_t left, int32_t top, int32_t width,
                            int32_t height) = 0;
};

}  // namespace vorex

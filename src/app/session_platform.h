#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/platform.h"

namespace vorex {

/// What a run observes and answers of its platform's calls.
class IPlatformWatcher {
  public:
    virtual ~IPlatformWatcher() = default;
    virtual void WindowOpened() = 0;
    virtual void WindowClosed(ModalEnd end) = 0;
    /// The run's time, when the clock has `now`.
    virtual std::string TimeStamp(std::string now) = 0;
    virtual void Message(std::string_view title, std::string_view message) = 0;
    /// An answer, or nothing, and then the platform asks.
    virtual std::optional<bool> Asked(std::string_view question) = 0;

    /// Called with each act of a person before it is done. False rejects it: the run repeats earlier acts,
    /// and takes no others.
    virtual bool Acted(const OperatorAct& act) = 0;
    /// True while the run repeats what a person did before the interruption.
    virtual bool Repeating() const = 0;
    /// True when the run differs from its journal and cannot be repeated.
    virtual bool WayIsLost() const = 0;
    /// The act to repeat now; null before its place in the run.
    virtual const OperatorAct* DueAct() const = 0;
    /// Takes it.
    virtual OperatorAct TakeAct() = 0;
    /// It could not be repeated.
    virtual void Refused(const OperatorAct& act) = 0;
};

/// The platform of a program, watched by its run. Knows the open window, passes a person's acts to the run,
/// and repeats them in a resumed run.
class SessionPlatform final : public IPlatform {
  public:
    explicit SessionPlatform(std::shared_ptr<IPlatform> platform) : mPlatform(std::move(platform)) {}

    /// Not owned; null for none.
    void Watch(IPlatformWatcher* watcher) {
        mWatcher = watcher;
        mActTimer.reset();
    }
    /// The window that is open; null while none is.
    const IModalWindow* Window() const { return mWindow; }

    std::unique_ptr<IPlatformTimer> CreateTimer(std::function<void()> onTick) override;
    void PumpMessages() override;
    bool WaitForEvent() override { return mPlatform->WaitForEvent(); }
    ModalEnd ShowModal(IModalWindow& window) override;
    int32_t ShowPopupMenu(const std::vector<MenuItem>& items) override;
    void ShowMessage(std::string_view title, std::string_view message) override;
    bool Confirm(std::string_view question) override;
    CalendarDate Today() override { return mPlatform->Today(); }
    std::string TimeStamp() override;
    void SetParent(WindowHandle window, WindowHandle parent) override {
        mPlatform->SetParent(window, parent);
    }
    void MoveWindow(WindowHandle window, int32_t left, int32_t top, int32_t width, int32_t height) override {
        mPlatform->MoveWindow(window, left, top, width, height);
    }

  private:
    bool Admits(const OperatorAct& act);
    void ScheduleAct();
    void RepeatAct();
    std::optional<int32_t> RepeatedAnswer(OperatorAct::Kind kind);

    std::shared_ptr<IPlatform> mPlatform;
    IPlatformWatcher* mWatcher = nullptr;
    IModalWindow* mWindow = nullptr;
    std::unique_ptr<IPlatformTimer> mActTimer;  ///< runs while an act is due
    bool mRepeats = false;                      ///< the next act of the window is repeated
};

}  // namespace vorex

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/platform.h"
#include "guide/test_guide_form.h"

namespace vorex {

/// What a run observes and answers of its platform's calls.
class IPlatformWatcher {
  public:
    virtual ~IPlatformWatcher() = default;
    virtual void GuideOpened() = 0;
    /// The run's time, when the clock has `now`.
    virtual std::string TimeStamp(std::string now) = 0;
    virtual void Message(std::string_view title, std::string_view message) = 0;
    /// An answer, or nothing, and then the platform asks.
    virtual std::optional<bool> Asked(std::string_view question) = 0;
};

/// The platform of a program, watched by its run. Remembers the open guide.
class SessionPlatform final : public IPlatform {
  public:
    explicit SessionPlatform(std::shared_ptr<IPlatform> platform) : mPlatform(std::move(platform)) {}

    /// Not owned; null for none.
    void Watch(IPlatformWatcher* watcher) { mWatcher = watcher; }
    /// Null while none is open.
    const FZRD47500TestGuide* Guide() const { return mGuide; }

    std::unique_ptr<IPlatformTimer> CreateTimer(std::function<void()> onTick) override {
        return mPlatform->CreateTimer(std::move(onTick));
    }
    void PumpMessages() override { mPlatform->PumpMessages(); }
    bool WaitForEvent() override { return mPlatform->WaitForEvent(); }
    void ShowModal(IModalWindow& window) override;
    int32_t ShowPopupMenu(const std::vector<MenuItem>& items) override {
        return mPlatform->ShowPopupMenu(items);
    }
    void ShowMessage(std::string_view title, std::string_view message) override;
    bool Confirm(std::string_view question) override;
    CalendarDate Today() override { return mPlatform->Today(); }
    std::string TimeStamp() override;
    int32_t Stalls() const override { return mPlatform->Stalls(); }
    void SetParent(WindowHandle window, WindowHandle parent) override {
        mPlatform->SetParent(window, parent);
    }
    void MoveWindow(WindowHandle window, int32_t left, int32_t top, int32_t width, int32_t height) override {
        mPlatform->MoveWindow(window, left, top, width, height);
    }

  private:
    std::shared_ptr<IPlatform> mPlatform;
    IPlatformWatcher* mWatcher = nullptr;
    FZRD47500TestGuide* mGuide = nullptr;
};

}  // namespace vorex

#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/platform.h"

namespace vorex::test {

/// A window system with a clock that only tests move, scripted answers, and a record of what was shown.
class FakePlatform : public IPlatform {
  public:
    /// Moves the clock; timers fire in the order of their times.
    void Advance(int32_t milliseconds) {
        const int64_t until = mNow + milliseconds;
        while (FireNext(until)) {
        }
        mNow = until;
    }

    std::unique_ptr<IPlatformTimer> CreateTimer(std::function<void()> onTick) override {
        return std::make_unique<Timer>(*this, std::move(onTick));
    }
    void PumpMessages() override { FireNext(mNow); }
    bool WaitForEvent() override { return FireNext(INT64_MAX); }
    ModalEnd ShowModal(IModalWindow& window) override {
        shown = &window;
        window.Visible(true);
        while (window.Visible()) {
            if (onIdle) onIdle();
            if (window.Visible() && !WaitForEvent()) return ModalEnd::kNothingToCome;
        }
        return ModalEnd::kHidden;
    }
    int32_t ShowPopupMenu(const std::vector<MenuItem>& items) override {
        menus.push_back(items);
        return onMenu ? onMenu(items) : 0;
    }
    void ShowMessage(std::string_view title, std::string_view message) override {
        messages.emplace_back(title, message);
    }
    bool Confirm(std::string_view question) override {
        questions.emplace_back(question);
        return confirms;
    }
    CalendarDate Today() override { return today; }
    std::string TimeStamp() override { return timeStamp; }
    void SetParent(WindowHandle window, WindowHandle parent) override {
        parents.emplace_back(window, parent);
    }
    void MoveWindow(WindowHandle window, int32_t, int32_t, int32_t, int32_t) override {
        moved.push_back(window);
    }

    /// How many timers run.
    int32_t Running() const {
        return static_cast<int32_t>(std::count_if(mTimers.begin(), mTimers.end(),
                                                  [](const Timer* timer) { return timer->Running(); }));
    }

    IModalWindow* shown = nullptr;  ///< the latest
    std::function<void()> onIdle;   ///< called while a window is shown and nothing is pending
    std::function<int32_t(const std::vector<MenuItem>&)> onMenu;
    bool confirms = true;
    CalendarDate today{15, 3, 2026};
    std::string timeStamp = "2026-03-15T08:00:00Z";
    std::vector<std::vector<MenuItem>> menus;
    std::vector<std::pair<std::string, std::string>> messages;
    std::vector<std::string> questions;
    std::vector<std::pair<WindowHandle, WindowHandle>> parents;
    std::vector<WindowHandle> moved;

  private:
    class Timer : public IPlatformTimer {
      public:
        Timer(FakePlatform& platform, std::function<void()> onTick)
            : mPlatform(platform), mOnTick(std::move(onTick)) {
            mPlatform.mTimers.push_back(this);
        }
        ~Timer() override { std::erase(mPlatform.mTimers, this); }
        void Start(int32_t milliseconds) override {
            mInterval = milliseconds;
            mDue = mPlatform.mNow + milliseconds;
            mRunning = true;
        }
        void Stop() override { mRunning = false; }
        bool Running() const override { return mRunning; }
        void Fire() {
            mDue += mInterval;
            mOnTick();
        }
        int64_t Due() const { return mRunning ? mDue : INT64_MAX; }

      private:
        FakePlatform& mPlatform;
        std::function<void()> mOnTick;
        int32_t mInterval = 0;
        int64_t mDue = 0;
        bool mRunning = false;
    };

    bool FireNext(int64_t until) {
        const auto next =
            std::min_element(mTimers.begin(), mTimers.end(),
                             [](const Timer* a, const Timer* b) { return a->Due() < b->Due(); });
        if (next == mTimers.end() || (*next)->Due() == INT64_MAX || (*next)->Due() > until) return false;
        mNow = std::max(mNow, (*next)->Due());
        (*next)->Fire();
        return true;
    }

    std::vector<Timer*> mTimers;
    int64_t mNow = 0;
};

}  // namespace vorex::test

#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/platform.h"

/// A platform without a window. Waiting moves its clock to the next tick; when nothing is pending it asks the
/// person: a function that presses buttons of the window.
class OwnPlatform final : public vorex::IPlatform {
  public:
    /// False when the person does nothing, and time should pass.
    std::function<bool(vorex::IModalWindow&)> person;

    std::unique_ptr<vorex::IPlatformTimer> CreateTimer(std::function<void()> onTick) override {
        return std::make_unique<Timer>(*this, std::move(onTick));
    }
    /// Ticks come only from waiting.
    void PumpMessages() override {}
    bool WaitForEvent() override {
        const auto next = std::min_element(mTimers.begin(), mTimers.end(),
                                           [](const Timer* a, const Timer* b) { return a->due < b->due; });
        if (next == mTimers.end() || !(*next)->Running()) return false;
        Timer& timer = **next;
        mNow = timer.due;
        timer.due += timer.interval;
        timer.onTick();
        return true;
    }
    vorex::ModalEnd ShowModal(vorex::IModalWindow& window) override {
        window.Visible(true);
        while (window.Visible()) {
            if (person(window) || WaitForEvent()) continue;
            window.Visible(false);
            return vorex::ModalEnd::kNothingToCome;
        }
        return vorex::ModalEnd::kHidden;
    }
    int32_t ShowPopupMenu(const std::vector<vorex::MenuItem>& /*items*/) override { return 0; }
    void ShowMessage(std::string_view title, std::string_view message) override {
        std::cerr << title << ": " << message << "\n";
    }
    bool Confirm(std::string_view /*question*/) override { return true; }
    vorex::CalendarDate Today() override { return {15, 1, 2026}; }
    std::string TimeStamp() override {
        const std::string seconds = std::to_string(mNow / 1000 % 60);
        return "2026-01-15T09:00:" + std::string(seconds.size() < 2 ? "0" : "") + seconds + "Z";
    }
    void SetParent(vorex::WindowHandle, vorex::WindowHandle) override {}
    void MoveWindow(vorex::WindowHandle, int32_t, int32_t, int32_t, int32_t) override {}

  private:
    static constexpr int64_t kNever = INT64_MAX;

    struct Timer final : vorex::IPlatformTimer {
        Timer(OwnPlatform& owner, std::function<void()> tick) : platform(owner), onTick(std::move(tick)) {
            platform.mTimers.push_back(this);
        }
        ~Timer() override { std::erase(platform.mTimers, this); }
        void Start(int32_t milliseconds) override {
            interval = milliseconds;
            due = platform.mNow + interval;
        }
        void Stop() override { due = kNever; }
        bool Running() const override { return due != kNever; }

        OwnPlatform& platform;
        std::function<void()> onTick;
        int64_t interval = 0;
        int64_t due = kNever;
    };

    std::vector<Timer*> mTimers;
    int64_t mNow = 0;  ///< ms
};

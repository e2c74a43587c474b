#include "host/headless_platform.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <stdexcept>
#include <thread>
#include <utility>

#include "foundation/event.h"
#include "foundation/host_services.h"

namespace vorex {

namespace {

constexpr int64_t kLongestIdle = int64_t{24} * 60 * 60 * 1000;  // ms

/// The date at the start of a text such as "2026-02-28T10:00"; nothing when there is none.
std::optional<CalendarDate> ReadDate(std::string_view text) {
    constexpr std::size_t kDateSize = 10;
    if (text.size() < kDateSize || text[4] != '-' || text[7] != '-') return std::nullopt;
    if (text.size() > kDateSize && text[kDateSize] != 'T' && text[kDateSize] != ' ') return std::nullopt;
    const auto number = [&](std::size_t begin, std::size_t size) {
        int32_t value = 0;
        const char* const end = text.data() + begin + size;
        return std::from_chars(text.data() + begin, end, value).ptr == end ? value : -1;
    };
    const CalendarDate date{number(8, 2), number(5, 2), number(0, 4)};
    const std::chrono::year_month_day checked{std::chrono::year(date.year),
                                              std::chrono::month(static_cast<unsigned>(date.month)),
                                              std::chrono::day(static_cast<unsigned>(date.day))};
    return date.year > 0 && checked.ok() ? std::optional(date) : std::nullopt;
}

CalendarDate SystemDate() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    constexpr int kFirstYear = 1900;
    return {local.tm_mday, local.tm_mon + 1, local.tm_year + kFirstYear};
}

}  // namespace

/// The running timers. They share it with the platform, so either may end first.
struct HeadlessPlatform::Schedule {
    struct Entry {
        const Timer* timer;
        int64_t due;
        uint64_t order;  ///< of starting: of two that are due together the one started first fires first
        int32_t interval;
        std::shared_ptr<const std::function<void()>> onTick;
    };

    std::vector<Entry>::iterator Find(const Timer* timer) {
        return std::find_if(entries.begin(), entries.end(),
                            [&](const Entry& at) { return at.timer == timer; });
    }
    std::vector<Entry>::iterator Earliest() {
        return std::min_element(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
            return std::pair(a.due, a.order) < std::pair(b.due, b.order);
        });
    }

    std::vector<Entry> entries;
    uint64_t starts = 0;
    int64_t now = 0;  ///< virtual time
};

class HeadlessPlatform::Timer final : public IPlatformTimer {
  public:
    Timer(HeadlessPlatform& platform, std::function<void()> onTick)
        : mSchedule(platform.mSchedule),
          mNow([&platform] { return platform.Now(); }),
          mOnTick(std::make_shared<const std::function<void()>>(std::move(onTick))) {}
    ~Timer() override { Timer::Stop(); }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    void Start(int32_t milliseconds) override {
        Stop();
        const auto schedule = mSchedule.lock();
        if (!schedule) return;
        const int32_t interval = std::max(1, milliseconds);  // time has to pass, or a wait would never end
        schedule->entries.push_back({this, mNow() + interval, ++schedule->starts, interval, mOnTick});
    }
    void Stop() override {
        const auto schedule = mSchedule.lock();
        if (!schedule) return;
        const auto entry = schedule->Find(this);
        if (entry != schedule->entries.end()) schedule->entries.erase(entry);
    }
    bool Running() const override {
        const auto schedule = mSchedule.lock();
        return schedule && schedule->Find(this) != schedule->entries.end();
    }

  private:
    std::weak_ptr<Schedule> mSchedule;  ///< empty once the platform has ended
    std::function<int64_t()> mNow;
    std::shared_ptr<const std::function<void()>> mOnTick;
};

HeadlessPlatform::HeadlessPlatform(Time time) : mTime(time), mSchedule(std::make_shared<Schedule>()) {
    const char* const fixed = std::getenv("VOREX_NOW");
    if (fixed == nullptr || *fixed == '\0') return;
    mFixedDate = ReadDate(fixed);
    if (!mFixedDate)
        throw std::invalid_argument("VOREX_NOW is \"" + std::string(fixed) +
                                    "\"; expected a date such as 2026-02-28");
}

HeadlessPlatform::~HeadlessPlatform() = default;

int64_t HeadlessPlatform::Now() const {
    if (mTime == Time::kVirtual) return mSchedule->now;
    const auto passed = std::chrono::steady_clock::now() - mStart;
    return std::chrono::duration_cast<std::chrono::milliseconds>(passed).count();
}

std::unique_ptr<IPlatformTimer> HeadlessPlatform::CreateTimer(std::function<void()> onTick) {
    return std::make_unique<Timer>(*this, std::move(onTick));
}

/// Fires the earliest timer, whose due time has come.
void HeadlessPlatform::Fire(int64_t due) {
    const auto entry = mSchedule->Earliest();
    entry->due = due + entry->interval;
    entry->order = ++mSchedule->starts;
    // The timer may be destroyed by its own tick.
    const auto onTick = entry->onTick;
    Guarded("timer", *onTick);
    if (mOperator != nullptr) mOperator->AfterEvent();
}

void HeadlessPlatform::PumpMessages() {
    const int64_t now = Now();
    for (;;) {
        const auto entry = mSchedule->Earliest();
        if (entry == mSchedule->entries.end() || entry->due > now) return;
        Fire(now);
    }
}

bool HeadlessPlatform::WaitForEvent() {
    const auto entry = mSchedule->Earliest();
    if (entry == mSchedule->entries.end()) return false;
    const int64_t due = entry->due;
    if (mTime == Time::kVirtual)
        mSchedule->now = std::max(mSchedule->now, due);
    else
        std::this_thread::sleep_until(mStart + std::chrono::milliseconds(due));
    Fire(Now());
    return true;
}

void HeadlessPlatform::ShowModal(IModalWindow& window) {
    window.Visible(true);
    int64_t idleSince = Now();
    while (window.Visible()) {
        if (mOperator != nullptr && mOperator->OnIdle(window)) {
            idleSince = Now();
        } else if (Now() - idleSince > kLongestIdle || !WaitForEvent()) {
            ++mStalls;
            LogDiagnostic("a window waited for nothing and was closed");
            window.Visible(false);
        }
    }
}

int32_t HeadlessPlatform::ShowPopupMenu(const std::vector<MenuItem>& items) {
    return mOperator == nullptr ? 0 : mOperator->MenuChoice(items);
}

void HeadlessPlatform::ShowMessage(std::string_view title, std::string_view message) {
    LogDiagnostic(std::string(title) + ": " + std::string(message));
    if (mOperator != nullptr) mOperator->Message(title, message);
}

bool HeadlessPlatform::Confirm(std::string_view question) {
    return mOperator != nullptr && mOperator->Confirm(question);
}

CalendarDate HeadlessPlatform::Today() {
    return mFixedDate ? *mFixedDate : SystemDate();
}

void HeadlessPlatform::SetParent(WindowHandle window, WindowHandle parent) {
    mWindows[window].parent = parent;
}

void HeadlessPlatform::MoveWindow(WindowHandle window, int32_t left, int32_t top, int32_t width,
                                  int32_t height) {
    WindowRecord& record = mWindows[window];
    record = {record.parent, left, top, width, height};
}

WindowRecord HeadlessPlatform::RecordOf(WindowHandle window) const {
    const auto record = mWindows.find(window);
    return record == mWindows.end() ? WindowRecord() : record->second;
}

}  // namespace vorex

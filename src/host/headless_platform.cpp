#include "host/headless_platform.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <optional>
#include <stdexcept>
#include <thread>
#include <utility>

#include "foundation/event.h"
#include "foundation/host_services.h"
#include "system/system.h"

namespace vorex {

namespace {

constexpr int64_t kLongestIdle = int64_t{24} * 60 * 60 * 1000;  // ms
/// Far more than the steps of any script.
constexpr int32_t kMostActsInARow = 100'000;

constexpr int64_t kSecondsADay = int64_t{24} * 60 * 60;
constexpr std::string_view kNoOffset = "Z";

/// Reads "hh:mm" or "hh:mm:ss" off the front of a text; the seconds of the day, or nothing.
std::optional<int64_t> TakeTimeOfDay(std::string_view& text) {
    constexpr std::array<int32_t, 3> kMost = {23, 59, 59};
    int64_t seconds = 0;
    std::size_t parts = 0;
    for (; parts < kMost.size(); ++parts) {
        if (parts > 0) {
            if (!text.starts_with(':')) break;
            text.remove_prefix(1);
        }
        int32_t value = -1;
        const std::string_view digits = text.substr(0, 2);
        if (digits.size() < 2) return std::nullopt;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + 2, value);
        if (error != std::errc() || end != digits.data() + 2 || value < 0 || value > kMost[parts])
            return std::nullopt;
        seconds = seconds * 60 + value;
        text.remove_prefix(2);
    }
    if (parts < 2) return std::nullopt;
    return parts == 2 ? seconds * 60 : seconds;
}

/// "Z", or "+hh:mm" and "-hh:mm".
bool IsOffset(std::string_view text) {
    if (text == kNoOffset) return true;
    if (!text.starts_with('+') && !text.starts_with('-')) return false;
    text.remove_prefix(1);
    return text.size() == 5 && TakeTimeOfDay(text).has_value();
}

/// The moment that a text gives: "2026-02-28", "2026-02-28T10:00", "2026-02-28T10:00:00+01:00".
std::optional<ClockTime> ReadClockTime(std::string_view text) {
    constexpr std::size_t kDateSize = 10;
    if (text.size() < kDateSize || text[4] != '-' || text[7] != '-') return std::nullopt;
    const auto number = [&](std::size_t begin, std::size_t size) {
        int32_t value = 0;
        const char* const end = text.data() + begin + size;
        return std::from_chars(text.data() + begin, end, value).ptr == end ? value : -1;
    };
    const std::chrono::year_month_day date{std::chrono::year(number(0, 4)),
                                           std::chrono::month(static_cast<unsigned>(number(5, 2))),
                                           std::chrono::day(static_cast<unsigned>(number(8, 2)))};
    if (number(0, 4) <= 0 || !date.ok()) return std::nullopt;
    ClockTime time{std::chrono::sys_days(date).time_since_epoch().count() * kSecondsADay,
                   std::string(kNoOffset)};
    text.remove_prefix(kDateSize);
    if (text.empty()) return time;
    if (text.front() != 'T' && text.front() != ' ') return std::nullopt;
    text.remove_prefix(1);
    const auto ofDay = TakeTimeOfDay(text);
    if (!ofDay || (!text.empty() && !IsOffset(text))) return std::nullopt;
    time.seconds += *ofDay;
    if (!text.empty()) time.offset = text;
    return time;
}

ClockTime SystemTime() {
    const std::time_t now = std::time(nullptr);
    const int32_t seconds = os::UtcOffset(now);
    constexpr int32_t kMinute = 60;
    const int32_t offset = seconds / kMinute;
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%c%02d:%02d", offset < 0 ? '-' : '+',
                  static_cast<int>(std::abs(offset) / kMinute), static_cast<int>(std::abs(offset) % kMinute));
    return {static_cast<int64_t>(now) + seconds, offset == 0 ? std::string(kNoOffset) : text.data()};
}

}  // namespace

/// The schedule of the running timers, which the timers share with the platform: either may end first.
struct HeadlessPlatform::Schedule {
    struct Entry {
        const Timer* timer;
        int64_t due;
        uint64_t order;  ///< of starting: of two that are due together, the one started first fires first
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

HeadlessPlatform::HeadlessPlatform(Time time)
    : mTime(time), mSchedule(std::make_shared<Schedule>()), mStartTime(SystemTime()) {
    // The virtual clock starts at midnight, so that two runs have the same times.
    if (time == Time::kVirtual) mStartTime.seconds -= mStartTime.seconds % kSecondsADay;
    const char* const fixed = std::getenv("VOREX_NOW");
    if (fixed == nullptr || *fixed == '\0') return;
    const auto start = ReadClockTime(fixed);
    if (!start)
        throw std::invalid_argument("VOREX_NOW is \"" + std::string(fixed) +
                                    "\"; expected a date such as 2026-02-28, or 2026-02-28T10:00:00Z");
    mStartTime = *start;
    mFixed = true;
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

/// Fires the earliest timer, which is due.
void HeadlessPlatform::Fire(int64_t due) {
    mActsInARow = 0;
    const auto entry = mSchedule->Earliest();
    entry->due = due + entry->interval;
    entry->order = ++mSchedule->starts;
    // The timer may be destroyed by its own tick.
    const auto onTick = entry->onTick;
    Guarded("timer", *onTick);
    if (mOperator != nullptr) mOperator->AfterEvent(mShown);
}

void HeadlessPlatform::PumpMessages() {
    const int64_t now = Now();
    for (;;) {
        const auto entry = mSchedule->Earliest();
        if (entry == mSchedule->entries.end() || entry->due > now) return;
        Fire(now);
    }
}

/// While an operator only acts, no time passes.
bool HeadlessPlatform::ActsInVain() {
    return ++mActsInARow > kMostActsInARow;
}

bool HeadlessPlatform::WaitForEvent() {
    if (mOperator != nullptr && mOperator->BeforeWait(mShown) && !ActsInVain()) return true;
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

ModalEnd HeadlessPlatform::ShowModal(IModalWindow& window) {
    IModalWindow* const below = std::exchange(mShown, &window);
    window.Visible(true);
    ModalEnd end = ModalEnd::kHidden;
    int64_t idleSince = Now();
    int64_t acts = window.Acts();
    while (window.Visible()) {
        const bool acted = mOperator != nullptr && mOperator->OnIdle(window);
        // Acts from others than the operator count too.
        if (acted || acts != window.Acts()) idleSince = Now();
        acts = window.Acts();
        if (acted && ActsInVain())
            end = ModalEnd::kEndlessActs;
        else if (!acted && (Now() - idleSince > kLongestIdle || !WaitForEvent()))
            end = ModalEnd::kNothingToCome;
        if (end == ModalEnd::kHidden) continue;
        LogDiagnostic(end == ModalEnd::kEndlessActs
                          ? "the operator of a window acted without end; it was closed"
                          : "a window waited for nothing and was closed");
        window.Visible(false);
    }
    mShown = below;
    return end;
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
    const std::chrono::year_month_day date{std::chrono::sys_days(
        std::chrono::days((mFixed ? mStartTime : SystemTime()).seconds / kSecondsADay))};
    return {static_cast<int32_t>(static_cast<unsigned>(date.day())),
            static_cast<int32_t>(static_cast<unsigned>(date.month())), static_cast<int32_t>(date.year())};
}

std::string HeadlessPlatform::TimeStamp() {
    constexpr int64_t kMsASecond = 1000;
    // The offset is in the seconds already.
    const std::chrono::sys_seconds time(std::chrono::seconds(mStartTime.seconds + Now() / kMsASecond));
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(time - day);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text.data() + mStartTime.offset;
}

void HeadlessPlatform::StartAt(std::string_view timeStamp) {
    const auto start = ReadClockTime(timeStamp);
    if (!start)
        throw std::invalid_argument("the time \"" + std::string(timeStamp) +
                                    "\" is none; expected one such as 2026-02-28T10:00:00Z");
    mStartTime = *start;
    mFixed = true;
}

void HeadlessPlatform::GoRealTime() {
    if (mTime == Time::kReal) return;
    const int64_t passed = mSchedule->now;
    mTime = Time::kReal;
    mStart = std::chrono::steady_clock::now() - std::chrono::milliseconds(passed);
    const char* const fixed = std::getenv("VOREX_NOW");
    if (fixed != nullptr && *fixed != '\0') return;
    mStartTime = SystemTime();
    mStartTime.seconds -= passed / 1000;
    mFixed = false;
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

#include "host/headless_platform.h"

#include <gmock/gmock.h>

#include <chrono>
#include <ctime>
#include <stdexcept>

#include "host/host_fixture.h"

namespace vorex::host_test {
namespace {

using testing::ElementsAre;

class HeadlessPlatformTest : public HostTest {
  protected:
    std::unique_ptr<IPlatformTimer> Noting(const std::string& name) {
        return platform.CreateTimer(
            [this, name] { fired.push_back(name + "@" + std::to_string(platform.Now())); });
    }

    HeadlessPlatform platform;
    std::vector<std::string> fired;
};

/// An empty window that takes each press.
class Window : public IModalWindow {
  public:
    bool Visible() const override { return visible; }
    void Visible(bool show) override { visible = show; }
    std::shared_ptr<ITestElement> Element() const override { return nullptr; }
    const std::vector<WindowButton>& Buttons() const override { return buttons; }
    std::vector<std::string> VisibleLines() const override { return {}; }
    const std::string& StatusLine() const override { return text; }
    int32_t StatusShown() const override { return kNotTested; }
    const IResultTable* ShownTable() const override { return nullptr; }
    const std::vector<WindowTab>& Tabs() const override { return tabs; }
    std::string OverlayText() const override { return {}; }
    const std::vector<std::string>& Details() const override { return details; }
    std::vector<MenuItem> MenuItems() const override { return {}; }
    bool Takes(const OperatorAct& act) const override { return act.kind == OperatorAct::Kind::kPress; }

    bool visible = false;

  private:
    void Do(const OperatorAct& /*act*/) override {}

    std::vector<WindowButton> buttons;
    std::vector<WindowTab> tabs;
    std::vector<std::string> details;
    std::string text;
};

/// Lets time pass a few times, then closes the window.
class Person : public IHeadlessOperator {
  public:
    bool OnIdle(IModalWindow& window) override {
        ++asked;
        if (step) return step(window);
        return false;
    }
    bool BeforeWait(IModalWindow* /*shown*/) override { return before && before(); }
    void AfterEvent(IModalWindow* /*shown*/) override { ++events; }
    void Message(std::string_view title, std::string_view message) override {
        said = std::string(title) + ": " + std::string(message);
    }

    std::function<bool(IModalWindow&)> step;
    std::function<bool()> before;
    int asked = 0;
    int events = 0;
    std::string said;
};

TEST_F(HeadlessPlatformTest, TimersFireInTheOrderOfTheirTimeAndTheClockJumps) {
    const auto slow = Noting("slow");
    const auto fast = Noting("fast");
    slow->Start(1000);
    fast->Start(400);
    for (int i = 0; i < 4; ++i) EXPECT_TRUE(platform.WaitForEvent());
    EXPECT_THAT(fired, ElementsAre("fast@400", "fast@800", "slow@1000", "fast@1200"));
    slow->Start(700);  // anew
    fast->Start(700);
    platform.PumpMessages();
    EXPECT_EQ(fired.size(), 4U) << "nothing is due now";
    platform.WaitForEvent();
    platform.PumpMessages();
    EXPECT_EQ(fired[4] + fired[5], "slow@1900fast@1900") << "the one that was started first";
    fast->Stop();
    slow->Start(0);
    platform.WaitForEvent();
    EXPECT_EQ(fired.back(), "slow@1901") << "time passes without an interval as well";
    slow->Stop();
    EXPECT_FALSE(slow->Running());
    EXPECT_FALSE(platform.WaitForEvent()) << "nothing will ever happen";
}

TEST_F(HeadlessPlatformTest, ATickMayWaitStartAndDestroyTimers) {
    std::unique_ptr<IPlatformTimer> own;
    auto other = Noting("other");
    const auto inner = Noting("inner");
    own = platform.CreateTimer([&] {
        inner->Start(50);
        while (fired.empty()) ASSERT_TRUE(platform.WaitForEvent());
        inner->Stop();
        fired.push_back("own");
        other.reset();
        own.reset();
    });
    own->Start(100);
    other->Start(160);
    EXPECT_TRUE(platform.WaitForEvent());
    EXPECT_FALSE(platform.WaitForEvent());
    EXPECT_THAT(fired, ElementsAre("inner@150", "own"));
}

TEST_F(HeadlessPlatformTest, ATickThatFailsIsLoggedAndTheTimerContinues) {
    std::vector<std::string> log;
    HostServices services = Services();
    services.log = [&](std::string_view line) { log.emplace_back(line); };
    InstallServices(services);
    const auto timer = platform.CreateTimer([] { throw std::runtime_error("cable"); });
    timer->Start(100);
    EXPECT_TRUE(platform.WaitForEvent());
    EXPECT_TRUE(platform.WaitForEvent());
    EXPECT_THAT(log, ElementsAre("timer: cable", "timer: cable"));
}

TEST_F(HeadlessPlatformTest, ATimerMayOutliveThePlatform) {
    auto ended = std::make_unique<HeadlessPlatform>();
    const auto timer = ended->CreateTimer([] {});
    timer->Start(100);
    ended.reset();
    EXPECT_FALSE(timer->Running());
    timer->Start(100);
    timer->Stop();
}

TEST_F(HeadlessPlatformTest, AModalWindowAsksTheOperatorFirstAndThenWaits) {
    Person person;
    Window window;
    platform.Operator(&person);
    const auto timer = Noting("t");
    timer->Start(500);
    person.step = [&](IModalWindow& shown) {
        EXPECT_TRUE(shown.Visible());
        if (fired.size() < 2) return false;
        shown.Visible(false);
        return true;
    };
    EXPECT_EQ(platform.ShowModal(window), ModalEnd::kHidden);
    EXPECT_THAT(fired, ElementsAre("t@500", "t@1000"));
    EXPECT_EQ(person.asked, 3);
    EXPECT_EQ(person.events, 2);
}

TEST_F(HeadlessPlatformTest, AWindowThatWaitsForNothingIsClosed) {
    Window window;
    EXPECT_EQ(platform.ShowModal(window), ModalEnd::kNothingToCome);
    EXPECT_FALSE(window.visible);
    // A clock that ticks for ever while the operator does nothing counts as well.
    Person person;
    platform.Operator(&person);
    const auto timer = Noting("t");
    timer->Start(60 * 60 * 1000);
    EXPECT_EQ(platform.ShowModal(window), ModalEnd::kNothingToCome);
    EXPECT_EQ(fired.size(), 25U) << "a day of hours, and the hour that showed it";
}

TEST_F(HeadlessPlatformTest, AWindowWhoseOperatorActsWithoutEndIsClosed) {
    const struct {
        const char* title;
        std::function<bool(IModalWindow&)> step;
        std::function<bool()> before;
    } cases[] = {
        {"says so and does nothing", [](IModalWindow&) { return true; }},
        {"presses the same button", [](IModalWindow& shown) { return shown.PressButton(1); }},
    };
    for (const auto& c : cases) {
        Window window;
        Person person;
        person.step = c.step;
        platform.Operator(&person);
        const auto timer = Noting("t");
        timer->Start(500);
        EXPECT_EQ(platform.ShowModal(window), ModalEnd::kEndlessActs) << c.title;
        EXPECT_FALSE(window.visible) << c.title;
        // Inside a run as well: time passes in the end.
        person.before = [] { return true; };
        while (fired.empty()) ASSERT_TRUE(platform.WaitForEvent()) << c.title;
        fired.clear();
    }
}

TEST_F(HeadlessPlatformTest, ActsOfAnybodyKeepAWindowOpen) {
    Window window;
    Person person;
    platform.Operator(&person);
    const auto timer = platform.CreateTimer([&] { window.PressButton(1); });
    timer->Start(20 * 60 * 60 * 1000);
    person.step = [&](IModalWindow& shown) {
        if (person.asked == 5) shown.Visible(false);
        return false;
    };
    EXPECT_EQ(platform.ShowModal(window), ModalEnd::kHidden);
    EXPECT_EQ(person.asked, 5);
}

TEST_F(HeadlessPlatformTest, InRealTimeAWaitSleeps) {
    HeadlessPlatform real(HeadlessPlatform::Time::kReal);
    const auto timer = real.CreateTimer([] {});
    const auto begin = std::chrono::steady_clock::now();
    const std::clock_t work = std::clock();
    timer->Start(60);
    real.WaitForEvent();
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(59));
    EXPECT_LT(static_cast<double>(std::clock() - work) / CLOCKS_PER_SEC, 0.04);
}

TEST_F(HeadlessPlatformTest, NobodyChoosesOrConfirms) {
    EXPECT_EQ(platform.ShowPopupMenu({{1, "Redo"}}), 0);
    EXPECT_FALSE(platform.Confirm("Sure?"));
    Person person;
    platform.ShowMessage("Title", "nobody reads it");
    platform.Operator(&person);
    platform.ShowMessage("Title", "words");
    EXPECT_EQ(person.said, "Title: words");
    EXPECT_EQ(platform.ShowPopupMenu({{1, "Redo"}}), 0);
    EXPECT_FALSE(platform.Confirm("Sure?"));
    platform.SetParent(5, 2);
    platform.MoveWindow(5, 1, 2, 30, 40);
    const WindowRecord record = platform.RecordOf(5);
    EXPECT_EQ(record.parent, 2U);
    EXPECT_EQ(record.width, 30);
}

TEST_F(HeadlessPlatformTest, TodayCanBeSet) {
    for (const std::string now : {"2026-02-28", "2026-02-28T23:59:00", "2026-02-28 08:00"}) {
        const ScopedEnvironment fixed("VOREX_NOW", now);
        EXPECT_EQ(HeadlessPlatform().Today(), (CalendarDate{28, 2, 2026})) << now;
    }
    for (const std::string now : {"tomorrow", "2026-02-30", "2026-2-28", "28.02.2026", "2026-02-28x",
                                  "2026-01-15T", "2026-01-15T24:00", "2026-01-15T09", "2026-01-15T09:00:61",
                                  "2026-01-15T09:00:00X", "2026-01-15T09:00+1:00"}) {
        const ScopedEnvironment wrong("VOREX_NOW", now);
        EXPECT_THROW(HeadlessPlatform(), std::invalid_argument) << now;
    }
    const ScopedEnvironment none("VOREX_NOW", "");
    EXPECT_GE(HeadlessPlatform().Today().year, 2024);
}

TEST_F(HeadlessPlatformTest, TheClockHasDateTimeAndOffsetAndFollowsTheVirtualTime) {
    struct Case {
        const char* now;
        const char* told;  ///< 2.5 s later
    };
    const Case cases[] = {
        {"2026-01-15T09:00:00Z", "2026-01-15T09:00:02Z"},
        {"2026-01-15T23:59:59+01:00", "2026-01-16T00:00:01+01:00"},
        {"2026-02-28 08:00", "2026-02-28T08:00:02Z"},
        {"2026-02-28", "2026-02-28T00:00:02Z"},
    };
    for (const Case& c : cases) {
        const ScopedEnvironment fixed("VOREX_NOW", c.now);
        HeadlessPlatform clock;
        const auto timer = clock.CreateTimer([] {});
        timer->Start(2500);
        clock.WaitForEvent();
        EXPECT_EQ(clock.TimeStamp(), c.told);
        clock.StartAt("2025-12-31T23:59:58-05:30");
        EXPECT_EQ(clock.TimeStamp(), "2026-01-01T00:00:00-05:30");
    }
    const ScopedEnvironment none("VOREX_NOW", "");
    EXPECT_EQ(HeadlessPlatform().TimeStamp().substr(10, 9), "T00:00:00")
        << "the virtual day begins at midnight";
    EXPECT_THROW(HeadlessPlatform().StartAt("then"), std::invalid_argument);
}

TEST_F(HeadlessPlatformTest, RealTimeContinuesFromTheVirtualTimeThatPassed) {
    HeadlessPlatform clock;
    int ticks = 0;
    const auto timer = clock.CreateTimer([&] { ++ticks; });
    timer->Start(3'600'000);
    clock.WaitForEvent();
    clock.GoRealTime();
    EXPECT_GE(clock.Now(), 3'600'000);
    EXPECT_LT(clock.Now(), 3'660'000);
    timer->Start(1);
    clock.WaitForEvent();
    EXPECT_EQ(ticks, 2) << "an hour of virtual time is not waited for again";
}

}  // namespace
}  // namespace vorex::host_test

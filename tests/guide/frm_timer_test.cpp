#include "guide/frm_timer.h"

#include "support/fake_platform.h"
#include "support/library_test.h"

namespace vorex::test {
namespace {

class Timer : public LibraryTest {
  protected:
    Timer() {
        HostServices services;
        services.platform = platform;
        Install(services);
        timer = std::make_unique<FrmTimer>();
    }
    ~Timer() override { timer.reset(); }

    std::shared_ptr<FakePlatform> platform = std::make_shared<FakePlatform>();
    std::unique_ptr<FrmTimer> timer;
};

TEST_F(Timer, TicksOncePerIntervalUntilItIsStopped) {
    EXPECT_EQ(timer->GetDTPicketDate(), "2026-03-15") << "it begins with today";
    int ticks = 0;
    timer->FireTimer.Connect([&] { ++ticks; });
    timer->Interval(500);
    platform->Advance(2000);
    EXPECT_EQ(ticks, 0);
    timer->StartTimer();
    platform->Advance(1600);
    EXPECT_EQ(ticks, 3);
    timer->StopTimer();
    platform->Advance(2000);
    EXPECT_EQ(ticks, 3);
}

TEST_F(Timer, EmptyPartsOfADateTakeTodays) {
    platform->today = {31, 3, 2026};
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {"", "", "", "2026-03-31"},    {"7", "", "", "2026-03-07"},     {"1", "12", "1999", "1999-12-01"},
        {"", "2", "", "2026-02-28"},   {"", "2", "2024", "2024-02-29"}, {"", "2", "1900", "1900-02-28"},
        {"0", "13", "", "2026-12-01"},
    };
    for (const auto& [day, month, year, date] : cases) {
        timer->SetDTPicketDate(day, month, year);
        EXPECT_EQ(timer->GetDTPicketDate(), date) << day << '/' << month << '/' << year;
    }
}

TEST_F(Timer, DoesNothingWithoutWindows) {
    Install({});
    FrmTimer silent;
    silent.StartTimer();
    silent.StopTimer();
    silent.SetDTPicketDate("2", "3", "2026");
    EXPECT_EQ(silent.GetDTPicketDate(), "2026-03-02");
}

}  // namespace
}  // namespace vorex::test

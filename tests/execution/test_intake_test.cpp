#include <gtest/gtest.h>

#include "execution/execution_fixture.h"

namespace vorex::test {
namespace {

using TestIntakeTest = ExecutionTest;

TEST_F(TestIntakeTest, TheLengthOfAKvWaveformIsInMilliseconds) {
    struct Case {
        int32_t testId;
        const char* time;
        const char* call;
    };
    // In fluoroscopy the instrument measures the time in seconds.
    const Case cases[] = {{kRadioRepro, "120", "GetWaveform 1 120"},
                          {kFluoroAccuracy, "0.25", "GetWaveform 1 250"}};
    for (const Case& c : cases) {
        room->calls.clear();
        const auto element = Make(c.testId, 1);
        ConfigOf(*element).SetValue(0, 1, "1");
        Expose("80", c.time);
        const auto reading = polls.back().first;
        polls.back().first = [reading](DetectorEvents& events) {
            reading(events);
            events.vti_CheckExposureWaveform.Raise(kKvWaveform);
        };
        room->waveform = "0,40,80";
        Perform(*element, {Start()});
        EXPECT_EQ(room->Count(c.call), 1) << c.testId;
        EXPECT_NE(ResultOf(*element)->KvWaveform(1), nullptr);
    }
}

TEST_F(TestIntakeTest, AWaveformThatFailsCostsTheRunNothingElse) {
    const auto element = Make(kRadioRepro, 1);
    ConfigOf(*element).SetValue(0, 1, "1");
    room->failing = {"GetWaveform"};
    Expose("80");
    const auto reading = polls.back().first;
    polls.back().first = [reading](DetectorEvents& events) {
        reading(events);
        events.vti_CheckExposureWaveform.Raise(kKvWaveform);
    };
    Perform(*element, {Start()});
    EXPECT_EQ(element->Result()->Status(), kPassed);
    EXPECT_EQ(ResultOf(*element)->Run()->reason, "GetWaveform fails");
}

TEST_F(TestIntakeTest, OverlayAndWakeUpButtonStayUntilTheirEventTakesThemBack) {
    const auto element = Make(kRadioRepro, 1);
    Queue([](DetectorEvents& events) {
        events.vti_ZeroingmAs.Raise(true);
        events.vti_AddWakeUpButton.Raise(true);
    });
    Expose("80");
    Perform(*element, {Start(), Step([this](FZRD47500TestGuide& guide) {
                           EXPECT_TRUE(guide.Overlay().Visible());
                           EXPECT_TRUE(guide.Button(guide_button::kWakeUp)->visible);
                           runEvents->vti_ZeroingmAs.Raise(false);
                           runEvents->vti_AddWakeUpButton.Raise(false);
                           EXPECT_FALSE(guide.Overlay().Visible());
                           EXPECT_FALSE(guide.Button(guide_button::kWakeUp)->visible);
                       })});
}

}  // namespace
}  // namespace vorex::test

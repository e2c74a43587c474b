#include "execution/execution_fixture.h"

namespace vorex::test {
namespace {

using TestIntakeTest = ExecutionTest;

TEST_F(TestIntakeTest, TheLengthOfAKvWaveformIsInMilliseconds) {
    // In fluoroscopy the instrument measures the time in seconds.
    const std::tuple<int32_t, const char*, const char*> cases[] = {
        {kRadioRepro, "120", "GetWaveform 1 120"}, {kFluoroAccuracy, "0.25", "GetWaveform 1 250"}};
    for (const auto& [testId, time, call] : cases) {
        room->calls.clear();
        const auto element = Make(testId, 1);
        ConfigOf(*element).SetValue(0, 1, "1");
        Expose("80", time, kKvWaveform);
        room->waveform = "0,40,80";
        Perform(*element, {Start()});
        EXPECT_EQ(room->Count(call), 1) << testId;
        EXPECT_NE(ResultOf(*element)->KvWaveform(1), nullptr);
    }
    // An exposure whose waveform is not imported leaves an empty pane, not the curve of the one before.
    const auto element = Make(kRadioRepro, 2);
    ConfigOf(*element).SetValue(0, ExposureColumn::kImport, "1");
    for (const char* voltage : {"80", "81"}) Expose(voltage, "100", kKvWaveform);
    Perform(*element, {Start(), Step([](FZRD47500TestGuide& guide) {
                           EXPECT_FALSE(guide.Tabs()[0].waveform);
                           EXPECT_FALSE(guide.Tabs()[0].visible);
                       })});
}

TEST_F(TestIntakeTest, AnExposureIsAnnouncedBeforeTheGuideShowsIt) {
    const auto element = Make(kRadioRepro, 1, kZrdAndMas);
    ConfigOf(*element).SetValue(0, ExposureColumn::kImport, "1");
    room->waveform = "0,80,0";
    std::vector<std::string> announced;
    onStored = [&](const StoredExposure& stored) {
        // What the guide shows now, and what is announced.
        int32_t samples = 0;
        for (const WindowTab& tab : Guide().Tabs())
            if (tab.waveform) samples += tab.waveform->ValueCount();
        announced.push_back(std::to_string(Guide().CurrentExposure()) + "/" + std::to_string(samples) +
                            " then " + std::to_string(stored.exposure) + "." + std::to_string(stored.source) +
                            "." + std::to_string(stored.waveform));
    };
    Queue(
        [](DetectorEvents& events) {
            events.VTI_DataReady.Raise({"80", "81", "80", "10", "100", "100", "10", "0", "0", "3"});
            events.vti_TestmAsDataReady.Raise({"200", "20", "0", "1"});
            events.vti_CheckExposureWaveform.Raise(kKvWaveform);
        },
        true);
    Perform(*element, {Start()});
    EXPECT_EQ(announced, (std::vector<std::string>{"0/0 then 1.1.0", "1/0 then 1.3.0", "1/0 then 1.0.1"}));
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

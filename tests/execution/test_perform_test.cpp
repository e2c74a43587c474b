#include <gmock/gmock.h>

#include "execution/execution_fixture.h"
#include "foundation/utilities.h"

namespace vorex::test {
namespace {

using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::Not;
using testing::StartsWith;
using TestPerformTest = ExecutionTest;

/// The instruments in the host's list, "name/serial/date".
std::vector<std::string> Listed(const IMtiList& list) {
    std::vector<std::string> texts;
    for (const MtiEntry& entry : list.Entries())
        texts.push_back(entry.name + "/" + entry.serialNumber + "/" + entry.calibrationDate);
    return texts;
}

std::vector<std::string> Voltages(const CResultCommon& result) {
    std::vector<std::string> values;
    for (std::size_t row = 0; row < result.Rows().size(); ++row)
        values.push_back(result.GetValue(static_cast<uint8_t>(row), 2));
    return values;
}

TEST_F(TestPerformTest, TheInstrumentsOfARunAreNoted) {
    struct Case {
        const char* serials;
        const char* failing;  ///< an operation, or empty
        std::vector<std::string> listed;
        std::size_t noted;  ///< with the result
    };
    const Case cases[] = {
        {"4711", "", {"ZRD 47500WD/4711/2026-01-15"}, 1},
        {"4711, 88", "", {"ZRD 47500WD/4711/2026-01-15", "mAs meter/88/2026-02-01"}, 2},
        {"4711,88,99", "", {"ZRD 47500WD/4711/2026-01-15", "mAs meter/88/2026-02-01"}, 2},
        {"4711,0", "", {"ZRD 47500WD/4711/2026-01-15"}, 1},
        {"4711,", "", {"ZRD 47500WD/4711/2026-01-15"}, 1},
        {"4711", "InstrumentName", {"ZRD 47500WD/4711/2026-01-15"}, 1},
        {"4711", "CalibrationDates", {"ZRD 47500WD/4711/"}, 1},
    };
    for (const Case& c : cases) {
        instruments = std::make_shared<class MtiList>();
        pipe = std::make_shared<ExecutionPipe>(instruments, std::make_shared<class SelectedStandards>());
        room->serialNumbers = c.serials;
        room->calibrationDates = "2026-01-15,2026-02-01,2026-03-01";
        room->failing.clear();
        if (*c.failing != '\0') room->failing.insert(c.failing);
        const auto element = Make(kRadioRepro, 1);
        Expose("80");
        Perform(*element, {Start()});
        EXPECT_EQ(Listed(*instruments), c.listed) << c.serials << c.failing;
        ASSERT_TRUE(ResultOf(*element)->Run());
        EXPECT_EQ(ResultOf(*element)->Run()->instruments.size(), c.noted) << c.serials << c.failing;
    }
}

TEST_F(TestPerformTest, AfterALostLinkTheInstrumentsOfTheStartAreNoted) {
    const auto element = Make(kRadioRepro, 2);
    Expose("80");
    Queue([this](DetectorEvents&) {
        room->alive = false;
        room->serialNumbers = "0";
    });
    Perform(*element, {Start()});
    ASSERT_TRUE(ResultOf(*element)->Run());
    ASSERT_EQ(ResultOf(*element)->Run()->instruments.size(), 1U);
    EXPECT_EQ(ResultOf(*element)->Run()->instruments[0].SerialNumber(), "4711");
}

TEST_F(TestPerformTest, StartWithAnyStoredRowBeginsAFreshResult) {
    for (bool judged : {true, false}) {
        const auto element = Make(kRadioRepro, 2);
        Expose("80");
        Expose("81");
        Perform(*element, {Start()});
        ASSERT_THAT(Voltages(*ResultOf(*element)), ElementsAre("80", "81"));
        if (!judged) ResultOf(*element)->InitResultStatus(false);
        Expose("90");
        Perform(*element, {Step([this](FZRD47500TestGuide& guide) {
            Queue([&guide](DetectorEvents&) { guide.PressButton(guide_button::kStop); });
            guide.PressButton(guide_button::kStart);
        })});
        EXPECT_THAT(Voltages(*ResultOf(*element)), ElementsAre("90")) << judged;
    }
}

TEST_F(TestPerformTest, AFinishedElementHasNoTimerAndHearsNothing) {
    const auto element = Make(kFluoroExposure, 1);
    Queue([](DetectorEvents& events) { events.vti_EnableStopButton.Raise(true); });
    Expose("80", "0.5");
    // The run ends with the beam on.
    Perform(*element, {Start(), Press(guide_button::kAbort)});
    EXPECT_EQ(platform->Running(), 0);
    EXPECT_FALSE(element->Sequence()->gRunActive);
    ASSERT_NE(runEvents, nullptr);
    EXPECT_FALSE(runEvents->VTI_DataReady.Connected());
    EXPECT_FALSE(runEvents->vti_EnableStopButton.Connected());
    // The element can be performed again with the same service.
    Expose("81", "0.5");
    Perform(*element, {Start()});
    EXPECT_THAT(Voltages(*ResultOf(*element)), ElementsAre("81"));
}

TEST_F(TestPerformTest, TheLogOfEditedValuesBelongsToItsResult) {
    const std::string log = "Exposure 1, mAs: 20*";
    const auto element = Make(kRadioRepro, 1);
    Expose("80");
    Perform(*element,
            {Start(), Step([&](FZRD47500TestGuide&) { ConfigOf(*element).PrintTheComment = log; })});
    const std::string kept = ResultOf(*element)->Comment();
    EXPECT_EQ(CommentLog(kept), log);
    Perform(*element, {});
    element->Sequence()->gNARemaining = true;
    Perform(*element, {});
    Perform(*element, {});
    EXPECT_EQ(ResultOf(*element)->Comment(), kept) << "once, however often the element is performed";
    ResultOf(*element)->InitResultStatus(true);
    Expose("81");
    Perform(*element, {Start()});
    EXPECT_EQ(ResultOf(*element)->Comment(), "") << "a fresh result has no edited values";
    // A discarded result takes its log with it.
    ConfigOf(*element).PrintTheComment = log;
    Expose("82");
    Perform(*element, {Start()});
    EXPECT_EQ(ResultOf(*element)->Comment(), "");
}

TEST_F(TestPerformTest, AnInstrumentFaultEndsInASafeState) {
    struct Case {
        const char* failing;  ///< an operation; empty for the link
        std::string_view reason;
        std::vector<std::string> taken;  ///< before the fault
    };
    const Case cases[] = {{"ApplySettings", "ApplySettings fails", {}},
                          {"Poll", "Poll fails", {"80"}},
                          {"Armed", "Armed fails", {"80"}},
                          {"", text::kReasonLinkLost, {"80"}}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.reason);
        const auto element = Make(kRadioRepro, 3);
        ConfigOf(*element).SetValue(0, ExposureColumn::kImport, "1");
        room->failing.clear();
        room->calls.clear();
        const auto fail = [&] {
            room->alive = *c.failing != '\0';
            if (room->alive) room->failing.insert(c.failing);
        };
        if (c.taken.empty()) fail();
        // The fault comes with the waveform of the first exposure, or at the poll after it.
        Expose("80");
        polls.back().first = [fail, reading = polls.back().first](DetectorEvents& events) {
            reading(events);
            fail();
            events.vti_CheckExposureWaveform.Raise(kKvWaveform);
        };
        Perform(*element, {Step([](FZRD47500TestGuide& guide) {
            guide.PressButton(guide_button::kStart);
            if (!guide.PressButton(guide_button::kNext)) guide.Visible(false);
        })});
        polls.clear();
        EXPECT_EQ(ResultOf(*element)->Run()->ending, RunEnding::kBroken);
        EXPECT_EQ(ResultOf(*element)->Run()->reason, c.reason);
        EXPECT_EQ(element->Result()->Status(), c.taken.empty() ? kNotTested : kPassed) << "judged";
        EXPECT_EQ(Voltages(*ResultOf(*element)), c.taken);
        // After the last disarming nothing is armed or polled, and the instruments are left.
        const auto disarmed = std::find(room->calls.rbegin(), room->calls.rend(), "Armed 0");
        ASSERT_NE(disarmed, room->calls.rend());
        const std::vector<std::string> after(disarmed.base(), room->calls.end());
        EXPECT_THAT(after, Contains("Disconnect"));
        EXPECT_THAT(after, Each(Not(AnyOf("Armed 1", StartsWith("Poll")))));
    }
}

TEST_F(TestPerformTest, TheLastExposureMayComeUnderAnOpenMenu) {
    const auto element = Make(kRadioRepro, 2);
    Expose("80");
    bool redoBefore = true;
    std::vector<MenuItem> itemsAfter;
    platform->onMenu = [&](const std::vector<MenuItem>& items) {
        redoBefore = items.front().enabled;
        Expose("81");
        platform->Advance(2000);  // the run ends here, while its own loop waits for the menu
        EXPECT_FALSE(element->Sequence()->gRunActive);
        EXPECT_EQ(Guide().RunState(), GuideState::kIdle);
        itemsAfter = Guide().MenuItems();
        Expose("85");
        return guide_menu::kRedo;
    };
    // The first exposure comes after 500 ms, the second would come after 1000 ms.
    std::unique_ptr<IPlatformTimer> opener;
    opener = platform->CreateTimer([&] {
        opener->Stop();
        Guide().OpenMenu();
    });
    Perform(*element, {Step([&](FZRD47500TestGuide& guide) {
        opener->Start(700);
        guide.PressButton(guide_button::kStart);
    })});
    EXPECT_FALSE(redoBefore);
    ASSERT_FALSE(itemsAfter.empty());
    EXPECT_TRUE(itemsAfter.front().enabled);
    EXPECT_EQ(Voltages(*ResultOf(*element)).size(), 2U);
    EXPECT_EQ(ResultOf(*element)->Superseded().size(), 1U) << "the redo that was chosen in that menu";
    EXPECT_EQ(element->Result()->Status(), kPassed);
}

TEST_F(TestPerformTest, AnExposureThatStopEndsInAHoldCountsAndARedoFillsIt) {
    const auto element = Make(kFluoroExposure, 2);
    const auto hold = [](bool on) {
        return [on](DetectorEvents& events) { events.vti_EnableStopButton.Raise(on); };
    };
    Queue(hold(true));
    Queue([this](DetectorEvents&) { EXPECT_TRUE(Guide().PressButton(guide_button::kStop)); });
    Expose("70", "0.5");  // comes late
    Queue(hold(true));
    Queue(hold(false));
    Expose("81", "0.5");
    Perform(*element, {Start(), Step([&](FZRD47500TestGuide& guide) {
                           EXPECT_THAT(Voltages(*ResultOf(*element)), ElementsAre("", "81"));
                           EXPECT_FALSE(ResultOf(*element)->HasReading(0));
                           Expose("90", "0.5");
                           EXPECT_TRUE(guide.RedoExposure(1));
                           EXPECT_FALSE(guide.RedoExposure(3)) << "there is none";
                       })});
    EXPECT_EQ(element->ExposureRow(), 2) << "a redo keeps the count";
    EXPECT_THAT(Voltages(*ResultOf(*element)), ElementsAre("90", "81"));
    EXPECT_EQ(element->Result()->Status(), kPassed);
}

TEST_F(TestPerformTest, StopInAHoldOfARedoLeavesTheWaveformsOfTheOthers) {
    const auto element = Make(kFluoroExposure, 2);
    room->waveform = "0,40,80";
    for (uint8_t row : {0, 1}) ConfigOf(*element).SetValue(row, ExposureColumn::kImport, "1");
    for (const char* voltage : {"80", "81"}) Expose(voltage, "0.5", kKvWaveform);
    Perform(*element, {Start(), Step([this](FZRD47500TestGuide& guide) {
                           room->waveform.clear();
                           Queue([](DetectorEvents& events) { events.vti_EnableStopButton.Raise(true); });
                           Queue([](DetectorEvents&) {});
                           polls.back().first = [&guide](DetectorEvents&) {
                               guide.PressButton(guide_button::kStop);
                           };
                           EXPECT_TRUE(guide.RedoExposure(1));
                       })});
    for (int32_t exposure : {1, 2})
        EXPECT_EQ(ResultOf(*element)->KvWaveform(exposure)->ValueCount(), 3) << exposure;
}

TEST_F(TestPerformTest, AllSettingsAreSentBeforeTheInstrumentsAreArmed) {
    const auto element = Make(kRadioRepro, 1);
    CConfigCommon& config = ConfigOf(*element);
    config.pMeasurementExposure = 2;
    config.pMeasurementExposureRateUnit = 3;
    config.pMeasurementFluoroType = 2;
    config.pMeasurementTimeUnit = 1;
    config.pMeasurementPercentKV = 75;
    config.pMeasurementDelay = -5;
    config.pMeasurementIncludeDelay = true;
    config.pMeasurementMode = kDental;
    config.pMeasurementSettings = 2;
    config.pTargetFilterName = "Mo/Rh";
    Expose("80");
    Perform(*element, {Start()});
    const std::vector<std::string> sent = {"ExposureUnit 2",     "ExposureRateUnit 3", "FluoroType 2",
                                           "TimeUnit 1",         "PercentKV 75",       "Delay -5",
                                           "IncludeDelay 1",     "Mode DENTAL",        "Settings MANUAL",
                                           "TargetFilter Mo/Rh", "ApplySettings",      "Armed 1"};
    EXPECT_NE(std::search(room->calls.begin(), room->calls.end(), sent.begin(), sent.end()),
              room->calls.end())
        << testing::PrintToString(room->calls);
}

TEST_F(TestPerformTest, AnEarlierResultShowsItsWaveformsAndAClickThoseOfItsExposure) {
    const auto element = Make(kRadioRepro, 2, kZrdAndMas);
    for (uint8_t row : {0, 1}) ConfigOf(*element).SetValue(row, ExposureColumn::kImport, "1");
    const auto expose = [this](const char* kv, const char* ma) {
        Queue(
            [this, kv, ma](DetectorEvents& events) {
                ZrdReading reading;
                reading.kvpAvg = "80";
                reading.exposureTime = "100";
                events.VTI_DataReady.Raise(reading);
                room->waveform = kv;
                events.vti_CheckExposureWaveform.Raise(kKvWaveform);
                room->waveform = ma;
                events.vti_CheckExposureWaveform.Raise(kMaWaveform);
            },
            true);
    };
    expose("0,81", "0,201,0");
    expose("0,82,0,0", "0,202,0,0,0");
    Perform(*element, {Start()});
    const auto counts = [](const FZRD47500TestGuide& guide) {
        std::string text;
        for (const WindowTab& tab : guide.Tabs())
            text += tab.waveform ? std::to_string(tab.waveform->ValueCount()) + " " : "none ";
        return text;
    };
    Perform(*element, {Step([&](FZRD47500TestGuide& guide) {
        EXPECT_EQ(counts(guide), "4 5 ") << "the last exposure";
        EXPECT_EQ(guide.StatusShown(), kPassed);
        guide.DrawWaveform(nullptr);
        EXPECT_EQ(counts(guide), "none 5 ") << "kV is drawn next";
        guide.WaveformType(kMaWaveform);
        guide.events.DrawWaveForm.Raise(1, true, kMaWaveform);
        EXPECT_EQ(counts(guide), "none 3 ");
    })});
}

}  // namespace
}  // namespace vorex::test

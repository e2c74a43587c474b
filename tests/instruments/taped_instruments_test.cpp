#include "instruments/taped_instruments.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "instruments/recorded_instruments.h"

namespace vorex::test {
namespace {

constexpr const char* kHead = "{\"recording\":1,\"kind\":4,\"serialNumbers\":\"4711\"}\n";
constexpr const char* kMeasured =
    "{\"quiet\":2}\n"
    "{\"stopButton\":true}\n"
    R"({"exposure":{"detector":["80","81","82","10","1,5","100","10","3","4","3.1"],"mas":["200","20","0","1"],)"
    R"("waveforms":[{"type":3,"resolution":0.1,"samples":"1,2"}]}})"
    "\n{\"throws\":\"Poll\"}\n{\"quiet\":1}\n{\"link\":false}\n";

TapedInstruments Taped(const std::string& lines, RunTape& tape) {
    return {std::make_unique<RecordedInstruments>(ParseRecording(kHead + lines, "r")), tape};
}

/// Runs a service for some polls and returns its answers in words.
std::vector<std::string> Say(TapedInstruments& instruments, int polls) {
    std::vector<std::string> said;
    const auto service = instruments.CreateService();
    auto& events = service->events;
    events.VTI_DataReady.Connect(
        [&](const ZrdReading& r) { said.push_back("zrd " + r.kvpAvg + " " + r.exposureRate + " " + r.hvl); });
    events.vti_TestmAsDataReady.Connect(
        [&](const MasReading& r) { said.push_back("mas " + r.ma + " " + r.dosePerMas); });
    events.vti_EnableStopButton.Connect([&](bool on) { said.push_back(on ? "held" : "free"); });
    events.vti_CheckExposureWaveform.Connect([&](uint8_t type) {
        const std::string samples = service->GetWaveform(0, 1000, 1000, type);
        said.push_back("wave " + std::to_string(type) + " " + samples + " " +
                       std::to_string(service->WaveformResolution()));
    });
    service->Armed(true);
    service->BeginRun();
    for (int poll = 1; poll <= polls; ++poll) {
        if (service->ExposureDone()) said.push_back("done");
        try {
            if (!service->Poll(0, 0)) said.push_back("dead");
        } catch (const std::runtime_error& error) {
            said.push_back(error.what());
        }
    }
    return said;
}

const std::vector<std::string> kSaid = {
    "held", "done", "zrd 80 1,5 3.1", "mas 200 1", "wave 3 1,2 0.100000", "Poll failed", "dead"};

TEST(TapedInstrumentsTest, TheTapeRepeatsTheAnswersOfInstrumentsThatAreSilentNow) {
    RunTape first;
    auto measuring = Taped(kMeasured, first);
    EXPECT_EQ(Say(measuring, 7), kSaid);
    RunTape second;
    second.Rewind(first.TakeNotes(), 7);
    auto silent = Taped("{\"quiet\":100}\n", second);
    EXPECT_EQ(Say(silent, 7), kSaid);
    EXPECT_FALSE(second.Broken());
}

TEST(TapedInstrumentsTest, TheTapeOverridesTheInstruments) {
    RunTape first;
    auto measuring = Taped(kMeasured, first);
    Say(measuring, 7);
    std::vector<RunNote> notes = first.TakeNotes();
    for (RunNote& note : notes)
        if (note.operation == "VTI_DataReady") note.values[0] = "99";
    RunTape second;
    second.Rewind(notes, 7);
    auto again = Taped(kMeasured, second);
    const auto said = Say(again, 7);
    ASSERT_EQ(said.size(), kSaid.size());
    EXPECT_EQ(said[2], "zrd 99 1,5 3.1");
    EXPECT_TRUE(second.TakeNotes().empty()) << "what is read is not written again";
}

TEST(TapedInstrumentsTest, WhenTheTapeEndsInsideAPollTheInstrumentsContinueIt) {
    RunTape first;
    auto measuring = Taped(kMeasured, first);
    Say(measuring, 7);
    std::vector<RunNote> notes = first.TakeNotes();
    // Up to the reading of the ZRD 47500: the mAs meter and the waveform come from the instruments.
    while (notes.back().operation != "VTI_DataReady") notes.pop_back();
    RunTape second;
    second.Rewind(notes, 7);
    auto again = Taped(kMeasured, second);
    const auto service = again.CreateService();
    std::vector<std::string> said;
    service->events.VTI_DataReady.Connect([&](const ZrdReading& r) {
        said.push_back("zrd " + r.kvpAvg);
        second.GoOn();
    });
    service->events.vti_TestmAsDataReady.Connect([&](const MasReading& r) { said.push_back("mas " + r.ma); });
    service->Armed(true);
    service->BeginRun();
    for (int poll = 1; poll <= 4; ++poll) {
        service->ExposureDone();
        service->Poll(0, 0);
    }
    EXPECT_EQ(said, (std::vector<std::string>{"zrd 80", "mas 200"}));
    const auto written = second.TakeNotes();
    ASSERT_FALSE(written.empty());
    EXPECT_EQ(written.front(), (RunNote{"vti_TestmAsDataReady", 4, {"200", "20", "0", "1"}}));
}

TEST(TapedInstrumentsTest, ABrokenTapeEndsTheRun) {
    RunTape tape;
    auto instruments = Taped(kMeasured, tape);
    const auto service = instruments.CreateService();
    EXPECT_TRUE(service->Poll(0, 0));
    EXPECT_FALSE(instruments.Ended());
    tape.Break();
    EXPECT_FALSE(service->Poll(0, 0));
    EXPECT_TRUE(instruments.Ended());
}

TEST(TapedInstrumentsTest, ARunThatPollsBeyondTheLastNoteHasLeftTheTape) {
    RunTape tape;
    tape.Rewind({{"VTI_DataReady", 9, {"80"}}}, 2);
    auto instruments = Taped(kMeasured, tape);
    const auto service = instruments.CreateService();
    EXPECT_TRUE(service->Poll(0, 0));
    EXPECT_TRUE(service->Poll(0, 0));
    EXPECT_FALSE(service->Poll(0, 0));
    EXPECT_TRUE(tape.Broken());
}

TEST(TapedInstrumentsTest, TheClockIsReadFromTheTapeWhileItLasts) {
    RunTape first;
    EXPECT_EQ(first.Clock("09:00"), "09:00");
    RunTape second;
    second.Rewind(first.TakeNotes(), 0);
    EXPECT_EQ(second.Clock("10:00"), "09:00");
    second.GoOn();
    EXPECT_EQ(second.Clock("08:59"), "09:00") << "never back";
    EXPECT_EQ(second.Clock("10:01"), "10:01");
}

}  // namespace
}  // namespace vorex::test

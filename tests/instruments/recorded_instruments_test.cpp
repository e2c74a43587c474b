#include "instruments/recorded_instruments.h"

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "instruments/operation.h"
#include "support/detector_notes.h"

namespace vorex {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

constexpr const char* kFirst = R"({"recording":1,"kind":4,"serialNumbers":"4711,88"})";
constexpr const char* kWaveform =
    R"({"exposure":{"mas":["1","","",""],"waveforms":[{"type":3,"resolution":1,"samples":"1"}]}})";
constexpr const char* kMasExposure = R"({"exposure":{"mas":["200","20.1","0","0.61"]}})";

Recording RecordingOf(const Texts& lines, const std::string& first = kFirst) {
    std::string text = first;
    for (const std::string& line : lines) text += "\n" + line;
    return ParseRecording(text, "room.jsonl");
}

/// One room with a running service and an idle one.
struct Room {
    explicit Room(const Texts& lines, const std::string& first = kFirst)
        : instruments(RecordingOf(lines, first)) {
        test::Note(*service, heard);
        test::Note(*idle, heardIdle);
        service->Armed(true);
        service->BeginRun();
    }
    bool Poll() { return service->Poll(0, 0); }
    /// A tick as a run does it; true when an exposure was done.
    bool Tick() {
        const bool done = service->ExposureDone();
        Poll();
        return done;
    }

    RecordedInstruments instruments;
    std::shared_ptr<IDetectorService> service = instruments.CreateService();
    std::shared_ptr<IDetectorService> idle = instruments.CreateService();
    Texts heard;
    Texts heardIdle;
};

TEST(RecordedInstruments, QuietLinesTakeAsManyPollsAsTheySay) {
    Room room({R"({"quiet":0})", R"({"quiet":2})", R"({"quiet":3})", R"({"stopButton":true})"});
    for (int poll = 0; poll < 5; ++poll) EXPECT_TRUE(room.Poll());
    EXPECT_THAT(room.heard, IsEmpty());
    EXPECT_TRUE(room.Poll());
    EXPECT_THAT(room.heard, ElementsAre("stopButton on"));
}

TEST(RecordedInstruments, EachSignalTakesOnePollAndReachesTheServiceThatPolls) {
    Room room({R"({"stopButton":true})", R"({"stopButton":false})", R"({"sensorReset":true})",
               R"({"zeroing":false})", R"({"wakeUp":true})"});
    for (std::size_t polls = 1; polls <= 5; ++polls) {
        EXPECT_TRUE(room.Poll());
        EXPECT_EQ(room.heard.size(), polls);
    }
    EXPECT_THAT(room.heard,
                ElementsAre("stopButton on", "stopButton off", "sensorReset on", "zeroing off", "wakeUp on"));
    EXPECT_THAT(room.heardIdle, IsEmpty());
}

TEST(RecordedInstruments, AnExposureRaisesItsReadingsThenItsWaveformsInOnePoll) {
    Room room(
        {R"({"exposure":{"waveforms":[{"type":3,"resolution":1,"samples":"1"},{"type":1,"resolution":2,"samples":"2"}],"mas":["200","20.1","0","0.61"],"dosimeter":["22.1","760","1.01","0.2","12.3","123.0","300"],"detector":["80.1","80.9","80.4","12.3","123.0","100.2","10","0","0","3.1"]}})",
         kMasExposure});
    EXPECT_TRUE(room.service->ExposureDone());
    EXPECT_THAT(room.heard, IsEmpty());
    EXPECT_TRUE(room.Poll());
    EXPECT_THAT(room.heard, ElementsAre("detector 80.1 3.1", "dosimeter 22.1 300", "mas 200 0.61",
                                        "waveform 3", "waveform 1"));
    EXPECT_EQ(room.instruments.ExposuresDelivered(), 1);
    room.heard.clear();
    EXPECT_TRUE(room.Tick());
    EXPECT_THAT(room.heard, ElementsAre("mas 200 0.61"));
}

TEST(RecordedInstruments, AnExposureWaitsUntilARunningServiceHasReadOnceThatItIsDone) {
    Room room({kMasExposure});
    EXPECT_TRUE(room.Poll());
    EXPECT_TRUE(room.Poll());
    EXPECT_THAT(room.heard, IsEmpty());
    EXPECT_FALSE(room.idle->ExposureDone());
    EXPECT_TRUE(room.service->ExposureDone());
    EXPECT_FALSE(room.service->ExposureDone());
    room.service->BeginRun();
    EXPECT_TRUE(room.Tick()) << "a new run starts without what was read before";
    EXPECT_THAT(room.heard, ElementsAre("mas 200 0.61"));
}

TEST(RecordedInstruments, OnlyAServiceThatIsArmedAndHasBegunAdvancesTheRecording) {
    RecordedInstruments instruments(RecordingOf({R"({"wakeUp":true})"}));
    const auto service = instruments.CreateService();
    Texts heard;
    test::Note(*service, heard);
    const std::pair<const char*, std::function<void()>> idleStates[] = {
        {"new", [] {}},
        {"begun, not armed", [&] { service->BeginRun(); }},
        {"disarmed",
         [&] {
             service->Armed(true);
             service->Armed(false);
         }},
        {"armed after the end of its session",
         [&] {
             service->Disconnect();
             service->Armed(true);
         }},
    };
    for (const auto& [state, enter] : idleStates) {
        enter();
        EXPECT_TRUE(service->Poll(0, 0)) << state;
        EXPECT_THAT(heard, IsEmpty()) << state;
    }
    service->BeginRun();
    EXPECT_TRUE(service->Poll(0, 0));
    EXPECT_THAT(heard, ElementsAre("wakeUp on"));
}

TEST(RecordedInstruments, ALostLinkAnswersFalseEverywhereUntilItIsBack) {
    Room room(
        {R"({"link":false})", R"({"stopButton":true})", kMasExposure, R"({"link":true})", kMasExposure});
    EXPECT_EQ(room.idle->LinkState(), 1);
    EXPECT_EQ(room.idle->SerialNumbers(), "4711,88");
    EXPECT_FALSE(room.Poll());
    EXPECT_FALSE(room.idle->Poll(0, 0));
    EXPECT_EQ(room.idle->LinkState(), 0);
    EXPECT_EQ(room.idle->SerialNumbers(), "0");
    EXPECT_TRUE(room.instruments.Ended());
    EXPECT_THAT(room.instruments.Faults(), ElementsAre("room.jsonl:2: the link to the instruments was lost"));

    EXPECT_FALSE(room.Poll());
    EXPECT_FALSE(room.Tick()) << "an exposure during a lost link is not done";
    EXPECT_THAT(room.heard, IsEmpty());
    EXPECT_TRUE(room.Poll());
    EXPECT_TRUE(room.idle->Poll(0, 0));
    EXPECT_EQ(room.idle->LinkState(), 1);
    EXPECT_TRUE(room.Tick());
    EXPECT_THAT(room.heard, ElementsAre("mas 200 0.61"));
}

TEST(RecordedInstruments, AUsedUpRecordingEndsTheRunAndLeavesTheLinkAlive) {
    Room room({kMasExposure, R"({"quiet":1})"});
    EXPECT_TRUE(room.Tick());
    EXPECT_TRUE(room.Poll());
    EXPECT_FALSE(room.instruments.Ended());
    EXPECT_TRUE(room.idle->Poll(0, 0)) << "an idle service does not wait for lines";
    EXPECT_FALSE(room.instruments.Ended());
    EXPECT_FALSE(room.Poll());
    EXPECT_FALSE(room.Poll());
    EXPECT_TRUE(room.instruments.Ended());
    EXPECT_THAT(room.instruments.Faults(),
                ElementsAre("room.jsonl: the recording is used up; exposures delivered: 1"));
    EXPECT_EQ(room.service->LinkState(), 1);
}

TEST(RecordedInstruments, WaveformsAreThoseOfTheLastExposure) {
    Room room(
        {R"({"exposure":{"mas":["1","","",""],"waveforms":[{"type":1,"resolution":10,"samples":"0,80"},{"type":3,"resolution":2.5,"samples":"0,200"}]}})",
         R"({"exposure":{"mas":["2","","",""],"waveforms":[{"type":3,"resolution":4,"samples":"0,300"}]}})",
         kWaveform, R"({"stopButton":true})"});
    EXPECT_EQ(room.service->GetWaveform(0, 1000, 1000, 1), "");
    room.Tick();
    EXPECT_EQ(room.service->GetWaveform(0, 1000, 1000, 1), "0,80");
    EXPECT_EQ(room.service->WaveformResolution(), 10);
    EXPECT_EQ(room.service->GetWaveform(0, 1000, 1000, 3), "0,200");
    EXPECT_EQ(room.service->WaveformResolution(), 2.5F);
    room.Tick();
    EXPECT_EQ(room.service->GetWaveform(0, 1000, 1000, 3), "0,300");
    EXPECT_EQ(room.service->GetWaveform(0, 1000, 1000, 1), "") << "not that of the exposure before";
    room.service->BeginRun();
    EXPECT_EQ(room.service->GetWaveform(0, 1000, 1000, 3), "") << "not that of the run before";
    room.Tick();
    EXPECT_EQ(room.service->GetWaveform(0, 1000, 1000, 3), "1");
    room.Tick();
    EXPECT_EQ(room.service->GetWaveform(0, 1000, 1000, 3), "") << "another exposure is under way";
}

TEST(RecordedInstruments, AWaveformTransferInsideAnExposureKeepsTheRunGoing) {
    Room room({kWaveform, kMasExposure});
    std::string fetched;
    room.service->events.vti_CheckExposureWaveform.Connect([&](uint8_t type) {
        room.service->Armed(false);
        fetched = room.service->GetWaveform(0, 1000, 1000, type);
        room.service->Armed(true);
    });
    EXPECT_TRUE(room.Tick());
    EXPECT_EQ(fetched, "1");
    EXPECT_TRUE(room.Tick());
    EXPECT_EQ(room.heard.back(), "mas 200 0.61");
}

TEST(RecordedInstruments, APollInsideAnEventFindsTheExposureTaken) {
    Room room({kMasExposure, R"({"zeroing":true})"});
    room.service->events.vti_TestmAsDataReady.Connect([&](const MasReading&) { room.Poll(); });
    room.Tick();
    EXPECT_THAT(room.heard, ElementsAre("mas 200 0.61", "zeroing on"));
}

TEST(RecordedInstruments, AnswersAreThoseOfTheFirstLine) {
    Room room(
        {},
        R"({"recording":1,"kind":3,"serialNumbers":"88","calibrationDates":"2026-02-01","instrumentNames":["Pelomark"],"battery":63,"charging":true,"targetFilters":["Mo/Mo","Mo/Rh","Rh/Rh"],"defaultTargetFilter":"Mo/Rh","ionChamber":{"name":"6 cc","factor":"1.02","constant":"3"},"firmware":12})");
    IDetectorService& service = *room.idle;
    EXPECT_TRUE(service.IsCharging());
    EXPECT_EQ(service.BatteryLevel(), 63);
    EXPECT_EQ(service.CalibrationDates(), "2026-02-01");
    EXPECT_EQ(service.InstrumentName(0), "Pelomark");
    EXPECT_EQ(service.InstrumentName(1), "");
    EXPECT_EQ(service.InstrumentName(-1), "");
    EXPECT_EQ(service.TargetFilterCount(), 3);
    Texts names{"left from before"};
    service.GetTargetFilters(names, 2);
    EXPECT_THAT(names, ElementsAre("Mo/Mo", "Mo/Rh"));
    service.GetTargetFilters(names, 9);
    EXPECT_THAT(names, ElementsAre("Mo/Mo", "Mo/Rh", "Rh/Rh"));
    service.GetTargetFilters(names, -1);
    EXPECT_THAT(names, IsEmpty());
    EXPECT_EQ(service.DefaultTargetFilter(), "Mo/Rh");
    EXPECT_EQ(service.DetectorKind(), "3");
    EXPECT_EQ(service.FirmwareVersion(), 12);
    EXPECT_EQ(service.IonChamberName(), "6 cc");
    EXPECT_EQ(service.IonCalFactor(), "1.02");
    EXPECT_EQ(service.IonCalConstant(), "3");
}

TEST(RecordedInstruments, ADosimeterIsConnectedForItsKindsWhileTheLinkIsAlive) {
    const std::pair<int, int32_t> rows[] = {{1, 0}, {2, 0}, {3, 1}, {4, 0}, {5, 1}};
    for (const auto& [kind, expected] : rows) {
        Room room({R"({"link":false})"}, R"({"recording":1,"kind":)" + std::to_string(kind) + "}");
        EXPECT_EQ(room.idle->DosimeterConnected(), expected) << kind;
        EXPECT_EQ(room.idle->DosimeterAttached(), std::to_string(expected)) << kind;
        room.Poll();
        EXPECT_EQ(room.idle->DosimeterConnected(), 0) << kind;
    }
}

TEST(RecordedInstruments, DosimeterSettingsAreKeptAndAnsweredWithTheRecordedStatus) {
    for (const int32_t status : {0, 7}) {
        Room room({}, R"({"recording":1,"kind":3,"syncStatus":)" + std::to_string(status) + "}");
        DosimeterSettings settings;
        settings.mode = 2;
        settings.pressure = 101.5F;
        EXPECT_FALSE(room.instruments.Sent().dosimeter.has_value());
        EXPECT_EQ(room.service->SyncDosimeter(settings), status);
        EXPECT_EQ(settings.mode, 2);
        EXPECT_EQ(settings.pressure, 101.5F);
        EXPECT_EQ(room.instruments.Sent().dosimeter.value().mode, 2);
    }
}

TEST(RecordedInstruments, WhatIsSentCanBeSeen) {
    Room room({});
    IDetectorService& service = *room.service;
    service.Mode("RADIO");
    service.Settings("AUTO");
    service.ExposureUnit(2);
    service.ExposureRateUnit(3);
    service.FluoroType(1);
    service.TimeUnit(2);
    service.PercentKV(75);
    service.Delay(-5);
    service.IncludeDelay(true);
    service.TargetFilter("Mo/Rh");
    service.MASInput(true);
    const SentSettings& sent = room.instruments.Sent();
    EXPECT_THAT((Texts{sent.mode, sent.settings, sent.targetFilter}), ElementsAre("RADIO", "AUTO", "Mo/Rh"));
    EXPECT_THAT(
        (std::vector<int32_t>{sent.exposureUnit, sent.exposureRateUnit, sent.fluoroType, sent.timeUnit,
                              sent.percentKV, sent.delay, sent.includeDelay, sent.masShunt}),
        ElementsAre(2, 3, 1, 2, 75, -5, 1, 1));
}

/// A call of each operation, in the order of the contract.
const std::pair<std::string_view, void (*)(IDetectorService&)> kCallsOfOperations[] = {
    {"IsCharging", [](IDetectorService& s) { s.IsCharging(); }},
    {"BatteryLevel", [](IDetectorService& s) { s.BatteryLevel(); }},
    {"WaveformResolution", [](IDetectorService& s) { s.WaveformResolution(); }},
    {"Mode", [](IDetectorService& s) { s.Mode(""); }},
    {"Settings", [](IDetectorService& s) { s.Settings(""); }},
    {"BeginRun", [](IDetectorService& s) { s.BeginRun(); }},
    {"Poll", [](IDetectorService& s) { s.Poll(0, 0); }},
    {"GetWaveform", [](IDetectorService& s) { s.GetWaveform(0, 0, 0, 1); }},
    {"ExposureDone", [](IDetectorService& s) { s.ExposureDone(); }},
    {"WakeUp", [](IDetectorService& s) { s.WakeUp(); }},
    {"Armed", [](IDetectorService& s) { s.Armed(true); }},
    {"TargetFilterCount", [](IDetectorService& s) { s.TargetFilterCount(); }},
    {"GetTargetFilters",
     [](IDetectorService& s) {
         Texts names;
         s.GetTargetFilters(names, 1);
     }},
    {"DefaultTargetFilter", [](IDetectorService& s) { s.DefaultTargetFilter(); }},
    {"ApplySettings", [](IDetectorService& s) { s.ApplySettings(); }},
    {"QueryTargetFilters", [](IDetectorService& s) { s.QueryTargetFilters(); }},
    {"ActivateTargetFilter", [](IDetectorService& s) { s.ActivateTargetFilter(); }},
    {"ExposureUnit", [](IDetectorService& s) { s.ExposureUnit(1); }},
    {"ExposureRateUnit", [](IDetectorService& s) { s.ExposureRateUnit(1); }},
    {"FluoroType", [](IDetectorService& s) { s.FluoroType(1); }},
    {"TimeUnit", [](IDetectorService& s) { s.TimeUnit(1); }},
    {"PercentKV", [](IDetectorService& s) { s.PercentKV(1); }},
    {"Delay", [](IDetectorService& s) { s.Delay(1); }},
    {"IncludeDelay", [](IDetectorService& s) { s.IncludeDelay(true); }},
    {"TargetFilter", [](IDetectorService& s) { s.TargetFilter(""); }},
    {"SerialNumbers", [](IDetectorService& s) { s.SerialNumbers(); }},
    {"CalibrationDates", [](IDetectorService& s) { s.CalibrationDates(); }},
    {"DosimeterConnected", [](IDetectorService& s) { s.DosimeterConnected(); }},
    {"LinkState", [](IDetectorService& s) { s.LinkState(); }},
    {"Disconnect", [](IDetectorService& s) { s.Disconnect(); }},
    {"ResetDetector", [](IDetectorService& s) { s.ResetDetector(); }},
    {"DetectorKind", [](IDetectorService& s) { s.DetectorKind(); }},
    {"FirmwareVersion", [](IDetectorService& s) { s.FirmwareVersion(); }},
    {"DosimeterAttached", [](IDetectorService& s) { s.DosimeterAttached(); }},
    {"ShowIonChamberDialog", [](IDetectorService& s) { s.ShowIonChamberDialog(); }},
    {"SyncDosimeter",
     [](IDetectorService& s) {
         DosimeterSettings settings;
         s.SyncDosimeter(settings);
     }},
    {"MASInput", [](IDetectorService& s) { s.MASInput(true); }},
    {"IonChamberName", [](IDetectorService& s) { s.IonChamberName(); }},
    {"IonCalFactor", [](IDetectorService& s) { s.IonCalFactor(); }},
    {"IonCalConstant", [](IDetectorService& s) { s.IonCalConstant(); }},
    {"InstrumentName", [](IDetectorService& s) { s.InstrumentName(0); }},
};
static_assert(std::size(kCallsOfOperations) == kOperationNames.size());

TEST(RecordedInstruments, EveryOperationFailsOnceWhenTheRecordingSaysSo) {
    for (const auto& [name, call] : kCallsOfOperations) {
        RecordedInstruments instruments(RecordingOf({R"({"throws":")" + std::string(name) + "\"}"}));
        const auto service = instruments.CreateService();
        for (const auto& [otherName, otherCall] : kCallsOfOperations) {
            if (otherName == name) continue;
            EXPECT_NO_THROW(otherCall(*service)) << name << ", " << otherName;
        }
        EXPECT_FALSE(instruments.Ended()) << name;
        const auto failing = [&instruments, &call = call] { call(*instruments.CreateService()); };
        EXPECT_THAT(failing, testing::ThrowsMessage<std::runtime_error>(std::string(name) + " failed"));
        EXPECT_FALSE(instruments.Ended()) << name << " can be tried again";
        EXPECT_THAT(instruments.Faults(),
                    testing::Contains("room.jsonl:2: " + std::string(name) + " failed"));
        EXPECT_NO_THROW(call(*service)) << name;
    }
}

TEST(RecordedInstruments, ThrowsAppliesAsSoonAsTheLineBeforeItIsDoneAndTakesNoPoll) {
    Room room({R"({"stopButton":true})", R"({"throws":"BatteryLevel"})", R"({"throws":"BatteryLevel"})",
               R"({"throws":"Poll"})", R"({"stopButton":false})"});
    EXPECT_NO_THROW(room.service->BatteryLevel());
    room.Poll();
    EXPECT_THROW(room.idle->BatteryLevel(), std::runtime_error);
    EXPECT_THROW(room.service->BatteryLevel(), std::runtime_error);
    EXPECT_NO_THROW(room.service->BatteryLevel());
    EXPECT_THROW(room.Poll(), std::runtime_error);
    EXPECT_THAT(room.heard, ElementsAre("stopButton on"));
    EXPECT_TRUE(room.Poll());
    EXPECT_THAT(room.heard, ElementsAre("stopButton on", "stopButton off"));
}

TEST(RecordedInstruments, ThrowsAfterAnExposureSparesThatExposure) {
    Room room({kWaveform, R"({"throws":"GetWaveform"})", kWaveform});
    Texts fetched;
    room.service->events.vti_CheckExposureWaveform.Connect(
        [&](uint8_t type) { fetched.push_back(room.service->GetWaveform(0, 1000, 1000, type)); });
    EXPECT_TRUE(room.Tick());
    EXPECT_THAT(fetched, ElementsAre("1"));
    EXPECT_TRUE(room.Tick());
    EXPECT_THAT(fetched, ElementsAre("1")) << "the second transfer failed";
    EXPECT_EQ(room.instruments.ExposuresDelivered(), 2);
}

TEST(RecordedLink, OpensForAllWhileTheInstrumentsAnswer) {
    Room room({R"({"link":false})", R"({"throws":"WakeUp"})", R"({"link":true})", R"({"quiet":1})"});
    const auto link = room.instruments.CreateLink();
    const auto other = room.instruments.CreateLink();
    EXPECT_FALSE(link->LinkOpen());
    link->SelectDetector(4);
    EXPECT_EQ(room.instruments.Sent().selectedKind, 4);
    link->OpenLink();
    EXPECT_TRUE(other->LinkOpen());
    other->CloseLink();
    EXPECT_FALSE(link->LinkOpen());
    EXPECT_TRUE(room.idle->Poll(0, 0)) << "closing is not losing";
}

TEST(RecordedLink, IsClosedByALossAndOpensAnewWhenTheRecordingBringsItBack) {
    const std::pair<Texts, bool> rows[] = {
        {{R"({"link":false})", R"({"link":true})"}, true},
        {{R"({"link":false})", R"({"quiet":1})", R"({"link":true})"}, false},
        {{R"({"link":false})"}, false},
    };
    for (const auto& [lines, opens] : rows) {
        Room room(lines);
        const auto link = room.instruments.CreateLink();
        link->OpenLink();
        room.Poll();
        EXPECT_FALSE(link->LinkOpen());
        link->OpenLink();
        EXPECT_EQ(link->LinkOpen(), opens) << lines.size();
        EXPECT_EQ(room.idle->Poll(0, 0), opens) << lines.size();
    }
}

TEST(RecordedInstruments, ServicesOutliveTheirMaker) {
    std::shared_ptr<IDetectorService> service;
    {
        RecordedInstruments instruments(RecordingOf({}));
        service = instruments.CreateService();
    }
    EXPECT_EQ(service->SerialNumbers(), "4711,88");
}

}  // namespace
}  // namespace vorex

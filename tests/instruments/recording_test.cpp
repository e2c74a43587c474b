#include "instruments/recording.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/file_fault.h"
#include "test_paths.h"

namespace vorex {
namespace {

using testing::HasSubstr;

constexpr const char* kFirst = R"({"recording":1,"kind":4})";

struct Fault {
    std::string text;
    const char *found, *expected;
};

/// The message that refuses the text; empty when it is taken.
std::string Refusal(const std::string& text) {
    return test::MessageOf([&] { ParseRecording(text, "room.jsonl"); });
}

void ExpectRefused(const std::string& text, const Fault& fault, const std::string& place = "room.jsonl") {
    const std::string message = Refusal(text);
    for (const std::string& part :
         {place, std::string(fault.found), std::string("expected "), std::string(fault.expected)})
        EXPECT_THAT(message, HasSubstr(part)) << text;
}

TEST(Recording, WhatTheFirstLineLeavesOutHasADefault) {
    const Recording recording = ParseRecording(R"({"recording":1,"kind":1})", "room.jsonl");
    EXPECT_EQ(recording.serialNumbers, "");
    EXPECT_EQ(recording.battery, 100);
    EXPECT_FALSE(recording.charging);
    EXPECT_EQ(recording.defaultTargetFilter, "");
    EXPECT_EQ(recording.firmware, 0);
    EXPECT_EQ(recording.syncStatus, 0);
    EXPECT_EQ(ParseRecording(R"({"recording":1,"kind":1,"targetFilters":["Rh/Rh","Mo/Mo"]})", "f")
                  .defaultTargetFilter,
              "Rh/Rh");
}

TEST(Recording, EachEventBecomesALineWithItsPlaceInTheFile) {
    const Recording recording = ParseRecording(std::string("\xEF\xBB\xBF") + kFirst + "\r\n" +
                                                   "{\"quiet\":2}\n"
                                                   "\n"
                                                   "{\"stopButton\":true}\n"
                                                   "  { \"link\" : false }\r\n"
                                                   "{\"sensorReset\":true}\n"
                                                   "{\"zeroing\":false}\n"
                                                   "{\"wakeUp\":true}\n"
                                                   "{\"throws\":\"BatteryLevel\"}\n"
                                                   "{\"exposure\":{\"mas\":[\"1\",\"2\",\"3\",\"4\"]}}",
                                               "room.jsonl");
    struct Row {
        int32_t line;
        RecordedEvent event;
        int32_t number;
    };
    const Row expected[] = {
        {2, RecordedEvent::kQuiet, 2},   {4, RecordedEvent::kStopButton, 1},
        {5, RecordedEvent::kLink, 0},    {6, RecordedEvent::kSensorReset, 1},
        {7, RecordedEvent::kZeroing, 0}, {8, RecordedEvent::kWakeUp, 1},
        {9, RecordedEvent::kThrows, 1},  {10, RecordedEvent::kExposure, 0},
    };
    ASSERT_EQ(recording.lines.size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_EQ(recording.lines[i].line, expected[i].line) << i;
        EXPECT_EQ(recording.lines[i].event, expected[i].event) << i;
        EXPECT_EQ(recording.lines[i].number, expected[i].number) << i;
    }
}

TEST(Recording, ReadingsKeepTheirTextsInTheOrderOfTheirEvents) {
    const Recording recording = ParseRecording(std::string(kFirst) +
                                                   R"(
{"exposure":{"detector":["80,1","80.9","80.4","12.3","123.0","100.2","10","0","22421::UL","3.1"],"dosimeter":["22.1","760","1.01","0.2","12.3","123.0","300"],"mas":["200","20.1","","0.61"],"waveforms":[{"type":1,"resolution":10,"samples":"0,40.5,0"},{"type":3,"resolution":0.5,"samples":""}]}})",
                                               "room.jsonl");
    ASSERT_EQ(recording.exposures.size(), 1U);
    const RecordedExposure& exposure = recording.exposures[0];
    const ZrdReading& zrd = exposure.detector.value();
    EXPECT_EQ((std::vector<std::string>{zrd.kvpAvg, zrd.kvpMax, zrd.kvPpv, zrd.exposure, zrd.exposureRate,
                                        zrd.exposureTime, zrd.exposurePulses, zrd.pulseRate, zrd.pulseWidth,
                                        zrd.hvl}),
              (std::vector<std::string>{"80,1", "80.9", "80.4", "12.3", "123.0", "100.2", "10", "0",
                                        "22421::UL", "3.1"}));
    const PelomarkReading& dose = exposure.dosimeter.value();
    EXPECT_EQ((std::vector<std::string>{dose.temperature, dose.pressure, dose.adcf, dose.leakCurrent,
                                        dose.dose, dose.doseRate, dose.biasVoltage}),
              (std::vector<std::string>{"22.1", "760", "1.01", "0.2", "12.3", "123.0", "300"}));
    const MasReading& mas = exposure.mas.value();
    EXPECT_EQ((std::vector<std::string>{mas.ma, mas.mas, mas.masPerPulse, mas.dosePerMas}),
              (std::vector<std::string>{"200", "20.1", "", "0.61"}));
    ASSERT_EQ(exposure.waveforms.size(), 2U);
    EXPECT_EQ(exposure.waveforms[0].type, 1);
    EXPECT_EQ(exposure.waveforms[0].resolution, 10);
    EXPECT_EQ(exposure.waveforms[0].samples, "0,40.5,0");
    EXPECT_EQ(exposure.waveforms[1].type, 3);
    EXPECT_EQ(exposure.waveforms[1].resolution, 0.5F);
}

TEST(Recording, AFaultOfTheFirstLineNamesWhatWasFoundAndWhatWasExpected) {
    const Fault rows[] = {
        {"", "room.jsonl: found an empty file", "\"recording\":1"},
        {"<VorexSequence Version=\"1\">", "room.jsonl:1: found broken JSON at column 1", "\"recording\":1"},
        {"{\"quiet\":2}", "found \"{\\\"quiet\\\":2}\"", "a first line such as {\"recording\":1"},
        {"[1]", "found \"[1]\"", "a first line such as"},
        {"{\"recording\":1}", "found \"{\\\"recording\\\":1}\"", "\"kind\""},
        {R"({"recording":2,"kind":1})", "\"recording\":2", "version 1"},
        {R"({"recording":"1","kind":1})", "\"recording\":\"1\"", "version 1"},
        {R"({"recording":1,"kind":0})", "\"kind\":0", "a whole number from 1 to 5"},
        {R"({"recording":1,"kind":6})", "\"kind\":6", "a whole number from 1 to 5"},
        {R"({"recording":1,"kind":1.5})", "\"kind\":1.5", "a whole number from 1 to 5"},
        {R"({"recording":1,"kind":18446744073709551615})", "\"kind\":18446744073709551615", "from 1 to 5"},
        {R"({"recording":1,"kind":1,"seralNumbers":"1"})", "unknown \"seralNumbers\"", "\"serialNumbers\""},
        {R"({"recording":1,"kind":1,"serialNumbers":4711})", "\"serialNumbers\":4711", "a text in quotes"},
        {R"({"recording":1,"kind":1,"serialNumbers":"a\u0007"})", "\"serialNumbers\":\"a\\u0007\"",
         "without control characters"},
        {R"({"recording":1,"kind":1,"instrumentNames":"ZRD"})", "\"instrumentNames\":\"ZRD\"", "a list"},
        {R"({"recording":1,"kind":1,"targetFilters":[1]})", "\"targetFilters\":1", "a text in quotes"},
        {R"({"recording":1,"kind":1,"battery":101})", "\"battery\":101", "from 0 to 100"},
        {R"({"recording":1,"kind":1,"charging":0})", "\"charging\":0", "true or false"},
        {R"({"recording":1,"kind":1,"ionChamber":"6 cc"})", "\"6 cc\"", "\"name\", \"factor\", \"constant\""},
        {R"({"recording":1,"kind":1,"ionChamber":{"nam":""}})", "unknown \"nam\" in ionChamber", "\"name\""},
        {R"({"recording":1,"kind":1,"firmware":-1})", "\"firmware\":-1", "a whole number from 0"},
        {R"({"recording":1,"kind":1,"syncStatus":2147483648})", "\"syncStatus\":2147483648", "to 2147483647"},
    };
    for (const Fault& row : rows) ExpectRefused(row.text, row);
}

TEST(Recording, AFaultOfALineNamesTheLineWhatWasFoundAndWhatWasExpected) {
    const Fault rows[] = {
        {"{\"quiet\":2", "broken JSON at column 11 of \"{\\\"quiet\\\":2\"",
         "one of \"quiet\", \"exposure\""},
        {"\"quiet\"", "found \"quiet\"", "an object with one of \"quiet\""},
        {std::string("{\"quiet\":2}\0{\"link\":false}", 26), "found a zero byte", ""},
        {"{}", "found {}", "an object with one of \"quiet\""},
        {R"({"quiet":1,"link":false})", "2 events in a line", "one event in a line"},
        {R"({"recording":1})", "unknown event \"recording\"", "\"zeroing\", \"wakeUp\", \"throws\""},
        {R"({"Quiet":1})", "unknown event \"Quiet\"", "one of \"quiet\""},
        {R"({"quiet":-1})", "\"quiet\":-1", "a whole number from 0"},
        {R"({"stopButton":1})", "\"stopButton\":1", "true or false"},
        {R"({"throws":true})", "\"throws\":true", "a text in quotes"},
        {R"({"throws":"poll"})", "no operation \"poll\"", "one of IsCharging, BatteryLevel"},
        {R"({"exposure":[]})", "found \"exposure\":[]", "\"detector\", \"dosimeter\", \"mas\""},
        {R"({"exposure":{}})", "an exposure without a reading", "\"detector\", \"dosimeter\" or \"mas\""},
        {R"({"exposure":{"detektor":[]}})", "unknown \"detektor\" in exposure", "\"detector\""},
        {R"({"exposure":{"detector":["1","2","3","4","5","6","7","8","9"]}})", "\"detector\" with 9 values",
         "10: \"kvpAvg\""},
        {R"({"exposure":{"dosimeter":["1","2","3","4","5","6","7","8"]}})", "\"dosimeter\" with 8 values",
         "7: \"temperature\""},
        {R"({"exposure":{"mas":["1","2","3"]}})", "\"mas\" with 3 values", "4: \"ma\""},
        {R"({"exposure":{"mas":["1","2",3.5,"4"]}})", "\"mas masPerPulse\":3.5", "a text in quotes"},
        {R"({"exposure":{"mas":{}}})", "\"mas\":{}", "a list"},
        {R"({"exposure":{"mas":["","","",""],"waveforms":{}}})", "\"waveforms\":{}", "a list"},
        {R"({"exposure":{"mas":["","","",""],"waveforms":[{"type":3,"resolution":1}]}})",
         "a waveform without", "\"samples\""},
        {R"({"exposure":{"mas":["","","",""],"waveforms":[{"type":2,"resolution":1,"samples":""}]}})",
         "\"type\":2", "1 (kV) or 3 (mA)"},
        {R"({"exposure":{"mas":["","","",""],"waveforms":[{"type":1,"resolution":0,"samples":""}]}})",
         "\"resolution\":0", "a number from 0.001"},
        {R"({"exposure":{"mas":["","","",""],"waveforms":[{"type":1,"resolution":1,"samples":[0,1]}]}})",
         "\"samples\":[0,1]", "a text"},
        {R"({"exposure":{"mas":["","","",""],"waveforms":[{"type":3,"resolution":1,"samples":"1"},{"type":3,"resolution":1,"samples":"2"}]}})",
         "two waveforms of type 3", "one of each type"},
    };
    for (const Fault& row : rows)
        ExpectRefused(std::string(kFirst) + "\n{\"quiet\":1}\n" + row.text + "\n{\"link\":5}", row,
                      "room.jsonl:3: found ");
}

TEST(Recording, ALineThatIsTooRichIsRefusedShortly) {
    std::string rich = std::string(kFirst) + "\n{\"exposure\":[0";
    for (int i = 0; i < 20'000; ++i) rich += ",0";
    EXPECT_THAT(Refusal(rich + "]}"), HasSubstr("room.jsonl:2: found more than 10000 values"));
    EXPECT_LT(Refusal(rich + "]}").size(), 400U);
}

TEST(Recording, MoreLinesThanTheLimitAreRefused) {
    const std::string most = kFirst + std::string(static_cast<std::size_t>(kMaxRecordingLines), '\n');
    EXPECT_EQ(Refusal(most), "");
    EXPECT_EQ(Refusal(most + "{}"),
              "room.jsonl:1000001: found more lines than 1000000; expected a recording of at most that");
}

TEST(Recording, AFileThatCannotBeReadIsNamed) {
    const std::filesystem::path path = std::filesystem::path(test::kScratchDir) / "recording";
    const auto refusal = [&] { return test::MessageOf([&] { LoadRecording(path.string()); }); };
    std::filesystem::remove_all(path);
    EXPECT_EQ(refusal(), path.string() + ": found no such file; expected a recording");
    std::filesystem::create_directory(path);
    EXPECT_EQ(refusal(), path.string() + ": found a folder; expected a recording");
    std::filesystem::remove(path);
    std::ofstream(path) << kFirst;
    std::filesystem::resize_file(path, kMaxRecordingBytes + 1);
    EXPECT_THAT(refusal(), HasSubstr("found more than 256 MB; expected a recording of at most that"));
    std::filesystem::remove(path);
}

}  // namespace
}  // namespace vorex

#include <algorithm>
#include <iterator>
#include <map>

#include "cli/program_fixture.h"
#include "foundation/number_text.h"
#include "test_paths.h"

// The example units in simulated rooms, through the program.

namespace vorex::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kUnits[] = {"radiographic_unit.xml", "fluoroscopic_unit.xml", "mammographic_unit.xml"};
const std::map<std::string, std::string> kAllPassed = {{"100", "1"},  {"200", "1"}, {"300", "1"},
                                                       {"500", "1"},  {"700", "1"}, {"900", "1"},
                                                       {"1100", "1"}, {"1200", "1"}};

class SimulatedRoomTest : public ProgramTest {
  protected:
    static std::string Example(const std::string& name) {
        return (fs::path(kSourceDir) / "examples" / name).string();
    }

    int RunUnit(const std::string& unit, const std::string& room, const std::string& seed = "1",
                const std::string& script = {}) {
        fs::remove(Path("out.xml"));
        const std::vector<std::string> given = {"--room", room};
        return RunToOut({"run", unit, "--instruments", "simulated:" + seed, "--operator", script},
                        room.empty() ? std::vector<std::string>() : given);
    }
    /// Status of every measuring test of the three units, by its number.
    std::map<std::string, std::string> Statuses(const std::string& room, const std::string& seed) {
        std::map<std::string, std::string> statuses;
        for (const char* unit : kUnits) {
            RunUnit(Example(unit), room, seed);
            for (const auto& test : result.select_nodes("//TestElement[@TestID!='0']"))
                statuses[test.node().attribute("TestID").value()] =
                    test.node().child("ResultItem").child_value("Status");
        }
        return statuses;
    }
    std::string Room(const std::string& members) const {
        return Write("room.json", R"({"room":1,)" + members + "}");
    }
};

TEST_F(SimulatedRoomTest, ThePracticalPeakVoltageFollowsTheRipple) {
    // The mean of U weighted with U^2: the peak of 80 kV itself without ripple, and for a rectified sine
    // 80 * (4 / 3) / (pi / 2) = 67.9.
    for (const auto& [ripple, voltage] : {std::pair("0", "80.0"), std::pair("100", "67.9")}) {
        const std::string room =
            Room(R"("instruments":{"kvNoisePercent":0},"radiography":{"kvpErrorPercent":0,"kvpVariation":0,)"
                 R"("ripplePercent":)" +
                 std::string(ripple) + "}");
        RunUnit(Example("radiographic_unit.xml"), room);
        const auto ppv = result.select_node("//TestElement[@TestID='100']//Measurement[@Key='kV PPV']/Value");
        EXPECT_STREQ(ppv.node().child_value(), voltage) << ripple;
    }
}

TEST_F(SimulatedRoomTest, EachFaultFailsTheTestThatShouldFindItAndNoOther) {
    // A room, and the number of the test that fails in it; empty: none.
    const std::pair<std::string, std::string> cases[] = {
        {Example("rooms/good.json"), ""},
        {"", ""},
        {Example("rooms/kvp_high.json"), "200"},
        {Example("rooms/drifting_timer.json"), "200"},
        {Example("rooms/nonlinear_ma.json"), "300"},
        {Example("rooms/unstable_aec.json"), "1100"},
        {Example("rooms/soft_beam.json"), "100"},
        {Example("rooms/weak_mammography_tube.json"), "1200"},
        {Write("fluoro_kvp.json", R"({"room":1,"fluoroscopy":{"kvpErrorPercent":8}})"), "500"},
        {Write("fluoro_rate.json", R"({"room":1,"fluoroscopy":{"highestRate":100}})"), "700"},
        {Write("mammo_kvp.json", R"({"room":1,"mammography":{"kvpErrorPercent":8}})"), "900"},
    };
    for (const auto& [room, failing] : cases)
        for (const char* seed : {"1", "2", "3", "20260115", "18446744073709551615"}) {
            auto expected = kAllPassed;
            if (!failing.empty()) expected[failing] = "2";
            EXPECT_EQ(Statuses(room, seed), expected) << room << ", seed " << seed;
        }
}

TEST_F(SimulatedRoomTest, ALostLinkEndsTheRunAndKeepsWhatWasMeasured) {
    for (const char* unit : kUnits) {
        EXPECT_EQ(RunUnit(Example(unit), Example("rooms/flaky_link.json")), kExitFault) << unit;
        EXPECT_THAT(err, HasSubstr("flaky_link.json: the link to the instruments was lost after exposure 2"));
        EXPECT_EQ(StatusOf(3), "") << "the sequence has ended";
        // Two exposures were made, and two are in the file, as they were without the fault.
        const std::string values = ValuesOf(2, "kVp Avg");
        EXPECT_EQ(std::count(values.begin(), values.end(), '|'), 1) << values;
        RunUnit(Example(unit), "");
        EXPECT_TRUE(ValuesOf(2, "kVp Avg").starts_with(values + "|")) << values;
    }
}

TEST_F(SimulatedRoomTest, TheSameSeedGivesTheSameFileAndAnotherSeedAnother) {
    EXPECT_EQ(RunUnit(Example(kUnits[0]), "", "7"), kExitPassed);
    const std::string first = Read("out.xml");
    EXPECT_EQ(RunUnit(Example(kUnits[0]), "", "7"), kExitPassed);
    EXPECT_EQ(Read("out.xml"), first);
    EXPECT_EQ(RunUnit(Example(kUnits[0]), "", "8"), kExitPassed);
    EXPECT_NE(Read("out.xml"), first);
}

TEST_F(SimulatedRoomTest, AnImportedWaveformChangesNoReading) {
    EXPECT_EQ(RunUnit(Example(kUnits[0]), ""), kExitPassed);
    const std::string withWaveform = ValuesOf(2, "Exposure");
    EXPECT_TRUE(ResultOf(2).child("Waveform"));
    std::ifstream file(Example(kUnits[0]));
    std::string text{std::istreambuf_iterator<char>(file), {}};
    const std::string flag = "<NumberOfExposures0>1<";
    text.replace(text.find(flag), flag.size(), "<NumberOfExposures0>0<");
    RunUnit(Write("plain.xml", text), "");
    EXPECT_FALSE(ResultOf(2).child("Waveform").child("Value"));
    EXPECT_EQ(ValuesOf(2, "Exposure"), withWaveform);
}

TEST_F(SimulatedRoomTest, ASkippedTestChangesNoReadingAndARepeatedExposureIsAnother) {
    EXPECT_EQ(RunUnit(Example(kUnits[0]), ""), kExitPassed);
    const std::string linearity = ValuesOf(4, "Exposure");
    const std::string accuracy = ValuesOf(3, "Exposure");
    EXPECT_EQ(RunUnit(Example(kUnits[0]), "", "1", ";skip"), kExitPassed);
    EXPECT_EQ(ValuesOf(3, "Exposure"), "");
    EXPECT_EQ(ValuesOf(4, "Exposure"), linearity);
    EXPECT_EQ(RunUnit(Example(kUnits[0]), "", "1", ";start,redo 4,next"), kExitPassed);
    EXPECT_NE(ValuesOf(3, "Exposure"), accuracy);
    EXPECT_EQ(ValuesOf(4, "Exposure"), linearity);
}

TEST_F(SimulatedRoomTest, TheOperatorSetsTheRowThatIsRedone) {
    // Rows of 60, 80, 100 and 120 kV: redoing the second sets 80 kV again.
    EXPECT_EQ(RunUnit(Example(kUnits[0]), "", "1", ";start,redo 2,next"), kExitPassed) << err;
    const std::string kvp = ValuesOf(3, "kVp Avg");
    const auto values = SplitText(kvp, '|');
    ASSERT_EQ(values.size(), 4U);
    for (std::size_t row = 0; row < values.size(); ++row)
        EXPECT_NEAR(ReadNumber(values[row]), 60 + 20 * static_cast<double>(row), 1.5) << kvp;
}

TEST_F(SimulatedRoomTest, EveryNewTestRunsInTheRoomWithEveryKindOfInstruments) {
    for (const char* test : {"100", "200", "300", "500", "700", "900", "1100", "1200"})
        for (const char* kind : {"1", "2", "3", "4", "5"}) {
            ASSERT_EQ(Run({"new", test, "-o", Path("new.xml")}), kExitPassed) << err;
            const int code =
                RunUnit(Path("new.xml"), Room(R"("instruments":{"kind":)" + std::string(kind) + "}"));
            EXPECT_TRUE(code == kExitPassed || code == kExitFailed)
                << test << ", kind " << kind << ": " << err;
            EXPECT_NE(StatusOf(1), "") << test << ", kind " << kind;
            EXPECT_NE(StatusOf(1), "0") << test << ", kind " << kind;
        }
}

TEST_F(SimulatedRoomTest, ADetectorThatFallsAsleepIsWokenAndTheRunContinues) {
    // Ten minutes, the usual time-out, are 1200 polls.
    EXPECT_EQ(RunUnit(Example(kUnits[0]), Room(R"("instruments":{"pollsBeforeExposure":1500})")), kExitPassed)
        << err;
    EXPECT_EQ(StatusOf(4), "1");
}

TEST_F(SimulatedRoomTest, WhatTheUnitRefusesEndsTheRunWithTheReason) {
    Write("s.xml", Sequence(Element(1, 100, Exposures(2) + "<MachineKV>200</MachineKV>")));
    EXPECT_EQ(RunUnit(Path("s.xml"), ""), kExitFault);
    EXPECT_THAT(err, HasSubstr("refuses 200 kV; it takes 40-150 kV"));
}

TEST_F(SimulatedRoomTest, AnEmptyBatteryEndsTheRunAndKeepsWhatWasMeasured) {
    EXPECT_EQ(RunUnit(Example(kUnits[0]), Room(R"("instruments":{"battery":30,"batteryPerExposure":10})")),
              kExitFault);
    EXPECT_THAT(err, HasSubstr("battery"));
    const std::string values = ValuesOf(2, "kVp Avg");
    EXPECT_EQ(std::count(values.begin(), values.end(), '|'), 2) << "three exposures: " << values;
}

TEST_F(SimulatedRoomTest, ADecimalCommaIsReadAsAPoint) {
    EXPECT_EQ(RunUnit(Example(kUnits[0]), ""), kExitPassed);
    const std::string kvp = ValuesOf(2, "kVp Avg");
    EXPECT_EQ(RunUnit(Example(kUnits[0]), Room(R"("instruments":{"decimalComma":true})")), kExitPassed);
    EXPECT_EQ(ValuesOf(2, "kVp Avg"), kvp);
}

TEST_F(SimulatedRoomTest, ABadRoomIsRefusedWithItsPlaceAndWhatWasExpected) {
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"", {"an empty file", "a room such as"}},
        {"{\"room\":1,\n \"radiography\":{\"kvpErrorPercent\":8,}}", {"bad.json:2", "broken JSON at column"}},
        {"[1]", {"a room such as"}},
        {R"({"radiography":{}})", {"a room such as"}},
        {R"({"room":2})", {"\"room\":2", "version 1"}},
        {R"({"room":1,"radiograpy":{}})", {"radiograpy", "\"radiography\", \"fluoroscopy\""}},
        {R"({"room":1,"radiography":{"kvp":8}})", {"\"kvp\" in radiography", "kvpErrorPercent"}},
        {R"({"room":1,"radiography":{"kvpErrorPercent":"8"}})",
         {"\"kvpErrorPercent\":\"8\"", "-50.0 to 50.0"}},
        {R"({"room":1,"radiography":{"generator":"steam"}})", {"steam", "\"12-pulse\""}},
        {R"({"room":1,"radiography":{"lowestKv":90,"highestKv":80}})", {"radiography", "highestKv"}},
        {R"({"room":1,"radiography":{"maStations":[{"mA":100}]}})", {"an mA station", "errorPercent"}},
        {R"({"room":1,"instruments":{"kind":6}})", {"\"kind\":6", "0 to 5"}},
    };
    for (const auto& [text, message] : cases) {
        EXPECT_EQ(RunUnit(Example(kUnits[0]), Write("bad.json", text)), kExitUsage) << text;
        for (const std::string& part : message)
            EXPECT_THAT(err, HasSubstr(part)) << text << "\n" << part << "\n" << err;
        EXPECT_FALSE(Exists("out.xml")) << text;
    }
}

}  // namespace
}  // namespace vorex::test

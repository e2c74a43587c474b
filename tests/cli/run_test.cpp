#include "cli/program_fixture.h"

namespace vorex::test {
namespace {

using RunCommandTest = ProgramTest;

const std::string kKvLimit = Limit("ER kVp Avg", R"(<High Value="90"/>)");
const std::string kBothKinds = "<DetectorName>4</DetectorName>";

TEST_F(RunCommandTest, EveryNewTestRunsAndKeepsItsBytesThroughJudging) {
    Write("r.jsonl", kHead + Shot("28.1") + Shot("28.2") + Shot("28.0") + Shot("28.1"));
    for (const char* test : {"100", "200", "300", "500", "700", "900", "1100", "1200"}) {
        ASSERT_EQ(Run({"new", test, "-o", Path("new.xml")}), kExitPassed) << err;
        ASSERT_EQ(RunFile("new.xml", "r.jsonl"), kExitPassed) << test << ": " << err;
        EXPECT_EQ(StatusOf(1), "1") << test;
        ExpectJudgedAlike();
        // A second run of the same input gives the same bytes.
        const std::string first = Read("out.xml");
        ASSERT_EQ(RunFile("new.xml", "r.jsonl"), kExitPassed);
        EXPECT_EQ(Read("out.xml"), first) << test;
    }
}

TEST_F(RunCommandTest, AFailedLimitFailsTheTestItsGroupAndTheProgram) {
    const std::string limit = Limit("ER kVp Avg", R"x(<High Value="5" Expression="X+(X*Y%)"/>)x");
    EXPECT_EQ(RunOn(Group(1, Element(2, 100, Exposures(2), limit) + Element(3, 100, Exposures(1))),
                    Shot("84") + Shot("84.1") + Shot("80")),
              kExitFailed);
    EXPECT_EQ(StatusOf(2) + StatusOf(3) + StatusOf(1), "212");
    EXPECT_EQ(ValuesOf(2, "kVp Avg"), "84|84.1");
    EXPECT_THAT(Shown(), HasSubstr("Exposure 2: kVp Avg [KV] 84.1: at most 84 (Site 1)"));
    EXPECT_THAT(out, Not(HasSubstr("Exposure 1: kVp"))) << "a value on the limit passes";
}

TEST_F(RunCommandTest, TheServiceRecordIsOfTheLatestExposureAndOneJudgementSettlesIt) {
    struct Case {
        const char *first, *second;
        const char* code;
    };
    for (const Case& c : {Case{"80", "95", "F"}, {"80", "80", ""}, {"95", "80", ""}}) {
        RunOn(Element(1, 500, Exposures(2), kKvLimit), Shot(c.first) + Shot(c.second));
        EXPECT_STREQ(ResultOf(1).child("ServiceRecord").attribute("Code").value(), c.code);
    }
    std::string narrower = Read("out.xml");
    narrower.replace(narrower.find("High Value=\"90\""), 15, "High Value=\"70\"");
    Write("narrower.xml", narrower);
    EXPECT_EQ(Run({"judge", Path("narrower.xml"), "-o", Path("out.xml")}), kExitFailed);
    EXPECT_THAT(Read("out.xml"), HasSubstr("<ServiceRecord Code=\"F\">"));
    ExpectJudgedAlike(kExitFailed);
}

TEST_F(RunCommandTest, TheServiceRecordHoldsTheReadingsWithAllTheirDigits) {
    const std::string settings =
        Exposures(1) + "<NumberOfExposures0>0</NumberOfExposures0><MachineKV0>80</MachineKV0>";
    EXPECT_EQ(
        RunOn(Element(1, 500, settings, Limit("ER kVp Avg", R"(<High Value="70"/>)")), Shot("80.0", "OL")),
        kExitFailed);
    EXPECT_STREQ(ResultOf(1).child_value("ServiceRecord"), "/0/80.0/81/80/OL/100/100/3.1/0.0");
    ExpectJudgedAlike(kExitFailed);  // the calculated 0.0 is saved as a number
}

TEST_F(RunCommandTest, AVariationLimitJudgesTheVariationAndNothingElse) {
    // Exposures 10 and 11: mean 10.5, standard deviation 0.7071, variation 0.067, shown as 0.07.
    const std::pair<const char*, int> cases[] = {
        {R"(<High Value="0.05" Expression="CV"/>)", kExitFailed},
        {R"(<High Value="0.07" Expression="CV"/>)", kExitPassed},
        {R"(<High Value="11" Expression="Y"/>)", kExitPassed},
        {R"(<High Value="10.5"/>)", kExitFailed},
    };
    for (const auto& [side, code] : cases) {
        EXPECT_EQ(RunOn(Element(1, 100, Exposures(2), Limit("ER Exposure", side)),
                        Shot("80", "10") + Shot("80", "11")),
                  code)
            << side;
        EXPECT_EQ(ValuesOf(1, "ER Exposure"), "0.0|0.07");
    }
}

TEST_F(RunCommandTest, ARedoReplacesItsExposureAndCountsOverAll) {
    struct Case {
        const char *script, *exposures, *averages;
    };
    for (const Case& c : {Case{"start,redo 3,next", "10|20|40", "10.0|15.0|23.33"},
                          // 40, 20, 30, in the last as well.
                          Case{"start,redo 1,next", "40|20|30", "30.0|15.0|30.0"}}) {
        RunPassing(Element(1, 100, Exposures(3)),
                   Shot("80", "10") + Shot("80", "20") + Shot("80", "30") + Shot("80", "40"), c.script);
        EXPECT_EQ(ValuesOf(1, "Exposure"), c.exposures);
        EXPECT_EQ(ValuesOf(1, "ER Avg Exposure"), c.averages);
    }
}

TEST_F(RunCommandTest, ARedoWithAMasMeterReplacesItsReadingsAsWell) {
    RunPassing(Element(1, 100, kBothKinds + Exposures(3)),
               kHeadOfBoth + Shot("80", "10", MasOf("20")) + Shot("80", "20", MasOf("20")) +
                   Shot("80", "30", MasOf("20")) + Shot("80", "40", MasOf("10")),
               "start,redo 2,next");
    EXPECT_EQ(ValuesOf(1, "Exposure"), "10|40|30");
    EXPECT_EQ(ValuesOf(1, "ER mAs"), "20|10|20");
    EXPECT_EQ(ValuesOf(1, "ER DosemAs"), "0.5|4|1.5");
    // (20 + 10 + 20) / 3 and (0.5 + 4 + 1.5) / 3; the first row keeps what it had.
    EXPECT_EQ(ValuesOf(1, "ER Avg mAs"), "20.0|16.67|16.67");
    EXPECT_EQ(ValuesOf(1, "ER Avg DosemAs"), "0.5|2.0|2.0");
}

TEST_F(RunCommandTest, AStopKeepsWhatWasTakenAndAShortRunNamesNoInstruments) {
    const std::string fluoro = "<MeasurementMode>2</MeasurementMode>";
    const std::string held = "{\"stopButton\":true}\n";
    const std::string released = "{\"stopButton\":false}\n";
    const struct {
        const char* what;
        std::string element, events, script, values, instruments;
    } cases[] = {
        {"the run ends", Element(1, 100, Exposures(3)), "", "start,stop@2,next", "80|81", ""},
        {"a redo takes its exposure", Element(1, 100, Exposures(3)), "", "start,stop@2,redo 1,next", "82|81",
         ""},
        {"a new start begins anew", Element(1, 100, Exposures(3)), "", "start,stop@1,start,next", "81|82|83",
         "1"},
        {"a stop before the first", Element(1, 100, Exposures(2)), "", "start,stop@0,start,next", "80|81",
         "1"},
        // In fluoroscopy it ends the exposure that is held, and not the run, which is then complete and names
        // its instruments. A redo fills that exposure.
        {"a stop in a hold", Element(1, 700, Exposures(2) + fluoro),
         held + held + released + Shot("80") + Shot("90"), "start,stop@0,redo 1,next", "90|80", "1"},
        {"a stop after the last adds none", Element(1, 700, Exposures(1) + fluoro),
         held + Shot("80") + released, "start,stop@1,next", "80", "1"},
    };
    const std::string plain = Shot("80") + Shot("81") + Shot("82") + Shot("83");
    for (const auto& c : cases) {
        RunPassing(c.element, c.events.empty() ? plain : c.events, c.script);
        EXPECT_EQ(ValuesOf(1, "kVp Avg"), c.values) << c.what;
        EXPECT_EQ(ResultOf(1).attribute("MTI").value(), c.instruments) << c.what;
        EXPECT_TRUE(ResultOf(1).select_nodes("Measurement[@Missing]").empty()) << c.what;
    }
}

TEST_F(RunCommandTest, SkipNotApplicableAndAbortLeaveTheirResults) {
    const std::string earlier =
        R"(<ResultItem><Status>1</Status><Measurement Key="Import Waveform"><Value Type="5">0</Value>)"
        R"(<Status>1</Status></Measurement></ResultItem>)";
    struct Case {
        const char* script;
        int code;
        const char *first, *second;
    };
    const Case cases[] = {
        {"skip;start,next", kExitPassed, "", "1"},  // a skipped element loses its earlier result
        {"na;start,next", kExitPassed, "3", "1"},
        {"next;start,next", kExitPassed, "1", "1"},  // left without a start: unchanged
        {"next;start", kExitPassed, "1", "1"},       // Next is pressed when the steps are used up
        {"abort", kExitAborted, "", ""},
        {"start,next;abort", kExitAborted, "1", ""},
        {"previous", kExitPassed, "1", ""},  // on the first element it ends the sequence
        {"next;previous;na;start,next", kExitPassed, "3", "1"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(RunOn(Element(1, 100, Exposures(1), earlier) + Element(2, 100, Exposures(1)),
                        Shot("80") + Shot("81"), c.script),
                  c.code)
            << c.script << ": " << err;
        EXPECT_EQ(StatusOf(1), c.first) << c.script;
        EXPECT_EQ(StatusOf(2), c.second) << c.script;
        // A result that is not applicable keeps no measurements.
        EXPECT_TRUE(StatusOf(1) != "3" || ResultOf(1).child("Measurement").empty());
    }
}

TEST_F(RunCommandTest, TheFirstChildOfAGroupDecidesForTheWholeGroup) {
    const auto test = [](int id) { return Element(id, 100, Exposures(1)); };
    const std::string unit = Group(1, test(2) + Group(3, test(4) + test(5))) + test(6);
    const std::pair<const char*, const char*> cases[] = {
        // A script, and the statuses of elements 1 to 6.
        {"na;start,next", "3,3,3,3,3,1"},
        {"skip;start,next", "0,,0,,,1"},
        {"start,next;start,next;na;start,next", "1,1,1,1,3,1"},
        {"start,next;na", "1,1,3,3,3,1"},
        // Previous on the first child of the inner group goes back to the element before it.
        {"start,next;previous;next", "1,1,1,1,1,1"},
    };
    for (const auto& [script, expected] : cases) {
        RunOn(unit, Shot("80") + Shot("81") + Shot("82") + Shot("83"), script);
        std::string statuses;
        for (int id = 1; id <= 6; ++id) statuses += (id > 1 ? "," : "") + StatusOf(id);
        EXPECT_EQ(statuses, expected) << script << ": " << err;
    }
}

TEST_F(RunCommandTest, WhatTheInstrumentsCannotDoIsNoFaultOfTheScript) {
    EXPECT_EQ(RunOn(Element(1, 100, Exposures(1) + "<DetectorOption>1</DetectorOption>"),
                    "{\"recording\":1,\"kind\":3}\n"),
              kExitFault);
    EXPECT_THAT(
        err, HasSubstr("Vorex ZRD47500 Plug-In Response: The connected detector does not support ZRD47500."));
    EXPECT_EQ(
        RunOn(Element(1, 100, Exposures(1) + "<NumberOfExposures0>1</NumberOfExposures0>"),
              "{\"throws\":\"GetWaveform\"}\n" + Shot("80", "10", Waves(Wave(1, "0,80,0"))), "start,redo 9"),
        kExitFault)
        << err;
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "80");
}

TEST_F(RunCommandTest, TheIonChamberIsNotedWithoutASerialNumber) {
    RunOn(
        Element(1, 100, Exposures(1)),
        R"({"recording":1,"kind":1,"serialNumbers":"","ionChamber":{"name":"C6","factor":"1.2","constant":"3"}})"
        "\n" +
            Shot("80"));
    EXPECT_TRUE(result.select_node("//*[text()='C6']")) << err;
}

TEST_F(RunCommandTest, InstrumentsAreListedOnceAndTheResultNamesTheLast) {
    const std::string both = Shot("80", "10", MasOf("20"));
    RunPassing(
        Element(1, 100, kBothKinds + Exposures(1)) + Element(2, 200, kBothKinds + Exposures(1)),
        R"({"recording":1,"kind":4,"serialNumbers":"4711,88","calibrationDates":"2026-01-15,2026-02-01",)"
        R"("instrumentNames":["ZRD 47500WD","mAs meter"]})"
        "\n" +
            both + both);
    for (int id : {1, 2}) EXPECT_STREQ(ResultOf(id).attribute("MTI").value(), "2");
    const pugi::xml_node list = result.child("VorexSequence").child("MtiList");
    EXPECT_EQ(std::distance(list.begin(), list.end()), 2);
    EXPECT_STREQ(list.first_child().attribute("SerialNumber").value(), "4711");
    EXPECT_STREQ(list.last_child().attribute("CalibrationDate").value(), "2026-02-01");
}

TEST_F(RunCommandTest, WaveformsAreFetchedWhereTheImportFlagAsks) {
    const std::string shot = Shot("80", "10", Waves(Wave(1, "0,40.5,80.1,0")));
    RunPassing(Element(1, 100, Exposures(2) + "<NumberOfExposures0>1</NumberOfExposures0>"), shot + shot);
    std::string samples;
    for (pugi::xml_node waveform : ResultOf(1).children("Waveform"))
        samples +=
            std::string(waveform.text().get()) + "/" + waveform.child_value("WaveformResolution") + ";";
    EXPECT_EQ(samples.substr(0, 19), "0,40.5,80.1,0/10;/1");
    // An empty waveform that is loaded stays empty, without flags; the other one is kept.
    ASSERT_EQ(Run({"judge", Path("out.xml"), "-o", Path("judged.xml")}), kExitPassed);
    EXPECT_THAT(Read("judged.xml"), HasSubstr("<Waveform>0,40.5,80.1,0<PrintWaveform>True"));
    Write("out.xml", Read("judged.xml"));
    ExpectJudgedAlike();
}

TEST_F(RunCommandTest, ADecimalCommaSystemGivesTheSameNumbers) {
    const auto run = [this] {
        return RunOn(
            Element(1, 200,
                    Exposures(1) +
                        "<MachineKV0>80</MachineKV0><PassFailRadioAccuracyKVP0>1</PassFailRadioAccuracyKVP0>"
                        "<SDDValue>26.5</SDDValue>",
                    Limit("ER RA Percentage kVp Avg Error", R"(<High Value="0.5"/>)")),
            Shot("80.5"));
    };
    ASSERT_EQ(run(), kExitFailed) << "0.63 % is above 0.5 %: " << err;
    const std::string point = Read("out.xml");
    Write("settings.ini", "[Software\\Brenlo\\vorex]\nDecimalSign=,\n");
    ASSERT_EQ(run(), kExitFailed);
    EXPECT_NE(Read("out.xml"), point) << "settings are written with the sign of the system";
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "80.5");
    Write("settings.ini", "");
    ASSERT_EQ(Run({"judge", Path("out.xml"), "-o", Path("back.xml")}), kExitFailed);
    EXPECT_EQ(Read("back.xml"), point);
}

TEST_F(RunCommandTest, SiteDefaultsReachNewTests) {
    Write("settings.ini",
          "[Software\\Brenlo\\vorex\\ZRD47500]\nDoseUnit=2\nDoseRateUnit=3\nPercentKV=75\nSDDUnit=2\n");
    ASSERT_EQ(Run({"new", "500", "-o", Path("out.xml")}), kExitPassed);
    for (const char* setting : {
             "<MeasurementExposure>2<", "<MeasurementExposureRateUnit>3<", "<MeasurementPercentKV>75<",
             "<SDDUnit>1<",         // centimetres are stored as 1
             "<MeasurementMode>2<"  // fluoroscopy is stored as 2
         })
        EXPECT_THAT(Read("out.xml"), HasSubstr(setting));
}

TEST_F(RunCommandTest, ARedoTakesTheWaveformsOfItsOwnChannels) {
    const auto shot = [](const std::string& number) {
        return Shot(
            "80", "10",
            MasOf("20") + Waves(Wave(1, "0,8" + number + ",0") + "," + Wave(3, "0,20" + number + ",0")));
    };
    RunPassing(Element(1, 100,
                       kBothKinds + Exposures(2) +
                           "<NumberOfExposures0>1</NumberOfExposures0>"
                           "<NumberOfExposures1>1</NumberOfExposures1>"),
               kHeadOfBoth + shot("1") + shot("2") + shot("3"), "start,redo 1,next");
    std::string samples;
    for (pugi::xml_node item : ResultOf(1).children())
        if (std::string(item.name()).ends_with("Waveform"))
            samples += std::string(item.text().get()).substr(2, 3) + " ";
    EXPECT_EQ(samples, "83, 82, 203 202 ");
}

}  // namespace
}  // namespace vorex::test

#include "cli/program_fixture.h"

namespace vorex::test {
namespace {

using RunCommandTest = ProgramTest;

TEST_F(RunCommandTest, EveryNewTestRunsAndKeepsItsBytesThroughJudging) {
    Write("r.jsonl", kHead + Shot("28.1") + Shot("28.2") + Shot("28.0") + Shot("28.1"));
    for (const char* test : {"100", "200", "300", "500", "700", "900", "1100", "1200"}) {
        ASSERT_EQ(Run({"new", test, "-o", Path("new.xml")}), kExitPassed) << err;
        ASSERT_EQ(RunFile("new.xml", "r.jsonl"), kExitPassed) << test << ": " << err;
        EXPECT_EQ(StatusOf(1), "1") << test;
        ASSERT_EQ(Run({"judge", Path("out.xml"), "-o", Path("again.xml")}), kExitPassed) << err;
        EXPECT_EQ(Read("again.xml"), Read("out.xml")) << test;
        // A second run of the same input gives the same bytes.
        const std::string first = Read("out.xml");
        ASSERT_EQ(RunFile("new.xml", "r.jsonl"), kExitPassed);
        EXPECT_EQ(Read("out.xml"), first) << test;
    }
}

TEST_F(RunCommandTest, AFailedLimitFailsTheTestItsGroupAndTheProgram) {
    const std::string limit = Limit("ER kVp Avg", R"x(<High Value="5" Expression="X+(X*Y%)"/>)x");
    Write("s.xml", Sequence(Group(1, Element(2, 100, Exposures(2), limit) + Element(3, 100, Exposures(1)))));
    Write("r.jsonl", kHead + Shot("84") + Shot("84.1") + Shot("80"));
    EXPECT_EQ(RunFile("s.xml", "r.jsonl"), kExitFailed);
    EXPECT_EQ(StatusOf(2), "2");
    EXPECT_EQ(StatusOf(3), "1");
    EXPECT_EQ(StatusOf(1), "2");
    EXPECT_STREQ(ResultOf(2).child("ServiceRecord").attribute("Code").value(), "F");
    EXPECT_EQ(ValuesOf(2, "kVp Avg"), "84|84.1");
    ASSERT_EQ(Run({"show", Path("out.xml")}), kExitPassed);
    EXPECT_NE(out.find("Exposure 2: kVp Avg [KV] 84.1: at most 84 (Site 1)"), std::string::npos) << out;
    EXPECT_EQ(out.find("Exposure 1: kVp"), std::string::npos) << "a value on the limit passes";
}

TEST_F(RunCommandTest, TheServiceRecordIsOfTheLatestExposure) {
    struct Case {
        const char *first, *second;
        const char* code;
    };
    const Case cases[] = {{"80", "95", "F"}, {"95", "80", ""}, {"80", "80", ""}};
    Write("s.xml", Sequence(Element(1, 500, Exposures(2), Limit("ER kVp Avg", R"(<High Value="90"/>)"))));
    for (const Case& c : cases) {
        Write("r.jsonl", kHead + Shot(c.first) + Shot(c.second));
        RunFile("s.xml", "r.jsonl");
        EXPECT_STREQ(ResultOf(1).child("ServiceRecord").attribute("Code").value(), c.code);
    }
}

TEST_F(RunCommandTest, OneJudgementSettlesTheServiceRecordAfterAChangeOfLimits) {
    Write("s.xml", Sequence(Element(1, 500, Exposures(2), Limit("ER kVp Avg", R"(<High Value="90"/>)"))));
    Write("r.jsonl", kHead + Shot("95") + Shot("80"));
    EXPECT_EQ(RunFile("s.xml", "r.jsonl"), kExitFailed);
    std::string narrower = Read("out.xml");
    narrower.replace(narrower.find("High Value=\"90\""), 15, "High Value=\"70\"");
    Write("narrower.xml", narrower);
    EXPECT_EQ(Run({"judge", Path("narrower.xml"), "-o", Path("once.xml")}), kExitFailed);
    EXPECT_NE(Read("once.xml").find("<ServiceRecord Code=\"F\">"), std::string::npos);
    EXPECT_EQ(Run({"judge", Path("once.xml"), "-o", Path("twice.xml")}), kExitFailed);
    EXPECT_EQ(Read("twice.xml"), Read("once.xml"));
}

TEST_F(RunCommandTest, TheServiceRecordHoldsTheReadingsWithAllTheirDigits) {
    Write("s.xml",
          Sequence(Element(
              1, 500, Exposures(1) + "<NumberOfExposures0>0</NumberOfExposures0><MachineKV0>80</MachineKV0>",
              Limit("ER kVp Avg", R"(<High Value="70"/>)"))));
    Write("r.jsonl", kHead + Shot("80.0", "OL"));
    EXPECT_EQ(RunFile("s.xml", "r.jsonl"), kExitFailed);
    EXPECT_STREQ(ResultOf(1).child_value("ServiceRecord"), "/0/80.0/81/80/OL/100/100/3.1/0.0");
    EXPECT_EQ(Run({"judge", Path("out.xml"), "-o", Path("again.xml")}), kExitFailed);
    EXPECT_EQ(Read("again.xml"), Read("out.xml")) << "the calculated 0.0 is saved as a number";
}

TEST_F(RunCommandTest, OnlySelectedStandardsJudge) {
    const std::string element = Element(1, 100, Exposures(1), Limit("ER kVp Avg", R"(<High Value="70"/>)"));
    Write("r.jsonl", kHead + Shot("80"));
    Write("all.xml", Sequence(element));
    EXPECT_EQ(RunFile("all.xml", "r.jsonl"), kExitFailed);
    Write("none.xml", Sequence("<SelectedStandards/>" + element));
    EXPECT_EQ(RunFile("none.xml", "r.jsonl"), kExitPassed);
    Write(
        "other.xml",
        Sequence(R"(<SelectedStandards><Standard Name="Site" Version="2"/></SelectedStandards>)" + element));
    EXPECT_EQ(RunFile("other.xml", "r.jsonl"), kExitPassed);
}

TEST_F(RunCommandTest, AVariationLimitJudgesTheVariationAndNothingElse) {
    // Exposures 10 and 11: mean 10.5, standard deviation 0.7071, variation 0.067, shown as 0.07.
    Write("r.jsonl", kHead + Shot("80", "10") + Shot("80", "11"));
    struct Case {
        const char* side;
        int code;
    };
    const Case cases[] = {
        {R"(<High Value="0.05" Expression="CV"/>)", kExitFailed},
        {R"(<High Value="0.07" Expression="CV"/>)", kExitPassed},
        {R"(<High Value="11" Expression="Y"/>)", kExitPassed},
        {R"(<High Value="10.5"/>)", kExitFailed},
    };
    for (const Case& c : cases) {
        Write("s.xml", Sequence(Element(1, 100, Exposures(2), Limit("ER Exposure", c.side))));
        EXPECT_EQ(RunFile("s.xml", "r.jsonl"), c.code) << c.side;
        EXPECT_EQ(ValuesOf(1, "ER Exposure"), "0.0|0.07");
    }
}

TEST_F(RunCommandTest, ARedoReplacesItsExposureAndCountsOverAll) {
    Write("s.xml", Sequence(Element(1, 100, Exposures(3))));
    Write("r.jsonl", kHead + Shot("80", "10") + Shot("80", "20") + Shot("80", "30") + Shot("80", "40"));
    ASSERT_EQ(RunFile("s.xml", "r.jsonl", "start,redo 3,next"), kExitPassed) << err;
    EXPECT_EQ(ValuesOf(1, "Exposure"), "10|20|40");
    EXPECT_EQ(ValuesOf(1, "ER Avg Exposure"), "10.0|15.0|23.33");
    ASSERT_EQ(RunFile("s.xml", "r.jsonl", "start,redo 1,next"), kExitPassed) << err;
    EXPECT_EQ(ValuesOf(1, "Exposure"), "40|20|30");
    EXPECT_EQ(ValuesOf(1, "ER Avg Exposure"), "30.0|15.0|30.0") << "40, 20, 30, in the last as well";
}

TEST_F(RunCommandTest, ARedoWithAMasMeterReplacesItsReadingsAsWell) {
    const auto shot = [](const std::string& exposure, const std::string& mas) {
        return R"({"exposure":{"detector":["80","81","80",")" + exposure +
               R"(","100","100","10","0","0","3.1"],"mas":["200",")" + mas + R"(","0","0"]}})" + "\n";
    };
    Write("s.xml", Sequence(Element(1, 100, "<DetectorName>4</DetectorName>" + Exposures(3))));
    Write("r.jsonl", "{\"recording\":1,\"kind\":4,\"serialNumbers\":\"4711,88\"}\n" + shot("10", "20") +
                         shot("20", "20") + shot("30", "20") + shot("40", "10"));
    ASSERT_EQ(RunFile("s.xml", "r.jsonl", "start,redo 2,next"), kExitPassed) << err;
    EXPECT_EQ(ValuesOf(1, "Exposure"), "10|40|30");
    EXPECT_EQ(ValuesOf(1, "ER mAs"), "20|10|20");
    EXPECT_EQ(ValuesOf(1, "ER DosemAs"), "0.5|4|1.5");
    // (20 + 10 + 20) / 3 and (0.5 + 4 + 1.5) / 3; the first row keeps what it had.
    EXPECT_EQ(ValuesOf(1, "ER Avg mAs"), "20.0|16.67|16.67");
    EXPECT_EQ(ValuesOf(1, "ER Avg DosemAs"), "0.5|2.0|2.0");
}

TEST_F(RunCommandTest, AStopAtZeroComesBeforeTheFirstExposure) {
    Write("s.xml", Sequence(Element(1, 100, Exposures(2))));
    Write("r.jsonl", kHead + Shot("80") + Shot("81") + Shot("82"));
    ASSERT_EQ(RunFile("s.xml", "r.jsonl", "start,stop@0,start,next"), kExitPassed) << err;
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "80|81") << "the first run took none";
    // In fluoroscopy it ends the exposure that is held. A redo fills that one.
    Write("f.xml", Sequence(Element(1, 700, Exposures(2) + "<MeasurementMode>2</MeasurementMode>")));
    Write("f.jsonl", kHead + "{\"stopButton\":true}\n{\"stopButton\":true}\n{\"stopButton\":false}\n" +
                         Shot("80") + Shot("90"));
    ASSERT_EQ(RunFile("f.xml", "f.jsonl", "start,stop@0,redo 1,next"), kExitPassed) << err;
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "90|80");
}

TEST_F(RunCommandTest, AStopAfterTheLastExposureAddsNone) {
    Write("f.xml", Sequence(Element(1, 700, Exposures(1) + "<MeasurementMode>2</MeasurementMode>")));
    Write("f.jsonl", kHead + "{\"stopButton\":true}\n" + Shot("80") + "{\"stopButton\":false}\n");
    ASSERT_EQ(RunFile("f.xml", "f.jsonl", "start,stop@1,next"), kExitPassed) << err;
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "80");
    EXPECT_TRUE(ResultOf(1).select_nodes("Measurement[@Missing]").empty());
}

TEST_F(RunCommandTest, AStoppedRunKeepsWhatWasTakenWithoutItsInstruments) {
    Write("s.xml", Sequence(Element(1, 100, Exposures(3))));
    Write("r.jsonl", kHead + Shot("80") + Shot("81") + Shot("82") + Shot("83") + Shot("84"));
    ASSERT_EQ(RunFile("s.xml", "r.jsonl", "start,stop@2,next"), kExitPassed) << err;
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "80|81");
    EXPECT_TRUE(ResultOf(1).attribute("MTI").empty());
    // A redo after the stop takes its exposure; the run still counts as stopped.
    ASSERT_EQ(RunFile("s.xml", "r.jsonl", "start,stop@2,redo 1,next"), kExitPassed) << err;
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "82|81");
    EXPECT_TRUE(ResultOf(1).attribute("MTI").empty());
    // A new start begins with an empty result.
    Write("long.jsonl", kHead + Shot("80") + Shot("81") + Shot("82") + Shot("83"));
    ASSERT_EQ(RunFile("s.xml", "long.jsonl", "start,stop@1,start,next"), kExitPassed) << err;
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "81|82|83");
    EXPECT_STREQ(ResultOf(1).attribute("MTI").value(), "1");
}

TEST_F(RunCommandTest, SkipNotApplicableAndAbortLeaveTheirResults) {
    const std::string earlier =
        R"(<ResultItem><Status>1</Status><Measurement Key="Import Waveform"><Value Type="5">0</Value>)"
        R"(<Status>1</Status></Measurement></ResultItem>)";
    Write("s.xml", Sequence(Element(1, 100, Exposures(1), earlier) + Element(2, 100, Exposures(1))));
    Write("r.jsonl", kHead + Shot("80") + Shot("81"));
    struct Case {
        const char* script;
        int code;
        const char *first, *second;
    };
    const Case cases[] = {
        {"skip;start,next", kExitPassed, "", "1"},  // a skipped element loses its earlier result
        {"na;start,next", kExitPassed, "3", "1"},
        {"next;start,next", kExitPassed, "1", "1"},  // left without a start: unchanged
        {"abort", kExitAborted, "", ""},
        {"start,next;abort", kExitAborted, "1", ""},
        {"previous", kExitPassed, "1", ""},  // on the first element it ends the sequence
        {"next;previous;na;start,next", kExitPassed, "3", "1"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(RunFile("s.xml", "r.jsonl", c.script), c.code) << c.script << ": " << err;
        EXPECT_EQ(StatusOf(1), c.first) << c.script;
        EXPECT_EQ(StatusOf(2), c.second) << c.script;
    }
    // A result that is not applicable keeps no measurements.
    RunFile("s.xml", "r.jsonl", "na;start,next");
    EXPECT_TRUE(ResultOf(1).child("Measurement").empty());
}

TEST_F(RunCommandTest, TheFirstChildOfAGroupDecidesForTheWholeGroup) {
    const std::string inner = Group(3, Element(4, 100, Exposures(1)) + Element(5, 100, Exposures(1)));
    Write("s.xml", Sequence(Group(1, Element(2, 100, Exposures(1)) + inner) + Element(6, 100, Exposures(1))));
    Write("r.jsonl", kHead + Shot("80") + Shot("81") + Shot("82") + Shot("83"));
    struct Case {
        const char* script;
        const char* statuses;  ///< of elements 1 to 6
    };
    const Case cases[] = {
        {"na;start,next", "3,3,3,3,3,1"},
        {"skip;start,next", "0,,0,,,1"},
        {"start,next;start,next;na;start,next", "1,1,1,1,3,1"},
        {"start,next;na", "1,1,3,3,3,1"},
        // Previous on the first child of the inner group goes back to the element before it.
        {"start,next;previous;next", "1,1,1,1,1,1"},
    };
    for (const Case& c : cases) {
        RunFile("s.xml", "r.jsonl", c.script);
        std::string statuses;
        for (int id = 1; id <= 6; ++id) statuses += (id > 1 ? "," : "") + StatusOf(id);
        EXPECT_EQ(statuses, c.statuses) << c.script << ": " << err;
    }
}

TEST_F(RunCommandTest, TheIonChamberIsNotedWithoutASerialNumber) {
    Write("s.xml", Sequence(Element(1, 100, Exposures(1))));
    Write(
        "r.jsonl",
        R"({"recording":1,"kind":1,"serialNumbers":"","ionChamber":{"name":"C6","factor":"1.2","constant":"3"}})"
        "\n" +
            Shot("80"));
    RunFile("s.xml", "r.jsonl");
    const auto noted = result.select_node("//*[text()='C6']").node();
    EXPECT_STREQ(noted.child_value(), "C6") << err;
}

TEST_F(RunCommandTest, InstrumentsAreListedOnceAndTheResultNamesTheLast) {
    Write("s.xml", Sequence(Element(1, 100, "<DetectorName>4</DetectorName>" + Exposures(1)) +
                            Element(2, 200, "<DetectorName>4</DetectorName>" + Exposures(1))));
    const std::string both =
        R"({"exposure":{"detector":["80","81","80","10","100","100","10","0","0","3"],"mas":["200","20","0","0.5"]}})"
        "\n";
    Write("r.jsonl",
          R"({"recording":1,"kind":4,"serialNumbers":"4711,88","calibrationDates":"2026-01-15,2026-02-01",)"
          R"("instrumentNames":["ZRD 47500WD","mAs meter"]})"
          "\n" +
              both + both);
    ASSERT_EQ(RunFile("s.xml", "r.jsonl"), kExitPassed) << err;
    EXPECT_STREQ(ResultOf(1).attribute("MTI").value(), "2");
    EXPECT_STREQ(ResultOf(2).attribute("MTI").value(), "2");
    const pugi::xml_node list = result.child("VorexSequence").child("MtiList");
    EXPECT_EQ(std::distance(list.begin(), list.end()), 2);
    EXPECT_STREQ(list.first_child().attribute("SerialNumber").value(), "4711");
    EXPECT_STREQ(list.last_child().attribute("CalibrationDate").value(), "2026-02-01");
    EXPECT_EQ(ValuesOf(1, "ER DosemAs"), "0.5") << "10 by 20";
}

TEST_F(RunCommandTest, WaveformsAreFetchedWhereTheImportFlagAsks) {
    const std::string flags =
        "<NumberOfExposures0>1</NumberOfExposures0><NumberOfExposures1>0</NumberOfExposures1>";
    Write("s.xml", Sequence(Element(1, 100, Exposures(2) + flags)));
    const std::string shot = R"({"exposure":{"detector":["80","81","80","10","100","100","10","0","0","3"],)"
                             R"("waveforms":[{"type":1,"resolution":10,"samples":"0,40.5,80.1,0"}]}})"
                             "\n";
    Write("r.jsonl", kHead + shot + shot);
    ASSERT_EQ(RunFile("s.xml", "r.jsonl"), kExitPassed) << err;
    std::string samples;
    for (pugi::xml_node waveform : ResultOf(1).children("Waveform"))
        samples +=
            std::string(waveform.text().get()) + "/" + waveform.child_value("WaveformResolution") + ";";
    EXPECT_EQ(samples.substr(0, 19), "0,40.5,80.1,0/10;/1");
    // An empty waveform that is loaded stays empty, without flags; the other one is kept.
    ASSERT_EQ(Run({"judge", Path("out.xml"), "-o", Path("again.xml")}), kExitPassed);
    ASSERT_EQ(Run({"judge", Path("again.xml"), "-o", Path("twice.xml")}), kExitPassed);
    EXPECT_NE(Read("again.xml").find("<Waveform>0,40.5,80.1,0<PrintWaveform>True"), std::string::npos);
    EXPECT_EQ(Read("twice.xml"), Read("again.xml"));
}

TEST_F(RunCommandTest, ADecimalCommaSystemGivesTheSameNumbers) {
    Write("s.xml",
          Sequence(Element(
              1, 200,
              Exposures(1) +
                  "<MachineKV0>80</MachineKV0><PassFailRadioAccuracyKVP0>1</PassFailRadioAccuracyKVP0>"
                  "<SDDValue>26.5</SDDValue>",
              Limit("ER RA Percentage kVp Avg Error", R"(<High Value="0.5"/>)"))));
    Write("r.jsonl", kHead + Shot("80.5"));
    ASSERT_EQ(RunFile("s.xml", "r.jsonl"), kExitFailed) << "0.63 % is above 0.5 %: " << err;
    const std::string point = Read("out.xml");
    Write("settings.ini", "[Software\\Brenlo\\vorex]\nDecimalSign=,\n");
    ASSERT_EQ(RunFile("s.xml", "r.jsonl"), kExitFailed);
    EXPECT_NE(Read("out.xml"), point) << "settings are written with the sign of the system";
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "80.5");
    Write("settings.ini", "");
    ASSERT_EQ(Run({"judge", Path("out.xml"), "-o", Path("back.xml")}), kExitFailed);
    EXPECT_EQ(Read("back.xml"), point);
}

TEST_F(RunCommandTest, UnknownContentStaysWhereItWas) {
    Write("s.xml", R"(<VorexSequence Version="1" Owner="me"><Site>North</Site>)" +
                       Element(1, 100, Exposures(1) + "<House>yes</House>", "<Note by=\"x\">keep</Note>") +
                       "<!-- the end --></VorexSequence>");
    Write("r.jsonl", kHead + Shot("80"));
    ASSERT_EQ(RunFile("s.xml", "r.jsonl"), kExitPassed) << err;
    const pugi::xml_node root = result.child("VorexSequence");
    EXPECT_STREQ(root.attribute("Owner").value(), "me");
    EXPECT_STREQ(root.child_value("Site"), "North");
    EXPECT_STREQ(root.child("TestElement").child("Note").attribute("by").value(), "x");
    EXPECT_STREQ(root.child("TestElement").child("PlugInData").child_value("House"), "yes");
    EXPECT_NE(Read("out.xml").find("<!-- the end -->"), std::string::npos);
}

TEST_F(RunCommandTest, SiteDefaultsReachNewTests) {
    Write("settings.ini",
          "[Software\\Brenlo\\vorex\\ZRD47500]\nDoseUnit=2\nDoseRateUnit=3\nPercentKV=75\nSDDUnit=2\n");
    ASSERT_EQ(Run({"new", "500", "-o", Path("new.xml")}), kExitPassed);
    pugi::xml_document file;
    ASSERT_TRUE(file.load_file(Path("new.xml").c_str()));
    const pugi::xml_node data = file.child("VorexSequence").child("TestElement").child("PlugInData");
    EXPECT_STREQ(data.child_value("MeasurementExposure"), "2");
    EXPECT_STREQ(data.child_value("MeasurementExposureRateUnit"), "3");
    EXPECT_STREQ(data.child_value("MeasurementPercentKV"), "75");
    EXPECT_STREQ(data.child_value("SDDUnit"), "1") << "centimetres are stored as 1";
    EXPECT_STREQ(data.child_value("MeasurementMode"), "2") << "fluoroscopy is stored as 2";
}

TEST_F(RunCommandTest, ARedoTakesTheWaveformsOfItsOwnChannels) {
    const auto shot = [](const std::string& kv, const std::string& ma) {
        return R"({"exposure":{"detector":["80","81","80","10","100","100","10","0","0","3.1"],)"
               R"("mas":["200","20","0","0"],"waveforms":[{"type":1,"resolution":1,"samples":")" +
               kv + R"("},{"type":3,"resolution":1,"samples":")" + ma + "\"}]}}\n";
    };
    Write("s.xml", Sequence(Element(1, 100,
                                    "<DetectorName>4</DetectorName>" + Exposures(2) +
                                        "<NumberOfExposures0>1</NumberOfExposures0>"
                                        "<NumberOfExposures1>1</NumberOfExposures1>")));
    Write("r.jsonl", "{\"recording\":1,\"kind\":4,\"serialNumbers\":\"4711,88\"}\n" +
                         shot("0,81,0", "0,201,0") + shot("0,82,0", "0,202,0") + shot("0,83,0", "0,203,0"));
    ASSERT_EQ(RunFile("s.xml", "r.jsonl", "start,redo 1,next"), kExitPassed) << err;
    std::string samples;
    for (pugi::xml_node item : ResultOf(1).children())
        if (std::string(item.name()).ends_with("Waveform"))
            samples += std::string(item.text().get()).substr(2, 3) + " ";
    EXPECT_EQ(samples, "83, 82, 203 202 ");
}

}  // namespace
}  // namespace vorex::test

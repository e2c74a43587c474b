#include <algorithm>

#include "cli/program_fixture.h"
#include "test_paths.h"

namespace vorex::test {
namespace {

/// The commands that list standards and bring them into a file.
class StandardsCommandTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        setenv("VOREX_STANDARDS", (std::string(kSourceDir) + "/standards").c_str(), 1);
    }
    /// Replaces the shipped folder by the user's own.
    void UseOwn(const std::string& name, const std::string& text) {
        std::filesystem::create_directories(folder / "own");
        setenv("VOREX_STANDARDS", Path("own").c_str(), 1);
        Write("own/" + name, text);
    }
    int Add(const std::string& file, const std::string& standard, const std::string& output,
            const std::vector<std::string>& more = {}) {
        return Run({"standards", "add", Path(file), standard, "-o", Path(output)}, more);
    }
    /// The limits of a standard in an element: "KEY UNIT low high" in brackets, a side with its expression.
    std::string Limits(const std::string& file, int id, const std::string& standard) {
        pugi::xml_document document;
        document.load_file(Path(file).c_str());
        const std::string query = "//TestElement[@ID='" + std::to_string(id) +
                                  "']/ExpectedResult/Standard[@Name='" + standard + "']/Limit";
        std::string text;
        for (const pugi::xpath_node& node : document.select_nodes(query.c_str())) {
            text += std::string("[") + node.node().attribute("Key").value() + "|" +
                    node.node().attribute("Unit").value();
            for (const char* name : {"Low", "High"}) {
                const pugi::xml_node side = node.node().child(name);
                text += std::string("|") + side.attribute("Value").value();
                const std::string form = side.attribute("Expression").value();
                if (!form.empty() && form != "Y") text += " " + form;
            }
            text += "]";
        }
        return text;
    }
};

std::string OwnStandard(const std::string& limits) {
    return R"({"standard":1,"name":"Own","version":"1","limits":[)" + limits + "]}";
}
std::string OwnLimit(const std::string& tests, const std::string& members) {
    return R"({"tests":)" + tests + R"(,"authority":"House","clause":"7.1",)" + members + "}";
}
/// A limit of all tests: the practical peak voltage of `Shot` is 80 kV.
std::string PeakLimit(const std::string& high) {
    return OwnStandard(OwnLimit("[100,200,300,500,700,900,1100,1200]",
                                R"("key":"ER kV PPV","unit":"KV","high":{"value":)" + high + "}"));
}

/// An exposure of the ZRD 47500: voltage, exposure, rate, time and half-value layer.
std::string Measured(const std::string& kv, const std::string& exposure, const std::string& rate,
                     const std::string& time, const std::string& hvl) {
    return R"({"exposure":{"detector":[")" + kv + "\",\"" + kv + "\",\"" + kv + "\",\"" + exposure + "\",\"" +
           rate + "\",\"" + time + R"(","0","0","0",")" + hvl + "\"]}}\n";
}
std::string Kv(const std::string& kv, const std::string& hvl = "3") {
    return Measured(kv, "1", "1", "100", hvl);
}
std::string Exposed(const std::string& exposure) {
    return Measured("28", exposure, "1", "1", "0.33");
}
std::string Twice(const std::string& line) {
    return line + line;
}

// Expected numbers are from the clauses; those between two voltages, and per second or hour, were computed by
// hand. A value at a limit passes, one just beyond it fails.
TEST_F(StandardsCommandTest, ShippedLimitsAreAddedInTheUnitsOfATestAndJudgeWhereTheirClausesSay) {
    const std::string fluoro =
        Exposures(2) + "<MeasurementMode>2</MeasurementMode><MeasurementExposureRateUnit>";
    const auto base = [&](const char* code, const char* unit = "1") {
        return fluoro + code + "</MeasurementExposureRateUnit><MeasurementExposure>" + unit +
               "</MeasurementExposure>";
    };
    const auto kv = [](const std::string& value) {
        return Exposures(2) + "<MeasurementMode>3</MeasurementMode><MachineKV>" + value + "</MachineKV>";
    };
    // 1.81 R at 60 cm is 1.7627 R at the skin, (60 / 60.8)^2 of it; times 169.34 mrad/R that is 298.5 mrad.
    // 1.83 R give 301.8 mrad.
    const std::string phantom =
        Exposures(2) +
        "<MeasurementMode>3</MeasurementMode><NominalKV>28</NominalKV><TargetMaterial>Mo</TargetMaterial>"
        "<Filter>Mo</Filter><MeasuredHVL>0.33</MeasuredHVL><BreastThickness>4.2</BreastThickness>"
        "<GlandularFraction>0.5</GlandularFraction><SourceToDetectorDistance>60</SourceToDetectorDistance>"
        "<SouceToBuckyDistance>65</SouceToBuckyDistance><CorrectionFactor>1</CorrectionFactor>"
        "<MachinemAs0>80</MachinemAs0><MachinemAs1>80</MachinemAs1>";
    const std::string accuracy = Exposures(1) +
                                 "<GeneratorSetup>2</GeneratorSetup><MachineKV0>80</MachineKV0>"
                                 "<MachineTime0>100</MachineTime0>"
                                 "<PassFailRadioAccuracyKVP0>1</PassFailRadioAccuracyKVP0>";
    const std::string fda = "FDA radiography:21 CFR 1020.31";
    const std::string utah = "Utah radiography:R313-28-56";
    const std::string mammo = "FDA mammography:21 CFR 900.12";
    const std::string mammoHvl = "FDA mammography half-value layer:21 CFR 900.12";
    const auto hvl = [](const char* version) { return "FDA half-value layer:" + std::string(version); };
    const auto control = [](const char* version) { return "FDA fluoroscopy:" + std::string(version); };
    const auto both = [](const std::string& limit) {
        return "[ER Maxi. Exposure Rate1|" + limit + "][ER Maxi. Exposure Rate2|" + limit + "]";
    };
    const std::string tenPercent = "[ER kVp Avg|%|-10 X+(X*Y%)|10 X+(X*Y%)]";
    const std::string twoErrors =
        "[ER RA Percentage kVp Avg Error|%|-10|10][ER RA Percentage Timer Error|%|-10|10]";
    const std::string dose =
        "[ER Coefficient of Variation Exposure|||0.05][ER Coefficient of Variation mAs|||0.05]"
        "[ER Computed Average Glandular Dose|mrad||300]";
    struct Case {
        int test;
        std::string settings, standard, limits;
        std::string at = {}, beyond = {};
    };
    const Case cases[] = {
        // Standard deviation over mean: 5 / 100 of 96.465 and 103.535; 6 / 100 of 95.757 and 104.243.
        {100, Exposures(2), fda, "[ER Exposure|||0.05 CV]", Exposed("96.465") + Exposed("103.535"),
         Exposed("95.757") + Exposed("104.243")},
        {300, Exposures(2), fda, "[ER Adjacent|||0.1][ER Non Adjacent|||0.1]"},
        {100, Exposures(1), utah, tenPercent, Kv("88"), Kv("88.1")},
        {300, Exposures(1), utah, tenPercent, Kv("72"), Kv("71.9")},
        {200, accuracy, utah, twoErrors, Kv("88"), Kv("88.1")},
        {200, accuracy, utah, twoErrors, Measured("80", "1", "1", "90", "3"),
         Measured("80", "1", "1", "89.9", "3")},
        {100, kv("80"), hvl("above 70 kV, made before 2006-06-10"), "[ER HVL|mm Al at 80 kV|2.3|]"},
        {100, kv("80"), hvl("above 70 kV, made from 2006-06-10"), "[ER HVL|mm Al at 80 kV|2.9|]",
         Twice(Kv("80", "2.9")), Twice(Kv("80", "2.89"))},
        {300, kv("75.5"), hvl("above 70 kV, made from 2006-06-10"), "[ER HVL|mm Al at 75.5 kV|2.7|]"},
        {100, kv("150"), hvl("above 70 kV, made from 2006-06-10"), "[ER HVL|mm Al at 150 kV|5.4|]"},
        {100, kv("71"), hvl("above 70 kV, made before 2006-06-10"), "[ER HVL|mm Al at 71 kV|2.1|]"},
        {100, kv("65"), hvl("51 to 70 kV, made before 2006-06-10"), "[ER HVL|mm Al at 65 kV|1.4|]"},
        {100, kv("51"), hvl("51 to 70 kV, made from 2006-06-10"), "[ER HVL|mm Al at 51 kV|1.3|]"},
        {700, base("2", "2"), control("automatic rate control"), both("mGy/min||88"),
         Twice(Measured("80", "1", "88", "1", "3")), Twice(Measured("80", "1", "88.1", "1", "3"))},
        {700, base("3", "2"), control("manual rate control"), both("mGy/hr||2640")},
        {700, base("2"), control("high level control"), both("R/min||20")},
        {700, base("1"), control("automatic rate control"), both("R/sec||0.166666666666667")},
        {900, kv("28"), mammo, "[ER Percentage Error|%|-5|5][ER CV|||0.02]", Twice(Kv("29.4")),
         Twice(Kv("29.5"))},
        // 2 / 100 of 27.604 and 28.396, 3 / 100 of 27.406 and 28.594.
        {900, kv("28"), mammo, "[ER Percentage Error|%|-5|5][ER CV|||0.02]", Kv("27.604") + Kv("28.396"),
         Kv("27.406") + Kv("28.594")},
        {1100, phantom, mammo, dose, Twice(Exposed("1810")), Twice(Exposed("1830"))},
        {1100, phantom, mammo, dose, Exposed("964.65") + Exposed("1035.35"),
         Exposed("957.57") + Exposed("1042.43")},
        {1200, kv("28"), mammo, "[ER Exposure Rate(mR/sec)|mR/sec at 28 kV|800|]",
         Twice(Measured("28", "2400", "1", "3000", "0.33")),
         Twice(Measured("28", "2399.9", "1", "3000", "0.33"))},
        {900, kv("28"), mammoHvl, "[ER HVL|mm Al at 28 kV|0.28|]", Twice(Kv("28", "0.28")),
         Twice(Kv("28", "0.279"))},
        {900, kv("27"), mammoHvl, "[ER HVL|mm Al at 27 kV|0.27|]"},
        {1100, Exposures(2) + "<NominalKV>32</NominalKV>", mammoHvl, "[ER HVL|mm Al at 32 kV|0.32|]"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.test) + " " + c.standard + "\n" + c.beyond);
        Write("in.xml", Sequence(Element(1, c.test, c.settings)));
        ASSERT_EQ(Add("in.xml", c.standard, "added.xml"), kExitPassed) << err;
        EXPECT_EQ(Limits("added.xml", 1, c.standard.substr(0, c.standard.find(':'))), c.limits) << err;
        if (c.at.empty()) continue;
        Write("unit.jsonl", kHead + c.at);
        EXPECT_EQ(RunFile("added.xml", "unit.jsonl"), kExitPassed) << err;
        Write("unit.jsonl", kHead + c.beyond);
        EXPECT_EQ(RunFile("added.xml", "unit.jsonl"), kExitFailed) << err;
    }
}

TEST_F(StandardsCommandTest, ALimitThatFitsNoColumnIsLeftOutWithAMessage) {
    const std::string gray = Exposures(2) + "<MeasurementExposure>2</MeasurementExposure>";
    const std::string perPulse = Exposures(1) +
                                 "<MeasurementMode>2</MeasurementMode>"
                                 "<MeasurementExposureRateUnit>4</MeasurementExposureRateUnit>";
    const struct {
        int test;
        std::string settings, standard, word;
        int code = kExitUsage;  ///< nothing fits: an error, and nothing is written
    } cases[] = {
        // In Gy the dose reads far too low: a limit on it would pass whatever the unit gives.
        {1100, gray, "FDA mammography",
         "element 4: \"ER Computed Average Glandular Dose\" in mrad is left out", kExitPassed},
        {200, Exposures(1) + "<GeneratorSetup>1</GeneratorSetup>", "Utah radiography",
         "element 4: \"ER RA Percentage Timer Error\" in % is left out", kExitPassed},
        {1200, gray + "<MachineKV>28</MachineKV>", "FDA mammography", "reads in R"},
        {1200, Exposures(2) + "<MachineKV>27</MachineKV>", "FDA mammography", "27 kV"},
        {100, Exposures(2) + "<MachineKV>70</MachineKV>",
         "FDA half-value layer:above 70 kV, made from 2006-06-10", "71 to 150 kV"},
        {700, perPulse, "FDA fluoroscopy:automatic rate control", "R/pulse"},
        {100, Exposures(2), "FDA mammography", "for test 900, 1100, 1200"},
    };
    for (const auto& c : cases) {
        std::filesystem::remove(Path("added.xml"));
        Write("in.xml", Sequence(Element(4, c.test, c.settings)));
        EXPECT_EQ(Add("in.xml", c.standard, "added.xml"), c.code) << err;
        EXPECT_THAT(err, HasSubstr(c.word));
        EXPECT_EQ(Exists("added.xml"), c.code == kExitPassed) << c.standard;
    }
}

TEST_F(StandardsCommandTest, AnAddedStandardJudgesEveryMeasuringTest) {
    Write("unit.jsonl", kHead + Shot("80") + Shot("80"));
    for (int test : {100, 200, 300, 500, 700, 900, 1100, 1200}) {
        const std::string label = "test " + std::to_string(test);
        Write("unit.xml", Sequence(Element(1, test, Exposures(2))));
        ASSERT_EQ(RunFile("unit.xml", "unit.jsonl"), kExitPassed) << label << err;
        std::filesystem::copy_file(Path("out.xml"), Path("passed.xml"),
                                   std::filesystem::copy_options::overwrite_existing);

        UseOwn("own.json", PeakLimit("79"));
        ASSERT_EQ(Add("unit.xml", "Own", "strict.xml"), kExitPassed) << label << err;
        ASSERT_EQ(Run({"standards", "select", Path("strict.xml"), "Own", "-o", Path("chosen.xml")}), 0)
            << err;
        EXPECT_EQ(RunFile("chosen.xml", "unit.jsonl"), kExitFailed) << label << err;
        ASSERT_EQ(Add("passed.xml", "Own", "judge.xml"), kExitPassed) << label << err;
        EXPECT_EQ(Run({"judge", Path("judge.xml"), "-o", Path("judged.xml")}), kExitFailed) << label << err;

        UseOwn("own.json", PeakLimit("80"));
        ASSERT_EQ(Add("strict.xml", "Own", "equal.xml"), kExitPassed) << label << err;
        EXPECT_EQ(RunFile("equal.xml", "unit.jsonl"), kExitPassed) << label << err;
    }
}

TEST_F(StandardsCommandTest, AShippedLimitFailsARunAndAChoiceOfOthersDoesNot) {
    Write("unit.jsonl", kHead + Shot("80", "100") + Shot("80", "50"));
    Write("unit.xml", Sequence(Element(1, 100, Exposures(2), Limit("ER kVp Max", R"(<High Value="90"/>)"))));
    ASSERT_EQ(Add("unit.xml", "FDA radiography", "added.xml"), kExitPassed) << err;
    EXPECT_EQ(RunFile("added.xml", "unit.jsonl"), kExitFailed) << err;
    // A report names the clauses of the tests of the file.
    ASSERT_EQ(Run({"report", Path("added.xml"), "-o", Path("r.txt")}), kExitPassed) << err;
    EXPECT_THAT(Read("r.txt"), HasSubstr("FDA 21 CFR 1020.31(b)(1)\n"));
    EXPECT_THAT(Read("r.txt"), Not(HasSubstr("1020.31(c)")));
    ASSERT_EQ(Run({"standards", "select", Path("added.xml"), "Site", "-o", Path("site.xml")}), 0) << err;
    EXPECT_EQ(RunFile("site.xml", "unit.jsonl"), kExitPassed) << err;
    // A file that selects others says so when one is added.
    ASSERT_EQ(Add("site.xml", "Utah radiography", "more.xml"), kExitPassed);
    EXPECT_THAT(err, HasSubstr("\"Utah radiography:R313-28-56\" does not judge yet"));
}

TEST_F(StandardsCommandTest, AddingReplacesTheSameStandardAndKeepsEverythingElse) {
    const std::string limits =
        R"(<!-- kept --><ExpectedResult><Standard Name="Own" Version="1"><Limit Key="ER HVL"><Low Value="3"/>)"
        R"(</Limit><Limit Key="ER kV PPV"><High Value="50"/></Limit></Standard>)"
        R"(<Standard Name="Own" Version="0"><Limit Key="ER HVL"><Low Value="4"/></Limit></Standard>)"
        R"(</ExpectedResult><Foreign a="1">x</Foreign>)";
    Write("unit.xml", Sequence(Element(1, 100, Exposures(2), limits)));
    UseOwn("own.json", PeakLimit("79"));
    ASSERT_EQ(Add("unit.xml", "Own", "added.xml"), kExitPassed) << err;
    EXPECT_EQ(Limits("added.xml", 1, "Own"), "[ER HVL||4|][ER kV PPV|KV||79]");
    const std::string text = Read("added.xml");
    EXPECT_THAT(text, HasSubstr("<!-- kept -->"));
    EXPECT_THAT(text, HasSubstr("<Foreign a=\"1\">x</Foreign>"));
    ASSERT_EQ(Add("added.xml", "Own:1", "again.xml"), kExitPassed) << err;
    EXPECT_EQ(Read("again.xml"), text);
    // Without -o the file goes to standard output.
    ASSERT_EQ(Run({"standards", "add", Path("unit.xml"), "Own"}), kExitPassed);
    EXPECT_EQ(out, text);
}

TEST_F(StandardsCommandTest, GroupsAreWalkedAndAnIdNamesWhatTakesTheStandard) {
    const auto test = [](int id) { return Element(id, 100, Exposures(2)); };
    Write("unit.xml", Sequence(Group(1, test(2) + Group(3, test(4))) + test(5)));
    UseOwn("own.json", PeakLimit("79"));
    const std::pair<std::vector<std::string>, std::vector<int>> cases[] = {
        {{}, {2, 4, 5}},
        {{"--element", "3"}, {4}},
        {{"--element", "1"}, {2, 4}},
        {{"--element", "2", "--element", "5"}, {2, 5}},
    };
    for (const auto& [ids, expected] : cases) {
        ASSERT_EQ(Add("unit.xml", "Own", "added.xml", ids), kExitPassed) << err;
        std::vector<int> taken;
        for (int id : {2, 4, 5})
            if (!Limits("added.xml", id, "Own").empty()) taken.push_back(id);
        EXPECT_EQ(taken, expected);
    }
    EXPECT_EQ(Add("unit.xml", "Own", "none.xml", {"--element", "9"}), kExitUsage);
    EXPECT_THAT(err, HasSubstr("there is no element 9"));
}

TEST_F(StandardsCommandTest, AWrongNameIsAnErrorThatListsWhatThereIs) {
    Write("unit.xml", Sequence(Element(1, 100, Exposures(2), Limit("ER HVL", R"(<Low Value="3"/>)"))));
    const std::string in = Path("unit.xml");
    const std::pair<std::vector<std::string>, std::vector<std::string>> cases[] = {
        {{"add", in, "Foo"}, {"\"Foo\"", "\"FDA mammography:21 CFR 900.12\"", "\"Utah radiography:"}},
        {{"add", in, "FDA radiography:1"}, {"\"FDA radiography:1\"", "21 CFR 1020.31"}},
        {{"add", in, "FDA fluoroscopy"}, {"several versions", "\"FDA fluoroscopy:high level control\""}},
        {{"select", in, "Foo"}, {"\"Foo\"", "\"Site:1\""}},
        {{"select", in, "Site", "FDA radiography"}, {"\"FDA radiography\"", "\"Site:1\""}},
        {{"select", in}, {"NAME is required"}},
        {{"add", in, "Utah radiography", "-o", in}, {"the output is the input"}},
    };
    for (const auto& [arguments, message] : cases) {
        EXPECT_EQ(Run({"standards"}, arguments), kExitUsage) << err;
        EXPECT_EQ(out, "");
        for (const std::string& part : message) EXPECT_THAT(err, HasSubstr(part));
    }
}

TEST_F(StandardsCommandTest, TheListNamesLimitsAndClausesInAHundredColumns) {
    ASSERT_EQ(Run({"standards"}), kExitPassed);
    std::istringstream lines(out);
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 100U) << line;
    for (const char* part :
         {"FDA radiography:21 CFR 1020.31\n", "  100 Radiography Reproducibility\n",
          "    ER Exposure: at most 0.05 as CV\n        FDA, 21 CFR 1020.31(b)(1)\n",
          "    ER kVp Avg: at least X - 10 %, at most X + 10 %\n        Utah, R313-28-56\n"})
        EXPECT_THAT(out, HasSubstr(part)) << part;
}

TEST_F(StandardsCommandTest, AnOwnFileWithAFaultIsNamedAndTheOthersAreListed) {
    const std::string high = R"(,"high":{"value":5})";
    const std::pair<std::string, std::string> cases[] = {
        {R"("key":"ER Nothing")" + high, "no column is judged by this key"},
        {R"("key":"HVL","unit":"mm Al")" + high, "no column is judged by this key"},
        {R"("key":"ER HVL","unit":"mm Cu")" + high, "the unit \"mm Cu\""},
        {R"("key":"ER HVL")" + high, "the unit none"},
        // X of these would be 80 kV, whatever is set.
        {R"x("key":"ER kVp Avg","unit":"%","high":{"value":5,"expression":"X+(X*Y%)"})x",
         "an expression with X needs a voltage of a test with one set voltage (100, 300, 900, 1200)"},
        {R"("key":"ER HVL","unit":"mm Al","low":{"byVoltage":[[80,2.3]]})",
         "\"byVoltage\" needs a test with one set voltage (100, 300, 900, 1100, 1200)"},
        {R"("key":"ER HVL","unit":"mm Al","low":{"value":1},"high":{"value":5,"expression":"X+Y"})",
         "both sides need the same expression"},
        {R"("key":"ER Exposure","high":{"value":0.05,"expression":"CV"})", "no column is judged"},
    };
    UseOwn("good.json", PeakLimit("79"));
    for (const auto& [limit, word] : cases) {
        Write("own/wrong.json", OwnStandard(OwnLimit("[200]", limit)));
        EXPECT_EQ(Run({"standards"}), kExitPassed);
        EXPECT_THAT(err, HasSubstr("wrong.json:1: limit 1")) << limit << err;
        EXPECT_THAT(err, HasSubstr("test 200: " + word)) << limit << err;
        EXPECT_THAT(out, HasSubstr("Own:1"));
    }
}

TEST_F(StandardsCommandTest, ALimitOfPulsesNeedsPulsedFluoroscopy) {
    UseOwn("own.json",
           OwnStandard(OwnLimit("[500,700]", R"("key":"ER Pulse Rate","unit":"Pps","high":{"value":15})")));
    for (const bool pulsed : {true, false}) {
        Write("unit.xml",
              Sequence(Element(1, 500,
                               Exposures(2) + "<MeasurementMode>2</MeasurementMode><MeasurementFluoroType>" +
                                   (pulsed ? "2" : "1") + "</MeasurementFluoroType>")));
        EXPECT_EQ(Add("unit.xml", "Own", "added.xml"), pulsed ? kExitPassed : kExitUsage);
        EXPECT_EQ(err.find("\"ER Pulse Rate\" in Pps is left out") == std::string::npos, pulsed) << err;
    }
}

}  // namespace
}  // namespace vorex::test

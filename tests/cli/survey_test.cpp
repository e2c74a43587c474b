#include "program_fixture.h"
#include "support/system_tool.h"

namespace vorex::test {
namespace {

class SurveyProgramTest : public ProgramTest {
  protected:
    void NewSurvey() { ASSERT_EQ(Run({"new", "1300", "-o", Path("new.xml")}), 0) << err; }
    /// A cell or table of a survey in a file.
    std::string Cell(int id, const char* key, const std::string& file = "out.xml") {
        result.load_file(Path(file).c_str());
        return ResultOf(id).child_value(key);
    }
    int Set(const std::vector<std::string>& options) {
        return RunToOut({"survey", Path("new.xml")}, options);
    }
};

TEST_F(SurveyProgramTest, WhatIsEnteredIsCalculatedJudgedAndKept) {
    NewSurvey();
    EXPECT_EQ(Set({"--set", "Collimation.SID=650", "--set", "DeviXrayLightField(2,1)=2", "--set",
                   "DeviXrayLightField(3,1)=1.5", "--set", "Viewbox(3,1)=2999", "--answer", "PR1=Pass"}),
              0)
        << err;
    EXPECT_THAT(out, HasSubstr("Viewbox(3,1): viewbox luminance: 2999, expected at least 3000"));
    EXPECT_THAT(out, HasSubstr("48 of 49 items have no answer"));
    EXPECT_THAT(Read("out.xml"), Not(HasSubstr("MTI"))) << "a survey without an instrument";
    EXPECT_THAT(Read("out.xml"), HasSubstr("3.5[¤]"));
    ExpectJudgedAlike();
    EXPECT_THAT(out, HasSubstr("Viewbox(3,1): viewbox luminance: 2999"));
    EXPECT_EQ(Run({"judge", Path("out.xml")}), 0);
    EXPECT_EQ(out, Read("out.xml")) << "nothing but the file";
    EXPECT_EQ(Run({"show", Path("out.xml")}), 0);
    EXPECT_THAT(out, HasSubstr("11. Viewbox Luminance and Room Illuminance"));
    EXPECT_EQ(Run({"survey", Path("out.xml"), "--list"}), 0);
    EXPECT_THAT(out, HasSubstr("Viewbox\tViewbox(3,1)\t2999\tViewbox luminance (cd/m2)"));
    EXPECT_EQ(Set({"--answer", "Evaluation3=Fail"}), 1);
    EXPECT_EQ(StatusOf(1), "2");
}

TEST_F(SurveyProgramTest, JudgeFollowsTheAnswersAndNotTheStoredStatus) {
    NewSurvey();
    ASSERT_EQ(Set({"--answer", "PR1=Fail", "--set", "ArtifactEvaluation(8,5)=Fail"}), kExitFailed) << err;
    EXPECT_THAT(out, HasSubstr("ArtifactEvaluation(8,5): Cassette-film-screen artifact"));
    result.load_file(Path("out.xml").c_str());
    ResultOf(1).child("Status").text() = 1;
    result.save_file(Path("edited.xml").c_str(), "  ");
    EXPECT_EQ(Run({"judge", Path("edited.xml"), "-o", Path("judged.xml")}), kExitFailed) << err;
    EXPECT_EQ(Run({"show", Path("judged.xml")}), kExitPassed);
    EXPECT_THAT(out, HasSubstr("\n\n  General Information\n    ")) << "set in below its element";
}

TEST_F(SurveyProgramTest, WhatFailsIsNamedEvenWhenAllAnswersAreNotApplicable) {
    NewSurvey();
    std::vector<std::string> options = {"--set", "Viewbox(3,1)=2999"};
    const std::pair<std::string, int> items[] = {{"Evaluation", 13}, {"PR", 22}, {"ALog", 14}};
    for (const auto& [prefix, count] : items)
        for (int number = 1; number <= count; ++number)
            options.insert(options.end(), {"--answer", prefix + std::to_string(number) + "=NA"});
    EXPECT_EQ(Set(options), 0) << err;
    EXPECT_EQ(StatusOf(1), "3");
    EXPECT_THAT(out, HasSubstr("Viewbox(3,1): viewbox luminance: 2999, expected at least 3000"));
    EXPECT_THAT(out, Not(HasSubstr("have no answer"))) << out;
}

TEST_F(SurveyProgramTest, AGapIsReportedAndTheSurveyIsSaved) {
    NewSurvey();
    EXPECT_EQ(Set({"--set", "DensityControlFunction(9,2)=80", "--set", "DensityControlFunction(7,2)=60"}), 4);
    EXPECT_THAT(err, HasSubstr("element 1: AEC page, density control step -2"));
    EXPECT_EQ(Run({"judge", Path("out.xml"), "-o", Path("judged.xml")}), 4);
    EXPECT_TRUE(Exists("judged.xml"));
}

TEST_F(SurveyProgramTest, WrongEntriesAreNamedAndWriteNothing) {
    NewSurvey();
    Write("bad.json", "{\"sets\":{}}");
    Write("twice.json", R"json({"set":{"Comment(0)":"a","Comment(0)":"b"}})json");
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"--set", "Viewbox(3,9)=1"}, "Viewbox(3,9)"},
        {{"--set", "Viewbox(3,1)"}, "ADDRESS=TEXT"},
        {{"--answer", "PR1=Yes"}, "Pass, Fail or NA"},
        {{"--from", Path("bad.json")}, "sets"},
        {{"--from", Path("none.json")}, "none.json"},
        {{"--id", "5", "--list"}, "--id"},
        {{"--answer", "PR1"}, "ITEM=Pass, Fail or NA"},
        {{"--from", Path("bad.json"), "--export", Path("bad.json")}, "the output is the input"},
        {{"--from", Path("twice.json")}, "\"Comment(0)\" twice"},
        {{"--set", "Collimation.SID=65 cm"}, "\"65 cm\" is no number"},
        {{"--set", "ImageQuality(1,2)=2026-02-31"}, "is no date"},
        {{"--set", "GeneralInformation.Day=31", "--set", "GeneralInformation.Month=2"}, "-2-31 is no date"},
        {{"--set", "Comment(0)=a[¤]b"}, "parts the cells of a file"},
    };
    for (const auto& [options, words] : cases) {
        EXPECT_EQ(Set(options), 2) << words;
        EXPECT_THAT(err, HasSubstr(words));
        EXPECT_FALSE(Exists("out.xml")) << words;
    }
    std::string cut = Read("new.xml");
    cut.replace(cut.find("Target Material[¤]"), std::string("Target Material[¤]").size(), "");
    Write("new.xml", cut);
    EXPECT_EQ(Set({"--list"}), 2);
    EXPECT_THAT(err, HasSubstr("\"DeviXrayLightField\" has 11 cells, expected 12"));
}

TEST_F(SurveyProgramTest, InASequenceTheGuideIsLeftAsTheScriptSays) {
    const std::string buttons = "<TestGuideSettings><Buttons>3</Buttons></TestGuideSettings>";
    Write("in.xml", Sequence(Group(1, Element(3, 1300, buttons) + Element(2, 1300, buttons))));
    Write("in.jsonl", kHead);
    struct Case {
        const char *script, *first;
        const char* second;
        int code;
    };
    const Case cases[] = {{"", "0", "0", 0},         {"next;na", "0", "3", 0},
                          {"na", "3", "3", 0},       {"skip", "", "", 0},
                          {"next;skip", "0", "", 0}, {"next;previous;next;next", "0", "0", 0},
                          {"next;abort", "0", "", 3}};
    for (const Case& c : cases) {
        EXPECT_EQ(RunFile("in.xml", "in.jsonl", c.script), c.code) << c.script << err;
        EXPECT_EQ(StatusOf(3), c.first) << c.script;
        EXPECT_EQ(StatusOf(2), c.second) << c.script;
    }
}

TEST_F(SurveyProgramTest, ThePrintedSurveyShowsEveryCellInEveryForm) {
    NewSurvey();
    const std::string comment = [] {
        std::string words;
        for (int i = 0; i < 125; ++i) words += "word" + std::to_string(100 + i) + " ";
        return words;  // 1,000 characters
    }();
    EXPECT_EQ(Set({"--set", "GeneralInformation.Site=Northern Clinic", "--set", "Resolution(7,2)=12", "--set",
                   "Comment(5)=" + comment, "--answer", "PR1=Fail", "--answer", "PR12=Pass", "--answer",
                   "ALog1=Pass"}),
              1)
        << err;
    for (const std::string paper : {"A4", "Letter"}) {
        ASSERT_EQ(Run({"report", Path("out.xml"), "-o", Path("r.pdf"), "--paper", paper}), 0) << err;
        // Cover, comments, four forms.
        EXPECT_NE(PrintedBy("pdfinfo '" + Path("r.pdf") + "'").find("Pages:           6"), std::string::npos);
    }
    ASSERT_EQ(Run({"report", Path("out.xml"), "-o", Path("r.txt")}), 0) << err;
    ASSERT_EQ(Run({"report", Path("out.xml"), "-o", Path("r.html")}), 0) << err;
    for (const std::string& text :
         {Read("r.txt"), Read("r.html"), PrintedBy("pdftotext -layout '" + Path("r.pdf") + "' -")}) {
        for (int i = 0; i < 125; ++i) EXPECT_THAT(text, HasSubstr("word" + std::to_string(100 + i))) << i;
        for (const char* words :
             {"Preliminary Results", "Trainee or Assistant Log", "Recommended Corrective Action:",
              "Phone Number:", "Date of Installation:", "Supervising Medical Physicist:", "Visual checklist",
              "Measured performance within acceptable limits for small focal spot", "Northern Clinic"})
            EXPECT_THAT(text, HasSubstr(words)) << words;
    }
    const std::string text = Read("r.txt");
    // clang-format off
    for (const char* line :
         {"| 3.  Evaluation of Focal Spot Performance                               |   ✗ Fail    |  ✗ Fail   |\n",
          "| 1.  Darkroom cleanliness (daily)                                       |   ✗ Fail    |   Pass    |\n",
          "| 1.  Mammographic Unit Assembly Evaluation       |       Pass       |         |\n"})
        // clang-format on
        EXPECT_THAT(text, HasSubstr(line)) << line << text;
}

const std::string kVoltage = Exposures(4) + "<MeasurementMode>3</MeasurementMode><NominalKV>28</NominalKV>";
std::string VoltageTest(int id) {
    return Element(id, 900, kVoltage, Limit("ER CV", "<High Value=\"0.02\"/>"));
}
const std::string kSteady = Shot("28.1") + Shot("28.1") + Shot("28.1") + Shot("28.1");
const std::string kUnsteady = Shot("24") + Shot("33") + Shot("24") + Shot("33");

TEST_F(SurveyProgramTest, EachSurveyTakesTheTestsOfItsOwnGroup) {
    struct Case {
        const char* what;
        std::string elements, readings;
        const char* first;  ///< kVpL36 of survey 10
        const char* second;
    };
    const std::string survey = Element(10, 1300, {});
    const std::string other = Element(20, 1300, {});
    const Case cases[] = {
        {"two whole rooms", Group(1, VoltageTest(2) + survey) + Group(3, VoltageTest(4) + other),
         kSteady + kUnsteady, "1", "2"},
        {"a room without tests", Group(1, VoltageTest(2) + survey) + Group(3, other), kSteady, "1", "0"},
        {"a survey in front of its tests",
         Group(1, VoltageTest(2) + survey) + Group(3, other + VoltageTest(4)), kSteady + kUnsteady, "1", "2"},
        {"one after the other", VoltageTest(2) + survey + VoltageTest(4) + other, kUnsteady + kSteady, "1",
         "1"},
        {"a group without a survey", Group(1, survey + Group(5, VoltageTest(2))) + other, kSteady, "1", "0"},
        {"surveys that are roots", Group(1, VoltageTest(2)) + survey + other, kSteady, "0", "0"},
        {"a survey elsewhere that is the only one", Group(1, survey) + Group(3, VoltageTest(4)), kSteady, "1",
         ""},
    };
    for (const Case& c : cases) {
        Write("in.xml", Sequence(c.elements));
        Write("in.jsonl", kHead + c.readings);
        RunFile("in.xml", "in.jsonl");
        EXPECT_EQ(Cell(10, "kVpL36"), c.first) << c.what << err;
        EXPECT_EQ(Cell(20, "kVpL36"), c.second) << c.what << err;
    }
}

TEST_F(SurveyProgramTest, JudgingKeepsTheOutcomesOfEachSurveyApart) {
    const std::string doses = "<ResultItem><Status>0</Status><kVpL36>2</kVpL36><BQC79>1</BQC79><Dose80>";
    Write("in.xml",
          Sequence(Group(1, VoltageTest(2) + Element(10, 1300, {}, doses + "2</Dose80></ResultItem>")) +
                   Group(3, Element(20, 1300, {}, doses + "1</Dose80></ResultItem>"))));
    Write("in.jsonl", kHead + kSteady);
    RunFile("in.xml", "in.jsonl");
    Run({"judge", Path("out.xml"), "-o", Path("judged.xml")});
    for (const std::string file : {"out.xml", "judged.xml"}) {
        EXPECT_EQ(Cell(10, "kVpL36", file) + Cell(10, "Dose80", file), "12") << file << err;
        EXPECT_EQ(Cell(20, "kVpL36", file) + Cell(20, "Dose80", file), "21") << file << err;
    }
}

TEST_F(SurveyProgramTest, AnEntryLeavesEachSurveyItsOwnOutcomes) {
    const auto survey = [](int id, const std::string& dose) {
        return Element(id, 1300, {},
                       "<ResultItem><Status>0</Status><Dose80>" + dose + "</Dose80></ResultItem>");
    };
    Write("in.xml", Sequence(survey(10, "2") + survey(20, "1")));
    for (const auto& [id, dose] : {std::pair("10", "2"), std::pair("20", "1")}) {
        Run({"survey", Path("in.xml"), "--id", id, "--set", "Comment(0)=Words", "-o", Path("out.xml")});
        EXPECT_EQ(Cell(10, "Dose80") + Cell(20, "Dose80"), "21") << id << err;
        // Rows 27 and 28 of the summary have the dose, in two columns each.
        std::string verdicts = "22237::Pass[¤]22237::Pass[¤]22237::Pass[¤]22237::Pass";
        if (dose == std::string("2")) verdicts = "22238::Fail[¤]22238::Fail[¤]22238::Fail[¤]22238::Fail";
        const std::string summary = ResultOf(std::stoi(id)).child_value("SummaryPage");
        EXPECT_THAT(summary, HasSubstr("[¤]" + verdicts + "[¤]22239::NA")) << id << summary;
    }
}

TEST_F(SurveyProgramTest, ASurveyShowsTheOutcomesOfLaterTests) {
    // A tube without output: 1200 asks for 800 and 513 mR/s. No command but the run measures that.
    const std::string output = Element(2, 1200, Exposures(1) + "<MeasurementMode>3</MeasurementMode>");
    Write("in.xml", Sequence(Element(10, 1300, {}) + output + VoltageTest(3)));
    Write("in.jsonl", kHead + Shot("28.1") + kSteady);
    RunFile("in.xml", "in.jsonl");
    Run({"judge", Path("out.xml"), "-o", Path("judged.xml")});
    for (const std::string file : {"out.xml", "judged.xml"}) {
        EXPECT_EQ(Cell(10, "kVpL36", file) + Cell(10, "Dose82", file) + Cell(10, "Dose75", file), "122")
            << file;
        ASSERT_EQ(Run({"report", Path(file), "-o", Path("r.txt")}), 0) << err;
        const std::string text = Read("r.txt");
        const std::size_t line = text.find("Radiation output rate is > 800 mR/sec");
        ASSERT_NE(line, std::string::npos);
        EXPECT_NE(text.substr(line, 100).find("✗ Fail"), std::string::npos) << text.substr(line, 200);
    }
}

TEST_F(SurveyProgramTest, OnlyWhatMeasuresNeedsInstruments) {
    NewSurvey();
    EXPECT_EQ(Run({"run", Path("new.xml"), "-o", Path("out.xml")}), 0) << err;
    EXPECT_TRUE(Exists("out.xml"));
    Write("in.xml", Sequence(Group(1, Element(10, 1300, {}) + VoltageTest(2))));
    EXPECT_EQ(Run({"run", Path("in.xml"), "-o", Path("none.xml")}), 2);
    EXPECT_THAT(err, HasSubstr("no instruments were given, and element 2 of"));
    EXPECT_FALSE(Exists("none.xml"));
    EXPECT_FALSE(Exists("none.xml.journal"));
}

TEST_F(SurveyProgramTest, AFailedSurveyInAGroupThatWasNotRunFails) {
    Write("new.xml", Sequence(Group(1, Element(10, 1300, {}))));
    EXPECT_EQ(Set({"--answer", "Evaluation3=Fail"}), 1) << err;
    EXPECT_EQ(StatusOf(10), "2");
}

TEST_F(SurveyProgramTest, ADiscardedSurveyPrintsNoForms) {
    NewSurvey();
    EXPECT_EQ(Set({"--answer", "PR1=Fail"}), 1) << err;
    ASSERT_EQ(Run({"run", Path("out.xml"), "--operator", "skip", "-o", Path("skipped.xml"), "--report",
                   Path("skipped.txt")}),
              0)
        << err;
    EXPECT_THAT(Read("skipped.xml"), Not(HasSubstr("<ResultItem")));
    EXPECT_THAT(Read("skipped.txt"), HasSubstr("Annual Mammography Survey"));
    EXPECT_THAT(Read("skipped.txt"), Not(HasSubstr("QC TEST SUMMARY")));
}

TEST_F(SurveyProgramTest, EmptyGridsAndAnEmptyMtiAreTaken) {
    Write("in.xml",
          Sequence(Element(10, 1300, "<Collimation><DeviXrayLightField/></Collimation>",
                           "<ResultItem MTI=\"\"><Status>0</Status><Collimation><Alignment></Alignment>"
                           "</Collimation><Viewbox/></ResultItem>")));
    ASSERT_EQ(Run({"judge", Path("in.xml"), "-o", Path("out.xml")}), 0) << err;
    EXPECT_THAT(Read("out.xml"), HasSubstr("<Alignment>Difference between paddle edge and film[¤]"));
}

TEST_F(SurveyProgramTest, AnOutputIsWrittenAndACommandWithoutAPurposeRefused) {
    NewSurvey();
    EXPECT_EQ(Run({"survey", Path("new.xml")}), 2);
    EXPECT_THAT(err, HasSubstr("nothing is to be done"));
    Write("plain.xml", Sequence(Element(1, 100, Exposures(1))));
    EXPECT_EQ(Run({"survey", Path("plain.xml"), "--list"}), 2);
    EXPECT_THAT(err, HasSubstr("plain.xml: holds no survey; vorex new 1300 makes a file that does"));
    EXPECT_EQ(Set({"--list"}), 0) << err;
    EXPECT_TRUE(Exists("out.xml"));
}

TEST_F(SurveyProgramTest, FiguresThatDoNotCountAsTypedAreNamed) {
    NewSurvey();
    EXPECT_EQ(
        Set({"--set", "Viewbox(3,1)=3.100,5", "--set", "Viewbox(3,2)=3100,5", "--set",
             "Viewbox(3,3)=bright|dark", "--set", "Viewbox(2,1)=room 2", "--set", "Resolution(1,2)=Mo"}),
        0);
    EXPECT_EQ(err,
              "vorex: Viewbox(3,1): \"3.100,5\" is no plain number and counts as 3.1\n"
              "vorex: Viewbox(3,3): \"bright|dark\" is no plain number and counts as 0\n");
    EXPECT_THAT(Read("out.xml"), HasSubstr("[¤]3.100.5[¤]3100.5[¤]bright|dark[¤]"));
    const std::string entered = Read("out.xml");
    ASSERT_EQ(Run({"survey", Path("out.xml"), "-o", Path("again.xml")}), 0) << err;
    EXPECT_EQ(Read("again.xml"), entered);
}

TEST_F(SurveyProgramTest, TheListSaysInWordsWhatEachPlaceIs) {
    NewSurvey();
    ASSERT_EQ(Run({"survey", Path("new.xml"), "--list"}), 0);
    const std::pair<const char*, const char*> cases[] = {
        {"Evaluation(3,6)", "3 to 5 cm, 50% Fatty - 50% Dense Breast, Filter, column 6"},
        {"DeviXrayLightField(0,2)", "Target Material, column 2"},
        {"Resolution(8,3)",
         "Limiting resolution in line-pairs per mm, bars perpendicular to A-C axis, column 3"},
        {"ThicknesskVpTracking(6,7)", "6 cm, Film Optical Density, column 7"},
        {"DensityControlFunction(0,5)", "Focal Spot, column 5"},
        {"ImageModeTracking(4,7)", "Small Grid, Film Optical Density, column 7"},
        {"SmallCassettes(3,3)", "Control Cassette, Density, row 3, column 3"},
        {"LargeCassettes(8,0)", "Other Cassettes, Cassette ID, row 8, column 0"},
        {"ImageQuality(7,1)", "Background density, Previous Film, column 1"},
        {"Viewbox(3,2)", "Viewbox luminance (cd/m2), Radiologist's Viewboxes, 2, column 2"},
        {"Evaluation13", "event of a power failure\n"},
        {"PR1", "Darkroom cleanliness (daily), ACR"},
        {"PR12", "Darkroom cleanliness (daily), MQSA"},
        {"ALog2", "Collimation Assessment, performed by the assistant"},
    };
    for (const auto& [address, meaning] : cases) {
        const std::size_t at = out.find("\t" + std::string(address) + "\t");
        ASSERT_NE(at, std::string::npos) << address;
        const std::string line = out.substr(at, out.find('\n', at) + 1 - at);
        EXPECT_THAT(line, HasSubstr(meaning));
    }
}

TEST_F(SurveyProgramTest, ShowPrintsTablesWithinTheLineAndWhyTheyFail) {
    const std::string cells =
        "<ResultItem><Status>2</Status><Comment>dusty</Comment><Dose80>2</Dose80><kVpL36>2</"
        "kVpL36><ImageQuality/></ResultItem>";
    std::string nested = Element(10, 1300, {}, cells);
    for (int depth = 0; depth < 3; ++depth) nested = Group(20 + depth, nested);
    Write("new.xml", Sequence(nested));
    ASSERT_EQ(Run({"survey", Path("new.xml"), "--set", "ImageQuality(14,2)=3.5", "--set", "Viewbox(4,2)=50.1",
                   "-o", Path("out.xml")}),
              0)
        << err;
    ASSERT_EQ(Run({"show", Path("out.xml")}), 0);
    for (const char* words : {"Comment: dusty\n", "Fibers  :  3.5 "}) EXPECT_THAT(out, HasSubstr(words));
    EXPECT_THAT(out, HasSubstr("Dose80, test 1100: average glandular dose, expected at most 300 mrad"));
    EXPECT_THAT(out, HasSubstr("kVpL36, test 900:"));
    EXPECT_THAT(out, HasSubstr("Viewbox(4,2): illuminance: 50.1, expected at most 50 lux"));
    const std::size_t tables = out.find("Preliminary Results");
    std::istringstream lines(out.substr(tables, out.find("What fails") - tables));
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 100U) << line;
}

TEST_F(SurveyProgramTest, AnExportEnteredIntoANewSurveyIsTheSurveyAgain) {
    NewSurvey();
    const std::string comment = std::string(100000, 'x') + "\nsecond line <&>";
    ASSERT_EQ(Set({"--set", "ThicknesskVpTracking(0,1)=", "--set", "DensityControlFunction(13,1)=", "--set",
                   "Collimation.SID=650,5", "--set", "Comment(9)=" + comment, "--set",
                   "ArtifactEvaluation(8,3)=false", "--answer", "ALog14=na", "--answer", "PR1=Pass"}),
              0)
        << err;
    const std::string entered = Read("out.xml");
    ASSERT_EQ(Run({"survey", Path("out.xml"), "--export", Path("all.json")}), 0) << err;
    ASSERT_EQ(Set({"--from", Path("all.json")}), 0) << err;
    EXPECT_EQ(Read("out.xml"), entered);
    EXPECT_THAT(entered, HasSubstr("second line &lt;&amp;&gt;"));
    EXPECT_THAT(Read("all.json"), HasSubstr("\"ThicknesskVpTracking(0,1)\": \"\""))
        << "what a new survey proposes and this one has not";
}

}  // namespace
}  // namespace vorex::test

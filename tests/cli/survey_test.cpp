#include "program_fixture.h"

namespace vorex::test {
namespace {

class SurveyProgramTest : public ProgramTest {
  protected:
    void NewSurvey() { ASSERT_EQ(Run({"new", "1300", "-o", Path("new.xml")}), 0) << err; }
    int Set(const std::vector<std::string>& options) {
        std::vector<std::string> arguments = {"survey", Path("new.xml"), "-o", Path("out.xml")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const int code = Run(arguments);
        result.load_file(Path("out.xml").c_str());
        return code;
    }
};

TEST_F(SurveyProgramTest, WhatIsEnteredIsCalculatedJudgedAndKept) {
    NewSurvey();
    EXPECT_EQ(Set({"--set", "Collimation.SID=650", "--set", "DeviXrayLightField(2,1)=2", "--set",
                   "DeviXrayLightField(3,1)=1.5", "--set", "Viewbox(3,1)=2999", "--answer", "PR1=Pass"}),
              0)
        << err;
    EXPECT_NE(out.find("Viewbox(3,1): viewbox luminance: 2999, expected at least 3000"), std::string::npos)
        << out;
    EXPECT_NE(out.find("48 of 49 items have no answer"), std::string::npos) << out;
    EXPECT_NE(Read("out.xml").find("3.5[¤]"), std::string::npos);
    EXPECT_EQ(Run({"judge", Path("out.xml"), "-o", Path("judged.xml")}), 0);
    EXPECT_EQ(Read("judged.xml"), Read("out.xml"));
    EXPECT_EQ(Run({"show", Path("out.xml")}), 0);
    EXPECT_NE(out.find("11. Viewbox Luminance and Room Illuminance"), std::string::npos);
    EXPECT_EQ(Run({"survey", Path("out.xml"), "--export", Path("texts.json")}), 0);
    const std::string kept = Read("out.xml");
    EXPECT_EQ(Set({"--from", Path("texts.json")}), 0) << err;
    EXPECT_EQ(Read("out.xml"), kept);
    EXPECT_EQ(Run({"survey", Path("out.xml"), "--list"}), 0);
    EXPECT_NE(out.find("Viewbox\tViewbox(3,1)\t2999\tViewbox luminance (cd/m2)"), std::string::npos);
    EXPECT_EQ(Set({"--answer", "Evaluation3=Fail"}), 1);
    EXPECT_EQ(StatusOf(1), "2");
}

TEST_F(SurveyProgramTest, AGapIsSaidAndTheSurveyIsSavedAllTheSame) {
    NewSurvey();
    EXPECT_EQ(Set({"--set", "DensityControlFunction(9,2)=80", "--set", "DensityControlFunction(7,2)=60"}), 4);
    EXPECT_NE(err.find("element 1: AEC page, density control step -2"), std::string::npos) << err;
    EXPECT_EQ(Run({"judge", Path("out.xml"), "-o", Path("judged.xml")}), 4);
    EXPECT_TRUE(Exists("judged.xml"));
}

TEST_F(SurveyProgramTest, WrongEntriesAreNamedAndWriteNothing) {
    NewSurvey();
    Write("bad.json", "{\"sets\":{}}");
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"--set", "Viewbox(3,9)=1"}, "Viewbox(3,9)"}, {{"--set", "Viewbox(3,1)"}, "ADDRESS=TEXT"},
        {{"--answer", "PR1=Yes"}, "Pass, Fail or NA"}, {{"--from", Path("bad.json")}, "sets"},
        {{"--from", Path("none.json")}, "none.json"},  {{"--id", "5", "--list"}, "--id"},
    };
    for (const auto& [options, words] : cases) {
        EXPECT_EQ(Set(options), 2) << words;
        EXPECT_NE(err.find(words), std::string::npos) << err;
        EXPECT_FALSE(Exists("out.xml")) << words;
    }
    std::string cut = Read("new.xml");
    cut.replace(cut.find("Target Material[¤]"), std::string("Target Material[¤]").size(), "");
    Write("new.xml", cut);
    EXPECT_EQ(Set({"--list"}), 2);
    EXPECT_NE(err.find("\"DeviXrayLightField\" has 11 cells, expected 12"), std::string::npos) << err;
}

TEST_F(SurveyProgramTest, InASequenceTheGuideIsLeftAsTheScriptTells) {
    const std::string survey =
        Element(2, 1300, "<TestGuideSettings><Buttons>3</Buttons></TestGuideSettings>");
    const std::string first = Element(3, 1300, "<TestGuideSettings><Buttons>3</Buttons></TestGuideSettings>");
    Write("in.xml", Sequence(Group(1, first + survey)));
    Write("in.jsonl", kHead);
    struct Case {
        const char* script;
        const char* first;
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

TEST_F(SurveyProgramTest, TheMammographyTestBeforeItReachesTheSurvey) {
    const std::string settings =
        Exposures(4) + "<MeasurementMode>3</MeasurementMode><NominalKV>28</NominalKV>";
    Write("in.xml", Sequence(Element(1, 900, settings, Limit("ER CV", "<High Value=\"0.02\"/>")) +
                             Element(2, 1300, {})));
    Write("in.jsonl", kHead + Shot("28.1") + Shot("28.1") + Shot("28.1") + Shot("28.1"));
    RunFile("in.xml", "in.jsonl");
    EXPECT_EQ(std::string(ResultOf(2).child_value("kVpL36")), "1") << err;
    const std::string table = ResultOf(2).child_value("PreliminaryResults");
    EXPECT_NE(table.find("22237::Pass"), std::string::npos);
    Write("in.jsonl", kHead + Shot("24") + Shot("33") + Shot("24") + Shot("33"));
    RunFile("in.xml", "in.jsonl");
    EXPECT_EQ(std::string(ResultOf(2).child_value("kVpL39")), "2") << err;
}

}  // namespace
}  // namespace vorex::test

#include <regex>

#include "cli/program_fixture.h"

namespace vorex::test {
namespace {

const std::string kSite = R"(<High Value="88"/><Low Value="70"/>)";

class VerdictTest : public ProgramTest {
  protected:
    /// A finished run of two exposures, the second one near the limit.
    void Measure() {
        RunPassing(Element(3, 500, Exposures(2), Limit("ER kVp Avg", kSite)), Shot("80") + Shot("84.3"));
    }
    /// out.xml with the first match of a text after a place replaced, as edited.xml.
    void Edit(const std::string& after, const std::string& from, const std::string& to) {
        std::string text = Read("out.xml");
        const std::size_t at = text.find(from, text.find(after));
        ASSERT_NE(at, std::string::npos) << from;
        Write("edited.xml", text.replace(at, from.size(), to));
    }
    bool Prints(const std::string& words) const { return out.find(words) != std::string::npos; }
};

TEST_F(VerdictTest, AResultKeepsWhatItsVerdictWasMadeWith) {
    Write("s.xml", Sequence(Element(1, 500, Exposures(1), Limit("ER kVp Avg", kSite))));
    Write("r.jsonl", R"({"recording":1,"kind":1,"serialNumbers":"4711,88,12","calibrationDates":)"
                     R"("2026-01-15,2026-02-01","instrumentNames":["A","B","C"]})"
                     "\n{\"quiet\":3}\n" +
                         Shot("80"));
    ASSERT_EQ(RunFile("s.xml", "r.jsonl"), kExitPassed) << err;
    const pugi::xml_node run = ResultOf(1).child("Run");
    EXPECT_STREQ(run.attribute("Start").value(), "2026-01-15T09:00:00Z");
    // Four polls, 500 ms apart or 1000 ms in fluoroscopy: more than a second, less than ten.
    EXPECT_TRUE(std::regex_match(run.attribute("End").value(), std::regex("2026-01-15T09:00:0[1-9]Z")))
        << run.attribute("End").value();
    EXPECT_STREQ(run.attribute("Ending").value(), "Complete");
    EXPECT_STREQ(run.attribute("Planned").value(), "1");
    EXPECT_TRUE(run.attribute("Reason").empty());
    EXPECT_TRUE(std::regex_match(run.attribute("Program").value(), std::regex("vorex [0-9.]+")));
    EXPECT_STREQ(run.attribute("Formulas").value(), "2");
    std::string instruments;
    for (pugi::xml_node item : ResultOf(1).children("MeasuredBy"))
        for (const char* name : {"Name", "SerialNumber", "CalibrationDate"})
            instruments += item.attribute(name).value() + std::string(" ");
    EXPECT_EQ(instruments, "A 4711 2026-01-15 B 88 2026-02-01 ") << "a test has two instruments at most";
    const pugi::xml_node block = result.select_node("//PlugInData").node();
    for (pugi::xml_node setting : ResultOf(1).child("Technique"))
        EXPECT_STREQ(block.child_value(setting.attribute("Key").value()), setting.child_value());
    EXPECT_STREQ(ResultOf(1).select_node("Technique/Setting[@Key='NumberOfExposures']").node().child_value(),
                 "1");
    const pugi::xml_node limit = ResultOf(1).select_node("JudgedBy/Standard[@Name='Site']/Limit").node();
    EXPECT_STREQ(limit.attribute("Key").value(), "ER kVp Avg");
    EXPECT_STREQ(limit.child("High").attribute("Value").value(), "88");
    EXPECT_STREQ(limit.child("Low").attribute("Value").value(), "70");
    ExpectJudgedAlike();
    EXPECT_EQ(err, "");
    Write("left.xml", Read("out.xml"));
    ASSERT_EQ(RunFile("left.xml", "r.jsonl", "next"), kExitPassed) << err;
    EXPECT_EQ(Read("out.xml"), Read("left.xml")) << "an element that is left as it is";
}

TEST_F(VerdictTest, AResultWithoutAnOriginStaysAsItIs) {
    Measure();
    ASSERT_TRUE(ResultOf(3).remove_child("Run") && ResultOf(3).remove_child("JudgedBy") &&
                ResultOf(3).remove_child("Technique") && ResultOf(3).remove_child("MeasuredBy"));
    result.save_file(Path("old.xml").c_str(), "  ");
    ASSERT_EQ(Run({"judge", Path("old.xml"), "-o", Path("one.xml")}), kExitPassed) << err;
    ASSERT_EQ(Run({"judge", Path("one.xml"), "-o", Path("two.xml")}), kExitPassed) << err;
    EXPECT_EQ(Read("one.xml"), Read("two.xml"));
    EXPECT_THAT(Read("one.xml"), Not(HasSubstr("<JudgedBy")));
    ASSERT_EQ(Run({"show", Path("old.xml")}), kExitPassed);
    EXPECT_FALSE(Prints("Taken ")) << out;
}

TEST_F(VerdictTest, TheTreeSaysHowARunEnded) {
    const std::string three = Shot("80") + Shot("81") + Shot("82");
    const struct {
        const char* title;
        std::string recording, script;
        int code;
        std::string ending;
        std::string line;  ///< after the name of the test, with single blanks
    } cases[] = {
        {"complete", three, "start,next", kExitPassed, "Complete", "Pass"},
        {"stopped", three, "start,stop@2,next", kExitPassed, "Stopped", "Pass (stopped after 2 of 3)"},
        {"link", Shot("80") + "{\"link\":false}\n", "start,next", kExitFault, "Broken",
         "Pass (broke off: the link to the instruments was lost)"},
        {"used up", Shot("80"), "start,next", kExitFault, "Broken",
         "Pass (broke off: the recording is used up; exposures delivered: 1)"},
        {"poll", Shot("80") + "{\"throws\":\"Poll\"}\n" + three, "start,next", kExitFault, "Broken",
         "Pass (broke off: Poll failed)"},
        {"arming", "{\"throws\":\"ApplySettings\"}\n" + three, "start,next", kExitFault, "Broken",
         "not tested (broke off: ApplySettings failed)"},
        {"redo", three + "{\"link\":false}\n", "start,redo 2,next", kExitFault, "Broken",
         "Pass (broke off: redo of exposure 2: the link to the instruments was lost)"},
        {"mended", three + three, "start,redo 2,next", kExitPassed, "Complete", "Pass"},
    };
    for (const auto& run : cases) {
        SCOPED_TRACE(run.title);
        std::filesystem::remove(Path("out.xml"));
        EXPECT_EQ(RunOn(Element(1, 500, Exposures(3)), run.recording, run.script), run.code) << err;
        EXPECT_EQ(ResultOf(1).child("Run").attribute("Ending").value(), run.ending);
        const auto check = [&](const std::string& command) {
            std::istringstream lines(out);
            std::string line;
            while (std::getline(lines, line) && line.find("Fluoroscopy Accuracy: T") == std::string::npos) {
            }
            if (command != "show")
                for (std::string more; std::getline(lines, more) && more.starts_with("  ");) line += more;
            line = std::regex_replace(line, std::regex(" +"), " ");
            // Below the line of show is the whole record of the run.
            const std::string wanted = "1 Fluoroscopy Accuracy: T " + run.line;
            if (command == "show" && line.ends_with("~"))
                EXPECT_EQ(wanted.substr(0, line.size() - 1) + "~", line) << command;
            else
                EXPECT_EQ(line, wanted) << command;
        };
        check("run");
        Run({"judge", Path("out.xml"), "-o", Path("again.xml")});
        check("judge");
        EXPECT_EQ(Read("again.xml"), Read("out.xml"));
        Run({"show", Path("out.xml")});
        check("show");
        const std::string note = "(broke off: ";
        if (const std::size_t at = run.line.find(note); at != std::string::npos) {
            const std::string reason = run.line.substr(at + note.size());
            EXPECT_TRUE(Prints("The run broke off: " + reason.substr(0, reason.size() - 1))) << out;
        }
        for (std::size_t at = 0; at < out.size(); at = out.find('\n', at) + 1)
            EXPECT_LE(out.find('\n', at) - at, 100U) << out.substr(at, 120);
    }
}

TEST_F(VerdictTest, AReadingThatIsMissingIsNamedNextToTheVerdict) {
    const std::string kept = "{\"stopButton\":true}\n{\"stopButton\":true}\n{\"stopButton\":false}\n";
    const std::string fluoroscopy = "<MeasurementMode>2</MeasurementMode>";
    const struct {
        std::string settings, limits, recording, script, note;
    } rows[] = {
        // An empty value is judged as 0, which passes a limit that has no low side.
        {Exposures(3), Limit("ER kVp Avg", R"(<High Value="88"/>)"), kHead + Shot("") + Shot("80") + Shot(""),
         "", "exposure 1 has no value for kVp Avg, judged as 0, and 1 more"},
        {Exposures(2), "", kHead + Shot("80") + Shot(""), "", "exposure 2 has no value for kVp Avg"},
        {Exposures(2) + fluoroscopy, "", kHead + kept + Shot("80"), "start,stop@0,next",
         "exposure 1 has no reading"},
        {"<DetectorName>4</DetectorName>" + Exposures(2) + fluoroscopy, "", kHeadOfBoth + kept + Shot("80"),
         "start,stop@0,next", "exposure 1 has no reading; what came after Stop may be in exposure 2"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.note);
        RunPassing(Element(3, 500, row.settings, row.limits), row.recording, row.script);
        EXPECT_TRUE(Prints(" Pass") && Prints(" (" + row.note)) << out;
        Run({"show", Path("out.xml")});
        EXPECT_TRUE(Prints("\n  " + row.note)) << out;
        Run({"report", Path("out.xml"), "-o", Path("r.txt")});
        EXPECT_THAT(Read("r.txt"), HasSubstr("✓ Pass (" + row.note.substr(0, 9))) << "on the cover";
        EXPECT_THAT(Read("r.txt"), HasSubstr(" " + row.note));
    }
    Measure();
    EXPECT_FALSE(Prints("exposure")) << out;
}

TEST_F(VerdictTest, AWaveformThatFailedIsTold) {
    RunPassing(Element(1, 100, Exposures(1) + "<NumberOfExposures0>1</NumberOfExposures0>"),
               "{\"throws\":\"GetWaveform\"}\n" + Shot("80", "10", Waves(Wave(1, "0,40.5,80.1,0"))));
    EXPECT_TRUE(Prints("Pass  (with a fault: GetWaveform failed)")) << out;
    EXPECT_STREQ(ResultOf(1).child("Run").attribute("Ending").value(), "Complete");
}

TEST_F(VerdictTest, JudgeSaysWhichVerdictsChangedAndWhy) {
    Measure();
    Edit("<ExpectedResult>", "Value=\"88\"", "Value=\"84\"");
    ASSERT_EQ(Run({"judge", Path("edited.xml"), "-o", Path("again.xml")}), kExitFailed) << err;
    EXPECT_EQ(
        err,
        "vorex: element 3: Pass -> Fail: kVp Avg exposure 2, 84.3 KV, at least 70, at most 84 (Site 1), "
        "before at least 70, at most 88\n");
    ASSERT_EQ(Run({"judge", Path("again.xml"), "-o", Path("third.xml")}), kExitFailed);
    EXPECT_EQ(err, "") << "its verdict is up to date";
    EXPECT_EQ(Read("third.xml"), Read("again.xml"));
    Write("out.xml", Read("again.xml"));
    Edit("<ServiceRecord", "/80/", "/80.0/");
    ASSERT_EQ(Run({"judge", Path("edited.xml"), "-o", Path("third.xml")}), kExitFailed);
    EXPECT_EQ(Read("third.xml"), Read("edited.xml")) << "the record of a verdict that stays";
    // And back.
    Edit("<ExpectedResult>", "Value=\"84\"", "Value=\"90\"");
    ASSERT_EQ(Run({"judge", Path("edited.xml"), "-o", Path("again.xml")}), kExitPassed);
    EXPECT_EQ(
        err,
        "vorex: element 3: Fail -> Pass: kVp Avg exposure 2, 84.3 KV, at least 70, at most 90 (Site 1), "
        "before at least 70, at most 84\n");
}

TEST_F(VerdictTest, ShowNamesWhatHasChanged) {
    Measure();
    ASSERT_EQ(Run({"show", Path("out.xml")}), kExitPassed);
    EXPECT_TRUE(Prints("Taken 2026-01-15T09:00:00Z to 2026-01-15T09:00:0")) << out;
    EXPECT_FALSE(Prints("edited since") || Prints("Limits changed") || Prints("The run")) << out;
    Edit("<ExpectedResult>", "Value=\"88\"", "Value=\"90\"");
    ASSERT_EQ(Run({"judge", Path("edited.xml"), "-o", Path("again.xml")}), kExitPassed);
    EXPECT_EQ(Read("again.xml"), Read("edited.xml")) << "the limits still allow it";
    ASSERT_EQ(Run({"show", Path("again.xml")}), kExitPassed);
    EXPECT_TRUE(Prints("Site 1, ER kVp Avg, at most: now 90, then 88\n")) << out;
    Edit("<PlugInData", "<MachineKV0>0<", "<MachineKV0>70<");
    ASSERT_EQ(Run({"show", Path("edited.xml")}), kExitPassed);
    EXPECT_TRUE(Prints("Settings edited since:\n    MachineKV0: now 70, then 0\n")) << out;
}

TEST_F(VerdictTest, ABadRecordIsAnErrorOfTheFile) {
    Measure();
    for (const auto& [from, to] :
         {std::pair("Ending=\"Complete\"", "Ending=\"Perhaps\""),
          std::pair("Planned=\"2\"", "Planned=\"-2\""), std::pair("Formulas=\"2\"", "Formulas=\"new\"")}) {
        Edit("<Run", from, to);
        EXPECT_EQ(Run({"show", Path("edited.xml")}), kExitUsage) << to;
        EXPECT_THAT(err, HasSubstr("of \"Run\""));
    }
}

}  // namespace
}  // namespace vorex::test

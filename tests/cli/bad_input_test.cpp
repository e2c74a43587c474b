#include "cli/program_fixture.h"
#include "instruments/operation.h"

namespace vorex::test {
namespace {

/// Wrong usage and wrong files: one clear message, the right exit code, nothing written.
class BadInputTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        Write("good.xml", Sequence(Element(1, 100, Exposures(2))));
        Write("good.jsonl", kHead + Shot("80") + Shot("81"));
    }
    void ExpectOneMessage(const std::string& label, const std::vector<std::string>& parts) {
        EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1) << label << ": " << err;
        for (const std::string& part : parts) EXPECT_THAT(err, HasSubstr(part)) << label << ": " << err;
        EXPECT_FALSE(Exists("out.xml")) << label;
        EXPECT_EQ(out, "") << label;
    }
};

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

TEST_F(BadInputTest, AWrongElementFileIsNamedWithItsPlace) {
    const std::string good = Sequence(Element(7, 100, Exposures(2)));
    const std::string measured =
        Element(7, 100, Exposures(1),
                R"(<ResultItem><Status>1</Status><Measurement Key="kVp Avg"><Value Type="1">80</Value>)"
                R"(<Status>1</Status></Measurement></ResultItem>)");
    struct Case {
        const char* name;
        std::string text;
        std::vector<std::string> message;
    };
    const Case cases[] = {
        {"empty", "", {"bad.xml"}},
        {"truncated", good.substr(0, good.size() / 2), {"bad.xml"}},
        // No column serves such instruments: the test would pass with nothing measured.
        {"unknown instruments",
         Sequence(Element(7, 100, Exposures(2) + "<DetectorOption>9</DetectorOption>")),
         {"element 7", "DetectorOption", "9", "0 to 5"}},
        {"unknown instruments in use",
         Sequence(Element(7, 100, Exposures(2) + "<DetectorName>-1</DetectorName>")),
         {"element 7", "DetectorName", "-1", "0 to 5"}},
        {"a word as nominal value",
         Replaced(Sequence(measured), "</Value>", "</Value><PresetValue>low</PresetValue>"),
         {"element 7", "PresetValue", "kVp Avg", "low", "number"}},
    };
    for (const Case& c : cases) {
        Write("bad.xml", c.text);
        for (const std::vector<std::string>& arguments :
             {std::vector<std::string>{"show", Path("bad.xml")},
              {"judge", Path("bad.xml"), "-o", Path("out.xml")},
              {"run", Path("bad.xml"), "--instruments", "recording:" + Path("good.jsonl"), "-o",
               Path("out.xml")}}) {
            EXPECT_EQ(Run(arguments), kExitUsage) << c.name;
            ExpectOneMessage(arguments.front() + ", " + c.name, c.message);
        }
        EXPECT_EQ(Read("bad.xml"), c.text) << c.name;
    }
}

TEST_F(BadInputTest, WrongUsageOfTheProgramSaysWhatIsExpected) {
    const std::string good = Path("good.xml");
    const std::string recording = "recording:" + Path("good.jsonl");
    const std::string output = Path("out.xml");
    const std::pair<std::vector<std::string>, std::vector<std::string>> cases[] = {
        {{}, {"new, run, resume, judge, survey, report, show or standards"}},
        {{"frobnicate"}, {"frobnicate", "new, run, resume, judge, survey, report, show or standards"}},
        {{"report", good}, {"--output"}},
        {{"report", good, "-o", Path("out.doc")}, {"out.doc", ".txt", ".html", ".pdf"}},
        {{"report", good, "-o", Path("out.pdf"), "--paper", "A5"}, {"A5", "A4", "Letter"}},
        {{"report", good, "-o", Path("nowhere/out.txt")}, {"nowhere", "folder"}},
        {{"report", good, "-o", Path("out.txt"), "--language", "xx"}, {"xx"}},
        {{"new", "1400"}, {"1400", "1300"}},
        {{"new", "7"}, {"\"7\"", "100"}},
        {{"new", "100x"}, {"100x"}},
        {{"run"}, {"FILE"}},
        {{"run", good, "-o", output}, {"--instruments"}},
        {{"run", good, "--instruments", "simulated:x7", "-o", output}, {"simulated:x7", "whole number"}},
        {{"run", good, "--instruments", recording, "--room", good, "-o", output}, {"--room", "simulated"}},
        {{"run", good, "--instruments", "simulated", "--room", Path("none.json"), "-o", output},
         {"none.json", "no such file"}},
        {{"run", good, "--instruments", "cable", "-o", output}, {"cable", "recording:FILE"}},
        {{"run", good, "--instruments", recording, "-o", good}, {"good.xml", "input"}},
        {{"run", good, "--instruments", recording, "-o", Path("none/out.xml")}, {"none"}},
        {{"run", good, "--instruments", recording, "-o", folder.string()}, {"folder"}},
        {{"judge", good, "-o", good}, {"good.xml", "input"}},
        {{"run", Path("missing.xml"), "--instruments", recording, "-o", output}, {"missing.xml"}},
        {{"run", good, "--instruments", "recording:" + Path("missing.jsonl"), "-o", output},
         {"missing.jsonl"}},
        {{"run", good, "--instruments", recording, "-o", output, "--report", Path("r.doc")},
         {"r.doc", ".pdf"}},
        {{"run", good, "--instruments", recording, "-o", output, "--language", "xx"}, {"xx", "en"}},
        {{"run", good, "--instruments", recording, "-o", output, "--operator", "start,dance"},
         {"dance", "redo"}},
        {{"run", good, "--instruments", recording, "-o", output, "--operator", "next"},
         {"next", "element 1"}},
        {{"run", good, "--instruments", recording, "-o", output, "--operator", "start,redo 3,next"},
         {"redo 3", "element 1"}},
        {{"run", good, "--instruments", recording, "-o", output, "--operator", "start,stop@3,next"},
         {"stop@3", "2 exposures"}},
        {{"show", good, "--colour"}, {"--colour"}},
    };
    for (const auto& [arguments, message] : cases) {
        std::string label;
        for (const std::string& argument : arguments) label += argument + " ";
        EXPECT_EQ(Run(arguments), kExitUsage) << label;
        ExpectOneMessage(label, message);
        std::filesystem::remove(output + ".journal");
    }
}

TEST_F(BadInputTest, ADiskThatIsFullLosesNoReading) {
    EXPECT_EQ(
        Run({"run", Path("good.xml"), "--instruments", "recording:" + Path("good.jsonl"), "-o", "/dev/full"}),
        kExitFault);
    EXPECT_THAT(err, HasSubstr("/dev/full"));
    EXPECT_THAT(out, HasSubstr("<Value Type=\"5\">81</Value>")) << "the result goes to standard output";
}

TEST_F(BadInputTest, AFileThatCannotBeWrittenIsNoWrongUsage) {
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"new", "100"}, {"judge", Path("good.xml")}}) {
        EXPECT_EQ(Run(command, {"-o", "/dev/full"}), kExitFault) << command.front();
        ExpectOneMessage(command.front(), {"/dev/full", "No space left"});
    }
}

TEST_F(BadInputTest, AResultThatCannotBePrintedIsNoVerdict) {
    const std::string failing =
        Sequence(Element(1, 100, Exposures(2), Limit("ER HVL", R"(<Low Value="5"/>)")));
    Write("failing.xml", failing);
    for (const std::string file : {"good.xml", "failing.xml"}) {
        std::ofstream full("/dev/full");
        std::ostringstream errors;
        Terminal terminal{full, errors};
        EXPECT_EQ(
            RunProgram({"run", Path(file), "--instruments", "recording:" + Path("good.jsonl")}, terminal),
            kExitFault)
            << file;
        EXPECT_EQ(errors.str(), "vorex: standard output could not be written\n") << file;
    }
}

TEST_F(BadInputTest, NoInputOfARunIsOverwrittenByItsResult) {
    Write("room.json", "{}");
    const std::string recording = Read("good.jsonl");
    std::filesystem::create_symlink(Path("good.jsonl"), Path("link.jsonl"));
    const std::vector<std::string> cases[] = {
        {"recording:" + Path("good.jsonl"), "-o", Path("good.jsonl")},
        {"recording:" + Path("link.jsonl"), "-o", Path("good.jsonl")},
        {"simulated", "--room", Path("room.json"), "-o", Path("room.json")},
    };
    for (const auto& instruments : cases) {
        EXPECT_EQ(Run({"run", Path("good.xml"), "--instruments"}, instruments), kExitUsage)
            << instruments.front();
        ExpectOneMessage(instruments.front(), {"the output is the input"});
    }
    EXPECT_EQ(Read("good.jsonl"), recording);
    EXPECT_EQ(Read("room.json"), "{}");
}

/// An instrument that fails never ends the program and never takes a stored exposure away.
class FaultTest : public ProgramTest {};

// A ZRD 47500 whose service also answers for an mAs meter that is not configured.
TEST_F(FaultTest, AReadingThatFitsNoColumnIsReportedNextToTheVerdict) {
    RunPassing(Element(1, 100, Exposures(1)), Shot("80", "10", MasOf("20")));
    const std::string fault = "exposure 1: the reading of the mAs meter has no column for \"ER mA\"";
    EXPECT_THAT(Read("out.xml"),
                HasSubstr("Reason=\"31488::exposure %%1: %%2|1|the reading of the mAs meter"));
    EXPECT_THAT(Shown(), HasSubstr(fault));
}

TEST_F(FaultTest, AnOperationThatFailsOnceNeverLosesAStoredExposure) {
    const std::string flags = "<NumberOfExposures0>1</NumberOfExposures0>";
    const std::string shot = Shot("80", "10", Waves(Wave(1, "0,40.5,80.1,0")));
    for (const std::string_view name : kOperationNames) {
        const std::string operation(name);
        const std::string fault = "{\"throws\":\"" + operation + "\"}\n";
        // At the first call, between the exposures, and after the last one.
        const std::string recordings[] = {fault + shot + shot, shot + fault + shot, shot + shot + fault};
        for (std::size_t stored = 0; stored < 3; ++stored) {
            const int code = RunOn(Element(1, 100, Exposures(2) + flags), recordings[stored]);
            const std::string label = operation + " after " + std::to_string(stored) + ": " + err;
            EXPECT_TRUE(code == kExitPassed || code == kExitFault) << label;
            const std::string values = ValuesOf(1, "kVp Avg");
            const std::string least = stored == 0 ? "" : stored == 1 ? "80" : "80|80";
            EXPECT_TRUE(values.starts_with(least)) << label << " kept " << values;
            EXPECT_TRUE(code != kExitPassed || values == "80|80") << label << values;
        }
    }
}

TEST_F(FaultTest, ADosimeterThatRefusesItsSettingsLeavesThemAndTheRunContinues) {
    RunPassing(Element(1, 100,
                       "<DetectorName>3</DetectorName>" + Exposures(1) + "<PKTemperature>23</PKTemperature>"),
               R"({"recording":1,"kind":3,"serialNumbers":"5","syncStatus":1})"
               "\n"
               R"({"exposure":{"dosimeter":["22","760","1.01","0.2","12.3","123","300"]}})"
               "\n");
    EXPECT_EQ(ValuesOf(1, "Exposure"), "12.3");
    EXPECT_STREQ(result.select_node("//PKTemperature").node().text().get(), "23");
}

}  // namespace
}  // namespace vorex::test

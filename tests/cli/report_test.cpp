#include <algorithm>
#include <cmath>
#include <map>
#include <regex>
#include <set>

#include "foundation/number_text.h"
#include "program_fixture.h"
#include "support/system_tool.h"
#include "test_paths.h"

namespace vorex::test {
namespace {

class ReportTest : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        Write("in.xml", Sequence(Element(1, 100, Exposures(2), Limit("ER kVp Avg", "<High Value=\"81\"/>"))));
        Write("in.jsonl", kHead + Shot("80.125") + Shot("95.5", "12.375"));
        ASSERT_EQ(RunFile("in.xml", "in.jsonl"), kExitFailed) << err;
    }

    int Report(const std::string& name, const std::vector<std::string>& options = {}) {
        return Run({"report", Path("out.xml"), "-o", Path(name)}, options);
    }
    /// What a tool of the system prints of a file of the test.
    std::string Printed(const std::string& tool, const std::string& name, const std::string& end = {}) const {
        return PrintedBy(tool + " '" + Path(name) + "' " + end);
    }
    /// What a person reads in a report.
    std::string TextOf(const std::string& name, const std::string& tool = "pdftotext -layout") const {
        return name.ends_with(".pdf") ? Printed(tool, name, "-") : Read(name);
    }
    /// The numbers of out.xml that a report shows: every exposure has the statistics of the test, and those
    /// of the last one count.
    std::vector<std::string> PrintedNumbers() const {
        std::vector<std::string> numbers;
        for (pugi::xpath_node item : result.select_nodes("//ResultItem[Measurement]")) {
            const std::string test = item.node().parent().attribute("TestID").value();
            const bool statistics = test == "100" || test == "900" || test == "1100";
            std::map<std::string, std::string> last;
            for (pugi::xml_node at : item.node().children("Measurement")) {
                const std::string name = at.attribute("Key").value();
                const std::string value = at.child_value("Value");
                if (name == "Import Waveform") continue;
                if (statistics && name.starts_with("ER "))
                    last[name] = value;
                else
                    numbers.push_back(value);
            }
            for (const auto& [name, value] : last) numbers.push_back(value);
        }
        std::erase_if(numbers, [](const std::string& value) { return !IsNumber(value); });
        return numbers;
    }
};

/// Numbers are printed in the picture of their column: whole, or rounded to some decimals.
TEST_F(ReportTest, EveryFormShowsEveryNumberOfTheExamples) {
    const std::regex number("[-+]?[0-9]+(\\.[0-9]+)?");
    for (const std::string example :
         {"radio_reproducibility", "radio_accuracy", "radio_linearity", "fluoro_accuracy", "fluoro_exposure",
          "mammo_accuracy", "mammo_aec", "mammo_output", "dosimeter", "dosimeter_mas", "mas_meter", "unit"}) {
        for (const char* end : {".xml", ".jsonl"})
            std::filesystem::copy_file(std::filesystem::path(kSourceDir) / "examples" / (example + end),
                                       Path("e" + std::string(end)),
                                       std::filesystem::copy_options::overwrite_existing);
        std::filesystem::remove(Path("out.xml"));
        ASSERT_LE(RunFile("e.xml", "e.jsonl"), kExitFailed) << err;
        const std::vector<std::string> printed = PrintedNumbers();
        EXPECT_GE(printed.size(), 10U) << example;
        for (const std::string form : {"r.txt", "r.html", "r.pdf"}) {
            ASSERT_EQ(Report(form, {"--limits"}), kExitPassed) << err;
            const std::string text = TextOf(form);
            std::set<std::string> exact;
            std::vector<std::pair<double, double>> rounded;  // with what rounding takes at most
            for (std::sregex_iterator at(text.begin(), text.end(), number), end; at != end; ++at) {
                exact.insert(PlainText(ReadNumber(at->str())));
                if (const auto decimals = (*at)[1].length() - 1; decimals >= 2)
                    rounded.emplace_back(ReadNumber(at->str()), 0.5000001 * std::pow(10.0, -decimals));
            }
            for (const std::string& value : printed) {
                const bool found = exact.contains(PlainText(ReadNumber(value))) ||
                                   std::any_of(rounded.begin(), rounded.end(), [&](const auto& shown) {
                                       return std::abs(shown.first - ReadNumber(value)) <= shown.second;
                                   });
                EXPECT_TRUE(found) << example << ", " << form << ": " << value << "\n" << text;
            }
        }
    }
}

TEST_F(ReportTest, TheTextMarksTheFailedRowAndNoOther) {
    ASSERT_EQ(Report("r.txt", {"--limits"}), kExitPassed) << err;
    const std::string text = Read("r.txt");
    std::smatch found;
    ASSERT_TRUE(std::regex_search(text, found, std::regex("\n  kVp Avg +80 +95\\.5 +KV +81 +Site +✗ Fail\n")))
        << text;
    EXPECT_TRUE(std::regex_search(text, std::regex("\n  kVp Avg +80 +80\\.125 +KV +81 +Site\n"))) << text;
}

TEST_F(ReportTest, AUnitHasNotPassedWhileOneOfItsTestsWasNotPerformed) {
    Write("in.jsonl", kHead + Shot("80.125"));
    for (const bool counts : {true, false}) {
        std::string second = Element(3, 100, Exposures(1));
        if (!counts)
            second.insert(second.find("<PlugInData"),
                          "<Filter Save=\"True\" Print=\"True\" Evaluate=\"False\"/>");
        Write("s.xml", Sequence(Group(1, Element(2, 100, Exposures(1)) + Group(4, second))));
        ASSERT_EQ(RunFile("s.xml", "in.jsonl", "start,next;abort"), kExitAborted) << err;
        ASSERT_EQ(Report("r.txt"), kExitPassed) << err;
        const std::string text = Read("r.txt");
        EXPECT_TRUE(std::regex_search(text, std::regex("\n  G +Group +✓ Pass\n"))) << text;
        EXPECT_TRUE(text.substr(0, text.find('\n')).ends_with(counts ? "  Not tested" : "  ✓ Pass")) << text;
    }
}

TEST_F(ReportTest, FailuresOnlyLeavesTheRestOut) {
    ASSERT_EQ(Report("r.txt", {"--failures-only"}), kExitPassed) << err;
    const std::string text = Read("r.txt");
    EXPECT_THAT(text, HasSubstr("95.5"));
    EXPECT_THAT(text, Not(HasSubstr("80.125")));
    EXPECT_THAT(text, HasSubstr("Only failed values"));
}

TEST_F(ReportTest, ThePdfIsAnArchiveFileWithBookmarksAndItsOwnFonts) {
    for (const auto& [paper, size] : {std::pair("A4", "595 x 842"), std::pair("Letter", "612 x 792")}) {
        ASSERT_EQ(Report("r.pdf", {"--paper", paper}), kExitPassed) << err;
        EXPECT_NE(Printed("pdfinfo", "r.pdf").find(size), std::string::npos) << paper;
    }
    const std::string pdf = Read("r.pdf");
    EXPECT_TRUE(pdf.starts_with("%PDF-1.4"));
    for (const char* part :
         {"pdfaid:part=\"1\"", "pdfaid:conformance=\"B\"", "/OutputIntents", "/Outlines", "/Lang"})
        EXPECT_THAT(pdf, HasSubstr(part)) << part;
    EXPECT_THAT(pdf, Not(HasSubstr("/ObjStm")));
    EXPECT_NE(Printed("pdftotext -layout", "r.pdf", "-").find("Page 1 of 2"), std::string::npos);
}

TEST_F(ReportTest, TheFileMeetsTheArchiveFormat) {
    Write("tree.xml", Sequence(Group(7, Element(1, 100, Exposures(1)) + Element(2, 200, Exposures(1))) +
                               Element(3, 300, Exposures(1))));
    ASSERT_EQ(Run({"report", Path("tree.xml"), "-o", Path("r.pdf")}), kExitPassed) << err;
    EXPECT_NE(Printed("qpdf --check", "r.pdf", "2>&1").find("No syntax or stream encoding errors"),
              std::string::npos);
    const std::string whole = Printed("qpdf --qdf --object-streams=disable", "r.pdf", "-");
    // No transparency, no script, nothing outside; fonts carry their characters' meaning.
    for (const char* forbidden :
         {"/Encrypt", "/JavaScript", "/Launch", "/EmbeddedFile", "/S /Transparency", "/LZWDecode", "/F ("})
        EXPECT_THAT(whole, Not(HasSubstr(forbidden))) << forbidden;
    const auto everyIs = [&](const std::string& name, const std::string& value) {
        for (std::size_t at = whole.find(name); at != std::string::npos; at = whole.find(name, at + 1))
            EXPECT_EQ(whole.substr(at + name.size(), value.size()), value) << whole.substr(at, 20);
    };
    everyIs("/CA ", "1");
    everyIs("/ca ", "1");
    everyIs("/SMask ", "/None");
    for (const char* needed : {"/GTS_PDFA1", "/DestOutputProfile", "/ToUnicode", "/FontFile2", "/CIDSet"})
        EXPECT_THAT(whole, HasSubstr(needed)) << needed;
    EXPECT_TRUE(std::regex_search(whole, std::regex("/ID \\[<[0-9a-f]{32}><[0-9a-f]{32}>\\]")));
    // The two descriptions of the file agree.
    const std::string info = Printed("pdfinfo -isodates", "r.pdf");
    const std::string meta = Printed("pdfinfo -meta", "r.pdf");
    for (const auto& [label, told] :
         {std::pair("Title", "xml:lang=\"x-default\">"), std::pair("Creator", "xmp:CreatorTool=\""),
          std::pair("Producer", "pdf:Producer=\""), std::pair("CreationDate", "xmp:CreateDate=\"")}) {
        std::smatch found;
        const std::regex line(std::string("(^|\n)") + label + ": +([^\n]*)");
        ASSERT_TRUE(std::regex_search(info, found, line)) << label << info;
        EXPECT_THAT(meta, HasSubstr(told + std::string(found[2]))) << label << meta;
    }
    const std::string pdf = Read("r.pdf");
    EXPECT_NE(pdf.find(meta.substr(0, meta.find('\n'))), std::string::npos)
        << "readable without a PDF reader";
}

TEST_F(ReportTest, BookmarksAreNestedAsTheTests) {
    Write("tree.xml", Sequence(Group(7, Element(1, 100, Exposures(1)) + Element(2, 200, Exposures(1)))));
    ASSERT_EQ(Run({"report", Path("tree.xml"), "-o", Path("r.pdf")}), kExitPassed) << err;
    // Below the title are three parts of the cover and the group, and below the group its two tests; children
    // come first.
    const std::string outlines = Printed("qpdf --json=1 --json-key=outlines", "r.pdf");
    std::istringstream lines(outlines);
    std::string shape;
    for (std::string line; std::getline(lines, line);)
        if (const std::size_t at = line.find("\"title\": \""); at != std::string::npos)
            shape += std::to_string(at / 2) + line.substr(at + 9) + "\n";
    EXPECT_EQ(shape,
              "5\"Tests of the file\"\n5\"Judged by\"\n5\"Instruments\"\n7\"T\"\n7\"T\"\n5\"G\"\n3\"G\"\n");
}

TEST_F(ReportTest, ATestSaysWhenItWasMeasuredWithWhatAndByWhichLimitsItWasJudged) {
    ASSERT_EQ(Report("r.txt"), kExitPassed) << err;
    const std::string text = Read("r.txt");
    const pugi::xml_node run = ResultOf(1).child("Run");
    const std::string start = run.attribute("Start").value();
    ASSERT_FALSE(start.empty());
    EXPECT_THAT(text,
                HasSubstr("Measured       " + start + " to " + run.attribute("End").value() + "; vorex "));
    EXPECT_THAT(text, HasSubstr("serial number 4711, calibrated 2026-01-15"));
    EXPECT_THAT(text, HasSubstr("Judged by      Site 1\n"));
    EXPECT_THAT(text, HasSubstr("Limits         kVp Avg: at most 81 KV (Site 1)\n"));
    EXPECT_THAT(text, HasSubstr("1: 0 passed, 1 failed, 0 not applicable, 0 not performed"));
    ASSERT_EQ(Report("r.txt", {"--limits"}), kExitPassed) << err;
    EXPECT_THAT(Read("r.txt"), Not(HasSubstr("Limits  "))) << "they are next to the values";
    // The file's limit is another one now.
    std::string file = Read("out.xml");
    const std::string sides = "<High Value=\"81\"";
    ASSERT_NE(file.find(sides), std::string::npos);
    Write("out.xml", file.replace(file.find(sides), sides.size(), "<High Value=\"99\""));
    ASSERT_EQ(Report("r.txt", {"--limits"}), kExitPassed) << err;
    EXPECT_THAT(Read("r.txt"), HasSubstr("Changed since  Site 1, ER kVp Avg, at most: now 99, then 81\n"))
        << Read("r.txt");
    EXPECT_THAT(Read("r.txt"), HasSubstr("Limits         kVp Avg: at most 81 KV (Site 1)\n"));
}

TEST_F(ReportTest, TheReportOfARunHasItsLimitsAndWaveforms) {
    Write("in.xml", Sequence(Element(1, 100, Exposures(1) + "<NumberOfExposures0>1</NumberOfExposures0>",
                                     Limit("ER kVp Avg", R"(<High Value="88"/>)"))));
    Write("in.jsonl", kHead + Shot("80", "10", Waves(Wave(1, "0,40.5,80.1,0"))));
    ASSERT_EQ(Run({"run", Path("in.xml"), "--instruments", "recording:" + Path("in.jsonl"), "-o",
                   Path("out.xml"), "--report", Path("r.txt")}),
              kExitPassed)
        << err;
    EXPECT_THAT(Read("r.txt"), HasSubstr("88"));
    EXPECT_THAT(Read("r.txt"), HasSubstr("KV Waveform"));
}

TEST_F(ReportTest, AStoppedRunIsNotedNextToItsVerdict) {
    Write("in.xml", Sequence(Element(1, 100, Exposures(3)) + Element(2, 100, Exposures(1))));
    Write("in.jsonl", kHead + Shot("80") + Shot("81"));
    ASSERT_EQ(RunFile("in.xml", "in.jsonl", "start,stop@2,next;skip"), kExitPassed) << err;
    for (const std::string form : {"r.txt", "r.html", "r.pdf"}) {
        ASSERT_EQ(Report(form), kExitPassed) << err;
        std::string text = TextOf(form);
        text = std::regex_replace(text, std::regex("\\s+"), " ");
        EXPECT_THAT(text, HasSubstr("Pass (stopped after 2 of 3)")) << text;
        EXPECT_THAT(text, HasSubstr("2: 1 passed, 0 failed, 0 not applicable, 1 not performed"));
    }
    EXPECT_THAT(Read("r.txt"), HasSubstr("End of the run  stopped after 2 of 3\n"));
}

TEST_F(ReportTest, TheCoverNamesSiteRoomAndPersonOfASurvey) {
    ASSERT_EQ(Run({"new", "1300", "-o", Path("survey.xml")}), kExitPassed) << err;
    ASSERT_EQ(Run({"report", Path("survey.xml"), "-o", Path("r.txt")}), kExitPassed) << err;
    EXPECT_THAT(Read("r.txt"), Not(HasSubstr("Site"))) << "nothing is made up";
    EXPECT_THAT(Read("r.txt"), Not(HasSubstr("Date of the survey")));
    ASSERT_EQ(Run({"survey",   Path("survey.xml"),
                   "--set",    "GeneralInformation.Site=St. Anna",
                   "--set",    "GeneralInformation.RoomID=M|2",
                   "--set",    "GeneralInformation.Technologist=A. Weiss",
                   "--set",    "GeneralInformation.XrayUnitManufacturer=Maker",
                   "--set",    "GeneralInformation.Year=2026",
                   "--set",    "GeneralInformation.Month=3",
                   "--set",    "GeneralInformation.Day=14",
                   "--answer", "PR1=Pass",
                   "-o",       Path("filled.xml")}),
              kExitPassed)
        << err;
    ASSERT_EQ(Run({"report", Path("filled.xml"), "-o", Path("r.txt")}), kExitPassed) << err;
    for (const char* line : {"\n  Site +St\\. Anna\n", "\n  Room +M\\|2\n", "\n  X-ray unit +Maker\n",
                             "\n  Technologist +A\\. Weiss\n", "\n  Date of the survey +2026-03-14\n"})
        EXPECT_TRUE(std::regex_search(Read("r.txt"), std::regex(line))) << line << Read("r.txt");
}

/// Marks of the report's mark-up, of HTML and of placeholders, scripts from right to left and without blanks.
TEST_F(ReportTest, TextsOfUsersBreakNoFormWhereverTheyAreTyped) {
    const std::string hostile = "x|y;{\\i\\b z}\\ <b>&%%1 %%2 测试 مرحبا";
    const std::string words(10000, 'w');
    Write("in.xml",
          "<VorexSequence Version=\"1\"><SelectedStandards><Standard Name=\"Site\" Version=\"1\"/>"
          "</SelectedStandards>" +
              Element(1, 700, Exposures(1) + "<DetectorName>1</DetectorName>",
                      Limit("ER kVp Avg", "<High Value=\"81\"/>")) +
              "</VorexSequence>");
    Write("in.jsonl", kHead + Shot("95.5"));
    ASSERT_EQ(RunFile("in.xml", "in.jsonl"), kExitFailed) << err;
    pugi::xml_document file;
    ASSERT_TRUE(file.load_file(Path("out.xml").c_str()));
    std::size_t places = 0;
    const auto type = [&](const char* place, const std::string& typed) {
        const auto found = file.select_nodes(place);
        EXPECT_GE(found.size(), 1U) << place;
        places += found.size();
        for (const pugi::xpath_node& at : found)
            if (at.attribute())
                at.attribute().set_value(typed.c_str());
            else
                at.node().text().set(typed.c_str());
    };
    pugi::xml_node item = file.select_node("//ResultItem").node();
    if (!item.child("Comment")) item.append_child("Comment");
    for (const char* place :
         {"//TestElement/@Name", "//Standard/@Name", "//MTI/@Name", "//MTI/@SerialNumber",
          "//MTI/@CalibrationDate", "//MeasuredBy/@Name", "//MeasuredBy/@SerialNumber", "//Run/@Program",
          "//JudgedBy/@Time", "//ResultItem/Comment", "//PlugInData/NameOfTargetFilter"})
        type(place, hostile);
    EXPECT_GE(places, 13U);
    const auto check = [&](const std::string& expected) {
        ASSERT_TRUE(file.save_file(Path("out.xml").c_str()));
        for (const std::string form : {"r.txt", "r.html", "r.pdf"}) {
            ASSERT_EQ(Report(form, {"--limits"}), kExitPassed) << form << err;
            std::string text = TextOf(form, "pdftotext");
            EXPECT_THAT(text, HasSubstr("95.5")) << form;
            text = std::regex_replace(text, std::regex("\\s+"), "");
            EXPECT_THAT(text, HasSubstr(expected)) << form << text.substr(0, 2000);
            if (form == "r.html") {
                EXPECT_TRUE(pugi::xml_document().load_file(Path(form).c_str()));
            }
            if (form == "r.pdf") {
                EXPECT_NE(Printed("qpdf --check", form, "2>&1").find("No syntax"), std::string::npos);
            }
        }
    };
    check("x|y;{\\i\\bz}\\");
    for (const char* place :
         {"//TestElement/@Name", "//MTI/@Name", "//ResultItem/Comment", "//JudgedBy/@Time"})
        type(place, words);
    check(words.substr(0, 60));
}

TEST_F(ReportTest, EmptyFilesAndFullDisksAreReported) {
    Write("none.xml", Sequence(""));
    EXPECT_EQ(Run({"report", Path("none.xml"), "-o", Path("r2.txt")}), kExitUsage);
    EXPECT_THAT(err, HasSubstr("holds no test"));
    EXPECT_FALSE(Exists("r2.txt"));
    for (const std::string form : {"full.txt", "full.html", "full.pdf"}) {
        std::filesystem::create_symlink("/dev/full", Path(form));
        EXPECT_EQ(Report(form), kExitFault);
        EXPECT_THAT(err, HasSubstr(Path(form)));
        EXPECT_THAT(err, HasSubstr("No space left"));
    }
}

TEST_F(ReportTest, ATestThatWasNeverRunHasAReport) {
    for (const std::string name : {"r.txt", "r.html", "r.pdf"}) {
        EXPECT_EQ(Run({"report", Path("in.xml"), "-o", Path(name)}), kExitPassed) << err;
        EXPECT_THAT(TextOf(name), HasSubstr("Not tested")) << name;
    }
}

TEST_F(ReportTest, AReportThatCannotBeWrittenLeavesWhatWasThere) {
    std::filesystem::create_directories(Path("locked.txt"));
    EXPECT_EQ(Report("locked.txt"), kExitUsage);
    EXPECT_THAT(err, HasSubstr("locked.txt"));
    EXPECT_EQ(Run({"report", Path("out.xml"), "-o", "/dev/full"}), kExitUsage);
    Write("old.html", "old");
    EXPECT_EQ(Run({"report", Path("missing.xml"), "-o", Path("old.html")}), kExitUsage);
    EXPECT_EQ(Read("old.html"), "old");
}

TEST_F(ReportTest, AnUnknownLanguageIsReportedBeforeAnythingRuns) {
    EXPECT_EQ(Report("r.txt", {"--report-language", "xx"}), kExitUsage);
    EXPECT_THAT(err, HasSubstr("there is no language \"xx\"; expected one of en"));
    EXPECT_FALSE(Exists("r.txt"));
    std::vector<std::string> run = {
        "run", Path("in.xml"),     "--instruments",     "recording:" + Path("in.jsonl"),
        "-o",  Path("second.xml"), "--report-language", "xx"};
    EXPECT_EQ(Run(run), kExitUsage);
    EXPECT_THAT(err, HasSubstr("--report-language belongs to a report"));
    run.insert(run.end(), {"--report", Path("r.txt")});
    EXPECT_EQ(Run(run), kExitUsage);
    EXPECT_THAT(err, HasSubstr("there is no language \"xx\""));
    EXPECT_FALSE(Exists("second.xml"));
    EXPECT_FALSE(Exists("second.xml.journal"));
}

}  // namespace
}  // namespace vorex::test

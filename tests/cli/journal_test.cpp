#include <sys/resource.h>

#include <algorithm>
#include <csignal>

#include "cli/program_fixture.h"
#include "files/run_journal.h"
#include "test_paths.h"

namespace vorex::test {
namespace {

class JournalTest : public ProgramTest {
  protected:
    void CopyExample(const std::string& from, const std::string& to) const {
        std::filesystem::copy_file(std::filesystem::path(kSourceDir) / "examples" / from, Path(to),
                                   std::filesystem::copy_options::overwrite_existing);
    }
    std::string Journal() const { return Read("out.xml.journal"); }
    int Resume(const std::string& script = {}) {
        const std::vector<std::string> given = {"--operator", script};
        return Run({"resume", Path("out.xml")}, script.empty() ? std::vector<std::string>() : given);
    }

    /// A complete journal of a run: the end of its script cannot be followed, so the journal stays; then the
    /// script in it is replaced.
    std::string WholeJournal(const std::string& script, const std::string& before = {}) {
        const std::string steps = script.ends_with(",next") ? script.substr(0, script.size() - 5) : "start";
        const std::string broken = before + steps + ",redo 99";
        std::filesystem::remove(Path("out.xml"));
        EXPECT_EQ(RunFile("s.xml", "r.jsonl", broken), kExitUsage);
        std::string journal = Journal();
        std::filesystem::remove(Path("out.xml.journal"));
        return Sealed(journal, "\"operator\":\"" + broken + "\"", "\"operator\":\"" + script + "\"");
    }

    /// Three exposures of test 100, and the journal of the first two of them.
    std::string JournalOfTwo() {
        Write("s.xml", Sequence(Element(1, 100, Exposures(3))));
        Write("r.jsonl", kHead + Shot("80") + Shot("81") + Shot("82"));
        const std::string whole = WholeJournal("");
        return whole.substr(0, whole.rfind('\n', whole.size() - 2) + 1);
    }
    /// Values of out.xml.
    std::string SavedValues() {
        result.load_file(Path("out.xml").c_str());
        return ValuesOf(1, "kVp Avg");
    }
};

struct Sweep {
    std::string example, script;
    const char* before = "";  ///< steps of the elements before the one where the script breaks off
};

/// Runs of all kinds. A journal only grows, so a kill at any moment leaves one of these beginnings.
TEST_F(JournalTest, FromEveryBeginningOfAJournalTheSameResultComes) {
    std::vector<Sweep> sweeps = {{"radio_reproducibility", "start,redo 5,next"},
                                 {"radio_reproducibility", "start,stop@3,redo 1,redo 1,next"},
                                 {"radio_reproducibility", "start,stop@1,start,next"},
                                 {"unit", "", ";;;;"},
                                 {"unit", ";na", ";na;;;"}};
    for (const char* example :
         {"radio_accuracy", "radio_linearity", "fluoro_accuracy", "fluoro_exposure", "mammo_accuracy",
          "mammo_aec", "mammo_output", "dosimeter", "dosimeter_mas", "mas_meter"})
        sweeps.push_back({example, ""});
    for (const Sweep& sweep : sweeps) {
        CopyExample(sweep.example + ".xml", "s.xml");
        CopyExample(sweep.example + ".jsonl", "r.jsonl");
        const int code = RunFile("s.xml", "r.jsonl", sweep.script);
        const std::string undisturbed = Read("out.xml");
        EXPECT_FALSE(Exists("out.xml.journal")) << sweep.example;
        const std::string whole = WholeJournal(sweep.script, sweep.before);
        EXPECT_GE(std::count(whole.begin(), whole.end(), '\n'), 3) << sweep.example;
        for (std::size_t end = whole.find('\n'); end != std::string::npos; end = whole.find('\n', end + 1)) {
            // Killed while it wrote the next line; after the last line, while it saved.
            std::filesystem::remove(Path("out.xml"));
            Write("out.xml.journal", whole.substr(0, end + 30));
            ASSERT_EQ(Resume(), code) << sweep.example << " at " << end << ": " << err;
            ASSERT_EQ(Read("out.xml"), undisturbed) << sweep.example << " at " << end;
            ASSERT_FALSE(Exists("out.xml.journal"));
        }
    }
}

TEST_F(JournalTest, ResumeReportsWhatItFound) {
    const std::string journal = JournalOfTwo();
    const std::size_t version = journal.find("\"program\":\"") + 11;
    const std::string present = journal.substr(version, journal.find('"', version) - version);
    Write("out.xml.journal",
          Sealed(journal, "\"program\":\"" + present, "\"program\":\"0.0.1-before") + "0123");
    ASSERT_EQ(Run({"resume", Path("out.xml.journal")}), kExitPassed)
        << "the journal itself is named: " << err;
    for (const std::string& words :
         {std::string("begun 2026-01-15T09:00:00Z, holds 2 exposures; the last is exposure 2 of element 1 at "
                      "2026-01-15T09:00:01Z"),
          std::string("its last line was not whole and is dropped"),
          "it was begun by version 0.0.1-before, and this is " + present})
        EXPECT_THAT(err, HasSubstr(words));
    EXPECT_TRUE(Exists("out.xml"));
}

TEST_F(JournalTest, WhatWasMeasuredComesFromTheJournalAndTheRestFromWhatIsThereNow) {
    const struct {
        std::string events;
        std::vector<const char*> scripts;  ///< all but the last cannot be followed to their end
        const char* values;
    } cases[] = {
        {Shot("60") + Shot("61") + Shot("62"), {""}, "80|81|62"},
        {Shot("80") + Shot("81") + Shot("82") + Shot("83"), {"redo 1,next"}, "83|81|82"},
        // "redo 9" is taken for the exposure of the run under way.
        {Shot("80") + Shot("81") + Shot("82") + Shot("83") + Shot("84"),
         {"redo 9", "redo 1,redo 9", "redo 3,redo 9", "next"},
         "83|81|84"},
    };
    for (const auto& c : cases) {
        Write("out.xml.journal", JournalOfTwo());
        std::filesystem::remove(Path("s.xml"));
        Write("r.jsonl", kHead + c.events);
        for (const char* script : c.scripts)
            EXPECT_EQ(Resume(script), script == c.scripts.back() ? kExitPassed : kExitUsage) << script << err;
        EXPECT_EQ(SavedValues(), c.values);
    }
}

/// Times of the result come from the clock of the run, which continues from the start of the run, whatever
/// the present time is.
TEST_F(JournalTest, AtAnotherClockTimeTheSameResultComes) {
    const std::string journal = JournalOfTwo();
    ASSERT_EQ(RunFile("s.xml", "r.jsonl"), kExitPassed) << err;
    const std::string undisturbed = Read("out.xml");
    EXPECT_THAT(undisturbed, HasSubstr("2026-01-15T09:00:0"));
    for (const char* now : {"2026-01-15T09:00:01Z", "2026-03-01T22:10:00+01:00", "2025-12-31"}) {
        std::filesystem::remove(Path("out.xml"));
        Write("out.xml.journal", journal);
        setenv("VOREX_NOW", now, 1);
        ASSERT_EQ(Resume(), kExitPassed) << now << ": " << err;
        EXPECT_EQ(Read("out.xml"), undisturbed) << now;
    }
}

TEST_F(JournalTest, ARunDoesNotOverwriteTheJournalOfAnother) {
    const std::string journal = JournalOfTwo();
    Write("out.xml.journal", journal);
    Write("out.xml", "earlier");
    ASSERT_EQ(RunFile("s.xml", "r.jsonl"), kExitUsage);
    for (const std::string& words : {std::string("holds an interrupted run of"), std::string("2 exposures"),
                                     "\"vorex resume " + Path("out.xml") + "\""})
        EXPECT_THAT(err, HasSubstr(words));
    EXPECT_EQ(Journal(), journal);
    EXPECT_EQ(Read("out.xml"), "earlier");
    JournalContent content;
    const auto running = RunJournal::Open(Path("out.xml"), content);
    for (const int code : {Resume(), RunFile("s.xml", "r.jsonl")}) EXPECT_EQ(code, kExitUsage);
    EXPECT_THAT(err, HasSubstr("still under way"));
}

TEST_F(JournalTest, ARunTakesTheJournalOfARunThatNeverBeganAndNoOtherFile) {
    const std::string journal = JournalOfTwo();
    for (const std::string& left :
         {std::string(), journal.substr(0, 5), journal.substr(0, 60), std::string(4096, '\0')}) {
        Write("out.xml.journal", left);
        EXPECT_EQ(RunFile("s.xml", "r.jsonl"), kExitPassed) << left << err;
        EXPECT_TRUE(Exists("out.xml"));
        EXPECT_FALSE(Exists("out.xml.journal"));
        std::filesystem::remove(Path("out.xml"));
    }
    for (const std::string& left :
         {std::string("my notes"), std::string("12345678 notes"), journal.substr(0, 60) + "\n", journal}) {
        Write("out.xml.journal", left);
        EXPECT_EQ(RunFile("s.xml", "r.jsonl"), kExitUsage) << left;
        EXPECT_EQ(Journal(), left);
        EXPECT_FALSE(Exists("out.xml"));
    }
}

TEST_F(JournalTest, AJournalThatCannotBeFollowedStays) {
    const std::string journal = JournalOfTwo();
    const std::pair<std::string, const char*> cases[] = {
        {"<VorexSequence>\n</VorexSequence>\n", "is no journal"},
        {journal.substr(0, 60), "the first line is not whole"},
        // Readings and row do not belong together, or the exposure is not one of this run.
        {Sealed(journal, "\"VTI_DataReady\",1,[\"80\"", "\"VTI_DataReady\",1,[\"99\""),
         "steps of exposure 1 of element 1 have changed"},
        {Sealed(journal, "\"exposure\":2", "\"exposure\":7"),
         "steps of exposure 7 of element 1 have changed"},
        {Sealed(journal, "\"statuses\":\"", "\"statuses\":\"2"),
         "statuses or steps of exposure 1 of element 1 have changed"},
        // That poll has no exposure: the run passes it, and would wait for ever.
        {Sealed(journal, "\"VTI_DataReady\",2", "\"VTI_DataReady\",9000"),
         "it has passed exposure 2 of element 1"},
        {Sealed(journal, "\"operator\":\"\"", "\"operator\":\"skip\""),
         "it ended before exposure 1 of element 1"},
        {Sealed(journal, "\"started\":\"2026", "\"started\":\"then"),
         "the time \"then-01-15T09:00:00Z\" is none"},
        {Sealed(journal, "TestID=\\\"100", "TestID=\\\"101"), "TestID 101 is not known"},
    };
    for (const auto& [text, message] : cases) {
        Write("out.xml.journal", text);
        EXPECT_EQ(Resume(), kExitUsage) << message;
        EXPECT_THAT(err, HasSubstr(message));
        EXPECT_EQ(Journal(), text) << message;
        EXPECT_FALSE(Exists("out.xml")) << message;
    }
    std::filesystem::remove(Path("out.xml.journal"));
    EXPECT_EQ(Resume(), kExitUsage);
    EXPECT_THAT(err, HasSubstr("there is no such journal"));
}

TEST_F(JournalTest, AScriptThatCannotBeFollowedLosesNoExposure) {
    EXPECT_EQ(RunOn(Element(1, 100, Exposures(2)), Shot("80") + Shot("81"), "redo 1"), kExitUsage);
    EXPECT_FALSE(Exists("out.xml.journal")) << "nothing was measured";
    EXPECT_EQ(RunFile("s.xml", "r.jsonl", "start,redo 7"), kExitUsage);
    EXPECT_THAT(err, HasSubstr("continues the run"));
    EXPECT_EQ(Resume("next"), kExitPassed) << err;
    EXPECT_EQ(SavedValues(), "80|81");
}

TEST_F(JournalTest, AResultThatCannotBeSavedStaysInTheJournal) {
    std::filesystem::create_symlink(Path("nowhere/out.xml"), Path("out.xml"));
    EXPECT_EQ(RunOn(Element(1, 100, Exposures(1)), Shot("80")), kExitFault);
    EXPECT_THAT(err, HasSubstr("vorex resume"));
    std::filesystem::create_directory(Path("nowhere"));
    EXPECT_EQ(Resume(), kExitPassed) << err;
    EXPECT_FALSE(Exists("out.xml.journal"));
    EXPECT_EQ(SavedValues(), "80");
}

TEST_F(JournalTest, TheRunThatEndsAnInterruptedOneWritesItsReport) {
    Write("s.xml", Sequence(Element(1, 100, Exposures(1))));
    Write("r.jsonl", kHead + Shot("80.125"));
    const auto interrupt = [this] {
        std::filesystem::remove(Path("out.xml"));
        std::filesystem::create_directory(Path("reports"));
        EXPECT_EQ(
            Run({"run", Path("s.xml"), "--instruments", "recording:" + Path("r.jsonl"), "-o", Path("out.xml"),
                 "--operator", "start,redo 7", "--report", Path("reports/r.txt"), "--report-language", "en"}),
            kExitUsage);
        EXPECT_FALSE(Exists("reports/r.txt"));
    };
    interrupt();
    EXPECT_EQ(Resume("next"), kExitPassed) << err;
    EXPECT_THAT(Read("reports/r.txt"), HasSubstr("80.125"));
    EXPECT_THAT(Read("reports/r.txt"), HasSubstr("out.xml"));
    std::filesystem::remove_all(Path("reports"));
    interrupt();
    EXPECT_EQ(Run({"resume", Path("out.xml"), "--operator", "next", "--report", Path("reports/r.txt"),
                   "--report-language", "xx"}),
              kExitUsage);
    EXPECT_THAT(err, HasSubstr("there is no language \"xx\""));
    EXPECT_EQ(Run({"resume", Path("out.xml"), "--operator", "next", "--report", Path("other.html")}),
              kExitPassed)
        << err;
    EXPECT_THAT(Read("other.html"), HasSubstr("80.125"));
    EXPECT_FALSE(Exists("reports/r.txt"));
    interrupt();
    std::filesystem::remove_all(Path("reports"));
    EXPECT_EQ(Resume("next"), kExitFault) << "the report has no folder any more";
    EXPECT_THAT(err, HasSubstr("the report is missing"));
    EXPECT_THAT(Read("out.xml"), HasSubstr("80.125"));
}

TEST_F(JournalTest, AFullDiskInMidRunLosesNothing) {
    const std::size_t ofTwo = JournalOfTwo().size();
    ASSERT_EQ(RunFile("s.xml", "r.jsonl"), kExitPassed) << err;
    const std::string undisturbed = Read("out.xml");

    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small{ofTwo + 100, limit.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    const int code = RunFile("s.xml", "r.jsonl");
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(code, kExitFault);
    EXPECT_EQ(out, undisturbed) << "the file follows on standard output";
    EXPECT_THAT(err, HasSubstr("the exposures from exposure 3 of element 1 on are not in it"));
    EXPECT_EQ(Journal().size(), ofTwo) << "the lines that are whole";
    EXPECT_EQ(Resume(), kExitPassed) << err;
    EXPECT_EQ(Read("out.xml"), undisturbed);
}

}  // namespace
}  // namespace vorex::test

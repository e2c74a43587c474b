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
        std::vector<std::string> arguments = {"resume", Path("out.xml")};
        if (!script.empty()) arguments.insert(arguments.end(), {"--operator", script});
        return Run(arguments);
    }

    /// A complete journal of a run: the end of its script cannot be followed, so the journal stays; then the
    /// script in it is replaced.
    std::string WholeJournal(const std::string& brokenScript, const std::string& script) {
        std::filesystem::remove(Path("out.xml"));
        EXPECT_EQ(RunFile("s.xml", "r.jsonl", brokenScript), kExitUsage);
        std::string journal = Journal();
        std::filesystem::remove(Path("out.xml.journal"));
        return Sealed(journal, "\"operator\":\"" + brokenScript + "\"", "\"operator\":\"" + script + "\"");
    }

    /// Three exposures of test 100, and the journal of the first two of them.
    std::string JournalOfTwo() {
        Write("s.xml", Sequence(Element(1, 100, Exposures(3))));
        Write("r.jsonl", kHead + Shot("80") + Shot("81") + Shot("82"));
        const std::string whole = WholeJournal("start,redo 99", "");
        return whole.substr(0, whole.rfind('\n', whole.size() - 2) + 1);
    }
};

struct Sweep {
    const char *elements, *recording;
    const char* script;        ///< of the undisturbed run
    const char* brokenScript;  ///< the same, with an end that cannot be taken
};

/// Runs of all kinds. A journal only grows, so a kill at any moment leaves one of these beginnings.
TEST_F(JournalTest, FromEveryBeginningOfAJournalTheSameResultComes) {
    const Sweep sweeps[] = {
        {"radio_reproducibility", "radio_reproducibility", "start,redo 5,next", "start,redo 5,redo 99"},
        {"radio_reproducibility", "radio_reproducibility", "start,stop@3,redo 1,redo 1,next",
         "start,stop@3,redo 1,redo 1,redo 99"},
        {"radio_reproducibility", "radio_reproducibility", "start,stop@1,start,next",
         "start,stop@1,start,redo 99"},
        {"radio_accuracy", "radio_accuracy", "", "start,redo 99"},
        {"radio_linearity", "radio_linearity", "", "start,redo 99"},
        {"fluoro_accuracy", "fluoro_accuracy", "", "start,redo 99"},
        {"fluoro_exposure", "fluoro_exposure", "", "start,redo 99"},
        {"mammo_accuracy", "mammo_accuracy", "", "start,redo 99"},
        {"mammo_aec", "mammo_aec", "", "start,redo 99"},
        {"mammo_output", "mammo_output", "", "start,redo 99"},
        {"dosimeter", "dosimeter", "", "start,redo 99"},
        {"dosimeter_mas", "dosimeter_mas", "", "start,redo 99"},
        {"mas_meter", "mas_meter", "", "start,redo 99"},
        {"unit", "unit", "", ";;;;start,redo 99"},
        {"unit", "unit", ";na", ";na;;;start,redo 99"},
    };
    for (const Sweep& sweep : sweeps) {
        CopyExample(sweep.elements + std::string(".xml"), "s.xml");
        CopyExample(sweep.recording + std::string(".jsonl"), "r.jsonl");
        const int code = RunFile("s.xml", "r.jsonl", sweep.script);
        const std::string undisturbed = Read("out.xml");
        EXPECT_FALSE(Exists("out.xml.journal")) << sweep.elements;
        const std::string whole = WholeJournal(sweep.brokenScript, sweep.script);
        const auto lines = static_cast<std::size_t>(std::count(whole.begin(), whole.end(), '\n'));
        EXPECT_GE(lines, 3U) << sweep.elements;
        for (std::size_t end = whole.find('\n'); end != std::string::npos; end = whole.find('\n', end + 1)) {
            // Killed while it wrote the next line; after the last line, while it saved.
            const std::size_t size = std::min(whole.size(), end + 30);
            std::filesystem::remove(Path("out.xml"));
            Write("out.xml.journal", whole.substr(0, size));
            ASSERT_EQ(Resume(), code) << sweep.elements << " at " << size << ": " << err;
            ASSERT_EQ(Read("out.xml"), undisturbed) << sweep.elements << " at " << size;
            ASSERT_FALSE(Exists("out.xml.journal"));
        }
    }
}

TEST_F(JournalTest, ResumeReportsWhatItFound) {
    const std::string journal = JournalOfTwo();
    Write("out.xml.journal", journal + "0123");
    ASSERT_EQ(Resume(), kExitPassed) << err;
    EXPECT_NE(
        err.find("begun 2026-01-15T09:00:00Z, holds 2 exposures; the last is exposure 2 of element 1 at "
                 "2026-01-15T09:00:01Z"),
        std::string::npos)
        << err;
    EXPECT_NE(err.find("its last line was not whole and is dropped"), std::string::npos) << err;
}

TEST_F(JournalTest, TheJournalItselfMayBeNamedAndAnotherVersionIsReported) {
    const std::string journal = JournalOfTwo();
    const std::size_t version = journal.find("\"program\":\"") + 11;
    const std::string present = journal.substr(version, journal.find('"', version) - version);
    Write("out.xml.journal", Sealed(journal, "\"program\":\"" + present, "\"program\":\"0.0.1-before"));
    ASSERT_EQ(Run({"resume", Path("out.xml.journal")}), kExitPassed) << err;
    EXPECT_NE(err.find("it was begun by version 0.0.1-before, and this is " + present), std::string::npos)
        << err;
    EXPECT_TRUE(Exists("out.xml"));
}

TEST_F(JournalTest, WhatWasMeasuredComesFromTheJournalEvenIfTheFilesHaveChanged) {
    Write("out.xml.journal", JournalOfTwo());
    std::filesystem::remove(Path("s.xml"));
    Write("r.jsonl", kHead + Shot("60") + Shot("61") + Shot("62"));
    ASSERT_EQ(Resume(), kExitPassed) << err;
    result.load_file(Path("out.xml").c_str());
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "80|81|62");
}

/// Times of the result come from the clock of the run, which continues from the start of the run, whatever
/// the present time is.
TEST_F(JournalTest, AtAnotherClockTimeTheSameResultComes) {
    const std::string journal = JournalOfTwo();
    ASSERT_EQ(RunFile("s.xml", "r.jsonl"), kExitPassed) << err;
    const std::string undisturbed = Read("out.xml");
    EXPECT_NE(undisturbed.find("2026-01-15T09:00:0"), std::string::npos);
    for (const char* now : {"2026-01-15T09:00:01Z", "2026-03-01T22:10:00+01:00", "2025-12-31"}) {
        std::filesystem::remove(Path("out.xml"));
        Write("out.xml.journal", journal);
        setenv("VOREX_NOW", now, 1);
        ASSERT_EQ(Resume(), kExitPassed) << now << ": " << err;
        EXPECT_EQ(Read("out.xml"), undisturbed) << now;
    }
}

TEST_F(JournalTest, AnotherScriptContinuesTheRun) {
    Write("out.xml.journal", JournalOfTwo());
    Write("r.jsonl", kHead + Shot("80") + Shot("81") + Shot("82") + Shot("83"));
    ASSERT_EQ(Resume("redo 1,next"), kExitPassed) << err;
    result.load_file(Path("out.xml").c_str());
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "83|81|82");
}

TEST_F(JournalTest, ARunThatAnotherOperatorContinuedIsResumedAgain) {
    Write("out.xml.journal", JournalOfTwo());
    Write("r.jsonl", kHead + Shot("80") + Shot("81") + Shot("82") + Shot("83") + Shot("84"));
    EXPECT_EQ(Resume("redo 9"), kExitUsage) << "the exposure of the run under way is taken";
    for (const char* script : {"redo 1,redo 9", "redo 3,redo 9"})
        EXPECT_EQ(Resume(script), kExitUsage) << script;
    ASSERT_EQ(Resume("next"), kExitPassed) << err;
    result.load_file(Path("out.xml").c_str());
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "83|81|84");
}

TEST_F(JournalTest, ARunDoesNotOverwriteTheJournalOfAnother) {
    const std::string journal = JournalOfTwo();
    Write("out.xml.journal", journal);
    Write("out.xml", "earlier");
    ASSERT_EQ(RunFile("s.xml", "r.jsonl"), kExitUsage);
    EXPECT_NE(err.find("holds an interrupted run of"), std::string::npos) << err;
    EXPECT_NE(err.find("2 exposures"), std::string::npos) << err;
    EXPECT_NE(err.find("\"vorex resume " + Path("out.xml") + "\""), std::string::npos) << err;
    EXPECT_EQ(Journal(), journal);
    EXPECT_EQ(Read("out.xml"), "earlier");
    JournalContent content;
    const auto running = RunJournal::Open(Path("out.xml"), content);
    for (const int code : {Resume(), RunFile("s.xml", "r.jsonl")}) EXPECT_EQ(code, kExitUsage);
    EXPECT_NE(err.find("still under way"), std::string::npos) << err;
}

TEST_F(JournalTest, ARunTakesTheJournalOfARunThatNeverBeganAndNoOtherFile) {
    const std::string journal = JournalOfTwo();
    const auto run = [this] {
        return Run(
            {"run", Path("s.xml"), "--instruments", "recording:" + Path("r.jsonl"), "-o", Path("out.xml")});
    };
    for (const std::string& left :
         {std::string(), journal.substr(0, 5), journal.substr(0, 60), std::string(4096, '\0')}) {
        Write("out.xml.journal", left);
        EXPECT_EQ(run(), kExitPassed) << left << err;
        EXPECT_TRUE(Exists("out.xml"));
        EXPECT_FALSE(Exists("out.xml.journal"));
        std::filesystem::remove(Path("out.xml"));
    }
    for (const std::string& left :
         {std::string("my notes"), std::string("12345678 notes"), journal.substr(0, 60) + "\n", journal}) {
        Write("out.xml.journal", left);
        EXPECT_EQ(run(), kExitUsage) << left;
        EXPECT_EQ(Journal(), left);
        EXPECT_FALSE(Exists("out.xml"));
    }
}

TEST_F(JournalTest, AJournalThatCannotBeFollowedStays) {
    const std::string journal = JournalOfTwo();
    struct Case {
        std::string text;
        const char* message;
    };
    const Case cases[] = {
        {"<VorexSequence>\n</VorexSequence>\n", "is no journal"},
        {journal.substr(0, 60), "the first line is not whole"},
        // Readings and row do not belong together, or the exposure is not one of this run.
        {Sealed(journal, "\"VTI_DataReady\",1,[\"80\"", "\"VTI_DataReady\",1,[\"99\""),
         "steps of exposure 1 of element 1 have changed"},
        {Sealed(journal, "\"exposure\":2", "\"exposure\":7"),
         "steps of exposure 7 of element 1 have changed"},
        // That poll has no exposure: the run passes it, and would wait for ever.
        {Sealed(journal, "\"VTI_DataReady\",2", "\"VTI_DataReady\",9000"),
         "it has passed exposure 2 of element 1"},
        {Sealed(journal, "\"operator\":\"\"", "\"operator\":\"skip\""),
         "it ended before exposure 1 of element 1"},
        {Sealed(journal, "\"started\":\"2026", "\"started\":\"then"),
         "the time \"then-01-15T09:00:00Z\" is none"},
        {Sealed(journal, "TestID=\\\"100", "TestID=\\\"101"), "TestID 101 is not known"},
    };
    for (const Case& c : cases) {
        Write("out.xml.journal", c.text);
        EXPECT_EQ(Resume(), kExitUsage) << c.message;
        EXPECT_NE(err.find(c.message), std::string::npos) << err;
        EXPECT_EQ(Journal(), c.text) << c.message;
        EXPECT_FALSE(Exists("out.xml")) << c.message;
    }
    std::filesystem::remove(Path("out.xml.journal"));
    EXPECT_EQ(Resume(), kExitUsage);
    EXPECT_NE(err.find("there is no such journal"), std::string::npos) << err;
}

TEST_F(JournalTest, AScriptThatCannotBeFollowedLosesNoExposure) {
    Write("s.xml", Sequence(Element(1, 100, Exposures(2))));
    Write("r.jsonl", kHead + Shot("80") + Shot("81"));
    EXPECT_EQ(RunFile("s.xml", "r.jsonl", "redo 1"), kExitUsage);
    EXPECT_FALSE(Exists("out.xml.journal")) << "nothing was measured";
    EXPECT_EQ(RunFile("s.xml", "r.jsonl", "start,redo 7"), kExitUsage);
    EXPECT_NE(err.find("continues the run"), std::string::npos) << err;
    EXPECT_EQ(Resume("next"), kExitPassed) << err;
    result.load_file(Path("out.xml").c_str());
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "80|81");
}

TEST_F(JournalTest, AResultThatCannotBeSavedStaysInTheJournal) {
    Write("s.xml", Sequence(Element(1, 100, Exposures(1))));
    Write("r.jsonl", kHead + Shot("80"));
    std::filesystem::create_symlink(Path("nowhere/out.xml"), Path("out.xml"));
    EXPECT_EQ(RunFile("s.xml", "r.jsonl"), kExitFault);
    EXPECT_NE(err.find("vorex resume"), std::string::npos) << err;
    std::filesystem::create_directory(Path("nowhere"));
    EXPECT_EQ(Resume(), kExitPassed) << err;
    EXPECT_FALSE(Exists("out.xml.journal"));
    result.load_file(Path("out.xml").c_str());
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "80");
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
    EXPECT_NE(Read("reports/r.txt").find("80.125"), std::string::npos);
    EXPECT_NE(Read("reports/r.txt").find("out.xml"), std::string::npos);
    std::filesystem::remove_all(Path("reports"));
    interrupt();
    EXPECT_EQ(Run({"resume", Path("out.xml"), "--operator", "next", "--report", Path("reports/r.txt"),
                   "--report-language", "xx"}),
              kExitUsage);
    EXPECT_NE(err.find("there is no language \"xx\""), std::string::npos) << err;
    EXPECT_EQ(Run({"resume", Path("out.xml"), "--operator", "next", "--report", Path("other.html")}),
              kExitPassed)
        << err;
    EXPECT_NE(Read("other.html").find("80.125"), std::string::npos);
    EXPECT_FALSE(Exists("reports/r.txt"));
    interrupt();
    std::filesystem::remove_all(Path("reports"));
    EXPECT_EQ(Resume("next"), kExitFault) << "the report has no folder any more";
    EXPECT_NE(err.find("the report is missing"), std::string::npos) << err;
    EXPECT_NE(Read("out.xml").find("80.125"), std::string::npos);
}

TEST_F(JournalTest, AFullDiskInMidRunLosesNothing) {
    Write("s.xml", Sequence(Element(1, 100, Exposures(3))));
    Write("r.jsonl", kHead + Shot("80") + Shot("81") + Shot("82"));
    ASSERT_EQ(RunFile("s.xml", "r.jsonl"), kExitPassed) << err;
    const std::string undisturbed = Read("out.xml");
    const std::string whole = WholeJournal("start,redo 99", "");
    const std::size_t ofTwo = whole.rfind('\n', whole.size() - 2) + 1;

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
    EXPECT_NE(err.find("the exposures from exposure 3 of element 1 on are not in it"), std::string::npos)
        << err;
    EXPECT_EQ(Journal().size(), ofTwo) << "the lines that are whole";
    EXPECT_EQ(Resume(), kExitPassed) << err;
    EXPECT_EQ(Read("out.xml"), undisturbed);
}

}  // namespace
}  // namespace vorex::test

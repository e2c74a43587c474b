#include "app/run.h"

#include <memory>
#include <utility>

#include "app/instrument_choice.h"
#include "cli/headless_operator.h"
#include "cli/operator_script.h"
#include "cli/program_fixture.h"
#include "support/recording_report.h"

namespace vorex::test {
namespace {

/// Records the notifications in order.
class Diary : public IAppListener {
  public:
    std::vector<std::string> lines;
    std::vector<std::string> faults;
    void ElementBegins(const ITestElement& element) override {
        Add("begins " + std::to_string(element.ID()));
    }
    void ElementEnded(const ITestElement& element) override { Add("ended " + std::to_string(element.ID())); }
    void ExposureStored(const StoredExposure& stored) override {
        Add("stored " + std::to_string(stored.element.ID()) + "/" + std::to_string(stored.exposure));
    }
    void Faulted(const AppFault& fault) override { faults.push_back(fault.text); }
    void CaughtUp() override { Add("caught up"); }

  private:
    void Add(std::string line) { lines.push_back(std::move(line)); }
};

class RunTest : public ProgramTest {
  protected:
    std::shared_ptr<HeadlessPlatform> platform = std::make_shared<HeadlessPlatform>();
    Diary diary;

    RunOutcome Perform(Session& session, OpenFile& file, const InstrumentChoice& choice,
                       const std::string& script = {}) {
        Run run(session, MakeInstruments(choice, [&] { return session.AtConsole(); }));
        return Perform(run, file, script);
    }
    RunOutcome Perform(vorex::Run& run, OpenFile& file, const std::string& script) {
        HeadlessOperator person(ParseOperatorScript(script), run.Instruments());
        platform->Operator(&person);
        RunOutcome outcome = run.Perform(file, person, diary);
        platform->Operator(nullptr);
        return outcome;
    }
    using Run = vorex::Run;
};

/// Says that it acts, and does nothing.
class Idler : public IOperator, public IHeadlessOperator {
    bool OnIdle(IModalWindow& /*window*/) override { return true; }
};

TEST_F(RunTest, AnOperatorWhoActsWithoutEndEndsTheRunAndNoneAfterIt) {
    Session session({"en", platform});
    const RecordedBench bench{Write("r.jsonl", kHead + Shot("80"))};
    const auto file = OpenFile::FromText(Sequence(Element(1, 100, Exposures(1))), "s.xml");
    Idler idler;
    platform->Operator(&idler);
    Run run(session, MakeInstruments(bench, {}));
    EXPECT_EQ(run.Perform(*file, idler, diary).end, RunEnd::kBroken);
    EXPECT_EQ(diary.faults, (std::vector<std::string>{
                                "the operator went on acting while no time passed, and the run was ended"}));
    EXPECT_EQ(Perform(session, *file, bench).end, RunEnd::kFinished);
}

TEST_F(RunTest, TheListenerFollowsTheRun) {
    Session session({"en", platform});
    const std::string elements = Element(1, 100, Exposures(2)) + Element(2, 500, Exposures(1));
    const auto file = OpenFile::FromText(Sequence(elements), "s.xml");
    Perform(session, *file, RecordedBench{Write("r.jsonl", kHead + Shot("80") + Shot("81") + Shot("82"))});
    EXPECT_EQ(diary.lines, (std::vector<std::string>{"begins 1", "stored 1/1", "stored 1/2", "ended 1",
                                                     "begins 2", "stored 2/1", "ended 2"}));
    EXPECT_TRUE(diary.faults.empty());
}

std::string SurveyOf(int id, const std::string& cells = {}) {
    return Element(id, 1300, "", "<ResultItem><Status>1</Status>" + cells + "</ResultItem>");
}

/// A text with every time replaced by the same one, because the clock advances from run to run.
std::string Timeless(std::string text) {
    const std::string day = "2026-01-15T";
    for (std::size_t at = text.find(day); at != std::string::npos; at = text.find(day, at + 1))
        text.replace(at + day.size(), 8, "00:00:00");
    return text;
}

// A file is run, judged, printed and saved as if it were alone, whatever files are or were open.
TEST_F(RunTest, FilesDoNotMixInWhateverOrderTheyAreOpenedRunJudgedAndClosed) {
    const std::string mammo =
        Exposures(2) +
        "<MeasurementMode>3</MeasurementMode><MachineKV>28</MachineKV>"
        "<MachinemAs>50</MachinemAs><MachinemAs0>50</MachinemAs0><MachinemAs1>50</MachinemAs1>";
    const std::string lowest9 = Limit("ER Percentage Error", R"(<Low Value="9"/>)");
    const std::vector<std::string> texts = {
        Sequence(SurveyOf(1, "<kVpL36>2</kVpL36><Dose80>2</Dose80><BQC79>2</BQC79>")),
        Sequence(SurveyOf(1, "<kVpL36>1</kVpL36><Dose80>1</Dose80>")),
        Sequence(Element(1, 100, Exposures(2), Limit("ER kVp Avg", R"(<High Value="1"/>)"))),
        Sequence(Group(1, Element(2, 900, mammo, lowest9) + SurveyOf(3))),
        Sequence(Group(1, Element(2, 1200, mammo) + SurveyOf(3, "<Dose78>2</Dose78>")) +
                 Group(4, SurveyOf(5))),
    };
    platform->StartAt("2026-01-15T09:00:00Z");
    Session session({"en", platform});
    const auto perform = [&](OpenFile& file) {
        EXPECT_EQ(Perform(session, file, SimulatedRoom()).end, RunEnd::kFinished);
        EXPECT_EQ(diary.faults, std::vector<std::string>{});
    };
    const auto content = [](OpenFile& file) {
        RecordingReport report;
        report.options = kReportLimits | kReportComments;
        for (const auto& element : file.Elements()) element->PrintReport(&report, nullptr);
        return Timeless(file.Text() + report.Rows());
    };
    std::vector<std::string> alone;
    for (const std::string& text : texts) {
        const auto file = OpenFile::FromText(text, "s.xml");
        perform(*file);
        file->Judge(diary);
        alone.push_back(content(*file));
    }
    EXPECT_NE(alone[3].find("<kVpL38>2"), std::string::npos) << "the test fails its survey";
    std::vector<std::size_t> order = {0, 1, 2, 3, 4};
    do {
        std::vector<std::unique_ptr<OpenFile>> open;
        for (std::size_t at : order) open.push_back(OpenFile::FromText(texts[at], "s.xml"));
        for (const auto& file : open) perform(*file);
        for (const auto& file : open) file->Judge(diary);
        for (std::size_t i = 0; i < order.size(); open[i++].reset())
            ASSERT_EQ(content(*open[i]), alone[order[i]])
                << "file " << order[i] << ", opened as number " << i;
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(RunTest, ARunIsResumedFromItsJournalAndSaysWhereItBecomesNew) {
    Session session({"en", platform});
    const std::string text = Sequence(Element(1, 100, Exposures(2)));
    const RecordedBench bench{Write("r.jsonl", kHead + Shot("80") + Shot("81"))};
    const std::string output = Path("out.xml");
    {
        Run run(session, MakeInstruments(bench, {}));
        JournalHead head;
        head.input = "s.xml";
        head.document = text;
        run.Keep(output, head);
        const auto file = OpenFile::FromText(text, "s.xml");
        EXPECT_EQ(Perform(run, *file, "start,redo 9").end, RunEnd::kOperatorError);
        EXPECT_EQ(run.JournalNeeded(), output + ".journal");
    }
    diary.lines.clear();
    JournalContent content;
    Run run(session, MakeInstruments(bench, {}));
    run.Resume(RunJournal::Open(output, content), content);
    const auto file = OpenFile::FromText(content.head.document, content.head.input);
    EXPECT_EQ(Perform(run, *file, "start,next").end, RunEnd::kFinished);
    EXPECT_EQ(diary.lines,
              (std::vector<std::string>{"begins 1", "stored 1/1", "caught up", "stored 1/2", "ended 1"}));
    file->Save(output);
    run.Saved();
    EXPECT_FALSE(Exists("out.xml.journal"));
}

}  // namespace
}  // namespace vorex::test

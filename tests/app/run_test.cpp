#include "app/run.h"

#include <gtest/gtest.h>

#include <memory>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "app/instrument_choice.h"
#include "cli/headless_operator.h"
#include "cli/operator_script.h"
#include "cli/program_fixture.h"

namespace vorex::test {
namespace {

/// Remembers the order of what it is told.
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

TEST_F(RunTest, TheOutcomeSaysHowARunEnded) {
    const std::string two = Shot("80") + Shot("81");
    const struct {
        std::string script;
        std::string recording;
        RunEnd end;
        const char* reason;
    } cases[] = {
        {"", two, RunEnd::kFinished, ""},
        {"na", two, RunEnd::kFinished, ""},
        {"abort", two, RunEnd::kAborted, ""},
        {"previous", two, RunEnd::kLeftBackwards, ""},
        {"start,redo 9", two, RunEnd::kOperatorError, "there is no such exposure to redo"},
        {"", Shot("80") + "{\"link\":false}\n", RunEnd::kBroken, ""},
        {"", Shot("80"), RunEnd::kBroken, ""},
    };
    Session session({"en", platform});
    for (const auto& c : cases) {
        const auto file = OpenFile::FromText(Sequence(Element(1, 100, Exposures(2))), "s.xml");
        const RunOutcome outcome =
            Perform(session, *file, RecordedBench{Write("r.jsonl", kHead + c.recording)}, c.script);
        EXPECT_EQ(outcome.end, c.end) << c.script << c.recording;
        EXPECT_NE(outcome.reason.find(c.reason), std::string::npos) << outcome.reason;
    }
    EXPECT_EQ(diary.faults.size(), 2U) << "the lost link, and the recording that is used up";
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

TEST_F(RunTest, SimulatedInstrumentsMeasureWhatTheOpenGuideAsksFor) {
    Session session({"en", platform});
    EXPECT_FALSE(session.AtConsole()) << "no guide is open";
    const auto file =
        OpenFile::FromText(Sequence(Element(1, 100, Exposures(1) + "<MachineKV>102</MachineKV>",
                                            Limit("ER kVp Avg", R"(<High Value="104"/><Low Value="100"/>)"))),
                           "s.xml");
    EXPECT_EQ(Perform(session, *file, SimulatedRoom()).end, RunEnd::kFinished);
    EXPECT_EQ(file->Verdict(), FileVerdict::kGood);
    EXPECT_EQ(file->File().FindElement(1)->Result()->Status(), 1);
}

/// Two files that are open at once give what each gives alone, in either order. The clock goes on, so times
/// differ.
TEST_F(RunTest, FilesThatAreOpenTogetherDoNotMix) {
    const std::string texts[] = {
        Sequence(Element(1, 900, Exposures(2), Limit("ER kVp Avg", R"(<High Value="1"/>)")) +
                 Element(2, 1300, "")),
        Sequence(Element(1, 1200, Exposures(2)) + Element(2, 1300, "")),
    };
    const auto timeless = [](const std::string& text) {
        return std::regex_replace(text, std::regex("\\d{4}-\\d{2}-\\d{2}T[0-9:]+(Z|[-+]\\d{2}:\\d{2})"), "T");
    };
    std::string alone[2];
    for (const std::size_t at : {0, 1}) {
        Session session({"en", platform});
        const auto file = OpenFile::FromText(texts[at], "s.xml");
        Perform(session, *file, SimulatedRoom());
        file->Judge(diary);
        alone[at] = timeless(file->Text());
    }
    for (const std::size_t first : {0, 1}) {
        Session session({"en", platform});
        const std::size_t second = 1 - first;
        const auto one = OpenFile::FromText(texts[first], "one.xml");
        const auto other = OpenFile::FromText(texts[second], "other.xml");
        Perform(session, *one, SimulatedRoom());
        Perform(session, *other, SimulatedRoom());
        one->Judge(diary);
        other->Judge(diary);
        EXPECT_EQ(timeless(one->Text()), alone[first]);
        EXPECT_EQ(timeless(other->Text()), alone[second]);
    }
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

TEST_F(RunTest, ARunThatDoesNotRepeatItsJournalKeepsIt) {
    Session session({"en", platform});
    const std::string text = Sequence(Element(1, 100, Exposures(2)));
    const RecordedBench bench{Write("r.jsonl", kHead + Shot("80") + Shot("81"))};
    {
        Run run(session, MakeInstruments(bench, {}));
        JournalHead head;
        head.document = text;
        run.Keep(Path("out.xml"), head);
        Perform(run, *OpenFile::FromText(text, "s.xml"), "start,redo 9");
    }
    JournalContent content;
    Run run(session, MakeInstruments(bench, {}));
    run.Resume(RunJournal::Open(Path("out.xml"), content), content);
    const RunOutcome outcome = Perform(run, *OpenFile::FromText(text, "s.xml"), "skip");
    EXPECT_EQ(outcome.end, RunEnd::kWayLost);
    EXPECT_NE(outcome.reason.find("it ended before exposure 1 of element 1"), std::string::npos)
        << outcome.reason;
    EXPECT_TRUE(Exists("out.xml.journal"));
}

}  // namespace
}  // namespace vorex::test

#include "app/session_platform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/instrument_choice.h"
#include "app/run.h"
#include "cli/program_fixture.h"
#include "execution/test_guide_contract.h"
#include "foundation/sequence_state.h"
#include "guide/guide_menu.h"
#include "host/headless_platform.h"
#include "results/result_common.h"

namespace vorex::test {
namespace {

using namespace guide_button;
using Kind = OperatorAct::Kind;

constexpr int32_t kIdle = -1;

struct HandStep {
    int32_t stored;  ///< done in a run, once so many exposures are stored; `kIdle`: while the guide waits
    OperatorAct act;
};

int32_t StoredAt(const IModalWindow& window) {
    const auto element = window.Element();
    const auto result = element ? std::dynamic_pointer_cast<CResultCommon>(element->Result()) : nullptr;
    return result ? result->ExposureCount() : 0;
}

/// A person who may let a tick pass before each step, and answers questions with the step that is next, once
/// the exposures that it names are stored.
class Hand final : public IOperator, public IHeadlessOperator {
  public:
    Hand(HeadlessPlatform& platform, std::vector<HandStep> given, std::size_t begin, bool waits)
        : next(begin), mPlatform(platform), mSteps(std::move(given)), mWaits(waits) {
        mPlatform.Operator(this);
    }

    bool OnIdle(IModalWindow& window) override {
        mWaited = mWaits && !mWaited;
        return !mWaited && Try(window, kIdle);
    }
    void AfterEvent(IModalWindow* shown) override {
        mShown = shown;
        if (shown == nullptr || !shown->Element() || !shown->Element()->Sequence()->gRunActive) return;
        // It is due together with the ticks, which come first: so it fires where they let events in.
        constexpr int32_t kTickMs = 500;
        if (!mTimer) {
            mTimer = mPlatform.CreateTimer([this] { mTimer->Stop(); });
            mTimer->Start(kTickMs);
        }
        Try(*shown, StoredAt(*shown));
    }
    int32_t MenuChoice(const std::vector<MenuItem>& items) override {
        EXPECT_FALSE(items.empty());
        return Answer(Kind::kChoose);
    }
    bool Confirm(std::string_view /*question*/) override { return Answer(Kind::kConfirm) != 0; }
    bool Done() const { return next == mSteps.size(); }

    std::size_t next;

  private:
    bool Try(IModalWindow& window, int32_t stored) {
        if (Done() || mSteps[next].stored != stored) return false;
        // Further steps may come while this one is done.
        const std::size_t step = next++;
        if (window.Act(mSteps[step].act)) return true;
        next = step;
        return false;
    }
    int32_t Answer(Kind kind) {
        if (Done() || mSteps[next].act.kind != kind) {
            ADD_FAILURE() << "step " << next << " is no answer";
            return 0;
        }
        const HandStep& answer = mSteps[next];
        while (answer.stored > 0 && mShown != nullptr && StoredAt(*mShown) < answer.stored)
            if (!mPlatform.WaitForEvent()) break;
        ++next;
        return answer.act.number;
    }

    HeadlessPlatform& mPlatform;
    IModalWindow* mShown = nullptr;
    std::unique_ptr<IPlatformTimer> mTimer;
    std::vector<HandStep> mSteps;
    bool mWaits;
    bool mWaited = false;
};

HandStep Press(int32_t button) {
    return {kIdle, {Kind::kPress, button}};
}

constexpr const char* kBoth = "<DetectorName>4</DetectorName><DetectorOption>4</DetectorOption>";
/// Test 100 with both instruments, and a test after it.
std::string TwoTests() {
    return Sequence(Element(1, 100, kBoth + Exposures(3) + "<NumberOfExposures0>1</NumberOfExposures0>",
                            Limit("ER kVp Avg", R"(<High Value="84"/>)")) +
                    Element(2, 300, kBoth + Exposures(2)));
}
/// A fluoroscopy test of two exposures.
std::string Fluoroscopy() {
    return Sequence(Element(1, 500,
                            "<DetectorName>1</DetectorName><MeasurementMode>2</MeasurementMode>" +
                                Exposures(2) + "<NumberOfExposures0>1</NumberOfExposures0>"));
}
const std::string kHeldExposures = kHead + "{\"stopButton\":true}\n{\"quiet\":2}\n" + Shot("80") +
                                   "{\"stopButton\":false}\n" + Shot("81") + Shot("82") +
                                   "{\"quiet\":9999}\n";
/// Eight exposures of both instruments, with waveforms.
std::string Recorded() {
    std::string lines =
        R"({"recording":1,"kind":4,"serialNumbers":"4711,88","targetFilters":["Mo/Mo","Mo/Rh"],)"
        R"("defaultTargetFilter":"Mo/Mo"})"
        "\n";
    for (const char* kvp : {"80", "81", "82", "83", "84", "85", "86", "87"})
        lines += "{\"quiet\":1}\n" + Shot(kvp, "10", MasOf("20") + Waves(Wave(1, "0,80,0")));
    return lines + "{\"quiet\":9999}\n";
}

class SessionPlatformTest : public ProgramTest {
  protected:
    struct Operated {
        RunOutcome outcome;
        std::string text;     ///< of the file
        std::string journal;  ///< as it was when the run had ended
        bool allSteps = false;
    };

    std::string document = TwoTests();
    std::string recording = Recorded();

    /// A run from the beginning, or from a journal.
    Operated Operate(const std::vector<HandStep>& steps, const std::string& journal = {}, bool waits = true) {
        const auto platform = std::make_shared<HeadlessPlatform>();
        Session session({"en", platform});
        const RecordedBench bench{Path("r.jsonl")};
        Write("r.jsonl", recording);
        vorex::Run run(session, MakeInstruments(bench, {}));
        std::size_t begin = 0;
        if (journal.empty()) {
            JournalHead head;
            head.input = "s.xml";
            head.document = document;
            head.instruments = InstrumentText(bench);
            run.Keep(Path("out.xml"), head);
        } else {
            Write("out.xml.journal", journal);
            JournalContent content;
            auto opened = RunJournal::Open(Path("out.xml"), content);
            begin = static_cast<std::size_t>(
                std::count_if(content.records.begin(), content.records.end(),
                              [](const JournalRecord& record) { return record.act.has_value(); }));
            run.Resume(std::move(opened), content);
        }
        const auto file = OpenFile::FromText(document, "s.xml");
        Hand hand(*platform, steps, begin, waits);
        IAppListener nobody;
        Operated operated;
        operated.outcome = run.Perform(*file, hand, nobody);
        operated.text = file->Text();
        operated.journal = Read("out.xml.journal");
        operated.allSteps = hand.Done();
        std::filesystem::remove(Path("out.xml.journal"));
        return operated;
    }
};

/// A journal only grows, so each moment of a run leaves one of these beginnings.
TEST_F(SessionPlatformTest, FromEveryBeginningOfAJournalARunByHandComesToTheSameResult) {
    const struct {
        const char* title;
        std::vector<HandStep> steps;
        RunEnd end;
        bool fluoroscopy = false;
    } cases[] = {
        {"everything that a guide takes",
         {{kIdle, {Kind::kShortcut, kStart}},
          {2, {Kind::kPress, kStop}},
          Press(kFirstTargetFilter + 1),
          {kIdle, {Kind::kClick, 1, 2}},
          {kIdle, {Kind::kMenu, 1, 2}},
          {kIdle, {Kind::kChoose, guide_menu::kRedo}},
          Press(kManual),
          {kIdle, {Kind::kType, 2, 10, "12,5"}},
          {kIdle, {Kind::kCheck, 2, 1}},
          {kIdle, {Kind::kMenu}},
          {kIdle, {Kind::kChoose, kFirstTargetFilter}},
          {kIdle, {Kind::kRedo, 2}},
          Press(kAbort),
          {kIdle, {Kind::kConfirm, 0}},
          Press(kNext),
          Press(kStart),
          {1, {Kind::kShortcut, kStart}},
          Press(kNext)},
         RunEnd::kFinished},
        {"a run that ends under an open menu, and a way back",
         {Press(kStart),
          {1, {Kind::kMenu, 1, 2}},
          {3, {Kind::kChoose, guide_menu::kRedo}},
          Press(kNext),
          Press(kStart),
          Press(kPrevious),
          Press(kNext),
          Press(kNext)},
         RunEnd::kFinished},
        {"an abort",
         {Press(kStart), Press(kNext), Press(kStart), Press(kAbort), {kIdle, {Kind::kConfirm, 1}}},
         RunEnd::kAborted},
        {"a stop in a hold, whose exposure is redone",
         {Press(kStart), {0, {Kind::kPress, kStop}}, {kIdle, {Kind::kRedo, 1}}, Press(kNext)},
         RunEnd::kFinished,
         true},
    };
    for (const auto& c : cases) {
        document = c.fluoroscopy ? Fluoroscopy() : TwoTests();
        recording = c.fluoroscopy ? kHeldExposures : Recorded();
        const Operated whole = Operate(c.steps);
        ASSERT_TRUE(whole.allSteps) << c.title;
        EXPECT_EQ(whole.outcome.end, c.end) << c.title;
        const std::string& journal = whole.journal;
        EXPECT_GT(std::count(journal.begin(), journal.end(), '\n'), static_cast<int>(c.steps.size()));
        for (std::size_t end = journal.find('\n'); end != std::string::npos;
             end = journal.find('\n', end + 1)) {
            // Killed while it wrote the line that follows.
            const Operated resumed = Operate(c.steps, journal.substr(0, end + 30));
            const std::string where = c.title + (" at " + std::to_string(end));
            EXPECT_EQ(resumed.outcome.end, c.end) << where << ": " << resumed.outcome.reason;
            EXPECT_TRUE(resumed.allSteps) << where;
            ASSERT_EQ(resumed.text, whole.text) << where;
            ASSERT_EQ(resumed.journal, journal) << where;
        }
    }
}

const std::vector<HandStep> kPlain = {Press(kStart), Press(kNext), Press(kStart), Press(kNext)};

/// Without a script of its own, the program starts what the person had not started, and keeps what is stored.
TEST_F(SessionPlatformTest, TheProgramGoesOnWhereAPersonStopped) {
    const Operated whole = Operate(kPlain, {}, false);
    ASSERT_EQ(whole.outcome.end, RunEnd::kFinished);
    const std::string& journal = whole.journal;
    for (std::size_t end = journal.find('\n'); end != std::string::npos; end = journal.find('\n', end + 1)) {
        Write("out.xml.journal", journal.substr(0, end + 1));
        // A script that fails keeps its acts in the journal, like those of the person.
        if (end + 1 < journal.size()) {
            EXPECT_EQ(Run({"resume", Path("out.xml"), "--operator", "redo 9"}), kExitUsage) << err;
            ASSERT_TRUE(Exists("out.xml.journal") || end == journal.find('\n')) << end;
        }
        if (!Exists("out.xml.journal")) continue;  // nothing was measured
        ASSERT_EQ(Run({"resume", Path("out.xml")}), kExitPassed) << end << err;
        ASSERT_EQ(Read("out.xml"), whole.text) << end;
    }
}

TEST_F(SessionPlatformTest, AQuestionThatWasOpenIsNotAnsweredByTheProgram) {
    const Operated whole = Operate({Press(kStart), Press(kAbort), {kIdle, {Kind::kConfirm, 1}}});
    const std::size_t answer = whole.journal.find('\n', whole.journal.find("\"number\":101"));
    Write("out.xml.journal", whole.journal.substr(0, answer + 1));
    ASSERT_EQ(Run({"resume", Path("out.xml"), "--operator", "next;skip"}), kExitPassed) << err;
    result.load_file(Path("out.xml").c_str());
    EXPECT_EQ(ValuesOf(1, "kVp Avg"), "80|81|82");
}

TEST_F(SessionPlatformTest, ActsThatCannotBeRepeatedKeepTheJournal) {
    const std::vector<HandStep> steps = {
        Press(kStart), {1, {Kind::kClick, 1, 2}},    {2, {Kind::kPress, kStop}},
        Press(kAbort), {kIdle, {Kind::kConfirm, 0}}, Press(kNext)};
    const std::string journal = Operate(steps).journal;
    const auto act = [&](const std::string& from, const std::string& to) {
        return Sealed(journal, "\"act\":\"" + from, "\"act\":\"" + to);
    };
    const std::string patient = Sealed(journal, "\"element\":1,\"polls\":7", "\"element\":1,\"polls\":99");
    const struct {
        std::string changed;
        const char* reason;
    } cases[] = {
        {act("press\",\"number\":202", "press\",\"number\":999"),
         "press 999 at element 1 is not possible now"},
        {act("press\",\"number\":202", "type\",\"number\":300"), "type 300 at element 1 is not possible now"},
        {act("press\",\"number\":202", "choose\",\"number\":100"), "it has passed choose 100 at element 1"},
        {act("press\",\"number\":101", "redo\",\"number\":1"), "it has passed confirm 0 at element 1"},
        {act("confirm", "choose"), "choose 0 at element 1 is not possible now"},
        {Sealed(journal, "\"row\":\"1,80", "\"row\":\"1,99"),
         "steps of exposure 1 of element 1 have changed"},
        {Sealed(patient, "\"element\":1,\"polls\":3", "\"element\":1,\"polls\":88"),
         "exposure 1 of element 1 comes before click 1 at element 1"},
    };
    for (const auto& c : cases) {
        const Operated lost = Operate(steps, c.changed);
        EXPECT_EQ(lost.outcome.end, RunEnd::kWayLost) << c.reason;
        EXPECT_NE(lost.outcome.reason.find(c.reason), std::string::npos) << lost.outcome.reason;
        EXPECT_EQ(lost.journal, c.changed) << c.reason;
    }
}

}  // namespace
}  // namespace vorex::test

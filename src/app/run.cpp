#include "app/run.h"

#include <utility>

#include "host/execution_pipe.h"
#include "version.h"

namespace vorex {

namespace {

/// Attaches a run to its session while it performs.
class Attachment {
  public:
    Attachment(Session& session, IRunUnderWay& run) : mSession(session) { mSession.Attach(&run); }
    ~Attachment() { mSession.Attach(nullptr); }
    Attachment(const Attachment&) = delete;
    Attachment& operator=(const Attachment&) = delete;

  private:
    Session& mSession;
};

}  // namespace

Run::Run(Session& session, std::unique_ptr<IInstruments> instruments)
    : mSession(session), mInstruments(std::move(instruments)), mKeeper(mTape) {}

Run::~Run() = default;

void Run::Keep(const std::filesystem::path& output, JournalHead head) {
    head.program = kProgramVersion;
    head.started = mSession.Platform().TimeStamp();
    head.language = mSession.Language();
    mKeeper.Keep(RunJournal::Create(output, head), mSession.Platform());
    GoOverTape();
}

void Run::Resume(std::unique_ptr<RunJournal> journal, const JournalContent& content, std::string script) {
    mKeeper.Keep(std::move(journal), mSession.Platform());
    mKeeper.Replay(content);
    mKeeper.TakeOver(std::move(script));
    mResumed = true;
    GoOverTape();
}

/// Without a journal, nothing would remove the notes from the tape.
void Run::GoOverTape() {
    mInstruments = std::make_unique<TapedInstruments>(std::move(mInstruments), mTape);
}

RunOutcome Run::Perform(OpenFile& file, const IOperator& person, IAppListener& listener) {
    mPerson = &person;
    mListener = &listener;
    mKeeper.KeepActs(person.ByHand());
    const Attachment attachment(mSession, *this);
    if (mResumed && !mTape.Reading()) listener.CaughtUp();
    ExecutionHooks hooks;
    hooks.stopped = [this] { return mPerson->Ended() || mInstruments->Ended(); };
    hooks.begins = [&](ITestElement& element) { listener.ElementBegins(element); };
    hooks.ended = [&](ITestElement& element) { listener.ElementEnded(element); };
    const auto pipe =
        std::make_shared<ExecutionPipe>(file.File().Instruments(), file.File().Selected(), std::move(hooks));
    const SequenceEnd end = RunSequence(file.Elements(), pipe);
    if (std::string lost = mKeeper.WayLost(); !lost.empty()) return {RunEnd::kWayLost, std::move(lost)};
    ReportFaults();
    return OutcomeOf(end);
}

RunOutcome Run::OutcomeOf(SequenceEnd end) const {
    if (std::string error = mPerson->Error(); !error.empty())
        return {RunEnd::kOperatorError, std::move(error)};
    if (mPerson->Ended() || mInstruments->Ended() || mStall != ModalEnd::kHidden)
        return {RunEnd::kBroken, {}};
    if (end == SequenceEnd::kAborted) return {RunEnd::kAborted, {}};
    return {end == SequenceEnd::kLeftBackwards ? RunEnd::kLeftBackwards : RunEnd::kFinished, {}};
}

void Run::ReportFaults() {
    const auto report = [this](FaultSource source, const std::string& text) {
        mListener->Faulted({source, 0, text});
    };
    for (const std::string& message : mMessages) report(FaultSource::kGuide, message);
    for (const std::string& fault : mInstruments->Faults()) report(FaultSource::kInstruments, fault);
    if (!mKeeper.Fault().empty()) report(FaultSource::kJournal, mKeeper.Fault());
    if (mStall == ModalEnd::kNothingToCome)
        report(FaultSource::kPlatform, "the instruments sent nothing more, and the run was ended");
    if (mStall == ModalEnd::kEndlessActs)
        report(FaultSource::kPlatform,
               "the operator went on acting while no time passed, and the run was ended");
}

void Run::WindowClosed(ModalEnd end) {
    if (end != ModalEnd::kHidden) mStall = end;
}

int32_t Run::ElementAtWork() const {
    const IModalWindow* const window = mSession.Platform().Window();
    const auto element = window == nullptr ? nullptr : window->Element();
    return element ? element->ID() : 0;
}

bool Run::Acted(const OperatorAct& act) {
    if (mKeeper.Repeating()) return false;
    mKeeper.Acted(act, ElementAtWork());
    return true;
}

OperatorAct Run::TakeAct() {
    OperatorAct act = mKeeper.TakeAct();
    if (!mTape.Reading()) mListener->CaughtUp();
    return act;
}

void Run::Stored(const StoredExposure& stored) {
    const bool repeating = mTape.Reading();
    mKeeper.Stored(stored, {mOpened, mPerson->StepsTaken()});
    if (repeating && !mTape.Reading()) mListener->CaughtUp();
    mListener->ExposureStored(stored);
}

std::string Run::TimeStamp(std::string now) {
    return mKeeper.Keeping() ? mTape.Clock(std::move(now)) : now;
}

void Run::Message(std::string_view title, std::string_view message) {
    mMessages.push_back(std::string(title) + ": " + std::string(message));
}

std::optional<bool> Run::Asked(std::string_view question) {
    return mListener->Asked(question);
}

}  // namespace vorex

#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/instrument_choice.h"
#include "app/open_file.h"
#include "app/run.h"
#include "app/session.h"
#include "cli/command_support.h"
#include "cli/commands.h"
#include "cli/headless_operator.h"
#include "cli/operator_script.h"
#include "files/run_journal.h"
#include "foundation/file_error.h"
#include "foundation/number_text.h"
#include "host/headless_platform.h"
#include "version.h"

// The commands that run the tests of a file and continue an interrupted run.

namespace vorex {

namespace {

namespace fs = std::filesystem;

/// The instruments that the options name.
InstrumentChoice ChosenInstruments(const RunOptions& options) {
    constexpr std::string_view kSimulated = "simulated";
    if (!options.room.empty() && !options.instruments.starts_with(kSimulated))
        throw std::runtime_error(
            "--room belongs to simulated instruments; give --instruments simulated with it");
    try {
        InstrumentChoice choice = ReadInstruments(options.instruments);
        if (auto* simulated = std::get_if<SimulatedRoom>(&choice)) simulated->room = options.room;
        return choice;
    } catch (const std::runtime_error& error) {
        throw std::runtime_error("--instruments " + std::string(error.what()));
    }
}

/// The recording of a choice; empty for other instruments.
fs::path RecordingOf(const InstrumentChoice& choice) {
    const auto* bench = std::get_if<RecordedBench>(&choice);
    return bench == nullptr ? fs::path() : bench->file;
}

/// Only a file that measures nothing, that is, with surveys only, can be run without instruments.
void CheckInstruments(const InstrumentChoice& choice, const OpenFile& file) {
    if (!std::holds_alternative<std::monostate>(choice)) return;
    if (const std::optional<int32_t> element = file.FirstMeasuring())
        throw std::runtime_error(
            "no instruments were given, and element " + PlainText(*element) + " of " + file.Name() +
            " measures; expected --instruments simulated or --instruments recording:FILE");
}

/// A measured result must not be lost because its file cannot be written.
int RescueResult(OpenFile& file, const std::string& reason, Terminal& terminal) {
    terminal.err << "vorex: " << reason << "\n"
                 << "vorex: the result could not be saved; it follows on standard output\n";
    terminal.out << file.Text();
    return kExitFault;
}

/// True for an output that can have a journal: a file, or what will be one.
bool HasJournal(const fs::path& output) {
    std::error_code error;
    const fs::file_status status = fs::status(output, error);
    return !output.empty() && (!fs::exists(status) || fs::is_regular_file(status));
}

/// Names a journal that remains, because the measured exposures are in it.
std::string JournalHint(const Run& run, const fs::path& output) {
    const std::string path = run.JournalNeeded();
    return path.empty() ? std::string()
                        : "; what was measured is kept in " + path + ", and \"vorex resume " +
                              output.string() + "\" continues the run";
}

/// Saves the result of a run and prints its verdicts.
int Conclude(Run& run, const RunOutcome& outcome, OpenFile& file, const fs::path& output,
             Terminal& terminal) {
    if (outcome.end == RunEnd::kWayLost) throw std::runtime_error(outcome.reason);
    if (outcome.end == RunEnd::kOperatorError)
        throw std::runtime_error(outcome.reason + JournalHint(run, output));
    try {
        WriteResult(file, output, terminal);
    } catch (const FileError& error) {
        return RescueResult(file, error.what() + JournalHint(run, output), terminal);
    }
    try {
        run.Saved();
    } catch (const FileError& error) {
        terminal.err << "vorex: " << error.what() << "; the result is saved\n";
    }
    PrintSummary(file, output, terminal);
    const int verdict = VerdictCode(file, terminal);
    if (outcome.end == RunEnd::kBroken || verdict == kExitFault) return kExitFault;
    return outcome.end == RunEnd::kAborted ? static_cast<int>(kExitAborted) : verdict;
}

/// The report of a run shows what its file holds, limits and waveforms included.
ReportOptions ReportOfRun(const RunOptions& options) {
    ReportOptions report;
    report.input = options.output.empty() ? options.input : options.output;
    report.output = options.report;
    report.language = options.reportLanguage;
    report.limits = true;
    report.waveforms = true;
    return report;
}

/// Errors in the report options are reported before anything is measured.
void CheckRunReport(const std::vector<fs::path>& inputs, const ReportOptions& report) {
    if (report.output.empty()) {
        if (report.language)
            throw std::runtime_error("--report-language belongs to a report; give --report FILE with it");
        return;
    }
    CheckOutput(inputs, report.output);
    CheckReport(report);
}

/// Writes the report of a run, if requested, and returns the exit code of the run. The result is already
/// saved, and the same report can be made from it later.
int WithReport(int code, OpenFile& file, const ReportOptions& report, Session& session, Terminal& terminal) {
    if (report.output.empty()) return code;
    try {
        const auto saved = OpenFile::FromText(file.Text(), report.input.string());
        TerminalListener listener(terminal);
        WriteReport(saved->File(), session.Standards(listener), report, session.Language());
        return code;
    } catch (const std::exception& error) {
        terminal.err << "vorex: " << error.what() << "\n"
                     << "vorex: the report is missing; vorex report makes it from the result\n";
        return kExitFault;
    }
}

/// At the end of the journal, makes a resumed run with --real-time follow the clock, and lets the script take
/// over from a person whose acts were repeated.
class RunListener final : public TerminalListener {
  public:
    RunListener(Terminal& terminal, Session& session, HeadlessPlatform& platform, HeadlessOperator& person,
                const JournalContent& content)
        : TerminalListener(terminal),
          mSession(session),
          mPlatform(platform),
          mPerson(person),
          mRealTime(content.head.realTime),
          mByHand(content.ByHand()) {
        if (!mByHand) mPlatform.Operator(&mPerson);
    }
    void CaughtUp() override {
        if (mRealTime) mPlatform.GoRealTime();
        if (!mByHand) return;
        if (const IModalWindow* const window = mSession.Platform().Window())
            mPerson.TakeOver(window->Element());
        mPlatform.Operator(&mPerson);
    }

  private:
    Session& mSession;
    HeadlessPlatform& mPlatform;
    HeadlessOperator& mPerson;
    bool mRealTime;
    bool mByHand;
};

/// The script of an interrupted run; a new one takes over at the point of the interruption. After a person, a
/// script starts there.
std::vector<ElementSteps> ResumedScript(const JournalContent& content, const std::string& other) {
    if (content.ByHand()) return ParseOperatorScript(other);
    auto script = ParseOperatorScript(content.head.operatorScript);
    JournalRecord last;
    const auto takeOver = [&](const std::string& next) {
        script = JoinedScript(script, static_cast<std::size_t>(last.opened),
                              static_cast<std::size_t>(last.steps), ParseOperatorScript(next));
    };
    for (const JournalRecord& record : content.records) {
        if (record.script.empty())
            last = record;
        else
            takeOver(record.script);
    }
    if (!other.empty()) takeOver(other);
    return script;
}

void PrintResumed(const RunJournal& journal, const JournalContent& content, Terminal& terminal) {
    const JournalHead& head = content.head;
    terminal.err << "vorex: " << journal.Path().string() << ": a run of " << head.input << ", begun "
                 << head.started << ", holds " << JournalSummary(content) << "\n";
    if (head.program != kProgramVersion)
        terminal.err << "vorex: it was begun by version " << head.program << ", and this is "
                     << kProgramVersion << "\n";
    if (content.torn) terminal.err << "vorex: its last line was not whole and is dropped\n";
}

}  // namespace

int RunCommand(const RunOptions& options, const CommonOptions& common, Terminal& terminal) {
    const InstrumentChoice choice = ChosenInstruments(options);
    const fs::path recording = RecordingOf(choice);
    CheckOutput({options.input, recording, options.room}, options.output);
    const ReportOptions report = ReportOfRun(options);
    CheckRunReport({options.input, recording, options.room, options.output}, report);
    auto script = ParseOperatorScript(options.operatorScript);
    const auto platform = std::make_shared<HeadlessPlatform>(
        options.realTime ? HeadlessPlatform::Time::kReal : HeadlessPlatform::Time::kVirtual);
    Session session({LanguageOf(common), platform});
    Run run(session, MakeInstruments(choice, [&session] { return session.AtConsole(); }));
    const bool journalled = HasJournal(options.output);
    JournalHead head;
    const auto file = OpenFile::Load(options.input, journalled ? &head.document : nullptr);
    CheckInstruments(choice, *file);
    if (journalled) {
        head.input = options.input.string();
        head.instruments = InstrumentText(choice);
        if (!options.room.empty()) head.room = fs::absolute(options.room).string();
        head.operatorScript = options.operatorScript;
        head.realTime = options.realTime;
        if (!options.report.empty()) head.report = fs::absolute(options.report).string();
        head.reportLanguage = options.reportLanguage.value_or("");
        run.Keep(options.output, std::move(head));
    }
    HeadlessOperator person(std::move(script), run.Instruments());
    platform->Operator(&person);
    TerminalListener listener(terminal);
    const RunOutcome outcome = run.Perform(*file, person, listener);
    return WithReport(Conclude(run, outcome, *file, options.output, terminal), *file, report, session,
                      terminal);
}

int ResumeCommand(const ResumeOptions& options, Terminal& terminal) {
    const fs::path output = RunJournal::OutputOf(options.file);
    CheckOutput({}, output);
    JournalContent content;
    auto journal = RunJournal::Open(output, content);
    const JournalHead& head = content.head;
    auto script = ResumedScript(content, options.operatorScript);
    RunOptions run;
    run.output = output;
    run.instruments = options.instruments.empty() ? head.instruments : options.instruments;
    run.room = options.instruments.empty() && options.room.empty() ? fs::path(head.room) : options.room;
    run.report = options.report.empty() ? fs::path(head.report) : options.report;
    run.reportLanguage = options.reportLanguage;
    if (!run.reportLanguage && !head.reportLanguage.empty()) run.reportLanguage = head.reportLanguage;
    const InstrumentChoice choice = ChosenInstruments(run);
    const ReportOptions report = ReportOfRun(run);
    // A report that can no longer be written must not prevent the result from being saved.
    if (!options.report.empty() || options.reportLanguage)
        CheckRunReport({output, journal->Path(), RecordingOf(choice), run.room}, report);
    const auto platform = std::make_shared<HeadlessPlatform>();  // it catches up in virtual time
    Session session({head.language, platform});
    Run resumed(session, MakeInstruments(choice, [&session] { return session.AtConsole(); }));
    platform->StartAt(head.started);
    const auto file = OpenFile::FromText(head.document, head.input);
    PrintResumed(*journal, content, terminal);
    resumed.Resume(std::move(journal), content, options.operatorScript);
    HeadlessOperator person(std::move(script), resumed.Instruments());
    RunListener listener(terminal, session, *platform, person, content);
    const RunOutcome outcome = resumed.Perform(*file, person, listener);
    return WithReport(Conclude(resumed, outcome, *file, output, terminal), *file, report, session, terminal);
}

}  // namespace vorex

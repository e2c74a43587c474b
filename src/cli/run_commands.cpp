#include <charconv>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "app/data_folders.h"
#include "app/elements.h"
#include "app/journal_keeper.h"
#include "app/session.h"
#include "app/standards.h"
#include "cli/command_support.h"
#include "cli/commands.h"
#include "cli/headless_operator.h"
#include "cli/operator_script.h"
#include "cli/result_text.h"
#include "files/element_file.h"
#include "files/run_journal.h"
#include "foundation/file_error.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "host/execution_pipe.h"
#include "host/headless_platform.h"
#include "instruments/recorded_instruments.h"
#include "instruments/room.h"
#include "instruments/simulated_instruments.h"
#include "instruments/taped_instruments.h"
#include "version.h"

// Running the tests of a file, and going on with a run that was interrupted.

namespace vorex {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kRecordingPrefix = "recording:";
constexpr std::string_view kSimulated = "simulated";
constexpr std::string_view kSimulatedPrefix = "simulated:";
constexpr uint64_t kUsualSeed = 1;

uint64_t ReadSeed(std::string_view text) {
    uint64_t seed = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seed);
    if (error != std::errc() || end != text.data() + text.size())
        throw std::runtime_error("--instruments simulated:" + std::string(text) +
                                 " has no seed; expected a whole number from 0, such as simulated:7");
    return seed;
}

/// File of the recording that a run is asked to use; empty for other instruments.
fs::path RecordingOf(const RunOptions& options) {
    const std::string_view name = options.instruments;
    return name.starts_with(kRecordingPrefix) ? name.substr(kRecordingPrefix.size()) : std::string_view();
}

/// The instruments that a run is asked to use. The console tells simulated ones what is set for an exposure.
std::unique_ptr<IInstruments> MakeInstruments(const RunOptions& options, Console console) {
    const std::string_view name = options.instruments;
    const bool simulated = name == kSimulated || name.starts_with(kSimulatedPrefix);
    if (simulated) {
        const uint64_t seed =
            name == kSimulated ? kUsualSeed : ReadSeed(name.substr(kSimulatedPrefix.size()));
        Room room = options.room.empty() ? Room() : LoadRoom(options.room.string());
        return std::make_unique<SimulatedInstruments>(std::move(room), seed, std::move(console));
    }
    if (!options.room.empty())
        throw std::runtime_error(
            "--room belongs to simulated instruments; give --instruments simulated with it");
    if (name.starts_with(kRecordingPrefix)) {
        const fs::path file = RecordingOf(options);
        if (file.empty())
            throw std::runtime_error("--instruments recording: names no file; expected recording:FILE");
        return std::make_unique<RecordedInstruments>(LoadRecording(file.string()));
    }
    // Whether any are needed only the file tells.
    if (name.empty()) return std::make_unique<RecordedInstruments>(Recording());
    throw std::runtime_error("--instruments " + options.instruments +
                             " is not known; expected simulated, simulated:SEED or recording:FILE");
}

/// Without instruments a file can be run that measures nothing: one that holds surveys only.
void CheckInstruments(const RunOptions& options, const ElementFile& file) {
    if (!options.instruments.empty()) return;
    ForEachElement(file.Elements(), [&](const auto& element) {
        if (element->TestID() == kMqsaSurvey || element->TestID() == kGroupId) return;
        throw std::runtime_error(
            "no instruments were given, and element " + PlainText(element->ID()) + " of " +
            options.input.string() +
            " measures; expected --instruments simulated or --instruments recording:FILE");
    });
}

/// The instruments, their measurements noted on a tape.
std::unique_ptr<IInstruments> TapeInstruments(std::unique_ptr<IInstruments> instruments, RunTape* tape) {
    if (tape == nullptr) return instruments;
    return std::make_unique<TapedInstruments>(std::move(instruments), *tape);
}

/// Everything that a run needs beside its file.
struct RunSetup {
    RunSetup(const RunOptions& options, std::vector<ElementSteps> script, const CommonOptions& common,
             bool journalled)
        : instruments(TapeInstruments(MakeInstruments(options, [this] { return person.AtConsole(); }),
                                      journalled ? &tape : nullptr)),
          person(std::move(script), *instruments),
          platform(std::make_shared<HeadlessPlatform>(options.realTime ? HeadlessPlatform::Time::kReal
                                                                       : HeadlessPlatform::Time::kVirtual)),
          keeper(tape),
          session(MakeHostOptions(common, journalled)) {
        platform->Operator(&person);
    }

    ReferenceHostOptions MakeHostOptions(const CommonOptions& common, bool journalled) {
        ReferenceHostOptions host = HostOptions(common);
        host.platform = platform;
        host.createDetectorService = [this] { return instruments->CreateService(); };
        host.createDetectorLink = [this] { return instruments->CreateLink(); };
        host.instrumentFault = [this] { return instruments->LatestFault(); };
        if (journalled) host.exposureStored = [this](const StoredExposure& stored) { keeper.Stored(stored); };
        return host;
    }

    RunTape tape;
    std::unique_ptr<IInstruments> instruments;
    HeadlessOperator person;
    std::shared_ptr<HeadlessPlatform> platform;
    JournalKeeper keeper;
    Session session;
};

ExecutionHooks HooksOf(const RunSetup& setup, Terminal& terminal) {
    ExecutionHooks hooks;
    hooks.stopped = [&setup] { return setup.person.Ended(); };
    if (!terminal.progress) return hooks;
    hooks.begins = [&terminal](ITestElement& element) {
        terminal.err << PlainText(element.ID()) << "  " << TestTitle(element) << " ..." << std::endl;
    };
    hooks.ended = [&terminal](ITestElement& element) {
        terminal.err << PlainText(element.ID()) << "  " << TestTitle(element) << ": " << StatusWords(element)
                     << std::endl;
    };
    return hooks;
}

/// What the operator would have seen go wrong.
void PrintFaults(const RunSetup& setup, Terminal& terminal) {
    for (const std::string& message : setup.person.Messages()) terminal.err << "vorex: " << message << "\n";
    for (const std::string& fault : setup.instruments->Faults()) terminal.err << "vorex: " << fault << "\n";
    if (!setup.keeper.Fault().empty()) terminal.err << "vorex: " << setup.keeper.Fault() << "\n";
    if (setup.platform->Stalls() > 0)
        terminal.err << "vorex: the run waited for something that will never come, and was ended\n";
}

/// A measured result must not be lost with a file that cannot be written.
int RescueResult(ElementFile& file, const std::string& reason, Terminal& terminal) {
    terminal.err << "vorex: " << reason << "\n"
                 << "vorex: the result could not be saved; it follows on standard output\n";
    terminal.out << file.Text();
    return kExitFault;
}

/// True for an output beside which a journal can stand: a file, or what will be one.
bool HasJournal(const fs::path& output) {
    std::error_code error;
    const fs::file_status status = fs::status(output, error);
    return !output.empty() && (!fs::exists(status) || fs::is_regular_file(status));
}

/// The instruments in words that hold in every folder.
std::string FromAnywhere(const std::string& instruments) {
    const std::string_view name = instruments;
    if (!name.starts_with(kRecordingPrefix)) return instruments;
    return std::string(kRecordingPrefix) + fs::absolute(name.substr(kRecordingPrefix.size())).string();
}

/// A journal that is left behind is named: it is the way back to what was measured.
std::string JournalHint(const RunSetup& setup, const fs::path& output) {
    const std::string path = setup.keeper.Needed();
    return path.empty() ? std::string()
                        : "; what was measured is kept in " + path + ", and \"vorex resume " +
                              output.string() + "\" goes on from there";
}

/// Runs the elements and saves them.
int Perform(RunSetup& setup, ElementFile& file, const fs::path& output, Terminal& terminal) {
    const auto pipe =
        std::make_shared<ExecutionPipe>(file.Instruments(), file.Selected(), HooksOf(setup, terminal));
    const SequenceEnd end = RunSequence(file.Elements(), pipe);
    JournalKeeper& keeper = setup.keeper;
    if (const std::string lost = keeper.WayLost(); !lost.empty()) throw std::runtime_error(lost);
    PrintFaults(setup, terminal);
    if (const std::string& error = setup.person.ScriptError(); !error.empty())
        throw std::runtime_error(error + JournalHint(setup, output));
    try {
        WriteResult(file, output, terminal);
    } catch (const FileError& error) {
        return RescueResult(file, error.what() + JournalHint(setup, output), terminal);
    }
    try {
        keeper.Finish();
    } catch (const FileError& error) {
        terminal.err << "vorex: " << error.what() << "; the result is saved\n";
    }
    PrintSummary(file, output, terminal);
    const bool surveyFault = PrintSurveyFaults(file, terminal);
    if (setup.person.Ended() || setup.platform->Stalls() > 0 || surveyFault) return kExitFault;
    if (end == SequenceEnd::kAborted) return kExitAborted;
    return VerdictOf(file);
}

/// A run tells in its report what its file holds: limits and waveforms with the rest.
ReportOptions ReportOfRun(const RunOptions& options) {
    ReportOptions report;
    report.input = options.output.empty() ? options.input : options.output;
    report.output = options.report;
    report.language = options.reportLanguage;
    report.limits = true;
    report.waveforms = true;
    return report;
}

/// What is wrong with the report that a run is asked for is told before anything is measured.
void CheckRunReport(const std::vector<fs::path>& inputs, const ReportOptions& report) {
    if (report.output.empty()) {
        if (report.language)
            throw std::runtime_error("--report-language belongs to a report; give --report FILE with it");
        return;
    }
    CheckOutput(inputs, report.output);
    CheckReport(report);
}

/// Writes the report of a run, if one is wanted, and tells how the run ends with it. What was measured is
/// saved by now; a report can be made of it later as well, and is the same: it tells what the file holds.
int WithReport(int code, ElementFile& file, const ReportOptions& report, const CommonOptions& common,
               Terminal& terminal) {
    if (report.output.empty()) return code;
    try {
        const auto saved = ElementFile::FromText(file.Text(), report.input.string());
        WriteReport(*saved, *OpenStandards(DataFolders(kStandards), terminal.err), report,
                    LanguageOf(common));
        return code;
    } catch (const std::exception& error) {
        terminal.err << "vorex: " << error.what() << "\n"
                     << "vorex: the report is missing; vorex report makes it from the result\n";
        return kExitFault;
    }
}

}  // namespace

int RunCommand(const RunOptions& options, const CommonOptions& common, Terminal& terminal) {
    CheckOutput({options.input, RecordingOf(options), options.room}, options.output);
    const ReportOptions report = ReportOfRun(options);
    CheckRunReport({options.input, RecordingOf(options), options.room, options.output}, report);
    const bool journalled = HasJournal(options.output);
    RunSetup setup(options, ParseOperatorScript(options.operatorScript), common, journalled);
    JournalHead head;
    const auto file = ElementFile::Load(options.input, nullptr, journalled ? &head.document : nullptr);
    CheckInstruments(options, *file);
    const auto run = [&] {
        return WithReport(Perform(setup, *file, options.output, terminal), *file, report, common, terminal);
    };
    if (!journalled) return run();
    head.program = kProgramVersion;
    head.started = setup.platform->TimeStamp();
    head.input = options.input.string();
    head.instruments = FromAnywhere(options.instruments);
    if (!options.room.empty()) head.room = fs::absolute(options.room).string();
    head.operatorScript = options.operatorScript;
    head.language = LanguageOf(common);
    head.realTime = options.realTime;
    if (!options.report.empty()) head.report = fs::absolute(options.report).string();
    head.reportLanguage = options.reportLanguage.value_or("");
    setup.keeper.Keep(RunJournal::Create(options.output, head), setup.person, *setup.platform);
    return run();
}

int ResumeCommand(const ResumeOptions& options, Terminal& terminal) {
    const fs::path output = RunJournal::OutputOf(options.file);
    CheckOutput({}, output);
    JournalContent content;
    auto journal = RunJournal::Open(output, content);
    const JournalHead& head = content.head;
    auto script = ParseOperatorScript(head.operatorScript);
    if (!options.operatorScript.empty()) {
        const auto after = ParseOperatorScript(options.operatorScript);
        const JournalRecord last = content.records.empty() ? JournalRecord() : content.records.back();
        script = JoinedScript(script, static_cast<std::size_t>(last.opened),
                              static_cast<std::size_t>(last.steps), after);
    }
    const CommonOptions common{head.language};
    RunOptions run;  // it catches up in virtual time
    run.output = output;
    run.instruments = options.instruments.empty() ? head.instruments : options.instruments;
    run.room = options.instruments.empty() && options.room.empty() ? fs::path(head.room) : options.room;
    run.report = options.report.empty() ? fs::path(head.report) : options.report;
    run.reportLanguage = options.reportLanguage;
    if (!run.reportLanguage && !head.reportLanguage.empty()) run.reportLanguage = head.reportLanguage;
    const ReportOptions report = ReportOfRun(run);
    // A report that the run was asked for and that cannot be written any more must not keep its result away.
    if (!options.report.empty() || options.reportLanguage)
        CheckRunReport({output, journal->Path(), RecordingOf(run), run.room}, report);
    RunSetup setup(run, std::move(script), common, true);
    setup.platform->StartAt(head.started);
    const auto file = ElementFile::FromText(head.document, head.input);
    terminal.err << "vorex: " << journal->Path().string() << ": a run of " << head.input << ", begun "
                 << head.started << ", holds " << JournalSummary(content) << "\n";
    if (head.program != kProgramVersion)
        terminal.err << "vorex: it was begun by version " << head.program << ", and this is "
                     << kProgramVersion << "\n";
    if (content.torn) terminal.err << "vorex: its last line was not whole and is dropped\n";
    setup.keeper.Keep(std::move(journal), setup.person, *setup.platform);
    setup.keeper.Replay(content);
    return WithReport(Perform(setup, *file, output, terminal), *file, report, common, terminal);
}

}  // namespace vorex

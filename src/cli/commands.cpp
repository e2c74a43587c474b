#include "cli/commands.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/headless_operator.h"
#include "cli/journal_keeper.h"
#include "cli/operator_script.h"
#include "cli/result_text.h"
#include "cli/standards.h"
#include "cli/survey_text.h"
#include "cli/verdict_text.h"
#include "config/config_common.h"
#include "execution/test_group.h"
#include "execution/test_mqsa.h"
#include "foundation/library_state.h"
#include "foundation/number_text.h"
#include "foundation/registration.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "host/element_base.h"
#include "host/element_file.h"
#include "host/execution_pipe.h"
#include "host/file_error.h"
#include "host/headless_platform.h"
#include "host/reference_host.h"
#include "host/run_journal.h"
#include "host/survey_exchange.h"
#include "host/text_service.h"
#include "instruments/recorded_instruments.h"
#include "instruments/room.h"
#include "instruments/simulated_instruments.h"
#include "instruments/taped_instruments.h"
#include "library.h"
#include "mqsa/survey_entry.h"
#include "results/result_common.h"
#include "version.h"

namespace vorex {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kRecordingPrefix = "recording:";
constexpr std::string_view kSimulated = "simulated";
constexpr std::string_view kSimulatedPrefix = "simulated:";
constexpr uint64_t kUsualSeed = 1;
constexpr std::string_view kStandards = "standards";

/// Where data of a kind stand, seen from the program.
std::vector<fs::path> DataFolders(std::string_view kind) {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    if (error) return {};
    return {program.parent_path().parent_path() / "share" / "vorex" / kind};
}

/// The language that was asked for, else that of the system.
std::string LanguageOf(const CommonOptions& common) {
    return common.language ? *common.language : SystemLanguage(DataFolders("languages"));
}

/// Installs library and host for the length of a command.
class Installation {
  public:
    Installation(const CommonOptions& common, ReferenceHostOptions options = {}) {
        options.language = LanguageOf(common);
        options.languageFolders = DataFolders("languages");
        options.program = "vorex " + std::string(kProgramVersion);
        if (!options.platform) options.platform = std::make_shared<HeadlessPlatform>();
        InstallLibrary(MakeReferenceHost(options));
        mRegistration.RegisterApp();
    }
    ~Installation() {
        mRegistration.CloseApp();
        ResetState();
        InstallServices({});
    }
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;

  private:
    CRegisterDll mRegistration;
};

void CheckOutput(const std::vector<fs::path>& inputs, const fs::path& output) {
    if (output.empty()) return;
    std::error_code error;
    for (const fs::path& input : inputs)
        if (!input.empty() && fs::equivalent(input, output, error))
            throw std::runtime_error(
                output.string() +
                ": the output is the input; give another file, so that the input stays as it is");
    const fs::path folder = output.has_parent_path() ? output.parent_path() : fs::path(".");
    if (!fs::is_directory(folder, error))
        throw std::runtime_error(output.string() + ": there is no folder " + folder.string() +
                                 " to write to");
    if (fs::is_directory(output, error))
        throw std::runtime_error(output.string() + ": is a folder; expected the name of a file");
}

/// Writes the file, or its text to standard output without one.
void WriteResult(ElementFile& file, const fs::path& output, Terminal& terminal) {
    if (output.empty())
        terminal.out << file.Text();
    else
        file.Save(output);
}

void AddLines(const std::vector<std::shared_ptr<ITestElement>>& elements, int depth, bool colour,
              std::ostream& out) {
    for (const auto& element : elements) {
        out << ElementLine(*element, depth, colour) << "\n";
        if (const auto container = std::dynamic_pointer_cast<ITestContainer>(element))
            AddLines(container->NewEnum(), depth + 1, colour, out);
    }
}

/// The tree with its statuses, where standard output does not carry the file itself.
void PrintSummary(const ElementFile& file, const fs::path& output, Terminal& terminal) {
    if (output.empty()) return;
    AddLines(file.Elements(), 0, terminal.colour, terminal.out);
    terminal.out << "Saved as " << output.string() << "\n";
}

/// Failed when an element that takes part in the evaluation failed.
int VerdictOf(const ElementFile& file) {
    const bool failed = std::any_of(file.Elements().begin(), file.Elements().end(), [](const auto& element) {
        const auto result = element->Result();
        const auto filter = element->Filter();
        return result && result->Status() == kFailed && (!filter || filter->Evaluate());
    });
    return failed ? kExitFailed : kExitPassed;
}

int32_t ReadTestId(const std::string& text) {
    int32_t id = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
    const bool number = error == std::errc() && end == text.data() + text.size();
    if (!number || (FindTest(id) == nullptr && id != kGroupId)) {
        std::string known = "0 (a group)";
        for (const TestRow& test : kTestCatalogue) known += ", " + PlainText(test.id);
        throw std::runtime_error("there is no test \"" + text + "\"; expected one of " + known);
    }
    return id;
}

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
    if (name.empty())
        throw std::runtime_error(
            "no instruments were given; expected --instruments simulated or --instruments recording:FILE");
    throw std::runtime_error("--instruments " + options.instruments +
                             " is not known; expected simulated, simulated:SEED or recording:FILE");
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
          installation(common, HostOptions(journalled)) {
        platform->Operator(&person);
    }

    ReferenceHostOptions HostOptions(bool journalled) {
        ReferenceHostOptions host;
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
    Installation installation;
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

/// Visits the elements of a file, each group before what stands in it.
void ForEachElement(const std::vector<std::shared_ptr<ITestElement>>& elements,
                    const std::function<void(const std::shared_ptr<ITestElement>&)>& visit) {
    for (const auto& element : elements) {
        visit(element);
        if (const auto container = std::dynamic_pointer_cast<ITestContainer>(element))
            ForEachElement(container->NewEnum(), visit);
    }
}

std::vector<std::shared_ptr<CTestMQSA>> SurveysOf(const ElementFile& file) {
    std::vector<std::shared_ptr<CTestMQSA>> surveys;
    ForEachElement(file.Elements(), [&](const auto& element) {
        if (auto survey = std::dynamic_pointer_cast<CTestMQSA>(element)) surveys.push_back(std::move(survey));
    });
    return surveys;
}

/// In a file without mammography tests each survey is judged by the outcomes that were saved with it, not by
/// those of the survey that was loaded last.
void RecallCells(const ElementFile& file, const ITestElement& element) {
    const auto survey = std::dynamic_pointer_cast<CResultMQSA>(element.Result());
    if (!survey) return;
    bool mammography = false;
    ForEachElement(file.Elements(), [&](const auto& at) {
        const int32_t id = at->TestID();
        mammography = mammography || id == kMammoAccRepro || id == kMammoAec || id == kMammoRadiation;
    });
    if (!mammography) State().cells = survey->Cells();
}

/// Judges the result of a test anew and tells how its verdict changed. A result whose statuses all stand
/// stays as it is, with what it tells of its verdict.
void JudgeResult(ITestElement& element, CResultCommon& result, const ISelectedStandards* selected,
                 std::ostream& err) {
    const Statuses before = StatusesOf(result);
    const auto record = result.ServiceRecord();
    result.UpdateAllStatus(element, selected);
    if (StatusesOf(result) == before) {
        result.ServiceRecord(record);
        return;
    }
    for (const std::string& line : VerdictChanges(element, result, before, selected))
        err << "vorex: " << line << "\n";
    result.NoteJudgement(element, selected);
}

void JudgeElement(const ElementFile& file, const std::shared_ptr<ITestElement>& element,
                  const ISelectedStandards* selected, std::ostream& err) {
    const auto result = std::dynamic_pointer_cast<CResultCommon>(element->Result());
    if (result && (result->Status() == kPassed || result->Status() == kFailed))
        JudgeResult(*element, *result, selected, err);
    const auto survey = std::dynamic_pointer_cast<CResultMQSA>(element->Result());
    if (!survey) return;
    RecallCells(file, *element);
    survey->RecalculatePages();
    survey->pUpdateMQSATestStatus();
    survey->UpdateStatus(*element, selected, survey->Status() == kNotApplicable);
}

void RollUpGroups(const ElementFile& file, const ISelectedStandards* selected) {
    for (const auto& element : file.Elements())
        if (const auto group = std::dynamic_pointer_cast<CTestGroup>(element))
            group->UpdateGroupStatus(selected);
}

/// True when a survey could not be judged to its end; says why.
bool PrintSurveyFaults(const ElementFile& file, Terminal& terminal) {
    bool any = false;
    for (const auto& element : SurveysOf(file)) {
        const auto survey = std::dynamic_pointer_cast<CResultMQSA>(element->Result());
        if (!survey || survey->Fault().empty()) continue;
        terminal.err << "vorex: element " << PlainText(element->ID()) << ": " << survey->Fault() << "\n";
        any = true;
    }
    return any;
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
    report.limits = true;
    report.waveforms = true;
    return report;
}

/// Writes the report of a run, if one is wanted, and tells how the run ends with it. What was measured is
/// saved by now; a report can be made of it later as well.
int WithReport(int code, const ElementFile& file, const ReportOptions& report, const CommonOptions& common,
               Terminal& terminal) {
    if (report.output.empty()) return code;
    try {
        WriteReport(file, *OpenStandards(DataFolders(kStandards), terminal.err), report, LanguageOf(common));
        return code;
    } catch (const std::exception& error) {
        terminal.err << "vorex: " << error.what() << "\n"
                     << "vorex: the report is missing; vorex report makes it from the result\n";
        return kExitFault;
    }
}

/// The survey that a command is about.
std::shared_ptr<CTestMQSA> ChosenSurvey(const ElementFile& file, const SurveyOptions& options) {
    const auto surveys = SurveysOf(file);
    std::string ids;
    for (const auto& survey : surveys) {
        if (survey->ID() == options.id || (options.id < 0 && surveys.size() == 1)) return survey;
        ids += (ids.empty() ? "" : ", ") + PlainText(survey->ID());
    }
    if (surveys.empty())
        throw std::runtime_error(options.input.string() +
                                 ": holds no survey; vorex new 1300 makes a file that does");
    throw std::runtime_error(options.input.string() + ": holds the surveys " + ids +
                             "; choose one with --id");
}

std::pair<std::string, std::string> SplitAssignment(const std::string& option, const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos)
        throw std::runtime_error(option + " \"" + text + "\" has no \"=\"; expected ADDRESS=TEXT");
    return {text.substr(0, equals), text.substr(equals + 1)};
}

/// What a survey is given, from the file first.
SurveyExchange EnteredBy(const SurveyOptions& options) {
    SurveyExchange entered;
    if (!options.from.empty()) entered = ReadSurveyExchange(options.from);
    for (const std::string& text : options.texts) entered.texts.push_back(SplitAssignment("--set", text));
    for (const std::string& text : options.answers)
        entered.answers.push_back(SplitAssignment("--answer", text));
    return entered;
}

SurveyExchange ExportOf(const CResultMQSA& survey) {
    SurveyExchange exchange;
    for (const SurveyPlace& place : ListSurvey(survey))
        if (place.kind == PlaceKind::kTyped && !Trimmed(place.value).empty())
            exchange.texts.emplace_back(place.address, place.value);
    constexpr std::string_view kAnswers[] = {{}, text::kPass, text::kFail, text::kNotApplicable};
    for (const auto& item : survey.Items())
        if (item->Status() > kNotTested && item->Status() <= kNotApplicable)
            exchange.answers.emplace_back(
                item->RawKey(), DefaultText(kAnswers[static_cast<std::size_t>(item->Status())], {}));
    return exchange;
}

}  // namespace

int NewCommand(const NewOptions& options, const CommonOptions& common, Terminal& terminal) {
    const int32_t testId = ReadTestId(options.testId);
    CheckOutput({}, options.output);
    const Installation installation(common);
    const auto element = CreateTestElement(testId);
    if (const auto config = std::dynamic_pointer_cast<CConfigCommon>(element->Configuration()))
        config->DefaultValues(testId);
    // A clone, as every new test is one of its template: cloning takes the site's defaults.
    const auto test = element->Clone();
    element->Terminate();
    test->ID(1);
    test->Info()->Name(TestTitle(*test));
    ElementFile file;
    file.Add(test);
    WriteResult(file, options.output, terminal);
    PrintSummary(file, options.output, terminal);
    return kExitPassed;
}

int RunCommand(const RunOptions& options, const CommonOptions& common, Terminal& terminal) {
    CheckOutput({options.input, RecordingOf(options), options.room}, options.output);
    const ReportOptions report = ReportOfRun(options);
    if (!report.output.empty()) {
        CheckOutput({options.input, RecordingOf(options), options.room, options.output}, report.output);
        CheckReport(report);
    }
    const bool journalled = HasJournal(options.output);
    RunSetup setup(options, ParseOperatorScript(options.operatorScript), common, journalled);
    JournalHead head;
    const auto file = ElementFile::Load(options.input, nullptr, journalled ? &head.document : nullptr);
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
    run.instruments = options.instruments.empty() ? head.instruments : options.instruments;
    run.room = options.instruments.empty() && options.room.empty() ? fs::path(head.room) : options.room;
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
    return Perform(setup, *file, output, terminal);
}

int JudgeCommand(const JudgeOptions& options, const CommonOptions& common, Terminal& terminal) {
    CheckOutput({options.input}, options.output);
    const Installation installation(common);
    const auto file = ElementFile::Load(options.input);
    const auto selected = file->Selected();
    ForEachElement(file->Elements(),
                   [&](const auto& element) { JudgeElement(*file, element, selected.get(), terminal.err); });
    RollUpGroups(*file, selected.get());
    WriteResult(*file, options.output, terminal);
    PrintSummary(*file, options.output, terminal);
    for (const auto& element : SurveysOf(*file)) {
        const auto survey = std::dynamic_pointer_cast<CResultMQSA>(element->Result());
        if (survey && !options.output.empty()) terminal.out << SurveyFailures(*survey, "  ");
    }
    return PrintSurveyFaults(*file, terminal) ? static_cast<int>(kExitFault) : VerdictOf(*file);
}

int SurveyCommand(const SurveyOptions& options, const CommonOptions& common, Terminal& terminal) {
    CheckOutput({options.input}, options.output);
    CheckOutput({options.input}, options.exported);
    const Installation installation(common);
    const SurveyExchange entered = EnteredBy(options);
    const auto file = ElementFile::Load(options.input);
    const auto element = ChosenSurvey(*file, options);
    const auto survey = element->Survey();
    RecallCells(*file, *element);
    for (const auto& [address, text] : entered.texts) SetSurveyText(*survey, address, text);
    for (const auto& [item, answer] : entered.answers) AnswerSurvey(*survey, item, answer);
    const bool changed = !entered.texts.empty() || !entered.answers.empty();
    const auto selected = file->Selected();
    if (changed) {
        survey->pUpdateMQSATestStatus();
        survey->UpdateStatus(*element, selected.get(), survey->Status() == kNotApplicable);
        RollUpGroups(*file, selected.get());
    }
    if (options.list) terminal.out << SurveyListing(*survey);
    if (!options.exported.empty()) WriteSurveyExchange(ExportOf(*survey), options.exported);
    if (!changed) return kExitPassed;
    const bool unkept = survey->Status() == kNotTested || survey->Status() == kNotApplicable;
    if (unkept && !entered.answers.empty())
        terminal.err << "vorex: the file keeps no answers while none of them is Pass or Fail\n";
    if (!options.list || !options.output.empty()) {
        WriteResult(*file, options.output, terminal);
        PrintSummary(*file, options.output, terminal);
        if (!options.output.empty()) terminal.out << SurveyFailures(*survey, "  ");
    }
    return PrintSurveyFaults(*file, terminal) ? static_cast<int>(kExitFault) : VerdictOf(*file);
}

int ReportCommand(const ReportOptions& options, const CommonOptions& common, Terminal& terminal) {
    CheckOutput({options.input}, options.output);
    CheckReport(options);
    const Installation installation(common);
    const auto file = ElementFile::Load(options.input);
    WriteReport(*file, *OpenStandards(DataFolders(kStandards), terminal.err), options, LanguageOf(common));
    terminal.out << "Report written as " << options.output.string() << "\n";
    return kExitPassed;
}

int ShowCommand(const ShowOptions& options, const CommonOptions& common, Terminal& terminal) {
    const Installation installation(common);
    const auto file = ElementFile::Load(options.input);
    const auto instruments = file->Instruments();
    terminal.out << ResultText(
        {options.input.string(), file->Elements(), file->Selected(), instruments->Entries(), options.all},
        terminal.colour);
    return kExitPassed;
}

int StandardsCommand(const CommonOptions& common, Terminal& terminal) {
    const Installation installation(common);
    terminal.out << StandardsText(*OpenStandards(DataFolders(kStandards), terminal.err));
    return kExitPassed;
}

int StandardsAddCommand(const StandardsAddOptions& options, const CommonOptions& common, Terminal& terminal) {
    CheckOutput({options.input}, options.output);
    const Installation installation(common);
    const auto file = ElementFile::Load(options.input);
    const auto library = OpenStandards(DataFolders(kStandards), terminal.err);
    AddStandard(*file, *library, options.standard, options.elements, terminal.err);
    WriteResult(*file, options.output, terminal);
    PrintSummary(*file, options.output, terminal);
    return kExitPassed;
}

int StandardsSelectCommand(const StandardsSelectOptions& options, const CommonOptions& common,
                           Terminal& terminal) {
    CheckOutput({options.input}, options.output);
    const Installation installation(common);
    const auto file = ElementFile::Load(options.input);
    SelectStandards(*file, options.standards);
    WriteResult(*file, options.output, terminal);
    PrintSummary(*file, options.output, terminal);
    return kExitPassed;
}

}  // namespace vorex

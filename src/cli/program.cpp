#include "cli/program.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <ostream>
#include <string>

#include "foundation/file_error.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "version.h"

namespace vorex {

namespace {

constexpr const char* kAbout =
    "vorex proves that an X-ray unit does what it should: it guides the exposures of a test, takes the\n"
    "instruments' readings, calculates and judges the results, and saves them.";

constexpr const char* kExitCodes =
    "Exit codes: 0 passed or not judged, 1 a test failed, 2 wrong usage or unreadable input,\n"
    "3 aborted by the operator, 4 an instrument or file failed (what was measured is saved).\n"
    "`vorex COMMAND --help` shows an example of each command.";

std::string NewExample() {
    constexpr std::size_t kNumberWidth = 6;
    std::string text = "Example:\n  vorex new 100 -o reproducibility.xml\n\nTests:\n  0     a group";
    for (const TestRow& test : kTestCatalogue) {
        const std::string number = PlainText(test.id);
        text +=
            "\n  " + number + std::string(kNumberWidth - number.size(), ' ') + DefaultText(test.title, {});
    }
    return text;
}

constexpr const char* kRunExample =
    "Examples:\n"
    "  vorex run radiographic_unit.xml --instruments simulated:7 --room rooms/kvp_high.json -o result.xml\n"
    "  vorex run unit.xml --instruments recording:unit.jsonl -o result.xml\n"
    "  vorex run unit.xml --instruments recording:unit.jsonl --operator 'start,redo 2,next;skip' -o "
    "result.xml\n\n"
    "Operator script: elements between \";\", steps between \",\": start, stop@N, next, previous, skip, na,\n"
    "abort, redo N. An element that the script does not reach is driven with start,next.";

constexpr const char* kResumeExample =
    "Examples:\n"
    "  vorex resume result.xml\n"
    "  vorex resume result.xml --operator 'redo 2,next'\n\n"
    "FILE is the output of the run, whose journal is FILE.journal, or that journal. Without\n"
    "--instruments and --operator the run continues with its own. A new script begins at the point of the\n"
    "interruption: its first element is the one that was open.";
constexpr const char* kSurveyExample =
    "Examples:\n"
    "  vorex survey survey.xml --list\n"
    "  vorex survey survey.xml --set Collimation.SID=650 --set 'DeviXrayLightField(2,1)=2' --answer PR1=Pass "
    "-o "
    "filled.xml\n"
    "  vorex survey lastyear.xml --export answers.json\n"
    "  vorex survey survey.xml --from answers.json -o filled.xml";

constexpr const char* kJudgeExample = "Example:\n  vorex judge result.xml -o judged.xml";
constexpr const char* kReportExample =
    "Examples:\n"
    "  vorex report result.xml -o result.pdf --limits --waveforms\n"
    "  vorex report result.xml -o failures.txt --failures-only\n\n"
    "The ending of the name chooses the form: .txt, .html or .pdf.";
constexpr const char* kShowExample = "Examples:\n  vorex show result.xml\n  vorex show --all result.xml";

constexpr const char* kStandardsExample =
    "Examples:\n"
    "  vorex standards\n"
    "  vorex standards add unit.xml 'FDA radiography' -o judged_by_fda.xml\n"
    "  vorex standards select judged_by_fda.xml 'FDA radiography' -o selected.xml\n\n"
    "Put your own standards into the folder \"standards\" next to the settings file, or into the folder "
    "that\n"
    "VOREX_STANDARDS names.";
constexpr const char* kAddExample =
    "Examples:\n"
    "  vorex standards add unit.xml 'FDA radiography' -o judged_by_fda.xml\n"
    "  vorex standards add unit.xml 'FDA fluoroscopy:high level control' --element 8 -o high_level.xml";
constexpr const char* kSelectExample =
    "Example:\n  vorex standards select judged_by_fda.xml 'FDA radiography' -o selected.xml";

struct Arguments {
    CommonOptions common;
    NewOptions newTest;
    RunOptions run;
    ResumeOptions resume;
    JudgeOptions judge;
    SurveyOptions survey;
    ReportOptions report;
    ShowOptions show;
    StandardsAddOptions add;
    StandardsSelectOptions select;
};

void AddOutput(CLI::App& command, std::filesystem::path& output) {
    command.add_option("-o,--output", output, "File to write; without it the file goes to standard output");
}

void AddLanguage(CLI::App& command, CommonOptions& common) {
    command.add_option("--language", common.language,
                       "Language of the texts, by its code (en, de, fr, es); without it that of the system");
}

void AddReportLanguage(CLI::App& command, std::optional<std::string>& language) {
    command.add_option("--report-language", language,
                       "Language of the report; without it that of the program");
}

void AddStandardsCommands(CLI::App& app, Arguments& arguments) {
    CLI::App* standards =
        app.add_subcommand("standards", "Lists the standards with their limits and clauses");
    standards->require_subcommand(0, 1);
    standards->footer(kStandardsExample);

    CLI::App* add = standards->add_subcommand("add", "Puts a standard into the elements of a file");
    add->add_option("FILE", arguments.add.input, "Element file")->required();
    add->add_option("NAME", arguments.add.standard, "NAME or NAME:VERSION of the standard")->required();
    add->add_option("--element", arguments.add.elements,
                    "ID of an element that takes it, with all below it; without it all do")
        ->allow_extra_args(false);
    AddOutput(*add, arguments.add.output);
    add->footer(kAddExample);

    CLI::App* select = standards->add_subcommand("select", "Chooses the standards that judge a file");
    select->add_option("FILE", arguments.select.input, "Element file")->required();
    select->add_option("NAME", arguments.select.standards, "NAME or NAME:VERSION of each standard")
        ->required();
    AddOutput(*select, arguments.select.output);
    select->footer(kSelectExample);

    for (CLI::App* command : {standards, add, select}) AddLanguage(*command, arguments.common);
}

void AddRunCommands(CLI::App& app, Arguments& arguments) {
    CLI::App* newTest = app.add_subcommand("new", "Writes an element file of a new test with its defaults");
    newTest->add_option("TESTID", arguments.newTest.testId, "Number of the test")->required();
    AddOutput(*newTest, arguments.newTest.output);
    newTest->footer(NewExample());

    CLI::App* run = app.add_subcommand("run", "Runs the tests of an element file and judges them");
    run->add_option("FILE", arguments.run.input, "Element file")->required();
    run->add_option(
        "--instruments", arguments.run.instruments,
        "simulated[:SEED] or recording:FILE: a simulated X-ray room, or recorded instruments. A file "
        "that holds nothing but surveys needs none");
    run->add_option("--room", arguments.run.room,
                    "Room file of simulated instruments; without it a good room");
    run->add_option("--operator", arguments.run.operatorScript, "What the operator does");
    AddOutput(*run, arguments.run.output);
    run->add_option("--report", arguments.run.report, "Report to write as well: FILE.txt, .html or .pdf");
    AddReportLanguage(*run, arguments.run.reportLanguage);
    run->add_flag("--real-time", arguments.run.realTime, "Paces the run by the clock");
    run->footer(kRunExample);

    CLI::App* resume = app.add_subcommand("resume", "Continues an interrupted run");
    resume->add_option("FILE", arguments.resume.file, "Output file of the run, or its journal")->required();
    resume->add_option("--instruments", arguments.resume.instruments, "Instruments to continue with");
    resume->add_option("--room", arguments.resume.room, "Room of simulated instruments");
    resume->add_option("--operator", arguments.resume.operatorScript, "What the operator does from then on");
    resume->add_option("--report", arguments.resume.report,
                       "Report to write as well; without it the one that the run was asked for, if any");
    AddReportLanguage(*resume, arguments.resume.reportLanguage);
    resume->footer(kResumeExample);

    CLI::App* judge = app.add_subcommand("judge", "Judges stored results again by the limits of their file");
    judge->add_option("FILE", arguments.judge.input, "Element file with results")->required();
    AddOutput(*judge, arguments.judge.output);
    judge->footer(kJudgeExample);

    for (CLI::App* command : {newTest, run, judge}) AddLanguage(*command, arguments.common);
}

void AddSurveyCommand(CLI::App& app, Arguments& arguments) {
    CLI::App* survey =
        app.add_subcommand("survey", "Enters an annual mammography survey, and lists or exports it");
    survey->add_option("FILE", arguments.survey.input, "Element file with a survey")->required();
    survey->add_option("--set", arguments.survey.texts, "ADDRESS=TEXT: a field, cell or comment")
        ->expected(1)
        ->take_all();
    survey->add_option("--answer", arguments.survey.answers, "ITEM=Pass, Fail or NA")
        ->expected(1)
        ->take_all();
    survey->add_option("--from", arguments.survey.from, "JSON file with texts and answers");
    survey->add_option("--export", arguments.survey.exported, "JSON file to write texts and answers to");
    survey->add_flag("--list", arguments.survey.list, "Lists every place: page, address, value, meaning");
    survey->add_option("--id", arguments.survey.id, "ID of the survey, where a file has several");
    AddOutput(*survey, arguments.survey.output);
    survey->footer(kSurveyExample);

    AddLanguage(*survey, arguments.common);
}

void AddReportCommands(CLI::App& app, Arguments& arguments) {
    CLI::App* report = app.add_subcommand("report", "Writes the report of a file: text, web page or PDF");
    report->add_option("FILE", arguments.report.input, "Element file")->required();
    report->add_option("-o,--output", arguments.report.output, "Report to write: FILE.txt, .html or .pdf")
        ->required();
    report->add_flag("--limits", arguments.report.limits, "Shows the limits next to the results");
    report->add_flag("--failures-only", arguments.report.failuresOnly, "Shows failed values only");
    report->add_flag("--waveforms", arguments.report.waveforms, "Shows the waveforms marked for the report");
    AddReportLanguage(*report, arguments.report.language);
    report->add_option("--paper", arguments.report.paper, "Paper of a PDF: A4 or Letter")
        ->capture_default_str();
    report->footer(kReportExample);

    CLI::App* show = app.add_subcommand("show", "Prints the tests of a file with their results");
    show->add_option("FILE", arguments.show.input, "Element file")->required();
    show->add_flag("--all", arguments.show.all, "Also the readings that a redo has replaced");
    show->footer(kShowExample);

    for (CLI::App* command : {report, show}) AddLanguage(*command, arguments.common);
}

void AddCommands(CLI::App& app, Arguments& arguments) {
    AddRunCommands(app, arguments);
    AddSurveyCommand(app, arguments);
    AddReportCommands(app, arguments);
    AddStandardsCommands(app, arguments);
}

/// What is wrong with the given command; empty when nothing is. The parser itself would only say that a
/// command is missing.
std::string CommandFault(const CLI::App& app, const std::vector<std::string>& arguments) {
    if (arguments.empty())
        return "no command was given; expected new, run, resume, judge, survey, report, show or standards "
               "(see vorex "
               "--help)";
    const std::string& first = arguments.front();
    const auto commands = app.get_subcommands([](const CLI::App*) { return true; });
    const bool known = std::any_of(commands.begin(), commands.end(),
                                   [&](const CLI::App* command) { return command->get_name() == first; });
    if (known || first.starts_with('-')) return {};
    return "there is no command \"" + first +
           "\"; expected new, run, resume, judge, survey, report, show or standards (see vorex --help)";
}

int Dispatch(const CLI::App& app, const Arguments& arguments, Terminal& terminal) {
    if (app.got_subcommand("new")) return NewCommand(arguments.newTest, arguments.common, terminal);
    if (app.got_subcommand("run")) return RunCommand(arguments.run, arguments.common, terminal);
    if (app.got_subcommand("resume")) return ResumeCommand(arguments.resume, terminal);
    if (app.got_subcommand("judge")) return JudgeCommand(arguments.judge, arguments.common, terminal);
    if (const CLI::App* standards = app.get_subcommand("standards"); standards->parsed()) {
        if (standards->got_subcommand("add"))
            return StandardsAddCommand(arguments.add, arguments.common, terminal);
        if (standards->got_subcommand("select"))
            return StandardsSelectCommand(arguments.select, arguments.common, terminal);
        return StandardsCommand(arguments.common, terminal);
    }
    if (app.got_subcommand("survey")) return SurveyCommand(arguments.survey, arguments.common, terminal);
    if (app.got_subcommand("report")) return ReportCommand(arguments.report, arguments.common, terminal);
    return ShowCommand(arguments.show, arguments.common, terminal);
}

/// Runs a command without checking that its output was written.
int Execute(const std::vector<std::string>& arguments, Terminal& terminal) {
    CLI::App app(kAbout, "vorex");
    Arguments parsed;
    app.set_version_flag("--version", "vorex " + std::string(kProgramVersion));
    app.require_subcommand(1);
    app.footer(kExitCodes);
    AddCommands(app, parsed);
    if (const std::string fault = CommandFault(app, arguments); !fault.empty()) {
        terminal.err << "vorex: " << fault << "\n";
        return kExitUsage;
    }
    try {
        // The parser takes its arguments in reverse order.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0)
            return app.exit(error, terminal.out, terminal.err);  // --help, --version
        terminal.err << "vorex: " << error.what() << " (see vorex --help)\n";
        return kExitUsage;
    }
    try {
        return Dispatch(app, parsed, terminal);
    } catch (const FileWriteError& error) {
        terminal.err << "vorex: " << error.what() << "\n";
        return kExitFault;
    } catch (const std::exception& error) {
        terminal.err << "vorex: " << error.what() << "\n";
        return kExitUsage;
    }
}

}  // namespace

int RunProgram(const std::vector<std::string>& arguments, Terminal& terminal) {
    const int code = Execute(arguments, terminal);
    if (terminal.out.flush()) return code;
    terminal.err << "vorex: standard output could not be written\n";
    // The missing output may be the result itself, so this overrides the verdict.
    return code == kExitPassed || code == kExitFailed ? kExitFault : code;
}

}  // namespace vorex

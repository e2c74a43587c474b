#include "cli/commands.h"

#include <charconv>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <system_error>

#include "app/elements.h"
#include "app/open_file.h"
#include "app/session.h"
#include "cli/command_support.h"
#include "cli/result_text.h"
#include "cli/standards_text.h"
#include "cli/survey_text.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "mqsa/result_mqsa.h"

namespace vorex {

namespace {

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

}  // namespace

int NewCommand(const NewOptions& options, const CommonOptions& common, Terminal& terminal) {
    const int32_t testId = ReadTestId(options.testId);
    CheckOutput({}, options.output);
    const Session session({LanguageOf(common)});
    const auto file = OpenFile::New(testId);
    WriteResult(*file, options.output, terminal);
    PrintSummary(*file, options.output, terminal);
    return kExitPassed;
}

int JudgeCommand(const JudgeOptions& options, const CommonOptions& common, Terminal& terminal) {
    CheckOutput({options.input}, options.output);
    const Session session({LanguageOf(common)});
    const auto file = OpenFile::Load(options.input);
    TerminalListener listener(terminal);
    file->Judge(listener);
    WriteResult(*file, options.output, terminal);
    PrintSummary(*file, options.output, terminal);
    for (const auto& element : SurveysOf(file->Elements())) {
        const auto survey = std::dynamic_pointer_cast<CResultMQSA>(element->Result());
        if (survey && !options.output.empty()) terminal.out << SurveyFailures(*survey, "  ");
    }
    return VerdictCode(*file, terminal);
}

int ReportCommand(const ReportOptions& options, const CommonOptions& common, Terminal& terminal) {
    CheckOutput({options.input}, options.output);
    CheckReport(options);
    Session session({LanguageOf(common)});
    const auto file = OpenFile::Load(options.input);
    TerminalListener listener(terminal);
    WriteReport(file->File(), session.Standards(listener), options, session.Language());
    terminal.out << Translate(text::kReportWrittenAs, {options.output.string()}) << "\n";
    return kExitPassed;
}

int ShowCommand(const ShowOptions& options, const CommonOptions& common, Terminal& terminal) {
    const Session session({LanguageOf(common)});
    const auto file = OpenFile::Load(options.input);
    const auto instruments = file->File().Instruments();
    terminal.out << ResultText(
        {file->Name(), file->Elements(), file->File().Selected(), instruments->Entries(), options.all},
        terminal.colour);
    return kExitPassed;
}

int StandardsCommand(const CommonOptions& common, Terminal& terminal) {
    Session session({LanguageOf(common)});
    TerminalListener listener(terminal);
    terminal.out << StandardsText(session.Standards(listener));
    return kExitPassed;
}

int StandardsAddCommand(const StandardsAddOptions& options, const CommonOptions& common, Terminal& terminal) {
    CheckOutput({options.input}, options.output);
    Session session({LanguageOf(common)});
    const auto file = OpenFile::Load(options.input);
    TerminalListener listener(terminal);
    const AddedStandard added =
        file->AddStandard(session.Standards(listener), options.standard, options.elements, listener);
    if (!added.selected)
        terminal.err << "vorex: \"" << added.name.name << ":" << added.name.version
                     << "\" does not judge yet: the file selects others (see vorex standards select)\n";
    WriteResult(*file, options.output, terminal);
    PrintSummary(*file, options.output, terminal);
    return kExitPassed;
}

int StandardsSelectCommand(const StandardsSelectOptions& options, const CommonOptions& common,
                           Terminal& terminal) {
    CheckOutput({options.input}, options.output);
    const Session session({LanguageOf(common)});
    const auto file = OpenFile::Load(options.input);
    file->SelectStandards(options.standards);
    WriteResult(*file, options.output, terminal);
    PrintSummary(*file, options.output, terminal);
    return kExitPassed;
}

}  // namespace vorex

#include "cli/commands.h"

#include <charconv>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <system_error>

#include "app/data_folders.h"
#include "app/elements.h"
#include "app/session.h"
#include "app/standards.h"
#include "app/verdict_text.h"
#include "cli/command_support.h"
#include "cli/result_text.h"
#include "cli/standards_text.h"
#include "cli/survey_text.h"
#include "execution/survey_feed.h"
#include "files/element_file.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "host/element_base.h"
#include "mqsa/result_mqsa.h"
#include "results/result_common.h"

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

/// Judges the result of a test anew and tells how its verdict changed. A result whose statuses all stand
/// stays as it is, with what it tells of its verdict.
void JudgeResult(ITestElement& element, CResultCommon& result, const ISelectedStandards* selected,
                 std::ostream& err) {
    const Statuses before = StatusesOf(result);
    const auto record = result.ServiceRecord();
    FeedSurveys(element, result.UpdateAllStatus(element, selected));
    if (StatusesOf(result) == before) {
        result.ServiceRecord(record);
        return;
    }
    for (const std::string& line : VerdictChanges(element, result, before, selected))
        err << "vorex: " << line << "\n";
    result.NoteJudgement(element, selected);
}

void JudgeTest(const std::shared_ptr<ITestElement>& element, const ISelectedStandards* selected,
               std::ostream& err) {
    const auto result = std::dynamic_pointer_cast<CResultCommon>(element->Result());
    if (result && (result->Status() == kPassed || result->Status() == kFailed))
        JudgeResult(*element, *result, selected, err);
}

void JudgeSurvey(const std::shared_ptr<ITestElement>& element, const ISelectedStandards* selected) {
    const auto survey = std::dynamic_pointer_cast<CResultMQSA>(element->Result());
    if (!survey) return;
    survey->RecalculatePages();
    survey->pUpdateMQSATestStatus();
    survey->UpdateStatus(*element, selected, survey->Status() == kNotApplicable);
}

}  // namespace

int NewCommand(const NewOptions& options, const CommonOptions& common, Terminal& terminal) {
    const int32_t testId = ReadTestId(options.testId);
    CheckOutput({}, options.output);
    const Session session(HostOptions(common));
    const auto element = CreateTestElement(testId);
    if (const auto config = std::dynamic_pointer_cast<CConfigCommon>(element->Configuration()))
        config->DefaultValues(testId);
    // A clone, as every new test is one of its template: cloning takes the site's defaults.
    const auto test = element->Clone();
    element->Terminate();
    test->ID(1);
    // A file is the same in every language.
    test->Info()->Name(DefaultText(TitleKey(testId), {}));
    ElementFile file;
    file.Add(test);
    WriteResult(file, options.output, terminal);
    PrintSummary(file, options.output, terminal);
    return kExitPassed;
}

int JudgeCommand(const JudgeOptions& options, const CommonOptions& common, Terminal& terminal) {
    CheckOutput({options.input}, options.output);
    const Session session(HostOptions(common));
    const auto file = ElementFile::Load(options.input);
    const auto selected = file->Selected();
    // The surveys come last: one may stand in front of the tests that count for it.
    ForEachElement(file->Elements(),
                   [&](const auto& element) { JudgeTest(element, selected.get(), terminal.err); });
    ForEachElement(file->Elements(), [&](const auto& element) { JudgeSurvey(element, selected.get()); });
    RollUpGroups(file->Elements(), selected.get());
    WriteResult(*file, options.output, terminal);
    PrintSummary(*file, options.output, terminal);
    for (const auto& element : SurveysOf(file->Elements())) {
        const auto survey = std::dynamic_pointer_cast<CResultMQSA>(element->Result());
        if (survey && !options.output.empty()) terminal.out << SurveyFailures(*survey, "  ");
    }
    return PrintSurveyFaults(*file, terminal) ? static_cast<int>(kExitFault) : VerdictOf(*file);
}

int ReportCommand(const ReportOptions& options, const CommonOptions& common, Terminal& terminal) {
    CheckOutput({options.input}, options.output);
    CheckReport(options);
    const Session session(HostOptions(common));
    const auto file = ElementFile::Load(options.input);
    WriteReport(*file, *OpenStandards(DataFolders(kStandards), terminal.err), options, LanguageOf(common));
    terminal.out << Translate(text::kReportWrittenAs, {options.output.string()}) << "\n";
    return kExitPassed;
}

int ShowCommand(const ShowOptions& options, const CommonOptions& common, Terminal& terminal) {
    const Session session(HostOptions(common));
    const auto file = ElementFile::Load(options.input);
    const auto instruments = file->Instruments();
    terminal.out << ResultText(
        {options.input.string(), file->Elements(), file->Selected(), instruments->Entries(), options.all},
        terminal.colour);
    return kExitPassed;
}

int StandardsCommand(const CommonOptions& common, Terminal& terminal) {
    const Session session(HostOptions(common));
    terminal.out << StandardsText(*OpenStandards(DataFolders(kStandards), terminal.err));
    return kExitPassed;
}

int StandardsAddCommand(const StandardsAddOptions& options, const CommonOptions& common, Terminal& terminal) {
    CheckOutput({options.input}, options.output);
    const Session session(HostOptions(common));
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
    const Session session(HostOptions(common));
    const auto file = ElementFile::Load(options.input);
    SelectStandards(*file, options.standards);
    WriteResult(*file, options.output, terminal);
    PrintSummary(*file, options.output, terminal);
    return kExitPassed;
}

}  // namespace vorex

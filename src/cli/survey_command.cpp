#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>

#include "app/open_file.h"
#include "app/session.h"
#include "app/survey_editing.h"
#include "cli/command_support.h"
#include "cli/commands.h"
#include "cli/survey_text.h"
#include "files/survey_exchange.h"
#include "foundation/vocabulary.h"

// Entry of a survey without a window.

namespace vorex {

namespace {

std::pair<std::string, std::string> SplitAssignment(const std::string& option, const std::string& text,
                                                    const std::string& expected) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos)
        throw std::runtime_error(option + " \"" + text + "\" has no \"=\"; expected " + expected);
    return {text.substr(0, equals), text.substr(equals + 1)};
}

/// The entries for a survey, those from the file first.
SurveyExchange EnteredBy(const SurveyOptions& options) {
    SurveyExchange entered;
    if (!options.from.empty()) entered = ReadSurveyExchange(options.from);
    for (const std::string& text : options.texts)
        entered.texts.push_back(SplitAssignment("--set", text, "ADDRESS=TEXT"));
    for (const std::string& text : options.answers)
        entered.answers.push_back(SplitAssignment("--answer", text, "ITEM=Pass, Fail or NA"));
    return entered;
}

}  // namespace

int SurveyCommand(const SurveyOptions& options, const CommonOptions& common, Terminal& terminal) {
    CheckOutput({options.input, options.from}, options.output);
    CheckOutput({options.input, options.from, options.output}, options.exported);
    if (options.output.empty() && options.exported.empty() && !options.list && options.from.empty() &&
        options.texts.empty() && options.answers.empty())
        throw std::runtime_error("nothing is to be done with " + options.input.string() +
                                 "; expected --set, --answer, --from, --list or --export");
    const Session session({LanguageOf(common)});
    const SurveyExchange entered = EnteredBy(options);
    const auto file = OpenFile::Load(options.input);
    const auto element = FindSurvey(*file, options.id);
    const auto survey = element->Survey();
    for (const std::string& note : EnterSurvey(*file, element, entered))
        terminal.err << "vorex: " << note << "\n";
    const bool changed = !entered.texts.empty() || !entered.answers.empty();
    if (options.list) terminal.out << SurveyListing(*survey);
    if (!options.exported.empty()) WriteSurveyExchange(ExportSurvey(*survey), options.exported);
    if (!changed && options.output.empty()) return kExitPassed;
    const bool unkept = survey->Status() == kNotTested || survey->Status() == kNotApplicable;
    if (unkept && !entered.answers.empty())
        terminal.err << "vorex: the file keeps no answers while none of them is Pass or Fail\n";
    if (!options.list || !options.output.empty()) {
        WriteResult(*file, options.output, terminal);
        PrintSummary(*file, options.output, terminal);
        if (!options.output.empty()) terminal.out << SurveyFailures(*survey, "  ");
    }
    return VerdictCode(*file, terminal);
}

}  // namespace vorex

#include <algorithm>
#include <map>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/elements.h"
#include "app/session.h"
#include "cli/command_support.h"
#include "cli/commands.h"
#include "cli/survey_text.h"
#include "files/element_file.h"
#include "files/survey_exchange.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "mqsa/survey_entry.h"

// Entering a survey without a window.

namespace vorex {

namespace {

/// The survey that a command is about.
std::shared_ptr<CTestMQSA> ChosenSurvey(const ElementFile& file, const SurveyOptions& options) {
    const auto surveys = SurveysOf(file.Elements());
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

std::pair<std::string, std::string> SplitAssignment(const std::string& option, const std::string& text,
                                                    const std::string& expected) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos)
        throw std::runtime_error(option + " \"" + text + "\" has no \"=\"; expected " + expected);
    return {text.substr(0, equals), text.substr(equals + 1)};
}

/// What a survey is given, from the file first.
SurveyExchange EnteredBy(const SurveyOptions& options) {
    SurveyExchange entered;
    if (!options.from.empty()) entered = ReadSurveyExchange(options.from);
    for (const std::string& text : options.texts)
        entered.texts.push_back(SplitAssignment("--set", text, "ADDRESS=TEXT"));
    for (const std::string& text : options.answers)
        entered.answers.push_back(SplitAssignment("--answer", text, "ITEM=Pass, Fail or NA"));
    return entered;
}

/// What is filled, and the cells that were emptied: a new survey has proposals in some of them.
SurveyExchange ExportOf(const CResultMQSA& survey) {
    CResultMQSA untouched;
    untouched.Initialize(survey.Configuration());
    std::map<std::string, std::string> proposals;
    for (SurveyPlace& place : ListSurvey(untouched))
        if (place.address.ends_with(')')) proposals[place.address] = std::move(place.value);
    SurveyExchange exchange;
    for (const SurveyPlace& place : ListSurvey(survey)) {
        const bool filled = !Trimmed(place.value).empty();
        const auto proposal = proposals.find(place.address);
        const bool emptied = proposal != proposals.end() && proposal->second != place.value;
        if (place.kind == PlaceKind::kTyped && (filled || emptied))
            exchange.texts.emplace_back(place.address, place.value);
    }
    constexpr std::string_view kAnswers[] = {{}, text::kPass, text::kFail, text::kNotApplicable};
    for (const auto& item : survey.Items())
        if (item->Status() > kNotTested && item->Status() <= kNotApplicable)
            exchange.answers.emplace_back(
                item->RawKey(), DefaultText(kAnswers[static_cast<std::size_t>(item->Status())], {}));
    return exchange;
}

}  // namespace

int SurveyCommand(const SurveyOptions& options, const CommonOptions& common, Terminal& terminal) {
    CheckOutput({options.input, options.from}, options.output);
    CheckOutput({options.input, options.from, options.output}, options.exported);
    if (options.output.empty() && options.exported.empty() && !options.list && options.from.empty() &&
        options.texts.empty() && options.answers.empty())
        throw std::runtime_error("nothing is to be done with " + options.input.string() +
                                 "; expected --set, --answer, --from, --list or --export");
    const Session session(HostOptions(common));
    const SurveyExchange entered = EnteredBy(options);
    const auto file = ElementFile::Load(options.input);
    const auto element = ChosenSurvey(*file, options);
    const auto survey = element->Survey();
    std::vector<std::string> notes;
    for (const auto& [address, text] : entered.texts)
        if (std::string note = SetSurveyText(*survey, address, text); !note.empty())
            notes.push_back(std::move(note));
    for (const auto& [item, answer] : entered.answers) AnswerSurvey(*survey, item, answer);
    if (std::any_of(entered.texts.begin(), entered.texts.end(),
                    [](const auto& text) { return text.first.starts_with(survey::kGeneralInformation); }))
        CheckSurveyDates(*survey);
    for (const std::string& note : notes) terminal.err << "vorex: " << note << "\n";
    const bool changed = !entered.texts.empty() || !entered.answers.empty();
    const auto selected = file->Selected();
    if (changed) {
        survey->pUpdateMQSATestStatus();
        survey->UpdateStatus(*element, selected.get(), survey->Status() == kNotApplicable);
        RollUpGroups(file->Elements(), selected.get());
    }
    if (options.list) terminal.out << SurveyListing(*survey);
    if (!options.exported.empty()) WriteSurveyExchange(ExportOf(*survey), options.exported);
    if (!changed && options.output.empty()) return kExitPassed;
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

}  // namespace vorex

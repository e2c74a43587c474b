#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "cli/command_support.h"
#include "cli/commands.h"
#include "cli/survey_text.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "host/element_file.h"
#include "host/survey_exchange.h"
#include "mqsa/survey_entry.h"

// Entering a survey without a window.

namespace vorex {

namespace {

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

}  // namespace vorex

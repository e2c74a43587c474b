#include "app/survey_editing.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "app/elements.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "mqsa/survey_entry.h"

namespace vorex {

std::shared_ptr<CTestMQSA> FindSurvey(const OpenFile& file, std::optional<int32_t> id) {
    const auto surveys = SurveysOf(file.Elements());
    std::string ids;
    for (const auto& survey : surveys) {
        if (survey->ID() == id || (!id && surveys.size() == 1)) return survey;
        ids += (ids.empty() ? "" : ", ") + PlainText(survey->ID());
    }
    if (surveys.empty())
        throw std::runtime_error(file.Name() + ": holds no survey; vorex new 1300 makes a file that does");
    throw std::runtime_error(file.Name() + ": holds the surveys " + ids + "; choose one with --id");
}

std::vector<std::string> EnterSurvey(OpenFile& file, const std::shared_ptr<CTestMQSA>& element,
                                     const SurveyExchange& entered) {
    const auto survey = element->Survey();
    std::vector<std::string> notes;
    for (const auto& [address, text] : entered.texts)
        if (std::string note = SetSurveyText(*survey, address, text); !note.empty())
            notes.push_back(std::move(note));
    for (const auto& [item, answer] : entered.answers) AnswerSurvey(*survey, item, answer);
    if (std::any_of(entered.texts.begin(), entered.texts.end(),
                    [](const auto& text) { return text.first.starts_with(survey::kGeneralInformation); }))
        CheckSurveyDates(*survey);
    if (entered.texts.empty() && entered.answers.empty()) return notes;
    const auto selected = file.File().Selected();
    survey->pUpdateMQSATestStatus();
    survey->UpdateStatus(*element, selected.get(), survey->Status() == kNotApplicable);
    RollUpGroups(file.Elements(), selected.get());
    return notes;
}

SurveyExchange ExportSurvey(const CResultMQSA& survey) {
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
            exchange.texts.emplace_back(place.address, place.saved);
    }
    constexpr std::string_view kAnswers[] = {{}, text::kPass, text::kFail, text::kNotApplicable};
    for (const auto& item : survey.Items())
        if (item->Status() > kNotTested && item->Status() <= kNotApplicable)
            exchange.answers.emplace_back(
                item->RawKey(), DefaultText(kAnswers[static_cast<std::size_t>(item->Status())], {}));
    return exchange;
}

}  // namespace vorex

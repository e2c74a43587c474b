#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "app/open_file.h"
#include "app/session.h"
#include "execution/test_mqsa.h"
#include "files/survey_exchange.h"
#include "foundation/vocabulary.h"
#include "mqsa/survey_entry.h"
#include "refusal.h"

namespace {

using namespace vorex;

/// Enters what the survey accepts; it refuses the rest with one error.
void Enter(const SurveyExchange& entered, CResultMQSA& survey) {
    for (const auto& [address, text] : entered.texts) try {
            SetSurveyText(survey, address, text);
        } catch (const SurveyEntryError&) {
        }
    for (const auto& [item, answer] : entered.answers) try {
            AnswerSurvey(survey, item, answer);
        } catch (const SurveyEntryError&) {
        }
    try {
        CheckSurveyDates(survey);
    } catch (const SurveyEntryError&) {
    }
}

}  // namespace

/// Any answers are entered or refused. Entries are judged, and survive a file and a second entry.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static const Session session;
    IAppListener listener;
    const auto entered = fuzz::ReadOrRefused("answers.json:", [&] {
        return ParseSurveyExchange({reinterpret_cast<const char*>(data), size}, "answers.json");
    });
    if (!entered) return 0;
    const auto file = OpenFile::New(kMqsaSurvey);
    CResultMQSA& survey = *dynamic_cast<CTestMQSA&>(*file->Elements().front()).Survey();
    Enter(*entered, survey);
    // Every typed place of the list accepts its own value.
    for (const SurveyPlace& place : ListSurvey(survey))
        if (place.kind == PlaceKind::kTyped) SetSurveyText(survey, place.address, place.value);
    file->Judge(listener);
    const std::string first = file->Text();
    const auto again = OpenFile::FromText(first, "written");
    again->Judge(listener);
    if (again->Text() != first) std::abort();
    return 0;
}

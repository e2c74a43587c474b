#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "execution/test_mqsa.h"
#include "files/element_file.h"
#include "files/survey_exchange.h"
#include "foundation/file_error.h"
#include "foundation/vocabulary.h"
#include "host/headless_platform.h"
#include "host/reference_host.h"
#include "library.h"
#include "mqsa/survey_entry.h"

namespace {

using namespace vorex;

std::optional<SurveyExchange> Parsed(std::string_view text) {
    try {
        return ParseSurveyExchange(text, "answers.json");
    } catch (const FileError&) {
        return std::nullopt;
    }
}

/// Takes what the survey takes; the rest is refused with its one error.
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

void Judge(CTestMQSA& element) {
    const auto survey = element.Survey();
    survey->RecalculatePages();
    survey->pUpdateMQSATestStatus();
    survey->UpdateStatus(element, nullptr, survey->Status() == kNotApplicable);
}

CTestMQSA& SurveyOf(const ElementFile& file) {
    return dynamic_cast<CTestMQSA&>(*file.Elements().front());
}

}  // namespace

/// Any answers are entered or refused. What is entered is judged, and lost neither by a file nor by entering
/// it once more.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static const bool installed = [] {
        ReferenceHostOptions options;
        options.platform = std::make_shared<HeadlessPlatform>();
        InstallLibrary(MakeReferenceHost(options));
        return true;
    }();
    (void)installed;
    const auto entered = Parsed({reinterpret_cast<const char*>(data), size});
    if (!entered) return 0;
    ElementFile file;
    const auto element = CTestMQSA::Create();
    element->Initialize(nullptr, kPlugInId, kMqsaSurvey);
    element->ID(1);
    file.Add(element);
    Enter(*entered, *element->Survey());
    // A list that names a typed place names one that takes its own value back.
    for (const SurveyPlace& place : ListSurvey(*element->Survey()))
        if (place.kind == PlaceKind::kTyped) SetSurveyText(*element->Survey(), place.address, place.value);
    Judge(*element);
    const std::string first = file.Text();
    const auto again = ElementFile::FromText(first, "written");
    Judge(SurveyOf(*again));
    if (again->Text() != first) std::abort();
    return 0;
}

#include <benchmark/benchmark.h>

#include <memory>

#include "execution/test_mqsa.h"
#include "host/reference_host.h"
#include "library.h"
#include "mqsa/survey_entry.h"

// A whole survey with every cell filled: recalculated and judged.

namespace vorex::bench {
namespace {

std::shared_ptr<CTestMQSA> FullSurvey() {
    InstallLibrary(MakeReferenceHost({}));
    auto element = CTestMQSA::Create();
    element->Initialize(nullptr, kPlugInId, kMqsaSurvey);
    const auto survey = element->Survey();
    for (const SurveyPlace& place : ListSurvey(*survey)) {
        if (place.kind == PlaceKind::kAnswer) AnswerSurvey(*survey, place.address, "Pass");
        const bool cell = place.kind == PlaceKind::kTyped && place.address.find('(') != std::string::npos;
        if (cell && !place.address.starts_with("ArtifactEvaluation"))
            SetSurveyText(*survey, place.address, "1.55");
    }
    SetSurveyText(*survey, "Collimation.SID", "650");
    return element;
}

void BM_JudgeSurvey(benchmark::State& state) {
    const auto element = FullSurvey();
    const auto survey = element->Survey();
    for ([[maybe_unused]] auto turn : state) {
        survey->RecalculatePages();
        survey->pUpdateMQSATestStatus();
        survey->UpdateStatus(*element, nullptr);
        benchmark::DoNotOptimize(survey->Status());
    }
}
BENCHMARK(BM_JudgeSurvey)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vorex::bench

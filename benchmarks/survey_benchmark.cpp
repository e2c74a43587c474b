#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "execution/test_mqsa.h"
#include "host/reference_host.h"
#include "library.h"
#include "mqsa/survey_entry.h"
#include "workbench.h"

// A whole survey with every cell filled: recalculated and judged, and printed.

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

/// A file of a survey with every answer, every cell and a comment of 1,000 characters on each page.
std::string SurveyFile(const Scratch& scratch) {
    const std::string empty = scratch.Path("new.xml");
    const std::string file = scratch.Path("survey.xml");
    std::ostringstream printed;
    Terminal terminal{printed, printed};
    RunProgram({"new", "1300", "-o", empty}, terminal);
    std::vector<std::string> arguments = {"survey", empty, "-o", file};
    const auto element = FullSurvey();
    for (const SurveyPlace& place : ListSurvey(*element->Survey())) {
        // The dates of a new survey stay those of today.
        const bool general = place.page == SurveyPage::kGeneral;
        if (place.value.empty() || general ||
            (place.kind != PlaceKind::kTyped && place.kind != PlaceKind::kAnswer))
            continue;
        arguments.emplace_back(place.kind == PlaceKind::kAnswer ? "--answer" : "--set");
        arguments.push_back(place.address + "=" + place.value);
    }
    for (int32_t page = 0; page < static_cast<int32_t>(kPageCount); ++page)
        arguments.insert(arguments.end(),
                         {"--set", "Comment(" + PlainText(page) + ")=" + std::string(1000, 'w')});
    if (RunProgram(arguments, terminal) != kExitPassed) throw std::runtime_error(printed.str());
    return file;
}

/// The whole program.
void BM_SurveyPdf(benchmark::State& state) {
    const Scratch scratch;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe");
    const std::string command = (self.parent_path() / "vorex").string() + " report " + SurveyFile(scratch) +
                                " -o " + scratch.Path("survey.pdf") + " > /dev/null";
    for ([[maybe_unused]] auto turn : state)
        if (std::system(command.c_str()) != 0) state.SkipWithError("the report failed");
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(scratch.Path("survey.pdf")));
}
BENCHMARK(BM_SurveyPdf)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace vorex::bench

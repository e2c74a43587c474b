#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <filesystem>
#include <memory>
#include <string>

#include "app/report_file.h"
#include "files/element_file.h"
#include "files/standards_library.h"
#include "reports/report_document.h"
#include "reports/report_pdf.h"
#include "workbench.h"

// Reports: the text of a large sequence, a hundred pages of tables as PDF, and the whole program.

namespace vorex::bench {
namespace {

/// A file of so many results of test 100 with ten exposures each.
std::string ResultFile(const Scratch& scratch, int32_t elements) {
    constexpr int32_t kExposures = 10;
    std::string file;
    std::string recording = RecordingHead(kZrd);
    for (int32_t id = 1; id <= elements; ++id) {
        file += Element(id, kRadioRepro, kExposures, kTenLimits);
        recording += RecordedExposures(kZrd, kExposures);
    }
    RunFile(scratch.Write("in.xml", Sequence(file)), scratch.Write("in.jsonl", recording),
            scratch.Path("out.xml"));
    return scratch.Path("out.xml");
}

void BM_TextReport(benchmark::State& state) {
    const Scratch scratch;
    const std::string path = ResultFile(scratch, static_cast<int32_t>(state.range(0)));
    const auto platform = Install();
    const auto file = ElementFile::Load(path);
    const StandardsLibrary standards({}, {}, {});
    ReportOptions options;
    options.input = path;
    options.output = scratch.Path("report.txt");
    options.limits = true;
    for (auto _ : state) WriteReport(*file, standards, options, "en");
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(options.output));
}
BENCHMARK(BM_TextReport)->Arg(1000)->ArgName("elements")->Unit(benchmark::kMillisecond);

/// A hundred full pages of five columns.
void BM_Pdf(benchmark::State& state) {
    constexpr std::size_t kPages = 100;
    double size = 0;
    for (auto _ : state) {
        const PdfRenderer& renderer = InstalledPdfRenderer();
        ReportSettings settings;
        settings.paper = *FindReportPaper("A4");
        settings.facts.title = "A hundred pages";
        ReportDocument report(settings, &renderer.Metrics());
        report.PrintHeading("Tables", {});
        for (int32_t i = 0; i < static_cast<int32_t>(kPages) * 77; ++i)
            report.PrintTable("<+560|<2440|>+1200|>+1200|>+1200|>+1200;",
                              "|Exposure " + PlainText(i) + "|" + PlainText(80 + i % 7) + ".1|KV|" +
                                  PlainText(i % 97) + ".25|Site;");
        const ReportModel model = report.Finish();
        if (model.pages.size() < kPages) state.SkipWithError("fewer pages than wanted");
        size = static_cast<double>(renderer.Render(model).size()) / static_cast<double>(model.pages.size());
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    state.counters["bytes/page"] = size;
    state.counters["peak_KiB_of_process"] = static_cast<double>(usage.ru_maxrss);
}
BENCHMARK(BM_Pdf)->Unit(benchmark::kMillisecond);

/// The whole process, from its start to its end.
void BM_ReportProgram(benchmark::State& state, const char* name) {
    const Scratch scratch;
    const std::string input = ResultFile(scratch, 1);
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe");
    const std::string command = (self.parent_path() / "vorex").string() + " report " + input + " -o " +
                                scratch.Path(name) + " --limits > /dev/null";
    for (auto _ : state)
        if (std::system(command.c_str()) != 0) state.SkipWithError("the report failed");
}
BENCHMARK_CAPTURE(BM_ReportProgram, text, "r.txt")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(BM_ReportProgram, html, "r.html")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(BM_ReportProgram, pdf, "r.pdf")->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace vorex::bench

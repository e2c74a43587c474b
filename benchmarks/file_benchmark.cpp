#include <benchmark/benchmark.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <memory>
#include <pugixml.hpp>
#include <string>

#include "files/element_file.h"
#include "load_alone.h"
#include "workbench.h"

// A large element file, loaded into the full tree and saved again, next to the XML library's own parse and
// print of the same bytes.

namespace vorex::bench {
namespace {

constexpr std::size_t kFileSize = std::size_t{50} << 20U;

/// The element of a saved result, without the file around it.
std::string SavedElement(const Scratch& scratch, int32_t testId) {
    constexpr int32_t kExposures = 10;
    const std::string input = scratch.Write("one.xml", Sequence(Element(1, testId, kExposures, kTenLimits)));
    const std::string recording =
        scratch.Write("one.jsonl", RecordingHead(kZrd) + RecordedExposures(kZrd, kExposures));
    RunFile(input, recording, scratch.Path("saved.xml"));
    std::ifstream file(scratch.Path("saved.xml"), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const std::size_t begin = text.find("  <TestElement");
    const std::size_t end = text.rfind("</VorexSequence>");
    return text.substr(begin, end - begin);
}

/// A file as the program saves it: results of ten exposures of all eight tests, again and again. Made with
/// the program itself, so the library has to be installed after the first call.
const std::string& LargeFile() {
    static const Scratch scratch;
    static const std::string path = [] {
        std::vector<std::string> elements;
        for (int32_t testId : kMeasuringTests) elements.push_back(SavedElement(scratch, testId));
        std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<VorexSequence Version=\"1\">\n";
        for (int32_t id = 1; text.size() < kFileSize; ++id) {
            std::string element = elements[static_cast<std::size_t>(id) % elements.size()];
            constexpr std::string_view kId = " ID=\"1\"";
            text += element.replace(element.find(kId), kId.size(), " ID=\"" + PlainText(id) + "\"");
        }
        return scratch.Write("large.xml", text + "</VorexSequence>\n");
    }();
    return path;
}

void SetBytes(benchmark::State& state) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(std::filesystem::file_size(LargeFile())));
}

void BM_SaveFile(benchmark::State& state) {
    const Scratch scratch;
    const std::string& large = LargeFile();
    Install();
    const auto file = ElementFile::Load(large);
    const std::string path = scratch.Path("saved.xml");
    for (auto _ : state) file->Save(path);
    SetBytes(state);
}
BENCHMARK(BM_SaveFile)->Unit(benchmark::kMillisecond);

void BM_SaveFileXmlOnly(benchmark::State& state) {
    const Scratch scratch;
    pugi::xml_document document;
    document.load_file(LargeFile().c_str());
    const std::string path = scratch.Path("saved.xml");
    for (auto _ : state) benchmark::DoNotOptimize(document.save_file(path.c_str(), "  "));
    SetBytes(state);
}
BENCHMARK(BM_SaveFileXmlOnly)->Unit(benchmark::kMillisecond);

/// A load in a fresh process, as for a user: its processor time, and its peak memory in bytes per byte of the
/// file.
void LoadAlone(benchmark::State& state, std::string_view what) {
    const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
    const std::string command = program + " " + std::string(what) + " " + LargeFile();
    double seconds = 0;
    double growth = 0;
    for (auto _ : state) {
        FILE* const answer = popen(command.c_str(), "r");
        if (answer == nullptr || std::fscanf(answer, "%lf %lf", &seconds, &growth) != 2)
            state.SkipWithError("the process that loads gave no answer");
        if (answer != nullptr && pclose(answer) != 0) state.SkipWithError("the process that loads failed");
        state.SetIterationTime(seconds);
    }
    SetBytes(state);
    state.counters["bytes_per_byte"] = growth / static_cast<double>(std::filesystem::file_size(LargeFile()));
}
void BM_LoadAlone(benchmark::State& state) {
    LoadAlone(state, kLoadElements);
}
void BM_LoadAloneXmlOnly(benchmark::State& state) {
    LoadAlone(state, kLoadXmlOnly);
}
BENCHMARK(BM_LoadAlone)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadAloneXmlOnly)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vorex::bench

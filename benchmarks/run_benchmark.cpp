#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <filesystem>
#include <string>
#include <vector>

#include "workbench.h"

// Whole runs: a long sequence inside this process, and the program as a user starts it.

extern char** environ;

namespace vorex::bench {
namespace {

void RunSequence(benchmark::State& state, Journal journal) {
    const auto elements = static_cast<int32_t>(state.range(0));
    constexpr int32_t kExposures = 10;
    const Scratch scratch;
    std::string text;
    for (int32_t id = 1; id <= elements; ++id) text += Element(id, kRadioRepro, kExposures, kTenLimits);
    const std::string input = scratch.Write("sequence.xml", Sequence(text));
    const std::string recording =
        scratch.Write("sequence.jsonl", RecordingHead(kZrd) + RecordedExposures(kZrd, elements * kExposures));
    for (auto _ : state) RunFile(input, recording, scratch.Path("out.xml"), journal);
}

/// The command "run" on a sequence: the file and the recording are read, every element is performed with its
/// guide, and the result is written.
void BM_Sequence(benchmark::State& state) {
    RunSequence(state, Journal::kNone);
}
BENCHMARK(BM_Sequence)->ArgName("elements")->Arg(1000)->Unit(benchmark::kMillisecond);

/// The same with a journal: each exposure waits until it is on the disk.
void BM_JournalledSequence(benchmark::State& state) {
    RunSequence(state, Journal::kKept);
}
BENCHMARK(BM_JournalledSequence)->ArgName("elements")->Arg(10)->UseRealTime()->Unit(benchmark::kMillisecond);

/// Starts a program without its output and waits for its end.
int Spawn(const std::vector<std::string>& words) {
    std::vector<char*> arguments;
    for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    int status = -1;
    if (posix_spawn(&child, words.front().c_str(), &actions, nullptr, arguments.data(), environ) == 0)
        waitpid(child, &status, 0);
    posix_spawn_file_actions_destroy(&actions);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void RunProcess(benchmark::State& state, Journal journal) {
    constexpr int32_t kExposures = 5;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const Scratch scratch;
    const std::string input =
        scratch.Write("example.xml", Sequence(Element(1, kRadioRepro, kExposures, kTenLimits)));
    const std::string recording =
        scratch.Write("example.jsonl", RecordingHead(kZrd) + RecordedExposures(kZrd, kExposures));
    std::vector<std::string> words = {(folder / "vorex").string(), "run", input, "--instruments",
                                      "recording:" + recording};
    if (journal == Journal::kKept) words.insert(words.end(), {"-o", scratch.Path("out.xml")});
    for (auto _ : state) {
        const int code = Spawn(words);
        if (code != 0 && code != 1) state.SkipWithError("the program did not run");
    }
}

/// "vorex run" of a test of five exposures, from the start of the process to its end; the file goes to
/// standard output.
void BM_Program(benchmark::State& state) {
    RunProcess(state, Journal::kNone);
}
BENCHMARK(BM_Program)->UseRealTime()->Unit(benchmark::kMillisecond);

/// The same with a journal: a line for each exposure, and the saved file, have to reach the disk.
void BM_JournalledProgram(benchmark::State& state) {
    RunProcess(state, Journal::kKept);
}
BENCHMARK(BM_JournalledProgram)->UseRealTime()->Unit(benchmark::kMillisecond);

/// "vorex run" of the three example units in simulated rooms, one process after the other.
void BM_SimulatedUnits(benchmark::State& state) {
    const auto folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const auto examples = folder / ".." / ".." / ".." / "examples";
    const Scratch scratch;
    for (auto _ : state)
        for (const char* unit : {"radiographic_unit.xml", "fluoroscopic_unit.xml", "mammographic_unit.xml"})
            if (Spawn({(folder / "vorex").string(), "run", (examples / unit).string(), "--instruments",
                       "simulated", "-o", scratch.Path("out.xml")}) != 0)
                state.SkipWithError("a unit did not pass");
}
BENCHMARK(BM_SimulatedUnits)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vorex::bench

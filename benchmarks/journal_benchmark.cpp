#include <benchmark/benchmark.h>

#include <string>

#include "files/run_journal.h"
#include "workbench.h"

// What the journal costs: an append returns when the line has reached the disk. Wall-clock time is measured,
// because the processor waits; it depends on the disk that holds the folder for temporary files (TMPDIR).

namespace vorex::bench {
namespace {

/// An exposure of test 100 with its row and the notes of its instruments, and a waveform of so many samples.
JournalRecord Record(int64_t samples) {
    JournalRecord record{3, 1, 1, 0, {}, std::string(22, '1'), "2026-01-15T09:00:00Z", 1, 1, 4, {}};
    for (int column = 0; column < 22; ++column) record.row += "80.61,";
    record.notes = {
        {"ExposureDone", 4, {"1"}},
        {"VTI_DataReady", 4, {"80.6", "81.6", "80.1", "182.4", "3641", "50.1", "0", "0", "0", "3.2"}}};
    std::string waveform;
    for (int64_t sample = 0; sample < samples; ++sample) waveform += "80.25,";
    if (samples > 0) record.notes.push_back({"GetWaveform", 1, {waveform}});
    return record;
}

void BM_JournalAppend(benchmark::State& state) {
    const Scratch scratch;
    const auto journal = RunJournal::Create(scratch.Path("out.xml"), JournalHead());
    const JournalRecord record = Record(state.range(0));
    for (auto _ : state) journal->Append(record);
    journal->Remove();
}
BENCHMARK(BM_JournalAppend)
    ->ArgName("samples")
    ->Arg(0)
    ->Arg(1000)
    ->UseRealTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vorex::bench

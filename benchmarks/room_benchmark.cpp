#include <benchmark/benchmark.h>

#include <optional>
#include <stdexcept>

#include "instruments/simulated_instruments.h"
#include "workbench.h"

// An exposure in the simulated room: made, measured by two instruments, both waveforms fetched.

namespace vorex::bench {
namespace {

void BM_RoomExposure(benchmark::State& state) {
    constexpr float kExposureMs = 100;
    constexpr float kCurrentMs = 1000;
    constexpr int32_t kPoints = 1000;
    const auto platform = Install();
    Room room;
    room.instruments.pollsBeforeExposure = 0;
    room.instruments.batteryPerExposure = 0;
    Technique technique;
    technique.detectorKind = kZrdAndMas;
    technique.kv = 80;
    technique.ma = 200;
    technique.mas = 20;
    SimulatedInstruments instruments(room, 1, [&] {
        ++technique.exposure;
        return std::optional(technique);
    });
    const auto service = instruments.CreateService();
    std::size_t bytes = 0;
    service->events.vti_CheckExposureWaveform.Connect([&](uint8_t type) {
        bytes +=
            service->GetWaveform(0, type == kMaWaveform ? kCurrentMs : kExposureMs, kPoints, type).size();
    });
    service->Mode("RADIO");
    service->Armed(true);
    service->BeginRun();
    for (auto _ : state) {
        while (!service->ExposureDone()) service->Poll(0, 0);
        service->Poll(0, 0);
    }
    if (bytes == 0) throw std::runtime_error("no waveform was fetched");
}
BENCHMARK(BM_RoomExposure)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vorex::bench

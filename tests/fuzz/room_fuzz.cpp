#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <utility>

#include "instruments/room.h"
#include "instruments/simulated_instruments.h"
#include "refusal.h"

namespace {

/// Every unit exposes once in turn, with its waveforms.
void Drive(vorex::Room room) {
    constexpr int kPolls = 60;
    vorex::Technique technique;
    technique.ma = 100;
    technique.mas = 10;
    technique.detectorKind = vorex::kZrdAndMas;
    vorex::SimulatedInstruments instruments(std::move(room), 1, [&]() -> std::optional<vorex::Technique> {
        technique.unit = static_cast<vorex::UnitKind>(technique.exposure++ % 3);
        technique.kv = technique.unit == vorex::UnitKind::kMammographic ? 28 : 80;
        return technique;
    });
    const auto service = instruments.CreateService();
    service->events.vti_CheckExposureWaveform.Connect(
        [&](uint8_t type) { service->GetWaveform(0, 100, 100, type); });
    service->Armed(true);
    service->BeginRun();
    for (int poll = 0; poll < kPolls; ++poll) {
        service->ExposureDone();
        service->Poll(0, 0);
    }
    if (service->BatteryLevel() > 100) std::abort();
}

}  // namespace

/// A room is refused with one error, or the instruments run in it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    auto room = vorex::fuzz::ReadOrRefused("room.json:", [&] {
        return vorex::ParseRoom({reinterpret_cast<const char*>(data), size}, "room.json");
    });
    if (room) Drive(std::move(*room));
    return 0;
}

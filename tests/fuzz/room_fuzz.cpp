#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <utility>

#include "foundation/file_error.h"
#include "instruments/room.h"
#include "instruments/simulated_instruments.h"

namespace {

std::optional<vorex::Room> Parsed(std::string_view text) {
    try {
        return vorex::ParseRoom(text, "room.json");
    } catch (const vorex::FileError& error) {
        // A message goes to a terminal: whatever is in the file, it is plain text and names a place.
        const std::string_view message = error.what();
        if (!message.starts_with("room.json:")) std::abort();
        for (const char c : message)
            if (c < ' ' || c > '~') std::abort();
        return std::nullopt;
    }
}

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
    std::optional<vorex::Room> room = Parsed({reinterpret_cast<const char*>(data), size});
    if (room) Drive(std::move(*room));
    return 0;
}

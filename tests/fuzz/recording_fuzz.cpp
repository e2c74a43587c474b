#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "instruments/recorded_instruments.h"
#include "instruments/recording.h"
#include "refusal.h"

namespace {

using vorex::IDetectorService;

/// The operations that only a recording may make fail.
template <typename Call>
void Allowed(Call&& call) {
    try {
        call();
    } catch (const std::runtime_error& error) {
        if (!std::string_view(error.what()).ends_with(" failed")) std::abort();
    }
}

void FetchWaveforms(IDetectorService& service, uint8_t type) {
    service.Armed(false);
    service.GetWaveform(0, 1000, 1000, type);
    service.WaveformResolution();
    service.Armed(true);
}

void Drive(vorex::RecordedInstruments& instruments) {
    constexpr int kPolls = 200;
    constexpr int kPollsOfARun = 40;
    const std::shared_ptr<IDetectorService> service = instruments.CreateService();
    const std::shared_ptr<IDetectorService> watch = instruments.CreateService();
    const std::shared_ptr<vorex::IDetectorLink> link = instruments.CreateLink();
    service->events.vti_CheckExposureWaveform.Connect([&](uint8_t type) { FetchWaveforms(*service, type); });
    service->events.VTI_DataReady.Connect([&](const vorex::ZrdReading&) { service->Poll(0, 0); });
    std::vector<std::string> names;
    for (int poll = 0; poll < kPolls; ++poll) {
        if (poll % kPollsOfARun == 0) {
            link->OpenLink();
            Allowed([&] { service->Armed(true); });
            Allowed([&] { service->BeginRun(); });
        }
        Allowed([&] { service->ExposureDone(); });
        Allowed([&] { service->Poll(0, 0); });
        Allowed([&] { watch->Poll(0, 0); });
        Allowed([&] { watch->GetTargetFilters(names, watch->TargetFilterCount()); });
        Allowed([&] { watch->InstrumentName(poll - 1); });
    }
}

}  // namespace

/// A recording is refused with one error, or runs: a call of a service fails only if the recording says so.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    auto recording = vorex::fuzz::ReadOrRefused("room.jsonl:", [&] {
        return vorex::ParseRecording({reinterpret_cast<const char*>(data), size}, "room.jsonl");
    });
    if (!recording) return 0;
    vorex::RecordedInstruments instruments(std::move(*recording));
    Drive(instruments);
    return 0;
}

#include "app/instrument_choice.h"

#include <charconv>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "instruments/recorded_instruments.h"
#include "instruments/recording.h"
#include "instruments/room.h"
#include "instruments/simulated_instruments.h"

namespace vorex {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kRecordingPrefix = "recording:";
constexpr std::string_view kSimulated = "simulated";
constexpr std::string_view kSimulatedPrefix = "simulated:";

uint64_t ReadSeed(std::string_view text) {
    uint64_t seed = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seed);
    if (error != std::errc() || end != text.data() + text.size())
        throw std::runtime_error(std::string(kSimulatedPrefix) + std::string(text) +
                                 " has no seed; expected a whole number from 0, such as simulated:7");
    return seed;
}

}  // namespace

InstrumentChoice ReadInstruments(std::string_view text) {
    if (text.empty()) return std::monostate();
    if (text == kSimulated) return SimulatedRoom();
    if (text.starts_with(kSimulatedPrefix))
        return SimulatedRoom{ReadSeed(text.substr(kSimulatedPrefix.size())), {}};
    if (!text.starts_with(kRecordingPrefix))
        throw std::runtime_error(std::string(text) +
                                 " is not known; expected simulated, simulated:SEED or recording:FILE");
    const fs::path file = text.substr(kRecordingPrefix.size());
    if (file.empty()) throw std::runtime_error("recording: names no file; expected recording:FILE");
    return RecordedBench{file};
}

std::string InstrumentText(const InstrumentChoice& choice) {
    if (const auto* room = std::get_if<SimulatedRoom>(&choice))
        return std::string(kSimulatedPrefix) + std::to_string(room->seed);
    if (const auto* bench = std::get_if<RecordedBench>(&choice))
        return std::string(kRecordingPrefix) + fs::absolute(bench->file).string();
    return {};
}

std::unique_ptr<IInstruments> MakeInstruments(const InstrumentChoice& choice, Console console) {
    if (const auto* simulated = std::get_if<SimulatedRoom>(&choice)) {
        Room room = simulated->room.empty() ? Room() : LoadRoom(simulated->room.string());
        return std::make_unique<SimulatedInstruments>(std::move(room), simulated->seed, std::move(console));
    }
    if (const auto* bench = std::get_if<RecordedBench>(&choice))
        return std::make_unique<RecordedInstruments>(LoadRecording(bench->file.string()));
    return std::make_unique<RecordedInstruments>(Recording());
}

}  // namespace vorex

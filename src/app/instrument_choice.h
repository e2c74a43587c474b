#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "instruments/instruments.h"
#include "instruments/technique.h"

namespace vorex {

/// A simulated X-ray room.
struct SimulatedRoom {
    uint64_t seed = 1;
    std::filesystem::path room;  ///< empty: a good one
    bool operator==(const SimulatedRoom&) const = default;
};

/// What instruments once answered.
struct RecordedBench {
    std::filesystem::path file;
    bool operator==(const RecordedBench&) const = default;
};

/// The instruments of a run; none suffice for a file that measures nothing.
using InstrumentChoice = std::variant<std::monostate, SimulatedRoom, RecordedBench>;

/// Reads "simulated", "simulated:SEED", "recording:FILE" or "". Raises std::runtime_error.
InstrumentChoice ReadInstruments(std::string_view text);
/// The same text, with a name of the file that holds in every folder.
std::string InstrumentText(const InstrumentChoice& choice);

/// Raises FileError for a room or recording that cannot be read. Simulated instruments ask the console what
/// is set for an exposure.
std::unique_ptr<IInstruments> MakeInstruments(const InstrumentChoice& choice, Console console);

}  // namespace vorex

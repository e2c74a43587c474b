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
    std::filesystem::path room;  ///< empty: a good room
    bool operator==(const SimulatedRoom&) const = default;
};

/// A recording of instruments.
struct RecordedBench {
    std::filesystem::path file;
    bool operator==(const RecordedBench&) const = default;
};

/// The instruments of a run; a file that measures nothing needs none.
using InstrumentChoice = std::variant<std::monostate, SimulatedRoom, RecordedBench>;

/// Reads "simulated", "simulated:SEED", "recording:FILE" or "". Raises std::runtime_error.
InstrumentChoice ReadInstruments(std::string_view text);
/// The same text, with an absolute file name.
std::string InstrumentText(const InstrumentChoice& choice);

/// Raises FileError for a room or recording that cannot be read. Simulated instruments get the settings of an
/// exposure from the console.
std::unique_ptr<IInstruments> MakeInstruments(const InstrumentChoice& choice, Console console);

}  // namespace vorex

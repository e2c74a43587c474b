#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/detector_service.h"
#include "foundation/vocabulary.h"
#include "instruments/bench.h"

/// A recording: the answers of instruments, one JSON object per line. It is read completely and strictly
/// before a run, so that a mistake in it causes a message and never a measured value.
///
/// The first line describes the instruments. "recording" (the version, 1) and "kind" (1 to 5) are required;
/// any other missing member takes the initial value of its field below. With a "syncStatus" other than 0 the
/// dosimeter refuses its settings.
///
/// Each further line is one event: "quiet", "exposure", "stopButton", "link", "sensorReset", "zeroing",
/// "wakeUp" or "throws". An exposure has at least one of "detector", "dosimeter" and "mas". Measured values
/// are texts, as instruments send them; they may have a decimal comma. Blank lines count as lines and have no
/// effect.
namespace vorex {

/// Limit far above any test, so that a file that is no recording cannot fill the memory.
inline constexpr std::size_t kMaxRecordingBytes = std::size_t{256} << 20;
inline constexpr int32_t kMaxRecordingLines = 1'000'000;

struct RecordedWaveform {
    uint8_t type = kKvWaveform;
    float resolution = 0;  ///< points per ms
    std::string samples;   ///< the answer of `GetWaveform`; empty for a failed transfer
};

struct RecordedExposure {
    std::optional<ZrdReading> detector;
    std::optional<PelomarkReading> dosimeter;
    std::optional<MasReading> mas;
    std::vector<RecordedWaveform> waveforms;  ///< at most one of each type
};

enum class RecordedEvent : uint8_t {
    kQuiet,
    kExposure,
    kStopButton,
    kLink,
    kSensorReset,
    kZeroing,
    kWakeUp,
    kThrows
};

/// One event of the recording.
struct RecordedLine {
    int32_t line = 0;  ///< in the file, from 1
    RecordedEvent event = RecordedEvent::kQuiet;
    /// Quiet: the number of polls. Exposure: its index. Throws: the index of the operation. Others: 1 true.
    int32_t number = 0;
};

struct Recording : InstrumentIdentity {
    std::string file;  ///< the name as given, for messages

    std::vector<RecordedExposure> exposures;
    std::vector<RecordedLine> lines;
};

/// Reads a recording file. Throws FileError and nothing else, also when the file cannot be read.
Recording LoadRecording(const std::string& path);
/// Reads a recording from memory; the file name is for messages. Throws FileError and nothing else.
Recording ParseRecording(std::string_view text, std::string_view file);

}  // namespace vorex

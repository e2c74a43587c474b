#include "instruments/recording.h"

#include <utility>

#include "files/json_reader.h"
#include "instruments/operation.h"

namespace vorex {

namespace {

constexpr int32_t kVersion = 1;
constexpr int32_t kMaxPolls = 1'000'000'000;
constexpr std::string_view kOneEvent = "one event in a line";
constexpr std::string_view kFirstLine =
    R"(a first line such as {"recording":1,"kind":1,"serialNumbers":"4711"})";

// --------------------------------------------------------------------------------------- first line

// clang-format off
constexpr MemberRow<Recording> kIonChamberMembers[] = {
    {"name", [](In in, Name name, const Json& value, Recording& to) {
         to.ionChamberName = in.Text(name, value);
     }},
    {"factor", [](In in, Name name, const Json& value, Recording& to) {
         to.ionChamberFactor = in.Text(name, value);
     }},
    {"constant", [](In in, Name name, const Json& value, Recording& to) {
         to.ionChamberConstant = in.Text(name, value);
     }},
};

constexpr MemberRow<Recording> kFirstLineMembers[] = {
    {"recording", [](In in, Name name, const Json& value, Recording&) {
         if (value != kVersion) in.Fail(Named(name, value), "version " + std::to_string(kVersion));
     }},
    {"kind", [](In in, Name name, const Json& value, Recording& to) {
         to.kind = in.Whole(name, value, kZrd, kPelomarkAndMas);
     }},
    {"serialNumbers", [](In in, Name name, const Json& value, Recording& to) {
         to.serialNumbers = in.Text(name, value);
     }},
    {"calibrationDates", [](In in, Name name, const Json& value, Recording& to) {
         to.calibrationDates = in.Text(name, value);
     }},
    {"instrumentNames", [](In in, Name name, const Json& value, Recording& to) {
         to.instrumentNames = in.Texts(name, value);
     }},
    {"battery", [](In in, Name name, const Json& value, Recording& to) {
         constexpr int32_t kFull = 100;
         to.battery = static_cast<uint8_t>(in.Whole(name, value, 0, kFull));
     }},
    {"charging", [](In in, Name name, const Json& value, Recording& to) { to.charging = in.Flag(name, value); }},
    {"targetFilters", [](In in, Name name, const Json& value, Recording& to) {
         to.targetFilters = in.Texts(name, value);
     }},
    {"defaultTargetFilter", [](In in, Name name, const Json& value, Recording& to) {
         to.defaultTargetFilter = in.Text(name, value);
     }},
    {"ionChamber", [](In in, Name name, const Json& value, Recording& to) {
         in.Members(name, value, kIonChamberMembers, to);
     }},
    {"firmware", [](In in, Name name, const Json& value, Recording& to) {
         to.firmware = in.Whole(name, value, 0, INT32_MAX);
     }},
    {"syncStatus", [](In in, Name name, const Json& value, Recording& to) {
         to.syncStatus = in.Whole(name, value, INT32_MIN, INT32_MAX);
     }},
};
// clang-format on

void ReadFirstLine(const JsonReader& in, std::string_view text, Recording& recording) {
    const Json line = in.Parse(text, kFirstLine, kOneEvent);
    for (const char* required : {"recording", "kind"})
        if (!line.is_object() || !line.contains(required)) in.Fail(ShownText(text), kFirstLine);
    in.Members("the first line", line, kFirstLineMembers, recording);
    if (!line.contains("defaultTargetFilter") && !recording.targetFilters.empty())
        recording.defaultTargetFilter = recording.targetFilters.front();
}

// ------------------------------------------------------------------------------------------- events

template <typename Reading>
struct FieldRow {
    std::string_view name;
    std::string Reading::*field;
};

constexpr FieldRow<ZrdReading> kDetectorFields[] = {
    {"kvpAvg", &ZrdReading::kvpAvg},
    {"kvpMax", &ZrdReading::kvpMax},
    {"kvPpv", &ZrdReading::kvPpv},
    {"exposure", &ZrdReading::exposure},
    {"exposureRate", &ZrdReading::exposureRate},
    {"exposureTime", &ZrdReading::exposureTime},
    {"exposurePulses", &ZrdReading::exposurePulses},
    {"pulseRate", &ZrdReading::pulseRate},
    {"pulseWidth", &ZrdReading::pulseWidth},
    {"hvl", &ZrdReading::hvl},
};
constexpr FieldRow<PelomarkReading> kDosimeterFields[] = {
    {"temperature", &PelomarkReading::temperature},
    {"pressure", &PelomarkReading::pressure},
    {"adcf", &PelomarkReading::adcf},
    {"leakCurrent", &PelomarkReading::leakCurrent},
    {"dose", &PelomarkReading::dose},
    {"doseRate", &PelomarkReading::doseRate},
    {"biasVoltage", &PelomarkReading::biasVoltage},
};
constexpr FieldRow<MasReading> kMasFields[] = {
    {"ma", &MasReading::ma},
    {"mas", &MasReading::mas},
    {"masPerPulse", &MasReading::masPerPulse},
    {"dosePerMas", &MasReading::dosePerMas},
};

template <typename Reading, std::size_t Count>
Reading ReadFields(In in, Name name, const Json& value, const FieldRow<Reading> (&fields)[Count]) {
    if (in.Array(name, value).size() != Count)
        in.Fail('"' + std::string(name) + "\" with " + std::to_string(value.size()) + " values",
                std::to_string(Count) + ": " + ListOfNames(fields));
    Reading reading;
    for (std::size_t i = 0; i < Count; ++i)
        reading.*fields[i].field = in.Text(std::string(name) + " " + std::string(fields[i].name), value[i]);
    return reading;
}

// clang-format off
constexpr MemberRow<RecordedWaveform> kWaveformMembers[] = {
    {"type", [](In in, Name name, const Json& value, RecordedWaveform& to) {
         if (value != kKvWaveform && value != kMaWaveform) in.Fail(Named(name, value), "1 (kV) or 3 (mA)");
         to.type = value.get<uint8_t>();
     }},
    {"resolution", [](In in, Name name, const Json& value, RecordedWaveform& to) {
         constexpr double kLowest = 0.001;
         constexpr double kHighest = 1'000'000;
         to.resolution = static_cast<float>(in.Number(name, value, kLowest, kHighest));
     }},
    {"samples", [](In in, Name name, const Json& value, RecordedWaveform& to) {
         to.samples = in.Text(name, value);
     }},
};
// clang-format on

void ReadWaveforms(In in, Name name, const Json& value, RecordedExposure& exposure) {
    for (const Json& item : in.Array(name, value)) {
        RecordedWaveform waveform;
        in.Members("a waveform", item, kWaveformMembers, waveform);
        if (item.size() != std::size(kWaveformMembers))
            in.Fail("a waveform " + Shown(item), "an object with " + ListOfNames(kWaveformMembers));
        for (const RecordedWaveform& earlier : exposure.waveforms)
            if (earlier.type == waveform.type)
                in.Fail("two waveforms of type " + std::to_string(waveform.type), "one of each type");
        exposure.waveforms.push_back(std::move(waveform));
    }
}

// clang-format off
constexpr MemberRow<RecordedExposure> kExposureMembers[] = {
    {"detector", [](In in, Name name, const Json& value, RecordedExposure& to) {
         to.detector = ReadFields(in, name, value, kDetectorFields);
     }},
    {"dosimeter", [](In in, Name name, const Json& value, RecordedExposure& to) {
         to.dosimeter = ReadFields(in, name, value, kDosimeterFields);
     }},
    {"mas", [](In in, Name name, const Json& value, RecordedExposure& to) {
         to.mas = ReadFields(in, name, value, kMasFields);
     }},
    {"waveforms", ReadWaveforms},
};
// clang-format on

/// A reader of an event returns the event's number and stores in the recording what does not fit into a
/// number.
int32_t ReadQuiet(In in, Name name, const Json& value, Recording&) {
    return in.Whole(name, value, 0, kMaxPolls);
}
int32_t ReadFlag(In in, Name name, const Json& value, Recording&) {
    return in.Flag(name, value) ? 1 : 0;
}

int32_t ReadExposure(In in, Name name, const Json& value, Recording& recording) {
    RecordedExposure exposure;
    in.Members(name, value, kExposureMembers, exposure);
    if (!exposure.detector && !exposure.dosimeter && !exposure.mas)
        in.Fail("an exposure without a reading", R"("detector", "dosimeter" or "mas" in it)");
    recording.exposures.push_back(std::move(exposure));
    return static_cast<int32_t>(recording.exposures.size() - 1);
}

int32_t ReadThrows(In in, Name name, const Json& value, Recording&) {
    const std::optional<Operation> operation = FindOperation(in.Text(name, value));
    if (!operation) {
        std::string known;
        for (std::string_view operationName : kOperationNames)
            known += (known.empty() ? "" : ", ") + std::string(operationName);
        in.Fail("no operation " + Shown(value), "one of " + known);
    }
    return static_cast<int32_t>(IndexOf(*operation));
}

struct EventRow {
    std::string_view name;
    RecordedEvent event;
    int32_t (*read)(In in, Name name, const Json& value, Recording& recording);
};

constexpr EventRow kEvents[] = {
    {"quiet", RecordedEvent::kQuiet, ReadQuiet},
    {"exposure", RecordedEvent::kExposure, ReadExposure},
    {"stopButton", RecordedEvent::kStopButton, ReadFlag},
    {"link", RecordedEvent::kLink, ReadFlag},
    {"sensorReset", RecordedEvent::kSensorReset, ReadFlag},
    {"zeroing", RecordedEvent::kZeroing, ReadFlag},
    {"wakeUp", RecordedEvent::kWakeUp, ReadFlag},
    {"throws", RecordedEvent::kThrows, ReadThrows},
};

void ReadEventLine(In in, std::string_view text, Recording& recording) {
    static const std::string expected = "an object with one of " + ListOfNames(kEvents);
    const Json line = in.Parse(text, expected, kOneEvent);
    if (!line.is_object() || line.size() != 1) {
        const bool several = line.is_object() && line.size() > 1;
        in.Fail(several ? std::to_string(line.size()) + " events in a line" : Shown(line),
                several ? "one event in a line" : expected);
    }
    const auto happening = line.begin();
    const EventRow* row = FindNamed(kEvents, happening.key());
    if (!row) in.Fail("unknown event " + Shown(happening.key()), "one of " + ListOfNames(kEvents));
    const int32_t number = row->read(in, row->name, happening.value(), recording);
    recording.lines.push_back({in.Line(), row->event, number});
}

// --------------------------------------------------------------------------------------------- lines

/// Removes the next line and its line break from the text.
std::string_view TakeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

}  // namespace

Recording ParseRecording(std::string_view text, std::string_view file) {
    Recording recording;
    recording.file = file;
    bool first = true;
    for (int32_t number = 1; !text.empty(); ++number) {
        if (number > kMaxRecordingLines)
            throw InstrumentFileError(file, number, "more lines than " + std::to_string(kMaxRecordingLines),
                                      "a recording of at most that");
        const std::string_view line = TakeLine(text);
        if (line.find_first_not_of(" \t\r") == std::string_view::npos) continue;
        const JsonReader reader(file, number);
        if (std::exchange(first, false)) {
            ReadFirstLine(reader, line, recording);
        } else {
            ReadEventLine(reader, line, recording);
        }
    }
    if (first) throw InstrumentFileError(file, 0, "an empty file", kFirstLine);
    return recording;
}

Recording LoadRecording(const std::string& path) {
    return ParseRecording(ReadWholeFile(path, "a recording", kMaxRecordingBytes), path);
}

}  // namespace vorex

#include "instruments/recording.h"

#include <utility>

#include "files/json_reader.h"
#include "instruments/operation.h"

namespace vorex {

namespace {

constexpr int32_t kVersion = 1;
constexpr int32_t kMaxPolls = 1'000'000'000;
constexpr std::string_view kFirstLine =
    R"(a first line such as {"recording":1,"kind":1,"serialNumbers":"4711"})";

// --------------------------------------------------------------------------------------- first line

// clang-format off
constexpr MemberRow<Recording> kIonChamberMembers[] = {
    {"name", [](In in, const JsonValue& value, Recording& to) {
         to.ionChamberName = in.Text(value);
     }},
    {"factor", [](In in, const JsonValue& value, Recording& to) {
         to.ionChamberFactor = in.Text(value);
     }},
    {"constant", [](In in, const JsonValue& value, Recording& to) {
         to.ionChamberConstant = in.Text(value);
     }},
};

constexpr MemberRow<Recording> kFirstLineMembers[] = {
    {"recording", [](In in, const JsonValue& value, Recording&) {
         in.Version(value, kVersion);
     }},
    {"kind", [](In in, const JsonValue& value, Recording& to) {
         to.kind = in.Whole(value, kZrd, kPelomarkAndMas);
     }},
    {"serialNumbers", [](In in, const JsonValue& value, Recording& to) {
         to.serialNumbers = in.Text(value);
     }},
    {"calibrationDates", [](In in, const JsonValue& value, Recording& to) {
         to.calibrationDates = in.Text(value);
     }},
    {"instrumentNames", [](In in, const JsonValue& value, Recording& to) {
         to.instrumentNames = in.Texts(value);
     }},
    {"battery", [](In in, const JsonValue& value, Recording& to) {
         constexpr int32_t kFull = 100;
         to.battery = static_cast<uint8_t>(in.Whole(value, 0, kFull));
     }},
    {"charging", [](In in, const JsonValue& value, Recording& to) { to.charging = in.Flag(value); }},
    {"targetFilters", [](In in, const JsonValue& value, Recording& to) {
         to.targetFilters = in.Texts(value);
     }},
    {"defaultTargetFilter", [](In in, const JsonValue& value, Recording& to) {
         to.defaultTargetFilter = in.Text(value);
     }},
    {"ionChamber", [](In in, const JsonValue& value, Recording& to) {
         in.Members(value, value.name, kIonChamberMembers, to);
     }},
    {"firmware", [](In in, const JsonValue& value, Recording& to) {
         to.firmware = in.Whole(value, 0, INT32_MAX);
     }},
    {"syncStatus", [](In in, const JsonValue& value, Recording& to) {
         to.syncStatus = in.Whole(value, INT32_MIN, INT32_MAX);
     }},
};
// clang-format on

void ReadFirstLine(const JsonReader& in, std::string_view text, Recording& recording) {
    const JsonValue line = in.Parse(text, kFirstLine);
    for (const char* required : {"recording", "kind"})
        if (!line.Find(required)) in.Fail("found " + ShownText(text), kFirstLine);
    in.Members(line, "the first line", kFirstLineMembers, recording);
    if (!line.Find("defaultTargetFilter") && !recording.targetFilters.empty())
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
Reading ReadFields(In in, const JsonValue& value, const FieldRow<Reading> (&fields)[Count]) {
    if (in.List(value).size() != Count)
        in.Fail(value, "found \"" + value.name + "\" with " + std::to_string(value.items.size()) + " values",
                std::to_string(Count) + ": " + ListOfNames(fields));
    Reading reading;
    for (std::size_t i = 0; i < Count; ++i) {
        JsonValue field = value.items[i];
        field.name += ' ' + std::string(fields[i].name);
        reading.*fields[i].field = in.Text(field);
    }
    return reading;
}

// clang-format off
constexpr MemberRow<RecordedWaveform> kWaveformMembers[] = {
    {"type", [](In in, const JsonValue& value, RecordedWaveform& to) {
         const int32_t type = in.Whole(value, 0, UINT8_MAX);
         if (type != kKvWaveform && type != kMaWaveform) in.Refuse(value, "1 (kV) or 3 (mA)");
         to.type = static_cast<uint8_t>(type);
     }, kRequired},
    {"resolution", [](In in, const JsonValue& value, RecordedWaveform& to) {
         constexpr double kLowest = 0.001;
         constexpr double kHighest = 1'000'000;
         to.resolution = static_cast<float>(in.Number(value, kLowest, kHighest));
     }, kRequired},
    {"samples", [](In in, const JsonValue& value, RecordedWaveform& to) {
         to.samples = in.Text(value);
     }, kRequired},
};
// clang-format on

void ReadWaveforms(In in, const JsonValue& value, RecordedExposure& exposure) {
    for (const JsonValue& item : in.List(value)) {
        RecordedWaveform waveform;
        in.Members(item, "a waveform", kWaveformMembers, waveform);
        for (const RecordedWaveform& earlier : exposure.waveforms)
            if (earlier.type == waveform.type)
                in.Fail(item, "found two waveforms of type " + std::to_string(waveform.type),
                        "one of each type");
        exposure.waveforms.push_back(std::move(waveform));
    }
}

// clang-format off
constexpr MemberRow<RecordedExposure> kExposureMembers[] = {
    {"detector", [](In in, const JsonValue& value, RecordedExposure& to) {
         to.detector = ReadFields(in, value, kDetectorFields);
     }},
    {"dosimeter", [](In in, const JsonValue& value, RecordedExposure& to) {
         to.dosimeter = ReadFields(in, value, kDosimeterFields);
     }},
    {"mas", [](In in, const JsonValue& value, RecordedExposure& to) {
         to.mas = ReadFields(in, value, kMasFields);
     }},
    {"waveforms", ReadWaveforms},
};
// clang-format on

/// A reader of an event returns the event's number and stores in the recording what does not fit into a
/// number.
int32_t ReadQuiet(In in, const JsonValue& value, Recording&) {
    return in.Whole(value, 0, kMaxPolls);
}
int32_t ReadFlag(In in, const JsonValue& value, Recording&) {
    return in.Flag(value) ? 1 : 0;
}

int32_t ReadExposure(In in, const JsonValue& value, Recording& recording) {
    RecordedExposure exposure;
    in.Members(value, value.name, kExposureMembers, exposure);
    if (!exposure.detector && !exposure.dosimeter && !exposure.mas)
        in.Fail(value, "found an exposure without a reading", R"("detector", "dosimeter" or "mas" in it)");
    recording.exposures.push_back(std::move(exposure));
    return static_cast<int32_t>(recording.exposures.size() - 1);
}

int32_t ReadThrows(In in, const JsonValue& value, Recording&) {
    const std::optional<Operation> operation = FindOperation(in.Text(value));
    if (!operation) {
        std::string known;
        for (std::string_view operationName : kOperationNames)
            known += (known.empty() ? "" : ", ") + std::string(operationName);
        in.Fail(value, "found no operation " + Shown(value), "one of " + known);
    }
    return static_cast<int32_t>(IndexOf(*operation));
}

struct EventRow {
    std::string_view name;
    RecordedEvent event;
    int32_t (*read)(In in, const JsonValue& value, Recording& recording);
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
    const JsonValue line = in.Parse(text, expected);
    const std::vector<JsonValue>& events = in.Object(line, expected);
    if (events.empty()) in.Refuse(line, expected);
    if (events.size() > 1)
        in.Fail("found " + std::to_string(events.size()) + " events in a line", "one event in a line");
    const JsonValue& event = events.front();
    const EventRow* row = FindNamed(kEvents, event.name);
    if (!row) in.Fail("found unknown event " + ShownText(event.name), "one of " + ListOfNames(kEvents));
    const int32_t number = row->read(in, event, recording);
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
            JsonReader(file, number)
                .Fail("found more lines than " + std::to_string(kMaxRecordingLines),
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
    if (first) JsonReader(file).Fail("found an empty file", kFirstLine);
    return recording;
}

Recording LoadRecording(const std::string& path) {
    return ParseRecording(ReadWholeFile(path, "a recording", kMaxRecordingBytes), path);
}

}  // namespace vorex

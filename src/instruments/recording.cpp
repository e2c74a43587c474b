#include "instruments/recording.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <set>
#include <span>
#include <system_error>
#include <utility>

#include <nlohmann/json.hpp>

#include "instruments/operation.h"

namespace vorex {

namespace {

using Json = nlohmann::json;

constexpr int32_t kVersion = 1;
constexpr int32_t kMaxPolls = 1'000'000'000;
constexpr std::string_view kFirstLine =
    R"(a first line such as {"recording":1,"kind":1,"serialNumbers":"4711"})";

// ------------------------------------------------------------------------------------------ messages

/// What stands in the file, for a message: ASCII only and short, whatever it is.
std::string Shown(const Json& value) {
    constexpr std::size_t kMost = 60;
    std::string text = value.dump(-1, ' ', true, Json::error_handler_t::replace);
    if (text.size() > kMost) text = text.substr(0, kMost) + "...";
    return text;
}

std::string ShownText(std::string_view text) {
    constexpr std::size_t kMost = 40;
    const std::string_view suffix = text.size() > kMost ? "..." : "";
    return Shown(Json(std::string(text.substr(0, kMost)).append(suffix)));
}

std::string Named(std::string_view name, const Json& value) {
    return '"' + std::string(name) + "\":" + Shown(value);
}

/// The names of table rows as a list for a person.
template <typename Rows>
std::string ListOfNames(const Rows& rows) {
    std::string text;
    for (const auto& row : rows) text += (text.empty() ? "\"" : ", \"") + std::string(row.name) + '"';
    return text;
}

/// The row of a name, or null.
template <typename Rows>
auto FindNamed(const Rows& rows, std::string_view name) {
    const auto found =
        std::find_if(std::begin(rows), std::end(rows), [&](const auto& row) { return row.name == name; });
    return found == std::end(rows) ? nullptr : found;
}

/// A line that is being read: knows where it stands, and takes values out of JSON.
class LineReader {
  public:
    LineReader(std::string_view file, int32_t line) : mFile(file), mLine(line) {}

    int32_t Line() const { return mLine; }

    [[noreturn]] void Fail(std::string_view found, std::string_view expected) const {
        throw RecordingError(mFile, mLine, found, expected);
    }

    bool Flag(std::string_view name, const Json& value) const {
        if (!value.is_boolean()) Fail(Named(name, value), "true or false");
        return value.get<bool>();
    }

    int32_t Whole(std::string_view name, const Json& value, int32_t lowest, int32_t highest) const {
        // Above the range of a signed number the library holds it as an unsigned one.
        const bool fits = value.is_number_integer() &&
                          !(value.is_number_unsigned() && value.get<uint64_t>() > INT32_MAX) &&
                          value.get<int64_t>() >= lowest && value.get<int64_t>() <= highest;
        if (!fits)
            Fail(Named(name, value),
                 "a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest));
        return value.get<int32_t>();
    }

    double Number(std::string_view name, const Json& value, double lowest, double highest) const {
        const bool fits =
            value.is_number() && value.get<double>() >= lowest && value.get<double>() <= highest;
        if (!fits) Fail(Named(name, value), "a number from " + Shown(lowest) + " to " + Shown(highest));
        return value.get<double>();
    }

    /// Control characters are refused: a result file could not hold them.
    std::string Text(std::string_view name, const Json& value) const {
        if (!value.is_string()) Fail(Named(name, value), R"(a text in quotes, such as "80.1")");
        const std::string& text = value.get_ref<const std::string&>();
        const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' '; };
        if (std::any_of(text.begin(), text.end(), isControl))
            Fail(Named(name, value), "a text without control characters");
        return text;
    }

    const Json& Array(std::string_view name, const Json& value) const {
        if (!value.is_array()) Fail(Named(name, value), "a list in brackets");
        return value;
    }

    std::vector<std::string> Texts(std::string_view name, const Json& value) const {
        std::vector<std::string> texts;
        for (const Json& item : Array(name, value)) texts.push_back(Text(name, item));
        return texts;
    }

    /// Walks the members of an object and hands each to its row of the table: a row has a name and `read`.
    template <typename Rows, typename Target>
    void Members(std::string_view name, const Json& value, const Rows& rows, Target& target) const {
        if (!value.is_object()) Fail(Named(name, value), "an object with " + ListOfNames(rows));
        for (const auto& [member, content] : value.items()) {
            const auto* row = FindNamed(rows, member);
            if (!row)
                Fail("unknown " + Shown(member) + " in " + std::string(name), "one of " + ListOfNames(rows));
            row->read(*this, row->name, content, target);
        }
    }

  private:
    std::string_view mFile;
    int32_t mLine;
};

// ------------------------------------------------------------------------------------------- parsing

/// Refuses, while a line is being parsed, what no recording has and what would cost memory or depth.
class ShapeGuard {
  public:
    explicit ShapeGuard(const LineReader& reader) : mReader(reader) {}

    bool operator()(int depth, Json::parse_event_t event, Json& parsed) {
        constexpr int kMaxDepth = 8;
        constexpr int kMaxParts = 10'000;
        using Event = Json::parse_event_t;
        if (++mParts > kMaxParts) mReader.Fail("more than 10000 values", "one event in a line");
        if ((event == Event::object_start || event == Event::array_start) && depth >= kMaxDepth)
            mReader.Fail("brackets nested more than 8 deep", "one event in a line");
        const auto level = static_cast<std::size_t>(depth);
        if (event == Event::object_start) {
            mNames.resize(level + 1);
            mNames[level].clear();
        }
        // A name lies one level below the object that it belongs to.
        if (event == Event::key && !mNames[level - 1].insert(parsed.get<std::string>()).second)
            mReader.Fail(Shown(parsed) + " twice", "each name once, and one event in a line");
        return true;
    }

  private:
    const LineReader& mReader;
    int mParts = 0;
    std::vector<std::set<std::string>> mNames;  // by depth of the object
};

Json ParseLine(const LineReader& reader, std::string_view text, std::string_view expected) {
    try {
        return Json::parse(text.begin(), text.end(), ShapeGuard(reader));
    } catch (const Json::parse_error& error) {
        reader.Fail("broken JSON at column " + std::to_string(error.byte) + " of " + ShownText(text),
                    expected);
    } catch (const Json::exception&) {
        reader.Fail("a number that is out of range in " + ShownText(text), expected);
    }
}

// --------------------------------------------------------------------------------------- first line

using In = const LineReader&;
using Name = std::string_view;

/// A member of an object, and what puts its value where it belongs.
template <typename Target>
struct MemberRow {
    std::string_view name;
    void (*read)(In in, Name name, const Json& value, Target& target);
};

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

void ReadFirstLine(const LineReader& in, std::string_view text, Recording& recording) {
    const Json line = ParseLine(in, text, kFirstLine);
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

/// A reader of events gives the number of the line and puts into the recording what does not fit into one.
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
    const Json line = ParseLine(in, text, expected);
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

// --------------------------------------------------------------------------------------------- file

std::string Megabytes(std::size_t bytes) {
    return std::to_string(bytes >> 20) + " MB";
}

[[noreturn]] void FailAsTooLarge(const std::string& path) {
    throw RecordingError(path, 0, "more than " + Megabytes(kMaxRecordingBytes),
                         "a recording of at most that");
}

std::string ReadWholeFile(const std::string& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found)
        throw RecordingError(path, 0, "no such file", "a recording");
    if (status.type() == std::filesystem::file_type::directory)
        throw RecordingError(path, 0, "a folder", "a recording");
    // A pipe has no size: it is measured while it is read.
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (!error && size > kMaxRecordingBytes) FailAsTooLarge(path);

    errno = 0;
    std::ifstream file(path, std::ios::binary);
    std::string text;
    std::array<char, std::size_t{1} << 16> part{};
    while (file.read(part.data(), part.size()) || file.gcount() > 0) {
        text.append(part.data(), static_cast<std::size_t>(file.gcount()));
        if (text.size() > kMaxRecordingBytes) FailAsTooLarge(path);
    }
    if (!file.eof()) {
        const std::string reason = std::generic_category().message(errno);
        throw RecordingError(path, 0, "a file that cannot be read (" + reason + ")", "a recording");
    }
    return text;
}

/// The next line and its line break are taken off the text.
std::string_view TakeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

std::string MessageOf(std::string_view file, int32_t line, std::string_view found,
                      std::string_view expected) {
    std::string message(file);
    if (line > 0) message += ':' + std::to_string(line);
    return message.append(": found ").append(found).append("; expected ").append(expected);
}

}  // namespace

RecordingError::RecordingError(std::string_view file, int32_t line, std::string_view found,
                               std::string_view expected)
    : std::runtime_error(MessageOf(file, line, found, expected)) {}

Recording ParseRecording(std::string_view text, std::string_view file) {
    Recording recording;
    recording.file = file;
    bool first = true;
    for (int32_t number = 1; !text.empty(); ++number) {
        if (number > kMaxRecordingLines)
            throw RecordingError(file, number, "more lines than " + std::to_string(kMaxRecordingLines),
                                 "a recording of at most that");
        const std::string_view line = TakeLine(text);
        if (line.find_first_not_of(" \t\r") == std::string_view::npos) continue;
        const LineReader reader(file, number);
        if (std::exchange(first, false)) {
            ReadFirstLine(reader, line, recording);
        } else {
            ReadEventLine(reader, line, recording);
        }
    }
    if (first) throw RecordingError(file, 0, "an empty file", kFirstLine);
    return recording;
}

Recording LoadRecording(const std::string& path) {
    return ParseRecording(ReadWholeFile(path), path);
}

}  // namespace vorex

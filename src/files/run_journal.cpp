#include "files/run_journal.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <set>
#include <system_error>
#include <utility>

#include "foundation/file_error.h"

namespace vorex {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

constexpr int32_t kVersion = 1;
constexpr std::string_view kVersionName = "vorexJournal";
constexpr std::string_view kSuffix = ".journal";
constexpr std::size_t kChecksumDigits = 8;
constexpr std::size_t kLargestJournal = std::size_t{1} << 30U;
constexpr std::string_view kUnderWay = "belongs to a run that is still under way";
constexpr std::string_view kAJournal = "a journal of an interrupted run";

// ------------------------------------------------------------------------------------------ checksum

/// CRC-32 of IEEE 802.3, continued from an earlier one.
uint32_t Checksum(uint32_t checksum, std::string_view bytes) {
    static constexpr auto kTable = [] {
        constexpr uint32_t kPolynomial = 0xEDB88320U;
        std::array<uint32_t, 256> table{};
        for (uint32_t byte = 0; byte < table.size(); ++byte) {
            uint32_t rest = byte;
            for (int bit = 0; bit < 8; ++bit) rest = (rest >> 1U) ^ ((rest & 1U) != 0 ? kPolynomial : 0U);
            table[byte] = rest;
        }
        return table;
    }();
    checksum = ~checksum;
    for (const char byte : bytes)
        checksum = kTable[(checksum ^ static_cast<unsigned char>(byte)) & 0xFFU] ^ (checksum >> 8U);
    return ~checksum;
}

/// The object of a line with a correct checksum; nothing for any other line.
std::string_view ObjectOf(std::string_view line, uint32_t& checksum) {
    if (line.size() <= kChecksumDigits || line[kChecksumDigits] != ' ') return {};
    uint32_t told = 0;
    const char* const end = line.data() + kChecksumDigits;
    const auto [at, error] = std::from_chars(line.data(), end, told, 16);
    if (error != std::errc() || at != end) return {};
    const std::string_view object = line.substr(kChecksumDigits + 1);
    const uint32_t counted = Checksum(checksum, object);
    if (told != counted) return {};
    checksum = counted;
    return object;
}

// ------------------------------------------------------------------------------------------- objects

template <typename Object>
struct TextRow {
    std::string_view name;
    std::string Object::*text;
};
template <typename Object>
struct NumberRow {
    std::string_view name;
    int32_t Object::*number;
};

constexpr TextRow<JournalHead> kHeadTexts[] = {
    {"program", &JournalHead::program},   {"started", &JournalHead::started},
    {"input", &JournalHead::input},       {"instruments", &JournalHead::instruments},
    {"room", &JournalHead::room},         {"operator", &JournalHead::operatorScript},
    {"language", &JournalHead::language}, {"document", &JournalHead::document},
};
/// Written only if not empty: journals of earlier versions do not have them.
constexpr TextRow<JournalHead> kReportTexts[] = {
    {"report", &JournalHead::report},
    {"reportLanguage", &JournalHead::reportLanguage},
};
constexpr std::string_view kRealTime = "realTime";

constexpr NumberRow<JournalRecord> kRecordNumbers[] = {
    {"element", &JournalRecord::element}, {"exposure", &JournalRecord::exposure},
    {"source", &JournalRecord::source},   {"waveform", &JournalRecord::waveform},
    {"opened", &JournalRecord::opened},   {"steps", &JournalRecord::steps},
    {"polls", &JournalRecord::polls},
};
constexpr TextRow<JournalRecord> kRecordTexts[] = {
    {"row", &JournalRecord::row},
    {"statuses", &JournalRecord::statuses},
    {"time", &JournalRecord::time},
};
constexpr std::string_view kNotes = "notes";

/// Text of an object; invalid UTF-8 is replaced, so that the journal can always be read.
std::string Dumped(const Json& object) {
    return object.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string HeadObject(const JournalHead& head) {
    Json object{{kVersionName, kVersion}, {kRealTime, head.realTime}};
    for (const auto& row : kHeadTexts) object[std::string(row.name)] = head.*row.text;
    for (const auto& row : kReportTexts)
        if (!(head.*row.text).empty()) object[std::string(row.name)] = head.*row.text;
    return Dumped(object);
}

std::string RecordObject(const JournalRecord& record) {
    Json object;
    for (const auto& row : kRecordNumbers) object[std::string(row.name)] = record.*row.number;
    for (const auto& row : kRecordTexts) object[std::string(row.name)] = record.*row.text;
    Json notes = Json::array();
    for (const RunNote& note : record.notes) notes.push_back({note.operation, note.call, note.values});
    object[std::string(kNotes)] = std::move(notes);
    return Dumped(object);
}

/// Reads the object of one line; a missing member or one of the wrong kind is an error of that line.
class ObjectReader {
  public:
    ObjectReader(std::string_view text, const std::string& name, int32_t line)
        : mObject(Json::parse(text.begin(), text.end(), nullptr, false)), mName(name), mLine(line) {
        if (!mObject.is_object()) Fail("no JSON object", std::string(kAJournal));
    }

    [[noreturn]] void Fail(const std::string& fault, const std::string& expected) const {
        throw FileError({mName, mLine, {}}, fault, expected);
    }
    const Json& Member(std::string_view name, bool (Json::*is)() const noexcept, const char* kind) const {
        const auto at = mObject.find(std::string(name));
        if (at == mObject.end() || !((*at).*is)())
            Fail('"' + std::string(name) + "\" is missing or something else", kind);
        return *at;
    }
    std::string Text(std::string_view name) const { return Member(name, &Json::is_string, "a text"); }
    int32_t Number(std::string_view name) const {
        const Json& member = Member(name, &Json::is_number_integer, "a whole number");
        const auto number = member.get<int64_t>();
        if (number < 0 || number > INT32_MAX) Fail('"' + std::string(name) + "\" is out of range", "a count");
        return static_cast<int32_t>(number);
    }
    bool Has(std::string_view name) const { return mObject.contains(std::string(name)); }

    RunNote Note(const Json& item) const {
        if (!item.is_array() || item.size() != 3 || !item[0].is_string() || !item[1].is_number_integer() ||
            !item[2].is_array())
            Fail("a note is something else", "[operation, call, [values]]");
        RunNote note{item[0], item[1], {}};
        for (const Json& value : item[2]) {
            if (!value.is_string()) Fail("a value of a note is something else", "a text");
            note.values.push_back(value);
        }
        return note;
    }

  private:
    Json mObject;
    const std::string& mName;
    int32_t mLine;
};

JournalHead ReadHead(std::string_view text, const std::string& name) {
    const ObjectReader in(text, name, 1);
    if (!in.Has(kVersionName)) in.Fail("is no journal", std::string(kAJournal));
    if (const int32_t version = in.Number(kVersionName); version != kVersion)
        in.Fail("is a journal of version " + std::to_string(version), "version " + std::to_string(kVersion));
    JournalHead head;
    for (const auto& row : kHeadTexts) head.*row.text = in.Text(row.name);
    for (const auto& row : kReportTexts)
        if (in.Has(row.name)) head.*row.text = in.Text(row.name);
    head.realTime = in.Member(kRealTime, &Json::is_boolean, "true or false").get<bool>();
    return head;
}

JournalRecord ReadRecord(std::string_view text, const std::string& name, int32_t line) {
    const ObjectReader in(text, name, line);
    JournalRecord record;
    for (const auto& row : kRecordNumbers) record.*row.number = in.Number(row.name);
    for (const auto& row : kRecordTexts) record.*row.text = in.Text(row.name);
    for (const Json& note : in.Member(kNotes, &Json::is_array, "a list"))
        record.notes.push_back(in.Note(note));
    return record;
}

std::string WholeText(os::File& file, const std::string& name) {
    if (!file.IsRegular()) throw FileError({name, 0, {}}, "is no file", std::string(kAJournal));
    if (file.Size() > kLargestJournal)
        throw FileError({name, 0, {}}, "is larger than 1 GB", std::string(kAJournal));
    std::string text(static_cast<std::size_t>(file.Size()), '\0');
    std::size_t size = 0;
    while (size < text.size()) {
        std::error_code error;
        const std::size_t count = file.Read(text.data() + size, text.size() - size, error);
        if (error) throw FileError({name, 0, {}}, "cannot be read: " + error.message());
        if (count == 0) break;
        size += count;
    }
    text.resize(size);
    return text;
}

/// The journal of a run that died before its first line was complete: empty, a part of that line, or zero
/// bytes, which some file systems leave after a power failure.
bool IsUnbegun(std::string_view text) {
    if (text.find_first_not_of('\0') == std::string_view::npos) return true;
    if (text.find('\n') != std::string_view::npos) return false;
    const std::string_view digits = text.substr(0, kChecksumDigits);
    if (digits.find_first_not_of("0123456789abcdef") != std::string_view::npos) return false;
    const std::string_view object = text.substr(digits.size());
    const std::string begin = " {\"" + std::string(kVersionName) + "\":";
    return object.substr(0, begin.size()) == std::string_view(begin).substr(0, object.size());
}

}  // namespace

std::string JournalLine(std::string_view object, uint32_t& checksum) {
    checksum = Checksum(checksum, object);
    std::array<char, kChecksumDigits + 1> digits{};
    std::snprintf(digits.data(), digits.size(), "%08x", checksum);
    return std::string(digits.data()) + " " + std::string(object) + "\n";
}

JournalContent ParseJournal(std::string_view text, const std::string& name) {
    JournalContent content;
    uint32_t checksum = 0;
    int32_t number = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        ++number;
        const std::size_t end = text.find('\n', at);
        const bool last = end == std::string_view::npos || end + 1 == text.size();
        const std::string_view object = end == std::string_view::npos
                                            ? std::string_view()
                                            : ObjectOf(text.substr(at, end - at), checksum);
        if (object.empty()) {
            if (!last)
                throw FileError({name, number, {}},
                                number == 1 ? "is no journal" : "the line is damaged: its checksum is wrong",
                                number == 1 ? std::string(kAJournal) : "a journal whose lines are whole");
            content.torn = true;
            break;
        }
        if (number == 1)
            content.head = ReadHead(object, name);
        else
            content.records.push_back(ReadRecord(object, name, number));
        at = end + 1;
        content.wholeBytes = at;
        content.checksum = checksum;
    }
    if (content.wholeBytes == 0)
        throw FileError({name, 1, {}}, "the first line is not whole, so it holds no run",
                        std::string(kAJournal));
    return content;
}

std::string JournalSummary(const JournalContent& content) {
    if (content.records.empty()) return "no exposure";
    std::set<std::pair<int32_t, int32_t>> exposures;
    for (const JournalRecord& record : content.records) exposures.insert({record.element, record.exposure});
    const JournalRecord& last = content.records.back();
    return std::to_string(exposures.size()) + (exposures.size() == 1 ? " exposure" : " exposures") +
           "; the last is exposure " + std::to_string(last.exposure) + " of element " +
           std::to_string(last.element) + " at " + last.time;
}

// ---------------------------------------------------------------------------------------------- file

fs::path RunJournal::PathFor(const fs::path& output) {
    fs::path path = output;
    path += kSuffix;
    return path;
}

fs::path RunJournal::OutputOf(const fs::path& file) {
    fs::path output = file;
    if (file.extension() == kSuffix) output.replace_extension();
    return output;
}

void RunJournal::Fail(const std::string& what, const std::error_code& reason) const {
    throw FileError({mPath.string(), 0, {}}, what + ": " + reason.message());
}

std::unique_ptr<RunJournal> RunJournal::Create(const fs::path& output, const JournalHead& head) {
    std::unique_ptr<RunJournal> journal(new RunJournal(PathFor(output)));
    const fs::path& path = journal->mPath;
    std::error_code error;
    journal->mFile = os::File::Open(path, os::Access::kAppendToNew, error);
    if (error) {
        const bool exists = error == std::errc::file_exists;
        if (exists && journal->TakeUnbegun()) return Begin(std::move(journal), head);
        if (!exists) journal->Fail("the journal of the run cannot be written", error);
        std::string found;
        try {
            JournalContent content;
            Open(output, content);
            found = "holds an interrupted run of " + content.head.input + " (" + JournalSummary(content) +
                    "); finish it with \"vorex resume " + output.string() +
                    "\", or delete the journal to start again";
        } catch (const FileError& fault) {
            found =
                fault.Fault() + "; nothing was run. Move the file away, or delete it, if it is not needed";
        }
        throw FileError({path.string(), 0, {}}, found);
    }
    return Begin(std::move(journal), head);
}

std::unique_ptr<RunJournal> RunJournal::Begin(std::unique_ptr<RunJournal> journal, const JournalHead& head) {
    if (!journal->mFile.Lock()) throw FileError({journal->mPath.string(), 0, {}}, std::string(kUnderWay));
    journal->mNeeded = false;
    journal->AppendLine(HeadObject(head));
    os::FlushFolderOf(journal->mPath);
    return journal;
}

/// Nothing is lost with the journal of a run that was killed before its first line was complete.
bool RunJournal::TakeUnbegun() {
    std::error_code error;
    mFile = os::File::Open(mPath, os::Access::kAppend, error);
    if (error) return false;
    if (mFile.Lock() && mFile.IsRegular() && IsUnbegun(WholeText(mFile, mPath.string()))) {
        mTorn = mFile.Size() > 0;
        return true;
    }
    (void)mFile.Close();
    return false;
}

std::unique_ptr<RunJournal> RunJournal::Open(const fs::path& output, JournalContent& content) {
    std::unique_ptr<RunJournal> journal(new RunJournal(PathFor(output)));
    const std::string name = journal->mPath.string();
    std::error_code error;
    journal->mFile = os::File::Open(name, os::Access::kAppend, error);
    if (error == std::errc::no_such_file_or_directory)
        throw FileError({name, 0, {}}, "there is no such journal: no run that writes " + output.string() +
                                           " was interrupted");
    if (error) journal->Fail("cannot be opened", error);
    if (!journal->mFile.Lock()) throw FileError({name, 0, {}}, std::string(kUnderWay));
    content = ParseJournal(WholeText(journal->mFile, name), name);
    journal->mChecksum = content.checksum;
    journal->mSize = content.wholeBytes;
    journal->mTorn = content.torn;
    return journal;
}

RunJournal::~RunJournal() {
    std::error_code error;
    if (mFile.IsOpen() && !mNeeded) fs::remove(mPath, error);
}

void RunJournal::AppendLine(const std::string& object) {
    uint32_t checksum = mChecksum;
    const std::string line = JournalLine(object, checksum);
    constexpr const char* kFault = "the journal of the run cannot be written";
    std::error_code error;
    if (mTorn) error = mFile.Truncate(mSize);
    if (error) Fail(kFault, error);
    mTorn = false;
    error = mFile.Write(line);
    if (!error) error = mFile.Flush();
    if (error) {
        mTorn = static_cast<bool>(mFile.Truncate(mSize));
        Fail(kFault, error);
    }
    mSize += line.size();
    mChecksum = checksum;
}

void RunJournal::Append(const JournalRecord& record) {
    AppendLine(RecordObject(record));
    mNeeded = true;
}

void RunJournal::Remove() {
    if (!mFile.IsOpen()) return;
    std::error_code error;
    fs::remove(mPath, error);
    if (error) Fail("the journal cannot be removed", error);
    (void)mFile.Close();
}

}  // namespace vorex

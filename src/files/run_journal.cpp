#include "files/run_journal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <system_error>
#include <type_traits>
#include <utility>
#include <variant>

#include "files/json_reader.h"
#include "foundation/file_error.h"

namespace vorex {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

constexpr int32_t kVersion = 1;
constexpr std::string_view kVersionName = "vorexJournal";
constexpr std::string_view kSuffix = ".journal";
constexpr std::size_t kChecksumDigits = 8;
constexpr int32_t kMostValues = 1'000'000;  // of a line: a long exposure has many notes
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

/// The version of the format: no field of an object.
struct FormatVersion {};

/// A member of an object of the journal, for writing and reading.
template <typename Object>
struct JournalRow {
    std::string_view name;
    std::variant<FormatVersion, bool Object::*, int32_t Object::*, std::string Object::*,
                 std::vector<RunNote> Object::*>
        field;
    bool required = kRequired;  ///< a member that is not is written where it holds something

    void read(In in, const JsonValue& value, Object& to) const;
};

constexpr JournalRow<JournalHead> kHeadRows[] = {
    {kVersionName, FormatVersion{}},
    {"realTime", &JournalHead::realTime},
    {"program", &JournalHead::program},
    {"started", &JournalHead::started},
    {"input", &JournalHead::input},
    {"instruments", &JournalHead::instruments},
    {"room", &JournalHead::room},
    {"operator", &JournalHead::operatorScript},
    {"language", &JournalHead::language},
    {"document", &JournalHead::document},
    // Journals of earlier versions have none.
    {"report", &JournalHead::report, false},
    {"reportLanguage", &JournalHead::reportLanguage, false},
};

constexpr JournalRow<JournalRecord> kRecordRows[] = {
    {"element", &JournalRecord::element},   {"exposure", &JournalRecord::exposure},
    {"source", &JournalRecord::source},     {"waveform", &JournalRecord::waveform},
    {"opened", &JournalRecord::opened},     {"steps", &JournalRecord::steps},
    {"polls", &JournalRecord::polls},       {"row", &JournalRecord::row},
    {"statuses", &JournalRecord::statuses}, {"time", &JournalRecord::time},
    {"notes", &JournalRecord::notes},
};

/// The line of a person's act.
struct ActLine {
    std::string word;
    int32_t number = 0;
    int32_t column = 0;
    std::string text;
    int32_t element = 0;
    int32_t polls = 0;
    std::vector<RunNote> notes;
};
constexpr std::string_view kAct = "act";
constexpr JournalRow<ActLine> kActRows[] = {
    {kAct, &ActLine::word},     {"number", &ActLine::number},   {"column", &ActLine::column},
    {"text", &ActLine::text},   {"element", &ActLine::element}, {"polls", &ActLine::polls},
    {"notes", &ActLine::notes},
};

constexpr std::string_view kScript = "operator";
constexpr JournalRow<JournalRecord> kScriptRows[] = {{kScript, &JournalRecord::script}};

struct ActWord {
    OperatorAct::Kind kind;
    std::string_view name;
};
constexpr ActWord kActWords[] = {
    {OperatorAct::Kind::kPress, "press"},     {OperatorAct::Kind::kShortcut, "shortcut"},
    {OperatorAct::Kind::kClick, "click"},     {OperatorAct::Kind::kCheck, "check"},
    {OperatorAct::Kind::kType, "type"},       {OperatorAct::Kind::kMenu, "menu"},
    {OperatorAct::Kind::kRedo, "redo"},       {OperatorAct::Kind::kChoose, "choose"},
    {OperatorAct::Kind::kConfirm, "confirm"},
};
constexpr std::size_t PlaceOf(OperatorAct::Kind kind) {
    return static_cast<std::size_t>(kind);
}
static_assert(std::size(kActWords) == PlaceOf(OperatorAct::Kind::kConfirm) + 1, "an act has no word");
static_assert(
    [] {
        for (std::size_t i = 0; i < std::size(kActWords); ++i)
            if (PlaceOf(kActWords[i].kind) != i) return false;
        return true;
    }(),
    "the words are in the order of the kinds");

std::string_view WordOf(const OperatorAct& act) {
    return kActWords[PlaceOf(act.kind)].name;
}

void ReadField(In in, const JsonValue& value, FormatVersion& /*field*/) {
    in.Version(value, kVersion);
}
void ReadField(In in, const JsonValue& value, bool& field) {
    field = in.Flag(value);
}
void ReadField(In in, const JsonValue& value, int32_t& field) {
    field = in.Whole(value, 0, INT32_MAX);
}
void ReadField(In in, const JsonValue& value, std::string& field) {
    field = in.AnyText(value);
}
void ReadField(In in, const JsonValue& value, std::vector<RunNote>& field) {
    for (const JsonValue& item : in.List(value)) {
        constexpr std::size_t kParts = 3;
        if (in.List(item).size() != kParts) in.Refuse(item, "[operation, call, [values]]");
        RunNote& note = field.emplace_back();
        note.operation = in.AnyText(item.items[0]);
        note.call = in.Whole(item.items[1], 0, INT32_MAX);
        for (const JsonValue& text : in.List(item.items[2])) note.values.push_back(in.AnyText(text));
    }
}

template <typename Object>
void JournalRow<Object>::read(In in, const JsonValue& value, Object& to) const {
    std::visit(
        [&](auto member) {
            if constexpr (std::is_same_v<decltype(member), FormatVersion>)
                ReadField(in, value, member);
            else
                ReadField(in, value, to.*member);
        },
        field);
}

template <typename Value>
Json WrittenField(const Value& field) {
    if constexpr (std::is_same_v<Value, FormatVersion>) {
        return kVersion;
    } else if constexpr (std::is_same_v<Value, std::vector<RunNote>>) {
        Json notes = Json::array();
        for (const RunNote& note : field) notes.push_back({note.operation, note.call, note.values});
        return notes;
    } else {
        return field;
    }
}

/// Text of an object; what is no UTF-8 is replaced, so that the journal can always be read.
template <typename Object, std::size_t Count>
std::string Written(const Object& object, const JournalRow<Object> (&rows)[Count]) {
    const Json emptyText = "";
    Json written;
    for (const JournalRow<Object>& row : rows) {
        Json value = std::visit(
            [&](auto member) {
                if constexpr (std::is_same_v<decltype(member), FormatVersion>)
                    return WrittenField(member);
                else
                    return WrittenField(object.*member);
            },
            row.field);
        if (row.required || value != emptyText) written[std::string(row.name)] = std::move(value);
    }
    return written.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string RecordObject(const JournalRecord& record) {
    if (!record.script.empty()) return Written(record, kScriptRows);
    if (!record.act) return Written(record, kRecordRows);
    const OperatorAct& act = *record.act;
    return Written(ActLine{std::string(WordOf(act)), act.number, act.column, act.text, record.element,
                           record.polls, record.notes},
                   kActRows);
}

// What is missing in a line or of another kind is an error of that line.

JournalHead ReadHead(const JsonReader& in, std::string_view text) {
    JournalHead head;
    in.Members(in.Parse(text, kAJournal, kMostValues), "the first line", kHeadRows, head);
    return head;
}

JournalRecord ReadRecord(const JsonReader& in, std::string_view text) {
    const JsonValue value = in.Parse(text, kAJournal, kMostValues);
    JournalRecord record;
    const JsonValue* const act = value.Find(kAct);
    if (act == nullptr) {
        if (value.Find(kScript) != nullptr)
            in.Members(value, "the line", kScriptRows, record);
        else
            in.Members(value, "the line", kRecordRows, record);
        return record;
    }
    ActLine line;
    in.Members(value, "the line", kActRows, line);
    const ActWord* const word = FindNamed(kActWords, line.word);
    if (word == nullptr) in.Refuse(*act, "an act: " + ListOfNames(kActWords));
    record.element = line.element;
    record.polls = line.polls;
    record.notes = std::move(line.notes);
    record.act = OperatorAct{word->kind, line.number, line.column, std::move(line.text)};
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
        const JsonReader in(name, number);
        if (number == 1)
            content.head = ReadHead(in, object);
        else
            content.records.push_back(ReadRecord(in, object));
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
    std::set<std::pair<int32_t, int32_t>> exposures;
    const JournalRecord* last = nullptr;
    for (const JournalRecord& record : content.records) {
        if (record.exposure == 0) continue;
        exposures.insert({record.element, record.exposure});
        last = &record;
    }
    if (last == nullptr) return "no exposure";
    return std::to_string(exposures.size()) + (exposures.size() == 1 ? " exposure" : " exposures") +
           "; the last is " + NameOf(*last) + " at " + last->time;
}

std::string NameOf(const JournalRecord& record) {
    const std::string element = " element " + std::to_string(record.element);
    if (!record.act) return "exposure " + std::to_string(record.exposure) + " of" + element;
    return std::string(WordOf(*record.act)) + " " + std::to_string(record.act->number) + " at" + element;
}

bool JournalContent::ByHand() const {
    return std::any_of(records.begin(), records.end(),
                       [](const JournalRecord& record) { return record.act.has_value(); });
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
    journal->AppendLine(Written(head, kHeadRows));
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
    mNeeded = mNeeded || record.exposure != 0;
}

void RunJournal::Remove() {
    if (!mFile.IsOpen()) return;
    std::error_code error;
    fs::remove(mPath, error);
    if (error) Fail("the journal cannot be removed", error);
    (void)mFile.Close();
}

}  // namespace vorex

#include "files/json_reader.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>
#include <system_error>
#include <utility>

#include "foundation/file_error.h"

namespace vorex {

namespace {

using Json = nlohmann::json;
using Kind = JsonValue::Kind;

constexpr std::size_t kMostShown = 60;

/// An iterator over a text that notes in `read` the position of the parser.
struct Cursor {
    using iterator_category = std::forward_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    const char* at;
    const char** read;

    reference operator*() const { return *at; }
    Cursor& operator++() {
        *read = ++at;
        return *this;
    }
    bool operator==(const Cursor& other) const { return at == other.at; }
    bool operator!=(const Cursor& other) const { return at != other.at; }
};

/// Builds the value while the parser reports its parts. The names of its functions are the parser's.
class Builder {
  public:
    Builder(const JsonReader& reader, std::string_view text, std::string_view expected, int32_t mostValues)
        : mReader(reader),
          mText(text),
          mExpected(expected),
          mMostValues(mostValues),
          mRead(text.data()),
          mCounted(text.data()),
          mLine(std::max(reader.Line(), 1)) {}

    Cursor Begin() { return {mText.data(), &mRead}; }
    Cursor End() { return {mText.data() + mText.size(), &mRead}; }
    JsonValue Take() { return std::move(mRoot); }

    bool null() { return Add({Kind::kNull, 0, {}, "null"}); }
    bool boolean(bool value) { return Add({Kind::kFlag, 0, {}, value ? "true" : "false"}); }
    bool number_integer(int64_t value) { return AddNumber(Kind::kWhole, value); }
    bool number_unsigned(uint64_t value) { return AddNumber(Kind::kWhole, value); }
    bool number_float(double value, const std::string& /*text*/) { return AddNumber(Kind::kNumber, value); }
    bool string(std::string& value) { return Add({Kind::kText, 0, {}, std::move(value)}); }
    bool binary(Json::binary_t& /*value*/) { return false; }  // never in a text
    bool start_object(std::size_t /*size*/) { return Open(Kind::kObject); }
    bool start_array(std::size_t /*size*/) { return Open(Kind::kList); }
    bool end_object() { return Close(); }
    bool end_array() { return Close(); }

    bool key(std::string& name) {
        CountLines(mRead);
        mName = std::move(name);
        if (!mOpen.back().names.insert(mName).second)
            Refuse(ShownText(mName) + " twice", "each name once in an object");
        return true;
    }

    bool parse_error(std::size_t position, const std::string& /*token*/, const Json::exception& error) {
        constexpr int kOutOfRange = 406;
        const std::string_view before = mText.substr(0, std::min(position, mText.size()));
        const std::size_t lineStart = before.find_last_of('\n') + 1;  // npos + 1 is the start
        const std::string_view line = mText.substr(lineStart, mText.find('\n', lineStart) - lineStart);
        CountLines(before.data() + before.size());
        Refuse(error.id == kOutOfRange ? "a number that is out of range in " + ShownText(line)
                                       : "broken JSON at column " + std::to_string(position - lineStart) +
                                             " of " + ShownText(line),
               mExpected);
    }

  private:
    struct Container {
        JsonValue* value;
        std::set<std::string> names;
    };

    [[noreturn]] void Refuse(const std::string& found, std::string_view expected) {
        JsonValue here;
        here.line = mLine;
        mReader.Fail(here, "found " + found, expected);
    }

    void CountLines(const char* end) {
        if (end > mCounted) mLine += static_cast<int32_t>(std::count(mCounted, end, '\n'));
        mCounted = std::max(mCounted, end);
    }

    template <typename Number>
    bool AddNumber(Kind kind, Number number) {
        // The parser has read one character more, to see where the number ends.
        return Add({kind, 0, {}, Json(number).dump(), static_cast<double>(number)}, 1);
    }

    bool Add(JsonValue value, std::ptrdiff_t readAhead = 0) {
        CountLines(mRead - readAhead);
        if (++mValues > mMostValues)
            Refuse("more than " + std::to_string(mMostValues) + " values", mExpected);
        value.line = mLine;
        if (mOpen.empty()) {
            mRoot = std::move(value);
            return true;
        }
        JsonValue& parent = *mOpen.back().value;
        value.name = parent.IsObject() ? std::move(mName) : parent.name;
        parent.items.push_back(std::move(value));
        return true;
    }

    bool Open(Kind kind) {
        constexpr std::size_t kMaxDepth = 8;
        CountLines(mRead);
        if (mOpen.size() >= kMaxDepth) Refuse("brackets nested more than 8 deep", mExpected);
        Add({kind});
        // No item is added to a parent while one of its items is open, so this stays where it is.
        mOpen.push_back({mOpen.empty() ? &mRoot : &mOpen.back().value->items.back(), {}});
        return true;
    }

    bool Close() {
        mOpen.pop_back();
        return true;
    }

    const JsonReader& mReader;
    std::string_view mText;
    std::string_view mExpected;
    int32_t mMostValues;
    int32_t mValues = 0;
    const char* mRead;
    const char* mCounted;
    int32_t mLine;
    std::string mName;
    JsonValue mRoot;
    std::vector<Container> mOpen;
};

std::string Quoted(std::string_view text) {
    return Json(text).dump(-1, ' ', true, Json::error_handler_t::replace);
}

/// As JSON writes it; ends early where a message would be too long anyway.
void Write(const JsonValue& value, std::string& text) {
    if (value.kind < Kind::kList) {
        text += value.kind == Kind::kText ? Quoted(value.text) : value.text;
        return;
    }
    text += value.IsObject() ? '{' : '[';
    bool first = true;
    for (const JsonValue& item : value.items) {
        if (text.size() > kMostShown) break;
        if (!std::exchange(first, false)) text += ',';
        if (value.IsObject()) text += Quoted(item.name) + ':';
        Write(item, text);
    }
    text += value.IsObject() ? '}' : ']';
}

std::string Bound(double number) {
    return Json(number).dump();
}

[[noreturn]] void FailAsTooLarge(const std::filesystem::path& path, std::string_view expected,
                                 std::size_t mostBytes) {
    JsonReader(path.string())
        .Fail("found more than " + std::to_string(mostBytes >> 20) + " MB",
              std::string(expected) + " of at most that");
}

}  // namespace

const JsonValue* JsonValue::Find(std::string_view member) const {
    return FindNamed(items, member);
}

std::string Shown(const JsonValue& value) {
    std::string text;
    Write(value, text);
    if (text.size() > kMostShown) text = text.substr(0, kMostShown) + "...";
    return text;
}

std::string ShownText(std::string_view text) {
    constexpr std::size_t kMost = 40;
    const std::string_view suffix = text.size() > kMost ? "..." : "";
    return Quoted(std::string(text.substr(0, kMost)).append(suffix));
}

// ------------------------------------------------------------------------------------------- errors

JsonReader JsonReader::Below(int32_t line, std::string_view place) const {
    JsonReader below(mFile, line);
    below.mPlace = mPlace.empty() ? std::string(place) : mPlace + ", " + std::string(place);
    return below;
}

void JsonReader::Fail(std::string_view fault, std::string_view expected) const {
    throw FileError({mFile, mLine, {}}, (mPlace.empty() ? "" : mPlace + ": ") + std::string(fault),
                    std::string(expected));
}

void JsonReader::Fail(const JsonValue& at, std::string_view fault, std::string_view expected) const {
    JsonReader there = *this;
    there.mLine = at.line;
    there.Fail(fault, expected);
}

void JsonReader::Refuse(const JsonValue& value, std::string_view expected) const {
    const std::string name = value.name.empty() ? "" : '"' + value.name + "\":";
    Fail(value, "found " + name + Shown(value), expected);
}

void JsonReader::FailAsUnknown(const JsonValue& member, std::string_view what, std::string_view names) const {
    Fail(member, "found unknown " + ShownText(member.name) + " in " + std::string(what),
         "one of " + std::string(names));
}

void JsonReader::FailAsMissing(const JsonValue& object, std::string_view what, std::string_view name,
                               std::string_view names) const {
    Fail(object, "found " + std::string(what) + " without \"" + std::string(name) + '"',
         "an object with " + std::string(names));
}

// ------------------------------------------------------------------------------------------- reading

JsonValue JsonReader::Parse(std::string_view text, std::string_view expected, int32_t mostValues) const {
    if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) Fail("found an empty file", expected);
    // The parser takes it for the end of the text, and would silently drop the rest.
    if (text.find('\0') != std::string_view::npos) Fail("found a zero byte", expected);
    Builder builder(*this, text, expected, mostValues);
    Json::sax_parse(builder.Begin(), builder.End(), &builder);
    return builder.Take();
}

bool JsonReader::Flag(const JsonValue& value) const {
    if (value.kind != Kind::kFlag) Refuse(value, "true or false");
    return value.text == "true";
}

int32_t JsonReader::Whole(const JsonValue& value, int32_t lowest, int32_t highest) const {
    if (value.kind != Kind::kWhole || value.number < lowest || value.number > highest)
        Refuse(value, "a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest));
    return static_cast<int32_t>(value.number);
}

double JsonReader::Number(const JsonValue& value, double lowest, double highest) const {
    if (!value.IsNumber() || value.number < lowest || value.number > highest)
        Refuse(value, "a number from " + Bound(lowest) + " to " + Bound(highest));
    return value.number;
}

const std::string& JsonReader::AnyText(const JsonValue& value) const {
    if (value.kind != Kind::kText) Refuse(value, R"(a text in quotes, such as "80.1")");
    return value.text;
}

const std::string& JsonReader::Text(const JsonValue& value) const {
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; };
    const std::string& text = AnyText(value);
    if (std::any_of(text.begin(), text.end(), isControl)) Refuse(value, "a text without control characters");
    return text;
}

const std::vector<JsonValue>& JsonReader::List(const JsonValue& value) const {
    if (value.kind != Kind::kList) Refuse(value, "a list in brackets");
    return value.items;
}

const std::vector<JsonValue>& JsonReader::Object(const JsonValue& value, std::string_view expected) const {
    if (!value.IsObject()) Refuse(value, expected);
    return value.items;
}

std::vector<std::string> JsonReader::Texts(const JsonValue& value) const {
    std::vector<std::string> texts;
    for (const JsonValue& item : List(value)) texts.push_back(Text(item));
    return texts;
}

void JsonReader::Version(const JsonValue& value, int32_t version) const {
    if (value.kind != Kind::kWhole || value.number != version)
        Refuse(value, "version " + std::to_string(version));
}

std::string ReadWholeFile(const std::filesystem::path& path, std::string_view expected,
                          std::size_t mostBytes) {
    const JsonReader in(path.string());
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found) in.Fail("found no such file", expected);
    if (status.type() == std::filesystem::file_type::directory) in.Fail("found a folder", expected);
    // A pipe has no size: it is measured while it is read.
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (!error && size > mostBytes) FailAsTooLarge(path, expected, mostBytes);

    errno = 0;
    std::ifstream file(path, std::ios::binary);
    std::string text;
    std::array<char, std::size_t{1} << 16> part{};
    while (file.read(part.data(), part.size()) || file.gcount() > 0) {
        text.append(part.data(), static_cast<std::size_t>(file.gcount()));
        if (text.size() > mostBytes) FailAsTooLarge(path, expected, mostBytes);
    }
    if (!file.eof())
        in.Fail("found a file that cannot be read (" + std::generic_category().message(errno) + ")",
                expected);
    return text;
}

}  // namespace vorex

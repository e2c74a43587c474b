#include "files/json_reader.h"

#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <set>
#include <system_error>

namespace vorex {

namespace {

std::string MessageOf(std::string_view file, int32_t line, std::string_view found,
                      std::string_view expected) {
    std::string message(file);
    if (line > 0) message += ':' + std::to_string(line);
    return message.append(": found ").append(found).append("; expected ").append(expected);
}

/// Refuses, while a text is being parsed, what no file has and what would cost memory or depth.
class ShapeGuard {
  public:
    ShapeGuard(const JsonReader& reader, std::string_view rule) : mReader(reader), mRule(rule) {}

    bool operator()(int depth, Json::parse_event_t event, Json& parsed) {
        constexpr int kMaxDepth = 8;
        constexpr int kMaxParts = 10'000;
        using Event = Json::parse_event_t;
        if (++mParts > kMaxParts) mReader.Fail("more than 10000 values", mRule);
        if ((event == Event::object_start || event == Event::array_start) && depth >= kMaxDepth)
            mReader.Fail("brackets nested more than 8 deep", mRule);
        const auto level = static_cast<std::size_t>(depth);
        if (event == Event::object_start) {
            mNames.resize(level + 1);
            mNames[level].clear();
        }
        // A name lies one level below the object that it belongs to.
        if (event == Event::key && !mNames[level - 1].insert(parsed.get<std::string>()).second)
            mReader.Fail(Shown(parsed) + " twice", "each name once, and " + std::string(mRule));
        return true;
    }

  private:
    const JsonReader& mReader;
    std::string_view mRule;
    int mParts = 0;
    std::vector<std::set<std::string>> mNames;  // by depth of the object
};

std::string Megabytes(std::size_t bytes) {
    return std::to_string(bytes >> 20) + " MB";
}

[[noreturn]] void FailAsTooLarge(const std::string& path, std::string_view expected, std::size_t mostBytes) {
    throw InstrumentFileError(path, 0, "more than " + Megabytes(mostBytes),
                              std::string(expected) + " of at most that");
}

}  // namespace

InstrumentFileError::InstrumentFileError(std::string_view file, int32_t line, std::string_view found,
                                         std::string_view expected)
    : std::runtime_error(MessageOf(file, line, found, expected)) {}

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

// ------------------------------------------------------------------------------------------- reading

Json JsonReader::Parse(std::string_view text, std::string_view expected, std::string_view rule) const {
    // The parser takes it for the end of the text, and whatever follows would be lost.
    if (text.find('\0') != std::string_view::npos) Fail("a zero byte", expected);
    try {
        return Json::parse(text.begin(), text.end(), ShapeGuard(*this, rule));
    } catch (const Json::parse_error& error) {
        // The place of the fault: the line that it is in, and the column within.
        const std::string_view before = text.substr(0, std::min(error.byte, text.size()));
        const std::size_t lineStart = before.find_last_of('\n') + 1;  // npos + 1 is the start
        const auto linesBefore = static_cast<int32_t>(std::count(before.begin(), before.end(), '\n'));
        const std::string_view line = text.substr(lineStart, text.find('\n', lineStart) - lineStart);
        const JsonReader place(mFile, std::max(mLine, 1) + linesBefore);
        place.Fail(
            "broken JSON at column " + std::to_string(error.byte - lineStart) + " of " + ShownText(line),
            expected);
    } catch (const Json::exception&) {
        Fail("a number that is out of range in " + ShownText(text), expected);
    }
}

bool JsonReader::Flag(std::string_view name, const Json& value) const {
    if (!value.is_boolean()) Fail(Named(name, value), "true or false");
    return value.get<bool>();
}

int32_t JsonReader::Whole(std::string_view name, const Json& value, int32_t lowest, int32_t highest) const {
    // Above the range of a signed number the library holds it as an unsigned one.
    const bool fits = value.is_number_integer() &&
                      !(value.is_number_unsigned() && value.get<uint64_t>() > INT32_MAX) &&
                      value.get<int64_t>() >= lowest && value.get<int64_t>() <= highest;
    if (!fits)
        Fail(Named(name, value),
             "a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest));
    return value.get<int32_t>();
}

double JsonReader::Number(std::string_view name, const Json& value, double lowest, double highest) const {
    const bool fits = value.is_number() && value.get<double>() >= lowest && value.get<double>() <= highest;
    if (!fits) Fail(Named(name, value), "a number from " + Shown(lowest) + " to " + Shown(highest));
    return value.get<double>();
}

std::string JsonReader::Text(std::string_view name, const Json& value) const {
    if (!value.is_string()) Fail(Named(name, value), R"(a text in quotes, such as "80.1")");
    const std::string& text = value.get_ref<const std::string&>();
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' '; };
    if (std::any_of(text.begin(), text.end(), isControl))
        Fail(Named(name, value), "a text without control characters");
    return text;
}

const Json& JsonReader::Array(std::string_view name, const Json& value) const {
    if (!value.is_array()) Fail(Named(name, value), "a list in brackets");
    return value;
}

std::vector<std::string> JsonReader::Texts(std::string_view name, const Json& value) const {
    std::vector<std::string> texts;
    for (const Json& item : Array(name, value)) texts.push_back(Text(name, item));
    return texts;
}

std::string ReadWholeFile(const std::string& path, std::string_view expected, std::size_t mostBytes) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found)
        throw InstrumentFileError(path, 0, "no such file", expected);
    if (status.type() == std::filesystem::file_type::directory)
        throw InstrumentFileError(path, 0, "a folder", expected);
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
    if (!file.eof()) {
        const std::string reason = std::generic_category().message(errno);
        throw InstrumentFileError(path, 0, "a file that cannot be read (" + reason + ")", expected);
    }
    return text;
}

}  // namespace vorex

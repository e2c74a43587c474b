#include "files/standard_file.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>
#include <system_error>
#include <tuple>
#include <utility>

#include "foundation/file_error.h"
#include "foundation/limit_expression.h"
#include "foundation/number_text.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

using Json = nlohmann::json;

constexpr int32_t kFileVersion = 1;
constexpr std::size_t kLargestFile = 1U << 20U;

/// A value of the file for a message: ASCII only and short, whatever it is.
std::string Shown(const Json& value) {
    constexpr std::size_t kMost = 60;
    std::string text = value.dump(-1, ' ', true, Json::error_handler_t::replace);
    if (text.size() > kMost) text = text.substr(0, kMost) + "...";
    return text;
}

template <typename Rows>
std::string ListOfNames(const Rows& rows) {
    std::string text;
    for (const auto& row : rows) text += (text.empty() ? "\"" : ", \"") + std::string(row.name) + '"';
    return text;
}

/// Takes values out of JSON; knows the file and the place in it.
class Reader {
  public:
    Reader(std::string_view file, std::string place) : mFile(file), mPlace(std::move(place)) {}

    [[noreturn]] void Fail(const std::string& found, const std::string& expected) const {
        throw FileError({mFile, 0, {}}, mPlace.empty() ? found : mPlace + ": " + found, expected);
    }
    [[noreturn]] void FailAt(std::string_view name, const Json& value, const std::string& expected) const {
        Fail('"' + std::string(name) + "\":" + Shown(value), expected);
    }

    Reader Below(const std::string& place) const {
        return {mFile, mPlace.empty() ? place : mPlace + ", " + place};
    }

    double Number(std::string_view name, const Json& value) const {
        const bool fits = value.is_number() && std::abs(value.get<double>()) <= kLargest;
        if (!fits) FailAt(name, value, "a number");
        return value.get<double>();
    }

    /// Refuses control characters: the text goes to a terminal and into element files.
    std::string Text(std::string_view name, const Json& value) const {
        const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; };
        const auto* text = value.get_ptr<const std::string*>();
        if (text == nullptr || text->empty() || std::any_of(text->begin(), text->end(), isControl))
            FailAt(name, value, "a text without control characters");
        return *text;
    }

    const Json& List(std::string_view name, const Json& value) const {
        if (!value.is_array() || value.empty()) FailAt(name, value, "a list that is not empty");
        return value;
    }

    /// Reads each member of an object with its row; a required one must be there.
    template <typename Rows, typename Target>
    void Members(const Json& value, const Rows& rows, Target& target) const {
        if (!value.is_object()) Fail(Shown(value), "an object with " + ListOfNames(rows));
        for (const auto& [name, content] : value.items()) {
            const auto row = std::find_if(std::begin(rows), std::end(rows),
                                          [&, &member = name](const auto& r) { return r.name == member; });
            if (row == std::end(rows)) Fail("unknown " + Shown(name), "one of " + ListOfNames(rows));
            row->read(*this, row->name, content, target);
        }
        for (const auto& row : rows)
            if (row.required && !value.contains(row.name))
                Fail("there is no \"" + std::string(row.name) + '"', "one");
    }

  private:
    /// Limits are compared as singles.
    static constexpr double kLargest = std::numeric_limits<float>::max();

    std::string mFile;
    std::string mPlace;
};

using In = const Reader&;
using Name = std::string_view;

template <typename Target>
struct MemberRow {
    std::string_view name;
    bool required;
    void (*read)(In in, Name name, const Json& value, Target& target);
};

void ReadPoints(In in, Name name, const Json& value, StandardSide& to) {
    for (const Json& point : in.List(name, value)) {
        if (!point.is_array() || point.size() != 2) in.FailAt(name, point, "[kV, number]");
        to.byVoltage.push_back({in.Number(name, point[0]), in.Number(name, point[1])});
    }
    const bool rises =
        std::adjacent_find(to.byVoltage.begin(), to.byVoltage.end(),
                           [](const auto& a, const auto& b) { return !(a.kv < b.kv); }) == to.byVoltage.end();
    if (!rises) in.FailAt(name, value, "voltages that rise");
}

void ReadTests(In in, Name name, const Json& value, StandardLimit& to) {
    for (const Json& test : in.List(name, value)) {
        std::string known;
        for (int32_t id : kMeasuringTests) known += (known.empty() ? "" : ", ") + PlainText(id);
        const auto isTest = [&](int32_t id) { return test == id; };
        const auto id = std::find_if(kMeasuringTests.begin(), kMeasuringTests.end(), isTest);
        if (id == kMeasuringTests.end()) in.FailAt(name, test, "measuring tests: " + known);
        if (std::find(to.tests.begin(), to.tests.end(), *id) != to.tests.end())
            in.FailAt(name, test, "each test once");
        to.tests.push_back(*id);
    }
}

// clang-format off
constexpr MemberRow<StandardSide> kSideMembers[] = {
    {"value", false, [](In in, Name name, const Json& value, StandardSide& to) {
         to.value = in.Number(name, value);
     }},
    {"byVoltage", false, ReadPoints},
    {"expression", false, [](In in, Name name, const Json& value, StandardSide& to) {
         to.expression = in.Text(name, value);
         if (!FindLimitExpression(to.expression)) in.FailAt(name, value, "one of " + LimitExpressionList());
     }},
};

StandardSide ReadSide(In in, Name name, const Json& value) {
    StandardSide side;
    const Reader below = in.Below(std::string(name));
    below.Members(value, kSideMembers, side);
    if (side.value.has_value() == !side.byVoltage.empty()) below.Fail(Shown(value), "either \"value\" or \"byVoltage\"");
    if (side.expression.empty()) side.expression = RowOf(LimitExpression::kValue).text;
    return side;
}

constexpr MemberRow<StandardLimit> kLimitMembers[] = {
    {"tests", true, ReadTests},
    {"key", true, [](In in, Name name, const Json& value, StandardLimit& to) { to.key = in.Text(name, value); }},
    {"unit", false, [](In in, Name name, const Json& value, StandardLimit& to) { to.unit = in.Text(name, value); }},
    {"low", false, [](In in, Name name, const Json& value, StandardLimit& to) { to.low = ReadSide(in, name, value); }},
    {"high", false, [](In in, Name name, const Json& value, StandardLimit& to) { to.high = ReadSide(in, name, value); }},
    {"readings", false, [](In in, Name name, const Json& value, StandardLimit& to) {
         to.readings = in.Text(name, value);
         if (to.readings != "R" && to.readings != "Gy") in.FailAt(name, value, "\"R\" or \"Gy\"");
     }},
    {"authority", true, [](In in, Name name, const Json& value, StandardLimit& to) { to.authority = in.Text(name, value); }},
    {"clause", true, [](In in, Name name, const Json& value, StandardLimit& to) { to.clause = in.Text(name, value); }},
    {"note", false, [](In in, Name name, const Json& value, StandardLimit& to) { to.note = in.Text(name, value); }},
};

/// The limit with its place in messages: its number and key.
StandardLimit ReadLimit(In in, std::size_t number, const Json& value) {
    StandardLimit limit;
    std::string place = "limit " + std::to_string(number);
    if (value.is_object() && value.contains("key")) place += " (" + Shown(value["key"]) + ")";
    const Reader below = in.Below(place);
    below.Members(value, kLimitMembers, limit);
    if (!limit.low.IsSet() && !limit.high.IsSet()) below.Fail("has no side", "\"low\", \"high\" or both");
    const bool crossed = limit.low.value && limit.high.value && *limit.low.value > *limit.high.value &&
                         limit.low.expression == limit.high.expression;
    if (crossed) below.Fail("\"low\" lies above \"high\"", "a range that a value can lie in");
    return limit;
}

constexpr MemberRow<StandardFile> kFileMembers[] = {
    {"standard", true, [](In in, Name name, const Json& value, StandardFile&) {
         if (value != kFileVersion) in.FailAt(name, value, "version " + std::to_string(kFileVersion) + " of the format");
     }},
    {"name", true, [](In in, Name name, const Json& value, StandardFile& to) {
         to.name = in.Text(name, value);
         if (to.name.find(':') != std::string::npos) in.FailAt(name, value, "a name without \":\"");
     }},
    {"version", true, [](In in, Name name, const Json& value, StandardFile& to) { to.version = in.Text(name, value); }},
    {"about", false, [](In in, Name name, const Json& value, StandardFile& to) { to.about = in.Text(name, value); }},
    {"limits", true, [](In in, Name name, const Json& value, StandardFile& to) {
         for (const Json& limit : in.List(name, value))
             to.limits.push_back(ReadLimit(in, to.limits.size() + 1, limit));
     }},
};
// clang-format on

void CheckLimits(In in, const StandardFile& file, const LimitCheck& check) {
    std::set<std::tuple<int32_t, std::string, std::string, std::string>> taken;
    for (std::size_t i = 0; i < file.limits.size(); ++i) {
        const StandardLimit& limit = file.limits[i];
        const Reader place = in.Below("limit " + std::to_string(i + 1) + " (" + Shown(limit.key) + ")");
        for (int32_t test : limit.tests) {
            const std::string ofTest = "test " + PlainText(test) + ": ";
            if (const std::string fault = check(test, limit); !fault.empty())
                place.Fail(ofTest + fault, "a limit that the test can be judged by");
            if (!taken.emplace(test, limit.key, limit.unit, limit.readings).second)
                place.Fail(ofTest + "the key has a limit already", "one limit for a key and a unit");
        }
    }
}

/// Refuses deep nesting, and a name that occurs twice in an object, while the text is parsed.
class ShapeGuard {
  public:
    explicit ShapeGuard(In in) : mIn(in) {}

    bool operator()(int depth, Json::parse_event_t event, Json& parsed) {
        constexpr int kMaxDepth = 16;
        using Event = Json::parse_event_t;
        if ((event == Event::object_start || event == Event::array_start) && depth >= kMaxDepth)
            mIn.Fail("brackets nested more than 16 deep", "a standard");
        const auto level = static_cast<std::size_t>(depth);
        if (event == Event::object_start) {
            mNames.resize(level + 1);
            mNames[level].clear();
        }
        // A name lies one level below the object that it belongs to.
        if (event == Event::key && !mNames[level - 1].insert(parsed.get<std::string>()).second)
            mIn.Fail(Shown(parsed) + " twice", "each name once in an object");
        return true;
    }

  private:
    In mIn;
    std::vector<std::set<std::string>> mNames;  // by depth of the object
};

Json ParseText(std::string_view text, std::string_view fileName) {
    const Reader in(fileName, {});
    if (text.size() > kLargestFile) in.Fail("is larger than 1 MB", "a standard");
    try {
        return Json::parse(text.begin(), text.end(), ShapeGuard(in));
    } catch (const Json::parse_error& error) {
        const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(error.byte, text.size()));
        const auto line = static_cast<int32_t>(std::count(text.begin(), end, '\n') + 1);
        throw FileError({std::string(fileName), line, {}}, "broken JSON", "a standard as in docs/FORMATS.md");
    } catch (const Json::exception&) {
        in.Fail("a number that is out of range", "a standard as in docs/FORMATS.md");
    }
}

}  // namespace

bool StandardLimit::IsFor(int32_t testId) const {
    return std::find(tests.begin(), tests.end(), testId) != tests.end();
}

bool StandardFile::HasTest(int32_t testId) const {
    return std::any_of(limits.begin(), limits.end(), [=](const auto& limit) { return limit.IsFor(testId); });
}

StandardFile ParseStandard(std::string_view text, std::string_view fileName, const LimitCheck& check) {
    const Reader in(fileName, {});
    StandardFile file;
    file.file = fileName;
    in.Members(ParseText(text, fileName), kFileMembers, file);
    CheckLimits(in, file, check);
    return file;
}

StandardFile ReadStandard(const std::filesystem::path& path, const LimitCheck& check) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        throw FileError({path.string(), 0, {}}, "is no file", "a standard");
    std::ifstream stream(path, std::ios::binary);
    std::string text(kLargestFile + 1, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (!stream.is_open() || stream.bad()) throw FileError({path.string(), 0, {}}, "cannot be read");
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return ParseStandard(text, path.string(), check);
}

}  // namespace vorex

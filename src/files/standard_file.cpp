#include "files/standard_file.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <string>
#include <tuple>

#include "files/json_reader.h"
#include "foundation/limit_expression.h"
#include "foundation/number_text.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

constexpr int32_t kFileVersion = 1;
constexpr std::size_t kLargestFile = std::size_t{1} << 20U;
constexpr int32_t kMostValues = 200'000;
constexpr std::string_view kExpected = "a standard as in docs/FORMATS.md";

double ReadNumberOf(In in, const JsonValue& value) {
    // Limits are compared as singles.
    constexpr double kLargest = std::numeric_limits<float>::max();
    if (!value.IsNumber() || std::abs(value.number) > kLargest) in.Refuse(value, "a number");
    return value.number;
}

const std::string& ReadTextOf(In in, const JsonValue& value) {
    if (in.Text(value).empty()) in.Refuse(value, "a text that is not empty");
    return value.text;
}

const std::vector<JsonValue>& ReadListOf(In in, const JsonValue& value) {
    if (in.List(value).empty()) in.Refuse(value, "a list that is not empty");
    return value.items;
}

/// A member that is a text.
template <auto Field, typename Target>
void ReadTextInto(In in, const JsonValue& value, Target& to) {
    to.*Field = ReadTextOf(in, value);
}

void ReadPoints(In in, const JsonValue& value, StandardSide& to) {
    for (const JsonValue& point : ReadListOf(in, value)) {
        if (point.items.size() != 2) in.Refuse(point, "[kV, number]");
        to.byVoltage.push_back({ReadNumberOf(in, point.items[0]), ReadNumberOf(in, point.items[1])});
    }
    const bool rises =
        std::adjacent_find(to.byVoltage.begin(), to.byVoltage.end(),
                           [](const auto& a, const auto& b) { return !(a.kv < b.kv); }) == to.byVoltage.end();
    if (!rises) in.Refuse(value, "voltages that rise");
}

void ReadTests(In in, const JsonValue& value, StandardLimit& to) {
    for (const JsonValue& test : ReadListOf(in, value)) {
        std::string known;
        for (int32_t id : kMeasuringTests) known += (known.empty() ? "" : ", ") + PlainText(id);
        const auto isTest = [&](int32_t id) {
            return test.kind == JsonValue::Kind::kWhole && test.number == id;
        };
        const auto id = std::find_if(kMeasuringTests.begin(), kMeasuringTests.end(), isTest);
        if (id == kMeasuringTests.end()) in.Refuse(test, "measuring tests: " + known);
        if (std::find(to.tests.begin(), to.tests.end(), *id) != to.tests.end())
            in.Refuse(test, "each test once");
        to.tests.push_back(*id);
    }
}

constexpr MemberRow<StandardSide> kSideMembers[] = {
    {"value", [](In in, const JsonValue& value, StandardSide& to) { to.value = ReadNumberOf(in, value); }},
    {"byVoltage", ReadPoints},
    {"expression",
     [](In in, const JsonValue& value, StandardSide& to) {
         to.expression = ReadTextOf(in, value);
         if (!FindLimitExpression(to.expression)) in.Refuse(value, "one of " + LimitExpressionList());
     }},
};

template <auto Side>
void ReadSide(In in, const JsonValue& value, StandardLimit& to) {
    StandardSide& side = to.*Side;
    const JsonReader below = in.Below(value.line, value.name);
    below.Members(value, value.name, kSideMembers, side);
    if (side.value.has_value() == !side.byVoltage.empty())
        below.Refuse(value, R"(either "value" or "byVoltage")");
    if (side.expression.empty()) side.expression = RowOf(LimitExpression::kValue).text;
}

void ReadReadings(In in, const JsonValue& value, StandardLimit& to) {
    to.readings = ReadTextOf(in, value);
    if (to.readings != "R" && to.readings != "Gy") in.Refuse(value, R"("R" or "Gy")");
}

constexpr MemberRow<StandardLimit> kLimitMembers[] = {
    {"tests", ReadTests, kRequired},
    {"key", ReadTextInto<&StandardLimit::key>, kRequired},
    {"unit", ReadTextInto<&StandardLimit::unit>},
    {"low", ReadSide<&StandardLimit::low>},
    {"high", ReadSide<&StandardLimit::high>},
    {"readings", ReadReadings},
    {"authority", ReadTextInto<&StandardLimit::authority>, kRequired},
    {"clause", ReadTextInto<&StandardLimit::clause>, kRequired},
    {"note", ReadTextInto<&StandardLimit::note>},
};

/// Place of a limit in messages: its number and key.
std::string PlaceOf(std::size_t index, std::string_view key) {
    return "limit " + std::to_string(index + 1) + (key.empty() ? "" : " (" + ShownText(key) + ")");
}

void ReadLimits(In in, const JsonValue& value, StandardFile& to) {
    for (const JsonValue& item : ReadListOf(in, value)) {
        StandardLimit& limit = to.limits.emplace_back();
        limit.line = item.line;
        const JsonValue* key = item.Find("key");
        const JsonReader below = in.Below(item.line, PlaceOf(to.limits.size() - 1, key ? key->text : ""));
        below.Members(item, "the limit", kLimitMembers, limit);
        if (!limit.low.IsSet() && !limit.high.IsSet()) below.Fail("has no side", R"("low", "high" or both)");
        const bool crossed = limit.low.value && limit.high.value && *limit.low.value > *limit.high.value &&
                             limit.low.expression == limit.high.expression;
        if (crossed) below.Fail(R"("low" is above "high")", R"("low" at most "high")");
    }
}

constexpr MemberRow<StandardFile> kFileMembers[] = {
    {"standard", [](In in, const JsonValue& value, StandardFile&) { in.Version(value, kFileVersion); },
     kRequired},
    {"name",
     [](In in, const JsonValue& value, StandardFile& to) {
         to.name = ReadTextOf(in, value);
         if (to.name.find(':') != std::string::npos) in.Refuse(value, "a name without \":\"");
     },
     kRequired},
    {"version", ReadTextInto<&StandardFile::version>, kRequired},
    {"about", ReadTextInto<&StandardFile::about>},
    {"limits", ReadLimits, kRequired},
};

void CheckLimits(In in, const StandardFile& file, const LimitCheck& check) {
    std::set<std::tuple<int32_t, std::string, std::string, std::string>> taken;
    for (std::size_t i = 0; i < file.limits.size(); ++i) {
        const StandardLimit& limit = file.limits[i];
        const JsonReader place = in.Below(limit.line, PlaceOf(i, limit.key));
        for (int32_t test : limit.tests) {
            const std::string ofTest = "test " + PlainText(test) + ": ";
            if (const std::string fault = check(test, limit); !fault.empty())
                place.Fail(ofTest + fault, "a limit that the test can be judged by");
            if (!taken.emplace(test, limit.key, limit.unit, limit.readings).second)
                place.Fail(ofTest + "the key has a limit already", "one limit for a key and a unit");
        }
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
    const JsonReader in(fileName);
    StandardFile file;
    file.file = fileName;
    in.Members(in.Parse(text, kExpected, kMostValues), "the standard", kFileMembers, file);
    CheckLimits(in, file, check);
    return file;
}

StandardFile ReadStandard(const std::filesystem::path& path, const LimitCheck& check) {
    return ParseStandard(ReadWholeFile(path, "a standard", kLargestFile), path.string(), check);
}

}  // namespace vorex

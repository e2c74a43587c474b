#include "files/survey_exchange.h"

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <set>

#include "files/atomic_file.h"
#include "foundation/file_error.h"

namespace vorex {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kTexts = "set";
constexpr const char* kAnswers = "answers";
constexpr const char* kExpected = R"({"set": {address: text}, "answers": {item: answer}})";

std::vector<std::pair<std::string, std::string>> ReadPairs(const Json& file, const char* name,
                                                           const std::string& path) {
    std::vector<std::pair<std::string, std::string>> pairs;
    const auto at = file.find(name);
    if (at == file.end()) return pairs;
    if (!at->is_object())
        throw FileError({path, 0, {}}, "\"" + std::string(name) + "\" is no object", kExpected);
    for (const auto& [address, text] : at->items()) {
        if (!text.is_string() && !text.is_number())
            throw FileError({path, 0, {}}, "\"" + address + "\" is no text", "a text or a number");
        pairs.emplace_back(address, text.is_string() ? text.get<std::string>() : text.dump());
    }
    return pairs;
}

/// The parser would silently keep only the last of two values for one name.
Json::parser_callback_t RefuseTwice(const std::string& path) {
    return [&path, open = std::vector<std::set<std::string>>()](int /*depth*/, Json::parse_event_t event,
                                                                const Json& value) mutable {
        if (event == Json::parse_event_t::object_start) open.emplace_back();
        if (event == Json::parse_event_t::object_end) open.pop_back();
        if (event == Json::parse_event_t::key && !open.back().insert(value.get<std::string>()).second)
            throw FileError({path, 0, {}}, "\"" + value.get<std::string>() + "\" is given twice", kExpected);
        return true;
    };
}

Json WrittenPairs(const std::vector<std::pair<std::string, std::string>>& pairs) {
    Json object = Json::object();
    for (const auto& [address, text] : pairs) object[address] = text;
    return object;
}

}  // namespace

SurveyExchange ReadSurveyExchange(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) throw FileError({path.string(), 0, {}}, "cannot be opened", kExpected);
    const std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    return ParseSurveyExchange(text, path.string());
}

SurveyExchange ParseSurveyExchange(std::string_view text, const std::string& path) {
    try {
        const Json file = Json::parse(text, RefuseTwice(path));
        if (!file.is_object()) throw FileError({path, 0, {}}, "is no object", kExpected);
        for (const auto& [name, value] : file.items())
            if (name != kTexts && name != kAnswers)
                throw FileError({path, 0, {}}, "\"" + name + "\" is not known", kExpected);
        return {ReadPairs(file, kTexts, path), ReadPairs(file, kAnswers, path)};
    } catch (const Json::exception& error) {
        throw FileError({path, 0, {}}, error.what(), kExpected);
    }
}

void WriteSurveyExchange(const SurveyExchange& exchange, const std::filesystem::path& path) {
    Json file = Json::object();
    file[kTexts] = WrittenPairs(exchange.texts);
    file[kAnswers] = WrittenPairs(exchange.answers);
    WriteWholeFile(path, file.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
}

}  // namespace vorex

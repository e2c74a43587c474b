#include "files/survey_exchange.h"

#include <cstddef>
#include <nlohmann/json.hpp>

#include "files/atomic_file.h"
#include "files/json_reader.h"

namespace vorex {

namespace {

using Json = nlohmann::ordered_json;

using Pairs = std::vector<std::pair<std::string, std::string>>;

constexpr std::size_t kLargestFile = std::size_t{16} << 20U;
constexpr const char* kTexts = "set";
constexpr const char* kAnswers = "answers";
constexpr const char* kExpected = R"({"set": {address: text}, "answers": {item: answer}})";

template <auto Field>
void ReadPairs(In in, const JsonValue& value, SurveyExchange& to) {
    for (const JsonValue& pair : in.Object(value, kExpected)) {
        if (!pair.IsNumber() && pair.kind != JsonValue::Kind::kText) in.Refuse(pair, "a text or a number");
        (to.*Field).emplace_back(pair.name, pair.text);
    }
}

constexpr MemberRow<SurveyExchange> kMembers[] = {
    {kTexts, ReadPairs<&SurveyExchange::texts>},
    {kAnswers, ReadPairs<&SurveyExchange::answers>},
};

Json WrittenPairs(const Pairs& pairs) {
    Json object = Json::object();
    for (const auto& [address, text] : pairs) object[address] = text;
    return object;
}

}  // namespace

SurveyExchange ReadSurveyExchange(const std::filesystem::path& path) {
    return ParseSurveyExchange(ReadWholeFile(path, "entries of a survey", kLargestFile), path.string());
}

SurveyExchange ParseSurveyExchange(std::string_view text, const std::string& path) {
    const JsonReader in(path);
    SurveyExchange exchange;
    in.Members(in.Parse(text, kExpected), "the entries of a survey", kMembers, exchange);
    return exchange;
}

void WriteSurveyExchange(const SurveyExchange& exchange, const std::filesystem::path& path) {
    Json file = Json::object();
    file[kTexts] = WrittenPairs(exchange.texts);
    file[kAnswers] = WrittenPairs(exchange.answers);
    WriteWholeFile(path, file.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
}

}  // namespace vorex

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vorex {

/// What is entered into a survey, as a file of its own: addresses with their texts, items with their answers,
/// in order.
struct SurveyExchange {
    std::vector<std::pair<std::string, std::string>> texts;
    std::vector<std::pair<std::string, std::string>> answers;
};

/// Reads {"set": {address: text}, "answers": {item: answer}}; numbers count as their text. Raises FileError
/// for a file that is no such object, and for a place that is given twice.
SurveyExchange ReadSurveyExchange(const std::filesystem::path& path);
/// The same from memory; the path is for messages.
SurveyExchange ParseSurveyExchange(std::string_view text, const std::string& path);
/// Writes the same, as a whole or not at all. Raises FileError.
void WriteSurveyExchange(const SurveyExchange& exchange, const std::filesystem::path& path);

}  // namespace vorex

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vorex {

/// The entries of a survey as a separate file: addresses with their texts, items with their answers, in
/// order.
struct SurveyExchange {
    std::vector<std::pair<std::string, std::string>> texts;
    std::vector<std::pair<std::string, std::string>> answers;
};

/// Reads {"set": {address: text}, "answers": {item: answer}}; numbers count as their text. Raises FileError
/// for any other content, and for a place that is given twice.
SurveyExchange ReadSurveyExchange(const std::filesystem::path& path);
/// The same from memory; the path is for messages.
SurveyExchange ParseSurveyExchange(std::string_view text, const std::string& path);
/// Writes the same format, completely or not at all. Raises FileError.
void WriteSurveyExchange(const SurveyExchange& exchange, const std::filesystem::path& path);

}  // namespace vorex

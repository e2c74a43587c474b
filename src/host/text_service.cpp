#include "host/text_service.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <system_error>

#include "files/json_reader.h"
#include "foundation/file_error.h"
#include "foundation/utilities.h"
#include "system/system.h"

namespace vorex {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kBuiltIn = "en";
constexpr std::string_view kTableSuffix = ".json";
constexpr std::string_view kTable = "an object of text keys and texts";
constexpr std::size_t kLargestTable = std::size_t{4} << 20U;

bool IsLanguageCode(std::string_view code) {
    return !code.empty() && std::all_of(code.begin(), code.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
               c == '_';
    });
}

/// File of a language's table; empty when no folder has it.
fs::path TableOf(std::string_view code, std::span<const fs::path> folders) {
    std::error_code error;
    for (const fs::path& folder : folders) {
        fs::path file = folder / (std::string(code) + std::string(kTableSuffix));
        if (IsLanguageCode(code) && fs::is_regular_file(file, error)) return file;
    }
    return {};
}

std::string Listed(const std::vector<std::string>& codes) {
    std::string list;
    for (const std::string& code : codes) list += (list.empty() ? "" : ", ") + code;
    return list;
}

}  // namespace

std::vector<std::string> Languages(std::span<const fs::path> folders) {
    std::set<std::string> codes{std::string(kBuiltIn)};
    for (const fs::path& folder : folders) {
        std::error_code error;
        for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
            if (at->path().extension() == kTableSuffix) codes.insert(at->path().stem().string());
    }
    return {codes.begin(), codes.end()};
}

std::string SystemLanguage(std::span<const fs::path> folders) {
    const std::string locale = os::LocaleName();
    std::string code = locale.substr(0, locale.find_first_of("_-.@"));
    return TableOf(code, folders).empty() ? std::string(kBuiltIn) : code;
}

std::shared_ptr<TextService> TextService::ForLanguage(std::string_view code,
                                                      std::span<const fs::path> folders) {
    auto service = std::make_shared<TextService>();
    const fs::path table = TableOf(code, folders);
    if (table.empty()) {
        if (code == kBuiltIn) return service;
        throw FileError({}, "there is no language \"" + std::string(code) + "\"",
                        "one of " + Listed(Languages(folders)));
    }
    const JsonReader in(table.string());
    const JsonValue texts = in.Parse(ReadWholeFile(table, "a language table", kLargestTable), kTable);
    for (const JsonValue& text : in.Object(texts, kTable)) service->mTexts.emplace(text.name, in.Text(text));
    return service;
}

std::string TextService::Translate(std::string_view /*section*/, std::string_view key,
                                   TextArguments args) const {
    const auto found = mTexts.find(key);
    return found == mTexts.end() ? DefaultText(key, args) : FillPlaceholders(found->second, args);
}

std::string TextService::ServiceRecordText(int32_t /*id*/, bool /*flag*/) const {
    return {};
}

}  // namespace vorex

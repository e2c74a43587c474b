#include "host/settings_registry.h"

#include <algorithm>
#include <fstream>

#include "foundation/number_text.h"
#include "system/system.h"

namespace vorex {

namespace {

constexpr std::string_view kHostPath = "Software\\Brenlo\\vorex";
constexpr std::string_view kDecimalSign = "DecimalSign";

std::string Lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return result;
}

}  // namespace

std::filesystem::path SettingsFile() {
    const std::string named = os::Environment("VOREX_SETTINGS");
    if (!named.empty()) return named;
    std::filesystem::path folder = os::Environment("XDG_CONFIG_HOME");
    if (folder.empty()) {
        const std::string home = os::Environment("HOME");
        if (home.empty()) return {};
        folder = std::filesystem::path(home) / ".config";
    }
    return folder / "vorex" / "settings.ini";
}

SettingsRegistry::SettingsRegistry(const std::filesystem::path& file,
                                   const std::function<void(std::string_view)>& diagnose) {
    std::ifstream stream(file);
    Values* section = nullptr;
    std::string raw;
    for (int number = 1; std::getline(stream, raw); ++number) {
        std::string_view line = Trimmed(raw);
        if (number == 1 && line.starts_with("\xEF\xBB\xBF")) line.remove_prefix(3);
        if (line.empty() || line.front() == ';' || line.front() == '#') continue;
        const std::size_t sign = line.find('=');
        if (line.front() == '[' && line.back() == ']') {
            section = &mSections[Lower(Trimmed(line.substr(1, line.size() - 2)))];
        } else if (section != nullptr && sign != std::string_view::npos && sign > 0) {
            (*section)[Lower(Trimmed(line.substr(0, sign)))] = Trimmed(line.substr(sign + 1));
        } else if (diagnose) {
            diagnose(file.string() + ":" + std::to_string(number) + ": ignored: " + std::string(line));
        }
    }
}

int32_t SettingsRegistry::ValueCount(std::string_view path) const {
    const auto section = mSections.find(Lower(path));
    return section == mSections.end() ? 0 : static_cast<int32_t>(section->second.size());
}

TaggedValue SettingsRegistry::ReadValue(std::string_view path, std::string_view name) const {
    const auto section = mSections.find(Lower(path));
    if (section == mSections.end()) return {};
    const auto value = section->second.find(Lower(name));
    return value == section->second.end() ? TaggedValue() : TaggedValue(value->second);
}

char SettingsRegistry::DecimalSign() const {
    return TextOf(ReadValue(kHostPath, kDecimalSign)) == "," ? ',' : '.';
}

}  // namespace vorex

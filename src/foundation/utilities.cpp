#include "foundation/utilities.h"

#include <algorithm>
#include <vector>

#include "foundation/host_services.h"
#include "foundation/number_text.h"

namespace vorex {

namespace {

constexpr int32_t kDefaultSleepMs = 300000;
constexpr int32_t kDefaultShutdownMs = 1200000;
constexpr int32_t kMsPerMinute = 60 * 1000;

std::string TranslateWith(std::string_view textKey, TextArguments arguments, const IReportDocument* report) {
    if (report != nullptr) return report->Translate(kPlugInId, textKey, arguments);
    if (const auto& service = Services().text) return service->Translate(kPlugInId, textKey, arguments);
    return DefaultText(textKey, arguments);
}

int32_t ReadTimeOut(std::string_view name, int32_t defaultMs) {
    const double milliseconds = static_cast<double>(ReadSetting(name, 0)) * kMsPerMinute;
    constexpr double kLongest = 2147483647.0;
    const auto result = static_cast<int32_t>(std::clamp(milliseconds, -kLongest, kLongest));
    return result == 0 ? defaultMs : result;
}

/// Calls `fill` with the key and the arguments of a stored message, the last argument already in words.
template <typename Fill>
std::string FilledMessage(std::string_view stored, Fill&& fill) {
    constexpr char kSeparator = '|';
    const std::size_t digits = stored.find_first_not_of("0123456789");
    if (digits == 0 || digits == std::string_view::npos || !stored.substr(digits).starts_with("::"))
        return std::string(stored);
    const std::string_view key = stored.substr(0, stored.find(kSeparator));
    std::size_t count = 0;
    for (std::size_t at = 0; (at = key.find("%%", at)) != std::string_view::npos; at += 2) ++count;
    std::vector<std::string> arguments;
    std::string_view rest = stored.substr(key.size());
    while (!rest.empty() && arguments.size() < count) {
        rest.remove_prefix(1);
        const bool last = arguments.size() + 1 == count;
        const std::string_view argument = last ? rest : rest.substr(0, rest.find(kSeparator));
        arguments.push_back(last ? FilledMessage(argument, fill) : std::string(argument));
        rest.remove_prefix(argument.size());
    }
    return fill(key, TextArguments(arguments));
}

/// Where the next part of a composed unit begins: at digits and "::" after a "/"; npos after the last part.
std::size_t NextPart(std::string_view unit) {
    constexpr std::string_view kDigits = "0123456789";
    for (std::size_t slash = unit.find('/'); slash != std::string_view::npos;
         slash = unit.find('/', slash + 1)) {
        const std::size_t end = unit.find_first_not_of(kDigits, slash + 1);
        if (end != std::string_view::npos && end > slash + 1 && unit.substr(end).starts_with("::"))
            return slash + 1;
    }
    return std::string_view::npos;
}

template <typename TextOfPart>
std::string JoinedParts(std::string_view unit, TextOfPart&& textOf) {
    std::string words;
    for (std::size_t next = 0; next != std::string_view::npos;) {
        next = NextPart(unit);
        words += textOf(next == std::string_view::npos ? unit : unit.substr(0, next - 1));
        if (next != std::string_view::npos) unit.remove_prefix(next);
    }
    return words;
}

}  // namespace

std::string Translate(std::string_view textKey, const IReportDocument* report) {
    return TranslateWith(textKey, {}, report);
}

std::string Translate(std::string_view textKey, std::initializer_list<std::string> arguments,
                      const IReportDocument* report) {
    return TranslateWith(textKey, TextArguments(arguments.begin(), arguments.size()), report);
}

void TranslateControl(ICaptions& control) {
    if (const auto& service = Services().text) return service->TranslateControl(kPlugInId, control);
    control.ForEachCaption([](std::string& caption) { caption = DefaultText(caption, {}); });
}

std::string DefaultText(std::string_view textKey, TextArguments arguments) {
    const std::size_t separator = textKey.find("::");
    return FillPlaceholders(separator == std::string_view::npos ? textKey : textKey.substr(separator + 2),
                            arguments);
}

std::string FillPlaceholders(std::string_view text, TextArguments arguments) {
    constexpr std::string_view kMark = "%%";
    std::string filled;
    // In one pass, so that a placeholder inside an argument is not filled.
    for (std::size_t at = text.find(kMark); at != std::string_view::npos; at = text.find(kMark)) {
        const std::size_t digit = at + kMark.size();
        const std::size_t index =
            digit < text.size() ? static_cast<std::size_t>(text[digit] - '1') : arguments.size();
        const bool known = index < arguments.size();
        filled += text.substr(0, known ? at : digit);
        if (known) filled += arguments[index];
        text.remove_prefix(known ? digit + 1 : digit);
    }
    return filled += text;
}

std::string_view TitleKey(int32_t testId) {
    const TestRow* test = FindTest(testId);
    return test != nullptr ? test->title : text::kReportGroup;
}

bool IsOwnName(std::string_view name, int32_t testId) {
    return !Trimmed(name).empty() && name != DefaultText(TitleKey(testId), {});
}

std::string ElementTitle(std::string_view name, int32_t testId, const IReportDocument* report) {
    return IsOwnName(name, testId) ? std::string(name) : Translate(TitleKey(testId), report);
}

std::string DisplayText(const Choice& choice, int32_t value, const IReportDocument* report) {
    const ChoiceRow* row = FindRow(choice, value);
    if (row == nullptr) return Translate(choice.fallbackText, report);
    std::string result = Translate(row->text, report);
    if (!row->secondText.empty()) result += "*" + Translate(row->secondText, report);
    return result;
}

std::string StoredText(const Choice& choice, int32_t value, const IReportDocument* report) {
    if (report != nullptr) return DisplayText(choice, value, report);
    return PlainText(StoredOfValue(choice, value));
}

std::string StatusText(int32_t status, const IReportDocument* report) {
    switch (status) {
        case kPassed:
            return Translate(text::kPass, report);
        case kFailed:
            return Translate(text::kFail, report);
        case kNotApplicable:
            return Translate(text::kNotApplicable, report);
        default:
            return {};
    }
}

bool IsValidReading(std::string_view reading) {
    // Readings are numbers except for two words, which are looked up only when the text is no number.
    const auto digit = [](char c) { return c >= '0' && c <= '9'; };
    if (!reading.empty() && digit(reading.back()) &&
        std::all_of(reading.begin(), reading.end(), [&](char c) { return digit(c) || c == '.' || c == '-'; }))
        return true;
    return !EqualsIgnoringCase(reading, Translate(text::kOverRange)) &&
           !EqualsIgnoringCase(reading, Translate(text::kUnderRange));
}

std::string StoredMessage(std::string_view textKey, std::initializer_list<std::string> arguments) {
    std::string stored(textKey);
    for (const std::string& argument : arguments) stored.append("|").append(argument);
    return stored;
}

std::string MessageText(std::string_view stored, const IReportDocument* report) {
    return FilledMessage(stored, [&](std::string_view key, TextArguments arguments) {
        return TranslateWith(key, arguments, report);
    });
}

std::string DefaultMessageText(std::string_view stored) {
    return FilledMessage(
        stored, [](std::string_view key, TextArguments arguments) { return DefaultText(key, arguments); });
}

std::string DosimeterDoseUnit(int32_t doseUnit, const IReportDocument* report) {
    return DisplayText(kDoseUnits, doseUnit, report);
}

std::string DosimeterRateUnit(int32_t doseUnit, int32_t rateUnit, const IReportDocument* report) {
    return UnitText(DosimeterRateUnitKey(doseUnit, rateUnit), report);
}

std::string DosimeterRateUnitKey(int32_t doseUnit, int32_t rateUnit) {
    if (doseUnit == kDoseInCoulomb) return std::string(text::kUnitAmpere);
    return std::string(TextKeyOf(kDoseUnits, doseUnit)) + "/" +
           std::string(TextKeyOf(kDoseRateBases, rateUnit));
}

std::string UnitText(std::string_view unit, const IReportDocument* report) {
    return JoinedParts(unit, [&](std::string_view part) { return Translate(part, report); });
}

std::string DefaultUnitText(std::string_view unit) {
    return JoinedParts(unit, [](std::string_view part) { return DefaultText(part, {}); });
}

std::string CommentWords(std::string_view comment) {
    return std::string(comment.substr(0, comment.find(kOverrideMarker)));
}

std::string CommentLog(std::string_view comment) {
    const std::size_t at = comment.find(kOverrideMarker);
    return std::string(at == std::string_view::npos ? "" : comment.substr(at + kOverrideMarker.size()));
}

std::string LogWords(std::string_view log, const IReportDocument* report) {
    std::string words;
    ForEachPart(log, '\n', [&](std::string_view line) {
        words.append(words.empty() ? "" : "\n").append(MessageText(line, report));
    });
    return words;
}

std::string AppendComment(std::string_view comment, std::string_view text) {
    std::string result(comment);
    if (comment.find(kOverrideMarker) == std::string_view::npos) result += kOverrideMarker;
    return result.append(text);
}

int32_t ReadSetting(std::string_view name, int32_t defaultValue) {
    const auto& settings = Services().settings;
    if (!settings || settings->ValueCount(setting::kPlugInPath) == 0) return defaultValue;
    const std::string value = TextOf(settings->ReadValue(setting::kPlugInPath, name));
    return IsNumber(value) ? ReadInteger(value) : defaultValue;
}

int32_t SleepTimeOut() {
    return ReadTimeOut(setting::kSleepTimeOut, kDefaultSleepMs);
}

int32_t ShutdownTimeOut() {
    return ReadTimeOut(setting::kShutdownTimeout, kDefaultShutdownMs);
}

void FixExposureCaption() {
    constexpr std::string_view kVersionWithFixedCaption = "2.7.0";
    constexpr std::size_t kWidth = 9;
    InstallExposureCaption(std::string(text::kExposureCaption));
    const auto& settings = Services().settings;
    if (!settings) return;
    const std::string version =
        TextOf(settings->ReadValue(setting::kUninstallPath, setting::kDisplayVersion));
    if (!EqualsIgnoringCase(version, kVersionWithFixedCaption)) return;
    std::string caption = Translate(text::kExposureCaption);
    // A multi-byte character is removed as a whole: it counts until its first byte is gone.
    while (CodePoints(caption) > kWidth) caption.pop_back();
    const std::size_t length = CodePoints(caption);
    InstallExposureCaption(std::string(kWidth - std::min(kWidth, length), ' ') + caption);
}

void SetPlugIn(const std::shared_ptr<IPlugIn>& plugIn) {
    if (!plugIn || plugIn->PlugInID() != kPlugInId) return;
    InstallPlugIn(std::dynamic_pointer_cast<IZRD47500PlugIn>(plugIn));
}

std::shared_ptr<IStandard> LoadStandard(const ITestElement& element, std::string& name,
                                        std::string& version) {
    const auto& plugIn = Services().plugIn;
    return plugIn ? plugIn->LoadStandardFor(element, name, version) : nullptr;
}

}  // namespace vorex

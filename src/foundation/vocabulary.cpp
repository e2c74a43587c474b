#include "foundation/vocabulary.h"

#include <algorithm>
#include <iterator>

namespace vorex {

namespace {

// clang-format off
constexpr ChoiceRow kDetectorModeRows[] = {
    {kRadio,  text::kModeRadio,  1},
    {kMammo,  text::kModeMammo,  3},  // these two codes are swapped in the file
    {kFluoro, text::kModeFluoro, 2},
    {kDental, text::kModeDental, 4},
};
constexpr ChoiceRow kDetectorSettingRows[] = {
    {1, text::kSettingsAuto, 1}, {2, text::kSettingsManual, 2}, {3, text::kSettingsDefault, 3},
};
constexpr ChoiceRow kExposureUnitRows[] = {{kUnitR, text::kExposureUnitR, 1}, {kUnitGy, text::kExposureUnitGy, 2}};
constexpr ChoiceRow kRateTimeBaseRows[] = {
    {1, text::kPerSec, 1}, {2, text::kPerMin, 2}, {3, text::kPerHour, 3}, {4, text::kPerPulse, 4},
};
constexpr ChoiceRow kFluoroTypeRows[] = {{kContinuous, text::kFluoroCont, 1}, {kPulsed, text::kFluoroPulsed, 2}};
constexpr ChoiceRow kTimeUnitRows[] = {{kMilliseconds, text::kTimeMilliseconds, 1}, {kPulses, text::kTimePulses, 2}};
constexpr ChoiceRow kFlagRows[] = {{1, text::kTrue, 1}, {0, text::kFalse, 0}};
constexpr ChoiceRow kGeneratorSetupRows[] = {
    {kSetupMas, text::kMas, 1}, {kSetupMaTime, text::kMa, 2, text::kTime},
};
constexpr ChoiceRow kSddUnitRows[] = {
    {kInch,       text::kInches,      2},  // reversed in the file
    {kCentimeter, text::kCentimeters, 1},
};
constexpr ChoiceRow kFocalSpotRows[] = {{kLargeSpot, text::kFocalSpotLarge, 1}, {kSmallSpot, text::kFocalSpotSmall, 2}};
constexpr ChoiceRow kPressureUnitRows[] = {
    {0, text::kUnitInHg, 0}, {1, text::kUnitMmHg, 1}, {2, text::kUnitMbar, 2},
    {3, text::kUnitHpa, 3}, {4, text::kUnitFeet, 4}, {5, text::kUnitMeter, 5},
};
constexpr ChoiceRow kTemperatureUnitRows[] = {
    {0, text::kUnitCelsius, 0}, {1, text::kUnitFahrenheit, 1}, {2, text::kUnitKelvin, 2},
};
constexpr ChoiceRow kDoseUnitRows[] = {
    {0, text::kDoseUnitR, 0}, {1, text::kDoseUnitGy, 1}, {2, text::kDoseUnitCoulomb, 2},
};
constexpr ChoiceRow kDoseRateBaseRows[] = {
    {0, text::kRatePerSec, 0}, {1, text::kRatePerMin, 1}, {2, text::kRatePerHour, 2}, {3, text::kRatePerPulse, 3},
};
constexpr ChoiceRow kPelomarkModeRows[] = {{0, text::kDoseMode, 0}, {1, text::kRateMode, 1}, {2, text::kLowRateMode, 2}};

// clang-format on

template <std::size_t N>
bool Holds(const std::string_view (&list)[N], std::string_view word) {
    return std::find(std::begin(list), std::end(list), word) != std::end(list);
}

/// Checks that the values and codes of a choice are unique; otherwise it does not compile.
template <std::size_t N>
constexpr Choice ChoiceOf(const ChoiceRow (&rows)[N], std::string_view fallbackText, int32_t fallbackStored,
                          int32_t fallbackValue) {
    for (std::size_t i = 0; i < N; ++i)
        for (std::size_t j = 0; j < i; ++j)
            if (rows[i].value == rows[j].value || rows[i].stored == rows[j].stored)
                throw "a value or code has two rows";
    return {rows, fallbackText, fallbackStored, fallbackValue};
}

template <std::size_t N>
constexpr Choice FirstRowFallback(const ChoiceRow (&rows)[N]) {
    return ChoiceOf(rows, rows[0].text, rows[0].stored, rows[0].value);
}

/// Unit keys of the exposure columns: in R, in Gy.
struct UnitPair {
    std::string_view roentgen;
    std::string_view gray;
    constexpr std::string_view Of(int32_t exposureUnit) const {
        return exposureUnit == kUnitGy ? gray : roentgen;
    }
};
constexpr UnitPair kExposureKeys = {text::kUnitMilliroentgen, text::kUnitMicrogray};
constexpr UnitPair kFluoroExposureKeys = {text::kExposureUnitR, text::kUnitMilligray};
constexpr UnitPair kRateKeys = {text::kUnitMilliroentgenPerSec, text::kUnitMicrograyPerSec};
/// By rate time base, from 1.
constexpr UnitPair kFluoroRateKeys[] = {
    {text::kUnitRPerSec, text::kUnitMilligrayPerSec},
    {text::kUnitRPerMin, text::kUnitMilligrayPerMin},
    {text::kUnitRPerHour, text::kUnitMilligrayPerHour},
    {text::kUnitRPerPulse, text::kUnitMilligrayPerPulse},
};
static_assert(std::size(kFluoroRateKeys) == std::size(kRateTimeBaseRows));
constexpr UnitPair kPerMasKeys = {text::kUnitMilliroentgenPerMas, text::kUnitMicrograyPerMas};
constexpr UnitPair kFluoroPerMasKeys = {text::kUnitRPerMas, text::kUnitMilligrayPerMas};

}  // namespace

// An unknown value takes the first row; an unknown code reads as 1, except where a row says otherwise.
constinit const Choice kDetectorModes = FirstRowFallback(kDetectorModeRows);
constinit const Choice kDetectorSettings = FirstRowFallback(kDetectorSettingRows);
constinit const Choice kExposureUnits = FirstRowFallback(kExposureUnitRows);
constinit const Choice kRateTimeBases = FirstRowFallback(kRateTimeBaseRows);
constinit const Choice kFluoroTypes = FirstRowFallback(kFluoroTypeRows);
constinit const Choice kTimeUnits = FirstRowFallback(kTimeUnitRows);
constinit const Choice kFlags = ChoiceOf(kFlagRows, text::kFalse, 0, 0);
constinit const Choice kGeneratorSetups = FirstRowFallback(kGeneratorSetupRows);
constinit const Choice kSddUnits = ChoiceOf(kSddUnitRows, text::kCentimeters, 2, kCentimeter);
constinit const Choice kFocalSpots = ChoiceOf(kFocalSpotRows, text::kFocalSpotSmall, 2, kSmallSpot);
constinit const Choice kPressureUnits = FirstRowFallback(kPressureUnitRows);
constinit const Choice kTemperatureUnits = FirstRowFallback(kTemperatureUnitRows);
constinit const Choice kDoseUnits = FirstRowFallback(kDoseUnitRows);
constinit const Choice kDoseRateBases = FirstRowFallback(kDoseRateBaseRows);
constinit const Choice kPelomarkModes = FirstRowFallback(kPelomarkModeRows);

const TestRow* FindTest(int32_t testId) {
    const auto* row = std::find_if(kTestCatalogue.begin(), kTestCatalogue.end(),
                                   [&](const TestRow& r) { return r.id == testId; });
    return row == kTestCatalogue.end() ? nullptr : row;
}

bool IsMeasuringTest(int32_t testId) {
    return std::find(kMeasuringTests.begin(), kMeasuringTests.end(), testId) != kMeasuringTests.end();
}

const ChoiceRow* FindRow(const Choice& choice, int32_t value) {
    for (const ChoiceRow& row : choice.rows)
        if (row.value == value) return &row;
    return nullptr;
}

std::string_view TextKeyOf(const Choice& choice, int32_t value) {
    const ChoiceRow* row = FindRow(choice, value);
    return row != nullptr ? row->text : choice.fallbackText;
}

int32_t ValueOfStored(const Choice& choice, int32_t stored) {
    for (const ChoiceRow& row : choice.rows)
        if (row.stored == stored) return row.value;
    return choice.fallbackValue;
}

int32_t StoredOfValue(const Choice& choice, int32_t value) {
    const ChoiceRow* row = FindRow(choice, value);
    return row != nullptr ? row->stored : choice.fallbackStored;
}

std::string_view ExposureUnitKey(int32_t mode, int32_t exposureUnit) {
    return (mode == kFluoro ? kFluoroExposureKeys : kExposureKeys).Of(exposureUnit);
}

std::string_view ExposureRateUnitKey(int32_t mode, int32_t exposureUnit, int32_t timeBase) {
    if (mode != kFluoro) return kRateKeys.Of(exposureUnit);
    const int32_t known = FindRow(kRateTimeBases, timeBase) != nullptr ? timeBase : 1;
    return kFluoroRateKeys[known - 1].Of(exposureUnit);
}

std::string_view ExposurePerMasUnitKey(int32_t mode, int32_t exposureUnit) {
    return (mode == kFluoro ? kFluoroPerMasKeys : kPerMasKeys).Of(exposureUnit);
}

std::string_view TimeUnitKey(int32_t mode) {
    return mode == kFluoro ? text::kUnitSec : text::kUnitMs;
}

bool IsMaxExposureRate(std::string_view measurementKey) {
    return measurementKey.starts_with(key::kMaxExposureRate);
}

std::string LimitKeyOf(std::string_view measurementKey) {
    std::string limitKey;
    if (!measurementKey.starts_with(key::kErPrefix)) limitKey = key::kErPrefix;
    limitKey += measurementKey;
    if (limitKey.size() == measurementKey.size()) return limitKey;
    for (std::size_t at = limitKey.find(kDelimiter); at != std::string::npos; at = limitKey.find(kDelimiter))
        limitKey.erase(at, kDelimiter.size());
    return limitKey;
}

}  // namespace vorex

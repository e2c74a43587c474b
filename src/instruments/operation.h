#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace vorex {

/// The operations of the detector service that a recording can make fail, by name.
// clang-format off
inline constexpr auto kOperationNames = std::to_array<std::string_view>({
    "IsCharging",          "BatteryLevel",       "WaveformResolution", "Mode",                "Settings",
    "BeginRun",            "Poll",               "GetWaveform",        "ExposureDone",        "WakeUp",
    "Armed",               "TargetFilterCount",  "GetTargetFilters",   "DefaultTargetFilter", "ApplySettings",
    "QueryTargetFilters",  "ActivateTargetFilter", "ExposureUnit",     "ExposureRateUnit",    "FluoroType",
    "TimeUnit",            "PercentKV",          "Delay",              "IncludeDelay",        "TargetFilter",
    "SerialNumbers",       "CalibrationDates",   "DosimeterConnected", "LinkState",           "Disconnect",
    "ResetDetector",       "DetectorKind",       "FirmwareVersion",    "DosimeterAttached",   "ShowIonChamberDialog",
    "SyncDosimeter",       "MASInput",           "IonChamberName",     "IonCalFactor",        "IonCalConstant",
    "InstrumentName",
});
// clang-format on

/// One operation of the detector service: its place in the table.
enum class Operation : uint8_t {};

constexpr std::optional<Operation> FindOperation(std::string_view name) {
    const auto found = std::find(kOperationNames.begin(), kOperationNames.end(), name);
    if (found == kOperationNames.end()) return std::nullopt;
    return static_cast<Operation>(found - kOperationNames.begin());
}
constexpr std::size_t IndexOf(Operation operation) {
    return static_cast<std::size_t>(operation);
}
constexpr std::string_view NameOf(Operation operation) {
    return kOperationNames[IndexOf(operation)];
}

/// The operation with a name; an unknown name does not compile.
consteval Operation Op(std::string_view name) {
    return FindOperation(name).value();
}

}  // namespace vorex

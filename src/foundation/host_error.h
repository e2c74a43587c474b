#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vorex {

/// Codes that public operations fail with.
inline constexpr uint32_t kErrorNotAGroup = 0x8004A2C8;
inline constexpr uint32_t kErrorForeignConfiguration = 0x8004A3C2;
inline constexpr uint32_t kErrorConfigurationSave = 0x8004A3C3;
inline constexpr uint32_t kErrorResultMissing = 0x8004A3EB;
inline constexpr uint32_t kErrorResultSave = 0x8004A3EC;
inline constexpr uint32_t kErrorMeasurementKey = 0x8004A3FF;
inline constexpr uint32_t kErrorMeasurementSave = 0x8004A400;
inline constexpr uint32_t kErrorBadLimits = 0x8004A4EE;

/// How a public operation reports failure to the host.
class HostError : public std::runtime_error {
  public:
    HostError(uint32_t code, std::string source, int32_t severity, std::vector<std::string> arguments);
    uint32_t Code() const { return mCode; }
    /// Project name, ".", class name.
    const std::string& Source() const { return mSource; }
    int32_t Severity() const { return mSeverity; }
    const std::vector<std::string>& Arguments() const { return mArguments; }

  private:
    uint32_t mCode;
    std::string mSource;
    int32_t mSeverity;
    std::vector<std::string> mArguments;
};

/// Raises a host error; the class name gets the project name in front. The one place that does.
[[noreturn]] void RaiseHostError(uint32_t code, std::string_view className, int32_t severity,
                                 std::vector<std::string> arguments = {});

}  // namespace vorex

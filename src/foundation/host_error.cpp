#include "foundation/host_error.h"

#include <array>
#include <cstdio>
#include <utility>

#include "foundation/vocabulary.h"

namespace vorex {

namespace {

struct ErrorRow {
    uint32_t code;
    std::string_view message;
};

constexpr ErrorRow kMessages[] = {
    {kErrorNotAGroup, "the element tree is not a group"},
    {kErrorForeignConfiguration, "the configuration block \"PlugInData\" is missing or of another plug-in"},
    {kErrorConfigurationSave, "the configuration block could not be created"},
    {kErrorResultMissing, "the element is not a \"ResultItem\""},
    {kErrorResultSave, "the result element could not be created"},
    {kErrorMeasurementKey, "Can not load a measurement because its key is missing"},
    {kErrorMeasurementSave, "the measurement element could not be created"},
    {kErrorBadLimits, "the limit data is not an \"ExpectedResult\""},
};

std::string MessageOf(uint32_t code, const std::string& source, const std::vector<std::string>& arguments) {
    std::string message;
    for (const ErrorRow& row : kMessages)
        if (row.code == code) message = row.message;
    for (const std::string& argument : arguments) message += ": " + argument;
    std::array<char, 16> hex{};
    std::snprintf(hex.data(), hex.size(), "0x%08X", static_cast<unsigned>(code));
    return message + " (" + source + ", " + hex.data() + ")";
}

}  // namespace

HostError::HostError(uint32_t code, std::string source, int32_t severity, std::vector<std::string> arguments)
    : std::runtime_error(MessageOf(code, source, arguments)),
      mCode(code),
      mSource(std::move(source)),
      mSeverity(severity),
      mArguments(std::move(arguments)) {}

void RaiseHostError(uint32_t code, std::string_view className, int32_t severity,
                    std::vector<std::string> arguments) {
    throw HostError(code, std::string(kProjectName) + "." + std::string(className), severity,
                    std::move(arguments));
}

}  // namespace vorex

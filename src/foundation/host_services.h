#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "foundation/detector_service.h"
#include "foundation/host_contract.h"
#include "foundation/platform.h"

namespace vorex {

/// What the host provides, installed once at start. Members left empty make the feature unavailable: texts
/// fall back on their defaults, settings on theirs, the diagnostic log is off.
struct HostServices {
    std::shared_ptr<ITextService> text;
    std::shared_ptr<IMeasurementCodec> codec;
    std::shared_ptr<IValueFormatter> formatter;
    std::shared_ptr<ISettingsRegistry> settings;
    std::shared_ptr<IPlatform> platform;

    std::function<std::shared_ptr<ITestElementBase>()> createElementBase;
    std::function<std::shared_ptr<ITestContainerBase>()> createContainerBase;
    std::function<std::shared_ptr<IStandardCollection>()> createStandards;
    std::function<std::shared_ptr<IStandard>(std::string_view name, std::string_view version)> createStandard;
    std::function<std::shared_ptr<IExpectedResult>()> createExpectedResult;
    std::function<std::shared_ptr<IServiceRecord>()> createServiceRecord;
    std::function<std::shared_ptr<ITestGuideConfig>()> createTestGuideConfig;
    std::function<std::shared_ptr<IDetectorService>()> createDetectorService;
    std::function<std::shared_ptr<IDetectorLink>()> createDetectorLink;

    /// Receives a line of the diagnostic log.
    std::function<void(std::string_view line)> log;
    /// Receives a line of the trace channel.
    std::function<void(std::string_view line)> trace;
    /// Decimal sign of the system, "." or ",".
    char decimalSign = '.';
};

const HostServices& Services();
/// [before any object of the library is created]
void InstallServices(HostServices services);

/// Writes a line to the diagnostic log, if there is one.
void LogDiagnostic(std::string_view line);

}  // namespace vorex

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "foundation/class_registry.h"
#include "foundation/detector_service.h"
#include "foundation/host_contract.h"
#include "foundation/platform.h"
#include "foundation/text_keys.h"

namespace vorex {

/// A part of an exposure that a result has stored: the row of one instrument, or a waveform.
struct StoredExposure {
    const ITestElement& element;
    uint8_t exposure = 0;  ///< from 1
    int32_t source = 0;  ///< instrument of the row, as `CResultCommon::StoreResult` counts; 0 for a waveform
    std::string_view row;  ///< its fields joined by ","; empty for a waveform
    uint8_t waveform = 0;  ///< type of the waveform; 0 for a row
};

/// What the host provides, installed once at start. An empty member turns its feature off: texts and settings
/// fall back to their defaults, the diagnostic log is off.
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
    /// The host's limit editor "VorexView.XLimitView": an `ICustomControl` that is an `ILimitView`.
    std::function<std::shared_ptr<LibraryObject>()> createLimitView;
    std::function<std::shared_ptr<IDetectorService>()> createDetectorService;
    std::function<std::shared_ptr<IDetectorLink>()> createDetectorLink;

    /// Called for each part of an exposure that a result stores, before the guide shows it, so that it can be
    /// saved first.
    std::function<void(const StoredExposure&)> exposureStored;
    /// Why the instruments stopped, in words; asked when a run finds the link lost.
    std::function<std::string()> instrumentFault;
    /// Name and version of the program, which results record.
    std::string program;
    /// Receives a line of the diagnostic log.
    std::function<void(std::string_view line)> log;
    /// Receives a line of the trace channel.
    std::function<void(std::string_view line)> trace;
    /// Decimal sign of the system, "." or ",".
    char decimalSign = '.';

    /// Caption of an exposure: a text key, or, for one version of the host, a text of nine characters.
    std::string exposureCaption = std::string(text::kExposureCaption);
    /// The registered plug-in object; standards are loaded from it.
    std::shared_ptr<IZRD47500PlugIn> plugIn;
};

const HostServices& Services();
/// [before any object of the library is created]
void InstallServices(HostServices services);
/// The two services that the plug-in object supplies when the application starts.
void InstallPlugIn(std::shared_ptr<IZRD47500PlugIn> plugIn);
void InstallExposureCaption(std::string caption);

/// Writes a line to the diagnostic log, if there is one.
void LogDiagnostic(std::string_view line);

}  // namespace vorex

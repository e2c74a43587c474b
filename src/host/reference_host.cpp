#include "host/reference_host.h"

#include <fstream>
#include <string_view>

#include "foundation/file_error.h"
#include "host/element_base.h"
#include "host/measurement_codec.h"
#include "host/service_record.h"
#include "host/settings_registry.h"
#include "host/standards.h"
#include "host/test_guide_config.h"
#include "host/text_service.h"
#include "system/system.h"

namespace vorex {

namespace {

using Log = std::function<void(std::string_view line)>;

/// Appends lines to the file of VOREX_LOG; empty when there is none.
Log DiagnosticLog() {
    const std::string name = os::Environment("VOREX_LOG");
    if (name.empty()) return {};
    auto file = std::make_shared<std::ofstream>(name, std::ios::app);
    if (!*file)
        throw FileError({name, 0, {}}, "the diagnostic log cannot be written",
                        "a file that VOREX_LOG may name");
    return [file](std::string_view line) { *file << line << '\n' << std::flush; };
}

}  // namespace

HostServices MakeReferenceHost(const ReferenceHostOptions& options) {
    HostServices services;
    services.log = DiagnosticLog();
    services.text = TextService::ForLanguage(options.language, options.languageFolders);
    services.codec = std::make_shared<MeasurementCodec>();
    services.formatter = std::make_shared<ValueFormatter>();
    const auto settings = std::make_shared<SettingsRegistry>(SettingsFile(), services.log);
    services.settings = settings;
    services.decimalSign = settings->DecimalSign();
    services.platform = options.platform;
    services.createElementBase = [] { return std::make_shared<TestElementBase>(); };
    services.createContainerBase = [] { return std::make_shared<TestContainerBase>(); };
    services.createStandards = [] { return std::make_shared<StandardCollection>(); };
    services.createStandard = [](std::string_view name, std::string_view version) {
        return std::make_shared<Standard>(name, version);
    };
    services.createExpectedResult = [] { return std::make_shared<ExpectedResult>(); };
    services.createServiceRecord = [] { return std::make_shared<ServiceRecord>(); };
    services.createTestGuideConfig = [] { return std::make_shared<TestGuideConfig>(); };
    services.createDetectorService = options.createDetectorService;
    services.createDetectorLink = options.createDetectorLink;
    services.exposureStored = options.exposureStored;
    services.instrumentFault = options.instrumentFault;
    services.program = options.program;
    return services;
}

}  // namespace vorex

#include "foundation/host_services.h"

#include <utility>

namespace vorex {

namespace {

HostServices& Installed() {
    static HostServices services;
    return services;
}

}  // namespace

const HostServices& Services() {
    return Installed();
}

void InstallServices(HostServices services) {
    Installed() = std::move(services);
}

void InstallPlugIn(std::shared_ptr<IZRD47500PlugIn> plugIn) {
    Installed().plugIn = std::move(plugIn);
}

void InstallExposureCaption(std::string caption) {
    Installed().exposureCaption = std::move(caption);
}

void LogDiagnostic(std::string_view line) {
    if (Services().log) Services().log(line);
}

}  // namespace vorex

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

void LogDiagnostic(std::string_view line) {
    if (Services().log) Services().log(line);
}

}  // namespace vorex

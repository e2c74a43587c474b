#pragma once

#include "foundation/host_services.h"

namespace vorex {

/// Installs the host's services and registers the library's classes. [once, before any object of the library
/// is created]
void InstallLibrary(HostServices services);

}  // namespace vorex

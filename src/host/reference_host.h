#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/host_services.h"

namespace vorex {

/// The choices of a program for its host; everything else is the same for all programs.
struct ReferenceHostOptions {
    std::string language = "en";
    /// Folders that may hold language tables; the first that has one wins.
    std::vector<std::filesystem::path> languageFolders;
    std::shared_ptr<IPlatform> platform;
    std::function<std::shared_ptr<IDetectorService>()> createDetectorService;
    std::function<std::shared_ptr<IDetectorLink>()> createDetectorLink;
    std::function<void(const StoredExposure&)> exposureStored;
    std::function<std::string()> instrumentFault;
    std::string program;  ///< its name and version
};

/// The services of the reference host: texts, value forms, settings, elements, standards. The diagnostic log
/// goes to the file that VOREX_LOG names. Raises FileError for a language that does not exist and for a log
/// that cannot be written.
HostServices MakeReferenceHost(const ReferenceHostOptions& options);

}  // namespace vorex

#include "app/session.h"

#include <memory>
#include <utility>

#include "app/data_folders.h"
#include "host/headless_platform.h"
#include "library.h"
#include "version.h"

namespace vorex {

Session::Session(ReferenceHostOptions options) : mLanguage(options.language) {
    options.languageFolders = DataFolders(kLanguages);
    options.program = "vorex " + std::string(kProgramVersion);
    if (!options.platform) options.platform = std::make_shared<HeadlessPlatform>();
    InstallLibrary(MakeReferenceHost(options));
    mRegistration.RegisterApp();
}

Session::~Session() {
    mRegistration.CloseApp();
    InstallServices({});
}

}  // namespace vorex

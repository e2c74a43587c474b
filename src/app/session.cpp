#include "app/session.h"

#include <filesystem>
#include <utility>
#include <vector>

#include "app/console.h"
#include "app/data_folders.h"
#include "app/limit_fit.h"
#include "app/listener.h"
#include "execution/test_common.h"
#include "host/headless_platform.h"
#include "host/reference_host.h"
#include "library.h"
#include "version.h"

namespace vorex {

Session::Session(SessionOptions options)
    : mLanguage(std::move(options.language)),
      mPlatform(std::make_shared<SessionPlatform>(options.platform ? std::move(options.platform)
                                                                   : std::make_shared<HeadlessPlatform>())) {
    InstallLibrary(MakeServices());
    mRegistration.RegisterApp();
}

Session::~Session() {
    mRegistration.CloseApp();
    InstallServices({});
}

HostServices Session::MakeServices() {
    ReferenceHostOptions host;
    host.language = mLanguage;
    host.languageFolders = DataFolders(kLanguages);
    host.program = "vorex " + std::string(kProgramVersion);
    host.platform = mPlatform;
    host.createDetectorService = [this] { return mRun ? mRun->Instruments().CreateService() : nullptr; };
    host.createDetectorLink = [this] { return mRun ? mRun->Instruments().CreateLink() : nullptr; };
    host.instrumentFault = [this] { return mRun ? mRun->Instruments().LatestFault() : std::string(); };
    host.exposureStored = [this](const StoredExposure& stored) {
        if (mRun != nullptr) mRun->Stored(stored);
    };
    return MakeReferenceHost(host);
}

void Session::Attach(IRunUnderWay* run) {
    mRun = run;
    mPlatform->Watch(run);
}

StandardsLibrary& Session::Standards(IAppListener& listener) {
    if (mStandards) return *mStandards;
    std::vector<std::filesystem::path> folders = DataFolders(kStandards);
    if (std::filesystem::path own = UserStandardsFolder(); !own.empty()) folders.push_back(std::move(own));
    const auto diagnose = [&](const std::string& fault) {
        listener.Faulted({FaultSource::kStandard, 0, fault});
    };
    // What does not fit an element is left out of its standard, as where the limits are typed.
    const auto fit = [](const StandardLimit& limit, const ITestElement& element) {
        const auto config = std::dynamic_pointer_cast<CConfigCommon>(element.Configuration());
        return config ? FitLimit(limit, *config, [](const std::string&) {}) : std::vector<StandardLimit>();
    };
    mStandards = std::make_shared<StandardsLibrary>(folders, LimitFault, diagnose, fit);
    GGlobals().SetPlugInPointer(mStandards);
    return *mStandards;
}

std::optional<Technique> Session::AtConsole() const {
    const IModalWindow* const guide = mPlatform->Window();
    if (guide == nullptr) return std::nullopt;
    const auto test = std::dynamic_pointer_cast<CTestCommon>(guide->Element());
    const auto config = test ? std::dynamic_pointer_cast<CConfigCommon>(test->Configuration()) : nullptr;
    if (!config) return std::nullopt;
    constexpr uint64_t kRowsOfATest = 256;
    const uint8_t row = test->ExposureRow();
    Technique technique = TechniqueOf(*config, row);
    technique.exposure = static_cast<uint64_t>(static_cast<uint32_t>(test->ID())) * kRowsOfATest + row;
    return technique;
}

}  // namespace vorex

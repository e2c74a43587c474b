#pragma once

#include <memory>
#include <optional>
#include <string>

#include "app/session_platform.h"
#include "files/standards_library.h"
#include "foundation/host_services.h"
#include "foundation/registration.h"
#include "instruments/instruments.h"
#include "instruments/technique.h"

namespace vorex {

class IAppListener;

/// The run that is under way, for the services of its session.
class IRunUnderWay : public IPlatformWatcher {
  public:
    virtual IInstruments& Instruments() = 0;
    virtual void Stored(const StoredExposure& stored) = 0;
};

struct SessionOptions {
    std::string language = "en";
    std::shared_ptr<IPlatform> platform;  ///< empty: without a window, in virtual time
};

/// A program's session with the library: installs library and reference host once, for all files that it
/// opens. Only one at a time in a process; its destructor uninstalls everything.
class Session {
  public:
    /// Raises FileError for a language that does not exist and for a log that cannot be written.
    explicit Session(SessionOptions options = {});
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Code of the session's language.
    const std::string& Language() const { return mLanguage; }
    SessionPlatform& Platform() { return *mPlatform; }

    /// The shipped standards and the user's own, read at the first call. One that cannot be read is a fault.
    StandardsLibrary& Standards(IAppListener& listener);

    /// The settings of the X-ray unit for the next exposure, as the open guide requests them; empty while
    /// none is open.
    std::optional<Technique> AtConsole() const;

    /// Not owned; null for none.
    void Attach(IRunUnderWay* run);

  private:
    HostServices MakeServices();

    std::string mLanguage;
    std::shared_ptr<SessionPlatform> mPlatform;
    IRunUnderWay* mRun = nullptr;
    std::shared_ptr<StandardsLibrary> mStandards;
    CRegisterDll mRegistration;
};

}  // namespace vorex

#pragma once

#include <string>

#include "foundation/registration.h"
#include "host/reference_host.h"

namespace vorex {

/// Installs library and reference host; one at a time in a process. Its end takes everything back.
class Session {
  public:
    /// `languageFolders` and `program` of the options are filled in, and so is an empty platform. Raises
    /// FileError for a language that does not exist.
    explicit Session(ReferenceHostOptions options);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Code of the language of its texts.
    const std::string& Language() const { return mLanguage; }

  private:
    std::string mLanguage;
    CRegisterDll mRegistration;
};

}  // namespace vorex

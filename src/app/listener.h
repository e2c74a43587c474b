#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/verdict_change.h"
#include "foundation/host_contract.h"
#include "foundation/host_services.h"

namespace vorex {

enum class FaultSource {
    kGuide,        ///< a message that the guide showed to the person
    kInstruments,  ///< a fault of an instrument
    kPlatform,     ///< a window was closed because no event could come
    kJournal,      ///< the journal of the run is not complete
    kStandard,     ///< a standard that cannot be read, or a limit that fits no element
    kSurvey,       ///< a survey that cannot be judged completely
};

/// A fault that did not end the work on the file.
struct AppFault {
    FaultSource source;
    int32_t element = 0;  ///< ID of the element that it is about; 0 for none
    std::string text;
};

/// Notifications for a program that works on a file. The defaults do nothing.
class IAppListener {
  public:
    virtual ~IAppListener() = default;
    virtual void ElementBegins(const ITestElement& /*element*/) {}
    /// The result of the element is stored.
    virtual void ElementEnded(const ITestElement& /*element*/) {}
    /// An instrument's row or a waveform is stored, and is in the journal if there is one; the guide does not
    /// show it yet.
    virtual void ExposureStored(const StoredExposure& /*stored*/) {}
    virtual void VerdictChanged(const VerdictChange& /*change*/) {}
    virtual void Faulted(const AppFault& /*fault*/) {}
    /// A resumed run has reached the end of its journal: from now on everything is new.
    virtual void CaughtUp() {}
    /// The answer to a question of the guide; nothing lets the platform ask the person.
    virtual std::optional<bool> Asked(std::string_view /*question*/) { return std::nullopt; }
};

}  // namespace vorex

#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/detector_service.h"

namespace vorex {

/// The settings last sent to the instruments.
struct SentSettings {
    std::string mode;
    std::string settings;
    int32_t exposureUnit = 0;
    int32_t exposureRateUnit = 0;
    int32_t fluoroType = 0;
    int32_t timeUnit = 0;
    uint8_t percentKV = 0;
    int16_t delay = 0;
    bool includeDelay = false;
    std::string targetFilter;
    bool masShunt = false;
    std::optional<DosimeterSettings> dosimeter;  ///< empty until the first `SyncDosimeter`
    int32_t selectedKind = 0;                    ///< of the link
};

/// The instruments of a program. All services and links that are made use these.
class IInstruments {
  public:
    virtual ~IInstruments() = default;
    virtual std::shared_ptr<IDetectorService> CreateService() = 0;
    virtual std::shared_ptr<IDetectorLink> CreateLink() = 0;
    /// The faults, one text each, for the operator.
    virtual const std::vector<std::string>& Faults() const = 0;
    /// The latest fault without its place; empty when there was none.
    virtual std::string LatestFault() const = 0;
    /// True when nothing more can be measured: the link was lost, or the recording is used up, while
    /// exposures were awaited. After a single failed operation the run can be tried again.
    virtual bool Ended() const = 0;
};

}  // namespace vorex

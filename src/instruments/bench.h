#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/detector_service.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "instruments/instruments.h"
#include "instruments/operation.h"

namespace vorex {

/// The identity of the instruments.
struct InstrumentIdentity {
    int32_t kind = kNoDetector;
    std::string serialNumbers;  ///< empty: the instruments are unknown, so none is noted
    std::string calibrationDates;
    std::vector<std::string> instrumentNames;
    uint8_t battery = 100;  ///< percent
    bool charging = false;
    std::vector<std::string> targetFilters;
    std::string defaultTargetFilter;  ///< absent: the first of the target/filters
    std::string ionChamberName;
    std::string ionChamberFactor;
    std::string ionChamberConstant;
    int32_t firmware = 0;
    int32_t syncStatus = 0;
};

/// The instruments behind a service: all services and links of a program use one bench.
///
/// A service passes on `Poll` and `ExposureDone` only while it is armed and has begun a run; at any other
/// time it only answers whether the link is alive.
class Bench {
  public:
    virtual ~Bench() = default;

    /// Every operation of a service calls this first, and may fail here.
    virtual void Enter(Operation operation) = 0;
    virtual const InstrumentIdentity& Identity() = 0;
    virtual bool Alive() const = 0;
    virtual void BeginRun() = 0;
    virtual bool Poll(DetectorEvents& events, int32_t sleepTimeOut) = 0;
    virtual bool ExposureDone() = 0;
    virtual std::string GetWaveform(float length, int32_t points, uint8_t type) = 0;
    virtual void WakeUp() {}
    virtual int32_t SyncDosimeter(DosimeterSettings& settings) = 0;
    virtual void OpenLink() = 0;

    SentSettings sent;
    bool linkOpen = false;
    float waveformResolution = 0;
    /// Notes a fault, which may be a stored message, and its place in the file of the instruments.
    void NoteFault(const std::string& place, const std::string& text) {
        faults.push_back(place + ": " + DefaultMessageText(text));
        latestFault = text;
    }

    std::vector<std::string> faults;
    std::string latestFault;  ///< without its place
    bool ended = false;       ///< nothing more can be measured
};

/// A service and a link that use a bench and keep it alive.
std::shared_ptr<IDetectorService> MakeService(std::shared_ptr<Bench> bench);
std::shared_ptr<IDetectorLink> MakeLink(std::shared_ptr<Bench> bench);

}  // namespace vorex

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "instruments/instruments.h"
#include "instruments/room.h"
#include "instruments/technique.h"

namespace vorex {

class SimulatedBench;

/// Instruments in a simulated X-ray room.
///
/// While a service runs, exposure follows exposure: the operator gets ready for some polls, sets the X-ray
/// unit as the console says, and the unit makes the exposure. It is ready when `ExposureDone` reads so, and
/// the poll after that delivers it. In fluoroscopy the pedal is held for some seconds, with the stop button
/// enabled.
///
/// The same seed gives the same readings on every machine. What is random about an exposure depends on the
/// seed, on which exposure of which test it is, and on how often that was taken: neither a waveform that is
/// fetched nor a test that is skipped changes another reading. Only what a fault of the room accumulates (a
/// timer that drifts, a control that swings) goes on from exposure to exposure.
class SimulatedInstruments : public IInstruments {
  public:
    SimulatedInstruments(Room room, uint64_t seed, Console console);

    std::shared_ptr<IDetectorService> CreateService() override;
    std::shared_ptr<IDetectorLink> CreateLink() override;
    const SentSettings& Sent() const override;
    const std::vector<std::string>& Faults() const override;
    std::string LatestFault() const override;
    bool Ended() const override;

  private:
    std::shared_ptr<SimulatedBench> mBench;  // services and links keep it alive too
};

}  // namespace vorex

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
/// During a run, exposure follows exposure: the operator prepares for some polls and sets the X-ray unit as
/// the console says, and the unit makes the exposure. `ExposureDone` reports it, and the next poll delivers
/// it. In fluoroscopy the pedal is held for some seconds, with the stop button enabled.
///
/// The same seed gives the same readings on every machine. The random part of an exposure depends on the
/// seed, on the test and the number of the exposure, and on how often it was repeated; so fetching a waveform
/// or skipping a test changes no other reading. Only the accumulating faults of a room (a drifting timer, a
/// swinging control) carry over from exposure to exposure.
class SimulatedInstruments : public IInstruments {
  public:
    SimulatedInstruments(Room room, uint64_t seed, Console console);

    std::shared_ptr<IDetectorService> CreateService() override;
    std::shared_ptr<IDetectorLink> CreateLink() override;
    const std::vector<std::string>& Faults() const override;
    std::string LatestFault() const override;
    bool Ended() const override;

  private:
    std::shared_ptr<SimulatedBench> mBench;  // services and links keep it alive too
};

}  // namespace vorex

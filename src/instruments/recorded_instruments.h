#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "instruments/instruments.h"
#include "instruments/recording.h"

namespace vorex {

class RecordedRoom;

/// Instruments that answer what a recording says.
///
/// The recording goes on in the polls of a service that is armed and has begun a run, a line a poll; the
/// polls of any other service answer only whether the link is alive. An exposure waits until its service has
/// read `ExposureDone`; the poll after that raises its readings, then announces its waveforms. "throws"
/// costs no poll: it holds from the moment the line before it is done, the first lines of a file from the
/// start.
///
/// While the link is down nothing is heard: lines pass, a poll each, until the link is back. It comes back by
/// a poll, or by opening the link again when that is the next line. Where the lines are used up, the poll of
/// an armed service answers as after a lost link.
class RecordedInstruments : public IInstruments {
  public:
    explicit RecordedInstruments(Recording recording);

    std::shared_ptr<IDetectorService> CreateService() override;
    std::shared_ptr<IDetectorLink> CreateLink() override;
    const SentSettings& Sent() const override;
    const std::vector<std::string>& Faults() const override;
    std::string LatestFault() const override;
    bool Ended() const override;

    int32_t ExposuresDelivered() const;
    /// From now on keeps the names of the operations as they are called, those that fail included.
    void LogCalls();
    const std::vector<std::string_view>& Calls() const;

  private:
    std::shared_ptr<RecordedRoom> mRoom;  // services and links keep it alive too
};

}  // namespace vorex

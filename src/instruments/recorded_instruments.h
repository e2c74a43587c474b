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

/// Instruments that answer from a recording.
///
/// The polls of a service that is armed and has begun a run advance the recording, one line per poll; the
/// polls of any other service only answer whether the link is alive. An exposure waits until its service has
/// read `ExposureDone`; the next poll raises its readings, then announces its waveforms. "throws" takes no
/// poll: it applies as soon as the line before it is done, at the beginning of a file from the start.
///
/// While the link is down, lines pass without events, one per poll, until the link is back. It comes back in
/// a poll, or when the link is opened again and that is the next line. After the last line, the poll of an
/// armed service answers as after a lost link.
class RecordedInstruments : public IInstruments {
  public:
    explicit RecordedInstruments(Recording recording);

    std::shared_ptr<IDetectorService> CreateService() override;
    std::shared_ptr<IDetectorLink> CreateLink() override;
    const SentSettings& Sent() const;
    const std::vector<std::string>& Faults() const override;
    std::string LatestFault() const override;
    bool Ended() const override;

    int32_t ExposuresDelivered() const;

  private:
    std::shared_ptr<RecordedRoom> mRoom;  // services and links keep it alive too
};

}  // namespace vorex

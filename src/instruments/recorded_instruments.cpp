#include "instruments/recorded_instruments.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <deque>
#include <stdexcept>
#include <utility>

#include "foundation/text_keys.h"
#include "foundation/utilities.h"
#include "instruments/bench.h"
#include "instruments/operation.h"

namespace vorex {

namespace {

struct SignalRow {
    RecordedEvent event;
    Event<bool> DetectorEvents::*signal;
};

constexpr SignalRow kSignals[] = {
    {RecordedEvent::kStopButton, &DetectorEvents::vti_EnableStopButton},
    {RecordedEvent::kSensorReset, &DetectorEvents::vti_DisplaySensorResetMsg},
    {RecordedEvent::kZeroing, &DetectorEvents::vti_ZeroingmAs},
    {RecordedEvent::kWakeUp, &DetectorEvents::vti_AddWakeUpButton},
};

}  // namespace

/// What all services and links share: the recording, the position in it, and the settings that were sent.
class RecordedRoom : public Bench {
  public:
    explicit RecordedRoom(Recording given) : recording(std::move(given)) { TakeFreeLines(); }

    /// Here a "throws" line of the recording makes an operation fail.
    void Enter(Operation operation) override {
        std::deque<int32_t>& lines = mThrows[IndexOf(operation)];
        if (lines.empty()) return;
        const std::string text = std::string(NameOf(operation)) + " failed";
        Fault(text, lines.front());
        lines.pop_front();
        throw std::runtime_error(text);
    }

    const InstrumentIdentity& Identity() override { return recording; }
    bool Alive() const override { return mAlive; }
    bool Poll(DetectorEvents& events, int32_t sleepTimeOut) override;
    /// Announces the next exposure, once.
    bool ExposureDone() override;
    void BeginRun() override {
        mAnnounced = false;
        mLastExposure = nullptr;
    }
    std::string GetWaveform(float length, int32_t points, uint8_t type) override;
    int32_t SyncDosimeter(DosimeterSettings&) override { return recording.syncStatus; }
    void OpenLink() override;

    const Recording recording;
    int32_t delivered = 0;

  private:
    const RecordedLine* Head() const {
        return mNext < recording.lines.size() ? &recording.lines[mNext] : nullptr;
    }
    void TakeHead() {
        ++mNext;
        mQuietPolls = 0;
        mAnnounced = false;
    }
    /// Processes the lines that take no poll, so that a "throws" applies as soon as the line before it is
    /// done.
    void TakeFreeLines();
    void Happen(const RecordedLine& line, DetectorEvents& events);
    void Deliver(const RecordedExposure& exposure, DetectorEvents& events);
    void ChangeLink(const RecordedLine& line);
    /// Ends the measurement: nothing more can be measured.
    void End(const std::string& text, int32_t line) {
        ended = true;
        Fault(text, line);
    }
    void Fault(const std::string& text, int32_t line) {
        NoteFault(recording.file + (line > 0 ? ":" + std::to_string(line) : ""), text);
    }

    std::size_t mNext = 0;
    int32_t mQuietPolls = 0;                          // of the next line
    bool mAnnounced = false;                          // ExposureDone has reported the next exposure
    const RecordedExposure* mLastExposure = nullptr;  // whose waveforms can be fetched
    bool mAlive = true;
    bool mUsedUp = false;
    std::array<std::deque<int32_t>, kOperationNames.size()> mThrows;  // lines, by operation
};

namespace {

bool CostsNoPoll(const RecordedLine& line) {
    return line.event == RecordedEvent::kThrows || (line.event == RecordedEvent::kQuiet && line.number == 0);
}

}  // namespace

void RecordedRoom::TakeFreeLines() {
    for (const RecordedLine* head = Head(); head && CostsNoPoll(*head); head = Head()) {
        if (head->event == RecordedEvent::kThrows)
            mThrows[static_cast<std::size_t>(head->number)].push_back(head->line);
        TakeHead();
    }
}

bool RecordedRoom::Poll(DetectorEvents& events, int32_t) {
    TakeFreeLines();
    const RecordedLine* head = Head();
    if (!head) {
        if (mAlive && !std::exchange(mUsedUp, true))
            End(StoredMessage(text::kReasonUsedUp, {std::to_string(delivered)}), 0);
        return false;
    }
    if (head->event == RecordedEvent::kQuiet && ++mQuietPolls < head->number) return mAlive;
    if (head->event == RecordedEvent::kExposure && mAlive && !mAnnounced) return true;
    // The line is taken before its events are raised, because a handler may pump events and so call this
    // again.
    TakeHead();
    Happen(*head, events);
    TakeFreeLines();
    return mAlive;
}

void RecordedRoom::Happen(const RecordedLine& line, DetectorEvents& events) {
    if (line.event == RecordedEvent::kLink) return ChangeLink(line);
    if (!mAlive) return;
    if (line.event == RecordedEvent::kExposure)
        return Deliver(recording.exposures[static_cast<std::size_t>(line.number)], events);
    const bool on = line.number != 0;
    // An exposure begins: the waveforms of the previous one are no longer available.
    if (line.event == RecordedEvent::kStopButton && on) mLastExposure = nullptr;
    for (const SignalRow& row : kSignals)
        if (row.event == line.event) (events.*row.signal).Raise(on);
}

void RecordedRoom::Deliver(const RecordedExposure& exposure, DetectorEvents& events) {
    mLastExposure = &exposure;
    ++delivered;
    if (exposure.detector) events.VTI_DataReady.Raise(*exposure.detector);
    if (exposure.dosimeter) events.vti_TestSWDataReady.Raise(*exposure.dosimeter);
    if (exposure.mas) events.vti_TestmAsDataReady.Raise(*exposure.mas);
    for (const RecordedWaveform& waveform : exposure.waveforms)
        events.vti_CheckExposureWaveform.Raise(waveform.type);
}

void RecordedRoom::ChangeLink(const RecordedLine& line) {
    const bool wasAlive = std::exchange(mAlive, line.number != 0);
    if (!wasAlive || mAlive) return;
    linkOpen = false;
    mLastExposure = nullptr;
    End(std::string(text::kReasonLinkLost), line.line);
}

bool RecordedRoom::ExposureDone() {
    const RecordedLine* head = Head();
    if (!head || head->event != RecordedEvent::kExposure || !mAlive) return false;
    return !std::exchange(mAnnounced, true);
}

std::string RecordedRoom::GetWaveform(float, int32_t, uint8_t type) {
    if (!mLastExposure) return {};
    for (const RecordedWaveform& waveform : mLastExposure->waveforms) {
        if (waveform.type != type) continue;
        waveformResolution = waveform.resolution;
        return waveform.samples;
    }
    return {};
}

void RecordedRoom::OpenLink() {
    const RecordedLine* head = Head();
    if (!mAlive && head && head->event == RecordedEvent::kLink) {
        TakeHead();
        ChangeLink(*head);
        TakeFreeLines();
    }
    linkOpen = mAlive;
}

RecordedInstruments::RecordedInstruments(Recording recording)
    : mRoom(std::make_shared<RecordedRoom>(std::move(recording))) {}

std::shared_ptr<IDetectorService> RecordedInstruments::CreateService() {
    return MakeService(mRoom);
}
std::shared_ptr<IDetectorLink> RecordedInstruments::CreateLink() {
    return MakeLink(mRoom);
}
const SentSettings& RecordedInstruments::Sent() const {
    return mRoom->sent;
}
const std::vector<std::string>& RecordedInstruments::Faults() const {
    return mRoom->faults;
}
std::string RecordedInstruments::LatestFault() const {
    return mRoom->latestFault;
}
bool RecordedInstruments::Ended() const {
    return mRoom->ended;
}
int32_t RecordedInstruments::ExposuresDelivered() const {
    return mRoom->delivered;
}

}  // namespace vorex

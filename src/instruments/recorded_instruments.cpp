#include "instruments/recorded_instruments.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <deque>
#include <stdexcept>
#include <utility>

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

/// What all services and links share: the recording, how far it has come, and what was sent.
class RecordedRoom {
  public:
    explicit RecordedRoom(Recording given) : recording(std::move(given)) { TakeFreeLines(); }

    /// Every operation comes through here first; a "throws" of the recording fails it here.
    RecordedRoom& Enter(Operation operation) {
        if (logCalls) calls.push_back(NameOf(operation));
        std::deque<int32_t>& lines = mThrows[IndexOf(operation)];
        if (lines.empty()) return *this;
        const std::string text = std::string(NameOf(operation)) + " failed";
        Fault(text, lines.front());
        lines.pop_front();
        throw std::runtime_error(text);
    }

    bool Alive() const { return mAlive; }
    bool Poll(DetectorEvents& events);
    /// Announces the exposure that is next, once.
    bool ExposureDone();
    void BeginRun() {
        mAnnounced = false;
        mLastExposure = nullptr;
    }
    std::string GetWaveform(uint8_t type);
    void OpenLink();

    const Recording recording;
    SentSettings sent;
    bool linkOpen = false;
    float waveformResolution = 0;

    std::vector<std::string> faults;
    bool ended = false;
    int32_t delivered = 0;
    bool logCalls = false;
    std::vector<std::string_view> calls;

  private:
    const RecordedLine* Head() const {
        return mNext < recording.lines.size() ? &recording.lines[mNext] : nullptr;
    }
    void TakeHead() {
        ++mNext;
        mQuietPolls = 0;
        mAnnounced = false;
    }
    /// Takes the lines that cost no poll, so that a "throws" holds as soon as the line before it is done.
    void TakeFreeLines();
    void Happen(const RecordedLine& line, DetectorEvents& events);
    void Deliver(const RecordedExposure& exposure, DetectorEvents& events);
    void ChangeLink(const RecordedLine& line);
    /// Nothing more can be measured.
    void End(const std::string& text, int32_t line) {
        ended = true;
        Fault(text, line);
    }
    void Fault(const std::string& text, int32_t line) {
        faults.push_back(recording.file + (line > 0 ? ":" + std::to_string(line) : "") + ": " + text);
    }

    std::size_t mNext = 0;
    int32_t mQuietPolls = 0;                          // of the line that is next
    bool mAnnounced = false;                          // the exposure that is next was read as done
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

bool RecordedRoom::Poll(DetectorEvents& events) {
    TakeFreeLines();
    const RecordedLine* head = Head();
    if (!head) {
        if (mAlive && !std::exchange(mUsedUp, true))
            End("the recording is used up; exposures delivered: " + std::to_string(delivered), 0);
        return false;
    }
    if (head->event == RecordedEvent::kQuiet && ++mQuietPolls < head->number) return mAlive;
    if (head->event == RecordedEvent::kExposure && mAlive && !mAnnounced) return true;
    // Taken before it happens: a handler may let the program go on and so come here again.
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
    // An exposure begins: the waveforms of the one before it are gone.
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
    End("the link to the instruments was lost", line.line);
}

bool RecordedRoom::ExposureDone() {
    const RecordedLine* head = Head();
    if (!head || head->event != RecordedEvent::kExposure || !mAlive) return false;
    return !std::exchange(mAnnounced, true);
}

std::string RecordedRoom::GetWaveform(uint8_t type) {
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

namespace {

class RecordedService : public IDetectorService {
  public:
    explicit RecordedService(std::shared_ptr<RecordedRoom> room) : mRoom(std::move(room)) {}

    bool IsCharging() override { return Enter(Op("IsCharging")).recording.charging; }
    uint8_t BatteryLevel() override { return Enter(Op("BatteryLevel")).recording.battery; }
    float WaveformResolution() override { return Enter(Op("WaveformResolution")).waveformResolution; }
    void Mode(const std::string& modeText) override { Enter(Op("Mode")).sent.mode = modeText; }
    void Settings(const std::string& settingsText) override {
        Enter(Op("Settings")).sent.settings = settingsText;
    }
    void BeginRun() override {
        Enter(Op("BeginRun")).BeginRun();
        mBegun = true;
    }
    bool Poll(int32_t, int32_t) override {
        RecordedRoom& room = Enter(Op("Poll"));
        return Running() ? room.Poll(events) : room.Alive();
    }
    std::string GetWaveform(int32_t, float, int32_t, uint8_t type) override {
        return Enter(Op("GetWaveform")).GetWaveform(type);
    }
    bool ExposureDone() override {
        RecordedRoom& room = Enter(Op("ExposureDone"));
        return Running() && room.ExposureDone();
    }
    void WakeUp() override { Enter(Op("WakeUp")); }
    void Armed(bool armed) override {
        Enter(Op("Armed"));
        mArmed = armed;
    }
    int32_t TargetFilterCount() override {
        return static_cast<int32_t>(Enter(Op("TargetFilterCount")).recording.targetFilters.size());
    }
    void GetTargetFilters(std::vector<std::string>& names, int32_t count) override {
        const std::vector<std::string>& all = Enter(Op("GetTargetFilters")).recording.targetFilters;
        names.assign(all.begin(), all.begin() + std::clamp(count, 0, static_cast<int32_t>(all.size())));
    }
    std::string DefaultTargetFilter() override {
        return Enter(Op("DefaultTargetFilter")).recording.defaultTargetFilter;
    }
    void ApplySettings() override { Enter(Op("ApplySettings")); }
    void QueryTargetFilters() override { Enter(Op("QueryTargetFilters")); }
    void ActivateTargetFilter() override { Enter(Op("ActivateTargetFilter")); }
    void ExposureUnit(int32_t unit) override { Enter(Op("ExposureUnit")).sent.exposureUnit = unit; }
    void ExposureRateUnit(int32_t unit) override {
        Enter(Op("ExposureRateUnit")).sent.exposureRateUnit = unit;
    }
    void FluoroType(int32_t type) override { Enter(Op("FluoroType")).sent.fluoroType = type; }
    void TimeUnit(int32_t unit) override { Enter(Op("TimeUnit")).sent.timeUnit = unit; }
    void PercentKV(uint8_t percent) override { Enter(Op("PercentKV")).sent.percentKV = percent; }
    void Delay(int16_t milliseconds) override { Enter(Op("Delay")).sent.delay = milliseconds; }
    void IncludeDelay(bool include) override { Enter(Op("IncludeDelay")).sent.includeDelay = include; }
    void TargetFilter(const std::string& name) override {
        Enter(Op("TargetFilter")).sent.targetFilter = name;
    }
    std::string SerialNumbers() override {
        const RecordedRoom& room = Enter(Op("SerialNumbers"));
        return room.Alive() ? room.recording.serialNumbers : "0";
    }
    std::string CalibrationDates() override {
        return Enter(Op("CalibrationDates")).recording.calibrationDates;
    }
    int32_t DosimeterConnected() override { return HasDosimeter(Enter(Op("DosimeterConnected"))); }
    int32_t LinkState() override { return Enter(Op("LinkState")).Alive() ? 1 : 0; }
    void Disconnect() override {
        Enter(Op("Disconnect"));
        mArmed = mBegun = false;
    }
    void ResetDetector() override { Enter(Op("ResetDetector")); }
    std::string DetectorKind() override { return std::to_string(Enter(Op("DetectorKind")).recording.kind); }
    int32_t FirmwareVersion() override { return Enter(Op("FirmwareVersion")).recording.firmware; }
    std::string DosimeterAttached() override {
        return std::to_string(HasDosimeter(Enter(Op("DosimeterAttached"))));
    }
    void ShowIonChamberDialog() override { Enter(Op("ShowIonChamberDialog")); }
    int32_t SyncDosimeter(DosimeterSettings& settings) override {
        RecordedRoom& room = Enter(Op("SyncDosimeter"));
        room.sent.dosimeter = settings;
        return room.recording.syncStatus;
    }
    void MASInput(bool shunt) override { Enter(Op("MASInput")).sent.masShunt = shunt; }
    std::string IonChamberName() override { return Enter(Op("IonChamberName")).recording.ionChamberName; }
    std::string IonCalFactor() override { return Enter(Op("IonCalFactor")).recording.ionChamberFactor; }
    std::string IonCalConstant() override { return Enter(Op("IonCalConstant")).recording.ionChamberConstant; }
    std::string InstrumentName(int32_t index) override {
        const std::vector<std::string>& names = Enter(Op("InstrumentName")).recording.instrumentNames;
        return index >= 0 && static_cast<std::size_t>(index) < names.size()
                   ? names[static_cast<std::size_t>(index)]
                   : std::string();
    }

  private:
    RecordedRoom& Enter(Operation operation) { return mRoom->Enter(operation); }
    /// A waveform transfer disarms for its length and does not begin the run anew.
    bool Running() const { return mArmed && mBegun; }
    static int32_t HasDosimeter(const RecordedRoom& room) {
        return room.Alive() && HasPelomark(room.recording.kind) ? 1 : 0;
    }

    std::shared_ptr<RecordedRoom> mRoom;
    bool mArmed = false;
    bool mBegun = false;
};

class RecordedLink : public IDetectorLink {
  public:
    explicit RecordedLink(std::shared_ptr<RecordedRoom> room) : mRoom(std::move(room)) {}

    void Register() override {}
    void Unregister() override {}
    void OpenLink() override { mRoom->OpenLink(); }
    bool LinkOpen() const override { return mRoom->linkOpen; }
    void SelectDetector(int32_t kind) override { mRoom->sent.selectedKind = kind; }
    void CloseLink() override { mRoom->linkOpen = false; }

  private:
    std::shared_ptr<RecordedRoom> mRoom;
};

}  // namespace

RecordedInstruments::RecordedInstruments(Recording recording)
    : mRoom(std::make_shared<RecordedRoom>(std::move(recording))) {}

std::shared_ptr<IDetectorService> RecordedInstruments::CreateService() {
    return std::make_shared<RecordedService>(mRoom);
}
std::shared_ptr<IDetectorLink> RecordedInstruments::CreateLink() {
    return std::make_shared<RecordedLink>(mRoom);
}
const SentSettings& RecordedInstruments::Sent() const {
    return mRoom->sent;
}
const std::vector<std::string>& RecordedInstruments::Faults() const {
    return mRoom->faults;
}
bool RecordedInstruments::Ended() const {
    return mRoom->ended;
}
int32_t RecordedInstruments::ExposuresDelivered() const {
    return mRoom->delivered;
}
void RecordedInstruments::LogCalls() {
    mRoom->logCalls = true;
}
const std::vector<std::string_view>& RecordedInstruments::Calls() const {
    return mRoom->calls;
}

}  // namespace vorex

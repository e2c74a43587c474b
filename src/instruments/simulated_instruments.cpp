#include "instruments/simulated_instruments.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <map>
#include <optional>
#include <utility>

#include "foundation/number_text.h"
#include "foundation/text_keys.h"
#include "foundation/utilities.h"
#include "instruments/bench.h"
#include "instruments/simulated_readings.h"
#include "instruments/xray_unit.h"

namespace vorex {

namespace {

constexpr int32_t kFirmware = 12;
constexpr int32_t kPollMs = 500;
constexpr int32_t kFluoroscopyPollMs = 1000;

/// The uses of random numbers: each has its own stream for each exposure.
enum Stream : uint64_t { kUnitStream, kReadingStream, kKvStream, kMaStream, kStreamCount };

struct InstrumentRow {
    bool (*partOf)(int32_t kind);
    std::string_view name;
    std::string_view serialNumber;
    std::string_view calibrationDate;
};
constexpr InstrumentRow kInstruments[] = {
    {HasZrd, "ZRD 47500WD", "4711", "2026-01-15"},
    {HasPelomark, "Pelomark", "2205", "2026-01-20"},
    {HasMasMeter, "mAs meter", "88", "2026-02-01"},
};

/// What happens in a poll.
enum class Step : uint8_t { kQuiet, kZeroing, kZeroed, kResetting, kReset, kBeamOn, kBeamOff, kExposure };

struct SignalRow {
    Step step;
    Event<bool> DetectorEvents::*signal;
    bool on;
};
constexpr SignalRow kSignals[] = {
    {Step::kZeroing, &DetectorEvents::vti_ZeroingmAs, true},
    {Step::kZeroed, &DetectorEvents::vti_ZeroingmAs, false},
    {Step::kResetting, &DetectorEvents::vti_DisplaySensorResetMsg, true},
    {Step::kReset, &DetectorEvents::vti_DisplaySensorResetMsg, false},
    {Step::kBeamOn, &DetectorEvents::vti_EnableStopButton, true},
    {Step::kBeamOff, &DetectorEvents::vti_EnableStopButton, false},
};

}  // namespace

/// What all services and links share: the units, the next events, and the last exposure.
class SimulatedBench : public Bench {
  public:
    SimulatedBench(Room room, uint64_t seed, Console console)
        : mRoom(std::move(room)),
          mSeed(seed),
          mConsole(std::move(console)),
          mRadiography(mRoom.radiography, UnitKind::kRadiographic, seed),
          mFluoroscopy(mRoom.fluoroscopy, UnitKind::kFluoroscopic, seed),
          mMammography(mRoom.mammography, UnitKind::kMammographic, seed) {
        mIdentity.firmware = kFirmware;
        mIdentity.charging = mRoom.instruments.charging;
    }

    void Enter(Operation) override {}
    const InstrumentIdentity& Identity() override;
    bool Alive() const override { return mAlive; }
    void BeginRun() override;
    bool Poll(DetectorEvents& events, int32_t sleepTimeOut) override;
    bool ExposureDone() override;
    std::string GetWaveform(float length, int32_t points, uint8_t type) override;
    void WakeUp() override {
        mAsleep = false;
        mIdleMs = 0;
    }
    int32_t SyncDosimeter(DosimeterSettings&) override { return 0; }
    void OpenLink() override { linkOpen = mAlive; }

  private:
    bool InFluoroscopy() const { return EqualsIgnoringCase(sent.mode, DisplayText(kDetectorModes, kFluoro)); }
    int32_t Kind();
    XrayUnit& UnitOf(UnitKind kind);
    RandomSource Random(Stream purpose) const { return {mSeed, mExposureStream * kStreamCount + purpose}; }
    void PlanExposure();
    bool FallAsleep(DetectorEvents& events, int32_t sleepTimeOut);
    void Happen(Step step, DetectorEvents& events);
    void MakeExposure();
    void Deliver(DetectorEvents& events);
    /// Ends the measurement: nothing more can be measured.
    void End(const std::string& text) {
        if (std::exchange(ended, true)) return;
        NoteFault(mRoom.file, text);
    }

    const Room mRoom;
    const uint64_t mSeed;
    const Console mConsole;
    XrayUnit mRadiography;
    XrayUnit mFluoroscopy;
    XrayUnit mMammography;
    InstrumentIdentity mIdentity;
    std::deque<Step> mSteps;
    std::optional<Shot> mShot;  ///< the exposure to deliver, or the last one
    bool mAnnounced = false;
    bool mDelivered = false;  ///< mShot was delivered
    bool mAlive = true;
    bool mAsleep = false;
    int32_t mIdleMs = 0;
    int32_t mExposures = 0;                 ///< made
    uint64_t mExposureStream = 0;           ///< of the last one
    std::map<uint64_t, uint64_t> mRepeats;  ///< how often each exposure was made
};

/// Kind of the connected instruments: that of the test, unless the room sets one.
int32_t SimulatedBench::Kind() {
    if (mRoom.instruments.kind != kNoDetector) return mRoom.instruments.kind;
    const std::optional<Technique> technique = mConsole();
    if (technique) mIdentity.kind = technique->detectorKind;
    return mIdentity.kind == kNoDetector ? kZrd : mIdentity.kind;
}

const InstrumentIdentity& SimulatedBench::Identity() {
    mIdentity.kind = Kind();
    mIdentity.serialNumbers.clear();
    mIdentity.calibrationDates.clear();
    mIdentity.instrumentNames.clear();
    for (const InstrumentRow& row : kInstruments) {
        if (!row.partOf(mIdentity.kind)) continue;
        const std::string_view separator = mIdentity.instrumentNames.empty() ? "" : ",";
        mIdentity.serialNumbers.append(separator).append(row.serialNumber);
        mIdentity.calibrationDates.append(separator).append(row.calibrationDate);
        mIdentity.instrumentNames.emplace_back(row.name);
    }
    const double battery = mRoom.instruments.battery - mExposures * mRoom.instruments.batteryPerExposure;
    mIdentity.battery = static_cast<uint8_t>(std::max(0.0, std::ceil(battery)));
    const bool mammography = EqualsIgnoringCase(sent.mode, DisplayText(kDetectorModes, kMammo));
    const auto beams = TargetFiltersOf(mammography ? UnitKind::kMammographic : UnitKind::kRadiographic);
    mIdentity.targetFilters.assign(beams.begin(), beams.end());
    mIdentity.defaultTargetFilter = mIdentity.targetFilters.front();
    const ChamberSettings& chamber = mRoom.instruments.chamber;
    mIdentity.ionChamberName = chamber.name;
    mIdentity.ionChamberFactor = PlainText(chamber.factor);
    mIdentity.ionChamberConstant = PlainText(chamber.volumeCm3);
    return mIdentity;
}

XrayUnit& SimulatedBench::UnitOf(UnitKind kind) {
    if (kind == UnitKind::kMammographic) return mMammography;
    return kind == UnitKind::kFluoroscopic ? mFluoroscopy : mRadiography;
}

void SimulatedBench::BeginRun() {
    mSteps.clear();
    mAnnounced = false;
    const int32_t kind = Kind();
    if (HasMasMeter(kind)) mSteps.insert(mSteps.end(), {Step::kZeroing, Step::kZeroed});
    const bool resets = sent.dosimeter && sent.dosimeter->autoReset == 1;
    if (HasPelomark(kind) && resets) mSteps.insert(mSteps.end(), {Step::kResetting, Step::kReset});
    PlanExposure();
}

void SimulatedBench::PlanExposure() {
    const InstrumentSettings& instruments = mRoom.instruments;
    mSteps.insert(mSteps.end(), static_cast<std::size_t>(instruments.pollsBeforeExposure), Step::kQuiet);
    if (InFluoroscopy()) {
        mSteps.push_back(Step::kBeamOn);
        mSteps.insert(mSteps.end(), static_cast<std::size_t>(instruments.fluoroscopySeconds - 1),
                      Step::kQuiet);
        mSteps.push_back(Step::kBeamOff);
    }
    mSteps.push_back(Step::kExposure);
}

/// A detector that is not exposed within the time-out goes to sleep, and sees nothing until it is woken.
bool SimulatedBench::FallAsleep(DetectorEvents& events, int32_t sleepTimeOut) {
    mIdleMs += InFluoroscopy() ? kFluoroscopyPollMs : kPollMs;
    if (mAsleep || sleepTimeOut <= 0 || mIdleMs <= sleepTimeOut || !HasZrd(Kind())) return mAsleep;
    mAsleep = true;
    events.vti_AddWakeUpButton.Raise(true);
    return mAsleep;
}

bool SimulatedBench::Poll(DetectorEvents& events, int32_t sleepTimeOut) {
    const int32_t lossAfter = mRoom.link.lostAfterExposures;
    if (lossAfter > 0 && mExposures >= lossAfter && mDelivered && mAlive) {
        mAlive = linkOpen = false;
        End(StoredMessage(text::kReasonLinkLostAfter, {PlainText(mExposures)}));
    }
    if (ended) return false;
    if (mSteps.empty()) PlanExposure();
    if (FallAsleep(events, sleepTimeOut)) return true;
    const Step step = mSteps.front();
    if (step == Step::kExposure && !mAnnounced) return true;
    // The step is taken before its events are raised, because a handler may pump events and so call this
    // again.
    mSteps.pop_front();
    Happen(step, events);
    return !ended;
}

void SimulatedBench::Happen(Step step, DetectorEvents& events) {
    if (step == Step::kExposure) return Deliver(events);
    if (step == Step::kBeamOn) MakeExposure();
    if (ended) return;
    for (const SignalRow& row : kSignals)
        if (row.step == step) (events.*row.signal).Raise(row.on);
}

/// Makes the exposure that the console has set. In fluoroscopy it begins when the beam goes on.
void SimulatedBench::MakeExposure() {
    const std::optional<Technique> technique = mConsole();
    if (!technique) return End(std::string(text::kReasonNobody));
    if (Identity().battery == 0 && !mIdentity.charging) return End(std::string(text::kReasonBatteryEmpty));
    XrayUnit& unit = UnitOf(technique->unit);
    const std::string refusal = unit.Refusal(*technique);
    if (!refusal.empty()) return End(refusal);
    ++mExposures;
    mDelivered = false;
    constexpr uint64_t kMostRepeats = 1U << 16;
    mExposureStream = technique->exposure * kMostRepeats + mRepeats[technique->exposure]++;
    RandomSource random = Random(kUnitStream);
    const double held = mRoom.instruments.fluoroscopySeconds + random.Uniform() - 0.5;  // a foot, not a timer
    mShot = unit.Expose(*technique, held, random);
}

bool SimulatedBench::ExposureDone() {
    if (ended || mAsleep || mAnnounced || mSteps.empty() || mSteps.front() != Step::kExposure) return false;
    if (!InFluoroscopy()) MakeExposure();
    mAnnounced = !ended;
    return mAnnounced;
}

void SimulatedBench::Deliver(DetectorEvents& events) {
    mAnnounced = false;
    mDelivered = true;
    mIdleMs = 0;
    const int32_t kind = Kind();
    const Shot shot = *mShot;
    RandomSource random = Random(kReadingStream);
    std::string dose;
    if (HasZrd(kind)) {
        const ZrdReading reading = ReadZrd(shot, mRoom.instruments, sent, random);
        dose = reading.exposure;
        events.VTI_DataReady.Raise(reading);
    }
    if (HasPelomark(kind)) {
        const PelomarkReading reading = ReadPelomark(shot, mRoom.instruments, sent, random);
        dose = reading.dose;
        events.vti_TestSWDataReady.Raise(reading);
    }
    if (HasMasMeter(kind))
        events.vti_TestmAsDataReady.Raise(ReadMas(shot, mRoom.instruments, sent, dose, random));
    if (HasZrd(kind)) events.vti_CheckExposureWaveform.Raise(kKvWaveform);
    if (HasMasMeter(kind)) events.vti_CheckExposureWaveform.Raise(kMaWaveform);
}

std::string SimulatedBench::GetWaveform(float length, int32_t points, uint8_t type) {
    constexpr int32_t kMostPoints = 100'000;
    const bool current = type == kMaWaveform;
    if (!mAlive || !mShot || !(length > 0) || points <= 0 || points > kMostPoints) return {};
    if (current ? !HasMasMeter(Kind()) : !HasZrd(Kind())) return {};
    RandomSource random = Random(current ? kMaStream : kKvStream);
    if (random.Uniform() * 100 < mRoom.link.waveformFailurePercent) return {};
    waveformResolution = static_cast<float>(points) / length;
    return SampleWaveform(*mShot, type, static_cast<double>(length), points, random);
}

SimulatedInstruments::SimulatedInstruments(Room room, uint64_t seed, Console console)
    : mBench(std::make_shared<SimulatedBench>(std::move(room), seed, std::move(console))) {}

std::shared_ptr<IDetectorService> SimulatedInstruments::CreateService() {
    return MakeService(mBench);
}
std::shared_ptr<IDetectorLink> SimulatedInstruments::CreateLink() {
    return MakeLink(mBench);
}
const std::vector<std::string>& SimulatedInstruments::Faults() const {
    return mBench->faults;
}
std::string SimulatedInstruments::LatestFault() const {
    return mBench->latestFault;
}
bool SimulatedInstruments::Ended() const {
    return mBench->ended;
}

}  // namespace vorex

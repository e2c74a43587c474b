#include "instruments/taped_instruments.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <exception>
#include <span>
#include <stdexcept>
#include <tuple>
#include <type_traits>
#include <utility>

#include "foundation/number_text.h"

namespace vorex {

namespace {

using Texts = std::vector<std::string>;

constexpr std::string_view kPoll = "Poll";
constexpr std::string_view kExposureDone = "ExposureDone";
constexpr std::string_view kGetWaveform = "GetWaveform";
constexpr std::string_view kWaveformResolution = "WaveformResolution";
constexpr std::string_view kClock = "Clock";
constexpr std::string_view kFailed = "failed";  ///< first of two values: the call raised an exception

// ------------------------------------------------------------------------------------ values as texts

Texts ToTexts(bool value) {
    return {value ? "1" : "0"};
}
Texts ToTexts(const std::string& value) {
    return {value};
}
/// Enough digits to read back the same number.
Texts ToTexts(float value) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {std::string(text.data(), end)};
}

const std::string& FirstOf(const Texts& texts) {
    static const std::string kNone;
    return texts.empty() ? kNone : texts.front();
}

template <typename Value>
Value FromTexts(const Texts& texts) {
    if constexpr (std::is_same_v<Value, bool>)
        return FirstOf(texts) == "1";
    else if constexpr (std::is_same_v<Value, float>)
        return ToSingle(ReadNumber(FirstOf(texts)));
    else
        return FirstOf(texts);
}

template <typename Reading>
using Fields = std::span<std::string Reading::*const>;

constexpr std::string ZrdReading::*kZrdFields[] = {
    &ZrdReading::kvpAvg,       &ZrdReading::kvpMax,       &ZrdReading::kvPpv,          &ZrdReading::exposure,
    &ZrdReading::exposureRate, &ZrdReading::exposureTime, &ZrdReading::exposurePulses, &ZrdReading::pulseRate,
    &ZrdReading::pulseWidth,   &ZrdReading::hvl};
constexpr std::string PelomarkReading::*kPelomarkFields[] = {
    &PelomarkReading::temperature, &PelomarkReading::pressure, &PelomarkReading::adcf,
    &PelomarkReading::leakCurrent, &PelomarkReading::dose,     &PelomarkReading::doseRate,
    &PelomarkReading::biasVoltage};
constexpr std::string MasReading::*kMasFields[] = {&MasReading::ma, &MasReading::mas,
                                                   &MasReading::masPerPulse, &MasReading::dosePerMas};

constexpr Fields<ZrdReading> FieldsOf(const ZrdReading*) {
    return kZrdFields;
}
constexpr Fields<PelomarkReading> FieldsOf(const PelomarkReading*) {
    return kPelomarkFields;
}
constexpr Fields<MasReading> FieldsOf(const MasReading*) {
    return kMasFields;
}

template <typename Reading>
concept IsReading = requires(const Reading* reading) {
    FieldsOf(reading);
};

template <IsReading Reading>
Texts ToTexts(const Reading& reading) {
    Texts texts;
    for (const auto field : FieldsOf(&reading)) texts.push_back(reading.*field);
    return texts;
}
Texts ToTexts(uint8_t value) {
    return {std::to_string(value)};
}

template <IsReading Reading>
Reading ReadingFrom(const Texts& texts) {
    Reading reading;
    const auto fields = FieldsOf(&reading);
    for (std::size_t i = 0; i < std::min(fields.size(), texts.size()); ++i) reading.*fields[i] = texts[i];
    return reading;
}

// -------------------------------------------------------------------------------------------- events

/// An event of the service: how it goes from the instruments to the tape, and how it is raised from the tape.
template <typename Argument, typename Value>
struct EventRow {
    std::string_view name;
    Event<Argument> DetectorEvents::*event;

    static Value Decoded(const Texts& texts) {
        if constexpr (IsReading<Value>)
            return ReadingFrom<Value>(texts);
        else if constexpr (std::is_same_v<Value, bool>)
            return FirstOf(texts) == "1";
        else
            return static_cast<Value>(ReadInteger(FirstOf(texts)));
    }
};

template <typename Value>
using ReadingEvent = EventRow<const Value&, Value>;
template <typename Value>
using PlainEvent = EventRow<Value, Value>;

constexpr auto kEvents =
    std::tuple(ReadingEvent<ZrdReading>{"VTI_DataReady", &DetectorEvents::VTI_DataReady},
               ReadingEvent<PelomarkReading>{"vti_TestSWDataReady", &DetectorEvents::vti_TestSWDataReady},
               ReadingEvent<MasReading>{"vti_TestmAsDataReady", &DetectorEvents::vti_TestmAsDataReady},
               PlainEvent<uint8_t>{"vti_CheckExposureWaveform", &DetectorEvents::vti_CheckExposureWaveform},
               PlainEvent<bool>{"vti_EnableStopButton", &DetectorEvents::vti_EnableStopButton},
               PlainEvent<bool>{"vti_AddWakeUpButton", &DetectorEvents::vti_AddWakeUpButton},
               PlainEvent<bool>{"vti_DisplaySensorResetMsg", &DetectorEvents::vti_DisplaySensorResetMsg},
               PlainEvent<bool>{"vti_ZeroingmAs", &DetectorEvents::vti_ZeroingmAs});

template <typename Visit>
void ForEachEvent(Visit&& visit) {
    std::apply([&](const auto&... rows) { (visit(rows), ...); }, kEvents);
}

bool IsEvent(std::string_view name) {
    bool found = false;
    ForEachEvent([&](const auto& row) { found = found || row.name == name; });
    return found;
}

void ThrowIfFailed(const Texts& answer) {
    if (answer.size() == 2 && answer.front() == kFailed) throw std::runtime_error(answer.back());
}

// ------------------------------------------------------------------------------------------- service

/// A service whose measurements go through the tape; all other calls go directly to the instruments.
class TapedService final : public IDetectorService {
  public:
    TapedService(std::shared_ptr<IDetectorService> service, RunTape& tape)
        : mService(std::move(service)), mTape(tape) {
        ForEachEvent([this](const auto& row) { Listen(row); });
    }

    bool Poll(int32_t sleepTimeOut, int32_t shutdownTimeOut) override;
    bool ExposureDone() override {
        return Ask<bool>(kExposureDone, false, [this] { return mService->ExposureDone(); });
    }
    std::string GetWaveform(int32_t start, float length, int32_t points, uint8_t type) override {
        return Ask<std::string>(kGetWaveform, std::string(),
                                [&] { return mService->GetWaveform(start, length, points, type); });
    }
    float WaveformResolution() override {
        return Ask<float>(kWaveformResolution, 0.0F, [this] { return mService->WaveformResolution(); });
    }

    bool IsCharging() override { return mService->IsCharging(); }
    uint8_t BatteryLevel() override { return mService->BatteryLevel(); }
    void Mode(const std::string& modeText) override { mService->Mode(modeText); }
    void Settings(const std::string& settingsText) override { mService->Settings(settingsText); }
    void BeginRun() override { mService->BeginRun(); }
    void WakeUp() override { mService->WakeUp(); }
    void Armed(bool armed) override { mService->Armed(armed); }
    int32_t TargetFilterCount() override { return mService->TargetFilterCount(); }
    void GetTargetFilters(std::vector<std::string>& names, int32_t count) override {
        mService->GetTargetFilters(names, count);
    }
    std::string DefaultTargetFilter() override { return mService->DefaultTargetFilter(); }
    void ApplySettings() override { mService->ApplySettings(); }
    void QueryTargetFilters() override { mService->QueryTargetFilters(); }
    void ActivateTargetFilter() override { mService->ActivateTargetFilter(); }
    void ExposureUnit(int32_t unit) override { mService->ExposureUnit(unit); }
    void ExposureRateUnit(int32_t unit) override { mService->ExposureRateUnit(unit); }
    void FluoroType(int32_t type) override { mService->FluoroType(type); }
    void TimeUnit(int32_t unit) override { mService->TimeUnit(unit); }
    void PercentKV(uint8_t percent) override { mService->PercentKV(percent); }
    void Delay(int16_t milliseconds) override { mService->Delay(milliseconds); }
    void IncludeDelay(bool include) override { mService->IncludeDelay(include); }
    void TargetFilter(const std::string& name) override { mService->TargetFilter(name); }
    std::string SerialNumbers() override { return mService->SerialNumbers(); }
    std::string CalibrationDates() override { return mService->CalibrationDates(); }
    int32_t DosimeterConnected() override { return mService->DosimeterConnected(); }
    int32_t LinkState() override { return mService->LinkState(); }
    void Disconnect() override { mService->Disconnect(); }
    void ResetDetector() override { mService->ResetDetector(); }
    std::string DetectorKind() override { return mService->DetectorKind(); }
    int32_t FirmwareVersion() override { return mService->FirmwareVersion(); }
    std::string DosimeterAttached() override { return mService->DosimeterAttached(); }
    void ShowIonChamberDialog() override { mService->ShowIonChamberDialog(); }
    int32_t SyncDosimeter(DosimeterSettings& settings) override { return mService->SyncDosimeter(settings); }
    void MASInput(bool shunt) override { mService->MASInput(shunt); }
    std::string IonChamberName() override { return mService->IonChamberName(); }
    std::string IonCalFactor() override { return mService->IonCalFactor(); }
    std::string IonCalConstant() override { return mService->IonCalConstant(); }
    std::string InstrumentName(int32_t index) override { return mService->InstrumentName(index); }

  private:
    template <typename Argument, typename Value>
    void Listen(const EventRow<Argument, Value>& row);
    void RaiseFromTape(const RunNote& note);
    template <typename Value, typename Call>
    Value Ask(std::string_view operation, const Value& ordinary, Call&& call);

    std::shared_ptr<IDetectorService> mService;
    RunTape& mTape;
    int64_t mPoll = 0;  ///< number of the poll that raises events
    // Last, so that it is destroyed first: the instruments' session may live longer.
    std::vector<Connection> mConnections;
};

template <typename Argument, typename Value>
void TapedService::Listen(const EventRow<Argument, Value>& row) {
    mConnections.push_back((mService->events.*row.event).Listen([this, &row](Argument value) {
        if (!mTape.Reading()) {
            mTape.Note(row.name, mPoll, ToTexts(value));
            (events.*row.event).Raise(value);
        } else if (const auto note = mTape.NextEvent(mPoll)) {
            RaiseFromTape(*note);
        }
    }));
}

void TapedService::RaiseFromTape(const RunNote& note) {
    ForEachEvent([&](const auto& row) {
        if (row.name == note.operation) (events.*row.event).Raise(row.Decoded(note.values));
    });
}

/// A call whose answer is measured. It is made even while the tape is read, so that the instruments advance
/// with the run.
template <typename Value, typename Call>
Value TapedService::Ask(std::string_view operation, const Value& ordinary, Call&& call) {
    const int64_t number = mTape.Count(operation);
    const bool reading = mTape.Reading();
    Value value = ordinary;
    try {
        value = call();
    } catch (const std::exception& error) {
        if (!reading) {
            mTape.Note(operation, number, {std::string(kFailed), error.what()});
            throw;
        }
    }
    if (!reading) {
        if (value != ordinary) mTape.Note(operation, number, ToTexts(value));
        return value;
    }
    const Texts answer = mTape.Read(operation, number);
    ThrowIfFailed(answer);
    return answer.empty() ? ordinary : FromTexts<Value>(answer);
}

bool TapedService::Poll(int32_t sleepTimeOut, int32_t shutdownTimeOut) {
    const int64_t number = mTape.Count(kPoll);
    mTape.BreakBehind(number);
    if (mTape.Broken()) return false;
    const int64_t pollBefore = std::exchange(mPoll, number);
    bool alive = true;
    std::optional<std::string> failure;
    try {
        alive = mService->Poll(sleepTimeOut, shutdownTimeOut);
    } catch (const std::exception& error) {
        failure = error.what();
    }
    // The instruments' own events are dropped: while the tape is read, all events come from it.
    while (mTape.Reading()) {
        const auto note = mTape.NextEvent(number);
        if (!note) break;
        RaiseFromTape(*note);
    }
    mPoll = pollBefore;
    if (mTape.Reading()) {
        const Texts answer = mTape.Read(kPoll, number);
        ThrowIfFailed(answer);
        return answer.empty();
    }
    // If the tape ended in this poll, the rest of the poll comes from the instruments.
    if (failure) {
        mTape.Note(kPoll, number, {std::string(kFailed), *failure});
        throw std::runtime_error(*failure);
    }
    if (!alive) mTape.Note(kPoll, number, {"0"});
    return alive;
}

}  // namespace

// ---------------------------------------------------------------------------------------------- tape

void RunTape::Rewind(std::vector<RunNote> notes, int64_t lastPoll) {
    mReading = true;
    mLastPoll = lastPoll;
    for (RunNote& note : notes) {
        if (IsEvent(note.operation))
            mEvents.push_back(std::move(note));
        else
            mAnswers[note.operation].push_back(std::move(note));
    }
}

int64_t RunTape::Count(std::string_view operation) {
    const auto calls = mCalls.find(operation);
    return calls == mCalls.end() ? mCalls.emplace(operation, 1).first->second : ++calls->second;
}

int64_t RunTape::Polls() const {
    const auto polls = mCalls.find(kPoll);
    return polls == mCalls.end() ? 0 : polls->second;
}

void RunTape::Note(std::string_view operation, int64_t call, std::vector<std::string> values) {
    mWritten.push_back({std::string(operation), call, std::move(values)});
}

std::vector<std::string> RunTape::Read(std::string_view operation, int64_t call) {
    const auto answers = mAnswers.find(operation);
    if (answers == mAnswers.end() || answers->second.empty() || answers->second.front().call != call)
        return {};
    std::vector<std::string> values = std::move(answers->second.front().values);
    answers->second.pop_front();
    return values;
}

std::optional<RunNote> RunTape::NextEvent(int64_t poll) {
    if (mEvents.empty() || mEvents.front().call != poll) return std::nullopt;
    std::optional<RunNote> note(std::move(mEvents.front()));
    mEvents.pop_front();
    return note;
}

std::string RunTape::Clock(std::string now) {
    const int64_t call = Count(kClock);
    if (!mReading) {
        // A person's waits are repeated shorter than they were: the clock stands still until it has caught
        // up.
        if (now < mLatest) now = mLatest;
        Note(kClock, call, {now});
        return now;
    }
    const std::vector<std::string> told = Read(kClock, call);
    if (!told.empty()) mLatest = told.front();
    return told.empty() ? now : told.front();
}

std::shared_ptr<IDetectorService> TapedInstruments::CreateService() {
    return std::make_shared<TapedService>(mInstruments->CreateService(), mTape);
}

}  // namespace vorex

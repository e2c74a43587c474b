#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/detector_service.h"

namespace vorex::test {

/// What all services of a test share: answers to set, and the calls that were made, "Mode RADIO".
struct FakeInstruments {
    int32_t kind = 1;
    std::string serialNumbers = "4711";
    std::string calibrationDates = "2026-01-15";
    bool alive = true;  ///< answer of `Poll`
    int32_t linkState = 1;
    bool linkOpens = true;  ///< `OpenLink` succeeds
    bool linkOpen = false;
    bool charging = false;
    uint8_t batteryLevel = 80;
    std::string ionChamber;
    bool exposureDone = false;
    std::vector<std::string> targetFilters;
    std::string defaultTargetFilter;
    std::string waveform;
    int32_t dosimeterStatus = 0;
    DosimeterSettings dosimeter;  ///< what `SyncDosimeter` was sent last
    std::function<void(DosimeterSettings&)> answerDosimeter;
    std::function<void(DetectorEvents&)> onPoll;
    std::set<std::string, std::less<>> failing;  ///< operations that raise an exception
    std::vector<std::string> calls;

    void Call(std::string_view operation, std::string_view argument = {}) {
        calls.emplace_back(operation);
        if (!argument.empty()) calls.back().append(" ").append(argument);
        if (failing.count(operation) != 0) throw std::runtime_error(std::string(operation) + " fails");
    }
    int Count(std::string_view call) const {
        return static_cast<int>(std::count(calls.begin(), calls.end(), call));
    }
};

class FakeDetector : public IDetectorService {
  public:
    explicit FakeDetector(std::shared_ptr<FakeInstruments> instruments) : mRoom(std::move(instruments)) {}

    bool IsCharging() override { return mRoom->charging; }
    uint8_t BatteryLevel() override { return mRoom->batteryLevel; }
    float WaveformResolution() override { return 1; }
    void Mode(const std::string& text) override { mRoom->Call("Mode", text); }
    void Settings(const std::string& text) override { mRoom->Call("Settings", text); }
    void BeginRun() override { mRoom->Call("BeginRun"); }
    bool Poll(int32_t sleepTimeOut, int32_t shutdownTimeOut) override {
        mRoom->Call("Poll", std::to_string(sleepTimeOut) + " " + std::to_string(shutdownTimeOut));
        if (mRoom->onPoll) mRoom->onPoll(events);
        return mRoom->alive;
    }
    std::string GetWaveform(int32_t, float length, int32_t, uint8_t type) override {
        mRoom->Call("GetWaveform", std::to_string(type) + " " + std::to_string(static_cast<int>(length)));
        return mRoom->waveform;
    }
    bool ExposureDone() override { return std::exchange(mRoom->exposureDone, false); }
    void WakeUp() override { mRoom->Call("WakeUp"); }
    void Armed(bool armed) override { mRoom->Call("Armed", armed ? "1" : "0"); }
    int32_t TargetFilterCount() override { return static_cast<int32_t>(mRoom->targetFilters.size()); }
    void GetTargetFilters(std::vector<std::string>& names, int32_t) override { names = mRoom->targetFilters; }
    std::string DefaultTargetFilter() override { return mRoom->defaultTargetFilter; }
    void ApplySettings() override { mRoom->Call("ApplySettings"); }
    void QueryTargetFilters() override { mRoom->Call("QueryTargetFilters"); }
    void ActivateTargetFilter() override { mRoom->Call("ActivateTargetFilter"); }
    void ExposureUnit(int32_t unit) override { mRoom->Call("ExposureUnit", std::to_string(unit)); }
    void ExposureRateUnit(int32_t unit) override { mRoom->Call("ExposureRateUnit", std::to_string(unit)); }
    void FluoroType(int32_t type) override { mRoom->Call("FluoroType", std::to_string(type)); }
    void TimeUnit(int32_t unit) override { mRoom->Call("TimeUnit", std::to_string(unit)); }
    void PercentKV(uint8_t percent) override { mRoom->Call("PercentKV", std::to_string(percent)); }
    void Delay(int16_t milliseconds) override { mRoom->Call("Delay", std::to_string(milliseconds)); }
    void IncludeDelay(bool include) override { mRoom->Call("IncludeDelay", include ? "1" : "0"); }
    void TargetFilter(const std::string& name) override { mRoom->Call("TargetFilter", name); }
    std::string SerialNumbers() override {
        mRoom->Call("SerialNumbers");
        return mRoom->serialNumbers;
    }
    std::string CalibrationDates() override {
        mRoom->Call("CalibrationDates");
        return mRoom->calibrationDates;
    }
    int32_t DosimeterConnected() override { return 0; }
    int32_t LinkState() override {
        mRoom->Call("LinkState");
        return mRoom->linkState;
    }
    void Disconnect() override { mRoom->Call("Disconnect"); }
    void ResetDetector() override {}
    std::string DetectorKind() override {
        mRoom->Call("DetectorKind");
        return std::to_string(mRoom->kind);
    }
    int32_t FirmwareVersion() override {
        mRoom->Call("FirmwareVersion");
        return 12;
    }
    std::string DosimeterAttached() override { return {}; }
    void ShowIonChamberDialog() override { mRoom->Call("ShowIonChamberDialog"); }
    int32_t SyncDosimeter(DosimeterSettings& settings) override {
        mRoom->Call("SyncDosimeter");
        mRoom->dosimeter = settings;
        if (mRoom->answerDosimeter) mRoom->answerDosimeter(settings);
        return mRoom->dosimeterStatus;
    }
    void MASInput(bool shunt) override { mRoom->Call("MASInput", shunt ? "1" : "0"); }
    std::string IonChamberName() override { return mRoom->ionChamber; }
    std::string IonCalFactor() override { return "factor of " + mRoom->ionChamber; }
    std::string IonCalConstant() override { return "constant of " + mRoom->ionChamber; }
    std::string InstrumentName(int32_t index) override {
        mRoom->Call("InstrumentName");
        return index == 0 ? "ZRD 47500WD" : "mAs meter";
    }

  private:
    std::shared_ptr<FakeInstruments> mRoom;
};

class FakeLink : public IDetectorLink {
  public:
    explicit FakeLink(std::shared_ptr<FakeInstruments> instruments) : mRoom(std::move(instruments)) {}
    void Register() override { mRoom->Call("Register"); }
    void Unregister() override { mRoom->Call("Unregister"); }
    void OpenLink() override {
        mRoom->Call("OpenLink");
        mRoom->linkOpen = mRoom->linkOpens;
    }
    bool LinkOpen() const override { return mRoom->linkOpen; }
    void SelectDetector(int32_t kind) override { mRoom->Call("SelectDetector", std::to_string(kind)); }
    void CloseLink() override {
        mRoom->Call("CloseLink");
        mRoom->linkOpen = false;
    }

  private:
    std::shared_ptr<FakeInstruments> mRoom;
};

}  // namespace vorex::test

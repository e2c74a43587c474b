#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "foundation/detector_service.h"

/// A detector that answers with given readings, one exposure at each poll of a run.
class OwnDetector final : public vorex::IDetectorService {
  public:
    explicit OwnDetector(std::shared_ptr<std::vector<vorex::ZrdReading>> readings)
        : mReadings(std::move(readings)) {}

    void BeginRun() override { mBegun = true; }
    void Armed(bool armed) override { mArmed = armed; }
    /// Asked just before `Poll`: True when that poll will bring a reading.
    bool ExposureDone() override { return mArmed && mBegun && !mReadings->empty(); }
    bool Poll(int32_t, int32_t) override {
        if (!mArmed || !mBegun) return true;
        if (mReadings->empty()) return false;
        const vorex::ZrdReading reading = mReadings->front();
        mReadings->erase(mReadings->begin());
        events.VTI_DataReady.Raise(reading);
        return true;
    }
    std::string SerialNumbers() override { return "4711"; }
    std::string CalibrationDates() override { return "2026-01-15"; }
    std::string InstrumentName(int32_t) override { return "ZRD 47500WD"; }
    std::string DetectorKind() override { return "1"; }
    int32_t LinkState() override { return 1; }
    uint8_t BatteryLevel() override { return 80; }

    // What this detector does not have, or has set already.
    bool IsCharging() override { return false; }
    float WaveformResolution() override { return 1; }
    void Mode(const std::string&) override {}
    void Settings(const std::string&) override {}
    std::string GetWaveform(int32_t, float, int32_t, uint8_t) override { return {}; }
    void WakeUp() override {}
    int32_t TargetFilterCount() override { return 0; }
    void GetTargetFilters(std::vector<std::string>&, int32_t) override {}
    std::string DefaultTargetFilter() override { return {}; }
    void ApplySettings() override {}
    void QueryTargetFilters() override {}
    void ActivateTargetFilter() override {}
    void ExposureUnit(int32_t) override {}
    void ExposureRateUnit(int32_t) override {}
    void FluoroType(int32_t) override {}
    void TimeUnit(int32_t) override {}
    void PercentKV(uint8_t) override {}
    void Delay(int16_t) override {}
    void IncludeDelay(bool) override {}
    void TargetFilter(const std::string&) override {}
    int32_t DosimeterConnected() override { return 0; }
    void Disconnect() override {}
    void ResetDetector() override {}
    int32_t FirmwareVersion() override { return 12; }
    std::string DosimeterAttached() override { return "0"; }
    void ShowIonChamberDialog() override {}
    int32_t SyncDosimeter(vorex::DosimeterSettings&) override { return 0; }
    void MASInput(bool) override {}
    std::string IonChamberName() override { return {}; }
    std::string IonCalFactor() override { return {}; }
    std::string IonCalConstant() override { return {}; }

  private:
    std::shared_ptr<std::vector<vorex::ZrdReading>> mReadings;
    bool mArmed = false;
    bool mBegun = false;
};

class OwnLink final : public vorex::IDetectorLink {
  public:
    void Register() override {}
    void Unregister() override {}
    void OpenLink() override { mOpen = true; }
    bool LinkOpen() const override { return mOpen; }
    void SelectDetector(int32_t) override {}
    void CloseLink() override { mOpen = false; }

  private:
    bool mOpen = false;
};

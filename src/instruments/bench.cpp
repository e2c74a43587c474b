#include "instruments/bench.h"

#include <algorithm>
#include <utility>

namespace vorex {

namespace {

class BenchService : public IDetectorService {
  public:
    explicit BenchService(std::shared_ptr<Bench> bench) : mBench(std::move(bench)) {}

    bool IsCharging() override { return Enter(Op("IsCharging")).Identity().charging; }
    uint8_t BatteryLevel() override { return Enter(Op("BatteryLevel")).Identity().battery; }
    float WaveformResolution() override { return Enter(Op("WaveformResolution")).waveformResolution; }
    void Mode(const std::string& modeText) override { Enter(Op("Mode")).sent.mode = modeText; }
    void Settings(const std::string& settingsText) override {
        Enter(Op("Settings")).sent.settings = settingsText;
    }
    void BeginRun() override {
        Enter(Op("BeginRun")).BeginRun();
        mBegun = true;
    }
    bool Poll(int32_t sleepTimeOut, int32_t) override {
        Bench& bench = Enter(Op("Poll"));
        return Running() ? bench.Poll(events, sleepTimeOut) : bench.Alive();
    }
    std::string GetWaveform(int32_t, float length, int32_t points, uint8_t type) override {
        return Enter(Op("GetWaveform")).GetWaveform(length, points, type);
    }
    bool ExposureDone() override {
        Bench& bench = Enter(Op("ExposureDone"));
        return Running() && bench.ExposureDone();
    }
    void WakeUp() override { Enter(Op("WakeUp")).WakeUp(); }
    void Armed(bool armed) override {
        Enter(Op("Armed"));
        mArmed = armed;
    }
    int32_t TargetFilterCount() override {
        return static_cast<int32_t>(Enter(Op("TargetFilterCount")).Identity().targetFilters.size());
    }
    void GetTargetFilters(std::vector<std::string>& names, int32_t count) override {
        const std::vector<std::string>& all = Enter(Op("GetTargetFilters")).Identity().targetFilters;
        names.assign(all.begin(), all.begin() + std::clamp(count, 0, static_cast<int32_t>(all.size())));
    }
    std::string DefaultTargetFilter() override {
        return Enter(Op("DefaultTargetFilter")).Identity().defaultTargetFilter;
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
        Bench& bench = Enter(Op("SerialNumbers"));
        return bench.Alive() ? bench.Identity().serialNumbers : "0";
    }
    std::string CalibrationDates() override {
        return Enter(Op("CalibrationDates")).Identity().calibrationDates;
    }
    int32_t DosimeterConnected() override { return HasDosimeter(Enter(Op("DosimeterConnected"))); }
    int32_t LinkState() override { return Enter(Op("LinkState")).Alive() ? 1 : 0; }
    void Disconnect() override {
        Enter(Op("Disconnect"));
        mArmed = mBegun = false;
    }
    void ResetDetector() override { Enter(Op("ResetDetector")); }
    std::string DetectorKind() override { return std::to_string(Enter(Op("DetectorKind")).Identity().kind); }
    int32_t FirmwareVersion() override { return Enter(Op("FirmwareVersion")).Identity().firmware; }
    std::string DosimeterAttached() override {
        return std::to_string(HasDosimeter(Enter(Op("DosimeterAttached"))));
    }
    void ShowIonChamberDialog() override { Enter(Op("ShowIonChamberDialog")); }
    int32_t SyncDosimeter(DosimeterSettings& settings) override {
        Bench& bench = Enter(Op("SyncDosimeter"));
        bench.sent.dosimeter = settings;
        return bench.SyncDosimeter(settings);
    }
    void MASInput(bool shunt) override { Enter(Op("MASInput")).sent.masShunt = shunt; }
    std::string IonChamberName() override { return Enter(Op("IonChamberName")).Identity().ionChamberName; }
    std::string IonCalFactor() override { return Enter(Op("IonCalFactor")).Identity().ionChamberFactor; }
    std::string IonCalConstant() override {
        return Enter(Op("IonCalConstant")).Identity().ionChamberConstant;
    }
    std::string InstrumentName(int32_t index) override {
        const std::vector<std::string>& names = Enter(Op("InstrumentName")).Identity().instrumentNames;
        return index >= 0 && static_cast<std::size_t>(index) < names.size()
                   ? names[static_cast<std::size_t>(index)]
                   : std::string();
    }

  private:
    Bench& Enter(Operation operation) {
        mBench->Enter(operation);
        return *mBench;
    }
    /// A waveform transfer disarms the instruments meanwhile and does not begin a new run.
    bool Running() const { return mArmed && mBegun; }
    static int32_t HasDosimeter(Bench& bench) {
        return bench.Alive() && HasPelomark(bench.Identity().kind) ? 1 : 0;
    }

    std::shared_ptr<Bench> mBench;
    bool mArmed = false;
    bool mBegun = false;
};

class BenchLink : public IDetectorLink {
  public:
    explicit BenchLink(std::shared_ptr<Bench> bench) : mBench(std::move(bench)) {}

    void Register() override {}
    void Unregister() override {}
    void OpenLink() override { mBench->OpenLink(); }
    bool LinkOpen() const override { return mBench->linkOpen; }
    void SelectDetector(int32_t kind) override { mBench->sent.selectedKind = kind; }
    void CloseLink() override { mBench->linkOpen = false; }

  private:
    std::shared_ptr<Bench> mBench;
};

}  // namespace

std::shared_ptr<IDetectorService> MakeService(std::shared_ptr<Bench> bench) {
    return std::make_shared<BenchService>(std::move(bench));
}
std::shared_ptr<IDetectorLink> MakeLink(std::shared_ptr<Bench> bench) {
    return std::make_shared<BenchLink>(std::move(bench));
}

}  // namespace vorex

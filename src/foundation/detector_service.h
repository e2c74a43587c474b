#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "foundation/event.h"

/// What the library requires of the instruments. It never talks to hardware: one detector service finds the
/// instruments, applies the settings, arms them, reports exposures by events and returns waveforms.
///
/// A run: settings, `ApplySettings`, `Armed(true)`, `BeginRun`; then, each tick, `ExposureDone` and `Poll`,
/// which raises the events; `Armed(false)`; at the end `Disconnect`.
///
/// Values are texts in the instrument's own number format; a decimal comma may appear. Everything arrives on
/// the user-interface thread, events from inside `Poll` only. Any operation may raise an exception when the
/// instrument fails.
namespace vorex {

/// One exposure of the ZRD 47500, in the order of its event.
struct ZrdReading {
    std::string kvpAvg, kvpMax, kvPpv, exposure, exposureRate, exposureTime, exposurePulses, pulseRate,
        pulseWidth, hvl;
};

/// One reading of the Pelomark, in the order of its event.
struct PelomarkReading {
    std::string temperature, pressure, adcf, leakCurrent, dose, doseRate, biasVoltage;
};

/// One reading of the mAs meter, in the order of its event.
struct MasReading {
    std::string ma, mas, masPerPulse, dosePerMas;
};

/// Settings of the dosimeter in the instrument's own codes: selections count from 1.
struct DosimeterSettings {
    int32_t airDensityCorrection = 1;  ///< 1 on, 2 off
    int32_t userSetTemperature = 0;    ///< 1 yes
    int32_t userSetPressure = 0;       ///< 1 yes
    float temperature = 0;
    float pressure = 0;
    int32_t referenceTemperature = 0;
    int32_t mode = 1;
    int32_t autoReset = 0;  ///< 1 yes
    int32_t doseUnit = 1;
    int32_t doseRateUnit = 1;
    int32_t frameRate = 0;
    int32_t temperatureUnit = 1;
    int32_t pressureUnit = 1;
    float internalPressureOffset = 0;
    float internalTemperatureOffset = 0;

    bool operator==(const DosimeterSettings&) const = default;
};

struct DetectorEvents {
    Event<const ZrdReading&> VTI_DataReady{"VTI_DataReady"};
    Event<bool> vti_AddWakeUpButton{"vti_AddWakeUpButton"};
    Event<bool> vti_EnableStopButton{"vti_EnableStopButton"};
    Event<uint8_t> vti_CheckExposureWaveform{"vti_CheckExposureWaveform"};
    Event<const PelomarkReading&> vti_TestSWDataReady{"vti_TestSWDataReady"};
    Event<const MasReading&> vti_TestmAsDataReady{"vti_TestmAsDataReady"};
    Event<bool> vti_DisplaySensorResetMsg{"vti_DisplaySensorResetMsg"};
    Event<bool> vti_ZeroingmAs{"vti_ZeroingmAs"};
};

/// All instances use the same instruments; each has its own session and its own events.
class IDetectorService {
  public:
    virtual ~IDetectorService() = default;

    virtual bool IsCharging() = 0;
    /// Percent.
    virtual uint8_t BatteryLevel() = 0;
    /// Points per millisecond; valid after `GetWaveform`.
    virtual float WaveformResolution() = 0;
    virtual void Mode(const std::string& modeText) = 0;
    virtual void Settings(const std::string& settingsText) = 0;
    /// Clears the exposure state before the first exposure or a redo.
    virtual void BeginRun() = 0;
    /// Keeps the link alive and raises the events; time-outs in ms. False means that the link is down.
    virtual bool Poll(int32_t sleepTimeOut, int32_t shutdownTimeOut) = 0;
    /// Samples of the last exposure joined by ","; empty on failure. Length in ms.
    virtual std::string GetWaveform(int32_t start, float length, int32_t points, uint8_t type) = 0;
    /// True when a finished exposure is waiting; reading resets it.
    virtual bool ExposureDone() = 0;
    virtual void WakeUp() = 0;
    virtual void Armed(bool armed) = 0;
    virtual int32_t TargetFilterCount() = 0;
    virtual void GetTargetFilters(std::vector<std::string>& names, int32_t count) = 0;
    virtual std::string DefaultTargetFilter() = 0;
    virtual void ApplySettings() = 0;
    virtual void QueryTargetFilters() = 0;
    virtual void ActivateTargetFilter() = 0;
    virtual void ExposureUnit(int32_t unit) = 0;
    virtual void ExposureRateUnit(int32_t unit) = 0;
    virtual void FluoroType(int32_t type) = 0;
    virtual void TimeUnit(int32_t unit) = 0;
    virtual void PercentKV(uint8_t percent) = 0;
    virtual void Delay(int16_t milliseconds) = 0;
    virtual void IncludeDelay(bool include) = 0;
    virtual void TargetFilter(const std::string& name) = 0;
    /// Comma separated; a number above zero when a detector answers.
    virtual std::string SerialNumbers() = 0;
    virtual std::string CalibrationDates() = 0;
    virtual int32_t DosimeterConnected() = 0;
    /// 0 when the link is lost.
    virtual int32_t LinkState() = 0;
    virtual void Disconnect() = 0;
    virtual void ResetDetector() = 0;
    /// The connected detector kind, as text.
    virtual std::string DetectorKind() = 0;
    virtual int32_t FirmwareVersion() = 0;
    virtual std::string DosimeterAttached() = 0;
    virtual void ShowIonChamberDialog() = 0;
    /// Writes the dosimeter settings and reads them back. 0: accepted, and the argument holds what the
    /// instrument uses.
    virtual int32_t SyncDosimeter(DosimeterSettings& settings) = 0;
    /// True shunt, false clamp.
    virtual void MASInput(bool shunt) = 0;
    virtual std::string IonChamberName() = 0;
    virtual std::string IonCalFactor() = 0;
    virtual std::string IonCalConstant() = 0;
    virtual std::string InstrumentName(int32_t index) = 0;

    DetectorEvents events;
};

/// The link to the detectors, owned by the plug-in's registration and by the test guide.
class IDetectorLink {
  public:
    virtual ~IDetectorLink() = default;
    virtual void Register() = 0;
    virtual void Unregister() = 0;
    virtual void OpenLink() = 0;
    virtual bool LinkOpen() const = 0;
    virtual void SelectDetector(int32_t kind) = 0;
    virtual void CloseLink() = 0;
};

}  // namespace vorex

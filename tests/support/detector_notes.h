#pragma once

#include <string>
#include <vector>

#include "foundation/detector_service.h"

namespace vorex::test {

/// Writes down what a service announces.
inline void Note(IDetectorService& service, std::vector<std::string>& heard) {
    DetectorEvents& events = service.events;
    const auto flag = [&heard](const char* name) {
        return [&heard, name](bool on) { heard.push_back(std::string(name) + (on ? " on" : " off")); };
    };
    events.VTI_DataReady.Connect([&heard](const ZrdReading& reading) {
        heard.push_back("detector " + reading.kvpAvg + " " + reading.hvl);
    });
    events.vti_TestSWDataReady.Connect([&heard](const PelomarkReading& reading) {
        heard.push_back("dosimeter " + reading.temperature + " " + reading.biasVoltage);
    });
    events.vti_TestmAsDataReady.Connect([&heard](const MasReading& reading) {
        heard.push_back("mas " + reading.ma + " " + reading.dosePerMas);
    });
    events.vti_CheckExposureWaveform.Connect(
        [&heard](uint8_t type) { heard.push_back("waveform " + std::to_string(type)); });
    events.vti_EnableStopButton.Connect(flag("stopButton"));
    events.vti_DisplaySensorResetMsg.Connect(flag("sensorReset"));
    events.vti_ZeroingmAs.Connect(flag("zeroing"));
    events.vti_AddWakeUpButton.Connect(flag("wakeUp"));
}

}  // namespace vorex::test

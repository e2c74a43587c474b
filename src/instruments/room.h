#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/vocabulary.h"

/// A simulated X-ray room: three units and the instruments that measure them. The construction values are a
/// good room; a room file lists the differences. Values without a published source are estimates, marked in
/// docs/PHYSICS.md.
namespace vorex {

inline constexpr std::size_t kMaxRoomBytes = std::size_t{1} << 20;

enum class Generator : uint8_t { kSinglePhase, kSixPulse, kTwelvePulse, kHighFrequency };

/// An mA station that does not deliver the mA that it shows.
struct MaStation {
    double ma = 0;
    double errorPercent = 0;
};

/// An X-ray unit: generator, tube and automatic exposure control.
struct UnitSettings {
    double lowestKv = 40;
    double highestKv = 150;
    Generator generator = Generator::kHighFrequency;
    std::optional<double> ripplePercent;  ///< absent: usual value of the generator
    double kvpErrorPercent = 0.5;
    double kvpVariation = 0.002;      ///< coefficient of variation
    double outputVariation = 0.004;   ///< coefficient of variation of the output at one mAs
    double outputPercent = 100;       ///< of the published output
    double maVariationPercent = 0.5;  ///< standard deviation between stations
    std::vector<MaStation> maStations;
    double riseMs = 1;
    double fallMs = 1;
    double timerErrorMs = 0.2;
    double timerErrorPercent = 0.5;
    double timerDriftPercent = 0;  ///< added with each exposure that the timer ends
    double addedFiltrationMm = 1.5;
    double distanceCm = 100;  ///< of the detector, if the test does not set it

    // Automatic exposure control of the mammographic unit.
    double aecMas = 80;  ///< for the accepted phantom at 28 kV, Mo/Mo
    double aecVariation = 0.005;
    double aecSwingPercent = 0;  ///< too much and too little in turn

    // Brightness control and pulses of the fluoroscopic unit.
    double entranceRate = 43;  ///< mGy/min with the reference phantom of 20 cm PMMA
    double highestRate = 80;   ///< mGy/min at which the control stops
    double highestRateHighLevel = 160;
    double phantomCm = 30;  ///< PMMA in the beam if the test does not set it: the control reaches its maximum
    double phantomDoublingCm = 3.5;  ///< additional PMMA that doubles the rate
    double pulseRate = 15;           ///< per second
    double pulseWidthMs = 8;
};

/// The vented chamber of the Pelomark.
struct ChamberSettings {
    std::string name = "IC 6";
    double volumeCm3 = 6;
    double factor = 1;                 ///< its calibration
    double referenceTemperature = 20;  ///< degrees Celsius of that calibration
    double leakageFa = 5;              ///< fA
    double biasVolts = 300;
};

/// The detector, the dosimeter and the mAs meter.
struct InstrumentSettings {
    int32_t kind = kNoDetector;  ///< connected detector kind; 0: the one that the test asks for
    bool decimalComma = false;
    double battery = 80;  ///< percent
    double batteryPerExposure = 0.05;
    bool charging = false;
    double kvNoisePercent = 0.05;
    double doseNoisePercent = 0.2;
    double hvlNoisePercent = 0.3;
    double timeNoiseMs = 0.02;
    int32_t pollsBeforeExposure = 2;  ///< while the operator sets the unit and leaves the room
    int32_t fluoroscopySeconds = 5;   ///< how long the operator holds the pedal
    double temperatureC = 22;         ///< of the room
    double pressureKpa = 101.325;     ///< of the room
    ChamberSettings chamber;
};

struct LinkSettings {
    int32_t lostAfterExposures = 0;  ///< 0: never
    double waveformFailurePercent = 0;
};

struct Room {
    std::string file = "simulated room";  ///< as it was named, for messages
    UnitSettings radiography;
    UnitSettings fluoroscopy = DefaultFluoroscopy();
    UnitSettings mammography = DefaultMammography();
    InstrumentSettings instruments;
    LinkSettings link;

    static UnitSettings DefaultFluoroscopy();
    static UnitSettings DefaultMammography();
};

/// Reads a room file. Throws FileError and nothing else, also when the file cannot be read.
Room LoadRoom(const std::string& path);
/// Reads a room from memory; the file name is for messages. Throws FileError and nothing else.
Room ParseRoom(std::string_view text, std::string_view file);

}  // namespace vorex

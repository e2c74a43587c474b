#include "instruments/simulated_readings.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string_view>

#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

constexpr double kMsPerSecond = 1000;

/// The range of an instrument. Beyond it the reading is an over-range or under-range mark. (estimates)
struct Range {
    double lowest;
    double highest;
};
constexpr Range kGeneralKv{35, 160};
constexpr Range kMammographyKv{18, 50};
constexpr Range kDetectorMgy{0.0005, 2000};
constexpr Range kChamberMgy{0.0005, 10'000};
constexpr Range kTimeMs{1, 600'000};
constexpr Range kShuntMa{0.1, 2000};
constexpr Range kClampMa{5, 2000};

std::string RangeWord(const Range& range, double value) {
    if (value < range.lowest) return DefaultText(text::kUnderRange, {});
    if (value > range.highest) return DefaultText(text::kOverRange, {});
    return {};
}

std::string Decimals(double value, std::string_view picture, const InstrumentSettings& instruments) {
    std::string text = FormatPicture(value, picture);
    if (instruments.decimalComma) std::replace(text.begin(), text.end(), '.', ',');
    return text;
}

/// Four digits, like an instrument that chooses its range itself.
std::string FourDigits(double value, const InstrumentSettings& instruments) {
    struct PictureRow {
        double below;
        std::string_view picture;
    };
    constexpr PictureRow kPictures[] = {{0.001, "0.0000000"}, {0.01, "0.000000"}, {0.1, "0.00000"},
                                        {1, "0.0000"},        {10, "0.000"},      {100, "0.00"},
                                        {1000, "0.0"}};
    const auto row = std::find_if(std::begin(kPictures), std::end(kPictures),
                                  [&](const PictureRow& r) { return std::abs(value) < r.below; });
    return Decimals(value, row == std::end(kPictures) ? "0" : row->picture, instruments);
}

/// The detector mode, from the text that was sent.
bool InMode(const SentSettings& sent, int32_t mode) {
    return EqualsIgnoringCase(sent.mode, DisplayText(kDetectorModes, mode));
}

struct TimeBaseRow {
    int32_t base;
    double seconds;
};
/// Time bases of a rate as the services count them: 1 second, 2 minute, 3 hour; 4 is a pulse.
constexpr TimeBaseRow kTimeBases[] = {{1, 1}, {2, 60}, {3, 3600}};
constexpr int32_t kPerSecond = 1;
constexpr int32_t kPerPulse = 4;

double PulsesOf(const Shot& shot) {
    constexpr double kInverter = 1000;  // the pulses of an inverter are too fast to count
    if (shot.pulseRate > 0) return std::round(shot.timeMs / kMsPerSecond * shot.pulseRate);
    return shot.pulsesPerSecond < kInverter ? std::round(shot.timeMs / kMsPerSecond * shot.pulsesPerSecond)
                                            : 0;
}

/// The rate of a dose over some seconds, in a time base.
double RateOf(double dose, double seconds, int32_t base, const Shot& shot) {
    if (base == kPerPulse) return PulsesOf(shot) > 0 ? dose / PulsesOf(shot) : 0;
    const auto row = std::find_if(std::begin(kTimeBases), std::end(kTimeBases),
                                  [&](const TimeBaseRow& r) { return r.base == base; });
    return dose / seconds * (row == std::end(kTimeBases) ? 1 : row->seconds);
}

/// The part of an exposure that the detector measures.
struct Window {
    double timeMs = 0;
    double share = 0;  ///< of the air kerma
};

/// The unit's timer counts while the voltage is above 75 %; the detector while it is above the percentage
/// that is set, and after its delay. (the slopes are taken as straight lines)
Window MeasuredWindow(const Shot& shot, const SentSettings& sent) {
    constexpr double kUsualPercent = 75;
    const double percent = sent.percentKV > 0 ? sent.percentKV : kUsualPercent;
    const double whole =
        std::max(0.0, shot.timeMs + (kUsualPercent - percent) / 100 * (shot.riseMs + shot.fallMs));
    const double delay = sent.delay > 0 ? sent.delay : 0;
    if (delay == 0 || (sent.includeDelay && whole > delay)) return {whole, 1};
    const double rest = std::max(0.0, whole - delay);
    return {rest, whole > 0 ? rest / whole : 0};
}

/// The values that the detector measures, before they become texts.
struct Measured {
    double kv;
    double kvMax;
    double hvlMm;
    double mGy;
    double timeMs;
};

Measured MeasuredOf(const Shot& shot, const InstrumentSettings& instruments, const SentSettings& sent,
                    RandomSource& random) {
    constexpr double kRinging = 0.002;  // fraction of the voltage at its front (estimate)
    const Window window = MeasuredWindow(shot, sent);
    Measured measured{};
    measured.kv = shot.kv * random.Around(instruments.kvNoisePercent / 100);
    measured.kvMax = measured.kv * (1 + kRinging * std::abs(random.Normal()));
    measured.hvlMm = shot.hvlMm * random.Around(instruments.hvlNoisePercent / 100);
    measured.mGy = shot.airKermaMgy * window.share * random.Around(instruments.doseNoisePercent / 100);
    measured.timeMs = std::max(0.0, window.timeMs + instruments.timeNoiseMs * random.Normal());
    return measured;
}

const std::string& Either(const std::string& word, const std::string& number) {
    return word.empty() ? number : word;
}

}  // namespace

ZrdReading ReadZrd(const Shot& shot, const InstrumentSettings& instruments, const SentSettings& sent,
                   RandomSource& random) {
    const Measured measured = MeasuredOf(shot, instruments, sent, random);
    const bool fluoroscopy = InMode(sent, kFluoro);
    const Range& kvRange = InMode(sent, kMammo) ? kMammographyKv : kGeneralKv;
    // Without enough radiation the detector sees nothing.
    const std::string noDose = RangeWord(kDetectorMgy, measured.mGy);
    const std::string noKv = Either(noDose, RangeWord(kvRange, measured.kv));
    const std::string noTime = Either(noDose, RangeWord(kTimeMs, measured.timeMs));
    // Units: in fluoroscopy R, mGy and s; otherwise mR, µGy and ms.
    const double seconds = measured.timeMs / kMsPerSecond;
    const double inUnit = sent.exposureUnit == kUnitGy ? measured.mGy : measured.mGy / kMgyPerR;
    const double dose = fluoroscopy ? inUnit : inUnit * 1000;
    const double rate =
        seconds > 0 ? RateOf(dose, seconds, fluoroscopy ? sent.exposureRateUnit : kPerSecond, shot) : 0;

    ZrdReading reading;
    const auto decimals = [&](double value, std::string_view picture) {
        return Decimals(value, picture, instruments);
    };
    reading.kvpAvg = Either(noKv, decimals(measured.kv, "0.0"));
    reading.kvpMax = Either(noKv, decimals(measured.kvMax, "0.0"));
    reading.kvPpv = Either(noKv, decimals(measured.kv * PracticalPeakFactor(shot.ripple), "0.0"));
    reading.hvl = Either(noKv, decimals(measured.hvlMm, "0.00"));
    reading.exposure = Either(noDose, FourDigits(dose, instruments));
    reading.exposureRate = Either(noTime, FourDigits(rate, instruments));
    reading.exposureTime =
        Either(noTime, fluoroscopy ? decimals(seconds, "0.00") : decimals(measured.timeMs, "0.0"));
    reading.exposurePulses = decimals(PulsesOf(shot), "0");
    reading.pulseRate = decimals(shot.pulseRate, "0.0#");
    reading.pulseWidth = decimals(shot.pulseWidthMs, "0.0#");
    return reading;
}

// ------------------------------------------------------------------------------------------ dosimeter

double AirDensityFactor(double temperatureC, double pressureKpa, double referenceC) {
    constexpr double kZeroCelsius = 273.15;
    constexpr double kStandardKpa = 101.325;
    return (kZeroCelsius + temperatureC) / (kZeroCelsius + referenceC) * kStandardKpa / pressureKpa;
}

double ChamberChargePerR(double volumeCm3, double referenceC) {
    constexpr double kCoulombPerKgR = 2.58e-4;
    constexpr double kAirKgPerM3 = 1.1965;  // at 22 degrees Celsius and 101.325 kPa
    constexpr double kAirC = 22;
    constexpr double kM3PerCm3 = 1e-6;
    return kCoulombPerKgR * volumeCm3 * kM3PerCm3 * kAirKgPerM3 /
           AirDensityFactor(referenceC, 101.325, kAirC);
}

namespace {

enum TemperatureUnit : int32_t { kCelsius = 1, kFahrenheit, kKelvin };
enum PressureUnit : int32_t { kInchesOfMercury = 1, kMmOfMercury, kMillibar, kHectopascal, kFeet, kMeters };

double ShownTemperature(double celsius, int32_t unit) {
    if (unit == kFahrenheit) return celsius * 9 / 5 + 32;
    return unit == kKelvin ? celsius + 273.15 : celsius;
}
double CelsiusOf(double shown, int32_t unit) {
    if (unit == kFahrenheit) return (shown - 32) * 5 / 9;
    return unit == kKelvin ? shown - 273.15 : shown;
}

// The standard atmosphere: height in m, pressure in hPa.
constexpr double kAtmosphereM = 44'330.77;
constexpr double kAtmosphereHpa = 1013.25;
constexpr double kAtmospherePower = 0.190263;
constexpr double kFeetPerMeter = 1 / 0.3048;
constexpr double kHpaPerMmHg = 1.333224;
constexpr double kHpaPerInHg = 33.86389;

double ShownPressure(double kPa, int32_t unit) {
    const double hPa = kPa * 10;
    const double height = kAtmosphereM * (1 - std::pow(hPa / kAtmosphereHpa, kAtmospherePower));
    switch (unit) {
        case kInchesOfMercury:
            return hPa / kHpaPerInHg;
        case kMmOfMercury:
            return hPa / kHpaPerMmHg;
        case kFeet:
            return height * kFeetPerMeter;
        case kMeters:
            return height;
        default:
            return hPa;
    }
}
double KpaOf(double shown, int32_t unit) {
    const auto atHeight = [](double height) {
        return kAtmosphereHpa * std::pow(std::max(0.01, 1 - height / kAtmosphereM), 1 / kAtmospherePower);
    };
    switch (unit) {
        case kInchesOfMercury:
            return shown * kHpaPerInHg / 10;
        case kMmOfMercury:
            return shown * kHpaPerMmHg / 10;
        case kFeet:
            return atHeight(shown / kFeetPerMeter) / 10;
        case kMeters:
            return atHeight(shown) / 10;
        default:
            return shown / 10;
    }
}

/// The dosimeter's values for the air in its chamber: from its sensors with their trim, or set by the user.
struct Air {
    double temperature;  ///< in the displayed unit
    double pressure;
    double factor;  ///< that corrects the reading
};

Air AirOf(const InstrumentSettings& instruments, const DosimeterSettings& settings) {
    constexpr float kTrim = 1.2F;  // factory trim of the sensors
    constexpr int32_t kOn = 1;
    const auto sensorT = ShownTemperature(instruments.temperatureC, settings.temperatureUnit) +
                         static_cast<double>(settings.internalTemperatureOffset - kTrim);
    const auto sensorP = ShownPressure(instruments.pressureKpa, settings.pressureUnit) +
                         static_cast<double>(settings.internalPressureOffset - kTrim);
    Air air{settings.userSetTemperature == kOn ? static_cast<double>(settings.temperature) : sensorT,
            settings.userSetPressure == kOn ? static_cast<double>(settings.pressure) : sensorP, 1};
    const double kPa = KpaOf(air.pressure, settings.pressureUnit);
    if (settings.airDensityCorrection == kOn && kPa > 0)
        air.factor = AirDensityFactor(CelsiusOf(air.temperature, settings.temperatureUnit), kPa,
                                      settings.referenceTemperature);
    return air;
}

/// A chamber reading in the unit that is set: 1 R, 2 Gy, 3 C.
double InDoseUnit(double coulomb, double coulombPerR, int32_t unit) {
    constexpr int32_t kGray = 2;
    constexpr int32_t kCoulomb = 3;
    if (unit == kCoulomb) return coulomb;
    const double r = coulomb / coulombPerR;
    return unit == kGray ? r * kMgyPerR / 1000 : r;
}

std::string DoseText(double value, int32_t unit, const InstrumentSettings& instruments) {
    constexpr int32_t kCoulomb = 3;
    if (unit != kCoulomb) return FourDigits(value, instruments);
    std::string text = PlainText(value);  // too small for four digits after the point
    if (instruments.decimalComma) std::replace(text.begin(), text.end(), '.', ',');
    return text;
}

}  // namespace

PelomarkReading ReadPelomark(const Shot& shot, const InstrumentSettings& instruments,
                             const SentSettings& sent, RandomSource& random) {
    constexpr double kFaPerPa = 1000;
    const DosimeterSettings settings = sent.dosimeter.value_or(DosimeterSettings());
    const ChamberSettings& chamber = instruments.chamber;
    const double perR = ChamberChargePerR(chamber.volumeCm3, chamber.referenceTemperature);
    const double seconds = shot.timeMs / kMsPerSecond;
    // Thinner air gives less charge; the leakage adds to it.
    const double charge = shot.airKermaMgy / kMgyPerR * perR /
                              AirDensityFactor(instruments.temperatureC, instruments.pressureKpa,
                                               chamber.referenceTemperature) *
                              random.Around(instruments.doseNoisePercent / 100) +
                          chamber.leakageFa * 1e-15 * seconds;
    const Air air = AirOf(instruments, settings);
    const double corrected = charge * air.factor * chamber.factor;
    const double dose = InDoseUnit(corrected, perR, settings.doseUnit);
    const std::string word = RangeWord(kChamberMgy, corrected / perR * kMgyPerR);
    PelomarkReading reading;
    reading.temperature = Decimals(air.temperature, "0.0", instruments);
    reading.pressure = Decimals(air.pressure, "0.0", instruments);
    reading.adcf = Decimals(air.factor, "0.0000", instruments);
    reading.leakCurrent = Decimals(chamber.leakageFa / kFaPerPa, "0.000", instruments);
    reading.dose = word.empty() ? DoseText(dose, settings.doseUnit, instruments) : word;
    const double rate = seconds > 0 ? RateOf(dose, seconds, settings.doseRateUnit, shot) : 0;
    reading.doseRate = word.empty() ? DoseText(rate, settings.doseUnit, instruments) : word;
    reading.biasVoltage = Decimals(chamber.biasVolts, "0", instruments);
    return reading;
}

// ------------------------------------------------------------------------------------------ mAs meter

MasReading ReadMas(const Shot& shot, const InstrumentSettings& instruments, const SentSettings& sent,
                   const std::string& dose, RandomSource& random) {
    // A clamp around the cable sees less than a shunt in the circuit. (estimate)
    const Range& range = sent.masShunt ? kShuntMa : kClampMa;
    const double noise = sent.masShunt ? 0.001 : 0.005;
    const double ma = shot.ma * random.Around(noise);
    const double mas = shot.mas * random.Around(noise);
    const std::string word = RangeWord(range, ma);
    const double pulses = shot.pulseRate > 0 ? PulsesOf(shot) : 0;
    MasReading reading;
    reading.ma = word.empty() ? Decimals(ma, sent.masShunt ? "0.0" : "0", instruments) : word;
    reading.mas = word.empty() ? FourDigits(mas, instruments) : word;
    reading.masPerPulse = word.empty() ? (pulses > 0 ? FourDigits(mas / pulses, instruments) : "0") : word;
    const double perMas = word.empty() && mas > 0 && IsValidReading(dose) ? ReadNumber(dose) / mas : 0;
    reading.dosePerMas = word.empty() ? (perMas > 0 ? FourDigits(perMas, instruments) : "0") : word;
    return reading;
}

// ------------------------------------------------------------------------------------------ waveforms

namespace {

/// 0 before and after the beam, 1 while it is on, straight lines between.
double Envelope(const Shot& shot, double ms) {
    if (ms < 0 || ms > shot.timeMs + shot.fallMs) return 0;
    if (ms < shot.riseMs) return ms / shot.riseMs;
    return ms > shot.timeMs ? 1 - (ms - shot.timeMs) / shot.fallMs : 1;
}

/// The same inside a pulse of pulsed fluoroscopy.
double BeamAt(const Shot& shot, double ms) {
    const double beam = Envelope(shot, ms);
    if (shot.pulseRate <= 0) return beam;
    return std::fmod(ms, kMsPerSecond / shot.pulseRate) < shot.pulseWidthMs ? beam : 0;
}

}  // namespace

std::string SampleWaveform(const Shot& shot, uint8_t type, double lengthMs, int32_t points,
                           RandomSource& random) {
    const bool current = type == kMaWaveform;
    const double level = current ? shot.ma : shot.kv;
    const double samplesPerSecond = points / lengthMs * kMsPerSecond;
    // Ripple faster than the samples appears as scatter between its extremes.
    const bool scatter = shot.pulsesPerSecond * 2 > samplesPerSecond;
    constexpr double kNoise = 0.002;
    std::string text;
    text.reserve(static_cast<std::size_t>(points) * 5);
    for (int32_t i = 0; i < points; ++i) {
        const double ms = i * lengthMs / points;
        double value = level * BeamAt(shot, ms) * (1 + kNoise * (random.Uniform() - 0.5));
        if (!current) {
            const double phase = scatter ? random.Uniform() : ms / kMsPerSecond * shot.pulsesPerSecond;
            value *= RippleShape(shot.ripple, phase);
        }
        if (i > 0) text += ',';
        text += PlainText(std::round(value * 10) / 10);
    }
    return text;
}

}  // namespace vorex

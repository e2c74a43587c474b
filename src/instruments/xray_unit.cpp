#include "instruments/xray_unit.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "foundation/number_text.h"
#include "foundation/text_keys.h"
#include "foundation/utilities.h"

// The sources and the basis of each number are in docs/PHYSICS.md, "The simulated room".

namespace vorex {

namespace {

constexpr double kReferenceCm = 100;
constexpr double kSecondsPerMinute = 60;
constexpr double kMsPerSecond = 1000;

double Squared(double value) {
    return value * value;
}

struct Point {
    double x;
    double y;
};

/// Linear interpolation between the two points of a table next to x; beyond the table, extrapolation.
template <std::size_t N>
double Interpolated(const Point (&table)[N], double x) {
    const auto last = std::prev(std::end(table));
    const auto upper =
        std::clamp(std::find_if(std::begin(table), std::end(table), [&](const Point& p) { return p.x >= x; }),
                   std::next(std::begin(table)), last);
    const Point& a = *std::prev(upper);
    return a.y + (upper->y - a.y) * (x - a.x) / (upper->x - a.x);
}

/// Output of tungsten with added aluminium: factor * kVp^exponent, mR/mAs at 1 m. (computed)
struct OutputRow {
    double filtrationMm;
    double factor;
    double exponent;
};
constexpr OutputRow kTungstenOutput[] = {
    {1.0, 1.097e-3, 1.986}, {1.5, 6.04e-4, 2.090}, {2.5, 2.10e-4, 2.273}};

/// Half-value layer with +1.5 mm Al against kVp. (computed)
constexpr Point kTungstenHvl[] = {{50, 2.05}, {60, 2.48},  {70, 2.87},  {80, 3.28},
                                  {90, 3.67}, {100, 4.06}, {110, 4.43}, {120, 4.79}};
constexpr double kHvlFiltrationMm = 1.5;
/// 1.7 mm at 1.3 mm Al to 3.77 mm at 4.8 mm Al, at 80 kVp. (published)
constexpr double kHvlPerFiltration = (3.77 - 1.7) / (4.8 - 1.3);
constexpr double kHvlAt80 = 3.28;

/// Against ripple at one peak voltage. (computed)
constexpr Point kRippleOutput[] = {{0, 1.00}, {0.04, 0.97}, {0.14, 0.90}, {1, 0.46}};
constexpr Point kRippleHvl[] = {{0, 1.0}, {0.04, 3.23 / 3.28}, {0.14, 3.12 / 3.28}, {1, 2.81 / 3.28}};

/// A mammographic beam: output at 50 cm in mGy/mAs at a voltage, its exponent, and the line of the HVL.
struct MammographyRow {
    std::string_view targetFilter;
    double output;
    double outputKv;
    double exponent;
    double hvlSlope;
    double hvlOffset;
};
constexpr double kMammographyCm = 50;
// Output of Mo/Mo and Mo/Rh published, of Rh/Rh an estimate; exponents computed; half-value layer published.
// Mo/Rh uses the mean of the two published outputs, 0.1540 at 29 kV and 0.1830 at 31 kV.
constexpr MammographyRow kMammography[] = {
    {"Mo/Mo", 0.172, 28, 3.2, 0.01, 0.08},
    {"Mo/Rh", 0.1679, 29.98, 3.5, 0.0067, 0.2333},
    {"Rh/Rh", 0.1679, 29.98, 3.3, 0.0167, -0.0367},
};
constexpr std::string_view kMammographyNames[] = {kMammography[0].targetFilter, kMammography[1].targetFilter,
                                                  kMammography[2].targetFilter};
constexpr std::string_view kTungstenNames[] = {"W/Al"};

const MammographyRow* FindBeam(std::string_view targetFilter) {
    const auto row = std::find_if(std::begin(kMammography), std::end(kMammography), [&](const auto& beam) {
        return EqualsIgnoringCase(beam.targetFilter, targetFilter);
    });
    return row == std::end(kMammography) ? nullptr : row;
}

/// Usual ripple, and pulses per second at 60 Hz. (published; the inverter's pulses are not counted)
struct GeneratorRow {
    Generator generator;
    double ripple;
    double pulsesPerSecond;
};
constexpr GeneratorRow kGenerators[] = {
    {Generator::kSinglePhase, 1.0, 120},
    {Generator::kSixPulse, 0.14, 360},
    {Generator::kTwelvePulse, 0.05, 720},
    {Generator::kHighFrequency, 0.02, 50'000},
};

const GeneratorRow& RowOf(Generator generator) {
    return *std::find_if(std::begin(kGenerators), std::end(kGenerators),
                         [&](const GeneratorRow& row) { return row.generator == generator; });
}

// The abdomen phantom of the published entrance rate, in PMMA.
constexpr double kReferencePhantomCm = 20;

// The accepted phantom of mammography, and how much more of it doubles the mAs. (estimate)
constexpr double kAcceptedPhantomCm = 4.2;
constexpr double kBreastDoublingCm = 1.0;
constexpr double kAecKv = 28;

}  // namespace

std::span<const std::string_view> TargetFiltersOf(UnitKind kind) {
    if (kind == UnitKind::kMammographic) return kMammographyNames;
    return kTungstenNames;
}

double TungstenOutput(double kv, double addedFiltrationMm) {
    // Attenuation is exponential, so the logarithm is interpolated.
    Point logOutput[std::size(kTungstenOutput)];
    std::transform(std::begin(kTungstenOutput), std::end(kTungstenOutput), std::begin(logOutput),
                   [&](const OutputRow& row) {
                       return Point{row.filtrationMm, std::log(row.factor) + row.exponent * std::log(kv)};
                   });
    return std::exp(Interpolated(logOutput, addedFiltrationMm)) / kMsPerSecond * kMgyPerR;
}

double TungstenHvl(double kv, double addedFiltrationMm) {
    const double hvl = Interpolated(kTungstenHvl, kv);
    // The slope is known at 80 kVp; elsewhere it is taken in proportion. (estimate)
    return std::max(0.0, hvl * (1 + kHvlPerFiltration / kHvlAt80 * (addedFiltrationMm - kHvlFiltrationMm)));
}

double MammographyOutput(std::string_view targetFilter, double kv) {
    const MammographyRow* beam = FindBeam(targetFilter);
    if (!beam) return 0;
    return beam->output * std::pow(kv / beam->outputKv, beam->exponent) *
           Squared(kMammographyCm / kReferenceCm);
}

double MammographyHvl(std::string_view targetFilter, double kv) {
    const MammographyRow* beam = FindBeam(targetFilter);
    return beam ? beam->hvlSlope * kv + beam->hvlOffset : 0;
}

double RippleOutputFactor(double ripple) {
    return Interpolated(kRippleOutput, ripple);
}

double RippleHvlFactor(double ripple) {
    return Interpolated(kRippleHvl, ripple);
}

double RippleShape(double ripple, double phase) {
    constexpr double kPi = 3.14159265358979323846;
    return 1 - ripple * (1 - std::abs(std::sin(kPi * phase)));
}

double PracticalPeakFactor(double ripple) {
    // The mean of the voltage, weighted by its contribution to the air kerma, about its square. (estimate)
    constexpr int kSteps = 64;
    double weights = 0;
    double sum = 0;
    for (int i = 0; i < kSteps; ++i) {
        const double voltage = RippleShape(ripple, (i + 0.5) / kSteps);
        weights += Squared(voltage);
        sum += voltage * Squared(voltage);
    }
    return sum / weights;
}

XrayUnit::XrayUnit(const UnitSettings& settings, UnitKind kind, uint64_t seed)
    : mSettings(settings), mKind(kind), mSeed(seed) {}

std::string XrayUnit::Refusal(const Technique& technique) const {
    const auto refusal = [](std::string_view found, std::string_view expected) {
        return StoredMessage(text::kReasonRefused, {std::string(found), std::string(expected)});
    };
    if (technique.kv < mSettings.lowestKv || technique.kv > mSettings.highestKv)
        return refusal(PlainText(technique.kv) + " kV",
                       PlainText(mSettings.lowestKv) + "-" + PlainText(mSettings.highestKv) + " kV");
    const bool fluoroscopy = mKind == UnitKind::kFluoroscopic;
    const bool needsMa = technique.timed || fluoroscopy;
    if (!technique.automatic && needsMa && !(technique.ma > 0)) return refusal("0 mA", "> 0 mA");
    if (technique.timed && !(technique.timeMs > 0)) return refusal("0 ms", "> 0 ms");
    if (!technique.automatic && !needsMa && !(technique.mas > 0)) return refusal("0 mAs", "> 0 mAs");
    if (mKind == UnitKind::kMammographic && !technique.targetFilter.empty() &&
        !FindBeam(technique.targetFilter))
        return refusal(technique.targetFilter, "Mo/Mo, Mo/Rh, Rh/Rh");
    return {};
}

/// The actual mA of a station: with a fixed random deviation, and the faults of the room.
double XrayUnit::StationFactor(double ma) const {
    RandomSource station(mSeed, static_cast<uint64_t>(std::llround(ma * kMsPerSecond)));
    double factor = station.Around(mSettings.maVariationPercent / 100);
    for (const MaStation& row : mSettings.maStations)
        if (row.ma == ma) factor *= 1 + row.errorPercent / 100;
    return factor;
}

double XrayUnit::TimerMs(double setMs) {
    const double error = mSettings.timerErrorPercent + mSettings.timerDriftPercent * mTimedExposures++;
    double time = std::max(0.0, setMs * (1 + error / 100) + mSettings.timerErrorMs);
    if (mSettings.generator == Generator::kSinglePhase) {
        // The contactor opens at the end of a half wave.
        const double halfWave = kMsPerSecond / RowOf(Generator::kSinglePhase).pulsesPerSecond;
        time = std::max(1.0, std::round(time / halfWave)) * halfWave;
    }
    return time;
}

/// The control keeps the dose after the phantom constant, so a weaker or harder beam changes the mAs and not
/// the dose.
double XrayUnit::AecMas(const Technique& technique, RandomSource& random) {
    const std::string_view beam =
        technique.targetFilter.empty() ? kMammographyNames[0] : std::string_view(technique.targetFilter);
    const double swing = (mAutomaticExposures++ % 2 == 0 ? 1 : -1) * mSettings.aecSwingPercent / 100;
    const double thickness = technique.phantomCm.value_or(kAcceptedPhantomCm);
    return mSettings.aecMas / (mSettings.outputPercent / 100) *
           MammographyOutput(kMammographyNames[0], kAecKv) / MammographyOutput(beam, technique.kv) *
           std::exp2((thickness - kAcceptedPhantomCm) / kBreastDoublingCm) * (1 + swing) *
           random.Around(mSettings.aecVariation);
}

void XrayUnit::ExposeOnce(const Technique& technique, RandomSource& random, Shot& shot) {
    constexpr double kUsualMa = 100;  // if only the mAs is given
    const double setMa = technique.ma > 0 ? technique.ma : kUsualMa;
    shot.ma = setMa * StationFactor(setMa);
    if (technique.timed) {
        shot.timeMs = TimerMs(technique.timeMs);
        shot.mas = shot.ma * shot.timeMs / kMsPerSecond;
        return;
    }
    // The unit integrates the tube current, and ends the exposure at the mAs.
    shot.mas = technique.automatic ? AecMas(technique, random) : technique.mas;
    shot.timeMs = shot.mas / shot.ma * kMsPerSecond;
}

void XrayUnit::Fluoroscope(const Technique& technique, double heldSeconds, RandomSource& random,
                           Shot& shot) const {
    double duty = 1;
    if (technique.pulsed) {
        shot.pulseRate = mSettings.pulseRate;
        shot.pulseWidthMs = std::min(mSettings.pulseWidthMs, kMsPerSecond / mSettings.pulseRate);
        duty = shot.pulseRate * shot.pulseWidthMs / kMsPerSecond;
    }
    // mGy per minute and mA of a continuous beam, at the detector.
    const double perMa = shot.airKermaMgy * kSecondsPerMinute * duty;
    shot.ma = technique.ma * StationFactor(technique.ma);
    if (technique.automatic) {
        const double thickness = technique.phantomCm.value_or(mSettings.phantomCm);
        const double wanted = mSettings.entranceRate *
                              std::exp2((thickness - kReferencePhantomCm) / mSettings.phantomDoublingCm) *
                              random.Around(mSettings.aecVariation);
        const double highest = technique.highLevel ? mSettings.highestRateHighLevel : mSettings.highestRate;
        shot.ma = std::min(wanted, highest) / perMa;
    }
    shot.timeMs = heldSeconds * kMsPerSecond;
    shot.mas = shot.ma * duty * heldSeconds;
}

Shot XrayUnit::Expose(const Technique& technique, double heldSeconds, RandomSource& random) {
    const GeneratorRow& generator = RowOf(mSettings.generator);
    Shot shot;
    shot.ripple = mSettings.ripplePercent ? *mSettings.ripplePercent / 100 : generator.ripple;
    shot.pulsesPerSecond = generator.pulsesPerSecond;
    shot.riseMs = mSettings.riseMs;
    shot.fallMs = mSettings.fallMs;
    shot.kv = technique.kv * (1 + mSettings.kvpErrorPercent / 100) * random.Around(mSettings.kvpVariation);

    double output = 0;
    if (mKind == UnitKind::kMammographic) {
        // These outputs were measured, so they include the ripple of their generators.
        const std::string_view beam =
            technique.targetFilter.empty() ? kMammographyNames[0] : std::string_view(technique.targetFilter);
        output = MammographyOutput(beam, shot.kv);
        shot.hvlMm = MammographyHvl(beam, shot.kv);
    } else {
        output = TungstenOutput(shot.kv, mSettings.addedFiltrationMm) * RippleOutputFactor(shot.ripple);
        shot.hvlMm = TungstenHvl(shot.kv, mSettings.addedFiltrationMm) * RippleHvlFactor(shot.ripple);
    }
    const double distance = technique.distanceCm > 0 ? technique.distanceCm : mSettings.distanceCm;
    shot.airKermaMgy = output * mSettings.outputPercent / 100 * random.Around(mSettings.outputVariation) *
                       Squared(kReferenceCm / distance);  // of one mAs so far
    if (mKind == UnitKind::kFluoroscopic)
        Fluoroscope(technique, heldSeconds, random, shot);
    else
        ExposeOnce(technique, random, shot);
    shot.airKermaMgy *= shot.mas;
    return shot;
}

}  // namespace vorex

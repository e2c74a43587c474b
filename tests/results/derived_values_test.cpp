#include "results/derived_values.h"

#include <functional>
#include <optional>

#include "results/result_fixture.h"

// The derived values of every test and detector kind against numbers worked out by hand. docs/CALCULATIONS.md
// has the formulas, and many of the same examples.

namespace vorex {
namespace {

/// What the instruments answer for one exposure.
struct Shot {
    std::optional<ZrdReading> zrd;
    std::optional<PelomarkReading> pelomark;
    std::optional<MasReading> mas;
};

ZrdReading Beam(std::string kvp, std::string exposure = "100", std::string time = "100") {
    ZrdReading r;
    r.kvpAvg = std::move(kvp);
    r.exposure = std::move(exposure);
    r.exposureTime = std::move(time);
    return r;
}
Shot Zrd(std::string kvp, std::string exposure = "100", std::string time = "100") {
    return {Beam(std::move(kvp), std::move(exposure), std::move(time)), {}, {}};
}
Shot Mammo(std::string exposure) {
    return Zrd("28", std::move(exposure));
}
Shot Fluoro(std::string kvp) {
    ZrdReading r = Beam(std::move(kvp), "0.5", "10");
    r.kvpMax = "71";
    r.kvPpv = "72";
    r.exposureRate = "3";
    r.exposurePulses = "150";
    r.pulseRate = "15";
    r.pulseWidth = "7.2";
    r.hvl = "3.5";
    return {r, {}, {}};
}
Shot Pelomark(std::string dose, std::string rate = "10") {
    return {{}, PelomarkReading{"22", "760", "1.01", "0.2", std::move(dose), std::move(rate), "300"}, {}};
}
Shot Mas(std::string ma, std::string mas, std::string perPulse, std::string dosePerMas) {
    return {{}, {}, MasReading{ma, mas, perPulse, dosePerMas}};
}
Shot Both(Shot first, const Shot& second) {
    first.mas = second.mas;
    return first;
}

struct Expected {
    std::string_view key;
    const char* value;
};

struct Example {
    const char* title;
    int32_t test, kind;
    std::function<void(CConfigCommon&)> set;
    std::vector<Shot> shots;
    std::vector<Expected> expected;  ///< after the last shot
};

class WorkedExamples : public test::ResultTest {
  protected:
    using ResultTest::Begin;
    /// Linearity with 10 mAs in each of three exposures, or any other test.
    void BeginThree(int32_t test, int32_t kind = kZrd) {
        Begin({"",
               test,
               kind,
               [](CConfigCommon& c) {
                   c.machineMas = {"10", "10", "10"};
               },
               {{}, {}, {}},
               {}});
    }
    void Begin(const Example& example) {
        Begin(example.test, example.kind, static_cast<uint8_t>(example.shots.size()));
        if (example.set) example.set(*config);
        result->Initialize(config);
    }
    void Keep(const DerivedRow& row, int32_t source, uint8_t number) {
        EXPECT_EQ(result->StoreResult(row, source), "");
        outcomes = row.outcomes;
        result->UpdateStatus(owner, &selected, number);
    }
    void Take(const Shot& shot, uint8_t number, bool redo = false) {
        const ReadingContext context{*config, *result, static_cast<uint8_t>(number - 1), redo};
        if (shot.zrd) Keep(BuildDetectorResult(context, *shot.zrd), kSourceZrd, number);
        if (shot.pelomark) Keep(BuildDosimeterResult(context, *shot.pelomark), kSourcePelomark, number);
        if (shot.mas) Keep(BuildMasResult(context, *shot.mas), kSourceMas, number);
    }
    /// Takes an exposure again as a run does, with the row of the exposure as the working row.
    void Redo(const Shot& shot, uint8_t number) {
        result->BeginRedo(number);
        result->ShowResultInTestguide(number - 1, true);
        Take(shot, number, true);
        result->EndRedo();
    }
    void Check(const std::vector<Example>& examples) {
        for (const Example& example : examples) {
            SCOPED_TRACE(example.title);
            Begin(example);
            for (std::size_t i = 0; i < example.shots.size(); ++i)
                Take(example.shots[i], static_cast<uint8_t>(i + 1));
            for (const Expected& e : example.expected) EXPECT_EQ(Working(e.key), e.value) << e.key;
        }
    }

    SurveyOutcomes outcomes;  ///< of the last shot
};

std::vector<Shot> ThreeBeams() {
    return {{ZrdReading{"80", "90", "70", "10", "100", "50", "10", "0", "0", "3"}, {}, {}},
            {ZrdReading{"82", "100", "77", "20", "130", "60", "15", "0", "0", "3.5"}, {}, {}},
            {ZrdReading{"84", "110", "84", "30", "160", "70", "20", "0", "0", "4"}, {}, {}}};
}

// Test 100: means, and standard deviation / mean. For 10, 20, 30 the deviation is 10 and the mean 20.
TEST_F(WorkedExamples, ReproducibilityOfTheDetector) {
    const std::vector<Expected> statistics = {
        {key::kAvgKvpAvg, "82.0"},
        {key::kErKvpAvg, "0.02"},  // 2 / 82 = 0.0244
        {key::kAvgKvpMax, "100.0"},
        {key::kErKvpMax, "0.1"},  // 10 / 100
        {key::kAvgKvPpv, "77.0"},
        {key::kErKvPpv, "0.09"},  // 7 / 77 = 0.0909
        {key::kAvgExposure, "20.0"},
        {key::kErExposure, "0.5"},  // 10 / 20
        {key::kAvgExposureRate, "130.0"},
        {key::kErExposureRate, "0.23"},  // 30 / 130 = 0.2308
        {key::kAvgExposureTime, "60.0"},
        {key::kErExposureTime, "0.17"},  // 10 / 60 = 0.1667
        {key::kAvgHvl, "3.5"},
        {key::kErHvl, "0.14"},  // 0.5 / 3.5 = 0.1429
    };
    // clang-format off
    Check({
        {"readings of the ZRD 47500", kRadioRepro, kZrd, {}, ThreeBeams(), statistics},
        {"pulses in place of the time", kRadioRepro, kZrd,
         [](CConfigCommon& c) { c.pMeasurementTimeUnit = kPulses; }, ThreeBeams(),
         {{key::kExposureInPulses, "20"}, {key::kAvgExposureInPulses, "15.0"},
         {key::kErExposureInPulses, "0.33"},  // 5 / 15
         {key::kAvgExposureTime, "(no such column)"}}},
        {"one exposure has no deviation", kRadioRepro, kZrd, {}, {Zrd("80.25")},
         {{key::kAvgKvpAvg, "80.25"}, {key::kErKvpAvg, "0.0"}}},
        {"an over-range exposure empties its column only", kRadioRepro, kZrd, {},
         {Zrd("80", "OL"), Zrd("80", "20")},
         {{key::kAvgExposure, ""}, {key::kErExposure, ""}, {key::kAvgKvpAvg, "80.0"}}},
        {"a mean of zero has no variation", kRadioRepro, kZrd, {}, {Zrd("80", "0"), Zrd("80", "0")},
         {{key::kAvgExposure, "0"}, {key::kErExposure, ""}}},
        {"a decimal comma is a point", kRadioRepro, kZrd, {}, {Zrd("80,5"), Zrd("81,5")},
         {{key::kKvpAvg, "81.5"}, {key::kAvgKvpAvg, "81.0"}}},
    });
    // clang-format on
}

// mA 200, 210, 220: 10 / 210 = 0.0476. mAs 10, 12, 14: 2 / 12 = 0.1667. 1, 2, 3: 1 / 2.
TEST_F(WorkedExamples, ReproducibilityOfTheMasMeter) {
    const std::vector<Expected> statistics = {
        {key::kAvgMa, "210.0"},    {key::kCvMa, "0.05"},       {key::kAvgMas, "12.0"},
        {key::kCvMas, "0.17"},     {key::kAvgMasPulse, "2.0"}, {key::kCvMasPulse, "0.5"},
        {key::kAvgDoseMas, "2.0"}, {key::kCvDoseMas, "0.5"},
    };
    const std::vector<Shot> meter = {Mas("200", "10", "1", "1"), Mas("210", "12", "2", "2"),
                                     Mas("220", "14", "3", "3")};
    // Exposures of 10, 24 and 42 give the meter's dose per mAs: 10/10, 24/12, 42/14. Rates of 10, 12 and 14
    // have a deviation of 2: 2 / 12.
    std::vector<Shot> besideDetector, besideDosimeter;
    const Shot shot = Both(Zrd("80", "100"), Mas("200", "10", "0", "0"));
    const char* exposures[] = {"10", "24", "42"};
    for (std::size_t i = 0; i < meter.size(); ++i) {
        besideDetector.push_back(Both(Zrd("80", exposures[i]), meter[i]));
        besideDosimeter.push_back(Both(Pelomark(exposures[i], meter[i].mas->mas), meter[i]));
    }
    // clang-format off
    Check({
        {"alone", kRadioRepro, kMasMeter, {}, meter, statistics},
        {"with the ZRD 47500", kRadioRepro, kZrdAndMas, {}, besideDetector, statistics},
        {"with the Pelomark, dose", kRadioRepro, kPelomarkAndMas, {}, besideDosimeter, statistics},
        {"with the Pelomark, rate", kRadioRepro, kPelomarkAndMas, [](CConfigCommon& c) { c.PKMode = 1; },
         besideDosimeter, {{key::kAvgMa, "210.0"}, {key::kAvgExposure, "(no such column)"},
         {key::kAvgExposureRate, "12.0"}, {key::kErExposureRate, "0.17"}}},
        {"the Pelomark alone", kRadioRepro, kPelomark, {}, {Pelomark("1", "10"), Pelomark("3", "14")},
         {{key::kAvgExposure, "2.0"}, {key::kErExposure, "0.71"}, {key::kAvgExposureRate, "12.0"}}},
        // 100 mR at 10 mAs are 10 mR/mAs, whatever dose the meter reports.
        {"the shown dose per mAs", kRadioRepro, kZrdAndMas, {}, {shot, shot},
         {{key::kDoseMas, "10"}, {key::kAvgDoseMas, "10.0"}, {key::kCvDoseMas, "0.0"}}},
    });
    // clang-format on
}

// Test 200: (60.8 - 60) / 60 = 1.333 %, (104 - 100) / 100 = 4 %.
TEST_F(WorkedExamples, ErrorsOfVoltageAndTime) {
    const auto setTo = [](const char* kv) {
        return [kv](CConfigCommon& c) {
            c.pGeneratorSetup = kSetupMaTime;
            c.machineKv = {kv};
            c.machineTime = {"100"};
        };
    };
    // clang-format off
    Check({
        {"both", kRadioAccuracy, kZrd, setTo("60"), {Zrd("60.8", "10", "104")},
         {{key::kPercentKvpError, "1.33"}, {key::kAbsoluteKvpError, "0.8"},
         {key::kPercentTimerError, "4.0"}}},
        {"below the set values", kRadioAccuracy, kZrdAndMas, setTo("60"), {Zrd("59.1", "10", "99.5")},
         {{key::kPercentKvpError, "-1.5"}, {key::kAbsoluteKvpError, "-0.9"},
         {key::kPercentTimerError, "-0.5"}}},
        {"no set voltage", kRadioAccuracy, kZrd, setTo("0"), {Zrd("63.125", "10", "104")},
         {{key::kPercentKvpError, ""}, {key::kAbsoluteKvpError, "63.125"}}},
        {"no usable reading", kRadioAccuracy, kZrd, setTo("60"), {Zrd("OL", "10", "UL")},
         {{key::kPercentKvpError, ""}, {key::kAbsoluteKvpError, ""}, {key::kPercentTimerError, ""}}},
        {"no timer with the charge set", kRadioAccuracy, kZrd, {}, {Zrd("80.8")},
         {{key::kPercentKvpError, "1.0"}, {key::kPercentTimerError, "(no such column)"}}},
    });
    // clang-format on
}

// Test 300: 100 mR / 10 mAs = 10, 240 / 20 = 12, |12 - 10| / 22 = 0.0909.
TEST_F(WorkedExamples, ExposurePerMasAndLinearity) {
    const auto charges = [](CConfigCommon& c) { c.machineMas = {"10", "20", "40"}; };
    const auto maTime = [](CConfigCommon& c) {
        c.pGeneratorSetup = kSetupMaTime;
        c.machineMa = {"200"};
    };
    const auto maPulses = [maTime](CConfigCommon& c) {
        maTime(c);
        c.pMeasurementTimeUnit = kPulses;
    };
    // clang-format off
    Check({
        {"first exposure", kRadioLinearity, kZrd, charges, {Zrd("80", "100")},
         {{key::kExposurePerMas, "10.0"}, {key::kErNonAdjacent, ""}}},
        {"second exposure", kRadioLinearity, kZrdAndMas, charges, {Zrd("80", "100"), Zrd("80", "240")},
         {{key::kExposurePerMas, "12.0"}, {key::kErNonAdjacent, "0.09"}}},
        {"compared as it is shown", kRadioLinearity, kZrd, charges, {Zrd("80", "0.24"), Zrd("80", "0.52")},
         {{key::kExposurePerMas, "0.03"},
         {key::kErNonAdjacent, "0.2"}}},  // 0.02 and 0.03, not 0.024 and 0.026
        {"200 mA for 50 ms are 10 mAs", kRadioLinearity, kZrd, maTime, {Zrd("80", "100", "50")},
         {{key::kExposurePerMas, "10.0"}}},
        {"pulses are no time", kRadioLinearity, kZrd, maPulses, {Zrd("80", "100", "50")},
         {{key::kExposurePerMas, ""}}},
        {"no exposure", kRadioLinearity, kZrd, charges, {Zrd("80", "100"), Zrd("80", "0")},
         {{key::kExposurePerMas, ""}, {key::kErNonAdjacent, ""}}},
    });
    // clang-format on
}

// Test 500: (73.5 - 70) / 70 = 5 %.
TEST_F(WorkedExamples, FluoroscopyRowsAndVoltageError) {
    const auto continuous = [](CConfigCommon& c) { c.machineKv = {"70"}; };
    const auto pulsed = [](CConfigCommon& c) {
        c.machineKv = {"70"};
        c.pMeasurementFluoroType = kPulsed;
        c.phantomThickness = {"20 cm"};
        c.mode = {"High"};
    };
    const auto commas = [](CConfigCommon& c) {
        c.importFlags = {"1,0"};
        c.phantomThickness = {"20,5"};
        c.mode = {"High, boost"};
    };
    // clang-format off
    Check({
        {"continuous", kFluoroAccuracy, kZrd, continuous, {Fluoro("73.5")},
         {{key::kFluoroKvpError, "5.0"}, {key::kHvl, "3.5"}, {key::kPulseRate, "(no such column)"}}},
        {"pulsed", kFluoroAccuracy, kZrdAndMas, pulsed, {Fluoro("73.5")}, {{key::kFluoroKvpError, "5.0"},
         {key::kPulseRate, "15"}, {key::kPulseWidth, "7.2"}, {key::kHvl, "3.5"}}},
        {"over range", kFluoroAccuracy, kZrd, continuous, {Fluoro("OL")}, {{key::kFluoroKvpError, ""}}},
        {"exposure rate with the mAs meter", kFluoroExposure, kZrdAndMas, continuous,
         {Both(Fluoro("70"), Mas("3", "0.25", "0", "0"))}, {{"ER Maxi. Exposure Rate1", "3"},
         {key::kHvl, "3.5"}, {key::kDoseMas, "2"}}},  // 0.5 / 0.25
        {"commas of the table", kFluoroExposure, kZrd, commas, {Fluoro("70")}, {{key::kImportWaveform, "1.0"},
         {key::kKvpAvg, "70"}, {key::kPhantomThickness, "20.5"}, {key::kMode, "High, boost"}}},
        {"exposure rate", kFluoroExposure, kZrd, pulsed, {Fluoro("70")}, {{"ER Maxi. Exposure Rate1", "3"},
         {key::kPulseWidth, "7.2"}, {key::kPhantomThickness, "20 cm"}, {key::kMode, "High"}}},
    });
    // clang-format on
}

// Test 900, nominal 28: 28, 28.2, 28.4, 28.6, 29. First four: mean 113.2 / 4 = 28.3, squares 0.2 / 3, root
// 0.2582. All: mean 142.2 / 5 = 28.44, squares 0.592 / 4 = 0.148, root 0.3847; 0.44 / 28 = 1.571 %, 0.3847
// / 28.44 = 0.0135.
TEST_F(WorkedExamples, MammographyVoltage) {
    const auto nominal = [](float kv) { return [kv](CConfigCommon& c) { c.pMachineKV = kv; }; };
    const std::vector<Shot> five = {Zrd("28"), Zrd("28.2"), Zrd("28.4"), Zrd("28.6"), Zrd("29")};
    std::vector<Shot> lastOverRange = five;
    lastOverRange.back() = Zrd("OL");
    const std::vector<Expected> statistics = {
        {key::kHalfMeanKvp, "28.3"},      {key::kHalfStandardDeviation, "0.26"},
        {key::kMeanKvp, "28.44"},         {key::kStandardDeviation, "0.38"},
        {key::kMeanMinusNominal, "0.44"}, {key::kFivePercentNominal, "1.4"},
        {key::kPercentError, "1.57"},     {key::kCv, "0.01"},
    };
    // clang-format off
    Check({
        {"five exposures", kMammoAccRepro, kZrd, nominal(28), five, statistics},
        {"with the mAs meter", kMammoAccRepro, kZrdAndMas, nominal(28), five, statistics},
        {"three exposures", kMammoAccRepro, kZrd, nominal(28), {Zrd("28"), Zrd("28.2"), Zrd("28.4")},
         {{key::kHalfMeanKvp, "28.2"}, {key::kHalfStandardDeviation, "0.2"}, {key::kMeanKvp, "28.2"}}},
        {"the new reading is over range", kMammoAccRepro, kZrd, nominal(28), lastOverRange,
         {{key::kHalfMeanKvp, ""}, {key::kMeanKvp, ""}, {key::kPercentError, ""}, {key::kCv, ""},
         {key::kFivePercentNominal, "1.4"}}},
        {"no nominal voltage", kMammoAccRepro, kZrd, nominal(0), {Zrd("28")},
         {{key::kMeanMinusNominal, "28.0"}, {key::kPercentError, ""}, {key::kCv, "0.0"}}},
    });
    // clang-format on
}

/// 28 kV Mo/Mo, HVL 0.33, 4.2 cm, half glandular: 169.3354 mrad/R. Detector at 60 cm, bucky at 64.2 cm: the
/// skin is at 60 cm as well, and the inverse square factor is 1.
void SetAec(CConfigCommon& c) {
    c.pNominalKV = "28";
    c.pMeasuredHVL = "0.33";
    c.pSourceToDetectorDistance = "60";
    c.pSourceToBuckyDistance = "64.2";
    c.machineMas = {"100", "110", "120"};
}

void SetTungsten(CConfigCommon& c) {
    SetAec(c);
    c.pTargetMaterial = "W";
}

// 900, 1000, 1100 mR: mean 1 R, deviation 0.1 R. mAs: 10 / 110 = 0.0909.
TEST_F(WorkedExamples, AverageGlandularDose) {
    const std::vector<Shot> three = {Mammo("900"), Mammo("1000"), Mammo("1100")};
    const auto corrected = [](CConfigCommon& c) {
        SetAec(c);
        c.pEnergyCorrectionFactor = "1.05";
        c.pSourceToDetectorDistance = "65";
    };
    const auto noDistance = [](CConfigCommon& c) {
        SetAec(c);
        c.pSourceToBuckyDistance = "";
    };
    const auto in = [](int32_t mode, int32_t unit) {
        return [mode, unit](CConfigCommon& c) {
            SetAec(c);
            c.pMeasurementMode = mode;
            c.pMeasurementExposure = unit;
        };
    };
    const std::vector<Expected> plain = {
        {key::kEnergyCorrectedMean, "1.0"}, {key::kStandardDeviations, "0.1"},
        {key::kCvExposure, "0.1"},          {key::kCvMasSettings, "0.09"},
        {key::kSkinExposure, "1.0"},        {key::kDoseConversionFactor, "169.34"},
        {key::kGlandularDose, "169.34"},
    };
    // clang-format off
    Check({
        {"readings in mR", kMammoAec, kZrd, SetAec, three, plain},
        // E = 1.05 R; 0.1 / 1.05 = 0.0952; (65 / 60)^2 * 1.05 = 1.2323 R; 169.3354 * 1.2323 = 208.67.
        {"corrected for energy and distance", kMammoAec, kZrd, corrected, three,
         {{key::kEnergyCorrectedMean, "1.05"}, {key::kStandardDeviations, "0.1"}, {key::kCvExposure, "0.1"},
         {key::kSkinExposure, "1.23"}, {key::kGlandularDose, "208.67"}}},
        {"one setting has no variation", kMammoAec, kZrd, SetAec, {Mammo("900")}, {{key::kCvMasSettings, ""},
         {key::kEnergyCorrectedMean, "0.9"}, {key::kStandardDeviations, "0.0"}, {key::kCvExposure, "0.0"}}},
        {"an unsupported target", kMammoAec, kZrd, SetTungsten, three,
         {{key::kDoseConversionFactor, ""}, {key::kGlandularDose, ""}, {key::kSkinExposure, "1.0"}}},
        {"no distance", kMammoAec, kZrd, noDistance, three,
         {{key::kDoseConversionFactor, "169.34"}, {key::kGlandularDose, ""}, {key::kSkinExposure, ""}}},
        {"an over-range exposure", kMammoAec, kZrd, SetAec, {Mammo("900"), Mammo("OL"), Mammo("1100")},
         {{key::kEnergyCorrectedMean, ""}, {key::kStandardDeviations, ""}, {key::kCvExposure, ""},
         {key::kSkinExposure, ""}, {key::kDoseConversionFactor, ""}, {key::kGlandularDose, ""},
         {key::kCvMasSettings, "0.09"}}},
        // What brings a reading to R or Gy: mR 0.001, R 1, uGy 0.000001, mGy 0.001.
        {"R", kMammoAec, kZrd, in(kFluoro, kUnitR), {Mammo("0.9")},
         {{key::kEnergyCorrectedMean, "0.9"}, {key::kGlandularDose, "152.4"}}},  // 169.3354 * 0.9
        {"uGy", kMammoAec, kZrd, in(kMammo, kUnitGy), {Mammo("9000")},
         {{key::kEnergyCorrectedMean, "0.01"}, {key::kGlandularDose, "1.52"}}},  // 169.3354 * 0.009
        {"mGy", kMammoAec, kZrd, in(kFluoro, kUnitGy), {Mammo("9")}, {{key::kGlandularDose, "1.52"}}},
    });
    // clang-format on
}

// 200 and 300 at 0.001: mean 0.25, deviation 0.0707, 0.0707 / 0.25 = 0.2828, 169.3354 * 0.25 = 42.33.
TEST_F(WorkedExamples, GlandularDoseOfTheDosimeter) {
    const auto gray = [](CConfigCommon& c) {
        SetAec(c);
        c.PKDoseUnit = 1;
    };
    for (int32_t kind : {kPelomark, kPelomarkAndMas}) {
        // clang-format off
        Check({
            {"first dose unit", kMammoAec, kind, SetAec, {Pelomark("200"), Pelomark("300")},
             {{key::kEnergyCorrectedMean, "0.25"}, {key::kStandardDeviations, "0.07"},
             {key::kCvExposure, "0.28"}, {key::kSkinExposure, "0.25"}, {key::kDoseConversionFactor, "169.34"},
             {key::kGlandularDose, "42.33"}, {key::kCvMasSettings, "(no such column)"}}},
            {"any other dose unit", kMammoAec, kind, gray, {Pelomark("9000")},
             {{key::kEnergyCorrectedMean, "0.01"}, {key::kGlandularDose, "1.52"}}},
            {"an empty dose reads 0", kMammoAec, kind, SetTungsten, {Pelomark("200")},
             {{key::kDoseConversionFactor, ""}, {key::kGlandularDose, "0"}}},
        });
        // clang-format on
    }
}

// The dose of the dosimeter is judged like that of the detector; its rate alone derives nothing.
TEST_F(WorkedExamples, OutcomesOfTheDose) {
    struct Case {
        std::vector<int32_t> kinds;
        int32_t rateMode;
        std::vector<Shot> shots;
        int32_t variation;  ///< Pass up to 0.005, as shown
        int32_t dose;       ///< Pass up to 300 mrad
    };
    const std::vector<int32_t> zrd = {kZrd}, dosimeter = {kPelomark, kPelomarkAndMas};
    const Case cases[] = {
        {zrd, 0, {Mammo("1000"), Mammo("1000")}, kPassed, kPassed},
        {zrd, 0, {Mammo("1000"), Mammo("1050")}, kFailed, kPassed},  // 0.0345, shown 0.03
        {zrd, 0, {Mammo("1771"), Mammo("1771")}, kPassed, kPassed},  // 169.3354 * 1.771 = 299.89
        {zrd, 0, {Mammo("1772"), Mammo("1772")}, kPassed, kFailed},  // 300.06
        {zrd, 0, {Mammo("OL")}, kPassed, kPassed},                   // nothing computed reads as 0
        {dosimeter, 0, {Pelomark("1771"), Pelomark("1771")}, kPassed, kPassed},
        {dosimeter, 0, {Pelomark("1772"), Pelomark("1772")}, kPassed, kFailed},
        {dosimeter, 0, {Pelomark("200"), Pelomark("300")}, kFailed, kPassed},  // 0.0707 / 0.25, shown 0.28
        {dosimeter, 0, {Pelomark("OL")}, kPassed, kPassed},
        {dosimeter, 1, {Pelomark("1772")}, kNotTested, kNotTested},
    };
    for (const Case& c : cases)
        for (const int32_t kind : c.kinds) {
            const auto set = [&](CConfigCommon& shaped) {
                SetAec(shaped);
                shaped.PKMode = c.rateMode;
            };
            Begin({"", kMammoAec, kind, set, c.shots, {}});
            for (std::size_t i = 0; i < c.shots.size(); ++i) Take(c.shots[i], static_cast<uint8_t>(i + 1));
            EXPECT_EQ(outcomes.Dose78.value_or(kNotTested), c.variation) << &c - cases;
            EXPECT_EQ(outcomes.Dose80.value_or(kNotTested), c.dose) << &c - cases;
        }
}

// Test 1200: 100 mR in 100 ms are 1000 mR/s, and 1000 * 0.00873 = 8.73 mGy/s.
TEST_F(WorkedExamples, OutputRateAndItsStatusCells) {
    struct Case {
        int32_t mode, unit;
        const char *exposure, *time;
        const char *rate, *kerma;
        int32_t at800, at513;
    };
    const Case cases[] = {
        {kMammo, kUnitR, "100", "100", "1000.0", "8.73", kPassed, kPassed},
        {kMammo, kUnitR, "80", "100", "800.0", "6.98", kPassed, kPassed},  // 6.984
        {kMammo, kUnitR, "79.9", "100", "799.0", "6.98", kFailed, kPassed},
        {kMammo, kUnitR, "51.2", "100", "512.0", "4.47", kFailed, kFailed},
        {kMammo, kUnitGy, "1000", "100", "1000.0", "8.73", kPassed, kPassed},  // 1000 * 0.1 / 0.1
        {kFluoro, kUnitR, "2", "4", "500.0", "4.37", kFailed, kFailed},        // 4.365
        {kFluoro, kUnitGy, "20", "4", "500.0", "4.37", kFailed, kFailed},
        {kMammo, kUnitR, "OL", "100", "", "", kNotTested, kNotTested},
        {kMammo, kUnitR, "100", "UL", "", "", kNotTested, kNotTested},
        {kMammo, kUnitR, "100", "0", "", "", kNotTested, kNotTested},
    };
    for (int32_t kind : {kZrd, kZrdAndMas}) {
        for (const Case& c : cases) {
            SCOPED_TRACE(std::string(c.exposure) + " in " + c.time + ", kind " + std::to_string(kind));
            const auto set = [&](CConfigCommon& shaped) {
                shaped.pMeasurementMode = c.mode;
                shaped.pMeasurementExposure = c.unit;
            };
            Begin({"", kMammoRadiation, kind, set, {Zrd("28")}, {}});
            Take(Zrd("28", c.exposure, c.time), 1);
            EXPECT_EQ(Working(key::kOutputRate), c.rate);
            EXPECT_EQ(Working(key::kAirKermaRate), c.kerma);
            EXPECT_EQ(outcomes.Dose82.value_or(kNotTested), c.at800);
            EXPECT_EQ(outcomes.Dose75.value_or(kNotTested), c.at513);
        }
    }
}

// A row of the dosimeter holds its seven readings, in rate mode six, and in most tests nothing else.
TEST_F(WorkedExamples, TheDosimeterDerivesNothingElsewhere) {
    for (int32_t test : kMeasuringTests) {
        if (test == kRadioRepro || test == kMammoAec) continue;
        Begin({"", test, kPelomark, [](CConfigCommon& c) { c.machineAdjacent = {"1"}; }, {{}}, {}});
        const std::string flags = test == kRadioLinearity ? "0,1," : "0,";
        for (const std::string dose : {"5,", ""}) {
            config->PKMode = dose.empty() ? 1 : 0;
            EXPECT_EQ(JoinedFields(
                          BuildDosimeterResult({*config, *result, 0, false}, *Pelomark("5", "7").pelomark)),
                      flags + dose + "7,22,760,1.01,300,0.2")
                << test;
        }
    }
}

// The statistics belong to the last exposure: 80, 80, 80, then exposure 1 again with 120. Mean 280 / 3
// = 93.33; deviations 26.67, -13.33, -13.33: squares 1066.7 / 2, root 23.09; 23.09 / 93.33 = 0.247.
TEST_F(WorkedExamples, TheLastExposureTakesTheStatisticsOfARedo) {
    BeginThree(kRadioRepro);
    for (uint8_t n = 1; n <= 3; ++n) Take(Zrd("80"), n);
    Redo(Zrd("120"), 1);
    EXPECT_EQ(ValueOf(2, key::kAvgKvpAvg), "93.33");
    EXPECT_EQ(ValueOf(2, key::kErKvpAvg), "0.25");
    EXPECT_EQ(ValueOf(2, key::kKvpAvg), "80");
    EXPECT_EQ(ValueOf(1, key::kAvgKvpAvg), "80.0") << "running statistics of the others stay";
    // A value that was typed counts alike: 200, 200 and 260 mA have mean 220 and deviation 34.64.
    BeginThree(kRadioRepro, kZrdAndMas);
    for (uint8_t n = 1; n <= 3; ++n) Take(Both(Zrd("80"), Mas("200", "10", "0", "0")), n);
    result->SetValue(0, ColumnNumber(result->Current(), key::kMa), "260*");
    EXPECT_EQ(ValueOf(2, key::kAvgMa), "220.0");
    EXPECT_EQ(ValueOf(2, key::kCvMa), "0.16");
    EXPECT_EQ(ValueOf(0, key::kAvgMa), "200.0");
    // The detector's reading of a redo renews what it computes; the meter's statistics wait for its own.
    Redo(Zrd("140"), 1);
    EXPECT_EQ(ValueOf(2, key::kAvgKvpAvg), "100.0");
    EXPECT_EQ(ValueOf(2, key::kAvgMa), "220.0");
}

// 10, 12, 12 mR/mAs; exposure 2 again with 10: 0 / 20 for it, 2 / 22 = 0.0909 for the one after it.
TEST_F(WorkedExamples, ARedoRenewsTheCoefficientOfTheNextExposure) {
    BeginThree(kRadioLinearity);
    Take(Zrd("80", "100"), 1);
    Take(Zrd("80", "120"), 2);
    Take(Zrd("80", "120"), 3);
    EXPECT_EQ(ValueOf(2, key::kErNonAdjacent), "0.0");
    Redo(Zrd("80", "100"), 2);
    EXPECT_EQ(ValueOf(1, key::kErNonAdjacent), "0.0");
    EXPECT_EQ(ValueOf(2, key::kErNonAdjacent), "0.09");
}

// An exposure without a reading: 80, none, 80 have mean 80 and no deviation.
TEST_F(WorkedExamples, AnExposureWithoutAReadingTakesNoPart) {
    BeginThree(kRadioRepro);
    Take(Zrd("80"), 1);
    result->StoreMissing(2);
    Take(Zrd("80"), 3);
    EXPECT_EQ(ValueOf(2, key::kAvgKvpAvg), "80.0");
    EXPECT_EQ(ValueOf(2, key::kErKvpAvg), "0.0");
    Redo(Zrd("110"), 2);
    EXPECT_EQ(ValueOf(1, key::kKvpAvg), "110");
    EXPECT_EQ(ValueOf(2, key::kAvgKvpAvg), "90.0");
    EXPECT_TRUE(result->Superseded().empty()) << "nothing was replaced";
    // Linearity compares with the last reading before it: 10 and 12 mR/mAs.
    BeginThree(kRadioLinearity);
    Take(Zrd("80", "100"), 1);
    result->StoreMissing(2);
    Take(Zrd("80", "120"), 3);
    EXPECT_EQ(ValueOf(2, key::kErNonAdjacent), "0.09");
    // Test 900 counts the readings: 28 and 29 have mean 28.5.
    BeginThree(kMammoAccRepro);
    Take(Zrd("28"), 1);
    result->StoreMissing(2);
    Take(Zrd("29"), 3);
    EXPECT_EQ(ValueOf(2, key::kMeanKvp), "28.5");
}

}  // namespace
}  // namespace vorex

#include "results/result_columns.h"

#include "support/library_test.h"

namespace vorex {
namespace {

class ResultColumns : public test::LibraryTest {
  protected:
    static std::shared_ptr<CConfigCommon> Config(int32_t test, int32_t kind) {
        auto config = std::make_shared<CConfigCommon>();
        config->DefaultValues(test);
        config->DetectorName = kind;
        config->pMeasurementExposure = kUnitR;
        config->pMeasurementTimeUnit = kMilliseconds;
        config->pMeasurementExposureRateUnit = 1;
        config->pMeasurementFluoroType = kContinuous;
        return config;
    }

    static std::string Keys(const MeasurementRow& row) {
        std::string keys;
        for (const auto& item : row) keys += (keys.empty() ? "" : "|") + item->RawKey();
        return keys;
    }
};

TEST_F(ResultColumns, EveryTestAndKindHasItsColumnCount) {
    struct Case {
        int32_t test, kind, pkMode;
        std::size_t count;
    };
    // Counted by hand: 8 readings of the ZRD 47500 (9 with the adjacent flag), 8 of the Pelomark (7 as a
    // rate), 4 of the mAs meter, and the test's own columns.
    const Case cases[] = {
        {100, 1, 0, 22}, {100, 2, 0, 13},  {100, 3, 0, 12},  {100, 3, 1, 9},   {100, 4, 0, 34},
        {100, 5, 0, 24}, {100, 5, 1, 21},  {200, 1, 0, 10},  {200, 4, 0, 14},  {200, 3, 0, 8},
        {300, 1, 0, 11}, {300, 3, 0, 9},   {300, 4, 0, 15},  {500, 1, 0, 9},   {700, 1, 0, 10},
        {700, 2, 0, 5},  {900, 1, 0, 16},  {900, 4, 0, 20},  {1100, 1, 0, 15}, {1100, 3, 0, 14},
        {1100, 3, 2, 7}, {1100, 5, 0, 18}, {1200, 1, 0, 10}, {1200, 5, 0, 12},
    };
    for (const Case& c : cases) {
        const auto config = Config(c.test, c.kind);
        config->PKMode = c.pkMode;
        const MeasurementRow row = BuildColumns(*config);
        EXPECT_EQ(row.size(), c.count) << "test " << c.test << " kind " << c.kind << ": " << Keys(row);
        EXPECT_EQ(row.front()->RawKey(), key::kImportWaveform);
    }
}

TEST_F(ResultColumns, StatisticsFollowTheMasColumnsOfACombinedKind) {
    EXPECT_EQ(Keys(BuildColumns(*Config(1200, 4))),
              "Import Waveform|kVp Avg|kVp Max|kV PPV|Exposure|Exposure Rate|Exposure Time|HVL|"
              "ER Exposure Rate(mR/sec)|ER Air Kerma Rate(mGy/sec)|ER mA|ER mAs|ER mAsPulse|ER DosemAs");
    const MeasurementRow repro = BuildColumns(*Config(100, 4));
    EXPECT_EQ(ColumnNumber(repro, key::kMa), 9);
    EXPECT_EQ(ColumnNumber(repro, key::kAvgKvpAvg), 13);
    EXPECT_EQ(ColumnNumber(repro, key::kAvgMa), 20);
    EXPECT_EQ(ColumnNumber(repro, key::kErKvpAvg), 24);
    EXPECT_EQ(ColumnNumber(repro, key::kCvDoseMas), 34);
    EXPECT_EQ(ColumnNumber(BuildColumns(*Config(100, 2)), key::kMa), 2);
}

TEST_F(ResultColumns, UnitsFollowModeUnitAndTimeBase) {
    struct Case {
        int32_t mode, unit, base;
        std::string_view exposure, rate, time;
    };
    const Case cases[] = {
        {kRadio, kUnitR, 4, "23012::mR", "23169::mR/sec", "22012::ms"},
        {kMammo, kUnitGy, 2, "23013::uGy", "23170::uGy/sec", "22012::ms"},
        {kFluoro, kUnitR, 1, "22020::R", "23171::R/sec", "22209::sec"},
        {kFluoro, kUnitR, 3, "22020::R", "23173::R/hr", "22209::sec"},
        {kFluoro, kUnitGy, 2, "23024::mGy", "23176::mGy/min", "22209::sec"},
        {kFluoro, kUnitGy, 4, "23024::mGy", "23178::mGy/pulse", "22209::sec"},
        {kFluoro, kUnitGy, 9, "23024::mGy", "23175::mGy/sec", "22209::sec"},
    };
    for (const Case& c : cases) {
        const auto config = Config(kRadioRepro, kZrd);
        config->pMeasurementMode = c.mode;
        config->pMeasurementExposure = c.unit;
        config->pMeasurementExposureRateUnit = c.base;
        const MeasurementRow row = BuildColumns(*config);
        EXPECT_EQ(FindMeasurement(row, key::kExposure)->RawUnit(), c.exposure);
        EXPECT_EQ(FindMeasurement(row, key::kExposureRate)->RawUnit(), c.rate);
        EXPECT_EQ(FindMeasurement(row, key::kExposureTime)->RawUnit(), c.time);
    }
}

TEST_F(ResultColumns, PulsesTakeThePlaceOfTimeOutsideFluoroscopyOnly) {
    const auto config = Config(kRadioRepro, kZrd);
    config->pMeasurementTimeUnit = kPulses;
    MeasurementRow row = BuildColumns(*config);
    EXPECT_EQ(ColumnNumber(row, key::kExposureTime), 0);
    EXPECT_EQ(FindMeasurement(row, key::kExposureInPulses)->RawUnit(), "22027::Pulses");
    EXPECT_NE(ColumnNumber(row, key::kAvgExposureInPulses), 0);
    EXPECT_NE(ColumnNumber(row, key::kErExposureInPulses), 0);
    config->pMeasurementMode = kFluoro;
    row = BuildColumns(*config);
    EXPECT_NE(ColumnNumber(row, key::kExposureTime), 0);
    EXPECT_EQ(ColumnNumber(row, key::kExposureInPulses), 0);
}

TEST_F(ResultColumns, PulsedFluoroscopyAddsThePulseColumnsBeforeTheHalfValueLayer) {
    const auto config = Config(kFluoroExposure, kZrd);
    config->pMeasurementFluoroType = kPulsed;
    EXPECT_EQ(Keys(BuildColumns(*config)),
              "Import Waveform|kVp Avg|kVp Max|kV PPV|Exposure|ER Maxi. Exposure Rate|Exposure Time|"
              "Pulse Rate|Pulse Width|HVL|Phantom Thickness|Mode");
    config->pMeasurementMode = kRadio;
    EXPECT_EQ(ColumnNumber(BuildColumns(*config), key::kPulseRate), 0);
}

TEST_F(ResultColumns, DosimeterUnitsAreTheKeysOfTheirParts) {
    struct Case {
        int32_t doseUnit, rateUnit;
        std::string_view dose, rate;
    };
    const Case cases[] = {
        {0, 0, "25114::R", "25114::R/25116::/Sec"},
        {1, 3, "25115::Gy", "25115::Gy/25119::/Pulse"},
        {2, 0, "25121::C", "25120::A"},
    };
    for (const Case& c : cases) {
        const auto config = Config(kRadioRepro, kPelomark);
        config->PKDoseUnit = c.doseUnit;
        config->PKDoseRateUnit = c.rateUnit;
        const MeasurementRow row = BuildColumns(*config);
        EXPECT_EQ(FindMeasurement(row, key::kExposure)->RawUnit(), c.dose);
        EXPECT_EQ(FindMeasurement(row, key::kExposureRate)->RawUnit(), c.rate);
        EXPECT_EQ(FindMeasurement(row, key::kTemperature)->RawUnit(), "25102::°C");
        EXPECT_EQ(FindMeasurement(row, key::kPressure)->RawUnit(), "25106::mmHg");
    }
}

TEST_F(ResultColumns, TubeVoltagesCarryTheSetVoltageAsPreset) {
    const auto config = Config(kRadioRepro, kZrd);
    config->pMachineKV = 81.5F;
    for (const auto& item : BuildColumns(*config)) {
        const bool voltage =
            item->RawKey() == key::kKvpAvg || item->RawKey() == key::kKvpMax || item->RawKey() == key::kKvPpv;
        EXPECT_EQ(TextOf(item->RawPresetValue()), voltage ? "81.5" : "") << item->RawKey();
    }
}

TEST_F(ResultColumns, PicturesSurviveTheNumberInAKey) {
    EXPECT_EQ(PictureOfColumn(kRadioAccuracy, key::kAbsoluteKvpError), "0.0#");
    EXPECT_EQ(PictureOfColumn(kRadioAccuracy, key::kPercentKvpError), "0.0###");
    EXPECT_EQ(PictureOfColumn(kRadioLinearity, key::kErAdjacent), "0.0###");
    EXPECT_EQ(PictureOfColumn(kFluoroExposure, "ER Maxi. Exposure Rate3"), "");
    EXPECT_EQ(PictureOfColumn(kRadioRepro, key::kMas), "0.0###");
    EXPECT_EQ(PictureOfColumn(kRadioRepro, key::kKvpAvg), "");
}

TEST(ColumnFacts, KeysBelongToTheirFamilies) {
    for (std::string_view quantity : {"kVp Avg", "kVp Max", "kV PPV", "Exposure", "Exposure Rate",
                                      "Exposure Time", "Exposure In Pulses", "HVL"}) {
        const std::string row = "ER " + std::string(quantity);
        EXPECT_TRUE(IsWaveformQuantity(quantity)) << quantity;
        EXPECT_FALSE(IsWaveformQuantity(row)) << row;
        EXPECT_TRUE(IsVariationRow(row)) << row;
        EXPECT_FALSE(IsVariationRow(quantity)) << quantity;
    }
    for (std::string_view other : {"Pulse Rate", "Pulse Width", "ER CV", "ER mA", ""}) {
        EXPECT_FALSE(IsWaveformQuantity(other)) << other;
        EXPECT_FALSE(IsVariationRow(other)) << other;
    }
    for (std::string_view quantity : {"mA", "mAs", "mAsPulse", "DosemAs"})
        for (std::string_view prefix : {"ER ", "ER Avg ", "ER CV "})
            EXPECT_TRUE(IsMasFamily(std::string(prefix) + std::string(quantity))) << prefix << quantity;
    EXPECT_FALSE(IsMasFamily("mAs"));
    EXPECT_TRUE(IsMaxExposureRate("ER Maxi. Exposure Rate"));
    EXPECT_TRUE(IsMaxExposureRate("ER Maxi. Exposure Rate3"));
    EXPECT_FALSE(IsMaxExposureRate("ER Exposure Rate"));
}

}  // namespace
}  // namespace vorex

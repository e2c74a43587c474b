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

/// `result_report_test.cpp` prints the columns of each test and kind; here is what a report does not show.
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
    const std::tuple<int32_t, int32_t, int32_t, std::string_view, std::string_view, std::string_view>
        cases[] = {
            {kRadio, kUnitR, 4, "23012::mR", "23169::mR/sec", "22012::ms"},
            {kMammo, kUnitGy, 2, "23013::uGy", "23170::uGy/sec", "22012::ms"},
            {kFluoro, kUnitR, 1, "22020::R", "23171::R/sec", "22209::sec"},
            {kFluoro, kUnitR, 2, "22020::R", "23172::R/min", "22209::sec"},
            {kFluoro, kUnitR, 3, "22020::R", "23173::R/hr", "22209::sec"},
            {kFluoro, kUnitR, 4, "22020::R", "23174::R/pulse", "22209::sec"},
            {kFluoro, kUnitR, 9, "22020::R", "23171::R/sec", "22209::sec"},
            {kFluoro, kUnitGy, 1, "23024::mGy", "23175::mGy/sec", "22209::sec"},
            {kFluoro, kUnitGy, 2, "23024::mGy", "23176::mGy/min", "22209::sec"},
            {kFluoro, kUnitGy, 3, "23024::mGy", "23177::mGy/hr", "22209::sec"},
            {kFluoro, kUnitGy, 4, "23024::mGy", "23178::mGy/pulse", "22209::sec"},
        };
    for (const auto& [mode, unit, base, exposure, rate, time] : cases) {
        const auto config = Config(kRadioRepro, kZrd);
        config->pMeasurementMode = mode;
        config->pMeasurementExposure = unit;
        config->pMeasurementExposureRateUnit = base;
        const MeasurementRow row = BuildColumns(*config);
        EXPECT_EQ(FindMeasurement(row, key::kExposure)->RawUnit(), exposure);
        EXPECT_EQ(FindMeasurement(row, key::kExposureRate)->RawUnit(), rate);
        EXPECT_EQ(FindMeasurement(row, key::kExposureTime)->RawUnit(), time);
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
    const MeasurementRow row = BuildColumns(*config);
    EXPECT_EQ(FindMeasurement(row, key::kPulseRate)->RawUnit(), "23149::Pps");
    EXPECT_EQ(FindMeasurement(row, key::kPulseWidth)->RawUnit(), "22012::ms");
    config->pMeasurementMode = kRadio;
    EXPECT_EQ(ColumnNumber(BuildColumns(*config), key::kPulseRate), 0);
}

TEST_F(ResultColumns, DosimeterUnitsAreTheKeysOfTheirParts) {
    const auto config = Config(kRadioRepro, kPelomark);
    config->PKDoseUnit = 1;
    config->PKDoseRateUnit = 3;
    EXPECT_EQ(FindMeasurement(BuildColumns(*config), key::kExposure)->RawUnit(), "25115::Gy");
    EXPECT_EQ(FindMeasurement(BuildColumns(*config), key::kExposureRate)->RawUnit(),
              "25115::Gy/25119::/Pulse");
}

TEST_F(ResultColumns, PicturesSurviveTheNumberInAKey) {
    for (const auto& [test, column, picture] :
         {std::tuple{kRadioAccuracy, key::kAbsoluteKvpError, "0.0#"},
          {kRadioAccuracy, key::kPercentKvpError, "0.0###"},
          {kRadioLinearity, key::kErAdjacent, "0.0###"},
          {kFluoroExposure, std::string_view("ER Maxi. Exposure Rate3"), ""},
          {kRadioRepro, key::kMas, "0.0###"},
          {kRadioRepro, key::kKvpAvg, ""}})
        EXPECT_EQ(PictureOfColumn(test, column), picture) << column;
}

TEST(ColumnFacts, KeysBelongToTheirFamilies) {
    const auto families = [](std::string_view key) {
        return std::string(IsWaveformQuantity(key) ? "waveform " : "") +
               (IsVariationRow(key) ? "variation " : "") + (IsMasFamily(key) ? "mAs " : "") +
               (IsMaxExposureRate(key) ? "rate " : "");
    };
    for (const std::string quantity : {"kVp Avg", "kVp Max", "kV PPV", "Exposure", "Exposure Rate",
                                       "Exposure Time", "Exposure In Pulses", "HVL"}) {
        EXPECT_EQ(families(quantity), "waveform ") << quantity;
        EXPECT_EQ(families("ER " + quantity), "variation ") << quantity;
    }
    for (const std::string quantity : {"mA", "mAs", "mAsPulse", "DosemAs"})
        for (const std::string prefix : {"ER ", "ER Avg ", "ER CV "})
            EXPECT_EQ(families(prefix + quantity), "mAs ") << prefix << quantity;
    for (std::string_view other : {"Pulse Rate", "Pulse Width", "ER CV", "mAs", ""})
        EXPECT_EQ(families(other), "") << other;
    for (std::string_view rate : {"ER Maxi. Exposure Rate", "ER Maxi. Exposure Rate3"})
        EXPECT_EQ(families(rate), "rate ") << rate;
}

}  // namespace
}  // namespace vorex

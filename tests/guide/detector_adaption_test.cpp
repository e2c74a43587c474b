#include "guide/detector_adaption.h"

#include "support/library_test.h"

namespace vorex::test {
namespace {

using DetectorAdaption = LibraryTest;

TEST_F(DetectorAdaption, SettingsOfTheDosimeterCountFromOne) {
    CConfigCommon config;
    config.AirDensityCorrection = false;
    config.UserSetTemperature = true;
    config.UserSetPressure = false;
    config.AutoReset = true;
    config.TemperatureValue = 21.5F;
    config.PressureValue = 755;
    config.ReferenceTemperature = 22;
    config.PKMode = 2;
    config.PKDoseUnit = 1;
    config.PKDoseRateUnit = 3;
    config.PKFrameRate = "7.5";
    config.PKTemperatureUnit = 1;
    config.PKPressureUnit = 4;
    config.InternalPressureOffset = -2;
    config.InternalTemperatureOffset = 0.5F;
    const DosimeterSettings sent = DosimeterSettingsOf(config);
    EXPECT_EQ(sent.airDensityCorrection, 2);
    EXPECT_EQ(sent.userSetTemperature, 1);
    EXPECT_EQ(sent.userSetPressure, 0);
    EXPECT_EQ(sent.autoReset, 1);
    EXPECT_EQ(sent.temperature, 21.5F);
    EXPECT_EQ(sent.pressure, 755);
    EXPECT_EQ(sent.referenceTemperature, 22);
    EXPECT_EQ(sent.mode, 3);
    EXPECT_EQ(sent.doseUnit, 2);
    EXPECT_EQ(sent.doseRateUnit, 4);
    EXPECT_EQ(sent.frameRate, 7);
    EXPECT_EQ(sent.temperatureUnit, 2);
    EXPECT_EQ(sent.pressureUnit, 5);
    EXPECT_EQ(sent.internalPressureOffset, -2);
    EXPECT_EQ(sent.internalTemperatureOffset, 0.5F);

    // What comes back unchanged leaves the configuration as it was, the typed frame rate included.
    TakeDosimeterSettings(sent, config);
    EXPECT_FALSE(config.AirDensityCorrection);
    EXPECT_TRUE(config.UserSetTemperature && config.AutoReset);
    EXPECT_EQ(config.PKMode, 2);
    EXPECT_EQ(config.PKPressureUnit, 4);
    EXPECT_EQ(config.PKFrameRate, "7.5");
    DosimeterSettings changed = sent;
    changed.frameRate = 30;
    changed.doseUnit = 1;
    TakeDosimeterSettings(changed, config);
    EXPECT_EQ(config.PKFrameRate, "30");
    EXPECT_EQ(config.PKDoseUnit, 0);
}

}  // namespace
}  // namespace vorex::test

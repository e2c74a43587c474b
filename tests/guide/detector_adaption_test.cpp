#include "guide/detector_adaption.h"

#include "support/distinct_config.h"
#include "support/library_test.h"

namespace vorex::test {
namespace {

using DetectorAdaption = LibraryTest;

TEST_F(DetectorAdaption, SettingsOfTheDosimeterCountFromOne) {
    CConfigCommon config = *DistinctConfig(kRadioRepro);
    const DosimeterSettings sent = DosimeterSettingsOf(config);
    DosimeterSettings expected;
    expected.airDensityCorrection = 2;
    expected.userSetTemperature = expected.autoReset = 1;
    expected.temperature = 21.5F;
    expected.pressure = 755;
    expected.referenceTemperature = 19;
    expected.mode = 3;
    expected.doseUnit = 2;
    expected.doseRateUnit = 4;
    expected.frameRate = 7;
    expected.temperatureUnit = 2;
    expected.pressureUnit = 5;
    expected.internalPressureOffset = -2.5F;
    expected.internalTemperatureOffset = 3.25F;
    EXPECT_TRUE(sent == expected);

    // What comes back unchanged leaves the configuration as it was, the typed frame rate included.
    CConfigCommon taken = *DistinctConfig(kRadioRepro);
    TakeDosimeterSettings(sent, taken);
    EXPECT_TRUE(DosimeterSettingsOf(taken) == expected);
    EXPECT_EQ(taken.PKFrameRate, "7.5");
    expected.frameRate = 30;
    expected.doseUnit = 1;
    expected.airDensityCorrection = expected.userSetPressure = 1;
    TakeDosimeterSettings(expected, config);
    EXPECT_TRUE(DosimeterSettingsOf(config) == expected);
    EXPECT_EQ(config.PKFrameRate, "30");
    EXPECT_TRUE(config.AirDensityCorrection && config.UserSetPressure);
}

}  // namespace
}  // namespace vorex::test

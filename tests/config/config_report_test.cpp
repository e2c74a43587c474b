#include "config_fixture.h"
#include "support/distinct_config.h"
#include "support/recording_report.h"

namespace vorex::test {
namespace {

/// A row of the settings, and a heading among them.
std::string V(const std::string& label, const std::string& value) {
    return "|      " + label + "|" + value + ";\n";
}
std::string H(const std::string& heading) {
    return "|" + heading + ";\n";
}

const std::string kHead = "|{\\i\\b Configuration}|{\\i\\b Value};\n";
// (8960 - 2240) / 6 - 50 = 1070 for the table width of 10080 - 2 * 560.
const std::string kFormat = "table <+560|<2440|>+1340|>+1470|>+1070|>+1070|>+1070|>+!504!|<+560;\n";

class ConfigReport : public ConfigTest {
  protected:
    static std::shared_ptr<CConfigCommon> Config(int32_t test, int32_t kind) {
        auto config = DistinctConfig(test);
        config->OverridePrintReport = true;
        config->DetectorName = kind;
        config->pMeasurementMode = kRadio;
        config->pMeasurementSettings = kAutoSettings;
        config->pMeasurementExposure = kUnitR;
        config->pTargetFilterName.clear();
        config->pNoOfExposures = 0;
        return config;
    }
    static std::string Printed(CConfigCommon& config) {
        RecordingReport report;
        config.PrintReport(&report, nullptr);
        return report.Calls();
    }
    /// The settings of a detector measuring radiography, then the rows of the machine.
    static std::string Settings(const std::string& machine, const std::string& after = "") {
        return "style 7\n" + kFormat + kHead + H("Measurement Settings") + V("Detector Mode", "RADIO") +
               V("Detector Settings", "AUTO") + V("Exposure Unit", "R") + H("Machine Settings") + machine +
               after;
    }
};

TEST_F(ConfigReport, EachTestPrintsItsMachineSettings) {
    const std::string sdd = V("SDD", "61.5 Inches");
    const std::string spot = V("Focal Spot Size", "Large");
    const std::string setup = V("Generator Setup", "mAs");
    const std::string kvp = V("kVp", "81 KV");
    const std::string time = V("Time", "84 ms");
    const std::string mA = V("mA", "82 mA"), mAs = V("mAs", "83 mAs");
    const std::pair<int32_t, std::string> tests[] = {
        {kRadioRepro, sdd + setup + spot + kvp + mAs},
        {kRadioAccuracy, sdd + setup},
        {kRadioLinearity, sdd + setup + kvp + time},
        {kFluoroAccuracy, sdd + spot},
        {kFluoroExposure, sdd + spot},
        {kMammoAccRepro, spot + kvp + mA + mAs + time},
        {kMammoRadiation,
         V("SDD", "85 cm") + kvp + time + V("Anode(Target)", "anode") + V("Filter", "machine filter")},
    };
    for (const auto& [test, machine] : tests) {
        const auto config = Config(test, kZrd);
        EXPECT_EQ(Printed(*config), Settings(machine)) << test;
        config->DetectorName = kZrdAndMas;
        EXPECT_EQ(Printed(*config), Settings(machine, V("mAs Input Type", "Clamp"))) << test;
    }
    const auto config = Config(kRadioRepro, kZrd);
    config->pGeneratorSetup = kSetupMaTime;
    EXPECT_EQ(Printed(*config), Settings(sdd + V("Generator Setup", "mA*Time") + spot + kvp + mA + time));
}

TEST_F(ConfigReport, TheAecTestPrintsWhatWasTypedAndNoUnitWithoutANumber) {
    const auto config = Config(kMammoAec, kZrd);
    config->pSourceToDetectorDistance = " ";
    config->pFilmType = "a|b;c{d}\\e";
    config->pMeasuredHVL.clear();
    EXPECT_EQ(
        Printed(*config),
        Settings(V("Breast Thickness", "4.5 cm") + V("Glandular Fraction", "0.4") + V("Nominal KV", "26 KV") +
                 V("Source to Detector Distance", "") + V("Souce to Bucky Distance", "64 cm") +
                 V("Correction Factor", "1.1") + V("Density Control Settings", "dc") +
                 V("Cassette Size", "18 cm") + V("SID", "65 cm") + V("Film Type", "a\\|b\\;c\\{d\\}\\\\e") +
                 V("Filter", "filter") + V("AEC Mode", "aec") + V("Field Restriction", "field") +
                 V("Imaging Mode", "imaging") + V("Screen Type", "screen") + V("Target Material", "target") +
                 V("Measured HVL", "") + V("Phantom", "phantom")));
}

TEST_F(ConfigReport, ModeAndSettingsDecideWhichDetectorRowsArePrinted) {
    const std::string unit = V("Exposure Unit", "Gy");
    const std::string rate = V("Exposure Rate Unit", "Gy/Pulse");
    const std::string byHand =
        V("Time Units", "Pulses") + V("%KV", "76") + V("Delay", "-120") + V("Include Delay", "True");
    const std::tuple<int32_t, int32_t, std::string> cases[] = {
        {kRadio, 1, V("Detector Mode", "RADIO") + V("Detector Settings", "AUTO") + unit},
        {kMammo, 2, V("Detector Mode", "MAMMO") + V("Detector Settings", "MANUAL") + unit + byHand},
        {kDental, 3, V("Detector Mode", "DENTAL") + V("Detector Settings", "DEFAULT") + unit + byHand},
        {kFluoro, 1, V("Detector Mode", "FLUORO") + V("Detector Settings", "AUTO") + unit + rate},
        {kFluoro, 2,
         V("Detector Mode", "FLUORO") + V("Detector Settings", "MANUAL") + unit + rate +
             V("Fluoro Type", "Pulsed")},
    };
    for (const auto& [mode, setting, rows] : cases) {
        for (const std::string targetFilter : {"  ", "Mo/Rh"}) {
            const auto config = Config(kRadioAccuracy, kZrd);
            config->pMeasurementMode = mode;
            config->pMeasurementSettings = setting;
            config->pMeasurementExposure = kUnitGy;
            config->pTargetFilterName = targetFilter;
            config->pSDDValue = 100;
            config->pSDDUnit = kCentimeter;
            const std::string line = targetFilter == "Mo/Rh" ? V("Target/Filter", "Mo/Rh") : "";
            EXPECT_EQ(Printed(*config), "style 7\n" + kFormat + kHead + H("Measurement Settings") + rows +
                                            line + H("Machine Settings") + V("SDD", "100 Centimeters") +
                                            V("Generator Setup", "mAs"))
                << mode << " " << setting;
        }
    }
}

TEST_F(ConfigReport, ThePelomarkPrintsItsSettingsWithTheOffsetsSwapped) {
    const auto config = Config(kRadioRepro, kPelomark);
    config->pNoOfExposures = 3;
    config->AirDensityCorrection = true;
    config->IonChamberName.clear();
    const std::string begin = "style 7\n" + kFormat + kHead + H("Pelomark Mode Settings");
    const std::string mode = V("Mode", "Low Rate") + V("Automatic Reset", "ON") + H("Pelomark Unit Settings");
    const std::string units =
        V("Frame Rate", "7.5") + V("Temperature Unit", "°F") + V("Pressure Unit", "feet");
    const std::string noChamber = V("Ion Chamber Name", "No Ion Chamber");
    EXPECT_EQ(Printed(*config),
              begin + V("Air Density Correction", "ON") + V("User Set Temperature", "21.5") +
                  V("User Set Pressure", "755") + V("Reference Temperature", "19") + mode +
                  V("Dose Unit", "Gy") + V("Dose Rate Unit", "Gy/Pulse") + units +
                  H("Temperature & Pressure Sensor Adjust") + V("Internal Temperature Offset", "-2.5") +
                  V("Internal Pressure Offset", "3.25") + noChamber);

    config->AirDensityCorrection = false;
    config->PKDoseUnit = kDoseInCoulomb;
    const std::string charge = V("Dose Unit", "C") + V("Dose Rate Unit", "A");
    EXPECT_EQ(Printed(*config),
              begin + V("Air Density Correction", "OFF") + mode + charge + units + noChamber);

    config->IonChamberName = "10X6-6";
    config->DetectorName = kPelomarkAndMas;
    config->ManualSelectedInTestGuide = true;
    EXPECT_EQ(Printed(*config), begin + V("Air Density Correction", "OFF") + mode + charge + units +
                                    V("Ion Chamber Name", "10X6-6") + V("Cal Factor", "factor") +
                                    V("Cal Constant", "constant") + V("mAs Input Type", "Manual"))
        << "the input type after the chamber, and no exposure table";
}

TEST_F(ConfigReport, TheMasMeterAloneAndAConfigurationKeptOutPrintNothing) {
    for (int32_t test : kMeasuringTests) {
        const auto config = Config(test, kMasMeter);
        config->pNoOfExposures = 2;
        EXPECT_EQ(Printed(*config), "") << test;
        config->DetectorName = kZrd;
        EXPECT_NE(Printed(*config), "") << test;
        config->OverridePrintReport = false;
        EXPECT_EQ(Printed(*config), "") << test;
        EXPECT_NO_THROW(config->PrintReport(nullptr, nullptr));
    }
}

TEST_F(ConfigReport, EachTestPrintsItsPlannedExposures) {
    const std::tuple<int32_t, int32_t, std::string> cases[] = {
        {kFluoroExposure, kSetupMas,
         "table <+560|<+1000|<+1000|<+2000|<+2000|<+500;\n"
         "|{\\i\\b kVp               }|{\\i\\b mA }|{\\i\\b Phantom Thickness     }|{\\i\\b Mode    };\n"
         "|80        |10       |5 cm                 |Normal               ;\n"
         "|70.5      |3        |a text of 25 characters !!|Normal               ;\n"},
        {kRadioAccuracy, kSetupMas,
         "table <+560|<+1700|<+1000|<+1000;\n"
         "|{\\i\\b Focal Spot Size  }|{\\i\\b kVp     }|{\\i\\b mAs     };\n"
         "|Large|80|20;\n|Small|70.5|0;\n"},
        {kRadioAccuracy, kSetupMaTime,
         "table <+560|<+1700|<+1000|<+1000|<+1000;\n"
         "|{\\i\\b Focal Spot Size  }|{\\i\\b kVp     }|{\\i\\b mA     }|{\\i\\b mSec    };\n"
         "|Large|80|10|100;\n|Small|70.5|3|50;\n"},
        {kRadioLinearity, kSetupMas,
         "table <+560|<+1200|<+1600|<+1500;\n"
         "|{\\i\\b Adjacent  }|{\\i\\b Focal Spot Size     }|{\\i\\b Set mAs};\n"
         "|No        |Large            |20             ;\n|Yes        |Small            |0              ;\n"},
        {kRadioLinearity, kSetupMaTime,
         "table <+560|<+1200|<+1600|<+1500;\n"
         "|{\\i\\b Adjacent  }|{\\i\\b Focal Spot Size      }|{\\i\\b Set mA};\n"
         "|No        |Large            |10             ;\n|Yes        |Small            |3              ;\n"},
        {kFluoroAccuracy, kSetupMas,
         "table <+560|<+1500|<+1500;\n"
         "|{\\i\\b kVp          }|{\\i\\b mA          };\n|80|10;\n|70.5|3;\n"},
        {kMammoRadiation, kSetupMas,
         "table <+560|<+1500|<+1500;\n"
         "|{\\i\\b SID(cm)          }|{\\i\\b mAs          };\n|60|20;\n|65.5|0;\n"},
        {kMammoAec, kSetupMas, "table <+560|<+1000;\n|{\\i\\b mAs    };\n|20;\n|0;\n"},
        {kRadioRepro, kSetupMas, ""},
        {kMammoAccRepro, kSetupMas, ""},
    };
    for (const auto& [test, setup, expected] : cases) {
        const auto config = Config(test, kZrd);
        config->pGeneratorSetup = setup;
        const std::string withoutTable = Printed(*config);
        config->pNoOfExposures = 2;
        config->machineKv = {"80.0", "70,5"};
        config->machineMa = {"10", "3"};
        config->machineMas = {"20", "x"};
        config->machineTime = {"100", "50"};
        config->machineAdjacent = {"0", "1"};
        config->focalSpot = {"1", "2"};
        config->sid = {"60", "65.5"};
        config->phantomThickness = {"5 cm", "a text of 25 characters !!"};
        config->mode = {"Normal", "Normal"};
        EXPECT_EQ(Printed(*config), withoutTable + expected) << test << " " << setup;
    }
}

TEST_F(ConfigReport, AnExposureTableContinuesUnderItsHeadOnTheNextPage) {
    const auto config = Config(kMammoAec, kZrd);
    config->pNoOfExposures = 5;
    config->machineMas = {"1", "2", "3", "4", "5"};
    RecordingReport report;
    config->PrintReport(&report, nullptr);
    const int32_t settingsHeight = 24 * RecordingReport::kRowHeight;
    const std::string columns = "table <+560|<+1000;\n|{\\i\\b mAs    };\n";
    struct Case {
        int32_t left;  // below the settings
        std::string expected;
    };
    const Case cases[] = {
        // The head wants its own 200 twips and 500 below.
        {699, "page\n" + columns + "|1;\n|2;\n|3;\n|4;\n|5;\n"},
        {700, columns + "|1;\n|2;\npage\n" + columns + "|3;\n|4;\n|5;\n"},
        {1199, columns + "|1;\n|2;\n|3;\n|4;\npage\n" + columns + "|5;\n"},
        {1200, columns + "|1;\n|2;\n|3;\n|4;\n|5;\n"},
    };
    for (const Case& c : cases) {
        RecordingReport paged;
        paged.pageHeight = settingsHeight + c.left;
        config->PrintReport(&paged, nullptr);
        std::string calls = paged.Calls();
        EXPECT_EQ(calls.substr(calls.find("|phantom;\n") + 10), c.expected) << c.left;
    }
}

TEST_F(ConfigReport, TextsAndNumbersAreOfTheLanguageOfTheReport) {
    const auto config = Config(kFluoroExposure, kZrd);
    config->pSDDValue = 26.5F;
    config->pNoOfExposures = 1;
    config->machineKv = {"80.5"};
    config->machineMa = {"3"};
    config->phantomThickness = {"5.5 cm"};
    config->mode = {"v1.2"};
    RecordingReport report;
    report.decimalSign = ',';
    report.words = {{"310::Configuration", "Einstellungen"}, {"22101::Inches", "Zoll"}};
    config->PrintReport(&report, nullptr);
    const std::string rows = report.Rows();
    EXPECT_NE(rows.find("{\\i\\b Einstellungen}"), std::string::npos) << rows;
    EXPECT_NE(rows.find("|26,5 Zoll;"), std::string::npos) << rows;
    EXPECT_NE(rows.find("|80,5      |3        |5,5 cm               |v1.2                 ;"),
              std::string::npos)
        << rows;
}

}  // namespace
}  // namespace vorex::test

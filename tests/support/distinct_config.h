#pragma once

#include <memory>

#include "config/config_common.h"

namespace vorex::test {

/// A configuration in which no two settings have the same value.
inline std::shared_ptr<CConfigCommon> DistinctConfig(int32_t testId, int32_t generatorSetup = kSetupMas) {
    const auto made = std::make_shared<CConfigCommon>();
    CConfigCommon& config = *made;
    config.DefaultValues(testId);
    config.pNoOfExposures = 2;
    config.pGeneratorSetup = generatorSetup;
    config.pSDDValue = 61.5F;
    config.pSDDUnit = kInch;
    config.pFocalSpotSize = kLargeSpot;
    config.pMachineKV = 81;
    config.pMachineMA = 82;
    config.pMachineMAS = 83;
    config.pMachineTime = 84;
    config.pMachineSDD = 85;
    config.pMachineAnode = "anode";
    config.pMachineFilter = "machine filter";
    config.importFlags = {"1", "0"};
    config.machineKv = {"71", "91"};
    config.machineMa = {"72", "92"};
    config.machineMas = {"73", "93"};
    config.machineTime = {"74", "94"};
    config.focalSpot = {"1", "2"};
    config.passFailCriterion = {"3", "4"};
    config.machineAdjacent = {"0", "1"};
    config.phantomThickness = {"7 cm", "9 cm"};
    config.mode = {"low", "high"};
    config.sid = {"75", "95"};
    config.pNominalKV = "26";
    config.pSourceToDetectorDistance = "27";
    config.pBreastThickness = "4.5";
    config.pSourceToBuckyDistance = "64";
    config.pSID = "65";
    config.pFilter = "filter";
    config.pTargetMaterial = "target";
    config.pGlandularFraction = "0.4";
    config.pEnergyCorrectionFactor = "1.1";
    config.pDensityControlSettings = "dc";
    config.pCassetteSize = "18";
    config.pFilmType = "film";
    config.pAECMode = "aec";
    config.pFileldRestriction = "field";
    config.pImagingMode = "imaging";
    config.pScreenType = "screen";
    config.pMeasuredHVL = "0.31";
    config.pPhantom = "phantom";
    config.DetectorOption = 5;
    config.pMeasurementSettings = 3;
    config.pMeasurementExposure = kUnitGy;
    config.pMeasurementExposureRateUnit = 4;
    config.pMeasurementFluoroType = kPulsed;
    config.pMeasurementTimeUnit = kPulses;
    config.pMeasurementPercentKV = 76;
    config.pMeasurementDelay = -120;
    config.pMeasurementIncludeDelay = true;
    config.pTargetFilterName = "Mo/Rh";
    config.AirDensityCorrection = config.MASInput = config.MASInputOverride = false;
    config.UserSetTemperature = config.AutoReset = config.MASOption = true;
    config.TemperatureValue = 21.5F;
    config.PressureValue = 755;
    config.ReferenceTemperature = 19;
    config.PKMode = 2;
    config.PKDoseUnit = 1;
    config.PKDoseRateUnit = 3;
    config.PKFrameRate = "7.5";
    config.PKTemperatureUnit = 1;
    config.PKPressureUnit = 4;
    config.InternalPressureOffset = -2.5F;
    config.InternalTemperatureOffset = 3.25F;
    config.IonChamberName = "chamber";
    config.CalFactor = "factor";
    config.CalConstant = "constant";
    config.TestGuideMASInput = "Clamp";
    config.OverridePrintReport = false;
    config.PrintTheComment = "comment";
    return made;
}

}  // namespace vorex::test

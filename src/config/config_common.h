#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "config/exposure_columns.h"
#include "foundation/class_registry.h"
#include "foundation/event.h"
#include "foundation/host_contract.h"
#include "foundation/vocabulary.h"

namespace vorex {

/// A code that a choice does not have, and the value that the setting took instead.
struct UnknownCode {
    int32_t code = 0;
    int32_t value = 0;
};

/// The settings of a measuring test. One object has the fields of all tests; the test identifier decides
/// which of them are in use. Numbers that a person types are kept as typed.
struct ConfigFields {
    // Identity and control.
    int32_t pTestID = 0;
    int32_t DetectorName = kZrd;           ///< detector kind in use
    int32_t DetectorOption = kNoDetector;  ///< detector kind chosen in the setup, 0 for none
    bool pReadFromRegStatus = false;       ///< this object was cloned after its source took the site defaults
    bool OverridePrintReport = true;
    std::string PrintTheComment;
    std::string pTargetFilterName;
    bool ManualSelectedInTestGuide = false;
    std::string TestGuideMASInput;  ///< text key, or a text of an older file

    // Machine settings that hold for all exposures.
    float pMachineKV = 80;     ///< kV
    float pMachineMA = 200;    ///< mA
    float pMachineMAS = 10;    ///< mAs
    float pMachineTime = 100;  ///< ms
    float pSDDValue = 26;      ///< in the unit of `pSDDUnit`
    int32_t pSDDUnit = kInch;
    int32_t pFocalSpotSize = kLargeSpot;
    int32_t pGeneratorSetup = kSetupMas;
    std::string pMachineAnode;
    std::string pMachineFilter;
    float pMachineSDD = 26;  ///< cm
    uint8_t pNoOfExposures = 2;

    // Mammography AEC: the technique and the breast, numbers as text.
    std::string pNominalKV = "25";  ///< kV
    std::string pTargetMaterial;
    std::string pFilter;
    std::string pPhantom;
    std::string pSourceToBuckyDistance;  ///< cm
    std::string pEnergyCorrectionFactor = "1";
    std::string pSourceToDetectorDistance = "26";  ///< cm
    std::string pBreastThickness;                  ///< cm
    std::string pAECMode;
    std::string pGlandularFraction;  ///< 0 to 1
    std::string pDensityControlSettings = "0";
    std::string pMeasuredHVL;  ///< mm Al
    std::string pImagingMode;
    std::string pScreenType;
    std::string pFilmType;
    std::string pCassetteSize;       ///< cm
    std::string pFileldRestriction;  // spelled like this in the interface
    std::string pSID;                ///< cm

    // Exposure table: index 0 is exposure 1.
    TextArray importFlags = TextArray(2, "0");
    TextArray machineMa = TextArray(2, "10");
    TextArray machineMas = TextArray(2, "10");
    TextArray machineAdjacent = TextArray(2, "0");
    TextArray focalSpot = TextArray(2);
    TextArray machineKv = TextArray(2, "80");
    TextArray machineTime = TextArray(2, "100");
    TextArray passFailCriterion = TextArray(2, "1");
    TextArray phantomThickness = TextArray(2);
    TextArray mode = TextArray(2);
    TextArray sid = TextArray(2, "10");

    // Detector measurement settings. 0 means that the site defaults have not been taken yet.
    int32_t pMeasurementMode = 0;
    int32_t pMeasurementSettings = kAutoSettings;
    int32_t pMeasurementExposure = 0;
    int32_t pMeasurementExposureRateUnit = 0;
    int32_t pMeasurementFluoroType = 0;
    int32_t pMeasurementTimeUnit = 0;
    uint8_t pMeasurementPercentKV = 0;
    int16_t pMeasurementDelay = 0;  ///< ms
    bool pMeasurementIncludeDelay = false;

    // Dosimeter.
    std::string IonChamberName;
    std::string CalFactor;
    std::string CalConstant;
    bool AirDensityCorrection = true;
    bool UserSetTemperature = false;
    bool UserSetPressure = false;
    bool AutoReset = false;
    float PressureValue = 610;
    float TemperatureValue = 22;
    float InternalPressureOffset = 1.2F;
    float InternalTemperatureOffset = 1.2F;
    int32_t ReferenceTemperature = 20;
    int32_t PKDoseUnit = 0;
    int32_t PKDoseRateUnit = 0;
    std::string PKFrameRate = "10";
    int32_t PKMode = 0;  ///< 0 dose, 1 rate, 2 low rate
    int32_t PKPressureUnit = 1;
    int32_t PKTemperatureUnit = 0;

    /// Codes of a loaded file that their choice does not have, by key. They are saved again until the setting
    /// changes.
    std::map<std::string_view, UnknownCode> unknownCodes;

    // mAs meter.
    bool MASInput = true;  ///< True shunt, False clamp
    bool MASInputOverride = true;
    bool MASOption = false;
};

/// Keys of settings and their texts.
using SettingTexts = std::vector<std::pair<std::string, std::string>>;

/// Configuration of a measuring test.
class CConfigCommon : public IConfigData,
                      public ConfigFields,
                      public LibraryObject,
                      public std::enable_shared_from_this<CConfigCommon> {
  public:
    CConfigCommon();

    /// Cell of the exposure table. Rows count from 0, columns from 1: column 1 is the import flag, the
    /// meaning of the others depends on the test. "0" for a cell that does not exist, but "1" beyond the
    /// table for the focal spot and the criterion, so that callers get a valid choice.
    std::string GetValue(uint8_t row, uint8_t column) const;
    std::string GetValue(uint8_t row, ExposureColumn column) const;
    /// Ignored beyond the table. Columns other than the first are stored for detector kind 1 only.
    void SetValue(uint8_t row, uint8_t column, const std::string& data);
    void SetValue(uint8_t row, ExposureColumn column, const std::string& data);
    /// A whole column; unchanged when the table is empty.
    void GetArrayData(uint8_t column, TextArray& data) const;
    /// Stores a whole column. Any column but the first also empties the import flags: the setup pages store
    /// column 1 first and rely on this.
    void SetArrayData(uint8_t column, const TextArray& data);

    const std::shared_ptr<ITestGuideConfig>& TestGuideConfig() const { return mTestGuideConfig; }

    // IConfigData
    bool HasDialog() const override { return true; }
    /// Takes the site defaults into this object the first time it is cloned.
    std::shared_ptr<IConfigData> Clone() override;
    /// A dialog with the setup control of the test; empty when its class does not exist.
    std::shared_ptr<IDialog> CreateDialog() override;
    /// The settings of the test as in a file, in the same order; without those of the test guide.
    SettingTexts PersistedTexts() const;
    /// Raises 0x8004A3C2 for a block that is not this plug-in's. A missing key leaves the field as it is, but
    /// a missing choice reads as its first value.
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override;
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) override;
    /// The settings, then the planned exposures; nothing when the configuration is kept out of reports.
    void PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) override;

    void SetDeleteLimitStatus(uint8_t limitNumber) { LimitDeleted.Raise(limitNumber); }
    void SetAddLimitStatus(uint8_t limitNumber) { LimitAdded.Raise(limitNumber); }
    /// Resizes the mA (1), mAs (2) or time (3) column to the table and copies the data into it.
    void ReDimArrayData(uint8_t column, const TextArray& data);
    /// Coefficient of variation of the set mAs values, a ratio in "0.0#"; empty for fewer than two exposures,
    /// an over-range value or a sum that is not above 0.
    std::string GetmASCV() const;

    /// Sets a new object up for a test; an identifier that is no measuring test is only stored.
    void DefaultValues(int32_t testId);

    Event<int32_t> LimitDeleted{"LimitDeleted"};
    Event<int32_t> LimitAdded{"LimitAdded"};

  private:
    using Column = TextArray ConfigFields::*;

    /// The array of a column of the exposure table; null if the test has none.
    Column ColumnOf(uint8_t column) const;
    void TakeSiteDefaults();

    std::shared_ptr<ITestGuideConfig> mTestGuideConfig;
};

}  // namespace vorex

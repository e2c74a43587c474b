#include <algorithm>
#include <limits>
#include <unordered_map>
#include <variant>

#include "config/config_common.h"
#include "foundation/host_error.h"
#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/test_sets.h"

// The configuration block of the element file: a flat list of keys. One table holds every persisted setting
// in write order, and saving and loading walk it.

namespace vorex {

namespace {

using C = ConfigFields;

constexpr std::string_view kClassName = "CConfigCommon";

/// How a cell of the exposure table is kept.
enum class CellForm { kNumber, kText, kLeadingNumber, kThickness };

struct CellRow {
    TestSet tests;
    std::string_view key;  ///< followed by the row number, from 0
    TextArray C::*array;
    CellForm form;
};

using Field = std::variant<float C::*, int32_t C::*, uint8_t C::*, int16_t C::*, bool C::*, std::string C::*>;

/// How a setting is kept.
enum class Form {
    kNumber,     ///< a float, or an integer
    kCode,       ///< a choice, as its code
    kTrueFalse,  ///< "True" or "False"; an empty text reads as the default
    kText,
    kNumberText,  ///< a text that is normalised as a number when it is saved and loaded
};

struct SettingRow {
    TestSet tests;
    std::string_view key;
    Field field;
    Form form;
    const Choice* choice = nullptr;
    bool emptyIs = false;
};

// clang-format off
constexpr CellRow kCells[] = {
    {kWithKvs,        tag::kMachineKV,         &C::machineKv,         CellForm::kNumber},
    {kWithMa,         tag::kMachinemA,         &C::machineMa,         CellForm::kNumber},
    {kWithMas,        tag::kMachinemAs,        &C::machineMas,        CellForm::kNumber},
    {kMammoRadiation, tag::kSid,               &C::sid,               CellForm::kNumber},
    {kFluoroExposure, tag::kPhantomThickness,  &C::phantomThickness,  CellForm::kThickness},
    {kFluoroExposure, tag::kMode,              &C::mode,              CellForm::kText},
    {kRadioAccuracy,  tag::kMachineTime,       &C::machineTime,       CellForm::kNumber},
    {kRadioAccuracy,  tag::kFocalSpotSize,     &C::focalSpot,         CellForm::kLeadingNumber},
    {kRadioAccuracy,  tag::kPassFailCriterion, &C::passFailCriterion, CellForm::kText},
    {kRadioLinearity, tag::kMachineAdjacent,   &C::machineAdjacent,   CellForm::kText},
    {kRadioLinearity, tag::kFocalSpot,         &C::focalSpot,         CellForm::kText},
};

constexpr SettingRow kSettings[] = {
    {kAllTests, tag::kMeasurementMode,         &C::pMeasurementMode,             Form::kCode, &kDetectorModes},
    {kAllTests, tag::kMeasurementSettings,     &C::pMeasurementSettings,         Form::kCode, &kDetectorSettings},
    {kAllTests, tag::kMeasurementExposure,     &C::pMeasurementExposure,         Form::kCode, &kExposureUnits},
    {kAllTests, tag::kMeasurementRateUnit,     &C::pMeasurementExposureRateUnit, Form::kCode, &kRateTimeBases},
    {kAllTests, tag::kMeasurementFluoroType,   &C::pMeasurementFluoroType,       Form::kCode, &kFluoroTypes},
    {kAllTests, tag::kMeasurementTimeUnit,     &C::pMeasurementTimeUnit,         Form::kCode, &kTimeUnits},
    {kAllTests, tag::kMeasurementPercentKV,    &C::pMeasurementPercentKV,        Form::kNumber},
    {kAllTests, tag::kMeasurementDelay,        &C::pMeasurementDelay,            Form::kNumber},
    {kAllTests, tag::kMeasurementIncludeDelay, &C::pMeasurementIncludeDelay,     Form::kCode, &kFlags},

    {kFluoroscopy, tag::kSddUnit,        &C::pSDDUnit,        Form::kCode, &kSddUnits},
    {kFluoroscopy, tag::kSddValue,       &C::pSDDValue,       Form::kNumber},
    {kFluoroscopy, tag::kFocalSpotSize,  &C::pFocalSpotSize,  Form::kCode, &kFocalSpots},

    {kRadioLinearity,   tag::kMachineKV,      &C::pMachineKV,      Form::kNumber},
    {kRadioLinearity,   tag::kMachineTime,    &C::pMachineTime,    Form::kNumber},
    {kRadioLinearity,   tag::kGeneratorSetup, &C::pGeneratorSetup, Form::kCode, &kGeneratorSetups},
    {kRadioLinearity,   tag::kSddUnit,        &C::pSDDUnit,        Form::kCode, &kSddUnits},
    {kRadioLinearity,   tag::kSddValue,       &C::pSDDValue,       Form::kNumber},

    {kRadioRepro,       tag::kGeneratorSetup, &C::pGeneratorSetup, Form::kCode, &kGeneratorSetups},
    {kRadioRepro,       tag::kMachineKV,      &C::pMachineKV,      Form::kNumber},
    {kRadioRepro,       tag::kMachinemA,      &C::pMachineMA,      Form::kNumber},
    {kRadioRepro,       tag::kMachinemAs,     &C::pMachineMAS,     Form::kNumber},
    {kRadioRepro,       tag::kMachineTime,    &C::pMachineTime,    Form::kNumber},
    {kRadioRepro,       tag::kSddUnit,        &C::pSDDUnit,        Form::kCode, &kSddUnits},
    {kRadioRepro,       tag::kSddValue,       &C::pSDDValue,       Form::kNumber},
    {kRadioRepro,       tag::kFocalSpotSize,  &C::pFocalSpotSize,  Form::kCode, &kFocalSpots},

    {kRadioAccuracy,    tag::kGeneratorSetup, &C::pGeneratorSetup, Form::kCode, &kGeneratorSetups},
    {kRadioAccuracy,    tag::kSddUnit,        &C::pSDDUnit,        Form::kCode, &kSddUnits},
    {kRadioAccuracy,    tag::kSddValue,       &C::pSDDValue,       Form::kNumber},

    {kMammoAccRepro,    tag::kMachineKV,      &C::pMachineKV,      Form::kNumber},
    {kMammoAccRepro,    tag::kMachinemA,      &C::pMachineMA,      Form::kNumber},
    {kMammoAccRepro,    tag::kMachinemAs,     &C::pMachineMAS,     Form::kNumber},
    {kMammoAccRepro,    tag::kMachineTime,    &C::pMachineTime,    Form::kNumber},
    {kMammoAccRepro,    tag::kFocalSpotSize,  &C::pFocalSpotSize,  Form::kCode, &kFocalSpots},

    {kMammoAec,         tag::kNominalKV,         &C::pNominalKV,                Form::kNumberText},
    {kMammoAec,         tag::kAecMode,           &C::pAECMode,                  Form::kText},
    {kMammoAec,         tag::kCassetteSize,      &C::pCassetteSize,             Form::kNumberText},
    {kMammoAec,         tag::kImagingMode,       &C::pImagingMode,              Form::kText},
    {kMammoAec,         tag::kScreenType,        &C::pScreenType,               Form::kText},
    {kMammoAec,         tag::kFilmType,          &C::pFilmType,                 Form::kText},
    {kMammoAec,         tag::kFilter,            &C::pFilter,                   Form::kText},
    {kMammoAec,         tag::kTargetMaterial,    &C::pTargetMaterial,           Form::kText},
    {kMammoAec,         tag::kFieldRestriction,  &C::pFileldRestriction,        Form::kText},
    {kMammoAec,         tag::kSourceToBucky,     &C::pSourceToBuckyDistance,    Form::kNumberText},
    {kMammoAec,         tag::kSourceToDetector,  &C::pSourceToDetectorDistance, Form::kNumberText},
    {kMammoAec,         tag::kSid,               &C::pSID,                      Form::kNumberText},
    {kMammoAec,         tag::kDensityControl,    &C::pDensityControlSettings,   Form::kText},
    {kMammoAec,         tag::kCorrectionFactor,  &C::pEnergyCorrectionFactor,   Form::kNumberText},
    {kMammoAec,         tag::kGlandularFraction, &C::pGlandularFraction,        Form::kNumberText},
    {kMammoAec,         tag::kMeasuredHvl,       &C::pMeasuredHVL,              Form::kNumberText},
    {kMammoAec,         tag::kPhantom,           &C::pPhantom,                  Form::kText},
    {kMammoAec,         tag::kBreastThickness,   &C::pBreastThickness,          Form::kNumberText},

    {kMammoRadiation,      tag::kMachineKV,   &C::pMachineKV,     Form::kNumber},
    {kMammoRadiation,      tag::kAnode,       &C::pMachineAnode,  Form::kText},
    {kMammoRadiation,      tag::kMachineTime, &C::pMachineTime,   Form::kNumber},
    {kMammoRadiation,      tag::kFilter,      &C::pMachineFilter, Form::kText},
    {kMammoRadiation,      tag::kSdd,         &C::pMachineSDD,    Form::kNumber},

    {kAllTests, tag::kTargetFilterName,    &C::pTargetFilterName,         Form::kText},
    {kAllTests, tag::kPkAdcf,              &C::AirDensityCorrection,      Form::kTrueFalse, nullptr, true},
    {kAllTests, tag::kPkUserSetTemp,       &C::UserSetTemperature,        Form::kTrueFalse},
    {kAllTests, tag::kPkTemperature,       &C::TemperatureValue,          Form::kNumber},
    {kAllTests, tag::kPkUserSetPres,       &C::UserSetPressure,           Form::kTrueFalse},
    {kAllTests, tag::kPkPressure,          &C::PressureValue,             Form::kNumber},
    {kAllTests, tag::kPkRefTemp,           &C::ReferenceTemperature,      Form::kNumber},
    {kAllTests, tag::kPkMode,              &C::PKMode,                    Form::kNumber},
    {kAllTests, tag::kPkAutoReset,         &C::AutoReset,                 Form::kTrueFalse},
    {kAllTests, tag::kPkDoseUnit,          &C::PKDoseUnit,                Form::kNumber},
    {kAllTests, tag::kPkDoseRateUnit,      &C::PKDoseRateUnit,            Form::kNumber},
    {kAllTests, tag::kPkFrameRate,         &C::PKFrameRate,               Form::kText},
    {kAllTests, tag::kPkTempUnit,          &C::PKTemperatureUnit,         Form::kNumber},
    {kAllTests, tag::kPkPresUnit,          &C::PKPressureUnit,            Form::kNumber},
    {kAllTests, tag::kPkPressureOffset,    &C::InternalPressureOffset,    Form::kNumber},
    {kAllTests, tag::kPkTemperatureOffset, &C::InternalTemperatureOffset, Form::kNumber},
    {kAllTests, tag::kPkIonChamberName,    &C::IonChamberName,            Form::kText},
    {kAllTests, tag::kPkIonCalConstant,    &C::CalConstant,               Form::kText},
    {kAllTests, tag::kPkIonCalFactor,      &C::CalFactor,                 Form::kText},
    {kAllTests, tag::kMasInput,            &C::MASInput,                  Form::kTrueFalse, nullptr, true},
    {kAllTests, tag::kMasInputOverride,    &C::MASInputOverride,          Form::kTrueFalse, nullptr, true},
    {kAllTests, tag::kMasOption,           &C::MASOption,                 Form::kTrueFalse},
    {kAllTests, tag::kTestGuideMasInput,   &C::TestGuideMASInput,         Form::kText},
    {kAllTests, tag::kOverridePrint,       &C::OverridePrintReport,       Form::kTrueFalse, nullptr, true},
    {kAllTests, tag::kDetectorOption,      &C::DetectorOption,            Form::kNumber},
};
// A test without rows of its own would lose its settings with each save.
static_assert(CoversEveryMeasuringTest(kSettings));
static_assert(HoldsOwnRows(kOwnTable, kCells));

/// Tests whose old files have the import flag under another key.
constexpr TestSet kOldImportKey = {kRadioAccuracy, kRadioLinearity, kFluoroAccuracy, kFluoroExposure};
// clang-format on

std::string RowKey(std::string_view key, std::size_t row) {
    return std::string(key) + std::to_string(row);
}

template <typename Number>
Number Clamped(std::string_view text) {
    constexpr auto kLow = static_cast<int32_t>(std::numeric_limits<Number>::min());
    constexpr auto kHigh = static_cast<int32_t>(std::numeric_limits<Number>::max());
    return static_cast<Number>(std::clamp(ReadInteger(text), kLow, kHigh));
}

/// The text of a field in the file.
struct FieldToText {
    const ConfigFields& config;
    const SettingRow& row;

    std::string operator()(float C::*field) const { return LocaleText(config.*field); }
    std::string operator()(bool C::*field) const {
        if (row.form == Form::kCode) return Code(config.*field ? 1 : 0);
        return std::string(config.*field ? kStoredTrue : kStoredFalse);
    }
    std::string operator()(std::string C::*field) const {
        return row.form == Form::kNumberText ? LocaleText(ReadNumber(config.*field)) : config.*field;
    }
    template <typename Integer>
    std::string operator()(Integer C::*field) const {
        const auto value = static_cast<int32_t>(config.*field);
        return row.form == Form::kCode ? Code(value) : PlainText(value);
    }

  private:
    std::string Code(int32_t value) const {
        const auto unknown = config.unknownCodes.find(row.key);
        const bool kept = unknown != config.unknownCodes.end() && unknown->second.value == value;
        return PlainText(kept ? unknown->second.code : StoredOfValue(*row.choice, value));
    }
};

/// Stores a text of the file in a field.
struct TextToField {
    ConfigFields& config;
    const SettingRow& row;
    std::string_view text;

    void operator()(float C::*field) const { config.*field = ToSingle(ReadNumber(text)); }
    void operator()(bool C::*field) const {
        if (row.form == Form::kCode)
            config.*field = Value() != 0;
        else
            config.*field = text.empty() ? row.emptyIs : text == kStoredTrue;
    }
    void operator()(std::string C::*field) const {
        config.*field = row.form == Form::kNumberText ? LocaleText(ReadNumber(text)) : std::string(text);
    }
    template <typename Integer>
    void operator()(Integer C::*field) const {
        config.*field = row.form == Form::kCode ? static_cast<Integer>(Value()) : Clamped<Integer>(text);
    }

  private:
    /// The value of a code. An unknown code is noted, so that saving keeps it.
    int32_t Value() const {
        const int32_t code = ReadInteger(text);
        const int32_t value = ValueOfStored(*row.choice, code);
        if (IsNumber(text) && StoredOfValue(*row.choice, value) != code)
            config.unknownCodes[row.key] = {code, value};
        return value;
    }
};

/// For a missing key, a choice takes its first value; anything else keeps its value.
struct AbsentField {
    ConfigFields& config;
    const SettingRow& row;

    void operator()(int32_t C::*field) const {
        if (row.form == Form::kCode) config.*field = 1;
    }
    void operator()(bool C::*field) const {
        if (row.form == Form::kCode) config.*field = false;
    }
    template <typename Other>
    void operator()(Other C::*) const {}
};

std::string StoredCell(const CellRow& row, const TextArray& array, std::size_t index) {
    const std::string cell = index < array.size() ? array[index] : std::string();
    if (row.form == CellForm::kNumber) return LocaleText(ReadNumber(cell));
    return row.form == CellForm::kThickness ? LocaleDecimal(cell) : cell;
}

/// The first child of a name; null when there is none. Mostly the children are asked for in their order.
class ChildTexts {
  public:
    explicit ChildTexts(const IXmlElement& element) : mChildren(element.Children()) {}

    const IXmlElement* Find(std::string_view name) {
        if (mNext < mChildren.size() && mChildren[mNext]->Name() == name) return mChildren[mNext++].get();
        if (mPlaces.empty())
            for (std::size_t i = 0; i < mChildren.size(); ++i) mPlaces.emplace(mChildren[i]->Name(), i);
        const auto found = mPlaces.find(name);
        if (found == mPlaces.end()) return nullptr;
        mNext = found->second + 1;
        return mChildren[found->second].get();
    }

  private:
    XmlElements mChildren;
    std::size_t mNext = 0;                                      // place of the child that is likely asked for
    std::unordered_map<std::string_view, std::size_t> mPlaces;  // a long table has thousands of them
};

void LoadRow(ConfigFields& config, ChildTexts& children, std::size_t row) {
    const IXmlElement* flag = children.Find(RowKey(tag::kNumberOfExposures, row));
    if (flag == nullptr && kOldImportKey.Has(config.pTestID))
        flag = children.Find(RowKey(tag::kImportWaveformStatus, row));
    if (flag != nullptr) config.importFlags[row] = flag->Text();
    for (const CellRow& cell : kCells) {
        if (!cell.tests.Has(config.pTestID)) continue;
        // The thickness column is filled from the mA of its row; files in use rely on it.
        const bool thickness = cell.form == CellForm::kThickness;
        const IXmlElement* node = children.Find(RowKey(thickness ? tag::kMachinemA : cell.key, row));
        if (node == nullptr) continue;
        std::string& target = (config.*cell.array)[row];
        switch (cell.form) {
            case CellForm::kNumber:
                target = LocaleText(ReadNumber(node->Text()));
                break;
            case CellForm::kLeadingNumber:
                // An empty choice stays empty, so that a file keeps its bytes.
                target = node->Text().empty() ? std::string() : PlainText(ReadNumber(node->Text()));
                break;
            case CellForm::kThickness:
                target = LocaleDecimal(node->Text());
                break;
            case CellForm::kText:
                target = node->Text();
                break;
        }
    }
}

void ResizeTable(ConfigFields& config) {
    constexpr TextArray C::*kArrays[] = {&C::importFlags,
                                         &C::machineKv,
                                         &C::machineMa,
                                         &C::machineMas,
                                         &C::machineTime,
                                         &C::passFailCriterion,
                                         &C::machineAdjacent,
                                         &C::focalSpot,
                                         &C::phantomThickness,
                                         &C::mode,
                                         &C::sid};
    for (TextArray C::*array : kArrays) (config.*array).assign(config.pNoOfExposures, std::string());
}

}  // namespace

SettingTexts CConfigCommon::PersistedTexts() const {
    SettingTexts texts;
    const auto add = [&](std::string key, std::string text) {
        texts.emplace_back(std::move(key), std::move(text));
    };
    add(std::string(tag::kDetectorName), PlainText(DetectorName));
    add(std::string(tag::kNumberOfExposures), PlainText(static_cast<int32_t>(pNoOfExposures)));
    for (std::size_t row = 0; row < pNoOfExposures; ++row) {
        add(RowKey(tag::kNumberOfExposures, row),
            row < importFlags.size() ? importFlags[row] : std::string());
        for (const CellRow& cell : kCells)
            if (cell.tests.Has(pTestID)) add(RowKey(cell.key, row), StoredCell(cell, this->*cell.array, row));
    }
    for (const SettingRow& row : kSettings)
        if (row.tests.Has(pTestID)) add(std::string(row.key), std::visit(FieldToText{*this, row}, row.field));
    return texts;
}

std::shared_ptr<IXmlElement> CConfigCommon::Save(const std::shared_ptr<IXmlDocument>& owner) {
    const auto block = owner->CreateElement(tag::kPlugInData);
    if (!block) RaiseHostError(kErrorConfigurationSave, kClassName, 3);
    block->SetAttribute(tag::kPlugIn, kPlugInId);
    for (const auto& [key, text] : PersistedTexts()) block->AddValue(key, text);
    if (mTestGuideConfig)
        if (const auto settings = mTestGuideConfig->Save(owner)) block->AddChild(settings);
    return block;
}

void CConfigCommon::Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* /*log*/) {
    if (element->Name() != tag::kPlugInData || element->GetAttribute(tag::kPlugIn) != kPlugInId)
        RaiseHostError(kErrorForeignConfiguration, kClassName, 4,
                       {"found \"" + std::string(element->Name()) + "\" of plug-in \"" +
                        std::string(element->GetAttribute(tag::kPlugIn)) + "\""});
    if (Services().createTestGuideConfig) mTestGuideConfig = Services().createTestGuideConfig();
    ChildTexts children(*element);
    if (const IXmlElement* kind = children.Find(tag::kDetectorName)) {
        DetectorName = ReadInteger(kind->Text());
        if (DetectorName == kNoDetector) DetectorName = kZrd;
    }
    pNoOfExposures = 0;
    if (const IXmlElement* count = children.Find(tag::kNumberOfExposures))
        pNoOfExposures = Clamped<uint8_t>(count->Text());
    if (pNoOfExposures > 0) ResizeTable(*this);
    for (std::size_t row = 0; row < pNoOfExposures; ++row) LoadRow(*this, children, row);
    unknownCodes.clear();
    for (const SettingRow& row : kSettings) {
        if (!row.tests.Has(pTestID)) continue;
        if (const IXmlElement* child = children.Find(row.key))
            std::visit(TextToField{*this, row, child->Text()}, row.field);
        else
            std::visit(AbsentField{*this, row}, row.field);
    }
    const auto settings = element->FindChild(tag::kTestGuideSettings);
    if (!settings.empty() && mTestGuideConfig) mTestGuideConfig->Load(settings.front());
}

}  // namespace vorex

#include <algorithm>
#include <array>

#include "config/config_common.h"
#include "foundation/number_text.h"
#include "foundation/report_markup.h"
#include "foundation/test_sets.h"
#include "foundation/utilities.h"

// The printed configuration: a table of the settings, then a table of the planned exposures. Rows and columns
// are data, which one function prints for every test and detector kind.

namespace vorex {

namespace {

using C = ConfigFields;
using R = IReportDocument;

/// A row of the settings: without a value it is a heading.
struct SettingRow {
    TestSet tests;
    std::string_view label;
    std::string (*value)(const C&, const R&) = nullptr;
    bool (*when)(const C&) = nullptr;  ///< null: always
};

std::string Measured(float number, std::string_view unit, const R& report) {
    const std::string shown = markup::Number(PlainText(number), report);
    return unit.empty() ? shown : shown + " " + Translate(unit, &report);
}

std::string Typed(const std::string& number, std::string_view unit, const R& report) {
    if (Trimmed(number).empty()) return {};
    return markup::Number(number, report) + " " + Translate(unit, &report);
}

std::string OnOff(bool on, const R& report) {
    return Translate(on ? text::kOn : text::kOff, &report);
}

template <float C::*Field>
std::string Plain(const C& c, const R& r) {
    return Measured(c.*Field, {}, r);
}
template <float C::*Field, const std::string_view& Unit>
std::string WithUnit(const C& c, const R& r) {
    return Measured(c.*Field, Unit, r);
}
template <auto Field>
std::string Whole(const C& c, const R& /*r*/) {
    return PlainText(static_cast<int32_t>(c.*Field));
}
template <auto Field, const Choice& Words>
std::string Chosen(const C& c, const R& r) {
    return DisplayText(Words, static_cast<int32_t>(c.*Field), &r);
}
template <bool C::*Field>
std::string Switched(const C& c, const R& r) {
    return OnOff(c.*Field, r);
}
/// A typed text; a number takes the decimal sign of the report.
template <std::string C::*Field>
std::string AsTyped(const C& c, const R& r) {
    return markup::Number(c.*Field, r);
}
template <std::string C::*Field, const std::string_view& Unit>
std::string TypedWithUnit(const C& c, const R& r) {
    return Typed(c.*Field, Unit, r);
}

std::string Sdd(const C& c, const R& r) {
    return Measured(c.pSDDValue, TextKeyOf(kSddUnits, c.pSDDUnit), r);
}
std::string RateUnit(const C& c, const R& r) {
    return DisplayText(kExposureUnits, c.pMeasurementExposure, &r) + "/" +
           DisplayText(kRateTimeBases, c.pMeasurementExposureRateUnit, &r);
}
std::string DoseUnit(const C& c, const R& r) {
    return DosimeterDoseUnit(c.PKDoseUnit, &r);
}
std::string DoseRateUnit(const C& c, const R& r) {
    return DosimeterRateUnit(c.PKDoseUnit, c.PKDoseRateUnit, &r);
}
std::string Chamber(const C& c, const R& r) {
    return c.IonChamberName.empty() ? Translate(text::kNoIonChamber, &r) : c.IonChamberName;
}
std::string MasInputType(const C& c, const R& r) {
    if (c.ManualSelectedInTestGuide) return Translate(text::kManual, &r);
    return Translate(c.MASInput ? text::kShunt : text::kClamp, &r);
}

bool IsFluoro(const C& c) {
    return c.pMeasurementMode == kFluoro;
}
bool IsFluoroByHand(const C& c) {
    return IsFluoro(c) && c.pMeasurementSettings != kAutoSettings;
}
bool IsTimedByHand(const C& c) {
    return !IsFluoro(c) && c.pMeasurementSettings != kAutoSettings;
}
bool HasTargetFilter(const C& c) {
    return !Trimmed(c.pTargetFilterName).empty();
}
bool IsMasSetup(const C& c) {
    return c.pGeneratorSetup == kSetupMas;
}
bool IsMaTimeSetup(const C& c) {
    return !IsMasSetup(c);
}
bool CorrectsAirDensity(const C& c) {
    return c.AirDensityCorrection;
}
bool HasChamber(const C& c) {
    return !c.IonChamberName.empty();
}

// clang-format off
constexpr SettingRow kDetectorRows[] = {
    {kAllTests, text::kMeasurementSettings},
    {kAllTests, text::kDetectorMode,     Chosen<&C::pMeasurementMode, kDetectorModes>},
    {kAllTests, text::kDetectorSettings, Chosen<&C::pMeasurementSettings, kDetectorSettings>},
    {kAllTests, text::kExposureUnit,     Chosen<&C::pMeasurementExposure, kExposureUnits>},
    {kAllTests, text::kExposureRateUnit, RateUnit, IsFluoro},
    {kAllTests, text::kFluoroType,       Chosen<&C::pMeasurementFluoroType, kFluoroTypes>, IsFluoroByHand},
    {kAllTests, text::kTimeUnits,        Chosen<&C::pMeasurementTimeUnit, kTimeUnits>, IsTimedByHand},
    {kAllTests, text::kPercentKv,        Whole<&C::pMeasurementPercentKV>, IsTimedByHand},
    {kAllTests, text::kDelay,            Whole<&C::pMeasurementDelay>, IsTimedByHand},
    {kAllTests, text::kIncludeDelay,     Chosen<&C::pMeasurementIncludeDelay, kFlags>, IsTimedByHand},
    {kAllTests, text::kTargetFilter,     AsTyped<&C::pTargetFilterName>, HasTargetFilter},
};

constexpr SettingRow kMachineRows[] = {
    {kAllTests,                                          text::kMachineSettings},
    {kWithDistanceUnit,                                  text::kSdd,               Sdd},
    {kMammoRadiation,                                    text::kSdd,               WithUnit<&C::pMachineSDD,                    text::kUnitCm>},
    {kWithGeneratorSetup,                                text::kGeneratorSetup,    Chosen<&C::pGeneratorSetup,                  kGeneratorSetups>},
    {kWithOneFocalSpot,                                  text::kFocalSpotSize,     Chosen<&C::pFocalSpotSize,                   kFocalSpots>},
    {kWithOneKv,                                         text::kKvp,               WithUnit<&C::pMachineKV,                     text::kUnitKv>},
    {kRadioRepro,                                        text::kMa,                WithUnit<&C::pMachineMA,                     text::kMa>,     IsMaTimeSetup},
    {kRadioRepro,                                        text::kTime,              WithUnit<&C::pMachineTime,                   text::kUnitMs>, IsMaTimeSetup},
    {kRadioRepro,                                        text::kMas,               WithUnit<&C::pMachineMAS,                    text::kMas>,    IsMasSetup},
    {kMammoAccRepro,                                     text::kMa,                WithUnit<&C::pMachineMA,                     text::kMa>},
    {kMammoAccRepro,                                     text::kMas,               WithUnit<&C::pMachineMAS,                    text::kMas>},
    {{kRadioLinearity, kMammoAccRepro, kMammoRadiation}, text::kTime,              WithUnit<&C::pMachineTime,                   text::kUnitMs>},
    {kMammoRadiation,                                    text::kAnode,             AsTyped<&C::pMachineAnode>},
    {kMammoRadiation,                                    text::kFilter,            AsTyped<&C::pMachineFilter>},
    {kMammoAec,                                          text::kBreastThickness,   TypedWithUnit<&C::pBreastThickness,          text::kUnitCm>},
    {kMammoAec,                                          text::kGlandularFraction, AsTyped<&C::pGlandularFraction>},
    {kMammoAec,                                          text::kNominalKv,         TypedWithUnit<&C::pNominalKV,                text::kUnitKv>},
    {kMammoAec,                                          text::kSourceToDetector,  TypedWithUnit<&C::pSourceToDetectorDistance, text::kUnitCm>},
    {kMammoAec,                                          text::kSourceToBucky,     TypedWithUnit<&C::pSourceToBuckyDistance,    text::kUnitCm>},
    {kMammoAec,                                          text::kCorrectionFactor,  AsTyped<&C::pEnergyCorrectionFactor>},
    {kMammoAec,                                          text::kDensityControl,    AsTyped<&C::pDensityControlSettings>},
    {kMammoAec,                                          text::kCassetteSize,      TypedWithUnit<&C::pCassetteSize,             text::kUnitCm>},
    {kMammoAec,                                          text::kSid,               TypedWithUnit<&C::pSID,                      text::kUnitCm>},
    {kMammoAec,                                          text::kFilmType,          AsTyped<&C::pFilmType>},
    {kMammoAec,                                          text::kFilter,            AsTyped<&C::pFilter>},
    {kMammoAec,                                          text::kAecMode,           AsTyped<&C::pAECMode>},
    {kMammoAec,                                          text::kFieldRestriction,  AsTyped<&C::pFileldRestriction>},
    {kMammoAec,                                          text::kImagingMode,       AsTyped<&C::pImagingMode>},
    {kMammoAec,                                          text::kScreenType,        AsTyped<&C::pScreenType>},
    {kMammoAec,                                          text::kTargetMaterial,    AsTyped<&C::pTargetMaterial>},
    {kMammoAec,                                          text::kMeasuredHvl,       TypedWithUnit<&C::pMeasuredHVL,              text::kUnitMmAl>},
    {kMammoAec,                                          text::kPhantom,           AsTyped<&C::pPhantom>},
};
static_assert(CoversEveryMeasuringTest(kMachineRows));

constexpr SettingRow kDosimeterRows[] = {
    {kAllTests, text::kPelomarkModeSettings},
    {kAllTests, text::kAirDensityCorrection, Switched<&C::AirDensityCorrection>},
    {kAllTests, text::kUserSetTemperature,   Plain<&C::TemperatureValue>, CorrectsAirDensity},
    {kAllTests, text::kUserSetPressure,      Plain<&C::PressureValue>, CorrectsAirDensity},
    {kAllTests, text::kReferenceTemperature, Whole<&C::ReferenceTemperature>, CorrectsAirDensity},
    {kAllTests, text::kPelomarkMode,         Chosen<&C::PKMode, kPelomarkModes>},
    {kAllTests, text::kAutomaticReset,       Switched<&C::AutoReset>},
    {kAllTests, text::kPelomarkUnitSettings},
    {kAllTests, text::kDoseUnit,             DoseUnit},
    {kAllTests, text::kDoseRateUnit,         DoseRateUnit},
    {kAllTests, text::kFrameRate,            AsTyped<&C::PKFrameRate>},
    {kAllTests, text::kTemperatureUnit,      Chosen<&C::PKTemperatureUnit, kTemperatureUnits>},
    {kAllTests, text::kPressureUnit,         Chosen<&C::PKPressureUnit, kPressureUnits>},
    {kAllTests, text::kSensorAdjust,         nullptr, CorrectsAirDensity},
    // Swapped, like the keys of the file.
    {kAllTests, text::kTemperatureOffset,    Plain<&C::InternalPressureOffset>, CorrectsAirDensity},
    {kAllTests, text::kPressureOffset,       Plain<&C::InternalTemperatureOffset>, CorrectsAirDensity},
    {kAllTests, text::kIonChamberName,       Chamber},
    {kAllTests, text::kCalFactor,            AsTyped<&C::CalFactor>, HasChamber},
    {kAllTests, text::kCalConstant,          AsTyped<&C::CalConstant>, HasChamber},
};

constexpr SettingRow kMasRows[] = {{kAllTests, text::kMasInputType, MasInputType}};
// clang-format on

/// How a cell of the exposure table is written.
enum class CellForm { kNumber, kText, kFocalSpot, kYesNo };

struct ExposureColumn {
    TestSet tests;
    int32_t setup;  ///< generator setup that has the column, 0 for any
    std::string_view caption;
    int32_t width;  ///< twips
    std::size_t captionBlanks;
    TextArray C::*cells;
    CellForm form = CellForm::kNumber;
    std::size_t paddedTo = 0;  ///< characters
    std::size_t blanks = 0;    ///< after the cell
};

// clang-format off
constexpr ExposureColumn kExposureColumns[] = {
    {kFluoroExposure, 0,            text::kKvp,              1000, 15, &C::machineKv,        CellForm::kNumber,    10},
    {kFluoroExposure, 0,            text::kMa,               1000, 1,  &C::machineMa,        CellForm::kNumber,    9},
    {kFluoroExposure, 0,            text::kPhantomThickness, 2000, 5,  &C::phantomThickness, CellForm::kText,      21},
    {kFluoroExposure, 0,            text::kFluoroMode,       2000, 4,  &C::mode,             CellForm::kText,      21},
    {kRadioAccuracy,  0,            text::kFocalSpotSize,    1700, 2,  &C::focalSpot,        CellForm::kFocalSpot},
    {kRadioAccuracy,  0,            text::kKvp,              1000, 5,  &C::machineKv},
    {kRadioAccuracy,  kSetupMas,    text::kMas,              1000, 5,  &C::machineMas},
    {kRadioAccuracy,  kSetupMaTime, text::kMa,               1000, 5,  &C::machineMa},
    {kRadioAccuracy,  kSetupMaTime, text::kTimeMilliseconds, 1000, 4,  &C::machineTime},
    {kRadioLinearity, 0,            text::kAdjacent,         1200, 2,  &C::machineAdjacent,  CellForm::kYesNo,     0, 8},
    {kRadioLinearity, kSetupMas,    text::kFocalSpotSize,    1600, 5,  &C::focalSpot,        CellForm::kFocalSpot, 0, 12},
    {kRadioLinearity, kSetupMaTime, text::kFocalSpotSize,    1600, 6,  &C::focalSpot,        CellForm::kFocalSpot, 0, 12},
    {kRadioLinearity, kSetupMas,    text::kSetMasCaption,    1500, 0,  &C::machineMas,       CellForm::kNumber,    15},
    {kRadioLinearity, kSetupMaTime, text::kSetMaCaption,     1500, 0,  &C::machineMa,        CellForm::kNumber,    15},
    {kFluoroAccuracy, 0,            text::kKvp,              1500, 10, &C::machineKv},
    {kFluoroAccuracy, 0,            text::kMa,               1500, 10, &C::machineMa},
    {kMammoRadiation, 0,            text::kSidInCm,          1500, 10, &C::sid},
    {kMammoRadiation, 0,            text::kMas,              1500, 10, &C::machineMas},
    {kMammoAec,       0,            text::kMas,              1000, 4,  &C::machineMas},
};
// clang-format on
static_assert(HoldsOwnRows(kOwnTable, kExposureColumns));

/// Width of the section of test 700; the columns do not fill it. The section of any other test is as wide as
/// its columns.
constexpr int32_t kFluoroSectionWidth = 6500;
constexpr int32_t kTableStyle = 7;
/// Room that the head of the exposure table needs below it.
constexpr int32_t kRoomBelowHead = 500;
constexpr std::string_view kLabelIndent = "      ";

void AddRows(std::span<const SettingRow> rows, const C& config, const R& report, std::string& body) {
    for (const SettingRow& row : rows) {
        if (!row.tests.Has(config.pTestID) || (row.when != nullptr && !row.when(config))) continue;
        const std::string label = Translate(row.label, &report);
        if (row.value == nullptr) {
            body += markup::Line(label);
            continue;
        }
        body += markup::kCell;
        body += kLabelIndent;
        body +=
            markup::Text(label) + markup::kCell + markup::Text(row.value(config, report)) + markup::kRowEnd;
    }
}

std::string SettingsBody(const C& config, const R& report) {
    std::string body;
    const int32_t kind = config.DetectorName;
    if (HasZrd(kind)) {
        AddRows(kDetectorRows, config, report, body);
        AddRows(kMachineRows, config, report, body);
    }
    if (HasPelomark(kind)) AddRows(kDosimeterRows, config, report, body);
    if (!body.empty() && HasMasMeter(kind)) AddRows(kMasRows, config, report, body);
    return body;
}

std::string SettingsFormat(const R& report) {
    const int32_t c = (report.Metric(kTableWidth) - 2240) / 6 - 50;
    std::string format = "<+560|<2440";
    for (int32_t width : {2 * c - 800, c + 400, c, c, c}) format += "|>+" + PlainText(width);
    return format + "|>+!504!|<+560;";
}

std::string Padded(const std::string& cell, std::size_t characters) {
    const std::size_t length = CodePoints(cell);
    return length < characters ? cell + std::string(characters - length, ' ') : cell;
}

std::string CellText(const ExposureColumn& column, const std::string& cell, const R& report) {
    switch (column.form) {
        case CellForm::kNumber:
            return markup::Number(PlainText(ReadNumber(cell)), report);
        case CellForm::kFocalSpot:
            return DisplayText(kFocalSpots, ReadInteger(cell), &report);
        case CellForm::kYesNo:
            return Translate(ReadInteger(cell) != 0 ? text::kYes : text::kNo, &report);
        case CellForm::kText:
            break;
    }
    std::string typed = cell;
    if (report.DecimalSign() == ',' && column.cells == &C::phantomThickness)
        std::replace(typed.begin(), typed.end(), '.', ',');
    return typed;
}

/// The planned exposures as a table: definition, head, and a row per exposure.
struct ExposureTable {
    std::string columns = "<+560";
    std::string head;
    std::vector<std::string> rows;
};

ExposureTable BuildExposureTable(const C& config, const R& report) {
    ExposureTable table;
    table.rows.resize(config.pNoOfExposures);
    int32_t rest = config.pTestID == kFluoroExposure ? kFluoroSectionWidth : 0;
    for (const ExposureColumn& column : kExposureColumns) {
        const int32_t setup = config.pGeneratorSetup == kSetupMaTime ? kSetupMaTime : kSetupMas;
        if (!column.tests.Has(config.pTestID) || (column.setup != 0 && column.setup != setup)) continue;
        table.columns += "|<+" + PlainText(column.width);
        table.head +=
            markup::Heading(Translate(column.caption, &report) + std::string(column.captionBlanks, ' '));
        rest -= column.width;
        const TextArray& cells = config.*column.cells;
        for (std::size_t i = 0; i < table.rows.size(); ++i) {
            const std::string cell = CellText(column, i < cells.size() ? cells[i] : std::string(), report);
            table.rows[i] +=
                markup::kCell + markup::Text(Padded(cell, column.paddedTo) + std::string(column.blanks, ' '));
        }
    }
    if (rest > 0) table.columns += "|<+" + PlainText(rest);
    table.columns += markup::kRowEnd;
    if (table.head.empty()) return {};
    table.head += markup::kRowEnd;
    for (std::string& row : table.rows) row += markup::kRowEnd;
    return table;
}

void PrintExposureTable(const ExposureTable& table, R& report) {
    const int32_t headHeight = report.TableHeight(table.columns, table.head);
    if (report.SpaceLeft() < headHeight + kRoomBelowHead) report.NewPage();
    std::string gathered = table.head;
    int32_t height = headHeight;
    for (const std::string& row : table.rows) {
        const int32_t rowHeight = report.TableHeight(table.columns, row);
        if (height + rowHeight > report.SpaceLeft() && height > headHeight) {
            report.PrintTable(table.columns, gathered);
            report.NewPage();
            gathered = table.head;
            height = headHeight;
        }
        gathered += row;
        height += rowHeight;
    }
    report.PrintTable(table.columns, gathered);
}

}  // namespace

void CConfigCommon::PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& /*setup*/) {
    if (report == nullptr || !OverridePrintReport) return;
    const std::string body = SettingsBody(*this, *report);
    if (body.empty()) return;
    const std::string head = markup::Heading(Translate(text::kConfiguration, report)) +
                             markup::Heading(Translate(text::kValue, report)) + markup::kRowEnd;
    report->Style(kTableStyle);
    report->PrintTable(SettingsFormat(*report), head + body);
    if (!HasZrd(DetectorName) || pNoOfExposures == 0) return;
    const ExposureTable table = BuildExposureTable(*this, *report);
    if (!table.head.empty()) PrintExposureTable(table, *report);
}

}  // namespace vorex

#include "config/config_common.h"

#include <algorithm>
#include <utility>

#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "guide/dialog_wrapper.h"

namespace vorex {

namespace {

using C = ConfigFields;

/// A column of a test's exposure table. With two arrays the second is the one for mA and time.
struct TableColumn {
    int32_t testId;
    uint8_t column;
    TextArray C::*array;
    TextArray C::*maArray = nullptr;
};

// clang-format off
constexpr TableColumn kTableColumns[] = {
    {kRadioAccuracy,  2, &C::focalSpot},
    {kRadioAccuracy,  3, &C::passFailCriterion},
    {kRadioAccuracy,  4, &C::machineKv},
    {kRadioAccuracy,  5, &C::machineMas, &C::machineMa},
    {kRadioAccuracy,  6, &C::machineTime},
    {kRadioLinearity, 2, &C::machineAdjacent},
    {kRadioLinearity, 3, &C::focalSpot},
    {kRadioLinearity, 4, &C::machineMas, &C::machineMa},
    {kFluoroAccuracy, 2, &C::machineKv},
    {kFluoroAccuracy, 3, &C::machineMa},
    {kFluoroExposure, 2, &C::machineKv},
    {kFluoroExposure, 3, &C::machineMa},
    {kFluoroExposure, 4, &C::phantomThickness},
    {kFluoroExposure, 5, &C::mode},
    {kMammoAec,       2, &C::machineMas},
    {kMammoRadiation, 2, &C::sid},
    {kMammoRadiation, 3, &C::machineMas},
};

/// Cells beyond the table that must read as a valid choice.
struct DefaultCell {
    int32_t testId;
    uint8_t column;
};
constexpr DefaultCell kFirstChoiceCells[] = {{kRadioAccuracy, 2}, {kRadioAccuracy, 3}, {kRadioLinearity, 3}};
// clang-format on

constexpr uint8_t kImportColumn = 1;
constexpr std::string_view kUnknownCell = "0";
constexpr std::string_view kFirstChoice = "1";

std::string CellOf(const TextArray& array, std::size_t row) {
    return row < array.size() ? array[row] : std::string();
}

/// 2 for a setting of 2, else 1.
int32_t OneOrTwo(int32_t setting) {
    return setting == 2 ? 2 : 1;
}

}  // namespace

CConfigCommon::CConfigCommon() {
    pMachineAnode = pMachineFilter = pTargetMaterial = pFilter = Translate(text::kMolybdenum);
    pBreastThickness = LocaleDecimal("4.2");
    pGlandularFraction = LocaleDecimal("0.5");
    phantomThickness.assign(2, Translate(text::kPhantom5cm));
    mode.assign(2, Translate(text::kModeNormal));
    if (Services().createTestGuideConfig) mTestGuideConfig = Services().createTestGuideConfig();
}

CConfigCommon::Column CConfigCommon::ColumnOf(uint8_t column) const {
    if (column == kImportColumn) return &C::importFlags;
    for (const TableColumn& row : kTableColumns) {
        if (row.testId != pTestID || row.column != column) continue;
        return row.maArray != nullptr && pGeneratorSetup == kSetupMaTime ? row.maArray : row.array;
    }
    return nullptr;
}

std::string CConfigCommon::GetValue(uint8_t row, uint8_t column) const {
    if (row >= pNoOfExposures) {
        const bool firstChoice = std::any_of(
            std::begin(kFirstChoiceCells), std::end(kFirstChoiceCells),
            [&](const DefaultCell& cell) { return cell.testId == pTestID && cell.column == column; });
        return std::string(firstChoice ? kFirstChoice : kUnknownCell);
    }
    const Column array = ColumnOf(column);
    return array == nullptr ? std::string(kUnknownCell) : CellOf(this->*array, row);
}

void CConfigCommon::SetValue(uint8_t row, uint8_t column, const std::string& data) {
    if (row >= pNoOfExposures || (column != kImportColumn && DetectorName != kZrd)) return;
    const Column array = ColumnOf(column);
    if (array == nullptr) return;
    TextArray& cells = this->*array;
    if (cells.size() <= row) cells.resize(row + std::size_t{1});
    cells[row] = data;
}

void CConfigCommon::GetArrayData(uint8_t column, TextArray& data) const {
    if (pNoOfExposures == 0) return;
    data.assign(pNoOfExposures, std::string());
    const Column array = ColumnOf(column);
    if (array == nullptr) return;
    for (std::size_t row = 0; row < data.size(); ++row) data[row] = CellOf(this->*array, row);
}

void CConfigCommon::SetArrayData(uint8_t column, const TextArray& data) {
    if (pNoOfExposures == 0) return;
    importFlags.assign(pNoOfExposures, std::string());
    const Column array = ColumnOf(column);
    if (array == nullptr) return;
    TextArray& cells = this->*array;
    cells.resize(pNoOfExposures);
    for (std::size_t row = 0; row < std::min(cells.size(), data.size()); ++row) cells[row] = data[row];
}

void CConfigCommon::ReDimArrayData(uint8_t column, const TextArray& data) {
    constexpr Column kArrays[] = {&C::machineMa, &C::machineMas, &C::machineTime};
    if (pNoOfExposures == 0 || column == 0 || column > std::size(kArrays)) return;
    TextArray& cells = this->*kArrays[column - 1U];
    cells.resize(pNoOfExposures);
    for (std::size_t row = 0; row < std::min(cells.size(), data.size()); ++row) cells[row] = data[row];
}

std::string CConfigCommon::GetmASCV() const {
    if (pNoOfExposures < 2) return {};
    double sum = 0;
    for (std::size_t row = 0; row < pNoOfExposures; ++row) {
        const std::string cell = CellOf(machineMas, row);
        if (!IsValidReading(cell)) return {};
        sum += ReadNumber(cell);
    }
    if (!(sum > 0)) return {};
    constexpr std::string_view kTwoDecimals = "0.0#";
    return FormatPicture(SampleStdDev(machineMas) / (sum / pNoOfExposures), kTwoDecimals);
}

std::shared_ptr<IDialog> CConfigCommon::CreateDialog() {
    const TestRow* test = FindTest(pTestID);
    if (test == nullptr) return nullptr;
    return CreateControlDialog(ClassName(test->setupClass), shared_from_this());
}

/// The four choices fall back on their first value whatever the store holds; the others keep what they have.
void CConfigCommon::TakeSiteDefaults() {
    const int32_t rateUnit = ReadSetting(setting::kDoseRateUnit, 1);
    pMeasurementFluoroType = OneOrTwo(ReadSetting(setting::kFluoroType, 1));
    pMeasurementTimeUnit = OneOrTwo(ReadSetting(setting::kTimeUnit, 1));
    pMeasurementExposureRateUnit = rateUnit >= 2 && rateUnit <= 4 ? rateUnit : 1;
    pMeasurementExposure = OneOrTwo(ReadSetting(setting::kDoseUnit, 1));
    pMeasurementPercentKV =
        static_cast<uint8_t>(std::clamp(ReadSetting(setting::kPercentKV, pMeasurementPercentKV), 0, 255));
    pMeasurementDelay =
        static_cast<int16_t>(std::clamp(ReadSetting(setting::kDelay, pMeasurementDelay), -32768, 32767));
    pMeasurementIncludeDelay = ReadSetting(setting::kIncludeDelay, pMeasurementIncludeDelay ? 1 : 0) != 0;
    pSDDUnit = ReadSetting(setting::kSddUnit, pSDDUnit);
}

std::shared_ptr<IConfigData> CConfigCommon::Clone() {
    const bool flagged = pReadFromRegStatus;
    if (!flagged) {
        TakeSiteDefaults();
    } else if (pMeasurementSettings == kAutoSettings) {
        pMeasurementFluoroType = kContinuous;
        pMeasurementTimeUnit = kMilliseconds;
    }
    auto clone = std::make_shared<CConfigCommon>();
    static_cast<ConfigFields&>(*clone) = *this;
    clone->pReadFromRegStatus = !flagged;
    clone->ManualSelectedInTestGuide = false;
    if (mTestGuideConfig) clone->mTestGuideConfig = mTestGuideConfig->Clone();
    return clone;
}

}  // namespace vorex

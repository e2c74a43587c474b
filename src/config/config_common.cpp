#include "config/config_common.h"

#include <algorithm>
#include <array>
#include <utility>

#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/test_sets.h"
#include "foundation/utilities.h"
#include "guide/dialog_wrapper.h"

namespace vorex {

namespace {

using C = ConfigFields;

constexpr std::string_view kUnknownCell = "0";
constexpr std::string_view kFirstChoice = "1";
constexpr uint8_t kImportNumber = 1;  ///< in every test
constexpr std::size_t kMostColumns = 6;

/// The exposure table of a test: its columns in the order of their numbers, from 1.
struct TableRow {
    int32_t testId;
    std::size_t count;
    std::array<ExposureColumn, kMostColumns> columns;
};

/// Where the cells of a column are kept. With two arrays the second is the one for mA and time.
struct ArrayRow {
    ExposureColumn column;
    TextArray C::*array;
    TextArray C::*maArray = nullptr;
    std::string_view beyond = kUnknownCell;  ///< the text of a cell beyond the table
};

// clang-format off
using enum ExposureColumn;
constexpr TableRow kTables[] = {
    {kRadioRepro,     1, {kImport}},
    {kRadioAccuracy,  6, {kImport, kFocalSpot, kCriterion, kKv, kMasOrMa, kTime}},
    {kRadioLinearity, 4, {kImport, kAdjacent, kFocalSpot, kMasOrMa}},
    {kFluoroAccuracy, 3, {kImport, kKv, kMa}},
    {kFluoroExposure, 5, {kImport, kKv, kMa, kThickness, kMode}},
    {kMammoAccRepro,  1, {kImport}},
    {kMammoAec,       2, {kImport, kMas}},
    {kMammoRadiation, 3, {kImport, kSid, kMas}},
};
static_assert(HasOneRowPerMeasuringTest(kTables));
static_assert(
    [] {
        for (const TestRow& test : kTestCatalogue)
            for (const TableRow& table : kTables)
                if (table.testId == test.id && (table.count > 1) != ((test.own & kOwnTable) != 0)) return false;
        return true;
    }(),
    "the catalogue names the tests with settings of each exposure");

constexpr ArrayRow kArrays[] = {
    {kImport,    &C::importFlags},
    {kFocalSpot, &C::focalSpot,         nullptr, kFirstChoice},
    {kCriterion, &C::passFailCriterion, nullptr, kFirstChoice},
    {kKv,        &C::machineKv},
    {kMasOrMa,   &C::machineMas,        &C::machineMa},
    {kTime,      &C::machineTime},
    {kAdjacent,  &C::machineAdjacent},
    {kMa,        &C::machineMa},
    {kThickness, &C::phantomThickness},
    {kMode,      &C::mode},
    {kMas,       &C::machineMas},
    {kSid,       &C::sid},
};
// clang-format on
constexpr bool IsInOrder() {
    for (std::size_t i = 0; i < std::size(kArrays); ++i)
        if (static_cast<std::size_t>(kArrays[i].column) != i) return false;
    return std::size(kArrays) == static_cast<std::size_t>(ExposureColumn::kSid) + 1;
}
static_assert(IsInOrder(), "one row per column, so that a column is its index");

const TableRow* FindTable(int32_t testId) {
    const auto* at = std::find_if(std::begin(kTables), std::end(kTables),
                                  [&](const TableRow& row) { return row.testId == testId; });
    return at == std::end(kTables) ? nullptr : at;
}

/// The column with a number, from 1; null if the test has none. Every table has the import flag.
const ArrayRow* FindColumn(int32_t testId, uint8_t number) {
    if (number == kImportNumber) return &kArrays[0];
    const TableRow* table = FindTable(testId);
    if (table == nullptr || number == 0 || number > table->count) return nullptr;
    return &kArrays[static_cast<std::size_t>(table->columns[number - 1U])];
}

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

uint8_t ColumnNumber(int32_t testId, ExposureColumn column) {
    const TableRow* table = FindTable(testId);
    if (table == nullptr) return column == ExposureColumn::kImport ? kImportNumber : 0;
    for (std::size_t i = 0; i < table->count; ++i)
        if (table->columns[i] == column) return static_cast<uint8_t>(i + 1);
    return 0;
}

CConfigCommon::Column CConfigCommon::ColumnOf(uint8_t column) const {
    const ArrayRow* row = FindColumn(pTestID, column);
    if (row == nullptr) return nullptr;
    return row->maArray != nullptr && pGeneratorSetup == kSetupMaTime ? row->maArray : row->array;
}

std::string CConfigCommon::GetValue(uint8_t row, uint8_t column) const {
    const ArrayRow* known = FindColumn(pTestID, column);
    if (known == nullptr) return std::string(kUnknownCell);
    return row < pNoOfExposures ? CellOf(this->*ColumnOf(column), row) : std::string(known->beyond);
}

std::string CConfigCommon::GetValue(uint8_t row, ExposureColumn column) const {
    return GetValue(row, ColumnNumber(pTestID, column));
}

void CConfigCommon::SetValue(uint8_t row, uint8_t column, const std::string& data) {
    if (row >= pNoOfExposures || (column != kImportNumber && DetectorName != kZrd)) return;
    const Column array = ColumnOf(column);
    if (array == nullptr) return;
    TextArray& cells = this->*array;
    if (cells.size() <= row) cells.resize(row + std::size_t{1});
    cells[row] = data;
}

void CConfigCommon::SetValue(uint8_t row, ExposureColumn column, const std::string& data) {
    SetValue(row, ColumnNumber(pTestID, column), data);
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

/// The four choices fall back to their first value if the store has an unknown one; the other settings keep
/// their value.
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

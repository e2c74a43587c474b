#include "files/element_schema.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "foundation/limit_expression.h"
#include "foundation/number_text.h"
#include "foundation/survey_keys.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

// clang-format off
constexpr auto kPlainElements = std::to_array<ElementRow>({
    //  below name place identity text
    {Place::kDocument,          tag::kVorexSequence,       Place::kSequence,          Identity::kOnly,           Form::kAny},
    {Place::kSequence,          tag::kSelectedStandards,   Place::kSelectedStandards, Identity::kOnly,           Form::kAny},
    {Place::kSequence,          tag::kMtiList,             Place::kMtiList,           Identity::kOnly,           Form::kAny},
    {Place::kSequence,          tag::kTestElement,         Place::kTest,              Identity::kId,             Form::kAny},
    {Place::kSelectedStandards, tag::kStandard,            Place::kStandardName,      Identity::kNameAndVersion, Form::kAny},
    {Place::kMtiList,           tag::kMti,                 Place::kMti,               Identity::kNumber,         Form::kAny},
    {Place::kGroup,             tag::kElementFilter,       Place::kFilter,            Identity::kOnly,           Form::kAny},
    {Place::kGroup,             tag::kExpectedResult,      Place::kExpectedResult,    Identity::kOnly,           Form::kAny},
    {Place::kGroup,             tag::kResultItem,          Place::kResultItem,        Identity::kOnly,           Form::kAny},
    {Place::kGroup,             tag::kTestElement,         Place::kTest,              Identity::kId,             Form::kAny},
    {Place::kTest,              tag::kElementFilter,       Place::kFilter,            Identity::kOnly,           Form::kAny},
    {Place::kTest,              tag::kPlugInData,          Place::kPlugInData,        Identity::kOnly,           Form::kAny},
    {Place::kTest,              tag::kExpectedResult,      Place::kExpectedResult,    Identity::kOnly,           Form::kAny},
    {Place::kTest,              tag::kResultItem,          Place::kResultItem,        Identity::kOnly,           Form::kAny},
    {Place::kPlugInData,        tag::kTestGuideSettings,   Place::kTestGuideSettings, Identity::kOnly,           Form::kAny},
    {Place::kTestGuideSettings, tag::kButtons,             Place::kText,              Identity::kOnly,           Form::kWhole},
    {Place::kExpectedResult,    tag::kStandard,            Place::kStandard,          Identity::kNameAndVersion, Form::kAny},
    {Place::kStandard,          tag::kLimit,               Place::kLimit,             Identity::kKey,            Form::kAny},
    {Place::kLimit,             tag::kHigh,                Place::kSide,              Identity::kOnly,           Form::kAny},
    {Place::kLimit,             tag::kLow,                 Place::kSide,              Identity::kOnly,           Form::kAny},
    {Place::kResultItem,        tag::kMeasurement,         Place::kMeasurement,       Identity::kKey,            Form::kAny},
    {Place::kResultItem,        tag::kWaveform,            Place::kWaveform,          Identity::kOrder,          Form::kAny},
    {Place::kResultItem,        tag::kMasWaveform,         Place::kWaveform,          Identity::kOrder,          Form::kAny},
    {Place::kResultItem,        tag::kSupersededExposure,  Place::kSuperseded,        Identity::kOrder,          Form::kAny},
    {Place::kResultItem,        tag::kStatus,              Place::kStatus,            Identity::kOnly,           Form::kStatus},
    {Place::kResultItem,        tag::kComment,             Place::kText,              Identity::kOnly,           Form::kAny},
    {Place::kResultItem,        tag::kServiceRecord,       Place::kServiceRecord,     Identity::kOnly,           Form::kAny},
    {Place::kResultItem,        tag::kRun,                 Place::kRun,               Identity::kOnly,           Form::kAny},
    {Place::kResultItem,        tag::kMeasuredBy,          Place::kMeasuredBy,        Identity::kOrder,          Form::kAny},
    {Place::kResultItem,        tag::kTechnique,           Place::kTechnique,         Identity::kOnly,           Form::kAny},
    {Place::kResultItem,        tag::kJudgedBy,            Place::kJudgedBy,          Identity::kOnly,           Form::kAny},
    {Place::kTechnique,         tag::kSetting,             Place::kSetting,           Identity::kKey,            Form::kAny},
    {Place::kJudgedBy,          tag::kStandard,            Place::kStandard,          Identity::kNameAndVersion, Form::kAny},
    {Place::kSuperseded,        tag::kMeasurement,         Place::kMeasurement,       Identity::kKey,            Form::kAny},
    {Place::kSuperseded,        tag::kWaveform,            Place::kWaveform,          Identity::kOrder,          Form::kAny},
    {Place::kSuperseded,        tag::kMasWaveform,         Place::kWaveform,          Identity::kOrder,          Form::kAny},
    {Place::kMeasurement,       tag::kDescription,         Place::kText,              Identity::kOnly,           Form::kAny},
    {Place::kMeasurement,       tag::kValue,               Place::kMeasuredValue,     Identity::kOnly,           Form::kAny},
    {Place::kMeasurement,       tag::kUnit,                Place::kText,              Identity::kOnly,           Form::kAny},
    {Place::kMeasurement,       tag::kPresetValue,         Place::kText,              Identity::kOnly,           Form::kNumberOrEmpty},
    {Place::kMeasurement,       tag::kStatus,              Place::kStatus,            Identity::kOnly,           Form::kStatus},
    {Place::kWaveform,          tag::kPrintWaveform,       Place::kText,              Identity::kOnly,           Form::kAny},
    {Place::kWaveform,          tag::kWaveformResolution,  Place::kText,              Identity::kOnly,           Form::kNumber},
    {Place::kSurvey,            tag::kElementFilter,       Place::kFilter,            Identity::kOnly,           Form::kAny},
    {Place::kSurvey,            tag::kPlugInData,          Place::kSurveyConfig,      Identity::kOnly,           Form::kAny},
    {Place::kSurvey,            tag::kExpectedResult,      Place::kExpectedResult,    Identity::kOnly,           Form::kAny},
    {Place::kSurvey,            tag::kResultItem,          Place::kSurveyResult,      Identity::kOnly,           Form::kAny},
    {Place::kSurveyConfig,      tag::kTestGuideSettings,   Place::kTestGuideSettings, Identity::kOnly,           Form::kAny},
    {Place::kSurveyConfig,      tag::kOverridePrint,       Place::kText,              Identity::kOnly,           Form::kAny},
    {Place::kSurveyConfig,      survey::kGroups[2].name,   Place::kConfigCollimation, Identity::kOnly,           Form::kAny},
    {Place::kSurveyConfig,      survey::kGroups[6].name,   Place::kConfigArtifacts,   Identity::kOnly,           Form::kAny},
    {Place::kConfigCollimation, GridKey(GridId::kLightField), Place::kText,           Identity::kOnly,           Form::kAny},
    {Place::kConfigArtifacts,   GridKey(GridId::kArtifacts),  Place::kText,           Identity::kOnly,           Form::kAny},
    {Place::kSurveyResult,      tag::kMeasurement,         Place::kMeasurement,       Identity::kKey,            Form::kAny},
    {Place::kSurveyResult,      tag::kStatus,              Place::kStatus,            Identity::kOnly,           Form::kStatus},
    {Place::kSurveyResult,      tag::kComment,             Place::kText,              Identity::kOnly,           Form::kAny},
    {Place::kSurveyResult,      tag::kServiceRecord,       Place::kServiceRecord,     Identity::kOnly,           Form::kAny},
    {Place::kSurveyResult,      survey::kSummaryPage,      Place::kText,              Identity::kOnly,           Form::kAny},
    {Place::kSurveyResult,      survey::kPreliminaryResults, Place::kText,            Identity::kOnly,           Form::kAny},
    {Place::kSurveyResult,      survey::kResultComment,    Place::kText,              Identity::kOnly,           Form::kAny},
});

/// The survey's groups, fields, grids and status cells, from the survey's own tables.
constexpr std::size_t kSurveyElements =
    std::size(survey::kStatusCells) + std::size(survey::kGroups) + kSurveyFieldCount + kGridCount - 2;
static_assert(static_cast<std::size_t>(Place::kLastSurveyGroup) - static_cast<std::size_t>(Place::kSurveyGroup) + 1 ==
              std::size(survey::kGroups));

constexpr auto kElements = [] {
    std::array<ElementRow, kPlainElements.size() + kSurveyElements> rows{};
    std::size_t next = 0;
    for (const ElementRow& row : kPlainElements) rows[next++] = row;
    const auto add = [&](Place parent, std::string_view name, Place place, Form form) {
        rows[next++] = {parent, name, place, Identity::kOnly, form};
    };
    for (const survey::StatusCellRow& cell : survey::kStatusCells)
        add(Place::kSurveyResult, cell.key, Place::kText, Form::kWholeOrEmpty);
    auto groupPlace = static_cast<uint8_t>(Place::kSurveyGroup);
    for (const SurveyGroupRow& group : survey::kGroups) {
        const auto place = static_cast<Place>(groupPlace++);
        if (group.name.empty())
            add(Place::kSurveyResult, GridKey(group.grids.front()), Place::kText, Form::kAny);
        else
            add(Place::kSurveyResult, group.name, place, Form::kAny);
    }
    groupPlace = static_cast<uint8_t>(Place::kSurveyGroup);
    for (const SurveyGroupRow& group : survey::kGroups) {
        const auto place = static_cast<Place>(groupPlace++);
        if (group.name.empty()) continue;
        for (const SurveyFieldRow& field : group.fields) add(place, field.key, Place::kText, Form::kAny);
        for (GridId grid : group.grids) add(place, GridKey(grid), Place::kText, Form::kAny);
    }
    return rows;
}();

constexpr AttributeRow kAttributes[] = {
    //  place                    name                    form                required
    {Place::kSequence,      tag::kVersion,          Form::kVersion,        false},
    {Place::kStandardName,  tag::kName,             Form::kNotEmpty,       true},
    {Place::kStandardName,  tag::kVersion,          Form::kAny,            false},
    {Place::kMti,           tag::kNumber,           Form::kWhole,          true},
    {Place::kMti,           tag::kPlugIn,           Form::kAny,            false},
    {Place::kMti,           tag::kName,             Form::kAny,            false},
    {Place::kMti,           tag::kSerialNumber,     Form::kAny,            false},
    {Place::kMti,           tag::kCalibrationDate,  Form::kAny,            false},
    {Place::kGroup,         tag::kPlugIn,           Form::kPlugIn,         true},
    {Place::kGroup,         tag::kTestId,           Form::kWhole,          true},
    {Place::kGroup,         tag::kId,               Form::kNotNegative,          true},
    {Place::kGroup,         tag::kName,             Form::kAny,            false},
    {Place::kTest,          tag::kPlugIn,           Form::kPlugIn,         true},
    {Place::kTest,          tag::kTestId,           Form::kWhole,          true},
    {Place::kTest,          tag::kId,               Form::kNotNegative,          true},
    {Place::kTest,          tag::kName,             Form::kAny,            false},
    {Place::kFilter,        tag::kSave,             Form::kTruth,          false},
    {Place::kFilter,        tag::kPrint,            Form::kTruth,          false},
    {Place::kFilter,        tag::kEvaluate,         Form::kTruth,          false},
    {Place::kSurvey,        tag::kPlugIn,           Form::kPlugIn,         true},
    {Place::kSurvey,        tag::kTestId,           Form::kWhole,          true},
    {Place::kSurvey,        tag::kId,               Form::kNotNegative,    true},
    {Place::kSurvey,        tag::kName,             Form::kAny,            false},
    {Place::kSurveyConfig,  tag::kPlugIn,           Form::kPlugIn,         true},
    {Place::kSurveyResult,  tag::kMti,              Form::kWholeOrEmpty, false},
    {Place::kPlugInData,    tag::kPlugIn,           Form::kPlugIn,         true},
    {Place::kStandard,      tag::kName,             Form::kNotEmpty,       true},
    {Place::kStandard,      tag::kVersion,          Form::kAny,            false},
    {Place::kLimit,         tag::kKey,              Form::kNotEmpty,       true},
    {Place::kLimit,         tag::kUnit,             Form::kAny,            false},
    {Place::kSide,          tag::kValue,            Form::kNumberOrEmpty,  false},
    {Place::kSide,          tag::kExpression,       Form::kExpression,     false},
    {Place::kResultItem,    tag::kMti,              Form::kWholeOrEmpty, false},
    {Place::kServiceRecord, tag::kCode,             Form::kAny,            false},
    {Place::kSuperseded,    tag::kExposure,         Form::kExposureCount,  true},
    {Place::kSuperseded,    tag::kOrder,            Form::kWhole,          false},
    {Place::kSuperseded,    tag::kTime,             Form::kAny,            false},
    {Place::kRun,           tag::kStart,            Form::kAny,            false},
    {Place::kRun,           tag::kEnd,              Form::kAny,            false},
    {Place::kRun,           tag::kEnding,           Form::kEnding,         true},
    {Place::kRun,           tag::kReason,           Form::kAny,            false},
    {Place::kRun,           tag::kPlanned,          Form::kNotNegative,    true},
    {Place::kRun,           tag::kProgram,          Form::kAny,            false},
    {Place::kRun,           tag::kFormulas,         Form::kWhole,          false},
    {Place::kMeasuredBy,    tag::kName,             Form::kAny,            false},
    {Place::kMeasuredBy,    tag::kSerialNumber,     Form::kAny,            false},
    {Place::kMeasuredBy,    tag::kCalibrationDate,  Form::kAny,            false},
    {Place::kSetting,       tag::kKey,              Form::kNotEmpty,       true},
    {Place::kJudgedBy,      tag::kTime,             Form::kAny,            false},
    {Place::kJudgedBy,      tag::kProgram,          Form::kAny,            false},
    {Place::kJudgedBy,      tag::kFormulas,         Form::kWhole,          false},
    {Place::kMeasurement,   tag::kKey,              Form::kNotEmpty,       true},
    {Place::kMeasurement,   tag::kMissing,          Form::kTruth,          false},
    {Place::kMeasuredValue, tag::kType,             Form::kWhole,          false},
    {Place::kStatus,        tag::kExtra,            Form::kWhole,          false},
};

struct ConfigKeyRow {
    std::string_view name;
    bool ofTest;
    Form testForm;
    bool ofRow;
    Form rowForm;
};

constexpr ConfigKeyRow TestText(std::string_view name)   { return {name, true, Form::kAny, false, Form::kAny}; }
constexpr ConfigKeyRow TestNumber(std::string_view name) { return {name, true, Form::kSetting, false, Form::kAny}; }
constexpr ConfigKeyRow TestWhole(std::string_view name)  { return {name, true, Form::kWholeOrEmpty, false, Form::kAny}; }
constexpr ConfigKeyRow RowText(std::string_view name)    { return {name, false, Form::kAny, true, Form::kAny}; }
constexpr ConfigKeyRow TestAndRowNumber(std::string_view name) {
    return {name, true, Form::kSetting, true, Form::kSetting};
}

/// Sorted by name, so that a key is found fast.
constexpr auto kConfigKeys = [] {
    auto rows = std::to_array<ConfigKeyRow>({
        {tag::kNumberOfExposures, true, Form::kExposureCount, true, Form::kAny},
        {tag::kFocalSpotSize, true, Form::kWholeOrEmpty, true, Form::kAny},
        {tag::kDetectorName, true, Form::kDetectorKind, false, Form::kAny},
        {tag::kDetectorOption, true, Form::kDetectorKind, false, Form::kAny},
        {tag::kMeasurementPercentKV, true, Form::kByte, false, Form::kAny},
        {tag::kMeasurementDelay, true, Form::kShort, false, Form::kAny},
        {tag::kFilter, true, Form::kAny, false, Form::kAny},
        RowText(tag::kImportWaveformStatus), RowText(tag::kMachineAdjacent), RowText(tag::kFocalSpot),
        RowText(tag::kPassFailCriterion), RowText(tag::kPhantomThickness), RowText(tag::kMode),
        TestAndRowNumber(tag::kMachineKV), TestAndRowNumber(tag::kMachinemA),
        TestAndRowNumber(tag::kMachinemAs), TestAndRowNumber(tag::kMachineTime),
        TestAndRowNumber(tag::kSid),
        TestWhole(tag::kGeneratorSetup), TestNumber(tag::kSddValue),
        TestWhole(tag::kSddUnit), TestNumber(tag::kSdd), TestNumber(tag::kNominalKV),
        TestNumber(tag::kCassetteSize), TestNumber(tag::kSourceToBucky), TestNumber(tag::kSourceToDetector),
        TestNumber(tag::kCorrectionFactor), TestNumber(tag::kGlandularFraction),
        TestNumber(tag::kMeasuredHvl), TestNumber(tag::kBreastThickness),
        TestWhole(tag::kMeasurementMode), TestWhole(tag::kMeasurementSettings),
        TestWhole(tag::kMeasurementExposure), TestWhole(tag::kMeasurementRateUnit),
        TestWhole(tag::kMeasurementFluoroType), TestWhole(tag::kMeasurementTimeUnit),
        
        TestWhole(tag::kMeasurementIncludeDelay),
        TestNumber(tag::kPkTemperature), TestNumber(tag::kPkPressure), TestWhole(tag::kPkRefTemp),
        TestWhole(tag::kPkMode), TestWhole(tag::kPkDoseUnit), TestWhole(tag::kPkDoseRateUnit),
        TestWhole(tag::kPkTempUnit), TestWhole(tag::kPkPresUnit), TestNumber(tag::kPkPressureOffset),
        TestNumber(tag::kPkTemperatureOffset),
        TestText(tag::kAnode), TestText(tag::kAecMode), TestText(tag::kImagingMode),
        TestText(tag::kScreenType), TestText(tag::kFilmType), TestText(tag::kTargetMaterial),
        TestText(tag::kFieldRestriction), TestText(tag::kDensityControl), TestText(tag::kPhantom),
        TestText(tag::kTargetFilterName), TestText(tag::kPkAdcf), TestText(tag::kPkUserSetTemp),
        TestText(tag::kPkUserSetPres), TestText(tag::kPkAutoReset), TestText(tag::kPkFrameRate),
        TestText(tag::kPkIonChamberName), TestText(tag::kPkIonCalConstant), TestText(tag::kPkIonCalFactor),
        TestText(tag::kMasInput), TestText(tag::kMasInputOverride), TestText(tag::kMasOption),
        TestText(tag::kTestGuideMasInput), TestText(tag::kOverridePrint),
    });
    std::sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    return rows;
}();
// clang-format on

static_assert(std::adjacent_find(kConfigKeys.begin(), kConfigKeys.end(), [](const auto& a, const auto& b) {
                  return a.name == b.name;
              }) == kConfigKeys.end());

/// Begin and end of the rows of each place: tables keep the rows of a place together.
struct RowRange {
    std::size_t begin = 0;
    std::size_t end = 0;
};
using RowRanges = std::array<RowRange, static_cast<std::size_t>(Place::kText) + 1>;

template <typename Table, typename PlaceOf>
constexpr RowRanges RangesOf(const Table& table, PlaceOf placeOf) {
    RowRanges ranges{};
    for (std::size_t i = 0; i < std::size(table); ++i) {
        RowRange& range = ranges[static_cast<std::size_t>(placeOf(table[i]))];
        if (range.end == 0) range.begin = i;
        range.end = i + 1;
    }
    return ranges;
}

constexpr RowRanges kElementRanges = RangesOf(kElements, [](const ElementRow& row) { return row.parent; });
constexpr RowRanges kAttributeRanges =
    RangesOf(kAttributes, [](const AttributeRow& row) { return row.place; });

template <typename Table>
constexpr auto RowsOf(const Table& table, const RowRanges& ranges, Place place) {
    const RowRange range = ranges[static_cast<std::size_t>(place)];
    return std::span(table).subspan(range.begin, range.end - range.begin);
}

/// Checks that the ranges contain no rows of other places.
template <typename Table, typename PlaceOf>
constexpr bool AreTogether(const Table& table, PlaceOf placeOf) {
    for (std::size_t i = 1, changes = 0; i < std::size(table); ++i) {
        if (placeOf(table[i]) == placeOf(table[i - 1])) continue;
        for (std::size_t earlier = 0; earlier + 1 < i; ++earlier)
            if (placeOf(table[earlier]) == placeOf(table[i])) ++changes;
        if (changes > 0) return false;
    }
    return true;
}
static_assert(AreTogether(kElements, [](const ElementRow& row) { return row.parent; }));
static_assert(AreTogether(kAttributes, [](const AttributeRow& row) { return row.place; }));

// A result without foreign content is written as it was read, because a single attribute has no order to
// keep. (A measurement with a second attribute has nothing else.)
static_assert([] {
    for (Place place : {Place::kResultItem, Place::kSurveyResult, Place::kServiceRecord,
                        Place::kMeasuredValue, Place::kStatus, Place::kWaveform, Place::kText}) {
        const RowRange range = kAttributeRanges[static_cast<std::size_t>(place)];
        if (range.end - range.begin > 1) return false;
    }
    return true;
}());

// Each row has one bit of a word, and each configuration key a fixed number of bits.
static_assert(std::size(kElements) <= kMostElementRows && kConfigKeys.size() <= 96);

/// Index of a configuration key's name; below 0 when it is not known.
int32_t ConfigIndex(std::string_view name) {
    const auto* row =
        std::lower_bound(kConfigKeys.begin(), kConfigKeys.end(), name,
                         [](const ConfigKeyRow& at, std::string_view key) { return at.name < key; });
    if (row == kConfigKeys.end() || row->name != name) return -1;
    return static_cast<int32_t>(row - kConfigKeys.begin());
}

/// The 32-bit whole number of a text; not a number for any other text.
double WholeNumber(std::string_view text) {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    // Almost all are a few digits and nothing else.
    constexpr std::size_t kFewDigits = 9;
    int32_t plain = 0;
    const char* const textEnd = text.data() + text.size();
    if (text.size() <= kFewDigits && std::from_chars(text.data(), textEnd, plain).ptr == textEnd &&
        !text.empty())
        return plain;
    if (!IsNumber(text)) return kNone;
    const double value = ReadNumber(text);
    constexpr double kLargest = 2147483647.0;
    return std::abs(value) <= kLargest && value == std::floor(value) ? value : kNone;
}

std::string WithoutPercent(std::string_view text) {
    std::string number(text);
    std::erase(number, '%');
    return number;
}

bool IsWhole(std::string_view text) {
    return !std::isnan(WholeNumber(text));
}

bool IsWholeWithin(std::string_view text, double least, double most) {
    const double value = WholeNumber(text);
    return value >= least && value <= most;
}

}  // namespace

const ElementRow* FindElementRow(Place parent, std::string_view name) {
    for (const ElementRow& row : RowsOf(kElements, kElementRanges, parent))
        if (row.name == name) return &row;
    return nullptr;
}

const AttributeRow* FindAttributeRow(Place place, std::string_view name) {
    for (const AttributeRow& row : AttributeRows(place))
        if (row.name == name) return &row;
    return nullptr;
}

std::span<const ElementRow> ElementRows() {
    return kElements;
}
std::span<const AttributeRow> AttributeRows(Place place) {
    return RowsOf(kAttributes, kAttributeRanges, place);
}

Place PlaceOfTest(std::string_view testId) {
    if (!IsWhole(testId)) return Place::kTest;
    const int32_t id = ReadInteger(testId);
    if (id == kGroupId) return Place::kGroup;
    return id == kMqsaSurvey ? Place::kSurvey : Place::kTest;
}

bool OwnsText(Place place) {
    switch (place) {
        case Place::kText:
        case Place::kMeasuredValue:
        case Place::kStatus:
        case Place::kServiceRecord:
        case Place::kWaveform:
        case Place::kSetting:
            return true;
        default:
            return false;
    }
}

ConfigKey FindConfigKey(std::string_view key) {
    constexpr std::size_t kMostDigits = 3;
    std::size_t nameSize = key.size();
    while (nameSize > 0 && key[nameSize - 1] >= '0' && key[nameSize - 1] <= '9') --nameSize;
    const std::string_view digits = key.substr(nameSize);
    const int32_t index = ConfigIndex(key.substr(0, nameSize));
    if (index < 0) return {};
    const ConfigKeyRow& row = kConfigKeys[static_cast<std::size_t>(index)];
    if (digits.empty()) return row.ofTest ? ConfigKey{index, -1, row.testForm} : ConfigKey{};
    const bool plain = digits.size() <= kMostDigits && (digits.size() == 1 || digits.front() != '0');
    if (!row.ofRow || !plain) return {};
    int32_t number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return {index, number, row.rowForm};
}

bool Has(Form form, std::string_view text) {
    switch (form) {
        case Form::kAny:
            return true;
        case Form::kNotEmpty:
            return !text.empty();
        case Form::kNumber:
            return IsNumber(text);
        case Form::kNumberOrEmpty:
            return Trimmed(text).empty() || IsNumber(text);
        case Form::kSetting:
            return Trimmed(text).empty() || IsNumber(text) || IsNumber(WithoutPercent(text));
        case Form::kWhole:
            return IsWhole(text);
        case Form::kWholeOrEmpty:
            return Trimmed(text).empty() || IsWhole(text);
        case Form::kNotNegative:
            return WholeNumber(text) >= 0;
        case Form::kTruth:
            return text == kStoredTrue || text == kStoredFalse;
        case Form::kStatus:
            return IsWholeWithin(text, kNotTested, kNotApplicable);
        case Form::kExposureCount:
            return IsWholeWithin(text, 1, 255);
        case Form::kByte:
            return Trimmed(text).empty() || IsWholeWithin(text, 0, 255);
        case Form::kShort:
            return Trimmed(text).empty() || IsWholeWithin(text, -32768, 32767);
        case Form::kDetectorKind:
            return Trimmed(text).empty() || IsWholeWithin(text, kNoDetector, kPelomarkAndMas);
        case Form::kVersion:
            return IsWholeWithin(text, 1, 1);
        case Form::kPlugIn:
            return text == kPlugInId;
        case Form::kEnding:
            return text == kEndedComplete || text == kEndedStopped || text == kEndedBroken;
        case Form::kExpression:
            return text.empty() || FindLimitExpression(text).has_value();
    }
    return true;
}

std::string_view InWords(Form form) {
    switch (form) {
        case Form::kAny:
            return "any text";
        case Form::kNotEmpty:
            return "a text";
        case Form::kNumber:
        case Form::kNumberOrEmpty:
        case Form::kSetting:
            return "a number";
        case Form::kWhole:
        case Form::kWholeOrEmpty:
            return "a whole number";
        case Form::kNotNegative:
            return "a whole number from 0";
        case Form::kTruth:
            return "True or False";
        case Form::kStatus:
            return "0 (not tested), 1 (pass), 2 (fail) or 3 (not applicable)";
        case Form::kExposureCount:
            return "a whole number from 1 to 255";
        case Form::kByte:
            return "a whole number from 0 to 255";
        case Form::kShort:
            return "a whole number from -32768 to 32767";
        case Form::kDetectorKind:
            return "a whole number from 0 to 5, the kind of instruments";
        case Form::kVersion:
            return "1, the version that this program reads";
        case Form::kPlugIn:
            return "ZRD47500";
        case Form::kEnding:
            return "one of Complete, Stopped, Broken";
        case Form::kExpression:
            static const std::string kWords = "one of " + LimitExpressionList();
            return kWords;
    }
    return {};
}

}  // namespace vorex

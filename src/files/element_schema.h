#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// What this system knows of the element file: which elements are allowed where, what must be a number, what
/// tells two elements of a name apart. Everything else in a file is foreign, and is kept as it is.
namespace vorex {

/// Kinds of elements, by where they stand.
enum class Place : uint8_t {
    kForeign,  ///< not known, or below something that is not
    kDocument,
    kSequence,
    kSelectedStandards,
    kStandardName,
    kMtiList,
    kMti,
    kGroup,
    kTest,
    kFilter,
    kPlugInData,
    kTestGuideSettings,
    kExpectedResult,
    kStandard,
    kLimit,
    kSide,
    kResultItem,
    kServiceRecord,
    kSuperseded,
    kRun,
    kMeasuredBy,
    kTechnique,
    kSetting,
    kJudgedBy,
    kMeasurement,
    kMeasuredValue,
    kStatus,
    kWaveform,
    kSurvey,  ///< test 1300
    kSurveyConfig,
    kConfigCollimation,
    kConfigArtifacts,
    kSurveyResult,
    // The groups of a survey's result, in the order of their table.
    kSurveyGroup,
    kLastSurveyGroup = kSurveyGroup + 8,
    kText,  ///< holds a text and nothing else
};

/// What a text of the file must be.
enum class Form : uint8_t {
    kAny,
    kNotEmpty,
    kNumber,
    kNumberOrEmpty,
    kSetting,  ///< a number, whose percent sign is dropped, or empty
    kWhole,
    kWholeOrEmpty,
    kNotNegative,
    kTruth,
    kStatus,         ///< 0 to 3
    kExposureCount,  ///< 1 to 255
    kByte,           ///< 0 to 255, or empty
    kShort,          ///< of 16 bits, or empty
    kDetectorKind,   ///< 0 to 5, or empty
    kVersion,        ///< 1
    kPlugIn,         ///< this library's
    kExpression,
    kEnding,  ///< how a run ended
};

/// What distinguishes elements of one name.
enum class Identity : uint8_t { kOrder, kOnly, kId, kKey, kNumber, kNameAndVersion };

/// An element that this system writes.
struct ElementRow {
    Place parent;
    std::string_view name;
    Place place;
    Identity identity;
    Form form;  ///< of its text
};

/// An attribute that this system writes.
struct AttributeRow {
    Place place;
    std::string_view name;
    Form form;
    bool required;
};

/// So many rows the table of elements has at most: a reader keeps a bit for each.
inline constexpr std::size_t kMostElementRows = 192;

/// The row of an element below a place; null for one that is not known. A group and a test are told apart by
/// `PlaceOfTest`.
const ElementRow* FindElementRow(Place parent, std::string_view name);
const AttributeRow* FindAttributeRow(Place place, std::string_view name);
std::span<const ElementRow> ElementRows();
/// The attributes of a place.
std::span<const AttributeRow> AttributeRows(Place place);
/// Group, survey or measuring test, by the text of the attribute "TestID".
Place PlaceOfTest(std::string_view testId);
/// True where the text of an element belongs to the class that writes it.
bool OwnsText(Place place);

/// A key of the configuration block: of the whole test, and, with a row number after it, of an exposure.
struct ConfigKey {
    int32_t index = -1;  ///< of the key's name; below 0 for a key that is not known
    int32_t row = -1;    ///< from 0; below 0 for a key of the whole test
    Form form = Form::kAny;
};
ConfigKey FindConfigKey(std::string_view key);

/// True when a text has a form.
bool Has(Form form, std::string_view text);
/// A form in words, for messages.
std::string_view InWords(Form form);

}  // namespace vorex

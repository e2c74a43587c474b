#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// The known content of the element file: which elements are allowed where, what must be a number, what
/// distinguishes two elements of the same name. Everything else in a file is foreign and is kept unchanged.
namespace vorex {

/// Kinds of elements, by their position.
enum class Place : uint8_t {
    kForeign,  ///< unknown, or below an unknown element
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

/// The form that a text of the file must have.
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

/// What distinguishes elements of the same name.
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

/// The table of elements has at most this many rows, because a reader keeps a bit for each.
inline constexpr std::size_t kMostElementRows = 192;

/// The row of an element below a place; null for an unknown one. `PlaceOfTest` distinguishes groups and
/// tests.
const ElementRow* FindElementRow(Place parent, std::string_view name);
const AttributeRow* FindAttributeRow(Place place, std::string_view name);
std::span<const ElementRow> ElementRows();
/// The attributes of a place.
std::span<const AttributeRow> AttributeRows(Place place);
/// Group, survey or measuring test, by the text of the attribute "TestID".
Place PlaceOfTest(std::string_view testId);
/// True if the class that writes an element also writes its text.
bool OwnsText(Place place);

/// A key of the configuration block: of the whole test or, with a row number after it, of an exposure.
struct ConfigKey {
    int32_t index = -1;  ///< of the key's name; below 0 for an unknown key
    int32_t row = -1;    ///< from 0; below 0 for a key of the whole test
    Form form = Form::kAny;
};
ConfigKey FindConfigKey(std::string_view key);

/// True when a text has the form.
bool Has(Form form, std::string_view text);
/// A form in words, for messages.
std::string_view InWords(Form form);

}  // namespace vorex

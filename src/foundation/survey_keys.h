#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "foundation/status_cells.h"
#include "foundation/survey_text_keys.h"
#include "foundation/text_keys.h"

/// The survey in the element file: the groups of a result, with the fields and grids of each, in the order in
/// which they are written. Names are part of the format, misspellings included.
namespace vorex {

/// A field of the survey, and how it is treated apart from being kept as text.
enum class FieldKind : uint8_t { kText, kTrimmed, kNumber, kDay, kMonth, kYear };

struct SurveyFieldRow {
    std::string_view key;
    std::string_view meaning;  ///< text key, for a person who fills the survey without its form
    FieldKind kind = FieldKind::kText;
};

enum class GridId : uint8_t {
    kEvaluation,
    kLightField,
    kReceptorEdge,
    kAlignment,
    kResolution,
    kThickness,
    kDensityControl,
    kImageMode,
    kSmallCassettes,
    kLargeCassettes,
    kArtifacts,
    kImageQuality,
    kViewbox,
};
inline constexpr std::size_t kGridCount = 13;

/// The ten pages of the survey, in the order of their list.
enum class SurveyPage : uint8_t {
    kGeneral,
    kTechniqueChart,
    kAssembly,
    kCollimation,
    kResolution,
    kAec,
    kUniformity,
    kArtifacts,
    kImageQuality,
    kViewbox,
};
inline constexpr std::size_t kPageCount = 10;

/// A part of a survey's result. Without a name its grid is in the result itself.
struct SurveyGroupRow {
    std::string_view name;
    SurveyPage page;
    std::span<const SurveyFieldRow> fields;
    std::span<const GridId> grids;
};

/// The fields of a date.
struct SurveyDateKeys {
    std::string_view year;
    std::string_view month;
    std::string_view day;
};

namespace survey {
// Fields that are used outside the form too.
inline constexpr std::string_view kSite = "Site";
inline constexpr std::string_view kRoomId = "RoomID";
inline constexpr std::string_view kTechnologist = "Technologist";
inline constexpr std::string_view kUnitManufacturer = "XrayUnitManufacturer";
inline constexpr std::string_view kUnitModel = "XrayUnitModel";
inline constexpr SurveyDateKeys kSurveyDate = {"Year", "Month", "Day"};
inline constexpr SurveyDateKeys kPreviousFilmDate = {"IQYear1", "IQMonth1", "IQDay1"};
inline constexpr SurveyDateKeys kCurrentFilmDate = {"IQYear2", "IQMonth2", "IQDay2"};

// clang-format off
inline constexpr SurveyFieldRow kGeneralFields[] = {
    {kSite,                   text::kReportSite, FieldKind::kTrimmed},
    {kTechnologist,           text::kReportTechnologist},
    {kRoomId,                 text::kReportRoom, FieldKind::kTrimmed},
    {kSurveyDate.day,         survey_text::kFieldDaySurvey, FieldKind::kDay},
    {kSurveyDate.month,       survey_text::kFieldMonthSurvey, FieldKind::kMonth},
    {kSurveyDate.year,        survey_text::kFieldYearSurvey, FieldKind::kYear},
    {kPreviousFilmDate.day,   survey_text::kFieldDayPreviousFilm, FieldKind::kDay},
    {kPreviousFilmDate.month, survey_text::kFieldMonthPreviousFilm, FieldKind::kMonth},
    {kPreviousFilmDate.year,  survey_text::kFieldYearPreviousFilm, FieldKind::kYear},
    {kCurrentFilmDate.day,    survey_text::kFieldDayCurrentFilm, FieldKind::kDay},
    {kCurrentFilmDate.month,  survey_text::kFieldMonthCurrentFilm, FieldKind::kMonth},
    {kCurrentFilmDate.year,   survey_text::kFieldYearCurrentFilm, FieldKind::kYear},
    {kUnitManufacturer,       survey_text::kFieldManufacturerXrayUnit, FieldKind::kTrimmed},
    {kUnitModel,              survey_text::kFieldModelXrayUnit},
    {"ProcessorManufacturer", survey_text::kFieldManufacturerProcessor, FieldKind::kTrimmed},
    {"ProcessorModel",        survey_text::kFieldModelProcessor},
    {"FilmManufacturer",      survey_text::kFieldManufacturerFilm, FieldKind::kTrimmed},
    {"FilmType",              survey_text::kFieldTypeFilm},
    {"ScreenManufacturer",    survey_text::kFieldManufacturerScreen, FieldKind::kTrimmed},
    {"ScreenType",            survey_text::kFieldTypeScreen},
};
inline constexpr SurveyFieldRow kCollimationFields[] = {
    {"SID", survey_text::kFieldSourceImageReceptorDistance, FieldKind::kNumber},
};
inline constexpr SurveyFieldRow kResolutionFields[] = {
    {"XrayTubeManufacturer", survey_text::kFieldManufacturerXrayTube},
    {"XrayTubeModel",        survey_text::kFieldModelXrayTube},
};
inline constexpr SurveyFieldRow kAecFields[] = {
    {"AECposition",     survey_text::kFieldPositionAECDetector},
    {"DensityControl",  survey_text::kDensityControlLabel},
    {"SmallCassetteID", survey_text::kFieldIdentificationSmallCassette},
    {"LargeCassetteID", survey_text::kFieldIdentificationLargeCassette},
};
inline constexpr SurveyFieldRow kUniformityFields[] = {
    {"ScreenType",                survey_text::kFieldTypeScreens},
    {"ProcessorUsed",             survey_text::kFieldProcessorUsed},
    {"FilmType",                  survey_text::kFieldTypeFilm},
    {"kVpSetting",                survey_text::kFieldKvpSetting},
    {"FocalSpot",                 survey_text::kFocalSpotOfCassette},
    {"AECdensityControl",         survey_text::kFieldDensityControlSettingAEC},
    {"SmallCassetteSize",         survey_text::kFieldSizeSmallCassettes},
    {"LargeCassetteSize",         survey_text::kFieldSizeLargeCassettes},
    {"SmallCassetteFilmEmulsion", survey_text::kFieldFilmEmulsionSmallCassettes},
    {"LargeCassetteFilmEmulsion", survey_text::kFieldFilmEmulsionLargeCassettes},
};
inline constexpr SurveyFieldRow kArtifactFields[] = {
    {"AttenuatorType",        survey_text::kFieldTypeAttenuator},
    {"kVpSetting",            survey_text::kFieldKvpSetting},
    {"AttenuatorThickness",   survey_text::kFieldThicknessAttenuator},
    {"DensityControlSetting", survey_text::kDensityControlSetting},
};
inline constexpr SurveyFieldRow kImageQualityFields[] = {
    {"Phantom",             survey_text::kFieldPhantomUsed},
    {"CassetteSize",        text::kCassetteSize},
    {"AECdetectorPosition", survey_text::kFieldPositionAECDetector},
    {"Cassette",            survey_text::kCassette},
};

inline constexpr GridId kEvaluationGrids[]   = {GridId::kEvaluation};
inline constexpr GridId kCollimationGrids[]  = {GridId::kLightField, GridId::kReceptorEdge, GridId::kAlignment};
inline constexpr GridId kResolutionGrids[]   = {GridId::kResolution};
inline constexpr GridId kAecGrids[]          = {GridId::kThickness, GridId::kDensityControl, GridId::kImageMode};
inline constexpr GridId kUniformityGrids[]   = {GridId::kSmallCassettes, GridId::kLargeCassettes};
inline constexpr GridId kArtifactGrids[]     = {GridId::kArtifacts};
inline constexpr GridId kImageQualityGrids[] = {GridId::kImageQuality};
inline constexpr GridId kViewboxGrids[]      = {GridId::kViewbox};

/// The group of the fields that name site, unit, person and date.
inline constexpr std::string_view kGeneralInformation = "GeneralInformation";

/// In the order in which they are written.
inline constexpr SurveyGroupRow kGroups[] = {
    {kGeneralInformation,  SurveyPage::kGeneral,        kGeneralFields,      {}},
    {{},                   SurveyPage::kTechniqueChart, {},                  kEvaluationGrids},
    {"Collimation",        SurveyPage::kCollimation,    kCollimationFields,  kCollimationGrids},
    {"Resolution",         SurveyPage::kResolution,     kResolutionFields,   kResolutionGrids},
    {"AEC",                SurveyPage::kAec,            kAecFields,          kAecGrids},
    {"Unifomity",          SurveyPage::kUniformity,     kUniformityFields,   kUniformityGrids},
    {"ArtifactEval",       SurveyPage::kArtifacts,      kArtifactFields,     kArtifactGrids},
    {"ImageQuality",       SurveyPage::kImageQuality,   kImageQualityFields, kImageQualityGrids},
    {{},                   SurveyPage::kViewbox,        {},                  kViewboxGrids},
};

/// Keys of the grids, by their identity.
inline constexpr std::array<std::string_view, kGridCount> kGridKeys = {
    "Evaluation", "DeviXrayLightField", "DeviXrayEdgeImageReceptor", "Alignment", "Resolution",
    "ThicknesskVpTracking", "DensityControlFunction", "ImageModeTracking", "SmallCassettes", "LargeCassettes",
    "ArtifactEvaluation", "ImageQuality", "Viewbox",
};

// Values after the groups, in this order.
inline constexpr std::string_view kSummaryPage        = "SummaryPage";
inline constexpr std::string_view kPreliminaryResults = "PreliminaryResults";
inline constexpr std::string_view kResultComment      = "ResultComment";

struct StatusCellRow {
    std::string_view key;
    int32_t StatusCells::*cell;
};
/// In the order in which they are written.
inline constexpr StatusCellRow kStatusCells[] = {
    {"kVpL36", &StatusCells::kVpL36}, {"kVpL38", &StatusCells::kVpL38}, {"kVpL39", &StatusCells::kVpL39},
    {"BQC69",  &StatusCells::BQC69},  {"BQC79",  &StatusCells::BQC79},  {"Dose75", &StatusCells::Dose75},
    {"Dose80", &StatusCells::Dose80}, {"Dose82", &StatusCells::Dose82}, {"Dose78", &StatusCells::Dose78},
};

// Items of the survey: a prefix and a number from 1.
inline constexpr std::string_view kAssemblyItem     = "Evaluation";
inline constexpr std::string_view kTechnologistItem = "PR";
inline constexpr std::string_view kAssistantItem    = "ALog";
// clang-format on
}  // namespace survey

/// The field rows of all groups, counted through.
inline constexpr std::size_t kSurveyFieldCount = [] {
    std::size_t count = 0;
    for (const SurveyGroupRow& group : survey::kGroups) count += group.fields.size();
    return count;
}();
static_assert(kSurveyFieldCount == 45);

constexpr std::string_view GridKey(GridId grid) {
    return survey::kGridKeys[static_cast<std::size_t>(grid)];
}

}  // namespace vorex

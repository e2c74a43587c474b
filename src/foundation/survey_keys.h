#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "foundation/library_state.h"

/// The survey as the element file keeps it: which groups a result has, which fields and grids stand in each,
/// in the order in which they are written. Names are part of the format, the odd spelling included.
namespace vorex {

/// How a field of the survey is treated beside being kept as text.
enum class FieldKind : uint8_t { kText, kTrimmed, kNumber, kDay, kMonth, kYear };

struct SurveyFieldRow {
    std::string_view key;
    std::string_view meaning;  ///< in English, for a person who fills the survey without its form
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

/// A part of a survey's result. Without a name its grid stands in the result itself.
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
// Fields that more than the form names.
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
    {kSite,                   "Site", FieldKind::kTrimmed},
    {kTechnologist,           "Technologist"},
    {kRoomId,                 "Room", FieldKind::kTrimmed},
    {kSurveyDate.day,         "Day of the survey", FieldKind::kDay},
    {kSurveyDate.month,       "Month of the survey", FieldKind::kMonth},
    {kSurveyDate.year,        "Year of the survey", FieldKind::kYear},
    {kPreviousFilmDate.day,   "Day of the previous film", FieldKind::kDay},
    {kPreviousFilmDate.month, "Month of the previous film", FieldKind::kMonth},
    {kPreviousFilmDate.year,  "Year of the previous film", FieldKind::kYear},
    {kCurrentFilmDate.day,    "Day of the current film", FieldKind::kDay},
    {kCurrentFilmDate.month,  "Month of the current film", FieldKind::kMonth},
    {kCurrentFilmDate.year,   "Year of the current film", FieldKind::kYear},
    {kUnitManufacturer,       "Manufacturer of the X-ray unit", FieldKind::kTrimmed},
    {kUnitModel,              "Model of the X-ray unit"},
    {"ProcessorManufacturer", "Manufacturer of the processor", FieldKind::kTrimmed},
    {"ProcessorModel",        "Model of the processor"},
    {"FilmManufacturer",      "Manufacturer of the film", FieldKind::kTrimmed},
    {"FilmType",              "Type of the film"},
    {"ScreenManufacturer",    "Manufacturer of the screen", FieldKind::kTrimmed},
    {"ScreenType",            "Type of the screen"},
};
inline constexpr SurveyFieldRow kCollimationFields[] = {
    {"SID", "Source to image receptor distance, in the unit of the deviations", FieldKind::kNumber},
};
inline constexpr SurveyFieldRow kResolutionFields[] = {
    {"XrayTubeManufacturer", "Manufacturer of the X-ray tube"},
    {"XrayTubeModel",        "Model of the X-ray tube"},
};
inline constexpr SurveyFieldRow kAecFields[] = {
    {"AECposition",     "Position of the AEC detector"},
    {"DensityControl",  "Density control"},
    {"SmallCassetteID", "Identification of the small cassette"},
    {"LargeCassetteID", "Identification of the large cassette"},
};
inline constexpr SurveyFieldRow kUniformityFields[] = {
    {"ScreenType",                "Type of the screens"},
    {"ProcessorUsed",             "Processor used"},
    {"FilmType",                  "Type of the film"},
    {"kVpSetting",                "kVp setting"},
    {"FocalSpot",                 "Focal spot"},
    {"AECdensityControl",         "Density control setting of the AEC"},
    {"SmallCassetteSize",         "Size of the small cassettes"},
    {"LargeCassetteSize",         "Size of the large cassettes"},
    {"SmallCassetteFilmEmulsion", "Film emulsion of the small cassettes"},
    {"LargeCassetteFilmEmulsion", "Film emulsion of the large cassettes"},
};
inline constexpr SurveyFieldRow kArtifactFields[] = {
    {"AttenuatorType",        "Type of the attenuator"},
    {"kVpSetting",            "kVp setting"},
    {"AttenuatorThickness",   "Thickness of the attenuator"},
    {"DensityControlSetting", "Density control setting"},
};
inline constexpr SurveyFieldRow kImageQualityFields[] = {
    {"Phantom",             "Phantom used"},
    {"CassetteSize",        "Cassette size"},
    {"AECdetectorPosition", "Position of the AEC detector"},
    {"Cassette",            "Cassette"},
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

// Values behind the groups, in this order.
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

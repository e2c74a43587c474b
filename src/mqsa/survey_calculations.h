#pragma once

#include <string>
#include <string_view>

#include "mqsa/survey_record.h"

/// The calculated cells of the survey, one function per page, which reads the typed cells and writes the
/// calculated ones. Numbers between the texts are doubles; roundings go to the even digit.
namespace vorex {

/// Sums of the field edges, and deviations in percent of the source to image receptor distance. A distance of
/// 0 clears the results, a negative one leaves them as they are.
void CalculateCollimation(std::string_view sid, SurveyGrid& lightField, SurveyGrid& receptorEdge,
                          SurveyGrid& alignment);
/// Mean, measured range and allowed range of the densities, by thickness and over all image modes.
void CalculateTracking(SurveyGrid& thickness, SurveyGrid& imageMode);
/// Change of mAs and of density of each density control step against the normal one.
void CalculateDensityControl(SurveyGrid& grid);
/// Mean and spread of the control cassette and of the other cassettes.
void CalculateCassettes(SurveyGrid& grid);
/// Changes from the previous film to the current one.
void CalculateImageQuality(SurveyGrid& grid);

/// Recalculates what depends on the cells of a grid.
void Recalculate(SurveyRecord& record, GridId grid);
/// Recalculates all pages.
void RecalculateAll(SurveyRecord& record);

}  // namespace vorex

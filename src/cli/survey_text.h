#pragma once

#include <string>

#include "mqsa/result_mqsa.h"

namespace vorex {

/// A survey for a person: its filled places page by page, both tables of verdicts, and the failures with
/// their figures. Lines begin with the indent.
std::string SurveyText(const CResultMQSA& survey, const std::string& indent, bool colour);

/// The failures, a line each, and what could not be judged; empty when there is none of either.
std::string SurveyFailures(const CResultMQSA& survey, const std::string& indent);

/// Every place of the survey, a line each: page, address, value and meaning, separated by tabs.
std::string SurveyListing(const CResultMQSA& survey);

}  // namespace vorex

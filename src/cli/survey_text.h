#pragma once

#include <string>

#include "mqsa/result_mqsa.h"

namespace vorex {

/// A survey for a person: its filled places page by page, both tables of verdicts, and what fails by which
/// figure. Lines begin with the indent.
std::string SurveyText(const CResultMQSA& survey, const std::string& indent, bool colour);

/// What fails, a line each, and what could not be judged; empty when nothing does.
std::string SurveyFailures(const CResultMQSA& survey, const std::string& indent);

/// Every place of the survey with page, address, value and meaning, a line each, parted by tabulators.
std::string SurveyListing(const CResultMQSA& survey);

}  // namespace vorex

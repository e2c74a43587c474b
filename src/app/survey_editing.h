#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/open_file.h"
#include "execution/test_mqsa.h"
#include "files/survey_exchange.h"

namespace vorex {

/// The survey of an ID, or the only one of the file. Raises std::runtime_error when there is none, or several
/// and no ID.
std::shared_ptr<CTestMQSA> FindSurvey(const OpenFile& file, std::optional<int32_t> id);

/// Enters texts and answers, judges the survey again and rolls up its groups. Returns what a person should
/// know of what was entered. Raises std::runtime_error for an address, item or answer that does not exist.
std::vector<std::string> EnterSurvey(OpenFile& file, const std::shared_ptr<CTestMQSA>& element,
                                     const SurveyExchange& entered);

/// What is filled, and the cells that were emptied: a new survey has proposals in some of them.
SurveyExchange ExportSurvey(const CResultMQSA& survey);

}  // namespace vorex

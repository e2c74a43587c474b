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

/// Enters texts and answers, judges the survey again and updates its groups. Returns warnings about the
/// entries. Raises std::runtime_error for an address, item or answer that does not exist.
std::vector<std::string> EnterSurvey(OpenFile& file, const std::shared_ptr<CTestMQSA>& element,
                                     const SurveyExchange& entered);

/// The filled places, and cells that were cleared of the proposal of a new survey.
SurveyExchange ExportSurvey(const CResultMQSA& survey);

}  // namespace vorex

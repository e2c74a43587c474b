#pragma once

#include <memory>
#include <vector>

#include "execution/test_mqsa.h"
#include "foundation/host_contract.h"
#include "foundation/status_cells.h"

namespace vorex {

/// The surveys that a mammography test counts for: a survey that is alone in the file, otherwise all surveys
/// of the test's own group. A test in a group without a survey counts for the surveys of the group around it.
/// Surveys among the roots take the tests among the roots.
std::vector<std::shared_ptr<CTestMQSA>> SurveysFedBy(const ITestElement& test);

/// Passes the outcomes of a test to its surveys, including surveys that precede it.
void FeedSurveys(const ITestElement& test, const SurveyOutcomes& outcomes);

}  // namespace vorex

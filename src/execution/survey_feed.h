#pragma once

#include <memory>
#include <vector>

#include "execution/test_mqsa.h"
#include "foundation/host_contract.h"
#include "foundation/status_cells.h"

namespace vorex {

/// The surveys that a mammography test counts for: the only one of the file; of several, those of the test's
/// own group, all alike. A test in a group without a survey counts for the surveys of the group around it.
/// Surveys among the roots take the tests among the roots.
std::vector<std::shared_ptr<CTestMQSA>> SurveysFedBy(const ITestElement& test);

/// Brings outcomes of a test to its surveys, also to a survey that precedes the test.
void FeedSurveys(const ITestElement& test, const SurveyOutcomes& outcomes);

}  // namespace vorex

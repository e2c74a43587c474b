#include "execution/survey_feed.h"

#include <utility>

#include "foundation/sequence_state.h"

namespace vorex {

namespace {

using Elements = std::vector<std::shared_ptr<ITestElement>>;
using Surveys = std::vector<std::shared_ptr<CTestMQSA>>;

Elements ChildrenOf(const std::shared_ptr<ITestElement>& element) {
    const auto group = std::dynamic_pointer_cast<ITestContainer>(element);
    return group ? group->NewEnum() : Elements();
}

Surveys SurveysAmong(const Elements& elements) {
    Surveys surveys;
    for (const auto& element : elements)
        if (auto survey = std::dynamic_pointer_cast<CTestMQSA>(element)) surveys.push_back(std::move(survey));
    return surveys;
}

void AddSurveysBelow(const Elements& elements, Surveys& surveys) {
    for (const auto& survey : SurveysAmong(elements)) surveys.push_back(survey);
    for (const auto& element : elements) AddSurveysBelow(ChildrenOf(element), surveys);
}

/// The roots of the test's sequence; for a test that is in no file, the root of its own tree.
Elements RootsOf(const ITestElement& test) {
    Elements roots = test.Sequence()->Roots();
    if (!roots.empty()) return roots;
    std::shared_ptr<ITestElement> top;
    for (auto parent = test.Parent(); parent; parent = parent->Parent()) top = parent;
    return top ? Elements{std::move(top)} : Elements();
}

}  // namespace

std::vector<std::shared_ptr<CTestMQSA>> SurveysFedBy(const ITestElement& test) {
    const Elements roots = RootsOf(test);
    Surveys all;
    AddSurveysBelow(roots, all);
    if (all.size() < 2) return all;
    for (auto group = test.Parent(); group; group = group->Parent())
        if (Surveys own = SurveysAmong(ChildrenOf(group)); !own.empty()) return own;
    return test.Parent() ? Surveys() : SurveysAmong(roots);
}

void FeedSurveys(const ITestElement& test, const SurveyOutcomes& outcomes) {
    if (outcomes == SurveyOutcomes()) return;
    for (const auto& survey : SurveysFedBy(test)) survey->TakeOutcomes(outcomes);
}

}  // namespace vorex

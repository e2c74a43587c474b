#include <memory>

#include "app/elements.h"
#include "app/open_file.h"
#include "app/verdict_text.h"
#include "execution/survey_feed.h"
#include "execution/test_group.h"
#include "foundation/vocabulary.h"
#include "mqsa/result_mqsa.h"
#include "results/result_common.h"

// Judges stored results again.

namespace vorex {

namespace {

/// A result whose statuses do not change keeps its record of who judged it, and when.
void JudgeResult(ITestElement& element, CResultCommon& result, const ISelectedStandards* selected,
                 IAppListener& listener) {
    const Statuses before = StatusesOf(result);
    const auto record = result.ServiceRecord();
    FeedSurveys(element, result.UpdateAllStatus(element, selected));
    if (StatusesOf(result) == before) {
        result.ServiceRecord(record);
        return;
    }
    if (const auto change = ChangeOfVerdict(element, result, before, selected))
        listener.VerdictChanged(*change);
    result.NoteJudgement(element, selected);
}

void JudgeTest(const std::shared_ptr<ITestElement>& element, const ISelectedStandards* selected,
               IAppListener& listener) {
    const auto result = std::dynamic_pointer_cast<CResultCommon>(element->Result());
    if (result && (result->Status() == kPassed || result->Status() == kFailed))
        JudgeResult(*element, *result, selected, listener);
}

void JudgeSurvey(const std::shared_ptr<ITestElement>& element, const ISelectedStandards* selected) {
    const auto survey = std::dynamic_pointer_cast<CResultMQSA>(element->Result());
    if (!survey) return;
    survey->RecalculatePages();
    survey->pUpdateMQSATestStatus();
    survey->UpdateStatus(*element, selected, survey->Status() == kNotApplicable);
}

}  // namespace

void OpenFile::Judge(IAppListener& listener) {
    const auto selected = mFile->Selected();
    // The surveys are last, because a survey may precede the tests that count for it.
    ForEachElement(Elements(), [&](const auto& element) { JudgeTest(element, selected.get(), listener); });
    ForEachElement(Elements(), [&](const auto& element) { JudgeSurvey(element, selected.get()); });
    for (const auto& element : Elements())
        if (const auto group = std::dynamic_pointer_cast<CTestGroup>(element)) group->CreateMissingResults();
    RollUpGroups(Elements(), selected.get());
}

}  // namespace vorex

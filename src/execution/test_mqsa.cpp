#include "execution/test_mqsa.h"

#include "config/config_mqsa.h"
#include "foundation/host_services.h"
#include "foundation/sequence_state.h"
#include "foundation/survey_text_keys.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "results/limit_data.h"

namespace vorex {

namespace {

/// The survey starts on the page of its groups' headings.
constexpr int32_t kRoomForGroups = 1800;

}  // namespace

std::shared_ptr<CTestMQSA> CTestMQSA::Create() {
    auto element = std::make_shared<CTestMQSA>();
    element->Class_Initialize();
    return element;
}

void CTestMQSA::Class_Initialize() {
    mBase = Services().createElementBase();
    mBase->Configuration(std::make_shared<CConfigMQSA>());
    auto limits = std::make_shared<CLimitData>();
    limits->SetOwner(shared_from_this(), true);
    mBase->Limits(limits);
}

void CTestMQSA::CreateResult(bool force) {
    mResult = force ? nullptr : std::dynamic_pointer_cast<CResultMQSA>(mBase->Result());
    if (mResult) return;
    mResult = std::make_shared<CResultMQSA>();
    mResult->Initialize(std::dynamic_pointer_cast<CConfigMQSA>(mBase->Configuration()));
    mResult->Cells(mCells);
    mBase->Result(mResult);
}

void CTestMQSA::TakeOutcomes(const SurveyOutcomes& outcomes) {
    mCells = WithOutcomes(mCells, outcomes);
    const auto survey = std::dynamic_pointer_cast<CResultMQSA>(mBase->Result());
    if (!survey) return;
    survey->Cells(mCells);
    survey->CopyStatusCells();
}

std::shared_ptr<CResultMQSA> CTestMQSA::Survey() {
    CreateResult(false);
    return mResult;
}

void CTestMQSA::Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) {
    if (element->Name() == tag::kResultItem) CreateResult(true);
    mBase->Load(element, log);
    if (element->Name() == tag::kResultItem && mResult) mCells = mResult->Cells();
}

std::shared_ptr<ITestElement> CTestMQSA::Clone() {
    auto clone = Create();
    clone->AttachBase(mBase->Clone());
    return clone;
}

void CTestMQSA::AttachBase(const std::shared_ptr<ITestElementBase>& newBase) {
    if (!newBase) return;
    mBase->Terminate();
    mBase = newBase;
    if (const auto limits = std::dynamic_pointer_cast<CLimitData>(mBase->Limits()))
        limits->SetOwner(shared_from_this(), true);
}

void CTestMQSA::UpdateReferences() {
    const auto limits = mBase->Limits();
    if (limits && limits->Standards()) limits->Standards()->Owner(shared_from_this());
}

// ------------------------------------------------------------------------------------------ report

void CTestMQSA::PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) {
    const auto filter = mBase->Filter();
    if (report == nullptr || (filter && !filter->Print())) return;
    const auto survey = std::dynamic_pointer_cast<CResultMQSA>(mBase->Result());
    const bool failuresOnly = (report->Options() & kReportFailuresOnly) != 0;
    if (failuresOnly && (!survey || survey->Status() != kFailed)) return;
    if (report->Position() > kRoomForGroups) report->NewPage();
    mBase->PrintReport(report, setup);
    if (!survey || (report->Options() & kReportComments) == 0) return;
    const auto config = std::dynamic_pointer_cast<CConfigMQSA>(mBase->Configuration());
    survey->PrintComment(*report);
    // Without comments, the first form is on the page with the element's heading.
    if (!survey->Comment().empty() || survey->HasPageComments()) report->NewPage();
    survey->GetPreliminaryResultsData(*report, config.get());
    report->NewPage();
    survey->GetSummaryOneData(*report, config.get());
    report->NewPage();
    survey->GetSummaryTwoData(*report, config.get());
    report->NewPage();
    survey->GetAssistantLogData(*report, config.get());
}

// ------------------------------------------------------------------------------------------ perform

void CTestMQSA::Perform(const std::shared_ptr<IExecutionPipe>& pipe) {
    if (!pipe->BeginElement(*this)) return;
    CreateResult(false);
    const bool earlierResult = mResult->Status() != kNotTested;
    mPipe = pipe;
    const PassedOver passed = TakePassedOver(*Sequence(), *mPipe);
    mDiscard = passed == PassedOver::kSkipped;
    mMarkNA = passed == PassedOver::kMarkedNA;
    if (passed == PassedOver::kNo) RunGuide(earlierResult);
    if (mfrmTestGuide) Guarded("Unload", [&] { mfrmTestGuide->Unload(); });
    mfrmTestGuide.reset();
    FinishTest();
    mPipe.reset();
}

void CTestMQSA::RunGuide(bool earlierResult) {
    mfrmTestGuide = CreateObjectAs<ITestGuide>(kTestGuideClass);
    if (!mfrmTestGuide) return;
    ConnectGuide();
    Guarded("Load", [&] { mfrmTestGuide->Load(); });
    mResult->pUpdateMQSATestStatus();
    SplitComment();
    // An incomplete survey can be left, and is kept.
    mfrmTestGuide->ToolbarState(GuideState::kIdle, true);
    mfrmTestGuide->ShowStatus(mResult.get());
    mfrmTestGuide->Initialize(shared_from_this(), mPipe, {Translate(survey_text::kPleaseSelectPassFailOrNa)});
    mfrmTestGuide->BuildColumns(nullptr, false);
    if (earlierResult) mfrmTestGuide->ShowResult(shared_from_this(), 0);
    mfrmTestGuide->EnableStart(false);
    Services().platform->ShowModal(*mfrmTestGuide);
    const auto config = std::dynamic_pointer_cast<CConfigMQSA>(mBase->Configuration());
    if (config && !config->PrintTheComment.empty())
        mResult->Comment(AppendComment(mResult->Comment(), config->PrintTheComment));
}

void CTestMQSA::ConnectGuide() {
    TestGuideEvents& events = mfrmTestGuide->events;
    events.AbortTest.Connect([this] {
        mDiscard = true;
        Leave(kGoAbort);
    });
    events.NextTest.Connect([this] { Leave(kGoNext); });
    events.Previous.Connect([this] { Leave(kGoPrevious); });
    events.Skip.Connect([this] {
        mDiscard = true;
        Leave(kGoSkip);
    });
    events.NA.Connect([this] {
        mDiscard = false;
        mMarkNA = true;
        mResult->TestNotApp();
        Leave(kGoNext);
    });
    events.ItemClicked.Connect([this](bool current) { mfrmTestGuide->EnableNext(current); });
}

void CTestMQSA::SplitComment() {
    const auto config = std::dynamic_pointer_cast<CConfigMQSA>(mBase->Configuration());
    const std::string comment = mResult->Comment();
    if (!config || comment.empty()) return;
    config->PrintTheComment = CommentLog(comment);
    mResult->Comment(CommentWords(comment));
}

void CTestMQSA::Leave(int32_t navigation) {
    mPipe->NextAction(navigation);
    mfrmTestGuide->Visible(false);
}

void CTestMQSA::FinishTest() {
    if (mDiscard) {
        mBase->Result(nullptr);
        return;
    }
    const auto result = std::dynamic_pointer_cast<CResultMQSA>(mBase->Result());
    if (!result) return;
    result->UpdateStatus(*this, mPipe->SelectedStandards().get(), mMarkNA);
    mPipe->EndElement(*this);
}

}  // namespace vorex

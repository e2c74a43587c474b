#include "execution/test_common.h"

#include "execution/survey_feed.h"
#include "foundation/host_services.h"
#include "foundation/vocabulary.h"
#include "results/limit_data.h"

namespace vorex {

std::shared_ptr<CTestCommon> CTestCommon::Create() {
    auto element = std::make_shared<CTestCommon>();
    element->Class_Initialize();
    return element;
}

CTestCommon::~CTestCommon() = default;

void CTestCommon::Class_Initialize() {
    mBase = Services().createElementBase();
    mBase->Configuration(std::make_shared<CConfigCommon>());
    auto limits = std::make_shared<CLimitData>();
    limits->SetOwner(shared_from_this(), true);
    mBase->Limits(limits);
    FollowExposures();
}

/// Limits may belong to exposures: they follow when the setup adds or removes an exposure.
void CTestCommon::FollowExposures() {
    const auto config = Config();
    if (!config) return;
    mLimitAdded = config->LimitAdded.Listen([this](int32_t exposure) { AppendExposureLimit(exposure); });
    mLimitDeleted = config->LimitDeleted.Listen([this](int32_t exposure) { ReorderLimits(exposure); });
}

void CTestCommon::AppendExposureLimit(int32_t exposure) {
    if (const auto limits = std::dynamic_pointer_cast<CLimitData>(mBase->Limits()))
        limits->AppendExposureLimit(exposure);
}

void CTestCommon::ReorderLimits(int32_t exposure) {
    if (const auto limits = std::dynamic_pointer_cast<CLimitData>(mBase->Limits()))
        limits->ReorderLimits(exposure);
}

void CTestCommon::Initialize(const std::shared_ptr<ITestElement>& parent, std::string_view plugInId,
                             int32_t testId) {
    mBase->Initialize(parent, plugInId, testId);
    if (const auto config = Config()) config->pTestID = testId;
}

std::shared_ptr<CConfigCommon> CTestCommon::Config() const {
    return std::dynamic_pointer_cast<CConfigCommon>(mBase->Configuration());
}

void CTestCommon::CreateResult(bool force) {
    if (force || !mBase->Result()) {
        mResult = std::make_shared<CResultCommon>();
        if (const auto config = Config()) mResult->Initialize(config);
        mBase->Result(mResult);
    } else {
        mResult = std::dynamic_pointer_cast<CResultCommon>(mBase->Result());
    }
    if (mResult) mResult->TestId = TestID();
}

/// The instruments chosen in the setup are the ones in use.
void CTestCommon::AdoptDetectorOption() {
    const auto config = Config();
    if (config && config->DetectorOption != kNoDetector) config->DetectorName = config->DetectorOption;
}

void CTestCommon::Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) {
    if (element->Name() == tag::kResultItem) CreateResult(true);
    if (const auto result = std::dynamic_pointer_cast<CResultCommon>(mBase->Result()))
        result->TestId = TestID();
    mBase->Load(element, log);
    AdoptDetectorOption();
}

std::shared_ptr<ITestElement> CTestCommon::Clone() {
    auto clone = Create();
    clone->AttachBase(mBase->Clone());
    clone->AttachOwner(clone);
    return clone;
}

void CTestCommon::AttachBase(const std::shared_ptr<ITestElementBase>& newBase) {
    if (!newBase) return;
    mBase->Terminate();
    mBase = newBase;
    if (const auto config = Config()) config->pTestID = TestID();
    FollowExposures();
}

void CTestCommon::AttachOwner(const std::shared_ptr<ITestElement>& element) {
    if (const auto limits = std::dynamic_pointer_cast<CLimitData>(mBase->Limits()))
        limits->SetOwner(element, true);
}

void CTestCommon::UpdateReferences() {
    const auto limits = mBase->Limits();
    if (limits && limits->Standards()) limits->Standards()->Owner(shared_from_this());
}

void CTestCommon::FinishTest(const CMtiData2* first, const CMtiData2* second) {
    if (mOutcome == Outcome::kDiscarded) {
        mBase->Result(nullptr);
        return;
    }
    const auto result = std::dynamic_pointer_cast<CResultCommon>(mBase->Result());
    // A stopped run keeps its result, but is not stored as a finished run.
    if (mOutcome == Outcome::kUnchanged || mStopped || !result) return;
    FeedSurveys(*this, result->UpdateAllStatus(*this, mPipe->SelectedStandards().get(),
                                               mOutcome == Outcome::kMarkedNA));
    for (const CMtiData2* record : {first, second}) {
        if (record == nullptr) continue;
        if (const int32_t number = MergeMti(*mPipe->MtiList(), *record); number > 0) result->MTIID(number);
    }
    mPipe->EndElement(*this);
}

}  // namespace vorex

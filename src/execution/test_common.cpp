#include "execution/test_common.h"

#include "foundation/host_services.h"
#include "foundation/library_state.h"
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
}

std::string CTestCommon::PlugInID() const {
    return mBase->PlugInID();
}
int32_t CTestCommon::TestID() const {
    return mBase->TestID();
}
int32_t CTestCommon::ID() const {
    return mBase->ID();
}
void CTestCommon::ID(int32_t id) {
    mBase->ID(id);
}
std::shared_ptr<ITestElement> CTestCommon::Parent() const {
    return mBase->Parent();
}
void CTestCommon::Parent(const std::shared_ptr<ITestElement>& parent) {
    mBase->Parent(parent);
}
std::shared_ptr<IElementInfo> CTestCommon::Info() const {
    return mBase->Info();
}
std::shared_ptr<IElementFilter> CTestCommon::Filter() const {
    return mBase->Filter();
}
std::shared_ptr<IResultData> CTestCommon::Result() const {
    return mBase->Result();
}
std::shared_ptr<ILimitData> CTestCommon::Limits() const {
    return mBase->Limits();
}
std::shared_ptr<IConfigData> CTestCommon::Configuration() const {
    return mBase->Configuration();
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

/// The set of instruments chosen in the setup is the one in use.
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

std::shared_ptr<IXmlElement> CTestCommon::Save(const std::shared_ptr<IXmlDocument>& owner, int32_t saveMode) {
    return mBase->Save(owner, saveMode);
}

void CTestCommon::PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) {
    mBase->PrintReport(report, setup);
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
}

void CTestCommon::AttachOwner(const std::shared_ptr<ITestElement>& element) {
    if (const auto limits = std::dynamic_pointer_cast<CLimitData>(mBase->Limits()))
        limits->SetOwner(element, true);
}

void CTestCommon::UpdateReferences() {
    const auto limits = mBase->Limits();
    if (limits && limits->Standards()) limits->Standards()->Owner(shared_from_this());
}

bool CTestCommon::QuerySetParent(const std::shared_ptr<ITestElement>& /*parent*/) {
    return true;
}

std::vector<std::string> CTestCommon::GetMeasurementList() const {
    return {};
}

void CTestCommon::Terminate() {
    mBase->Terminate();
}

void CTestCommon::FinishTest(const CMtiData2* first, const CMtiData2* second) {
    if (mDiscard) {
        mBase->Result(nullptr);
        return;
    }
    const auto result = std::dynamic_pointer_cast<CResultCommon>(mBase->Result());
    // A run that was stopped leaves its result in place, but is not stored as a finished one.
    if (!mKeep || mStopped || !result) return;
    result->UpdateAllStatus(*this, mPipe->SelectedStandards().get(), mMarkNA);
    for (const CMtiData2* record : {first, second}) {
        if (record == nullptr) continue;
        if (const int32_t number = MergeMti(*mPipe->MtiList(), *record); number > 0) result->MTIID(number);
    }
    mPipe->EndElement(*this);
}

}  // namespace vorex

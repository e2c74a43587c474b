#include "execution/test_group.h"

#include <algorithm>

#include "foundation/host_error.h"
#include "foundation/host_services.h"
#include "foundation/sequence_state.h"
#include "foundation/vocabulary.h"
#include "results/limit_data.h"

namespace vorex {

// ------------------------------------------------------------------------------------------- result

void CResultTestGroup::Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* /*log*/) {
    for (const auto& child : element->FindChild(tag::kStatus))
        Services().codec->ReadStatus(*child, mStatus, mStatusExtra);
}

std::shared_ptr<IXmlElement> CResultTestGroup::Save(const std::shared_ptr<IXmlDocument>& owner) {
    const auto element = owner->CreateElement(tag::kResultItem);
    if (!element) RaiseHostError(kErrorResultSave, "CResultTestGroup", 4);
    if (const auto status = Services().codec->WriteStatus(owner, mStatus, mStatusExtra))
        element->AddChild(status);
    return element;
}

void CResultTestGroup::Evaluate(const std::vector<std::shared_ptr<ITestElement>>& children) {
    mStatus = kPassed;
    bool allNotApplicable = true;
    bool anyStatus = false;
    for (const auto& child : children) {
        const auto result = child->Result();
        if (!result) continue;
        const int32_t status = result->Status();
        anyStatus = anyStatus || status != kNotTested;
        if (status == kNotApplicable) continue;
        allNotApplicable = false;
        const auto filter = child->Filter();
        if ((!filter || filter->Evaluate()) && status == kFailed) mStatus = kFailed;
    }
    if (!anyStatus)
        mStatus = kNotTested;
    else if (allNotApplicable)
        mStatus = kNotApplicable;
}

void CResultTestGroup::Update(const ITestElement& group,
                              const std::vector<std::shared_ptr<ITestElement>>& children,
                              const ISelectedStandards* selected) {
    Evaluate(children);
    const auto limits = group.Limits();
    if (mStatus == kPassed && limits && !limits->FindFailedStandards(nullptr, selected).empty())
        mStatus = kFailed;
}

// ------------------------------------------------------------------------------------------- element

std::shared_ptr<CTestGroup> CTestGroup::Create() {
    auto group = std::make_shared<CTestGroup>();
    group->Class_Initialize();
    return group;
}

CTestGroup::~CTestGroup() {
    if (mBase) mBase->Terminate();
}

void CTestGroup::Class_Initialize() {
    mBase = Services().createContainerBase();
    AttachLimits();
}

void CTestGroup::AttachLimits() {
    auto limits = std::dynamic_pointer_cast<CLimitData>(mBase->Limits());
    if (!limits) limits = std::make_shared<CLimitData>();
    limits->SetOwner(shared_from_this(), false);
    mBase->Limits(limits);
}

void CTestGroup::Initialize(const std::shared_ptr<ITestElement>& parent, std::string_view /*plugInId*/,
                            int32_t testId) {
    mBase->Initialize(parent, kPlugInId, testId);
}

int32_t CTestGroup::Count() const {
    return mBase->Count();
}
std::shared_ptr<ITestElement> CTestGroup::Item(int32_t index) const {
    return mBase->Item(index);
}

void CTestGroup::Add(const std::shared_ptr<ITestElement>& child,
                     const std::shared_ptr<ITestElement>& relative, int32_t relation) {
    mBase->Add(child, relative, relation);
    child->Parent(shared_from_this());
}

std::shared_ptr<ITestElement> CTestGroup::FindElement(int32_t elementId) const {
    return mBase->FindElement(elementId);
}
void CTestGroup::Remove(const std::shared_ptr<ITestElement>& element) {
    mBase->Remove(element);
    if (element && element->Parent().get() == this) element->Parent(nullptr);
}
std::vector<std::shared_ptr<ITestElement>> CTestGroup::NewEnum() const {
    return mBase->NewEnum();
}

void CTestGroup::CreateResult() {
    mBase->Result(std::make_shared<CResultTestGroup>());
}

void CTestGroup::Perform(const std::shared_ptr<IExecutionPipe>& pipe) {
    if (!pipe->BeginElement(*this) || Count() == 0) return;
    if (!mBase->Result()) CreateResult();
    PerformChildren(pipe);
    UpdateGroupStatus(pipe->SelectedStandards().get());
    pipe->EndElement(*this);
}

void CTestGroup::PassOver(const std::shared_ptr<IExecutionPipe>& pipe, int32_t firstIndex, bool& flag) {
    for (int32_t index = firstIndex; index <= Count(); ++index) {
        const auto child = Item(index);
        if (!child) break;
        flag = true;
        child->Perform(pipe);
    }
    flag = false;  // an empty child group leaves it set
}

void CTestGroup::PerformChildren(const std::shared_ptr<IExecutionPipe>& pipe) {
    const auto sequence = Sequence();
    SequenceState& state = *sequence;
    // A skipped group passes the flag on to all its children.
    const bool skipAll = state.gSkipRemaining;
    const bool notApplicableAll = state.gNARemaining;
    state.gNARemaining = state.gSkipRemaining = false;
    if (skipAll) return PassOver(pipe, 1, state.gSkipRemaining);
    if (notApplicableAll) return PassOver(pipe, 1, state.gNARemaining);
    int32_t index = 1;
    while (index <= Count()) {
        const auto child = Item(index);
        if (!child) return;
        child->Perform(pipe);
        switch (pipe->NextAction()) {
            case kGoPrevious:
                --index;
                if (index > 0) break;
                return;  // on the first child, the outer level goes back
            case kGoAbort:
                return;
            case kGoSkip:
                if (index == 1) return PassOver(pipe, 2, state.gSkipRemaining);
                ++index;
                pipe->NextAction(kGoSkip);
                break;
            default: {
                const auto result = child->Result();
                const bool notApplicable = result && result->Status() == kNotApplicable;
                if (notApplicable && index == 1) return PassOver(pipe, 2, state.gNARemaining);
                ++index;
                pipe->NextAction(kGoNext);
            }
        }
    }
}

void CTestGroup::CreateMissingResults() {
    const auto children = NewEnum();
    for (const auto& child : children)
        if (const auto group = std::dynamic_pointer_cast<CTestGroup>(child)) group->CreateMissingResults();
    const bool anyResult = std::any_of(children.begin(), children.end(),
                                       [](const auto& child) { return child->Result() != nullptr; });
    if (anyResult && !mBase->Result()) CreateResult();
}

void CTestGroup::UpdateGroupStatus(const ISelectedStandards* selected) {
    const auto children = NewEnum();
    for (const auto& child : children)
        if (const auto group = std::dynamic_pointer_cast<CTestGroup>(child))
            group->UpdateGroupStatus(selected);
    if (const auto result = std::dynamic_pointer_cast<CResultTestGroup>(mBase->Result()))
        result->Update(*this, children, selected);
}

std::shared_ptr<ITestElement> CTestGroup::Clone() {
    auto clone = Create();
    clone->AttachBase(*this);
    return clone;
}

void CTestGroup::AttachBase(const CTestGroup& source) {
    auto base = std::dynamic_pointer_cast<ITestContainerBase>(source.mBase->Clone());
    if (!base) return;
    mBase->Terminate();
    mBase = std::move(base);
    for (const auto& child : source.NewEnum()) {
        const auto copy = child->Clone();
        mBase->Add(copy, nullptr, kAddAtEnd);
        copy->Parent(shared_from_this());
    }
    AttachLimits();
}

void CTestGroup::Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) {
    if (element->Name() == tag::kTestElement) {
        mBase->Load(element, log);
        for (const auto& child : NewEnum()) child->Parent(shared_from_this());
    } else if (element->Name() == tag::kResultItem) {
        CreateResult();
        mBase->Load(element, log);
    } else {
        RaiseHostError(kErrorNotAGroup, "CTestGroup", 4, {"found \"" + std::string(element->Name()) + "\""});
    }
}

std::shared_ptr<IXmlElement> CTestGroup::Save(const std::shared_ptr<IXmlDocument>& owner, int32_t saveMode) {
    const auto filter = mBase->Filter();
    if (filter && !filter->Save()) return nullptr;
    return mBase->Save(owner, saveMode);
}

void CTestGroup::PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) {
    const auto filter = mBase->Filter();
    if (report != nullptr && (!filter || filter->Print())) mBase->PrintReport(report, setup);
}

void CTestGroup::UpdateReferences() {
    const auto limits = mBase->Limits();
    if (limits && limits->Standards()) limits->Standards()->Owner(shared_from_this());
    mBase->UpdateReferences();
}

}  // namespace vorex

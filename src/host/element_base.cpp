#include "host/element_base.h"

#include <algorithm>
#include <utility>

#include "foundation/class_registry.h"
#include "foundation/host_error.h"
#include "foundation/number_text.h"
#include "foundation/report_markup.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "reports/report_setup.h"

namespace vorex {

namespace {

struct FilterRow {
    std::string_view name;
    bool ElementFilter::*flag;
};

constexpr FilterRow kFilterFlags[] = {
    {tag::kSave, &ElementFilter::save},
    {tag::kPrint, &ElementFilter::print},
    {tag::kEvaluate, &ElementFilter::evaluate},
};

std::shared_ptr<IXmlElement> FirstChild(const IXmlElement& element, std::string_view name) {
    const auto found = element.FindChild(name);
    return found.empty() ? nullptr : found.front();
}

void AddIfAny(IXmlElement& parent, const std::shared_ptr<IXmlElement>& child) {
    if (child) parent.AddChild(child);
}

/// The operator's words and the log of edited values, one row per line.
void PrintComment(const std::string& comment, IReportDocument& report) {
    std::string rows;
    for (const std::string& part : {CommentWords(comment), LogWords(CommentLog(comment), &report)})
        ForEachPart(part, '\n', [&](std::string_view line) {
            if (line.ends_with('\r')) line.remove_suffix(1);
            if (!line.empty()) rows += markup::Line(line);
        });
    if (rows.empty()) return;
    const std::string columns = "<+560|<+" + PlainText(report.Metric(kTableWidth)) + markup::kRowEnd;
    report.PrintTable(columns, markup::Heading(Translate(text::kComments, &report)) + markup::kRowEnd + rows);
}

}  // namespace

void TestElementBase::Configuration(std::shared_ptr<IConfigData> configuration) {
    mConfiguration = std::move(configuration);
}
void TestElementBase::Limits(std::shared_ptr<ILimitData> limits) {
    mLimits = std::move(limits);
}
void TestElementBase::Result(std::shared_ptr<IResultData> result) {
    mResult = std::move(result);
}

void TestElementBase::Initialize(const std::shared_ptr<ITestElement>& parent, std::string_view plugInId,
                                 int32_t testId) {
    mParent = parent;
    mPlugInId = plugInId;
    mTestId = testId;
}

void TestElementBase::CopyTo(TestElementBase& copy) const {
    if (mConfiguration) copy.mConfiguration = mConfiguration->Clone();
    if (mLimits) copy.mLimits = mLimits->Clone();
    *copy.mInfo = *mInfo;
    *copy.mFilter = *mFilter;
    copy.mPlugInId = mPlugInId;
    copy.mTestId = mTestId;
}

std::shared_ptr<ITestElementBase> TestElementBase::Clone() {
    auto copy = std::make_shared<TestElementBase>();
    CopyTo(*copy);
    return copy;
}

void TestElementBase::Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) {
    if (element->Name() == tag::kTestElement)
        LoadFrame(element, log);
    else if (element->Name() == tag::kResultItem && mResult)
        mResult->Load(element, log);
}

void TestElementBase::LoadFrame(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) {
    mId = ReadInteger(element->GetAttribute(tag::kId));
    mInfo->Name(element->GetAttribute(tag::kName));
    *mFilter = {};
    if (const auto filter = FirstChild(*element, tag::kElementFilter)) {
        for (const FilterRow& row : kFilterFlags)
            (*mFilter).*row.flag = filter->GetAttribute(row.name) != kStoredFalse;
    }
    if (mConfiguration) {
        const auto block = FirstChild(*element, tag::kPlugInData);
        if (!block) RaiseHostError(kErrorForeignConfiguration, "CTestElementBase", 4);
        mConfiguration->Load(block, log);
    }
    const auto limits = FirstChild(*element, tag::kExpectedResult);
    if (limits && mLimits) mLimits->Load(limits, log);
}

std::shared_ptr<IXmlElement> TestElementBase::Save(const std::shared_ptr<IXmlDocument>& owner,
                                                   int32_t /*saveMode*/) {
    auto element = owner->CreateElement(tag::kTestElement);
    element->SetAttribute(tag::kPlugIn, mPlugInId);
    element->SetAttribute(tag::kTestId, PlainText(mTestId));
    element->SetAttribute(tag::kId, PlainText(mId));
    if (!mInfo->Name().empty()) element->SetAttribute(tag::kName, mInfo->Name());
    const auto filter = owner->CreateElement(tag::kElementFilter);
    for (const FilterRow& row : kFilterFlags)
        filter->SetAttribute(row.name, (*mFilter).*row.flag ? kStoredTrue : kStoredFalse);
    element->AddChild(filter);
    if (mConfiguration) AddIfAny(*element, mConfiguration->Save(owner));
    if (mLimits) AddIfAny(*element, mLimits->Save(owner));
    if (mResult) AddIfAny(*element, mResult->Save(owner));
    return element;
}

void TestElementBase::PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) {
    if (report == nullptr || !mFilter->Print()) return;
    const auto own = std::dynamic_pointer_cast<ReportSetup>(setup);
    if (own) own->BeginHeading();
    report->PrintHeading(ElementTitle(mInfo->Name(), mTestId, report),
                         mResult ? StatusText(mResult->Status(), report) : std::string());
    if (own) own->EndHeading(mResult.get());
    if (mConfiguration) mConfiguration->PrintReport(report, setup);
    if (mLimits) mLimits->PrintReport(report, setup);
    if (!mResult) return;
    mResult->PrintReport(report, setup);
    if ((report->Options() & kReportComments) != 0) PrintComment(mResult->Comment(), *report);
}

void TestElementBase::Terminate() {
    mConfiguration.reset();
    mLimits.reset();
    mResult.reset();
}

// ------------------------------------------------------------------------------------------- groups

std::shared_ptr<ITestElement> TestContainerBase::Item(int32_t index) const {
    if (index < 1 || index > Count()) return nullptr;
    return mChildren[static_cast<std::size_t>(index - 1)];
}

void TestContainerBase::Add(const std::shared_ptr<ITestElement>& child,
                            const std::shared_ptr<ITestElement>& relative, int32_t relation) {
    auto at = mChildren.end();
    if (relation == kAddBehind) {
        at = std::find(mChildren.begin(), mChildren.end(), relative);
        if (at != mChildren.end()) ++at;
    }
    mChildren.insert(at, child);
}

std::shared_ptr<ITestElement> TestContainerBase::FindElement(int32_t elementId) const {
    for (const auto& child : mChildren) {
        if (child->ID() == elementId) return child;
        const auto group = std::dynamic_pointer_cast<ITestContainer>(child);
        const auto found = group ? group->FindElement(elementId) : nullptr;
        if (found) return found;
    }
    return nullptr;
}

void TestContainerBase::Remove(const std::shared_ptr<ITestElement>& element) {
    std::erase(mChildren, element);
}

void TestContainerBase::UpdateReferences() {
    for (const auto& child : mChildren) child->UpdateReferences();
}

std::shared_ptr<ITestElementBase> TestContainerBase::Clone() {
    auto copy = std::make_shared<TestContainerBase>();
    CopyTo(*copy);
    return copy;
}

void TestContainerBase::Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) {
    TestElementBase::Load(element, log);
    if (element->Name() != tag::kTestElement) return;
    mChildren.clear();
    for (const auto& child : element->FindChild(tag::kTestElement))
        mChildren.push_back(LoadTestElement(child, log));
}

std::shared_ptr<IXmlElement> TestContainerBase::Save(const std::shared_ptr<IXmlDocument>& owner,
                                                     int32_t saveMode) {
    auto element = TestElementBase::Save(owner, saveMode);
    for (const auto& child : mChildren) AddIfAny(*element, child->Save(owner, saveMode));
    return element;
}

void TestContainerBase::PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) {
    if (report == nullptr || !Filter()->Print()) return;
    TestElementBase::PrintReport(report, setup);
    const auto own = std::dynamic_pointer_cast<ReportSetup>(setup);
    if (own) own->BeginChildren();
    for (const auto& child : mChildren) child->PrintReport(report, setup);
    if (own) own->EndChildren();
}

void TestContainerBase::Terminate() {
    for (const auto& child : mChildren) child->Terminate();
    mChildren.clear();
    TestElementBase::Terminate();
}

// ----------------------------------------------------------------------------------------- creation

std::string_view ElementClassOf(int32_t testId) {
    if (testId == kGroupId) return "CTestGroup";
    if (testId == kMqsaSurvey) return "CTestMQSA";
    return IsMeasuringTest(testId) ? "CTestCommon" : std::string_view();
}

std::shared_ptr<ITestElement> CreateTestElement(int32_t testId) {
    const std::string_view className = ElementClassOf(testId);
    if (className.empty()) return nullptr;
    auto element = CreateObjectAs<ITestElement>(ClassName(className));
    if (element) element->Initialize(nullptr, kPlugInId, testId);
    return element;
}

std::shared_ptr<ITestElement> LoadTestElement(const std::shared_ptr<IXmlElement>& element,
                                              IProgressLog* log) {
    const std::string id(element->GetAttribute(tag::kId));
    try {
        auto test = CreateTestElement(ReadInteger(element->GetAttribute(tag::kTestId)));
        if (!test)
            throw std::runtime_error("the library has no element for TestID " +
                                     std::string(element->GetAttribute(tag::kTestId)));
        test->Load(element, log);
        if (const auto result = FirstChild(*element, tag::kResultItem)) test->Load(result, log);
        return test;
    } catch (const ElementError&) {
        throw;  // of an element below
    } catch (const std::exception& error) {
        throw ElementError(id, error.what());
    }
}

}  // namespace vorex

#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/host_contract.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"

class OwnInfo final : public vorex::IElementInfo {
  public:
    std::string Name() const override { return mName; }
    void Name(std::string_view name) override { mName = name; }
    int32_t ServiceFlags() const override { return 0; }

  private:
    std::string mName;
};

/// The bookkeeping of one element. It takes part in every pass: it has no filter.
class OwnElementBase final : public vorex::ITestElementBase {
  public:
    std::shared_ptr<vorex::IConfigData> Configuration() const override { return mConfiguration; }
    void Configuration(std::shared_ptr<vorex::IConfigData> value) override {
        mConfiguration = std::move(value);
    }
    std::shared_ptr<vorex::ILimitData> Limits() const override { return mLimits; }
    void Limits(std::shared_ptr<vorex::ILimitData> value) override { mLimits = std::move(value); }
    std::shared_ptr<vorex::IResultData> Result() const override { return mResult; }
    void Result(std::shared_ptr<vorex::IResultData> value) override { mResult = std::move(value); }
    std::shared_ptr<vorex::IElementInfo> Info() const override { return mInfo; }
    std::shared_ptr<vorex::IElementFilter> Filter() const override { return nullptr; }
    std::shared_ptr<vorex::ITestElement> Parent() const override { return mParent.lock(); }
    void Parent(const std::shared_ptr<vorex::ITestElement>& parent) override { mParent = parent; }
    std::string PlugInID() const override { return mPlugInId; }
    int32_t TestID() const override { return mTestId; }
    int32_t ID() const override { return mId; }
    void ID(int32_t id) override { mId = id; }
    std::shared_ptr<vorex::ITestElementBase> Clone() override {
        auto copy = std::make_shared<OwnElementBase>();
        if (mConfiguration) copy->mConfiguration = mConfiguration->Clone();
        if (mLimits) copy->mLimits = mLimits->Clone();
        copy->mInfo->Name(mInfo->Name());
        copy->mPlugInId = mPlugInId;
        copy->mTestId = mTestId;
        return copy;
    }
    void Initialize(const std::shared_ptr<vorex::ITestElement>& parent, std::string_view plugInId,
                    int32_t testId) override {
        mParent = parent;
        mPlugInId = plugInId;
        mTestId = testId;
    }
    /// The element's own node first, its "ResultItem" in a second call.
    void Load(const std::shared_ptr<vorex::IXmlElement>& node, vorex::IProgressLog* log) override {
        if (node->Name() == vorex::tag::kResultItem) {
            if (mResult) mResult->Load(node, log);
            return;
        }
        mInfo->Name(node->GetAttribute(vorex::tag::kName));
        for (const auto& block : node->FindChild(vorex::tag::kPlugInData)) mConfiguration->Load(block, log);
        for (const auto& block : node->FindChild(vorex::tag::kExpectedResult)) mLimits->Load(block, log);
    }
    std::shared_ptr<vorex::IXmlElement> Save(const std::shared_ptr<vorex::IXmlDocument>& owner,
                                             int32_t /*saveMode*/) override {
        auto node = owner->CreateElement(vorex::tag::kTestElement);
        node->SetAttribute(vorex::tag::kName, mInfo->Name());
        node->SetAttribute(vorex::tag::kTestId, vorex::PlainText(mTestId));
        if (mConfiguration) node->AddChild(mConfiguration->Save(owner));
        if (mLimits) node->AddChild(mLimits->Save(owner));
        if (mResult) node->AddChild(mResult->Save(owner));
        return node;
    }
    void PrintReport(vorex::IReportDocument* report,
                     const std::shared_ptr<vorex::IReportSetup>& setup) override {
        if (report == nullptr) return;
        report->PrintHeading(mInfo->Name(), vorex::StatusText(mResult ? mResult->Status() : 0, report));
        if (mResult) mResult->PrintReport(report, setup);
    }
    void Terminate() override {
        mConfiguration.reset();
        mLimits.reset();
        mResult.reset();
    }

  private:
    std::shared_ptr<vorex::IConfigData> mConfiguration;
    std::shared_ptr<vorex::ILimitData> mLimits;
    std::shared_ptr<vorex::IResultData> mResult;
    std::shared_ptr<OwnInfo> mInfo = std::make_shared<OwnInfo>();
    std::weak_ptr<vorex::ITestElement> mParent;
    std::string mPlugInId;
    int32_t mTestId = 0;
    int32_t mId = 1;
};

/// What connects an element to this host while it performs.
class OwnPipe final : public vorex::IExecutionPipe, public vorex::ISelectedStandards, public vorex::IMtiList {
  public:
    explicit OwnPipe(std::vector<vorex::StandardName> standards) : mStandards(std::move(standards)) {}

    int32_t NextAction() const override { return mNextAction; }
    void NextAction(int32_t code) override { mNextAction = code; }
    std::shared_ptr<vorex::IMtiList> MtiList() const override { return Part<vorex::IMtiList>(); }
    std::shared_ptr<vorex::ISelectedStandards> SelectedStandards() const override {
        return Part<vorex::ISelectedStandards>();
    }
    bool BeginElement(vorex::ITestElement& /*element*/) override { return true; }
    void EndElement(vorex::ITestElement& /*element*/) override {}

    std::span<const vorex::StandardName> Standards() const override { return mStandards; }
    std::span<const vorex::MtiEntry> Entries() const override { return mInstruments; }
    void Add(vorex::MtiEntry entry) override { mInstruments.push_back(std::move(entry)); }

  private:
    /// A view of this object, which the caller of `Perform` keeps alive.
    template <typename Interface>
    std::shared_ptr<Interface> Part() const {
        auto* self = const_cast<OwnPipe*>(this);
        return {std::shared_ptr<void>(), static_cast<Interface*>(self)};
    }

    int32_t mNextAction = vorex::kGoNext;
    std::vector<vorex::StandardName> mStandards;
    std::vector<vorex::MtiEntry> mInstruments;
};

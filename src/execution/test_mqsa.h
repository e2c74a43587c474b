#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "execution/test_guide_contract.h"
#include "foundation/class_registry.h"
#include "foundation/host_contract.h"
#include "mqsa/result_mqsa.h"

namespace vorex {

/// The element of the annual mammography survey. It measures nothing: while the guide is open, the survey is
/// entered by hand.
class CTestMQSA : public ITestElement, public LibraryObject, public std::enable_shared_from_this<CTestMQSA> {
  public:
    /// A constructed element with its helper, configuration and limits.
    static std::shared_ptr<CTestMQSA> Create();

    /// Builds helper, configuration and limits. [once, by `Create`]
    void Class_Initialize();
    /// The result that is entered into; made when there is none yet.
    std::shared_ptr<CResultMQSA> Survey();

    // ITestElement
    std::string PlugInID() const override { return mBase->PlugInID(); }
    int32_t TestID() const override { return mBase->TestID(); }
    int32_t ID() const override { return mBase->ID(); }
    void ID(int32_t id) override { mBase->ID(id); }
    std::shared_ptr<ITestElement> Parent() const override { return mBase->Parent(); }
    void Parent(const std::shared_ptr<ITestElement>& parent) override { mBase->Parent(parent); }
    std::shared_ptr<IElementInfo> Info() const override { return mBase->Info(); }
    std::shared_ptr<IElementFilter> Filter() const override { return mBase->Filter(); }
    std::shared_ptr<IResultData> Result() const override { return mBase->Result(); }
    std::shared_ptr<ILimitData> Limits() const override { return mBase->Limits(); }
    std::shared_ptr<IConfigData> Configuration() const override { return mBase->Configuration(); }
    void Initialize(const std::shared_ptr<ITestElement>& parent, std::string_view plugInId,
                    int32_t testId) override;
    std::shared_ptr<ITestElement> Clone() override;
    void Perform(const std::shared_ptr<IExecutionPipe>& pipe) override;
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override;
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner, int32_t saveMode) override;
    void PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) override;
    bool QuerySetParent(const std::shared_ptr<ITestElement>& /*parent*/) override { return true; }
    void Terminate() override { mBase->Terminate(); }
    void UpdateReferences() override;
    std::vector<std::string> GetMeasurementList() const override { return {}; }

  private:
    void CreateResult(bool force);
    void AttachBase(const std::shared_ptr<ITestElementBase>& newBase);
    void RunGuide(bool earlierResult);
    void ConnectGuide();
    void SplitComment();
    void Leave(int32_t navigation);
    void FinishTest();

    std::shared_ptr<ITestElementBase> mBase;
    std::shared_ptr<IExecutionPipe> mPipe;
    std::shared_ptr<CResultMQSA> mResult;
    bool mDiscard = false;
    bool mMarkNA = false;
    std::shared_ptr<ITestGuide> mfrmTestGuide;
};

}  // namespace vorex

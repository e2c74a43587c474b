#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "execution/element_on_base.h"
#include "execution/test_guide_contract.h"
#include "foundation/class_registry.h"
#include "foundation/host_contract.h"
#include "foundation/status_cells.h"
#include "mqsa/result_mqsa.h"

namespace vorex {

/// The element of the annual mammography survey. It measures nothing: while the guide is open, the survey is
/// entered by hand.
class CTestMQSA : public ElementOnBase<ITestElementBase>,
                  public LibraryObject,
                  public std::enable_shared_from_this<CTestMQSA> {
  public:
    /// A new element with helper, configuration and limits.
    static std::shared_ptr<CTestMQSA> Create();

    /// Builds helper, configuration and limits. [once, by `Create`]
    void Class_Initialize();
    /// The result that holds the entries; created if there is none.
    std::shared_ptr<CResultMQSA> Survey();
    /// Keeps the outcome of a mammography test, for the present result and any later one.
    void TakeOutcomes(const SurveyOutcomes& outcomes);

    // ITestElement
    std::shared_ptr<ITestElement> Clone() override;
    void Perform(const std::shared_ptr<IExecutionPipe>& pipe) override;
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override;
    void UpdateReferences() override;
    /// The survey with its forms; in a report of failures only when it failed.
    void PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) override;

  private:
    void CreateResult(bool force);
    void AttachBase(const std::shared_ptr<ITestElementBase>& newBase);
    void RunGuide(bool earlierResult);
    void ConnectGuide();
    void SplitComment();
    void Leave(int32_t navigation);
    void FinishTest();

    std::shared_ptr<IExecutionPipe> mPipe;
    std::shared_ptr<CResultMQSA> mResult;
    StatusCells mCells;
    bool mDiscard = false;
    bool mMarkNA = false;
    std::shared_ptr<ITestGuide> mfrmTestGuide;
};

}  // namespace vorex

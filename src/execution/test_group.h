#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "execution/element_on_base.h"
#include "foundation/class_registry.h"
#include "foundation/host_contract.h"

namespace vorex {

/// The result of a group: only the status of its children together, no measurements of its own.
class CResultTestGroup : public IResultData, public LibraryObject {
  public:
    std::string Comment() const override { return {}; }
    void Comment(std::string_view /*comment*/) override {}
    bool HasDialog() const override { return false; }
    int32_t Status() const override { return mStatus; }
    std::shared_ptr<IMeasurement> Measurement(int32_t /*index*/) const override { return nullptr; }
    std::shared_ptr<IMeasurement> Measurement(std::string_view /*key*/) const override { return nullptr; }
    int32_t MeasurementCount() const override { return 0; }
    std::shared_ptr<IServiceRecord> ServiceRecord() const override { return nullptr; }
    int32_t MTIID() const override { return 0; }
    std::shared_ptr<IDialog> CreateDialog() override { return nullptr; }
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override;
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) override;
    /// Prints nothing: the children print themselves.
    void PrintReport(IReportDocument* /*report*/, const std::shared_ptr<IReportSetup>& /*setup*/) override {}

    /// Combines the children's statuses, then asks the group's own limits.
    void Update(const ITestElement& group, const std::vector<std::shared_ptr<ITestElement>>& children,
                const ISelectedStandards* selected);

  private:
    void Evaluate(const std::vector<std::shared_ptr<ITestElement>>& children);

    int32_t mStatus = 0;
    int32_t mStatusExtra = 0;
};

/// An element that holds other elements and performs them in order, guided by the navigation code that each
/// child leaves in the pipe.
class CTestGroup : public ElementOnBase<ITestContainerBase>,
                   public ITestContainer,
                   public LibraryObject,
                   public std::enable_shared_from_this<CTestGroup> {
  public:
    static std::shared_ptr<CTestGroup> Create();
    ~CTestGroup() override;
    /// Builds helper and limits. [once, by `Create`]
    void Class_Initialize();

    // ITestElement
    void Initialize(const std::shared_ptr<ITestElement>& parent, std::string_view plugInId,
                    int32_t testId) override;
    std::shared_ptr<ITestElement> Clone() override;
    void Perform(const std::shared_ptr<IExecutionPipe>& pipe) override;
    /// Raises 0x8004A2C8 for an element that is neither a group nor its result.
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override;
    /// Empty when the filter excludes the group from saving.
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner, int32_t saveMode) override;
    void PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) override;
    void UpdateReferences() override;

    // ITestContainer
    int32_t Count() const override;
    std::shared_ptr<ITestElement> Item(int32_t index) const override;
    void Add(const std::shared_ptr<ITestElement>& child, const std::shared_ptr<ITestElement>& relative,
             int32_t relation) override;
    std::shared_ptr<ITestElement> FindElement(int32_t elementId) const override;
    void Remove(const std::shared_ptr<ITestElement>& element) override;
    std::vector<std::shared_ptr<ITestElement>> NewEnum() const override;

    /// Gives this group, and the groups inside it, a result when a child has one. [before
    /// `UpdateGroupStatus`]
    void CreateMissingResults();
    /// Computes this group's status, those of the groups inside it first.
    void UpdateGroupStatus(const ISelectedStandards* selected);

  private:
    void AttachBase(const CTestGroup& source);
    void AttachLimits();
    void CreateResult();
    void PerformChildren(const std::shared_ptr<IExecutionPipe>& pipe);
    /// Performs every child from an index on with a sequence flag set, which ends each child at once.
    void PassOver(const std::shared_ptr<IExecutionPipe>& pipe, int32_t firstIndex, bool& flag);
};

}  // namespace vorex

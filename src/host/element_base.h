#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/host_contract.h"

namespace vorex {

class ElementInfo final : public IElementInfo {
  public:
    std::string Name() const override { return mName; }
    void Name(std::string_view name) override { mName = name; }
    /// Failed and not applicable results keep a service record.
    int32_t ServiceFlags() const override { return kKeepServiceRecord; }

  private:
    std::string mName;
};

class ElementFilter final : public IElementFilter {
  public:
    bool Save() const override { return save; }
    bool Print() const override { return print; }
    bool Evaluate() const override { return evaluate; }

    bool save = true;
    bool print = true;
    bool evaluate = true;
};

/// The host's bookkeeping of one element. It writes and reads a "TestElement": identity and name, the filter,
/// and the blocks of configuration, limits and result.
class TestElementBase : public virtual ITestElementBase {
  public:
    std::shared_ptr<IConfigData> Configuration() const override { return mConfiguration; }
    void Configuration(std::shared_ptr<IConfigData> configuration) override;
    std::shared_ptr<ILimitData> Limits() const override { return mLimits; }
    void Limits(std::shared_ptr<ILimitData> limits) override;
    std::shared_ptr<IResultData> Result() const override { return mResult; }
    void Result(std::shared_ptr<IResultData> result) override;
    std::shared_ptr<IElementInfo> Info() const override { return mInfo; }
    std::shared_ptr<IElementFilter> Filter() const override { return mFilter; }
    std::shared_ptr<ITestElement> Parent() const override { return mParent.lock(); }
    void Parent(const std::shared_ptr<ITestElement>& parent) override { mParent = parent; }
    std::string PlugInID() const override { return mPlugInId; }
    int32_t TestID() const override { return mTestId; }
    int32_t ID() const override { return mId; }
    void ID(int32_t id) override { mId = id; }
    /// The copy has no ID yet, because it is a new element.
    std::shared_ptr<ITestElementBase> Clone() override;
    void Initialize(const std::shared_ptr<ITestElement>& parent, std::string_view plugInId,
                    int32_t testId) override;
    /// Raises 0x8004A3C2 when a configuration finds no "PlugInData".
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override;
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner, int32_t saveMode) override;
    /// Heading, configuration, result and comment; nothing when the filter keeps the element out of reports.
    /// The limits print nothing: they choose the standards that are printed next to the results.
    void PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) override;
    void Terminate() override;

  protected:
    void CopyTo(TestElementBase& copy) const;

  private:
    void LoadFrame(const std::shared_ptr<IXmlElement>& element, IProgressLog* log);

    std::shared_ptr<IConfigData> mConfiguration;
    std::shared_ptr<ILimitData> mLimits;
    std::shared_ptr<IResultData> mResult;
    std::shared_ptr<ElementInfo> mInfo = std::make_shared<ElementInfo>();
    std::shared_ptr<ElementFilter> mFilter = std::make_shared<ElementFilter>();
    std::weak_ptr<ITestElement> mParent;
    std::string mPlugInId;
    int32_t mTestId = 0;
    int32_t mId = -1;  ///< below 0: none yet
};

/// The host's bookkeeping of a group and the elements in it.
class TestContainerBase : public TestElementBase, public ITestContainerBase {
  public:
    int32_t Count() const override { return static_cast<int32_t>(mChildren.size()); }
    std::shared_ptr<ITestElement> Item(int32_t index) const override;
    void Add(const std::shared_ptr<ITestElement>& child, const std::shared_ptr<ITestElement>& relative,
             int32_t relation) override;
    std::shared_ptr<ITestElement> FindElement(int32_t elementId) const override;
    std::vector<std::shared_ptr<ITestElement>> NewEnum() const override { return mChildren; }
    void Remove(const std::shared_ptr<ITestElement>& element) override;
    void UpdateReferences() override;

    /// A base without the children: the group adds their copies, because it is their parent.
    std::shared_ptr<ITestElementBase> Clone() override;
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override;
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner, int32_t saveMode) override;
    void PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) override;
    void Terminate() override;

  private:
    std::vector<std::shared_ptr<ITestElement>> mChildren;
};

/// The library's element class of a test, without the project name; empty for an unknown test identifier.
std::string_view ElementClassOf(int32_t testId);

/// A new, initialised element of a test; empty when the library has none.
std::shared_ptr<ITestElement> CreateTestElement(int32_t testId);

/// An element that cannot be loaded: which one, and why.
class ElementError : public std::runtime_error {
  public:
    ElementError(std::string id, const std::string& message)
        : std::runtime_error(message), mId(std::move(id)) {}
    const std::string& Id() const { return mId; }

  private:
    std::string mId;
};

/// The element of a "TestElement", loaded with its result and everything below it. Raises ElementError.
std::shared_ptr<ITestElement> LoadTestElement(const std::shared_ptr<IXmlElement>& element, IProgressLog* log);

}  // namespace vorex

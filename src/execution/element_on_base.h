#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/host_contract.h"
#include "foundation/sequence_state.h"
#include "foundation/vocabulary.h"

namespace vorex {

/// What every element leaves to its helper from the host (`ITestElementBase`, for a group
/// `ITestContainerBase`): properties, file and printing.
template <typename Base>
class ElementOnBase : public ITestElement {
  public:
    std::string PlugInID() const override { return mBase->PlugInID(); }
    int32_t TestID() const override { return mBase->TestID(); }
    int32_t ID() const override { return mBase->ID(); }
    void ID(int32_t id) override { mBase->ID(id); }
    std::shared_ptr<ITestElement> Parent() const override { return mBase->Parent(); }
    void Parent(const std::shared_ptr<ITestElement>& parent) override {
        mBase->Parent(parent);
        if (parent) mSequence.reset();
    }
    std::shared_ptr<IElementInfo> Info() const override { return mBase->Info(); }
    std::shared_ptr<IElementFilter> Filter() const override { return mBase->Filter(); }
    std::shared_ptr<IResultData> Result() const override { return mBase->Result(); }
    std::shared_ptr<ILimitData> Limits() const override { return mBase->Limits(); }
    std::shared_ptr<IConfigData> Configuration() const override { return mBase->Configuration(); }
    void Initialize(const std::shared_ptr<ITestElement>& parent, std::string_view plugInId,
                    int32_t testId) override {
        mBase->Initialize(parent, plugInId, testId);
    }
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner, int32_t saveMode) override {
        return mBase->Save(owner, saveMode);
    }
    void PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) override {
        mBase->PrintReport(report, setup);
    }
    bool QuerySetParent(const std::shared_ptr<ITestElement>& /*parent*/) override { return true; }
    void Terminate() override { mBase->Terminate(); }
    std::vector<std::string> GetMeasurementList() const override { return {}; }
    std::shared_ptr<SequenceState> Sequence() const override {
        if (const auto parent = mBase->Parent()) return parent->Sequence();
        if (!mSequence) mSequence = std::make_shared<SequenceState>();
        return mSequence;
    }
    void Sequence(std::shared_ptr<SequenceState> state) override { mSequence = std::move(state); }

  protected:
    std::shared_ptr<Base> mBase;

  private:
    mutable std::shared_ptr<SequenceState> mSequence;  ///< of a root; created on first use
};

enum class PassedOver : uint8_t { kNo, kSkipped, kMarkedNA };

/// Whether the group passes this element over. Clears the flag; the navigation code stays in the pipe.
inline PassedOver TakePassedOver(SequenceState& state, IExecutionPipe& pipe) {
    if (state.gSkipRemaining) {
        state.gSkipRemaining = false;
        pipe.NextAction(kGoSkip);
        return PassedOver::kSkipped;
    }
    if (state.gNARemaining) {
        state.gNARemaining = false;
        pipe.NextAction(kGoNext);
        return PassedOver::kMarkedNA;
    }
    return PassedOver::kNo;
}

}  // namespace vorex

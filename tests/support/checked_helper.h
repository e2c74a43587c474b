#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/vocabulary.h"
#include "host/element_base.h"
#include "support/fake_host.h"

namespace vorex::test {

/// The calls that reached the helpers of a test, "2 Load ResultItem": the helpers are counted from 1.
struct HelperCalls {
    std::vector<std::string> calls;
    int count = 0;
};

/// The helper of an element or group that fails the test when a call comes at the wrong time of its life.
template <typename Base>
class CheckedBase final : public Base {
  public:
    CheckedBase(HelperCalls& log, LiveObjects& live) : mLog(log), mLive(live), mNumber(++log.count) {}

    using Base::Configuration;
    using Base::Limits;
    using Base::Result;
    void Configuration(std::shared_ptr<IConfigData> configuration) override {
        Note("Configuration", mStage == Stage::kCreated);
        Base::Configuration(mLive.Watch("configuration", std::move(configuration)));
    }
    void Limits(std::shared_ptr<ILimitData> limits) override {
        Note("Limits", mStage == Stage::kCreated || mStage == Stage::kCopied);
        Base::Limits(mLive.Watch("limits", std::move(limits)));
    }
    void Result(std::shared_ptr<IResultData> result) override {
        Note(result ? "Result" : "no Result", InUse());
        Base::Result(mLive.Watch("result", std::move(result)));
    }
    void Initialize(const std::shared_ptr<ITestElement>& parent, std::string_view plugInId,
                    int32_t testId) override {
        Note("Initialize", mStage == Stage::kCreated && this->Limits() != nullptr);
        mStage = Stage::kInitialized;
        Base::Initialize(parent, plugInId, testId);
    }
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override {
        const bool frame = element->Name() == tag::kTestElement;
        Note("Load " + std::string(element->Name()),
             frame ? mStage == Stage::kInitialized : mStage == Stage::kLoaded && this->Result());
        Base::Load(element, log);
        mStage = Stage::kLoaded;
    }
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner, int32_t mode) override {
        Note("Save", InUse());
        return Base::Save(owner, mode);
    }
    void PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) override {
        Note("PrintReport", InUse());
        Base::PrintReport(report, setup);
    }
    std::shared_ptr<ITestElementBase> Clone() override {
        Note("Clone", InUse());
        auto copy = std::make_shared<CheckedBase>(mLog, mLive);
        copy->mStage = Stage::kCopied;
        this->CopyTo(*copy);
        mLive.Watch("copy of a configuration", copy->Configuration());
        mLive.Watch("copy of limits", copy->Limits());
        return mLive.Watch("copy of a helper", copy);
    }
    void Terminate() override {
        Note("Terminate", true);
        mStage = Stage::kTerminated;
        Base::Terminate();
    }

  private:
    /// A copy has everything that the others are initialised with and load.
    enum class Stage : uint8_t { kCreated, kInitialized, kLoaded, kCopied, kTerminated };

    bool InUse() const { return mStage != Stage::kCreated && mStage != Stage::kTerminated; }
    void Note(const std::string& call, bool inOrder) {
        mLog.calls.push_back(std::to_string(mNumber) + " " + call);
        EXPECT_TRUE(inOrder) << call << " out of order: " << ::testing::PrintToString(mLog.calls);
    }

    HelperCalls& mLog;
    LiveObjects& mLive;
    int mNumber;
    Stage mStage = Stage::kCreated;
};

using CheckedHelper = CheckedBase<TestElementBase>;
using CheckedGroupHelper = CheckedBase<TestContainerBase>;

}  // namespace vorex::test

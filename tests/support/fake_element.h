#pragma once

#include <limits>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "foundation/host_contract.h"
#include "foundation/number_text.h"
#include "foundation/sequence_state.h"
#include "foundation/vocabulary.h"
#include "host/standards.h"
#include "results/result_columns.h"
#include "results/result_common.h"

namespace vorex::test {

/// Limits as a range per limit key; a variation row is judged under its key with " CV" after it.
class FakeLimits : public ILimitData {
  public:
    std::map<std::string, std::pair<double, double>> ranges;
    mutable std::vector<std::string> judged;  ///< keys in the order they were judged

    std::vector<std::shared_ptr<IStandard>> FindFailedStandards(const IMeasurement* measurement,
                                                                const ISelectedStandards*) const override {
        if (measurement == nullptr) return {};
        judged.push_back(measurement->Key());
        std::string limitKey = LimitKeyOf(measurement->Key());
        if (IsVariationRow(measurement->Key())) limitKey += " CV";
        const auto range = ranges.find(limitKey);
        if (range == ranges.end()) return {};
        const double value = NumberOf(measurement->value());
        if (value >= range->second.first && value <= range->second.second) return {};
        return {std::make_shared<Standard>("Site", "1")};
    }
    void AtMost(const std::string& limitKey, double high) {
        ranges[limitKey] = {-std::numeric_limits<double>::max(), high};
    }

    std::string Description() const override { return {}; }
    void Description(std::string_view) override {}
    bool HasDialog() const override { return false; }
    std::shared_ptr<IStandardCollection> Standards() const override { return nullptr; }
    void Owner(const std::shared_ptr<ITestElement>&) override {}
    std::shared_ptr<ILimitData> Clone() const override { return nullptr; }
    std::shared_ptr<IDialog> CreateDialog() override { return nullptr; }
    std::shared_ptr<IStandard> CreateStandard(std::string_view, std::string_view) override { return nullptr; }
    void Load(const std::shared_ptr<IXmlElement>&, IProgressLog*) override {}
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>&) override { return nullptr; }
    void PrintReport(IReportDocument*, const std::shared_ptr<IReportSetup>&) override {}
    void UpdateLimits(const std::shared_ptr<ITestElement>&) override {}
};

/// An element that only has limits, or a result that only has a status; children of groups in tests.
class FakeElement : public ITestElement {
  public:
    std::shared_ptr<FakeLimits> limits = std::make_shared<FakeLimits>();
    std::shared_ptr<IElementInfo> info;
    int32_t fakeTestId = 0;

    std::string PlugInID() const override { return std::string(kPlugInId); }
    int32_t TestID() const override { return fakeTestId; }
    int32_t ID() const override { return 1; }
    void ID(int32_t) override {}
    std::shared_ptr<ITestElement> Parent() const override { return nullptr; }
    void Parent(const std::shared_ptr<ITestElement>&) override {}
    std::shared_ptr<IElementInfo> Info() const override { return info; }
    std::shared_ptr<IElementFilter> Filter() const override { return nullptr; }
    std::shared_ptr<IResultData> Result() const override { return nullptr; }
    std::shared_ptr<ILimitData> Limits() const override { return limits; }
    std::shared_ptr<IConfigData> Configuration() const override { return nullptr; }
    void Initialize(const std::shared_ptr<ITestElement>&, std::string_view, int32_t) override {}
    std::shared_ptr<ITestElement> Clone() override { return nullptr; }
    void Perform(const std::shared_ptr<IExecutionPipe>&) override {}
    void Load(const std::shared_ptr<IXmlElement>&, IProgressLog*) override {}
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>&, int32_t) override {
        return nullptr;
    }
    void PrintReport(IReportDocument*, const std::shared_ptr<IReportSetup>&) override {}
    bool QuerySetParent(const std::shared_ptr<ITestElement>&) override { return true; }
    void Terminate() override {}
    void UpdateReferences() override {}
    std::vector<std::string> GetMeasurementList() const override { return {}; }
    std::shared_ptr<SequenceState> Sequence() const override { return mSequence; }
    void Sequence(std::shared_ptr<SequenceState> state) override { mSequence = std::move(state); }

  private:
    std::shared_ptr<SequenceState> mSequence = std::make_shared<SequenceState>();
};

/// An element with a configuration and a result, which may be missing.
class ResultElement : public FakeElement {
  public:
    int32_t TestID() const override { return config ? config->pTestID : fakeTestId; }
    std::shared_ptr<IConfigData> Configuration() const override { return config; }
    std::shared_ptr<IResultData> Result() const override { return result; }

    std::shared_ptr<CConfigCommon> config;
    std::shared_ptr<CResultCommon> result;
};

}  // namespace vorex::test

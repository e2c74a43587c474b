#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/class_registry.h"
#include "foundation/host_contract.h"
#include "foundation/limit_expression.h"
#include "results/column_facts.h"

namespace vorex {

class CConfigCommon;

/// The limits of a test element: the host's standards of the element, and the rows of the test for the host's
/// limit editor.
class CLimitData : public ILimitData, public LibraryObject, public std::enable_shared_from_this<CLimitData> {
  public:
    // ILimitData. The description is not kept.
    std::string Description() const override { return {}; }
    void Description(std::string_view /*text*/) override {}
    bool HasDialog() const override { return mHasDialog; }
    std::shared_ptr<IStandardCollection> Standards() const override { return mStandards; }
    void Owner(const std::shared_ptr<ITestElement>& element) override { mOwner = element; }
    /// A clone of the standards, without the owner.
    std::shared_ptr<ILimitData> Clone() const override;
    /// A dialog with the host's limit editor; empty when there is none, or when no dialog is wanted.
    std::shared_ptr<IDialog> CreateDialog() override;
    /// The plug-in's standard of that name, or an empty one with the rows of the test. An existing standard
    /// is not added twice.
    std::shared_ptr<IStandard> CreateStandard(std::string_view name, std::string_view version) override;
    /// Raises 0x8004A4EE for another element; the standards are empty when their load fails.
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override;
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) override;
    /// Prints nothing: sets the standards that the report of the result shows.
    void PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) override;
    void UpdateLimits(const std::shared_ptr<ITestElement>& /*owner*/) override {}
    std::vector<std::shared_ptr<IStandard>> FindFailedStandards(
        const IMeasurement* measurement, const ISelectedStandards* selected) const override;

    void HasDialogFlag(bool hasDialog) { mHasDialog = hasDialog; }
    void SetOwner(const std::shared_ptr<ITestElement>& element, bool hasDialog);
    void SetStandardsFrom(const ILimitData& source);
    /// Adds a standard, unless one with its name and version exists.
    void AddStandard(const std::shared_ptr<IStandard>& standard);
    /// Test 700 has gained an exposure, counted from 1: every standard gets its limits, without numbers.
    void AppendExposureLimit(int32_t exposure);
    /// Test 700 has lost an exposure: every standard loses its limits, and those of later exposures are
    /// renumbered.
    void ReorderLimits(int32_t exposure);
    /// Adds the empty limits of a test to a standard; nothing for the survey.
    void CreateTestLimits(IStandard& standard, int32_t testId) const;
    /// Fills the host's limit editor with the rows of a test, and updates old standards to the present units
    /// and exposures.
    void PrepareLimitDialog(ILimitView& view, int32_t testId);
    /// The same for the editor that is open.
    void RefreshDialog();

  private:
    /// What a limit is held against.
    struct Judged {
        const std::string& limitKey;
        float value;
        const TaggedValue& preset;
        const ColumnFacts& facts;
    };
    std::vector<std::shared_ptr<IStandard>> FindFailed(const Judged& judged,
                                                       const ISelectedStandards& selected) const;
    std::shared_ptr<CConfigCommon> OwnerConfiguration() const;
    int32_t OwnerTestId() const;
    void AddLimit(IStandard& standard, const struct LimitRow& row, int32_t exposure, int32_t testId) const;
    void AddExposure(int32_t exposure, int32_t testId);
    void RefreshUnits(int32_t testId);
    /// Text key of the unit of a row, which a file keeps: every reader sees it in a language of their own.
    std::string_view UnitKeyOf(const LimitRow& row) const;

    std::shared_ptr<IStandardCollection> mStandards;
    std::weak_ptr<ITestElement> mOwner;
    bool mHasDialog = true;
    std::weak_ptr<ILimitView> mView;
};

}  // namespace vorex

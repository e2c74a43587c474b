#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "foundation/class_registry.h"
#include "foundation/host_contract.h"

namespace vorex {

/// The preparation of an annual mammography survey: the heads of its collimation and artifact pages.
class CConfigMQSA : public IConfigData,
                    public LibraryObject,
                    public std::enable_shared_from_this<CConfigMQSA> {
  public:
    static constexpr int32_t kCollimationRows = 2;
    static constexpr int32_t kArtifactRows = 4;
    static constexpr int32_t kTableColumns = 6;

    CConfigMQSA();

    /// Key of the text that a cell of the collimation table has in a new configuration; empty for none.
    static std::string_view CollimationText(int32_t row, int32_t column);

    // Rows and columns count from 0; std::out_of_range beyond the tables.
    const std::string& Collimation(int32_t row, int32_t column) const;
    void Collimation(int32_t row, int32_t column, std::string_view text);
    const std::string& Artifact(int32_t row, int32_t column) const;
    void Artifact(int32_t row, int32_t column, std::string_view text);
    const std::shared_ptr<ITestGuideConfig>& TestGuideConfig() const { return mTestGuideConfig; }

    bool OverridePrintReport = true;
    std::string PrintTheComment;

    // IConfigData
    bool HasDialog() const override { return true; }
    std::shared_ptr<IConfigData> Clone() override;
    std::shared_ptr<IDialog> CreateDialog() override;
    /// Raises 0x8004A3C2 for a block that is not this library's, and std::runtime_error for a table with too
    /// few cells.
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override;
    /// Raises 0x8004A3C3 when an element cannot be made.
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) override;
    /// Prints nothing: the pages of the survey show its tables.
    void PrintReport(IReportDocument* /*report*/, const std::shared_ptr<IReportSetup>& /*setup*/) override {}

  private:
    template <int32_t rows>
    using Table = std::array<std::string, static_cast<std::size_t>(rows) * kTableColumns>;

    Table<kCollimationRows> mCollimation;
    Table<kArtifactRows> mArtifact;
    std::shared_ptr<ITestGuideConfig> mTestGuideConfig;
};

}  // namespace vorex

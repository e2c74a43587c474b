#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "config/config_mqsa.h"
#include "foundation/class_registry.h"
#include "foundation/host_contract.h"
#include "foundation/vocabulary.h"
#include "mqsa/survey_record.h"
#include "mqsa/survey_verdict.h"
#include "results/measurement.h"

namespace vorex {

/// The result of the annual mammography survey: what was entered, the 49 answers, the two tables of verdicts.
/// The element passes it the outcomes of the automatic mammography tests.
class CResultMQSA : public IResultData,
                    public LibraryObject,
                    public std::enable_shared_from_this<CResultMQSA> {
  public:
    /// An answer by its place in the sheet: item from 0; column 2 Pass, 3 Fail, any other NA. Throws
    /// std::out_of_range for an item that does not exist.
    void MQSAClickHandle(uint8_t row, uint8_t column);
    /// Translated descriptions of all items. [after Initialize]
    std::vector<std::string> GetDescriptions() const;
    /// Creates the items, and takes the head of the collimation page from the configuration.
    void Initialize(const std::shared_ptr<CConfigMQSA>& configuration);
    /// Judges the answers, evaluates both tables and renews the service record.
    void UpdateStatus(ITestElement& owner, const ISelectedStandards* selected, bool notApplicable = false);
    /// Sets every missing answer to NA.
    void TestNotApp();
    /// The overall status from the answers: 0 while one is missing, 3 when all are NA.
    void pUpdateMQSATestStatus();
    /// The text with the decimal sign of the system in place of the other one.
    static std::string Val_WR(std::string_view value);
    /// Copies the outcomes of the automatic tests into the tables.
    void CopyStatusCells();

    // The printed survey (result_mqsa_report.cpp). Each page begins at the report's present position.
    /// The comments on the pages of the survey; prints nothing when there are none.
    void PrintComment(IReportDocument& report) const;
    bool HasPageComments() const;
    void GetPreliminaryResultsData(IReportDocument& report, const CConfigMQSA* configuration) const;
    void GetSummaryOneData(IReportDocument& report, const CConfigMQSA* configuration) const;
    void GetSummaryTwoData(IReportDocument& report, const CConfigMQSA* configuration) const;
    void GetAssistantLogData(IReportDocument& report, const CConfigMQSA* configuration) const;

    // IResultData
    std::string Comment() const override { return mComment; }
    void Comment(std::string_view comment) override { mComment = comment; }
    bool HasDialog() const override { return !mComment.empty(); }
    int32_t Status() const override { return mStatus; }
    /// A copy with description and unit translated; empty when there is none.
    std::shared_ptr<IMeasurement> Measurement(int32_t index) const override;
    std::shared_ptr<IMeasurement> Measurement(std::string_view key) const override;
    int32_t MeasurementCount() const override { return static_cast<int32_t>(mItems.size()); }
    std::shared_ptr<IServiceRecord> ServiceRecord() const override { return mServiceRecord; }
    int32_t MTIID() const override { return mMtiId; }
    std::shared_ptr<IDialog> CreateDialog() override;
    /// Raises 0x8004A3EB for another element, and std::runtime_error for a grid with too few cells.
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override;
    /// Raises 0x8004A3EC or 0x8004A3C3 when an element cannot be made.
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) override;
    /// Prints nothing: updates the tables from the automatic tests, for the pages below.
    void PrintReport(IReportDocument* /*report*/, const std::shared_ptr<IReportSetup>& /*setup*/) override {
        CopyStatusCells();
    }

    const SurveyRecord& Record() const { return mRecord; }
    SurveyRecord& Record() { return mRecord; }
    const SurveyTables& Tables() const { return mTables; }
    const std::vector<std::shared_ptr<CMeasurement>>& Items() const { return mItems; }
    const std::shared_ptr<CConfigMQSA>& Configuration() const { return mConfig; }
    ItemStatuses Statuses() const;
    /// Outcomes of the automatic tests; `CopyStatusCells` copies them into the tables.
    const StatusCells& Cells() const { return mCells; }
    void Cells(const StatusCells& cells) { mCells = cells; }
    /// What ended the last evaluation early; empty when it was complete.
    const std::string& Fault() const { return mFault; }
    /// Recalculates what depends on a grid, as the entry page does after each cell.
    void GridChanged(GridId grid);
    /// Recalculates every page.
    void RecalculatePages();
    /// The three scores that the printed summary shows, of the current film.
    const std::string& pSummPage1Fiber() const { return mFiber; }
    const std::string& pSummPage1Speck() const { return mSpeck; }
    const std::string& pSummPage1Mass() const { return mMass; }

    void MTIID(int32_t id) { mMtiId = id; }

    uint8_t pLBIndex = 0;  ///< page that was open last

  private:
    void ReadScores();
    void UpdateServiceRecord(const ITestElement& owner);

    // Persistence (result_mqsa_persistence.cpp).
    void SaveGroups(const std::shared_ptr<IXmlDocument>& owner, IXmlElement& element) const;
    void LoadGroup(const SurveyGroupRow& group, const IXmlElement& element);
    void LoadGrid(GridId id, std::string_view cells);
    bool LoadCell(const IXmlElement& child);
    void LoadItem(const std::shared_ptr<IXmlElement>& child, IProgressLog* log);
    void LoadChild(const std::shared_ptr<IXmlElement>& child, IProgressLog* log);

    std::shared_ptr<CConfigMQSA> mConfig;
    SurveyRecord mRecord;
    SurveyTables mTables;
    std::vector<std::shared_ptr<CMeasurement>> mItems;
    int32_t mStatus = kNotTested;
    int32_t mStatusExtra = 0;
    std::string mComment;
    std::shared_ptr<IServiceRecord> mServiceRecord;
    int32_t mMtiId = 0;
    StatusCells mCells;
    std::string mFault;
    std::string mFiber;
    std::string mSpeck;
    std::string mMass;
};

}  // namespace vorex

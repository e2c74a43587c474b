#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/config_common.h"
#include "foundation/class_registry.h"
#include "foundation/host_contract.h"
#include "foundation/status_cells.h"
#include "results/derived_row.h"
#include "results/exposure_store.h"
#include "results/measurement.h"
#include "results/result_record.h"
#include "waveforms/waveform.h"

namespace vorex {

class Judging;

/// Numbers of the columns of a row: values of the exposure, and statistics of the whole test.
struct ColumnCounts {
    int32_t total = 0;
    int32_t calculated = 0;
    int32_t row = 0;
};

/// The result of a measuring test: a row of measurements per exposure, waveforms, the verdict.
///
/// `Initialize` once per run builds the working row. Each exposure is stored into the working row
/// (`StoreResult`), judged and copied into a row of its own (`UpdateStatus`); at the end all rows are judged
/// again (`UpdateAllStatus`).
class CResultCommon : public IResultData,
                      public LibraryObject,
                      public std::enable_shared_from_this<CResultCommon> {
  public:
    CResultCommon();

    /// Sampling interval for the next waveforms.
    void Resolution(float interval) { mResolution = interval; }
    /// Builds the working row for the test, detector kind and units of a configuration.
    void Initialize(const std::shared_ptr<CConfigCommon>& configuration);

    /// Value of a column of an exposure, both counted from 1. Empty when there is none.
    std::string GetMeasurementValue(uint8_t exposureNumber, uint8_t column) const;
    /// Values of a column over all stored exposures, one text per row; unchanged when nothing is stored or
    /// the column does not exist.
    void GetMeasurementColumn(uint8_t column, std::vector<std::string>& values) const;
    /// Value of a column of a row; rows count from 0, columns from 1. Empty when there is none.
    std::string GetValue(uint8_t row, uint8_t column) const;
    /// Stores a typed value in a cell. Recomputes the statistics of its column, which belong to the last
    /// exposure with a reading.
    void SetValue(uint8_t row, uint8_t column, std::string_view text);
    /// Fills the columns of the working row that a source fills: 1 ZRD 47500, 2 Pelomark, 3 mAs meter. A
    /// column without a field keeps its value. Returns the fault of a row that does not fit its columns, in
    /// words for a person; empty when it fits. A row without fields does nothing.
    std::string StoreResult(const DerivedRow& row, int32_t source);

    /// Judges the working row and stores it as an exposure, replacing an earlier one with its number.
    /// Exposure 0 only judges. Returns what the judgement means for the survey.
    SurveyOutcomes UpdateStatus(ITestElement& owner, const ISelectedStandards* selected,
                                uint8_t exposureNumber, bool notApplicable = false);
    /// Judges every stored row again. Returns what the judgement means for the survey.
    SurveyOutcomes UpdateAllStatus(ITestElement& owner, const ISelectedStandards* selected,
                                   bool notApplicable = false);
    /// A view's edit of the adjacent flag of a row, counted from 0. Returns -1 when nothing was done, 0
    /// failed, 1 passed.
    int32_t UpdateAdjacentResult(ITestElement& owner, const ISelectedStandards* selected, uint8_t row,
                                 uint8_t flag);
    /// A view's edit of the adjacent flag of an exposure, counted from 1: judges all rows, then makes the
    /// exposure's row the working row.
    SurveyOutcomes UpdateResult(ITestElement& owner, const ISelectedStandards* selected,
                                uint8_t exposureNumber, uint8_t flag);
    /// Status at the start of a run: 1, or 0.
    void InitResultStatus(bool passed) { mStatus = passed ? kPassed : kNotTested; }
    /// Does nothing: the overall status follows from judging.
    void UpdateOverallStatus() {}

    /// Stores an exposure that ended before any reading of it arrived. It keeps its number, has no
    /// measurements and no verdict; a later reading fills it. Does nothing for a stored exposure.
    void StoreMissing(uint8_t exposureNumber) { mExposures.AddUpTo(exposureNumber); }
    /// False for an exposure, counted from 0, without a reading from any instrument.
    bool HasReading(std::size_t row) const { return mExposures.HasReading(row); }
    /// The last exposure with a reading, which holds the statistics of the test; null when there is none.
    const MeasurementRow* LastReading() const { return mExposures.LastReading(); }

    /// Until `EndRedo` the next readings and waveforms of the exposure replace the stored ones: with the
    /// first reading, its row and both waveforms become superseded. Without a reading nothing changes.
    void BeginRedo(uint8_t exposureNumber);
    void EndRedo();

    /// Stores samples as the waveform of the selected type of an exposure, counted from 1. The waveform of an
    /// exposure that is not stored is shown, but not kept; that of a redo waits for the first reading of the
    /// redo.
    void StoreWaveForm(std::string_view data, uint8_t exposureNumber);
    /// Makes a stored row with a reading, counted from 0, the working row and, with the flag, shows its
    /// waveforms. False when there is no such row.
    bool ShowResultInTestguide(int32_t row, bool withWaveforms = false);
    /// Clears the judged readings of a combined detector kind before the next exposure.
    void ResetTheMeasurements();

    std::shared_ptr<IWaveform> CurrentWaveformObject() const;
    void SelectWaveform(int32_t row);
    /// Waveform of the selected type of an exposure, counted from 1; empty when there is none.
    std::shared_ptr<IWaveform> WaveformOfRow(int32_t exposureNumber) const;
    void SelectLastWaveform() const;
    /// Waveform of a type of an exposure, counted from 1, whatever type is selected.
    std::shared_ptr<IWaveform> KvWaveform(int32_t exposureNumber) const;
    std::shared_ptr<IWaveform> MaWaveform(int32_t exposureNumber) const;

    // IResultData
    std::string Comment() const override { return mComment; }
    void Comment(std::string_view comment) override { mComment = comment; }
    bool HasDialog() const override;
    int32_t Status() const override { return mStatus; }
    std::shared_ptr<IMeasurement> Measurement(int32_t index) const override;
    std::shared_ptr<IMeasurement> Measurement(std::string_view key) const override;
    int32_t MeasurementCount() const override;
    std::shared_ptr<IServiceRecord> ServiceRecord() const override { return mServiceRecord; }
    int32_t MTIID() const override { return mMtiId; }
    std::shared_ptr<IDialog> CreateDialog() override;
    /// Raises 0x8004A3EB for another element. Rows are rebuilt from the flat list of measurements.
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override;
    /// Raises 0x8004A3EC when the element cannot be made.
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) override;
    /// The exposures, the statistics of the test once after them, then the waveforms.
    void PrintReport(IReportDocument* report, const std::shared_ptr<IReportSetup>& setup) override;

    void ServiceRecord(std::shared_ptr<IServiceRecord> record) { mServiceRecord = std::move(record); }
    void MTIID(int32_t id) { mMtiId = id; }
    const MeasurementRow& Current() const { return *mCurrent; }
    const std::vector<std::shared_ptr<MeasurementRow>>& Rows() const { return mExposures.Rows(); }
    /// The superseded measurements of redone exposures, in the order of the redos.
    const std::vector<SupersededExposure>& Superseded() const { return mExposures.Superseded(); }
    /// The run that took the exposures; empty if the file does not have it.
    const std::optional<RunRecord>& Run() const { return mRun; }
    void Run(RunRecord record) { mRun = std::move(record); }
    /// When, by which program and by which limits the result was judged; empty if the file does not say.
    const std::optional<Judgement>& JudgedBy() const { return mJudgedBy; }
    /// Call when the statuses follow from the present limits.
    void NoteJudgement(const ITestElement& owner, const ISelectedStandards* selected) {
        mJudgedBy = PresentJudgement(owner, selected);
    }
    /// Highest exposure number stored.
    uint8_t ExposureCount() const { return mExposures.Count(); }
    /// Number of the exposure judged last.
    uint8_t LastExposure() const { return mLastExposure; }
    const std::string& LastColumnKey() const { return mLastColumnKey; }
    ColumnCounts GetColumnCounts() const;
    /// True for a column that is a statistic of the whole test: tests 100, 900 and 1100.
    bool IsTestWideColumn(std::string_view measurementKey) const;
    /// False for a value of a row, counted from 0, that is never judged: the adjacent flag, and the errors
    /// that the criterion of the exposure or the generator setup excludes.
    bool IsHeldAgainstLimits(const CMeasurement& measurement, std::size_t row) const;

    bool pTestGuide = false;  ///< while the guide owns the display, the host sees the working row only
    int32_t DetectorName = kZrd;
    int32_t PKMode = 0;
    int32_t TestId = 0;
    uint8_t WaveformType = kKvWaveform;  ///< selects the kV or the mA waveforms in every waveform operation

  private:
    void TakeStatistics(std::size_t row);
    void RenewStatistics(std::string_view columnKey);
    void ShowWaveform(std::shared_ptr<CWaveform> waveform) const;
    void ShowWaveformsOf(int32_t exposure) const;
    std::shared_ptr<IMeasurement> Heading(std::string_view caption) const;
    std::shared_ptr<IMeasurement> CellOfHost(std::size_t row, std::size_t column) const;

    // Verdicts (result_status.cpp).
    Judging JudgingBy(const ITestElement& owner, const ISelectedStandards* selected) const;
    void CopyStatisticsToRows();
    void StoreWorkingRow(uint8_t exposureNumber);
    void CopyToRow(const CMeasurement& from, CMeasurement& to) const;
    MeasurementRow CopyOf(const MeasurementRow& row) const;
    void CopyToAllRows(const CMeasurement& measurement);
    void TakeLatestStatuses();
    void UpdateServiceRecord(const ITestElement& owner);

    void LoadRecord(const std::shared_ptr<IXmlElement>& child);

    std::shared_ptr<CConfigCommon> mConfig;
    std::shared_ptr<MeasurementRow> mCurrent;
    ExposureStore mExposures;
    std::shared_ptr<MeasurementRow> mRowBeforeRedo;  ///< the working row; empty outside a redo
    int32_t mStatus = kNotTested;
    int32_t mStatusExtra = 0;
    std::string mComment;
    std::shared_ptr<IServiceRecord> mServiceRecord;
    int32_t mMtiId = 0;
    mutable std::shared_ptr<CWaveform> mCurrentWaveform;
    mutable std::shared_ptr<CWaveform> mCurrentMaWaveform;
    std::vector<std::size_t> mNewStatistics;  ///< columns of the whole test that the latest reading computed
    std::vector<RowField> mNextFields;        ///< of the exposure after the latest reading
    std::optional<RunRecord> mRun;
    std::optional<Judgement> mJudgedBy;
    float mResolution = 0;
    uint8_t mLastExposure = 0;
    std::string mLastColumnKey;
};

}  // namespace vorex

#include <algorithm>

#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "results/judging.h"
#include "results/result_columns.h"
#include "results/result_common.h"

// The verdicts of a result: `results/judging.h` judges its rows, and the result stores the outcome.

namespace vorex {

Judging CResultCommon::JudgingBy(const ITestElement& owner, const ISelectedStandards* selected) const {
    return {TestId, mConfig, owner.Limits(), selected};
}

bool CResultCommon::IsHeldAgainstLimits(const CMeasurement& measurement, std::size_t row) const {
    return Judging(TestId, mConfig).IsHeldAgainstLimits(measurement, row);
}

/// The judged statistics of tests 900 and 1100 belong to the whole test: every stored row shows the latest.
void CResultCommon::CopyStatisticsToRows() {
    if (TestId != kMammoAccRepro && TestId != kMammoAec) return;
    for (const auto& item : *mCurrent)
        if (IsJudgedColumn(TestId, *item) && item->HasValidReading()) CopyToAllRows(*item);
}

void CResultCommon::CopyToAllRows(const CMeasurement& measurement) {
    const uint8_t column = ColumnNumber(*mCurrent, measurement.RawKey());
    for (const auto& row : Rows()) {
        CMeasurement* cell = FindMeasurement(*row, measurement.RawKey(), column - 1U);
        if (cell == nullptr || cell == &measurement) continue;
        cell->Value(measurement.RawValue());
        cell->Status(measurement.Status());
    }
}

SurveyOutcomes CResultCommon::UpdateStatus(ITestElement& owner, const ISelectedStandards* selected,
                                           uint8_t exposureNumber, bool notApplicable) {
    const RowsVerdict verdict = notApplicable
                                    ? Judging::NotApplicable()
                                    : JudgingBy(owner, selected).JudgeExposure(*mCurrent, exposureNumber);
    mStatus = verdict.status;
    if (!notApplicable) CopyStatisticsToRows();
    UpdateServiceRecord(owner);
    if (notApplicable || exposureNumber == 0) return verdict.outcomes;
    mLastExposure = exposureNumber;
    StoreWorkingRow(exposureNumber);
    return verdict.outcomes;
}

void CResultCommon::CopyToRow(const CMeasurement& from, CMeasurement& to) const {
    const bool number =
        IsJudgedColumn(TestId, from) && (TestId != kFluoroExposure || from.ValueType() == kJudgedNumber);
    to.ShareLabels(from);
    to.ValueType(number ? kJudgedNumber : kTextOnly);
    to.CopyReading(from);
}

MeasurementRow CResultCommon::CopyOf(const MeasurementRow& row) const {
    MeasurementRow copy;
    AddCells(copy, row.size());
    for (std::size_t column = 0; column < row.size(); ++column) CopyToRow(*row[column], *copy[column]);
    return copy;
}

void CResultCommon::StoreWorkingRow(uint8_t exposureNumber) {
    const std::size_t index = exposureNumber - 1U;
    if (mExposures.Supersede(exposureNumber)) ShowWaveformsOf(exposureNumber);
    mExposures.AddUpTo(exposureNumber);
    MeasurementRow& row = *Rows()[index];
    // The guide may show this row, so it gets its own copy.
    if (&row != mCurrent.get()) {
        if (row.size() < mCurrent->size()) AddCells(row, mCurrent->size() - row.size());
        for (std::size_t column = 0; column < mCurrent->size(); ++column)
            CopyToRow(*(*mCurrent)[column], *row[column]);
    }
    TakeStatistics(index);
}

/// A redo in the middle of a test changes the statistics, which belong to the last reading, and the values
/// that the next exposure computed from it.
void CResultCommon::TakeStatistics(std::size_t row) {
    const bool isLast = mExposures.LastReadingIndex() == row;
    for (std::size_t column : mNewStatistics) {
        if (isLast) break;
        const CMeasurement& statistic = *(*mCurrent)[column];
        CMeasurement* cell = FindMeasurement(*mExposures.LastReading(), statistic.RawKey(), column);
        if (cell != nullptr) CopyToRow(statistic, *cell);
    }
    mNewStatistics.clear();
    const MeasurementRow* next = mExposures.NextReading(row);
    for (const RowField& field : mNextFields) {
        if (next == nullptr) break;
        for (const auto& cell : *next) {
            if (ColumnKeyOf(cell->RawKey()) != field.key) continue;
            cell->Value(field.text);
            cell->Status(kPassed);
        }
    }
    mNextFields.clear();
}

/// The working row of a loaded result is an unjudged copy: it takes over the statuses of its row, so that
/// judging again gives the same service record.
void CResultCommon::TakeLatestStatuses() {
    const MeasurementRow& latest = *LastReading();
    for (std::size_t column = 0; column < mCurrent->size() && column < latest.size(); ++column)
        (*mCurrent)[column]->Status(latest[column]->Status());
}

SurveyOutcomes CResultCommon::UpdateAllStatus(ITestElement& owner, const ISelectedStandards* selected,
                                              bool notApplicable) {
    RowsVerdict verdict;
    if (notApplicable) {
        verdict = Judging::NotApplicable();
    } else if (LastReading() != nullptr) {
        verdict = JudgingBy(owner, selected).JudgeAll(Rows());
        if (mLastExposure == 0) TakeLatestStatuses();
    } else if (!Rows().empty()) {
        verdict.status = kNotTested;
    }
    mStatus = verdict.status;
    UpdateServiceRecord(owner);
    return verdict.outcomes;
}

int32_t CResultCommon::UpdateAdjacentResult(ITestElement& owner, const ISelectedStandards* selected,
                                            uint8_t row, uint8_t flag) {
    if (row >= Rows().size()) return -1;
    MeasurementRow& cells = *Rows()[row];
    if (CMeasurement* adjacent = FindMeasurement(cells, key::kAdjacent))
        adjacent->Value(PlainText(static_cast<int32_t>(flag)));
    const auto at = std::find_if(cells.begin(), cells.end(),
                                 [](const auto& item) { return IsLinearityKey(item->RawKey()); });
    if (at == cells.end()) return -1;
    CMeasurement& coefficient = **at;
    JudgingBy(owner, selected).JudgeCoefficient(coefficient, row, flag != 0);
    if (coefficient.Status() != kFailed) return 1;
    mStatus = kFailed;
    return 0;
}

SurveyOutcomes CResultCommon::UpdateResult(ITestElement& owner, const ISelectedStandards* selected,
                                           uint8_t exposureNumber, uint8_t flag) {
    const std::size_t row = exposureNumber - 1U;
    const bool there = exposureNumber > 0 && row < Rows().size();
    if (there)
        if (CMeasurement* adjacent = FindMeasurement(*Rows()[row], key::kAdjacent))
            adjacent->Value(PlainText(static_cast<int32_t>(flag)));
    const SurveyOutcomes outcomes = UpdateAllStatus(owner, selected);
    if (there) mCurrent = Rows()[row];
    return outcomes;
}

void CResultCommon::UpdateServiceRecord(const ITestElement& owner) {
    const auto info = owner.Info();
    const bool keeps = info && (info->ServiceFlags() & kKeepServiceRecord) != 0;
    if (!keeps || mStatus == kNotTested || !Services().createServiceRecord) return;
    std::string code;
    std::string list;
    if (mStatus == kNotApplicable) {
        code = "NA";
    } else {
        for (const auto& item : *mCurrent) {
            if (item->Status() == kFailed) code = "F";
            if (const std::string shown = item->GetDisplayText(); !shown.empty())
                list.append("/").append(shown);
        }
    }
    mServiceRecord = Services().createServiceRecord();
    mServiceRecord->Initialize(code, list);
}

}  // namespace vorex

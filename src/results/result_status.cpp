#include <algorithm>

#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "results/result_columns.h"
#include "results/result_common.h"

// Judging. `UpdateStatus` judges the working row after an exposure and stores it; `UpdateAllStatus` judges
// every stored row anew. The two differ in ways that sites rely on: see the comments where they do.

namespace vorex {

namespace {

bool IsKvpErrorKey(std::string_view measurementKey) {
    return measurementKey == key::kPercentKvpError || measurementKey == key::kAbsoluteKvpError;
}

bool IsAccuracyErrorKey(std::string_view measurementKey) {
    return IsKvpErrorKey(measurementKey) || measurementKey == key::kPercentTimerError;
}

bool IsLinearityKey(std::string_view measurementKey) {
    return EqualsIgnoringCase(measurementKey, key::kErAdjacent) ||
           EqualsIgnoringCase(measurementKey, key::kErNonAdjacent);
}

bool IsVoltageStatistic(std::string_view measurementKey) {
    return measurementKey.starts_with("ER kV");
}

/// The cell of a status: 1 for Pass, 2 for Fail, else 0.
int32_t CellOf(int32_t status) {
    return status == kPassed || status == kFailed ? status : kNotTested;
}

}  // namespace

struct CResultCommon::Judge {
    std::shared_ptr<ILimitData> limits;
    const ISelectedStandards* selected = nullptr;

    void operator()(CMeasurement& measurement) const { measurement.UpdateStatus(limits.get(), selected); }
};

struct CResultCommon::Walk {
    bool either = false;    ///< test 200, criterion 3: one of the two errors of the row passed
    bool adjacent = false;  ///< test 300: the row is marked adjacent
    StatusCells cells;
};

int32_t CResultCommon::Criterion(std::size_t row) const {
    if (!mConfig || row > UINT8_MAX) return 0;
    return ReadInteger(mConfig->GetValue(static_cast<uint8_t>(row), ExposureColumn::kCriterion));
}

bool CResultCommon::IsHeldAgainstLimits(const CMeasurement& measurement, std::size_t row) const {
    const std::string& measurementKey = measurement.RawKey();
    if (TestId == kRadioLinearity) return measurementKey != key::kAdjacent;
    if (TestId != kRadioAccuracy) return true;
    if (measurementKey == key::kPercentTimerError) return mConfig && mConfig->pGeneratorSetup == kSetupMaTime;
    if (!IsKvpErrorKey(measurementKey)) return true;
    const int32_t criterion = Criterion(row);
    const int32_t leftAlone = measurementKey == key::kPercentKvpError ? kJudgeAbsolute : kJudgePercent;
    return criterion >= kJudgePercent && criterion <= kJudgeBoth && criterion != leftAlone;
}

/// Judges an error of the accuracy test, if it is held against limits at all; true when it was. One that is
/// left alone passes, but a kVp error keeps its status while the criterion of the exposure is unknown.
bool CResultCommon::JudgeAccuracyError(const Judge& judge, CMeasurement& measurement, std::size_t row) const {
    const bool judged = IsHeldAgainstLimits(measurement, row);
    const int32_t criterion = Criterion(row);
    if (judged)
        judge(measurement);
    else if (!IsKvpErrorKey(measurement.RawKey()) || criterion == kJudgePercent ||
             criterion == kJudgeAbsolute)
        measurement.Status(kPassed);
    return judged;
}

/// True when the measurement was handled here and no general judgement follows.
bool CResultCommon::TestSpecificStatus(const Judge& judge, CMeasurement& measurement,
                                       uint8_t exposureNumber) const {
    const std::string& measurementKey = measurement.RawKey();
    if (TestId == kRadioAccuracy && IsAccuracyErrorKey(measurementKey)) {
        JudgeAccuracyError(judge, measurement, exposureNumber == 0 ? 0U : exposureNumber - 1U);
        return true;
    }
    if (TestId == kRadioLinearity) {
        if (measurementKey == key::kAdjacent) return true;
        if (IsLinearityKey(measurementKey)) {
            // While a test runs every coefficient is judged as non-adjacent; the first has nothing above it.
            measurement.Key(key::kErNonAdjacent);
            if (exposureNumber < 2)
                measurement.Status(kPassed);
            else
                judge(measurement);
            return true;
        }
    }
    return false;
}

/// True for a calculated column that stays a number in a stored row.
bool CResultCommon::IsJudgedColumn(const CMeasurement& measurement) const {
    const std::string& measurementKey = measurement.RawKey();
    switch (TestId) {
        case kRadioRepro:
            return IsVoltageStatistic(measurementKey);
        case kRadioAccuracy:
            return measurementKey.starts_with("ER RA");
        case kRadioLinearity:
            return IsLinearityKey(measurementKey);
        case kFluoroAccuracy:
            return measurementKey == key::kFluoroKvpError;
        case kFluoroExposure:
            return IsMaxExposureRate(measurementKey);
        case kMammoAccRepro:
            return measurementKey == key::kPercentError || measurementKey == key::kCv;
        case kMammoAec:
            return measurementKey == key::kCvMasSettings || measurementKey == key::kCvExposure ||
                   measurementKey == key::kGlandularDose;
        case kMammoRadiation:
            return measurementKey == key::kOutputRate || measurementKey == key::kAirKermaRate;
        default:
            return false;
    }
}

void CResultCommon::CopyToAllRows(const CMeasurement& measurement) {
    const uint8_t column = ColumnNumber(*mCurrent, measurement.RawKey());
    for (const auto& row : mRows) {
        CMeasurement* cell = FindMeasurement(*row, measurement.RawKey(), column - 1U);
        if (cell == nullptr || cell == &measurement) continue;
        cell->Value(measurement.RawValue());
        cell->Status(measurement.Status());
    }
}

void CResultCommon::JudgeGenerally(const Judge& judge, CMeasurement& measurement, uint8_t exposureNumber) {
    if (!measurement.HasValidReading()) {
        measurement.Status(kFailed);
        return;
    }
    if (TestId == kFluoroExposure && IsMaxExposureRate(measurement.RawKey()))
        measurement.Key(std::string(key::kMaxExposureRate) + PlainText(static_cast<int32_t>(exposureNumber)));
    judge(measurement);
    // The judged statistics of these tests hold for the whole test: every stored row shows the latest.
    const bool testWide = (TestId == kMammoAccRepro || TestId == kMammoAec) && IsJudgedColumn(measurement);
    if (testWide) CopyToAllRows(measurement);
}

SurveyOutcomes CResultCommon::JudgeNotApplicable() {
    mStatus = kNotApplicable;
    return {kNotTested, kNotTested, kNotTested, kNotTested, kNotTested, kNotTested, kNotTested};
}

void CResultCommon::JudgeWorkingRow(const Judge& judge, uint8_t exposureNumber) {
    const std::size_t row = exposureNumber == 0 ? 0U : exposureNumber - 1U;
    for (const auto& item : *mCurrent) {
        if (!TestSpecificStatus(judge, *item, exposureNumber)) JudgeGenerally(judge, *item, exposureNumber);
        // "Either error may pass" is not settled while a test runs: the absolute error alone fails the test
        // for now, and the judgement of all rows at the end decides.
        const bool either =
            TestId == kRadioAccuracy && IsKvpErrorKey(item->RawKey()) && Criterion(row) == kJudgeEither;
        const bool fails = either ? item->RawKey() == key::kAbsoluteKvpError : item->Status() == kFailed;
        if (fails) mStatus = kFailed;
    }
}

SurveyOutcomes CResultCommon::UpdateStatus(ITestElement& owner, const ISelectedStandards* selected,
                                           uint8_t exposureNumber, bool notApplicable) {
    SurveyOutcomes outcomes;
    if (notApplicable) {
        outcomes = JudgeNotApplicable();
    } else {
        mStatus = kPassed;
        JudgeWorkingRow({owner.Limits(), selected}, exposureNumber);
    }
    UpdateServiceRecord(owner);
    if (notApplicable || exposureNumber == 0) return outcomes;
    mLastExposure = exposureNumber;
    StoreWorkingRow(exposureNumber);
    return outcomes;
}

void CResultCommon::CopyToRow(const CMeasurement& from, CMeasurement& to) const {
    const bool number =
        IsJudgedColumn(from) && (TestId != kFluoroExposure || from.ValueType() == kJudgedNumber);
    to.ShareLabels(from);
    to.ValueType(number ? kJudgedNumber : kTextOnly);
    to.PresetValue(from.RawPresetValue());
    to.Status(from.Status());
    to.Value(from.RawValue());
}

MeasurementRow CResultCommon::CopyOf(const MeasurementRow& row) const {
    MeasurementRow copy;
    copy.reserve(row.size());
    for (const auto& item : row) {
        copy.push_back(std::make_shared<CMeasurement>());
        CopyToRow(*item, *copy.back());
    }
    return copy;
}

void CResultCommon::BeginRedo(uint8_t exposureNumber) {
    mRedone.reset();
    const std::size_t index = exposureNumber - 1U;
    if (exposureNumber == 0 || index >= mRows.size()) return;
    SupersededExposure& redone = mRedone.emplace();
    redone.exposure = exposureNumber;
    redone.row = CopyOf(*mRows[index]);
    redone.kvWaveform = mWaveforms[index];
    redone.maWaveform = mMaWaveforms[index];
}

/// Only a reading supersedes: a redo that was stopped before it leaves the exposure as it was. A second
/// instrument adds to the new readings.
void CResultCommon::KeepSuperseded(uint8_t exposureNumber) {
    if (!mRedone || mRedone->exposure != exposureNumber) return;
    mRedone->order =
        1 + static_cast<int32_t>(std::count_if(mSuperseded.begin(), mSuperseded.end(), [&](const auto& kept) {
            return kept.exposure == exposureNumber;
        }));
    if (Services().platform) mRedone->time = Services().platform->TimeStamp();
    mSuperseded.push_back(std::move(*mRedone));
    mRedone.reset();
}

void CResultCommon::StoreWorkingRow(uint8_t exposureNumber) {
    const std::size_t index = exposureNumber - 1U;
    KeepSuperseded(exposureNumber);
    if (exposureNumber > mExposureCount) {
        mExposureCount = exposureNumber;
        while (mRows.size() <= index) AddRow(std::make_shared<MeasurementRow>());
    }
    MeasurementRow& row = *mRows[index];
    if (&row == mCurrent.get()) return;  // the guide shows this row: it is its own copy
    row.reserve(mCurrent->size());
    for (std::size_t column = 0; column < mCurrent->size(); ++column) {
        if (column == row.size()) row.push_back(std::make_shared<CMeasurement>());
        CopyToRow(*(*mCurrent)[column], *row[column]);
    }
}

void CResultCommon::JudgeStored(const Judge& judge, CMeasurement& measurement, std::size_t row, Walk& walk) {
    const std::string& measurementKey = measurement.RawKey();
    if (TestId == kRadioRepro && row + 1 < mRows.size() && IsVoltageStatistic(measurementKey)) {
        measurement.Status(kPassed);  // the statistic belongs to the last row
        return;
    }
    if (TestId == kRadioLinearity && measurementKey == key::kAdjacent) {
        walk.adjacent = measurement.ValueText() == PlainText(StoredOfValue(kFlags, 1));
        return;
    }
    if (TestId == kRadioLinearity && IsLinearityKey(measurementKey)) {
        // Only the judgement after an exposure, and the edit of the flag, can fail a coefficient.
        measurement.Key(walk.adjacent ? key::kErAdjacent : key::kErNonAdjacent);
        measurement.Status(kPassed);
        return;
    }
    if (TestId == kRadioAccuracy && IsAccuracyErrorKey(measurementKey)) {
        const bool either = JudgeAccuracyError(judge, measurement, row) && Criterion(row) == kJudgeEither;
        const bool passed = measurement.Status() != kFailed;
        if (either && measurementKey == key::kPercentKvpError) walk.either = passed;
        if (either && measurementKey == key::kAbsoluteKvpError && passed) walk.either = true;
        return;
    }
    if (!measurement.HasValidReading()) {
        measurement.Status(kFailed);
        return;
    }
    judge(measurement);
    if (TestId != kMammoAccRepro) return;
    StatusCells& cells = walk.cells;
    if (measurementKey == key::kPercentError && cells.kVpL38 == kPassed)
        cells.kVpL38 = CellOf(measurement.Status());
    if (measurementKey == key::kCv) {
        if (cells.kVpL39 == kPassed) cells.kVpL39 = CellOf(measurement.Status());
        cells.kVpL36 = cells.kVpL38 == kPassed && cells.kVpL39 == kPassed ? kPassed : kFailed;
    }
}

/// The working row of a loaded result is a copy that no exposure has judged: it takes over how its row is
/// judged now, so that judging once more comes to the same service record.
void CResultCommon::TakeLatestStatuses() {
    const MeasurementRow& latest = *mRows.back();
    for (std::size_t column = 0; column < mCurrent->size() && column < latest.size(); ++column)
        (*mCurrent)[column]->Status(latest[column]->Status());
}

SurveyOutcomes CResultCommon::UpdateAllStatus(ITestElement& owner, const ISelectedStandards* selected,
                                              bool notApplicable) {
    SurveyOutcomes outcomes;
    if (notApplicable) {
        outcomes = JudgeNotApplicable();
        UpdateServiceRecord(owner);
        return outcomes;
    }
    mStatus = kPassed;
    if (!mRows.empty() && mExposureCount == 0) mStatus = kNotTested;
    if (!mRows.empty() && mExposureCount > 0) {
        const Judge judge{owner.Limits(), selected};
        Walk walk;
        walk.cells.kVpL36 = walk.cells.kVpL38 = walk.cells.kVpL39 = kPassed;
        for (std::size_t row = 0; row < mRows.size(); ++row) {
            for (const auto& item : *mRows[row]) {
                JudgeStored(judge, *item, row, walk);
                bool fails = item->Status() == kFailed;
                if (TestId == kRadioAccuracy && IsKvpErrorKey(item->RawKey()) &&
                    Criterion(row) == kJudgeEither)
                    fails = item->RawKey() == key::kAbsoluteKvpError && !walk.either;
                if (fails) mStatus = kFailed;
            }
        }
        if (mLastExposure == 0) TakeLatestStatuses();
        if (TestId == kMammoAccRepro) {
            outcomes.kVpL36 = walk.cells.kVpL36;
            outcomes.kVpL38 = walk.cells.kVpL38;
            outcomes.kVpL39 = walk.cells.kVpL39;
        }
    }
    UpdateServiceRecord(owner);
    return outcomes;
}

int32_t CResultCommon::UpdateAdjacentResult(ITestElement& owner, const ISelectedStandards* selected,
                                            uint8_t row, uint8_t flag) {
    if (row >= mRows.size()) return -1;
    MeasurementRow& cells = *mRows[row];
    if (CMeasurement* adjacent = FindMeasurement(cells, key::kAdjacent))
        adjacent->Value(PlainText(static_cast<int32_t>(flag)));
    const auto at = std::find_if(cells.begin(), cells.end(),
                                 [](const auto& item) { return IsLinearityKey(item->RawKey()); });
    if (at == cells.end()) return -1;
    CMeasurement& coefficient = **at;
    if (row >= 1) {  // the first exposure has none before it to compare with
        coefficient.Key(flag != 0 ? key::kErAdjacent : key::kErNonAdjacent);
        coefficient.UpdateStatus(owner.Limits().get(), selected);
    } else {
        coefficient.Status(kPassed);
    }
    if (coefficient.Status() != kFailed) return 1;
    mStatus = kFailed;
    return 0;
}

bool CResultCommon::UpdateResult(ITestElement& owner, const ISelectedStandards* selected,
                                 uint8_t exposureNumber, uint8_t flag) {
    const std::size_t row = exposureNumber - 1U;
    const bool there = exposureNumber > 0 && row < mRows.size();
    if (there)
        if (CMeasurement* adjacent = FindMeasurement(*mRows[row], key::kAdjacent))
            adjacent->Value(PlainText(static_cast<int32_t>(flag)));
    UpdateAllStatus(owner, selected);
    if (there) mCurrent = mRows[row];
    return false;
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

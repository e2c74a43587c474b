#include "results/judging.h"

#include <string>

#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/test_sets.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

bool IsKvpErrorKey(std::string_view measurementKey) {
    return measurementKey == key::kPercentKvpError || measurementKey == key::kAbsoluteKvpError;
}

bool IsAccuracyErrorKey(std::string_view measurementKey) {
    return IsKvpErrorKey(measurementKey) || measurementKey == key::kPercentTimerError;
}

/// The cell of a status: 1 for Pass, 2 for Fail, else 0.
int32_t CellOf(int32_t status) {
    return status == kPassed || status == kFailed ? status : kNotTested;
}

std::size_t LastReadingOf(std::span<const std::shared_ptr<MeasurementRow>> rows) {
    std::size_t last = rows.size();
    while (last > 0 && rows[last - 1]->empty()) --last;
    return last == 0 ? 0 : last - 1;
}

}  // namespace

struct Judging::Walk {
    std::size_t lastReading = 0;  ///< row that holds the statistics
    bool either = false;          ///< test 200, criterion 3: one of the two errors of the row passed
    bool adjacent = false;        ///< test 300: the row is marked adjacent
    StatusCells cells;
};

bool IsLinearityKey(std::string_view measurementKey) {
    return EqualsIgnoringCase(measurementKey, key::kErAdjacent) ||
           EqualsIgnoringCase(measurementKey, key::kErNonAdjacent);
}

bool IsJudgedColumn(int32_t testId, const CMeasurement& measurement) {
    return measurement.Facts().Is(kJudged) && measurement.Facts().tests.Has(testId);
}

int32_t Judging::Criterion(std::size_t row) const {
    if (!mConfig || row > UINT8_MAX) return 0;
    return ReadInteger(mConfig->GetValue(static_cast<uint8_t>(row), ExposureColumn::kCriterion));
}

/// True for a kVp error of an exposure for which it is enough that one of its two errors passes.
bool Judging::MayPassByEither(const CMeasurement& measurement, std::size_t row) const {
    return mTestId == kRadioAccuracy && IsKvpErrorKey(measurement.RawKey()) && Criterion(row) == kJudgeEither;
}

void Judging::Judge(CMeasurement& measurement) const {
    measurement.UpdateStatus(mLimits.get(), mSelected);
}

bool Judging::IsHeldAgainstLimits(const CMeasurement& measurement, std::size_t row) const {
    const std::string& measurementKey = measurement.RawKey();
    if (mTestId == kRadioLinearity) return measurementKey != key::kAdjacent;
    if (mTestId != kRadioAccuracy) return true;
    if (measurementKey == key::kPercentTimerError) return mConfig && mConfig->pGeneratorSetup == kSetupMaTime;
    if (!IsKvpErrorKey(measurementKey)) return true;
    const int32_t criterion = Criterion(row);
    const int32_t leftAlone = measurementKey == key::kPercentKvpError ? kJudgeAbsolute : kJudgePercent;
    return criterion >= kJudgePercent && criterion <= kJudgeBoth && criterion != leftAlone;
}

/// Judges an error of the accuracy test, if limits apply to it; true when it was judged. An excluded error
/// passes, but a kVp error keeps its status while the criterion of the exposure is unknown.
bool Judging::JudgeAccuracyError(CMeasurement& measurement, std::size_t row) const {
    const bool judged = IsHeldAgainstLimits(measurement, row);
    const int32_t criterion = Criterion(row);
    if (judged)
        Judge(measurement);
    else if (!IsKvpErrorKey(measurement.RawKey()) || criterion == kJudgePercent ||
             criterion == kJudgeAbsolute)
        measurement.Status(kPassed);
    return judged;
}

RowsVerdict Judging::NotApplicable() {
    constexpr int32_t none = kNotTested;
    return {kNotApplicable, {none, none, none, none, none, none, none}};
}

// ------------------------------------------------------------------------- an exposure that was just taken

/// True when the measurement was handled here and no general judgement follows.
bool Judging::JudgeSpecially(CMeasurement& measurement, uint8_t exposureNumber) const {
    const std::string& measurementKey = measurement.RawKey();
    if (mTestId == kRadioAccuracy && IsAccuracyErrorKey(measurementKey)) {
        JudgeAccuracyError(measurement, exposureNumber == 0 ? 0U : exposureNumber - 1U);
        return true;
    }
    if (mTestId != kRadioLinearity) return false;
    if (measurementKey == key::kAdjacent) return true;
    if (!IsLinearityKey(measurementKey)) return false;
    // While a test runs every coefficient is judged as non-adjacent; the first has none before it.
    measurement.Key(key::kErNonAdjacent);
    if (exposureNumber < 2)
        measurement.Status(kPassed);
    else
        Judge(measurement);
    return true;
}

RowsVerdict Judging::JudgeExposure(const MeasurementRow& row, uint8_t exposureNumber) const {
    RowsVerdict verdict;
    const std::size_t index = exposureNumber == 0 ? 0U : exposureNumber - 1U;
    for (const auto& item : row) {
        if (!JudgeSpecially(*item, exposureNumber)) {
            if (mTestId == kFluoroExposure && IsMaxExposureRate(item->RawKey()) && item->HasValidReading())
                item->Key(std::string(key::kMaxExposureRate) +
                          PlainText(static_cast<int32_t>(exposureNumber)));
            if (item->HasValidReading())
                Judge(*item);
            else
                item->Status(kFailed);
        }
        // "Either error may pass" is not decided during a run: for now only the absolute error fails the
        // test; the judgement of all rows at the end decides.
        const bool fails = MayPassByEither(*item, index) ? item->RawKey() == key::kAbsoluteKvpError
                                                         : item->Status() == kFailed;
        if (fails) verdict.status = kFailed;
    }
    return verdict;
}

void Judging::JudgeCoefficient(CMeasurement& coefficient, std::size_t row, bool adjacent) const {
    if (row == 0) {
        coefficient.Status(kPassed);  // no exposure before it to compare with
        return;
    }
    coefficient.Key(adjacent ? key::kErAdjacent : key::kErNonAdjacent);
    Judge(coefficient);
}

// ----------------------------------------------------------------------------------------------- all rows

void Judging::JudgeStored(CMeasurement& measurement, std::size_t row, Walk& walk) const {
    const std::string& measurementKey = measurement.RawKey();
    if (mTestId == kRadioRepro && row < walk.lastReading && IsJudgedColumn(mTestId, measurement)) {
        measurement.Status(kPassed);  // the statistic belongs to the last row
        return;
    }
    if (mTestId == kRadioLinearity && measurementKey == key::kAdjacent) {
        walk.adjacent = measurement.ValueText() == PlainText(StoredOfValue(kFlags, 1));
        return;
    }
    if (mTestId == kRadioLinearity && IsLinearityKey(measurementKey)) {
        // A coefficient can fail only right after its exposure, and when its flag is edited.
        measurement.Key(walk.adjacent ? key::kErAdjacent : key::kErNonAdjacent);
        measurement.Status(kPassed);
        return;
    }
    if (mTestId == kRadioAccuracy && IsAccuracyErrorKey(measurementKey)) {
        const bool either = JudgeAccuracyError(measurement, row) && Criterion(row) == kJudgeEither;
        const bool passed = measurement.Status() != kFailed;
        if (either && measurementKey == key::kPercentKvpError) walk.either = passed;
        if (either && measurementKey == key::kAbsoluteKvpError && passed) walk.either = true;
        return;
    }
    if (!measurement.HasValidReading()) {
        measurement.Status(kFailed);
        return;
    }
    if (measurement.Facts().Is(kQuantity) && measurement.IsEmpty())
        LogDiagnostic("exposure " + PlainText(static_cast<int32_t>(row + 1)) + ": \"" + measurementKey +
                      "\" was not measured and is judged as 0");
    Judge(measurement);
    if (mTestId != kMammoAccRepro) return;
    StatusCells& cells = walk.cells;
    if (measurementKey == key::kPercentError && cells.kVpL38 == kPassed)
        cells.kVpL38 = CellOf(measurement.Status());
    if (measurementKey == key::kCv) {
        if (cells.kVpL39 == kPassed) cells.kVpL39 = CellOf(measurement.Status());
        cells.kVpL36 = cells.kVpL38 == kPassed && cells.kVpL39 == kPassed ? kPassed : kFailed;
    }
}

RowsVerdict Judging::JudgeAll(std::span<const std::shared_ptr<MeasurementRow>> rows) const {
    RowsVerdict verdict;
    Walk walk;
    walk.lastReading = LastReadingOf(rows);
    walk.cells.kVpL36 = walk.cells.kVpL38 = walk.cells.kVpL39 = kPassed;
    for (std::size_t row = 0; row < rows.size(); ++row)
        for (const auto& item : *rows[row]) {
            JudgeStored(*item, row, walk);
            const bool fails = MayPassByEither(*item, row)
                                   ? item->RawKey() == key::kAbsoluteKvpError && !walk.either
                                   : item->Status() == kFailed;
            if (fails) verdict.status = kFailed;
        }
    if (mTestId == kMammoAccRepro) {
        verdict.outcomes.kVpL36 = walk.cells.kVpL36;
        verdict.outcomes.kVpL38 = walk.cells.kVpL38;
        verdict.outcomes.kVpL39 = walk.cells.kVpL39;
    }
    return verdict;
}

}  // namespace vorex

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <utility>

#include "config/config_common.h"
#include "foundation/host_contract.h"
#include "foundation/status_cells.h"
#include "results/measurement.h"

namespace vorex {

/// The outcome of judging: the status of the test, and its meaning for the survey.
struct RowsVerdict {
    int32_t status = kPassed;
    SurveyOutcomes outcomes;
};

/// Judges the measurements of one test: it only sets the status of each, and the limit key of those that
/// change theirs. It knows no result and stores nothing.
///
/// An exposure is judged when it is taken, and all rows are judged at the end of a run, after an edit, and
/// when a person asks for it. The two differ in ways that sites rely on, as the comments explain.
class Judging {
  public:
    /// Without a configuration (null), no criterion is known. Without limits or selection every usable
    /// reading passes.
    Judging(int32_t testId, std::shared_ptr<CConfigCommon> config,
            std::shared_ptr<ILimitData> limits = nullptr, const ISelectedStandards* selected = nullptr)
        : mTestId(testId), mConfig(std::move(config)), mLimits(std::move(limits)), mSelected(selected) {}

    /// A test that is not applicable: status 3, and no outcomes for the survey.
    static RowsVerdict NotApplicable();
    /// The row of the exposure just taken, counted from 1; 0 before the first.
    RowsVerdict JudgeExposure(const MeasurementRow& row, uint8_t exposureNumber) const;
    /// All stored rows; an exposure without a reading has an empty one.
    RowsVerdict JudgeAll(std::span<const std::shared_ptr<MeasurementRow>> rows) const;
    /// A coefficient of linearity of a row, counted from 0, whose adjacent mark a person has set.
    void JudgeCoefficient(CMeasurement& coefficient, std::size_t row, bool adjacent) const;

    /// False for a value of a row, counted from 0, that is never judged: the adjacent flag, and the errors
    /// that the criterion of the exposure or the generator setup excludes.
    bool IsHeldAgainstLimits(const CMeasurement& measurement, std::size_t row) const;

  private:
    /// State of a walk over all rows.
    struct Walk;

    int32_t Criterion(std::size_t row) const;
    bool MayPassByEither(const CMeasurement& measurement, std::size_t row) const;
    void Judge(CMeasurement& measurement) const;
    bool JudgeAccuracyError(CMeasurement& measurement, std::size_t row) const;
    bool JudgeSpecially(CMeasurement& measurement, uint8_t exposureNumber) const;
    void JudgeStored(CMeasurement& measurement, std::size_t row, Walk& walk) const;

    int32_t mTestId;
    std::shared_ptr<CConfigCommon> mConfig;
    std::shared_ptr<ILimitData> mLimits;
    const ISelectedStandards* mSelected;
};

/// "ER Adjacent" or "ER Non Adjacent", as applicable.
bool IsLinearityKey(std::string_view measurementKey);
/// True for a calculated column that stays a number in a stored row.
bool IsJudgedColumn(int32_t testId, const CMeasurement& measurement);

}  // namespace vorex

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

/// What judging came to: the status of the test, and what it means for the survey.
struct RowsVerdict {
    int32_t status = kPassed;
    SurveyOutcomes outcomes;
};

/// Judges the measurements of one test: sets the status of each and the limit key of those that change it,
/// and nothing else. It knows no result and stores nothing.
///
/// An exposure is judged when it is taken, and all rows are judged at the end of a run, after an edit, and
/// when a person asks for it. The two differ in ways that sites rely on: see the comments where they do.
class Judging {
  public:
    /// The configuration may be null: then no criterion is known. Without limits or selection everything that
    /// is a reading passes.
    Judging(int32_t testId, std::shared_ptr<CConfigCommon> config,
            std::shared_ptr<ILimitData> limits = nullptr, const ISelectedStandards* selected = nullptr)
        : mTestId(testId), mConfig(std::move(config)), mLimits(std::move(limits)), mSelected(selected) {}

    /// A test that is set aside: status 3, and no outcome of any mammography test.
    static RowsVerdict NotApplicable();
    /// The row of an exposure that was just taken, counted from 1; 0 before the first.
    RowsVerdict JudgeExposure(const MeasurementRow& row, uint8_t exposureNumber) const;
    /// All stored rows; an exposure without a reading has an empty one.
    RowsVerdict JudgeAll(std::span<const std::shared_ptr<MeasurementRow>> rows) const;
    /// A coefficient of linearity of a row, counted from 0, whose adjacent mark a person has set.
    void JudgeCoefficient(CMeasurement& coefficient, std::size_t row, bool adjacent) const;

    /// False for a value of a row, counted from 0, that limits are never held against: the adjacent flag, and
    /// the errors that the criterion of the exposure or the generator setup leaves alone.
    bool IsHeldAgainstLimits(const CMeasurement& measurement, std::size_t row) const;

  private:
    /// What a walk over all rows carries from cell to cell.
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

/// "ER Adjacent" or "ER Non Adjacent", whatever the case.
bool IsLinearityKey(std::string_view measurementKey);
/// True for a calculated column that stays a number in a stored row.
bool IsJudgedColumn(int32_t testId, const CMeasurement& measurement);

}  // namespace vorex

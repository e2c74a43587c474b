#include "mqsa/survey_verdict.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

namespace st = survey_text;

enum class Verdict : uint8_t { kPass, kFail, kNotApplicable, kBroken };

/// Cells that fail when they are filled and a figure excludes them.
struct Check {
    GridId grid;
    int32_t row;
    int32_t firstColumn;
    int32_t lastColumn;
    const VerdictFigure& figure;
};

// clang-format off
constexpr Check kLightFieldChecks[] = {
    {GridId::kLightField, 3, 1, 1, figure::kLightFieldDeviation},
    {GridId::kLightField, 7, 1, 1, figure::kLightFieldDeviation},
};
constexpr Check kReceptorChecks[] = {
    {GridId::kReceptorEdge, 1, 1, 1, figure::kReceptorDeviation},
    {GridId::kReceptorEdge, 3, 1, 1, figure::kReceptorDeviation},
    {GridId::kReceptorEdge, 5, 1, 1, figure::kReceptorDeviation},
    {GridId::kReceptorEdge, 7, 1, 1, figure::kReceptorDeviation},
};
constexpr Check kPaddleChecks[] = {
    {GridId::kAlignment, 1, 1, 1, figure::kPaddleDeviation},
};
constexpr Check kFocalSpotChecks[] = {
    {GridId::kResolution, 7, 2, 5, figure::kParallelResolution},
    {GridId::kResolution, 8, 2, 5, figure::kPerpendicularResolution},
};
constexpr Check kControlCassetteChecks[] = {
    {GridId::kSmallCassettes, 6, 3, 3, figure::kControlDeviation},
    {GridId::kLargeCassettes, 6, 3, 3, figure::kControlDeviation},
};
constexpr Check kScreenRangeChecks[] = {
    {GridId::kSmallCassettes, 34, 3, 3, figure::kScreenRange},
    {GridId::kLargeCassettes, 34, 3, 3, figure::kScreenRange},
};
constexpr Check kPhantomChecks[] = {
    {GridId::kImageQuality, 7, 2, 2, figure::kBackgroundDensity},
    {GridId::kImageQuality, 13, 2, 2, figure::kFibers},
    {GridId::kImageQuality, 16, 2, 2, figure::kSpeckGroups},
    {GridId::kImageQuality, 19, 2, 2, figure::kMasses},
};
constexpr Check kLuminanceChecks[] = {
    {GridId::kViewbox, 3, 1, 4, figure::kLuminance},
};
constexpr Check kIlluminanceChecks[] = {
    {GridId::kViewbox, 4, 1, 4, figure::kIlluminance},
    {GridId::kViewbox, 5, 1, 4, figure::kIlluminance},
};
// clang-format on

/// The result row of each tracking grid.
struct TrackingGrid {
    GridId grid;
    int32_t resultRow;
};
constexpr TrackingGrid kTrackingGrids[] = {{GridId::kThickness, 9}, {GridId::kImageMode, 10}};
constexpr int32_t kFilmDensity = 7;
constexpr int32_t kEightCentimeterRow = 7;

constexpr int32_t kArtifactAnswerRows[] = {5, 8, 11};
constexpr std::string_view kArtifactClause = "21 CFR 900.12(e)(5)(ix)";

/// Evaluates one table. A cell that fails several rows is collected once.
class Judging {
  public:
    Judging(const SurveyRecord& surveyRecord, const ItemStatuses& statuses, SurveyEvaluation& into)
        : record(surveyRecord), items(statuses), evaluation(into) {}

    void Find(GridId grid, int32_t row, int32_t column, std::string words) {
        Add({PageOf(grid), CellAddress(grid, row, column), std::move(words)});
    }
    void Add(SurveyFinding finding) {
        auto& findings = evaluation.findings;
        if (std::find(findings.begin(), findings.end(), finding) == findings.end())
            findings.push_back(std::move(finding));
    }

    /// True when a figure excludes a cell; notes the cell.
    bool Fails(GridId grid, int32_t row, int32_t column, const VerdictFigure& limit) {
        const SurveyGrid& cells = record.Grid(grid);
        if (!limit.Excludes(cells.Number(row, column))) return false;
        const std::string& shown = cells.At(row, column);
        Find(grid, row, column,
             limit.Excluding(shown.empty() ? Translate(st::kFindingEmpty) : std::string(Trimmed(shown))));
        return true;
    }
    bool FailsAny(std::span<const Check> checks) {
        bool failed = false;
        for (const Check& check : checks)
            for (int32_t column = check.firstColumn; column <= check.lastColumn; ++column)
                if (!record.Grid(check.grid).IsBlank(check.row, column) &&
                    Fails(check.grid, check.row, column, check.figure))
                    failed = true;
        return failed;
    }

    const SurveyRecord& record;
    const ItemStatuses& items;
    SurveyEvaluation& evaluation;
};

Verdict PassUnless(bool failed) {
    return failed ? Verdict::kFail : Verdict::kPass;
}

Verdict Assembly(Judging& judging) {
    Verdict verdict = Verdict::kNotApplicable;
    for (std::size_t i = 0; i < kAssemblyItemCount; ++i) {
        if (judging.items[i] == kFailed) {
            const SurveyItem& item = SurveyItems()[i];
            judging.Add({SurveyPage::kAssembly, item.key,
                         Translate(st::kFindingAnswer, {Translate(item.description)})});
            verdict = Verdict::kFail;
        }
        if (judging.items[i] == kPassed && verdict != Verdict::kFail) verdict = Verdict::kPass;
    }
    return verdict;
}

template <const auto& checks>
Verdict CheckAll(Judging& judging) {
    return PassUnless(judging.FailsAny(checks));
}

Verdict Collimation(Judging& judging) {
    const bool light = judging.FailsAny(kLightFieldChecks);
    const bool receptor = judging.FailsAny(kReceptorChecks);
    const bool paddle = judging.FailsAny(kPaddleChecks);
    return PassUnless(light || receptor || paddle);
}

Verdict Uniformity(Judging& judging) {
    const bool control = judging.FailsAny(kControlCassetteChecks);
    const bool range = judging.FailsAny(kScreenRangeChecks);
    return PassUnless(control || range);
}

Verdict Viewbox(Judging& judging) {
    const bool luminance = judging.FailsAny(kLuminanceChecks);
    const bool illuminance = judging.FailsAny(kIlluminanceChecks);
    return PassUnless(luminance || illuminance);
}

bool AnyDensity(const SurveyRecord& record) {
    for (int32_t row = 4; row <= kEightCentimeterRow; ++row)
        if (!record.Grid(GridId::kThickness).IsBlank(row, kFilmDensity)) return true;
    for (int32_t row = 4; row <= 6; ++row)
        if (!record.Grid(GridId::kImageMode).IsBlank(row, kFilmDensity)) return true;
    return false;
}

/// A result row fails where the measured range leaves the allowed one.
bool RangeFails(Judging& judging, const TrackingGrid& at, bool filledOnly, bool low) {
    const SurveyGrid& grid = judging.record.Grid(at.grid);
    const int32_t allowed = low ? 5 : 7;
    const int32_t measured = low ? 2 : 4;
    if (filledOnly && (grid.IsBlank(at.resultRow, allowed) || grid.IsBlank(at.resultRow, measured)))
        return false;
    const double limit = grid.Number(at.resultRow, allowed);
    const double value = grid.Number(at.resultRow, measured);
    if (low ? limit <= value : limit >= value) return false;
    const std::string_view side = low ? st::kFindingBelow : st::kFindingAbove;
    judging.Find(at.grid, at.resultRow, measured,
                 figure::kTrackingRange.Excluding(Translate(side, {PlainText(value), PlainText(limit)})));
    return true;
}

Verdict TrackingOf(Judging& judging, bool filledOnly) {
    if (!AnyDensity(judging.record)) return Verdict::kPass;
    bool failed = false;
    for (const TrackingGrid& at : kTrackingGrids) {
        const SurveyGrid& grid = judging.record.Grid(at.grid);
        for (bool low : {true, false})
            if (RangeFails(judging, at, filledOnly, low)) failed = true;
        const int32_t lastRow = at.grid == GridId::kThickness ? kEightCentimeterRow : 6;
        for (int32_t row = 4; row <= lastRow; ++row) {
            // An exposure that is left out counts as 0; only the 8 cm one may be.
            const bool mayBeEmpty = filledOnly || row == kEightCentimeterRow;
            if (mayBeEmpty && grid.IsBlank(row, kFilmDensity)) continue;
            if (judging.Fails(at.grid, row, kFilmDensity, figure::kLeastDensity)) failed = true;
        }
    }
    return PassUnless(failed);
}

Verdict Tracking(Judging& judging) {
    return TrackingOf(judging, false);
}
Verdict FilledTracking(Judging& judging) {
    return TrackingOf(judging, true);
}

constexpr int32_t kMasChange = 4;
constexpr int32_t kDensityChange = 5;

/// Distance of two cells below each other as a whole number, half to even.
double WholeDifference(const SurveyGrid& grid, int32_t row, int32_t column) {
    return RoundHalfEven(std::abs(grid.Number(row, column) - grid.Number(row + 1, column)), 0);
}

/// A step from one row to the next fails by its change of mAs or by its change of density.
bool StepFails(Judging& judging, int32_t row) {
    constexpr GridId kGrid = GridId::kDensityControl;
    const SurveyGrid& grid = judging.record.Grid(kGrid);
    const auto find = [&](int32_t column, double step, const VerdictFigure& limit) {
        if (!limit.Excludes(step)) return false;
        judging.Find(kGrid, row, column,
                     limit.Excluding(Translate(st::kFindingStep,
                                               {PlainText(step), grid.At(row, 0), grid.At(row + 1, 0)})));
        return true;
    };
    const double step = WholeDifference(grid, row, kMasChange);
    if (find(kMasChange, step, figure::kLeastStep) || find(kMasChange, step, figure::kMostStep)) return true;
    if (grid.IsBlank(row, kDensityChange) || grid.IsBlank(row + 1, kDensityChange)) return false;
    return find(kDensityChange, WholeDifference(grid, row, kDensityChange), figure::kDensityStep);
}

/// The walk ends at the first step that fails. On the way to the normal step, a filled change of mAs next to
/// an empty one cannot be judged; beyond the normal step, a step with a gap is left out.
Verdict DensitySteps(Judging& judging) {
    constexpr GridId kGrid = GridId::kDensityControl;
    constexpr int32_t kFirst = 5;
    constexpr int32_t kNormal = 9;
    constexpr int32_t kLast = 13;
    const SurveyGrid& grid = judging.record.Grid(kGrid);
    for (int32_t row = kFirst; row < kLast; ++row) {
        const bool filled = !grid.IsBlank(row, kMasChange);
        const bool nextFilled = !grid.IsBlank(row + 1, kMasChange);
        if (filled && !nextFilled && row < kNormal) {
            judging.evaluation.fault =
                Translate(st::kFindingGap, {Translate(PageText(PageOf(kGrid))), grid.At(row, 0),
                                            CellAddress(kGrid, row + 1, kMasChange)});
            return Verdict::kBroken;
        }
        if (filled && nextFilled && StepFails(judging, row)) return Verdict::kFail;
    }
    return Verdict::kPass;
}

/// Older files hold the answer in the language of their time, newer ones in the language-neutral form.
bool IsNo(const std::string& answer) {
    return EqualsIgnoringCase(answer, Translate(text::kFalse)) ||
           EqualsIgnoringCase(answer, DefaultText(text::kFalse, {}));
}

Verdict Artifacts(Judging& judging) {
    const SurveyGrid& grid = judging.record.Grid(GridId::kArtifacts);
    bool failed = false;
    for (int32_t row : kArtifactAnswerRows)
        for (int32_t column = 1; column < grid.Columns(); ++column) {
            if (!IsNo(grid.At(row, column))) continue;
            judging.Find(
                GridId::kArtifacts, row, column,
                Translate(st::kFindingArtifact, {grid.At(row - 1, 0), std::string(kArtifactClause)}));
            failed = true;
        }
    return PassUnless(failed);
}

/// Which columns of a row a verdict goes to. In a row that only the ACR column judges, the other one reads
/// NA, whatever a file had.
enum class Columns : uint8_t { kBoth, kAcr, kMqsa, kAcrOnly };

struct Rule {
    std::size_t row;
    Columns columns;
    Verdict (*decide)(Judging&);
};

// clang-format off
constexpr Rule kPreliminaryRules[] = {
    { 0, Columns::kBoth, Assembly},
    { 1, Columns::kBoth, Collimation},
    { 2, Columns::kBoth, CheckAll<kFocalSpotChecks>},
    { 3, Columns::kMqsa, Tracking},
    { 3, Columns::kAcr,  DensitySteps},
    { 4, Columns::kBoth, Uniformity},
    { 5, Columns::kBoth, Artifacts},
    {12, Columns::kAcr,  Viewbox},
};
constexpr Rule kSummaryRules[] = {
    { 0, Columns::kBoth, Assembly},
    { 2, Columns::kBoth, CheckAll<kLightFieldChecks>},
    { 3, Columns::kBoth, CheckAll<kReceptorChecks>},
    { 4, Columns::kBoth, CheckAll<kPaddleChecks>},
    { 6, Columns::kBoth, CheckAll<kFocalSpotChecks>},
    { 7, Columns::kBoth, CheckAll<kFocalSpotChecks>},
    { 9, Columns::kBoth, CheckAll<kControlCassetteChecks>},
    {10, Columns::kBoth, FilledTracking},
    {11, Columns::kAcrOnly, DensitySteps},
    {13, Columns::kBoth, Uniformity},
    {15, Columns::kBoth, Artifacts},
    {17, Columns::kBoth, CheckAll<kPhantomChecks>},
    {31, Columns::kAcrOnly, CheckAll<kLuminanceChecks>},
    {32, Columns::kAcrOnly, CheckAll<kIlluminanceChecks>},
};

/// Where the outcome of an automatic test goes.
struct CellCopy {
    int32_t StatusCells::*cell;
    std::size_t row;
    Columns columns;
};
constexpr CellCopy kSummaryCopies[] = {
    {&StatusCells::kVpL38, 22, Columns::kBoth}, {&StatusCells::kVpL39, 23, Columns::kBoth},
    {&StatusCells::BQC79,  25, Columns::kAcr},  {&StatusCells::BQC69,  25, Columns::kMqsa},
    {&StatusCells::Dose80, 27, Columns::kBoth}, {&StatusCells::Dose80, 28, Columns::kBoth},
    {&StatusCells::Dose82, 29, Columns::kAcr},  {&StatusCells::Dose75, 29, Columns::kMqsa},
};
constexpr CellCopy kPreliminaryCopies[] = {
    {&StatusCells::kVpL36,  6, Columns::kBoth}, {&StatusCells::kVpL36,  7, Columns::kBoth},
    {&StatusCells::BQC79,   8, Columns::kAcr},  {&StatusCells::BQC69,   8, Columns::kMqsa},
    {&StatusCells::Dose78,  9, Columns::kBoth}, {&StatusCells::Dose80, 10, Columns::kBoth},
};
// clang-format on

void Write(VerdictRow& row, Columns columns, std::string_view text) {
    if (columns != Columns::kMqsa) row[kAcrColumn] = text;
    if (columns == Columns::kBoth || columns == Columns::kMqsa) row[kMqsaColumn] = text;
    if (columns == Columns::kAcrOnly) row[kMqsaColumn] = text::kNotApplicable;
}

std::string_view TextOf(Verdict verdict) {
    switch (verdict) {
        case Verdict::kFail:
            return text::kFail;
        case Verdict::kNotApplicable:
            return text::kNotApplicable;
        case Verdict::kPass:
        case Verdict::kBroken:  // a row starts as passed, and stays so where it cannot be judged
            break;
    }
    return text::kPass;
}

void Apply(std::span<const Rule> rules, Judging& judging, std::span<VerdictRow> table) {
    for (const Rule& rule : rules) {
        const Verdict verdict = rule.decide(judging);
        Write(table[rule.row], rule.columns, TextOf(verdict));
        if (verdict == Verdict::kBroken) return;
    }
}

void Apply(std::span<const CellCopy> copies, const StatusCells& cells, std::span<VerdictRow> table) {
    for (const CellCopy& copy : copies) {
        const int32_t status = cells.*copy.cell;
        std::string_view text = text::kNotApplicable;
        if (status == kPassed) text = text::kPass;
        if (status == kFailed) text = text::kFail;
        Write(table[copy.row], copy.columns, text);
    }
}

}  // namespace

std::string CellAddress(GridId grid, int32_t row, int32_t column) {
    return std::string(GridKey(grid)) + "(" + PlainText(row) + "," + PlainText(column) + ")";
}

void CopyStatusCells(const StatusCells& cells, SurveyTables& tables) {
    Apply(kSummaryCopies, cells, tables.summary);
    Apply(kPreliminaryCopies, cells, tables.preliminary);
}

SurveyEvaluation EvaluateSurvey(const SurveyRecord& record, const ItemStatuses& items,
                                const StatusCells& cells, SurveyTables& tables) {
    SurveyEvaluation evaluation;
    Judging judging(record, items, evaluation);
    Apply(kPreliminaryRules, judging, tables.preliminary);
    Apply(kSummaryRules, judging, tables.summary);
    CopyStatusCells(cells, tables);
    return evaluation;
}

}  // namespace vorex

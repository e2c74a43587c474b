#include "results/result_report.h"

#include <algorithm>

#include "foundation/number_text.h"
#include "foundation/report_markup.h"
#include "foundation/utilities.h"
#include "results/result_common.h"

// The printed result. A row of the table is the margin, name, set value, value, unit, high limit, low limit,
// standard, a spare cell and the fail mark.

namespace vorex {

namespace {

constexpr int32_t kTableStyle = 7;
constexpr std::string_view kNameTail = "      ";
/// Cells between unit and fail mark, and between standard and fail mark.
constexpr std::string_view kUnitToMark = "|||||";
constexpr std::string_view kStandardToMark = "||";
/// Empty margin, name, preset, value and unit of a row for a further standard.
constexpr std::string_view kContinuation = "|||||";

constexpr std::string_view kWords[] = {
    text::kOverRange, text::kUnderRange, text::kPass, text::kFail, text::kNotApplicable,
};

bool Shows(const IReportDocument& report, int32_t option) {
    return (report.Options() & option) != 0;
}

bool ShowsWaveforms(const IReportDocument& report) {
    return Shows(report, kReportWaveforms) && report.Kind() == kFullReport;
}

bool ShowsLimits(const IReportDocument& report) {
    return Shows(report, kReportLimits) && !report.SelectedStandardsForReport.empty();
}

/// A value in the language of the report; loaded words are in the program's language.
std::string ReportValue(const std::string& shown, const IReportDocument& report) {
    if (shown.empty() || IsNumber(shown)) return markup::Number(shown, report);
    const auto* word = std::find_if(std::begin(kWords), std::end(kWords), [&](std::string_view textKey) {
        return EqualsIgnoringCase(shown, Translate(textKey)) ||
               EqualsIgnoringCase(shown, Translate(textKey, &report));
    });
    return word == std::end(kWords) ? markup::Number(shown, report) : Translate(*word, &report);
}

std::string LimitText(const CMeasurement::FoundLimit& limit, const IReportDocument& report) {
    return limit.found ? markup::Number(PlainText(limit.number), report) : std::string();
}

/// Limits and name of a standard as the last cells of a row; empty when none of the standard's limits judges
/// the measurement.
std::string StandardCells(const CMeasurement& measurement, const IStandard& standard,
                          const IReportDocument& report) {
    const auto high = measurement.GetLimit(kHighSide, standard, true, 0);
    const auto low = measurement.GetLimit(kLowSide, standard, true, 0);
    if (!standard.Results().empty() && !high.found && !low.found) return {};
    return LimitText(high, report) + markup::kCell + LimitText(low, report) + markup::kCell +
           markup::Text(standard.Name());
}

std::string BuildReportHeader(const IReportDocument& report) {
    std::string heading = markup::Heading(Translate(text::kResult, &report)) + markup::Heading("");
    heading += markup::Heading(Translate(text::kValue, &report));
    heading += markup::Heading(Translate(text::kUnit, &report));
    if (ShowsLimits(report))
        for (std::string_view caption : {text::kHighLimit, text::kLowLimit, text::kStandard})
            heading += markup::Heading(Translate(caption, &report));
    return heading + markup::kRowEnd;
}

std::string BuildReportColumns(const IReportDocument& report) {
    const int32_t w = (report.Metric(kTextWidth) - 3360) / 6 - 50;
    std::string columns = "<+560|<2440";
    for (int32_t width : {w - 1000, w + 200, w - 100, w - 50, w, w + 500})
        columns += "|>+" + PlainText(width);
    return columns + "|<+!554|<+560;";
}

/// Writes row after row, and repeats the headings on each page.
class ResultTable {
  public:
    explicit ResultTable(IReportDocument& report)
        : mReport(report), mColumns(BuildReportColumns(report)), mHeading(BuildReportHeader(report)) {}

    /// A block heading and the lines under it. The heading is never alone at the end of a page, nor the last
    /// line alone at the beginning of one.
    void PrintBlock(std::string_view caption, const std::vector<std::string>& lines) {
        const std::string first = markup::Line(caption);
        Print(first, first + KeptTogether(lines, 0));
        for (std::size_t i = 0; i < lines.size(); ++i) Print(lines[i], KeptTogether(lines, i));
    }

  private:
    static std::string KeptTogether(const std::vector<std::string>& lines, std::size_t first) {
        if (first >= lines.size()) return {};
        return first + 2 == lines.size() ? lines[first] + lines[first + 1] : lines[first];
    }

    void Print(const std::string& row, const std::string& keptTogether) {
        const std::string needed = mBegun ? keptTogether : mHeading + keptTogether;
        if (mReport.TableHeight(mColumns, needed) > mReport.SpaceLeft()) {
            mReport.NewPage();
            mBegun = false;
        }
        if (!mBegun) mReport.PrintTable(mColumns, mHeading);
        mBegun = true;
        mReport.PrintTable(mColumns, row);
    }

    IReportDocument& mReport;
    std::string mColumns;
    std::string mHeading;
    bool mBegun = false;  ///< the heading is on this page
};

void AddLine(std::vector<std::string>& lines, std::string line) {
    if (!line.empty()) lines.push_back(std::move(line));
}

/// The value that was set for a measurement of an exposure, counted from 0. The preset is the X of limits,
/// which is the same for all exposures, even where each sets a voltage of its own.
TaggedValue SetValue(const CMeasurement& item, const CConfigCommon* config, std::size_t row) {
    if (config == nullptr || !item.Facts().Is(kHasPreset)) return item.RawPresetValue();
    if (kWithKvs.Has(config->pTestID))
        return config->GetValue(static_cast<uint8_t>(row), ExposureColumn::kKv);
    if (config->pTestID == kMammoAec) return config->pNominalKV;
    return item.RawPresetValue();
}

/// Lines of an exposure, counted from 0, without the statistics of the test.
std::vector<std::string> ExposureLines(const CResultCommon& result, const CConfigCommon* config,
                                       std::size_t row, const IReportDocument& report) {
    std::vector<std::string> lines;
    if (!result.HasReading(row) && !Shows(report, kReportFailuresOnly))
        lines.push_back(markup::Line(Translate(text::kNoReading, &report)));
    for (const auto& item : *result.Rows()[row])
        if (item->RawKey() != key::kImportWaveform && !item->Facts().IsTestWide(result.TestId))
            AddLine(lines, item->BuildReportLine(report, result.IsHeldAgainstLimits(*item, row),
                                                 SetValue(*item, config, row)));
    return lines;
}

/// Lines of the statistics, from the last exposure with a reading.
std::vector<std::string> CalculationLines(const CResultCommon& result, const IReportDocument& report) {
    std::vector<std::string> lines;
    const MeasurementRow* last = result.LastReading();
    if (last == nullptr) return lines;
    for (const auto& item : *last)
        if (item->Facts().IsTestWide(result.TestId))
            AddLine(lines, item->BuildReportLine(report, true, item->RawPresetValue()));
    return lines;
}

bool HasWaveform(const CResultCommon& result, int32_t exposure) {
    return result.KvWaveform(exposure)->ValueCount() > 0 || result.MaWaveform(exposure)->ValueCount() > 0;
}

}  // namespace

std::string CMeasurement::BuildReportLine(const IReportDocument& report, bool heldAgainstLimits,
                                          const TaggedValue& setValue) const {
    if (Shows(report, kReportFailuresOnly) && mStatus != kFailed) return {};
    const bool limits = ShowsLimits(report);
    const std::string shown = ShownText();
    std::string start = markup::kCell + markup::Text(Translate(mLabels->description, &report));
    start.append(kNameTail) += markup::kCell;
    start += markup::Text(ReportValue(FormatValue(setValue), report)) + markup::kCell +
             markup::Text(ReportValue(shown, report)) + markup::kCell;
    if (!limits || IsValidReading(shown)) start += markup::Text(UnitText(mLabels->unit, &report));
    const auto end = [&](std::string_view toMark) {
        std::string cells;
        if (mStatus == kFailed) cells.append(toMark).append(markup::kFailMark);
        return cells + markup::kRowEnd;
    };
    std::string line;
    if (limits && heldAgainstLimits) {
        for (const auto& standard : report.SelectedStandardsForReport) {
            const std::string cells = StandardCells(*this, *standard, report);
            if (cells.empty()) continue;
            line += line.empty() ? start + markup::kCell : std::string(kContinuation);
            line += cells + end(kStandardToMark);
        }
    }
    return line.empty() ? start + end(kUnitToMark) : line;
}

void PrintResult(const CResultCommon& result, const CConfigCommon* config, IReportDocument& report) {
    report.Style(kTableStyle);
    ResultTable table(report);
    const bool everyBlock = !Shows(report, kReportFailuresOnly);
    const bool waveforms = ShowsWaveforms(report);
    for (std::size_t row = 0; row < result.Rows().size(); ++row) {
        const std::vector<std::string> lines = ExposureLines(result, config, row, report);
        if (everyBlock || !lines.empty() || (waveforms && HasWaveform(result, static_cast<int32_t>(row + 1))))
            table.PrintBlock(Translate(text::kExposureHeading, &report) + std::to_string(row + 1), lines);
    }
    const std::vector<std::string> calculations = CalculationLines(result, report);
    if (!calculations.empty()) table.PrintBlock(Translate(text::kCalculations, &report), calculations);
    for (int32_t exposure = 1; waveforms && exposure <= result.ExposureCount(); ++exposure) {
        result.KvWaveform(exposure)->PrintReport(&report);
        result.MaWaveform(exposure)->PrintReport(&report);
    }
}

}  // namespace vorex

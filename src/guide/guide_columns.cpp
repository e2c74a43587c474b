#include "guide/guide_columns.h"

#include <algorithm>

#include "foundation/number_text.h"
#include "foundation/vocabulary.h"
#include "results/result_columns.h"
#include "views/result_view.h"

namespace vorex {

namespace {

/// Differences between the guide's columns and the result's.
struct Difference {
    int32_t kind;  ///< detector kind, 0 for every kind
    std::string_view key;
    std::string_view caption;  ///< empty: that of the result
    int16_t width;
};

// clang-format off
constexpr Difference kDifferences[] = {
    {kPelomark, key::kImportWaveform,   text::kExposures,      1200},
    {0,         key::kPulseRate,        {},                    1500},
    {0,         key::kPulseWidth,       {},                    1500},
    {0,         key::kPhantomThickness, {},                    1600},
    {0,         key::kMode,             {},                    1200},
    {0,         key::kFluoroKvpError,   text::kPercentKvError, kColumnWidth},
};
constexpr int16_t kDescriptionWidth = 550;
constexpr int16_t kVerdictWidth = 80;
// clang-format on

bool KnowsLimit(const IStandard& standard, const std::string& limitKey) {
    const ExpectedResults& limits = standard.Results();
    return std::any_of(limits.begin(), limits.end(), [&](const auto& limit) {
        // For the maximum rate, each exposure has its own limit.
        return limit->Key() == limitKey || (IsMaxExposureRate(limitKey) && IsMaxExposureRate(limit->Key()));
    });
}

GuideColumn ColumnOf(const CMeasurement& measurement, int32_t kind) {
    GuideColumn column{measurement.RawKey(), measurement.RawDescription(), kColumnWidth};
    for (const Difference& row : kDifferences) {
        if (row.key != measurement.RawKey() || (row.kind != 0 && row.kind != kind)) continue;
        if (!row.caption.empty()) column.caption = row.caption;
        column.width = row.width;
    }
    if (IsWaveformQuantity(column.key)) column.key.insert(0, key::kErPrefix);
    return column;
}

}  // namespace

std::vector<GuideColumn> GuideColumns(const CConfigCommon& configuration) {
    std::vector<GuideColumn> columns;
    for (const auto& measurement : vorex::BuildColumns(configuration)) {
        const bool row = configuration.pTestID == kRadioRepro &&
                         IsTestWideKey(configuration.pTestID, measurement->RawKey());
        if (!row) columns.push_back(ColumnOf(*measurement, configuration.DetectorName));
    }
    return columns;
}

std::vector<GuideColumn> SurveyColumns() {
    return {{std::string(key::kDescription), std::string(text::kDescription), kDescriptionWidth},
            {std::string(key::kPass), std::string(text::kPass), kVerdictWidth},
            {std::string(key::kFail), std::string(text::kFail), kVerdictWidth},
            {std::string(key::kNotApplicable), std::string(text::kNotApplicable), kVerdictWidth}};
}

Standards ChosenStandards(const ILimitData* limits, const ISelectedStandards* selected) {
    Standards chosen;
    const auto all = limits != nullptr ? limits->Standards() : nullptr;
    if (!all || selected == nullptr) return chosen;
    for (const StandardName& name : selected->Standards())
        if (auto standard = all->FindExpectedResult(0, name.name, name.version)) chosen.push_back(standard);
    return chosen;
}

std::string HiddenColumns(const std::vector<GuideColumn>& columns, const Standards& chosen) {
    std::string hidden;
    if (chosen.empty()) return hidden;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::string& columnKey = columns[i].key;
        if (FactsOf(columnKey).Is(vorex::kAlwaysShown)) continue;
        const std::string limitKey = LimitKeyOf(columnKey);
        if (std::any_of(chosen.begin(), chosen.end(),
                        [&](const auto& standard) { return KnowsLimit(*standard, limitKey); }))
            continue;
        if (!hidden.empty()) hidden += ',';
        hidden += PlainText(static_cast<int32_t>(i + 1));
    }
    return hidden;
}

}  // namespace vorex

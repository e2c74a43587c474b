#include "guide/guide_details.h"

#include <algorithm>

#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "results/result_columns.h"
#include "views/result_keys.h"

namespace vorex {

namespace {

constexpr std::size_t kNarrowTable = 6;  ///< a table with fewer columns is shown completely
constexpr std::string_view kMasKeys[] = {key::kMa, key::kMas, key::kMasPulse, key::kDoseMas};

void AppendUnit(std::string& text, const std::string& unitKey) {
    if (!unitKey.empty()) text.append(" ").append(UnitText(unitKey));
}

/// "Site 1: ≥ 76 KV, ≤ 84 KV"; empty when the standard does not judge the measurement.
std::string LimitLine(const CMeasurement& measurement, const IStandard& standard) {
    struct Side {
        int32_t side;
        std::string_view sign;
    };
    constexpr Side kSides[] = {{kLowSide, "\u2265 "}, {kHighSide, "\u2264 "}};
    std::string line;
    for (const Side& side : kSides) {
        const TaggedValue limit = measurement.GetLimitValue(standard, side.side, kCalculatedValue | kAsText);
        const std::string number = TextOf(limit);
        if (number.empty()) continue;
        line.append(line.empty() ? ": " : ", ").append(side.sign).append(number);
        AppendUnit(line, measurement.RawUnit());
    }
    if (line.empty()) return {};
    std::string name = standard.Name();
    if (!standard.Version().empty()) name += " " + standard.Version();
    return "    " + name + line;
}

/// "kVp Avg: 80.1 KV - Pass", and a line for each standard that judges it.
void AddMeasurement(std::vector<std::string>& lines, const CMeasurement& measurement,
                    const Standards& chosen) {
    const std::string shown = measurement.ShownText();
    std::string line = measurement.Description() + ": " + shown;
    if (!shown.empty() && measurement.HasValidReading()) AppendUnit(line, measurement.RawUnit());
    const std::string status = shown.empty() ? std::string() : StatusText(measurement.Status());
    if (!status.empty()) line += " - " + status;
    lines.push_back(std::move(line));
    for (const auto& standard : chosen)
        if (std::string limit = LimitLine(measurement, *standard); !limit.empty())
            lines.push_back(std::move(limit));
}

std::vector<std::string> KeysToShow(const PressedCell& cell) {
    std::vector<std::string> keys;
    if (IsMasFamily(cell.columnKey))
        keys.assign(std::begin(kMasKeys), std::end(kMasKeys));
    else
        keys.emplace_back(cell.columnKey);
    if (cell.columnKeys.size() < kNarrowTable && !cell.columnKeys.empty())
        keys.assign(cell.columnKeys.begin() + 1, cell.columnKeys.end());
    return keys;
}

using KeyOf = std::string (*)(std::string_view);

}  // namespace

std::vector<std::string> CellDetails(const CResultCommon& result, const PressedCell& cell,
                                     const Standards& chosen) {
    std::vector<std::string> lines;
    std::vector<std::string> values;
    const std::vector<std::string> keys = KeysToShow(cell);
    const auto show = [&](const MeasurementRow& row, KeyOf keyOf) {
        for (const std::string& columnKey : keys) {
            const CMeasurement* measurement = FindNamed(row, keyOf(columnKey));
            if (measurement == nullptr || measurement->RawKey() == key::kImportWaveform) continue;
            values.push_back(measurement->ShownText());
            const bool held = result.IsHeldAgainstLimits(*measurement, cell.exposure - 1U);
            AddMeasurement(lines, *measurement, held ? chosen : Standards{});
        }
    };
    const auto& rows = result.Rows();
    if (cell.exposure >= 1 && cell.exposure <= rows.size() && rows[cell.exposure - 1U])
        show(*rows[cell.exposure - 1U], ValueKeyOf);
    if (const MeasurementRow* last = result.LastReading(); last != nullptr && result.TestId == kRadioRepro) {
        show(*last, MeanKeyOf);
        show(*last, VariationKeyOf);
    }
    if (lines.empty()) return lines;
    std::string heading;
    if (cell.exposure > 0)
        heading = Translate(text::kExposureNumber) + PlainText(static_cast<int32_t>(cell.exposure));
    if (keys.size() > 1) {
        std::string joined = values.front();
        for (std::size_t i = 1; i < values.size(); ++i) joined.append(", ").append(values[i]);
        heading += heading.empty() ? joined : ": " + joined;
    }
    if (!heading.empty()) lines.insert(lines.begin(), heading);
    return lines;
}

}  // namespace vorex

#pragma once

#include <string>
#include <utility>

#include "reports/report_document.h"

namespace vorex::host_test {

/// Every character is half as wide as the text is high: 10 twips for each point.
class EvenMetrics final : public ITextMetrics {
  public:
    int32_t Advance(char32_t /*character*/, ReportFace /*face*/) const override { return 500; }
};

/// A page of 10,000 by 2,000 twips. A row of one line of 7 points is 194 high, every further line 168; 70
/// characters are 4,900 wide.
inline constexpr ReportPaper kSmallPaper = {10200, 2200, 100, 100, 100};
inline constexpr const char* kTwoColumns = "<+5000|<+5000;";

inline ReportSettings SettingsFor(const ReportPaper& paper) {
    ReportSettings settings;
    settings.paper = paper;
    settings.facts.title = "Room 3";
    settings.facts.language = "en";
    settings.facts.failWord = "Fail";
    settings.facts.passWord = "Pass";
    settings.facts.contents = "Contents";
    return settings;
}

/// Texts of a page's table rows: lines of a cell joined by "/", cells by "|", rows each on a line.
inline std::string RowsOf(const ReportPage& page) {
    std::string rows;
    for (const ReportItem& item : page.items) {
        const auto* table = std::get_if<ReportTable>(&item);
        if (table == nullptr) continue;
        for (const ReportRow& row : table->rows) {
            std::string words = row.repeated ? "repeated:" : "";
            for (const ReportCell& cell : row.cells) {
                if (&cell != &row.cells.front()) words += "|";
                for (const ReportLine& line : cell.lines)
                    words += (&line == &cell.lines.front() ? "" : "/") + std::string(line.text);
            }
            rows += words + "\n";
        }
    }
    return rows;
}

}  // namespace vorex::host_test

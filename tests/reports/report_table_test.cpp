#include "reports/report_table.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/report_markup.h"

namespace vorex {
namespace {

const std::string kFive = "<+560|<2440|>+900|>+!554|<+560;";

std::string Told(const std::string& rows) {
    TextStore texts;
    std::string told;
    for (const ReportRow& row : ParseReportRows(rows, ParseReportColumns(kFive, 9000), texts)) {
        told += row.heading ? "H:" : row.group ? "G:" : row.failed ? "F:" : "R:";
        for (const ReportCell& cell : row.cells)
            told += " " + std::to_string(cell.column) + (cell.heading ? "*" : "") +
                    (cell.mark == ReportMark::kFail ? "x" : "") + "=" + std::string(cell.text);
        told += "\n";
    }
    return told;
}

TEST(ReportTable, ColumnsTakeAlignmentWidthAndPlaceFromTheirDefinition) {
    const auto columns = ParseReportColumns(kFive, 9000);
    ASSERT_EQ(columns.size(), 5U);
    const ReportColumn wanted[] = {{0, 560, ReportAlign::kLeft, false},
                                   {560, 2440, ReportAlign::kLeft, false},
                                   {3000, 900, ReportAlign::kRight, false},
                                   {3900, 554, ReportAlign::kRight, true},
                                   {4454, 560, ReportAlign::kLeft, false}};
    for (std::size_t i = 0; i < columns.size(); ++i) EXPECT_EQ(columns[i], wanted[i]) << i;
}

TEST(ReportTable, AColumnThatCouldShowNoNumberIsWidenedAtTheCostOfTheWideOnes) {
    // 4,000 + 100 + 4,000: the narrow one becomes 660, and each wide one gives 280 of the 560 beyond 8,100.
    const auto columns = ParseReportColumns("<+4000|>+100|>+4000;", 8100);
    ASSERT_EQ(columns.size(), 3U);
    EXPECT_EQ(columns[0].width, 3720);
    EXPECT_EQ(columns[1].width, 660);
    EXPECT_EQ(columns[2].width, 3720);
    EXPECT_EQ(columns[2].left, 4380);
}

TEST(ReportTable, NoDefinitionReachesBeyondThePaper) {
    for (const char* definition :
         {"<+20000;", "<+560|<90000|>+-400|<+560;", "", "|||||||||||||||||||||||||||;", "<+1|<+2|<+3;"}) {
        const auto columns = ParseReportColumns(definition, 9000);
        ASSERT_FALSE(columns.empty()) << definition;
        EXPECT_LE(columns.back().left + columns.back().width, 9000) << definition;
        for (const ReportColumn& column : columns) EXPECT_GT(column.width, 0) << definition;
    }
}

TEST(ReportTable, RowsAreReadCellByCell) {
    const std::string mark(markup::kFailMark);
    const struct {
        std::string rows, told;
    } cases[] = {
        {"|{\\i\\b Result:}|{\\i\\b Value};", "H: 1*=Result: 2*=Value\n"},
        {"|Exposure 1;|kVp      |80.6;", "G: 1=Exposure 1\nR: 1=kVp 2=80.6\n"},
        {"|kVp|80.6|" + mark + ";", "F: 1=kVp 2=80.6 3x=\n"},
        // A label without a value heads nothing, whether its value is an empty cell or it is below a heading.
        {"|HVL||;|      Filter;", "R: 1=HVL\nR: 1=      Filter\n"},
        {";", "R:\n"},
        {"|a|b", "R: 1=a 2=b\n"},
        // What is beyond the last column joins it.
        {"|a|b|c|d|e|f;", "R: 1=a 2=b 3=c 4=d e f\n"},
        {"|a|b|c|d|" + mark + "e;", "F: 1=a 2=b 3=c 4x=d e\n"},
        {"|" + markup::Text("a|b;c{d}e\\f") + "|1;", "R: 1=a|b;c{d}e\\f 2=1\n"},
        {markup::Heading("x}y|z") + ";", "G: 1*=x}y|z\n"},
        {"|a\\|b|{c}\\", "R: 1=a|b 2={c}\\\n"},
        {"|bad\xFF byte\x01|1;", "R: 1=bad\xEF\xBF\xBD byte 2=1\n"},
    };
    for (const auto& c : cases) EXPECT_EQ(Told(c.rows), c.told) << c.rows;
}

TEST(ReportTable, AFramedRowHasNoCellBeyondItsColumn) {
    TextStore texts;
    const auto columns = ParseReportColumns("<+#5000|<+#5000;", 10000);
    EXPECT_TRUE(columns[0].ruled && columns[1].ruled);
    const auto rows = ParseReportRows("{\\i\\b Head};Site: |;a|b;", columns, texts);
    EXPECT_TRUE(rows[0].heading) << "one heading is enough";
    for (const ReportRow& row : rows)
        for (const ReportCell& cell : row.cells) EXPECT_EQ(cell.span, 1) << cell.text;
    EXPECT_FALSE(rows[1].heading || rows[1].group);
}

}  // namespace
}  // namespace vorex

#include "reports/report_text.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/report_markup.h"
#include "reports/report_fixture.h"

namespace vorex {
namespace {

const std::string kColumns = "<+560|<2440|>+900|>+900|>+!554|<+560;";

std::string Blanks(std::size_t count) {
    return std::string(count, ' ');
}

TEST(ReportText, ASmallReportReadsAsWrittenByHand) {
    ReportDocument report(host_test::SettingsFor(EndlessReportPaper()));
    report.PrintTitle("Room 3", "Fail");
    report.PrintTable(kColumns, "|{\\i\\b Result:}|{\\i\\b Value}|{\\i\\b Unit};");
    report.PrintTable(kColumns, "|Exposure 1;");
    report.PrintTable(kColumns, "|kVp Avg      |80.6|KV;");
    report.PrintTable(kColumns, "|Calculations;");
    report.PrintTable(kColumns, "|CV Exposure      |0.24||" + std::string(markup::kFailMark) + ";");
    report.PrintHeading("Linearity", "Pass");
    report.PrintTable("<+560|<+5000;", "|" + markup::Text("a|b;c{d}e\\f") + ";");
    EXPECT_EQ("\n" + ReportText(report.Finish()), R"(
Room 3                                                                                        ✗ Fail
====================================================================================================

  Result:         Value      Unit
  Exposure 1
  kVp Avg          80.6        KV

  Calculations
  CV Exposure      0.24              ✗ Fail

Linearity                                                                                     ✓ Pass
----------------------------------------------------------------------------------------------------

  a|b;c{d}e\f
)");
}

const std::string kLimitColumns = "<+560|<2440|>+660|>+900|>+900|>+900|>+900|>+900|<+!554|<+560;";

TEST(ReportText, HeadingsWrapBeforeTheNamesOfTheRows) {
    ReportDocument report(host_test::SettingsFor(EndlessReportPaper()));
    std::string heading;
    for (const char* caption : {"Result:", "", "Value", "Unit", "Limite haute", "Limite basse", "Norme"})
        heading += markup::Heading(caption);
    report.PrintTable(kLimitColumns, heading + ";");
    report.PrintTable(kLimitColumns, "|kVp moyen - kVp nominal      |28|28,3|kV|0,4|0,28|21 CFR 900.12||" +
                                         std::string(markup::kFailMark) + ";");
    // 23 for the name, five columns of 8, 13 for the standard, 6 for the mark, and two blanks between them.
    EXPECT_EQ("\n" + ReportText(report.Finish()), R"(
  Result:                               Value      Unit    Limite    Limite          Norme
                                                            haute     basse
  kVp moyen - kVp nominal        28      28,3        kV       0,4      0,28  21 CFR 900.12  ✗ Fail
)");
}

TEST(ReportText, AWordBreaksOnlyWhereNoTextCanWrap) {
    ReportDocument report(host_test::SettingsFor(EndlessReportPaper()));
    report.PrintTable(kLimitColumns,
                      "|Expositionsrate      |80|3641|mR/s|4000|3000|State regulation on diagnostic X-ray "
                      "equipment, section 12, as amended||" +
                          std::string(markup::kFailMark) + ";");
    report.PrintTable(kColumns, "|" + std::string(300, 'x') + "|Parenchymdosis|mrad;");
    // 15 for the name, five columns of 8 and 6 for the mark leave 23 for the standard.
    const std::string whole = R"(
  Expositionsrate        80      3641      mR/s      4000      3000      State regulation on  ✗ Fail
                                                                            diagnostic X-ray
                                                                      equipment, section 12,
                                                                                  as amended
)";
    const std::string text = "\n" + ReportText(report.Finish());
    EXPECT_EQ(text.substr(0, whole.size()), whole);
    EXPECT_NE(text.find("xx  Parenchymdosis      mrad\n  xxx"), std::string::npos) << text;
}

TEST(ReportText, AFigureIsDrawnInCharacters) {
    ReportDocument report(host_test::SettingsFor(EndlessReportPaper()));
    report.BeginFigure("mA Waveform", 2300);
    report.DrawLine(0, 0, 0, 2300);
    report.DrawLine(0, 2300, 9700, 2300);
    const int32_t x[] = {0, 9700};
    const int32_t y[] = {1000, 1000};
    report.PlotPoints(x, y);
    report.DrawText(0, 2000, "Time");
    report.Alignment(kAlignCentre);
    report.DrawText(4850, 2000, "milliseconds");
    report.Alignment(kAlignRight);
    report.DrawText(9700, 2000, "100");
    report.Alignment(kAlignLeft);
    report.EndFigure();
    const std::string text = ReportText(report.Finish());
    // 24 lines for 2,300 twips: the curve is in line 10, the label (placed by its top) in line 21.
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find('\n', begin);
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    ASSERT_EQ(lines.size(), 25U);
    EXPECT_EQ(lines[11], "  " + std::string(98, '*'));
    ASSERT_EQ(lines[22].substr(0, 6), "  Time");
    EXPECT_NEAR(static_cast<double>(lines[22].find("milliseconds")) + 6, 2 + 49, 1) << "its middle";
    EXPECT_NEAR(static_cast<double>(lines[22].size()), 100, 1) << lines[22];
    EXPECT_EQ(lines[24], "  " + std::string(98, '-'));
}

/// On this paper the rules of 0.75, 0.125 and 0.125 of the width would be in columns 0, 74, 87 and 99; the
/// word of eleven letters moves one to the left.
TEST(ReportText, AFramedTableReadsAsWrittenByHand) {
    ReportDocument report(host_test::SettingsFor(EndlessReportPaper()));
    report.Alignment(kAlignCentre);
    report.PrintHeading("SUMMARY", "Log");
    report.Alignment(kAlignLeft);
    report.PrintTable(
        "<+#7639|^+#1273|^+#1273;",
        "{\\i\\b Tests}|{\\i\\b ACR Guides (Pass/Fail)}|{\\i\\b MQSA};"
        "1.  Assembly|Pass|" +
            std::string(markup::kFailMark) +
            "Fail;"
            "    dose on your unit, as it was told by a physicist is                    mrad|-|-;"
            "Signature\r\n|;");
    report.DrawLine(0, 500, 10186, 500);
    report.PrintTable("<+#5093|<+#5093;", "Site: A|;");
    EXPECT_EQ("\n" + ReportText(report.Finish()), R"(
                                              SUMMARY
                                                Log

+------------------------------------------------------------------------+-------------+-----------+
| Tests                                                                  | ACR Guides  |   MQSA    |
|                                                                        | (Pass/Fail) |           |
+------------------------------------------------------------------------+-------------+-----------+
| 1.  Assembly                                                           |    Pass     |  ✗ Fail   |
|     dose on your unit, as it was told by a physicist                   |      -      |     -     |
|     is                    mrad                                         |             |           |
+------------------------------------------------------------------------+-------------+-----------+
| Signature                                                              |             |           |
|                                                                        |             |           |
+------------------------------------------------------------------------+-------------+-----------+
----------------------------------------------------------------------------------------------------

+-------------------------------------------------+------------------------------------------------+
| Site: A                                         |                                                |
+-------------------------------------------------+------------------------------------------------+
)");
}

TEST(ReportText, AFramedColumnGivesWayToALongWord) {
    ReportDocument report(host_test::SettingsFor(EndlessReportPaper()));
    report.PrintTable("<+#7639|^+#1273|^+#1273;",
                      "Dose|Bestanden|" + std::string(markup::kFailMark) + "Durchgefallenes;");
    const std::string text = ReportText(report.Finish());
    EXPECT_NE(text.find("Durchgefallenes"), std::string::npos) << text;
    EXPECT_EQ(text.find('\n'), 100U);
}

TEST(ReportText, AShortTextOfSeveralLinesKeepsToItsColumn) {
    ReportDocument report(host_test::SettingsFor(EndlessReportPaper()));
    report.PrintTable("<+3000|<+5000;", "Room|first\r\nsecond;Unit|one;");
    const std::string text = ReportText(report.Finish());
    const std::size_t column = text.find("first");
    ASSERT_NE(column, std::string::npos) << text;
    EXPECT_NE(text.find("first\n" + Blanks(column) + "second\n  Unit"), std::string::npos) << text;
}

}  // namespace
}  // namespace vorex

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
    EXPECT_EQ(ReportText(report.Finish()), "Room 3" + Blanks(88) + "✗ Fail\n" + std::string(100, '=') +
                                               "\n"
                                               "\n"
                                               "  Result:         Value      Unit\n"
                                               "  Exposure 1\n"
                                               "  kVp Avg          80.6        KV\n"
                                               "\n"
                                               "  Calculations\n"
                                               "  CV Exposure      0.24              ✗ Fail\n"
                                               "\n"
                                               "Linearity" +
                                               Blanks(85) + "✓ Pass\n" + std::string(100, '-') +
                                               "\n"
                                               "\n"
                                               "  a|b;c{d}e\\f\n");
}

TEST(ReportText, LongTextsWrapInTheirColumn) {
    ReportDocument report(host_test::SettingsFor(EndlessReportPaper()));
    const std::string name =
        "a name of many words that goes on and on and on until it has no room any more at all";
    report.PrintTable(kColumns, "|" + name + " " + name + "|80.6|KV;");
    const std::string text = ReportText(report.Finish());
    std::size_t lines = 0;
    std::size_t begin = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', begin)) {
        EXPECT_LE(end - begin, 100U);
        begin = end + 1;
        ++lines;
    }
    EXPECT_EQ(lines, 3U);  // 80 columns for 171 characters
    EXPECT_NE(text.find("80.6        KV\n"), std::string::npos);
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
    EXPECT_EQ(ReportText(report.Finish()),
              "  Result:" + Blanks(31) + "Value" + Blanks(6) + "Unit" + Blanks(4) + "Limite" + Blanks(4) +
                  "Limite" + Blanks(10) + "Norme\n" + Blanks(60) + "haute" + Blanks(5) + "basse\n" +
                  "  kVp moyen - kVp nominal" + Blanks(8) + "28" + Blanks(6) + "28,3" + Blanks(8) + "kV" +
                  Blanks(7) + "0,4" + Blanks(6) + "0,28  21 CFR 900.12  ✗ Fail\n");
}

TEST(ReportText, AWordBreaksOnlyWhereNoTextCanWrap) {
    ReportDocument report(host_test::SettingsFor(EndlessReportPaper()));
    report.PrintTable(kLimitColumns,
                      "|Expositionsrate      |80|3641|mR/s|4000|3000|State regulation on diagnostic X-ray "
                      "equipment, section 12, as amended||" +
                          std::string(markup::kFailMark) + ";");
    report.PrintTable(kColumns, "|" + std::string(300, 'x') + "|Parenchymdosis|mrad;");
    // 15 for the name, five columns of 8 and 6 for the mark leave 23 for the standard.
    const std::string whole = "  Expositionsrate" + Blanks(8) + "80" + Blanks(6) + "3641" + Blanks(6) +
                              "mR/s" + Blanks(6) + "4000" + Blanks(6) + "3000" + Blanks(6) +
                              "State regulation on  ✗ Fail\n" + Blanks(76) + "diagnostic X-ray\n" +
                              Blanks(70) + "equipment, section 12,\n" + Blanks(82) + "as amended\n";
    const std::string text = ReportText(report.Finish());
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
    const std::string separator =
        "+" + std::string(72, '-') + "+" + std::string(13, '-') + "+" + std::string(11, '-') + "+\n";
    const std::string half = "+" + std::string(49, '-') + "+" + std::string(48, '-') + "+\n";
    EXPECT_EQ(ReportText(report.Finish()),
              Blanks(46) + "SUMMARY\n" + Blanks(48) +
                  "Log\n"
                  "\n" +
                  separator + "| Tests" + Blanks(66) +
                  "| ACR Guides  |   MQSA    |\n"
                  "|" +
                  Blanks(72) + "| (Pass/Fail) |           |\n" + separator + "| 1.  Assembly" + Blanks(59) +
                  "|    Pass     |  ✗ Fail   |\n"
                  "|     dose on your unit, as it was told by a physicist" +
                  Blanks(19) +
                  "|      -      |     -     |\n"
                  "|     is                    mrad" +
                  Blanks(41) + "|             |           |\n" + separator + "| Signature" + Blanks(62) +
                  "|             |           |\n"
                  "|" +
                  Blanks(72) + "|             |           |\n" + separator + std::string(100, '-') +
                  "\n"
                  "\n" +
                  half + "| Site: A" + Blanks(41) + "|" + Blanks(48) + "|\n" + half);
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

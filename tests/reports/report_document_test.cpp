#include "reports/report_document.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "foundation/report_markup.h"
#include "reports/report_fixture.h"

namespace vorex {
namespace {

using host_test::kSmallPaper;
using host_test::kTwoColumns;
using host_test::RowsOf;
using host_test::SettingsFor;
using Texts = std::vector<std::string>;

class ReportDocumentTest : public testing::Test {
  protected:
    /// Rows of a number and "x", as they are given; with an empty column in front of them.
    static std::string Lines(int first, int last, const std::string& before = {}) {
        std::string rows;
        for (int i = first; i <= last; ++i) rows += before + "row " + std::to_string(i) + "|x;";
        return rows;
    }
    /// The same as they are printed.
    static std::string Expected(int first, int last) {
        std::string rows = Lines(first, last);
        std::replace(rows.begin(), rows.end(), ';', '\n');
        return rows;
    }
    /// The rows of each page.
    Texts Pages() {
        Texts pages;
        for (const ReportPage& page : report.Finish().pages) pages.push_back(RowsOf(page));
        return pages;
    }

    host_test::EvenMetrics metrics;
    ReportDocument report{SettingsFor(kSmallPaper), &metrics};
    const std::string heading = markup::Heading("Name").substr(1) + markup::Heading("Value") + ";";
    const std::string threeColumns = "<+4000|<+3000|<+3000;";
};

TEST_F(ReportDocumentTest, ATableContinuesUnderItsHeadingsOnTheNextPage) {
    report.PrintTable(kTwoColumns, heading + Lines(1, 12));
    EXPECT_EQ(Pages(), (Texts{"Name|Value\n" + Expected(1, 9), "repeated:Name|Value\n" + Expected(10, 12)}));
    // Rows printed one by one.
    report.PrintTable(kTwoColumns, heading);
    for (int i = 1; i <= 10; ++i) report.PrintTable(kTwoColumns, Lines(i, i));
    EXPECT_EQ(Pages(), (Texts{"Name|Value\n" + Expected(1, 9), "repeated:Name|Value\n" + Expected(10, 10)}));
}

/// A heading of five lines is 866 high, one of six 1,034.
TEST_F(ReportDocumentTest, HeadingsHigherThanHalfAPageAreNotRepeated) {
    for (const auto& [lines, repeated] : {std::pair(5, true), std::pair(6, false)}) {
        std::string words = "a";
        for (int i = 1; i < lines; ++i) words += "\r\na";
        report.PrintTable(kTwoColumns,
                          markup::Heading(words).substr(1) + markup::Heading("b") + ";" + Lines(1, 6));
        const Texts pages = Pages();
        ASSERT_EQ(pages.size(), 2U);
        EXPECT_EQ(pages[1].starts_with("repeated:a/a"), repeated) << pages[1];
    }
}

/// A block heading is 254 high: 194 and 60 above it.
TEST_F(ReportDocumentTest, ABlockThatContinuesIsNamedAgainOnTheNextPage) {
    // Room for headings, block heading and eight rows.
    report.PrintTable(threeColumns, "|" + heading);
    report.PrintTable(threeColumns, "|Exposure 3;");
    for (int i = 1; i <= 9; ++i) {
        if (i == 9) {  // the library breaks pages itself
            report.NewPage();
            report.PrintTable(threeColumns, "|" + heading);
        }
        report.PrintTable(threeColumns, Lines(i, i, "|"));
    }
    report.PrintTable(threeColumns, "|Exposure 4;" + Lines(1, 1, "|"));
    report.PrintHeading("Accuracy", "");  // goes to a new page
    report.PrintTable(threeColumns, "|" + heading + Lines(2, 2, "|"));
    const Texts pages = Pages();
    ASSERT_EQ(pages.size(), 3U);
    EXPECT_EQ(pages[1], "Name|Value\nrepeated:Exposure 3 (continued)\nrow 9|x\nExposure 4\nrow 1|x\n");
    EXPECT_EQ(pages[2], "Name|Value\nrow 2|x\n") << "another test";
}

TEST_F(ReportDocumentTest, NoPageBeginsWithTheLastRowOfABlockAndNoneEndsWithItsName) {
    // 254 + 9 * 194 are the 2,000 of a page: the tenth row would be alone.
    report.PrintTable(threeColumns, "|Block;" + Lines(1, 10, "|"));
    EXPECT_EQ(Pages(), (Texts{"Block\n" + Expected(1, 8), "repeated:Block (continued)\n" + Expected(9, 10)}));
    // 254 + 7 * 194 leave room for another name, but not for a row below it.
    report.PrintTable(threeColumns, "|Block;" + Lines(1, 7, "|") + "|Block;" + Lines(8, 10, "|"));
    EXPECT_EQ(Pages(), (Texts{"Block\n" + Expected(1, 7), "Block\n" + Expected(8, 10)}));
}

TEST_F(ReportDocumentTest, ARowNeverSplits) {
    report.PrintTable(kTwoColumns, Lines(1, 9));
    EXPECT_EQ(report.SpaceLeft(), 2000 - 9 * 194);
    // Two lines need 362 of the 254 that are left.
    const std::string words = std::string(70, 'a') + " " + std::string(70, 'b');
    EXPECT_EQ(report.TableHeight(kTwoColumns, words + "|x;"), 362);
    report.PrintTable(kTwoColumns, words + "|x;");
    EXPECT_EQ(Pages(), (Texts{Expected(1, 9), std::string(70, 'a') + "/" + std::string(70, 'b') + "|x\n"}));
}

TEST_F(ReportDocumentTest, ARowThatIsHigherThanAPageLosesNothingAndBeginsWhereALineOfItFits) {
    // 30 lines: 11 have room on a page.
    std::string text;
    for (int i = 10; i < 40; ++i) text += std::to_string(i) + std::string(68, '.');
    report.PrintTable(kTwoColumns, text + "|x;");
    const Texts pages = Pages();
    ASSERT_EQ(pages.size(), 3U);
    std::string printed = pages[0] + pages[1] + pages[2];
    std::erase_if(printed, [](char c) { return c == '/' || c == '|' || c == 'x' || c == '\n'; });
    EXPECT_EQ(printed, text);
    EXPECT_TRUE(pages[2].starts_with("32"));
    // Of 2,000 twips 254 are left below nine rows: one line of 168 and 26. Below ten 60 are left.
    for (const auto& [rows, begins] : {std::pair(9, true), std::pair(10, false)}) {
        report.PrintTable(kTwoColumns, Lines(1, rows) + text + "|x;");
        const std::string first = Pages().front();
        EXPECT_EQ(first.find("10.....") != std::string::npos, begins) << rows;
        EXPECT_EQ(first.find("11....."), std::string::npos) << rows;
    }
}

TEST_F(ReportDocumentTest, HeadingsAreNeverTheLastOfAPage) {
    report.PrintTable(kTwoColumns, Lines(1, 9));
    report.PrintTable("<+4000|<+6000;", heading + Lines(10, 10));
    report.PrintHeading("Accuracy", "Fail");
    const ReportModel model = report.Finish();
    ASSERT_EQ(model.pages.size(), 3U);
    EXPECT_EQ(RowsOf(model.pages[0]), Expected(1, 9));
    EXPECT_EQ(RowsOf(model.pages[1]), "Name|Value\n" + Expected(10, 10));
    const auto* title = std::get_if<ReportHeading>(&model.pages[2].items.front());
    ASSERT_NE(title, nullptr);
    EXPECT_EQ(title->title, "Accuracy");
    EXPECT_EQ(title->mark, ReportMark::kFail);
}

TEST_F(ReportDocumentTest, TheWordOfAMarkUsesTheEmptyColumnInFrontOfIt) {
    // Of 560 twips, 60 are the edges of the cell and 180 the shape: 320 are four characters. With the column
    // in front, of which 80 are kept clear, there are 794: eleven characters.
    const std::string columns = "<+3000|>+900|<+!554|<+560;";
    const std::string mark = std::string(markup::kFailMark) + ";";
    const std::pair<const char*, std::string> words[] = {
        {"Fail", "kVp|80|Fail\nHVL|2|x|Fail\n"},
        {"No conforme", "kVp|80|No conforme\nHVL|2|x|\n"},
        {"Nicht bestanden", "kVp|80|Nicht/bestanden\nHVL|2|x|\n"},
        {"Durchgefallen", "kVp|80|\nHVL|2|x|\n"},
    };
    for (const auto& [word, expected] : words) {
        ReportSettings settings = SettingsFor(kSmallPaper);
        settings.facts.failWord = word;
        ReportDocument marked(settings, &metrics);
        marked.PrintTable(columns, "kVp|80||" + mark + "HVL|2|x|" + mark);
        const ReportModel model = marked.Finish();
        EXPECT_EQ(RowsOf(model.pages[0]), expected);
        const auto& rows = std::get<ReportTable>(model.pages[0].items[0]).rows;
        EXPECT_EQ(rows[1].cells.back().column, 3) << "the shape stays where the word has no room";
    }
}

TEST_F(ReportDocumentTest, NothingOverlapsAndNothingLeavesThePage) {
    const std::string mark(markup::kFailMark);
    for (int i = 0; i < 60; ++i) {
        report.PrintHeading(std::string(static_cast<std::size_t>(i) * 37, 'w'), i % 2 == 0 ? "Pass" : "");
        report.PrintTable(
            "<+560|<2440|>+900|>+!554|<+560;",
            "|group;|" + std::string(static_cast<std::size_t>(i) * 11, 'n') + "|1|" + mark + ";");
    }
    const ReportModel model = report.Finish();
    for (const ReportPage& page : model.pages) {
        int32_t bottom = 0;
        const auto follows = [&](int32_t top, int32_t height) {
            EXPECT_GE(top, bottom);
            bottom = top + height;
        };
        for (const ReportItem& item : page.items) {
            if (const auto* heading_ = std::get_if<ReportHeading>(&item))
                follows(heading_->top, heading_->height);
            if (const auto* table = std::get_if<ReportTable>(&item))
                for (const ReportRow& row : table->rows) {
                    follows(row.top, row.height);
                    for (const ReportCell& cell : row.cells) {
                        const ReportColumn& last = (*table->columns)[cell.column + cell.span - 1U];
                        const int32_t room = last.left + last.width - (*table->columns)[cell.column].left;
                        for (const ReportLine& line : cell.lines) EXPECT_LE(line.width, room);
                    }
                }
        }
        EXPECT_LE(bottom, kSmallPaper.UsableHeight());
    }
}

TEST_F(ReportDocumentTest, AFigureGoesToAPageThatHasRoomAndIsMeasuredFromItsTop) {
    report.PrintTable(kTwoColumns, Lines(1, 5));
    report.BeginFigure("KV Waveform", 1200);
    EXPECT_EQ(report.Position(), 0);
    report.Position(50);
    const int32_t x[] = {0, 100};
    const int32_t y[] = {50, 150};
    report.PlotPoints(x, y);
    report.EndFigure();
    EXPECT_EQ(report.Position(), 1200);
    const ReportModel model = report.Finish();
    ASSERT_EQ(model.pages.size(), 2U);
    const auto* figure = std::get_if<ReportFigure>(&model.pages[1].items.front());
    ASSERT_NE(figure, nullptr);
    ASSERT_EQ(figure->curves.size(), 1U);
    EXPECT_EQ(figure->curves[0][1].y, 150);
}

TEST_F(ReportDocumentTest, PapersKeepTheProportionsOfColumns) {
    EXPECT_FALSE(FindReportPaper("A5"));
    double shares[2] = {};
    int i = 0;
    for (const char* name : {"A4", "Letter"}) {
        const auto paper = FindReportPaper(name);
        ASSERT_TRUE(paper);
        ReportDocument sheet(SettingsFor(*paper), &metrics);
        sheet.PrintTable("<+30000|<+10000;", "a|b;");
        const ReportModel model = sheet.Finish();
        const auto& table = std::get<ReportTable>(model.pages[0].items[0]);
        shares[i++] = static_cast<double>((*table.columns)[0].width) / paper->UsableWidth();
    }
    EXPECT_NEAR(shares[0], shares[1], 0.01);
}

TEST_F(ReportDocumentTest, AFramedTableIsHigherAndAHeadingBeginsItAnew) {
    report.PrintTable("<+#5000|<+#5000;", "a|b;c\n\n|;");
    report.PrintTable("<+#5000|<+#5000;", "{\\i\\b Head};d|e;");
    const ReportModel model = report.Finish();
    ASSERT_EQ(model.pages[0].items.size(), 2U);
    const auto& first = std::get<ReportTable>(model.pages[0].items[0]);
    const auto& second = std::get<ReportTable>(model.pages[0].items[1]);
    // Lines of 168, and 56 for the frame; 140 between two tables.
    EXPECT_EQ(first.rows[0].height, 168 + 56);
    EXPECT_EQ(first.rows[1].height, 3 * 168 + 56);
    EXPECT_TRUE(second.rows[0].heading);
    EXPECT_EQ(second.rows[0].top, 224 + 560 + 140);
    EXPECT_EQ(RoomToWrite("c\n\n"), 2U);
    EXPECT_EQ(RoomToWrite("\n\n\n"), 3U);
    EXPECT_EQ(RoomToWrite("a\nb"), 0U);
}

TEST_F(ReportDocumentTest, TheTitleOfAFormIsCentredWithItsSecondTextBelow) {
    report.Alignment(kAlignCentre);
    report.PrintHeading("Summary", "Log");
    report.BeginFigure("Waveform", 100);
    report.Alignment(kAlignCentre);
    report.DrawText(0, 0, "Time");
    report.EndFigure();
    report.PrintHeading("Test", "");
    const ReportModel model = report.Finish();
    const auto& form = std::get<ReportHeading>(model.pages[0].items[0]);
    EXPECT_TRUE(form.centred);
    EXPECT_EQ(form.height, 2 * 11 * 24 + 2 * 160);
    // A figure takes its alignment with it.
    EXPECT_FALSE(std::get<ReportHeading>(model.pages.back().items.back()).centred);
}

TEST_F(ReportDocumentTest, ANewPageBeginsAtItsTop) {
    report.Position(50);
    report.NewPage();
    EXPECT_EQ(report.Position(), 0) << "the page was empty, and is used";
    report.PrintTable(kTwoColumns, Lines(1, 1));
    EXPECT_EQ(Pages(), Texts{Expected(1, 1)});
}

TEST_F(ReportDocumentTest, NoPageIsEmptyHoweverMuchIsKeptTogether) {
    // The name of the block and its only row, of twelve lines, fit no page together.
    std::string words = "x";
    for (int i = 0; i < 11; ++i) words += "\r\nx";
    report.PrintTable("<+4000|<+3000|<+3000;", "|Block;|" + words + "|x;");
    const ReportModel model = report.Finish();
    for (const ReportPage& page : model.pages) EXPECT_NE(RowsOf(page), "");
    EXPECT_EQ(RowsOf(model.pages[0]).substr(0, 6), "Block\n");
}

}  // namespace
}  // namespace vorex

#include "reports/report_html.h"

#include <gtest/gtest.h>

#include <pugixml.hpp>
#include <regex>
#include <set>
#include <string>
#include <string_view>

#include "foundation/number_text.h"
#include "foundation/report_markup.h"
#include "reports/report_fixture.h"

namespace vorex {
namespace {

class ReportHtmlTest : public testing::Test {
  protected:
    void Load() {
        html = ReportHtml(report.Finish());
        // The page is well-formed XML as well.
        const auto parsed = page.load_string(html.c_str(), pugi::parse_default | pugi::parse_doctype);
        ASSERT_TRUE(parsed) << parsed.description() << " at "
                            << html.substr(static_cast<std::size_t>(parsed.offset), 80);
    }
    std::string At(const char* path) const { return page.select_node(path).node().text().get(); }
    std::size_t Count(const char* path) const { return page.select_nodes(path).size(); }

    /// What the rules of the page's style select that hold a declaration.
    std::set<std::string> StyledWith(const std::string& declaration) const {
        const std::string style = page.select_node("//style").node().text().get();
        const std::regex rule("([^{}]+)\\{([^{}]*)\\}");
        std::set<std::string> selectors;
        for (std::sregex_iterator at(style.begin(), style.end(), rule), end; at != end; ++at) {
            if ((*at)[2].str().find(declaration) == std::string::npos) continue;
            const std::string names = (*at)[1];
            for (std::string_view name : SplitText(names, ',')) selectors.emplace(Trimmed(name));
        }
        return selectors;
    }

    ReportDocument report{host_test::SettingsFor(EndlessReportPaper())};
    std::string html;
    pugi::xml_document page;
};

const std::string kColumns = "<+560|<2440|>+900|>+!554|<+560;";

TEST_F(ReportHtmlTest, TablesSayWhatHeadsWhat) {
    report.PrintTitle("Room 3", "Fail");
    report.PrintHeading("Accuracy", "Fail");
    report.PrintTable(kColumns, "|{\\i\\b Result:}|{\\i\\b Value};|Exposure 1;|kVp|80.6;|HVL|2|" +
                                    std::string(markup::kFailMark) + ";|Exposure 2;|kVp|;");
    Load();
    EXPECT_EQ(std::string(page.child("html").attribute("lang").value()), "en");
    EXPECT_EQ(At("//h1/span"), "Room 3");
    EXPECT_EQ(std::string(page.select_node("//nav//a").node().attribute("href").value()), "#s1");
    EXPECT_EQ(std::string(page.select_node("//h2").node().attribute("id").value()), "s1");
    EXPECT_EQ(Count("//thead/tr/th[@scope='col']"), 2U);
    EXPECT_EQ(Count("//tbody"), 2U);
    EXPECT_EQ(Count("//tbody/tr/th[@scope='rowgroup'][@colspan='3']"), 2U);
    EXPECT_EQ(At("//tbody[1]/tr[2]/th[@scope='row']"), "kVp");
    EXPECT_EQ(At("//tbody[1]/tr[2]/td[@class='right']"), "80.6");
    // The failed row has a word next to the shape.
    EXPECT_EQ(Count("//tr[@class='failed']"), 1U);
    EXPECT_NE(html.find("✗</span> Fail</span></td></tr>"), std::string::npos);
    for (pugi::xpath_node row : page.select_nodes("//tbody/tr")) {
        int cells = 0;
        for (pugi::xml_node cell : row.node().children()) cells += cell.attribute("colspan").as_int(1);
        EXPECT_EQ(cells, 3);
    }
    EXPECT_EQ(Count("//script"), 0U);
}

TEST_F(ReportHtmlTest, HeadingsAndContentsAreAsDeepAsTheTreeOfTheTests) {
    report.PrintTitle("Unit", "");
    for (const auto& [level, title] :
         {std::pair(1, "Room"), std::pair(2, "Radiography"), std::pair(3, "Accuracy"),
          std::pair(3, "Linearity"), std::pair(2, "Fluoroscopy"), std::pair(9, "Deep"),
          std::pair(1, "End")}) {
        report.HeadingLevel(level);
        report.PrintHeading(title, "");
    }
    Load();
    EXPECT_EQ(At("//nav/ul/li[1]/a/span"), "Room");
    EXPECT_EQ(At("//nav/ul/li[1]/ul/li[1]/ul/li[2]/a/span"), "Linearity");
    EXPECT_EQ(At("//nav/ul/li[1]/ul/li[2]/ul/li/a/span"), "Deep");
    EXPECT_EQ(At("//nav/ul/li[2]/a/span"), "End");
    EXPECT_EQ(Count("//h2"), 2U);
    EXPECT_EQ(Count("//h3"), 2U);
    EXPECT_EQ(Count("//h4"), 2U);
    EXPECT_EQ(Count("//h6"), 1U) << "there is no deeper one";
    for (pugi::xpath_node link : page.select_nodes("//nav//a"))
        EXPECT_NE(
            At(("//*[@id='" + std::string(link.node().attribute("href").value() + 1) + "']/span").c_str()),
            "");
}

TEST_F(ReportHtmlTest, AContinuationRowStaysOnThePageOfTheRowAbove) {
    const std::string mark(markup::kFailMark);
    report.PrintTable(kColumns, "|Exposure 1;|kVp|84|" + mark + ";||80.5|" + mark + ";|HVL|2.9;||3.5;");
    Load();
    EXPECT_EQ(Count("//tr[@class='failed']"), 1U);
    EXPECT_EQ(At("//tr[@class='failed more']/td[2]"), "80.5");
    EXPECT_EQ(At("//tr[@class='more']/td[2]"), "3.5");
    EXPECT_EQ(Count("//tr[not(@class)]"), 2U);
    EXPECT_EQ(StyledWith("break-before: avoid"), std::set<std::string>{"tr.more"});
}

TEST_F(ReportHtmlTest, EachDepthOfATreeHasAStepOfItsOwn) {
    report.PrintTable("<+5000|<+5000;", "Unit|Group;      Radiography|Group;            Accuracy|200;");
    Load();
    EXPECT_EQ(Count("//tr[1]/th[@class] | //tr[1]//span"), 0U);
    EXPECT_EQ(At("//th[@class='indented'][not(span)]"), "Radiography");
    EXPECT_EQ(At("//th[@class='indented'][count(span[@class='step'])=1]"), "Accuracy");
}

TEST_F(ReportHtmlTest, OnlyAWordThatIsTooLongForAColumnMayBreak) {
    report.PrintTable(kColumns, "|" + std::string(24, 'a') + " " + std::string(24, 'b') + "|80.6;|" +
                                    std::string(25, 'c') + "|-0.25;");
    Load();
    EXPECT_EQ(Count("//th | //td"), 4U);
    EXPECT_EQ(Count("//*[contains(@class,'long')]"), 1U);
    EXPECT_EQ(At("//th[contains(@class,'long')]"), std::string(25, 'c'));
    // Anywhere else a column is at least as wide as its longest word, so that no number is split over two
    // lines.
    EXPECT_EQ(StyledWith("overflow-wrap: anywhere"),
              (std::set<std::string>{".long", "h1", "h2", "h3", "h4", "h5", "h6"}));
}

TEST_F(ReportHtmlTest, TextsOfUsersStayTexts) {
    const std::string hostile = "</td><script>alert(1)</script> & \"|;{}\\ مرحبا 测试";
    report.PrintTitle(hostile, "");
    report.PrintTable(kColumns, "|" + markup::Text(hostile) + "|1;");
    report.BeginFigure(hostile, 100);
    report.DrawText(0, 0, hostile);
    report.EndFigure();
    Load();
    EXPECT_EQ(At("//h1/span"), hostile);
    EXPECT_EQ(At("//tbody//th"), hostile);
    EXPECT_EQ(At("//*[local-name()='svg']/text"), hostile);
    EXPECT_EQ(Count("//script"), 0U);
}

TEST_F(ReportHtmlTest, AFormHasFramesOfItsProportionsAndRoomToWrite) {
    report.PrintTitle("Room 3", "Fail");
    report.PrintHeading("Survey", "Fail");
    report.NewPage();
    report.Alignment(kAlignCentre);
    report.PrintHeading("SUMMARY", "Log");
    report.Alignment(kAlignLeft);
    // Of 10,186 twips.
    report.PrintTable("<+#5093|^+#2037|^+#1019;",
                      "{\\i\\b Tests}|{\\i\\b Status};"
                      "1.  Assembly|" +
                          std::string(markup::kFailMark) +
                          "Fail|;"
                          "    your unit is      mrad|NA|;");
    report.PrintTable("<+#10186;", "{\\i\\b Action:};\r\n\r\n\r\n     ;");
    report.DrawLine(0, 500, 10186, 500);
    Load();
    EXPECT_EQ(Count("//section[@class='page']"), 1U);
    EXPECT_EQ(At("//section[@class='page']/h2[@class='form']/span[1]"), "SUMMARY");
    EXPECT_EQ(At("//section[@class='page']/h2[@class='form']/span[2]"), "Log");
    const auto table = page.select_node("//table[@class='ruled'][1]").node();
    EXPECT_EQ(std::string(table.attribute("style").value()), "width:80%");
    EXPECT_EQ(std::string(table.child("colgroup").child("col").attribute("style").value()), "width:62.5%");
    EXPECT_EQ(table.select_nodes("colgroup/col").size(), 3U);
    EXPECT_EQ(table.select_nodes("thead/tr/th[@scope='col']").size(), 2U);
    EXPECT_EQ(table.select_nodes("tbody/tr[@class='failed']/th[@scope='row']").size(), 1U);
    EXPECT_EQ(table.select_nodes("tbody/tr[1]/td").size(), 2U) << "the empty cell has its frame";
    EXPECT_EQ(std::string(table.select_node("tbody/tr[2]/th").node().text().get()),
              "your unit is\xC2\xA0\xC2\xA0\xC2\xA0\xC2\xA0\xC2\xA0\xC2\xA0mrad");
    EXPECT_EQ(At("//table[2]/thead/tr/th[@scope='col']"), "Action:");
    EXPECT_EQ(std::string(page.select_node("//table[2]/tbody/tr/td").node().attribute("style").value()),
              "height:5.6em");
    EXPECT_EQ(Count("//hr"), 1U);
    EXPECT_EQ(StyledWith("break-before: page"), std::set<std::string>{"section.page"});
}

TEST_F(ReportHtmlTest, AFigureHasItsLinesCurveAndTexts) {
    report.BeginFigure("KV Waveform", 1000);
    report.DrawLine(10, 900, 500, 900);
    report.PlotPoints(std::vector<int32_t>{10, 200, 500}, std::vector<int32_t>{900, 100, 900});
    report.DrawText(10, 950, "0.0");
    report.EndFigure();
    Load();
    EXPECT_EQ(At("//figure/svg/title"), "KV Waveform");
    EXPECT_EQ(Count("//figure//polyline"), 2U);
    EXPECT_EQ(Count("//figure//polyline[@points='10,900 500,900 ']"), 1U);
    EXPECT_EQ(Count("//figure//polyline[@points='10,900 200,100 500,900 ']"), 1U);
    EXPECT_EQ(At("//figure//text"), "0.0");
}

TEST_F(ReportHtmlTest, OnlyTheFirstHeadingOfAPageBeginsIt) {
    report.HeadingLevel(1);
    report.PrintHeading("one", "");
    report.NewPage();
    report.PrintHeading("two", "");
    report.PrintHeading("three", "");
    Load();
    EXPECT_EQ(Count("//section"), 3U);
    EXPECT_EQ(Count("//section[@class='page']"), 1U);
    EXPECT_EQ(At("//section[@class='page']/h2/span"), "two");
}

}  // namespace
}  // namespace vorex

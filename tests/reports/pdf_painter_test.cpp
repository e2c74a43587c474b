#include "reports/pdf_painter.h"

#include <gtest/gtest.h>

#include "reports/report_fixture.h"

namespace vorex::host_test {
namespace {

/// What was asked of a module, a line each.
std::string drawn;

std::string At(VorexPdfPoint place) {
    return std::to_string(place.x) + "," + std::to_string(place.y);
}
std::string Copy(VorexPdfText text) {
    return {text.bytes, text.size};
}
void Note(const std::string& line) {
    drawn += line + "\n";
}
std::string Colour(uint32_t colour) {
    char digits[8];
    std::snprintf(digits, sizeof digits, "#%06x", static_cast<unsigned>(colour));
    return digits;
}

VorexPdfDrawing* const kDrawing = reinterpret_cast<VorexPdfDrawing*>(&drawn);

/// A module whose characters are half as wide as the text is high.
constexpr VorexPdfModule kModule = {
    kVorexPdfVersion,
    [](VorexPdfSink, void*) { return 1; },
    [](uint32_t, int32_t) { return 500; },
    [](const VorexPdfPaper* paper, VorexPdfText title, VorexPdfText, VorexPdfSink, void*) {
        Note("begin " + Copy(title) + " " + std::to_string(paper->width));
        return kDrawing;
    },
    [](VorexPdfDrawing*) { Note("page"); },
    [](VorexPdfDrawing*, uint32_t colour, int32_t width) {
        Note("pen " + Colour(colour) + " " + std::to_string(width));
    },
    [](VorexPdfDrawing*, VorexPdfText text, VorexPdfFont font) {
        return static_cast<int32_t>(text.size) * font.points * 10;
    },
    [](VorexPdfDrawing*, VorexPdfPoint place, VorexPdfText text, VorexPdfFont font, int32_t room) {
        Note("text " + At(place) + " " + Copy(text) + " face " + std::to_string(font.face) + " points " +
             std::to_string(font.points) + (room > 0 ? " room " + std::to_string(room) : ""));
    },
    [](VorexPdfDrawing*, const VorexPdfPoint* points, size_t count) {
        std::string line = "line";
        for (size_t i = 0; i < count; ++i) line += " " + At(points[i]);
        Note(line);
    },
    [](VorexPdfDrawing*, VorexPdfPoint place, int32_t width, int32_t height) {
        Note("frame " + At(place) + " " + std::to_string(width) + "x" + std::to_string(height));
    },
    [](VorexPdfDrawing*, VorexPdfPoint place, int32_t width, int32_t height, uint32_t colour) {
        Note("fill " + At(place) + " " + std::to_string(width) + "x" + std::to_string(height) + " " +
             Colour(colour));
    },
    [](VorexPdfDrawing*, const VorexPdfBookmark* bookmarks, size_t count, VorexPdfText language,
       VorexPdfSink sink, void* context) {
        for (size_t i = 0; i < count; ++i)
            Note("bookmark " + Copy(bookmarks[i].title) + " level " + std::to_string(bookmarks[i].level) +
                 " page " + std::to_string(bookmarks[i].page) + " top " + std::to_string(bookmarks[i].top));
        Note("finish " + Copy(language));
        sink(context, "PDF", 3);
        return 1;
    },
};

/// What a page of one item draws, without its foot and what begins and ends the file.
std::string Drawn(ReportItem item) {
    ReportModel report;
    report.paper = kSmallPaper;
    report.facts.pageOf = "%%1/%%2";
    report.pages.push_back({{std::move(item)}});
    drawn.clear();
    EXPECT_EQ(PaintPdf(report, kModule), "PDF");
    const std::size_t first = drawn.find('\n') + 1;
    return drawn.substr(first, drawn.find("pen #999999 8\nline 0,2126") - first);
}

/// A row of one cell from 0 to 1,000, one line of 7 points that is 300 wide.
ReportTable OneRow(const ReportColumn& column, ReportMark mark, bool failed, bool ruled) {
    ReportRow row;
    row.height = 194;
    row.points = 7;
    row.failed = failed;
    row.ruled = ruled;
    row.cells.push_back({"text", 0, 1, false, mark, {{"text", 0, 300}}});
    ReportTable table;
    table.columns = std::make_shared<const std::vector<ReportColumn>>(1, column);
    table.rows.push_back(row);
    return table;
}

TEST(PdfPainter, DrawsEachKindOfCellInItsPlace) {
    const std::string rule = "pen #999999 4\nline 0,194 1000,194\n";
    const struct {
        const char* title;
        ReportItem item;
        std::string expected;
    } cases[] = {
        {"left", OneRow({0, 1000, ReportAlign::kLeft}, ReportMark::kNone, false, false),
         rule + "pen #000000 8\ntext 30,13 text face 0 points 7\n"},
        {"right", OneRow({0, 1000, ReportAlign::kRight}, ReportMark::kNone, false, false),
         rule + "pen #000000 8\ntext 670,13 text face 0 points 7\n"},
        {"centred", OneRow({0, 1000, ReportAlign::kCentre}, ReportMark::kNone, false, false),
         rule + "pen #000000 8\ntext 350,13 text face 0 points 7\n"},
        {"ruled", OneRow({0, 1000, ReportAlign::kLeft, false, true}, ReportMark::kNone, false, true),
         "pen #000000 8\nframe 0,0 1000x194\npen #000000 8\ntext 80,28 text face 0 points 7\n"},
        {"failed", OneRow({0, 1000, ReportAlign::kLeft}, ReportMark::kFail, true, false),
         "fill 0,0 1000x194 #fbe3e1\nfill -120,0 60x194 #b00020\n" + rule +
             "pen #b00020 21\nline 30,41 142,153\nline 30,153 142,41\n"
             "pen #b00020 8\ntext 210,13 text face 1 points 7\n"},
        {"passed", OneRow({0, 1000, ReportAlign::kLeft}, ReportMark::kPass, false, false),
         rule +
             "pen #1b5e20 21\nline 30,108 74,153 142,41\npen #1b5e20 8\ntext 210,13 text face 1 points 7\n"},
    };
    for (const auto& row : cases) EXPECT_EQ(Drawn(row.item), row.expected) << row.title;
}

TEST(PdfPainter, AHeadingHasItsOutcomeAtTheRightAndARule) {
    ReportHeading heading;
    heading.title = "kVp";
    heading.outcome = "Pass";
    heading.mark = ReportMark::kPass;
    heading.top = 100;
    heading.height = 400;
    heading.points = 10;
    heading.lines = {{"kVp", 0, 300}};
    // One line of 240 in 400: 80 above it. The outcome is 400 wide, its mark 240 before it.
    EXPECT_EQ(Drawn(heading),
              "pen #000000 8\ntext 0,180 kVp face 1 points 10\npen #1b5e20 8\n"
              "text 9600,180 Pass face 1 points 10\npen #1b5e20 30\nline 9360,316 9424,380 9520,220\n"
              "pen #000000 20\nline 0,428 10000,428\n");
    EXPECT_NE(drawn.find("bookmark kVp level 1 page 0 top 100\nfinish"), std::string::npos) << drawn;
}

TEST(PdfPainter, ThePagesAreCounted) {
    ReportModel report;
    report.paper = kSmallPaper;
    report.facts.pageOf = "%%1/%%2";
    report.facts.title = "Room 3";
    report.facts.language = "de";
    report.pages.resize(2);
    drawn.clear();
    PaintPdf(report, kModule);
    const std::string foot = "pen #999999 8\nline 0,2126 10000,2126\npen #000000 8\n";
    EXPECT_EQ(drawn, "begin Room 3 10200\n" + foot +
                         "text 9790,2168 1/2 face 0 points 7\ntext 0,2168 Room 3 face 0 points 7 room 9590\n"
                         "page\n" +
                         foot +
                         "text 9790,2168 2/2 face 0 points 7\ntext 0,2168 Room 3 face 0 points 7 room 9590\n"
                         "finish de\n");
}

}  // namespace
}  // namespace vorex::host_test

#include "reports/pdf_painter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

/// What is drawn, a call each, in order.
struct VorexPdfDrawing {
    std::vector<std::string> calls;
};

namespace vorex {
namespace {

VorexPdfDrawing recorded;

std::string Place(VorexPdfPoint place) {
    return std::to_string(place.x) + "," + std::to_string(place.y);
}
std::string Text(VorexPdfText text) {
    return {text.bytes, text.size};
}
std::string Colour(uint32_t colour) {
    char hex[8];
    std::snprintf(hex, sizeof hex, "%06X", static_cast<unsigned>(colour));
    return hex;
}
std::string Size(int32_t width, int32_t height) {
    return " " + std::to_string(width) + "x" + std::to_string(height);
}

/// A module that writes nothing and notes every call. Each character is 100 twips wide.
VorexPdfModule RecordingModule() {
    VorexPdfModule module{};
    module.version = kVorexPdfVersion;
    module.begin = [](const VorexPdfPaper*, VorexPdfText, VorexPdfText, VorexPdfSink, void*) {
        recorded.calls.clear();
        return &recorded;
    };
    module.newPage = [](VorexPdfDrawing* drawing) { drawing->calls.emplace_back("page"); };
    module.setPen = [](VorexPdfDrawing* drawing, uint32_t colour, int32_t width) {
        drawing->calls.push_back("pen " + Colour(colour) + " " + std::to_string(width));
    };
    module.textWidth = [](VorexPdfDrawing*, VorexPdfText text, VorexPdfFont) {
        return static_cast<int32_t>(text.size) * 100;
    };
    module.drawText = [](VorexPdfDrawing* drawing, VorexPdfPoint place, VorexPdfText text, VorexPdfFont font,
                         int32_t room) {
        drawing->calls.push_back("text " + Place(place) + " " + Text(text) + " face " +
                                 std::to_string(font.face) + " size " + std::to_string(font.points) +
                                 (room == 0 ? "" : " room " + std::to_string(room)));
    };
    module.drawLines = [](VorexPdfDrawing* drawing, const VorexPdfPoint* points, size_t count) {
        std::string call = "line";
        for (size_t i = 0; i < count; ++i) call += " " + Place(points[i]);
        drawing->calls.push_back(call);
    };
    module.drawFrame = [](VorexPdfDrawing* drawing, VorexPdfPoint place, int32_t width, int32_t height) {
        drawing->calls.push_back("frame " + Place(place) + Size(width, height));
    };
    module.fill = [](VorexPdfDrawing* drawing, VorexPdfPoint place, int32_t width, int32_t height,
                     uint32_t colour) {
        drawing->calls.push_back("fill " + Place(place) + Size(width, height) + " " + Colour(colour));
    };
    module.finish = [](VorexPdfDrawing* drawing, const VorexPdfBookmark* bookmarks, size_t count,
                       VorexPdfText, VorexPdfSink, void*) {
        for (size_t i = 0; i < count; ++i)
            drawing->calls.push_back(
                "bookmark " + Text(bookmarks[i].title) + " level " + std::to_string(bookmarks[i].level) +
                " page " + std::to_string(bookmarks[i].page) + " at " + std::to_string(bookmarks[i].top));
        return 1;
    };
    return module;
}

using Calls = std::vector<std::string>;

/// What a page with one item draws, without its foot.
Calls Drawn(ReportItem item) {
    ReportModel report;
    report.paper = {11000, 16000, 500, 600, 700};  // 10000 by 14700 usable
    report.facts.pageOf = "Page %%1 of %%2";
    report.pages.resize(1);
    report.pages[0].items.push_back(std::move(item));
    const VorexPdfModule module = RecordingModule();
    PaintPdf(report, module);
    Calls calls = recorded.calls;
    std::size_t foot = 0;
    while (foot < calls.size() && calls[foot] != "line 0,14826 10000,14826") ++foot;
    EXPECT_LT(foot, calls.size()) << "no rule above the foot";
    const std::string bookmark =
        !calls.empty() && calls.back().starts_with("bookmark") ? calls.back() : std::string();
    calls.resize(foot == 0 ? 0 : foot - 1);
    if (!bookmark.empty()) calls.push_back(bookmark);
    return calls;
}

ReportCell Cell(std::string_view text, uint16_t column, ReportMark mark = ReportMark::kNone) {
    ReportCell cell;
    cell.text = text;
    cell.column = column;
    cell.mark = mark;
    if (!text.empty()) cell.lines = {{text, 0, static_cast<int32_t>(text.size()) * 100}};
    return cell;
}

ReportTable Table(ReportRow row, bool ruled) {
    ReportTable table;
    std::vector<ReportColumn> columns = {{0, 4000, ReportAlign::kLeft, false, ruled},
                                         {4000, 2000, ReportAlign::kRight, false, ruled},
                                         {6000, 1000, ReportAlign::kCentre, false, ruled}};
    table.columns = std::make_shared<const std::vector<ReportColumn>>(std::move(columns));
    row.points = 8;
    row.height = 266;
    table.rows.push_back(std::move(row));
    return table;
}

TEST(PdfPainter, AFailedRowIsTintedBarredAndMarked) {
    ReportRow row;
    row.top = 500;
    row.failed = true;
    row.cells = {Cell("kVp", 0), Cell("86.4", 1), Cell("Fail", 2, ReportMark::kFail)};
    EXPECT_EQ(
        Drawn(Table(row, false)),
        (Calls{"fill 0,500 7000x266 FBE3E1", "fill -120,500 60x266 B00020",  // ground, and bar before it
               "pen 999999 4", "line 0,766 7000,766",                        // rule below the row
               "pen 000000 8", "text 30,513 kVp face 1 size 8",              // left, bold
               "pen 000000 8", "text 5570,513 86.4 face 1 size 8",           // ends at 5970
               // Shape of 128 and word of 400 together in the middle of the third column.
               "pen B00020 24", "line 6200,545 6328,673", "line 6200,673 6328,545", "pen B00020 8",
               "text 6400,513 Fail face 1 size 8"}));
}

TEST(PdfPainter, APassedCellHasATickAndNoGround) {
    ReportRow row;
    row.top = 800;
    row.cells = {Cell("", 2, ReportMark::kPass)};
    EXPECT_EQ(Drawn(Table(row, false)), (Calls{"pen 999999 4", "line 4000,1066 7000,1066", "pen 1B5E20 24",
                                               "line 6400,921 6451,973 6528,845", "pen 1B5E20 8"}));
}

TEST(PdfPainter, ARuledRowHasAFramePerColumn) {
    ReportRow row;
    row.top = 800;
    row.ruled = true;
    row.cells = {Cell("a", 0)};
    EXPECT_EQ(Drawn(Table(row, true)),
              (Calls{"pen 000000 8", "frame 0,800 4000x266", "frame 4000,800 2000x266",
                     "frame 6000,800 1000x266", "pen 000000 8", "text 80,828 a face 0 size 8"}));
}

TEST(PdfPainter, AHeadingHasItsOutcomeAtTheRightAndABookmark) {
    ReportHeading heading;
    heading.title = "Accuracy";
    heading.outcome = "Fail";
    heading.mark = ReportMark::kFail;
    heading.top = 100;
    heading.height = 300;
    heading.points = 10;
    heading.lines = {{"Accuracy", 0, 800}};
    EXPECT_EQ(Drawn(heading), (Calls{"pen 000000 8", "text 0,130 Accuracy face 1 size 10", "pen B00020 8",
                                     "text 9600,130 Fail face 1 size 10", "pen B00020 30",
                                     "line 9360,170 9520,330", "line 9360,330 9520,170", "pen 000000 20",
                                     "line 0,328 10000,328", "bookmark Accuracy level 1 page 0 at 765"}));
}

TEST(PdfPainter, AFigureIsDrawnFromItsTop) {
    ReportFigure figure;
    figure.top = 2000;
    figure.lines = {{{0, 0}, {100, 50}}};
    figure.curves = {{{10, 20}, {30, 40}, {50, 60}}};
    figure.labels = {{{500, 10}, ReportAlign::kRight, 7, "ms"},
                     {{500, 20}, ReportAlign::kCentre, 7, "kV"},
                     {{500, 30}, ReportAlign::kLeft, 7, "0"}};
    EXPECT_EQ(Drawn(figure),
              (Calls{"pen 000000 8", "line 0,2000 100,2050", "pen 000000 20", "line 10,2020 30,2040 50,2060",
                     "pen 000000 8", "text 300,2010 ms face 0 size 7", "text 400,2020 kV face 0 size 7",
                     "text 500,2030 0 face 0 size 7"}));
}

TEST(PdfPainter, EachPageHasItsNumberAtTheRightOfTheFoot) {
    ReportModel report;
    report.paper = {11000, 16000, 500, 600, 700};
    report.facts = {"Site", "f.xml", "2026-01-15", "vorex", "en", "Page %%1 of %%2", "", "", ""};
    report.pages.resize(2);
    const VorexPdfModule module = RecordingModule();
    PaintPdf(report, module);
    const auto foot = [](const std::string& page) {
        return Calls{"pen 999999 8", "line 0,14826 10000,14826", "pen 000000 8",
                     "text 8900,14868 " + page + " face 0 size 7",
                     "text 0,14868 Site  ·  f.xml  ·  2026-01-15  ·  vorex face 0 size 7 room 8700"};
    };
    Calls expected = foot("Page 1 of 2");
    expected.emplace_back("page");
    for (const std::string& call : foot("Page 2 of 2")) expected.push_back(call);
    EXPECT_EQ(recorded.calls, expected);
}

TEST(PdfPainter, WhatTheModuleReportsIsRaised) {
    VorexPdfModule module = RecordingModule();
    module.finish = [](VorexPdfDrawing*, const VorexPdfBookmark*, size_t, VorexPdfText, VorexPdfSink sink,
                       void* context) {
        sink(context, "no ink", 6);
        return 0;
    };
    ReportModel report;
    report.pages.resize(1);
    EXPECT_THAT([&] { PaintPdf(report, module); }, testing::ThrowsMessage<std::runtime_error>("no ink"));
}

}  // namespace
}  // namespace vorex

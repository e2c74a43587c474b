#include "reports/pdf_painter.h"

#include <algorithm>
#include <deque>
#include <stdexcept>
#include <variant>
#include <vector>

#include "foundation/utilities.h"

namespace vorex {

namespace {

constexpr int32_t kFootPoints = 7;
constexpr int32_t kFootGapTwips = 200;
constexpr uint32_t kBlack = 0x000000;
constexpr uint32_t kFailColour = 0xB00020;
constexpr uint32_t kPassColour = 0x1B5E20;
constexpr uint32_t kFailGround = 0xFBE3E1;
constexpr uint32_t kRuleColour = 0x999999;
constexpr int32_t kThinLine = 8;
constexpr int32_t kCurveLine = 20;
constexpr int32_t kBarWidth = 60;

VorexPdfText TextOf(std::string_view text) {
    return {text.data(), text.size()};
}

void Append(void* context, const char* bytes, size_t size) {
    static_cast<std::string*>(context)->append(bytes, size);
}

class PagePainter {
  public:
    PagePainter(const ReportModel& report, const VorexPdfModule& module) : mReport(report), mModule(module) {
        const ReportPaper& paper = report.paper;
        const VorexPdfPaper sheet{paper.width, paper.height, paper.marginLeft, paper.marginTop};
        std::string fault;
        mDrawing =
            module.begin(&sheet, TextOf(report.facts.title), TextOf(report.facts.program), Append, &fault);
        if (mDrawing == nullptr) throw std::runtime_error(fault);
    }

    std::string Paint() {
        for (mPage = 0; mPage < mReport.pages.size(); ++mPage) {
            if (mPage > 0) mModule.newPage(mDrawing);
            for (const ReportItem& item : mReport.pages[mPage].items)
                std::visit([this](const auto& part) { Draw(part); }, item);
            DrawFoot();
        }
        std::string bytes;
        if (mModule.finish(mDrawing, mBookmarks.data(), mBookmarks.size(), TextOf(mReport.facts.language),
                           Append, &bytes) == 0)
            throw std::runtime_error(bytes);
        return bytes;
    }

  private:
    void Pen(uint32_t colour, int32_t width = kThinLine) { mModule.setPen(mDrawing, colour, width); }

    void DrawLine(VorexPdfPoint from, VorexPdfPoint to) {
        const VorexPdfPoint ends[] = {from, to};
        mModule.drawLines(mDrawing, ends, 2);
    }

    /// A text by its left edge and its top.
    void Write(int32_t x, int32_t top, std::string_view text, ReportFace face, int32_t points,
               int32_t room = 0) {
        if (!text.empty())
            mModule.drawText(mDrawing, {x, top}, TextOf(text), {static_cast<int32_t>(face), points}, room);
    }

    int32_t Width(std::string_view text, ReportFace face, int32_t points) {
        return mModule.textWidth(mDrawing, TextOf(text), {static_cast<int32_t>(face), points});
    }

    /// Cross or tick as lines: no font has to have it.
    void DrawShape(ReportMark mark, int32_t x, int32_t top, int32_t points) {
        const int32_t size = points * kTwipsPerPoint * 8 / 10;
        const int32_t y = top + points * kTwipsPerPoint * 2 / 10;
        const bool fail = mark == ReportMark::kFail;
        Pen(fail ? kFailColour : kPassColour, points * 3);
        if (fail) {
            DrawLine({x, y}, {x + size, y + size});
            DrawLine({x, y + size}, {x + size, y});
            return;
        }
        const VorexPdfPoint tick[] = {{x, y + size * 6 / 10}, {x + size * 4 / 10, y + size}, {x + size, y}};
        mModule.drawLines(mDrawing, tick, 3);
    }

    static uint32_t ColourOf(ReportMark mark) {
        return mark == ReportMark::kFail ? kFailColour : mark == ReportMark::kPass ? kPassColour : kBlack;
    }

    // -------------------------------------------------------------------------------------- items

    void AddBookmark(const ReportHeading& heading) {
        if (heading.title.empty()) return;
        // Forms with the same title differ in the line below it.
        std::string title(heading.title);
        if (heading.centred && !heading.outcome.empty()) title.append(" - ").append(heading.outcome);
        mTitles.push_back(std::move(title));
        mBookmarks.push_back(
            {TextOf(mTitles.back()), heading.level, static_cast<int32_t>(mPage),
             (mReport.paper.height - mReport.paper.marginTop - heading.top) / kTwipsPerPoint});
    }

    void Draw(const ReportHeading& heading) {
        AddBookmark(heading);
        Pen(kBlack);
        if (heading.centred)
            DrawFormTitle(heading);
        else
            DrawTitle(heading);
    }

    void DrawTitle(const ReportHeading& heading) {
        const int32_t lineHeight = heading.points * kLineTwips;
        const int32_t first =
            heading.top + (heading.height - static_cast<int32_t>(heading.lines.size()) * lineHeight) / 2;
        int32_t top = first;
        const int32_t right = mReport.paper.UsableWidth();
        for (const ReportLine& line : heading.lines) {
            Write(line.indent, top, line.text, ReportFace::kBold, heading.points);
            top += lineHeight;
        }
        if (!heading.outcome.empty()) {
            const int32_t x = right - Width(heading.outcome, ReportFace::kBold, heading.points);
            Pen(ColourOf(heading.mark));
            Write(x, first, heading.outcome, ReportFace::kBold, heading.points);
            if (heading.mark != ReportMark::kNone)
                DrawShape(heading.mark, x - heading.points * kTwipsPerPoint - kMarkGapTwips, first,
                          heading.points);
        }
        Pen(kBlack, heading.level == 0 ? 2 * kCurveLine : heading.level == 1 ? kCurveLine : kThinLine);
        const int32_t rule = heading.top + heading.height - kLineTwips * 3;
        DrawLine({0, rule}, {right, rule});
    }

    /// Draws no rule: the tables of a form have their own.
    void DrawFormTitle(const ReportHeading& heading) {
        const int32_t width = mReport.paper.UsableWidth();
        const int32_t lineHeight = heading.points * kLineTwips;
        const auto lines = static_cast<int32_t>(heading.lines.size()) + (heading.outcome.empty() ? 0 : 1);
        int32_t top = heading.top + (heading.height - lines * lineHeight) / 2;
        for (const ReportLine& line : heading.lines) {
            Write((width - line.width) / 2, top, line.text, ReportFace::kBold, heading.points);
            top += lineHeight;
        }
        const int32_t below = Width(heading.outcome, ReportFace::kBold, heading.points);
        Write((width - below) / 2, top, heading.outcome, ReportFace::kBold, heading.points);
    }

    void Draw(const ReportTable& table) {
        for (const ReportRow& row : table.rows) DrawRow(row, *table.columns);
    }

    void DrawRow(const ReportRow& row, const std::vector<ReportColumn>& columns) {
        const int32_t right = columns.back().left + columns.back().width;
        if (row.failed) {
            mModule.fill(mDrawing, {0, row.top}, right, row.height, kFailGround);
            mModule.fill(mDrawing, {-2 * kBarWidth, row.top}, kBarWidth, row.height, kFailColour);
        }
        if (row.ruled) {
            Pen(kBlack);
            for (const ReportColumn& column : columns)
                if (column.ruled)
                    mModule.drawFrame(mDrawing, {column.left, row.top}, column.width, row.height);
        } else if (!row.cells.empty()) {
            Pen(row.heading ? kBlack : kRuleColour, row.heading ? kThinLine : kThinLine / 2);
            const int32_t left = std::min(columns[row.cells.front().column].left, columns.front().width);
            DrawLine({left, row.top + row.height}, {right, row.top + row.height});
        }
        for (const ReportCell& cell : row.cells) DrawCell(cell, row, columns);
    }

    static int32_t WidestLine(const ReportCell& cell) {
        int32_t widest = 0;
        for (const ReportLine& line : cell.lines) widest = std::max(widest, line.width);
        return widest;
    }

    void DrawCell(const ReportCell& cell, const ReportRow& row, const std::vector<ReportColumn>& columns) {
        const ReportColumn& column = columns[cell.column];
        const ReportColumn& last = columns[cell.column + cell.span - 1U];
        int32_t left = column.left + column.Padding();
        const int32_t end = last.left + last.width - column.Padding();
        int32_t top = row.top + row.Padding() / 2 + (row.group ? kGroupGap : 0);
        if (cell.mark != ReportMark::kNone) {
            const int32_t shape = row.points * kTwipsPerPoint + kMarkGapTwips;
            // Shape and words are centred together.
            if (column.align == ReportAlign::kCentre)
                left += std::max(0, end - left - shape - WidestLine(cell)) / 2;
            if (cell.span > 1) left += kMarkApartTwips;
            DrawShape(cell.mark, left, top, row.points);
            left += shape;
        }
        const ReportFace face = row.FaceOf(cell);
        Pen(ColourOf(cell.mark));
        for (const ReportLine& line : cell.lines) {
            const int32_t spare = end - left - line.width;
            const bool besideShape = cell.mark != ReportMark::kNone && column.align == ReportAlign::kCentre;
            const int32_t shift = column.align == ReportAlign::kRight    ? spare
                                  : besideShape                          ? 0
                                  : column.align == ReportAlign::kCentre ? spare / 2
                                                                         : line.indent;
            Write(left + std::max(0, shift), top, line.text, face, row.points);
            top += row.points * kLineTwips;
        }
    }

    void Draw(const ReportFigure& figure) {
        const auto drawLines = [&](const std::vector<std::vector<ReportPoint>>& lines) {
            for (const auto& line : lines) {
                mPolyline.clear();
                for (const ReportPoint& point : line) mPolyline.push_back({point.x, figure.top + point.y});
                mModule.drawLines(mDrawing, mPolyline.data(), mPolyline.size());
            }
        };
        Pen(kBlack);
        drawLines(figure.lines);
        Pen(kBlack, kCurveLine);
        drawLines(figure.curves);
        Pen(kBlack);
        for (const ReportLabel& label : figure.labels) {
            const int32_t width = Width(label.text, ReportFace::kPlain, label.points);
            const int32_t back = label.align == ReportAlign::kRight    ? width
                                 : label.align == ReportAlign::kCentre ? width / 2
                                                                       : 0;
            Write(label.place.x - back, figure.top + label.place.y, label.text, ReportFace::kPlain,
                  label.points);
        }
    }

    void Draw(const ReportRule& rule) {
        Pen(kBlack);
        DrawLine({rule.from.x, rule.from.y}, {rule.to.x, rule.to.y});
    }

    // --------------------------------------------------------------------------------------- foot

    void DrawFoot() {
        const ReportFacts& facts = mReport.facts;
        const int32_t top = mReport.paper.UsableHeight() + kFootPoints * kLineTwips;
        const int32_t right = mReport.paper.UsableWidth();
        Pen(kRuleColour);
        DrawLine({0, top - kFootPoints * 6}, {right, top - kFootPoints * 6});
        Pen(kBlack);
        const std::string numbers[] = {std::to_string(mPage + 1), std::to_string(mReport.pages.size())};
        const std::string page = FillPlaceholders(facts.pageOf, numbers);
        const int32_t pageWidth = Width(page, ReportFace::kPlain, kFootPoints);
        Write(right - pageWidth, top, page, ReportFace::kPlain, kFootPoints);
        std::string words;
        for (const std::string* part : {&facts.title, &facts.fileName, &facts.date, &facts.program})
            if (!part->empty()) words += (words.empty() ? "" : "  ·  ") + *part;
        Write(0, top, words, ReportFace::kPlain, kFootPoints, right - pageWidth - kFootGapTwips);
    }

    const ReportModel& mReport;
    const VorexPdfModule& mModule;
    VorexPdfDrawing* mDrawing = nullptr;
    std::deque<std::string> mTitles;  ///< that the bookmarks refer to
    std::vector<VorexPdfBookmark> mBookmarks;
    std::vector<VorexPdfPoint> mPolyline;
    std::size_t mPage = 0;
};

}  // namespace

std::string PaintPdf(const ReportModel& report, const VorexPdfModule& module) {
    return PagePainter(report, module).Paint();
}

}  // namespace vorex

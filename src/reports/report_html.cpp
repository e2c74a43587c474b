#include "reports/report_html.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "foundation/number_text.h"

namespace vorex {

namespace {

constexpr std::string_view kStyle = R"css(
:root { color-scheme: light; }
body { font: 14px/1.4 "Liberation Sans", Arial, Helvetica, sans-serif; color: #111; background: #fff;
  max-width: 60rem; margin: 1.5rem auto; padding: 0 1rem; }
h1 { font-size: 1.6rem; margin: 0 0 .5rem; overflow-wrap: anywhere; }
h2 { font-size: 1.15rem; margin: 2rem 0 .5rem; border-bottom: 2px solid #444; overflow-wrap: anywhere; }
h3, h4, h5, h6 { font-size: 1rem; margin: 1.5rem 0 .5rem; border-bottom: 1px solid #444;
  overflow-wrap: anywhere; }
h1, h2, h3, h4, h5, h6 { display: flex; flex-wrap: wrap; justify-content: space-between; gap: 0 1rem; }
:is(h1, h2, h3, h4, h5, h6) > :is(.fail, .pass) { margin-left: auto; }
nav ul { list-style: none; padding: 0; }
nav ul ul { padding-left: 1.5rem; }
table { border-collapse: collapse; min-width: 40%; margin: .75rem 0; }
th, td { padding: .15rem .6rem; vertical-align: top; text-align: left; overflow-wrap: break-word;
  border-bottom: 1px solid #ddd; white-space: pre-line; }
thead th { font-style: italic; }
thead th, thead td { border-bottom: 1.5px solid #444; }
tbody th { font-weight: normal; }
th.group { font-weight: bold; padding-top: .6rem; }
.right { text-align: right; }
.centre { text-align: center; }
.indented { padding-left: 1.8rem; }
.step { display: inline-block; width: 1.2rem; }
.long { overflow-wrap: anywhere; }
tr.failed { background: #fbe3e1; box-shadow: inset 4px 0 0 #b00020; }
tr.failed th, tr.failed td, .fail, .pass { font-weight: bold; }
table.ruled { table-layout: fixed; border: 1px solid #333; }
table.ruled th, table.ruled td { border: 1px solid #333; padding: .2rem .4rem; }
table.ruled .fail { white-space: normal; }
table.ruled .indented { padding-left: 1.6rem; }
.form { justify-content: center; text-align: center; border: 0; flex-wrap: wrap; gap: 0 1rem; }
.form > span { flex: 0 0 100%; }
.fail { color: #b00020; white-space: nowrap; }
.pass { color: #1b5e20; white-space: nowrap; }
figure { margin: 1rem 0; }
svg { width: 100%; height: auto; }
footer { margin-top: 2rem; border-top: 1px solid #888; color: #444; font-size: .85rem; }
@page { size: auto; margin: 15mm; }
@media print {
  body { font-size: 8.5pt; line-height: 1.25; max-width: none; margin: 0; padding: 0; }
  th, td { padding: .6pt 5pt; }
  nav { display: none; }
  h2, h3, h4, h5, h6 { break-after: avoid; }
  section.page { break-before: page; }
  section.page > :first-child { margin-top: 0; }
  .form { margin: .8rem 0 .3rem; font-size: 11pt; line-height: 1.2; }
  table.ruled { font-size: 7.5pt; line-height: 1.15; margin: .3rem 0; break-inside: avoid; }
  table.ruled th, table.ruled td { padding: .08rem .4rem; }
  tr, figure { break-inside: avoid; }
  tbody tr:first-child, tbody tr:nth-last-child(2) { break-after: avoid; }
  tr.more { break-before: avoid; }
  thead { display: table-header-group; }
  tr.failed { print-color-adjust: exact; -webkit-print-color-adjust: exact; }
}
)css";

void AddEscaped(std::string& html, std::string_view text) {
    for (char c : text) {
        switch (c) {
            case '&':
                html += "&amp;";
                break;
            case '<':
                html += "&lt;";
                break;
            case '>':
                html += "&gt;";
                break;
            case '"':
                html += "&quot;";
                break;
            default:
                html += c;
        }
    }
}

/// HTML knows six headings; the first is the title.
constexpr int32_t kDeepestHeading = 5;

/// True for a text that would make its column too wide for a page. All others keep their words whole: a
/// number that is split over two lines reads as two numbers.
bool HasLongWord(std::string_view text) {
    constexpr std::size_t kLong = 24;
    std::size_t begin = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && text[i] != ' ' && text[i] != '\n') continue;
        if (i - begin > kLong) return true;
        begin = i + 1;
    }
    return false;
}

class HtmlWriter {
  public:
    explicit HtmlWriter(const ReportModel& report) : mReport(report), mFacts(report.facts) {}

    std::string Write() {
        AddHead();
        for (const ReportPage& page : mReport.pages) {
            mBeginsPage = &page != &mReport.pages.front();
            for (const ReportItem& item : page.items) {
                std::visit([this](const auto& part) { Add(part); }, item);
                mBeginsPage = false;
            }
        }
        EndSection();
        mHtml += "</main>\n<footer><p>";
        bool first = true;
        for (const std::string* part : {&mFacts.title, &mFacts.fileName, &mFacts.date, &mFacts.program}) {
            if (part->empty()) continue;
            if (!first) mHtml += " · ";
            AddEscaped(mHtml, *part);
            first = false;
        }
        mHtml += "</p></footer>\n</body>\n</html>\n";
        return std::move(mHtml);
    }

  private:
    void AddHead() {
        mHtml += "<!DOCTYPE html>\n<html lang=\"";
        AddEscaped(mHtml, mFacts.language);
        mHtml +=
            "\">\n<head>\n<meta charset=\"utf-8\"/>\n"
            "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n<title>";
        AddEscaped(mHtml, mFacts.title);
        mHtml += "</title>\n<style>";
        mHtml += kStyle;
        mHtml += "</style>\n</head>\n<body>\n<main>\n";
    }

    void AddMark(ReportMark mark, std::string_view text) {
        const std::string_view words = MarkWord(mFacts, mark, text);
        if (mark == ReportMark::kNone) {
            AddEscaped(mHtml, words);
            return;
        }
        const bool fail = mark == ReportMark::kFail;
        mHtml += fail ? "<span class=\"fail\"><span aria-hidden=\"true\">✗</span> "
                      : "<span class=\"pass\"><span aria-hidden=\"true\">✓</span> ";
        AddEscaped(mHtml, words);
        mHtml += "</span>";
    }

    // ------------------------------------------------------------------------------------ headings

    void EndSection() {
        if (mInSection) mHtml += "</section>\n";
        mInSection = false;
    }

    void Add(const ReportHeading& heading) {
        if (heading.level > 0 && mNumber == 0) AddContents();
        EndSection();
        const std::string id = "s" + std::to_string(mNumber++);
        const std::string tag = "h" + std::to_string(std::min(heading.level, kDeepestHeading) + 1);
        mHtml.append("<section").append(mBeginsPage ? " class=\"page\"" : "");
        mHtml.append(" aria-labelledby=\"").append(id).append("\">\n<").append(tag);
        mHtml.append(heading.centred ? " class=\"form\"" : "");
        mHtml.append(" id=\"").append(id).append("\"><span dir=\"auto\">");
        AddEscaped(mHtml, heading.title);
        mHtml += "</span>";
        if (!heading.outcome.empty()) {
            mHtml += heading.centred ? " <span dir=\"auto\">" : " ";
            AddMark(heading.mark, heading.outcome);
            if (heading.centred) mHtml += "</span>";
        }
        mHtml.append("</").append(tag).append(">\n");
        mInSection = true;
        if (heading.level == 0) AddContents();
    }

    /// Links to all headings, with their outcomes.
    void AddContents() {
        if (mHasContents) return;
        mHasContents = true;
        int32_t number = -1;
        int32_t depth = 0;  // lists that are open
        for (const ReportPage& page : mReport.pages) {
            for (const ReportItem& item : page.items) {
                const auto* heading = std::get_if<ReportHeading>(&item);
                if (heading != nullptr) ++number;
                if (heading == nullptr || heading->level == 0) continue;
                if (depth == 0) BeginContents();
                GoToDepth(depth, std::min(heading->level, depth + 1));
                AddLink(*heading, number);
            }
        }
        if (depth == 0) return;
        GoToDepth(depth, 0);
        mHtml += "</nav>\n";
    }

    void BeginContents() {
        mHtml += "<nav aria-label=\"";
        AddEscaped(mHtml, mFacts.contents);
        mHtml += "\">\n";
    }

    /// Opens a list inside the previous entry, or ends entry and lists down to a depth.
    void GoToDepth(int32_t& depth, int32_t wanted) {
        if (wanted > depth) {
            mHtml += "<ul>\n";
            ++depth;
            return;
        }
        for (; depth > wanted; --depth) mHtml += "</li>\n</ul>\n";
        if (depth > 0) mHtml += "</li>\n";
    }

    void AddLink(const ReportHeading& heading, int32_t number) {
        mHtml.append("<li><a href=\"#s").append(std::to_string(number)).append("\"><span dir=\"auto\">");
        AddEscaped(mHtml, heading.title);
        mHtml += "</span></a> ";
        AddMark(heading.mark, heading.outcome);
    }

    // -------------------------------------------------------------------------------------- tables

    /// The columns that have content, by position; the others are left out.
    static std::vector<int32_t> UsedColumns(const ReportTable& table) {
        std::vector<int32_t> places(table.columns->size(), -1);
        for (const ReportRow& row : table.rows)
            for (const ReportCell& cell : row.cells) places[cell.column] = 0;
        for (std::size_t i = 0; i < places.size(); ++i)
            if ((*table.columns)[i].ruled) places[i] = 0;
        int32_t next = 0;
        for (int32_t& place : places)
            if (place == 0) place = next++;
        return places;
    }

    void Add(const ReportTable& table) {
        const std::vector<int32_t> places = UsedColumns(table);
        const auto used = static_cast<int32_t>(
            std::count_if(places.begin(), places.end(), [](int32_t place) { return place >= 0; }));
        if (used == 0) return;
        mHtml += "<table";
        if (mInSection) mHtml.append(" aria-labelledby=\"s").append(std::to_string(mNumber - 1)).append("\"");
        if (table.columns->front().ruled)
            AddRuledColumns(*table.columns);
        else
            mHtml += ">\n";
        enum class Part { kNone, kHead, kBody } part = Part::kNone;
        const auto go = [&](Part next, bool anew) {
            if (next == part && !anew) return;
            if (part != Part::kNone) mHtml += part == Part::kHead ? "</thead>\n" : "</tbody>\n";
            if (next != Part::kNone) mHtml += next == Part::kHead ? "<thead>\n" : "<tbody>\n";
            part = next;
        };
        for (const ReportRow& row : table.rows) {
            if (row.repeated || row.cells.empty()) continue;
            const bool head = row.heading && part != Part::kBody;
            go(head ? Part::kHead : Part::kBody, row.group);
            AddRow(row, *table.columns, places, used);
        }
        go(Part::kNone, false);
        mHtml += "</table>\n";
    }

    /// A form keeps the proportions of its columns.
    void AddRuledColumns(const std::vector<ReportColumn>& columns) {
        const auto share = [](int32_t part, int32_t whole) {
            constexpr int32_t kHundredth = 10000;
            return PlainText(std::round(double{kHundredth} * part / whole) / 100) + "%";
        };
        const int32_t whole = columns.back().left + columns.back().width;
        mHtml.append(" class=\"ruled\" style=\"width:").append(share(whole, mReport.paper.UsableWidth()));
        mHtml += "\">\n<colgroup>";
        for (const ReportColumn& column : columns)
            mHtml.append("<col style=\"width:").append(share(column.width, whole)).append("\"/>");
        mHtml += "</colgroup>\n";
    }

    void AddRow(const ReportRow& row, const std::vector<ReportColumn>& columns,
                const std::vector<int32_t>& places, int32_t used) {
        // A row without a name continues the row above.
        const bool more = places[row.cells.front().column] > 0 && !row.heading;
        const std::string_view look = row.failed ? (more ? "failed more" : "failed") : more ? "more" : "";
        mHtml += look.empty() ? "<tr>" : "<tr class=\"" + std::string(look) + "\">";
        int32_t next = 0;
        for (std::size_t i = 0; i < row.cells.size(); ++i) {
            const ReportCell& cell = row.cells[i];
            const int32_t place = places[cell.column];
            for (; next < place; ++next) mHtml += "<td></td>";
            const bool toEnd = cell.span > 1 && i + 1 == row.cells.size();
            AddCell(cell, columns[cell.column], row.heading, row.group, place == 0 && used > 1,
                    toEnd ? used - place : 1);
            next = toEnd ? used : place + 1;
        }
        for (; next < used; ++next) mHtml += "<td></td>";
        mHtml += "</tr>\n";
    }

    void AddCell(const ReportCell& cell, const ReportColumn& column, bool heading, bool group, bool names,
                 int32_t span) {
        const bool header = heading || group || names || cell.heading;
        const std::string_view scope = heading ? "col" : group ? "rowgroup" : "row";
        mHtml += header ? "<th scope=\"" + std::string(scope) + "\"" : "<td";
        constexpr std::string_view kIndent = "   ";
        const std::pair<bool, std::string_view> looks[] = {
            {group, "group"},
            {column.align == ReportAlign::kRight && !group, "right"},
            {column.align == ReportAlign::kCentre && !group, "centre"},
            {HasLongWord(cell.text), "long"},
            {cell.text.starts_with(kIndent), "indented"},
        };
        std::string classes;
        for (const auto& [has, name] : looks)
            if (has) classes.append(classes.empty() ? "" : " ").append(name);
        if (!classes.empty()) mHtml.append(" class=\"").append(classes).append("\"");
        if (const std::size_t room = column.ruled ? RoomToWrite(cell.text) : 0; room > 0)
            mHtml.append(" style=\"height:").append(PlainText(kLineEm * (double(room) + 1))).append("em\"");
        if (span > 1) mHtml.append(" colspan=\"").append(std::to_string(span)).append("\"");
        mHtml += " dir=\"auto\">";
        // The first step is the indent of the cell.
        const std::size_t depth = std::min(cell.text.find_first_not_of(' '), cell.text.size()) / kTreeStep;
        for (std::size_t step = 1; step < depth; ++step) mHtml += "<span class=\"step\"></span>";
        if (cell.mark != ReportMark::kNone)
            AddMark(cell.mark, cell.text);
        else
            AddWords(Trimmed(cell.text));
        mHtml += header ? "</th>" : "</td>";
    }

    /// A gap to write in by hand is kept; a browser reduces any other run of blanks to one.
    void AddWords(std::string_view words) {
        while (!words.empty()) {
            const std::size_t begin = std::min(words.find(kGap), words.size());
            const std::size_t end = std::min(words.find_first_not_of(' ', begin), words.size());
            AddEscaped(mHtml, words.substr(0, begin));
            for (std::size_t i = begin; i < end; ++i) mHtml += "&#160;";
            words.remove_prefix(end);
        }
    }

    // ------------------------------------------------------------------------------------- figures

    void AddPolyline(const std::vector<ReportPoint>& points, std::string_view look) {
        mHtml += "<polyline points=\"";
        for (const ReportPoint& point : points)
            mHtml.append(PlainText(point.x)).append(",").append(PlainText(point.y)).append(" ");
        mHtml.append("\" fill=\"none\" ").append(look).append("/>\n");
    }

    void Add(const ReportFigure& figure) {
        mHtml.append("<figure><svg role=\"img\" viewBox=\"0 0 ");
        mHtml.append(PlainText(mReport.paper.UsableWidth())).append(" ").append(PlainText(figure.height));
        mHtml += "\" aria-label=\"";
        AddEscaped(mHtml, figure.caption);
        mHtml += "\" font-family=\"Liberation Sans, Arial, sans-serif\">\n<title>";
        AddEscaped(mHtml, figure.caption);
        mHtml += "</title>\n";
        for (const auto& line : figure.lines) AddPolyline(line, R"(stroke="#444" stroke-width="12")");
        for (const auto& curve : figure.curves)
            AddPolyline(curve, R"(stroke="#000" stroke-width="24" stroke-linejoin="round")");
        for (const ReportLabel& label : figure.labels) AddLabel(label);
        mHtml += "</svg></figure>\n";
    }

    void AddLabel(const ReportLabel& label) {
        const int32_t size = label.points * kTwipsPerPoint;
        const std::string_view anchor = label.align == ReportAlign::kRight    ? "end"
                                        : label.align == ReportAlign::kCentre ? "middle"
                                                                              : "start";
        mHtml.append("<text x=\"").append(PlainText(label.place.x)).append("\" y=\"");
        mHtml.append(PlainText(label.place.y + size)).append("\" font-size=\"").append(PlainText(size));
        mHtml.append("\" text-anchor=\"").append(anchor).append("\">");
        AddEscaped(mHtml, label.text);
        mHtml += "</text>\n";
    }

    void Add(const ReportRule& rule) {
        if (rule.from.y == rule.to.y) mHtml += "<hr/>\n";
    }

    static constexpr double kLineEm = 1.4;  ///< height of a line of text
    static constexpr std::string_view kGap = "    ";

    const ReportModel& mReport;
    const ReportFacts& mFacts;
    std::string mHtml;
    int32_t mNumber = 0;
    bool mInSection = false;
    bool mBeginsPage = false;
    bool mHasContents = false;
};

}  // namespace

std::string ReportHtml(const ReportModel& report) {
    return HtmlWriter(report).Write();
}

}  // namespace vorex

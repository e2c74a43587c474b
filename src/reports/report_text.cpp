#include "reports/report_text.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "foundation/number_text.h"
#include "reports/report_wrap.h"

namespace vorex {

namespace {

constexpr std::size_t kWidth = 100;
constexpr std::size_t kIndent = 2;
constexpr std::size_t kGap = 2;
/// A number may gain or lose a digit without moving its neighbours.
constexpr std::size_t kLeastColumn = 8;
constexpr std::size_t kLeastWrapped = 6;
/// Characters before the first cell of a ruled row, and between two cells.
constexpr std::size_t kRuleAndBlank = 2;
constexpr std::size_t kBlankRuleBlank = 3;
/// A word longer than this breaks rather than taking room from the columns next to it.
constexpr std::size_t kLongestWhole = kWidth / 3;
constexpr std::string_view kCross = "✗ ";
constexpr std::string_view kTick = "✓ ";

std::string_view ShapeOf(ReportMark mark) {
    if (mark == ReportMark::kNone) return {};
    return mark == ReportMark::kFail ? kCross : kTick;
}

class TextWriter {
  public:
    std::string Write(const ReportModel& report) {
        mFacts = &report.facts;
        mUsableWidth = report.paper.UsableWidth();
        for (const ReportPage& page : report.pages)
            for (const ReportItem& item : page.items)
                std::visit([this](const auto& part) { Add(part); }, item);
        return std::move(mText);
    }

  private:
    using Widths = std::vector<std::size_t>;

    void Line(std::string_view line) {
        mText += line;
        while (mText.ends_with(' ')) mText.pop_back();
        mText += '\n';
    }

    void Add(const ReportHeading& heading) {
        if (heading.title.empty() && heading.outcome.empty()) return;
        if (!mText.empty()) Line("");
        if (heading.centred) {
            for (std::string_view words : {heading.title, heading.outcome})
                for (const ReportLine& part : mTerminal.Wrap(words, kWidth))
                    if (!part.text.empty())
                        Line(std::string((kWidth - mTerminal.Width(part.text)) / 2, ' ') +
                             std::string(part.text));
            return;
        }
        const std::string outcome = std::string(ShapeOf(heading.mark)) + std::string(heading.outcome);
        const std::size_t kept = outcome.empty() ? 0 : mTerminal.Width(outcome) + kGap;
        bool first = true;
        for (const ReportLine& part : mTerminal.Wrap(heading.title, kWidth - kept)) {
            std::string line(part.text);
            if (first && !outcome.empty())
                line += std::string(kWidth - mTerminal.Width(line) - mTerminal.Width(outcome), ' ') + outcome;
            Line(line);
            first = false;
        }
        Line(std::string(kWidth, heading.level == 0 ? '=' : heading.level == 1 ? '-' : '.'));
    }

    std::string Words(const ReportCell& cell) const {
        return std::string(ShapeOf(cell.mark)) + std::string(MarkWord(*mFacts, cell.mark, cell.text));
    }

    /// Calls `measure(column, row, cell)` for each cell that has to fit into its column.
    template <typename Measure>
    static void ForEachFittedCell(const ReportTable& table, Measure measure) {
        for (const ReportRow& row : table.rows)
            for (const ReportCell& cell : row.cells)
                if (!row.group && (cell.span == 1 || table.columns->size() > 1))
                    measure(cell.column, row, cell);
    }

    /// The width of each column's longest cell; 0 for an empty column.
    Widths NaturalWidths(const ReportTable& table, bool wrappedHeadings) {
        Widths widths(table.columns->size(), 0);
        ForEachFittedCell(table, [&](std::size_t column, const ReportRow& row, const ReportCell& cell) {
            const std::size_t width = row.heading && wrappedHeadings   ? LongestWord(cell.text)
                                      : cell.mark == ReportMark::kNone ? mTerminal.Width(cell.text)
                                                                       : mTerminal.Width(Words(cell));
            widths[column] = std::max(widths[column], width);
        });
        return widths;
    }

    static Widths WithLeastColumns(Widths widths, const ReportTable& table) {
        for (std::size_t i = 0; i < widths.size(); ++i)
            if (widths[i] > 0 && (*table.columns)[i].align == ReportAlign::kRight)
                widths[i] = std::max(widths[i], kLeastColumn);
        return widths;
    }

    /// By how much the columns and the gaps between them exceed the line.
    static std::size_t Excess(const Widths& widths) {
        std::size_t sum = kIndent;
        for (std::size_t width : widths)
            if (width > 0) sum += width + kGap;
        return sum > kWidth + kGap ? sum - kWidth - kGap : 0;
    }

    /// Narrows the widest of the columns above their least width until all fit next to each other.
    static void Shrink(Widths& widths, const Widths& least) {
        for (std::size_t excess = Excess(widths); excess > 0; excess = Excess(widths)) {
            std::size_t widest = widths.size();
            std::size_t next = 0;
            for (std::size_t i = 0; i < widths.size(); ++i) {
                if (widths[i] <= least[i]) continue;
                if (widest == widths.size() || widths[i] > widths[widest]) {
                    next = widest == widths.size() ? 0 : widths[widest];
                    widest = i;
                } else {
                    next = std::max(next, widths[i]);
                }
            }
            if (widest == widths.size()) return;
            const std::size_t end = std::max(least[widest], std::min(next, widths[widest] - 1));
            widths[widest] -= std::min(excess, widths[widest] - end);
        }
    }

    /// If the columns are too wide for a line, the headings wrap first, then the gaps shrink, then the
    /// longest texts wrap. Words break last.
    Widths FittedWidths(const ReportTable& table) {
        const Widths roomy = WithLeastColumns(NaturalWidths(table, false), table);
        if (Excess(roomy) == 0) return roomy;
        const Widths close = NaturalWidths(table, true);
        Widths widths = WithLeastColumns(close, table);
        if (Excess(widths) == 0) return widths;
        if (Excess(close) == 0) return close;
        Widths words(widths.size(), 0);
        ForEachFittedCell(table, [&](std::size_t column, const ReportRow&, const ReportCell& cell) {
            words[column] = std::max(words[column], std::min(LongestWord(Words(cell)), kLongestWhole));
        });
        Shrink(widths, words);
        Shrink(widths, Widths(widths.size(), kLeastWrapped));
        return widths;
    }

    void Add(const ReportTable& table) {
        const bool holdsSomething = std::any_of(table.rows.begin(), table.rows.end(),
                                                [](const ReportRow& row) { return !row.cells.empty(); });
        if (!holdsSomething) return;
        if (!mText.empty()) Line("");
        if (table.columns->front().ruled) {
            AddRuled(table);
            return;
        }
        const Widths widths = FittedWidths(table);
        bool first = true;
        for (const ReportRow& row : table.rows) {
            if (row.group && !first) Line("");
            AddRow(row, *table.columns, widths);
            first = row.heading;
        }
    }

    /// The width of a cell and of the empty ones after it that it may use.
    static std::size_t Room(const ReportCell& cell, const Widths& widths, std::size_t begin) {
        if (cell.span > 1) return kWidth - begin;
        return widths[cell.column];
    }

    void AddRow(const ReportRow& row, const std::vector<ReportColumn>& columns, const Widths& widths) {
        std::vector<std::string> lines(1);
        for (const ReportCell& cell : row.cells) {
            std::size_t begin = kIndent;
            for (std::size_t i = 0; i < cell.column; ++i)
                if (widths[i] > 0) begin += widths[i] + kGap;
            const std::size_t room = Room(cell, widths, begin);
            if (cell.mark == ReportMark::kNone && IsAscii(cell.text) && cell.text.size() <= room &&
                cell.text.find('\n') == std::string_view::npos) {
                Put(lines[0], cell.text, cell.text.size(), begin, room, columns[cell.column].align);
                continue;
            }
            const std::string words = Words(cell);
            const auto parts = mTerminal.Wrap(words, room);
            if (lines.size() < parts.size()) lines.resize(parts.size());
            for (std::size_t i = 0; i < parts.size(); ++i) {
                const std::string part = IndentedText(parts[i]);
                Put(lines[i], part, mTerminal.Width(part), begin, room, columns[cell.column].align);
            }
        }
        for (const std::string& line : lines) Line(line);
    }

    void Put(std::string& line, std::string_view words, std::size_t width, std::size_t begin,
             std::size_t room, ReportAlign align) {
        const std::size_t spare = room > width ? room - width : 0;
        const std::size_t at = begin + (align == ReportAlign::kRight    ? spare
                                        : align == ReportAlign::kCentre ? spare / 2
                                                                        : 0);
        const std::size_t length = mTerminal.Width(line);
        if (length < at) line.append(at - length, ' ');
        line += words;
    }

    // --------------------------------------------------------------------------------- ruled tables

    std::size_t LongestWord(std::string_view text) {
        std::size_t longest = 0;
        ForEachPart(text, '\n', [&](std::string_view line) {
            ForEachPart(line, ' ',
                        [&](std::string_view word) { longest = std::max(longest, mTerminal.Width(word)); });
        });
        return longest;
    }

    /// Positions of the rules: columns as wide as on paper, unless a word would break while another column
    /// has room to spare.
    Widths RulesOf(const ReportTable& table) {
        const std::vector<ReportColumn>& columns = *table.columns;
        const auto place = [&](int32_t twips) {
            constexpr double kLast = kWidth - 1;
            return static_cast<std::size_t>(std::lround(kLast * twips / mUsableWidth));
        };
        Widths inner;
        for (const ReportColumn& column : columns)
            inner.push_back(std::max(kLeastWrapped, place(column.left + column.width) - place(column.left)) -
                            kBlankRuleBlank);
        Widths least(columns.size(), 0);
        for (const ReportRow& row : table.rows)
            for (const ReportCell& cell : row.cells)
                least[cell.column] = std::max(least[cell.column], LongestWord(Words(cell)));
        for (std::size_t i = 0; i < inner.size(); ++i) {
            const auto widest = std::max_element(inner.begin(), inner.end());
            if (least[i] <= inner[i] || *widest < kWidth / 2) continue;
            const std::size_t wanted = std::min(least[i] - inner[i], *widest - kWidth / 3);
            *widest -= wanted;
            inner[i] += wanted;
        }
        Widths rules = {0};
        for (std::size_t width : inner) rules.push_back(rules.back() + width + kBlankRuleBlank);
        return rules;
    }

    void AddRuled(const ReportTable& table) {
        const Widths rules = RulesOf(table);
        std::string separator(rules.back() + 1, '-');
        for (std::size_t rule : rules) separator[rule] = '+';
        Line(separator);
        bool apart = true;  // a separator is above
        for (const ReportRow& row : table.rows) {
            const bool room = std::any_of(row.cells.begin(), row.cells.end(),
                                          [](const ReportCell& cell) { return RoomToWrite(cell.text) > 0; });
            if (room && !apart) Line(separator);
            AddRuledRow(row, *table.columns, rules);
            apart = room || row.heading;
            if (apart || &row == &table.rows.back()) Line(separator);
        }
    }

    void AddRuledRow(const ReportRow& row, const std::vector<ReportColumn>& columns, const Widths& rules) {
        std::vector<std::vector<ReportLine>> cells(columns.size());
        std::vector<std::string> words(columns.size());
        std::size_t lines = 1;
        for (const ReportCell& cell : row.cells) {
            const std::size_t at = cell.column;
            words[at] = Words(cell);
            cells[at] = mTerminal.Wrap(words[at], rules[at + 1] - rules[at] - kBlankRuleBlank);
            lines = std::max(lines, cells[at].size());
        }
        for (std::size_t i = 0; i < lines; ++i) {
            std::string line = "|";
            for (std::size_t at = 0; at < columns.size(); ++at) {
                if (i < cells[at].size()) {
                    const std::string part = IndentedText(cells[at][i]);
                    Put(line, part, mTerminal.Width(part), rules[at] + kRuleAndBlank,
                        rules[at + 1] - rules[at] - kBlankRuleBlank, columns[at].align);
                }
                line.append(rules[at + 1] - std::min(rules[at + 1], mTerminal.Width(line)), ' ').append("|");
            }
            Line(line);
        }
    }

    /// A figure in characters: lines, curves and labels on a grid.
    void Add(const ReportFigure& figure) {
        constexpr std::size_t kFigureRows = 24;
        int32_t right = 1;
        for (const auto& line : figure.lines)
            for (const ReportPoint& point : line) right = std::max(right, point.x);
        const double across = static_cast<double>(kWidth - kIndent - 1) / right;
        const double down = static_cast<double>(kFigureRows - 1) / std::max(1, figure.height);
        std::vector<std::u32string> grid(kFigureRows, std::u32string(kWidth, U' '));
        const auto column = [&](int32_t x) {
            return static_cast<std::size_t>(std::max(0.0, std::round(x * across)));
        };
        const auto row = [&](int32_t y) {
            return static_cast<std::size_t>(std::max(0.0, std::round(y * down)));
        };
        const auto set = [&](std::size_t x, std::size_t y, char32_t c) {
            if (x < kWidth && y < kFigureRows) grid[y][x] = c;
        };
        for (const auto& line : figure.lines) DrawStraight(line, column, row, set);
        for (const auto& curve : figure.curves) DrawCurve(curve, across, down, set);
        for (const ReportLabel& label : figure.labels) DrawLabel(label, column, row, set);
        Line("");
        for (const std::u32string& line : grid) Line("  " + Utf8(line));
    }

    template <typename Column, typename Row, typename Set>
    static void DrawStraight(const std::vector<ReportPoint>& line, Column column, Row row, Set set) {
        const ReportPoint from = line.front();
        const ReportPoint to = line.back();
        const bool level = row(from.y) == row(to.y);
        const auto [left, right] = std::minmax({column(from.x), column(to.x)});
        const auto [top, bottom] = std::minmax({row(from.y), row(to.y)});
        if (level)
            for (std::size_t x = left; x <= right; ++x) set(x, top, U'-');
        else
            for (std::size_t y = top; y <= bottom; ++y) set(left, y, y == top || y == bottom ? U'+' : U'|');
    }

    template <typename Set>
    static void DrawCurve(const std::vector<ReportPoint>& curve, double across, double down, Set set) {
        constexpr double kStepsPerCell = 2;
        for (std::size_t i = 0; i + 1 < curve.size(); ++i) {
            const double dx = (curve[i + 1].x - curve[i].x) * across;
            const double dy = (curve[i + 1].y - curve[i].y) * down;
            const double steps =
                std::max(1.0, std::ceil(kStepsPerCell * std::max(std::abs(dx), std::abs(dy))));
            for (double step = 0; step <= steps; ++step)
                set(static_cast<std::size_t>(
                        std::max(0.0, std::round(curve[i].x * across + dx * step / steps))),
                    static_cast<std::size_t>(
                        std::max(0.0, std::round(curve[i].y * down + dy * step / steps))),
                    U'*');
        }
    }

    template <typename Column, typename Row, typename Set>
    void DrawLabel(const ReportLabel& label, Column column, Row row, Set set) {
        const std::size_t width = mTerminal.Width(label.text);
        std::size_t at = column(label.place.x);
        if (label.align == ReportAlign::kRight) at -= std::min(at, width);
        if (label.align == ReportAlign::kCentre) at -= std::min(at, width / 2);
        // A label's position is its top; in characters it goes to the line of the middle of its digits.
        const std::size_t y = row(label.place.y + label.points * kTwipsPerPoint * 4 / 7);
        for (std::string_view rest = label.text; !rest.empty();) {
            const Utf8Character next = FirstCharacter(rest);
            set(at++, y, next.code);
            rest.remove_prefix(next.length);
        }
    }

    static std::string Utf8(const std::u32string& line) {
        std::string text;
        for (char32_t c : line) AppendUtf8(text, c);
        return text;
    }

    void Add(const ReportRule& rule) {
        if (rule.from.y == rule.to.y) Line(std::string(kWidth, '-'));
    }

    TerminalWrapper mTerminal;
    const ReportFacts* mFacts = nullptr;
    int32_t mUsableWidth = 1;
    std::string mText;
};

}  // namespace

std::string ReportText(const ReportModel& report) {
    return TextWriter().Write(report);
}

}  // namespace vorex

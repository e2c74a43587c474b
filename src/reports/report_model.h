#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// A report as pages of headings, tables and figures: the input of the renderers for text, HTML and PDF. It
/// is plain data, so that a renderer in a separate module can read it. Lengths are twips; places are measured
/// from the upper left corner of the usable area of a page.
namespace vorex {

enum class ReportAlign : uint8_t { kLeft, kCentre, kRight };
/// A shape in front of a verdict, so that the verdict needs no colour.
enum class ReportMark : uint8_t { kNone, kFail, kPass };
enum class ReportFace : uint8_t { kPlain, kBold, kBoldItalic };
inline constexpr std::size_t kReportFaces = 3;

inline constexpr int32_t kTwipsPerPoint = 20;
/// Blank edge of a cell, on each side.
inline constexpr int32_t kCellPadding = 30;
/// Height of a line per point of its text, and the padding of a row, above and below together.
inline constexpr int32_t kLineTwips = 24;
inline constexpr int32_t kRowPadding = 26;
/// The same for a column and a row with rules around them.
inline constexpr int32_t kRuledCellPadding = 80;
inline constexpr int32_t kRuledRowPadding = 56;
/// Room above a row that heads others.
inline constexpr int32_t kGroupGap = 60;
/// Room between a verdict's shape and its word, and the size of the shape, in parts of the text's size.
inline constexpr int32_t kMarkGapTwips = 40;
/// Distance between a mark that reaches into the column before it and the text there.
inline constexpr int32_t kMarkApartTwips = 80;

/// Indent of a name, in blanks, per level of the tree of tests.
inline constexpr std::size_t kTreeStep = 6;

/// Keeps texts at one place until the report is written.
class TextStore {
  public:
    std::string_view Add(std::string_view text);

  private:
    static constexpr std::size_t kBlock = std::size_t{64} << 10U;
    std::vector<std::unique_ptr<char[]>> mBlocks;
    std::size_t mLeft = 0;
    char* mNext = nullptr;
};

/// A line of a wrapped text. [paged only]
struct ReportLine {
    std::string_view text;
    int32_t indent = 0;
    int32_t width = 0;
};

struct ReportColumn {
    int32_t left = 0;
    int32_t width = 0;
    ReportAlign align = ReportAlign::kLeft;
    bool narrow = false;  ///< the column of the fail mark
    bool ruled = false;   ///< cells have rules around them

    int32_t Padding() const { return ruled ? kRuledCellPadding : kCellPadding; }
    bool operator==(const ReportColumn&) const = default;
};

struct ReportCell {
    std::string_view text;
    uint16_t column = 0;
    uint16_t span = 1;
    bool heading = false;
    ReportMark mark = ReportMark::kNone;
    std::vector<ReportLine> lines;
};

struct ReportRow {
    std::vector<ReportCell> cells;  ///< the non-empty ones, from left to right
    int32_t top = 0;
    int32_t height = 0;
    uint8_t points = 0;
    bool heading = false;   ///< every cell is a heading, and there are several
    bool group = false;     ///< a heading inside a table, for the rows below it
    bool repeated = false;  ///< a heading that is on an earlier page
    bool failed = false;
    bool ruled = false;  ///< is in ruled columns

    int32_t Padding() const { return ruled ? kRuledRowPadding : kRowPadding; }
    /// How a cell of this row is measured and drawn.
    ReportFace FaceOf(const ReportCell& cell) const {
        if (cell.heading) return ReportFace::kBoldItalic;
        return group || failed || cell.mark != ReportMark::kNone ? ReportFace::kBold : ReportFace::kPlain;
    }
};

struct ReportTable {
    std::shared_ptr<const std::vector<ReportColumn>> columns;
    std::vector<ReportRow> rows;
};

/// Line feeds at the end of a cell: lines to write on by hand.
inline std::size_t RoomToWrite(std::string_view text) {
    const std::size_t last = text.find_last_not_of('\n');
    return last == std::string_view::npos ? text.size() : text.size() - last - 1;
}

struct ReportHeading {
    std::string_view title;
    std::string_view outcome;
    ReportMark mark = ReportMark::kNone;
    int32_t level = 1;     ///< 0 is the title of the report
    bool centred = false;  ///< the title of a form; the outcome is in a line below it
    int32_t top = 0;
    int32_t height = 0;
    int32_t points = 0;
    std::vector<ReportLine> lines;
};

struct ReportPoint {
    int32_t x = 0;
    int32_t y = 0;
};

struct ReportLabel {
    ReportPoint place;
    ReportAlign align = ReportAlign::kLeft;
    uint8_t points = 0;
    std::string_view text;
};

/// A picture. Positions in it are measured from its top.
struct ReportFigure {
    std::string_view caption;
    int32_t top = 0;
    int32_t height = 0;
    std::vector<std::vector<ReportPoint>> lines;   ///< frame, axes, ticks
    std::vector<std::vector<ReportPoint>> curves;  ///< the plotted data
    std::vector<ReportLabel> labels;
};

/// A line on the page, not in a figure.
struct ReportRule {
    ReportPoint from;
    ReportPoint to;
};

using ReportItem = std::variant<ReportHeading, ReportTable, ReportFigure, ReportRule>;

struct ReportPage {
    std::vector<ReportItem> items;
};

/// Paper, in twips. A report without pages has no height.
struct ReportPaper {
    int32_t width = 0;
    int32_t height = 0;
    int32_t marginLeft = 0;
    int32_t marginTop = 0;
    int32_t marginBottom = 0;

    int32_t UsableWidth() const { return width - 2 * marginLeft; }
    int32_t UsableHeight() const { return height - marginTop - marginBottom; }
    bool Paged() const { return height > 0; }
};

/// The foot of each page, and the metadata of the file.
struct ReportFacts {
    std::string title;
    std::string fileName;
    std::string date;
    std::string program;
    std::string language;
    std::string pageOf;    ///< "Page %%1 of %%2", translated
    std::string failWord;  ///< the word next to the fail mark
    std::string passWord;
    std::string contents;  ///< heading of the list of headings
};

struct ReportModel {
    ReportFacts facts;
    ReportPaper paper;
    std::shared_ptr<TextStore> texts;
    std::vector<ReportPage> pages;
};

/// The word next to a mark: the text of the cell, or the verdict.
inline std::string_view MarkWord(const ReportFacts& facts, ReportMark mark, std::string_view text) {
    if (!text.empty() || mark == ReportMark::kNone) return text;
    return mark == ReportMark::kFail ? facts.failWord : facts.passWord;
}

}  // namespace vorex

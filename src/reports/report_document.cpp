#include "reports/report_document.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "reports/report_table.h"

namespace vorex {

namespace {

constexpr int32_t kTablePoints = 7;
constexpr int32_t kLeastPoints = 5;
constexpr int32_t kMostPoints = 9;
constexpr int32_t kTitlePoints = 16;
constexpr int32_t kHeadingPoints = 11;  // of the first level; one less for each further one
constexpr int32_t kLeastHeading = 8;
/// Edge columns of a table, which the width of column 7 leaves out.
constexpr int32_t kTableMargins = 2 * 560;
constexpr int32_t kHeadingPadding = 160;
/// A heading needs this much room below it on the page.
constexpr int32_t kRoomBelowHeading = 1700;
constexpr int32_t kGapAfterTable = 140;

constexpr int32_t kMarginSide = 860;
constexpr int32_t kMarginTop = 860;
constexpr int32_t kMarginBottom = 1150;

struct NamedPaper {
    std::string_view name;
    ReportPaper paper;
};
constexpr std::array<NamedPaper, 2> kPapers = {{
    {"A4", {11906, 16838, kMarginSide, kMarginTop, kMarginBottom}},
    {"Letter", {12240, 15840, kMarginSide, kMarginTop, kMarginBottom}},
}};

int32_t LineHeight(int32_t points) {
    return points * kLineTwips;
}

std::size_t LinesOf(const ReportRow& row) {
    std::size_t lines = 1;
    for (const ReportCell& cell : row.cells) lines = std::max(lines, cell.lines.size());
    return lines;
}

int32_t RowHeight(const ReportRow& row) {
    return static_cast<int32_t>(LinesOf(row)) * LineHeight(row.points) + row.Padding() +
           (row.group ? kGroupGap : 0);
}

/// The outcome next to a form's title has a line of its own.
int32_t HeadingHeight(const ReportHeading& heading) {
    const std::size_t below = heading.centred && !heading.outcome.empty() ? 1 : 0;
    const std::size_t lines = std::max<std::size_t>(1, heading.lines.size()) + below;
    return static_cast<int32_t>(lines) * LineHeight(heading.points) + 2 * kHeadingPadding;
}

int32_t WidthOf(const ReportCell& cell, const std::vector<ReportColumn>& columns) {
    const ReportColumn& last = columns[cell.column + cell.span - 1U];
    return last.left + last.width - columns[cell.column].left;
}

int32_t HeightOf(const std::vector<ReportRow>& rows) {
    int32_t height = 0;
    for (const ReportRow& row : rows) height += row.height;
    return height;
}

std::vector<ReportRow> LeadingHeadings(const std::vector<ReportRow>& rows) {
    const auto end =
        std::find_if(rows.begin(), rows.end(), [](const ReportRow& row) { return !row.heading; });
    return {rows.begin(), end};
}

}  // namespace

std::optional<ReportPaper> FindReportPaper(std::string_view name) {
    const auto found = std::find_if(kPapers.begin(), kPapers.end(),
                                    [&](const NamedPaper& paper) { return paper.name == name; });
    if (found == kPapers.end()) return std::nullopt;
    return found->paper;
}

ReportPaper EndlessReportPaper() {
    ReportPaper paper = kPapers.front().paper;
    paper.height = 0;
    return paper;
}

ReportDocument::ReportDocument(ReportSettings settings, const ITextMetrics* metrics)
    : mSettings(std::move(settings)), mPoints(kTablePoints) {
    if (metrics != nullptr) mWrapper.emplace(*metrics);
    mModel.texts = std::make_shared<TextStore>();
    AddPage();
}

void ReportDocument::AddPage() {
    mModel.pages.emplace_back();
    mTop = 0;
}

void ReportDocument::Position(int32_t top) {
    mTop = std::max(0, top);
}

int32_t ReportDocument::SpaceLeft() const {
    if (!Paged()) return std::numeric_limits<int32_t>::max();
    return std::max(0, mSettings.paper.UsableHeight() - mTop);
}

int32_t ReportDocument::TextWidth(std::string_view text) {
    return mWrapper ? mWrapper->Width(CleanReportText(text), ReportFace::kPlain, mPoints) : 0;
}

void ReportDocument::Style(int32_t points) {
    mPoints = std::clamp(points, kLeastPoints, kMostPoints);
}

int32_t ReportDocument::Metric(int32_t selector) const {
    const int32_t width = mSettings.paper.UsableWidth();
    return selector == kTableWidth ? width - kTableMargins : width;
}

void ReportDocument::Alignment(int32_t alignment) {
    mAlign = alignment == kAlignCentre  ? ReportAlign::kCentre
             : alignment == kAlignRight ? ReportAlign::kRight
                                        : ReportAlign::kLeft;
}

// ------------------------------------------------------------------------------------------- tables

ReportDocument::Columns ReportDocument::ColumnsOf(std::string_view definition) {
    if (!mColumns || definition != mDefinition) {
        mDefinition = definition;
        mColumns = std::make_shared<const std::vector<ReportColumn>>(
            ParseReportColumns(definition, mSettings.paper.UsableWidth()));
    }
    return mColumns;
}

void ReportDocument::LayRow(ReportRow& row, const std::vector<ReportColumn>& columns) {
    row.points = static_cast<uint8_t>(mPoints);
    if (mWrapper) {
        std::size_t free = 0;  // the column after the cell before
        for (ReportCell& cell : row.cells) {
            LayCell(cell, row.FaceOf(cell), free, columns);
            free = cell.column + std::size_t{cell.span};
        }
    }
    row.height = RowHeight(row);
}

void ReportDocument::LayCell(ReportCell& cell, ReportFace face, std::size_t free,
                             const std::vector<ReportColumn>& columns) {
    const int32_t shape = cell.mark == ReportMark::kNone ? 0 : mPoints * kTwipsPerPoint + kMarkGapTwips;
    const auto room = [&](const ReportCell& of) {
        const int32_t apart = shape > 0 && of.span > 1 ? kMarkApartTwips : 0;
        return WidthOf(of, columns) - 2 * columns[of.column].Padding() - shape - apart;
    };
    const std::string_view words = MarkWord(mSettings.facts, cell.mark, cell.text);
    if (shape > 0 && cell.text.empty() && mWrapper->Width(words, face, mPoints) > room(cell)) {
        // The word of a mark may use the empty column in front of it, and wrap there. If that is too narrow
        // as well, the shape alone is enough.
        ReportCell wide = cell;
        if (cell.column <= free || columns[cell.column].ruled) return;
        --wide.column;
        ++wide.span;
        bool fits = true;
        ForEachPart(words, ' ', [&](std::string_view word) {
            fits = fits && mWrapper->Width(word, face, mPoints) <= room(wide);
        });
        if (!fits) return;
        cell = wide;
    }
    cell.lines = mWrapper->Wrap(words, room(cell), face, mPoints);
}

std::vector<ReportRow> ReportDocument::LaidRows(std::string_view rows, const Columns& columns) {
    auto parsed = ParseReportRows(rows, *columns, *mModel.texts);
    for (ReportRow& row : parsed) LayRow(row, *columns);
    return parsed;
}

int32_t ReportDocument::TableHeight(std::string_view columns, std::string_view rows) {
    if (!Paged()) return 0;
    const Columns fitted = ColumnsOf(columns);
    TextStore passing;
    auto parsed = ParseReportRows(rows, *fitted, passing);
    for (ReportRow& row : parsed) LayRow(row, *fitted);
    return HeightOf(parsed);
}

ReportTable& ReportDocument::TableFor(const Columns& columns, const ReportRow& row) {
    auto& items = mModel.pages.back().items;
    auto* table = items.empty() ? nullptr : std::get_if<ReportTable>(&items.back());
    const auto goesOn = [&] {
        const bool same = table->columns == columns || *table->columns == *columns;
        return same && !(row.ruled && row.heading && !table->rows.back().heading);
    };
    if (table != nullptr && goesOn()) return *table;
    if (table != nullptr) mTop += kGapAfterTable;
    return std::get<ReportTable>(items.emplace_back(ReportTable{columns, {}}));
}

void ReportDocument::RepeatHeadings(const Columns& columns) {
    if (mHeadingColumns != columns) return;
    const int32_t least = mSettings.paper.UsableHeight() / 2;
    if (HeightOf(mHeadings) > least) return;
    for (ReportRow row : mHeadings) {
        row.repeated = true;
        AddRow(std::move(row), columns);
    }
}

/// On a new page a block repeats its name.
void ReportDocument::GoOnWithGroup(const Columns& columns) {
    if (!mGroup || mHeadingColumns != columns || mGroupPage == mModel.pages.size()) return;
    mGroupPage = mModel.pages.size();
    ReportRow group = *mGroup;
    ReportCell& cell = group.cells.front();
    const std::string words = vorex::Translate(text::kReportContinued, {std::string(cell.text)}, this);
    cell.text = mModel.texts->Add(words);
    group.repeated = true;
    LayRow(group, *columns);
    if (group.height > SpaceLeft() / 2) return;
    AddRow(std::move(group), columns);
}

void ReportDocument::AddRow(ReportRow row, const Columns& columns) {
    ReportTable& table = TableFor(columns, row);
    row.top = mTop;
    mTop += row.height;
    table.rows.push_back(std::move(row));
}

/// Height of the rows that must be on the same page as the first: headings with the row after them, and the
/// last row of a block with the one before.
int32_t ReportDocument::HeightKeptTogether(const std::vector<ReportRow>& rows, std::size_t first) const {
    int32_t height = 0;
    for (std::size_t i = first; i < rows.size(); ++i) {
        height += rows[i].height;
        if (height > mSettings.paper.UsableHeight()) break;
        const bool heads = rows[i].heading || rows[i].group;
        const bool lastButOne =
            i + 1 < rows.size() && !rows[i + 1].group && (i + 2 == rows.size() || rows[i + 2].group);
        if (!heads && !lastButOne) break;
    }
    return height;
}

/// A row that fits no page begins on this one, if a line of it fits.
bool ReportDocument::BeginsHere(const ReportRow& row) const {
    return row.height > mSettings.paper.UsableHeight() &&
           SpaceLeft() >= LineHeight(row.points) + row.Padding();
}

void ReportDocument::PlaceRow(ReportRow row, const Columns& columns, bool moves) {
    if (moves && mTop > 0) {
        NewPage();
        if (!row.heading) RepeatHeadings(columns);
    }
    if (row.group) {
        mGroup = row;
        mGroupPage = mModel.pages.size();
    } else if (Paged() && !row.heading) {
        GoOnWithGroup(columns);
    }
    if (Paged() && row.height > SpaceLeft())
        PlaceInPieces(row, columns);
    else
        AddRow(std::move(row), columns);
}

/// The only row that splits: one that is higher than a page.
void ReportDocument::PlaceInPieces(const ReportRow& row, const Columns& columns) {
    const std::size_t count = LinesOf(row);
    for (std::size_t begin = 0; begin < count;) {
        const int32_t room = std::max(1, (SpaceLeft() - row.Padding()) / LineHeight(row.points));
        const std::size_t end = std::min(count, begin + static_cast<std::size_t>(room));
        ReportRow piece = row;
        for (ReportCell& cell : piece.cells) {
            const auto lines = std::exchange(cell.lines, {});
            for (std::size_t i = begin; i < std::min(end, lines.size()); ++i) cell.lines.push_back(lines[i]);
        }
        piece.height = RowHeight(piece);
        AddRow(std::move(piece), columns);
        begin = end;
        if (begin < count) AddPage();
    }
}

void ReportDocument::PrintTable(std::string_view definition, std::string_view rows) {
    const Columns columns = ColumnsOf(definition);
    std::vector<ReportRow> laid = LaidRows(rows, columns);
    if (laid.empty()) return;
    const std::vector<ReportRow> headings = LeadingHeadings(laid);
    if (!headings.empty() || mHeadingColumns != columns) {
        if (mHeadingColumns != columns) mGroup.reset();
        mHeadings = headings;
        mHeadingColumns = columns;
    }
    for (std::size_t i = 0; i < laid.size(); ++i) {
        bool moves = false;
        if (Paged()) {
            // Rows that together are higher than a page are not kept together.
            const int32_t kept = HeightKeptTogether(laid, i);
            const bool fits = kept <= mSettings.paper.UsableHeight();
            moves = (fits ? kept : laid[i].height) > SpaceLeft() && !BeginsHere(laid[i]);
        }
        PlaceRow(ReportRow(laid[i]), columns, moves);
    }
}

// ------------------------------------------------------------------------------------------ headings

ReportHeading ReportDocument::LaidHeading(std::string_view title, std::string_view outcome, int32_t level) {
    ReportHeading heading;
    heading.title = mModel.texts->Add(CleanReportText(title));
    heading.outcome = mModel.texts->Add(CleanReportText(outcome));
    heading.level = level;
    if (!outcome.empty() && outcome == mSettings.facts.failWord) heading.mark = ReportMark::kFail;
    if (!outcome.empty() && outcome == mSettings.facts.passWord) heading.mark = ReportMark::kPass;
    heading.centred = level > 0 && mAlign == ReportAlign::kCentre;
    heading.points = level == 0        ? kTitlePoints
                     : heading.centred ? kHeadingPoints
                                       : std::max(kHeadingPoints + 1 - level, kLeastHeading);
    constexpr int32_t kOutcomeShare = 4;  // the share of the width for the outcome next to the title
    if (mWrapper) {
        const int32_t width = mSettings.paper.UsableWidth();
        const bool beside = !outcome.empty() && !heading.centred;
        heading.lines = mWrapper->Wrap(heading.title, width - (beside ? width / kOutcomeShare : 0),
                                       ReportFace::kBold, heading.points);
    }
    heading.height = HeadingHeight(heading);
    return heading;
}

void ReportDocument::PlaceHeading(std::string_view title, std::string_view outcome, int32_t level) {
    mGroup.reset();
    ReportHeading heading = LaidHeading(title, outcome, level);
    if (Paged() && mTop > 0 &&
        std::min(heading.height + kRoomBelowHeading, mSettings.paper.UsableHeight()) > SpaceLeft())
        NewPage();
    // A title that is longer than a page continues on the next one.
    auto rest = std::exchange(heading.lines, {});
    for (bool first = true; first || !rest.empty(); first = false) {
        if (!first) AddPage();
        const int32_t room = (SpaceLeft() - 2 * kHeadingPadding) / LineHeight(heading.points);
        const auto taken = std::min<std::size_t>(rest.size(), static_cast<std::size_t>(std::max(1, room)));
        ReportHeading piece = heading;
        piece.lines.assign(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(taken));
        rest.erase(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(taken));
        if (!first) piece.title = piece.outcome = {};
        piece.height = HeadingHeight(piece);
        piece.top = mTop;
        mTop += piece.height;
        mModel.pages.back().items.emplace_back(std::move(piece));
    }
}

void ReportDocument::PrintHeading(std::string_view title, std::string_view outcome) {
    PlaceHeading(title, outcome, mLevel);
}

void ReportDocument::PrintTitle(std::string_view title, std::string_view outcome) {
    PlaceHeading(title, outcome, 0);
}

void ReportDocument::NewPage() {
    if (mModel.pages.back().items.empty()) {
        mTop = 0;
        return;
    }
    AddPage();
}

// ------------------------------------------------------------------------------------------- figures

ReportFigure* ReportDocument::OpenFigure() {
    auto& items = mModel.pages.back().items;
    return mInFigure && !items.empty() ? std::get_if<ReportFigure>(&items.back()) : nullptr;
}

void ReportDocument::BeginFigure(std::string_view caption, int32_t height) {
    mGroup.reset();
    if (mTop > 0) mTop += kGapAfterTable;
    if (Paged() && height > SpaceLeft() && mTop > 0) NewPage();
    ReportFigure figure;
    figure.caption = mModel.texts->Add(CleanReportText(caption));
    figure.top = mTop;
    figure.height = height;
    mModel.pages.back().items.emplace_back(std::move(figure));
    mInFigure = true;
}

void ReportDocument::EndFigure() {
    if (const ReportFigure* figure = OpenFigure()) mTop = std::max(mTop, figure->top + figure->height);
    mInFigure = false;
    mAlign = ReportAlign::kLeft;
}

void ReportDocument::DrawLine(int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
    if (ReportFigure* figure = OpenFigure())
        figure->lines.push_back({{x1, y1 - figure->top}, {x2, y2 - figure->top}});
    else
        mModel.pages.back().items.emplace_back(ReportRule{{x1, y1}, {x2, y2}});
}

void ReportDocument::PlotPoints(std::span<const int32_t> x, std::span<const int32_t> y) {
    ReportFigure* figure = OpenFigure();
    if (figure == nullptr) return;
    auto& curve = figure->curves.emplace_back();
    for (std::size_t i = 0; i < std::min(x.size(), y.size()); ++i)
        curve.push_back({x[i], y[i] - figure->top});
}

void ReportDocument::DrawText(int32_t x, int32_t y, std::string_view text) {
    ReportFigure* figure = OpenFigure();
    if (figure == nullptr) return;
    figure->labels.push_back({{x, y - figure->top},
                              mAlign,
                              static_cast<uint8_t>(mPoints),
                              mModel.texts->Add(CleanReportText(text))});
}

// ------------------------------------------------------------------------------------------- texts, end

std::string ReportDocument::Translate(std::string_view section, std::string_view key,
                                      TextArguments args) const {
    return mSettings.text ? mSettings.text->Translate(section, key, args) : DefaultText(key, args);
}

ReportModel ReportDocument::Finish() {
    while (mModel.pages.size() > 1 && mModel.pages.back().items.empty()) mModel.pages.pop_back();
    mModel.facts = mSettings.facts;
    mModel.paper = mSettings.paper;
    mGroup.reset();
    ReportModel finished = std::exchange(mModel, {});
    mModel.texts = std::make_shared<TextStore>();
    AddPage();
    return finished;
}

}  // namespace vorex

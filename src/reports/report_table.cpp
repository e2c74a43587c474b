#include "reports/report_table.h"

#include <algorithm>
#include <numeric>
#include <string>

#include "foundation/number_text.h"
#include "foundation/report_markup.h"
#include "foundation/utf8.h"

namespace vorex {

namespace {

/// Room for a number of six digits, and the width below which a column could not show one.
constexpr int32_t kLeastColumn = 660;
constexpr int32_t kTooNarrow = 400;
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// Narrows the columns above the least width, in proportion, until the sum fits.
void Shrink(std::vector<ReportColumn>& columns, int32_t excess) {
    const auto spare = [](const ReportColumn& column) {
        return std::max(0, column.narrow ? 0 : column.width - kLeastColumn);
    };
    const int32_t room =
        std::accumulate(columns.begin(), columns.end(), 0,
                        [&](int32_t sum, const auto& column) { return sum + spare(column); });
    if (room > 0) {
        const double part = std::min(1.0, static_cast<double>(excess) / room);
        for (ReportColumn& column : columns)
            column.width -= static_cast<int32_t>(static_cast<double>(spare(column)) * part);
    }
    if (excess <= room) return;
    const int32_t sum =
        std::accumulate(columns.begin(), columns.end(), 0,
                        [](int32_t total, const auto& column) { return total + column.width; });
    const int64_t wanted = sum - (excess - room);
    for (ReportColumn& column : columns) column.width = static_cast<int32_t>(column.width * wanted / sum);
}

ReportColumn ParseColumn(std::string_view text) {
    ReportColumn column;
    std::string number;
    for (char c : text) {
        if (c == '>') column.align = ReportAlign::kRight;
        if (c == '^') column.align = ReportAlign::kCentre;
        if (c == '!') column.narrow = true;
        if (c == markup::kRuled) column.ruled = true;
        if ((c >= '0' && c <= '9') || c == '-') number += c;
    }
    column.width = ReadInteger(number);
    return column;
}

bool IsPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c != '\x7F'; });
}

/// Reads one row after the other from a table string.
class RowReader {
  public:
    RowReader(std::string_view rows, const std::vector<ReportColumn>& columns, TextStore& texts)
        : mRows(rows), mColumns(columns), mTexts(texts) {}

    bool AtEnd() const { return mAt >= mRows.size(); }

    ReportRow Next() {
        ReportRow row;
        std::size_t column = 0;
        for (;; ++column) {
            Add(row, ReadCell(), std::min(column, mColumns.size() - 1));
            if (AtEnd() || mRows[mAt++] == markup::kRowEnd) break;
        }
        Finish(row, column);
        return row;
    }

  private:
    bool Skip(std::string_view mark) {
        if (!mRows.substr(mAt).starts_with(mark)) return false;
        mAt += mark.size();
        return true;
    }

    /// Cells beyond the last column share it, one after the other.
    void Add(ReportRow& row, ReportCell cell, std::size_t column) {
        if (cell.text.empty() && cell.mark == ReportMark::kNone) return;
        cell.column = static_cast<uint16_t>(column);
        if (row.cells.empty() || row.cells.back().column != cell.column) {
            row.cells.push_back(std::move(cell));
            return;
        }
        ReportCell& shared = row.cells.back();
        if (cell.mark != ReportMark::kNone) shared.mark = cell.mark;
        if (!cell.text.empty())
            shared.text = mTexts.Add(std::string(shared.text) + " " + std::string(cell.text));
    }

    /// Up to, but not including, the separator that ends the cell.
    ReportCell ReadCell() {
        ReportCell cell;
        mText.clear();
        bool inHeading = false;
        while (!AtEnd()) {
            const std::size_t end = std::min(mRows.find_first_of(markup::kSpecials, mAt), mRows.size());
            mText.append(mRows.substr(mAt, end - mAt));
            mAt = end;
            if (AtEnd()) break;
            const char c = mRows[mAt];
            if (c == markup::kEscape && mAt + 1 < mRows.size()) {
                mText += mRows[mAt + 1];
                mAt += 2;
            } else if (c == '{' && Skip(markup::kHeadingBegin)) {
                cell.heading = inHeading = true;
            } else if (c == '{' && Skip(markup::kFailMark)) {
                cell.mark = ReportMark::kFail;
            } else if (c == '{' && Skip(kReportPassMark)) {
                cell.mark = ReportMark::kPass;
            } else if (c == '}' && inHeading) {
                inHeading = false;
                ++mAt;
            } else if (c == markup::kCell || c == markup::kRowEnd) {
                break;
            } else {
                mText += c;
                ++mAt;
            }
        }
        if (!IsPlain(mText)) mText = CleanReportText(mText);
        while (mText.ends_with(' ')) mText.pop_back();
        cell.text = mTexts.Add(mText);
        return cell;
    }

    /// A left-aligned text may use the empty columns after it.
    void Finish(ReportRow& row, std::size_t lastColumn) const {
        row.failed = std::any_of(row.cells.begin(), row.cells.end(),
                                 [](const ReportCell& cell) { return cell.mark == ReportMark::kFail; });
        row.ruled = mColumns.front().ruled;
        const std::size_t least = row.ruled ? 1 : 2;
        row.heading =
            row.cells.size() >= least && std::all_of(row.cells.begin(), row.cells.end(),
                                                     [](const ReportCell& cell) { return cell.heading; });
        if (row.cells.empty() || row.ruled) return;
        // A single cell in a table with more columns heads a group; a leading blank makes it the label of a
        // value.
        row.group = lastColumn == 1 && row.cells.size() == 1 && row.cells.front().column == 1 &&
                    mColumns.size() > 2 && !row.cells.front().text.starts_with(' ');
        ReportCell& last = row.cells.back();
        if (last.mark == ReportMark::kNone && mColumns[last.column].align == ReportAlign::kLeft)
            last.span = static_cast<uint16_t>(mColumns.size() - last.column);
    }

    std::string_view mRows;
    const std::vector<ReportColumn>& mColumns;
    TextStore& mTexts;
    std::size_t mAt = 0;
    std::string mText;
};

}  // namespace

std::vector<ReportColumn> ParseReportColumns(std::string_view definition, int32_t usableWidth) {
    definition = definition.substr(0, definition.find(markup::kRowEnd));
    std::vector<ReportColumn> columns;
    ForEachPart(definition, markup::kCell,
                [&](std::string_view part) { columns.push_back(ParseColumn(part)); });
    int32_t sum = 0;
    for (ReportColumn& column : columns) {
        if (column.width < kTooNarrow) column.width = kLeastColumn;
        sum += column.width;
    }
    if (sum > usableWidth) Shrink(columns, sum - usableWidth);
    int32_t left = 0;
    for (ReportColumn& column : columns) {
        column.left = left;
        left += column.width;
    }
    return columns;
}

std::vector<ReportRow> ParseReportRows(std::string_view rows, const std::vector<ReportColumn>& columns,
                                       TextStore& texts) {
    std::vector<ReportRow> parsed;
    RowReader reader(rows, columns, texts);
    while (!reader.AtEnd()) parsed.push_back(reader.Next());
    return parsed;
}

std::string CleanReportText(std::string_view text) {
    std::string clean;
    while (!text.empty()) {
        const std::size_t length = Utf8Length(text);
        const auto lead = static_cast<unsigned char>(text.front());
        const bool control = length == 1 && (lead < 0x20U || lead == 0x7FU);
        if (length == 0)
            clean += kReplacement;
        else if (!control || lead == '\n')
            clean += text.substr(0, length);
        else if (lead != '\r')
            clean += ' ';
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return clean;
}

}  // namespace vorex

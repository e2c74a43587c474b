#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/survey_keys.h"

/// What a person enters in the annual mammography survey: fields, grids of texts, comments. Numbers are texts
/// too: a cell holds what was typed or what a calculation wrote.
namespace vorex {

/// A rectangle of texts, rows and columns counted from 0. Throws std::out_of_range beyond its bounds.
class SurveyGrid {
  public:
    SurveyGrid() = default;
    SurveyGrid(int32_t rows, int32_t columns);

    int32_t Rows() const { return mRows; }
    int32_t Columns() const { return mColumns; }
    std::string& At(int32_t row, int32_t column) { return mCells.at(Index(row, column)); }
    const std::string& At(int32_t row, int32_t column) const { return mCells.at(Index(row, column)); }
    /// True for a cell that holds no text; a blank is a text.
    bool IsBlank(int32_t row, int32_t column) const { return At(row, column).empty(); }
    double Number(int32_t row, int32_t column) const;
    void Clear(int32_t row, int32_t column) { At(row, column).clear(); }
    bool operator==(const SurveyGrid&) const = default;

  private:
    std::size_t Index(int32_t row, int32_t column) const;

    int32_t mRows = 0;
    int32_t mColumns = 0;
    std::vector<std::string> mCells;
};

/// A rectangle of cells of a grid, both ends included.
struct CellArea {
    int32_t firstRow;
    int32_t lastRow;
    int32_t firstColumn;
    int32_t lastColumn;

    constexpr bool Has(int32_t row, int32_t column) const {
        return row >= firstRow && row <= lastRow && column >= firstColumn && column <= lastColumn;
    }
};

/// A text that is in neighbouring cells of a row.
struct FixedCell {
    int32_t row;
    int32_t firstColumn;
    int32_t lastColumn;
    std::string_view text;
};

/// The properties of a grid apart from its cells.
struct GridRow {
    int32_t rows;
    int32_t columns;
    int32_t savedRows;  ///< rows from 0 that a file keeps; the others come back by calculation
    std::span<const FixedCell> labels;
    std::span<const CellArea> typed;    ///< a person can type here; a text of `labels` here is a proposal
    std::span<const CellArea> spacers;  ///< start as a blank, so that neighbours do not merge on screen
    std::span<const CellArea> numbers;  ///< take the decimal sign of the system when they are loaded
    std::span<const CellArea> figures;  ///< typed, and calculated with or judged
    std::span<const CellArea> answers = {};  ///< Pass or False, 0 while there is none
    std::span<const CellArea> dates = {};
};

const GridRow& GridRowOf(GridId grid);
bool IsIn(std::span<const CellArea> areas, int32_t row, int32_t column);
/// Key of the text that a cell has in a new survey; empty when it has none. In a cell that a person can type
/// in it is only a proposal.
std::string_view LabelOf(GridId grid, int32_t row, int32_t column);
/// The text of a cell as a file holds it: it does not depend on the language and the decimal sign.
std::string SavedCell(GridId grid, int32_t row, int32_t column, const std::string& text);
/// The text of a page in the list of pages, as its key.
std::string_view PageText(SurveyPage page);
SurveyPage PageOf(GridId grid);

/// Index of a field of a group in the record; both must exist.
std::size_t FieldIndex(const SurveyGroupRow& group, const SurveyFieldRow& field);
/// The same by names; throws std::out_of_range for a field that no group has.
std::size_t FieldIndex(std::string_view group, std::string_view field);

struct SurveyRecord {
    /// A new survey: grids with their texts in the present language, dates of today.
    SurveyRecord();

    SurveyGrid& Grid(GridId grid) { return grids[static_cast<std::size_t>(grid)]; }
    const SurveyGrid& Grid(GridId grid) const { return grids[static_cast<std::size_t>(grid)]; }
    std::string& Field(std::string_view group, std::string_view key) {
        return fields[FieldIndex(group, key)];
    }
    const std::string& Field(std::string_view group, std::string_view key) const {
        return fields[FieldIndex(group, key)];
    }
    /// Writes the labels of a grid, and the proposals that are unchanged, in the present language.
    void WriteLabels(GridId grid);
    /// Builds the three date texts from their parts.
    void BuildDates();

    std::array<std::string, kSurveyFieldCount> fields;
    std::array<SurveyGrid, kGridCount> grids;
    std::array<std::string, kPageCount> comments;
    std::string surveyDate;
    std::string previousFilmDate;
    std::string currentFilmDate;
};

// -------------------------------------------------------------------------------------------- items

/// One of the 49 answers: its key and the key of its description.
struct SurveyItem {
    std::string key;
    std::string_view description;
};
inline constexpr std::size_t kSurveyItemCount = 49;
inline constexpr std::size_t kAssemblyItemCount = 13;
inline constexpr std::size_t kTechnologistItemCount = 11;  ///< of each column
const std::array<SurveyItem, kSurveyItemCount>& SurveyItems();

// ------------------------------------------------------------------------------------------- tables

inline constexpr std::size_t kPreliminaryRows = 13;
inline constexpr std::size_t kSummaryRows = 33;
inline constexpr std::size_t kAcrColumn = 0;
inline constexpr std::size_t kMqsaColumn = 1;
/// The text in both columns of a heading.
inline constexpr std::string_view kHeadingMark = "-";

using VerdictRow = std::array<std::string, 2>;
/// The two tables of verdicts; cells hold the keys of Pass, Fail and NA.
struct SurveyTables {
    SurveyTables();
    std::array<VerdictRow, kPreliminaryRows> preliminary;
    std::array<VerdictRow, kSummaryRows> summary;
    bool operator==(const SurveyTables&) const = default;
};

/// Texts of the rows, as keys.
std::span<const std::string_view> PreliminaryTexts();
std::span<const std::string_view> SummaryTexts();

}  // namespace vorex

#include "mqsa/survey_entry.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <optional>

#include "foundation/number_text.h"
#include "foundation/survey_text_keys.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

constexpr std::string_view kCommentAddress = "Comment";
constexpr std::string_view kNoAnswer = "0";

[[noreturn]] void Refuse(std::string_view address, const std::string& reason) {
    throw SurveyEntryError("\"" + std::string(address) + "\": " + reason);
}

/// "Name(1,2)" in its parts; empty for a text of another form.
struct CellPlace {
    std::string_view name;
    std::vector<int32_t> indices;
};

std::optional<CellPlace> ReadCellPlace(std::string_view address) {
    const std::size_t open = address.find('(');
    if (open == std::string_view::npos || !address.ends_with(')')) return std::nullopt;
    CellPlace place{address.substr(0, open), {}};
    bool numbers = true;
    ForEachPart(address.substr(open + 1, address.size() - open - 2), ',', [&](std::string_view part) {
        part = Trimmed(part);
        int32_t index = 0;
        const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), index);
        numbers = numbers && error == std::errc() && end == part.data() + part.size();
        place.indices.push_back(index);
    });
    if (!numbers) return std::nullopt;
    return place;
}

std::optional<GridId> GridOf(std::string_view key) {
    const auto at = std::find(survey::kGridKeys.begin(), survey::kGridKeys.end(), key);
    if (at == survey::kGridKeys.end()) return std::nullopt;
    return static_cast<GridId>(at - survey::kGridKeys.begin());
}

// -------------------------------------------------------------------------------------------- dates

/// Columns of the dates of the films in the image quality grid.
constexpr int32_t kPreviousFilmColumn = 1;
constexpr int32_t kCurrentFilmColumn = 2;

bool IsCalendarDate(std::string_view year, std::string_view month, std::string_view day) {
    return std::chrono::year_month_day(std::chrono::year(ReadInteger(year)),
                                       std::chrono::month(static_cast<unsigned>(ReadInteger(month))),
                                       std::chrono::day(static_cast<unsigned>(ReadInteger(day))))
        .ok();
}

std::string& General(CResultMQSA& survey, std::string_view key) {
    return survey.Record().Field(survey::kGeneralInformation, key);
}

void BuildDates(CResultMQSA& survey) {
    SurveyRecord& record = survey.Record();
    record.BuildDates();
    record.Grid(GridId::kImageQuality).At(1, kPreviousFilmColumn) = record.previousFilmDate;
    record.Grid(GridId::kImageQuality).At(1, kCurrentFilmColumn) = record.currentFilmDate;
}

bool IsWholeWithin(std::string_view text, int32_t least, int32_t most) {
    int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && number >= least && number <= most;
}

void CheckDatePart(std::string_view address, FieldKind kind, std::string_view text) {
    const auto expect = [&](int32_t least, int32_t most) {
        if (!IsWholeWithin(text, least, most))
            Refuse(address, "\"" + std::string(text) +
                                "\" is no part of a date; expected a whole number from " + PlainText(least) +
                                " to " + PlainText(most));
    };
    if (kind == FieldKind::kDay) expect(1, 31);
    if (kind == FieldKind::kMonth) expect(1, 12);
    if (kind == FieldKind::kYear) expect(1900, 9999);
}

void SetFilmDate(CResultMQSA& survey, std::string_view address, int32_t column, std::string_view text) {
    const std::vector<std::string_view> parts = SplitText(text, '-');
    const bool date = parts.size() == 3 && IsWholeWithin(parts[0], 1900, 9999) &&
                      IsWholeWithin(parts[1], 1, 12) && IsWholeWithin(parts[2], 1, 31) &&
                      IsCalendarDate(parts[0], parts[1], parts[2]);
    if (!date) Refuse(address, "\"" + std::string(text) + "\" is no date; expected YEAR-MONTH-DAY");
    const SurveyDateKeys& film =
        column == kPreviousFilmColumn ? survey::kPreviousFilmDate : survey::kCurrentFilmDate;
    General(survey, film.year) = PlainText(ReadInteger(parts[0]));
    General(survey, film.month) = PlainText(ReadInteger(parts[1]));
    General(survey, film.day) = PlainText(ReadInteger(parts[2]));
    BuildDates(survey);
}

// ---------------------------------------------------------------------------------------------- set

/// A warning with the number that a figure counts as, when its text is not a plain number.
std::string FigureNote(std::string_view address, std::string_view text) {
    const std::string_view plain = text.ends_with('%') ? text.substr(0, text.size() - 1) : text;
    if (text.empty() || IsNumber(plain)) return {};
    return std::string(address) + ": \"" + std::string(text) + "\" is no plain number and counts as " +
           LocaleText(ReadNumber(text));
}

/// The stored answer of an artifact cell.
std::string ArtifactAnswer(std::string_view address, std::string_view text) {
    const auto is = [&](std::string_view key) {
        return EqualsIgnoringCase(text, DefaultText(key, {})) || EqualsIgnoringCase(text, Translate(key));
    };
    if (is(text::kPass)) return Translate(text::kPass);
    if (is(text::kFalse) || is(text::kFail)) return Translate(text::kFalse);
    if (text == kNoAnswer || text.empty()) return std::string(kNoAnswer);
    Refuse(address, "\"" + std::string(text) + "\" is no answer; expected Pass, False, or 0 for none");
}

std::string SetCell(CResultMQSA& survey, std::string_view address, GridId id, int32_t row, int32_t column,
                    std::string_view text) {
    const GridRow& grid = GridRowOf(id);
    if (row < 0 || row >= grid.rows || column < 0 || column >= grid.columns)
        Refuse(address, "is outside the grid; expected a row from 0 to " + PlainText(grid.rows - 1) +
                            " and a column from 0 to " + PlainText(grid.columns - 1));
    if (IsIn(grid.dates, row, column)) {
        SetFilmDate(survey, address, column, text);
        return {};
    }
    std::string& cell = survey.Record().Grid(id).At(row, column);
    if (IsIn(grid.answers, row, column))
        cell = ArtifactAnswer(address, text);
    else if (IsIn(grid.typed, row, column))
        // As when a file is loaded, so that later saves give the same file.
        cell = IsIn(grid.numbers, row, column) ? LocaleDecimal(text) : std::string(text);
    else
        Refuse(address, "is a label or calculated, and cannot be entered");
    survey.GridChanged(id);
    return IsIn(grid.figures, row, column) ? FigureNote(address, text) : std::string();
}

/// The text of a field as it is stored. Numeric fields are stored as numbers, so they take nothing else.
std::string StoredField(std::string_view address, FieldKind kind, std::string_view text) {
    CheckDatePart(address, kind, text);
    if (kind != FieldKind::kNumber) return std::string(text);
    if (!text.empty() && !IsNumber(text))
        Refuse(address, "\"" + std::string(text) + "\" is no number; expected one such as 650");
    return LocaleText(ReadNumber(text));
}

bool SetField(CResultMQSA& survey, std::string_view address, std::string_view text) {
    const std::size_t point = address.find('.');
    if (point == std::string_view::npos) return false;
    for (const SurveyGroupRow& group : survey::kGroups) {
        if (group.name != address.substr(0, point)) continue;
        for (const SurveyFieldRow& field : group.fields) {
            if (field.key != address.substr(point + 1)) continue;
            survey.Record().fields[FieldIndex(group, field)] = StoredField(address, field.kind, text);
            if (group.page == SurveyPage::kGeneral) BuildDates(survey);
            if (group.page == SurveyPage::kCollimation) survey.GridChanged(GridId::kLightField);
            return true;
        }
    }
    return false;
}

// --------------------------------------------------------------------------------------------- list

PlaceKind KindOf(const GridRow& grid, int32_t row, int32_t column) {
    if (IsIn(grid.dates, row, column)) return PlaceKind::kDate;
    const bool typed = IsIn(grid.typed, row, column) || IsIn(grid.answers, row, column);
    return typed ? PlaceKind::kTyped : PlaceKind::kCalculated;
}

bool IsLabel(const GridRow& grid, int32_t row, int32_t column) {
    return std::any_of(grid.labels.begin(), grid.labels.end(), [&](const FixedCell& at) {
        return at.row == row && column >= at.firstColumn && column <= at.lastColumn &&
               !IsIn(grid.typed, row, column);
    });
}

/// A row that has only labels and blanks is a heading of the rows below it.
bool IsHeading(const GridRow& grid, int32_t row) {
    for (int32_t column = 1; column < grid.columns; ++column)
        if (!IsLabel(grid, row, column) && !IsIn(grid.spacers, row, column)) return false;
    return true;
}

/// The labels above a cell: from the nearest block of headings that has one for its column. The first column
/// of the cassettes is typed; the headings below the first name the cassettes, whatever the column.
std::vector<std::string> Headings(const SurveyGrid& texts, const GridRow& grid, int32_t row, int32_t column) {
    const bool named = IsIn(grid.typed, row, 0);
    std::vector<std::string> headings;
    std::string section;
    bool fresh = true;
    for (int32_t above = 0; above < row; ++above) {
        const bool heading = IsHeading(grid, above);
        const bool first = above == 0 || column > 0;
        if (heading && named && above > 0) section = texts.At(above, 0);
        if (heading && first && IsLabel(grid, above, column)) {
            if (fresh) headings.clear();
            headings.push_back(texts.At(above, column));
            fresh = false;
        }
        fresh = fresh || !heading;
    }
    if (!section.empty()) headings.insert(headings.begin(), section);
    return headings;
}

/// The labels to the left of a cell and above it, in words.
std::string MeaningOf(const SurveyRecord& record, GridId id, int32_t row, int32_t column) {
    const GridRow& known = GridRowOf(id);
    const SurveyGrid& grid = record.Grid(id);
    std::vector<std::string> parts;
    int32_t left = column - 1;
    // Typed cells are in runs after their label; a calculated one is named by its neighbour or by its row.
    const bool typed = KindOf(known, row, column) != PlaceKind::kCalculated;
    while (left > 0 && !IsLabel(known, row, left)) left = typed ? left - 1 : 0;
    for (; left >= 0 && IsLabel(known, row, left); --left) parts.insert(parts.begin(), grid.At(row, left));
    // The configuration may have named the row.
    if (left == 0 && typed && parts.empty() && !IsIn(known.typed, row, 0)) parts.push_back(grid.At(row, 0));
    const bool named = !parts.empty();
    for (std::string& heading : Headings(grid, known, row, column)) parts.push_back(std::move(heading));
    std::string meaning;
    std::vector<std::string_view> said;
    for (const std::string& part : parts) {
        const std::string_view words = Trimmed(part);
        if (words.empty() || std::find(said.begin(), said.end(), words) != said.end()) continue;
        meaning.append(meaning.empty() ? "" : ", ").append(words);
        said.push_back(words);
    }
    if (!named) meaning += (meaning.empty() ? "" : ", ") + Translate(survey_text::kListRow, {PlainText(row)});
    return meaning + ", " + Translate(survey_text::kListColumn, {PlainText(column)});
}

void ListGrid(const SurveyRecord& record, GridId id, SurveyPage page, std::vector<SurveyPlace>& places) {
    const GridRow& known = GridRowOf(id);
    for (int32_t row = 0; row < known.rows; ++row)
        for (int32_t column = 0; column < known.columns; ++column) {
            const bool typed = KindOf(known, row, column) != PlaceKind::kCalculated;
            const bool label = IsLabel(known, row, column);
            const bool spacer =
                IsIn(known.spacers, row, column) && Trimmed(record.Grid(id).At(row, column)).empty();
            if (!typed && (label || spacer || column == 0 || record.Grid(id).IsBlank(row, column))) continue;
            const std::string& text = record.Grid(id).At(row, column);
            places.push_back({page, CellAddress(id, row, column), MeaningOf(record, id, row, column), text,
                              KindOf(known, row, column), SavedCell(id, row, column, text)});
        }
}

/// The technologist's program is answered twice, and the assistant's log repeats the titles of the tests.
void ListAnswers(const CResultMQSA& survey, std::vector<SurveyPlace>& places) {
    for (std::size_t i = 0; i < survey.Items().size(); ++i) {
        const CMeasurement& item = *survey.Items()[i];
        const std::size_t technologist = kAssemblyItemCount + kTechnologistItemCount;
        std::string column;
        if (i >= kAssemblyItemCount) column = "ACR";
        if (i >= technologist) column = "MQSA";
        if (i >= technologist + kTechnologistItemCount) column = Translate(survey_text::kListAssistant);
        std::string meaning(Trimmed(item.Description()));
        if (!column.empty()) meaning += ", " + column;
        places.push_back({SurveyPage::kAssembly, item.RawKey(), std::move(meaning), StatusText(item.Status()),
                          PlaceKind::kAnswer});
    }
}

}  // namespace

std::string SetSurveyText(CResultMQSA& survey, std::string_view address, std::string_view text) {
    if (text.find(kDelimiter) != std::string_view::npos)
        Refuse(address,
               "the text holds \"" + std::string(kDelimiter) + "\", which parts the cells of a file");
    if (const auto place = ReadCellPlace(address)) {
        if (place->name == kCommentAddress && place->indices.size() == 1) {
            const int32_t page = place->indices[0];
            if (page < 0 || page >= static_cast<int32_t>(kPageCount))
                Refuse(address, "there is no such page; expected Comment(0) to Comment(9)");
            survey.Record().comments.at(static_cast<std::size_t>(page)) = text;
            return {};
        }
        const auto grid = GridOf(place->name);
        if (grid && place->indices.size() == 2)
            return SetCell(survey, address, *grid, place->indices[0], place->indices[1], text);
    }
    if (!SetField(survey, address, text))
        Refuse(
            address,
            "the survey has no such place; expected one such as Collimation.SID, Viewbox(3,1) or Comment(3) "
            "(vorex survey FILE --list shows all)");
    return {};
}

void CheckSurveyDates(const CResultMQSA& survey) {
    for (const SurveyDateKeys& date :
         {survey::kSurveyDate, survey::kPreviousFilmDate, survey::kCurrentFilmDate}) {
        const auto part = [&](std::string_view key) {
            return survey.Record().Field(survey::kGeneralInformation, key);
        };
        const bool whole = !part(date.year).empty() && !part(date.month).empty() && !part(date.day).empty();
        if (whole && !IsCalendarDate(part(date.year), part(date.month), part(date.day)))
            Refuse(std::string(survey::kGeneralInformation) + "." + std::string(date.day),
                   part(date.year) + "-" + part(date.month) + "-" + part(date.day) +
                       " is no date; expected a day that the month has");
    }
}

void AnswerSurvey(CResultMQSA& survey, std::string_view item, std::string_view answer) {
    struct AnswerRow {
        std::string_view text;
        uint8_t column;
    };
    constexpr AnswerRow kAnswers[] = {{text::kPass, 2}, {text::kFail, 3}, {text::kNotApplicable, 4}};
    const auto& items = SurveyItems();
    const auto at =
        std::find_if(items.begin(), items.end(), [&](const SurveyItem& row) { return row.key == item; });
    if (at == items.end())
        Refuse(item,
               "the survey has no such item; expected Evaluation1 to Evaluation13, PR1 to PR22 or ALog1 "
               "to ALog14");
    for (const AnswerRow& row : kAnswers)
        if (EqualsIgnoringCase(answer, DefaultText(row.text, {})) ||
            EqualsIgnoringCase(answer, Translate(row.text)))
            return survey.MQSAClickHandle(static_cast<uint8_t>(at - items.begin()), row.column);
    Refuse(item, "\"" + std::string(answer) + "\" is no answer; expected Pass, Fail or NA");
}

std::vector<SurveyPlace> ListSurvey(const CResultMQSA& survey) {
    const SurveyRecord& record = survey.Record();
    std::vector<SurveyPlace> places;
    for (std::size_t page = 0; page < kPageCount; ++page) {
        const auto id = static_cast<SurveyPage>(page);
        for (const SurveyGroupRow& group : survey::kGroups) {
            if (group.page != id) continue;
            for (const SurveyFieldRow& field : group.fields)
                places.push_back({id, std::string(group.name) + "." + std::string(field.key),
                                  Translate(field.meaning), record.fields[FieldIndex(group, field)],
                                  PlaceKind::kTyped});
            for (GridId grid : group.grids) ListGrid(record, grid, id, places);
        }
        if (id == SurveyPage::kAssembly) ListAnswers(survey, places);
        places.push_back({id, std::string(kCommentAddress) + "(" + std::to_string(page) + ")",
                          Translate(survey_text::kListComment), record.comments.at(page), PlaceKind::kTyped});
    }
    return places;
}

}  // namespace vorex

#include "mqsa/survey_entry.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "foundation/number_text.h"
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

struct DateParts {
    std::string_view day;
    std::string_view month;
    std::string_view year;
    int32_t column;  ///< of the film's date in the image quality grid
};
constexpr DateParts kFilmDates[] = {{"IQDay1", "IQMonth1", "IQYear1", 1},
                                    {"IQDay2", "IQMonth2", "IQYear2", 2}};

std::string& General(CResultMQSA& survey, std::string_view key) {
    return survey.Record().Field(survey::kGroups[0].name, key);
}

void BuildDates(CResultMQSA& survey) {
    SurveyRecord& record = survey.Record();
    record.BuildDates();
    record.Grid(GridId::kImageQuality).At(1, 1) = record.previousFilmDate;
    record.Grid(GridId::kImageQuality).At(1, 2) = record.currentFilmDate;
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
                      IsWholeWithin(parts[1], 1, 12) && IsWholeWithin(parts[2], 1, 31);
    if (!date) Refuse(address, "\"" + std::string(text) + "\" is no date; expected YEAR-MONTH-DAY");
    for (const DateParts& film : kFilmDates) {
        if (film.column != column) continue;
        General(survey, film.year) = PlainText(ReadInteger(parts[0]));
        General(survey, film.month) = PlainText(ReadInteger(parts[1]));
        General(survey, film.day) = PlainText(ReadInteger(parts[2]));
    }
    BuildDates(survey);
}

// ---------------------------------------------------------------------------------------------- set

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

void SetCell(CResultMQSA& survey, std::string_view address, GridId id, int32_t row, int32_t column,
             std::string_view text) {
    const GridRow& grid = GridRowOf(id);
    if (row < 0 || row >= grid.rows || column < 0 || column >= grid.columns)
        Refuse(address, "lies outside the grid; expected a row from 0 to " + PlainText(grid.rows - 1) +
                            " and a column from 0 to " + PlainText(grid.columns - 1));
    if (IsIn(grid.dates, row, column)) return SetFilmDate(survey, address, column, text);
    std::string& cell = survey.Record().Grid(id).At(row, column);
    if (IsIn(grid.answers, row, column))
        cell = ArtifactAnswer(address, text);
    else if (IsIn(grid.typed, row, column))
        cell = text;
    else
        Refuse(address, "is a label or calculated, and cannot be entered");
    survey.GridChanged(id);
}

bool SetField(CResultMQSA& survey, std::string_view address, std::string_view text) {
    const std::size_t point = address.find('.');
    if (point == std::string_view::npos) return false;
    for (const SurveyGroupRow& group : survey::kGroups) {
        if (group.name != address.substr(0, point)) continue;
        for (const SurveyFieldRow& field : group.fields) {
            if (field.key != address.substr(point + 1)) continue;
            CheckDatePart(address, field.kind, text);
            std::string& stored = survey.Record().fields[FieldIndex(group, field)];
            stored = field.kind == FieldKind::kNumber ? LocaleText(ReadNumber(text)) : std::string(text);
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

/// What stands left of and above a cell, in words.
std::string MeaningOf(const SurveyRecord& record, GridId id, int32_t row, int32_t column) {
    const GridRow& known = GridRowOf(id);
    const SurveyGrid& grid = record.Grid(id);
    std::string meaning;
    const auto add = [&](std::string_view label) {
        const std::string_view words = Trimmed(label);
        if (words.empty() || meaning.find(words) != std::string::npos) return;
        meaning.append(meaning.empty() ? "" : ", ").append(words);
    };
    for (int32_t left = 0; left < column; ++left) {
        const bool label =
            left == 0 || std::any_of(known.labels.begin(), known.labels.end(), [&](const FixedCell& at) {
                return at.row == row && left >= at.firstColumn && left <= at.lastColumn;
            });
        if (label && KindOf(known, row, left) == PlaceKind::kCalculated) add(grid.At(row, left));
    }
    const FixedCell* above = nullptr;
    for (const FixedCell& label : known.labels)
        if (label.row < row && column >= label.firstColumn && column <= label.lastColumn && column > 0 &&
            !IsIn(known.typed, label.row, column))
            above = &label;
    if (above != nullptr) add(grid.At(above->row, column));
    if (meaning.empty()) meaning = "row " + PlainText(row);
    return meaning + ", column " + PlainText(column);
}

void ListGrid(const SurveyRecord& record, GridId id, SurveyPage page, std::vector<SurveyPlace>& places) {
    const GridRow& known = GridRowOf(id);
    for (int32_t row = 0; row < known.rows; ++row)
        for (int32_t column = 0; column < known.columns; ++column) {
            const bool typed = KindOf(known, row, column) != PlaceKind::kCalculated;
            const bool label =
                std::any_of(known.labels.begin(), known.labels.end(), [&](const FixedCell& at) {
                    return at.row == row && column >= at.firstColumn && column <= at.lastColumn;
                });
            const bool spacer =
                IsIn(known.spacers, row, column) && Trimmed(record.Grid(id).At(row, column)).empty();
            if (!typed && (label || spacer || column == 0 || record.Grid(id).IsBlank(row, column))) continue;
            places.push_back({page, CellAddress(id, row, column), MeaningOf(record, id, row, column),
                              record.Grid(id).At(row, column), KindOf(known, row, column)});
        }
}

}  // namespace

void SetSurveyText(CResultMQSA& survey, std::string_view address, std::string_view text) {
    if (text.find(kDelimiter) != std::string_view::npos)
        Refuse(address,
               "the text holds \"" + std::string(kDelimiter) + "\", which parts the cells of a file");
    if (const auto place = ReadCellPlace(address)) {
        if (place->name == kCommentAddress && place->indices.size() == 1) {
            const int32_t page = place->indices[0];
            if (page < 0 || page >= static_cast<int32_t>(kPageCount))
                Refuse(address, "there is no such page; expected Comment(0) to Comment(9)");
            survey.Record().comments.at(static_cast<std::size_t>(page)) = text;
            return;
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
                                  std::string(field.meaning), record.fields[FieldIndex(group, field)],
                                  PlaceKind::kTyped});
            for (GridId grid : group.grids) ListGrid(record, grid, id, places);
        }
        if (id == SurveyPage::kAssembly)
            for (const auto& item : survey.Items())
                places.push_back({id, item->RawKey(), item->Description(), StatusText(item->Status()),
                                  PlaceKind::kAnswer});
        places.push_back({id, std::string(kCommentAddress) + "(" + std::to_string(page) + ")",
                          "Comment on the page", record.comments.at(page), PlaceKind::kTyped});
    }
    return places;
}

}  // namespace vorex

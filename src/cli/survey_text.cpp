#include "cli/survey_text.h"

#include <algorithm>
#include <string_view>

#include "foundation/number_text.h"
#include "foundation/survey_text_keys.h"
#include "foundation/utilities.h"
#include "foundation/verdict_figures.h"
#include "foundation/vocabulary.h"
#include "mqsa/survey_entry.h"
#include "mqsa/survey_verdict.h"
#include "reports/report_wrap.h"

namespace vorex {

namespace {

namespace st = survey_text;

constexpr std::size_t kTextWidth = 76;
constexpr std::size_t kLineWidth = 100;
constexpr std::size_t kGap = 2;          ///< between two columns
constexpr std::size_t kLeastWidth = 40;  ///< however deep the groups are
constexpr std::size_t kFiberLine = 18;   ///< of the summary page; specks and masses follow
constexpr std::string_view kRed = "\x1b[31;1m";
constexpr std::string_view kPlain = "\x1b[0m";

std::string Padded(const std::string& words, std::size_t width) {
    const std::size_t length = CodePoints(words);
    return words + std::string(length < width ? width - length : 0, ' ');
}

/// Line ends inside a text would break the list.
std::string OneLine(std::string words) {
    std::replace_if(
        words.begin(), words.end(), [](char c) { return c == '\n' || c == '\r' || c == '\t'; }, ' ');
    return words;
}

/// The meaning of a failed outcome of a mammography test; the figures are those of the tests.
struct OutcomeRow {
    std::string_view key;
    std::string_view words;  ///< text key; its second argument is the figure, or else the column
    const VerdictFigure* figure = nullptr;
    std::string_view column = {};
};
// clang-format off
constexpr OutcomeRow kOutcomes[] = {
    {"kVpL36", st::kOutcomeKvp},
    {"kVpL38", st::kOutcomeKvpError},
    {"kVpL39", st::kOutcomeKvpVariation},
    {"BQC79",  st::kOutcomeHvl, nullptr, "ACR"},
    {"BQC69",  st::kOutcomeHvl, nullptr, "MQSA"},
    {"Dose78", st::kOutcomeExposure, &figure::kExposureVariation},
    {"Dose80", st::kOutcomeDose, &figure::kGlandularDose},
    {"Dose82", st::kOutcomeOutput, &figure::kAcrOutput},
    {"Dose75", st::kOutcomeOutput, &figure::kMqsaOutput},
};
// clang-format on

std::string OutcomeWords(std::string_view key) {
    for (const OutcomeRow& row : kOutcomes) {
        if (row.key != key) continue;
        std::string detail(row.column);
        if (row.figure != nullptr) {
            detail = row.figure->Words();
            if (!row.figure->clause.empty()) detail.append(" (").append(row.figure->clause).append(")");
        }
        return Translate(row.words, {std::string(key), detail});
    }
    return {};
}

/// One of the two columns of a table: the words of a verdict, padded to the widest of the language.
std::string VerdictWords(const std::string& cell, std::size_t width, bool colour) {
    const std::string words = Padded(Translate(cell), width);
    return colour && cell == text::kFail ? std::string(kRed) + words + std::string(kPlain) : words;
}

std::size_t VerdictWidth() {
    std::size_t width = 0;
    for (std::string_view words : {text::kPass, text::kFail, text::kNotApplicable})
        width = std::max(width, CodePoints(Translate(words)));
    return width;
}

/// Words in one column, and their values in the next.
std::string TwoColumns(const std::string& words, std::size_t width, const std::string& indent,
                       const std::string& value) {
    constexpr std::size_t kHanging = 2;
    const std::string oneLine = OneLine(words);
    std::string out;
    std::size_t taken = 0;
    for (const ReportLine& line : TerminalWrapper().Wrap(oneLine, width, kHanging)) {
        out.append(out.empty() ? "" : "\n").append(indent).append(IndentedText(line));
        taken = static_cast<std::size_t>(line.indent) + static_cast<std::size_t>(line.width);
    }
    return out.append(width - std::min(taken, width) + kGap, ' ').append(value).append("\n");
}

template <typename Table>
std::string TableText(std::string_view title, const std::vector<std::string>& texts, const Table& table,
                      const std::string& indent, bool colour) {
    const std::size_t verdicts = VerdictWidth();
    const std::size_t taken = indent.size() + 2 * (verdicts + 2);
    const std::size_t width = std::max(kLineWidth, taken + kLeastWidth) - taken;
    const auto columns = [&](const std::string& acr, const std::string& mqsa) { return acr + "  " + mqsa; };
    std::string out =
        "\n" + TwoColumns(std::string(title), width, indent, columns(Padded("ACR", verdicts), "MQSA"));
    for (std::size_t row = 0; row < texts.size(); ++row)
        out += TwoColumns(texts[row], width, indent,
                          columns(VerdictWords(table[row][kAcrColumn], verdicts, colour),
                                  VerdictWords(table[row][kMqsaColumn], 0, colour)));
    return out;
}

std::vector<std::string> Translated(std::span<const std::string_view> keys) {
    std::vector<std::string> texts;
    for (std::string_view key : keys) texts.push_back(Translate(key));
    return texts;
}

/// The lines of the summary page, those of the phantom with the scores of the current film.
std::vector<std::string> SummaryLines(const CResultMQSA& survey) {
    std::vector<std::string> texts = Translated(SummaryTexts());
    texts[kFiberLine].append("  ").append(survey.pSummPage1Fiber());
    texts[kFiberLine + 1].append("  ").append(survey.pSummPage1Speck());
    texts[kFiberLine + 2].append("  ").append(survey.pSummPage1Mass());
    return texts;
}

bool IsFilled(const SurveyPlace& place) {
    return !Trimmed(place.value).empty();
}

/// The grid of a cell; empty for other places.
std::string_view GridOf(const SurveyPlace& place) {
    const std::string_view address = place.address;
    const bool cell = address.find(',') != std::string_view::npos;
    return cell ? address.substr(0, address.find('(')) : std::string_view();
}

std::string PagesText(const CResultMQSA& survey, const std::string& indent) {
    std::string out;
    const std::vector<SurveyPlace> places = ListSurvey(survey);
    for (std::size_t page = 0; page < kPageCount; ++page) {
        std::string lines;
        std::string_view grid;
        for (const SurveyPlace& place : places)
            if (static_cast<std::size_t>(place.page) == page && IsFilled(place)) {
                if (GridOf(place) != grid && !GridOf(place).empty())
                    lines.append(indent).append(" ").append(GridOf(place)).append("\n");
                grid = GridOf(place);
                lines += TwoColumns(place.meaning, kTextWidth - 2, indent + "  ",
                                    std::string(Trimmed(OneLine(place.value))));
            }
        if (!lines.empty())
            out.append("\n")
                .append(indent)
                .append(Translate(PageText(static_cast<SurveyPage>(page))))
                .append("\n")
                .append(lines);
    }
    return out;
}

}  // namespace

std::string SurveyFailures(const CResultMQSA& survey, const std::string& indent) {
    SurveyTables tables = survey.Tables();
    const SurveyEvaluation evaluation =
        EvaluateSurvey(survey.Record(), survey.Statuses(), survey.Cells(), tables);
    std::string out;
    const ItemStatuses statuses = survey.Statuses();
    const auto open = std::count(statuses.begin(), statuses.end(), kNotTested);
    if (open > 0 && survey.Status() != kNotApplicable)
        out += indent + Translate(st::kOpenItems, {std::to_string(open), std::to_string(statuses.size())}) +
               "\n";
    for (const SurveyFinding& finding : evaluation.findings)
        out += indent + Translate(PageText(finding.page)) + ", " + finding.place + ": " +
               OneLine(finding.words) + "\n";
    const StatusCells cells = survey.Cells();
    for (const survey::StatusCellRow& row : survey::kStatusCells)
        if (const std::string words = OutcomeWords(row.key); cells.*row.cell == kFailed && !words.empty())
            out += indent + words + "\n";
    if (!evaluation.fault.empty()) out += indent + Translate(st::kNotJudged, {evaluation.fault}) + "\n";
    if (tables != survey.Tables()) out += indent + Translate(st::kChangedSinceJudged) + "\n";
    return out;
}

std::string SurveyText(const CResultMQSA& survey, const std::string& indent, bool colour) {
    std::string out;
    if (!survey.Comment().empty())
        out += indent + Translate(text::kShowComment, {OneLine(survey.Comment())}) + "\n";
    out += PagesText(survey, indent);
    out += TableText(Translate(st::kFormPreliminary), Translated(PreliminaryTexts()),
                     survey.Tables().preliminary, indent, colour);
    out += TableText(Translate(st::kSummaryTable), SummaryLines(survey), survey.Tables().summary, indent,
                     colour);
    if (const std::string failures = SurveyFailures(survey, indent + "  "); !failures.empty())
        out += "\n" + indent + Translate(st::kWhatFails) + "\n" + failures;
    return out;
}

std::string SurveyListing(const CResultMQSA& survey) {
    std::string out;
    for (const SurveyPlace& place : ListSurvey(survey)) {
        const bool calculated = place.kind == PlaceKind::kCalculated;
        const std::string meaning = OneLine(place.meaning);
        out += Translate(PageText(place.page)) + "\t" + place.address + "\t" + OneLine(place.value) + "\t" +
               (calculated ? Translate(st::kCalculated, {meaning}) : meaning) + "\n";
    }
    return out;
}

}  // namespace vorex

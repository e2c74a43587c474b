#include "reports/report_cover.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <string>
#include <vector>

#include "foundation/number_text.h"
#include "foundation/report_markup.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "reports/report_table.h"

namespace vorex {

namespace {

constexpr int32_t kCoverPoints = 9;
constexpr int32_t kBodyPoints = 7;
constexpr int32_t kShares = 100;

/// Columns to the left that share the width of the page in hundredths.
std::string ColumnsOf(const ReportDocument& report, std::initializer_list<int32_t> shares) {
    std::string columns;
    for (int32_t share : shares) {
        if (!columns.empty()) columns += markup::kCell;
        columns += "<+" + std::to_string(report.Metric(kTextWidth) * share / kShares);
    }
    return columns + markup::kRowEnd;
}

/// A row whose first cell is in the first column: the cover has no margin.
std::string Row(std::initializer_list<std::string_view> cells) {
    std::string row;
    for (std::string_view cell : cells) {
        row += markup::Text(cell);
        row += markup::kCell;
    }
    row.back() = markup::kRowEnd;
    return row;
}

std::string HeadingRow(const ReportDocument& report, std::initializer_list<std::string_view> keys) {
    std::string row;
    for (std::string_view textKey : keys) row += markup::Heading(Translate(textKey, &report));
    // The part before the first "|" is the margin.
    return row.substr(1) + markup::kRowEnd;
}

int32_t StatusOf(const ITestElement& element) {
    const auto result = element.Result();
    return result ? result->Status() : kNotTested;
}

std::string StatusWords(int32_t status, const ReportDocument& report) {
    const std::string words = StatusText(status, &report);
    return words.empty() ? Translate(text::kReportNotTested, &report) : words;
}

std::string_view MarkOf(int32_t status) {
    if (status == kFailed) return markup::kFailMark;
    return status == kPassed ? kReportPassMark : std::string_view();
}

bool Counts(const ITestElement& element) {
    return !element.Filter() || element.Filter()->Evaluate();
}

/// True when a test that counts has not been performed. A group passes without it; a signed report must not.
bool LacksATest(const ITestElement& element) {
    const auto* container = dynamic_cast<const ITestContainer*>(&element);
    if (container == nullptr) return StatusOf(element) == kNotTested;
    const auto children = container->NewEnum();
    return std::any_of(children.begin(), children.end(),
                       [](const auto& child) { return Counts(*child) && LacksATest(*child); });
}

/// Failed when a test failed; passed when at least one passed and all others passed or do not apply.
int32_t Overall(std::span<const std::shared_ptr<ITestElement>> roots) {
    int32_t overall = roots.empty() ? kNotTested : kNotApplicable;
    for (const auto& root : roots) {
        if (!Counts(*root)) continue;
        const int32_t own = StatusOf(*root);
        const int32_t status = own == kPassed && LacksATest(*root) ? kNotTested : own;
        if (status == kFailed) return kFailed;
        if (status == kNotTested || overall == kNotTested)
            overall = kNotTested;
        else if (status == kPassed)
            overall = kPassed;
    }
    return overall;
}

std::string NameOf(const ITestElement& element, const ReportDocument& report) {
    const auto info = element.Info();
    return ElementTitle(info ? info->Name() : std::string(), element.TestID(), &report);
}

/// Numbers of tests by status; groups do not count.
using Tally = std::array<int32_t, 4>;

void Count(std::span<const std::shared_ptr<ITestElement>> elements, Tally& tally) {
    for (const auto& element : elements) {
        const auto container = std::dynamic_pointer_cast<ITestContainer>(element);
        if (container)
            Count(container->NewEnum(), tally);
        else
            ++tally.at(static_cast<std::size_t>(std::clamp(StatusOf(*element), kNotTested, kNotApplicable)));
    }
}

std::string TallyWords(std::span<const std::shared_ptr<ITestElement>> roots, const ReportDocument& report) {
    Tally tally{};
    Count(roots, tally);
    const auto words = [&](int32_t status) { return PlainText(tally.at(static_cast<std::size_t>(status))); };
    return Translate(text::kReportTallyOf,
                     {PlainText(std::accumulate(tally.begin(), tally.end(), 0)), words(kPassed),
                      words(kFailed), words(kNotApplicable), words(kNotTested)},
                     &report);
}

void AddTree(std::span<const std::shared_ptr<ITestElement>> elements, std::size_t depth,
             const ReportContents& contents, const ReportDocument& report, std::string& rows) {
    for (const auto& element : elements) {
        const std::string indent(depth * kTreeStep, ' ');
        const int32_t status = StatusOf(*element);
        const std::string note = contents.noteOf ? contents.noteOf(*element) : std::string();
        rows += indent + markup::Text(NameOf(*element, report)) + markup::kCell +
                markup::Text(Translate(TitleKey(element->TestID()), &report)) + markup::kCell +
                std::string(MarkOf(status)) +
                markup::Text(StatusWords(status, report) + (note.empty() ? "" : " " + note)) +
                markup::kRowEnd;
        if (const auto container = std::dynamic_pointer_cast<ITestContainer>(element))
            AddTree(container->NewEnum(), depth + 1, contents, report, rows);
    }
}

void PrintFacts(ReportDocument& report, const ReportContents& contents) {
    const ReportFacts& facts = report.Facts();
    std::string rows;
    for (const ReportFact& fact : contents.particulars) rows += Row({fact.label, fact.text});
    rows += Row({Translate(text::kReportTally, &report), TallyWords(contents.roots, report)}) +
            Row({Translate(text::kReportFile, &report), facts.fileName}) +
            Row({Translate(text::kReportDate, &report), facts.date}) +
            Row({Translate(text::kReportProgram, &report), facts.program});
    report.PrintTable(ColumnsOf(report, {25, 75}), rows);
    if ((report.Options() & kReportFailuresOnly) != 0)
        report.PrintTable(ColumnsOf(report, {100}), Row({Translate(text::kReportFailuresOnly, &report)}));
}

void PrintTree(ReportDocument& report, const ReportContents& contents) {
    report.PrintHeading(Translate(text::kReportElements, &report), {});
    std::string rows = HeadingRow(report, {text::kDescription, text::kReportTest, text::kReportStatus});
    AddTree(contents.roots, 0, contents, report, rows);
    report.PrintTable(ColumnsOf(report, {42, 33, 25}), rows);
}

void PrintInstruments(ReportDocument& report, std::span<const MtiEntry> instruments) {
    report.PrintHeading(Translate(text::kReportInstruments, &report), {});
    if (instruments.empty()) {
        report.PrintTable(ColumnsOf(report, {100}), Row({Translate(text::kReportNoInstruments, &report)}));
        return;
    }
    std::string rows =
        HeadingRow(report, {text::kDescription, text::kReportSerialNumber, text::kReportCalibrated});
    for (const MtiEntry& entry : instruments)
        rows += Row({entry.name, entry.serialNumber, entry.calibrationDate});
    report.PrintTable(ColumnsOf(report, {44, 28, 28}), rows);
}

void PrintStandards(ReportDocument& report, std::span<const JudgingStandard> standards) {
    report.PrintHeading(Translate(text::kReportStandards, &report), {});
    if (standards.empty()) {
        report.PrintTable(ColumnsOf(report, {100}), Row({Translate(text::kReportNoStandards, &report)}));
        return;
    }
    const bool known = std::any_of(standards.begin(), standards.end(),
                                   [](const JudgingStandard& standard) { return !standard.clauses.empty(); });
    std::string rows =
        known ? HeadingRow(report, {text::kDescription, text::kReportVersion, text::kReportClauses})
              : HeadingRow(report, {text::kDescription, text::kReportVersion});
    for (const JudgingStandard& standard : standards)
        rows += Row({standard.name, standard.version, standard.clauses});
    report.PrintTable(ColumnsOf(report, {30, 20, 50}), rows);
}

}  // namespace

void PrintFile(ReportDocument& report, const ReportContents& contents) {
    report.Style(kCoverPoints);
    report.PrintTitle(report.Facts().title, StatusWords(Overall(contents.roots), report));
    PrintFacts(report, contents);
    PrintTree(report, contents);
    PrintStandards(report, contents.standards);
    PrintInstruments(report, contents.instruments);
    report.Style(kBodyPoints);
    if (contents.roots.empty()) return;
    report.NewPage();
    const auto setup = std::make_shared<ReportSetup>(report, contents.recordOf);
    for (const auto& root : contents.roots) root->PrintReport(&report, setup);
}

}  // namespace vorex

#include "reports/report_setup.h"

#include "foundation/number_text.h"
#include "foundation/report_markup.h"

namespace vorex {

namespace {

constexpr int32_t kFactPoints = 7;
constexpr int32_t kLabelWidth = 2440;

}  // namespace

void PrintFacts(const std::vector<ReportFact>& facts, IReportDocument& report) {
    std::string rows;
    for (const ReportFact& fact : facts)
        rows += markup::kCell + markup::Text(fact.label) + markup::kCell + markup::Text(fact.text) +
                markup::kRowEnd;
    if (rows.empty()) return;
    report.Style(kFactPoints);
    report.PrintTable("<+560|<" + PlainText(kLabelWidth) + "|<+" +
                          PlainText(report.Metric(kTableWidth) - kLabelWidth) + "|<+560;",
                      rows);
}

void ReportSetup::EndHeading(const IResultData* result) {
    mDocument.HeadingLevel(mLevel + 1);
    if (result != nullptr && mRecordOf) PrintFacts(mRecordOf(*result), mDocument);
}

}  // namespace vorex

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "foundation/host_contract.h"
#include "reports/report_document.h"

namespace vorex {

/// A fact with its name. Line feeds part the lines of a text.
struct ReportFact {
    std::string label;
    std::string text;
};

/// Prints facts one below the other; nothing for none.
void PrintFacts(const std::vector<ReportFact>& facts, IReportDocument& report);

/// The setup of the reports that the host itself makes, handed from element to element: how deep an element
/// stands, and what the program says about its result under its heading.
class ReportSetup final : public IReportSetup {
  public:
    using RecordOf = std::function<std::vector<ReportFact>(const IResultData& result)>;

    explicit ReportSetup(ReportDocument& document, RecordOf recordOf = {})
        : mDocument(document), mRecordOf(std::move(recordOf)) {}

    /// Headings up to `EndHeading` are those of an element.
    void BeginHeading() { mDocument.HeadingLevel(mLevel); }
    /// Headings from here on are of what an element holds; its result is described first.
    void EndHeading(const IResultData* result);
    void BeginChildren() { ++mLevel; }
    void EndChildren() { --mLevel; }

  private:
    ReportDocument& mDocument;
    RecordOf mRecordOf;
    int32_t mLevel = 1;
};

}  // namespace vorex

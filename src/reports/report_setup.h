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

/// Prints facts one below the other.
void PrintFacts(const std::vector<ReportFact>& facts, IReportDocument& report);

/// The setup of the host's own reports, passed from element to element: the depth of an element, and the
/// program's remarks on its result under its heading.
class ReportSetup final : public IReportSetup {
  public:
    using RecordOf = std::function<std::vector<ReportFact>(const IResultData& result)>;

    explicit ReportSetup(ReportDocument& document, RecordOf recordOf = {})
        : mDocument(document), mRecordOf(std::move(recordOf)) {}

    /// Headings up to `EndHeading` belong to an element.
    void BeginHeading() { mDocument.HeadingLevel(mLevel); }
    /// Headings from here on belong to the contents of the element; its result is described first.
    void EndHeading(const IResultData* result);
    void BeginChildren() { ++mLevel; }
    void EndChildren() { --mLevel; }

  private:
    ReportDocument& mDocument;
    RecordOf mRecordOf;
    int32_t mLevel = 1;
};

}  // namespace vorex

#pragma once

#include <memory>
#include <span>
#include <string>

#include "foundation/host_contract.h"
#include "host/report_document.h"

namespace vorex {

/// A standard that judged, with the clauses that its limits come from, where they are known.
struct JudgingStandard {
    std::string name;
    std::string version;
    std::string clauses;
};

/// What a report tells of a file.
struct ReportContents {
    std::span<const std::shared_ptr<ITestElement>> roots;
    std::span<const JudgingStandard> standards;
    std::span<const MtiEntry> instruments;
};

/// Prints a file: the cover, which tells what was tested, with what, by which standards and with what
/// outcome, and behind it every element.
void PrintFile(ReportDocument& report, const ReportContents& contents);

}  // namespace vorex

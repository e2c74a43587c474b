#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>

#include "foundation/host_contract.h"
#include "reports/report_document.h"
#include "reports/report_setup.h"

namespace vorex {

/// A standard that judged, with the clauses of its limits if they are known.
struct JudgingStandard {
    std::string name;
    std::string version;
    std::string clauses;
};

/// What a report says about a file.
struct ReportContents {
    std::span<const std::shared_ptr<ITestElement>> roots;
    std::span<const JudgingStandard> standards;
    std::span<const MtiEntry> instruments;
    std::span<const ReportFact> particulars;  ///< site, room, person: what the file names of them
    ReportSetup::RecordOf recordOf;           ///< may be empty
    /// The text next to the status of an element; may be empty.
    std::function<std::string(const ITestElement& element)> noteOf;
};

/// Prints a file: a cover (what was tested, with which instruments, by which standards, with which outcome),
/// then every element.
void PrintFile(ReportDocument& report, const ReportContents& contents);

}  // namespace vorex

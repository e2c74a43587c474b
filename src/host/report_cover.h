#pragma once

#include <memory>
#include <span>

#include "foundation/host_contract.h"
#include "host/report_document.h"

namespace vorex {

/// What a report tells of a file.
struct ReportContents {
    std::span<const std::shared_ptr<ITestElement>> roots;
    std::span<const StandardName> standards;  ///< those that were judged by
    std::span<const MtiEntry> instruments;
};

/// Prints a file: the cover, which tells what was tested, with what, by which standards and with what
/// outcome, and behind it every element.
void PrintFile(ReportDocument& report, const ReportContents& contents);

}  // namespace vorex

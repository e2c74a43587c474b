#pragma once

#include <span>
#include <vector>

#include "foundation/host_contract.h"
#include "reports/report_setup.h"
#include "results/result_common.h"

/// What a signed report has to say apart from the values: where, when and with what they were measured, and
/// by which limits they were judged. Only what the file holds; nothing is guessed.
namespace vorex {

class ElementFile;

/// The facts of a result, in the language of the report: its run, its instruments, its judgement, and what
/// has changed since. A result that names its instrument by number only takes it from the list of the
/// file.
std::vector<ReportFact> RecordFacts(const ITestElement& element, const CResultCommon& result,
                                    const ISelectedStandards* selected, std::span<const MtiEntry> instruments,
                                    const IReportDocument& report);

/// Site, room, unit, person and date that the surveys of the file name; each survey's own where they differ.
std::vector<ReportFact> Particulars(const ElementFile& file, const IReportDocument& report);

}  // namespace vorex

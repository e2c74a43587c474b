#pragma once

#include <span>
#include <vector>

#include "foundation/host_contract.h"
#include "reports/report_setup.h"
#include "results/result_common.h"

/// The facts that a signed report needs in addition to the values: where, when and with which instruments
/// they were measured, and by which limits they were judged. All of them are from the file; nothing is
/// guessed.
namespace vorex {

class ElementFile;

/// The facts of a result, in the language of the report: its run, its instruments, its judgement, and what
/// has changed since. If a result has only the number of its instrument, the file's list supplies the rest.
std::vector<ReportFact> RecordFacts(const ITestElement& element, const CResultCommon& result,
                                    const ISelectedStandards* selected, std::span<const MtiEntry> instruments,
                                    const IReportDocument& report);

/// Site, room, unit, person and date from the surveys of the file; if these differ, each survey's own.
std::vector<ReportFact> Particulars(const ElementFile& file, const IReportDocument& report);

}  // namespace vorex

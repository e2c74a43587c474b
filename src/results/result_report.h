#pragma once

#include "foundation/host_contract.h"

namespace vorex {

class CResultCommon;

/// Prints the exposures of a result, the statistics of the test once after them, then the waveforms.
void PrintResult(const CResultCommon& result, IReportDocument& report);

}  // namespace vorex

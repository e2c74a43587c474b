#pragma once

#include "foundation/host_contract.h"

namespace vorex {

class CConfigCommon;
class CResultCommon;

/// Prints the exposures of a result, the statistics of the test once after them, then the waveforms. The
/// configuration, if there is one, has the voltages that the exposures set.
void PrintResult(const CResultCommon& result, const CConfigCommon* config, IReportDocument& report);

}  // namespace vorex

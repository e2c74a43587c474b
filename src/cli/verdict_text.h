#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "config/config_common.h"
#include "foundation/host_contract.h"
#include "results/result_common.h"

/// What a verdict was made with, in words: how the run ended, what has changed since, what judging changed.
namespace vorex {

/// The limits of a standard for a measurement: "at least 76, at most 84"; empty when no side judges it.
std::string LimitWords(const CMeasurement& item, const IStandard& standard);

/// How a run that did not simply end came to its end, for beside its verdict: "(stopped after 2 of 5)",
/// "(broke off: the link to the instruments was lost)"; empty for one that went as planned.
std::string EndingNote(const ITestElement& element);

/// What a result tells of its origin: when, by which program, how the run ended and why, and which limits
/// and settings are others now.
std::vector<std::string> RecordLines(const ITestElement& element, const CConfigCommon& config,
                                     const CResultCommon& result, const ISelectedStandards* selected);

/// The verdict of a result and the statuses of all its values, in their order.
using Statuses = std::vector<int32_t>;
Statuses StatusesOf(const CResultCommon& result);

/// A line for each value that has changed the verdict: "element 3: Pass -> Fail: kVp Avg exposure 2, 84.3
/// KV, at most 84 (Site 2026), before at most 88". Empty when the verdict stands.
std::vector<std::string> VerdictChanges(const ITestElement& element, const CResultCommon& result,
                                        const Statuses& before, const ISelectedStandards* selected);

}  // namespace vorex

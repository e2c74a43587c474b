#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/verdict_change.h"
#include "config/config_common.h"
#include "foundation/host_contract.h"
#include "results/result_common.h"

/// The origin of a verdict, in words for the program or a report: how the run ended, what has changed since,
/// what judging changed.
namespace vorex {

/// The limits of a standard for a measurement: "at least 76, at most 84"; empty when no side judges it.
std::string LimitWords(const CMeasurement& item, const IStandard& standard,
                       const IReportDocument* report = nullptr);

/// What a person must know next to a verdict: "(stopped after 2 of 5)", "(broke off: the link to the
/// instruments was lost)", "(exposure 1 has no value for HVL, judged as 0)"; empty for one without reserve.
std::string VerdictNote(const ITestElement& element, const IReportDocument* report = nullptr);

/// A standard as texts name it: "Site 1".
std::string StandardWords(const StandardName& name);
std::vector<StandardName> NamesOf(const std::shared_ptr<IStandardCollection>& standards);
std::string Joined(const std::vector<std::string>& parts, std::string_view between);

/// The instruments of a result, each as "ZRD 47500, serial number 4711, calibrated 2026-01-15": those that
/// its run noted, or else those of the file's list that it refers to.
std::vector<std::string> InstrumentsOf(const CResultCommon& result, std::span<const MtiEntry> fileInstruments,
                                       const IReportDocument* report = nullptr);

/// Program and formulas in words.
std::string OriginWords(const Origin& origin, const IReportDocument* report = nullptr);
/// How a run ended, in words; empty if it ended as planned. [with a run]
std::string EndingWords(const CResultCommon& result, const IReportDocument* report = nullptr);
/// The first exposure without a reading, the first value that was never measured or that limits judged
/// although it was never there, and how many more; empty without one.
std::string WithoutValueWords(const CResultCommon& result, const IReportDocument* report = nullptr);
/// Settings, and sides of limits, that are not any more what the result was made with: a line each.
std::vector<std::string> EditedSettings(const CConfigCommon& config, const RunRecord& run,
                                        const IReportDocument* report = nullptr);
std::vector<std::string> ChangedSides(const ITestElement& element, const Judgement& judged,
                                      const ISelectedStandards* selected,
                                      const IReportDocument* report = nullptr);

/// The origin of a result: when, by which program, how the run ended and why, and which limits and settings
/// have changed since.
std::vector<std::string> RecordLines(const ITestElement& element, const CConfigCommon& config,
                                     const CResultCommon& result, const ISelectedStandards* selected);

/// The verdict of a result and the statuses of all its values, in their order.
using Statuses = std::vector<int32_t>;
Statuses StatusesOf(const CResultCommon& result);

/// The change of a verdict by judging; nothing when it has not changed.
std::optional<VerdictChange> ChangeOfVerdict(const ITestElement& element, const CResultCommon& result,
                                             const Statuses& before, const ISelectedStandards* selected);

/// A line for each value that changed the verdict: "element 3: Pass -> Fail: kVp Avg exposure 2, 84.3 KV, at
/// most 84 (Site 2026), before at most 88".
std::vector<std::string> ChangeLines(const VerdictChange& change);

}  // namespace vorex

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "config/config_common.h"
#include "foundation/host_contract.h"
#include "results/mti_data.h"

/// The record of how a verdict was made, kept in the result so that later readers know it.
namespace vorex {

/// Version of the formulas: `derived_values.cpp`, the rules of `result_status.cpp` and
/// the dose conversion factors. Raised by one with every change of a formula that can change a number or a
/// verdict.
inline constexpr int32_t kFormulaVersion = 2;

/// The program that computed, and its version of the formulas.
struct Origin {
    std::string program;
    int32_t formulas = 0;
    bool operator==(const Origin&) const = default;
};
/// The running program and its formulas.
Origin PresentOrigin();
/// The time of the platform's clock with its offset from UTC; empty without a platform.
std::string PresentTime();

/// The persisted settings of a test, with decimal points on every system, so that they can be compared.
SettingTexts TechniqueOf(const CConfigCommon& config);

enum class RunEnding { kComplete, kStopped, kBroken };

/// The run that took the exposures of a result.
struct RunRecord {
    std::string start;
    std::string end;
    RunEnding ending = RunEnding::kComplete;
    std::string reason;   ///< why it broke off, or what failed during it
    int32_t planned = 0;  ///< exposures
    Origin origin;
    std::vector<CMtiData2> instruments;
    SettingTexts technique;

    void AddInstrument(const CMtiData2& instrument);
    void Save(IXmlElement& result, const std::shared_ptr<IXmlDocument>& owner) const;
    void LoadRun(const IXmlElement& element);
    void LoadInstrument(const IXmlElement& element);
    void LoadTechnique(const IXmlElement& element);
};

/// The basis of the statuses of a result.
struct Judgement {
    std::string time;
    Origin origin;
    std::shared_ptr<IStandardCollection> limits;  ///< copies of the selected standards

    void Save(IXmlElement& result, const std::shared_ptr<IXmlDocument>& owner) const;
    void Load(const std::shared_ptr<IXmlElement>& element);
};

/// A judgement by an element's present limits.
Judgement PresentJudgement(const ITestElement& owner, const ISelectedStandards* selected);

}  // namespace vorex

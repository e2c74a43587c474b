#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "cli/commands.h"
#include "execution/test_mqsa.h"
#include "files/element_file.h"
#include "foundation/host_contract.h"
#include "foundation/registration.h"
#include "host/reference_host.h"

// What several commands do.

namespace vorex {

inline constexpr std::string_view kStandards = "standards";
inline constexpr std::string_view kLanguages = "languages";

/// Where data of a kind stand, seen from the program.
std::vector<std::filesystem::path> DataFolders(std::string_view kind);
/// The language that was asked for, else that of the system.
std::string LanguageOf(const CommonOptions& common);

/// Installs library and host for the length of a command.
class Installation {
  public:
    explicit Installation(const CommonOptions& common, ReferenceHostOptions options = {});
    ~Installation();
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;

  private:
    CRegisterDll mRegistration;
};

/// Throws std::runtime_error for an output that is one of the inputs, a folder, or in no folder.
void CheckOutput(const std::vector<std::filesystem::path>& inputs, const std::filesystem::path& output);
/// Writes the file, or its text to standard output without one.
void WriteResult(ElementFile& file, const std::filesystem::path& output, Terminal& terminal);
/// The tree with its statuses, where standard output does not carry the file itself.
void PrintSummary(const ElementFile& file, const std::filesystem::path& output, Terminal& terminal);
/// The exit code that the verdicts of a file come to.
int VerdictOf(const ElementFile& file);

/// Visits the elements of a file, each group before what stands in it.
void ForEachElement(const std::vector<std::shared_ptr<ITestElement>>& elements,
                    const std::function<void(const std::shared_ptr<ITestElement>&)>& visit);
void RollUpGroups(const ElementFile& file, const ISelectedStandards* selected);

std::vector<std::shared_ptr<CTestMQSA>> SurveysOf(const ElementFile& file);
/// True when a survey could not be judged to its end; says why.
bool PrintSurveyFaults(const ElementFile& file, Terminal& terminal);

}  // namespace vorex

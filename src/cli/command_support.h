#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "app/listener.h"
#include "app/open_file.h"
#include "cli/commands.h"

// Helpers of several commands.

namespace vorex {

/// The language that was requested, else that of the system.
std::string LanguageOf(const CommonOptions& common);

/// Prints the messages and the progress of a run for a person.
class TerminalListener : public IAppListener {
  public:
    explicit TerminalListener(Terminal& terminal) : mTerminal(terminal) {}

    void ElementBegins(const ITestElement& element) override;
    void ElementEnded(const ITestElement& element) override;
    void VerdictChanged(const VerdictChange& change) override;
    void Faulted(const AppFault& fault) override;

  private:
    Terminal& mTerminal;
};

/// Throws std::runtime_error for an output that is one of the inputs, a folder, or in no folder.
void CheckOutput(const std::vector<std::filesystem::path>& inputs, const std::filesystem::path& output);
/// Writes the file, or its text to standard output without one.
void WriteResult(OpenFile& file, const std::filesystem::path& output, Terminal& terminal);
/// Prints the tree with its statuses, unless standard output receives the file itself.
void PrintSummary(const OpenFile& file, const std::filesystem::path& output, Terminal& terminal);
/// The exit code for the verdicts of a file. Names a survey that could not be judged completely.
int VerdictCode(const OpenFile& file, Terminal& terminal);

}  // namespace vorex

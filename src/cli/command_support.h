#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cli/commands.h"
#include "files/element_file.h"
#include "host/reference_host.h"

// What several commands do.

namespace vorex {

/// The language that was asked for, else that of the system.
std::string LanguageOf(const CommonOptions& common);

/// Host options of a command in that language.
ReferenceHostOptions HostOptions(const CommonOptions& common);

/// Throws std::runtime_error for an output that is one of the inputs, a folder, or in no folder.
void CheckOutput(const std::vector<std::filesystem::path>& inputs, const std::filesystem::path& output);
/// Writes the file, or its text to standard output without one.
void WriteResult(ElementFile& file, const std::filesystem::path& output, Terminal& terminal);
/// The tree with its statuses, where standard output does not carry the file itself.
void PrintSummary(const ElementFile& file, const std::filesystem::path& output, Terminal& terminal);
/// The exit code that the verdicts of a file come to.
int VerdictOf(const ElementFile& file);

/// True when a survey could not be judged to its end; says why.
bool PrintSurveyFaults(const ElementFile& file, Terminal& terminal);

}  // namespace vorex

#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace vorex {

class ElementFile;
class StandardsLibrary;

struct ReportOptions {
    std::filesystem::path input;
    std::filesystem::path output;
    bool limits = false;
    bool failuresOnly = false;
    bool waveforms = false;
    std::string paper = "A4";
    std::optional<std::string> language;  ///< default: that of the program
};

/// Raises std::runtime_error for a report name with an unknown ending, and for an unknown paper or language.
void CheckReport(const ReportOptions& options);

/// Writes the report of an open file; the library supplies the clauses of its standards. Raises
/// std::exception; then an earlier report stays.
void WriteReport(const ElementFile& file, const StandardsLibrary& library, const ReportOptions& options,
                 const std::string& programLanguage);

}  // namespace vorex

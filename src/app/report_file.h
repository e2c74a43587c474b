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
    std::optional<std::string> language;  ///< without one: that of the program
};

/// Raises std::runtime_error for a report whose form its name does not tell, and for paper or a language that
/// is not known.
void CheckReport(const ReportOptions& options);

/// Writes the report of a file that is in memory; the library knows the clauses of its standards. Raises
/// std::exception; what stood there before stays then.
void WriteReport(const ElementFile& file, const StandardsLibrary& library, const ReportOptions& options,
                 const std::string& programLanguage);

}  // namespace vorex

#pragma once

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "app/report_file.h"

namespace vorex {

/// Exit codes of the commands.
enum ExitCode {
    kExitPassed = 0,   ///< passed, or not judged
    kExitFailed = 1,   ///< a test failed
    kExitUsage = 2,    ///< wrong usage, or an input that cannot be read
    kExitAborted = 3,  ///< aborted by the operator
    kExitFault = 4,    ///< an instrument or a file failed; what was measured is saved
};

/// The streams that a command writes to, and their style.
struct Terminal {
    std::ostream& out;
    std::ostream& err;
    bool colour = false;    ///< on standard output
    bool progress = false;  ///< on standard error
};

/// What all commands share.
struct CommonOptions {
    std::optional<std::string> language;  ///< without one: that of the system
};

struct NewOptions {
    std::string testId;
    std::filesystem::path output;  ///< empty: standard output
};

struct RunOptions {
    std::filesystem::path input;
    std::string instruments;
    std::filesystem::path room;  ///< of simulated instruments; empty: a good room
    std::string operatorScript;
    std::filesystem::path output;  ///< empty: standard output
    std::filesystem::path report;  ///< empty: none
    std::optional<std::string> reportLanguage;
    bool realTime = false;
};

struct ResumeOptions {
    std::filesystem::path file;    ///< output of the interrupted run, or its journal
    std::string instruments;       ///< empty: those of the run
    std::filesystem::path room;    ///< of simulated instruments; empty: that of the run
    std::string operatorScript;    ///< empty: the rest of the run's script
    std::filesystem::path report;  ///< empty: that of the run
    std::optional<std::string> reportLanguage;
};

struct JudgeOptions {
    std::filesystem::path input;
    std::filesystem::path output;  ///< empty: standard output
};

struct ShowOptions {
    std::filesystem::path input;
    bool all = false;  ///< includes the readings that a redo replaced
};

struct StandardsAddOptions {
    std::filesystem::path input;
    std::string standard;
    std::vector<int32_t> elements;  ///< IDs; empty: all
    std::filesystem::path output;   ///< empty: standard output
};

struct StandardsSelectOptions {
    std::filesystem::path input;
    std::vector<std::string> standards;
    std::filesystem::path output;  ///< empty: standard output
};

struct SurveyOptions {
    std::filesystem::path input;
    std::vector<std::string> texts;    ///< ADDRESS=TEXT
    std::vector<std::string> answers;  ///< ITEM=ANSWER
    std::filesystem::path from;
    std::filesystem::path exported;
    bool list = false;
    std::optional<int32_t> id;     ///< of the survey, if a file has several
    std::filesystem::path output;  ///< empty: standard output
};

// Each command raises an exception derived from std::exception for wrong usage and unreadable input.
int NewCommand(const NewOptions& options, const CommonOptions& common, Terminal& terminal);
int RunCommand(const RunOptions& options, const CommonOptions& common, Terminal& terminal);
/// The language is that of the run.
int ResumeCommand(const ResumeOptions& options, Terminal& terminal);
int JudgeCommand(const JudgeOptions& options, const CommonOptions& common, Terminal& terminal);
int SurveyCommand(const SurveyOptions& options, const CommonOptions& common, Terminal& terminal);
/// Returns 0 when the report was written, whatever the verdict.
int ReportCommand(const ReportOptions& options, const CommonOptions& common, Terminal& terminal);
int ShowCommand(const ShowOptions& options, const CommonOptions& common, Terminal& terminal);
int StandardsCommand(const CommonOptions& common, Terminal& terminal);
int StandardsAddCommand(const StandardsAddOptions& options, const CommonOptions& common, Terminal& terminal);
int StandardsSelectCommand(const StandardsSelectOptions& options, const CommonOptions& common,
                           Terminal& terminal);

}  // namespace vorex

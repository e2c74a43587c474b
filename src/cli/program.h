#pragma once

#include <string>
#include <vector>

#include "cli/commands.h"

namespace vorex {

/// Runs the program with its arguments, without the program's name, and returns its exit code. Every error
/// ends in one message on the terminal's standard error.
int RunProgram(const std::vector<std::string>& arguments, Terminal& terminal);

}  // namespace vorex

#pragma once

#include <string_view>

namespace vorex {

/// True when a developer's trace receiver is installed. Ask before building an expensive line.
bool HaveTraceWindow();
/// Sends a line to the trace receiver; nothing without one.
void Trace(std::string_view line);

}  // namespace vorex

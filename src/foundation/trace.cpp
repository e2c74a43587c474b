#include "foundation/trace.h"

#include "foundation/host_services.h"

namespace vorex {

bool HaveTraceWindow() {
    return static_cast<bool>(Services().trace);
}

void Trace(std::string_view line) {
    if (HaveTraceWindow()) Services().trace(line);
}

}  // namespace vorex

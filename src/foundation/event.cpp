#include "foundation/event.h"

#include <exception>
#include <string>

#include "foundation/host_services.h"

namespace vorex {

bool Guarded(std::string_view name, const std::function<void()>& handler) {
    try {
        handler();
        return true;
    } catch (const std::exception& error) {
        LogDiagnostic(std::string(name) + ": " + error.what());
    } catch (...) {
        LogDiagnostic(std::string(name) + ": unknown error");
    }
    return false;
}

}  // namespace vorex

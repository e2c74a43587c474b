#include "foundation/event.h"

#include <exception>
#include <string>
#include <utility>

#include "foundation/host_services.h"

namespace vorex {

bool Guarded(std::string_view name, const std::function<void()>& handler, std::string* failure) {
    std::string words = "unknown error";
    try {
        handler();
        return true;
    } catch (const std::exception& error) {
        words = error.what();
    } catch (...) {
    }
    LogDiagnostic(std::string(name) + ": " + words);
    if (failure != nullptr) *failure = words;
    return false;
}

void Connection::Disconnect() {
    if (const auto slot = std::exchange(mSlot, {}).lock()) slot->handler.reset();
}

bool Connection::Connected() const {
    const auto slot = mSlot.lock();
    return slot && slot->handler;
}

}  // namespace vorex

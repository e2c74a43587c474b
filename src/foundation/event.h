#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vorex {

/// Runs a handler and lets no exception out: the cause goes to the diagnostic log under the handler's name.
/// Returns true when the handler ended normally; the words of a failure are also put where asked for.
bool Guarded(std::string_view name, const std::function<void()>& handler, std::string* failure = nullptr);

/// A typed announcement. Handlers run in the order of connection, each guarded, so that a failing handler
/// neither ends the program nor keeps the others from running. A handler may connect or clear while the
/// event is being raised: the change holds from the next raise on.
template <typename... Args>
class Event {
  public:
    using Handler = std::function<void(Args...)>;

    explicit Event(std::string_view name = "Event") : mName(name) {}

    void Connect(Handler handler) { mHandlers.push_back(std::move(handler)); }
    void Clear() { mHandlers.clear(); }
    bool Connected() const { return !mHandlers.empty(); }

    void Raise(Args... args) const {
        const std::vector<Handler> handlers = mHandlers;
        for (const Handler& handler : handlers) Guarded(mName, [&] { handler(args...); });
    }

  private:
    std::string_view mName;
    std::vector<Handler> mHandlers;
};

}  // namespace vorex

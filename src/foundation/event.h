#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vorex {

/// Runs a handler and catches every exception: its message goes to the diagnostic log under the handler's
/// name, and to the argument for it, if given. Returns true when the handler ended normally.
bool Guarded(std::string_view name, const std::function<void()>& handler, std::string* failure = nullptr);

/// One connected handler; empty once disconnected.
struct EventSlot {
    std::shared_ptr<const void> handler;
};

/// Keeps a handler connected during its lifetime. It may outlive the event.
class Connection {
  public:
    Connection() = default;
    explicit Connection(std::weak_ptr<EventSlot> slot) : mSlot(std::move(slot)) {}
    ~Connection() { Disconnect(); }
    Connection(Connection&& other) noexcept : mSlot(std::exchange(other.mSlot, {})) {}
    Connection& operator=(Connection&& other) noexcept {
        if (this != &other) {
            Disconnect();
            mSlot = std::exchange(other.mSlot, {});
        }
        return *this;
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// The handler is not called again, not even by a raise that is under way.
    void Disconnect();
    bool Connected() const;

  private:
    std::weak_ptr<EventSlot> mSlot;
};

/// A typed event. Handlers run in the order of connection, each guarded, so that a failing handler neither
/// ends the program nor stops the others. A handler may connect and disconnect while the event is being
/// raised: a new handler is called from the next raise on, a disconnected one not any more.
template <typename... Args>
class Event {
  public:
    using Handler = std::function<void(Args...)>;

    explicit Event(std::string_view name = "Event") : mName(name) {}
    ~Event() = default;
    /// Listeners are not copied: a copy begins with none, and an assignment changes none.
    Event(const Event& other) : mName(other.mName) {}
    Event& operator=(const Event& /*other*/) { return *this; }

    /// Connects a handler for the lifetime of the event: the objects that it uses must live as long.
    void Connect(Handler handler) { Add(std::move(handler)); }
    /// Connects a handler for the lifetime of the connection, which the listener keeps.
    [[nodiscard]] Connection Listen(Handler handler) { return Connection(Add(std::move(handler))); }
    /// Disconnects all handlers.
    void Clear() {
        for (const auto& slot : mSlots) slot->handler.reset();
        mSlots.clear();
    }
    bool Connected() const { return std::any_of(mSlots.begin(), mSlots.end(), IsConnected); }

    void Raise(Args... args) const {
        const std::vector<std::shared_ptr<EventSlot>> slots = mSlots;
        for (const auto& slot : slots) {
            // A handler may disconnect itself; it lives until its call ends.
            const std::shared_ptr<const void> handler = slot->handler;
            if (handler) Guarded(mName, [&] { (*static_cast<const Handler*>(handler.get()))(args...); });
        }
    }

  private:
    static bool IsConnected(const std::shared_ptr<EventSlot>& slot) { return slot->handler != nullptr; }

    std::shared_ptr<EventSlot> Add(Handler handler) {
        std::erase_if(mSlots, [](const auto& slot) { return !IsConnected(slot); });
        mSlots.push_back(
            std::make_shared<EventSlot>(EventSlot{std::make_shared<const Handler>(std::move(handler))}));
        return mSlots.back();
    }

    std::string_view mName;
    std::vector<std::shared_ptr<EventSlot>> mSlots;
};

}  // namespace vorex

#pragma once

#include <cstdint>
#include <optional>

namespace vorex {

/// The state of an element's exposures. Held: a fluoroscopy exposure lasts until Stop.
enum class RunState : uint8_t { kClosed, kIdle, kRunning, kRunHeld, kRedoing, kRedoHeld };

/// The transitions between the states.
enum class RunStep : uint8_t { kOpen, kStart, kRedo, kHold, kRelease, kEnd, kClose };

/// The state after a step; nothing when the step is not allowed.
std::optional<RunState> StateAfter(RunState state, RunStep step);

/// True while exposures are taken: in a run or a redo.
constexpr bool IsTaking(RunState state) {
    return state >= RunState::kRunning;
}
constexpr bool IsRedo(RunState state) {
    return state == RunState::kRedoing || state == RunState::kRedoHeld;
}
constexpr bool IsHeld(RunState state) {
    return state == RunState::kRunHeld || state == RunState::kRedoHeld;
}

/// What happens to the result when the element is left.
enum class Outcome : uint8_t {
    kUnchanged,  ///< nothing was started
    kKept,       ///< judged and kept
    kMarkedNA,   ///< kept as not applicable
    kDiscarded,  ///< dropped, an earlier one too
};

}  // namespace vorex

#pragma once

#include <cstdint>
#include <optional>

namespace vorex {

/// How far an element is with its exposures. Held: a fluoroscopy exposure goes on until Stop.
enum class RunState : uint8_t { kClosed, kIdle, kRunning, kRunHeld, kRedoing, kRedoHeld };

/// What takes an element from one state to the next.
enum class RunStep : uint8_t { kOpen, kStart, kRedo, kHold, kRelease, kEnd, kClose };

/// State after a step; nothing when the step is not possible in this state.
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

/// What becomes of the result when the element is left.
enum class Outcome : uint8_t {
    kUnchanged,  ///< nothing was started: as it was before
    kKept,       ///< judged and kept
    kMarkedNA,   ///< kept as not applicable
    kDiscarded,  ///< dropped, an earlier one too
};

}  // namespace vorex

#pragma once

#include <cstddef>
#include <string>

namespace vorex {

/// Who operates the guides of a run: a script, or a person. The platform brings both to the guide; a run only
/// asks how far they have come. The defaults are those of a person at a window.
class IOperator {
  public:
    virtual ~IOperator() = default;
    /// Steps taken at the guide that was opened last.
    virtual std::size_t StepsTaken() const { return 0; }
    /// True when no further element may begin.
    virtual bool Ended() const { return false; }
    /// Why the operator could not go on; empty when nothing was wrong.
    virtual std::string Error() const { return {}; }
};

}  // namespace vorex

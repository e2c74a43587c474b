#pragma once

#include <cstddef>
#include <string>

namespace vorex {

/// The operator of the guides of a run: a script, or a person. The platform connects either to the guide; a
/// run only asks for their progress. The defaults are for a person at a window.
class IOperator {
  public:
    virtual ~IOperator() = default;
    /// Steps taken at the last opened guide.
    virtual std::size_t StepsTaken() const { return 0; }
    /// True when no further element may begin.
    virtual bool Ended() const { return false; }
    /// True for a person, whose acts go to the journal one by one. A script takes its steps again by itself.
    virtual bool ByHand() const { return true; }
    /// Why the operator could not continue; empty for no fault.
    virtual std::string Error() const { return {}; }
};

}  // namespace vorex

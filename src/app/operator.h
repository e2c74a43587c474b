#pragma once

#include <cstddef>

#include "host/headless_platform.h"

namespace vorex {

/// Who operates the guides of a run: a script, or a person.
class IOperator : public IHeadlessOperator {
  public:
    /// How far the operator has come: guides opened, and steps taken at the last of them.
    virtual std::size_t Opened() const = 0;
    virtual std::size_t StepsTaken() const = 0;
};

}  // namespace vorex

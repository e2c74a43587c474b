#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace vorex {

class ITestElement;

/// What the elements of one open sequence share. Each element reaches it with `ITestElement::Sequence`.
class SequenceState {
  public:
    // Navigation between a group and its children, and between a run and the guide.
    bool gSkipRemaining = false;
    bool gNARemaining = false;
    bool gRunActive = false;
    bool gMenuOpen = false;
    /// Polls of the idle guide that failed in a row.
    int32_t watchFailures = 0;

    /// Clears the flags and counts of a run; the roots stay.
    void Reset();

    /// The elements that have no parent, in their order. Empty for an element that is in no file.
    std::vector<std::shared_ptr<ITestElement>> Roots() const;
    void SetRoots(const std::vector<std::shared_ptr<ITestElement>>& roots);

  private:
    std::vector<std::weak_ptr<ITestElement>> mRoots;  ///< the elements own the state
};

}  // namespace vorex

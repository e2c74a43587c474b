#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace vorex {

class ITestElement;

/// The state that the elements of one open sequence share. Each element gets it from
/// `ITestElement::Sequence`.
class SequenceState {
  public:
    // Navigation between a group and its children, and between a run and the guide.
    bool gSkipRemaining = false;
    bool gNARemaining = false;
    bool gRunActive = false;
    bool gMenuOpen = false;
    /// Consecutive failed polls of the idle guide.
    int32_t watchFailures = 0;

    /// Clears the flags and counts of a run, but not the roots.
    void Reset();

    /// The elements without a parent, in order. Empty for an element that is in no file.
    std::vector<std::shared_ptr<ITestElement>> Roots() const;
    void SetRoots(const std::vector<std::shared_ptr<ITestElement>>& roots);

  private:
    std::vector<std::weak_ptr<ITestElement>> mRoots;  ///< the elements own the state
};

}  // namespace vorex

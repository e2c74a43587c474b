#include "foundation/sequence_state.h"

#include <utility>

namespace vorex {

void SequenceState::Reset() {
    auto roots = std::move(mRoots);
    *this = {};
    mRoots = std::move(roots);
}

std::vector<std::shared_ptr<ITestElement>> SequenceState::Roots() const {
    std::vector<std::shared_ptr<ITestElement>> roots;
    for (const auto& root : mRoots)
        if (auto element = root.lock()) roots.push_back(std::move(element));
    return roots;
}

void SequenceState::SetRoots(const std::vector<std::shared_ptr<ITestElement>>& roots) {
    mRoots.assign(roots.begin(), roots.end());
}

}  // namespace vorex

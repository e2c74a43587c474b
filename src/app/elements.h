#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "execution/test_mqsa.h"
#include "foundation/host_contract.h"

// Traversal of the elements of a file.

namespace vorex {

/// Visits elements and all elements below them, each group before its children.
void ForEachElement(const std::vector<std::shared_ptr<ITestElement>>& elements,
                    const std::function<void(const std::shared_ptr<ITestElement>&)>& visit);

std::vector<std::shared_ptr<CTestMQSA>> SurveysOf(const std::vector<std::shared_ptr<ITestElement>>& elements);

/// Gives each group the combined status of its children.
void RollUpGroups(const std::vector<std::shared_ptr<ITestElement>>& elements,
                  const ISelectedStandards* selected);

/// True when an element that counts has failed. A group that was never run has no result of its own: its
/// children decide.
bool AnyFailed(const std::vector<std::shared_ptr<ITestElement>>& elements);

}  // namespace vorex

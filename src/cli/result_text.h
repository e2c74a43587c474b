#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "foundation/host_contract.h"

namespace vorex {

/// Options of `show`.
struct ShownFile {
    std::string name;
    std::vector<std::shared_ptr<ITestElement>> roots;
    std::shared_ptr<ISelectedStandards> selected;
    std::span<const MtiEntry> instruments;
    bool superseded = false;  ///< includes the readings that a redo replaced
};

/// The tree of a file with its statuses, and for each test the table of its exposures, for a person: at most
/// 100 columns wide, a failed value marked in words and, with colour, in red.
std::string ResultText(const ShownFile& file, bool colour);

/// An element: number, test, name, and status in words with its note, which is below when the line is too
/// short for it.
std::string ElementLines(const ITestElement& element, int depth, bool colour);

/// Title of the test that an element performs, or of a group.
std::string TestTitle(const ITestElement& element);

/// Status in words for a person; "not tested" without a result.
std::string StatusWords(const ITestElement& element);

}  // namespace vorex

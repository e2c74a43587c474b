#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vorex {

/// A recorded answer of an instrument or the clock: the operation, the number of the call, and the answer as
/// texts. A call with the ordinary answer has no note.
struct RunNote {
    std::string operation;
    int64_t call = 0;  ///< from 1, counted over the whole run
    std::vector<std::string> values;
    bool operator==(const RunNote&) const = default;
};

}  // namespace vorex

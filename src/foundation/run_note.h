#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vorex {

/// What an instrument, or the clock, once answered: the operation, which call of it this was, and the answer
/// in texts. Calls that answered the ordinary leave no note.
struct RunNote {
    std::string operation;
    int64_t call = 0;  ///< from 1, counted over the whole run
    std::vector<std::string> values;
    bool operator==(const RunNote&) const = default;
};

}  // namespace vorex

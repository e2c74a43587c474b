#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vorex {

/// The number of a limit at a tube voltage.
struct VoltagePoint {
    double kv = 0;
    double value = 0;
};

/// A side of a limit: a number, or numbers by tube voltage; not set if it has neither.
struct StandardSide {
    std::optional<double> value;
    std::vector<VoltagePoint> byVoltage;  ///< rising; a line between two points, nothing beyond them
    std::string expression;               ///< as in an element file; "Y" when the file names none

    bool IsSet() const { return value || !byVoltage.empty(); }
};

/// A limit and its source.
struct StandardLimit {
    std::vector<int32_t> tests;
    std::string key;
    std::string unit;  ///< of the numbers
    StandardSide low;
    StandardSide high;
    std::string readings;  ///< unit in which the instrument must read exposures; empty for any
    std::string authority;
    std::string clause;
    std::string note;
    int32_t line = 0;  ///< of the file

    bool IsFor(int32_t testId) const;
};

struct StandardFile {
    std::string file;
    std::string name;
    std::string version;
    std::string about;
    std::vector<StandardLimit> limits;

    bool HasTest(int32_t testId) const;
};

/// Why no element of a test can be judged by a limit; empty when one can.
using LimitCheck = std::function<std::string(int32_t testId, const StandardLimit& limit)>;

/// Raises FileError that names the file and the limit. The check is called for each test of each limit.
StandardFile ParseStandard(std::string_view text, std::string_view fileName, const LimitCheck& check);
StandardFile ReadStandard(const std::filesystem::path& path, const LimitCheck& check);

}  // namespace vorex

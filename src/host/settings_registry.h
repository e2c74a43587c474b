#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "foundation/host_contract.h"

namespace vorex {

/// Machine-wide settings from an INI file that is only read. The name of a section is its path:
///
///     [Software\Brenlo\vorex\ZRD47500]
///     SleepTimeOut=10
///
/// Paths and names ignore case. ";" and "#" begin a comment line.
class SettingsRegistry final : public ISettingsRegistry {
  public:
    /// A missing file is an empty store. A line that is neither a section nor a value is ignored and reported
    /// to `diagnose`.
    explicit SettingsRegistry(const std::filesystem::path& file,
                              const std::function<void(std::string_view)>& diagnose = {});

    int32_t ValueCount(std::string_view path) const override;
    /// Values are texts.
    TaggedValue ReadValue(std::string_view path, std::string_view name) const override;

    /// "," or ".", from the value "DecimalSign" of the host's key; "." without one.
    char DecimalSign() const;

  private:
    using Values = std::map<std::string, std::string>;

    std::map<std::string, Values> mSections;
};

/// The user's settings file: VOREX_SETTINGS, or vorex/settings.ini in the folder for configurations. Empty
/// when that folder is not known.
std::filesystem::path SettingsFile();

}  // namespace vorex

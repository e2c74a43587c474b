#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "foundation/host_contract.h"

namespace vorex {

/// Machine-wide settings from an INI file that is only read. A section is named as the path it stands for:
///
///     [Software\Brenlo\vorex\ZRD47500]
///     SleepTimeOut=10
///
/// Paths and names do not depend on the case of letters. ";" and "#" begin a line of comment.
class SettingsRegistry final : public ISettingsRegistry {
  public:
    /// A missing file is an empty store. A line that is neither a section nor a value is passed over, with a
    /// word to `diagnose`.
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

/// Where the settings of this user are: VOREX_SETTINGS, or vorex/settings.ini in the folder for
/// configurations. Empty when nothing says where that is.
std::filesystem::path SettingsFile();

}  // namespace vorex

#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/host_contract.h"

namespace vorex {

/// Texts of one language. English is built in: it is the default after "::" of each key.
class TextService final : public ITextService {
  public:
    /// Reads CODE.json from the first of the folders that has it: an object of text key and text. Raises
    /// FileError for an unknown language, naming the known ones, and for a table that cannot be read.
    static std::shared_ptr<TextService> ForLanguage(std::string_view code,
                                                    std::span<const std::filesystem::path> folders);

    /// The section is ignored: all texts are this plug-in's.
    std::string Translate(std::string_view section, std::string_view key, TextArguments args) const override;
    /// Always empty: service records hold their own text.
    std::string ServiceRecordText(int32_t id, bool flag) const override;

  private:
    std::map<std::string, std::string, std::less<>> mTexts;
};

/// The language that the user has set in the system ("de_DE.UTF-8" is "de");
/// English if the folders have no table for it.
std::string SystemLanguage(std::span<const std::filesystem::path> folders);

/// The codes of the available languages, in alphabetical order.
std::vector<std::string> Languages(std::span<const std::filesystem::path> folders);

}  // namespace vorex

#pragma once

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "files/element_file.h"
#include "files/standards_library.h"
#include "foundation/host_contract.h"

namespace vorex {

/// The standards of the folders and the user's own, introduced to the library as its plug-in. What cannot be
/// read is named on `err`. [library installed]
std::shared_ptr<StandardsLibrary> OpenStandards(std::vector<std::filesystem::path> folders,
                                                std::ostream& err);

/// Puts a standard, NAME or NAME:VERSION, into the elements that it has limits for, in place of what they
/// have of it; with IDs, into these elements and those below them only. Limits without a place are named on
/// `err`. Raises std::runtime_error when there is no such standard or it fits no element.
void AddStandard(ElementFile& file, StandardsLibrary& library, const std::string& wanted,
                 std::span<const int32_t> ids, std::ostream& err);

/// Chooses the standards that judge. Raises std::runtime_error for one that no element has.
void SelectStandards(ElementFile& file, std::span<const std::string> wanted);

}  // namespace vorex

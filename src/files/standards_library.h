#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "files/standard_file.h"
#include "foundation/host_contract.h"

namespace vorex {

/// Folder of the user's own standards: VOREX_STANDARDS, or "standards" next to the settings file if it
/// exists; empty otherwise.
std::filesystem::path UserStandardsFolder();

/// Standards from files, supplied in the role of the sister library's plug-in object.
class StandardsLibrary final : public IZRD47500PlugIn {
  public:
    /// A limit for one element, with plain numbers; nothing when the element cannot be judged by it.
    using Fit = std::function<std::vector<StandardLimit>(const StandardLimit& limit)>;

    /// Fits a limit to an element.
    using ElementFit =
        std::function<std::vector<StandardLimit>(const StandardLimit& limit, const ITestElement& element)>;

    /// Reads the standards of the folders, first to last. A file with a fault, a second file of the same
    /// standard, and a folder that cannot be read are skipped and reported to `diagnose`.
    StandardsLibrary(std::span<const std::filesystem::path> folders, const LimitCheck& check,
                     const std::function<void(const std::string&)>& diagnose, ElementFit fit = {});

    /// Sorted by name and version.
    std::span<const StandardFile> Standards() const { return mStandards; }
    /// Null when there is none.
    const StandardFile* Find(std::string_view name, std::string_view version) const;

    /// A standard with the limits of a test, fitted to one element; of several for a key, the first that
    /// fits.
    static std::shared_ptr<IStandard> Build(const StandardFile& file, int32_t testId, const Fit& fit);

    std::string PlugInID() const override;
    /// Without an element to fit to, a limit that depends on one is left out.
    std::shared_ptr<IStandard> LoadStandard(int32_t testId, std::string& alphaName,
                                            std::string& completeName) override;
    std::shared_ptr<IStandard> LoadStandardFor(const ITestElement& element, std::string& alphaName,
                                               std::string& completeName) override;

  private:
    void ReadFolder(const std::filesystem::path& folder, const LimitCheck& check,
                    const std::function<void(const std::string&)>& diagnose);

    ElementFit mFit;
    std::vector<StandardFile> mStandards;
};

}  // namespace vorex

#include "files/standards_library.h"

#include <algorithm>
#include <set>
#include <system_error>
#include <tuple>
#include <utility>

#include "foundation/file_error.h"
#include "foundation/number_text.h"
#include "foundation/vocabulary.h"
#include "host/settings_registry.h"
#include "host/standards.h"
#include "system/system.h"

namespace vorex {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kSuffix = ".json";

/// The possible standard files of a folder, in order of their names.
std::vector<fs::path> FilesOf(const fs::path& folder, std::error_code& error) {
    std::vector<fs::path> files;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
        if (at->path().extension() == kSuffix) files.push_back(at->path());
    std::sort(files.begin(), files.end());
    return files;
}

std::shared_ptr<IExpectedResult> MakeLimit(const StandardLimit& limit) {
    const auto number = [](const StandardSide& side) {
        return side.value ? PlainText(*side.value) : std::string();
    };
    auto made = std::make_shared<ExpectedResult>();
    made->Setup(limit.key, limit.unit, number(limit.high), number(limit.low));
    if (limit.high.value) made->Expression(kHighSide, limit.high.expression);
    if (limit.low.value) made->Expression(kLowSide, limit.low.expression);
    return made;
}

/// The limit itself; nothing for a limit that depends on the element.
std::vector<StandardLimit> PlainLimit(const StandardLimit& limit) {
    const bool plain = limit.low.byVoltage.empty() && limit.high.byVoltage.empty() && limit.readings.empty();
    return plain ? std::vector{limit} : std::vector<StandardLimit>();
}

}  // namespace

fs::path UserStandardsFolder() {
    if (const std::string named = os::Environment("VOREX_STANDARDS"); !named.empty()) return named;
    const fs::path settings = SettingsFile();
    const fs::path ownFolder = settings.parent_path() / "standards";
    std::error_code error;
    return !settings.empty() && fs::exists(ownFolder, error) ? ownFolder : fs::path();
}

StandardsLibrary::StandardsLibrary(std::span<const fs::path> folders, const LimitCheck& check,
                                   const std::function<void(const std::string&)>& diagnose, ElementFit fit)
    : mFit(std::move(fit)) {
    for (const fs::path& folder : folders) ReadFolder(folder, check, diagnose);
    std::sort(mStandards.begin(), mStandards.end(), [](const StandardFile& a, const StandardFile& b) {
        return std::tie(a.name, a.version) < std::tie(b.name, b.version);
    });
}

void StandardsLibrary::ReadFolder(const fs::path& folder, const LimitCheck& check,
                                  const std::function<void(const std::string&)>& diagnose) {
    std::error_code error;
    const std::vector<fs::path> files = FilesOf(folder, error);
    if (error) diagnose(folder.string() + ": the folder of standards cannot be read: " + error.message());
    for (const fs::path& path : files) {
        try {
            StandardFile file = ReadStandard(path, check);
            if (const StandardFile* first = Find(file.name, file.version))
                throw FileError(
                    {path.string(), 0, {}},
                    "\"" + file.name + ":" + file.version + "\" is in " + first->file + " already",
                    "another name or version");
            mStandards.push_back(std::move(file));
        } catch (const FileError& fault) {
            diagnose(std::string(fault.what()) + " (the file is ignored)");
        }
    }
}

const StandardFile* StandardsLibrary::Find(std::string_view name, std::string_view version) const {
    const auto at = std::find_if(mStandards.begin(), mStandards.end(), [&](const StandardFile& file) {
        return file.name == name && file.version == version;
    });
    return at == mStandards.end() ? nullptr : &*at;
}

std::string StandardsLibrary::PlugInID() const {
    return std::string(kPlugInId);
}

std::shared_ptr<IStandard> StandardsLibrary::LoadStandard(int32_t testId, std::string& alphaName,
                                                          std::string& completeName) {
    const StandardFile* const file = Find(alphaName, completeName);
    return file != nullptr && file->HasTest(testId) ? Build(*file, testId, PlainLimit) : nullptr;
}

std::shared_ptr<IStandard> StandardsLibrary::LoadStandardFor(const ITestElement& element,
                                                             std::string& alphaName,
                                                             std::string& completeName) {
    const StandardFile* const file = Find(alphaName, completeName);
    if (!mFit || file == nullptr || !file->HasTest(element.TestID()))
        return LoadStandard(element.TestID(), alphaName, completeName);
    return Build(*file, element.TestID(), [&](const StandardLimit& limit) { return mFit(limit, element); });
}

std::shared_ptr<IStandard> StandardsLibrary::Build(const StandardFile& file, int32_t testId, const Fit& fit) {
    auto standard = std::make_shared<Standard>(file.name, file.version);
    std::set<std::string> taken;
    for (const StandardLimit& limit : file.limits) {
        if (!limit.IsFor(testId)) continue;
        for (const StandardLimit& fitted : fit(limit))
            if (taken.insert(fitted.key).second) standard->AddExpectedResult(MakeLimit(fitted));
    }
    return standard;
}

}  // namespace vorex

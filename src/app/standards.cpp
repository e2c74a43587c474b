#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>
#include <utility>

#include "app/limit_fit.h"
#include "app/open_file.h"
#include "config/config_common.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "host/standards.h"
#include "results/limit_data.h"

// Puts standards into a file, and chooses the ones that judge.

namespace vorex {

namespace {

using Elements = std::vector<std::shared_ptr<ITestElement>>;

std::string FullName(const StandardName& standard) {
    return standard.name + ":" + standard.version;
}

/// The standard meant by NAME or NAME:VERSION; raises an error that lists the known ones.
StandardName FindStandard(const std::string& wanted, const std::vector<StandardName>& known,
                          const std::string& where) {
    std::vector<StandardName> found;
    for (const StandardName& standard : known) {
        if (FullName(standard) == wanted) return standard;
        if (standard.name == wanted) found.push_back(standard);
    }
    if (found.size() == 1) return found.front();
    std::string list;
    for (const StandardName& standard : found.empty() ? known : found)
        list += (list.empty() ? "\"" : ", \"") + FullName(standard) + "\"";
    if (!found.empty())
        throw std::runtime_error("\"" + wanted + "\" has several versions " + where + "; expected one of " +
                                 list);
    throw std::runtime_error("there is no standard \"" + wanted + "\" " + where + "; expected " +
                             (list.empty() ? "a standard, but there is none" : "one of " + list));
}

/// True when a standard has a limit for a key, with or without an exposure number after it.
bool HasLimit(const IStandard& standard, std::string_view limitKey) {
    const bool numbered = IsMaxExposureRate(limitKey);
    return std::any_of(standard.Results().begin(), standard.Results().end(), [&](const auto& limit) {
        return numbered ? limit->Key().starts_with(limitKey) : limit->Key() == limitKey;
    });
}

/// Puts one standard into elements.
class Addition {
  public:
    Addition(StandardsLibrary& library, StandardName name, std::span<const int32_t> ids,
             IAppListener& listener)
        : mLibrary(library), mName(std::move(name)), mIds(ids.begin(), ids.end()), mListener(listener) {}

    void AddTo(const Elements& elements, bool wanted) {
        for (const auto& element : elements) {
            const bool named = mIds.contains(element->ID());
            if (const auto group = std::dynamic_pointer_cast<ITestContainer>(element))
                AddTo(group->NewEnum(), wanted || named);
            else if (wanted || named || mIds.empty())
                AddToTest(*element);
        }
    }

    void RaiseUnlessDone() const {
        if (mAdded) return;
        std::set<int32_t> tests;
        for (const StandardLimit& limit : mLibrary.Find(mName.name, mName.version)->limits)
            tests.insert(limit.tests.begin(), limit.tests.end());
        std::string list;
        for (int32_t test : tests) list += (list.empty() ? "" : ", ") + PlainText(test);
        throw std::runtime_error("\"" + FullName(mName) + "\" fits no element; it has limits for test " +
                                 list);
    }

  private:
    void AddToTest(ITestElement& element) {
        const StandardFile& file = *mLibrary.Find(mName.name, mName.version);
        const auto config = std::dynamic_pointer_cast<CConfigCommon>(element.Configuration());
        const auto limits = std::dynamic_pointer_cast<CLimitData>(element.Limits());
        if (!config || !limits || !file.HasTest(element.TestID())) return;
        if (const auto standards = limits->Standards()) standards->Remove(mName.name, mName.version);
        // A key may have limits in several units: one that fits is enough.
        std::multimap<std::string, std::string> leftOut;
        const auto standard =
            StandardsLibrary::Build(file, element.TestID(), [&](const StandardLimit& limit) {
                return FitLimit(limit, *config,
                                [&](const std::string& words) { leftOut.emplace(limit.key, words); });
            });
        for (const auto& [key, words] : leftOut)
            if (!HasLimit(*standard, key)) mListener.Faulted({FaultSource::kStandard, element.ID(), words});
        if (standard->Results().empty()) return;
        limits->AddStandard(standard);
        mAdded = true;
    }

    StandardsLibrary& mLibrary;
    StandardName mName;
    std::set<int32_t> mIds;
    IAppListener& mListener;
    bool mAdded = false;
};

}  // namespace

AddedStandard OpenFile::AddStandard(StandardsLibrary& library, const std::string& wanted,
                                    std::span<const int32_t> ids, IAppListener& listener) {
    std::vector<StandardName> known;
    for (const StandardFile& standard : library.Standards())
        known.push_back({standard.name, standard.version});
    const StandardName name = FindStandard(wanted, known, "among the standards (see vorex standards)");
    for (int32_t id : ids)
        if (!mFile->FindElement(id))
            throw std::runtime_error("there is no element " + PlainText(id) + " in the file");
    Addition addition(library, name, ids, listener);
    addition.AddTo(Elements(), false);
    addition.RaiseUnlessDone();
    const auto selected = mFile->Selected();
    const auto judging = selected->Standards();
    return {name, std::find(judging.begin(), judging.end(), name) != judging.end()};
}

void OpenFile::SelectStandards(std::span<const std::string> wanted) {
    mFile->Select(std::nullopt);
    const auto all = mFile->Selected();
    const std::vector<StandardName> known(all->Standards().begin(), all->Standards().end());
    std::vector<StandardName> chosen;
    for (const std::string& name : wanted) {
        StandardName standard = FindStandard(name, known, "in the file");
        if (std::find(chosen.begin(), chosen.end(), standard) == chosen.end())
            chosen.push_back(std::move(standard));
    }
    mFile->Select(std::move(chosen));
}

}  // namespace vorex

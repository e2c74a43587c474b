#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "files/element_document.h"
#include "files/element_output.h"
#include "foundation/host_contract.h"
#include "foundation/host_error.h"
#include "foundation/host_services.h"
#include "foundation/utilities.h"

namespace vorex::test {

/// Objects that pass between library and host, so that a test sees which of them outlive it.
class LiveObjects {
  public:
    template <typename Object>
    std::shared_ptr<Object> Watch(std::string_view what, std::shared_ptr<Object> object) {
        if (object) mObjects.emplace_back(what, object);
        return object;
    }
    /// Watches whatever the services will make.
    void WatchServices(HostServices& services) {
        WatchMaker("helper of an element", services.createElementBase);
        WatchMaker("helper of a group", services.createContainerBase);
        WatchMaker("standards", services.createStandards);
        WatchMaker("standard", services.createStandard);
        WatchMaker("limit", services.createExpectedResult);
        WatchMaker("service record", services.createServiceRecord);
        WatchMaker("settings of the guide", services.createTestGuideConfig);
        WatchMaker("detector service", services.createDetectorService);
        WatchMaker("detector link", services.createDetectorLink);
    }
    /// What is still alive, a name each, in the order in which the objects came.
    std::vector<std::string> Alive() const {
        std::vector<std::string> names;
        for (const auto& [what, object] : mObjects)
            if (!object.expired()) names.push_back(what);
        return names;
    }
    std::size_t Count() const { return mObjects.size(); }

  private:
    template <typename Object, typename... Args>
    void WatchMaker(std::string_view what, std::function<std::shared_ptr<Object>(Args...)>& make) {
        if (!make) return;
        make = [this, what, inner = std::move(make)](Args... args) { return Watch(what, inner(args...)); };
    }

    std::vector<std::pair<std::string, std::weak_ptr<void>>> mObjects;
};

/// Settings of the machine, by path and name; changed while a test runs.
class FakeSettings : public ISettingsRegistry {
  public:
    std::map<std::pair<std::string, std::string>, TaggedValue> values;

    void Set(std::string_view name, TaggedValue value) {
        values[{std::string(setting::kPlugInPath), std::string(name)}] = std::move(value);
    }
    int32_t ValueCount(std::string_view path) const override {
        int32_t count = 0;
        for (const auto& [place, value] : values) count += place.first == path ? 1 : 0;
        return count;
    }
    TaggedValue ReadValue(std::string_view path, std::string_view name) const override {
        const auto found = values.find({std::string(path), std::string(name)});
        return found == values.end() ? TaggedValue() : found->second;
    }
};

/// A language of a few words; the defaults for the rest.
class FakeTexts : public ITextService {
  public:
    std::map<std::string, std::string, std::less<>> words;
    mutable int count = 0;  ///< of the texts that were asked for

    std::string Translate(std::string_view section, std::string_view key, TextArguments args) const override {
        ++count;
        if (section != kPlugInId) return "wrong section";
        const auto found = words.find(key);
        return found == words.end() ? DefaultText(key, args) : FillPlaceholders(found->second, args);
    }
    std::string ServiceRecordText(int32_t, bool) const override { return {}; }
};

/// A document in which no element can be made.
class FullDocument : public IXmlDocument {
  public:
    std::shared_ptr<IXmlElement> CreateElement(std::string_view) override { return nullptr; }
};

/// What a call raises to the host: code, source and severity; a call that raises nothing gives 0.
using HostFault = std::tuple<uint32_t, std::string, int32_t>;
template <typename Call>
HostFault FaultOf(Call&& call) {
    try {
        call();
    } catch (const HostError& error) {
        return {error.Code(), error.Source(), error.Severity()};
    }
    return {};
}

/// The element of a text, and the document that keeps it.
class XmlText {
  public:
    explicit XmlText(std::string_view xml)
        : mSource(XmlSource::FromText(xml, "test")),
          mRoot(mSource->Element(mSource->Document().document_element())) {}
    const std::shared_ptr<IXmlElement>& Root() const { return mRoot; }

  private:
    std::unique_ptr<XmlSource> mSource;
    std::shared_ptr<IXmlElement> mRoot;
};

/// Children of an element as "name=text" joined by ";".
inline std::string Listed(const IXmlElement& element) {
    std::string list;
    for (const auto& child : element.Children())
        list += (list.empty() ? "" : ";") + std::string(child->Name()) + "=" + std::string(child->Text());
    return list;
}

}  // namespace vorex::test

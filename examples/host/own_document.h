#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/host_contract.h"
#include "foundation/number_text.h"
#include "foundation/vocabulary.h"

/// A node of a tree in memory.
class OwnNode final : public vorex::IXmlElement {
  public:
    explicit OwnNode(std::string_view name) : mName(name) {}
    std::string_view Name() const override { return mName; }
    void Name(std::string_view name) override { mName = name; }
    std::string_view GetAttribute(std::string_view name) const override {
        const auto found = mAttributes.find(name);
        return found == mAttributes.end() ? std::string_view() : found->second;
    }
    void SetAttribute(std::string_view name, std::string_view value) override {
        mAttributes[std::string(name)] = value;
    }
    vorex::XmlElements Children() const override { return mChildren; }
    std::shared_ptr<IXmlElement> AddChild(const std::shared_ptr<IXmlElement>& child) override {
        mChildren.push_back(child);
        return child;
    }
    vorex::XmlElements FindChild(std::string_view name) const override {
        vorex::XmlElements found;
        for (const auto& child : mChildren)
            if (child->Name() == name) found.push_back(child);
        return found;
    }
    std::string_view Text() const override { return mText; }
    void Text(std::string_view text) override { mText = text; }
    std::shared_ptr<IXmlElement> AddValue(std::string_view name, std::string_view value) override {
        auto child = std::make_shared<OwnNode>(name);
        child->Text(value);
        return AddChild(child);
    }
    std::string ReadValue(std::string_view name, std::string_view defaultValue) const override {
        const auto found = FindChild(name);
        return std::string(found.empty() ? defaultValue : found.front()->Text());
    }

  private:
    std::string mName;
    std::string mText;
    std::map<std::string, std::string, std::less<>> mAttributes;
    vorex::XmlElements mChildren;
};

class OwnDocument final : public vorex::IXmlDocument {
  public:
    std::shared_ptr<vorex::IXmlElement> CreateElement(std::string_view name) override {
        return std::make_shared<OwnNode>(name);
    }
};

/// Stored form of values and statuses: this host keeps the type next to the text.
class OwnCodec final : public vorex::IMeasurementCodec {
  public:
    std::shared_ptr<vorex::IXmlElement> WriteStatus(const std::shared_ptr<vorex::IXmlDocument>& owner,
                                                    int32_t status, int32_t extra) override {
        auto node = owner->CreateElement(vorex::tag::kStatus);
        node->Text(vorex::PlainText(status));
        if (extra != 0) node->SetAttribute(vorex::tag::kExtra, vorex::PlainText(extra));
        return node;
    }
    void ReadStatus(const vorex::IXmlElement& node, int32_t& status, int32_t& extra) override {
        status = static_cast<int32_t>(vorex::ReadNumber(node.Text()));
        extra = static_cast<int32_t>(vorex::ReadNumber(node.GetAttribute(vorex::tag::kExtra)));
    }
    void ReadValue(const vorex::IXmlElement& node, vorex::TaggedValue& value, int32_t& type) override {
        type = static_cast<int32_t>(vorex::ReadNumber(node.GetAttribute(vorex::tag::kType)));
        value = std::string(node.Text());
    }
    std::shared_ptr<vorex::IXmlElement> WriteValue(const std::shared_ptr<vorex::IXmlDocument>& owner,
                                                   const vorex::TaggedValue& value, int32_t type) override {
        auto node = owner->CreateElement(vorex::tag::kValue);
        node->SetAttribute(vorex::tag::kType, vorex::PlainText(type));
        node->Text(vorex::TextOf(value));
        return node;
    }
};

class OwnFormatter final : public vorex::IValueFormatter {
  public:
    std::string ToText(const vorex::TaggedValue& value) const override { return vorex::TextOf(value); }
};

/// This host has no settings of the machine: everything has its default.
class NoSettings final : public vorex::ISettingsRegistry {
  public:
    int32_t ValueCount(std::string_view) const override { return 0; }
    vorex::TaggedValue ReadValue(std::string_view, std::string_view) const override { return {}; }
};

#include "host/measurement_codec.h"

#include "foundation/number_text.h"
#include "foundation/vocabulary.h"

namespace vorex {

namespace {

constexpr int32_t kNumberType = 1;

}  // namespace

std::shared_ptr<IXmlElement> MeasurementCodec::WriteStatus(const std::shared_ptr<IXmlDocument>& owner,
                                                           int32_t status, int32_t extra) {
    auto element = owner->CreateElement(tag::kStatus);
    if (!element) return nullptr;
    element->Text(PlainText(status));
    if (extra != 0) element->SetAttribute(tag::kExtra, PlainText(extra));
    return element;
}

void MeasurementCodec::ReadStatus(const IXmlElement& element, int32_t& status, int32_t& extra) {
    status = ReadInteger(element.Text());
    const std::string_view text = element.GetAttribute(tag::kExtra);
    extra = text.empty() ? 0 : ReadInteger(text);
}

void MeasurementCodec::ReadValue(const IXmlElement& element, TaggedValue& value, int32_t& type) {
    type = ReadInteger(element.GetAttribute(tag::kType));
    if (type == kNumberType)
        value = ReadNumber(element.Text());
    else
        value = std::string(element.Text());
}

std::shared_ptr<IXmlElement> MeasurementCodec::WriteValue(const std::shared_ptr<IXmlDocument>& owner,
                                                          const TaggedValue& value, int32_t type) {
    auto element = owner->CreateElement(tag::kValue);
    if (!element) return nullptr;
    element->SetAttribute(tag::kType, PlainText(type));
    element->Text(TextOf(value));
    return element;
}

std::string ValueFormatter::ToText(const TaggedValue& value) const {
    return TextOf(value);
}

}  // namespace vorex

#include "host/service_record.h"

#include "foundation/vocabulary.h"

namespace vorex {

void ServiceRecord::Initialize(std::string_view code, std::string_view list) {
    mCode = code;
    mText = list;
}

void ServiceRecord::Load(const std::shared_ptr<IXmlElement>& element) {
    Initialize(element->GetAttribute(tag::kCode), element->Text());
}

std::shared_ptr<IXmlElement> ServiceRecord::Save(const std::shared_ptr<IXmlDocument>& owner) {
    if (mCode.empty()) return nullptr;
    auto element = owner->CreateElement(tag::kServiceRecord);
    if (!element) return nullptr;
    element->SetAttribute(tag::kCode, mCode);
    element->Text(mText);
    return element;
}

}  // namespace vorex

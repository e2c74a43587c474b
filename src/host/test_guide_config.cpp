#include "host/test_guide_config.h"

#include "foundation/number_text.h"
#include "foundation/vocabulary.h"

namespace vorex {

std::shared_ptr<ITestGuideConfig> TestGuideConfig::Clone() const {
    return std::make_shared<TestGuideConfig>(*this);
}

void TestGuideConfig::Load(const std::shared_ptr<IXmlElement>& element) {
    mButtons = ReadInteger(element->ReadValue(tag::kButtons, PlainText(mButtons)));
}

std::shared_ptr<IXmlElement> TestGuideConfig::Save(const std::shared_ptr<IXmlDocument>& owner) {
    auto element = owner->CreateElement(tag::kTestGuideSettings);
    if (element) element->AddValue(tag::kButtons, PlainText(mButtons));
    return element;
}

}  // namespace vorex

#pragma once

#include "foundation/host_contract.h"

namespace vorex {

/// <TestGuideSettings><Buttons>3</Buttons></TestGuideSettings>; a new object has both buttons.
class TestGuideConfig final : public ITestGuideConfig {
  public:
    int32_t Buttons() const override { return mButtons; }
    void Buttons(int32_t bits) override { mButtons = bits; }
    std::shared_ptr<ITestGuideConfig> Clone() const override;
    void Load(const std::shared_ptr<IXmlElement>& element) override;
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) override;

  private:
    int32_t mButtons = kSkipButtonBit | kNaButtonBit;
};

}  // namespace vorex

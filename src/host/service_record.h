#pragma once

#include <string>

#include "foundation/host_contract.h"

namespace vorex {

/// <ServiceRecord Code="F">text</ServiceRecord>; a record without a code is not saved.
class ServiceRecord final : public IServiceRecord {
  public:
    void Initialize(std::string_view code, std::string_view list) override;
    std::string Code() const override { return mCode; }
    std::string Text() const override { return mText; }
    void Load(const std::shared_ptr<IXmlElement>& element) override;
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) override;

  private:
    std::string mCode;
    std::string mText;
};

}  // namespace vorex

#pragma once

#include "foundation/host_contract.h"

namespace vorex {

/// Values as <Value Type="1">80.1</Value>, statuses as <Status>1</Status>, with the attribute "Extra" when
/// the companion value is not 0. Numbers have a decimal point in every country.
class MeasurementCodec final : public IMeasurementCodec {
  public:
    std::shared_ptr<IXmlElement> WriteStatus(const std::shared_ptr<IXmlDocument>& owner, int32_t status,
                                             int32_t extra) override;
    void ReadStatus(const IXmlElement& element, int32_t& status, int32_t& extra) override;
    /// A value of type 1 becomes a double, any other a text.
    void ReadValue(const IXmlElement& element, TaggedValue& value, int32_t& type) override;
    std::shared_ptr<IXmlElement> WriteValue(const std::shared_ptr<IXmlDocument>& owner,
                                            const TaggedValue& value, int32_t type) override;
};

class ValueFormatter final : public IValueFormatter {
  public:
    std::string ToText(const TaggedValue& value) const override;
};

}  // namespace vorex

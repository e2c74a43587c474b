#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/host_contract.h"
#include "foundation/vocabulary.h"

namespace vorex {

/// A sampled waveform of an exposure. Operations are declared in slot order.
class IWaveform {
  public:
    virtual ~IWaveform() = default;
    /// Sampling interval; 1 when it was never set or is not above 0.
    virtual float Resolution() const = 0;
    virtual void Resolution(float interval) = 0;
    virtual bool IncludeInReport() const = 0;
    virtual void IncludeInReport(bool include) = 0;
    virtual int32_t ValueCount() const = 0;
    virtual const std::vector<float>& Values() const = 0;
    /// Takes samples joined by ",".
    virtual void Initialize(std::string_view data) = 0;
    virtual void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) = 0;
    virtual std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) = 0;
    /// A plot; nothing when the waveform is kept out of reports or has no samples.
    virtual void PrintReport(IReportDocument* report) const = 0;
    virtual void WaveformType(uint8_t type) = 0;
};

class CWaveform : public IWaveform {
  public:
    float Resolution() const override { return mResolution > 0 ? mResolution : 1.0F; }
    void Resolution(float interval) override { mResolution = interval; }
    bool IncludeInReport() const override { return mIncludeInReport; }
    void IncludeInReport(bool include) override { mIncludeInReport = include; }
    int32_t ValueCount() const override { return mValueCount; }
    const std::vector<float>& Values() const override { return mValues; }
    void Initialize(std::string_view data) override;
    /// Fewer than two samples leave the object empty.
    void Load(const std::shared_ptr<IXmlElement>& element, IProgressLog* log) override;
    /// Raises 0x8004A3EC when the element cannot be made.
    std::shared_ptr<IXmlElement> Save(const std::shared_ptr<IXmlDocument>& owner) override;
    void PrintReport(IReportDocument* report) const override;
    void WaveformType(uint8_t type) override { mType = type; }

  private:
    void TakeSamples(std::string_view data);
    std::string JoinedSamples() const;

    int32_t mValueCount = 0;
    std::vector<float> mValues;
    bool mIncludeInReport = false;
    float mResolution = 0;
    uint8_t mType = kKvWaveform;
};

}  // namespace vorex

#pragma once

#include <cstdint>
#include <memory>

#include "foundation/host_contract.h"
#include "results/exposure_store.h"

namespace vorex {

/// Saves measurements, kV and mA waveforms, and superseded readings, in this order. `columns` is a row with
/// all columns of the test.
void SaveExposures(const ExposureStore& exposures, const MeasurementRow& columns, IXmlElement& to,
                   const std::shared_ptr<IXmlDocument>& owner);

/// Rebuilds the exposures of a result from the flat list of its elements, taken in their order.
class ExposureLoader {
  public:
    ExposureLoader(ExposureStore& exposures, int32_t testId, IProgressLog* log)
        : mExposures(exposures), mTestId(testId), mLog(log) {}

    /// False for an element that is no part of an exposure.
    bool Take(const std::shared_ptr<IXmlElement>& element);

  private:
    void LoadMeasurement(const std::shared_ptr<IXmlElement>& element);
    void LoadWaveform(const std::shared_ptr<IXmlElement>& element, uint8_t type, int32_t& next);
    void LoadSuperseded(const std::shared_ptr<IXmlElement>& element);
    void LoadCell(CMeasurement& item, const std::shared_ptr<IXmlElement>& element,
                  const CMeasurement* above) const;

    ExposureStore& mExposures;
    int32_t mTestId;
    IProgressLog* mLog;
    int32_t mNextKvWaveform = 1;  ///< exposure of the next one
    int32_t mNextMaWaveform = 1;
    MeasurementRow mCells;  ///< for the last row; they lie side by side in memory
};

}  // namespace vorex

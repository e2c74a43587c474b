#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "results/measurement.h"
#include "waveforms/waveform.h"

namespace vorex {

/// The measurements of an exposure before its redo. They are kept for information; no verdict uses them.
struct SupersededExposure {
    uint8_t exposure = 0;  ///< from 1
    int32_t order = 0;     ///< 1 for the first readings of the exposure, 2 for the next ones, ...
    std::string time;      ///< when the readings were replaced
    MeasurementRow row;
    std::shared_ptr<CWaveform> kvWaveform;
    std::shared_ptr<CWaveform> maWaveform;
};

/// The exposures of a result: for each a row of measurements, a kV and an mA waveform, and what its redos
/// replaced. The row of an exposure without a reading is empty. Exposures count from 1, their rows from 0.
class ExposureStore {
  public:
    void Clear() { *this = ExposureStore(); }
    /// Adds an exposure with empty waveforms.
    void Add(std::shared_ptr<MeasurementRow> row);
    /// Adds exposures without a reading up to a number; does nothing for a stored one.
    void AddUpTo(uint8_t exposure);
    void Add(SupersededExposure superseded) { mSuperseded.push_back(std::move(superseded)); }

    uint8_t Count() const { return static_cast<uint8_t>(mRows.size()); }
    const std::vector<std::shared_ptr<MeasurementRow>>& Rows() const { return mRows; }
    bool HasReading(std::size_t row) const { return row < mRows.size() && !mRows[row]->empty(); }
    /// Row of the last exposure with a reading; beyond all rows when there is none.
    std::size_t LastReadingIndex() const;
    /// The last row with a reading; null when there is none.
    MeasurementRow* LastReading() const;
    /// The next row with a reading after a row; null when there is none.
    MeasurementRow* NextReading(std::size_t row) const;
    /// Cell of a column, counted from 1; null when there is none.
    CMeasurement* Cell(std::size_t row, uint8_t column) const;

    /// Waveform of an exposure; null when there is no such exposure.
    std::shared_ptr<CWaveform> Waveform(uint8_t type, int32_t exposure) const;
    /// The same; in a redo, that which the redo has brought so far.
    std::shared_ptr<CWaveform> NewestWaveform(uint8_t type, int32_t exposure) const;
    /// Keeps the waveform of a stored exposure. That of a redo waits for the first reading of the redo.
    void Keep(uint8_t type, int32_t exposure, std::shared_ptr<CWaveform> waveform);

    /// Begins to take a stored exposure again: its next reading and waveforms will replace what is stored.
    /// `former` is a copy of its row. Ends an earlier redo.
    void BeginRedo(uint8_t exposure, MeasurementRow former);
    /// The first reading of a redo is here: what it replaces becomes superseded. A redo that was stopped
    /// before its reading leaves the exposure unchanged. False when the exposure is not being redone.
    bool Supersede(uint8_t exposure);
    /// Ends a redo without a reading. True when its exposure has no earlier reading either; it then takes the
    /// new waveforms, which are dropped otherwise.
    bool EndRedo();
    void ForgetRedo() { mRedo.reset(); }
    /// In the order of the redos.
    const std::vector<SupersededExposure>& Superseded() const { return mSuperseded; }

  private:
    using Waveforms = std::vector<std::shared_ptr<CWaveform>>;
    struct Redo {
        SupersededExposure former;
        std::shared_ptr<CWaveform> kvWaveform;  ///< new since the redo began, at first empty
        std::shared_ptr<CWaveform> maWaveform;
    };

    Waveforms& WaveformsOf(uint8_t type) { return type == kMaWaveform ? mMaWaveforms : mKvWaveforms; }
    bool IsRedone(int32_t exposure) const { return mRedo && mRedo->former.exposure == exposure; }

    std::vector<std::shared_ptr<MeasurementRow>> mRows;
    Waveforms mKvWaveforms;
    Waveforms mMaWaveforms;
    std::vector<SupersededExposure> mSuperseded;
    std::optional<Redo> mRedo;
};

}  // namespace vorex

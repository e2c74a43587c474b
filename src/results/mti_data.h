#pragma once

#include <string>

#include "foundation/host_contract.h"

namespace vorex {

/// One measuring instrument that took part in a test.
class CMtiData2 {
  public:
    /// A record without a name still names the detector.
    std::string Name() const;
    void Name(std::string name) { mName = std::move(name); }
    const std::string& SerialNumber() const { return mSerialNumber; }
    void SerialNumber(std::string number) { mSerialNumber = std::move(number); }
    const std::string& CalibrationDate() const { return mCalibrationDate; }
    void CalibrationDate(std::string date) { mCalibrationDate = std::move(date); }

  private:
    std::string mName;
    std::string mSerialNumber;
    std::string mCalibrationDate;
};

/// Enters an instrument in the host's list and returns its number; an entry with the same name and serial
/// number is reused. Returns 0 and enters nothing if the serial number is not a number above 0.
int32_t MergeMti(IMtiList& list, const CMtiData2& record);

}  // namespace vorex

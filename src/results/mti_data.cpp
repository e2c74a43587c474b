#include "results/mti_data.h"

#include <algorithm>

#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"

namespace vorex {

std::string CMtiData2::Name() const {
    return mName.empty() ? Translate(text::kDefaultInstrument) : mName;
}

int32_t MergeMti(IMtiList& list, const CMtiData2& record) {
    const std::string name = record.Name();
    if (name.empty() || !(ReadNumber(record.SerialNumber()) > 0)) return 0;
    int32_t next = 1;
    for (const MtiEntry& entry : list.Entries()) {
        if (entry.name == name && entry.serialNumber == record.SerialNumber()) return entry.number;
        next = std::max(next, entry.number + 1);
    }
    list.Add({next, std::string(kPlugInId), name, record.SerialNumber(), record.CalibrationDate()});
    return next;
}

}  // namespace vorex

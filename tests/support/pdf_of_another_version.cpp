#include "reports/pdf/pdf_module.h"

// A module that writes PDF as some other version of the program would know it: only its version is there.

extern "C" const VorexPdfModule* VorexPdfModuleEntry();

extern "C" const VorexPdfModule* VorexPdfModuleEntry() {
    static constexpr uint32_t version = kVorexPdfVersion + 1;
    return reinterpret_cast<const VorexPdfModule*>(&version);
}

#include "reports/pdf/pdf_module.h"

// A PDF module of another version: it has nothing but the version.

extern "C" const VorexPdfModule* VorexPdfModuleEntry();

extern "C" const VorexPdfModule* VorexPdfModuleEntry() {
    static constexpr uint32_t version = kVorexPdfVersion + 1;
    return reinterpret_cast<const VorexPdfModule*>(&version);
}

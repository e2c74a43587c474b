#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "app/limit_fit.h"
#include "files/standard_file.h"
#include "refusal.h"

/// A standard is refused with one error, without control characters and with the file's name; or each of its
/// limits fits an element or is left out with a message.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace vorex;
    const auto file = fuzz::ReadOrRefused("site.json:", [&] {
        return ParseStandard({reinterpret_cast<const char*>(data), size}, "site.json", LimitFault);
    });
    if (!file) return 0;
    for (const StandardLimit& limit : file->limits)
        for (const int32_t test : limit.tests) {
            CConfigCommon config;
            config.pTestID = test;
            bool told = false;
            const auto fitted = FitLimit(limit, config, [&](const std::string&) { told = true; });
            if (fitted.empty() != told) std::abort();
            for (const StandardLimit& one : fitted)
                if (!one.low.byVoltage.empty() || !one.high.byVoltage.empty()) std::abort();
        }
    return 0;
}

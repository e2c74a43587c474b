#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "app/limit_fit.h"
#include "files/standard_file.h"
#include "foundation/file_error.h"

/// A standard is refused with one error, without control characters and with the file's name; or each of its
/// limits fits an element or is left out with a message.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    try {
        const vorex::StandardFile file =
            vorex::ParseStandard({reinterpret_cast<const char*>(data), size}, "site.json", vorex::LimitFault);
        for (const vorex::StandardLimit& limit : file.limits) {
            for (const int32_t test : limit.tests) {
                vorex::CConfigCommon config;
                config.pTestID = test;
                bool told = false;
                const auto fitted = vorex::FitLimit(limit, config, [&](const std::string&) { told = true; });
                if (fitted.empty() != told) std::abort();
                for (const vorex::StandardLimit& one : fitted)
                    if (!one.low.byVoltage.empty() || !one.high.byVoltage.empty()) std::abort();
            }
        }
    } catch (const vorex::FileError& error) {
        const std::string_view message = error.what();
        if (!message.starts_with("site.json:")) std::abort();
        for (const char c : message)
            if ((c >= '\0' && c < ' ') || c == '\x7f') std::abort();
    }
    return 0;
}

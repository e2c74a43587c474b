#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "cli/operator_script.h"

/// A script is refused with one error, or read; written again, it reads the same.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view script(reinterpret_cast<const char*>(data), size);
    std::vector<vorex::ElementSteps> elements;
    try {
        elements = vorex::ParseOperatorScript(script);
    } catch (const vorex::OperatorScriptError&) {
        return 0;
    }

    std::string again;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (i > 0) again += ';';
        for (std::size_t step = 0; step < elements[i].size(); ++step)
            again += (step > 0 ? "," : "") + elements[i][step].text;
    }
    if (vorex::ParseOperatorScript(again) != elements) std::abort();
    return 0;
}

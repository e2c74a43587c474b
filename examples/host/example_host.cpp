// A host of its own in a page: it asks the installed test library for the output of a mammography unit, from
// one exposure of 2.874 R in 3 s, and prints what the library makes of it.

#include <iostream>
#include <memory>
#include <string>

#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "library.h"
#include "results/derived_values.h"
#include "results/result_common.h"

int main() {
    // A host that installs no service of its own has the default texts and settings.
    vorex::InstallLibrary({});

    const auto config = std::make_shared<vorex::CConfigCommon>();
    config->DefaultValues(vorex::kMammoRadiation);  // test 1200
    config->DetectorName = vorex::kZrd;
    config->pMeasurementExposure = vorex::kUnitR;
    config->pMeasurementTimeUnit = vorex::kMilliseconds;
    const auto result = std::make_shared<vorex::CResultCommon>();
    result->Initialize(config);

    vorex::ZrdReading reading;
    reading.kvpAvg = "28.3";
    reading.exposure = "2874";
    reading.exposureTime = "3002";
    result->StoreResult(vorex::BuildDetectorResult({*config, *result, 0, false}, reading), vorex::kSourceZrd);

    std::string rate;
    for (const auto& item : result->Current()) {
        if (item->ValueText().empty()) continue;
        std::cout << item->Description() << " " << item->ShownText() << " " << vorex::Translate(item->Unit())
                  << "\n";
        if (item->Key() == vorex::key::kOutputRate) rate = item->ShownText();
    }
    return rate == "957.36" ? 0 : 1;
}

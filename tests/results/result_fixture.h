#pragma once

#include "host/execution_pipe.h"
#include "results/result_columns.h"
#include "results/result_common.h"
#include "support/fake_element.h"
#include "support/library_test.h"
#include "support/result_row.h"

namespace vorex::test {

/// A result of a test, in R and ms, and the element that it belongs to.
class ResultTest : public LibraryTest {
  protected:
    void Begin(int32_t test, int32_t kind = kZrd, uint8_t exposures = 3) {
        config = std::make_shared<CConfigCommon>();
        config->DefaultValues(test);
        config->pMeasurementExposure = kUnitR;
        config->pMeasurementExposureRateUnit = 1;
        config->pMeasurementTimeUnit = kMilliseconds;
        config->pMeasurementFluoroType = kContinuous;
        config->DetectorName = kind;
        config->pNoOfExposures = exposures;
        result = std::make_shared<CResultCommon>();
        result->Initialize(config);
    }
    /// Fills the columns of a source with texts joined by ",".
    void Store(const std::string& texts, int32_t source = kSourceZrd) {
        result->StoreResult(RowInOrder(*result, texts, source), source);
    }
    /// One exposure from its texts, judged and stored.
    void Expose(uint8_t number, const std::string& texts, int32_t source = kSourceZrd) {
        Store(texts, source);
        result->UpdateStatus(owner, &selected, number);
    }
    std::string ValueOf(std::size_t row, std::string_view measurementKey) const {
        const CMeasurement* item = FindMeasurement(*result->Rows().at(row), measurementKey);
        return item == nullptr ? "(no such column)" : item->ValueText();
    }
    std::string Working(std::string_view measurementKey) const {
        const CMeasurement* item = FindMeasurement(result->Current(), measurementKey);
        return item == nullptr ? "(no such column)" : item->ValueText();
    }

    std::shared_ptr<CConfigCommon> config;
    std::shared_ptr<CResultCommon> result;
    FakeElement owner;
    SelectedStandards selected;
};

}  // namespace vorex::test

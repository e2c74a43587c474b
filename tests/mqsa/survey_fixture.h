#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "execution/test_mqsa.h"
#include "mqsa/result_mqsa.h"
#include "mqsa/survey_calculations.h"
#include "support/fake_host.h"
#include "support/library_test.h"

namespace vorex::test {

/// A new survey inside the reference host.
class SurveyTest : public LibraryTest {
  protected:
    void SetUp() override {
        InstallReferenceHost();
        element = CTestMQSA::Create();
        element->Initialize(nullptr, kPlugInId, kMqsaSurvey);
        survey = element->Survey();
    }

    std::string& Cell(GridId grid, int32_t row, int32_t column) {
        return survey->Record().Grid(grid).At(row, column);
    }
    void AnswerAll(uint8_t column) {
        for (uint8_t row = 0; row < kSurveyItemCount; ++row) survey->MQSAClickHandle(row, column);
    }
    /// "Pass/NA" of a row of the tables after an evaluation.
    template <typename Table>
    static std::string Row(const Table& table, std::size_t row) {
        const auto word = [](const std::string& key) { return key.substr(key.find("::") + 2); };
        return word(table[row][0]) + "/" + word(table[row][1]);
    }
    std::string Preliminary(std::size_t row) {
        survey->UpdateStatus(*element, nullptr);
        return Row(survey->Tables().preliminary, row);
    }
    std::string Summary(std::size_t row) {
        survey->UpdateStatus(*element, nullptr);
        return Row(survey->Tables().summary, row);
    }

    std::shared_ptr<CTestMQSA> element;
    std::shared_ptr<CResultMQSA> survey;
};

}  // namespace vorex::test

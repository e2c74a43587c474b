#include "foundation/report_markup.h"

#include <gtest/gtest.h>

#include "support/recording_report.h"

namespace vorex {
namespace {

TEST(ReportMarkup, NumbersTakeTheDecimalSignOfTheReportAndOtherTextsStay) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"80.5", "80.5", "80,5"},
        {"80,5", "80.5", "80,5"},
        {"-0.25", "-0.25", "-0,25"},
        {"80.5*", "80.5*", "80,5*"},
        {"12", "12", "12"},
        {"", "", ""},
        {"1.5 cm", "1.5 cm", "1.5 cm"},
        {"18,24 x", "18,24 x", "18,24 x"},
        {"OL.", "OL.", "OL."},
    };
    test::RecordingReport report;
    for (const auto& [number, point, comma] : cases) {
        report.decimalSign = '.';
        EXPECT_EQ(markup::Number(number, report), point);
        report.decimalSign = ',';
        EXPECT_EQ(markup::Number(number, report), comma);
    }
}

}  // namespace
}  // namespace vorex

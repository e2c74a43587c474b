#include "foundation/verdict_figures.h"

#include <gtest/gtest.h>

namespace vorex {
namespace {

TEST(VerdictFigures, AFigureExcludesValuesBeyondItAndSaysSo) {
    struct Case {
        const VerdictFigure& figure;
        bool below, at, above;  ///< excluded
        const char* words;
    };
    const Case cases[] = {
        {figure::kExposureVariation, false, false, true, "at most 0.005"},
        {figure::kGlandularDose, false, false, true, "at most 300 mrad"},
        {figure::kAcrOutput, true, false, false, "at least 800 mR/s"},
        {figure::kMqsaOutput, true, false, false, "at least 513 mR/s"},
        {figure::kLeastDensity, true, false, false, "at least 1.2 OD"},
        {figure::kMostStep, false, true, true, "below 16 %"},
    };
    constexpr double kStep = 0.0001;
    for (const Case& c : cases) {
        EXPECT_EQ(c.figure.Words(), c.words);
        EXPECT_EQ(c.figure.Excludes(c.figure.figure - kStep), c.below) << c.words;
        EXPECT_EQ(c.figure.Excludes(c.figure.figure), c.at) << c.words;
        EXPECT_EQ(c.figure.Excludes(c.figure.figure + kStep), c.above) << c.words;
    }
    EXPECT_EQ(figure::kGlandularDose.Excluding("301"),
              "Computed Average Glandular Dose: 301, expected at most 300 mrad (21 CFR 900.12(e)(5)(vi))");
}

}  // namespace
}  // namespace vorex

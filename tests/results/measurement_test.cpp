#include "results/measurement.h"

#include "foundation/host_error.h"
#include "foundation/vocabulary.h"
#include "support/library_test.h"
#include "support/limits.h"

namespace vorex {
namespace {

using Measurement = test::LibraryTest;

/// A limit as its two numbers, empty for a side that is not set, and the expression of both.
struct Sides {
    const char *high, *low;
    const char* expression = "Y";
};

Standard With(std::string_view limitKey, const std::vector<Sides>& limits) {
    Standard standard("Site", "1");
    for (const auto& [high, low, expression] : limits)
        standard.AddExpectedResult(test::Limit(limitKey, high, low, expression));
    return standard;
}

CMeasurement Measured(std::string_view measurementKey, std::string_view value, std::string_view preset = {}) {
    CMeasurement measurement;
    measurement.Initialize(measurementKey, "", "KV", kJudgedNumber);
    measurement.Value(std::string(value));
    measurement.PresetValue(std::string(preset));
    return measurement;
}

/// Both sides as a report shows them, "9 | 3"; "-" for a side without a limit.
std::string Shown(const CMeasurement& measurement, const IStandard& standard, int32_t flags) {
    const auto side = [&](int32_t which) {
        const std::string shown = TextOf(measurement.GetLimitValue(standard, which, flags | kAsText));
        return shown.empty() ? "-" : shown;
    };
    return side(kHighSide) + " | " + side(kLowSide);
}

TEST_F(Measurement, ALimitAtAPositionCountsForItsOwnKeyOrTheMaximumRate) {
    Standard standard = With("ER HVL", {{"9", ""}});
    standard.AddExpectedResult(test::Limit("ER Other", "7", "2", "Y"));
    const std::tuple<const char*, int32_t, int32_t, float> cases[] = {
        {"ER HVL", kHighSide, 1, 9},
        {"ER HVL", kLowSide, 1, 0},
        {"ER HVL", kHighSide, 2, 0},
        {"ER HVL", kHighSide, 3, 0},
        {"ER HVL", kHighSide, -1, 0},
        {"ER Maxi. Exposure Rate2", kLowSide, 2, 2},
        {"ER Maxi. Exposure Rate2", kLowSide, 1, 0},
    };
    for (const auto& [measurementKey, side, ordinal, number] : cases) {
        const auto limit = Measured(measurementKey, "5").GetLimit(side, standard, false, ordinal);
        EXPECT_EQ(limit.found, number > 0) << measurementKey << ordinal;
        EXPECT_EQ(limit.number, number) << measurementKey << ordinal;
    }
}

TEST_F(Measurement, OfSeveralLimitsTheSmallestHighAndTheLastOtherLowAreShown) {
    const std::tuple<const char*, const char*, std::vector<Sides>, const char*> cases[] = {
        {"HVL", "ER HVL", {{"9", "3"}}, "9 | 3"},
        {"HVL", "ER HVL", {{"9", "3"}, {"8", "4"}}, "8 | 4"},
        {"HVL", "ER HVL", {{"8", "4"}, {"9", "3"}}, "8 | 3"},
        {"HVL", "ER HVL", {{"9", "4"}, {"8", "3"}}, "8 | 3"},
        {"HVL", "ER HVL", {{"9", ""}, {"", "3"}}, "9 | 3"},
        {"HVL", "ER HVL", {{"", "3"}, {"9", ""}}, "9 | 3"},
        {"HVL", "ER HVL", {{"9", "3"}, {"", "4"}}, "9 | 4"},
        {"HVL", "ER HVL", {{"9", "3"}, {"8", ""}}, "8 | 3"},
        {"HVL", "ER HVL", {{"7", "2"}, {"8", "5"}, {"9", "2"}}, "7 | 2"},
        {"HVL", "ER mA", {{"9", "3"}}, "- | -"},
        // The first limit of an exposure rate is the one.
        {"ER Maxi. Exposure Rate2", "ER Maxi. Exposure Rate2", {{"9", "3"}, {"8", "4"}}, "9 | 3"},
        {"ER Maxi. Exposure Rate2", "ER Maxi. Exposure Rate1", {{"9", "3"}}, "- | -"},
        // A row of a coefficient of variation has the limits that judge it, and the reading has the others.
        {"ER Exposure", "ER Exposure", {{"9", "3"}, {"0.05", "", "CV"}}, "0.05 | -"},
        {"Exposure", "ER Exposure", {{"0.05", "", "CV"}, {"9", "3"}}, "9 | 3"},
    };
    for (const auto& [measurementKey, limitKey, limits, shown] : cases)
        EXPECT_EQ(Shown(Measured(measurementKey, "5"), With(limitKey, limits), kCalculatedValue), shown)
            << measurementKey << " by " << limits.size() << " limits of " << limitKey;
}

TEST_F(Measurement, ALimitIsShownCalculatedOrAsItWasTypedWithItsUnit) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"Y", "5 KV | -5 KV", "5 KV | -5 KV"},
        {"X+Y", "85 KV | 75 KV", "5 KV | -5 KV"},
        {"X+(X*Y%)", "84 KV | 76 KV", "5 % | -5 %"}};
    for (const auto& [expression, calculated, typed] : cases) {
        const Standard standard = With("ER kVp Avg", {{"5", "-5", expression}});
        const CMeasurement kvp = Measured("kVp Avg", "80", "80");
        EXPECT_EQ(Shown(kvp, standard, kCalculatedValue | kWithUnit), calculated) << expression;
        EXPECT_EQ(Shown(kvp, standard, kWithUnit), typed) << expression;
    }
}

TEST_F(Measurement, AValueIsGivenAsItIsOrAsText) {
    CMeasurement kvp = Measured("kVp Avg", "80.10", "81");
    EXPECT_EQ(kvp.GetResultValue(0), TaggedValue(std::string("80.10")));
    EXPECT_EQ(TextOf(kvp.GetResultValue(kAsText)), "80.1");
    EXPECT_EQ(TextOf(kvp.GetResultValue(kAsText | kWithUnit)), "80.1 KV");
    EXPECT_EQ(kvp.LimitKey() + "/" + kvp.Unit() + "/" + TextOf(kvp.PresetValue()), "kVp Avg/KV/81");
    CMeasurement truth;
    truth.Initialize("k", "", "", 3);
    for (const auto& [value, shown] :
         {std::pair{"true", "True"}, {"1", "True"}, {"-1", "True"}, {"0", "False"}, {"", "False"}}) {
        truth.Value(std::string(value));
        EXPECT_EQ(truth.GetDisplayText(), shown) << value;
    }
    for (const char* xml : {"<Value Key=\"HVL\"/>", "<Measurement/>"})
        EXPECT_THROW(truth.Load(test::XmlText(xml).Root(), nullptr), HostError) << xml;
}

TEST_F(Measurement, AValueBeyondAnyLimitOfAStandardFailsIt) {
    const std::tuple<const char*, const char*, std::vector<Sides>, bool> cases[] = {
        {"kVp Avg", "84", {{"5", "-5", "X+(X*Y%)"}}, false},
        {"kVp Avg", "84.01", {{"5", "-5", "X+(X*Y%)"}}, true},
        {"kVp Avg", "76", {{"5", "-5", "X+(X*Y%)"}}, false},
        {"kVp Avg", "75.99", {{"5", "-5", "X+(X*Y%)"}}, true},
        {"kVp Avg", "82", {{"90", ""}, {"1", "", "X+Y"}}, true},
        {"kVp Avg", "82", {{"0.05", "", "CV"}}, false},
        {"ER kVp Avg", "0.06", {{"0.05", "", "CV"}, {"90", "70"}}, true},
        {"ER kVp Avg", "0.05", {{"90", "70"}, {"0.05", "", "CV"}}, false},
    };
    for (const auto& [measurementKey, value, limits, fails] : cases)
        EXPECT_EQ(Measured(measurementKey, value, "80").ValidateLimits(With("ER kVp Avg", limits)),
                  fails ? kFailed : kNotTested)
            << measurementKey << " " << value << " by " << limits.front().high;
}

}  // namespace
}  // namespace vorex

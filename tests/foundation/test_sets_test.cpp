#include "foundation/test_sets.h"

#include <gtest/gtest.h>

namespace vorex {
namespace {

TEST(TestSets, ASetHoldsTheTestsThatItNames) {
    const TestSet set = {kRadioAccuracy, kMammoAec};
    for (int32_t id : kMeasuringTests) {
        EXPECT_EQ(set.Has(id), id == 200 || id == 1100) << id;
        EXPECT_EQ(TestSet::AllBut(set).Has(id), id != 200 && id != 1100) << id;
        EXPECT_TRUE(kAllTests.Has(id)) << id;
    }
    EXPECT_FALSE(set.Has(400));
    EXPECT_TRUE(kAllTests.Has(0)) << "what belongs to every test belongs to one without identifier too";
}

TEST(TestSets, TheNamedSetsHoldTheTestsOfTheirKind) {
    const std::tuple<const char*, TestSet, TestSet> rows[] = {
        {"radiography", kRadiography, {100, 200, 300}},
        {"fluoroscopy", kFluoroscopy, {500, 700}},
        {"mammography", kMammography, {900, 1100, 1200}},
        {"generator setup", kWithGeneratorSetup, {100, 200, 300}},
        {"unit of distance", kWithDistanceUnit, {100, 200, 300, 500, 700}},
        {"one focal spot", kWithOneFocalSpot, {100, 500, 700, 900}},
        {"one kV", kWithOneKv, {100, 300, 900, 1200}},
        {"focal spots", kWithFocalSpots, {200, 300}},
        {"kVs", kWithKvs, {200, 500, 700}},
        {"mA", kWithMa, {200, 300, 500, 700}},
        {"mAs", kWithMas, {200, 300, 1100, 1200}},
        {"statistics", kWithStatistics, {100, 900, 1100}},
    };
    for (const auto& [name, set, expected] : rows) EXPECT_TRUE(set == expected) << name;
}

TEST(TestSets, AKindSetHoldsTheKindsThatItNames) {
    for (int32_t kind : {-1, 0, 1, 2, 3, 4, 5, 32}) {
        EXPECT_EQ(HasZrd(kind), kind == 1 || kind == 4) << kind;
        EXPECT_EQ(HasPelomark(kind), kind == 3 || kind == 5) << kind;
        EXPECT_EQ(HasMasMeter(kind), kind == 2 || kind == 4 || kind == 5) << kind;
    }
}

TEST(TestSets, ATableThatForgetsATestDoesNotCoverThemAll) {
    struct Row {
        TestSet tests;
    };
    constexpr Row kNone[] = {{kAllTests}};
    constexpr Row kSome[] = {{kAllTests}, {kRadiography | kFluoroscopy}, {{kMammoAec, kMammoRadiation}}};
    constexpr Row kRest[] = {{kMammoAccRepro}};
    static_assert(!CoversEveryMeasuringTest(kNone), "a row for all tests says nothing of a new one");
    static_assert(!CoversEveryMeasuringTest(kSome));
    static_assert(CoversEveryMeasuringTest(kSome, kRest));
    struct Single {
        int32_t testId;
    };
    constexpr Single kTwice[] = {{100}, {200}, {300}, {500}, {700}, {900}, {1100}, {1200}, {100}};
    static_assert(CoversEveryMeasuringTest(kTwice) && !HasOneRowPerMeasuringTest(kTwice));
}

}  // namespace
}  // namespace vorex

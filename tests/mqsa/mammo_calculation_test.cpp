#include "mqsa/mammo_calculation.h"

#include "support/library_test.h"

namespace vorex {
namespace {

using DoseConversion = test::LibraryTest;

struct Reference {
    const char *target, *filter;
    double kv, hvl, thickness, fraction;
    double factor;  ///< mrad/R, from an evaluation of the formulas apart from this program
};

constexpr Reference kReferences[] = {
    {"mo", "MO", 28, 0.33, 4.2, 0.5, 169.335350}, {"MO", "rh", 28, 0.40, 4.2, 0.5, 203.781865},
    {"rH", "Rh", 32, 0.45, 6, 0.3, 195.967365},   {"Mo", "Mo", 25, 0.30, 3, 0, 174.689499},
    {"Mo", "Mo", 25, 0.30, 3, 0.25, 199.771605},  {"Mo", "Mo", 25, 0.30, 3, 1, 171.087091},
    {"Mo", "Mo", 30, 0.42, 7, 0, 86.614317},      {"Mo", "Mo", 30, 0.42, 7, 1, 96.758587},
    {"Mo", "Rh", 25, 0.30, 3, 0, 260.544281},     {"Mo", "Rh", 25, 0.30, 3, 0.25, 235.755735},
    {"Mo", "Rh", 30, 0.42, 7, 0, 171.420732},     {"Mo", "Rh", 30, 0.42, 7, 1, 100.479743},
    {"Rh", "Rh", 25, 0.30, 3, 0, 260.251666},     {"Rh", "Rh", 25, 0.30, 3, 1, 178.016431},
    {"Rh", "Rh", 30, 0.42, 7, 0, 184.449655},     {"Rh", "Rh", 30, 0.42, 7, 0.25, 161.088701},
};

TEST_F(DoseConversion, FactorsAgreeWithAnIndependentEvaluation) {
    for (const Reference& row : kReferences) {
        const auto factor =
            DoseConversionFactor(row.target, row.filter, row.kv, row.hvl, row.thickness, row.fraction);
        ASSERT_TRUE(factor) << row.target << "/" << row.filter;
        EXPECT_NEAR(*factor, row.factor, 1e-6)
            << row.target << "/" << row.filter << " " << row.kv << " kV, fraction " << row.fraction;
    }
}

TEST_F(DoseConversion, AnyOtherPairHasNoFactor) {
    using Pair = std::pair<const char*, const char*>;
    for (const auto& [target, filter] : {Pair{"Rh", "Mo"}, Pair{"W", "Rh"}, Pair{"Mo", ""}, Pair{"", ""},
                                         Pair{"Mo ", "Mo"}, Pair{"Mo", "Al"}})
        EXPECT_FALSE(DoseConversionFactor(target, filter, 28, 0.33, 4.2, 0.5)) << target << "/" << filter;
}

TEST_F(DoseConversion, TheMaterialsAreReadInThePresentLanguage) {
    auto texts = std::make_shared<test::FakeTexts>();
    texts->words["22395::Rh"] = "Rodio";
    HostServices services;
    services.text = texts;
    InstallServices(services);
    EXPECT_EQ(DoseConversionFactor("Mo", "RODIO", 28, 0.4, 4.2, 0.5), MoRhFactor(28, 0.4, 4.2, 0.5));
    EXPECT_FALSE(DoseConversionFactor("Mo", "Rh", 28, 0.4, 4.2, 0.5));
}

}  // namespace
}  // namespace vorex

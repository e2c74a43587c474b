#include "host/standards.h"

#include <stdexcept>

#include "foundation/vocabulary.h"
#include "host/host_fixture.h"
#include "support/limits.h"

namespace vorex::host_test {
namespace {

using StandardsTest = XmlTest;
using test::Limit;
using test::StandardOf;

TEST_F(StandardsTest, EachExpressionGivesItsLimit) {
    const std::tuple<const char*, const char*, float, float> cases[] = {
        {"", "5", 80, 5},          {"Y", "5", 80, 5},          {"X+Y", "5", 80, 85},
        {"X+Y", "-5", 80, 75},     {"X+(X*Y%)", "5", 80, 84},  {"X+(X*Y%)", "-5", 80, 76},
        {"CV", "0.05", 80, 0.05F}, {"X+Y", "0.2", 0.1F, 0.3F},  // 0.1 and 0.2 as a person reads them
        {"X+Y", "5,5", 80, 85.5F},
    };
    for (const auto& [expression, number, preset, limit] : cases)
        EXPECT_EQ(Limit("k", number, "", expression)->CalculateValue(preset, kHighSide), limit)
            << expression << " " << number;
}

TEST_F(StandardsTest, ALimitKnowsItsSides) {
    const auto limit = Limit("ER HVL", "3.10", "");
    EXPECT_TRUE(limit->IsSet(kHighSide));
    EXPECT_FALSE(limit->IsSet(kLowSide));
    EXPECT_EQ(limit->Value(kHighSide), 3.1F);
    EXPECT_EQ(limit->Value(kLowSide), 0.0F);
    EXPECT_EQ(limit->Expression(kLowSide), "Y");
    EXPECT_THROW(limit->Setup("ER HVL", "", "three", ""), std::invalid_argument);
    EXPECT_THROW(limit->Expression(kHighSide, "X*Y"), std::invalid_argument);
}

TEST_F(StandardsTest, EachExpressionFailsBeyondItsLimitOnEitherSide) {
    struct Case {
        const char* expression;
        const char* high;  ///< Y of the high side
        const char* low;
        float atHigh;  ///< the limits with X 80
        float atLow;
    };
    const Case cases[] = {
        {"Y", "84", "76", 84, 76},
        {"X+Y", "4", "-4", 84, 76},
        {"X+(X*Y%)", "5", "-5", 84, 76},
        {"CV", "0.05", "0.01", 0.05F, 0.01F},
    };
    const TaggedValue preset = std::string("80");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.expression);
        const bool variation = std::string_view(c.expression) == "CV";
        const auto as = variation ? JudgedAs::kVariation : JudgedAs::kValue;
        const auto other = variation ? JudgedAs::kValue : JudgedAs::kVariation;
        const auto status = [&](const char* high, const char* low, float value, JudgedAs judged) {
            return StandardOf("Site", {Limit("ER Exposure", high, low, c.expression)})
                ->Evaluate("ER Exposure", value, preset, judged);
        };
        const float step = variation ? 0.001F : 0.01F;
        const struct {
            float value;
            bool aboveHigh, belowLow;
        } values[] = {{c.atHigh + step, true, false},  {c.atHigh, false, false},
                      {c.atHigh - step, false, false}, {c.atLow + step, false, false},
                      {c.atLow, false, false},         {c.atLow - step, false, true}};
        for (const auto& [value, above, below] : values) {
            EXPECT_EQ(status(c.high, c.low, value, as) == kFailed, above || below) << value;
            EXPECT_EQ(status(c.high, "", value, as) == kFailed, above) << value << ", no low side";
            EXPECT_EQ(status("", c.low, value, as) == kFailed, below) << value << ", no high side";
            EXPECT_EQ(status(c.high, c.low, value, other), 0) << value << ", another quantity";
        }
        EXPECT_EQ(StandardOf("Site", {Limit("ER HVL", c.high, c.low, c.expression)})
                      ->Evaluate("ER Exposure", 1e6F, preset, as),
                  0)
            << "no limit of that key";
    }
}

TEST_F(StandardsTest, EveryLimitOfAKeyJudgesInEitherOrder) {
    struct Case {
        const char* high[2];
        const char* low[2];
        float fails, passes;
    };
    const Case cases[] = {{{"9", "3"}, {"", ""}, 4, 3},      {{"", ""}, {"9", "3"}, 8, 9},
                          {{"9", ""}, {"", "3"}, 10, 9},     {{"9", ""}, {"", "3"}, 2, 3},
                          {{"9", "8"}, {"1", "2"}, 8.5F, 8}, {{"9", "8"}, {"1", "2"}, 1.5F, 2}};
    for (const Case& c : cases)
        for (const int first : {0, 1}) {
            const auto limit = [&](int i) { return Limit("ER HVL", c.high[i], c.low[i]); };
            const auto standard = StandardOf("Site", {limit(first), limit(1 - first)});
            EXPECT_EQ(standard->Evaluate("ER HVL", c.fails, {}, JudgedAs::kValue), kFailed)
                << c.fails << first;
            EXPECT_EQ(standard->Evaluate("ER HVL", c.passes, {}, JudgedAs::kValue), 0) << c.passes << first;
        }
}

TEST_F(StandardsTest, StandardsAreReadAndWrittenUnchanged) {
    const std::string text =
        "<ExpectedResult>\n"
        "  <Standard Name=\"Site\" Version=\"1\">\n"
        "    <Limit Key=\"ER HVL\" Unit=\"mm\">\n"
        "      <High Value=\"3.10\" Expression=\"Y\" />\n"
        "      <Low Value=\"2,5\" />\n"
        "    </Limit>\n"
        "    <Limit Key=\"ER Exposure\" Unit=\"\">\n"
        "      <High Expression=\"CV\" />\n"
        "    </Limit>\n"
        "  </Standard>\n"
        "  <Standard Name=\"Site\" Version=\"2\" />\n"
        "</ExpectedResult>";
    StandardCollection standards;
    standards.Load(Element(text));
    EXPECT_EQ(standards.Count(), 2);
    EXPECT_EQ(standards.FindExpectedResult(0, "Site", "2"), standards.Item(1));
    EXPECT_EQ(standards.FindExpectedResult(0, "Site", "3"), nullptr);
    EXPECT_EQ(standards.Item(2), nullptr);
    EXPECT_EQ(Xml(standards.Clone()->Save(document)), text);
}

TEST_F(StandardsTest, LimitsAndStandardsCanBeTakenOut) {
    StandardCollection standards;
    for (const char* version : {"1", "2", "3"}) standards.Add(std::make_shared<Standard>("Site", version));
    standards.Remove("Site", "2");
    standards.Remove("Other", "1");
    ASSERT_EQ(standards.Count(), 2);
    EXPECT_EQ(standards.Item(1)->Version(), "3");
    const auto standard =
        StandardOf("Site", {Limit("ER HVL", "3"), Limit("ER mA", "5"), Limit("ER HVL", "9")});
    standard->RemoveExpectedResults("ER HVL");
    ASSERT_EQ(standard->Results().size(), 1U);
    standard->Results()[0]->Key("ER mAs");
    EXPECT_EQ(standard->Evaluate("ER mAs", 6, {}, JudgedAs::kValue), kFailed)
        << "it judges under its new key";
    EXPECT_EQ(standard->Evaluate("ER mA", 6, {}, JudgedAs::kValue), 0);
}

TEST_F(StandardsTest, ACloneHasLimitsOfItsOwn) {
    StandardCollection standards;
    const auto standard = std::make_shared<Standard>("Site", "1");
    const auto limit = Limit("ER HVL", "3", "");
    standard->AddExpectedResult(limit);
    standards.Add(standard);
    const auto clone = standards.Clone();
    limit->Setup("ER HVL", "", "4", "");
    EXPECT_EQ(clone->Item(0)->Results()[0]->Value(kHighSide), 3.0F);
}

}  // namespace
}  // namespace vorex::host_test

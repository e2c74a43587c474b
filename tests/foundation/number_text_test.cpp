#include "foundation/number_text.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>

#include "foundation/tagged_value.h"
#include "support/library_test.h"

namespace vorex {
namespace {

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
const double kNoNumber = std::numeric_limits<double>::quiet_NaN();

void WriteDecimals(char sign) {
    HostServices services;
    services.decimalSign = sign;
    InstallServices(services);
}

using NumberText = test::LibraryTest;

TEST_F(NumberText, TheLeadingNumberOfATextIsRead) {
    const std::pair<const char*, double> kReadings[] = {
        {"80.1", 80.1}, {"1,5", 1.5},    {"12%", 12},      {"1%2", 12},   {" \t7", 7},  {"+2", 2},
        {"-3.5", -3.5}, {"-,5", -0.5},   {".5", 0.5},      {"5.", 5},     {"1e2", 100}, {"1E-2", 0.01},
        {"2.5e+1", 25}, {"80.1*", 80.1}, {"12 mm Al", 12}, {"1 2", 1},    {"1e", 1},    {"1e+", 1},
        {"1.2.3", 1.2}, {"1,000.5", 1},  {"007", 7},       {"0.1e1x", 1}, {"5-3", 5},   {"1ee2", 1}};
    for (const auto& [text, number] : kReadings) EXPECT_EQ(ReadNumber(text), number) << '"' << text << '"';
}

TEST_F(NumberText, ATextWithoutALeadingNumberReadsAsZero) {
    for (const char* text : {"",    " ",   "OL",  "x5", "-",   "+",   ".",    ",",   "%",   "--2",  "++2",
                             "+-2", "-+2", "- 2", "e5", ".e5", "inf", "-inf", "nan", "NaN", "0x1A", "$1"})
        EXPECT_EQ(ReadNumber(text), 0) << '"' << text << '"';
}

TEST_F(NumberText, ANumberTooLargeReadsAsTheLargestAndOneTooSmallAsZero) {
    const std::string zeros(400, '0');
    EXPECT_EQ(ReadNumber("1.5e400"), kLargest);
    EXPECT_EQ(ReadNumber("-1.5e400"), -kLargest);
    EXPECT_EQ(ReadNumber("1" + zeros), kLargest);
    EXPECT_EQ(ReadNumber("1" + zeros + "e-10"), kLargest) << "a negative exponent does not make it small";
    EXPECT_EQ(ReadNumber("1e99999999999999999999"), kLargest);
    EXPECT_EQ(ReadNumber("1.5e-400"), 0);
    EXPECT_EQ(ReadNumber("0." + zeros + "1e10"), 0);
    EXPECT_EQ(ReadNumber("1" + zeros + "e-400"), 1) << "both ends meet";
}

TEST_F(NumberText, WholeNumbersAreCutAndKeptWithin32Bits) {
    const std::pair<const char*, double> kReadings[] = {
        {"1.9", 1},    {"-1.9", -1}, {"9e9", 2147483647.0}, {"-9e9", -2147483648.0}, {"255", 255},
        {"1,5 kV", 1}, {"word", 0}};
    for (const auto& [text, number] : kReadings) EXPECT_EQ(ReadInteger(text), number) << text;
}

TEST_F(NumberText, OnlyANumberAloneIsANumber) {
    for (const char* text : {"5", " 5 ", "+5", "-1,5", ".5", "5.", "1e3"})
        EXPECT_TRUE(IsNumber(text)) << text;
    for (const char* text : {"", " ", "5%", "5*", "5 5", "OL", "-", "1e", "0x10", "inf", "nan", "1.2.3"})
        EXPECT_FALSE(IsNumber(text)) << text;
}

TEST_F(NumberText, PlainTextOfADoubleHasFifteenDigitsAndNoNoise) {
    // clang-format off
    const std::pair<double, const char*> kRows[] = {
        {80.1 + 80.2 + 80.3, "240.6"}, {0.1 + 0.2, "0.3"}, {0, "0"}, {-0.0, "0"}, {-1.5, "-1.5"},
        {100, "100"}, {1.0 / 3, "0.333333333333333"}, {2.0 / 3, "0.666666666666667"},
        {200.0 / 3, "66.6666666666667"}, {0.00033, "0.00033"}, {1e-15, "0.000000000000001"},
        {1.5e-16, "1.5E-16"}, {123456789012345.0, "123456789012345"}, {1e14, "100000000000000"},
        {999999999999999.9, "1E+15"}, {-1e15, "-1E+15"}, {123456789012345678.0, "1.23456789012346E+17"},
        {kLargest, "1.79769313486232E+308"}, {kInfinity, ""}, {-kInfinity, ""}, {kNoNumber, ""},
    };
    // clang-format on
    for (const auto& [number, text] : kRows) EXPECT_EQ(PlainText(number), text) << number;
}

TEST_F(NumberText, PlainTextOfASingleHasSevenDigits) {
    EXPECT_EQ(PlainText(80.1F), "80.1");
    EXPECT_EQ(PlainText(0.1F + 0.2F), "0.3");
    EXPECT_EQ(PlainText(1.0F / 3), "0.3333333");
    EXPECT_EQ(PlainText(16777216.0F), "16777220");
    EXPECT_EQ(PlainText(-0.0F), "0");
    EXPECT_EQ(PlainText(std::numeric_limits<float>::infinity()), "");
    EXPECT_EQ(PlainText(int32_t{-12}), "-12");
}

/// The nearest double to what the C library prints in so many digits.
double Printed(double number, int digits) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*e", digits - 1, number);
    return std::strtod(text.data(), nullptr);
}

TEST_F(NumberText, PlainTextsAndReadingsAgreeWithTheCLibraryOverManyNumbers) {
    std::mt19937_64 random(47500);  // the same numbers every time
    for (int i = 0; i < 8000; ++i) {
        const uint64_t bits = random();
        const double everyday =
            static_cast<double>(bits % 20000001) / std::pow(10, static_cast<double>(bits % 8));
        for (const double number : {std::bit_cast<double>(bits), everyday, -everyday / 3, everyday * 1.1}) {
            if (!std::isfinite(number)) continue;
            const std::string text = PlainText(number);
            ASSERT_EQ(std::strtod(text.c_str(), nullptr), Printed(number, 15)) << text;
            ASSERT_EQ(ReadNumber(text), Printed(number, 15)) << text;
        }
        const auto low = static_cast<uint32_t>(bits);
        const auto single = static_cast<float>(everyday);
        for (const float number :
             {std::bit_cast<float>(low), single, -single / 3, static_cast<float>(low % 4000000) / 4}) {
            if (!std::isfinite(number)) continue;
            const std::string text = PlainText(number);
            ASSERT_EQ(std::strtod(text.c_str(), nullptr), Printed(static_cast<double>(number), 7)) << text;
        }
        const std::string digits = std::to_string(bits);  // up to 20 of them
        const std::string decimal =
            (i % 2 == 0 ? "-" : "") + digits.substr(0, bits % 9) + "." + digits.substr(bits % 9);
        ASSERT_EQ(ReadNumber(decimal), std::strtod(decimal.c_str(), nullptr)) << decimal;
    }
}

TEST_F(NumberText, PicturesRoundTheDecimalTextHalfAwayFromZero) {
    // clang-format off
    const std::tuple<double, const char*, const char*> kRows[] = {
        {0.125, "0.0#", "0.13"}, {-0.125, "0.0#", "-0.13"}, {1.005, "0.0#", "1.01"},
        {2.675, "0.0#", "2.68"}, {0.124999, "0.0#", "0.12"}, {9.995, "0.0#", "10.0"},
        {99.99995, "0.0###", "100.0"}, {0.00005, "0.0###", "0.0001"}, {0.00004, "0.0###", "0.0"},
        {0.05, "0.0", "0.1"}, {0.5, "0", "1"}, {813.2666, "00", "813"}, {5, "00", "05"},
        {-5, "00", "-05"}, {0, "0.0#", "0.0"}, {2, "0.0###", "2.0"}, {2.5, "0.0####", "2.5"},
        {80.1, "0.0#", "80.1"}, {1234567.891, "0.0#", "1234567.89"}, {1e15, "0.0#", "1000000000000000.0"},
        {1e-15, "0.0###", "0.0"}, {-0.0, "0.0#", "0.0"}, {-0.0049, "0.0#", "0.0"}, {-0.005, "0.0#", "-0.01"}, {kInfinity, "0.0#", ""}, {kNoNumber, "0.0#", ""},
    };
    // clang-format on
    for (const auto& [number, picture, text] : kRows)
        EXPECT_EQ(FormatPicture(number, picture), text) << number << " in " << picture;
}

TEST_F(NumberText, RoundingHalfToEvenWorksOnTheDecimalText) {
    const std::tuple<double, int, double> kRows[] = {
        {0.125, 2, 0.12}, {0.375, 2, 0.38}, {-0.125, 2, -0.12},   {1.005, 2, 1},   {1.015, 2, 1.02},
        {0.005, 2, 0},    {0.015, 2, 0.02}, {0.1250001, 2, 0.13}, {0.5, 0, 0},     {1.5, 0, 2},
        {2.5, 0, 2},      {9.995, 2, 10},   {0.05, 1, 0},         {1.23, 5, 1.23}, {0.001, 1, 0}};
    for (const auto& [number, decimals, rounded] : kRows)
        EXPECT_EQ(RoundHalfEven(number, decimals), rounded) << number << " to " << decimals;
    EXPECT_TRUE(std::isnan(RoundHalfEven(kNoNumber, 2)));
}

TEST_F(NumberText, ADifferenceKeepsTheDecimalsOfItsTexts) {
    const std::tuple<const char*, const char*, const char*> kRows[] = {
        {"1.65", "1.5", "0.15"}, {"4.5", "5", "-0.5"},       {"4.25", "4.2", "0.05"}, {"0.30", "0.1", "0.2"},
        {"3", "5", "-2"},        {"", "1.5", "-1.5"},        {"", "", "0"},           {"1,65", "1,5", "0.15"},
        {"1e-3", "0", "0.001"},  {"12.5%", "2.25%", "10.25"}};
    for (const auto& [a, b, difference] : kRows)
        EXPECT_EQ(DifferenceRounded(a, b), difference) << a << " - " << b;
}

TEST_F(NumberText, TheSampleStandardDeviationDividesByOneLess) {
    const auto of = [](std::vector<double> values) { return SampleStdDev(values); };
    EXPECT_EQ(of({}), 0);
    EXPECT_EQ(of({5}), 0);
    EXPECT_DOUBLE_EQ(of({2, 4, 4, 4, 5, 5, 7, 9}), std::sqrt(32.0 / 7));
    EXPECT_EQ(of({1e8 + 1, 1e8 + 2, 1e8 + 3}), 1) << "close readings keep their digits";
    const std::vector<std::string> texts = {"80.1", "80,3"};
    EXPECT_NEAR(SampleStdDev(texts), std::sqrt(0.02), 1e-12);
}

TEST_F(NumberText, TheDecimalSignIsTheHostsAndNotTheComputers) {
    WriteDecimals(',');
    EXPECT_TRUE(SystemHasDecimalComma());
    EXPECT_EQ(LocaleDecimal("4.2"), "4,2");
    EXPECT_EQ(LocaleText(80.1), "80,1");
    EXPECT_EQ(LocaleText(80.1F), "80,1");
    EXPECT_EQ(PlainText(80.1), "80.1");
    EXPECT_EQ(FormatPicture(80.1, "0.0#"), "80.1");
    EXPECT_EQ(ReadNumber("4.2"), ReadNumber("4,2"));
    EXPECT_TRUE(FilterNumericKey(','));
    WriteDecimals('.');
    EXPECT_FALSE(SystemHasDecimalComma());
    EXPECT_EQ(LocaleDecimal("4,2"), "4.2");
    EXPECT_EQ(LocaleText(80.1), "80.1");
    EXPECT_FALSE(FilterNumericKey(','));
}

TEST_F(NumberText, ANumericBoxTakesDigitsBackspaceAndPoint) {
    for (int code = 0; code < 128; ++code)
        EXPECT_EQ(FilterNumericKey(code), (code >= 48 && code <= 57) || code == 8 || code == 46) << code;
}

TEST_F(NumberText, TaggedValuesAreTextsAndNumbersAlike) {
    EXPECT_EQ(TextOf({}), "");
    EXPECT_EQ(TextOf(std::string("80.10*")), "80.10*");
    EXPECT_EQ(TextOf(80.1F), "80.1");
    EXPECT_EQ(TextOf(80.1 + 80.2), "160.3");
    EXPECT_EQ(NumberOf({}), 0);
    EXPECT_EQ(NumberOf(std::string("1,5%")), 1.5);
    EXPECT_EQ(NumberOf(80.1F), 80.1) << "what a person reads, not 80.0999985";
    EXPECT_EQ(NumberOf(2.5), 2.5);
}

TEST_F(NumberText, TextsAreComparedTrimmedAndSplit) {
    EXPECT_TRUE(EqualsIgnoringCase("mO", "Mo"));
    EXPECT_FALSE(EqualsIgnoringCase("Mo", "Mo "));
    EXPECT_FALSE(EqualsIgnoringCase("[", "{")) << "only letters have a case";
    EXPECT_EQ(SplitText("a,,b,", ','), (std::vector<std::string_view>{"a", "", "b", ""}));
    EXPECT_EQ(CodePoints("°C"), 2U);
    EXPECT_EQ(CodePoints("€😀x"), 3U);
}

}  // namespace
}  // namespace vorex

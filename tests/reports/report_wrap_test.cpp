#include "reports/report_wrap.h"

#include <gtest/gtest.h>

#include <string>

#include "reports/report_fixture.h"

namespace vorex {
namespace {

/// Wraps at 10 points, where a character is 100 twips wide.
std::string Wrapped(const std::string& text, int32_t characters) {
    const host_test::EvenMetrics metrics;
    TextWrapper wrapper(metrics);
    std::string lines;
    for (const ReportLine& line : wrapper.Wrap(text, characters * 100, ReportFace::kPlain, 10)) {
        EXPECT_LE(line.indent + line.width, characters * 100) << text;
        lines += (lines.empty() ? "" : "/") + std::string(line.text);
    }
    return lines;
}

TEST(ReportWrap, BreaksBetweenWordsAndWithinAWordOnlyWhereItMust) {
    const struct {
        const char* text;
        int32_t characters;
        const char* lines;
    } cases[] = {
        {"", 10, ""},
        {"one two", 10, "one two"},
        {"one two", 6, "one/two"},
        {"one  two", 3, "one/two"},
        {"abcdefgh", 3, "abc/def/gh"},
        {"ab cdefgh", 4, "ab/cdef/gh"},
        {"a\nb", 20, "a/b"},
        // A line may end behind each ideograph.
        {"测试标准", 3, "测试标/准"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Wrapped(c.text, c.characters), c.lines) << c.text << " in " << c.characters;
}

TEST(ReportWrap, ACombiningMarkStaysOnItsLetter) {
    const host_test::EvenMetrics metrics;
    TextWrapper wrapper(metrics);
    const auto lines = wrapper.Wrap("abcde\xCC\x81", 500, ReportFace::kPlain, 10);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].text, "abcde\xCC\x81");
}

TEST(ReportWrap, FurtherLinesBeginWhereTheFirstOneDoes) {
    const host_test::EvenMetrics metrics;
    TextWrapper wrapper(metrics);
    const auto lines = wrapper.Wrap("   label of a value", 1200, ReportFace::kPlain, 10);
    ASSERT_EQ(lines.size(), 2U);
    for (const ReportLine& line : lines) EXPECT_EQ(line.indent, 300);
    EXPECT_EQ(lines[0].text, "label of");
    EXPECT_EQ(lines[1].text, "a value");
}

/// More than three blanks are room to write into: the line ends before the word in front of them.
TEST(ReportWrap, AGapStaysInItsLineWhereItCan) {
    EXPECT_EQ(Wrapped("dose of the unit is      mrad", 20), "dose of the unit/is      mrad");
    EXPECT_EQ(Wrapped("dose of the unit is   mrad", 20), "dose of the unit is/mrad");
    EXPECT_EQ(Wrapped("unit      mrad", 8), "unit/mrad");
    EXPECT_EQ(Wrapped("a bcde      fgh ij", 6), "a/bcde/fgh ij");
    EXPECT_EQ(Wrapped("word" + std::string(1000, ' ') + "behind and on", 10), "word/behind and/on");
}

}  // namespace
}  // namespace vorex

#include "reports/report_wrap.h"

#include <gtest/gtest.h>

#include <array>
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
    };
    for (const auto& c : cases)
        EXPECT_EQ(Wrapped(c.text, c.characters), c.lines) << c.text << " in " << c.characters;
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

TEST(ReportWrap, ATerminalCountsCellsAndIndentsFurtherLines) {
    const struct {
        const char* text;
        std::size_t width, hanging;
        const char* lines;
    } cases[] = {
        {"  one two three", 9, 2, "  one two/    three"},
        {"  one two three", 8, 2, "  one/    two/    thre/    e"},
        {"one three", 6, 2, "one/  thre/  e"},
        {"a\nb c", 2, 1, "a/b/ c"},
        // Ideographs take two cells, combining marks none.
        {"测试标准", 5, 0, "测试/标准"},
        {"a\xCC\x81 b c", 3, 0, "a\xCC\x81 b/c"},
    };
    for (const auto& c : cases) {
        std::string lines;
        for (const ReportLine& line : TerminalWrapper().Wrap(c.text, c.width, c.hanging)) {
            EXPECT_LE(TerminalWrapper().Width(IndentedText(line)), c.width) << c.text;
            lines += (lines.empty() ? "" : "/") + IndentedText(line);
        }
        EXPECT_EQ(lines, c.lines) << c.text << " in " << c.width;
    }
}

/// More than three blanks are room to write into: the line ends before the word in front of them.
TEST(ReportWrap, AGapStaysInItsLineWhereItCan) {
    EXPECT_EQ(Wrapped("dose of the unit is      mrad", 20), "dose of the unit/is      mrad");
    EXPECT_EQ(Wrapped("dose of the unit is   mrad", 20), "dose of the unit is/mrad");
    EXPECT_EQ(Wrapped("unit      mrad", 8), "unit/mrad");
    EXPECT_EQ(Wrapped("a bcde      fgh ij", 6), "a/bcde/fgh ij");
    EXPECT_EQ(Wrapped("word" + std::string(1000, ' ') + "behind and on", 10), "word/behind and/on");
}

std::string Utf8(char32_t c) {
    std::string text;
    AppendUtf8(text, c);
    return text;
}

TEST(ReportWrap, IdeographsBreakAnywhereAndMarksStayOnTheirLetter) {
    struct Range {
        char32_t first, last;
        std::array<char32_t, 4> Ends() const {
            return {static_cast<char32_t>(first - 1), first, last, static_cast<char32_t>(last + 1)};
        }
    };
    for (const Range& range : {Range{0x2E80, 0x9FFF}, Range{0xAC00, 0xD7A3}, Range{0xF900, 0xFAFF},
                               Range{0xFF00, 0xFF60}, Range{0x20000, 0x3FFFD}})
        for (const char32_t c : range.Ends()) {
            const std::string two = Utf8(c) + Utf8(c);
            const bool breaks = c >= range.first && c <= range.last;
            EXPECT_EQ(Wrapped("aa " + two + two, 5), breaks ? "aa " + two + "/" + two : "aa/" + two + two)
                << std::hex << static_cast<uint32_t>(c);
        }
    for (const Range& range : {Range{0x300, 0x36F}, Range{0x591, 0x5BD}, Range{0x64B, 0x65F},
                               Range{0x200B, 0x200F}, Range{0x20D0, 0x20FF}, Range{0xFE00, 0xFE0F}})
        for (const char32_t c : range.Ends()) {
            const bool marks = c >= range.first && c <= range.last;
            const host_test::EvenMetrics metrics;
            TextWrapper wrapper(metrics);
            const std::string text = "abcde" + Utf8(c);
            EXPECT_EQ(wrapper.Wrap(text, 500, ReportFace::kPlain, 10).size(), marks ? 1U : 2U)
                << std::hex << static_cast<uint32_t>(c);
        }
}

}  // namespace
}  // namespace vorex

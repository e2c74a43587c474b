#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "reports/report_model.h"

namespace vorex {

/// Widths of characters, supplied by the renderer, which knows its fonts.
class ITextMetrics {
  public:
    virtual ~ITextMetrics() = default;
    /// Advance of a character in thousandths of the text's size.
    virtual int32_t Advance(char32_t character, ReportFace face) const = 0;
};

/// Breaks texts into lines. Asks each character's advance once.
class TextWrapper {
  public:
    explicit TextWrapper(const ITextMetrics& metrics) : mMetrics(metrics) {}

    /// Lines that fit the width: broken at line feeds and between words, and within a word only where it is
    /// wider than a line. All lines of a paragraph begin where its first one does, or `hanging` after it.
    /// Only the blanks at a break are left out. The lines refer to the text.
    std::vector<ReportLine> Wrap(std::string_view text, int32_t width, ReportFace face, int32_t points,
                                 int32_t hanging = 0);
    int32_t Width(std::string_view text, ReportFace face, int32_t points);

  private:
    int32_t Advance(char32_t character, ReportFace face);
    void WrapLine(std::string_view text, int64_t room, int64_t laterRoom, ReportFace face, int32_t points,
                  std::vector<ReportLine>& lines);

    static constexpr char32_t kDirect = 0x250;  ///< Latin letters
    const ITextMetrics& mMetrics;
    std::array<std::array<int32_t, kDirect>, kReportFaces> mLatin{};
    std::array<std::unordered_map<char32_t, int32_t>, kReportFaces> mOthers;
};

/// Breaks texts into lines for a terminal, measured in its cells: an ideograph takes two, a combining mark
/// none.
class TerminalWrapper {
  public:
    TerminalWrapper();

    std::size_t Width(std::string_view text);
    /// As `TextWrapper::Wrap`; indents and widths of the lines are in cells.
    std::vector<ReportLine> Wrap(std::string_view text, std::size_t width, std::size_t hanging = 0);

  private:
    TextWrapper mWrapper;
};

/// The text of a terminal's line, with the blanks of its indent.
std::string IndentedText(const ReportLine& line);

bool IsAscii(std::string_view text);

/// The character that a valid UTF-8 text begins with, and its length in bytes.
struct Utf8Character {
    char32_t code = 0;
    std::size_t length = 1;
};
Utf8Character FirstCharacter(std::string_view text);
void AppendUtf8(std::string& text, char32_t character);

/// True for a character that combines with the one before it.
bool IsCombining(char32_t character);

}  // namespace vorex

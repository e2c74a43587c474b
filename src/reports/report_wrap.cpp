#include "reports/report_wrap.h"

#include <algorithm>

#include "foundation/number_text.h"
#include "foundation/utf8.h"

namespace vorex {

namespace {

constexpr int64_t kEm = 1000;
constexpr int32_t kMostIndentParts = 3;
/// More blanks in a row are a gap to write in; a line breaks there only if it cannot break elsewhere.
constexpr std::size_t kMostBlanks = 3;

/// Ideographs and kana: a line may end after each.
bool BreaksAnywhere(char32_t c) {
    return (c >= 0x2E80 && c <= 0x9FFF) || (c >= 0xAC00 && c <= 0xD7A3) || (c >= 0xF900 && c <= 0xFAFF) ||
           (c >= 0xFF00 && c <= 0xFF60) || (c >= 0x20000 && c <= 0x3FFFD);
}

/// Characters that take two cells of a terminal.
bool IsWide(char32_t c) {
    return (c >= 0x1100 && c <= 0x115F) || (c >= 0x2E80 && c <= 0xA4CF) || (c >= 0xAC00 && c <= 0xD7A3) ||
           (c >= 0xF900 && c <= 0xFAFF) || (c >= 0xFE30 && c <= 0xFE6F) || (c >= 0xFF00 && c <= 0xFF60) ||
           (c >= 0xFFE0 && c <= 0xFFE6) || (c >= 0x1F300 && c <= 0x1FAFF) || (c >= 0x20000 && c <= 0x3FFFD);
}

/// A terminal's cells as a measure of texts.
class TerminalMetrics final : public ITextMetrics {
  public:
    /// Advance that makes a cell of one-point text one twip wide.
    static constexpr int32_t kCell = kEm / kTwipsPerPoint;
    int32_t Advance(char32_t character, ReportFace /*face*/) const override {
        if (IsCombining(character)) return 0;
        return IsWide(character) ? 2 * kCell : kCell;
    }
};

const ITextMetrics& Terminal() {
    static const TerminalMetrics metrics;
    return metrics;
}

}  // namespace

bool IsAscii(std::string_view text) {
    return std::none_of(text.begin(), text.end(),
                        [](char c) { return static_cast<unsigned char>(c) >= 0x80U; });
}

Utf8Character FirstCharacter(std::string_view text) {
    const auto byte = [&](std::size_t i) {
        return static_cast<char32_t>(static_cast<unsigned char>(text[i]));
    };
    if (byte(0) < 0x80U) return {byte(0), 1};
    const std::size_t length = Utf8Length(text);
    if (length == 0) return {byte(0), 1};
    char32_t code = byte(0) & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) code = (code << 6U) | (byte(i) & 0x3FU);
    return {code, length};
}

void AppendUtf8(std::string& text, char32_t c) {
    if (c < 0x80U) {
        text += static_cast<char>(c);
        return;
    }
    const int tail = c < 0x800U ? 1 : c < 0x10000U ? 2 : 3;
    const char32_t lead = tail == 1 ? 0xC0U : tail == 2 ? 0xE0U : 0xF0U;
    text += static_cast<char>(lead | (c >> (6U * static_cast<unsigned>(tail))));
    for (int i = tail - 1; i >= 0; --i)
        text += static_cast<char>(0x80U | ((c >> (6U * static_cast<unsigned>(i))) & 0x3FU));
}

bool IsCombining(char32_t c) {
    return (c >= 0x300 && c <= 0x36F) || (c >= 0x591 && c <= 0x5BD) || (c >= 0x64B && c <= 0x65F) ||
           (c >= 0x200B && c <= 0x200F) || (c >= 0x20D0 && c <= 0x20FF) || (c >= 0xFE00 && c <= 0xFE0F);
}

int32_t TextWrapper::Advance(char32_t character, ReportFace face) {
    const auto index = static_cast<std::size_t>(face);
    if (character < kDirect) {
        int32_t& known = mLatin[index][character];
        if (known == 0) known = mMetrics.Advance(character, face);
        return known;
    }
    const auto [at, isNew] = mOthers[index].try_emplace(character, 0);
    if (isNew) at->second = mMetrics.Advance(character, face);
    return at->second;
}

int32_t TextWrapper::Width(std::string_view text, ReportFace face, int32_t points) {
    int64_t sum = 0;
    while (!text.empty()) {
        const Utf8Character next = FirstCharacter(text);
        sum += Advance(next.code, face);
        text.remove_prefix(next.length);
    }
    return static_cast<int32_t>((sum * points * kTwipsPerPoint + kEm - 1) / kEm);
}

void TextWrapper::WrapLine(std::string_view text, int64_t room, int64_t laterRoom, ReportFace face,
                           int32_t points, std::vector<ReportLine>& lines) {
    struct Place {
        std::size_t at = 0;
        int64_t width = 0;  // of the line up to here
    };
    std::size_t begin = 0;
    int64_t width = 0;
    std::size_t blanks = 0;  // in a row
    Place breakAt;           // after the last blank, or where a line may end
    Place beforeBlanks;      // the break before these blanks
    Place gap;               // after the last gap
    const auto close = [&](const Place& end) {
        std::string_view line = text.substr(begin, end.at - begin);
        int64_t lineWidth = end.width;
        while (line.ends_with(' ')) {
            line.remove_suffix(1);
            lineWidth -= Advance(' ', face);
        }
        lines.push_back(
            {line, 0, static_cast<int32_t>((lineWidth * points * kTwipsPerPoint + kEm - 1) / kEm)});
        begin = end.at;
        room = laterRoom;
    };
    for (std::size_t at = 0; at < text.size();) {
        const Utf8Character next = FirstCharacter(text.substr(at));
        const int64_t advance = Advance(next.code, face);
        const bool blank = next.code == ' ';
        if (BreaksAnywhere(next.code) && at > begin) breakAt = {at, width};
        while (!blank && width + advance > room && at > begin && !IsCombining(next.code)) {
            const Place end = breakAt.at > begin ? breakAt : gap.at > begin ? gap : Place{at, width};
            close(end);
            for (int64_t* from : {&width, &breakAt.width, &gap.width}) *from -= end.width;
        }
        width += advance;
        at += next.length;
        if (!blank) {
            blanks = 0;
            continue;
        }
        if (blanks++ == 0) beforeBlanks = breakAt;
        if (blanks <= kMostBlanks) {
            breakAt = {at, width};
        } else {
            breakAt = beforeBlanks;
            gap = {at, width};
        }
    }
    close({text.size(), width});
}

std::vector<ReportLine> TextWrapper::Wrap(std::string_view text, int32_t width, ReportFace face,
                                          int32_t points, int32_t hanging) {
    const auto roomAfter = [&](int32_t indent) {
        return int64_t{std::max(width - indent, 1)} * kEm / (int64_t{points} * kTwipsPerPoint);
    };
    std::vector<ReportLine> lines;
    ForEachPart(text, '\n', [&](std::string_view paragraph) {
        const std::size_t blanks = std::min(paragraph.find_first_not_of(' '), paragraph.size());
        const int32_t indent =
            std::min(Width(paragraph.substr(0, blanks), face, points), width / kMostIndentParts);
        paragraph.remove_prefix(blanks);
        const std::size_t first = lines.size();
        WrapLine(paragraph, roomAfter(indent), roomAfter(indent + hanging), face, points, lines);
        for (std::size_t i = first; i < lines.size(); ++i)
            lines[i].indent = i == first ? indent : indent + hanging;
    });
    return lines;
}

TerminalWrapper::TerminalWrapper() : mWrapper(Terminal()) {}

std::size_t TerminalWrapper::Width(std::string_view text) {
    if (IsAscii(text)) return text.size();
    return static_cast<std::size_t>(mWrapper.Width(text, ReportFace::kPlain, 1));
}

std::vector<ReportLine> TerminalWrapper::Wrap(std::string_view text, std::size_t width, std::size_t hanging) {
    return mWrapper.Wrap(text, static_cast<int32_t>(width), ReportFace::kPlain, 1,
                         static_cast<int32_t>(hanging));
}

std::string IndentedText(const ReportLine& line) {
    return std::string(static_cast<std::size_t>(line.indent), ' ') + std::string(line.text);
}

}  // namespace vorex

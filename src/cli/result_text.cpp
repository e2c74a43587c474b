#include "cli/result_text.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "app/verdict_text.h"
#include "cli/survey_text.h"
#include "config/config_common.h"
#include "foundation/number_text.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "reports/report_wrap.h"
#include "results/result_common.h"

namespace vorex {

namespace {

constexpr std::size_t kWidth = 100;
constexpr std::size_t kLabelWidth = 38;
constexpr std::size_t kHanging = 2;  ///< blanks before the continued lines of a long one
constexpr std::size_t kLeastCellWidth = 9;
constexpr std::string_view kRed = "\x1b[31;1m";
constexpr std::string_view kGreen = "\x1b[32m";
constexpr std::string_view kPlain = "\x1b[0m";

std::string Coloured(const std::string& words, std::string_view colour, bool on) {
    return on ? std::string(colour) + words + std::string(kPlain) : words;
}

/// Pads, or cuts with a mark, to a width in characters.
std::string Fitted(std::string_view words, std::size_t width) {
    const std::size_t length = CodePoints(words);
    if (length <= width) return std::string(words) + std::string(width - length, ' ');
    std::string cut;
    std::size_t taken = 0;
    for (std::size_t at = 0; at < words.size(); ++at) {
        const bool starts = (static_cast<unsigned char>(words[at]) & 0xC0U) != 0x80U;
        if (starts && ++taken == width) break;
        cut.push_back(words[at]);
    }
    return cut + "~";
}

/// The words, cut with a mark where they are longer than a width.
std::string Cut(const std::string& words, std::size_t width) {
    return CodePoints(words) <= width ? words : Fitted(words, width);
}

std::string RightAligned(const std::string& words, std::size_t width) {
    const std::size_t length = CodePoints(words);
    return std::string(length < width ? width - length : 0, ' ') + words;
}

std::string Indent(int depth) {
    return std::string(static_cast<std::size_t>(depth) * 2, ' ');
}

std::string DetectorWords(int32_t kind) {
    const std::string_view name = HasZrd(kind) ? "ZRD 47500" : HasPelomark(kind) ? "Pelomark" : "";
    if (name.empty()) return Translate(HasMasMeter(kind) ? text::kShowMasMeter : text::kShowNoDetector);
    return HasMasMeter(kind) ? Translate(text::kShowAndMasMeter, {std::string(name)}) : std::string(name);
}

std::string Count(std::size_t number) {
    return PlainText(static_cast<int32_t>(number));
}

/// A value as the table shows it, with its mark.
std::string CellWords(const CMeasurement& item) {
    std::string words = item.ShownText();
    if (words.empty()) words = "-";
    if (item.Status() == kFailed) words += " " + StatusText(kFailed);
    return words;
}

std::string LabelOf(const CMeasurement& item) {
    const std::string unit = UnitText(item.RawUnit());
    return item.Description() + (unit.empty() ? "" : " [" + unit + "]");
}

/// Why a value failed: the limits of the selected standards that it violates, or that it is no usable
/// reading.
std::string FailureReason(const ITestElement& element, const CMeasurement& item,
                          const ISelectedStandards* selected) {
    if (!item.HasValidReading()) return Translate(text::kShowNoReading);
    std::vector<std::string> reasons;
    const auto limits = element.Limits();
    if (!limits || !limits->Standards() || selected == nullptr) return {};
    for (const StandardName& name : selected->Standards()) {
        const auto standard = limits->Standards()->FindExpectedResult(0, name.name, name.version);
        if (!standard || item.ValidateLimits(*standard) != kFailed) continue;
        reasons.push_back(LimitWords(item, *standard) + " (" + StandardWords(name) + ")");
    }
    return Joined(reasons, "; ");
}

class TestText {
  public:
    TestText(const ITestElement& element, const ShownFile& file, int depth, bool colour)
        : mElement(element), mFile(file), mIndent(Indent(depth + 1)), mColour(colour) {}

    std::string Text(const CConfigCommon& config, const CResultCommon* result) {
        AddConfiguration(config);
        if (result == nullptr) return std::move(mText);
        for (const std::string& line : RecordLines(mElement, config, *result, mFile.selected.get()))
            for (const ReportLine& part : TerminalWrapper().Wrap(line, kWidth - mIndent.size(), kHanging))
                Line(IndentedText(part));
        if (result->Status() == kNotTested) return std::move(mText);
        AddOrigin(*result);
        AddTaken(config, *result);
        if (result->LastReading() == nullptr) return std::move(mText);
        AddExposures(*result);
        AddCalculations(*result);
        AddFailures(*result);
        AddWaveforms(*result);
        AddSuperseded(*result);
        return std::move(mText);
    }

  private:
    void Line(const std::string& words) {
        std::string line = mIndent + words;
        while (line.ends_with(' ')) line.pop_back();
        mText += line + "\n";
    }

    void AddConfiguration(const CConfigCommon& config) {
        Line(DetectorWords(config.DetectorName) + ", " +
             DisplayText(kDetectorModes, config.pMeasurementMode) + ", " +
             DisplayText(kDetectorSettings, config.pMeasurementSettings) + ", " +
             Translate(config.pNoOfExposures == 1 ? text::kShowOnePlanned : text::kShowPlanned,
                       {Count(config.pNoOfExposures)}));
    }

    /// The count of exposures: a verdict on fewer than planned must not look like one on all of them.
    void AddTaken(const CConfigCommon& config, const CResultCommon& result) {
        const std::size_t taken = result.Rows().size();
        if (result.Status() == kNotApplicable || taken == config.pNoOfExposures) return;
        const std::string words =
            taken == 0 ? Translate(text::kShowNoneStored)
                       : Translate(text::kShowStored, {Count(taken), Count(config.pNoOfExposures)});
        Line(Coloured(words, kRed, mColour));
    }

    void AddOrigin(const CResultCommon& result) {
        for (const std::string& instrument : InstrumentsOf(result, mFile.instruments))
            Line(Translate(text::kShowMeasuredWith, {instrument}));
        const std::string comment = result.Comment();
        if (const std::string words = CommentWords(comment); !words.empty())
            Line(Translate(text::kShowComment, {words}));
        if (const std::string log = CommentLog(comment); !log.empty())
            Line(Translate(text::kShowEdited, {LogWords(log)}));
    }

    static bool IsShown(const CMeasurement& item) { return item.RawKey() != key::kImportWaveform; }

    std::string Cell(const CMeasurement& item, std::size_t width) const {
        const std::string words = RightAligned(CellWords(item), width);
        return item.Status() == kFailed ? Coloured(words, kRed, mColour) : words;
    }

    /// Exposures side by side, a line per quantity, in as many blocks as the width needs.
    void AddExposures(const CResultCommon& result) {
        const auto& rows = result.Rows();
        std::size_t width = kLeastCellWidth;
        if (std::any_of(rows.begin(), rows.end(), [](const auto& row) { return row->empty(); }))
            width = std::max(width, CodePoints(Translate(text::kNoReading)));
        for (const auto& row : rows)
            for (const auto& item : *row)
                if (IsShown(*item) && !result.IsTestWideColumn(item->RawKey()))
                    width = std::max(width, CodePoints(CellWords(*item)));
        const std::size_t room = kWidth - mIndent.size() - kLabelWidth;
        const std::size_t perBlock = std::max<std::size_t>(1, room / (width + 2));
        for (std::size_t first = 0; first < rows.size(); first += perBlock) {
            const std::size_t last = std::min(rows.size(), first + perBlock);
            Line("");
            std::string head = Fitted(Translate(text::kShowExposure), kLabelWidth);
            for (std::size_t row = first; row < last; ++row)
                head += "  " + RightAligned(PlainText(static_cast<int32_t>(row + 1)), width);
            Line(head);
            const MeasurementRow& columns = *result.LastReading();
            for (std::size_t column = 0; column < columns.size(); ++column) {
                const CMeasurement& item = *columns[column];
                if (!IsShown(item) || result.IsTestWideColumn(item.RawKey())) continue;
                std::string line = Fitted(LabelOf(item), kLabelWidth);
                for (std::size_t row = first; row < last; ++row)
                    line += "  " + (column < rows[row]->size()
                                        ? Cell(*(*rows[row])[column], width)
                                        : RightAligned(Translate(text::kNoReading), width));
                Line(line);
            }
        }
    }

    /// Statistics of the whole test: those of the last exposure.
    void AddCalculations(const CResultCommon& result) {
        bool headed = false;
        for (const auto& item : *result.LastReading()) {
            if (!result.IsTestWideColumn(item->RawKey())) continue;
            if (!headed) {
                Line("");
                Line(Translate(text::kCalculations));
            }
            headed = true;
            Line(Fitted(LabelOf(*item), kLabelWidth) + "  " + Cell(*item, kLeastCellWidth));
        }
    }

    void AddFailures(const CResultCommon& result) {
        bool headed = false;
        for (std::size_t row = 0; row < result.Rows().size(); ++row) {
            for (const auto& item : *result.Rows()[row]) {
                if (item->Status() != kFailed) continue;
                if (!headed) {
                    Line("");
                    Line(Coloured(Translate(text::kShowFailedValues), kRed, mColour));
                }
                headed = true;
                const std::string reason = FailureReason(mElement, *item, mFile.selected.get());
                Line(Translate(text::kShowExposureValue,
                               {Count(row + 1), LabelOf(*item) + " " + item->ShownText() +
                                                    (reason.empty() ? "" : ": " + reason)}));
            }
        }
    }

    void AddWaveforms(const CResultCommon& result) {
        std::string words;
        for (std::size_t row = 0; row < result.Rows().size(); ++row) {
            const auto exposure = static_cast<int32_t>(row + 1);
            for (const auto& [waveform, name] : {std::pair(result.KvWaveform(exposure), "kV"),
                                                 std::pair(result.MaWaveform(exposure), "mA")}) {
                if (!waveform || waveform->ValueCount() == 0) continue;
                words += (words.empty() ? "" : "; ") +
                         Translate(text::kShowWaveformOf,
                                   {name, PlainText(exposure), PlainText(waveform->ValueCount())});
            }
        }
        if (words.empty()) return;
        Line("");
        Line(Translate(text::kShowWaveforms, {words}));
    }

    /// The readings that a redo replaced, without failure marks, because no verdict uses them.
    void AddSuperseded(const CResultCommon& result) {
        const auto& all = result.Superseded();
        if (all.empty()) return;
        Line("");
        if (!mFile.superseded) {
            Line(Translate(all.size() == 1 ? text::kShowOneReplaced : text::kShowReplaced,
                           {Count(all.size())}));
            return;
        }
        Line(Translate(text::kShowReplacedList));
        for (const SupersededExposure& superseded : all) {
            Line("");
            Line(Translate(text::kShowReplacedOne,
                           {Count(superseded.exposure), PlainText(superseded.order), superseded.time}));
            for (const auto& item : superseded.row) {
                if (!IsShown(*item)) continue;
                const std::string words = item->ShownText();
                Line(Fitted(LabelOf(*item), kLabelWidth) + "  " +
                     RightAligned(words.empty() ? "-" : words, kLeastCellWidth));
            }
            for (const auto& [waveform, name] :
                 {std::pair(superseded.kvWaveform, "kV"), std::pair(superseded.maWaveform, "mA")})
                if (waveform && waveform->ValueCount() > 0)
                    Line(Translate(text::kShowWaveform, {name, PlainText(waveform->ValueCount())}));
        }
    }

    const ITestElement& mElement;
    const ShownFile& mFile;
    std::string mIndent;
    bool mColour;
    std::string mText;
};

constexpr std::size_t kStatusWidth = 10;

/// Number, test and name of an element.
std::string TitleLine(const ITestElement& element, int depth) {
    const auto info = element.Info();
    const std::string name = info ? info->Name() : std::string();
    const std::string title = Indent(depth) + PlainText(element.ID()) + "  " + TestTitle(element);
    return IsOwnName(name, element.TestID()) ? title + ": " + name : title;
}

/// The title, which is cut to make room, the verdict in a column on the right, and the note.
std::string VerdictLine(const ITestElement& element, int depth, bool colour, const std::string& note) {
    const auto result = element.Result();
    const int32_t status = result ? result->Status() : kNotTested;
    const std::string words = RightAligned(StatusWords(element), kStatusWidth);
    std::string shown = words;
    if (status == kFailed) shown = Coloured(words, kRed, colour);
    if (status == kPassed) shown = Coloured(words, kGreen, colour);
    return Fitted(TitleLine(element, depth), kWidth - CodePoints(words) - CodePoints(note)) + shown + note;
}

/// One line, with the beginning of a long note: the tree of "show" prints the whole note below it.
std::string ElementLine(const ITestElement& element, int depth, bool colour) {
    constexpr std::size_t kMostNote = 60;
    // A verdict with a reserve must not look like any other.
    const std::string note = VerdictNote(element);
    return VerdictLine(element, depth, colour, note.empty() ? "" : "  " + Cut(note, kMostNote));
}

void AddElement(const std::shared_ptr<ITestElement>& element, const ShownFile& file, int depth, bool colour,
                std::string& out) {
    out += ElementLine(*element, depth, colour) + "\n";
    if (const auto container = std::dynamic_pointer_cast<ITestContainer>(element)) {
        for (const auto& child : container->NewEnum()) AddElement(child, file, depth + 1, colour, out);
        return;
    }
    const auto config = std::dynamic_pointer_cast<CConfigCommon>(element->Configuration());
    const auto result = std::dynamic_pointer_cast<CResultCommon>(element->Result());
    if (config) out += TestText(*element, file, depth, colour).Text(*config, result.get());
    if (const auto survey = std::dynamic_pointer_cast<CResultMQSA>(element->Result()))
        out += SurveyText(*survey, Indent(depth + 1), colour);
    out += "\n";
}

}  // namespace

std::string TestTitle(const ITestElement& element) {
    return Translate(TitleKey(element.TestID()));
}

std::string StatusWords(const ITestElement& element) {
    const auto result = element.Result();
    const std::string words = result ? StatusText(result->Status()) : std::string();
    return words.empty() ? Translate(text::kShowNotTested) : words;
}

std::string ElementLines(const ITestElement& element, int depth, bool colour) {
    const std::string note = VerdictNote(element);
    const std::string beside = note.empty() ? "" : "  " + note;
    const std::size_t verdict = std::max(kStatusWidth, CodePoints(StatusWords(element)));
    if (CodePoints(TitleLine(element, depth)) + verdict + CodePoints(beside) <= kWidth)
        return VerdictLine(element, depth, colour, beside);
    std::string lines = VerdictLine(element, depth, colour, {});
    const std::string indent = Indent(depth + 1);
    for (const ReportLine& line : TerminalWrapper().Wrap(note, kWidth - indent.size()))
        lines.append("\n").append(indent).append(IndentedText(line));
    return lines;
}

std::string ResultText(const ShownFile& file, bool colour) {
    std::string out = file.name + "\n";
    std::vector<std::string> standards;
    if (file.selected)
        for (const StandardName& name : file.selected->Standards()) standards.push_back(StandardWords(name));
    out += Translate(text::kShowJudgedBy,
                     {standards.empty() ? Translate(text::kShowNoStandard) : Joined(standards, ", ")}) +
           "\n\n";
    for (const auto& root : file.roots) AddElement(root, file, 0, colour, out);
    return out;
}

}  // namespace vorex

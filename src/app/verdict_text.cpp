#include "app/verdict_text.h"

#include <algorithm>
#include <map>
#include <memory>
#include <utility>

#include "foundation/limit_expression.h"
#include "foundation/number_text.h"
#include "foundation/report_markup.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "results/judging.h"
#include "results/result_columns.h"

namespace vorex {

namespace {

using Report = const IReportDocument*;

std::string SideName(int32_t side, Report report) {
    return Translate(side == kHighSide ? text::kShowAtMost : text::kShowAtLeast, report);
}

/// A number: with the decimal sign of the report's language, or on the screen with a point.
std::string NumberText(float number, Report report) {
    return report != nullptr ? markup::Number(PlainText(number), *report) : PlainText(number);
}

/// One side of a limit in words, or empty when it is not set.
std::string SideWords(const CMeasurement& item, const IStandard& standard, int32_t side, Report report) {
    const auto limit = item.GetLimit(side, standard, true, 0);
    return limit.found ? SideName(side, report) + " " + NumberText(limit.number, report) : std::string();
}

std::shared_ptr<IStandard> Find(const std::shared_ptr<IStandardCollection>& standards,
                                const StandardName& name) {
    return standards ? standards->FindExpectedResult(0, name.name, name.version) : nullptr;
}

std::string InstrumentWords(const std::string& name, const std::string& serial, const std::string& calibrated,
                            Report report) {
    const std::string words = Translate(text::kShowInstrument, {name, serial}, report);
    return calibrated.empty() ? words : Translate(text::kShowCalibrated, {words, calibrated}, report);
}

// ----------------------------------------------------------------------------- what changed since then

using Texts = std::map<std::string, std::string>;

/// Every set side of the limits, such as "Site 1, ER kVp Avg, at most", with its number and expression.
Texts SidesOf(const std::shared_ptr<IStandardCollection>& standards, Report report) {
    Texts sides;
    for (int32_t i = 0; standards && i < standards->Count(); ++i) {
        const auto standard = standards->Item(i);
        for (const auto& limit : standard->Results()) {
            for (const int32_t side : {kHighSide, kLowSide}) {
                if (!limit->IsSet(side)) continue;
                const std::string expression = limit->Expression(side);
                std::string words = NumberText(limit->Value(side), report);
                if (LimitExpressionOf(expression) != LimitExpression::kValue)
                    words = Translate(text::kShowAsExpression, {words, expression}, report);
                if (!limit->Unit().empty()) words += " " + UnitText(limit->Unit(), report);
                sides[StandardWords({standard->Name(), standard->Version()}) + ", " + limit->Key() + ", " +
                      SideName(side, report)] = words;
            }
        }
    }
    return sides;
}

/// Lines for the keys whose texts differ, "key: now 84, then 88"; a missing text reads "none".
std::vector<std::string> Differences(const Texts& now, const Texts& then, Report report) {
    const std::string none = Translate(text::kShowNone, report);
    std::vector<std::string> lines;
    const auto add = [&](const std::string& key, std::string_view newText, std::string_view oldText) {
        lines.push_back(Translate(text::kShowNowThen,
                                  {key, newText.empty() ? none : Translate(newText, report),
                                   oldText.empty() ? none : Translate(oldText, report)},
                                  report));
    };
    for (const auto& [key, text] : now) {
        const auto old = then.find(key);
        if (old == then.end())
            add(key, text, none);
        else if (old->second != text)
            add(key, text, old->second);
    }
    for (const auto& [key, text] : then)
        if (!now.contains(key)) add(key, none, text);
    return lines;
}

Texts ByKey(const SettingTexts& settings) {
    return {settings.begin(), settings.end()};
}

/// The first few lines under a heading, then the number of the others.
void AddFew(const std::string& heading, const std::vector<std::string>& all,
            std::vector<std::string>& lines) {
    constexpr std::size_t kFew = 4;
    if (all.empty()) return;
    lines.push_back(heading);
    for (std::size_t i = 0; i < std::min(all.size(), kFew); ++i) lines.push_back("  " + all[i]);
    if (all.size() > kFew)
        lines.push_back("  " + Translate(text::kShowMore, {std::to_string(all.size() - kFew)}));
}

}  // namespace

std::string StandardWords(const StandardName& name) {
    return name.name + " " + name.version;
}

std::vector<StandardName> NamesOf(const std::shared_ptr<IStandardCollection>& standards) {
    std::vector<StandardName> names;
    for (int32_t i = 0; standards && i < standards->Count(); ++i)
        names.push_back({standards->Item(i)->Name(), standards->Item(i)->Version()});
    return names;
}

std::string Joined(const std::vector<std::string>& parts, std::string_view between) {
    std::string all;
    for (const std::string& part : parts) all.append(all.empty() ? "" : between).append(part);
    return all;
}

std::string OriginWords(const Origin& origin, Report report) {
    return Translate(text::kShowOrigin,
                     {origin.program.empty() ? Translate(text::kShowUnnamedProgram, report) : origin.program,
                      PlainText(origin.formulas)},
                     report);
}

std::string EndingWords(const CResultCommon& result, Report report) {
    const RunRecord& run = *result.Run();
    const std::string reason = run.reason.empty() ? "" : ": " + MessageText(run.reason, report);
    switch (run.ending) {
        case RunEnding::kStopped:
            return Translate(text::kShowStopped,
                             {PlainText(static_cast<int32_t>(result.Rows().size())), PlainText(run.planned)},
                             report) +
                   reason;
        case RunEnding::kBroken:
            return Translate(text::kShowBroken, report) + reason;
        case RunEnding::kComplete:
            break;
    }
    return run.reason.empty() ? "" : Translate(text::kShowWithFault, report) + reason;
}

std::vector<std::string> EditedSettings(const CConfigCommon& config, const RunRecord& run, Report report) {
    return Differences(ByKey(TechniqueOf(config)), ByKey(run.technique), report);
}

std::vector<std::string> ChangedSides(const ITestElement& element, const Judgement& judged,
                                      const ISelectedStandards* selected, Report report) {
    return Differences(SidesOf(PresentJudgement(element, selected).limits, report),
                       SidesOf(judged.limits, report), report);
}

std::vector<std::string> InstrumentsOf(const CResultCommon& result, std::span<const MtiEntry> fileInstruments,
                                       Report report) {
    std::vector<std::string> lines;
    if (result.Run() && !result.Run()->instruments.empty()) {
        for (const CMtiData2& instrument : result.Run()->instruments)
            lines.push_back(InstrumentWords(instrument.Name(), instrument.SerialNumber(),
                                            instrument.CalibrationDate(), report));
        return lines;
    }
    for (const MtiEntry& entry : fileInstruments)
        if (entry.number == result.MTIID())
            lines.push_back(InstrumentWords(entry.name, entry.serialNumber, entry.calibrationDate, report));
    return lines;
}

std::string LimitWords(const CMeasurement& item, const IStandard& standard, Report report) {
    const std::string low = SideWords(item, standard, kLowSide, report);
    const std::string high = SideWords(item, standard, kHighSide, report);
    return low + (low.empty() || high.empty() ? "" : ", ") + high;
}

namespace {

/// The first of several notes, and how many more there are.
std::string FirstOf(const std::vector<std::string>& notes, Report report) {
    if (notes.size() < 2) return notes.empty() ? std::string() : notes.front();
    return notes.front() + ", " +
           Translate(text::kShowMore, {PlainText(static_cast<int32_t>(notes.size() - 1))}, report);
}

std::string NumberOfRow(std::size_t row) {
    return PlainText(static_cast<int32_t>(row + 1));
}

/// True for an instrument that does not know of Stop, so that it may still send the reading of an exposure
/// that Stop has ended.
bool MayBeLate(const MeasurementRow& row) {
    return std::any_of(row.begin(), row.end(), [](const auto& item) {
        return item->Facts().Is(kOfMasMeter) || item->RawKey() == key::kAdcf;
    });
}

std::string MissingReadingWords(const CResultCommon& result, Report report) {
    std::vector<std::string> notes;
    const auto& rows = result.Rows();
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (!rows[row]->empty()) continue;
        const bool late = row + 1 < rows.size() && MayBeLate(*rows[row + 1]);
        notes.push_back(
            late ? Translate(text::kNoteLateReading, {NumberOfRow(row), NumberOfRow(row + 1)}, report)
                 : Translate(text::kNoteNoReading, {NumberOfRow(row)}, report));
    }
    return FirstOf(notes, report);
}

/// True for a value that an instrument delivers, and not one that is derived or computed over the exposures.
bool IsReadOff(const CMeasurement& item) {
    return item.Facts().Is(kQuantity | kOfMasMeter) && !item.Facts().Is(kMean | kCvOfReadings | kCoefficient);
}

std::string EmptyValueWords(const CResultCommon& result, Report report) {
    const auto limits = result.JudgedBy() ? result.JudgedBy()->limits : nullptr;
    const std::vector<StandardName> names = NamesOf(limits);
    std::vector<std::string> notes;
    bool compares = false;  // the first reading has none before it to be compared with
    const std::size_t rows = result.Rows().size();
    for (std::size_t row = 0; row < rows; ++row) {
        const MeasurementRow& cells = *result.Rows()[row];
        const bool firstReading = !std::exchange(
            compares, compares || std::any_of(cells.begin(), cells.end(),
                                              [](const auto& item) { return item->Status() != kNotTested; }));
        for (const auto& item : cells) {
            if (!item->IsEmpty()) continue;
            if (firstReading && IsLinearityKey(item->RawKey())) continue;
            if (row + 1 < rows && IsTestWideKey(result.TestId, item->RawKey())) continue;
            const bool judged = item->Status() != kNotTested &&
                                std::any_of(names.begin(), names.end(), [&](const StandardName& name) {
                                    return !LimitWords(*item, *Find(limits, name)).empty();
                                });
            if (judged || IsReadOff(*item))
                notes.push_back(Translate(judged ? text::kNoteNoValue : text::kNoteNotMeasured,
                                          {NumberOfRow(row), Translate(item->RawDescription(), report)},
                                          report));
        }
    }
    return FirstOf(notes, report);
}

}  // namespace

std::string WithoutValueWords(const CResultCommon& result, Report report) {
    if (result.Status() != kPassed && result.Status() != kFailed) return {};
    const std::string missing = MissingReadingWords(result, report);
    const std::string empty = EmptyValueWords(result, report);
    return missing + (missing.empty() || empty.empty() ? "" : "; ") + empty;
}

std::string VerdictNote(const ITestElement& element, Report report) {
    const auto result = std::dynamic_pointer_cast<CResultCommon>(element.Result());
    if (!result || result->Status() == kNotApplicable) return {};
    std::vector<std::string> notes;
    if (result->Run()) notes.push_back(EndingWords(*result, report));
    notes.push_back(WithoutValueWords(*result, report));
    std::erase(notes, std::string());
    return notes.empty() ? std::string() : "(" + Joined(notes, "; ") + ")";
}

std::vector<std::string> RecordLines(const ITestElement& element, const CConfigCommon& config,
                                     const CResultCommon& result, const ISelectedStandards* selected) {
    std::vector<std::string> lines;
    if (const auto& run = result.Run()) {
        lines.push_back(Translate(text::kShowTaken, {run->start, run->end, OriginWords(run->origin)}));
        if (const std::string words = EndingWords(result); !words.empty())
            lines.push_back(Translate(
                run->ending == RunEnding::kComplete ? text::kShowRunEnded : text::kShowRun, {words}));
        AddFew(Translate(text::kShowSettingsEdited), EditedSettings(config, *run), lines);
    }
    if (const auto& judged = result.JudgedBy()) {
        const bool later =
            !result.Run() || judged->time != result.Run()->end || judged->origin != result.Run()->origin;
        if (later) lines.push_back(Translate(text::kShowJudged, {judged->time, OriginWords(judged->origin)}));
        if (std::string words = WithoutValueWords(result); !words.empty()) lines.push_back(std::move(words));
        AddFew(Translate(text::kShowOtherLimits), ChangedSides(element, *judged, selected), lines);
    }
    return lines;
}

// --------------------------------------------------------------------------------------------- judging

Statuses StatusesOf(const CResultCommon& result) {
    Statuses statuses = {result.Status()};
    for (const auto& row : result.Rows())
        for (const auto& item : *row) statuses.push_back(item->Status());
    return statuses;
}

namespace {

/// The limits that fail a value now or failed it before, those of each standard with their earlier form.
std::string ChangedLimits(const ITestElement& element, const CResultCommon& result, const CMeasurement& item,
                          const ISelectedStandards* selected) {
    const auto present = PresentJudgement(element, selected).limits;
    const auto former = result.JudgedBy() ? result.JudgedBy()->limits : nullptr;
    std::vector<StandardName> names = NamesOf(present);
    for (const StandardName& name : NamesOf(former))
        if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    const auto words = [&](const std::shared_ptr<IStandard>& standard) {
        const std::string sides = standard ? LimitWords(item, *standard) : std::string();
        return sides.empty() ? Translate(text::kShowNoLimit) : sides;
    };
    std::vector<std::string> parts;
    for (const StandardName& name : names) {
        const auto now = Find(present, name);
        const auto then = Find(former, name);
        const bool fails =
            (now && item.ValidateLimits(*now) == kFailed) || (then && item.ValidateLimits(*then) == kFailed);
        if (!fails) continue;
        const std::string today = words(now) + " (" + StandardWords(name) + ")";
        parts.push_back(result.JudgedBy() ? Translate(text::kShowBefore, {today, words(then)}) : today);
    }
    return Joined(parts, "; ");
}

}  // namespace

std::optional<VerdictChange> ChangeOfVerdict(const ITestElement& element, const CResultCommon& result,
                                             const Statuses& before, const ISelectedStandards* selected) {
    if (result.Status() == before.front()) return std::nullopt;
    VerdictChange change{element.ID(), before.front(), result.Status(), {}};
    std::size_t at = 1;
    for (std::size_t row = 0; row < result.Rows().size(); ++row) {
        for (const auto& item : *result.Rows()[row]) {
            const int32_t old = before[at++];
            if ((old == kFailed) == (item->Status() == kFailed)) continue;
            const std::string unit = UnitText(item->RawUnit());
            change.values.push_back({item->Description(), static_cast<int32_t>(row + 1),
                                     item->ShownText() + (unit.empty() ? "" : " " + unit),
                                     ChangedLimits(element, result, *item, selected)});
        }
    }
    return change;
}

std::vector<std::string> ChangeLines(const VerdictChange& change) {
    const auto line = [&](const std::string& words) {
        return Translate(text::kShowElementChange, {PlainText(change.element), StatusText(change.before),
                                                    StatusText(change.after), words});
    };
    if (change.values.empty()) return {line(Translate(text::kShowOtherSettings))};
    std::vector<std::string> lines;
    for (const ValueChange& value : change.values)
        lines.push_back(line(Translate(text::kShowValueChange,
                                       {value.description, PlainText(value.exposure),
                                        value.value + (value.limits.empty() ? "" : ", " + value.limits)})));
    return lines;
}

}  // namespace vorex

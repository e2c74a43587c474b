#include "app/report_record.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "app/elements.h"
#include "app/verdict_text.h"
#include "files/element_file.h"
#include "foundation/number_text.h"
#include "foundation/survey_keys.h"
#include "foundation/utilities.h"
#include "foundation/vocabulary.h"
#include "mqsa/result_mqsa.h"

namespace vorex {

namespace {

void AddUnlessEmpty(std::vector<ReportFact>& facts, std::string_view label, std::string text,
                    const IReportDocument& report) {
    if (!text.empty()) facts.push_back({Translate(label, &report), std::move(text)});
}

/// The limits of a judgement for the values of a result, "kVp Avg: at least 76, at most 84 KV (Site 1)".
std::string LimitLines(const CResultCommon& result, const Judgement& judged, const IReportDocument& report) {
    std::vector<std::string> lines;
    for (int32_t i = 0; judged.limits && i < judged.limits->Count(); ++i) {
        const auto standard = judged.limits->Item(i);
        std::set<std::pair<std::string_view, TaggedValue>> seen;  // a limit follows from key and preset
        for (std::size_t row = 0; row < result.Rows().size(); ++row) {
            for (const auto& item : *result.Rows()[row]) {
                if (!result.IsHeldAgainstLimits(*item, row)) continue;
                if (!seen.emplace(item->RawKey(), item->RawPresetValue()).second) continue;
                const std::string words = LimitWords(*item, *standard, &report);
                if (words.empty()) continue;
                const std::string unit = UnitText(item->RawUnit(), &report);
                std::string line = Translate(item->RawDescription(), &report) + ": " + words;
                line += (unit.empty() ? "" : " " + unit) + " (" +
                        StandardWords({standard->Name(), standard->Version()}) + ")";
                if (std::find(lines.begin(), lines.end(), line) == lines.end())
                    lines.push_back(std::move(line));
            }
        }
    }
    return Joined(lines, "\n");
}

std::string StandardNames(const Judgement& judged) {
    std::vector<std::string> names;
    for (const StandardName& name : NamesOf(judged.limits)) names.push_back(StandardWords(name));
    return Joined(names, ", ");
}

std::string SurveyField(const SurveyRecord& record, std::string_view field) {
    return std::string(Trimmed(record.Field(survey::kGeneralInformation, field)));
}

/// A date of the survey, from its parts in the file; empty while one is missing.
std::string SurveyDate(const SurveyRecord& record) {
    std::string date;
    const SurveyDateKeys& keys = survey::kSurveyDate;
    for (std::string_view part : {keys.year, keys.month, keys.day}) {
        const std::string text = SurveyField(record, part);
        if (text.empty()) return {};
        date += (date.empty() ? "" : "-") + std::string(text.size() == 1 ? "0" : "") + text;
    }
    return date;
}

std::string UnitWords(const SurveyRecord& record) {
    const std::string maker = SurveyField(record, survey::kUnitManufacturer);
    const std::string model = SurveyField(record, survey::kUnitModel);
    return maker + (maker.empty() || model.empty() ? "" : " ") + model;
}

}  // namespace

std::vector<ReportFact> RecordFacts(const ITestElement& element, const CResultCommon& result,
                                    const ISelectedStandards* selected, std::span<const MtiEntry> instruments,
                                    const IReportDocument& report) {
    std::vector<ReportFact> facts;
    if (result.Status() == kNotTested && !result.Run()) return facts;
    std::vector<std::string> changes;
    if (const auto& run = result.Run()) {
        AddUnlessEmpty(facts, text::kReportMeasured,
                       Translate(text::kReportFromTo, {run->start, run->end}, &report) + "; " +
                           OriginWords(run->origin, &report),
                       report);
        AddUnlessEmpty(facts, text::kReportEnding, EndingWords(result, &report), report);
        if (const auto config = std::dynamic_pointer_cast<CConfigCommon>(element.Configuration()))
            changes = EditedSettings(*config, *run, &report);
    }
    AddUnlessEmpty(facts, text::kReportMeasuredWith,
                   Joined(InstrumentsOf(result, instruments, &report), "\n"), report);
    if (const auto& judged = result.JudgedBy()) {
        const std::string without = WithoutValueWords(result, &report);
        AddUnlessEmpty(facts, text::kReportJudged,
                       judged->time + "; " + OriginWords(judged->origin, &report) +
                           (without.empty() ? "" : "\n" + without),
                       report);
        AddUnlessEmpty(facts, text::kReportStandards, StandardNames(*judged), report);
        const std::vector<std::string> others = ChangedSides(element, *judged, selected, &report);
        changes.insert(changes.end(), others.begin(), others.end());
        // Limits that are printed next to the values, and have not changed, need no list.
        if ((report.Options() & kReportLimits) == 0 || !others.empty()) {
            const std::string limits = LimitLines(result, *judged, report);
            AddUnlessEmpty(facts, text::kReportLimits,
                           limits.empty() ? Translate(text::kReportNoLimits, &report) : limits, report);
        }
    }
    AddUnlessEmpty(facts, text::kReportChanged, Joined(changes, "\n"), report);
    return facts;
}

std::vector<ReportFact> Particulars(const ElementFile& file, const IReportDocument& report) {
    std::vector<ReportFact> facts;
    const auto add = [&](std::string_view label, std::string text) {
        const std::string name = Translate(label, &report);
        const bool known = std::any_of(facts.begin(), facts.end(), [&](const ReportFact& fact) {
            return fact.label == name && fact.text == text;
        });
        if (!known && !text.empty()) facts.push_back({name, std::move(text)});
    };
    for (const auto& element : SurveysOf(file.Elements())) {
        const auto survey = std::dynamic_pointer_cast<CResultMQSA>(element->Result());
        if (!survey) continue;
        const SurveyRecord& record = survey->Record();
        add(text::kReportSite, SurveyField(record, survey::kSite));
        add(text::kReportRoom, SurveyField(record, survey::kRoomId));
        add(text::kReportUnit, UnitWords(record));
        add(text::kReportTechnologist, SurveyField(record, survey::kTechnologist));
        // The date of a survey without entries is only the day on which the file was made.
        if (survey->Status() != kNotTested) add(text::kReportSurveyDate, SurveyDate(record));
    }
    return facts;
}

}  // namespace vorex

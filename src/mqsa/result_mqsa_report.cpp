#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "foundation/host_services.h"
#include "foundation/number_text.h"
#include "foundation/report_markup.h"
#include "foundation/survey_text_keys.h"
#include "foundation/utilities.h"
#include "mqsa/result_mqsa.h"
#include "mqsa/survey_form.h"

// The printed survey: a page of comments and four forms that a person signs.

namespace vorex {

namespace {

namespace st = survey_text;
namespace form = survey_form;

constexpr int32_t kLargestPoints = 8;
constexpr int32_t kSmallestPoints = 6;
constexpr int32_t kCommentPoints = 9;
constexpr std::array<int32_t, 3> kVerdictShares = {750, 125, 125};
/// The answer, and a column that is free for initials.
constexpr std::array<int32_t, 3> kAssistantShares = {500, 200, 100};
/// Room for a signature, about a centimetre of lines.
constexpr int32_t kSignatureLines = 3;
/// Lines of a box on a full page, and in renderers that measure nothing.
constexpr int32_t kFewestLines = 3;
constexpr int32_t kUnmeasuredLines = 8;
/// What the engine may leave between two tables.
constexpr int32_t kGap = 150;
constexpr std::string_view kEndOfBox = "     ";

// -------------------------------------------------------------------------------------------- heads

using FieldText = const std::string& (*)(const SurveyRecord&);

template <const std::string_view& key>
const std::string& General(const SurveyRecord& record) {
    return record.Field(survey::kGeneralInformation, key);
}
const std::string& SurveyDate(const SurveyRecord& record) {
    return record.surveyDate;
}

/// A field in the head of a page: its label, in up to two keys, and its text. A field without a text is
/// filled in by hand.
struct HeadPlace {
    std::string_view label;
    FieldText text = nullptr;
    std::string_view labelEnd = {};
    int32_t lines = 0;  ///< of room below the label
};
struct HeadRow {
    HeadPlace left;
    HeadPlace right;
};

constexpr HeadPlace kSite{st::kFormSite, General<survey::kSite>};
constexpr HeadPlace kRoom{st::kFormRoomId, General<survey::kRoomId>};
constexpr HeadPlace kDate{st::kFormSurveyDate, SurveyDate};
constexpr HeadPlace kManufacturer{st::kFormUnitManufacturer, General<survey::kUnitManufacturer>};
constexpr HeadPlace kModel{st::kFormUnitModel, General<survey::kUnitModel>};
constexpr HeadPlace kSignature{st::kFormSignature, nullptr, {}, kSignatureLines};
constexpr HeadPlace kPhysicistName{st::kFormPhysicistName, nullptr, {}, kSignatureLines};
constexpr HeadPlace kAssistant{st::kFormAssistant, nullptr, {}, kSignatureLines};
constexpr HeadPlace kSupervisor{st::kFormSupervising, nullptr, st::kFormPhysicist, kSignatureLines};
constexpr HeadPlace kPhone{st::kFormPhone, nullptr, {}, kSignatureLines};

constexpr HeadRow kPreliminaryHead[] = {
    {kSite, kRoom},
    {kDate, {}},
    {kManufacturer, kModel},
};
constexpr HeadRow kSummaryHead[] = {
    {kSite, kManufacturer},       {kRoom, kModel}, {{st::kFormReportDate}, {st::kFormInstalled}}, {kDate, {}},
    {kPhysicistName, kSignature},
};
constexpr HeadRow kAssistantHead[] = {
    {kSite, kManufacturer}, {kRoom, kModel}, {kDate, {}}, {kSupervisor, kSignature}, {kAssistant, kSignature},
};
/// For the other helpers.
constexpr HeadRow kAssistantSignatures[] = {{kAssistant, kSignature}, {kAssistant, kSignature}};
constexpr HeadPlace kPhysicistSignature[] = {kSignature, kPhysicistName, kPhone};

std::string HeadCell(const HeadPlace& place, const SurveyRecord& record, const IReportDocument& report) {
    if (place.label.empty()) return {};
    std::string words = Translate(place.label, &report);
    if (!place.labelEnd.empty()) words += Translate(place.labelEnd, &report);
    if (place.text != nullptr) words += place.text(record);
    return markup::Text(words) + form::RoomToWrite(place.lines);
}

// ------------------------------------------------------------------------------------------- tables

constexpr std::string_view kProgramTexts[kTechnologistItemCount] = {
    st::kProgram1, st::kProgram2, st::kProgram3, st::kProgram4,  st::kProgram5,  st::kProgram6,
    st::kProgram7, st::kProgram8, st::kProgram9, st::kProgram10, st::kProgram11,
};
constexpr std::size_t kFirstAcrAnswer = kAssemblyItemCount;
constexpr std::size_t kFirstMqsaAnswer = kFirstAcrAnswer + kTechnologistItemCount;
constexpr std::size_t kFirstAssistantAnswer = kFirstMqsaAnswer + kTechnologistItemCount;

std::string_view AnswerKey(int32_t status) {
    if (status == kPassed) return text::kPass;
    return status == kFailed ? text::kFail : text::kNotApplicable;
}

/// A verdict by its key; a failed one is marked.
std::string Verdict(std::string_view textKey, const IReportDocument& report) {
    const std::string words = markup::Text(Translate(textKey, &report));
    return textKey == text::kFail ? std::string(markup::kFailMark) + words : words;
}

std::string Row(const std::string& label, std::initializer_list<std::string> cells) {
    std::string row = label;
    for (const std::string& cell : cells) row += markup::kCell + cell;
    return row + markup::kRowEnd;
}

std::string VerdictLine(std::string_view line, const VerdictRow& verdicts, const IReportDocument& report) {
    return Row(markup::Text(line),
               {Verdict(verdicts[kAcrColumn], report), Verdict(verdicts[kMqsaColumn], report)});
}

/// A heading cell in the first column, which has no margin before it.
std::string FirstHeading(std::string_view textKey, const IReportDocument& report) {
    return markup::Heading(Translate(textKey, &report)).substr(1);
}

std::string VerdictHead(std::string_view caption, const IReportDocument& report) {
    return FirstHeading(caption, report) + markup::Heading(Translate(st::kAcrGuidesPassFail, &report)) +
           markup::Heading(Translate(st::kMqsaRegsPassFail, &report)) + markup::kRowEnd;
}

/// The technologist's programme with its answers.
std::string ProgramRows(const ItemStatuses& statuses, const IReportDocument& report) {
    std::string rows = VerdictHead(st::kLog14, report);
    for (std::size_t i = 0; i < kTechnologistItemCount; ++i)
        rows += VerdictLine(Translate(kProgramTexts[i], &report),
                            {std::string(AnswerKey(statuses.at(kFirstAcrAnswer + i))),
                             std::string(AnswerKey(statuses.at(kFirstMqsaAnswer + i)))},
                            report);
    return rows;
}

// -------------------------------------------------------------------------------------------- pages

/// A form: framed tables below a title, in the largest type in which they fit the page.
class FormPage {
  public:
    FormPage(IReportDocument& report, const SurveyRecord& record) : mReport(report), mRecord(record) {}

    void Head(std::span<const HeadRow> rows) {
        std::string table;
        for (const HeadRow& row : rows)
            table += Row(HeadCell(row.left, mRecord, mReport), {HeadCell(row.right, mRecord, mReport)});
        Add(form::EqualColumns(mReport, 2), table);
    }
    void Verdicts(const std::string& rows) { Add(form::FramedColumns(mReport, kVerdictShares), rows); }
    void AssistantAnswers(const std::string& rows) {
        Add(form::FramedColumns(mReport, kAssistantShares), rows);
    }
    void Note(std::string_view textKey) {
        Add(form::EqualColumns(mReport, 1), markup::Text(Translate(textKey, &mReport)) + markup::kRowEnd);
    }
    /// Room to write by hand: what the other parts leave of the page.
    void Box(std::string_view caption) {
        mBox = mParts.size();
        Add(form::EqualColumns(mReport, 1), FirstHeading(caption, mReport) + markup::kRowEnd);
    }
    void PhysicistSignature() {
        std::string row;
        for (const HeadPlace& place : kPhysicistSignature)
            row += (row.empty() ? "" : "|") + HeadCell(place, mRecord, mReport);
        Add(form::EqualColumns(mReport, static_cast<int32_t>(std::size(kPhysicistSignature))),
            row + markup::kRowEnd);
    }

    void Print(std::string_view subtitle) {
        mReport.Alignment(kAlignCentre);
        mReport.PrintHeading(Translate(st::kFormTitle, &mReport),
                             subtitle.empty() ? std::string() : Translate(subtitle, &mReport));
        mReport.Alignment(kAlignLeft);
        for (int32_t points = kLargestPoints; points >= kSmallestPoints; --points) {
            mReport.Style(points);
            if (HeightFrom(0) <= mReport.SpaceLeft()) break;
        }
        for (std::size_t i = 0; i < mParts.size(); ++i) {
            const Part& part = mParts[i];
            const std::string rows = i == mBox ? part.rows + BoxRow(LinesOfBox()) : part.rows;
            if (i == mBox && mReport.TableHeight(part.columns, rows) > mReport.SpaceLeft()) mReport.NewPage();
            mReport.PrintTable(part.columns, rows);
        }
    }

  private:
    struct Part {
        std::string columns;
        std::string rows;
    };

    void Add(std::string columns, std::string rows) {
        mParts.push_back({std::move(columns), std::move(rows)});
    }
    static std::string BoxRow(int32_t lines) {
        return form::RoomToWrite(lines).append(kEndOfBox) + markup::kRowEnd;
    }
    /// Height of this part and all that follow, with the box at its smallest.
    int32_t HeightFrom(std::size_t first) {
        int32_t height = 0;
        for (std::size_t i = first; i < mParts.size(); ++i)
            height += kGap + mReport.TableHeight(mParts[i].columns,
                                                 mParts[i].rows + (i == mBox ? BoxRow(kFewestLines) : ""));
        return height;
    }
    int32_t LinesOfBox() {
        const std::string& columns = mParts[mBox].columns;
        const int32_t line =
            mReport.TableHeight(columns, BoxRow(2)) - mReport.TableHeight(columns, BoxRow(1));
        if (line <= 0) return kUnmeasuredLines;
        return kFewestLines + std::max(0, mReport.SpaceLeft() - HeightFrom(mBox)) / line;
    }

    IReportDocument& mReport;
    const SurveyRecord& mRecord;
    std::vector<Part> mParts;
    std::size_t mBox = std::string::npos;
};

}  // namespace

void CResultMQSA::GetPreliminaryResultsData(IReportDocument& report,
                                            const CConfigMQSA* /*configuration*/) const {
    FormPage page(report, mRecord);
    page.Head(kPreliminaryHead);
    std::string tests = VerdictHead(st::kFormTests, report);
    for (std::size_t i = 0; i < kPreliminaryRows; ++i)
        tests += VerdictLine(Translate(PreliminaryTexts()[i], &report), mTables.preliminary[i], report);
    page.Verdicts(tests);
    page.Note(st::kFormFootnote);
    page.Box(st::kFormCorrectiveAction);
    page.Verdicts(ProgramRows(Statuses(), report));
    page.PhysicistSignature();
    page.Print(st::kFormPreliminary);
}

void CResultMQSA::GetSummaryOneData(IReportDocument& report, const CConfigMQSA* /*configuration*/) const {
    constexpr std::size_t kFiberRow = 18;
    const std::string* const scores[] = {&mFiber, &mSpeck, &mMass};
    FormPage page(report, mRecord);
    page.Head(kSummaryHead);
    std::string rows = VerdictHead(st::kFormTests, report);
    for (std::size_t i = 0; i < kSummaryRows; ++i) {
        std::string line = Translate(SummaryTexts()[i], &report);
        if (i >= kFiberRow && i < kFiberRow + std::size(scores))
            line += markup::Number(*scores[i - kFiberRow], report);
        rows += VerdictLine(line, mTables.summary[i], report);
    }
    page.Verdicts(rows);
    page.Note(st::kFormImportant);
    page.Print({});
}

void CResultMQSA::GetSummaryTwoData(IReportDocument& report, const CConfigMQSA* /*configuration*/) const {
    FormPage page(report, mRecord);
    page.Verdicts(ProgramRows(Statuses(), report));
    page.Box(st::kFormRecommendations);
    page.Print({});
}

void CResultMQSA::GetAssistantLogData(IReportDocument& report, const CConfigMQSA* /*configuration*/) const {
    FormPage page(report, mRecord);
    page.Head(kAssistantHead);
    const ItemStatuses statuses = Statuses();
    std::string rows = FirstHeading(st::kFormAssistantTests, report) +
                       markup::Heading(Translate(text::kReportStatus, &report)) + markup::kRowEnd;
    const auto texts = PreliminaryTexts();
    for (std::size_t i = 0; i <= texts.size(); ++i)
        rows += Row(markup::Text(Translate(i < texts.size() ? texts[i] : st::kLog14, &report)),
                    {Verdict(AnswerKey(statuses.at(kFirstAssistantAnswer + i)), report), {}});
    page.AssistantAnswers(rows);
    page.Head(kAssistantSignatures);
    page.Print(st::kFormAssistantLog);
}

// ------------------------------------------------------------------------------------------ comments

bool CResultMQSA::HasPageComments() const {
    return std::any_of(mRecord.comments.begin(), mRecord.comments.end(),
                       [](const std::string& comment) { return !comment.empty(); });
}

namespace {

/// Assumed height of a comment when deciding whether it fits on the page.
int32_t EstimatedHeight(std::string_view comment, IReportDocument& report) {
    constexpr int32_t kUnused = 1680;
    constexpr double kRounding = 0.499;
    constexpr double kLineHeight = 197.03636;
    const int32_t room = report.Metric(kTextWidth) - kUnused;
    int64_t lines = 0;
    if (room > 0)
        ForEachPart(comment, '\n', [&](std::string_view line) {
            if (line.ends_with('\r')) line.remove_suffix(1);
            lines += static_cast<int64_t>(double(report.TextWidth(line)) / room + kRounding);
        });
    return static_cast<int32_t>(static_cast<double>(lines) * kLineHeight);
}

}  // namespace

void CResultMQSA::PrintComment(IReportDocument& report) const {
    if (!HasPageComments()) return;
    const std::string columns = form::CommentColumns(report);
    report.Style(kCommentPoints);
    if (mComment.empty()) {
        report.PrintTable(columns, markup::Heading(Translate(text::kComments, &report)) + markup::kRowEnd);
        form::DrawRule(report);
    }
    for (std::size_t i = 0; i < mRecord.comments.size(); ++i) {
        const std::string& comment = mRecord.comments[i];
        if (comment.empty()) continue;
        const std::string name = markup::Line(Translate(PageText(static_cast<SurveyPage>(i)), &report) + ":");
        const std::string block = markup::kCell + markup::Text(comment) + markup::kCell + markup::kRowEnd;
        const int32_t height = std::max(EstimatedHeight(comment, report), report.TableHeight(columns, block));
        // Even a comment that is longer than a page begins below its name.
        const int32_t nameHeight = report.TableHeight(columns, name);
        const int32_t left = report.SpaceLeft();
        const bool fitsHere = nameHeight + height <= left;
        const bool fitsNowhere = !fitsHere && nameHeight + height > left + report.Position();
        if (!fitsHere && !(fitsNowhere && left >= 2 * nameHeight)) report.NewPage();
        report.PrintTable(columns, name + block);
    }
}

}  // namespace vorex

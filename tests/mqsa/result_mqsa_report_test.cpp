#include <algorithm>
#include <regex>

#include "foundation/report_markup.h"
#include "support/recording_report.h"
#include "survey_fixture.h"

namespace vorex::test {
namespace {

constexpr uint8_t kPassColumn = 2;
constexpr uint8_t kFailColumn = 3;
const std::string kMark(markup::kFailMark);

/// The printable width of the report is 10080 twips: 0.75 of it 7560, 0.125 of it 1260.
const std::string kVerdictColumns = "table <+#7560|^+#1260|^+#1260;\n";
const std::string kHeads = "|{\\i\\b ACR Guides (Pass/Fail)}|{\\i\\b MQSA Regs(Pass / Fail)};\n";
const std::string kTitle = "MEDICAL PHYSICIST'S MAMMOGRAPHY QC TEST SUMMARY";
const std::string kRoom = "\r\n\r\n\r\n";

std::string Times(const std::string& part, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += part;
    return all;
}

class SurveyReport : public SurveyTest {
  protected:
    void SetUp() override {
        SurveyTest::SetUp();
        report.options = kReportComments;
        SurveyRecord& record = survey->Record();
        record.Field("GeneralInformation", "Site") = "Clinic|2";
        record.Field("GeneralInformation", "RoomID") = "M2";
        record.Field("GeneralInformation", "XrayUnitManufacturer") = "Brenlo";
        record.Field("GeneralInformation", "XrayUnitModel") = "500";
        record.surveyDate = "2026-03-01";
    }
    /// Headings and page breaks of the printed element, a line each.
    std::string Outline() {
        element->PrintReport(&report, nullptr);
        std::string outline;
        for (const std::string& call : report.calls)
            if (call.starts_with("heading") || call == "page") outline += call + "\n";
        return outline;
    }
    void ExpectBegin(const std::string& text) const {
        EXPECT_EQ(report.Calls().substr(0, text.size()), text);
    }
    void ExpectEnd(const std::string& text) const {
        EXPECT_TRUE(report.Calls().ends_with(text)) << report.Calls();
    }
    /// The answers of the rows that have some, "|Pass|NA;" each.
    std::string Answers() const {
        static const std::regex kAnswers("\\|[^|;\n]*(Pass|Fail|NA|-)\\|[^|;\n]*(Pass|Fail|NA|-)?;\n");
        std::string answers;
        const std::string rows = report.Rows();
        for (std::sregex_iterator at(rows.begin(), rows.end(), kAnswers), end; at != end; ++at)
            answers += at->str();
        return answers;
    }

    RecordingReport report;
};

/// Frame and first rows of each form, and those rows that say something of their own; the other rows are
/// labels with the answers that the tables of `survey_verdict_test.cpp` hold.
TEST_F(SurveyReport, ThePreliminaryPageShowsEachTestWithBothAnswers) {
    survey->GetPreliminaryResultsData(report, nullptr);
    ExpectBegin("align 1\nheading " + kTitle +
                " / Preliminary Results\nalign 0\nstyle 8\ntable <+#5040|<+#5040;\n"
                "Site: Clinic\\|2|Room ID: M2;\nSurvey Date: 2026-03-01|;\n"
                "X-Ray Unit Manufacturer: Brenlo|Model: 500;\n" +
                kVerdictColumns + "{\\i\\b MEDICAL PHYSICIST's QC Tests }" + kHeads);
    // A survey that was never evaluated: Pass, and NA where the tables start so.
    EXPECT_EQ(Answers(), Times("|Pass|Pass;\n", 12) + "|Pass|NA;\n" + Times("|NA|NA;\n", 11));
    ExpectEnd("table <+#3360|<+#3360|<+#3360;\nSignature" + kRoom + "|PHYSICIST's Name:" + kRoom +
              "|Phone Number:" + kRoom + ";\n");
}

TEST_F(SurveyReport, TheFirstSummaryPageShowsScoresAndKeepsItsGaps) {
    Cell(GridId::kImageQuality, 14, 2) = "4.5";
    Cell(GridId::kImageQuality, 17, 2) = "3";
    Cell(GridId::kImageQuality, 20, 2) = "2.5";
    survey->RecalculatePages();
    Cell(GridId::kResolution, 7, 2) = "12";
    Cell(GridId::kViewbox, 3, 1) = "2999";
    survey->UpdateStatus(*element, nullptr);
    survey->GetSummaryOneData(report, nullptr);
    ExpectBegin("align 1\nheading " + kTitle +
                " / \nalign 0\nstyle 8\ntable <+#5040|<+#5040;\n"
                "Site: Clinic\\|2|X-Ray Unit Manufacturer: Brenlo;\nRoom ID: M2|Model: 500;\n"
                "Report Date: |Date of Installation: ;\nSurvey Date: 2026-03-01|;\n"
                "PHYSICIST's Name:" +
                kRoom + "|Signature" + kRoom + ";\n");
    const std::string pass = "|Pass|Pass;\n", head = "|-|-;\n", none = "|NA|NA;\n";
    const std::string fail = "|" + kMark + "Fail|" + kMark + "Fail;\n";
    EXPECT_EQ(Answers(), none + head + Times(pass, 3) + head + Times(fail, 2) + head + Times(pass, 2) +
                             "|Pass|NA;\n" + head + pass + head + pass + head + pass + Times(head, 4) +
                             Times(none, 2) + head + none + head + Times(none, 3) + head + "|" + kMark +
                             "Fail|NA;\n|Pass|NA;\n");
    for (const char* row :
         {"           Phantom image quality scores:       Fibers  :4.5|-|-;", "       Specks  :3|",
          "       Masses  :2.5|",
          "    Average glandular dose to a 4.2-cm-thick breast on your unit is                    mrad|"})
        EXPECT_NE(report.Rows().find(row), std::string::npos) << row;
}

TEST_F(SurveyReport, TheSecondSummaryPageHasTheTechnologistsProgrammeAndABox) {
    AnswerAll(kPassColumn);
    survey->MQSAClickHandle(13 + 11, kFailColumn);  // PR12, the MQSA answer of the first line
    survey->GetSummaryTwoData(report, nullptr);
    ExpectBegin("align 1\nheading " + kTitle + " / \nalign 0\nstyle 8\n");
    EXPECT_EQ(Answers(), "|Pass|" + kMark + "Fail;\n" + Times("|Pass|Pass;\n", 10));
    ExpectEnd("table <+#10080;\n{\\i\\b Medical Physicist's Recommendations for Quality Improvement:};\n" +
              Times("\r\n", 8) + "     ;\n");
}

TEST_F(SurveyReport, TheAssistantLogHasFourteenAnswersAndPlacesToSign) {
    survey->MQSAClickHandle(13 + 22, kPassColumn);       // ALog1
    survey->MQSAClickHandle(13 + 22 + 13, kFailColumn);  // ALog14
    survey->GetAssistantLogData(report, nullptr);
    const std::string signature = kRoom + "|Signature" + kRoom + ";\n";
    ExpectBegin("align 1\nheading " + kTitle +
                " / Trainee or Assistant Log\nalign 0\nstyle 8\ntable <+#5040|<+#5040;\n"
                "Site: Clinic\\|2|X-Ray Unit Manufacturer: Brenlo;\nRoom ID: M2|Model: 500;\n"
                "Survey Date: 2026-03-01|;\nSupervising Medical Physicist: " +
                signature + "Trainee or Assistant: " + signature +
                "table <+#5040|^+#2016|^+#1008;\n{\\i\\b Medical Physicist's QC Tests Performed "
                "by the Trainee or Assistant}|{\\i\\b Status};\n");
    EXPECT_EQ(Answers(), "|Pass|;\n" + Times("|NA|;\n", 12) + "|" + kMark + "Fail|;\n");
    ExpectEnd("table <+#5040|<+#5040;\n" + Times("Trainee or Assistant: " + signature, 2));
}

TEST_F(SurveyReport, TheRowsOfTheFormsHaveTheirLabels) {
    survey->GetPreliminaryResultsData(report, nullptr);
    survey->GetSummaryOneData(report, nullptr);
    survey->GetAssistantLogData(report, nullptr);
    const std::string rows = report.Rows();
    // clang-format off
    for (const char* label :
         {"1.  Mammographic Unit Assembly Evaluation|", "4.  Automatic Exposure Control (AEC) System Performance|",
          "7.  Phantom Image Quality Evaluation**|", "10. Breast Entrance Exposure, Average Glandular Dose,|",
          "           AEC Reproducibility, and|", "           Radiation Output Rate|", "is 50 lux or less|",
          "**If any of the starred MQSA tests fail", "{\\i\\b Recommended Corrective Action:};", "2% of SID|",
          "{\\i\\b Evaluation of Site's Technologist QC Program}|", "1.  Darkroom cleanliness (daily)|",
          "10. Analysis of fixer retention (quarterly)|", "11. Visual checklist (monthly)|", "1% of SID|",
          "below 3 mGy (300 mrad)|", "513 mR/sec (MQSA)            mR/sec |", "Important : If either test #7",
          "7.  Phantom Image Quality Evaluation|", "Evaluation of Site's Technologist QC Program|NA|;"})
        // clang-format on
        EXPECT_NE(rows.find(label), std::string::npos) << label;
}

TEST_F(SurveyReport, ThePagesComeInTheirOrderEachOnAPageOfItsOwn) {
    const std::string forms = "heading " + kTitle + " / Preliminary Results\npage\nheading " + kTitle +
                              " / \npage\nheading " + kTitle + " / \npage\nheading " + kTitle +
                              " / Trainee or Assistant Log\n";
    const std::string frame = "heading Annual Mammography Survey / \n";
    EXPECT_EQ(Outline(), frame + forms);

    report = RecordingReport();
    report.options = kReportComments;
    report.Position(5000);
    survey->Record().comments[0] = "Words";
    EXPECT_EQ(Outline(), "page\n" + frame + "page\n" + forms);

    report = RecordingReport();
    report.options = kReportComments;
    survey->Record().comments[0].clear();
    survey->Comment("Words of the operator");
    EXPECT_EQ(Outline(), frame + "page\n" + forms);
}

TEST_F(SurveyReport, WhatIsPrintedFollowsStatusAndOptions) {
    const struct {
        uint8_t answers;  ///< column of the sheet, 0 for none
        int32_t options;
        bool frame, forms;
    } cases[] = {
        {0, kReportComments, true, true},
        {0, kReportComments | kReportFailuresOnly, false, false},
        {kPassColumn, kReportComments | kReportFailuresOnly, false, false},
        {kFailColumn, kReportComments | kReportFailuresOnly, true, true},
        {kFailColumn, kReportComments, true, true},
        {kFailColumn, 0, true, false},
        {kFailColumn, kReportFailuresOnly, true, false},
    };
    for (const auto& c : cases) {
        if (c.answers != 0) AnswerAll(c.answers);
        report = RecordingReport();
        report.options = c.options;
        const std::string outline = Outline();
        EXPECT_EQ(outline.find("heading Annual") != std::string::npos, c.frame) << c.options;
        EXPECT_EQ(outline.find(kTitle) != std::string::npos, c.forms) << c.options;
    }
}

TEST_F(SurveyReport, TheOutcomesOfTheTestsAreCopiedBeforeTheyArePrinted) {
    survey->Cells({.Dose80 = kFailed});
    element->PrintReport(&report, nullptr);
    const std::string row = "           AEC Reproducibility, and|" + kMark + "Fail|" + kMark + "Fail;\n";
    EXPECT_NE(report.Rows().find(row), std::string::npos) << report.Rows();
}

TEST_F(SurveyReport, EveryTextIsAskedForInTheLanguageOfTheReport) {
    report.words["22237::Pass"] = "Bestanden";
    report.words["22238::Fail"] = "Nicht bestanden";
    report.words["22887::1.  Mammographic Unit Assembly Evaluation"] = "1.  Gerät";
    report.decimalSign = ',';
    Cell(GridId::kImageQuality, 14, 2) = "4.5";
    survey->GridChanged(GridId::kImageQuality);
    report.words["22881::Supervising "] = "Aufsichtführender ";
    report.words["22883::Medical Physicist: "] = "Medizinphysiker: ";
    AnswerAll(kFailColumn);
    survey->UpdateStatus(*element, nullptr);
    element->PrintReport(&report, nullptr);
    const std::string rows = report.Rows();
    EXPECT_NE(rows.find("1.  Gerät|" + kMark + "Nicht bestanden|" + kMark + "Nicht bestanden;\n"),
              std::string::npos);
    EXPECT_NE(rows.find("Aufsichtführender Medizinphysiker: "), std::string::npos);
    EXPECT_NE(rows.find("Fibers  :4,5|-|-;"), std::string::npos);
    EXPECT_EQ(rows.find("|Pass|"), std::string::npos);
    EXPECT_EQ(rows.find("Fail|"), std::string::npos);
}

// -------------------------------------------------------------------------------------------- comments

TEST_F(SurveyReport, CommentsAreUnderTheNamesOfTheirPages) {
    survey->PrintComment(report);
    EXPECT_EQ(report.Calls(), "");
    for (std::size_t i = 0; i < kPageCount; ++i)
        survey->Record().comments[i] = "Words; of page " + std::to_string(i);
    survey->PrintComment(report);
    const std::string table = "table <+560|<8960|<+!560;\n";
    const char* const pages[] = {
        "General Information", "Technique Chart", "Assembly Evaluation", "Collimation", "Resolution", "AEC",
        "Uniformity",          "Artifact Eval",   "Image Quality",       "Viewbox"};
    std::string expected = "style 9\n" + table + "|{\\i\\b Comments:};\nline 0,200 10080,200\n";
    for (int i = 0; i < 10; ++i)
        expected += table + "|" + pages[i] + ":;\n|Words\\; of page " + std::to_string(i) + "|;\n";
    EXPECT_EQ(report.Calls(), expected);

    // The element's own comment brings the heading; a page without a comment prints nothing.
    report = RecordingReport();
    survey->Comment("Own");
    survey->Record().comments.fill("");
    survey->Record().comments[9] = "Last";
    survey->PrintComment(report);
    EXPECT_EQ(report.Calls(), "style 9\n" + table + "|Viewbox:;\n|Last|;\n");
}

/// A character is 100 twips wide and a line of the estimate 8400, so that a line counts from 4,209 twips on:
/// (width / 8400) + 0.499, cut to a whole number, times 197.03636. Heading and name are 200 high each.
TEST_F(SurveyReport, ACommentGoesToANewPageByItsEstimatedHeight) {
    const std::string wide(127, 'w');    // 12700 / 8400 + 0.499 = 2.01
    const std::string narrow(126, 'w');  // 1.999
    const std::string least(43, 'w');    // 1.01
    const std::string none(42, 'w');     // 0.999
    const struct {
        std::string comment;
        int32_t page;
        bool breaks;
    } cases[] = {
        {wide, 200 + 200 + 394, false},
        {wide, 200 + 200 + 393, true},
        {narrow + "\r\n" + none + "\n" + narrow + "\n" + least, 200 + 200 + 591, false},
        {narrow + "\r\n" + none + "\n" + narrow + "\n" + least, 200 + 200 + 590, true},
        // Never less than the height of the row, because the name would be alone.
        {none, 200 + 200 + 200, false},
        {none, 200 + 200 + 199, true},
        // Longer than any page: below its name, unless the name would be the last line of the page.
        {std::string(1000000, 'w'), 200 + 200 + 200, false},
        {std::string(1000000, 'w'), 200 + 200 + 199, true},
    };
    for (const auto& c : cases) {
        report = RecordingReport();
        report.pageHeight = c.page;
        survey->Record().comments[3] = c.comment;
        survey->PrintComment(report);
        const auto breaks = std::count(report.calls.begin(), report.calls.end(), "page");
        EXPECT_EQ(breaks, c.breaks ? 1 : 0) << c.page << " " << c.comment.size();
    }
}

TEST_F(SurveyReport, OnNarrowPaperAnEstimateCountsNoLines) {
    report.textWidth = 1680;
    report.pageHeight = 600;
    survey->Record().comments[0] = std::string(1000, 'w');
    survey->PrintComment(report);
    EXPECT_EQ(std::count(report.calls.begin(), report.calls.end(), "page"), 0);
}

}  // namespace
}  // namespace vorex::test

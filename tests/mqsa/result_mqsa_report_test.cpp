#include <gtest/gtest.h>

#include <algorithm>
#include <string>

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
    static std::string TechnologistTable(const std::string& first, const std::string& others) {
        return kVerdictColumns + "{\\i\\b Evaluation of Site's Technologist QC Program}" + kHeads +
               "1.  Darkroom cleanliness (daily)" + first +
               "2.  Processor QC - performed, records maintained, action taken when needed (daily)" + others +
               "3.  Screen cleaning (weekly)" + others +
               "4.  Mammo phantom imaging - performed, records maintained, action taken as needed (weekly)" +
               others + "5.  Darkroom fog (semiannually)" + others +
               "6.  Film-screen contact test (semiannually)" + others +
               "7.  Compression pressure monitored (semiannually)" + others +
               "8.  Repeat analysis - performed, records maintained, reviewed by radiologist (quarterly)" +
               others + "9.  Viewboxes and viewing conditions (weekly)" + others +
               "10. Analysis of fixer retention (quarterly)" + others + "11. Visual checklist (monthly)" +
               others;
    }

    RecordingReport report;
};

// clang-format off
// A survey that was never evaluated: Pass, and NA where the tables start so.
TEST_F(SurveyReport, ThePreliminaryPageStandsAsTold) {
    survey->GetPreliminaryResultsData(report, nullptr);
    const std::string pass = "|Pass|Pass;\n";
    EXPECT_EQ(report.Calls(),
              "align 1\n"
              "heading " + kTitle + " / Preliminary Results\n"
              "align 0\n"
              "style 8\n"
              "table <+#5040|<+#5040;\n"
              "Site: Clinic\\|2|Room ID: M2;\n"
              "Survey Date: 2026-03-01|;\n"
              "X-Ray Unit Manufacturer: Brenlo|Model: 500;\n" +
              kVerdictColumns + "{\\i\\b MEDICAL PHYSICIST's QC Tests }" + kHeads +
              "1.  Mammographic Unit Assembly Evaluation" + pass +
              "2.  Collimation Assessment" + pass +
              "3.  Evaluation of Focal Spot Performance" + pass +
              "4.  Automatic Exposure Control (AEC) System Performance" + pass +
              "5.  Uniformity of Screen Speed" + pass +
              "6.  Artifact Evaluation" + pass +
              "7.  Phantom Image Quality Evaluation**" + pass +
              "8.  kVp Accuracy and Reproducibility" + pass +
              "9.  Beam Quality (Half-Value Layer) Assessment" + pass +
              "10. Breast Entrance Exposure, Average Glandular Dose," + pass +
              "           AEC Reproducibility, and" + pass +
              "           Radiation Output Rate" + pass +
              "11. Viewbox Luminance and Room Illuminance|Pass|NA;\n"
              "table <+#10080;\n"
              "**If any of the starred MQSA tests fail (Phantom Image Quality and Average Glandular Dose), "
              "corrective action must be taken before any further exams are performed. Failure of any other "
              "MQSA-mandated tests requires corrective action within 30 days of the test date.;\n"
              "table <+#10080;\n"
              "{\\i\\b Recommended Corrective Action:};\n" +
              Times("\r\n", 8) + "     ;\n" +
              TechnologistTable("|NA|NA;\n", "|NA|NA;\n") +
              "table <+#3360|<+#3360|<+#3360;\n"
              "Signature" + kRoom + "|PHYSICIST's Name:" + kRoom + "|Phone Number:" + kRoom + ";\n");
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
    const std::string pass = "|Pass|Pass;\n";
    const std::string heading = "|-|-;\n";
    const std::string none = "|NA|NA;\n";
    const std::string fail = "|" + kMark + "Fail|" + kMark + "Fail;\n";
    EXPECT_EQ(report.Calls(),
              "align 1\n"
              "heading " + kTitle + " / \n"
              "align 0\n"
              "style 8\n"
              "table <+#5040|<+#5040;\n"
              "Site: Clinic\\|2|X-Ray Unit Manufacturer: Brenlo;\n"
              "Room ID: M2|Model: 500;\n"
              "Report Date: |Date of Installation: ;\n"
              "Survey Date: 2026-03-01|;\n"
              "PHYSICIST's Name:" + kRoom + "|Signature" + kRoom + ";\n" +
              kVerdictColumns + "{\\i\\b MEDICAL PHYSICIST's QC Tests }" + kHeads +
              "1.  Mammographic Unit Assembly Evaluation" + none +
              "2.  Collimation Assessment" + heading +
              "    Deviation between X-ray field and light field is less than 2% of SID" + pass +
              "    X-ray field does not extend beyond any side of the IR by more than 2% of SID" + pass +
              "    Chest wall edge of compression paddle doesn't extend beyond IR by more than 1% of SID" + pass +
              "3.  Evaluation of Focal Spot Performance" + heading +
              "    Measured performance within acceptable limits for large focal spot" + fail +
              "    Measured performance within acceptable limits for small focal spot" + fail +
              "4.  Automatic Exposure Control (AEC) System Performance" + heading +
              "    Exposure reproducibility is within acceptable limits" + pass +
              "    AEC compensation for kVp, breast thickness and image mode is adequate" + pass +
              "    AEC density control function is adequate|Pass|NA;\n"
              "5.  Uniformity of Screen Speed" + heading +
              "    Optical density range is less than or equal to 0.30" + pass +
              "6.  Artifact Evaluation" + heading +
              "    Artifacts were not apparent or not significant" + pass +
              "7.  Phantom Image Quality Evaluation" + heading +
              "    4 largest fibers, 3 largest speck groups and 3 largest masses are visible" + pass +
              "           Phantom image quality scores:       Fibers  :4.5" + heading +
              "           Phantom image quality scores:       Specks  :3" + heading +
              "           Phantom image quality scores:       Masses  :2.5" + heading +
              "8.  kVp Accuracy and Reproducibility" + heading +
              "    Measured average kVp within + 5% of indicated kVp" + none +
              "    kVp coefficient of variation < 0.02" + none +
              "9.  Beam Quality (Half-Value Layer) Assessment" + heading +
              "    Half-value layer is within acceptable lower and upper limits at all kVp values tested" + none +
              "10. Breast Entrance Exposure, Average Glandular Dose and Radiation Output Rate" + heading +
              "    Average glandular dose for average breast is below 3 mGy (300 mrad)" + none +
              "    Average glandular dose to a 4.2-cm-thick breast on your unit is                    mrad" + none +
              "    Radiation output rate is > 800 mR/sec (ACR): 513 mR/sec (MQSA)            mR/sec " + none +
              "11. Viewbox Luminance and Room Illuminance" + heading +
              "    Mammographic viewbox is capable of a luminance of at least 3000 nit|" + kMark + "Fail|NA;\n"
              "    Room illuminance (viewbox surface & seen by observer) is 50 lux or less|Pass|NA;\n"
              "table <+#10080;\n"
              "Important : If either test #7 (Phantom Image Quality Evaluation) or the Average Glandular Dose "
              "component of test #10 fail FDA's MQSA regulations, corrective action must be taken before any "
              "further examinations are performed.  Corrective action must be taken within 30 days of the "
              "test date for all other MQSA failures.;\n");
}

TEST_F(SurveyReport, TheSecondSummaryPageHasTheTechnologistsProgrammeAndABox) {
    AnswerAll(kPassColumn);
    survey->MQSAClickHandle(13 + 11, kFailColumn);  // PR12, the MQSA answer of the first line
    survey->GetSummaryTwoData(report, nullptr);
    EXPECT_EQ(report.Calls(),
              "align 1\n"
              "heading " + kTitle + " / \n"
              "align 0\n"
              "style 8\n" +
              TechnologistTable("|Pass|" + kMark + "Fail;\n", "|Pass|Pass;\n") +
              "table <+#10080;\n"
              "{\\i\\b Medical Physicist's Recommendations for Quality Improvement:};\n" +
              Times("\r\n", 8) + "     ;\n");
}

TEST_F(SurveyReport, TheAssistantLogHasFourteenAnswersAndPlacesToSign) {
    survey->MQSAClickHandle(13 + 22, kPassColumn);       // ALog1
    survey->MQSAClickHandle(13 + 22 + 13, kFailColumn);  // ALog14
    survey->GetAssistantLogData(report, nullptr);
    const std::string none = "|NA|;\n";
    EXPECT_EQ(report.Calls(),
              "align 1\n"
              "heading " + kTitle + " / Trainee or Assistant Log\n"
              "align 0\n"
              "style 8\n"
              "table <+#5040|<+#5040;\n"
              "Site: Clinic\\|2|X-Ray Unit Manufacturer: Brenlo;\n"
              "Room ID: M2|Model: 500;\n"
              "Survey Date: 2026-03-01|;\n"
              "Supervising Medical Physicist: " + kRoom + "|Signature" + kRoom + ";\n"
              "Trainee or Assistant: " + kRoom + "|Signature" + kRoom + ";\n"
              "table <+#5040|^+#2016|^+#1008;\n"
              "{\\i\\b Medical Physicist's QC Tests Performed by the Trainee or Assistant}|{\\i\\b Status};\n"
              "1.  Mammographic Unit Assembly Evaluation|Pass|;\n"
              "2.  Collimation Assessment" + none +
              "3.  Evaluation of Focal Spot Performance" + none +
              "4.  Automatic Exposure Control (AEC) System Performance" + none +
              "5.  Uniformity of Screen Speed" + none +
              "6.  Artifact Evaluation" + none +
              "7.  Phantom Image Quality Evaluation**" + none +
              "8.  kVp Accuracy and Reproducibility" + none +
              "9.  Beam Quality (Half-Value Layer) Assessment" + none +
              "10. Breast Entrance Exposure, Average Glandular Dose," + none +
              "           AEC Reproducibility, and" + none +
              "           Radiation Output Rate" + none +
              "11. Viewbox Luminance and Room Illuminance" + none +
              "Evaluation of Site's Technologist QC Program|" + kMark + "Fail|;\n"
              "table <+#5040|<+#5040;\n" +
              Times("Trainee or Assistant: " + kRoom + "|Signature" + kRoom + ";\n", 2));
}
// clang-format on

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
        bool frame;
        bool forms;
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
    survey->Cells({.BQC69 = kPassed, .Dose80 = kFailed});
    element->PrintReport(&report, nullptr);
    const std::string rows = report.Rows();
    for (const std::string& row :
         {"           AEC Reproducibility, and|" + kMark + "Fail|" + kMark + "Fail;\n",
          std::string("9.  Beam Quality (Half-Value Layer) Assessment|NA|Pass;\n"),
          std::string("8.  kVp Accuracy and Reproducibility|NA|NA;\n"),
          std::string("           Radiation Output Rate|Pass|Pass;\n")})
        EXPECT_NE(rows.find(row), std::string::npos) << row;
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

TEST_F(SurveyReport, CommentsStandUnderTheNamesOfTheirPages) {
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

    // The element's own comment brings the heading; a page without a word brings nothing.
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
        {narrow + "\r\n" + narrow + "\n" + least, 200 + 200 + 591, false},
        {narrow + "\r\n" + narrow + "\n" + least, 200 + 200 + 590, true},
        {narrow + "\n" + none + "\n" + none + "\n" + narrow, 200 + 200 + 394, false},
        {narrow + "\n" + none + "\n" + none + "\n" + narrow, 200 + 200 + 393, true},
        // Never less than the row takes: the name would stand alone.
        {none, 200 + 200 + 200, false},
        {none, 200 + 200 + 199, true},
        // Longer than any page: below its name, unless that would stand last.
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

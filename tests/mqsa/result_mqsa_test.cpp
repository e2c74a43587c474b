#include "mqsa/result_mqsa.h"

#include <filesystem>

#include "config/config_mqsa.h"
#include "foundation/host_error.h"
#include "foundation/number_text.h"
#include "foundation/survey_cells.h"
#include "foundation/survey_text_keys.h"
#include "foundation/utilities.h"
#include "host/element_base.h"
#include "mqsa/survey_entry.h"
#include "survey_fixture.h"
#include "test_paths.h"

namespace vorex {
namespace {

class ResultMqsa : public test::SurveyTest {
  protected:
    std::string Saved() const {
        auto document = std::make_shared<OutputDocument>();
        document->Top().AddChild(survey->Save(document));
        return document->Text();
    }
    static HostServices HostIn(const std::string& language) {
        ReferenceHostOptions options;
        options.language = language;
        options.languageFolders = {std::filesystem::path(test::kSourceDir) / "languages"};
        HostServices services = MakeReferenceHost(options);
        services.decimalSign = language == "en" ? '.' : ',';
        return services;
    }
    /// Loads a text into a new survey, which becomes the one under test.
    void Load(const std::string& xml) {
        const test::XmlText text(xml);
        survey = std::make_shared<CResultMQSA>();
        survey->Initialize(nullptr);
        survey->Load(text.Root(), nullptr);
    }
};

TEST_F(ResultMqsa, ANewSurveyPassesButForWhatTheTablesStartWith) {
    const SurveyTables& tables = survey->Tables();
    EXPECT_EQ(Row(tables.preliminary, 12), "Pass/NA");
    for (std::size_t row : {11U, 31U, 32U}) EXPECT_EQ(Row(tables.summary, row), "Pass/NA") << row;
    for (std::size_t row : {1U, 5U, 8U, 12U, 14U, 16U, 18U, 19U, 20U, 21U, 24U, 26U, 30U})
        EXPECT_EQ(tables.summary[row][0] + tables.summary[row][1], "--") << row;
    EXPECT_EQ(Row(tables.preliminary, 11), "Pass/Pass");
    EXPECT_EQ(survey->MeasurementCount(), 49);
    for (const int32_t none : {-1, 49}) EXPECT_EQ(survey->Measurement(none), nullptr);
    EXPECT_EQ(survey->Measurement("PR2")->Key(), "PR2");
    EXPECT_EQ(survey->Measurement("PR23"), nullptr);
    EXPECT_EQ(survey->GetDescriptions()[13], survey->GetDescriptions()[24]);  // PR1 and PR12
}

TEST_F(ResultMqsa, SavedAndLoadedItIsTheSameButForTheTwoRowsThatAreCalculatedAnew) {
    SetSurveyText(*survey, "GeneralInformation.Site", "  North Clinic ");
    SetSurveyText(*survey, "Collimation.SID", "650");
    for (const char* address : {"DeviXrayLightField(6,1)", "DeviXrayLightField(7,1)", "Resolution(7,2)"})
        SetSurveyText(*survey, address, "14");
    SetSurveyText(*survey, "Unifomity.kVpSetting", "28");
    SetSurveyText(*survey, "ArtifactEvaluation(5,2)", "false");
    SetSurveyText(*survey, "ImageQuality(14,2)", "4.5");
    SetSurveyText(*survey, "ImageQuality(1,1)", "2025-02-03");
    SetSurveyText(*survey, "ImageQuality(1,2)", "2026-03-04");
    EXPECT_EQ(survey->Record().previousFilmDate + Cell(GridId::kImageQuality, 1, 1), "2025-02-032025-02-03");
    EXPECT_EQ(survey->Record().currentFilmDate + Cell(GridId::kImageQuality, 1, 2), "2026-03-042026-03-04");
    EXPECT_FALSE(survey->HasDialog()) << "without a comment";
    survey->Comment("of the operator");
    SetSurveyText(*survey, "Comment(3)", std::string(100000, 'x'));
    AnswerSurvey(*survey, "ALog14", "fail");
    const StatusCells cells{.BQC69 = kFailed, .Dose80 = kPassed};
    survey->Cells(cells);
    Cell(GridId::kViewbox, 2, 1) = "left(¤)right";
    survey->UpdateStatus(*element, nullptr);
    survey->MTIID(1);
    const std::string first = Saved();
    const std::string sum = Cell(GridId::kLightField, 8, 1);
    EXPECT_EQ(sum, "28");
    Cell(GridId::kViewbox, 2, 1) = "left[¤]right";
    EXPECT_EQ(Saved(), first) << "a delimiter in a cell moves no other";
    Load(first);
    EXPECT_EQ(Saved(), first);
    EXPECT_EQ(survey->MTIID(), 1);
    EXPECT_EQ(survey->Cells(), cells) << "outcomes of the automatic tests";
    EXPECT_EQ(survey->Comment(), "of the operator");
    EXPECT_TRUE(survey->HasDialog());
    EXPECT_EQ(survey->Record().Field("GeneralInformation", "Site"), "North Clinic");
    EXPECT_EQ(Cell(GridId::kArtifacts, 5, 2), "False");
    EXPECT_EQ(survey->pSummPage1Fiber(), "4.5");
    EXPECT_EQ(survey->Items().back()->Status(), kFailed);
    EXPECT_EQ(survey->Status(), kFailed);
    EXPECT_EQ(Cell(GridId::kLightField, 8, 1), "");
    survey->RecalculatePages();
    EXPECT_EQ(Cell(GridId::kLightField, 8, 1), sum);
}

TEST_F(ResultMqsa, ASurveyWithoutAVerdictKeepsNoAnswers) {
    for (int32_t status : {kNotTested, kNotApplicable}) {
        survey = std::make_shared<CResultMQSA>();
        survey->Initialize(nullptr);
        survey->MQSAClickHandle(0, 4);
        survey->UpdateStatus(*element, nullptr, status == kNotApplicable);
        EXPECT_EQ(survey->Status(), status);
        EXPECT_EQ(Saved().find("<Measurement"), std::string::npos) << status;
    }
}

TEST_F(ResultMqsa, ASurveyIsTheSameFileInEveryLanguage) {
    std::string first;
    for (const char* language : {"en", "de", "fr", "es"}) {
        InstallServices(HostIn(language));
        const auto made = CreateTestElement(kMqsaSurvey);
        const auto entered = std::dynamic_pointer_cast<CTestMQSA>(made)->Survey();
        for (const char* answer : {"PR1", "ALog3"}) AnswerSurvey(*entered, answer, Translate(text::kFail));
        AnswerSurvey(*entered, "PR2", Translate(text::kNotApplicable));
        SetSurveyText(*entered, "ArtifactEvaluation(5,1)", Translate(text::kFalse));
        SetSurveyText(*entered, "ArtifactEvaluation(8,1)", Translate(text::kPass));
        SetSurveyText(*entered, "Viewbox(3,1)", "2999");
        SetSurveyText(*entered, "Collimation.SID", "650");
        SetSurveyText(*entered, "DeviXrayLightField(2,1)", "2");
        SetSurveyText(*entered, "DeviXrayLightField(3,1)", "1.5");
        SetSurveyText(*entered, "Comment(3)", "3,5 mm");
        SetSurveyText(*entered, "Resolution(1,2)", "eigene Worte");
        entered->UpdateStatus(*made, nullptr);
        const auto textOf = [](ITestElement& saved) {
            auto document = std::make_shared<OutputDocument>();
            document->Top().AddChild(saved.Save(document, 0));
            return document->Text();
        };
        const std::string text = textOf(*made);
        const test::XmlText xml(text);
        const auto loaded = LoadTestElement(xml.Root(), nullptr);
        EXPECT_EQ(textOf(*loaded), text) << language << ", loaded and saved again";
        if (first.empty()) first = text;
        EXPECT_EQ(text, first) << language;
        const auto opened = std::dynamic_pointer_cast<CResultMQSA>(loaded->Result());
        const SurveyGrid& light = opened->Record().Grid(GridId::kLightField);
        EXPECT_EQ(light.At(0, 0), Translate(survey_text::kTargetMaterial));
        EXPECT_EQ(light.At(3, 1), LocaleDecimal("1.5"));
        EXPECT_EQ(light.At(5, 1), LocaleDecimal("0.54%"));  // 3.5 / 650
        EXPECT_EQ(opened->Record().comments[3], "3,5 mm");
        EXPECT_EQ(opened->Record().Grid(GridId::kDensityControl).At(0, 1),
                  Translate(survey_text::kSmallGrid));
        EXPECT_EQ(opened->Record().Grid(GridId::kResolution).At(1, 2), "eigene Worte");
    }
}

TEST_F(ResultMqsa, OldAndForeignFilesLoadOrSayWhatIsWrong) {
    Load(
        "<ResultItem><GeneralInformation><Day>3</Day><Month>4</Month><Year>2025</Year></GeneralInformation>"
        "<Measurement Key=\"Nobody\"/><Alignment>1</Alignment></ResultItem>");
    EXPECT_EQ(survey->Record().surveyDate.substr(0, 4), "2025");
    EXPECT_EQ(survey->Record().Field("GeneralInformation", "Site"), "");
    EXPECT_EQ(Cell(GridId::kViewbox, 2, 0), "Viewbox location");  // an absent grid stays new
    EXPECT_THROW(Load("<Other/>"), HostError);
    try {
        Load("<ResultItem><Collimation><Alignment>a[¤]b</Alignment></Collimation></ResultItem>");
        FAIL() << "a grid with two cells was taken";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "\"Alignment\" has 2 cells, expected 12");
    }
    std::string many = "0";
    for (int i = 1; i < 20; ++i) many += "[¤]" + std::to_string(i);
    Load("<ResultItem><Collimation><Alignment>" + many +
         "</Alignment></Collimation><ResultComment>one[¤]two"
         "</ResultComment></ResultItem>");
    EXPECT_EQ(Cell(GridId::kAlignment, 1, 5), "11");
    EXPECT_EQ(survey->Record().comments[1], "two");
}

TEST_F(ResultMqsa, AnEmptyGridOrTableIsReadAsAnAbsentOne) {
    Load(
        "<ResultItem><Evaluation/>"
        "<Collimation><Alignment></Alignment><SID>650</SID></Collimation><SummaryPage></SummaryPage>"
        "<PreliminaryResults/></ResultItem>");
    EXPECT_EQ(Cell(GridId::kAlignment, 0, 0), "Difference between paddle edge and film");
    EXPECT_EQ(Cell(GridId::kEvaluation, 5, 0), ">7 cm");
    EXPECT_EQ(Row(survey->Tables().preliminary, 12), "Pass/NA");
    EXPECT_EQ(Row(survey->Tables().summary, 11), "Pass/NA");
    EXPECT_EQ(survey->Record().Field("Collimation", "SID"), "650");
}

TEST_F(ResultMqsa, AnItemLoadsItsOwnDescriptionValueAndType) {
    Load(
        "<ResultItem><Status>1</Status><Measurement Key=\"PR1\"><Description>Own words</Description>"
        "<Value Type=\"1\">7</Value><Status>1</Status></Measurement>"
        "<Measurement Key=\"PR2\"><Value Type=\"5\">22238::Fail</Value><Status>2</Status></Measurement>"
        "</ResultItem>");
    const CMeasurement& own = *survey->Items()[kAssemblyItemCount];
    EXPECT_EQ(own.RawDescription(), "Own words");
    EXPECT_EQ(own.ValueType(), 1);
    EXPECT_EQ(own.ValueText(), "7");
    const CMeasurement& plain = *survey->Items()[kAssemblyItemCount + 1];
    EXPECT_EQ(plain.RawDescription(), SurveyItems()[kAssemblyItemCount + 1].description);
    EXPECT_EQ(plain.ValueType(), kTextOnly);
}

TEST_F(ResultMqsa, TheServiceRecordNamesTheAnswersInAnyLanguageAlike) {
    auto texts = std::make_shared<test::FakeTexts>();
    texts->words["22237::Pass"] = "Bestanden";
    texts->words["22238::Fail"] = "Nicht bestanden";
    HostServices services = Services();
    services.text = texts;
    InstallServices(services);
    survey->UpdateStatus(*element, nullptr);
    EXPECT_FALSE(survey->ServiceRecord()) << "nothing was answered";
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {"Evaluation1", "Pass", "", "/Pass"},
        {"Evaluation3", "NA", "", "/Pass/NA"},
        {"ALog14", "Fail", "F", "/Pass/NA/Fail"}};
    for (const auto& [item, answer, code, text] : cases) {
        AnswerSurvey(*survey, item, answer);
        survey->UpdateStatus(*element, nullptr);
        ASSERT_TRUE(survey->ServiceRecord()) << item;
        EXPECT_EQ(survey->ServiceRecord()->Code(), code) << item;
        EXPECT_EQ(survey->ServiceRecord()->Text(), text) << item;
    }
    survey->UpdateStatus(*element, nullptr, true);
    EXPECT_EQ(survey->ServiceRecord()->Code(), "NA");
    EXPECT_EQ(survey->ServiceRecord()->Text(), "");
}

TEST_F(ResultMqsa, WhatCannotBeEnteredIsRefused) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"Viewbox(3,9)", "1", "column from 0 to 4"},
        {"Viewbox(-1,1)", "1", "row from 0 to 10"},
        {"Viewbox(3)", "1", "no such place"},
        {"Viewbox(3,x)", "1", "no such place"},
        {"Nowhere(1,1)", "1", "no such place"},
        {"Collimation.Sid", "1", "no such place"},
        {"Alignment(1,1)", "1", "calculated"},
        {"Viewbox(2,0)", "1", "label"},
        {"Viewbox(2,1)", "a[¤]b", "[¤]"},
        {"Comment(10)", "1", "Comment(9)"},
        {"GeneralInformation.Day", "32", "1 to 31"},
        {"ImageQuality(1,2)", "soon", "YEAR-MONTH-DAY"},
        {"ArtifactEvaluation(5,1)", "maybe", "Pass, False"},
    };
    const std::string before = Saved();
    for (const auto& [address, text, reason] : cases) {
        try {
            SetSurveyText(*survey, address, text);
            FAIL() << address;
        } catch (const SurveyEntryError& error) {
            EXPECT_NE(std::string(error.what()).find(reason), std::string::npos) << error.what();
        }
    }
    EXPECT_THROW(AnswerSurvey(*survey, "PR23", "Pass"), SurveyEntryError);
    EXPECT_THROW(AnswerSurvey(*survey, "PR1", "perhaps"), SurveyEntryError);
    EXPECT_EQ(Saved(), before);
}

TEST_F(ResultMqsa, AConfigurationComesBackCellForCell) {
    auto config = std::make_shared<CConfigMQSA>();
    std::string artifacts;
    for (int32_t row = 0; row < CConfigMQSA::kArtifactRows; ++row)
        for (int32_t column = 0; column < CConfigMQSA::kTableColumns; ++column)
            artifacts += config->Artifact(row, column) + "|";
    EXPECT_EQ(
        artifacts,
        "Image receptor size|18x24cm|24x30cm|||MAG (18x24cm)|Target|Mo|Mo|||Mo|Filter|Mo|Mo|||Mo|Focal spot|"
        "Large|Large|||Small|");
    config->Collimation(1, 1, "1,5");
    config->Artifact(0, 4, "extra");
    config->OverridePrintReport = false;
    config->PrintTheComment = "log";
    config->TestGuideConfig()->Buttons(kNaButtonBit);
    const auto clone = config->Clone();
    EXPECT_EQ(std::dynamic_pointer_cast<CConfigMQSA>(clone)->PrintTheComment, "log");
    auto document = std::make_shared<OutputDocument>();
    document->Top().AddChild(config->Save(document));
    auto copied = std::make_shared<OutputDocument>();
    copied->Top().AddChild(clone->Save(copied));
    EXPECT_EQ(copied->Text(), document->Text());
    CConfigMQSA loaded;
    const test::XmlText text(document->Text());
    loaded.Load(text.Root(), nullptr);
    EXPECT_EQ(loaded.Collimation(1, 1), "1.5");
    EXPECT_EQ(loaded.Artifact(0, 4), "extra");
    EXPECT_FALSE(loaded.OverridePrintReport);
    EXPECT_EQ(loaded.TestGuideConfig()->Buttons(), kNaButtonBit);
    EXPECT_THROW(loaded.Load(test::XmlText("<PlugInData PlugIn='Other'/>").Root(), nullptr), HostError);
}

}  // namespace
}  // namespace vorex

#include "config/config_mqsa.h"
#include "guide/guide_fixture.h"
#include "mqsa/result_mqsa.h"

namespace vorex::test {
namespace {

using GuideTable = GuideTest;
using Texts = std::vector<std::string>;

/// Exposure of test 100 with a ZRD 47500: import flag, seven readings, seven means, seven variations.
std::string ReproRow(const std::string& kvp) {
    return "0," + kvp + ",81,80.5,12.3,123,100,3.1," + kvp +
           ",81,80.5,12.3,123,100,3.1,0.0,0.0,0.0,0.0,0.0,0.0,0.0";
}

TEST_F(GuideTable, HidesTheColumnsThatTheChosenStandardDoesNotKnow) {
    Configure(kRadioRepro, kZrd, kNoDetector);
    Select({Limit("ER kVp Avg", "5"), Limit("ER Exposure", "5")});
    Open();
    Texts shown;
    for (const ResultColumn& column : Table().Columns())
        if (!column.hidden) shown.push_back(column.key);
    EXPECT_EQ(shown, (Texts{"Import Waveform", "ER kVp Avg", "ER Exposure"}));
    EXPECT_EQ(Table().ShownStandard(), (StandardName{"Site", "1"}));

    platform->onMenu = [](const auto&) { return guide_menu::kShowAll; };
    guide->OpenMenu();
    for (const ResultColumn& column : Table().Columns()) EXPECT_FALSE(column.hidden) << column.key;
    EXPECT_TRUE(guide->MenuItems().back().checked);
    guide->BuildColumns(config, true);
    EXPECT_FALSE(Table().Columns()[2].hidden);
    guide->OpenMenu();
    EXPECT_TRUE(Table().Columns()[2].hidden);
}

TEST_F(GuideTable, ShowingAllColumnsOfBothInstrumentsAllowsTyping) {
    Configure(kRadioRepro, kZrdAndMas, kZrdAndMas);
    Select({});
    Open();
    platform->onMenu = [](const auto&) { return guide_menu::kShowAll; };
    guide->OpenMenu();
    EXPECT_TRUE(Button(guide_button::kManual).enabled);
    guide->OpenMenu();
    EXPECT_FALSE(Button(guide_button::kManual).enabled);
}

TEST_F(GuideTable, AClickAsksForTheWaveformsOfAStoredExposure) {
    for (const auto& [kind, events] : {std::pair<int32_t, const char*>{kZrd, "Draw1+1"},
                                       {kMasMeter, "Draw1+3"},
                                       {kPelomark, "Draw1+1"},
                                       {kZrdAndMas, "Draw1+3 Draw1+1"}}) {
        Open(kRadioRepro, kind, kind);
        EXPECT_TRUE(Table().Press({1, 1}));
        EXPECT_EQ(Events(), "") << "nothing stored, kind " << kind;
        Expose(1, "0,1,2,3,4,5,6,7", kind == kMasMeter ? kSourceMas : kSourceZrd);
        EXPECT_TRUE(Table().Press({1, 1}));
        EXPECT_EQ(Events(), events) << kind;
        element->Sequence()->gRunActive = true;
        EXPECT_TRUE(Table().Press({1, 1}));
        EXPECT_EQ(Events(), "") << kind;
        element->Sequence()->gRunActive = false;
    }
}

TEST_F(GuideTable, AClickOnAMasColumnOnlyShowsItsValues) {
    Open(kRadioAccuracy, kZrdAndMas, kZrdAndMas);
    Expose(1, "0,80.1,81,80.5,12.3,123,100,3.1,0.1,0.1");
    Expose(1, "0,200,20.1,,0.61", kSourceMas);
    EXPECT_TRUE(Table().Press({1, 12}));
    EXPECT_EQ(Events(), "");
    EXPECT_EQ(guide->Details(), (Texts{"Exposure #1: 200.0, 20.1, , 0.6119", "mA: 200.0 mA - Pass",
                                       "mAs: 20.1 mAs - Pass", "mAs/Pulse: ", "Dose/mAs: 0.6119 - Pass"}));
}

TEST_F(GuideTable, ANarrowTableIsShownAsAWhole) {
    Open(kRadioAccuracy, kMasMeter, kMasMeter);
    Expose(1, "0,200,20.1,,0.61", kSourceMas);
    EXPECT_TRUE(Table().Press({1, 1}));
    ASSERT_EQ(guide->Details().size(), 5U);
    EXPECT_EQ(guide->Details()[0], "Exposure #1: 200.0, 20.1, , 0.61");
}

TEST_F(GuideTable, AClickedCellShowsItsLimits) {
    Configure(kRadioAccuracy, kZrd, kNoDetector);
    Select({Limit("ER kVp Avg", "84", "76"), Limit("ER HVL", "", "2.3")});
    Open();
    Expose(1, "0,80.1,81,80.5,12.3,123,100,3.1,0.1,0.1");
    Table().Press({1, 2});
    EXPECT_EQ(guide->Details(),
              (Texts{"Exposure #1", "kVp Avg: 80.1 KV - Pass", "    Site 1: ≥ 76 KV, ≤ 84 KV"}));
    Table().Press({1, 8});
    EXPECT_EQ(guide->Details(), (Texts{"Exposure #1", "HVL: 3.1 mm Al - Pass", "    Site 1: ≥ 2.3 mm Al"}));
    EXPECT_EQ(guide->CurrentExposure(), 1);
}

TEST_F(GuideTable, NoLimitIsShownForAnErrorThatTheCriterionExcludes) {
    Configure(kRadioAccuracy, kZrd, kNoDetector);
    config->pNoOfExposures = 1;
    config->passFailCriterion = {"1"};
    Select({Limit("ER RA Percentage kVp Avg Error", "5", "-5"),
            Limit("ER RA Absolute kVp Avg Error", "4", "-4")});
    Open();
    Expose(1, "0,80.1,81,80.5,12.3,123,100,3.1,0.1,7.9");
    Table().Press({1, 9});
    EXPECT_EQ(guide->Details(),
              (Texts{"Exposure #1", "%kVp Avg. Error: 0.1 % - Pass", "    Site 1: ≥ -5.0 %, ≤ 5.0 %"}));
    Table().Press({1, 10});
    EXPECT_EQ(guide->Details(), (Texts{"Exposure #1", "Absolute kVp Avg. Error: 7.9 KV - Pass"}));
}

TEST_F(GuideTable, Test100AlsoShowsTheMeanAndTheVariation) {
    Open(kRadioRepro);
    Expose(1, ReproRow("80.1"));
    Table().Press({1, 2});
    EXPECT_EQ(guide->Details(), (Texts{"Exposure #1", "kVp Avg: 80.1 KV - Pass",
                                       "Avg. kVp Avg: 80.1 KV - Pass", "CV kVp Avg: 0.0 - Pass"}));
}

// ------------------------------------------------------------------------------------------- editing

TEST_F(GuideTable, AnImportMarkGoesIntoTheConfiguration) {
    Open(kRadioRepro);
    EXPECT_TRUE(Table().ToggleCheck({2, 1}));
    EXPECT_EQ(config->GetValue(1, 1), "1");
    EXPECT_TRUE(Table().ToggleCheck({2, 1}));
    EXPECT_EQ(config->GetValue(1, 1), "0");
    for (const auto& [exposure, column] : {std::pair<uint8_t, uint8_t>{0, 1}, {1, 0}, {1, 99}})
        Table().events.CellEdited.Raise(exposure, column, "1");
    EXPECT_EQ(config->importFlags, (Texts{"0", "0"})) << "no such cell";
}

TEST_F(GuideTable, MasValuesAreTypedOnlyWhileManualInputIsChosen) {
    Open(kRadioAccuracy, kMasMeter, kMasMeter);
    Expose(1, "0,200,20.1,,0.61", kSourceMas);
    EXPECT_FALSE(Table().Edit({1, 2}, "210"));
    guide->PressButton(guide_button::kManual);
    EXPECT_FALSE(Table().Edit({2, 2}, "210")) << "not stored";
    EXPECT_FALSE(Table().Edit({1, 1}, "1")) << "a check mark";
    EXPECT_TRUE(Table().Edit({1, 2}, " 2x10,5- "));
    EXPECT_EQ(element->result->GetValue(0, 2), "210.5*");
    EXPECT_EQ(Table().Rows()[0].cells[1].text, "210.5* mA");
    EXPECT_EQ(config->PrintTheComment, "31494::Exposure #%%1, %%3: %%2|1|210.5*|22110::mA");
    EXPECT_EQ(LogWords(config->PrintTheComment), "Exposure #1, mA: 210.5*");
    guide->PressButton(guide_button::kShunt);
    EXPECT_FALSE(Table().Edit({1, 2}, "220"));
}

/// What a window may offer, and what it may send.
TEST_F(GuideTable, TheGuideTakesWhatItsTableTakes) {
    using Kind = OperatorAct::Kind;
    Configure(kRadioAccuracy, kMasMeter, kMasMeter);
    config->ManualSelectedInTestGuide = true;
    Open();
    const OperatorAct type{Kind::kType, 1, 2, "210,5"};
    EXPECT_FALSE(guide->Takes(type)) << "no result is shown yet";
    Expose(1, "0,200,20.1,,0.61", kSourceMas);
    const struct {
        OperatorAct act;
        bool taken;
    } cases[] = {
        {{Kind::kClick, 1, 2}, true},
        {{Kind::kClick, 0, 2}, false},
        {{Kind::kClick, 1, 99}, false},
        {{Kind::kClick, 1, 0}, false},
        {{Kind::kClick, 2, 2}, false},
        {{Kind::kClick, 257, 2}, false},
        {{Kind::kClick, -1, 2}, false},
        {{Kind::kCheck, 1, 1}, true},
        {{Kind::kCheck, 1, 2}, false},
        {{Kind::kType, 1, 1, "1"}, false},
        {type, true},
        {{Kind::kMenu, 1, 2}, true},
        {{Kind::kMenu, 99, 2}, false},
        {{Kind::kMenu}, true},
        {{Kind::kChoose, 100}, false},
        {{Kind::kConfirm, 1}, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(guide->Takes(c.act), c.taken) << static_cast<int>(c.act.kind) << " " << c.act.number;
        const int64_t acts = guide->Acts();
        EXPECT_EQ(guide->Act(c.act), c.taken);
        EXPECT_EQ(guide->Acts(), acts + (c.taken ? 1 : 0));
    }
    EXPECT_EQ(element->result->GetValue(0, 2), "210.5*");
    guide->Gate([](const OperatorAct& act) { return act.kind != Kind::kType; });
    EXPECT_FALSE(guide->Act({Kind::kType, 1, 2, "220"}));
    EXPECT_EQ(element->result->GetValue(0, 2), "210.5*");
}

TEST_F(GuideTable, ATypedValueIsJudgedAnew) {
    Open(kRadioAccuracy, kMasMeter, kMasMeter);
    element->guideLimits->AtMost("ER mA", 205);
    Expose(1, "0,200,20.1,,0.61", kSourceMas);
    guide->PressButton(guide_button::kManual);
    Table().Edit({1, 2}, "210");
    EXPECT_EQ(element->result->Status(), kFailed);
    EXPECT_EQ(guide->StatusShown(), kFailed);
    EXPECT_EQ(Table().Rows()[0].cells[1].status, kFailed);
    Table().Edit({1, 2}, "205");
    EXPECT_EQ(guide->StatusShown(), kPassed);
    element->Sequence()->gRunActive = true;
    Table().Edit({1, 2}, "210");
    EXPECT_EQ(element->result->GetValue(0, 2), "205*") << "not while exposures are taken";
    EXPECT_EQ(Table().Rows()[0].cells[1].text, "205* mA");
}

TEST_F(GuideTable, AnAdjacentMarkIsStoredAndJudged) {
    Configure(kRadioLinearity, kZrd, kNoDetector);
    config->pNoOfExposures = 3;
    config->importFlags = {"1", "0", "0"};
    config->machineAdjacent = {"0", "1", "0"};
    Open();
    const auto& rows = Table().Rows();
    EXPECT_TRUE(rows.at(0).cells[0].checked && rows.at(1).cells[1].checked) << "the marks of the setup";
    EXPECT_FALSE(rows.at(1).cells[0].checked || rows.at(0).cells[1].checked);
    element->guideLimits->AtMost("ER Adjacent", 0.1);
    for (uint8_t n = 1; n <= 3; ++n) Expose(n, "0,0,80,80,80,10,100,10,3,1.0,0.2");
    EXPECT_TRUE(Table().ToggleCheck({3, 2}));
    EXPECT_EQ(config->GetValue(2, 2), "1");
    EXPECT_EQ(guide->StatusShown(), kFailed);
    EXPECT_EQ(Table().Rows()[2].cells[10].status, kFailed);
}

// --------------------------------------------------------------------------------------- menu, redo

TEST_F(GuideTable, RedoIsOfferedForAStoredExposureWhileADetectorAnswersAndNothingRuns) {
    Open(kRadioRepro);
    const auto offered = [&](uint8_t exposure) {
        const bool redone = guide->RedoExposure(exposure);
        EXPECT_EQ(Events(), redone ? "Redo" + std::to_string(exposure) : "");
        return redone;
    };
    EXPECT_FALSE(offered(1)) << "nothing stored";
    Expose(1, ReproRow("80"));
    Expose(2, ReproRow("81"));
    EXPECT_TRUE(offered(2));
    EXPECT_EQ(guide->CurrentExposure(), 2);
    EXPECT_FALSE(offered(0));
    EXPECT_FALSE(offered(3));
    room->serialNumbers = "0";
    EXPECT_FALSE(offered(1)) << "no detector";
    room->serialNumbers = "4711,88";
    element->Sequence()->gRunActive = true;
    EXPECT_FALSE(offered(1)) << "a run is active";
    element->Sequence()->gRunActive = false;
    guide->EnableMenuRedoExposure(false);
    EXPECT_FALSE(offered(1)) << "not allowed";
    guide->EnableMenuRedoExposure(true);
    room->failing = {"SerialNumbers"};
    EXPECT_FALSE(offered(1)) << "the detector fails";
    room->failing.clear();
    EXPECT_TRUE(offered(1));
}

TEST_F(GuideTable, TheRightButtonOpensTheMenuForTheRowBelowThePointer) {
    Open(kRadioRepro);
    Expose(1, ReproRow("80"));
    Expose(2, ReproRow("81"));
    bool openDuring = false;
    platform->onMenu = [&](const auto& items) {
        openDuring = element->Sequence()->gMenuOpen;
        return items[0].id;
    };
    bool openInRedo = true;
    guide->events.ReDoExposure.Connect([&](uint8_t) { openInRedo = element->Sequence()->gMenuOpen; });
    Table().PressRight({1, 3});
    EXPECT_EQ(Events(), "Redo1");
    EXPECT_TRUE(openDuring);
    EXPECT_FALSE(openInRedo);
    EXPECT_FALSE(element->Sequence()->gMenuOpen);
    platform->onMenu = [](const auto&) -> int32_t { throw std::runtime_error("no window"); };
    guide->OpenMenu();
    EXPECT_FALSE(element->Sequence()->gMenuOpen);
    EXPECT_EQ(Events(), "") << "nothing was chosen";
}

TEST_F(GuideTable, ARedoThatBreaksOffUnlocksTheBar) {
    Open(kRadioRepro);
    Expose(1, ReproRow("80"));
    guide->events.ReDoExposure.Connect([&](uint8_t) {
        guide->ToolbarState(GuideState::kRunning, false);
        throw std::runtime_error("detector gone");
    });
    EXPECT_TRUE(guide->RedoExposure(1));
    EXPECT_EQ(guide->RunState(), GuideState::kIdle);
    EXPECT_TRUE(Button(guide_button::kNext).enabled) << "the earlier result is kept";
    EXPECT_TRUE(guide->Watching());
}

class SurveyElement : public FakeElement {
  public:
    SurveyElement() { fakeTestId = kMqsaSurvey; }
    std::shared_ptr<IResultData> Result() const override { return survey; }

    std::shared_ptr<CResultMQSA> survey = std::make_shared<CResultMQSA>();
};

TEST_F(GuideTable, AnAnswerInTheSheetOfTheSurveyGoesToItsItem) {
    Open(kRadioRepro);
    const auto sheet = std::make_shared<SurveyElement>();
    sheet->survey->Initialize(std::make_shared<CConfigMQSA>());
    guide->Initialize(sheet, pipe, {});
    Events();
    guide->Table()->events.MQSAClick.Raise(3, 2);
    EXPECT_EQ(sheet->survey->Items()[3]->Status(), kPassed);
    guide->Table()->events.MQSAClick.Raise(3, 3);
    EXPECT_EQ(sheet->survey->Items()[3]->Status(), kFailed);
    EXPECT_EQ(sheet->survey->Items()[2]->Status(), kNotTested);
    EXPECT_EQ(Events(), "ItemClicked1 ItemClicked1");
    guide->Table()->events.MQSAClick.Raise(49, 2);
    EXPECT_EQ(Events(), "") << "there are 49 items";
    guide->Table()->events.MQSAHelpText.Raise("What the item asks");
    EXPECT_EQ(guide->Details(), Texts{"What the item asks"});
}

}  // namespace
}  // namespace vorex::test

#include "guide/test_guide_form.h"

#include "guide/guide_fixture.h"

namespace vorex::test {
namespace {

using Form = GuideTest;
using Lines = std::vector<std::string>;

std::shared_ptr<CWaveform> Waveform(const char* samples) {
    auto waveform = std::make_shared<CWaveform>();
    waveform->Initialize(samples);
    return waveform;
}

TEST_F(Form, EachTestGetsItsView) {
    for (int32_t test : kMeasuringTests) {
        Open(test);
        const bool grid = test == 100 || test == 300;
        EXPECT_EQ(dynamic_cast<XResultFlxGrid*>(guide->Table().get()) != nullptr, grid) << test;
        EXPECT_EQ(dynamic_cast<XResultListView*>(guide->Table().get()) != nullptr, !grid) << test;
    }
}

TEST_F(Form, ShowsAllLinesUntilRowsAreChosen) {
    Open(kRadioRepro);
    EXPECT_EQ(guide->VisibleLines(), (Lines{"line 1", "line 2", "line 3"}));
    const int32_t rows[] = {1, 3, 9};
    guide->ShowRows(rows);
    EXPECT_EQ(guide->VisibleLines(), (Lines{"line 1", "line 3"}));
    guide->SetInfoLines({"a", "b", "c", "d", "e", "f", "g", "h", "i"});
    EXPECT_EQ(guide->VisibleLines(), (Lines{"a", "c", "i"}));
    EXPECT_EQ(guide->InfoLines().size(), 9U);
}

TEST_F(Form, ShowsStatusLineOverlayAndVerdict) {
    Open(kRadioRepro);
    guide->SetStatusText(text::kTestInProgress);
    EXPECT_EQ(guide->StatusLine(), "Test in progress");
    guide->SetStatusText("as it is");
    EXPECT_EQ(guide->StatusLine(), "as it is");
    guide->SetStatusText("");
    EXPECT_EQ(guide->StatusLine(), "");
    guide->ShowOverlay(true, text::kResettingPleaseWait);
    EXPECT_TRUE(guide->Overlay().Visible());
    EXPECT_EQ(guide->Overlay().LabelCaption(), "Resetting, Please Wait ...");
    guide->ShowOverlay(false, "");
    EXPECT_FALSE(guide->Overlay().Visible());
    element->result->InitResultStatus(true);
    guide->ShowStatus(element->result.get());
    EXPECT_EQ(guide->StatusShown(), kPassed);
    guide->ShowStatus(nullptr);
    EXPECT_EQ(guide->StatusShown(), kNotTested);
}

TEST_F(Form, ATabShowsWhenTheKindHasItsChannelAndThereAreSamples) {
    const auto draw = [&](uint8_t type, const std::shared_ptr<CWaveform>& waveform) {
        guide->WaveformType(type);
        guide->DrawWaveform(waveform);
        return std::pair(guide->Tabs()[0].visible, guide->Tabs()[1].visible);
    };
    const std::tuple<int32_t, bool, bool> cases[] = {
        {1, true, false}, {2, false, true}, {3, false, false}, {4, true, true}, {5, false, true}};
    for (const auto& [kind, kv, ma] : cases) {
        Open(kRadioRepro, kind);
        draw(kKvWaveform, Waveform("0,80,81,0"));
        EXPECT_EQ(draw(kMaWaveform, Waveform("0,80,81,0")), std::pair(kv, ma)) << kind;
        // An empty waveform clears the pane of its type only.
        EXPECT_EQ(draw(kMaWaveform, std::make_shared<CWaveform>()), std::pair(kv, false)) << kind;
        EXPECT_FALSE(guide->Tabs()[1].waveform);
        EXPECT_EQ(draw(kKvWaveform, nullptr), std::pair(false, false)) << kind;
    }
}

TEST_F(Form, TakesTheMasInputFromTheConfiguration) {
    for (const auto& [shunt, manual, textKey] :
         {std::tuple{true, false, text::kShunt}, {false, false, text::kClamp}, {true, true, text::kManual}}) {
        Configure(kRadioRepro, kZrdAndMas, kZrdAndMas);
        config->MASInput = shunt;
        config->ManualSelectedInTestGuide = manual;
        Open();
        EXPECT_EQ(config->TestGuideMASInput, textKey);
    }
}

TEST_F(Form, ClearingTheTableLeavesTheImportFlagsOfTheSetup) {
    Configure(kRadioRepro, kZrd, kNoDetector);
    config->pNoOfExposures = 2;
    config->importFlags = {"0", "1"};
    Open();
    Expose(1, "0,80,80,80,10,100,10,3");
    ASSERT_EQ(Table().Rows()[0].cells[1].text, "80.0 KV");
    guide->DrawWaveform(Waveform("0,80,81,0"));
    guide->ClearTable();
    EXPECT_FALSE(guide->Tabs()[0].visible) << "the waveform belongs to the cleared exposures";
    ASSERT_EQ(Table().Rows().size(), 2U);
    EXPECT_EQ(Table().Rows()[0].cells[1].text, "");
    EXPECT_FALSE(Table().Rows()[0].cells[0].checked);
    EXPECT_TRUE(Table().Rows()[1].cells[0].checked);
    EXPECT_EQ(guide->CurrentExposure(), 0);
}

TEST_F(Form, UnloadEndsTheSessionAndTheWatch) {
    Open(kRadioRepro);
    guide->Unload();
    EXPECT_FALSE(guide->Watching());
    EXPECT_FALSE(guide->Table());
    EXPECT_FALSE(guide->Element());
    EXPECT_EQ(room->Count("Disconnect"), 1);
    room->calls.clear();
    platform->Advance(10000);
    EXPECT_TRUE(room->calls.empty());
}

TEST_F(Form, AFailingDetectorKeepsNeitherLoadNorUnloadFromEnding) {
    room->failing = {"BeginRun", "Disconnect"};
    Open(kRadioRepro);
    EXPECT_TRUE(guide->Watching());
    guide->Unload();
    EXPECT_FALSE(guide->Watching());
    EXPECT_EQ(log.size(), 2U);
}

TEST_F(Form, OpensWithoutADetectorServiceOrAView) {
    Configure(kRadioRepro, kZrd, kNoDetector);
    HostServices services;
    services.platform = platform;
    InstallServices(services);
    InstallClasses({});
    Open();
    EXPECT_FALSE(guide->Watching());
    guide->ShowResult(element, 1);
    guide->ClearTable();
    guide->ResetSelection();
    EXPECT_TRUE(guide->PressButton(guide_button::kStart));
    EXPECT_EQ(Events(), "");
    guide->Unload();
}

}  // namespace
}  // namespace vorex::test

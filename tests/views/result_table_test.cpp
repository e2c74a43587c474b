#include "views/result_table.h"

#include "foundation/utilities.h"
#include "host/execution_pipe.h"
#include "support/fake_control.h"
#include "support/fake_element.h"
#include "support/library_test.h"
#include "support/result_row.h"

namespace vorex::test {
namespace {

class ResultTableTest : public LibraryTest {
  protected:
    ResultTableTest() {
        HostServices services;
        services.text = texts;
        Install(services);
    }

    void Make(int32_t test, int32_t kind, std::initializer_list<std::string_view> keys) {
        element->config = std::make_shared<CConfigCommon>();
        element->result = std::make_shared<CResultCommon>();
        element->config->pTestID = test;
        element->config->DetectorName = kind;
        element->config->pMeasurementMode = kRadio;
        element->config->pMeasurementExposure = kUnitR;
        element->config->pMeasurementTimeUnit = kMilliseconds;
        element->result->Initialize(element->config);
        table.Initialize(true, element);
        table.DetectorType(kind);
        for (std::string_view key : keys) table.AddColumnHeader(key, key, 100);
    }
    void Store(uint8_t number, const std::string& row, int32_t source = kSourceZrd) {
        element->result->StoreResult(RowInOrder(*element->result, row, source), source);
        element->result->UpdateStatus(*element, nullptr, number);
    }
    const ResultCell& Cell(int row, int column) {
        return table.Rows()
            .at(static_cast<std::size_t>(row - 1))
            .cells.at(static_cast<std::size_t>(column - 1));
    }

    std::shared_ptr<FakeTexts> texts = std::make_shared<FakeTexts>();
    std::shared_ptr<ResultElement> element = std::make_shared<ResultElement>();
    XResultFlxGrid table;
};

TEST_F(ResultTableTest, ShowsValuesWithOneOrTwoDecimalsAndTheUnit) {
    const std::pair<const char*, const char*> cases[] = {
        {"80.1", "80.1 KV"},    {"80.12", "80.12 KV"}, {"80", "80.0 KV"},  {"80.10", "80.1 KV"},
        {"80.125", "80.13 KV"}, {"-1.5", "-1.5 KV"},   {"-0.0", "0.0 KV"}, {"007.5", "7.5 KV"},
        {"1e2", "100.0 KV"},    {"80.", "80.0 KV"},    {".5", "0.5 KV"},   {"80.0", "80.0 KV"},
        {"OL", "OL"},           {"ul", "ul"},          {"", ""},           {"80.100*", "80.1* KV"},
        {"0", "0.0 KV"},        {"80.00", "80.0 KV"},  {"-0", "0.0 KV"},
    };
    Make(kRadioAccuracy, kZrd, {key::kImportWaveform, key::kErKvpAvg});
    for (const auto& [reading, shown] : cases) {
        Store(1, std::string("0,") + reading + ",,,,,,,,");
        table.UpdateTestResult(true, 1);
        EXPECT_EQ(Cell(1, 2).text, shown) << '"' << reading << '"';
    }
    // Readings of the dosimeter have all their digits.
    table.RemoveColumns();
    EXPECT_EQ(table.NoOfColumnHeaders(), 0);
    EXPECT_EQ(table.pNoOfExposures(), 1) << "the rows stay";
    Make(kRadioAccuracy, kPelomark, {key::kImportWaveform, key::kErExposure, key::kTemperature});
    EXPECT_EQ(table.Rows()[0].cells.size(), 3U);
    for (const auto& [reading, shown] : {std::pair{"0.00125", "0.00125 R"},
                                         {"12", "12 R"},
                                         {"12.50", "12.5 R"},
                                         {"12.0", "12 R"},
                                         {"OL", "OL"}}) {
        Store(1, std::string("0,") + reading + ",1,22.10,760,1,300,0.1", kSourcePelomark);
        table.UpdateTestResult(true, 1);
        EXPECT_EQ(Cell(1, 2).text, shown);
    }
    EXPECT_EQ(Cell(1, 3).text, "22.1 °C");
}

TEST_F(ResultTableTest, KeepsTypedTextsOfTheFluoroscopyTest) {
    Make(kFluoroExposure, kZrd,
         {key::kImportWaveform, key::kMaxExposureRate, key::kPhantomThickness, key::kMode});
    Store(1, "0,80,80,80,10,100,10,3,2,5 cm,Normal");
    Store(2, "0,80,80,80,10,110,10,3,2,5 cm,Normal");
    element->result->SetValue(0, 9, "2,5 cm");
    element->result->SetValue(0, 10, "High");
    table.UpdateTestResult(true, 0);
    EXPECT_EQ(Cell(1, 3).text, "2.5 cm");
    EXPECT_EQ(Cell(1, 4).text, "High");
    // Each row's rate is kept under a key with its exposure number.
    EXPECT_EQ(Cell(1, 2).text, "100.0 mR/sec");
    EXPECT_EQ(Cell(2, 2).text, "110.0 mR/sec");
}

TEST_F(ResultTableTest, ImportAndAdjacentFlagsAreCheckMarks) {
    Make(kRadioLinearity, kZrd, {key::kImportWaveform, key::kAdjacent});
    Store(1, "1,0,80,80,80,10,100,10,3,1,");
    Store(2, "0,1,80,80,80,10,100,10,3,1,0.0");
    table.UpdateTestResult(true, 0);
    EXPECT_TRUE(Cell(1, 1).checked);
    EXPECT_FALSE(Cell(1, 2).checked);
    EXPECT_FALSE(Cell(2, 1).checked);
    EXPECT_TRUE(Cell(2, 2).checked);
    EXPECT_EQ(Cell(2, 2).text, "");
}

TEST_F(ResultTableTest, AnExposureRefreshesItsOwnRowWithoutTranslatingAgain) {
    Make(kRadioAccuracy, kZrd, {key::kImportWaveform, key::kErKvpAvg, key::kErHvl});
    Store(1, "0,80,81,82,10,100,10,3,0.0,0.0");
    table.UpdateTestResult(true, 1);
    element->result->SetValue(0, 2, "99");
    Store(2, "0,70,71,72,10,100,10,3,0.0,0.0");
    texts->count = 0;
    table.UpdateTestResult(true, 2);
    EXPECT_EQ(Cell(1, 2).text, "80.0 KV") << "row 1 was not asked for";
    EXPECT_EQ(Cell(2, 2).text, "70.0 KV");
    EXPECT_EQ(texts->count, 1) << "the caption of the new row";
    EXPECT_EQ(table.SelectedExposure(), 2);
    table.UpdateTestResult(true, 0);
    EXPECT_EQ(Cell(1, 2).text, "99.0 KV");
    EXPECT_EQ(table.SelectedExposure(), 0);
    table.ShowTestResult(element, 2);
    EXPECT_EQ(table.SelectedExposure(), 2);
}

TEST_F(ResultTableTest, MarksFollowTheStatusUnlessTheyAreToStay) {
    Make(kRadioAccuracy, kZrd, {key::kImportWaveform, key::kErKvpAvg});
    element->limits->AtMost("ER kVp Avg", 79);
    const SelectedStandards selection;
    Store(1, "0,80,81,82,10,100,10,3,0.0,0.0");
    element->result->UpdateStatus(*element, &selection, 1);
    table.UpdateTestResult(false, 1);
    EXPECT_EQ(Cell(1, 2).status, kNotTested);
    table.UpdateTestResult(true, 1);
    EXPECT_EQ(Cell(1, 2).status, kFailed);
}

TEST_F(ResultTableTest, Test100HasItsStatisticsBelowTheExposures) {
    Make(kRadioRepro, kZrd, {key::kImportWaveform, key::kErKvpAvg, key::kErHvl});
    Store(1, "0,80,81,82,10,100,10,3,80,81,82,10,100,10,3,0.0,0,0,0,0,0,0");
    Store(2, "0,82,81,82,10,100,10,4,81.0,81,82,10,100,10,3.5,0.02,0,0,0,0,0,0.2");
    table.UpdateTestResult(true, 2);
    ASSERT_EQ(table.Statistics().size(), 2U);
    EXPECT_EQ(table.Statistics()[0].caption, "AVG.");
    EXPECT_EQ(table.Statistics()[0].cells[1].text, "81.0 KV");
    EXPECT_EQ(table.Statistics()[0].cells[2].text, "3.5 mm Al");
    EXPECT_EQ(table.Statistics()[1].caption, "CV");
    EXPECT_EQ(table.Statistics()[1].cells[1].text, "0.02");
    EXPECT_EQ(table.Statistics()[1].cells[2].text, "0.2");
    table.Clear();
    EXPECT_EQ(table.Statistics()[0].cells[1].text, "");
    // No other test and no other view has them.
    XResultListView list;
    list.Initialize(true, element);
    EXPECT_TRUE(list.Statistics().empty());
    Make(kRadioLinearity, kZrd, {});
    EXPECT_TRUE(table.Statistics().empty());
}

TEST_F(ResultTableTest, StatisticsOfAWholeTestAreInEveryRow) {
    Make(kMammoAccRepro, kZrd, {key::kImportWaveform, key::kErKvpAvg, key::kCv});
    Store(1, "0,28,28,28,10,100,10,0.3,28,0,28,0,0,1.4,0,0.0");
    table.UpdateTestResult(true, 1);
    Store(2, "0,29,29,29,10,100,10,0.3,28.5,0.7,28.5,0.7,0.5,1.4,1.8,0.02");
    table.UpdateTestResult(true, 2);
    EXPECT_EQ(Cell(1, 3).text, "0.02");
    EXPECT_EQ(Cell(2, 3).text, "0.02");
    EXPECT_EQ(Cell(1, 2).text, "28.0 KV");
}

TEST_F(ResultTableTest, ANewResultOfTheElementReplacesAllValues) {
    Make(kRadioAccuracy, kZrd, {key::kImportWaveform, key::kErKvpAvg});
    table.pNoOfExposures(2);
    Store(1, "1,80,81,82,10,100,10,3,0.0,0.0");
    table.ShowTestResult(element, 1);
    EXPECT_EQ(Cell(1, 2).text, "80.0 KV");
    element->result = std::make_shared<CResultCommon>();
    element->result->Initialize(element->config);
    table.UpdateTestResult(true, 2);
    EXPECT_EQ(Cell(1, 2).text, "");
    EXPECT_TRUE(Cell(1, 1).checked) << "the flag of the setup stays";
    ASSERT_EQ(table.Rows().size(), 2U);
    EXPECT_EQ(table.Rows()[1].caption, "Exposure #2");
}

TEST_F(ResultTableTest, ColumnsTakeSettingsAndGiveThemBack) {
    Make(kRadioAccuracy, kZrd, {key::kImportWaveform, key::kMode});
    table.pNoOfExposures(3);
    table.SetColumnSettings(1, {"1", "0"}, true);
    table.SetColumnSettings(2, {"a", "b", "c", "d"}, false);
    std::vector<std::string> values;
    table.GetColumnSettings(1, values);
    EXPECT_EQ(values, (std::vector<std::string>{"1", "0", "0"}));
    table.GetColumnSettings(2, values);
    EXPECT_EQ(values, (std::vector<std::string>{"a", "b", "c"}));
    table.SetColumnSettings(3, {"x"}, false);
    table.GetColumnSettings(0, values);
    EXPECT_EQ(values.size(), 3U);
    // Single cells are counted by row from 0 and column from 1.
    table.SetValue(0, 2, "typed");
    EXPECT_EQ(table.GetValue(0, 2), "typed");
    for (const auto& [row, column] : {std::pair<uint8_t, uint8_t>{3, 2}, {0, 3}, {0, 0}}) {
        table.SetValue(row, column, "beyond");
        EXPECT_EQ(table.GetValue(row, column), "");
    }
}

TEST_F(ResultTableTest, TheEditorTakesNumbersOnlyAndMovesByRows) {
    for (const int key : std::initializer_list<int>{'0', '9', '.', ',', ' ', 8, 13})
        EXPECT_TRUE(ResultTable::AcceptsKey(key)) << key;
    for (const int key : std::initializer_list<int>{'a', '-', '*', '+', 27, 'e'})
        EXPECT_FALSE(ResultTable::AcceptsKey(key)) << key;
    Make(kRadioAccuracy, kMasMeter, {key::kImportWaveform, key::kMa});
    table.pNoOfExposures(2);
    EXPECT_EQ(table.CellAfter({1, 1}), (CellPlace{1, 2}));
    EXPECT_EQ(table.CellAfter({1, 2}), (CellPlace{2, 1}));
    EXPECT_EQ(table.CellAfter({2, 2}), (CellPlace{}));
}

TEST_F(ResultTableTest, IsAControlThatTakesAnElementAndCanBeLocked) {
    ICustomControl& control = table;
    Make(kRadioRepro, kZrd, {key::kImportWaveform, key::kErKvpAvg});
    control.Initialize(std::shared_ptr<IResultData>(element->result));
    EXPECT_TRUE(table.Statistics().empty()) << "a result is no element";
    control.Initialize(std::shared_ptr<ITestElement>(element));
    ASSERT_EQ(table.Statistics().size(), 2U) << "the mean and the coefficient of variation of test 100";
    EXPECT_EQ(table.Statistics()[1].cells.size(), 2U) << "a cell for each column that there was";
    table.pNoOfExposures(1);
    const auto callback = std::make_shared<FakeCallback>();
    control.CallBack(callback);
    control.Locked(true);
    EXPECT_TRUE(control.Locked() && control.CallBack() == callback);
    EXPECT_FALSE(table.ToggleCheck({1, 1}));
    EXPECT_EQ(callback->heard, "");
    control.Locked(false);
    EXPECT_TRUE(table.ToggleCheck({1, 1}));
    EXPECT_EQ(callback->heard, "Edited;");
    int changes = 0;
    table.Changed.Connect([&] { ++changes; });
    control.Visible(false);
    control.Refresh();
    EXPECT_FALSE(control.Visible());
    EXPECT_EQ(changes, 2);
    table.ShowTestResult(element, 1);
    EXPECT_EQ(changes, 3);
}

}  // namespace
}  // namespace vorex::test

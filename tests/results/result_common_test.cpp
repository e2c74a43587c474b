#include "results/result_common.h"

#include "results/result_fixture.h"

namespace vorex {
namespace {

class ResultStore : public test::ResultTest {
  protected:
    using ResultTest::Working;
    /// The working row as its texts joined by "|".
    std::string Working() const {
        std::string values;
        for (const auto& item : result->Current()) values += item->ValueText() + "|";
        values.pop_back();
        return values;
    }
    void Keep(uint8_t number) { result->UpdateStatus(owner, &selected, number); }
};

TEST_F(ResultStore, FieldsFillTheColumnsOfTheirSource) {
    Begin(kMammoRadiation, kZrdAndMas);
    Store("1,28,28.5,28.2,100,1000,100,0.33,1000.0,8.73");
    EXPECT_EQ(Working(), "1|28|28.5|28.2|100|1000|100|0.33|1000.0|8.73||||");
    Store("1,80.5,8.05,0,12.4", kSourceMas);
    EXPECT_EQ(Working(key::kMa), "80.5");
    EXPECT_EQ(Working(key::kMas), "8.05");
    EXPECT_EQ(Working(key::kExposure), "100") << "readings of the other instrument stay";
}

// A reading that does not fit is a fault that is logged and reported; no other column takes its text.
TEST_F(ResultStore, ARowThatDoesNotFitFillsTheColumnsThatItNames) {
    const std::tuple<int32_t, std::vector<RowField>, const char*, const char*> cases[] = {
        {kSourceZrd,
         {{key::kImportWaveform, "0"}, {key::kKvpMax, "31"}},
         "the reading of the ZRD 47500 has no text for the column \"kVp Avg\"",
         "0|28|31|28.2|100|1000|100|0.33|1000.0|8.73"},
        {kSourceMas,
         {{key::kImportWaveform, "0"}, {key::kMa, "200"}},
         "the reading of the mAs meter has no column for \"ER mA\"",
         "0|28|28.5|28.2|100|1000|100|0.33|1000.0|8.73"},
        {kSourcePelomark, {}, "", "1|28|28.5|28.2|100|1000|100|0.33|1000.0|8.73"},
    };
    std::vector<std::string> log;
    HostServices services;
    services.log = [&](std::string_view line) { log.emplace_back(line); };
    InstallServices(services);
    for (const auto& [source, fields, fault, working] : cases) {
        Begin(kMammoRadiation, kZrd);
        Store("1,28,28.5,28.2,100,1000,100,0.33,1000.0,8.73");
        log.clear();
        EXPECT_EQ(result->StoreResult({fields, {}, {}}, source), fault);
        EXPECT_EQ(Working(), working);
        EXPECT_EQ(log, fields.empty() ? std::vector<std::string>{} : std::vector<std::string>{fault});
    }
}

TEST_F(ResultStore, DosePerMasFollowsFromTheExposureOfTheOtherInstrument) {
    const char* zrd = "0,80,81,80,12.5,1,100,3,0.0,0.0";
    const char* zrdOverRange = "0,80,81,80,OL,1,100,3,0.0,0.0";
    const std::tuple<int32_t, const char*, int32_t, const char*, const char*> cases[] = {
        {kZrdAndMas, zrd, kSourceZrd, "0,100,10,0,0.7", "1.25"},
        {kZrdAndMas, zrd, kSourceZrd, "0,100,0,0,0.7", "0.7"},  // no charge: the meter's own value
        {kZrdAndMas, zrd, kSourceZrd, "0,100,OL,0,0.7", "0.7"},
        {kZrdAndMas, zrdOverRange, kSourceZrd, "0,100,10,0,0.7", "0.7"},
        {kPelomarkAndMas, "0,25,2.5,22,760,1,300,0", kSourcePelomark, "0,100,10,0,0.7", "2.5"},
        {kMasMeter, "", kSourceZrd, "0,100,10,0,0.7", "0.7"},
    };
    for (const auto& [kind, detectorRow, detectorSource, masRow, expected] : cases) {
        Begin(kRadioAccuracy, kind);
        Store(detectorRow, detectorSource);
        Store(masRow, kSourceMas);
        EXPECT_EQ(Working(key::kDoseMas), expected) << "kind " << kind << ", " << masRow;
    }
}

TEST_F(ResultStore, ALaterDetectorReadingRenewsDosePerMas) {
    Begin(kRadioAccuracy, kZrdAndMas);
    Store("0,100,10,0,0.7", kSourceMas);
    Store("0,80,81,80,20,1,100,3,0.0,0.0");
    EXPECT_EQ(Working(key::kDoseMas), "2");
    Store("0,80,81,80,UL,1,100,3,0.0,0.0");
    EXPECT_EQ(Working(key::kDoseMas), "2") << "an unusable exposure keeps the stored value";
}

TEST_F(ResultStore, ResetClearsJudgedReadingsOfCombinedKindsOnly) {
    for (int32_t kind : {kZrd, kZrdAndMas}) {
        Begin(kRadioAccuracy, kind);
        Expose(1, "0,80,81,80,12,1,100,3,1.0,2.0");
        result->ResetTheMeasurements();
        EXPECT_EQ(Working(key::kKvpAvg), kind == kZrd ? "80" : "");
        EXPECT_EQ(Working(key::kPercentKvpError), "1.0");
        EXPECT_EQ(result->GetMeasurementValue(1, 2), "80") << "stored exposures stay";
    }
}

TEST_F(ResultStore, ReadersAnswerEmptyOutsideTheStoredRows) {
    Begin(kRadioRepro, kZrd);
    EXPECT_EQ(result->GetValue(0, 2), "");
    std::vector<std::string> values = {"kept"};
    result->GetMeasurementColumn(2, values);
    EXPECT_EQ(values, std::vector<std::string>{"kept"});
    for (uint8_t n = 1; n <= 2; ++n) Expose(n, "0,8" + std::to_string(n) + ",81,80,12,1,100,3");
    for (const auto& [row, column, value] :
         {std::tuple{0, 2, "81"}, {1, 2, "82"}, {2, 2, ""}, {0, 0, ""}, {0, 23, ""}}) {
        EXPECT_EQ(result->GetValue(static_cast<uint8_t>(row), static_cast<uint8_t>(column)), value)
            << row << column;
    }
    EXPECT_EQ(result->GetMeasurementValue(0, 2), "");
    EXPECT_EQ(result->GetMeasurementValue(2, 2), "82");
    result->GetMeasurementColumn(2, values);
    EXPECT_EQ(values, (std::vector<std::string>{"81", "82"}));
    result->SetValue(1, 2, "79*");
    EXPECT_EQ(result->GetValue(1, 2), "79*");
}

TEST_F(ResultStore, TheHostSeesTheWorkingRowDuringARunAndAFlatListAfterwards) {
    Begin(kMammoRadiation, kZrd);
    for (uint8_t n = 1; n <= 2; ++n)
        Expose(n, "0,2" + std::to_string(n) + ",28,28,100,1,100,0.3,1000.0,8.73");
    result->pTestGuide = true;
    EXPECT_EQ(result->MeasurementCount(), 10);
    EXPECT_EQ(TextOf(result->Measurement(1)->value()), "22");
    result->pTestGuide = false;
    EXPECT_EQ(result->MeasurementCount(), 20);
    EXPECT_EQ(TextOf(result->Measurement(1)->value()), "21");
    EXPECT_EQ(TextOf(result->Measurement(11)->value()), "22");
    EXPECT_EQ(result->Measurement(20), nullptr);
    EXPECT_EQ(result->Measurement(-1), nullptr);
    EXPECT_EQ(result->Measurement(key::kHvl)->Key(), "HVL");
    EXPECT_EQ(result->Measurement("mA"), nullptr);
}

TEST_F(ResultStore, StatisticsOfTheWholeTestAreListedOnceAfterTheirHeading) {
    const auto listed = [&](const std::vector<std::pair<int32_t, const char*>>& items) {
        for (const auto& [index, expected] : items) {
            const auto item = result->Measurement(index);
            const std::string value = item ? TextOf(item->value()) : "none";
            EXPECT_EQ(value.find_first_of("+-") == 0 || !item ? value : item->Key(), expected) << index;
        }
    };
    Begin(kRadioRepro, kZrdAndMas);
    Expose(1, "0,80,81,80,12,1,100,3,80,81,80,12,1,100,3,0.1,0,0,0,0,0,0");
    Keep(2);
    const ColumnCounts counts = result->GetColumnCounts();
    EXPECT_EQ(counts.total, 34);
    EXPECT_EQ(counts.calculated, 22);
    EXPECT_EQ(counts.row, 12);
    EXPECT_EQ(result->MeasurementCount(), 34 * 2 + 1);
    listed({{0, "++Exposure #1++"},
            {1, "kVp Avg"},
            {12, "++Exposure #2++"},
            {24, "--Calculations--"},
            {25, "ER Avg kVp Avg"},
            {46, "ER CV DosemAs"},
            {47, "none"}});
    // The headings are there even if an instrument gives no statistics.
    Begin(kMammoAccRepro, kPelomark);
    for (uint8_t n = 1; n <= 2; ++n) Expose(n, "0,5,7,22,760,1.01,300,0.2", kSourcePelomark);
    EXPECT_EQ(result->MeasurementCount(), 17);
    listed({{0, "++Exposure #1++"},
            {1, "Exposure"},
            {8, "++Exposure #2++"},
            {16, "--Calculations--"},
            {17, "none"}});
}

TEST_F(ResultStore, AResultHasADialogForWaveformsOrForAHostThatNamesTheViewer) {
    Begin(kRadioRepro, kZrd);
    Keep(1);
    result->StoreWaveForm("1,2,3", 1);
    EXPECT_FALSE(result->HasDialog()) << "the settings select no exposure";
    HostServices services;
    services.text = std::make_shared<test::FakeTexts>();
    InstallServices(services);
    EXPECT_TRUE(result->HasDialog());
    EXPECT_EQ(result->CurrentWaveformObject()->ValueCount(), 0) << "it has selected what the dialog shows";
}

TEST_F(ResultStore, AnExposureWithoutAReadingIsARowOfEmptyValuesForTheHost) {
    Begin(kMammoRadiation, kZrd);
    Expose(1, "0,21,28,28,100,1,100,0.3,1000.0,8.73");
    result->StoreMissing(2);
    result->StoreMissing(1);
    EXPECT_TRUE(result->HasReading(0));
    EXPECT_FALSE(result->HasReading(1));
    EXPECT_EQ(result->MeasurementCount(), 20);
    EXPECT_EQ(result->Measurement(11)->Key(), "kVp Avg");
    EXPECT_EQ(TextOf(result->Measurement(11)->value()), "");
    EXPECT_EQ(result->Measurement(11)->Status(), kNotTested);
    result->UpdateAllStatus(owner, &selected);
    EXPECT_EQ(result->Status(), kPassed);
    Begin(kMammoRadiation, kZrd);
    result->StoreMissing(1);
    result->UpdateAllStatus(owner, &selected);
    EXPECT_EQ(result->Status(), kNotTested) << "nothing was measured";
}

TEST_F(ResultStore, TheFirstReadingOfARedoRemovesTheFormerWaveforms) {
    Begin(kRadioRepro, kZrdAndMas);
    for (uint8_t n = 1; n <= 2; ++n) {
        Expose(n, "0,8" + std::to_string(n) + ",81");
        for (uint8_t type : {kKvWaveform, kMaWaveform}) {
            result->WaveformType = type;
            result->StoreWaveForm("1,2", n);
        }
    }
    result->WaveformType = kKvWaveform;
    // Stopped before a reading: everything stays, and the other exposure is left alone.
    result->BeginRedo(1);
    result->ShowResultInTestguide(0, true);
    result->StoreWaveForm("", 1);
    result->EndRedo();
    EXPECT_EQ(result->KvWaveform(1)->ValueCount(), 2);
    EXPECT_EQ(result->KvWaveform(2)->ValueCount(), 2);
    EXPECT_TRUE(result->Superseded().empty());
    result->BeginRedo(1);
    result->ShowResultInTestguide(0, true);
    Expose(1, "0,90,91");
    result->StoreWaveForm("7,8,9", 1);
    result->EndRedo();
    EXPECT_EQ(result->KvWaveform(1)->ValueCount(), 3);
    EXPECT_EQ(result->MaWaveform(1)->ValueCount(), 0) << "the new reading has none";
    ASSERT_EQ(result->Superseded().size(), 1U);
    EXPECT_EQ(result->Superseded().front().kvWaveform->ValueCount(), 2);
    EXPECT_EQ(result->Superseded().front().maWaveform->ValueCount(), 2);
    // A waveform that came without a reading belongs to an exposure that has none, and is dropped elsewhere.
    const auto redo = [&](uint8_t number, const char* samples) {
        result->BeginRedo(number);
        result->ShowResultInTestguide(number - 1, true);
        result->WaveformType = kMaWaveform;
        result->StoreWaveForm(samples, number);
        result->EndRedo();
    };
    redo(2, "5,5,5,5");
    EXPECT_EQ(result->MaWaveform(2)->ValueCount(), 2);
    result->StoreMissing(3);
    redo(3, "5,5,5,5");
    EXPECT_EQ(result->MaWaveform(3)->ValueCount(), 4);
}

TEST_F(ResultStore, AWaveformBelongsToTheExposureThatIsNamed) {
    Begin(kRadioRepro, kZrdAndMas);
    result->StoreWaveForm("1,2,3", 1);
    EXPECT_EQ(result->CurrentWaveformObject()->ValueCount(), 3) << "kept as current only";
    EXPECT_EQ(result->KvWaveform(1), nullptr);
    Keep(1);
    Keep(2);
    result->Resolution(2.5F);
    result->StoreWaveForm("4,5", 2);
    result->WaveformType = kMaWaveform;
    result->StoreWaveForm("6,7,8", 2);
    EXPECT_EQ(result->KvWaveform(1)->ValueCount(), 0);
    EXPECT_EQ(result->KvWaveform(2)->Values(), (std::vector<float>{4, 5}));
    EXPECT_EQ(result->MaWaveform(2)->Values(), (std::vector<float>{6, 7, 8}));
    EXPECT_FLOAT_EQ(result->MaWaveform(2)->Resolution(), 2.5F);
    result->StoreWaveForm("9,9", 1);
    EXPECT_EQ(result->MaWaveform(1)->ValueCount(), 2);
    EXPECT_EQ(result->WaveformOfRow(2)->ValueCount(), 3);
    for (const int32_t row : {0, 1, 2, -1}) result->SelectWaveform(row);
    EXPECT_EQ(result->CurrentWaveformObject(), result->MaWaveform(2)) << "the last one that there is";
    std::vector<std::string> lines;
    HostServices services;
    services.trace = [&](std::string_view line) { lines.emplace_back(line); };
    InstallServices(services);
    result->StoreWaveForm("1,2", 1);
    EXPECT_EQ(lines.at(0), "3$StoreWaveForm$ - mAs Waveform :: 1,2");
}

}  // namespace
}  // namespace vorex

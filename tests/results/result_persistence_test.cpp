#include "foundation/host_error.h"
#include "host/measurement_codec.h"
#include "results/result_fixture.h"

namespace vorex {
namespace {

class ResultPersistence : public test::ResultTest {
  protected:
    void SetUp() override {
        HostServices services;
        services.text = std::make_shared<test::FakeTexts>();
        services.codec = std::make_shared<MeasurementCodec>();
        Install(services);
    }

    static std::shared_ptr<CResultCommon> Fresh(int32_t testId) {
        auto result = std::make_shared<CResultCommon>();
        result->TestId = testId;
        result->DetectorName = kZrd;
        return result;
    }
    static std::string Saved(CResultCommon& result) {
        const auto document = std::make_shared<OutputDocument>();
        document->Top().AddChild(result.Save(document));
        return document->Text();
    }
    static std::shared_ptr<CResultCommon> Loaded(int32_t testId, const std::string& text) {
        auto loaded = Fresh(testId);
        loaded->Load(test::XmlText(text).Root(), nullptr);
        return loaded;
    }
};

TEST_F(ResultPersistence, AnExposureWithoutAReadingKeepsItsNumber) {
    Begin(kMammoRadiation);
    result->StoreMissing(1);
    Expose(2, "0,28,28.5,28.2,100,1000,100,0.3,1000.0,8.73");
    result->StoreWaveForm("1,2,3", 2);
    result->StoreMissing(3);
    const std::string saved = Saved(*result);
    const auto loaded = Loaded(kMammoRadiation, saved);
    ASSERT_EQ(loaded->Rows().size(), 3U) << saved;
    EXPECT_EQ(loaded->ExposureCount(), 3);
    EXPECT_FALSE(loaded->HasReading(0));
    EXPECT_EQ(loaded->GetMeasurementValue(2, 2), "28");
    EXPECT_FALSE(loaded->HasReading(2));
    EXPECT_EQ(loaded->KvWaveform(2)->ValueCount(), 3);
    EXPECT_EQ(Saved(*loaded), saved);
    const std::string missing = R"(<Measurement Key="Import Waveform" Missing="True" />)";
    const std::size_t first = saved.find(missing);
    ASSERT_NE(first, std::string::npos) << saved;
    EXPECT_NE(saved.find(missing, first + 1), std::string::npos) << saved;
    loaded->UpdateAllStatus(owner, &selected);
    EXPECT_EQ(loaded->Status(), kPassed);
}

std::string OneMeasurement(const std::string& key, const std::string& value) {
    return R"(<ResultItem><Status>1</Status><Measurement Key=")" + key + "\">" + value +
           "<Status>1</Status></Measurement></ResultItem>";
}

TEST_F(ResultPersistence, AMeasurementKeepsItsTypeThroughLoadAndSave) {
    const std::tuple<int32_t, const char*, const char*> cases[] = {
        {kRadioRepro, "kVp Avg", R"(<Value Type="1">80.1</Value>)"},
        {kRadioRepro, "kVp Avg", R"(<Value Type="5">80.1</Value>)"},
        {kRadioRepro, "ER Exposure", R"(<Value Type="1">0.05</Value>)"},
        {kFluoroExposure, "ER Maxi. Exposure Rate2", R"(<Value Type="1">3</Value>)"},
        {kFluoroExposure, "ER Maxi. Exposure Rate2", R"(<Value Type="5">3</Value>)"},
    };
    for (const auto& [test, key, value] : cases) {
        const std::string saved = Saved(*Loaded(test, OneMeasurement(key, value)));
        EXPECT_NE(saved.find(value), std::string::npos) << key << ": " << saved;
    }
}

TEST_F(ResultPersistence, AnOverRangeReadingThatWasStoredAsAPassFailsWhenItIsJudged) {
    for (const char* mark : {"22420::OL", "22421::UL"}) {
        const auto loaded =
            Loaded(kMammoRadiation,
                   OneMeasurement("Exposure", std::string("<Value Type=\"5\">") + mark + "</Value>"));
        EXPECT_EQ(loaded->Status(), kPassed) << mark;
        loaded->UpdateAllStatus(owner, &selected);
        EXPECT_EQ(loaded->Status(), kFailed) << mark;
    }
}

TEST_F(ResultPersistence, OnlyAResultIsLoaded) {
    EXPECT_THROW(Loaded(kRadioRepro, "<Result/>"), HostError);
}

}  // namespace
}  // namespace vorex

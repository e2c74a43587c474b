#include "waveforms/waveform.h"

#include "support/library_test.h"

namespace vorex {
namespace {

class Waveforms : public test::LibraryTest {
  protected:
    std::shared_ptr<IXmlElement> Saved() { return waveform.Save(document); }

    std::shared_ptr<OutputDocument> document = std::make_shared<OutputDocument>();
    CWaveform waveform;
};

class CountingLog : public IProgressLog {
  public:
    void Position(std::string_view key, std::string_view) override { seen += std::string(key) + " "; }
    void Advance(int32_t steps) override { seen += "+" + std::to_string(steps); }
    void LogMessage(uint32_t, int32_t, std::string_view) override { seen += "!"; }
    std::string seen;
};

TEST_F(Waveforms, AnIntervalOfZeroOrLessIsOne) {
    for (const float interval : {0.0F, -2.0F}) {
        waveform.Resolution(interval);
        EXPECT_EQ(waveform.Resolution(), 1.0F);
    }
    waveform.Resolution(0.25F);
    EXPECT_EQ(waveform.Resolution(), 0.25F);
}

TEST_F(Waveforms, SamplesAreReadBetweenCommas) {
    waveform.Initialize("0,40.5, 80.1,,x,-3,1e39");
    EXPECT_EQ(waveform.Values(),
              (std::vector<float>{0, 40.5F, 80.1F, 0, 0, -3, std::numeric_limits<float>::max()}));
    EXPECT_EQ(waveform.ValueCount(), 7);
    waveform.Initialize("5");
    EXPECT_EQ(waveform.Values(), std::vector<float>{5});
    waveform.Initialize("");
    EXPECT_EQ(waveform.ValueCount(), 0);
}

TEST_F(Waveforms, AWaveformComesBackAsItWasSaved) {
    waveform.Initialize("0,40.5,80.1,80.2,0");
    waveform.IncludeInReport(true);
    waveform.Resolution(0.1F);
    const auto element = Saved();
    EXPECT_EQ(element->Text(), "0,40.5,80.1,80.2,0");
    EXPECT_EQ(test::Listed(*element), "PrintWaveform=True;WaveformResolution=0.1");
    CWaveform loaded;
    CountingLog log;
    loaded.Load(element, &log);
    EXPECT_EQ(log.seen, "Waveform +1");
    EXPECT_EQ(loaded.Values(), waveform.Values());
    EXPECT_EQ(loaded.ValueCount(), 5);
    EXPECT_TRUE(loaded.IncludeInReport());
    EXPECT_EQ(loaded.Resolution(), 0.1F);
    EXPECT_EQ(test::Listed(*loaded.Save(document)), test::Listed(*element));
}

TEST_F(Waveforms, AnEmptyWaveformSavesWithoutTextAndALoneSampleDoesNotComeBack) {
    const std::string empty = "PrintWaveform=False;WaveformResolution=0";
    EXPECT_EQ(test::Listed(*Saved()), empty);
    waveform.IncludeInReport(true);
    waveform.Resolution(10);
    for (const std::string samples : {"", "5"}) {
        waveform.Initialize(samples);
        const auto element = Saved();
        EXPECT_EQ(element->Text(), samples);
        CWaveform loaded;
        CountingLog log;
        loaded.Load(element, &log);
        EXPECT_EQ(loaded.ValueCount(), 0);
        EXPECT_EQ(test::Listed(*loaded.Save(document)), empty) << "the object stays empty";
        EXPECT_EQ(log.seen, "Waveform ");
    }
}

TEST_F(Waveforms, AMissingChildLeavesItsField) {
    waveform.IncludeInReport(true);
    waveform.Resolution(4);
    waveform.Load(test::XmlText("<Waveform>1,2</Waveform>").Root(), nullptr);
    EXPECT_TRUE(waveform.IncludeInReport());
    EXPECT_EQ(waveform.Resolution(), 4.0F);
    test::XmlText other(
        "<Waveform>1,2<PrintWaveform>true</PrintWaveform>"
        "<WaveformResolution>0,5</WaveformResolution></Waveform>");
    waveform.Load(other.Root(), nullptr);
    EXPECT_FALSE(waveform.IncludeInReport()) << "only \"True\" is true";
    EXPECT_EQ(waveform.Resolution(), 0.5F);
}

TEST_F(Waveforms, ADocumentThatMakesNoElementIsAnError) {
    const auto [code, source, severity] =
        test::FaultOf([&] { waveform.Save(std::make_shared<test::FullDocument>()); });
    EXPECT_EQ(code, 0x8004A3ECU);
    EXPECT_EQ(source, "VorexZRD47500Test.CWaveForm");
}

TEST_F(Waveforms, TheTraceShowsTheFirstFiveHundredCharacters) {
    std::vector<std::string> lines;
    HostServices services;
    services.trace = [&](std::string_view line) { lines.emplace_back(line); };
    InstallServices(services);
    std::string samples = "1";
    for (int i = 0; i < 400; ++i) samples += ",2";
    waveform.Initialize(samples);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0], "$IWaveform_Initialize$ - @Printing WaveformData");
    EXPECT_EQ(lines[1], samples.substr(0, 500));
    EXPECT_EQ(lines[2], "$IWaveform_Initialize$ - @Finished WaveformData");
}

}  // namespace
}  // namespace vorex

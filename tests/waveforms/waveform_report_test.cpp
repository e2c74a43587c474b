#include "support/library_test.h"
#include "support/recording_report.h"
#include "waveforms/report_layout.h"
#include "waveforms/waveform.h"

namespace vorex {
namespace {

class WaveformReport : public test::LibraryTest {
  protected:
    static CWaveform Waveform(const std::string& samples, float interval, uint8_t type) {
        CWaveform waveform;
        waveform.IncludeInReport(true);
        waveform.Resolution(interval);
        waveform.WaveformType(type);
        waveform.Initialize(samples);
        return waveform;
    }
    /// The calls that begin with a word.
    std::string Calls(const std::string& word) const {
        std::string list;
        for (const std::string& call : report.calls)
            if (call.starts_with(word)) list += call + "\n";
        return list;
    }

    test::RecordingReport report;
};

TEST_F(WaveformReport, ScalesMapTheDataAreaOntoThePlotArea) {
    CPrinterXY xy;
    xy.SetPlotArea({1000, 3000, 9000, 200});
    const float samples[] = {0, 50, 100, 20};
    xy.SetValues(samples, 2, 1);
    // Four samples and one interval more; a tenth of room above the largest.
    EXPECT_DOUBLE_EQ(xy.DataArea().xMaximum, 10);
    EXPECT_NEAR(xy.DataArea().yMaximum, 110, 1e-9);
    xy.Prepare(report);
    EXPECT_EQ(report.Calls(),
              "line 1000,200 9000,200\nline 9000,200 9000,3000\nline 1000,3000 9000,3000\n"
              "line 1000,3000 1000,200\n");
    EXPECT_EQ(xy.PageX(5), 5000);
    EXPECT_EQ(xy.PageY(55), 1600);
    EXPECT_EQ(xy.PageY(-3e38), 1000000) << "far below the page, not beyond what a place can hold";
    xy.SetValues(samples, 2, 2);
    EXPECT_DOUBLE_EQ(xy.DataArea().xMaximum, 20);
    EXPECT_NEAR(xy.DataArea().yMaximum, 220, 1e-9);
    xy.SetValues(std::array<float, 2>{0, 0}, 1, 1);
    xy.Prepare(report);
    EXPECT_EQ(xy.PageY(0), 3000) << "a flat line is on the axis";
    EXPECT_EQ(xy.PageY(7), 3000);
}

TEST_F(WaveformReport, APlotHasCaptionFrameTicksUnitsAndCurve) {
    report.Position(1000);
    Waveform("0,80,80,40", 10, kKvWaveform).PrintReport(&report);
    // The plot: 1260 to 9520 wide; the time axis 4300, the top 1500; x to 50, y to 88.
    EXPECT_EQ(Calls("figure"), "figure KV Waveform\n");
    EXPECT_EQ(Calls("curve"), "curve 1260,4300 2912,1755 4564,1755 6216,3027\n");
    EXPECT_EQ(Calls("text"),
              "text 5390,1000 KV Waveform\n"
              "text 1260,4410 0.0\ntext 2912,4410 10.0\ntext 4564,4410 20.0\ntext 6216,4410 30.0\n"
              "text 7868,4410 40.0\ntext 9520,4410 50.0\ntext 5390,4630 Time [msec]\n"
              "text 1150,4220 0.0\ntext 1150,3584 20.0\ntext 1150,2947 40.0\ntext 1150,2311 60.0\n"
              "text 1150,1675 80.0\ntext 1260,1220 kVp [KV]\n");
    EXPECT_EQ(report.calls.back(), "table <+4900;\n;\n") << "an empty row ends the room of the plot";
    EXPECT_EQ(report.Position(), 5100);
}

TEST_F(WaveformReport, TheKindAndLengthOfAWaveformGiveItsCaptions) {
    Waveform("0,0.2,0", 1, kMaWaveform).PrintReport(&report);
    EXPECT_EQ(Calls("figure"), "figure mA Waveform\n");
    const std::string texts = Calls("text");
    EXPECT_NE(texts.find(" mA\n"), std::string::npos) << texts;
    EXPECT_NE(texts.find(" 0.05\n"), std::string::npos) << texts;
    EXPECT_NE(texts.find(" 0.2\n"), std::string::npos) << texts;
    report = test::RecordingReport();
    report.decimalSign = ',';
    Waveform("0,80,0", 5000, kKvWaveform).PrintReport(&report);
    const std::string seconds = Calls("text");
    EXPECT_NE(seconds.find("Time [sec]\n"), std::string::npos) << seconds;
    EXPECT_NE(seconds.find(" 20,0\n"), std::string::npos) << seconds;
    EXPECT_EQ(seconds.find("20000"), std::string::npos) << seconds;
}

TEST_F(WaveformReport, NothingIsPrintedOfAWaveformKeptOutOrWithoutSamples) {
    CWaveform waveform = Waveform("0,80,0", 1, kKvWaveform);
    EXPECT_NO_THROW(waveform.PrintReport(nullptr));
    waveform.IncludeInReport(false);
    waveform.PrintReport(&report);
    Waveform("", 1, kKvWaveform).PrintReport(&report);
    EXPECT_TRUE(report.calls.empty()) << report.Calls();
}

TEST_F(WaveformReport, AFigureGoesToANewPageWhenItDoesNotFit) {
    report.pageHeight = 5000;
    report.Position(1101);
    Waveform("0,80,0", 1, kKvWaveform).PrintReport(&report);
    EXPECT_EQ(report.calls.front(), "page");
    EXPECT_TRUE(Calls("text").starts_with("text 5390,0 KV Waveform\n"));
}

TEST_F(WaveformReport, TicksAreOneTwoOrFiveTimesAPowerOfTenApart) {
    struct Case {
        float interval;  ///< of the five samples: the axis is six intervals long
        const char* ticks;
    };
    const Case cases[] = {
        {1, "0.0 1.0 2.0 3.0 4.0 5.0 6.0 Time [msec] "},
        {20, "0.0 20.0 40.0 60.0 80.0 100.0 120.0 Time [msec] "},
        {100, "0.0 100.0 200.0 300.0 400.0 500.0 600.0 Time [msec] "},
        {500, "0.0 500.0 1000.0 1500.0 2000.0 2500.0 3000.0 Time [msec] "},
        {10000, "0.0 10.0 20.0 30.0 40.0 50.0 60.0 Time [sec] "},
    };
    for (const Case& c : cases) {
        report = test::RecordingReport();
        Waveform("0,80,80,80,0", c.interval, kKvWaveform).PrintReport(&report);
        std::string ticks;
        for (const std::string& call : report.calls)  // the texts at the heights below the axis
            if (call.find(",3410 ") != std::string::npos || call.find(",3630 ") != std::string::npos)
                ticks += call.substr(call.find(' ', 5) + 1) + " ";
        EXPECT_EQ(ticks, c.ticks) << c.interval;
    }
}

}  // namespace
}  // namespace vorex

#include <cmath>
#include <string>
#include <vector>

#include "foundation/number_text.h"
#include "foundation/report_markup.h"
#include "foundation/utilities.h"
#include "waveforms/report_layout.h"
#include "waveforms/waveform.h"

// The printed plot of a waveform: caption, frame, both axes with ticks, curve.

namespace vorex {

namespace {

// The figure, in twips: the caption of the plot, the caption of the y axis, the plot, the numbers and the
// caption of the x axis.
constexpr int32_t kFigureHeight = 3900;
constexpr int32_t kLineHeight = 220;
/// From the top of a text to the middle of its digits.
constexpr int32_t kMiddleOfText = 80;
constexpr int32_t kPlotTop = 2 * kLineHeight + 60;
constexpr int32_t kPlotHeight = 2800;
constexpr int32_t kMargin = 560;
constexpr int32_t kNumberWidth = 700;
constexpr int32_t kTickLength = 70;
constexpr int32_t kNumberGap = 40;
constexpr int32_t kTextStyle = 7;
constexpr double kMostTicks = 8;
/// Beyond this many milliseconds the time axis counts seconds.
constexpr double kLongWaveform = 10000;
constexpr double kMsPerSecond = 1000;

constexpr std::string_view kAxisPicture = "0.0##";
constexpr std::string_view kFineAxisPicture = "0.0####";

/// The smallest of 1, 2 and 5 times a power of ten that cuts a range into few enough parts; 0 for an empty
/// range.
double TickStep(double range) {
    if (!(range > 0)) return 0;
    const double power = std::pow(10.0, std::floor(std::log10(range / kMostTicks)));
    for (double factor : {1.0, 2.0, 5.0})
        if (range / (factor * power) <= kMostTicks) return factor * power;
    return 10 * power;
}

class CWaveformPrinter {
  public:
    CWaveformPrinter(IReportDocument& report, const IWaveform& waveform)
        : mReport(report), mSamples(waveform.Values()), mInterval(waveform.Resolution()) {}

    void PrintWaveform(std::string_view caption, std::string_view yCaption) {
        mReport.BeginFigure(caption, kFigureHeight);
        mReport.Style(kTextStyle);
        mTop = mReport.Position();
        const int32_t left = kMargin + kNumberWidth;
        const int32_t right = mReport.Metric(kTextWidth) - kMargin;
        mXY.SetPlotArea({left, mTop + kPlotTop + kPlotHeight, right, mTop + kPlotTop});
        mXY.SetValues(mSamples, mInterval, 1);
        Write(kAlignCentre, (left + right) / 2, mTop, caption);
        mXY.Prepare(mReport);
        DrawXAxis((left + right) / 2);
        DrawYAxis(yCaption);
        DrawCurve();
        mReport.EndFigure();
        mReport.Position(mTop + kFigureHeight);
    }

  private:
    void Write(int32_t alignment, int32_t x, int32_t y, std::string_view words) {
        mReport.Alignment(alignment);
        mReport.DrawText(x, y, words);
    }

    std::string TickText(double value, double step) const {
        constexpr double kFinestOfPicture = 0.001;
        return markup::Number(FormatPicture(value, step < kFinestOfPicture ? kFineAxisPicture : kAxisPicture),
                              mReport);
    }

    void DrawXAxis(int32_t middle) {
        const int32_t axis = mXY.XAxis()[1];
        const double extent = mXY.DataArea().xMaximum;
        const double unit = extent > kLongWaveform ? kMsPerSecond : 1;
        const double step = TickStep(extent / unit);
        for (int32_t i = 0; step > 0 && i * step <= extent / unit; ++i) {
            const int32_t x = mXY.PageX(i * step * unit);
            mReport.DrawLine(x, axis, x, axis + kTickLength);
            Write(kAlignCentre, x, axis + kTickLength + kNumberGap, TickText(i * step, step));
        }
        Write(kAlignCentre, middle, axis + kTickLength + kNumberGap + kLineHeight,
              Translate(unit > 1 ? text::kTimeInSec : text::kTimeInMsec, &mReport));
    }

    void DrawYAxis(std::string_view caption) {
        const int32_t axis = mXY.YAxis()[0];
        const double step = TickStep(mXY.DataArea().yMaximum);
        for (int32_t i = 0; step > 0 && i * step <= mXY.DataArea().yMaximum; ++i) {
            const int32_t y = mXY.PageY(i * step);
            mReport.DrawLine(axis - kTickLength, y, axis, y);
            Write(kAlignRight, axis - kTickLength - kNumberGap, y - kMiddleOfText, TickText(i * step, step));
        }
        Write(kAlignLeft, axis, mTop + kLineHeight, caption);
    }

    void DrawCurve() {
        std::vector<int32_t> x;
        std::vector<int32_t> y;
        for (std::size_t i = 0; i < mSamples.size(); ++i) {
            x.push_back(mXY.PageX(static_cast<double>(i) * mInterval));
            y.push_back(mXY.PageY(mSamples[i]));
        }
        mReport.PlotPoints(x, y);
    }

    IReportDocument& mReport;
    const std::vector<float>& mSamples;
    double mInterval;
    CPrinterXY mXY;
    int32_t mTop = 0;
};

}  // namespace

void CWaveform::PrintReport(IReportDocument* report) const {
    if (report == nullptr || !mIncludeInReport || mValueCount < 1) return;
    const bool ma = mType == kMaWaveform;
    CWaveformPrinter(*report, *this)
        .PrintWaveform(Translate(ma ? text::kMaWaveformTab : text::kKvWaveform, report),
                       Translate(ma ? text::kMa : text::kKvWaveformTab, report));
    // An empty row ends the room of the plot.
    report->PrintTable("<+" + PlainText(report->Position()) + markup::kRowEnd,
                       std::string(1, markup::kRowEnd));
}

}  // namespace vorex

#include "waveforms/report_layout.h"

#include <algorithm>
#include <cmath>

namespace vorex {

namespace {

/// A position in twips; values far outside the plot map to a position far outside the page.
int32_t Place(double twips) {
    constexpr double kFarAway = 1e6;
    return static_cast<int32_t>(std::lround(std::clamp(twips, -kFarAway, kFarAway)));
}

}  // namespace

void CPrinterXY::SetPlotArea(const PageArea& area) {
    mPlot = area;
    mXAxis = {area.left, area.top, area.right, area.top};
    mYAxis = {area.left, area.top, area.left, area.bottom};
}

void CPrinterXY::SetValues(std::span<const float> samples, double interval, double factor) {
    constexpr double kHeadroom = 0.1;
    mData = {};
    for (float sample : samples) mData.yMaximum = std::max(mData.yMaximum, static_cast<double>(sample));
    mData.yMaximum += (mData.yMaximum - mData.yMinimum) * kHeadroom;
    mData.xMaximum = static_cast<double>(samples.size() + 1) * interval * factor;
    mData.yMaximum *= factor;
}

void CPrinterXY::Prepare(IReportDocument& report) {
    const double width = mData.xMaximum - mData.xMinimum;
    const double height = mData.yMaximum - mData.yMinimum;
    mXScale = width > 0 ? (mPlot.right - mPlot.left) / width : 0;
    mXOffset = mPlot.left - mData.xMinimum * mXScale;
    mYScale = height > 0 ? (mPlot.bottom - mPlot.top) / height : 0;
    mYOffset = mPlot.top - mData.yMinimum * mYScale;
    report.DrawLine(mPlot.left, mPlot.bottom, mPlot.right, mPlot.bottom);
    report.DrawLine(mPlot.right, mPlot.bottom, mPlot.right, mPlot.top);
    report.DrawLine(mXAxis[0], mXAxis[1], mXAxis[2], mXAxis[3]);
    report.DrawLine(mYAxis[0], mYAxis[1], mYAxis[2], mYAxis[3]);
}

int32_t CPrinterXY::PageX(double x) const {
    return Place(mXOffset + x * mXScale);
}

int32_t CPrinterXY::PageY(double y) const {
    return Place(mYOffset + y * mYScale);
}

}  // namespace vorex

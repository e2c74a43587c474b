#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "foundation/host_contract.h"

namespace vorex {

/// A rectangle on the page, in twips.
struct PageArea {
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;
};

/// The data area of a plot, in the units of its axes.
struct DataRange {
    double xMinimum = 0;
    double yMinimum = 0;
    double xMaximum = 0;
    double yMaximum = 0;
};

/// Maps data to the page. The top of the plot area is the position of the smallest y, so with a top below its
/// bottom the values grow towards the head of the page.
class CPrinterXY {
  public:
    using Frame = std::array<int32_t, 4>;

    /// Ends of the two axes: x1, y1, x2, y2.
    const Frame& XAxis() const { return mXAxis; }
    const Frame& YAxis() const { return mYAxis; }
    void SetPlotArea(const PageArea& area);
    void SetDataArea(const DataRange& range) { mData = range; }
    const DataRange& DataArea() const { return mData; }
    /// Computes the data area from samples at a fixed interval: x from 0 to one interval after the last
    /// sample, y from 0 to the largest sample plus a tenth.
    void SetValues(std::span<const float> samples, double interval, double factor);
    /// Computes the scales and draws frame and axes.
    void Prepare(IReportDocument& report);
    int32_t PageX(double x) const;
    int32_t PageY(double y) const;

  private:
    PageArea mPlot;
    DataRange mData;
    double mXScale = 0;
    double mYScale = 0;
    double mXOffset = 0;
    double mYOffset = 0;
    Frame mXAxis{};
    Frame mYAxis{};
};

}  // namespace vorex

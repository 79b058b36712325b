#pragma once

#include "cli/demo/plot.h"

#include <string>

namespace velmora::cli {

// A drawing of a plot at one size. Texts keep about the same height at every size, so a page carries
// a few sizes and shows the one that fits its column.
struct CPlotSize
{
    const char* m_pClass; // of the SVG element; also makes its ids unique
    int m_nWidth;         // units of the drawing; a text is 12 high
    int m_nHeight;
};

// The plot as an SVG element: axes with round ticks, grid, curves, markers, legend. All coordinates are
// finite and near the drawing, whatever the data hold: what is not finite leaves a gap, what is far
// outside is cut at the frame. Curves with more points than columns keep each column's extremes.
[[nodiscard]] std::string drawPlot(const CPlot& plot, const CPlotSize& size);

} // namespace velmora::cli

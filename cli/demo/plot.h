#pragma once

#include <string>
#include <vector>

namespace velmora::cli {

// How an axis runs and which steps its ticks take.
enum class EPlotScale
{
    linear,     // 1, 2, 5, 10 ...
    decibel,    // 1, 2, 3, 6, 12, 24 ...
    degree,     // 15, 30, 45, 90, 180 ...
    logarithmic // a line for each digit of each decade; the axis begins above 0
};

struct CPlotAxis
{
    EPlotScale m_eScale = EPlotScale::linear;
    double m_dLow = 0.0;
    double m_dHigh = 1.0;
    std::string m_sUnit; // "Hz"; stands beside the axis
};

struct CPlotPoint
{
    double m_dX = 0.0;
    double m_dY = 0.0; // a value that is not finite leaves a gap in the curve
};

// What a column of a waveform spans.
struct CPlotBand
{
    double m_dX = 0.0;
    double m_dLow = 0.0;
    double m_dHigh = 0.0;
};

// The role of a curve; the page's style gives each its colour and stroke.
enum class EPlotRole
{
    before,
    after,
    left,
    right
};

struct CPlotCurve
{
    std::string m_sName; // for the legend; empty leaves it out there
    EPlotRole m_eRole = EPlotRole::after;
    bool m_bFilled = false; // down to the bottom of the plot
    std::vector<CPlotPoint> m_points;
    std::vector<CPlotBand> m_bands; // drawn instead of the points when there are any
};

// A point that carries a text.
struct CPlotMarker
{
    CPlotPoint m_point;
    std::string m_sText;
};

struct CPlot
{
    std::string m_sId;          // unique on the page; letters, digits and dashes
    std::string m_sTitle;       // for readers who cannot see the picture ...
    std::string m_sDescription; // ... and what they would see
    CPlotAxis m_xAxis;
    CPlotAxis m_yAxis;
    std::vector<CPlotCurve> m_curves;
    std::vector<CPlotMarker> m_markers;
};

} // namespace velmora::cli

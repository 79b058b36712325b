#pragma once

#include "cli/demo/plot.h"

#include <string>
#include <vector>

namespace velmora::cli {

struct CPlotTick
{
    double m_dValue = 0.0;
    std::string m_sLabel; // empty for a line between labelled ones
};

// The ticks of an axis from low to high, with at most nMaxLabels labels, but at least two where the
// axis' steps allow it. An axis that cannot be drawn has none: its limits are not finite or not in
// order, or a logarithmic one does not begin above 0.
[[nodiscard]] std::vector<CPlotTick> axisTicks(const CPlotAxis& axis, int nMaxLabels);

// An axis that shows all values from dLow to dHigh and ends on round numbers at both ends. Limits that
// are not finite count as 0, and a range without extent is widened.
[[nodiscard]] CPlotAxis fittedAxis(EPlotScale eScale, std::string sUnit, double dLow, double dHigh);

// Where the value lies on the axis: 0.0 at its low end, 1.0 at its high end, beyond them outside; not a
// number for a value that has no place.
[[nodiscard]] double positionOnAxis(const CPlotAxis& axis, double dValue);

// A number as it is set in print, with a true minus sign and nDecimals digits after the point.
[[nodiscard]] std::string printedNumber(double dValue, int nDecimals);

} // namespace velmora::cli

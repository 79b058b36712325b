#include "cli/demo/svg_plot.h"

#include "base/text.h"
#include "cli/demo/markup.h"
#include "cli/demo/plot_axis.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace velmora::cli {

namespace {

constexpr double MARGIN_LEFT = 46;
constexpr double MARGIN_RIGHT = 14;
constexpr double MARGIN_TOP = 8;
constexpr double LEGEND_HEIGHT = 18; // above the frame, when there is a legend or a unit
constexpr double MARGIN_BOTTOM = 24;
constexpr double LETTER_WIDTH = 6.6;   // of a text 12 high, about
constexpr double LABEL_SPACING_X = 56; // units that a label of a linear x axis needs
constexpr double LABEL_SPACING_LOG = 29;
constexpr double LABEL_SPACING_Y = 26;
constexpr double OUTSIDE = 40; // how far beyond the drawing a coordinate may lie
constexpr double LEAST_BAND_HEIGHT = 0.8;
constexpr double MARKER_GAP = 8;
constexpr double LABEL_GAP = 5; // between two labels of the x axis

const char* className(EPlotRole eRole)
{
    constexpr const char* NAMES[] = {"before", "after", "left", "right"};
    return NAMES[static_cast<std::size_t>(eRole)];
}

// A coordinate with one digit after the point, and without one where it is zero.
std::string coordinate(double dValue)
{
    std::string sText = formatted("%.1f", dValue);
    if (sText.ends_with(".0"))
        sText.resize(sText.size() - 2);
    return sText == "-0" ? "0" : sText;
}

std::string pointText(const CPlotPoint& point)
{
    return coordinate(point.m_dX) + " " + coordinate(point.m_dY);
}

std::size_t countOfLetters(const std::string& sText)
{
    return static_cast<std::size_t>(
        std::count_if(sText.begin(), sText.end(), [](char cByte) { return (cByte & 0xC0) != 0x80; }));
}

bool hasTopLine(const CPlot& plot)
{
    return !plot.m_yAxis.m_sUnit.empty() ||
           std::ranges::any_of(plot.m_curves, [](const CPlotCurve& curve) { return !curve.m_sName.empty(); });
}

class CSvgPlotWriter
{
  public:
    CSvgPlotWriter(const CPlot& plot, const CPlotSize& size)
        : m_plot(plot), m_size(size), m_sId(plot.m_sId + "-" + size.m_pClass),
          m_dTop(MARGIN_TOP + (hasTopLine(plot) ? LEGEND_HEIGHT : 0.0)),
          m_dRight(size.m_nWidth - MARGIN_RIGHT), m_dBottom(size.m_nHeight - MARGIN_BOTTOM)
    {
    }

    std::string write()
    {
        writeHead();
        writeGrid();
        m_sOut += "<g clip-path=\"url(#" + m_sId + "-clip)\">";
        for (const CPlotCurve& curve : m_plot.m_curves)
            writeCurve(curve);
        m_sOut += "</g>\n";
        for (const CPlotMarker& marker : m_plot.m_markers)
            writeMarker(marker);
        writeLegend();
        return std::move(m_sOut) + "</svg>\n";
    }

  private:
    [[nodiscard]] double screenX(double dX) const
    {
        return MARGIN_LEFT + positionOnAxis(m_plot.m_xAxis, dX) * (m_dRight - MARGIN_LEFT);
    }

    // A value beyond the frame is cut there, so it need not keep its distance.
    [[nodiscard]] double screenY(double dY) const
    {
        const double dPlace = m_dBottom - positionOnAxis(m_plot.m_yAxis, dY) * (m_dBottom - m_dTop);
        return std::isfinite(dY) ? std::clamp(dPlace, -OUTSIDE, m_size.m_nHeight + OUTSIDE) : dPlace;
    }

    [[nodiscard]] bool isNearColumn(double dX) const
    {
        return dX >= -OUTSIDE && dX <= m_size.m_nWidth + OUTSIDE; // false for what is no number
    }

    void writeHead()
    {
        m_sOut +=
            formatted("<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"plot %s\" viewBox=\"0 0 %d %d\" "
                      "role=\"img\" aria-labelledby=\"%s-t %s-d\">\n",
                      m_size.m_pClass, m_size.m_nWidth, m_size.m_nHeight, m_sId.c_str(), m_sId.c_str());
        m_sOut += "<title id=\"" + m_sId + "-t\">" + escapedText(m_plot.m_sTitle) + "</title>\n";
        m_sOut += "<desc id=\"" + m_sId + "-d\">" + escapedText(m_plot.m_sDescription) + "</desc>\n";
        const std::string sFrame =
            formatted("x=\"%s\" y=\"%s\" width=\"%s\" height=\"%s\"", coordinate(MARGIN_LEFT).c_str(),
                      coordinate(m_dTop).c_str(), coordinate(m_dRight - MARGIN_LEFT).c_str(),
                      coordinate(m_dBottom - m_dTop).c_str());
        m_sOut += "<clipPath id=\"" + m_sId + "-clip\"><rect " + sFrame + " /></clipPath>\n";
        m_sOut += "<rect class=\"frame\" " + sFrame + " />\n";
    }

    void writeText(const char* pClass, double dX, double dY, const char* pAnchor, const std::string& sText)
    {
        m_sOut += formatted("<text class=\"%s\" x=\"%s\" y=\"%s\" text-anchor=\"%s\">", pClass,
                            coordinate(dX).c_str(), coordinate(dY).c_str(), pAnchor) +
                  escapedText(sText) + "</text>\n";
    }

    void writeGrid()
    {
        const bool bLog = m_plot.m_xAxis.m_eScale == EPlotScale::logarithmic;
        const double dSpacing = bLog ? LABEL_SPACING_LOG : LABEL_SPACING_X;
        const auto xTicks =
            axisTicks(m_plot.m_xAxis, 1 + static_cast<int>((m_dRight - MARGIN_LEFT) / dSpacing));
        const auto yTicks =
            axisTicks(m_plot.m_yAxis, 1 + static_cast<int>((m_dBottom - m_dTop) / LABEL_SPACING_Y));
        std::string sMinor, sMajor, sZero;
        for (const CPlotTick& tick : xTicks) {
            std::string& sLines = tick.m_sLabel.empty() ? sMinor : sMajor;
            sLines += "M" + pointText({screenX(tick.m_dValue), m_dTop}) + "V" + coordinate(m_dBottom);
        }
        for (const CPlotTick& tick : yTicks) {
            std::string& sLines = tick.m_dValue == 0.0 ? sZero : sMajor;
            sLines += "M" + pointText({MARGIN_LEFT, screenY(tick.m_dValue)}) + "H" + coordinate(m_dRight);
        }
        for (const auto& [pClass, pLines] :
             {std::pair("minor", &sMinor), std::pair("major", &sMajor), std::pair("zero", &sZero)})
            if (!pLines->empty())
                m_sOut += formatted("<path class=\"grid %s\" d=\"", pClass) + *pLines + "\" />\n";
        writeXLabels(xTicks);
        writeYLabels(yTicks);
    }

    // Labels below the axis, the unit behind the last one. That one is set first; others keep clear of it.
    void writeXLabels(const std::vector<CPlotTick>& ticks)
    {
        double dLimit = m_size.m_nWidth - 1.0;
        bool bLast = true;
        for (auto tick = ticks.rbegin(); tick != ticks.rend(); ++tick) {
            if (tick->m_sLabel.empty())
                continue;
            const std::string sText = tick->m_sLabel + (bLast ? " " + m_plot.m_xAxis.m_sUnit : std::string());
            const double dHalf = LETTER_WIDTH * countOfLetters(sText) / 2;
            const double dX =
                bLast ? std::min(screenX(tick->m_dValue), dLimit - dHalf) : screenX(tick->m_dValue);
            if (dX + dHalf > dLimit)
                continue;
            writeText("tick", dX, m_dBottom + 16, "middle", sText);
            dLimit = dX - dHalf - LABEL_GAP;
            bLast = false;
        }
    }

    // Labels beside the axis, the unit above them.
    void writeYLabels(const std::vector<CPlotTick>& yTicks)
    {
        for (const CPlotTick& tick : yTicks)
            writeText("tick", MARGIN_LEFT - 6, screenY(tick.m_dValue) + 4, "end", tick.m_sLabel);
        if (!m_plot.m_yAxis.m_sUnit.empty())
            writeText("unit", MARGIN_LEFT - 6, m_dTop - 12, "end", m_plot.m_yAxis.m_sUnit);
    }

    void writeCurve(const CPlotCurve& curve)
    {
        const std::string sClass = className(curve.m_eRole);
        if (!curve.m_bands.empty()) {
            m_sOut += "<path class=\"band " + sClass + "\" d=\"" + bandPath(curve) + "\" />\n";
            return;
        }
        const auto runs = reducedRuns(curve.m_points);
        if (curve.m_bFilled)
            m_sOut += "<path class=\"area " + sClass + "\" d=\"" + linePath(runs, true) + "\" />\n";
        m_sOut += "<path class=\"line " + sClass + "\" d=\"" + linePath(runs, false) + "\" />\n";
    }

    using CRun = std::vector<CPlotPoint>; // in units of the drawing, without a gap

    // The curve as it appears on the drawing: one run between two gaps, and of the points that fall into
    // one column only the first, the lowest, the highest and the last.
    [[nodiscard]] std::vector<CRun> reducedRuns(const std::vector<CPlotPoint>& points) const
    {
        std::vector<CRun> runs(1);
        CRun column;
        const auto closeColumn = [&] {
            const auto byY = [](const CPlotPoint& a, const CPlotPoint& b) { return a.m_dY < b.m_dY; };
            const auto [lowest, highest] = std::minmax_element(column.begin(), column.end(), byY);
            for (auto point = column.begin(); point != column.end(); ++point)
                if (point == column.begin() || point + 1 == column.end() || point == lowest ||
                    point == highest)
                    runs.back().push_back(*point);
            column.clear();
        };
        for (const CPlotPoint& point : points) {
            const CPlotPoint place{screenX(point.m_dX), screenY(point.m_dY)};
            if (!isNearColumn(place.m_dX) || !std::isfinite(place.m_dY)) {
                closeColumn();
                if (!runs.back().empty())
                    runs.emplace_back();
                continue;
            }
            if (!column.empty() && std::floor(column.front().m_dX) != std::floor(place.m_dX))
                closeColumn();
            column.push_back(place);
        }
        closeColumn();
        return runs;
    }

    [[nodiscard]] std::string linePath(const std::vector<CRun>& runs, bool bClosed) const
    {
        std::string sPath;
        for (const CRun& run : runs) {
            if (run.empty())
                continue;
            if (bClosed)
                sPath += "M" + pointText({run.front().m_dX, m_dBottom}) + "L" + pointText(run.front());
            else
                sPath += "M" + pointText(run.front()) + (run.size() == 1 ? "h0" : "");
            for (auto point = run.begin() + 1; point != run.end(); ++point)
                sPath += "L" + pointText(*point);
            if (bClosed)
                sPath += "V" + coordinate(m_dBottom) + "Z";
        }
        return sPath;
    }

    [[nodiscard]] std::string bandPath(const CPlotCurve& curve) const
    {
        std::string sPath, sBack;
        const auto closeRun = [&] {
            if (!sPath.empty() && !sBack.empty())
                sPath += sBack + "Z";
            sBack.clear();
        };
        for (const CPlotBand& band : curve.m_bands) {
            const double dX = screenX(band.m_dX);
            double dTop = screenY(band.m_dHigh);
            double dFoot = screenY(band.m_dLow);
            if (!isNearColumn(dX) || !std::isfinite(dTop) || !std::isfinite(dFoot)) {
                closeRun();
                continue;
            }
            const double dMissing = std::max(0.0, LEAST_BAND_HEIGHT - (dFoot - dTop)) / 2;
            dTop -= dMissing;
            dFoot += dMissing;
            sPath += (sBack.empty() ? "M" : "L") + pointText({dX, dTop});
            sBack.insert(0, "L" + pointText({dX, dFoot}));
        }
        closeRun();
        return sPath;
    }

    void writeMarker(const CPlotMarker& marker)
    {
        const double dX = screenX(marker.m_point.m_dX);
        const double dY = screenY(marker.m_point.m_dY);
        if (!isNearColumn(dX) || !std::isfinite(dY))
            return;
        const bool bLeft = dX + MARKER_GAP + LETTER_WIDTH * countOfLetters(marker.m_sText) > m_dRight;
        m_sOut += formatted("<circle class=\"marker\" cx=\"%s\" cy=\"%s\" r=\"3.5\" />\n",
                            coordinate(dX).c_str(), coordinate(dY).c_str());
        writeText("note", dX + (bLeft ? -MARKER_GAP : MARKER_GAP),
                  std::clamp(dY + 4, m_dTop + 14, m_dBottom - 6), bLeft ? "end" : "start", marker.m_sText);
    }

    void writeLegend()
    {
        double dX = m_dRight;
        for (auto curve = m_plot.m_curves.rbegin(); curve != m_plot.m_curves.rend(); ++curve) {
            if (curve->m_sName.empty())
                continue;
            writeText("legend", dX, m_dTop - 10, "end", curve->m_sName);
            dX -= LETTER_WIDTH * countOfLetters(curve->m_sName) + 6;
            m_sOut += formatted("<path class=\"line %s\" d=\"M%s %sh-18\" />\n", className(curve->m_eRole),
                                coordinate(dX).c_str(), coordinate(m_dTop - 14).c_str());
            dX -= 18 + 16;
        }
    }

    const CPlot& m_plot;
    const CPlotSize& m_size;
    const std::string m_sId;
    const double m_dTop;
    const double m_dRight;
    const double m_dBottom;
    std::string m_sOut;
};

} // namespace

std::string drawPlot(const CPlot& plot, const CPlotSize& size)
{
    return CSvgPlotWriter(plot, size).write();
}

} // namespace velmora::cli

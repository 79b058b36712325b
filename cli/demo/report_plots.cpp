#include "cli/demo/report_plots.h"

#include "base/text.h"
#include "cli/demo/plot_axis.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velmora::cli {

namespace {

constexpr double LOWEST_HZ = 20.0;
constexpr double HIGHEST_HZ = 20000.0;
constexpr double SPECTRUM_SPAN_DB = 84.0; // below the highest value, as far as a spectrum is shown
constexpr double RESPONSE_SPAN_DB = 72.0;
constexpr double HEADROOM_DB = 3.0;
constexpr double LEAST_SHOWN_DB = -120.0;
constexpr double SAME_CURVE = 1e-4; // of the range: too near one another to be seen apart

CPlotAxis frequencyAxis()
{
    return {EPlotScale::logarithmic, LOWEST_HZ, HIGHEST_HZ, "Hz"};
}

struct CRange
{
    double m_dLow = std::numeric_limits<double>::infinity();
    double m_dHigh = -std::numeric_limits<double>::infinity();

    void include(const std::vector<CPlotPoint>& points, const CPlotAxis& xAxis)
    {
        for (const CPlotPoint& point : points) {
            if (!std::isfinite(point.m_dY) || point.m_dX < xAxis.m_dLow || point.m_dX > xAxis.m_dHigh)
                continue;
            m_dLow = std::min(m_dLow, point.m_dY);
            m_dHigh = std::max(m_dHigh, point.m_dY);
        }
    }
};

// A dB axis with some air above the highest value, which reaches down no further than dSpan.
CPlotAxis decibelAxis(const CRange& range, double dSpan)
{
    const double dHigh = (std::isfinite(range.m_dHigh) ? range.m_dHigh : 0.0) + HEADROOM_DB;
    const double dLow = std::isfinite(range.m_dLow) ? range.m_dLow : dHigh - dSpan;
    return fittedAxis(EPlotScale::decibel, "dB", std::max(dLow, dHigh - dSpan), dHigh);
}

bool areAlike(const std::vector<CPlotPoint>& left, const std::vector<CPlotPoint>& right, double dRange)
{
    const auto alike = [&](const CPlotPoint& a, const CPlotPoint& b) {
        const bool bBothFinite = std::isfinite(a.m_dY) && std::isfinite(b.m_dY);
        return a.m_dX == b.m_dX && (bBothFinite ? std::abs(a.m_dY - b.m_dY) <= SAME_CURVE * dRange
                                                : std::isfinite(a.m_dY) == std::isfinite(b.m_dY));
    };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(), alike);
}

// With a gap wherever the angle turns over at +-180 degrees.
std::vector<CPlotPoint> withoutWraps(const std::vector<CPlotPoint>& points)
{
    std::vector<CPlotPoint> result;
    for (const CPlotPoint& point : points) {
        if (!result.empty() && std::abs(point.m_dY - result.back().m_dY) > 180.0)
            result.push_back({point.m_dX, std::numeric_limits<double>::quiet_NaN()});
        result.push_back(point);
    }
    return result;
}

std::vector<CPlotCurve> channelCurves(const CReportResponse& response, double dRange)
{
    if (response.m_right.empty() || areAlike(response.m_left, response.m_right, dRange))
        return {{{}, EPlotRole::left, false, response.m_left, {}}};
    return {{"left", EPlotRole::left, false, response.m_left, {}},
            {"right", EPlotRole::right, false, response.m_right, {}}};
}

std::string frequencyText(double dHz)
{
    return dHz >= 1000.0 ? printedNumber(dHz / 1000.0, 2) + " kHz" : printedNumber(dHz, 0) + " Hz";
}

void addPeakMarker(CPlot& plot, const std::vector<CPlotPoint>& points)
{
    const CPlotPoint* pPeak = nullptr;
    for (const CPlotPoint& point : points)
        if (std::isfinite(point.m_dY) && point.m_dX >= LOWEST_HZ && point.m_dX <= HIGHEST_HZ &&
            (!pPeak || point.m_dY > pPeak->m_dY))
            pPeak = &point;
    if (pPeak)
        plot.m_markers.push_back({*pPeak, (pPeak->m_dY > 0.05 ? "+" : "") + printedNumber(pPeak->m_dY, 1) +
                                              " dB at " + frequencyText(pPeak->m_dX)});
}

CPlot frequencyPlot(const CDemoReport& report)
{
    CPlot plot{"frequency", "Frequency response", {}, frequencyAxis(), {}, {}, {}};
    CRange range;
    range.include(report.m_frequency.m_left, plot.m_xAxis);
    range.include(report.m_frequency.m_right, plot.m_xAxis);
    plot.m_yAxis = decibelAxis(range, RESPONSE_SPAN_DB);
    plot.m_curves = channelCurves(report.m_frequency, plot.m_yAxis.m_dHigh - plot.m_yAxis.m_dLow);
    addPeakMarker(plot, report.m_frequency.m_left);
    plot.m_sDescription = "Gain in dB over frequency from 20 Hz to 20 kHz.";
    if (!plot.m_markers.empty())
        plot.m_sDescription += " Highest: " + plot.m_markers[0].m_sText + ".";
    return plot;
}

CPlot phasePlot(const CDemoReport& report)
{
    const CReportResponse phase = {withoutWraps(report.m_phase.m_left), withoutWraps(report.m_phase.m_right)};
    CPlot plot{"phase",
               "Phase response",
               "Phase shift in degrees over frequency from 20 Hz to 20 kHz.",
               frequencyAxis(),
               {EPlotScale::degree, -180.0, 180.0, "deg"},
               {},
               {}};
    plot.m_curves = channelCurves(phase, 360.0);
    return plot;
}

CPlot timePlot(const char* pId, const char* pTitle, const CReportResponse& response)
{
    double dEnd = 0.0;
    for (const auto* pPoints : {&response.m_left, &response.m_right})
        for (const CPlotPoint& point : *pPoints)
            dEnd = std::max(dEnd, point.m_dX);
    CPlot plot{pId, pTitle, {}, {EPlotScale::linear, 0.0, dEnd > 0.0 ? dEnd : 1.0, "ms"}, {}, {}, {}};
    CRange range;
    range.include(response.m_left, plot.m_xAxis);
    range.include(response.m_right, plot.m_xAxis);
    plot.m_yAxis =
        fittedAxis(EPlotScale::linear, {}, std::min(range.m_dLow, 0.0), std::max(range.m_dHigh, 0.0));
    plot.m_curves = channelCurves(response, plot.m_yAxis.m_dHigh - plot.m_yAxis.m_dLow);
    plot.m_sDescription = formatted("Output over the first %.3g milliseconds; 1 is full scale.", dEnd);
    return plot;
}

} // namespace

std::string levelText(double dLevel)
{
    return dLevel > LEAST_SHOWN_DB ? printedNumber(dLevel, 1) + " dB" : std::string("silence");
}

CPlot waveformPlot(const CDemoReport& report, EReportSound eSound)
{
    const bool bBefore = eSound == EReportSound::before;
    const CReportSound& sound = bBefore ? report.m_before : report.m_after;
    // Both share their axes, so that they can be compared by eye.
    const double dSeconds = std::max(report.m_before.m_dSeconds, report.m_after.m_dSeconds);
    double dPeak = 0.0;
    for (const auto* pSound : {&report.m_before, &report.m_after})
        for (const CPlotBand& band : pSound->m_waveform)
            if (std::isfinite(band.m_dLow) && std::isfinite(band.m_dHigh))
                dPeak = std::max({dPeak, -band.m_dLow, band.m_dHigh});
    const double dLimit = dPeak > 1.0 ? std::ceil(dPeak * 2.0) / 2.0 : 1.0;

    CPlot plot;
    plot.m_sId = bBefore ? "waveform-before" : "waveform-after";
    plot.m_sTitle = bBefore ? "Waveform before processing" : "Waveform after processing";
    plot.m_sDescription = formatted("%.3g seconds; highest peak ", sound.m_dSeconds) +
                          levelText(sound.m_dPeakdB) + ", RMS " + levelText(sound.m_dRMSdB) +
                          ", both re full scale.";
    plot.m_xAxis = {EPlotScale::linear, 0.0, dSeconds > 0.0 ? dSeconds : 1.0, "s"};
    plot.m_yAxis = {EPlotScale::linear, -dLimit, dLimit, {}};
    plot.m_curves = {{{}, bBefore ? EPlotRole::before : EPlotRole::after, false, {}, sound.m_waveform}};
    return plot;
}

CPlot spectrumPlot(const CDemoReport& report)
{
    CPlot plot{"spectrum",
               "Spectrum before and after",
               "Average level of the recording in dB over frequency from 20 Hz to 20 kHz, before and after "
               "processing.",
               frequencyAxis(),
               {},
               {},
               {}};
    CRange range;
    range.include(report.m_before.m_spectrum, plot.m_xAxis);
    range.include(report.m_after.m_spectrum, plot.m_xAxis);
    plot.m_yAxis = decibelAxis(range, SPECTRUM_SPAN_DB);
    plot.m_curves = {{"before", EPlotRole::before, true, report.m_before.m_spectrum, {}},
                     {"after", EPlotRole::after, false, report.m_after.m_spectrum, {}}};
    return plot;
}

CPlot responsePlot(const CDemoReport& report, EReportResponse eResponse)
{
    switch (eResponse) {
    case EReportResponse::frequency:
        return frequencyPlot(report);
    case EReportResponse::phase:
        return phasePlot(report);
    case EReportResponse::impulse:
        return timePlot("impulse", "Impulse response", report.m_impulse);
    case EReportResponse::step:
        break;
    }
    return timePlot("step", "Step response", report.m_step);
}

} // namespace velmora::cli

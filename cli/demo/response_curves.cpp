#include "cli/demo/response_curves.h"

#include "analyzer/response_measurement.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace velmora::cli {

namespace {

constexpr int FRAMES = 16384;     // 2.7 Hz between two bins at 44.1 kHz
constexpr double SETTLED = 0.005; // of the largest excursion: too small to be seen
constexpr double AFTER_SETTLING = 1.2;
constexpr double LEAST_MILLISECONDS = 2.0;

// The number of frames after which the response stays near its last value.
std::size_t settlingFrames(std::span<const double> response)
{
    const double dEnd = response.back();
    double dLargest = 0.0;
    for (const double dValue : response)
        dLargest = std::max(dLargest, std::abs(dValue - dEnd));
    std::size_t uFrames = response.size();
    while (uFrames > 1 && !(std::abs(response[uFrames - 1] - dEnd) > SETTLED * dLargest))
        --uFrames;
    return uFrames;
}

std::vector<CPlotPoint> curve(std::span<const double> values, double dStepX)
{
    std::vector<CPlotPoint> result;
    result.reserve(values.size());
    for (const double dValue : values)
        result.push_back({static_cast<double>(result.size()) * dStepX, dValue});
    return result;
}

CReportResponse timeResponse(const CResponseMeasurement& measurement, double dSampleRate)
{
    const std::vector<double> left = measurement.channel(0);
    const std::vector<double> right = measurement.channel(1);
    const auto uSettled = static_cast<double>(std::max(settlingFrames(left), settlingFrames(right)));
    const double dShown = std::max(uSettled * AFTER_SETTLING, LEAST_MILLISECONDS * dSampleRate / 1000.0);
    const std::size_t uShown = std::min(static_cast<std::size_t>(dShown), left.size());
    const double dMilliseconds = 1000.0 / dSampleRate;
    return {curve(std::span(left).first(uShown), dMilliseconds),
            curve(std::span(right).first(uShown), dMilliseconds)};
}

} // namespace

bool measureResponses(CDSPFilter* pFilter, double dSampleRate, CResponseCurves& curves)
{
    CResponseMeasurement measurement;
    if (!measurement.measureImpulseLong(pFilter, false, FRAMES, dSampleRate))
        return false;
    curves.m_nFrames = FRAMES;
    curves.m_impulse = timeResponse(measurement, dSampleRate);
    const double dBinWidth = dSampleRate / FRAMES;
    const auto channel = [&](int nChannel, CReportResponse& frequency, CReportResponse& phase) {
        const std::vector<double> impulse = measurement.channel(nChannel);
        auto& frequencyCurve = nChannel == 0 ? frequency.m_left : frequency.m_right;
        auto& phaseCurve = nChannel == 0 ? phase.m_left : phase.m_right;
        frequencyCurve = curve(frequencyResponse(impulse, dSampleRate).m_dB, dBinWidth);
        phaseCurve = curve(phaseResponse(impulse), dBinWidth);
    };
    channel(0, curves.m_frequency, curves.m_phase);
    channel(1, curves.m_frequency, curves.m_phase);
    if (!measurement.measureStepLong(pFilter, false, FRAMES, dSampleRate))
        return false;
    curves.m_step = timeResponse(measurement, dSampleRate);
    return true;
}

} // namespace velmora::cli

#include "analyzer/response_measurement.h"

#include "dsp/fft.h"
#include "host/dsp_filter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmora {

namespace {

constexpr float FULL_SCALE = 32768.0F;
constexpr float STIMULUS = 32767.0F;
constexpr int CHANNELS = 2;
constexpr int BIT_DEPTH = 16;

// What a filter is told about the audio, put back at the end of a measurement.
class CFormatGuard
{
  public:
    explicit CFormatGuard(CDSPFilter& filter)
        : m_filter(filter), m_nSampleRate(filter.m_nSampleRate), m_nChannels(filter.m_nChannels),
          m_nBitDepth(filter.m_nBitDepth)
    {
    }
    ~CFormatGuard()
    {
        m_filter.m_nSampleRate = m_nSampleRate;
        m_filter.m_nChannels = m_nChannels;
        m_filter.setBitDepth(m_nBitDepth);
    }
    CFormatGuard(const CFormatGuard&) = delete;
    CFormatGuard& operator=(const CFormatGuard&) = delete;

  private:
    CDSPFilter& m_filter;
    int m_nSampleRate;
    int m_nChannels;
    int m_nBitDepth;
};

struct CSpectrum
{
    std::vector<double> m_real;
    std::vector<double> m_imaginary;
};

CSpectrum spectrumOf(std::span<const double> impulseResponse)
{
    CSpectrum spectrum{std::vector<double>(impulseResponse.size()),
                       std::vector<double>(impulseResponse.size())};
    CFFT fft;
    fft.transform(static_cast<int>(impulseResponse.size()), false, impulseResponse.data(), nullptr,
                  spectrum.m_real.data(), spectrum.m_imaginary.data());
    return spectrum;
}

bool isTransformLength(std::size_t uLength)
{
    return uLength >= 2 && (uLength & (uLength - 1)) == 0;
}

// Whole frames in so many milliseconds; 0, which is refused, for a length that no memory holds.
int framesOf(int nMilliseconds, double dSampleRate)
{
    const double dFrames = dSampleRate * nMilliseconds / 1000.0;
    return dFrames < CResponseMeasurement::MAX_FRAMES ? static_cast<int>(dFrames) : 0;
}

} // namespace

bool CResponseMeasurement::measureImpulse(CDSPFilter* pFilter, bool bNormalise, double dSampleRate)
{
    return measureImpulseLong(pFilter, bNormalise, DEFAULT_FRAMES, dSampleRate);
}

bool CResponseMeasurement::measureStep(CDSPFilter* pFilter, bool bNormalise, double dSampleRate)
{
    return measure(pFilter, EStimulus::step, EScaling::divideThenNormalise, bNormalise, DEFAULT_FRAMES,
                   dSampleRate);
}

bool CResponseMeasurement::measureImpulseLong(CDSPFilter* pFilter, bool bNormalise, int nFrames,
                                              double dSampleRate)
{
    return measure(pFilter, EStimulus::impulse, EScaling::divideOrNormalise, bNormalise, nFrames,
                   dSampleRate);
}

bool CResponseMeasurement::measureStepLong(CDSPFilter* pFilter, bool bNormalise, int nFrames,
                                           double dSampleRate)
{
    return measure(pFilter, EStimulus::step, EScaling::divideOrNormalise, bNormalise, nFrames, dSampleRate);
}

bool CResponseMeasurement::measureImpulseMs(CDSPFilter* pFilter, bool bNormalise, int nMilliseconds,
                                            double dSampleRate)
{
    return measureImpulseLong(pFilter, bNormalise, framesOf(nMilliseconds, dSampleRate), dSampleRate);
}

bool CResponseMeasurement::measureStepMs(CDSPFilter* pFilter, bool bNormalise, int nMilliseconds,
                                         double dSampleRate)
{
    return measureStepLong(pFilter, bNormalise, framesOf(nMilliseconds, dSampleRate), dSampleRate);
}

bool CResponseMeasurement::measure(CDSPFilter* pFilter, EStimulus eStimulus, EScaling eScaling,
                                   bool bNormalise, int nFrames, double dSampleRate)
{
    if (!pFilter || nFrames < 1 || nFrames > MAX_FRAMES)
        return false;
    const auto uSamples = static_cast<std::size_t>(nFrames) * CHANNELS;
    // An impulse is the first frame alone; a step is every frame but the first.
    const bool bStep = eStimulus == EStimulus::step;
    m_stimulus.assign(uSamples, bStep ? STIMULUS : 0.0F);
    std::fill_n(m_stimulus.begin(), CHANNELS, bStep ? 0.0F : STIMULUS);
    m_response.assign(uSamples, 0.0F);

    const CFormatGuard format(*pFilter);
    pFilter->m_nSampleRate = static_cast<int>(dSampleRate);
    pFilter->m_nChannels = CHANNELS;
    pFilter->setBitDepth(BIT_DEPTH);
    pFilter->prepareForPlay();
    pFilter->processBuffer(m_stimulus.data(), m_response.data(), CHANNELS, static_cast<unsigned>(uSamples),
                           0);

    const auto divideBy = [this](float fDivisor) {
        for (float& fSample : m_response)
            fSample /= fDivisor;
    };
    if (!bNormalise || eScaling == EScaling::divideThenNormalise)
        divideBy(FULL_SCALE);
    if (bNormalise)
        divideBy(*std::ranges::max_element(m_response));
    return true;
}

std::vector<double> CResponseMeasurement::channel(int nChannel) const
{
    std::vector<double> samples(m_response.size() / CHANNELS);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = m_response[CHANNELS * i + static_cast<std::size_t>(nChannel)];
    return samples;
}

CFrequencyResponse frequencyResponse(std::span<const double> impulseResponse, double dSampleRate)
{
    CFrequencyResponse result;
    if (!isTransformLength(impulseResponse.size()))
        return result;
    const CSpectrum spectrum = spectrumOf(impulseResponse);
    const std::size_t uBins = impulseResponse.size() / 2;
    const double dBinWidth = (dSampleRate / 2.0) / static_cast<double>(uBins);
    result.m_dB.resize(uBins);
    for (std::size_t k = 0; k < uBins; ++k)
        result.m_dB[k] = 20.0 * std::log10(std::sqrt(spectrum.m_real[k] * spectrum.m_real[k] +
                                                     spectrum.m_imaginary[k] * spectrum.m_imaginary[k]));
    const auto largest = std::ranges::max_element(result.m_dB);
    result.m_dMaxdB = *largest;
    result.m_dMindB = *std::ranges::min_element(result.m_dB);
    result.m_dMaxHz = static_cast<double>(largest - result.m_dB.begin()) * dBinWidth;
    result.m_dDCdB = result.m_dB.front();
    return result;
}

std::vector<double> phaseResponse(std::span<const double> impulseResponse)
{
    if (!isTransformLength(impulseResponse.size()))
        return {};
    const CSpectrum spectrum = spectrumOf(impulseResponse);
    std::vector<double> degrees(impulseResponse.size() / 2);
    for (std::size_t k = 0; k < degrees.size(); ++k)
        degrees[k] = std::atan2(-spectrum.m_imaginary[k], spectrum.m_real[k]) * 180.0 / std::numbers::pi;
    return degrees;
}

} // namespace velmora

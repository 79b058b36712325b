#pragma once

#include <span>
#include <vector>

namespace velmora {

class CDSPFilter;

// Passes an impulse or a step through a filter as one buffer. Stimulus and response are interleaved
// stereo at a full scale of 32768. [main, no stream running]
//
// The filter is told the rate of the measurement and two channels, and is prepared, so that its state
// is clean; what it was told before is put back afterwards, without another prepareForPlay().
class CResponseMeasurement
{
  public:
    static constexpr int DEFAULT_FRAMES = 1024;
    static constexpr int MAX_FRAMES = 1 << 26; // 25 minutes at 44100 Hz

    // Each returns false, and keeps the last response, without a filter, for fewer than one frame or more
    // than MAX_FRAMES. dSampleRate is in Hz. bNormalise divides by the largest (signed) sample instead of
    // 32768.
    bool measureImpulse(CDSPFilter* pFilter, bool bNormalise, double dSampleRate);
    bool measureStep(CDSPFilter* pFilter, bool bNormalise, double dSampleRate);
    bool measureImpulseLong(CDSPFilter* pFilter, bool bNormalise, int nFrames, double dSampleRate);
    bool measureStepLong(CDSPFilter* pFilter, bool bNormalise, int nFrames, double dSampleRate);
    bool measureImpulseMs(CDSPFilter* pFilter, bool bNormalise, int nMilliseconds, double dSampleRate);
    bool measureStepMs(CDSPFilter* pFilter, bool bNormalise, int nMilliseconds, double dSampleRate);

    // The last response, interleaved stereo, and one of its channels (0 left, 1 right).
    [[nodiscard]] std::span<const float> response() const { return m_response; }
    [[nodiscard]] std::vector<double> channel(int nChannel) const;

  private:
    enum class EStimulus
    {
        impulse,
        step
    };
    enum class EScaling
    {
        divideOrNormalise,
        divideThenNormalise
    };

    bool measure(CDSPFilter* pFilter, EStimulus eStimulus, EScaling eScaling, bool bNormalise, int nFrames,
                 double dSampleRate);

    std::vector<float> m_stimulus;
    std::vector<float> m_response;
};

// Magnitude of a frequency response. Bin k of n bins stands for k * (rate / 2) / n Hz.
struct CFrequencyResponse
{
    std::vector<double> m_dB; // 20 log10 |H|; minus infinity where nothing comes out
    double m_dMaxdB = 0.0;
    double m_dMaxHz = 0.0;
    double m_dMindB = 0.0;
    double m_dDCdB = 0.0; // bin 0
};

// |H(k)| = sqrt(re^2 + im^2) of the forward FFT of an impulse response, without window or scaling.
// The length must be a power of two of at least 2, else the result is empty.
[[nodiscard]] CFrequencyResponse frequencyResponse(std::span<const double> impulseResponse,
                                                   double dSampleRate);

// atan2(-im, re) in degrees, not unwrapped, of the same bins.
[[nodiscard]] std::vector<double> phaseResponse(std::span<const double> impulseResponse);

} // namespace velmora

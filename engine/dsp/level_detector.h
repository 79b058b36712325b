#pragma once

#include "dsp/biquad.h"

namespace velmora {

// The level detector of the meters and of the frequency sweep. The biquad that it is made of can pass
// a band before detection.
//
// With the rectified sample v (peak: |x|; mean square and root mean square: x^2) the envelope e moves
// by the attack coefficient c while it is below v, else by the release coefficient c:
//   e' = c (e - v) + v,  held to 0..1,   c = exp(K / (time in ms * rate * 0.001))
// K = -1.0023935 for analog time constants (to 36.7 %), -4.6051702 for digital ones (to 1 %); a time
// of 0 ms gives c = 0.
//
// A block at once. Only the value after the last sample is seen, so the logarithm is taken once. With
// an attack coefficient of 0 and v limited to 1 a step is
//   e' = max(v, r e + (1 - r) v),
// and unrolled over k samples v[0] .. v[k-1]
//   e' = max(A, B + r^k e),       w[j] = r^(k-1-j),
//   B = (1 - r) * sum over all i of w[i] v[i],
//   A = max over j of (w[j] v[j] + (1 - r) * sum over i > j of w[i] v[i]).
// Backward in time A and B take one maximum and two sums a sample, and those of a segment do not need
// the e before it: many segments are evaluated side by side, and then joined, two neighbours to
//   A = max(A2, B2 + r^k2 A1),    B = B2 + r^k2 B1.
// Other settings go sample by sample.
//
// A sample that is not a number counts as silence, an infinite one as full scale (as silence when the
// band-pass is on): neither leaves anything in the envelope or the filter that time does not remove.
class CLevelDetector : public CBiQuad
{
  public:
    static constexpr unsigned PEAK = 0;
    static constexpr unsigned MEAN_SQUARE = 1;
    static constexpr unsigned ROOT_MEAN_SQUARE = 2;

    // Times in ms, rate in Hz; any other uDetectMode detects like PEAK. The envelope and the filter's
    // state begin at 0. [main]
    void init(float fSampleRate, float fAttackTime_mSec, float fReleaseTime_mSec, bool bAnalogTC,
              unsigned uDetectMode, bool bLogDetect);

    void setAttackTime(float fAttackTime_mSec);   // [any]
    void setReleaseTime(float fReleaseTime_mSec); // [any]
    void setTCModeAnalog(bool bAnalogTC);         // [any]

    // Tunes the band-pass stage, a Smith-Angell resonator with zeros at DC and half the rate:
    //   b2 = e^(-2 pi (f / Q) / fs),  b1 = -4 b2 / (1 + b2) cos(2 pi f / fs),  a0 = 1 - sqrt(b2),
    //   a1 = 0,  a2 = -a0.
    // fFrequency in Hz; it works on the input while m_bUseFilter is set. Source: J. M. Smith and
    // J. B. Angell, IEEE Transactions on Audio and Electroacoustics 21 (1973). [any]
    void setBandPass(float fFrequency, float fQ);

    // Empties the envelope and the filter's state; the settings stay. [any]
    void reset();

    // The level after one more sample, 0.0 to 1.0. Logarithmic: (60 + dB) / 60 with dB held at -60 and
    // above, of the root in mode 2; otherwise the envelope itself, also in mode 2. [audio]
    float detect(float fInput);

    // The level after nCount samples that are nStride, 1 or more, apart: within float rounding what detect()
    // of each in turn would answer last. The level as it stands if nCount is 0. [audio]
    float detectBlock(const float* pSamples, int nStride, int nCount);

    // As detectBlock() for each channel of nFrames interleaved left and right samples, in one pass.
    // [audio]
    static void detectStereoBlock(CLevelDetector& left, CLevelDetector& right, const float* pInterleaved,
                                  int nFrames, float& fLeft, float& fRight);

    bool m_bUseFilter = false;
    float m_fAttackCoeff = 0.0f;
    float m_fReleaseCoeff = 0.0f;
    float m_fAttackTime_mSec = 0.0f;
    float m_fReleaseTime_mSec = 0.0f;
    float m_fSampleRate = 44100.0f; // Hz
    float m_fEnvelope = 0.0f;       // 0..1
    unsigned m_uDetectMode = PEAK;
    bool m_bAnalogTC = false;
    bool m_bLogDetect = false;

  private:
    [[nodiscard]] bool isSegmentable() const;
    [[nodiscard]] float coefficient(float fTime_mSec) const;
    [[nodiscard]] float level() const;
    void follow(float fInput);
};

} // namespace velmora

#pragma once

#include <vector>

namespace velmora {

// The fast Fourier transform of the measurements and graphs: radix 2, decimation in time, on separate
// real and imaginary arrays.
//
//   forward:  X[k] = sum over n of x[n] e^(+2 pi i n k / N)          (not scaled)
//   inverse:  x[n] = 1/N * sum over k of X[k] e^(-2 pi i n k / N)
//
// The sign of the exponent is the reverse of the usual one; for real input the imaginary parts are
// therefore negated, and the phase of a bin is atan2(-im, re). A round trip gives the input back.
//
// The twiddle factors w[k] = e^(2 pi i k / b) of each block size b come from the three-term recurrence
//   w[k] = 2 cos(delta) w[k-1] - w[k-2],   delta = 2 pi / b,
// seeded with w[-1] and w[-2], always in double precision. They depend on b and k alone and are kept
// in the object, so that only the first transform of a new greatest length evaluates them.
// The recurrence's error grows with the square of the length: against the exact transform a double one
// of 1024 points is within 4e-12, one of 131072 points within 6e-8 of the root mean square.
// Method: J. W. Cooley, J. W. Tukey, Mathematics of Computation 19 (1965), 297-301.
//
// An object serves one thread at a time. Memory is taken when a length is greater than all before, so
// the audio thread does not call it. [main]
class CFFT
{
  public:
    // Does nothing, and leaves the outputs as they were, if a required pointer is null or nLength is
    // below 2 or not a power of two. pImaginaryIn may be null and then reads as 0.0. Each array holds
    // nLength values. Inputs are not changed; the outputs must overlap neither each other nor an input.
    void transform(int nLength, bool bInverse, const float* pRealIn, const float* pImaginaryIn,
                   float* pRealOut, float* pImaginaryOut);
    void transform(int nLength, bool bInverse, const double* pRealIn, const double* pImaginaryIn,
                   double* pRealOut, double* pImaginaryOut);

  private:
    // Entry h + k is the factor k of the stage that joins halves of h values; a longer transform
    // only appends.
    template <typename Sample>
    struct CTwiddles
    {
        std::vector<Sample> m_real;
        std::vector<Sample> m_imaginary;
    };

    template <typename Sample>
    static void provideTwiddles(CTwiddles<Sample>& twiddles, int nLength);
    template <typename Sample>
    static void run(CTwiddles<Sample>& twiddles, int nLength, bool bInverse, const Sample* pRealIn,
                    const Sample* pImaginaryIn, Sample* pRealOut, Sample* pImaginaryOut);

    CTwiddles<float> m_floatTwiddles;
    CTwiddles<double> m_doubleTwiddles;
};

} // namespace velmora

// FFT.h: CFFT, the fast Fourier transform.

#ifndef VELMORA_FFT_H
#define VELMORA_FFT_H

#include "pluginconstants.h"

// Takes a piece of a signal apart into its frequencies, and puts it together again.
//   forward: X(k) = sum over n of x(n) e^(-j 2 pi k n / N)            not scaled
//   inverse: x(n) = 1/N sum over k of X(k) e^(+j 2 pi k n / N)
// Bin k stands for k fs / N Hz; of a real signal the bins 0 to N/2 say all. A sine of amplitude A on a bin
// has a magnitude of A N/2 there, times windowGain() behind a window. Radix 2, decimation in time, in floats:
// the error stays below a millionth of the largest bin. Source: J. W. Cooley, J. W. Tukey, "An Algorithm for
// the Machine Calculation of Complex Fourier Series", Mathematics of Computation 19 (90), 1965.
//
// Everything but prepare() is [audio]: no memory is taken and nothing waits. All arrays hold size() values
// unless a comment says otherwise.
class CFFT
{
  public:
    CFFT(); // size 0: the operations do nothing
    ~CFFT();

    // Takes memory for a power of two from 2 to 1048576 points; the window becomes rectangular. False, and
    // all is as it was, for another number or without memory. [main]
    bool prepare(UINT uSize);
    UINT size() const { return m_uSize; }

    // What analyze() multiplies the signal with: one of the windows of makeWindow(), or the caller's own,
    // which is copied.
    void setWindow(EWindowKind eKind);
    void setWindow(const float* pWindow);

    // The mean of the window, 1.0 for the rectangular one.
    float windowGain() const { return m_fWindowGain; }

    // In place, both parts; the window takes no part.
    void forward(float* pReal, float* pImaginary) const;
    void inverse(float* pReal, float* pImaginary) const;

    // Window and forward transform of a real signal, which may be pReal itself.
    void analyze(const float* pSamples, float* pReal, float* pImaginary) const;

    // Of the bins 0 to N/2, that is size() / 2 + 1 values: sqrt(re^2 + im^2), and the angle in radians from
    // -pi to +pi, 0 for an empty bin.
    void magnitudes(const float* pReal, const float* pImaginary, float* pMagnitudes) const;
    void phases(const float* pReal, const float* pImaginary, float* pPhases) const;

  private:
    CFFT(const CFFT&);            // not copied
    CFFT& operator=(const CFFT&); // not assigned

    void transform(float* pReal, float* pImaginary) const;
    void reorder(float* pReal, float* pImaginary) const;
    void measureWindow();

    UINT m_uSize;
    float* m_pTables; // all three tables in one piece
    float* m_pCosine; // cos(2 pi k / N), N/2 values
    float* m_pSine;   // sin(2 pi k / N), N/2 values
    float* m_pWindow;
    float m_fWindowGain;
};

#endif

#pragma once

#include <algorithm>

namespace velmora {

// A sine without a sine function: the undamped resonator
//     y = a y1 - b y2,  a = 2 cos(w),  b = 1,  w = 2 pi f / fs,
// whose last two values y1 = cos(p) and y2 = cos(p - w) hold the phase p of a cosine. Every value is held
// to -1.0..+1.0, so that rounding cannot let it grow. State and coefficient are doubles: in single
// precision a is so near to 2 at low frequencies that 20 Hz come out as 21.25 Hz at a rate of 192 kHz,
// and 2 Hz not at all. [audio]; start(): [main, not in use]
class CSineResonator
{
  public:
    // Begins at the top of a cosine of fFrequency Hz at a rate of dSampleRate Hz.
    void start(double dFrequency, double dSampleRate);

    // Goes over to another frequency where the wave stands: with the phase p, which is acos(y1) while the
    // wave falls and 2 pi - acos(y1) while it rises, y2 becomes cos(p - w) for the new w. Value, direction
    // and height go on as they were.
    void setFrequency(double dFrequency, double dSampleRate);

    // The next sample, -1.0 to +1.0.
    [[nodiscard]] double next()
    {
        const double dY = std::clamp(m_dA * m_dY1 - B * m_dY2, -1.0, 1.0);
        m_dY2 = m_dY1;
        m_dY1 = dY;
        return dY;
    }

  private:
    static constexpr double B = 1.0;

    double m_dA = 2.0;
    double m_dY1 = 1.0;
    double m_dY2 = 0.0;
};

} // namespace velmora

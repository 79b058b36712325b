#pragma once

namespace velmora {

// State and coefficients of one second-order section in direct form:
//   y = a0 x + a1 x[n-1] + a2 x[n-2] - b1 y[n-1] - b2 y[n-2]
// Stable while |b2| < 1 and |b1| < 1 + b2.
class CBiQuad
{
  public:
    virtual ~CBiQuad() = default;

    // One sample of the difference equation; the state moves on. A result too small for a normal
    // float becomes 0.0, so that the feedback never computes with denormals. [audio]
    float process(float fInput);

    // Forgets the past samples; the coefficients stay. [any]
    void flushDelays();

    float m_fXz1 = 0.0f; // x[n-1]
    float m_fXz2 = 0.0f; // x[n-2]
    float m_fYz1 = 0.0f; // y[n-1]
    float m_fYz2 = 0.0f; // y[n-2]
    float m_fA0 = 0.0f;
    float m_fA1 = 0.0f;
    float m_fA2 = 0.0f;
    float m_fB1 = 0.0f;
    float m_fB2 = 0.0f;
};

} // namespace velmora

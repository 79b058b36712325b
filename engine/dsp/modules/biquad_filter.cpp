#include "dsp/modules/biquad_filter.h"

#include "dsp/modules/relaxed_word.h"

#include <algorithm>

namespace velmora {

namespace {

struct CShownCoefficient
{
    const char* m_pLabel;
    double CBiquadCoefficients::*m_pField;
};

constexpr CShownCoefficient SHOWN_COEFFICIENTS[] = {
    {"a0", &CBiquadCoefficients::m_dA0},  {"a1", &CBiquadCoefficients::m_dA1},
    {"a2", &CBiquadCoefficients::m_dA2},  {"b1", &CBiquadCoefficients::m_dB1},
    {"b2", &CBiquadCoefficients::m_dB2},  {"m", &CBiquadCoefficients::m_dC0},
    {"c0", &CBiquadCoefficients::m_dWet}, {"d0", &CBiquadCoefficients::m_dD0},
    {"n", &CBiquadCoefficients::m_dM},
};

} // namespace

CBiquadFilter::CBiquadFilter(const char* pName, UINT uTag, std::span<const CModuleParameter> parameters,
                             std::span<const CModuleChoice> choices)
    : CModuleFilter(pName, uTag, parameters, choices)
{
    m_shown.fill(1.0F);
}

void CBiquadFilter::calculateCoefficients()
{
    const std::lock_guard lock(m_writers);
    const CDesign newDesign = design();
    static_assert(std::size(SHOWN_COEFFICIENTS) == COEFFICIENTS);
    for (std::size_t u = 0; u < COEFFICIENTS; ++u)
        relaxedStore(m_shown[u],
                     static_cast<float>(newDesign.m_coefficients.*SHOWN_COEFFICIENTS[u].m_pField));
    m_exchange.slot() = newDesign;
    m_exchange.publish();
}

std::vector<CModuleCoefficient> CBiquadFilter::coefficients() const
{
    std::vector<CModuleCoefficient> list;
    for (std::size_t u = 0; u < COEFFICIENTS; ++u)
        list.push_back({SHOWN_COEFFICIENTS[u].m_pLabel, &m_shown[u]});
    return list;
}

bool CBiquadFilter::reset()
{
    m_section.reset();
    return m_trace.reset();
}

bool CBiquadFilter::prepareForPlay()
{
    m_section.reset();
    const bool bHasTrace = m_trace.reset();
    calculateCoefficients();
    return bHasTrace;
}

bool CBiquadFilter::processBuffer(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord)
{
    takeUpDesign();
    return process({1.0F / FULL_SCALE, m_design.m_fVolume * FULL_SCALE, m_design.m_bAddsInput, uWord != 0},
                   pIn, pOut, uChannels, uSamples);
}

bool CBiquadFilter::processInterleaved(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord)
{
    takeUpDesign();
    return process({1.0F, m_design.m_fVolume, false, uWord != 0}, pIn, pOut, uChannels, uSamples);
}

void CBiquadFilter::takeUpDesign()
{
    if (const CDesign* pDesign = m_exchange.latest())
        m_design = *pDesign;
}

// The first frames after a reset go one by one through the trace.
bool CBiquadFilter::process(const CBiquadSection::CRoute& route, const float* pIn, float* pOut,
                            UINT uChannels, UINT uSamples)
{
    if (uChannels != 1 && uChannels != 2)
        return false;
    UINT uFrames = uSamples / uChannels;
    for (; uFrames > 0 && !m_trace.isFull(); --uFrames, pIn += uChannels, pOut += uChannels) {
        trace(m_design.m_coefficients, pIn[0] * route.m_fInputScale, state(0));
        m_section.process(m_design.m_coefficients, route, pIn, pOut, uChannels, 1);
    }
    m_section.process(m_design.m_coefficients, route, pIn, pOut, uChannels, uFrames);
    return true;
}

float CBiquadFilter::processSample(float fInput, float* pState, int)
{
    takeUpDesign();
    if (pState == state(0))
        trace(m_design.m_coefficients, fInput, pState);
    return CBiquadSection::tick(m_design.m_coefficients, fInput, pState);
}

// The terms of the sample that comes next.
void CBiquadFilter::trace(const CBiquadCoefficients& c, float fInput, const float* pState)
{
    if (m_trace.isFull())
        return;
    const double dA0 = c.m_dA0 * fInput;
    const double dA1 = c.m_dA1 * pState[0];
    const double dA2 = c.m_dA2 * pState[1];
    const double dB1 = c.m_dB1 * pState[2];
    const double dB2 = c.m_dB2 * pState[3];
    const double dSum = dA0 + dA1 + dA2 - dB1 - dB2;
    const double dScaled = dSum * c.m_dC0;
    const double dWet = c.m_dWet * dScaled;
    const double dDry = c.m_dD0 * fInput;
    // In the order of the columns; the table itself sets the first.
    const double terms[] = {
        0.0, fInput, dA0, dA1, dA2, dB1, dB2, dSum, dScaled, dWet, dDry, dWet + dDry, (dWet + dDry) * c.m_dM};
    CTraceTable::CRow row;
    std::ranges::transform(terms, row.begin(), [](double dTerm) { return static_cast<float>(dTerm); });
    m_trace.add(row);
}

} // namespace velmora

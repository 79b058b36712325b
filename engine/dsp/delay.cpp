#include "dsp/delay.h"

#include "dsp/numeric.h"

#include <algorithm>
#include <cmath>

namespace velmora {

void CDelay::init(int nSize)
{
    m_pBuffer = std::make_unique<float[]>(nSize);
    m_nBufferSize = nSize;
    resetDelay();
}

void CDelay::resetDelay()
{
    if (m_pBuffer)
        std::fill_n(m_pBuffer.get(), m_nBufferSize, 0.0f);
    m_nReadIndex = 0;
    m_nWriteIndex = 0;
    cookVariables();
}

void CDelay::setDelay_mSec(float fDelay_ms)
{
    m_fDelay_ms = fDelay_ms;
    cookVariables();
}

void CDelay::setOutputAttenuation_dB(float fGain_dB)
{
    m_fOutputAttenuation_dB = fGain_dB;
    cookVariables();
}

void CDelay::cookVariables()
{
    m_fOutputAttenuation = dB2Lin(m_fOutputAttenuation_dB);
    m_fDelayInSamples = m_fDelay_ms * (static_cast<float>(m_nSampleRate) / 1000.0f);
    m_nReadIndex = before(m_nWriteIndex, m_fDelayInSamples);
}

void CDelay::writeDelayAndInc(float fSample)
{
    writeDelay(fSample);
    m_nReadIndex = next(m_nReadIndex);
}

void CDelay::writeDelay(float fSample)
{
    m_pBuffer[m_nWriteIndex] = fSample;
    m_nWriteIndex = next(m_nWriteIndex);
}

float CDelay::readDelay() const
{
    return interpolated(m_nReadIndex, m_fDelayInSamples - std::trunc(m_fDelayInSamples));
}

float CDelay::readDelayAt(float fDelay_ms) const
{
    const float fDelay = static_cast<float>(m_nSampleRate) * fDelay_ms / 1000.0f;
    return interpolated(before(m_nWriteIndex, fDelay), fDelay - std::trunc(fDelay));
}

void CDelay::readPair(int& nIndex, float (&samples)[2], bool bAdvance) const
{
    samples[0] = m_pBuffer[nIndex];
    samples[1] = m_pBuffer[next(nIndex)];
    if (bAdvance)
        nIndex = next(nIndex);
}

void CDelay::readTriple(int& nIndex, float (&samples)[3], bool bAdvance) const
{
    const int nSecond = next(nIndex);
    samples[0] = m_pBuffer[nIndex];
    samples[1] = m_pBuffer[nSecond];
    samples[2] = m_pBuffer[next(nSecond)];
    if (bAdvance)
        nIndex = nSecond;
}

void CDelay::processAudio(const float* pInput, float* pOutput)
{
    const float fInput = *pInput;
    const float fDelayed = m_fDelayInSamples == 0.0f ? fInput : readDelay();
    writeDelayAndInc(fInput);
    *pOutput = m_fOutputAttenuation * fDelayed;
}

// The index that lies the whole part of fSamples before nIndex, around the buffer however long that is.
int CDelay::before(int nIndex, float fSamples) const
{
    const double dBack = std::fmod(std::trunc(static_cast<double>(fSamples)), m_nBufferSize);
    if (!std::isfinite(dBack)) // no buffer, or no delay that can be told
        return nIndex;
    const int nBefore = nIndex - static_cast<int>(dBack);
    if (nBefore < 0)
        return nBefore + m_nBufferSize;
    return nBefore < m_nBufferSize ? nBefore : nBefore - m_nBufferSize;
}

float CDelay::interpolated(int nIndex, float fFraction) const
{
    const int nPrevious = nIndex > 0 ? nIndex - 1 : m_nBufferSize - 1;
    return linearInterp(0.0f, 1.0f, m_pBuffer[nIndex], m_pBuffer[nPrevious], fFraction);
}

} // namespace velmora

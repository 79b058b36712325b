#include "dsp/modules/delay_line.h"

#include "dsp/modules/circular_position.h"

#include <algorithm>
#include <cmath>

namespace velmora {

namespace {

constexpr float FULL_SCALE = 32768.0F; // of processBuffer()

} // namespace

CDelayLine::CDelayLine()
{
    m_sName = "Delay Line";
    m_uTag = FILTER_ID;
    init(1);
}

void CDelayLine::setDelay(float fSamples)
{
    if (std::isfinite(fSamples))
        m_fDelayInSamples.store(std::max(fSamples, 0.0F), std::memory_order_relaxed);
}

void CDelayLine::init(int nSize)
{
    m_buffer = std::vector<float>(static_cast<std::size_t>(std::max(nSize, 1)));
    reset();
}

bool CDelayLine::reset()
{
    std::ranges::fill(m_buffer, 0.0F);
    m_nWriteIndex = 0;
    m_nTapIndex = behindWriteIndex(delay() / 2.0F);
    return true;
}

int CDelayLine::readIndex() const
{
    return behindWriteIndex(delay());
}

int CDelayLine::behindWriteIndex(float fSamples) const
{
    return indexBehind(m_nWriteIndex, fSamples, size());
}

float CDelayLine::tick(float fIn, float* pBuffer)
{
    const float fDelay = delay();
    const float fOut = fDelay > 0.0F ? pBuffer[behindWriteIndex(fDelay)] : fIn;
    pBuffer[m_nWriteIndex] = fIn;
    m_nWriteIndex = nextIndex(m_nWriteIndex, size());
    return fOut;
}

float CDelayLine::advanceTap(bool bClear, bool& bWrapped)
{
    const float fDelay = delay();
    float& fCell = m_buffer[static_cast<std::size_t>(behindWriteIndex(fDelay))];
    const float fSample = fCell;
    if (bClear)
        fCell = 0.0F;
    m_nWriteIndex = nextIndex(m_nWriteIndex, size());
    bWrapped = behindWriteIndex(fDelay) == m_nTapIndex;
    if (bWrapped)
        m_nTapIndex = behindWriteIndex(fDelay / 2.0F);
    return fSample;
}

int CDelayLine::mirroredIndex(int nOffset) const
{
    const int nSize = size();
    const int nIndex = readIndex() + nOffset;
    if (nIndex < nSize)
        return std::max(nIndex, 0);
    const int nMirrored = (nSize - nIndex) % nSize;
    return nMirrored < 0 ? nMirrored + nSize : nMirrored;
}

float CDelayLine::readAt(int nOffset) const
{
    return m_buffer[static_cast<std::size_t>(mirroredIndex(nOffset))];
}

void CDelayLine::writeAt(float fValue, int nOffset)
{
    m_buffer[static_cast<std::size_t>(mirroredIndex(nOffset))] = fValue;
}

void CDelayLine::fill(float fValue, int nStart, int nCount)
{
    for (int nOffset = nStart; nOffset < nStart + nCount; ++nOffset)
        writeAt(fValue, nOffset);
}

bool CDelayLine::processBuffer(float* pIn, float* pOut, UINT, UINT uSamples, UINT)
{
    return process(pIn, pOut, uSamples, FULL_SCALE);
}

bool CDelayLine::processInterleaved(float* pIn, float* pOut, UINT, UINT uSamples, UINT)
{
    return process(pIn, pOut, uSamples, 1.0F);
}

// Dividing by the full scale, a power of two, loses nothing.
bool CDelayLine::process(const float* pIn, float* pOut, UINT uSamples, float fFullScale)
{
    const float fDelay = delay();
    const float fToLine = 1.0F / fFullScale;
    const int nSize = size();
    float* const pBuffer = m_buffer.data();
    int nWrite = m_nWriteIndex;
    int nRead = behindWriteIndex(fDelay);
    for (UINT u = 0; u < uSamples; ++u) {
        const float fIn = pIn[u] * fToLine;
        const float fOut = fDelay > 0.0F ? pBuffer[nRead] : fIn;
        pBuffer[nWrite] = fIn;
        nWrite = nextIndex(nWrite, nSize);
        nRead = nextIndex(nRead, nSize);
        pOut[u] = fOut * fFullScale;
    }
    m_nWriteIndex = nWrite;
    return true;
}

} // namespace velmora

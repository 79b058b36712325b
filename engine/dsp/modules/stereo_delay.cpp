#include "dsp/modules/stereo_delay.h"

#include "dsp/modules/circular_position.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr float INITIAL_RATE = 44100.0F; // Hz

// At the rate that the module begins with; the highest delay follows the rate.
constexpr CModuleRange DELAY = {INITIAL_RATE / 2.0F, 0.0F, INITIAL_RATE};
constexpr CModuleRange LEVEL = {1.0F, 0.0F, 1.0F};
constexpr CModuleRange MIX = {0.5F, 0.0F, 1.0F};

constexpr std::array<CModuleParameter, 4> PARAMETERS = {{
    {"Delay", "smpl", DELAY, DELAY},
    {"Feedback", "%", {0.5F, -1.0F, 1.0F}, {0.5F, 0.0F, 1.0F}, false, EModuleText::percent},
    {"DelayLevel", "dB", LEVEL, LEVEL, false, EModuleText::decibels},
    {"OutputMix", "%", MIX, MIX, false, EModuleText::percent},
}};

} // namespace

CStereoDelay::CStereoDelay() : CModuleFilter("StereoDelay", FILTER_ID, PARAMETERS, {})
{
    CStereoDelay::createControls();
    CStereoDelay::prepareForPlay();
}

bool CStereoDelay::prepareForPlay()
{
    for (CLine& line : m_lines)
        line.m_buffer.assign(static_cast<std::size_t>(std::max(m_nSampleRate, 1)), 0.0F);
    setHighestDelay();
    return reset();
}

bool CStereoDelay::resetToDefaults()
{
    const bool bDone = CModuleFilter::resetToDefaults();
    setHighestDelay();
    return setDelay(static_cast<float>(bufferSize()) / 2.0F) && bDone;
}

void CStereoDelay::setHighestDelay()
{
    const auto fSize = static_cast<float>(bufferSize());
    setRange(STEREODELAY_DELAY, {fSize / 2.0F, 0.0F, fSize});
}

bool CStereoDelay::reset()
{
    for (CLine& line : m_lines) {
        std::ranges::fill(line.m_buffer, 0.0F);
        line.m_nWriteIndex = 0;
    }
    return m_trace.reset();
}

int CStereoDelay::readIndex(int nChannel) const
{
    return indexBehind(writeIndex(nChannel), held().m_fDelay, bufferSize());
}

CStereoDelay::CHeld CStereoDelay::held() const
{
    return {std::max(parameter(STEREODELAY_DELAY), 0.0F), parameter(STEREODELAY_FEEDBACK),
            parameter(STEREODELAY_LEVEL), parameter(STEREODELAY_MIX)};
}

inline float CStereoDelay::CCursor::next(const CHeld& held, float fIn)
{
    const bool bDelays = held.m_fDelay > 0.0F;
    const float fDelayed = bDelays ? m_pBuffer[m_nRead] : fIn;
    const float fFeedback = bDelays ? held.m_fFeedback * fDelayed : 0.0F;
    m_pBuffer[m_nWrite] = fIn + fFeedback;
    m_nWrite = nextIndex(m_nWrite, m_nSize);
    m_nRead = nextIndex(m_nRead, m_nSize);
    return fIn * (1.0F - held.m_fMix) + fDelayed * held.m_fLevel * held.m_fMix;
}

float CStereoDelay::tick(float fIn, float* pBuffer, int nChannel)
{
    int& nWriteIndex = m_lines[static_cast<UINT>(nChannel)].m_nWriteIndex;
    CCursor cursor{pBuffer, bufferSize(), nWriteIndex, readIndex(nChannel)};
    const float fOut = cursor.next(held(), fIn);
    nWriteIndex = cursor.m_nWrite;
    return fOut;
}

bool CStereoDelay::processBuffer(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT)
{
    return process(pIn, pOut, uChannels, uSamples, FULL_SCALE);
}

bool CStereoDelay::processInterleaved(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT)
{
    return process(pIn, pOut, uChannels, uSamples, 1.0F);
}

// Dividing by the full scale, a power of two, loses nothing.
bool CStereoDelay::process(const float* pIn, float* pOut, UINT uChannels, UINT uSamples, float fFullScale)
{
    if (uChannels != 1 && uChannels != m_lines.size())
        return false;
    const CHeld held = this->held();
    const float fToLine = 1.0F / fFullScale;
    for (UINT uChannel = 0; uChannel < uChannels; ++uChannel) {
        CLine& line = m_lines[uChannel];
        const int nSize = static_cast<int>(line.m_buffer.size());
        CCursor cursor{line.m_buffer.data(), nSize, line.m_nWriteIndex,
                       indexBehind(line.m_nWriteIndex, held.m_fDelay, nSize)};
        for (UINT u = uChannel; u < uSamples; u += uChannels) {
            const float fIn = pIn[u] * fToLine;
            const float fOut = cursor.next(held, fIn);
            if (uChannel == 0 && !m_trace.isFull()) [[unlikely]]
                m_trace.add(fIn, fOut);
            pOut[u] = fOut * fFullScale;
        }
        line.m_nWriteIndex = cursor.m_nWrite;
    }
    return true;
}

} // namespace velmora

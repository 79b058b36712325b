#pragma once

#include "plugin.h"

#include <cmath>
#include <vector>

namespace velmora::test {

// A plug-in that doubles its first channel and triples its second, whichever way it is called. One
// channel in and two out: both are made of the one.
class CScalingPlugIn : public CPlugIn
{
  public:
    enum class EPath
    {
        frames,
        interleaved,
        planes
    };

    explicit CScalingPlugIn(EPath ePath = EPath::frames)
    {
        m_PlugInName = "Scaling";
        m_bWantBuffers = ePath == EPath::interleaved;
        m_bWantChannelBuffers = ePath == EPath::planes;
    }

    bool processAudioFrame(float* pIn, float* pOut, UINT uIn, UINT uOut) override
    {
        const float fFirst = pIn[0];
        const float fSecond = uIn == 2 ? pIn[1] : pIn[0];
        pOut[0] = 2.0F * fFirst;
        if (uOut == 2)
            pOut[1] = 3.0F * fSecond;
        return true;
    }

    bool processSocketAudioBuffer(float* pIn, float* pOut, UINT uIn, UINT uOut, UINT uSize) override
    {
        for (UINT i = 0; i < uSize / uIn; ++i)
            processAudioFrame(pIn + i * uIn, pOut + i * uOut, uIn, uOut);
        return true;
    }

    bool processChannelBuffers(float** ppIn, float** ppOut, UINT uChannels, UINT uFrames) override
    {
        for (UINT i = 0; i < uFrames; ++i) {
            ppOut[0][i] = 2.0F * ppIn[0][i];
            ppOut[1][i] = 3.0F * ppIn[uChannels == 2 ? 1 : 0][i];
        }
        return true;
    }

    bool prepareForPlay() override
    {
        ++m_nPrepared;
        m_nRateWhenPrepared = m_nSampleRate;
        m_nChannelsWhenPrepared = m_nNumWAVEChannels;
        return true;
    }

    int m_nPrepared = 0;
    int m_nRateWhenPrepared = 0;
    int m_nChannelsWhenPrepared = 0;
};

// Puts the sidechain's first sample of each frame on both outputs.
class CSidechainPlugIn : public CPlugIn
{
  public:
    CSidechainPlugIn() { m_PlugInName = "Sidechain"; }

    bool processAuxInputBus(auxInputData* pAux) override
    {
        m_fSample = pAux->bInputEnabled ? pAux->pFramePtr[0] : 0.0F;
        return true;
    }

    bool processAudioFrame(float*, float* pOut, UINT, UINT uOut) override
    {
        for (UINT i = 0; i < uOut; ++i)
            pOut[i] = m_fSample;
        return true;
    }

  private:
    float m_fSample = 0.0F;
};

// y[n] = a x[n] + (1 - a) y[n-1] on the left channel, x[n - 5] on the right.
class COnePoleAndDelayPlugIn : public CPlugIn
{
  public:
    static constexpr double A = 0.25;
    static constexpr int DELAY = 5;

    COnePoleAndDelayPlugIn() { m_PlugInName = "OnePoleAndDelay"; }

    bool prepareForPlay() override
    {
        m_dState = 0.0;
        m_line.assign(DELAY, 0.0F);
        m_uIndex = 0;
        return true;
    }

    bool processAudioFrame(float* pIn, float* pOut, UINT, UINT) override
    {
        m_dState = A * static_cast<double>(pIn[0]) + (1.0 - A) * m_dState;
        pOut[0] = static_cast<float>(m_dState);
        pOut[1] = m_line[m_uIndex];
        m_line[m_uIndex] = pIn[1];
        m_uIndex = (m_uIndex + 1) % DELAY;
        return true;
    }

  private:
    double m_dState = 0.0;
    std::vector<float> m_line = std::vector<float>(DELAY);
    std::size_t m_uIndex = 0;
};

} // namespace velmora::test

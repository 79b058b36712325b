// A plug-in whose every sample depends on all that came before it, on the sidechain, and on which channel it
// is. REMEMBERING_NAME is its name; REMEMBERING_INTERLEAVED or REMEMBERING_PLANES has it called in that way,
// else it is called frame by frame. All ways make the same of the same input.

#include "plugin.h"

class CRemembering : public CPlugIn
{
  public:
    CRemembering()
    {
        m_PlugInName = REMEMBERING_NAME;
#if defined(REMEMBERING_INTERLEAVED)
        m_bWantBuffers = true;
#elif defined(REMEMBERING_PLANES)
        m_bWantChannelBuffers = true;
#endif
        CRemembering::prepareForPlay();
    }

    bool prepareForPlay() override
    {
        for (float& fState : m_fState)
            fState = 0.0F;
        m_pSidechain = nullptr;
        return true;
    }

    bool processAuxInputBus(auxInputData* pAux) override
    {
        m_uSidechainChannels = pAux->uNumChannels;
        m_ppSidechain = pAux->ppChannelBuffers;
        m_pSidechain = pAux->pFramePtr ? pAux->pFramePtr : pAux->pBufferPtr;
        m_bSidechain = pAux->bInputEnabled;
        return true;
    }

    bool processAudioFrame(float* pIn, float* pOut, UINT uIn, UINT uOut) override
    {
        for (UINT i = 0; i < uOut; ++i)
            pOut[i] = next(i, pIn[uIn == 2 ? i : 0], interleavedKey(0, i));
        return true;
    }

    bool processSocketAudioBuffer(float* pIn, float* pOut, UINT uIn, UINT uOut, UINT uSize) override
    {
        for (UINT uFrame = 0; uFrame < uSize / uIn; ++uFrame)
            for (UINT i = 0; i < uOut; ++i)
                pOut[uFrame * uOut + i] =
                    next(i, pIn[uFrame * uIn + (uIn == 2 ? i : 0)], interleavedKey(uFrame, i));
        return true;
    }

    bool processChannelBuffers(float** ppIn, float** ppOut, UINT uChannels, UINT uFrames) override
    {
        for (UINT uFrame = 0; uFrame < uFrames; ++uFrame)
            for (UINT i = 0; i < 2; ++i) {
                const bool bKey = m_bSidechain && m_ppSidechain;
                const float fKey = bKey ? m_ppSidechain[m_uSidechainChannels == 2 ? i : 0][uFrame] : 0.0F;
                ppOut[i][uFrame] = next(i, ppIn[uChannels == 2 ? i : 0][uFrame], fKey);
            }
        return true;
    }

  private:
    float interleavedKey(UINT uFrame, UINT uSide) const
    {
        if (!m_bSidechain || !m_pSidechain)
            return 0.0F;
        return m_pSidechain[uFrame * m_uSidechainChannels + (m_uSidechainChannels == 2 ? uSide : 0)];
    }

    // y[n] = (0.5 or 0.625) x[n] + 0.375 y[n-1] + 0.25 key[n]
    float next(UINT uSide, float fIn, float fKey)
    {
        float& fState = m_fState[uSide];
        fState = (uSide == 0 ? 0.5F : 0.625F) * fIn + 0.375F * fState + 0.25F * fKey;
        return fState;
    }

    float m_fState[2] = {};
    const float* m_pSidechain = nullptr;
    float** m_ppSidechain = nullptr;
    UINT m_uSidechainChannels = 1;
    bool m_bSidechain = false;
};

VELMORA_EXPORT_PLUGIN(CRemembering)

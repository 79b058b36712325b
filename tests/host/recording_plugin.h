#pragma once

#include "plugin.h"

#include <string>
#include <vector>

namespace velmora::test {

// Writes down each call, and makes of the first sample of a frame 10 times that on the left and one more
// than that on the right. Recording is off until m_bRecording is set, so that it allocates nothing.
class CRecordingPlugIn : public CPlugIn
{
  public:
    struct CCall
    {
        std::string m_sOperation;
        UINT m_uIn = 0;
        UINT m_uOut = 0;
        UINT m_uSize = 0;
        float m_fFirstInput = 0.0F;
        auxInputData m_aux = {};
        std::vector<float> m_sidechain; // what the pointer that is set shows of the first frame
    };

    CRecordingPlugIn() { m_PlugInName = "Recording"; }

    bool prepareForPlay() override
    {
        m_nPreparedRate = m_nSampleRate;
        m_nPreparedChannels = m_nNumWAVEChannels;
        m_nPreparedDepth = m_nBitDepth;
        return true;
    }

    bool processAudioFrame(float* pIn, float* pOut, UINT uIn, UINT uOut) override
    {
        record({"frame", uIn, uOut, 1, pIn[0], {}, {}});
        makeFrame(pIn[0], pOut, uOut);
        return true;
    }

    bool processSocketAudioBuffer(float* pIn, float* pOut, UINT uIn, UINT uOut, UINT uSize) override
    {
        record({"buffer", uIn, uOut, uSize, pIn[0], {}, {}});
        for (UINT i = 0; i < uSize / uIn; ++i) {
            const float fInput = pIn[i * uIn];
            makeFrame(fInput, pOut + i * uOut, uOut);
        }
        return true;
    }

    bool processChannelBuffers(float** ppIn, float** ppOut, UINT uChannels, UINT uFrames) override
    {
        record({"planes", uChannels, uChannels, uFrames, ppIn[0][0], {}, {}});
        for (UINT i = 0; i < uFrames; ++i) {
            ppOut[0][i] = 10.0F * ppIn[0][i];
            ppOut[1][i] = 10.0F * ppIn[0][i] + 1.0F;
        }
        return true;
    }

    bool processAuxInputBus(auxInputData* pAux) override
    {
        if (!m_bRecording)
            return true;
        CCall call = {"aux", 0, 0, 0, 0.0F, *pAux, {}};
        for (UINT i = 0; i < pAux->uNumChannels; ++i) {
            if (pAux->ppChannelBuffers)
                call.m_sidechain.push_back(pAux->ppChannelBuffers[i][0]);
            else
                call.m_sidechain.push_back((pAux->pFramePtr ? pAux->pFramePtr : pAux->pBufferPtr)[i]);
        }
        record(call);
        return true;
    }

    bool userInterfaceChange(int nControlIndex) override
    {
        m_changed.push_back(nControlIndex);
        return true;
    }

    [[nodiscard]] std::vector<CCall> callsOf(const std::string& sOperation) const
    {
        std::vector<CCall> calls;
        for (const CCall& call : m_calls)
            if (call.m_sOperation == sOperation)
                calls.push_back(call);
        return calls;
    }

    bool m_bRecording = false;
    std::vector<CCall> m_calls;
    std::vector<int> m_changed;
    int m_nPreparedRate = 0;
    int m_nPreparedChannels = 0;
    int m_nPreparedDepth = 0;

  private:
    void record(const CCall& call)
    {
        if (m_bRecording)
            m_calls.push_back(call);
    }

    static void makeFrame(float fInput, float* pOut, UINT uOut)
    {
        pOut[0] = 10.0F * fInput;
        if (uOut == 2)
            pOut[1] = 10.0F * fInput + 1.0F;
    }
};

} // namespace velmora::test

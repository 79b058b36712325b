#pragma once

#include "host/dsp_filter.h"
#include "host/plane_pair.h"

struct auxInputData;

namespace velmora {

struct CChannelLayout;

// A filter that turns each call into calls of a plug-in. Without a plug-in attached every operation that
// concerns one answers false. It does not own the plug-in.
//
// Threads as for CDSPFilter; attachPlugIn() and detachPlugIn() [main, audio held at the run gate].
class CUserDSPFilter : public CDSPFilter
{
  public:
    CUserDSPFilter();
    ~CUserDSPFilter() override;

    // Stores the plug-in and takes over its name; detaching leaves the name.
    void attachPlugIn(CPlugIn* pPlugIn);
    void detachPlugIn();

    bool setBufferSize(UINT uSize) override; // only notes that the filter is ready; any size will do

    // Makes the controls anew from the plug-in's list, and so resets the plug-in's variables to their
    // start values. A control that is bound to nothing is left out, its variable untouched.
    bool createControls() override;
    bool cleanUp() override;
    bool prepareForPlay() override;

    // uChannels is 1 or 2; with another count, and a plug-in that takes no interleaved buffers, false and
    // no output. The input is left divided by 32768 unless the plug-in takes planes, which keep the scale.
    bool processBuffer(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT uWord) override;
    bool processSample(float fIn, float* pOut) override;
    bool setControlPosition(UINT uControlId, int nPos) override;
    bool setControlText(UINT uControlId, std::string sText, bool bQuiet) override;
    bool update() override;
    bool controlChanged(UINT uControlId) override;

    // As processBuffer(), with a channel mode 0 to 5 in place of the channel count; planes are not offered.
    // Parameters as for processUserBuffer().
    bool processModeBuffer(float* pIn, float* pOut, UINT uChannelMode, UINT uNumOutputChannels, UINT uSamples,
                           UINT uTotal);

    // The path of streams and files. The channel mode, 0 to 5, says how many channels the plug-in gets and
    // makes (channel_layout.h). pIn holds uSamples floats of the plug-in's input; pOut takes as many frames
    // of uNumOutputChannels floats, 1 or 2. When the plug-in makes one channel for an output of two, a
    // frame-by-frame plug-in fills the left one and any other both. uTotal, the floats in the caller's
    // buffer, is not needed. pAux, if not null, holds as many frames of uAuxChannels floats of the
    // sidechain; with no channels it counts as null. False, and nothing is done, for an unknown mode or
    // one that makes more channels than the output has. [audio]
    bool processUserBuffer(float* pIn, float* pOut, UINT uChannelMode, UINT uNumOutputChannels, UINT uSamples,
                           UINT uTotal, float* pAux, UINT uAuxChannels, bool bAuxEnabled);

    bool m_bReady = false;

  private:
    void processPlanes(const float* pIn, float* pOut, const CChannelLayout& layout, UINT uFrames,
                       const float* pAux, auxInputData& aux);
    void processFrames(float* pIn, float* pOut, const CChannelLayout& layout, UINT uFrames, float* pAux,
                       auxInputData& aux);
    void processScaledFrames(float* pIn, float* pOut, const CChannelLayout& layout, UINT uFrames);

    CPlanePair m_InputPlanes;
    CPlanePair m_SidechainPlanes;
    CPlanePair m_OutputPlanes;
};

} // namespace velmora

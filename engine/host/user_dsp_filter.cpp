#include "host/user_dsp_filter.h"

#include "host/channel_layout.h"
#include "host/plugin_call_marker.h"
#include "plugin.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr float FULL_SCALE = 32768.0F;
constexpr UINT UNBOUND = 1; // value of a record's uControlTheme[CONTROL_THEME_BINDING]

void divideByFullScale(float* pSamples, std::size_t uCount)
{
    for (std::size_t i = 0; i < uCount; ++i)
        pSamples[i] /= FULL_SCALE;
}

void multiplyByFullScale(float* pSamples, std::size_t uCount)
{
    for (std::size_t i = 0; i < uCount; ++i)
        pSamples[i] *= FULL_SCALE;
}

} // namespace

CUserDSPFilter::CUserDSPFilter() = default;
CUserDSPFilter::~CUserDSPFilter() = default;

void CUserDSPFilter::attachPlugIn(CPlugIn* pPlugIn)
{
    m_pPlugIn = pPlugIn;
    if (pPlugIn && pPlugIn->m_PlugInName)
        m_sName = pPlugIn->m_PlugInName;
}

void CUserDSPFilter::detachPlugIn()
{
    m_pPlugIn = nullptr;
}

bool CUserDSPFilter::setBufferSize(UINT)
{
    if (!m_pPlugIn)
        return false;
    m_bReady = true;
    return true;
}

bool CUserDSPFilter::createControls()
{
    if (!m_pPlugIn)
        return false;
    m_ControlList.clear();
    const CUIControlList& records = m_pPlugIn->m_UIControlList;
    for (UINT i = 0; const CUICtrl* pRecord = records.getAt(i); ++i) {
        if (pRecord->uControlTheme[CONTROL_THEME_BINDING] == UNBOUND)
            continue;
        auto pControl = std::make_unique<CDSPFilterControl>();
        pControl->bindTo(*pRecord);
        pControl->m_pFilter = this;
        m_ControlList.push_back(std::move(pControl));
    }
    return true;
}

bool CUserDSPFilter::cleanUp()
{
    m_ControlList.clear();
    return true;
}

bool CUserDSPFilter::prepareForPlay()
{
    for (CPlanePair* pPair : {&m_InputPlanes, &m_SidechainPlanes, &m_OutputPlanes})
        pPair->clear();
    if (!m_pPlugIn)
        return false;
    m_pPlugIn->m_nNumWAVEChannels = m_nChannels;
    m_pPlugIn->m_nSampleRate = m_nSampleRate;
    m_pPlugIn->m_nBitDepth = m_nBitDepth;
    m_pPlugIn->prepareForPlay();
    return true;
}

bool CUserDSPFilter::processBuffer(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT)
{
    if (!m_pPlugIn)
        return false;
    const CPlugInCallMarker marker(*this, EPlugInCall::processing);
    if (m_pPlugIn->m_bWantBuffers) {
        divideByFullScale(pIn, uSamples);
        m_pPlugIn->processSocketAudioBuffer(pIn, pOut, uChannels, uChannels, uSamples);
        multiplyByFullScale(pOut, uSamples);
        return true;
    }
    if (uChannels != 1 && uChannels != 2)
        return false;
    const CChannelLayout layout = {uChannels, uChannels, uChannels};
    const UINT uFrames = uSamples / uChannels;
    if (m_pPlugIn->m_bWantChannelBuffers) {
        auxInputData aux = {};
        processPlanes(pIn, pOut, layout, uFrames, nullptr, aux);
    } else {
        processScaledFrames(pIn, pOut, layout, uFrames);
    }
    return true;
}

bool CUserDSPFilter::processSample(float, float*)
{
    return m_pPlugIn != nullptr;
}

bool CUserDSPFilter::processModeBuffer(float* pIn, float* pOut, UINT uChannelMode, UINT uNumOutputChannels,
                                       UINT uSamples, UINT)
{
    const auto layout = CChannelLayout::ofMode(uChannelMode, uNumOutputChannels);
    if (!m_pPlugIn || !layout)
        return false;
    const UINT uFrames = uSamples / layout->m_uIn;
    if (!m_pPlugIn->m_bWantBuffers) {
        processScaledFrames(pIn, pOut, *layout, uFrames);
        return true;
    }
    divideByFullScale(pIn, uSamples);
    m_pPlugIn->processSocketAudioBuffer(pIn, pOut, layout->m_uIn, layout->m_uOut, uSamples);
    multiplyByFullScale(pOut, static_cast<std::size_t>(uFrames) * layout->m_uOut);
    layout->spread(pOut, uFrames);
    return true;
}

bool CUserDSPFilter::processUserBuffer(float* pIn, float* pOut, UINT uChannelMode, UINT uNumOutputChannels,
                                       UINT uSamples, UINT, float* pAux, UINT uAuxChannels, bool bAuxEnabled)
{
    const auto layout = CChannelLayout::ofMode(uChannelMode, uNumOutputChannels);
    if (!m_pPlugIn || !layout)
        return false;
    if (uAuxChannels == 0)
        pAux = nullptr;
    auxInputData aux = {};
    aux.uInputBus = 1;
    if (pAux) {
        aux.bInputEnabled = bAuxEnabled;
        aux.uNumChannels = uAuxChannels;
    }
    const UINT uFrames = uSamples / layout->m_uIn;
    if (m_pPlugIn->m_bWantChannelBuffers) {
        processPlanes(pIn, pOut, *layout, uFrames, pAux, aux);
    } else if (m_pPlugIn->m_bWantBuffers) {
        if (pAux) {
            aux.uBufferSize = uSamples;
            aux.pBufferPtr = pAux;
            m_pPlugIn->processAuxInputBus(&aux);
        }
        m_pPlugIn->processSocketAudioBuffer(pIn, pOut, layout->m_uIn, layout->m_uOut, uSamples);
        layout->spread(pOut, uFrames);
    } else {
        processFrames(pIn, pOut, *layout, uFrames, pAux, aux);
    }
    return true;
}

void CUserDSPFilter::processPlanes(const float* pIn, float* pOut, const CChannelLayout& layout, UINT uFrames,
                                   const float* pAux, auxInputData& aux)
{
    const UINT uAuxChannels = aux.uNumChannels;
    while (uFrames > 0) {
        const UINT uPiece = std::min(uFrames, CPlanePair::FRAMES);
        m_InputPlanes.split(pIn, layout.m_uIn, uPiece);
        if (pAux) {
            m_SidechainPlanes.split(pAux, uAuxChannels, uPiece);
            aux.ppChannelBuffers = m_SidechainPlanes.pointers();
            m_pPlugIn->processAuxInputBus(&aux);
            pAux += static_cast<std::size_t>(uPiece) * uAuxChannels;
        }
        m_pPlugIn->processChannelBuffers(m_InputPlanes.pointers(), m_OutputPlanes.pointers(), layout.m_uIn,
                                         uPiece);
        m_OutputPlanes.join(pOut, layout.m_uOut, layout.m_uStream, uPiece);
        pIn += static_cast<std::size_t>(uPiece) * layout.m_uIn;
        pOut += static_cast<std::size_t>(uPiece) * layout.m_uStream;
        uFrames -= uPiece;
    }
}

void CUserDSPFilter::processFrames(float* pIn, float* pOut, const CChannelLayout& layout, UINT uFrames,
                                   float* pAux, auxInputData& aux)
{
    const auto [uIn, uOut, uStream] = layout;
    CPlugIn& plugIn = *m_pPlugIn;
    if (!pAux) {
        for (; uFrames > 0; --uFrames, pIn += uIn, pOut += uStream)
            plugIn.processAudioFrame(pIn, pOut, uIn, uOut);
        return;
    }
    const UINT uAuxStep = aux.uNumChannels == 2 ? 2 : 1;
    for (; uFrames > 0; --uFrames, pIn += uIn, pOut += uStream, pAux += uAuxStep) {
        float frame[2] = {pAux[0], pAux[uAuxStep - 1]};
        aux.pFramePtr = frame;
        plugIn.processAuxInputBus(&aux);
        plugIn.processAudioFrame(pIn, pOut, uIn, uOut);
    }
}

void CUserDSPFilter::processScaledFrames(float* pIn, float* pOut, const CChannelLayout& layout, UINT uFrames)
{
    const auto [uIn, uOut, uStream] = layout;
    CPlugIn& plugIn = *m_pPlugIn;
    for (; uFrames > 0; --uFrames, pIn += uIn, pOut += uStream) {
        divideByFullScale(pIn, uIn);
        plugIn.processAudioFrame(pIn, pOut, uIn, uOut);
        multiplyByFullScale(pOut, uOut);
    }
}

bool CUserDSPFilter::setControlPosition(UINT uControlId, int nPos)
{
    CDSPFilterControl* pControl = m_pPlugIn ? getControlById(uControlId) : nullptr;
    if (!pControl || uControlId == NO_CONTROL)
        return false;
    pControl->setPosition(nPos);
    return controlChanged(uControlId);
}

bool CUserDSPFilter::setControlText(UINT uControlId, std::string sText, bool bQuiet)
{
    if (!m_pPlugIn || uControlId == NO_CONTROL || !CDSPFilter::setControlText(uControlId, sText, bQuiet))
        return false;
    return bQuiet || controlChanged(uControlId);
}

bool CUserDSPFilter::update()
{
    return true;
}

bool CUserDSPFilter::controlChanged(UINT uControlId)
{
    if (!m_pPlugIn || uControlId == NO_CONTROL)
        return false;
    const CPlugInCallMarker marker(*this, EPlugInCall::userInterfaceChange);
    m_pPlugIn->userInterfaceChange(static_cast<int>(uControlId));
    return true;
}

} // namespace velmora

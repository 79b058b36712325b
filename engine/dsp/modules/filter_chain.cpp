#include "dsp/modules/filter_chain.h"

#include <algorithm>

namespace velmora {

namespace {

constexpr UINT MAX_CHANNELS = 2;
constexpr UINT DEFAULT_FRAMES = 1024; // of a working buffer, until a buffer size is set

} // namespace

CFilterChain::CFilterChain(const char* pName, UINT uTag, std::span<const CModuleParameter> parameters,
                           std::span<const CModuleChoice> choices)
    : CModuleFilter(pName, uTag, parameters, choices)
{
    m_uBufferSize = DEFAULT_FRAMES;
}

void CFilterChain::adopt(std::unique_ptr<CModuleFilter> pChild, const char* pName,
                         std::vector<CShownSetting> shown)
{
    pChild->m_sName = pName;
    pChild->showControls(FIRST_CONTROL_ID + childControlCount(), std::move(shown));
    m_children.push_back(std::move(pChild));
}

void CFilterChain::setWorkingBuffers(UINT uCount)
{
    m_uPieceSamples = MAX_CHANNELS * m_uBufferSize;
    m_workingBuffers.assign(uCount, std::vector<float>(m_uPieceSamples));
}

UINT CFilterChain::childControlCount() const
{
    std::size_t uCount = 0;
    for (const auto& pChild : m_children)
        uCount += pChild->m_ControlList.size();
    return static_cast<UINT>(uCount);
}

CModuleFilter* CFilterChain::childWith(UINT uControlId) const
{
    const auto knows = [uControlId](const auto& pChild) { return pChild->getControlById(uControlId); };
    const auto found = std::ranges::find_if(m_children, knows);
    return found == m_children.end() ? nullptr : found->get();
}

// ------------------------------------------------------------------------------------------------
// To every child
// ------------------------------------------------------------------------------------------------

std::vector<CModuleCoefficient> CFilterChain::coefficients() const
{
    std::vector<CModuleCoefficient> all;
    for (const auto& pChild : m_children)
        for (CModuleCoefficient& coefficient : pChild->coefficients())
            all.push_back({pChild->m_sName + " " + coefficient.m_sLabel, coefficient.m_pValue});
    return all;
}

bool CFilterChain::setBufferSize(UINT uSize)
{
    m_uBufferSize = std::max(uSize, 1U);
    setWorkingBuffers(static_cast<UINT>(m_workingBuffers.size()));
    return forEachChild([uSize](CModuleFilter& child) { return child.setBufferSize(uSize); });
}

bool CFilterChain::createControls()
{
    const bool bDone = forEachChild([](CModuleFilter& child) { return child.createControls(); });
    const bool bHasOwn = CModuleFilter::createControls();
    for (const auto& pControl : m_ControlList)
        pControl->uControlId += childControlCount();
    return bHasOwn && bDone;
}

bool CFilterChain::cleanUp()
{
    const bool bDone = forEachChild([](CModuleFilter& child) { return child.cleanUp(); });
    return CModuleFilter::cleanUp() && bDone;
}

bool CFilterChain::reset()
{
    return forEachChild([](CModuleFilter& child) { return child.reset(); });
}

bool CFilterChain::resetToDefaults()
{
    const bool bDone = forEachChild([](CModuleFilter& child) { return child.resetToDefaults(); });
    return CModuleFilter::resetToDefaults() && bDone;
}

bool CFilterChain::prepareForPlay()
{
    return forEachChild([this](CModuleFilter& child) {
        child.m_nSampleRate = m_nSampleRate;
        child.m_nChannels = m_nChannels;
        child.m_nBitDepth = m_nBitDepth;
        return child.prepareForPlay();
    });
}

bool CFilterChain::start()
{
    return forEachChild([](CModuleFilter& child) { return child.start(); });
}

bool CFilterChain::stop()
{
    return forEachChild([](CModuleFilter& child) { return child.stop(); });
}

bool CFilterChain::flush(UINT uWord)
{
    return forEachChild([uWord](CModuleFilter& child) { return child.flush(uWord); });
}

bool CFilterChain::processSample(float fIn, float* pOut)
{
    *pOut = fIn;
    return forEachChild([pOut](CDSPFilter& child) { return child.processSample(*pOut, pOut); });
}

bool CFilterChain::isBypassed() const
{
    return forEachChild([](CModuleFilter& child) { return child.isBypassed(); });
}

bool CFilterChain::update()
{
    return forEachChild([](CModuleFilter& child) { return child.update(); });
}

bool CFilterChain::setFileParam(UINT uWord)
{
    const bool bDone = forEachChild([uWord](CModuleFilter& child) { return child.setFileParam(uWord); });
    return CModuleFilter::setFileParam(uWord) && bDone;
}

bool CFilterChain::hasFile(UINT uWord) const
{
    return forEachChild([uWord](CModuleFilter& child) { return child.hasFile(uWord); });
}

bool CFilterChain::getFileName(std::string& sName) const
{
    for (const auto& pChild : m_children)
        if (pChild->getFileName(sName) && !sName.empty())
            return true;
    return CModuleFilter::getFileName(sName);
}

bool CFilterChain::setRunMode(int nMode)
{
    const bool bDone = forEachChild([nMode](CModuleFilter& child) { return child.setRunMode(nMode); });
    return CModuleFilter::setRunMode(nMode) && bDone;
}

bool CFilterChain::setBitDepth(int nBits)
{
    const bool bDone = forEachChild([nBits](CModuleFilter& child) { return child.setBitDepth(nBits); });
    return CModuleFilter::setBitDepth(nBits) && bDone;
}

bool CFilterChain::usesFile(UINT uWord) const
{
    return std::ranges::any_of(m_children, [uWord](const auto& pChild) { return pChild->usesFile(uWord); });
}

// ------------------------------------------------------------------------------------------------
// To the first one that knows the control
// ------------------------------------------------------------------------------------------------

// The own controls, too, are numbered from FIRST_CONTROL_ID on for the base class.
UINT CFilterChain::ownControlId(UINT uControlId) const
{
    return uControlId - childControlCount();
}

bool CFilterChain::setControlPosition(UINT uControlId, int nPos)
{
    CModuleFilter* pChild = childWith(uControlId);
    return pChild ? pChild->setControlPosition(uControlId, nPos)
                  : CModuleFilter::setControlPosition(ownControlId(uControlId), nPos);
}

bool CFilterChain::setControlText(UINT uControlId, std::string sText, bool bQuiet)
{
    CModuleFilter* pChild = childWith(uControlId);
    return pChild ? pChild->setControlText(uControlId, std::move(sText), bQuiet)
                  : CModuleFilter::setControlText(ownControlId(uControlId), std::move(sText), bQuiet);
}

bool CFilterChain::controlChanged(UINT uControlId)
{
    CModuleFilter* pChild = childWith(uControlId);
    return pChild ? pChild->controlChanged(uControlId)
                  : CModuleFilter::controlChanged(ownControlId(uControlId));
}

CDSPFilterControl* CFilterChain::getControlByIndex(UINT uId)
{
    UINT uPosition = uId - m_nFirstControlID;
    for (const auto& pChild : m_children) {
        if (uPosition < pChild->m_ControlList.size())
            return pChild->m_ControlList[uPosition].get();
        uPosition -= static_cast<UINT>(pChild->m_ControlList.size());
    }
    return uPosition < m_ControlList.size() ? m_ControlList[uPosition].get() : nullptr;
}

CDSPFilterControl* CFilterChain::findNextControl(UINT uType, UINT* pPos)
{
    for (UINT uId = *pPos; CDSPFilterControl* pControl = getControlByIndex(uId); ++uId) {
        if (pControl->uControlType == uType) {
            *pPos = uId + 1;
            return pControl;
        }
    }
    *pPos = childControlCount() + static_cast<UINT>(m_ControlList.size()) - 1;
    return nullptr;
}

CDSPFilterControl* CFilterChain::getControlById(UINT uControlId)
{
    CModuleFilter* pChild = childWith(uControlId);
    return pChild ? pChild->getControlById(uControlId) : CModuleFilter::getControlById(uControlId);
}

UINT CFilterChain::countControls(UINT uType) const
{
    UINT uCount = CModuleFilter::countControls(uType);
    for (const auto& pChild : m_children)
        uCount += pChild->countControls(uType);
    return uCount;
}

// ------------------------------------------------------------------------------------------------
// Audio
// ------------------------------------------------------------------------------------------------

bool CFilterChain::processBuffer(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT)
{
    return process({&CDSPFilter::processBuffer, uChannels, uSamples, FULL_SCALE}, pIn, pOut);
}

bool CFilterChain::processInterleaved(float* pIn, float* pOut, UINT uChannels, UINT uSamples, UINT)
{
    return process({&CDSPFilter::processInterleaved, uChannels, uSamples, 1.0F}, pIn, pOut);
}

bool CFilterChain::process(CPass pass, float* pIn, float* pOut)
{
    if (pass.m_uChannels != 1 && pass.m_uChannels != MAX_CHANNELS)
        return false;
    if (m_workingBuffers.empty())
        return route(pass, pIn, pOut);
    bool bDone = true;
    for (UINT uLeft = pass.m_uSamples; uLeft > 0; uLeft -= pass.m_uSamples) {
        pass.m_uSamples = std::min(uLeft, m_uPieceSamples);
        bDone = route(pass, pIn, pOut) && bDone;
        pIn += pass.m_uSamples;
        pOut += pass.m_uSamples;
    }
    return bDone;
}

} // namespace velmora

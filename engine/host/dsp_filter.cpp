#include "host/dsp_filter.h"

#include <algorithm>
#include <cstring>

namespace velmora {

namespace {

void copySamples(const float* pIn, float* pOut, UINT uSamples)
{
    if (uSamples > 0)
        std::memmove(pOut, pIn, uSamples * sizeof(float));
}

} // namespace

CDSPFilter::CDSPFilter() = default;
CDSPFilter::~CDSPFilter() = default;

CFloatArray& CDSPFilter::getCoeffArray()
{
    return m_CoeffArray;
}

bool CDSPFilter::setBufferSize(UINT)
{
    return true;
}

bool CDSPFilter::createControls()
{
    return true;
}

bool CDSPFilter::cleanUp()
{
    return true;
}

std::string CDSPFilter::getInfoText() const
{
    return "Hello. This filter has nothing to tell about itself.";
}

bool CDSPFilter::reset()
{
    return true;
}

bool CDSPFilter::prepareForPlay()
{
    return true;
}

bool CDSPFilter::start()
{
    return true;
}

bool CDSPFilter::stop()
{
    return true;
}

bool CDSPFilter::flush(UINT)
{
    return true;
}

bool CDSPFilter::processBuffer(float* pIn, float* pOut, UINT, UINT uSamples, UINT)
{
    copySamples(pIn, pOut, uSamples);
    return true;
}

bool CDSPFilter::processInterleaved(float* pIn, float* pOut, UINT, UINT uSamples, UINT)
{
    copySamples(pIn, pOut, uSamples);
    return true;
}

bool CDSPFilter::processSample(float fIn, float* pOut)
{
    *pOut = fIn;
    return true;
}

bool CDSPFilter::setControlPosition(UINT, int)
{
    return true;
}

bool CDSPFilter::setControlText(UINT uControlId, std::string sText, bool)
{
    CDSPFilterControl* pControl = getControlById(uControlId);
    return pControl && pControl->setText(sText);
}

bool CDSPFilter::isBypassed() const
{
    return true;
}

bool CDSPFilter::update()
{
    return true;
}

bool CDSPFilter::controlChanged(UINT)
{
    return true;
}

bool CDSPFilter::setFileParam(UINT uWord)
{
    m_uFlags = uWord;
    return true;
}

bool CDSPFilter::hasFile(UINT) const
{
    return true;
}

bool CDSPFilter::getFileName(std::string& sName) const
{
    sName.clear();
    return true;
}

bool CDSPFilter::setRunMode(int nMode)
{
    if (nMode == RUN_MODE_STOP)
        m_bRunning = false;
    else if (nMode == RUN_MODE_RUN)
        m_bRunning = true;
    return true;
}

bool CDSPFilter::setBitDepth(int nBits)
{
    m_nBitDepth = nBits;
    return true;
}

bool CDSPFilter::usesFile(UINT) const
{
    return false;
}

UINT CDSPFilter::getFirstControlID() const
{
    return 600;
}

CDSPFilterControl* CDSPFilter::getControlByIndex(UINT uId)
{
    const UINT uPosition = uId - m_nFirstControlID;
    return uPosition < m_ControlList.size() ? m_ControlList[uPosition].get() : nullptr;
}

CDSPFilterControl* CDSPFilter::findNextControl(UINT uType, UINT* pPos)
{
    for (std::size_t i = *pPos - m_nFirstControlID; i < m_ControlList.size(); ++i) {
        if (m_ControlList[i]->uControlType == uType) {
            *pPos = static_cast<UINT>(i) + 1 + m_nFirstControlID;
            return m_ControlList[i].get();
        }
    }
    *pPos = static_cast<UINT>(m_ControlList.size()) - 1;
    return nullptr;
}

CDSPFilterControl* CDSPFilter::getControlById(UINT uControlId)
{
    const auto hasId = [uControlId](const auto& pControl) { return pControl->uControlId == uControlId; };
    const auto found = std::ranges::find_if(m_ControlList, hasId);
    return found == m_ControlList.end() ? nullptr : found->get();
}

UINT CDSPFilter::countControls(UINT uType) const
{
    const auto hasType = [uType](const auto& pControl) { return pControl->uControlType == uType; };
    return static_cast<UINT>(std::ranges::count_if(m_ControlList, hasType));
}

} // namespace velmora

#include "document/filter_swap.h"

#include "audio/audio_engine.h"
#include "base/user_dialogs.h"
#include "host/dsp_filter.h"

namespace velmora {

bool CFilterSwap::fades() const
{
    return m_bCrossFade && m_transport.hasAudioThread();
}

bool CFilterSwap::swapTo(CDSPFilter* pNew, const std::function<bool()>& prepare)
{
    // A filter that is playing cannot be made ready beside itself.
    if (fades() && pNew != m_engine.filter())
        return prepare() && fadeTo(pNew);
    const CClosedGate gate(m_engine.gate());
    if (!gate)
        return isStuck();
    if (!prepare())
        return false;
    m_engine.setFilter(pNew);
    return true;
}

bool CFilterSwap::fadeTo(CDSPFilter* pNew)
{
    const CDSPFilter* pOld = m_engine.filter();
    if (const CClosedGate gate(m_engine.gate()); gate)
        m_engine.fadeTo(pNew);
    else
        return isStuck();
    return m_engine.finishFade() || isStuck(pOld);
}

// False, for the caller to hand on. It may be the current filter or the other one.
bool CFilterSwap::isStuck(const CDSPFilter* pOther)
{
    std::string sNames;
    for (const CDSPFilter* pFilter : {pOther, static_cast<const CDSPFilter*>(m_engine.filter())})
        if (pFilter)
            sNames += (sNames.empty() ? "" : " or ") + pFilter->m_sName;
    m_dialogs.showMessage("The audio does not come back from the plug-in " +
                          (sNames.empty() ? "that was swapped out" : sNames) +
                          ": it has been processing one buffer for two seconds. Save your work and start "
                          "Velmora again.");
    return false;
}

} // namespace velmora

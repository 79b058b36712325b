#include "host/loaded_plugin.h"

#include "host/guarded_call.h"
#include "host/plugin_call_marker.h"
#include "host/plugin_library.h"
#include "host/user_dsp_filter.h"

namespace velmora {

std::unique_ptr<CLoadedPlugIn> CLoadedPlugIn::create(std::unique_ptr<CPlugInLibrary> pLibrary,
                                                     CPlugIn* pPlugIn)
{
    return std::unique_ptr<CLoadedPlugIn>(new CLoadedPlugIn(std::move(pLibrary), pPlugIn));
}

CLoadedPlugIn::CLoadedPlugIn(std::unique_ptr<CPlugInLibrary> pLibrary, CPlugIn* pPlugIn)
    : m_pFilter(std::make_unique<CUserDSPFilter>()), m_pLibrary(std::move(pLibrary)), m_pPlugIn(pPlugIn)
{
    m_pFilter->attachPlugIn(m_pPlugIn);
    m_pFilter->m_hParentDLL = m_pLibrary.get();
}

CLoadedPlugIn::~CLoadedPlugIn()
{
    unload();
}

void CLoadedPlugIn::initOnce()
{
    if (m_bInitialized || !m_pPlugIn)
        return;
    const CPlugInCallMarker marker(*m_pFilter, EPlugInCall::initializing);
    m_pPlugIn->init();
    m_bInitialized = true;
}

bool CLoadedPlugIn::unload()
{
    const std::string sFile = m_pLibrary ? m_pLibrary->path().string() : "";
    m_pFilter->cleanUp(); // its controls are bound to the object's variables
    m_pFilter->detachPlugIn();
    m_pFilter->m_hParentDLL = nullptr;
    const CPlugInCallMarker destruction(m_pFilter->m_sName.c_str(), EPlugInCall::destruction, sFile.c_str());
    // A destructor that throws has had its say; the library goes all the same.
    [[maybe_unused]] const auto ignored = thrownBy([this] { delete m_pPlugIn; });
    m_pPlugIn = nullptr;
    const CPlugInCallMarker unloading(m_pFilter->m_sName.c_str(), EPlugInCall::unloading, sFile.c_str());
    const bool bGone = !m_pLibrary || m_pLibrary->unload();
    if (!bGone)
        m_sPinReason = m_pLibrary->path().filename().string() + " " + m_pLibrary->pinReason();
    m_pLibrary.reset();
    return bGone;
}

} // namespace velmora

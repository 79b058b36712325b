#include "host/plugin_call_marker.h"

#include "host/dsp_filter.h"
#include "host/plugin_library.h"

#include <array>

namespace velmora {

namespace {

constexpr std::array<const char*, PLUGIN_CALL_COUNT> CALL_TEXTS = {
    "running",
    "being loaded",
    "being created",
    "being set up",
    "preparing to play",
    "processing audio",
    "answering a moved control",
    "answering a MIDI message",
    "answering a message of the program",
    "being deleted",
    "being unloaded",
};

CPlugInCallMarker::CCall callOf(const CDSPFilter& filter, EPlugInCall eCall) noexcept
{
    if (!filter.m_pPlugIn || filter.m_bBuiltInPlugIn != 0)
        return {};
    const CPlugInLibrary* pLibrary = filter.m_hParentDLL;
    return {filter.m_sName.c_str(), pLibrary ? pLibrary->path().c_str() : nullptr, eCall};
}

} // namespace

constinit thread_local CPlugInCallMarker::CCall CPlugInCallMarker::s_call;

const char* plugInCallText(EPlugInCall eCall) noexcept
{
    const auto uCall = static_cast<std::size_t>(eCall);
    return CALL_TEXTS[uCall < CALL_TEXTS.size() ? uCall : 0];
}

CPlugInCallMarker::CPlugInCallMarker(const CDSPFilter& filter, EPlugInCall eCall) noexcept : m_outer(s_call)
{
    s_call = callOf(filter, eCall);
    std::atomic_signal_fence(std::memory_order_seq_cst);
}

} // namespace velmora

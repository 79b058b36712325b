#pragma once

#include <atomic>
#include <cstddef>

namespace velmora {

class CDSPFilter;

// What the host has asked of a plug-in. A whole word: a byte that is written and soon read again as part of a
// word would cost more than all else of a marker.
enum class EPlugInCall : std::size_t
{
    none,
    loading,             // the library is opened: its static initialisers run
    construction,        // the object is made, initUI() with it
    initializing,        // init() and what the host asks right after the construction
    preparing,           // prepareForPlay()
    processing,          // the process... operations
    userInterfaceChange, // userInterfaceChange()
    midi,                // the midi... operations
    message,             // processHostMessage() and window operations
    destruction,         // the object is deleted
    unloading            // the library is closed: its static destructors run
};

constexpr std::size_t PLUGIN_CALL_COUNT = static_cast<std::size_t>(EPlugInCall::unloading) + 1;

// Reads behind "was": "processing audio".
[[nodiscard]] const char* plugInCallText(EPlugInCall eCall) noexcept;

// While it lives, this thread is inside a call of a plug-in. The handler of a fault, which runs on the thread
// that faulted, reads who was called and for what. Markers nest: the innermost counts. Two words are written
// and two restored, a nanosecond or so; nothing is allocated or locked.
//
//     CPlugInCallMarker marker(filter, EPlugInCall::processing);
//     plugIn.processAudioFrame(...);
//
// How it works: the record is a thread_local of the initial-exec model, which lies at a fixed offset from the
// thread's own register. So it needs neither a first-use check nor memory when a thread first touches it, and
// a signal handler may read it. [any]
class CPlugInCallMarker
{
  public:
    struct CCall
    {
        const char* m_pName = nullptr;    // null outside all plug-ins
        const char* m_pLibrary = nullptr; // the library's file; null if it is not known
        EPlugInCall m_eCall = EPlugInCall::none;
    };

    // The texts belong to the host, never to the plug-in's own memory, and outlive the marker.
    CPlugInCallMarker(const char* pName, EPlugInCall eCall, const char* pLibrary = nullptr) noexcept
        : m_outer(s_call)
    {
        s_call = {pName, pLibrary, eCall};
        std::atomic_signal_fence(std::memory_order_seq_cst);
    }

    // The filter's plug-in, with its name and its library. A filter without one, and a built-in module, mark
    // a call of no plug-in.
    CPlugInCallMarker(const CDSPFilter& filter, EPlugInCall eCall) noexcept;

    ~CPlugInCallMarker()
    {
        std::atomic_signal_fence(std::memory_order_seq_cst);
        s_call = m_outer;
    }

    CPlugInCallMarker(const CPlugInCallMarker&) = delete;
    CPlugInCallMarker& operator=(const CPlugInCallMarker&) = delete;

    // The call that this thread is in. Safe in a signal handler.
    [[nodiscard]] static const CCall& current() noexcept { return s_call; }

  private:
    CCall m_outer;

    [[gnu::tls_model("initial-exec")]] static constinit thread_local CCall s_call;
};

} // namespace velmora

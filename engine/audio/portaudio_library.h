#pragma once

#include "base/platform_shared_library.h"

#include <atomic>
#include <string>

namespace velmora {

// A private copy of the PortAudio library, with its own global state, kept from ending the program: a check
// of PortAudio that fails, as several do where a JACK server has gone away, holds the calling thread for ever
// instead. What PortAudio reports goes nowhere. Must not move or end before the copy was terminated. One
// thread at a time, but for isServerGone().
class CPortAudioLibrary
{
  public:
    // Makes and opens the copy, if that was not done yet. False with the reason in sError.
    [[nodiscard]] bool load(std::string& sError);

    template <typename TFunction>
    bool get(const char* pName, TFunction*& pFunction) const
    {
        return m_library.get(pName, pFunction);
    }

    // Calls the library's own Pa_Initialize, watched for the JACK client that it makes.
    [[nodiscard]] int initialize(int (*pInitialize)());

    // Whether the JACK server that the library was a client of has gone away. [any]
    [[nodiscard]] bool isServerGone() const { return m_bServerGone; }

  private:
    // JACK's way of telling a client that the server is gone, with this object listening in.
    using shutdownCallback = void (*)(void* pArgument);
    using onShutdownFunction = void(void* pClient, shutdownCallback pCallback, void* pArgument);
    static void onShutdown(void* pClient, shutdownCallback pCallback, void* pArgument);
    static void serverGone(void* pLibrary);
    static thread_local CPortAudioLibrary* s_pInitializing;

    CSharedLibrary m_library;
    bool m_bLoaded = false;
    std::atomic<bool> m_bServerGone{false};
    onShutdownFunction* m_pOnShutdown = nullptr;
    shutdownCallback m_pPortAudiosCallback = nullptr;
    void* m_pPortAudiosArgument = nullptr;
};

} // namespace velmora

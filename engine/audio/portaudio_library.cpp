#include "audio/portaudio_library.h"

#include "base/platform_sound.h"
#include "host/plugin_library_copy.h"

#include <chrono>
#include <cstdio>
#include <mutex>
#include <thread>

namespace velmora {

namespace {

constexpr const char* LIBRARY = "libportaudio.so.2";

// Looked for until it is found: once a copy is open, the dynamic linker would answer with that.
std::filesystem::path libraryFile(std::string& sError)
{
    static std::mutex s_mutex;
    static std::filesystem::path s_file;
    const std::lock_guard lock(s_mutex);
    if (s_file.empty())
        s_file = CSharedLibrary::find(LIBRARY, sError);
    return s_file;
}

[[noreturn]] void holdThread(const char*, const char*, unsigned, const char*)
{
    for (;;)
        std::this_thread::sleep_for(std::chrono::hours(1));
}

// JACK keeps the function for all clients, also after the copy it came from is gone.
void refuseErrorFunction(void (*)(const char*)) {}

} // namespace

thread_local CPortAudioLibrary* CPortAudioLibrary::s_pInitializing = nullptr;

bool CPortAudioLibrary::load(std::string& sError)
{
    if (m_bLoaded)
        return true;
    silenceSoundLibraries(); // and keeps them open: JACK's loses memory each time it is closed
    const auto file = libraryFile(sError);
    const auto pCopy =
        file.empty() ? nullptr : CPlugInLibraryCopy::make(file, CPlugInLibraryCopy::usualFolders(), sError);
    m_bLoaded = pCopy && m_library.open(pCopy->path(), sError);
    if (!m_bLoaded)
        return false;
    static std::FILE* s_pNowhere = std::fopen("/dev/null", "we");
    if (s_pNowhere)
        m_library.redirect("stderr", static_cast<void*>(&s_pNowhere));
    m_library.redirect("__assert_fail", holdThread);
    m_library.redirect("jack_set_error_function", refuseErrorFunction);
    m_pOnShutdown = m_library.redirect("jack_on_shutdown", onShutdown);
    return true;
}

int CPortAudioLibrary::initialize(int (*pInitialize)())
{
    s_pInitializing = this;
    const int nError = pInitialize();
    s_pInitializing = nullptr;
    return nError;
}

void CPortAudioLibrary::onShutdown(void* pClient, shutdownCallback pCallback, void* pArgument)
{
    CPortAudioLibrary& library = *s_pInitializing;
    library.m_pPortAudiosCallback = pCallback;
    library.m_pPortAudiosArgument = pArgument;
    library.m_pOnShutdown(pClient, serverGone, &library);
}

void CPortAudioLibrary::serverGone(void* pLibrary)
{
    auto& library = *static_cast<CPortAudioLibrary*>(pLibrary);
    library.m_bServerGone = true;
    library.m_pPortAudiosCallback(library.m_pPortAudiosArgument);
}

} // namespace velmora

#include "base/platform_sound.h"

#include <dlfcn.h>
#include <initializer_list>

namespace velmora {

namespace {

void ignoreAlsaError(const char*, int, const char*, int, const char*, ...) {}
void ignoreJackText(const char*) {}

using alsaSetHandler = int(void (*)(const char*, int, const char*, int, const char*, ...));
using jackSetHandler = void(void (*)(const char*));
using jackClientOpen = void*(const char* pName, int nOptions, int* pStatus, ...);
using jackClientClose = int(void* pClient);
constexpr int JACK_NO_START_SERVER = 1;

// The libraries keep the handlers that they were given and so stay loaded. Null if there is none.
void* alsaLibrary()
{
    static void* const s_hAlsa = ::dlopen("libasound.so.2", RTLD_LAZY | RTLD_LOCAL);
    return s_hAlsa;
}

void* jackLibrary()
{
    static void* const s_hJack = ::dlopen("libjack.so.0", RTLD_LAZY | RTLD_LOCAL);
    return s_hJack;
}

template <typename TFunction>
TFunction* functionOf(void* hLibrary, const char* pName)
{
    return hLibrary ? reinterpret_cast<TFunction*>(::dlsym(hLibrary, pName)) : nullptr;
}

} // namespace

void silenceSoundLibraries()
{
    if (auto* pSet = functionOf<alsaSetHandler>(alsaLibrary(), "snd_lib_error_set_handler"))
        pSet(ignoreAlsaError);
    for (const char* pName : {"jack_set_error_function", "jack_set_info_function"})
        if (auto* pSet = functionOf<jackSetHandler>(jackLibrary(), pName))
            pSet(ignoreJackText);
}

bool isJackServerRunning()
{
    auto* pOpen = functionOf<jackClientOpen>(jackLibrary(), "jack_client_open");
    auto* pClose = functionOf<jackClientClose>(jackLibrary(), "jack_client_close");
    void* pClient = pOpen && pClose ? pOpen("Velmora-probe", JACK_NO_START_SERVER, nullptr) : nullptr;
    if (pClient)
        pClose(pClient);
    return pClient != nullptr;
}

} // namespace velmora

#include "base/patience.h"

#include <thread>

namespace velmora {

namespace {

constinit thread_local IPatience* s_pPatience = nullptr;
constinit thread_local int s_nWaits = 0;

} // namespace

CPatienceScope::CPatienceScope(IPatience& patience) : m_pOuter(s_pPatience)
{
    s_pPatience = &patience;
}

CPatienceScope::~CPatienceScope()
{
    s_pPatience = m_pOuter;
}

bool waitPatiently(std::chrono::milliseconds duration, std::string_view sFor)
{
    if (!s_pPatience) {
        std::this_thread::sleep_for(duration);
        return true;
    }
    ++s_nWaits;
    const bool bGoOn = s_pPatience->wait(duration, sFor);
    --s_nWaits;
    return bGoOn;
}

bool isPatient()
{
    return s_pPatience != nullptr;
}

bool isWaiting()
{
    return s_nWaits > 0;
}

} // namespace velmora

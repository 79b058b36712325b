#include "real/jack_client.h"

#include <array>
#include <atomic>
#include <jack/jack.h>
#include <stdexcept>
#include <vector>

namespace velmora::test {

namespace {

constexpr std::size_t MAX_CHANNELS = 2;

// The clients of a server hand port buffers to one another by means that the thread sanitizer does not see.
#if defined(__SANITIZE_THREAD__)
__attribute__((no_sanitize("thread")))
#endif
void copyPort(const float* pFrom, float* pTo, std::size_t uFrames)
{
    for (std::size_t i = 0; i < uFrames; ++i)
        pTo[i] = pFrom[i];
}

} // namespace

struct CJackClient::CImplementation
{
    jack_client_t* m_pClient = nullptr;
    std::array<jack_port_t*, MAX_CHANNELS> m_ports = {};
    std::array<std::vector<float>, MAX_CHANNELS> m_buffers; // a period of each
    std::atomic<int> m_nXruns{0};
    std::atomic<bool> m_bServerGone{false};
    bool m_bActive = false;
};

CJackClient::CJackClient(const std::string& sName, EDirection eDirection, int nChannels)
    : m_pImplementation(std::make_unique<CImplementation>()), m_eDirection(eDirection), m_nChannels(nChannels)
{
    jack_client_t*& pClient = m_pImplementation->m_pClient;
    pClient = ::jack_client_open(sName.c_str(),
                                 static_cast<jack_options_t>(JackNoStartServer | JackUseExactName), nullptr);
    if (!pClient)
        throw std::runtime_error("no JACK server takes the client " + sName);
    const unsigned long uFlags = JackPortIsPhysical | JackPortIsTerminal |
                                 (eDirection == EDirection::records ? JackPortIsInput : JackPortIsOutput);
    for (std::size_t i = 0; i < static_cast<std::size_t>(nChannels); ++i) {
        m_pImplementation->m_ports.at(i) = ::jack_port_register(
            pClient, ("channel_" + std::to_string(i + 1)).c_str(), JACK_DEFAULT_AUDIO_TYPE, uFlags, 0);
        m_pImplementation->m_buffers.at(i).resize(::jack_get_buffer_size(pClient));
    }
    ::jack_set_process_callback(pClient, &CJackClient::processCallback, this);
    ::jack_set_xrun_callback(
        pClient,
        [](void* pUser) {
            ++static_cast<CImplementation*>(pUser)->m_nXruns;
            return 0;
        },
        m_pImplementation.get());
    ::jack_on_shutdown(
        pClient, [](void* pUser) { static_cast<CImplementation*>(pUser)->m_bServerGone = true; },
        m_pImplementation.get());
}

// The next client that joins a server has libjack delete those whose server has gone.
CJackClient::~CJackClient()
{
    if (!m_pImplementation->m_bServerGone)
        ::jack_client_close(m_pImplementation->m_pClient);
}

void CJackClient::activate()
{
    if (::jack_activate(m_pImplementation->m_pClient) != 0)
        throw std::runtime_error("the JACK client cannot be activated");
    m_pImplementation->m_bActive = true;
}

void CJackClient::deactivate()
{
    if (m_pImplementation->m_bActive && !m_pImplementation->m_bServerGone)
        ::jack_deactivate(m_pImplementation->m_pClient);
    m_pImplementation->m_bActive = false;
}

void CJackClient::freewheel(bool bOn)
{
    if (::jack_set_freewheel(m_pImplementation->m_pClient, bOn) != 0)
        throw std::runtime_error("the JACK server does not freewheel");
}

int CJackClient::serverXruns() const
{
    return m_pImplementation->m_nXruns;
}

int CJackClient::processCallback(unsigned uFrames, void* pUser)
{
    auto& client = *static_cast<CJackClient*>(pUser);
    CImplementation& implementation = *client.m_pImplementation;
    const auto uChannels = static_cast<std::size_t>(client.m_nChannels);
    std::array<float*, MAX_CHANNELS> ports = {};
    std::array<std::span<float>, MAX_CHANNELS> channels;
    for (std::size_t i = 0; i < uChannels; ++i) {
        ports[i] = static_cast<float*>(::jack_port_get_buffer(implementation.m_ports[i], uFrames));
        channels[i] = std::span(implementation.m_buffers[i]).first(uFrames);
        if (client.m_eDirection == EDirection::records)
            copyPort(ports[i], channels[i].data(), uFrames);
    }
    client.process(std::span(channels).first(uChannels));
    if (client.m_eDirection == EDirection::plays)
        for (std::size_t i = 0; i < uChannels; ++i)
            copyPort(channels[i].data(), ports[i], uFrames);
    return 0;
}

} // namespace velmora::test

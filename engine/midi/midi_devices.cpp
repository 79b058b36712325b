#include "midi/midi_devices.h"

#include "base/platform_sound.h"

#include <RtMidi.h>
#include <exception>
#include <iostream>
#include <streambuf>

namespace velmora {

namespace {

constexpr const char* CLIENT_NAME = "Velmora";

// RtMidi writes what its constructors dislike to the standard error stream and offers no way to say
// otherwise before they have run. While this lives, the stream swallows its text.
class CQuietErrorStream
{
  public:
    CQuietErrorStream() : m_pOld(std::cerr.rdbuf(&m_nowhere)) {}
    ~CQuietErrorStream() { std::cerr.rdbuf(m_pOld); }
    CQuietErrorStream(const CQuietErrorStream&) = delete;
    CQuietErrorStream& operator=(const CQuietErrorStream&) = delete;

  private:
    class CNowhere : public std::streambuf
    {
        int overflow(int nCharacter) override { return traits_type::not_eof(nCharacter); }
    };

    CNowhere m_nowhere;
    std::streambuf* m_pOld;
};

struct CMidiApi
{
    RtMidi::Api m_eApi;
    const char* m_sName;
};

constexpr CMidiApi APIS[] = {{RtMidi::LINUX_ALSA, "ALSA"}, {RtMidi::UNIX_JACK, "JACK"}};

template <typename TRtMidi>
void appendPorts(const CMidiApi& api, std::vector<CMidiDeviceInfo>& list)
{
    TRtMidi client(api.m_eApi, CLIENT_NAME);
    if (client.getCurrentApi() != api.m_eApi)
        return; // RtMidi took another one, since this one is not to be had
    const unsigned uCount = client.getPortCount();
    for (unsigned uPort = 0; uPort < uCount; ++uPort)
        list.push_back({client.getPortName(uPort), api.m_sName});
}

template <typename TRtMidi>
std::vector<CMidiDeviceInfo> portsOf()
{
    silenceSoundLibraries();
    const CQuietErrorStream quiet;
    std::vector<CMidiDeviceInfo> list;
    for (const auto& api : APIS) {
        if (api.m_eApi == RtMidi::UNIX_JACK && !isJackServerRunning())
            continue; // RtMidi would leak a buffer for each client that finds no server
        try {
            appendPorts<TRtMidi>(api, list);
        } catch (const std::exception&) {
            continue; // the machine has no sequencer
        }
    }
    return list;
}

} // namespace

std::vector<CMidiDeviceInfo> CRtMidiSystem::inputs() const
{
    return portsOf<RtMidiIn>();
}

std::vector<CMidiDeviceInfo> CRtMidiSystem::outputs() const
{
    return portsOf<RtMidiOut>();
}

} // namespace velmora

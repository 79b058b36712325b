#include "audio/portaudio_system.h"
#include "real/jack_listener.h"
#include "real/jack_server.h"
#include "real/jack_source.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace velmora::test {
namespace {

struct CRamp
{
    float m_fNext = 1.0F;
};

EAudioCallbackResult playRamp(const float*, float* pOut, unsigned uFrames, unsigned, void* pUser)
{
    auto& ramp = *static_cast<CRamp*>(pUser);
    for (unsigned u = 0; u < 2 * uFrames; ++u)
        pOut[u] = ramp.m_fNext++;
    return AUDIO_CONTINUE;
}

CAudioStreamSide sideNamed(const IAudioSystem& system, const std::string& sName)
{
    CAudioStreamSide side;
    const auto devices = system.devices();
    for (int nDevice = 0; const CAudioDeviceInfo& info : devices) {
        if (info.m_sName == sName)
            side.m_nDevice = nDevice;
        ++nDevice;
    }
    return side;
}

// PortAudio straight into the listener, several times over: nothing of a stream is lost.
TEST(JackHarness, ListenerHearsAStreamFromItsFirstSample)
{
    for (const int nPeriod : {64, 256}) {
        const CJackServer server(48000, nPeriod);
        CJackListener listener(10.0);
        CPortAudioSystem system;
        ASSERT_EQ(system.initialize(), 0);
        CRamp ramp;
        CAudioStreamRequest request;
        request.m_output = sideNamed(system, "listener");
        request.m_dSampleRate = 48000.0;
        request.m_pCallback = playRamp;
        request.m_pUser = &ramp;
        audioStream stream = nullptr;
        ASSERT_EQ(system.openStream(request, stream), 0);
        ASSERT_EQ(system.startStream(stream), 0);
        listener.freewheel(true);
        EXPECT_TRUE(listener.waitForMore(48000));
        listener.freewheel(false);
        EXPECT_EQ(system.stopStream(stream), 0);
        EXPECT_EQ(system.closeStream(stream), 0);
        system.terminate();
        const std::vector<float> heard = listener.recorded();
        const auto first = std::ranges::find_if(heard, [](float f) { return f != 0.0F; });
        float fExpected = 1.0F;
        auto sample = first;
        while (sample != heard.end() && *sample == fExpected) {
            ++fExpected;
            ++sample;
        }
        EXPECT_GT(fExpected, 96000.0F);
        EXPECT_TRUE(std::all_of(sample, heard.end(), [](float f) { return f == 0.0F; }))
            << "the ramp breaks after " << fExpected;
    }
}

} // namespace
} // namespace velmora::test

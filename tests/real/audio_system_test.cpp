#include "audio/audio_devices.h"
#include "audio/portaudio_system.h"
#include "real/jack_listener.h"
#include "real/jack_server.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <optional>
#include <thread>

namespace velmora::test {
namespace {

using namespace std::chrono_literals;

constexpr int NO_ANSWER = IAudioSystem::AUDIO_NO_ANSWER;

class RealAudioSystem : public ::testing::Test
{
  protected:
    RealAudioSystem() { m_server.emplace(); }

    // Becomes true in time, or never.
    template <typename TCondition>
    static bool waitUntil(TCondition isSo)
    {
        for (const auto end = std::chrono::steady_clock::now() + 30s; !isSo();) {
            if (std::chrono::steady_clock::now() > end)
                return false;
            std::this_thread::sleep_for(5ms);
        }
        return true;
    }

    static EAudioCallbackResult playSilence(const float*, float* pOut, unsigned uFrames, unsigned,
                                            void* pTest)
    {
        ++static_cast<RealAudioSystem*>(pTest)->m_uCallbacks;
        std::fill_n(pOut, 2 * uFrames, 0.0F);
        return AUDIO_CONTINUE;
    }

    int open(audioStream& stream)
    {
        CAudioStreamRequest request;
        request.m_output = CAudioStreamSide{.m_nDevice = m_system.defaultOutputDevice()};
        request.m_dSampleRate = 48000.0;
        request.m_pCallback = playSilence;
        request.m_pUser = this;
        return m_system.openStream(request, stream);
    }

    // Whether a stream opens, starts and calls back.
    bool plays(audioStream& stream)
    {
        if (open(stream) != 0 || m_system.startStream(stream) != 0)
            return false;
        const unsigned uBefore = m_uCallbacks;
        return waitUntil([&] { return m_uCallbacks > uBefore + 100; }) && m_system.isStreamActive(stream);
    }

    void restartServer()
    {
        m_server.reset();
        m_server.emplace();
    }

    [[nodiscard]] std::string deviceNames() const
    {
        std::string sNames;
        for (const CAudioDeviceInfo& info : m_system.devices())
            sNames += info.m_sName + " ";
        return sNames;
    }

    std::optional<CJackServer> m_server;
    std::atomic<unsigned> m_uCallbacks{0};
    CPortAudioSystem m_system; // ends ahead of the server
    audioStream m_stream = nullptr;
};

TEST_F(RealAudioSystem, OutlivesAServerThatDiesUnderAStream)
{
    ASSERT_EQ(m_system.initialize(), 0);
    for (const bool bStopFirst : {true, false}) {
        ASSERT_TRUE(plays(m_stream)) << "also on a server that was started anew";
        m_server->kill();
        EXPECT_TRUE(waitUntil([&] { return !m_system.isStreamActive(m_stream); }));
        EXPECT_EQ(bStopFirst ? m_system.stopStream(m_stream) : NO_ANSWER, NO_ANSWER);
        EXPECT_EQ(m_system.closeStream(m_stream), NO_ANSWER);
        const unsigned uBefore = m_uCallbacks;
        EXPECT_EQ(open(m_stream), CPortAudioSystem::DEVICE_GONE);
        EXPECT_EQ(m_uCallbacks, uBefore);
        restartServer();
    }
    EXPECT_EQ(m_system.rescan(), 0);
    EXPECT_EQ(deviceNames(), "system ");
    EXPECT_TRUE(plays(m_stream));
    EXPECT_EQ(m_system.stopStream(m_stream), 0);
    EXPECT_EQ(m_system.closeStream(m_stream), 0);
}

// Where PortAudio's own checks would end the program.
TEST_F(RealAudioSystem, OutlivesAServerThatDiesUnderAPausedStreamOrNone)
{
    ASSERT_EQ(m_system.initialize(), 0);
    ASSERT_TRUE(plays(m_stream));
    ASSERT_EQ(m_system.stopStream(m_stream), 0);
    restartServer();
    EXPECT_EQ(m_system.startStream(m_stream), NO_ANSWER);
    EXPECT_EQ(m_system.closeStream(m_stream), NO_ANSWER);
    ASSERT_TRUE(plays(m_stream));
    EXPECT_EQ(m_system.closeStream(m_stream), 0);
    m_server->kill();
    EXPECT_EQ(m_system.rescan(), 0);
    EXPECT_EQ(deviceNames(), "");
    EXPECT_EQ(m_system.defaultOutputDevice(), -1);
    restartServer();
    EXPECT_EQ(m_system.rescan(), 0);
    EXPECT_EQ(deviceNames(), "system ");
    m_server->kill();
    m_system.terminate();
    restartServer();
    ASSERT_EQ(m_system.initialize(), 0);
    EXPECT_TRUE(plays(m_stream));
}

TEST_F(RealAudioSystem, RescansWhileAStreamPlays)
{
    ASSERT_EQ(m_system.initialize(), 0);
    ASSERT_TRUE(plays(m_stream));
    EXPECT_EQ(deviceNames(), "system ");
    {
        const CJackListener late(1.0, "late");
        ASSERT_EQ(m_system.rescan(), 0);
        EXPECT_EQ(deviceNames(), "system late ") << "the stream's own ports are no device";
    }
    ASSERT_EQ(m_system.rescan(), 0);
    EXPECT_EQ(deviceNames(), "system ");
    const unsigned uBefore = m_uCallbacks;
    EXPECT_TRUE(waitUntil([&] { return m_uCallbacks > uBefore + 100; }));
    EXPECT_TRUE(m_system.isStreamActive(m_stream));

    audioStream second = nullptr;
    EXPECT_TRUE(plays(second));
    EXPECT_EQ(m_system.closeStream(m_stream), 0);
    const unsigned uNow = m_uCallbacks;
    EXPECT_TRUE(waitUntil([&] { return m_uCallbacks > uNow + 100; })) << "of the second";
    EXPECT_TRUE(m_system.isStreamActive(second));
}

// As a terminal, a script or a settings dialog asks: which rates, and none that is not there.
TEST_F(RealAudioSystem, TakesTheServersRateOnly)
{
    ASSERT_EQ(m_system.initialize(), 0);
    const CAudioStreamSide side{.m_nDevice = m_system.defaultOutputDevice()};
    EXPECT_TRUE(m_system.isFormatSupported(side, side, 48000.0));
    EXPECT_FALSE(m_system.isFormatSupported(side, side, 44100.0));
    CAudioDevices devices(m_system);
    CAudioDeviceChoice choice{"system", "system", "None", 44100.0};
    EXPECT_EQ(devices.choose(choice), "");
    EXPECT_EQ(choice.m_dSampleRate, 48000.0);
    EXPECT_EQ(devices.supportedRates(devices.inputDevice(), devices.outputDevice()),
              std::vector<double>{48000.0});
    m_server->kill();
    EXPECT_TRUE(waitUntil([&] { return !m_system.isFormatSupported(side, {}, 48000.0); }));
}

} // namespace
} // namespace velmora::test

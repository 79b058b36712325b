#include "audio/audio_stream_guard.h"
#include "audio/audio_worker.h"
#include "audio/guarded_audio_system.h"
#include "support/fake_audio_system.h"

#include <algorithm>
#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace velmora::test {
namespace {

using namespace std::chrono_literals;

constexpr int NO_ANSWER = IAudioSystem::AUDIO_NO_ANSWER;

// Counts its calls and plays ones. The thread that calls may not be the test's.
struct CPlayer
{
    std::atomic<unsigned> m_uCalls{0};

    static EAudioCallbackResult play(const float*, float* pOut, unsigned uFrames, unsigned, void* pPlayer)
    {
        ++static_cast<CPlayer*>(pPlayer)->m_uCalls;
        std::fill_n(pOut, 2 * uFrames, 1.0f);
        return AUDIO_CONTINUE;
    }

    [[nodiscard]] CAudioStreamRequest request(int nDevice = 0)
    {
        CAudioStreamRequest request;
        request.m_output = CAudioStreamSide{.m_nDevice = nDevice};
        request.m_pCallback = play;
        request.m_pUser = this;
        return request;
    }
};

// One of whose operations does not come back until it is let go.
class CStuckSystem : public CFakeAudioSystem
{
  public:
    explicit CStuckSystem(std::string sStuck) : m_sStuck(std::move(sStuck)) {}

    int initialize() override { return stick("initialize"), CFakeAudioSystem::initialize(); }
    void terminate() override { stick("terminate"), CFakeAudioSystem::terminate(); }
    int openStream(const CAudioStreamRequest& request, audioStream& stream) override
    {
        return stick("open"), CFakeAudioSystem::openStream(request, stream);
    }
    int startStream(audioStream stream) override
    {
        return stick("start"), CFakeAudioSystem::startStream(stream);
    }
    int stopStream(audioStream stream) override
    {
        return stick("stop"), CFakeAudioSystem::stopStream(stream);
    }
    int closeStream(audioStream stream) override
    {
        return stick("close"), CFakeAudioSystem::closeStream(stream);
    }
    bool isStreamActive(audioStream stream) const override
    {
        return stick("active"), CFakeAudioSystem::isStreamActive(stream);
    }

    std::atomic<bool> m_bLetGo{false};

  private:
    void stick(const char* pOperation) const
    {
        while (m_sStuck == pOperation && !m_bLetGo)
            std::this_thread::sleep_for(1ms);
    }

    const std::string m_sStuck;
};

// The systems that were made, in their order; the n-th sticks where m_stuck says.
class GuardedAudioSystemTest : public ::testing::Test
{
  protected:
    ~GuardedAudioSystemTest() override
    {
        for (const auto& pSystem : m_made)
            pSystem->m_bLetGo = true;
    }

    std::shared_ptr<IAudioSystem> make()
    {
        const std::string sStuck = m_made.size() < m_stuck.size() ? m_stuck[m_made.size()] : "";
        m_made.push_back(std::make_shared<CStuckSystem>(sStuck));
        if (m_devices.size() >= m_made.size())
            m_made.back()->m_devices = m_devices[m_made.size() - 1];
        return m_made.back();
    }

    static CAudioDeviceInfo device(std::string sName)
    {
        CAudioDeviceInfo info;
        info.m_sName = std::move(sName);
        info.m_nMaxOutputChannels = 2;
        return info;
    }

    std::vector<std::string> m_stuck;
    std::vector<std::vector<CAudioDeviceInfo>> m_devices;
    std::vector<std::shared_ptr<CStuckSystem>> m_made;
    CPlayer m_player;
    audioStream m_stream = nullptr;
};

TEST_F(GuardedAudioSystemTest, givesUpWhatDoesNotComeBackAndGoesOnWithAnother)
{
    for (const std::string sStuck : {"initialize", "open", "start", "stop", "close", "active"}) {
        SCOPED_TRACE(sStuck);
        m_made.clear();
        m_stuck = {sStuck};
        CGuardedAudioSystem system([this] { return make(); }, 20ms);
        const int nUp = system.initialize();
        EXPECT_EQ(nUp, sStuck == "initialize" ? NO_ANSWER : 0);
        if (nUp == 0) {
            const int nOpen = system.openStream(m_player.request(), m_stream);
            EXPECT_EQ(nOpen, sStuck == "open" ? NO_ANSWER : 0);
            if (nOpen == 0) {
                EXPECT_EQ(system.startStream(m_stream), sStuck == "start" ? NO_ANSWER : 0);
                EXPECT_EQ(system.isStreamActive(m_stream), sStuck != "start" && sStuck != "active");
                EXPECT_EQ(system.stopStream(m_stream), sStuck == "close" ? 0 : NO_ANSWER);
                EXPECT_EQ(system.closeStream(m_stream), NO_ANSWER);
            }
            EXPECT_EQ(system.closeStream(m_stream), CGuardedAudioSystem::NOT_INITIALIZED);
        }
        EXPECT_EQ(system.errorText(NO_ANSWER), "The audio system does not answer");

        ASSERT_EQ(system.initialize(), 0);
        ASSERT_EQ(system.openStream(m_player.request(), m_stream), 0);
        ASSERT_EQ(system.startStream(m_stream), 0);
        EXPECT_TRUE(system.isStreamActive(m_stream));
        EXPECT_EQ(system.closeStream(m_stream), 0);
        EXPECT_EQ(m_made.size(), 2U);
        m_made[0]->m_bLetGo = true;
    }
}

TEST_F(GuardedAudioSystemTest, cutsTheCallbackOffFromASystemThatIsGivenUp)
{
    m_stuck = {"stop"};
    CGuardedAudioSystem system([this] { return make(); }, 20ms);
    ASSERT_EQ(system.initialize(), 0);
    ASSERT_EQ(system.openStream(m_player.request(), m_stream), 0);
    ASSERT_EQ(system.startStream(m_stream), 0);
    EXPECT_EQ(m_made[0]->run(1), 1U);
    EXPECT_EQ(m_made[0]->m_output.back(), 1.0f);
    EXPECT_EQ(m_made[0]->allocationsInCallbacks(), 0U);
    EXPECT_EQ(system.stopStream(m_stream), NO_ANSWER);
    EXPECT_EQ(m_made[0]->run(5), 1U) << "the first silent buffer ends the stream";
    EXPECT_EQ(m_made[0]->m_output.back(), 0.0f);
    EXPECT_EQ(m_player.m_uCalls, 1U);
}

TEST_F(GuardedAudioSystemTest, rescansBesideAStreamThatPlays)
{
    const auto a = device("a");
    const auto b = device("b");
    m_devices = {{a, b}, {b}, {b, a}};
    CGuardedAudioSystem system([this] { return make(); });
    const auto names = [&] {
        std::string sNames;
        for (const auto& info : system.devices())
            sNames += info.m_sName;
        return sNames;
    };
    ASSERT_EQ(system.initialize(), 0);
    ASSERT_EQ(system.openStream(m_player.request(0), m_stream), 0);
    ASSERT_EQ(system.startStream(m_stream), 0);
    ASSERT_EQ(system.rescan(), 0);
    EXPECT_EQ(names(), "ba") << "a is busy, which hides it from the second system";
    EXPECT_TRUE(system.isStreamActive(m_stream));
    EXPECT_EQ(m_made[0]->run(3), 3U);
    EXPECT_EQ(m_made[0]->uses(), 1);
    EXPECT_EQ(system.closeStream(m_stream), 0);
    EXPECT_EQ(m_made[0]->uses(), 0) << "its last stream is closed";

    // The second system does not know "a", the third does, under another number than the list says.
    ASSERT_EQ(system.openStream(m_player.request(1), m_stream), 0);
    EXPECT_EQ(m_made.size(), 3U);
    EXPECT_EQ(m_made[1]->uses(), 0);
    EXPECT_EQ(m_made[2]->lastRequest().m_output->m_nDevice, 1);
    EXPECT_EQ(names(), "ba");

    m_devices.push_back({});
    EXPECT_EQ(system.rescan(), 0);
    EXPECT_EQ(names(), "") << "a stream that does not play keeps no device";
    system.terminate();
    EXPECT_EQ(m_made[2]->openStreams(), 0U);
    EXPECT_EQ(m_made[2]->uses() + m_made[3]->uses(), 0);
}

TEST_F(GuardedAudioSystemTest, triesAFailedOpenOnceMoreUnlessTheRequestIsAtFault)
{
    const std::pair<int, std::size_t> cases[] = {{-9999, 2}, {NO_ANSWER, 2}, {-9998, 1}, {-9997, 1}};
    for (const auto& [nError, uMade] : cases) {
        m_made.clear();
        CGuardedAudioSystem system([this] { return make(); });
        ASSERT_EQ(system.initialize(), 0);
        ASSERT_EQ(system.initialize(), 0) << "the second use of the same system";
        m_made[0]->m_errors["open"] = nError;
        EXPECT_EQ(system.openStream(m_player.request(), m_stream), uMade == 1 ? nError : 0);
        EXPECT_EQ(m_made.size(), uMade);
        system.terminate();
        EXPECT_EQ(m_made.back()->uses(), 1);
        system.terminate();
        EXPECT_EQ(m_made.back()->uses(), 0);
        EXPECT_EQ(system.openStream(m_player.request(), m_stream), CGuardedAudioSystem::NOT_INITIALIZED);
        EXPECT_EQ(system.errorText(-9997), nError == -9997 ? "Fake error -9997" : "Audio error -9997");
    }
}

TEST_F(GuardedAudioSystemTest, stopsAndClosesWhileCallbacksCome)
{
    CGuardedAudioSystem system([this] {
        auto pSystem = std::static_pointer_cast<CStuckSystem>(make());
        pSystem->runOnThreads(0us);
        return pSystem;
    });
    for (const bool bStopFirst : {true, false}) {
        for (const bool bKill : {false, true}) {
            ASSERT_EQ(system.initialize(), 0);
            ASSERT_EQ(system.openStream(m_player.request(), m_stream), 0);
            ASSERT_EQ(system.startStream(m_stream), 0);
            for (const unsigned uBefore = m_player.m_uCalls; m_player.m_uCalls < uBefore + 100;)
                std::this_thread::yield();
            EXPECT_TRUE(system.isStreamActive(m_stream));
            if (bKill)
                m_made.back()->kill();
            EXPECT_NE(system.isStreamActive(m_stream), bKill);
            EXPECT_EQ(bStopFirst ? system.stopStream(m_stream) : 0, 0);
            EXPECT_EQ(system.closeStream(m_stream), 0);
            system.terminate();
        }
    }
}

TEST(AudioStreamGuard, tellsAStreamThatCeasedFromAProgramThatWasHeldUp)
{
    struct
    {
        const char* m_sCase;
        double m_dRate;     // Hz
        unsigned m_uFrames; // of a buffer
        int m_nLooks;       // this far apart:
        std::chrono::milliseconds m_interval;
        bool m_bCallbacks; // between looks
        bool m_bBeats;     // at the end
    } const cases[] = {
        {"plays", 48000.0, 64, 100, 50ms, true, true},
        {"short of a second", 48000.0, 64, 19, 50ms, false, true},
        {"a second", 48000.0, 64, 20, 50ms, false, false},
        {"held up for an hour", 48000.0, 64, 3, 1200000ms, false, true},
        {"looked at rarely", 48000.0, 64, 4, 2000ms, false, false},
        {"has buffers of a second", 8000.0, 8000, 79, 50ms, false, true},
        {"four of them are missing", 8000.0, 8000, 80, 50ms, false, false},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.m_sCase);
        CPlayer player;
        auto asked = player.request();
        asked.m_dSampleRate = test.m_dRate;
        asked.m_uFramesPerBuffer = test.m_uFrames;
        CAudioStreamGuard guard(asked);
        const auto request = guard.request();
        std::vector<float> out(128);
        std::chrono::steady_clock::time_point now{};
        guard.starting(now);
        bool bBeats = true;
        for (int nLook = 0; nLook < test.m_nLooks; ++nLook) {
            if (test.m_bCallbacks)
                (void)request.m_pCallback(nullptr, out.data(), 64, 0, request.m_pUser);
            bBeats = guard.isBeating(now += test.m_interval);
        }
        EXPECT_EQ(bBeats, test.m_bBeats);
        guard.starting(now);
        EXPECT_TRUE(guard.isBeating(now + 1ms)) << "anew";
    }
}

// A system that calls before anyone can hear it loses nothing of what is to be heard.
TEST(AudioStreamGuard, holdsTheCallbackBackUntilTheStartHasComeBack)
{
    int nCalls = 0;
    CAudioStreamRequest asked;
    asked.m_output = CAudioStreamSide{};
    asked.m_output->m_nChannels = 1;
    asked.m_pUser = &nCalls;
    asked.m_pCallback = [](const float*, float* pOut, unsigned, unsigned, void* pCalls) {
        *pOut = static_cast<float>(++*static_cast<int*>(pCalls));
        return AUDIO_COMPLETE;
    };
    CAudioStreamGuard guard(asked);
    const auto play = [request = guard.request()] {
        float fOut = -1.0F;
        const auto result = request.m_pCallback(nullptr, &fOut, 1, 0, request.m_pUser);
        EXPECT_EQ(result, fOut == 0.0F ? AUDIO_CONTINUE : AUDIO_COMPLETE);
        return fOut;
    };
    for (int nStart = 0; nStart < 2; ++nStart) {
        SCOPED_TRACE(nStart);
        nCalls = 0;
        guard.starting({});
        EXPECT_EQ(play(), 0.0F);
        EXPECT_EQ(play(), 0.0F);
        guard.started();
        EXPECT_EQ(play(), 0.0F) << "its period may have begun ahead of the start";
        EXPECT_EQ(play(), 1.0F);
        EXPECT_EQ(play(), 2.0F);
        guard.starting({});
        guard.started();
        EXPECT_EQ(play(), 3.0F) << "nobody called early";
    }
}

TEST(AudioStreamGuard, waitsForACallbackOnItsWayButNotForEver)
{
    struct CSlow
    {
        std::atomic<bool> m_bEntered{false};
        std::atomic<bool> m_bLetGo{false};
    } slow;
    CAudioStreamRequest asked;
    asked.m_pUser = &slow;
    asked.m_pCallback = [](const float*, float*, unsigned, unsigned, void* pSlow) {
        auto& told = *static_cast<CSlow*>(pSlow);
        told.m_bEntered = true;
        while (!told.m_bLetGo)
            std::this_thread::yield();
        return AUDIO_COMPLETE;
    };
    CAudioStreamGuard guard(asked);
    std::thread audio(
        [request = guard.request()] { request.m_pCallback(nullptr, nullptr, 64, 0, request.m_pUser); });
    while (!slow.m_bEntered)
        std::this_thread::yield();
    EXPECT_FALSE(guard.detach(5ms));
    EXPECT_FALSE(guard.hasCompleted());
    slow.m_bLetGo = true;
    EXPECT_TRUE(guard.detach(60s));
    EXPECT_TRUE(guard.hasCompleted());
    audio.join();
}

TEST(AudioWorker, answersUntilItHangs)
{
    CAudioWorker worker;
    for (int n = 0; n < 100; ++n)
        EXPECT_EQ(worker.call([n] { return n; }, 60s), n);
    const auto pOwned = std::make_shared<std::atomic<bool>>(false);
    const auto pLetGo = std::make_shared<std::atomic<bool>>(false);
    const auto hang = [pOwned, pLetGo] {
        while (!*pLetGo)
            std::this_thread::sleep_for(1ms);
        *pOwned = true;
        return 0;
    };
    EXPECT_EQ(worker.call(hang, 5ms), std::nullopt);
    EXPECT_TRUE(worker.hangs());
    EXPECT_EQ(worker.call([] { return 0; }, 60s), std::nullopt);
    *pLetGo = true;
    while (!*pOwned)
        std::this_thread::yield();
}

} // namespace
} // namespace velmora::test

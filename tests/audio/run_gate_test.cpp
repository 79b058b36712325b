#include "audio/run_gate.h"
#include "engine_fixture.h"

#include <cmath>
#include <memory>
#include <thread>

namespace velmora {
namespace {

using std::chrono::milliseconds;

TEST(RunGate, KeepsCallbacksOutAndWaitsForTheOneInside)
{
    CRunGate gate;
    gate.enter();
    EXPECT_TRUE(gate.isInside());
    EXPECT_FALSE(gate.close(milliseconds(5))) << "the callback does not come back";
    EXPECT_FALSE(gate.isClosed());
    gate.leave();
    ASSERT_TRUE(gate.close());
    EXPECT_TRUE(gate.close()) << "closed already";
    std::atomic<bool> bEntered{false};
    std::jthread audio([&] {
        const CGatePassage passage(gate);
        bEntered = true;
    });
    std::this_thread::sleep_for(milliseconds(20));
    EXPECT_FALSE(bEntered);
    {
        const CClosedGate inner(gate);
        EXPECT_TRUE(static_cast<bool>(inner));
    }
    EXPECT_TRUE(gate.isClosed()) << "an inner scope leaves the gate as it found it";
    gate.open();
    audio.join();
    EXPECT_TRUE(bEntered);
    gate.open(); // once more: nothing
    {
        const CClosedGate scope(gate);
        EXPECT_TRUE(gate.isClosed());
    }
    EXPECT_FALSE(gate.isClosed());
}

// The callbacks of another stream do not speak for one that hangs in a plug-in.
TEST(RunGate, ACallbackThatHangsStaysInsideWhileOthersPass)
{
    CRunGate gate;
    gate.enter();
    {
        const CGatePassage another(gate);
    }
    EXPECT_FALSE(gate.close(milliseconds(5)));
    gate.leave();
    EXPECT_TRUE(gate.close(milliseconds(5)));
}

class RunGateTorture : public test::CEngineTest
{
};

// One thread plays without pause while another swaps, hard or by a fade, and deletes what was swapped out.
// The constants are neighbours, so that within one buffer only a fade may move, in steps of its own size.
TEST_F(RunGateTorture, SwapsLeaveEachBufferWhollyOneFiltersOrThePartOfAFade)
{
    constexpr int SWAPS = 10000;
    constexpr int FADED = 10; // every tenth
    constexpr float STEP = 1.0F / 441.0F;
    auto pCurrent = std::make_unique<test::CConstantModule>(0.0F);
    m_engine.setFilter(pCurrent.get());
    m_engine.capture().setRunning(true);
    std::atomic<bool> bStop{false};
    std::atomic<int> nTorn{0};
    std::atomic<int> nFades{0};
    std::atomic<int> nBuffers{0};
    std::jthread audio([&] {
        std::vector<float> in(128, 0.5F);
        std::vector<float> out(128);
        while (!bStop) {
            m_engine.processPortAudioFile(in.data(), out.data(), 128, false, &test::STEREO_FILE);
            const float fSlope = out[2] - out[0];
            const bool bFade = std::abs(std::abs(fSlope) - STEP) < 1e-5F;
            for (std::size_t i = 0; i + 2 < out.size(); ++i) {
                const float fMove = out[i + 2] - out[i];
                const bool bEnds = bFade && fMove == 0.0F && std::round(out[i]) == out[i];
                if (!bEnds && std::abs(fMove - fSlope) > 1e-5F)
                    ++nTorn;
            }
            if (fSlope != 0.0F ? !bFade : std::round(out[0]) != out[0])
                ++nTorn;
            nFades += bFade;
            ++nBuffers;
        }
    });
    for (int i = 1; i <= SWAPS; ++i) {
        auto pNext = std::make_unique<test::CConstantModule>(static_cast<float>(i % 2));
        {
            const CClosedGate closed(m_engine.gate());
            ASSERT_TRUE(static_cast<bool>(closed));
            if (i % FADED == 0)
                m_engine.fadeTo(pNext.get());
            else
                m_engine.setFilter(pNext.get());
        }
        ASSERT_TRUE(m_engine.finishFade());
        pCurrent->m_fValue = 50.0F; // would be heard, and is a race that a sanitizer sees
        pCurrent = std::move(pNext);
        static_cast<void>(m_engine.capture().latest());
    }
    while (nBuffers == 0)
        std::this_thread::yield();
    bStop = true;
    audio.join();
    EXPECT_EQ(nTorn, 0);
    EXPECT_GE(nFades, SWAPS / FADED) << "the fades were heard";
}

} // namespace
} // namespace velmora

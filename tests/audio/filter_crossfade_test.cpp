#include "audio/engine_buffer.h"
#include "audio/filter_call.h"
#include "audio/filter_crossfade.h"
#include "engine_fixture.h"
#include "host/plugin_call_marker.h"
#include "support/test_plugins.h"

#include <cmath>

namespace velmora {
namespace {

constexpr int FADE_FRAMES = 441; // 10 ms at 44100 Hz

// Hands its input on, and leaves rubbish in it.
class CSpoilingPlugIn : public CPlugIn
{
  public:
    CSpoilingPlugIn() { m_bWantBuffers = true; }

    bool processSocketAudioBuffer(float* pIn, float* pOut, UINT uIn, UINT uOut, UINT uSize) override
    {
        for (UINT i = 0; i < uSize / uIn; ++i)
            for (UINT u = 0; u < uOut; ++u)
                pOut[i * uOut + u] = pIn[i * uIn + (uIn == uOut ? u : 0)];
        std::fill_n(pIn, uSize, -77.0F);
        return true;
    }
};

class FilterCrossfadeTest : public test::CEngineTest
{
  protected:
    void fadeTo(CDSPFilter* pFilter)
    {
        const CClosedGate closed(m_engine.gate());
        m_engine.fadeTo(pFilter);
    }
};

// Both filters hear the same input, whatever one of them does to it; between them lies a straight line, in
// buffers of any size, and then the new filter sounds alone.
TEST_F(FilterCrossfadeTest, IsTheLineBetweenWhatEitherFilterAloneWouldGive)
{
    test::CScalingPlugIn scaling;
    CSpoilingPlugIn spoiling;
    CUserDSPFilter scalingFilter;
    CUserDSPFilter spoilingFilter;
    scalingFilter.attachPlugIn(&scaling);
    spoilingFilter.attachPlugIn(&spoiling);
    test::CConstantModule constant(0.25F);
    const std::pair<CDSPFilter*, CDSPFilter*> fades[] = {{&spoilingFilter, &scalingFilter},
                                                         {&constant, &scalingFilter},
                                                         {&scalingFilter, nullptr},
                                                         {nullptr, &scalingFilter},
                                                         {&spoilingFilter, nullptr}};
    const auto in = test::noise(2 * 600);
    m_engine.m_fOutputGain_dB = -6.0F;
    for (const auto& [pOld, pNew] : fades)
        for (unsigned uMode = 0; uMode <= 5; ++uMode)
            for (const std::size_t uBlock : {64U, 600U, 7U}) {
                SCOPED_TRACE(testing::Message() << "mode " << uMode << " blocks of " << uBlock);
                m_engine.m_uChannelMode = uMode;
                const auto render = [&] {
                    std::vector<float> all;
                    for (std::size_t i = 0; i < 2 * 600; i += 2 * uBlock) {
                        const std::size_t uCount = std::min(2 * uBlock, 2 * 600 - i);
                        std::vector<float> piece(&in[i], &in[i] + uCount);
                        const auto out = play(piece);
                        all.insert(all.end(), out.begin(), out.end());
                    }
                    return all;
                };
                m_engine.setFilter(pNew);
                const auto after = render();
                m_engine.setFilter(pOld);
                const auto before = render();
                fadeTo(pNew);
                const auto out = render();
                EXPECT_TRUE(m_engine.finishFade());
                // A filter that spoils its input spoils the dry signal with it, and is not heard alone.
                const bool bSpoilsDry = uMode >= 3 && (pOld == &spoilingFilter || pOld == &constant);
                for (std::size_t i = 0; i < out.size() && !bSpoilsDry; ++i) {
                    const float fPart = std::min(1.0F, static_cast<float>(i / 2) / FADE_FRAMES);
                    ASSERT_NEAR(out[i], before[i] + fPart * (after[i] - before[i]), 2e-6F) << "at " << i;
                }
            }
}

TEST_F(FilterCrossfadeTest, AnOldFilterThatIsBrokenDoesNotSpoilTheNewOne)
{
    test::CConstantModule broken(INFINITY);
    test::CConstantModule silent(0.9F);
    test::CConstantModule fine(0.5F);
    silent.m_bAnswer = false; // what it has written does not count
    for (CDSPFilter* pOld : {&broken, &silent}) {
        m_engine.setFilter(pOld);
        fadeTo(&fine);
        const auto out = playConstant(600, 0.1F);
        EXPECT_EQ(out[0], 0.0F);
        EXPECT_NEAR(out[440], 0.5F * 220.0F / FADE_FRAMES, 1e-6F);
        EXPECT_EQ(out[2 * FADE_FRAMES], 0.5F);
        EXPECT_TRUE(figuresOf(EAudioNotice::notFinite).empty());
    }
}

TEST_F(FilterCrossfadeTest, ASecondFadeEndsTheFirst)
{
    test::CConstantModule first(0.1F);
    test::CConstantModule second(0.2F);
    test::CConstantModule third(0.4F);
    m_engine.setFilter(&first);
    fadeTo(&second);
    playConstant(64, 0.0F);
    fadeTo(&third);
    EXPECT_EQ(playConstant(64, 0.0F)[0], 0.2F) << "the first filter is gone";
    fadeTo(&third); // itself: the fade goes on
    EXPECT_NEAR(playConstant(64, 0.0F)[0], 0.2F + 0.2F * 64.0F / FADE_FRAMES, 1e-6F);
    const CClosedGate closed(m_engine.gate());
    m_engine.setFilter(&first);
    m_engine.gate().open();
    EXPECT_EQ(playConstant(64, 0.0F)[0], 0.1F) << "set at once";
}

// Nobody waits for a fade that no buffer moves on, or that nobody hears.
TEST_F(FilterCrossfadeTest, EndsWithoutAStreamAndWithoutAFilterToHear)
{
    test::CConstantModule first(0.1F);
    test::CConstantModule second(0.2F);
    for (const ETransportState eState : {TRANSPORT_STOP, TRANSPORT_PAUSE, TRANSPORT_PLAY}) {
        m_transport.setState(eState); // in the last a stream that has stalled
        m_engine.setFilter(&first);
        fadeTo(&second);
        EXPECT_TRUE(m_engine.finishFade());
        EXPECT_FALSE(m_engine.gate().isClosed());
        m_transport.setState(TRANSPORT_PLAY);
        EXPECT_EQ(playConstant(8, 0.0F)[0], 0.2F);
    }
    m_engine.setFilter(&first);
    fadeTo(&second);
    m_engine.m_bBypass = true;
    EXPECT_EQ(playConstant(8, 0.3F)[0], 0.3F);
    m_engine.m_bBypass = false;
    EXPECT_EQ(playConstant(8, 0.3F)[0], 0.2F);
}

// A plug-in that looks at its surroundings.
class CLookingPlugIn : public CPlugIn
{
  public:
    CLookingPlugIn() { m_PlugInName = "Looking"; }

    bool processAudioFrame(float*, float* pOut, UINT, UINT) override
    {
        m_call = CPlugInCallMarker::current();
        m_fFound = pOut[0];
        return true;
    }

    CPlugInCallMarker::CCall m_call;
    float m_fFound = 99.0F;
};

TEST(FilterCall, NamesThePlugInAndLeavesNothingOfAnEarlierBuffer)
{
    CLookingPlugIn plugIn;
    CUserDSPFilter filter;
    filter.attachPlugIn(&plugIn);
    std::vector<float> in(2, 0.5F);
    std::vector<float> out(2, 99.0F);
    callFilter(&filter, {.m_in = in, .m_pOut = out.data(), .m_uMode = CHANNEL_MODE_STEREO_STEREO});
    EXPECT_STREQ(plugIn.m_call.m_pName, "Looking");
    EXPECT_EQ(plugIn.m_call.m_eCall, EPlugInCall::processing);
    EXPECT_EQ(CPlugInCallMarker::current().m_pName, nullptr);
    EXPECT_EQ(plugIn.m_fFound, 0.0F);
    EXPECT_EQ(out, std::vector<float>(2, 0.0F));
}

} // namespace
} // namespace velmora

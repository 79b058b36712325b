#include "examples/example_plugin.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace velmora::test {
namespace {

std::vector<UINT> settableIds(const CExamplePlugIn& plugIn)
{
    std::vector<UINT> ids;
    for (const CUICtrl* pControl : plugIn.controls())
        if (pControl->uControlType != FILTER_CONTROL_LED_METER)
            ids.push_back(pControl->uControlId);
    return ids;
}

// Which controls stand at their high end, bit by bit: every corner of up to seven controls; of more, all
// low, all high, each alone, each alone left out, and 100 drawn at random, the same ones each time.
std::vector<unsigned> cornersOf(size_t uControls)
{
    const unsigned uAll = (1U << uControls) - 1;
    std::vector<unsigned> corners;
    if (uControls <= 7) {
        for (unsigned u = 0; u <= uAll; ++u)
            corners.push_back(u);
        return corners;
    }
    corners = {0, uAll};
    for (size_t i = 0; i < uControls; ++i)
        corners.insert(corners.end(), {1U << i, uAll ^ (1U << i)});
    std::minstd_rand random(1);
    for (int i = 0; i < 100; ++i)
        corners.push_back(static_cast<unsigned>(random()) & uAll);
    return corners;
}

std::vector<float> loudNoise(size_t uSamples)
{
    std::minstd_rand random(7);
    std::uniform_real_distribution<float> distribution(-1.0f, 1.0f);
    std::vector<float> samples(uSamples);
    for (float& fSample : samples)
        fSample = distribution(random);
    return samples;
}

} // namespace

class ExampleRobustness : public testing::TestWithParam<const char*>
{
  protected:
    CExamplePlugIn m_plugIn{GetParam()};
};

TEST_P(ExampleRobustness, staysFiniteInEveryCornerOfItsControls)
{
    const auto ids = settableIds(m_plugIn);
    const auto corners = cornersOf(ids.size());
    const size_t uFrames = 600;
    for (int nRate : {44100, 48000, 96000}) {
        for (UINT uChannels : {1U, 2U}) {
            const auto input = loudNoise(uFrames * uChannels);
            const auto sidechain = loudNoise(uFrames);
            m_plugIn.prepare(nRate, uChannels, uChannels);
            m_plugIn->midiNoteOn(0, 127, 127);
            m_plugIn->midiNoteOn(0, 0, 127);
            for (unsigned uCorner : corners) {
                for (size_t i = 0; i < ids.size(); ++i) {
                    const CUICtrl& control = m_plugIn.control(ids[i]);
                    m_plugIn.set(ids[i], uCorner >> i & 1U ? control.fUserDisplayDataHiLimit
                                                           : control.fUserDisplayDataLoLimit);
                }
                const auto output = m_plugIn.process(input, sidechain);
                ASSERT_TRUE(allFinite(output)) << "corner " << uCorner << " at " << nRate;
                // The filter at Q 20 and +12 dB and the gain at +24 dB are the loudest there are.
                ASSERT_LT(peakOf(output), 100.0) << "corner " << uCorner << " at " << nRate;
            }
        }
    }
}

TEST_P(ExampleRobustness, recoversFromBadSamplesAndEndsInSilence)
{
    m_plugIn.prepare(48000);
    auto input = loudNoise(9600);
    const float fInfinity = std::numeric_limits<float>::infinity();
    input[100] = input[201] = std::numeric_limits<float>::quiet_NaN();
    input[300] = fInfinity;
    input[401] = -fInfinity;
    m_plugIn.process(input);
    EXPECT_TRUE(allFinite(m_plugIn.process(loudNoise(9600))));

    m_plugIn.processSilence(48000 * 60); // the longest tail: echoes with the start values' feedback
    EXPECT_EQ(peakOf(m_plugIn.processSilence(4800)), 0.0);

    // A start of the audio forgets the past.
    m_plugIn.process(loudNoise(9600));
    m_plugIn.prepare(44100);
    EXPECT_EQ(peakOf(m_plugIn.processSilence(44100)), 0.0);
}

INSTANTIATE_TEST_SUITE_P(All, ExampleRobustness, testing::ValuesIn(EXAMPLE_NAMES),
                         [](const auto& info) { return std::string(info.param); });

} // namespace velmora::test

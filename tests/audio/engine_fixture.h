#pragma once

#include "audio/audio_engine.h"
#include "host/user_dsp_filter.h"
#include "plugin.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace velmora::test {

inline constexpr CSoundFileInfo STEREO_FILE{0, 2, 44100, 0};

inline std::vector<float> noise(std::size_t uCount, unsigned uSeed = 7)
{
    std::mt19937 generator(uSeed);
    std::uniform_real_distribution<float> distribution(-1.0F, 1.0F);
    std::vector<float> samples(uCount);
    for (float& fSample : samples)
        fSample = distribution(generator);
    return samples;
}

// A built-in module that makes every sample the same number, and spoils its input.
class CConstantModule : public CDSPFilter
{
  public:
    explicit CConstantModule(float fValue) : m_fValue(fValue) {}

    bool processInterleaved(float* pIn, float* pOut, UINT, UINT uSamples, UINT) override
    {
        std::fill_n(pIn, uSamples, -77.0F);
        std::fill_n(pOut, uSamples, m_fValue);
        return m_bAnswer;
    }

    float m_fValue;
    bool m_bAnswer = true;
};

// An engine that plays a stereo file.
class CEngineTest : public testing::Test
{
  protected:
    CEngineTest() { m_transport.setState(TRANSPORT_PLAY); }

    // One stream buffer of the input's length; the input is left as the engine leaves it.
    std::vector<float> play(std::vector<float>& in)
    {
        std::vector<float> out(in.size(), 99.0F);
        EXPECT_TRUE(m_engine.processPortAudioFile(in.data(), out.data(), static_cast<int>(in.size()), false,
                                                  &STEREO_FILE));
        return out;
    }

    std::vector<float> playConstant(std::size_t uFrames, float fValue)
    {
        std::vector<float> in(2 * uFrames, fValue);
        return play(in);
    }

    // What the audio thread has told of a kind since the last look; all else is forgotten.
    std::vector<float> figuresOf(EAudioNotice eNotice)
    {
        std::vector<float> figures;
        while (const auto notice = m_engine.notices().take())
            if (notice->m_eNotice == eNotice)
                figures.push_back(notice->m_fFigure);
        return figures;
    }

    CTransportState m_transport;
    CSidechain m_sidechain;
    CAudioEngine m_engine{m_transport, m_sidechain};
};

} // namespace velmora::test

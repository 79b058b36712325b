#include "dsp/modules/all_pass_filter.h"
#include "dsp/modules/biquad_filter.h"
#include "dsp/modules/biquad_section.h"
#include "dsp/modules/hp_lp_filter.h"
#include "dsp/modules/linkwitz_riley_filter.h"
#include "dsp/modules/smoothing_filter.h"
#include "dsp/modules/trace_table.h"
#include "dsp/modules/volume_ctrl.h"
#include "noise_samples.h"
#include "support/allocation_guard.h"
#include "support/lock_guard_counter.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <gtest/gtest.h>
#include <thread>

namespace velmora {
namespace {

std::vector<std::unique_ptr<CModuleFilter>> allFilters()
{
    std::vector<std::unique_ptr<CModuleFilter>> filters;
    filters.push_back(std::make_unique<CMultiFilter>());
    filters.push_back(std::make_unique<CHP_LPFilter>());
    filters.push_back(std::make_unique<CAllPassFilter>());
    filters.push_back(std::make_unique<CLinkwitzRileyFilter>());
    filters.push_back(std::make_unique<CVolumeCtrl>());
    filters.push_back(std::make_unique<CSmoothingFilter>());
    return filters;
}

// Both buffer operations, in mono and stereo, with and without mix, in place and in uneven blocks, are the
// sample operation times the volume.
TEST(BiquadFilter, BuffersAreSamplesTimesTheVolume)
{
    struct CCase
    {
        UINT m_uType, m_uChannels, m_uMix;
        bool m_bScaled, m_bInPlace;
    };
    for (const auto& [uType, uChannels, uMix, bScaled, bInPlace] :
         {CCase{300, 1, 0, true, false}, CCase{301, 2, 0, false, true}, CCase{302, 2, 1, true, false},
          CCase{303, 1, 0, true, true}, CCase{303, 2, 0, false, false}, CCase{303, 2, 1, true, false}}) {
        SCOPED_TRACE(uType);
        CMultiFilter filter;
        CMultiFilter reference;
        for (CMultiFilter* pFilter : {&filter, &reference}) {
            pFilter->setType(uType);
            pFilter->setParameter(MULTIFILTER_BOOST_CUT, 7.0F);
            pFilter->setParameter(MULTIFILTER_VOLUME, 0.3F);
            pFilter->prepareForPlay();
        }
        const float fScale = bScaled ? 32768.0F : 1.0F;
        const auto input = test::noise(uChannels * 333, fScale);
        auto in = input;
        auto separate = test::noise(in.size(), 0.5F * fScale);
        const auto before = separate;
        auto& out = bInPlace ? in : separate;
        for (std::size_t uDone = 0, uBlock = 7 * uChannels; uDone < in.size(); uDone += uBlock, uBlock += 2) {
            const auto uCount =
                static_cast<UINT>(std::min(uBlock, in.size() - uDone) / uChannels * uChannels);
            uBlock = uCount;
            const auto process = bScaled ? &CMultiFilter::processBuffer : &CMultiFilter::processInterleaved;
            ASSERT_TRUE((filter.*process)(in.data() + uDone, out.data() + uDone, uChannels, uCount, uMix));
        }
        for (std::size_t u = 0; u < input.size(); ++u) {
            const auto c = static_cast<int>(u % uChannels);
            float fExpected =
                reference.processSample(input[u] / fScale, reference.state(c), c) * 0.3F * fScale;
            if (uType == 303 && bScaled)
                fExpected += input[u];
            if (uMix)
                fExpected += before[u];
            ASSERT_NEAR(out[u], fExpected, 1e-5F * fScale) << u;
        }
    }
}

TEST(BiquadFilter, RefusesOtherNumbersOfChannels)
{
    for (const auto& pFilter : allFilters()) {
        pFilter->prepareForPlay();
        float samples[6] = {1, 2, 3, 4, 5, 6};
        for (const UINT uChannels : {0U, 3U}) {
            EXPECT_FALSE(pFilter->processBuffer(samples, samples, uChannels, 6, 0));
            EXPECT_FALSE(pFilter->processInterleaved(samples, samples, uChannels, 6, 0));
        }
        EXPECT_EQ(samples[5], 6.0F);
    }
}

TEST(BiquadFilter, LetsTheInputThroughUntouchedWhereItsShelfIsFlat)
{
    CMultiFilter shelf; // 0 dB
    CVolumeCtrl volume;
    volume.setParameter(VOLUME_BOOST_CUT, 0.0F);
    auto in = test::noise(400);
    for (CBiquadFilter* pFilter :
         {static_cast<CBiquadFilter*>(&shelf), static_cast<CBiquadFilter*>(&volume)}) {
        pFilter->prepareForPlay();
        std::vector<float> out(in.size());
        pFilter->processInterleaved(in.data(), out.data(), 2, 400, 0);
        EXPECT_EQ(out, in);
        pFilter->setParameter(pFilter == &volume ? +VOLUME_OUTPUT : +MULTIFILTER_VOLUME, 0.5F);
        pFilter->processInterleaved(in.data(), out.data(), 2, 400, 0);
        EXPECT_EQ(out[399], 0.5F * in[399]);
    }
    volume.reset(); // does nothing: the past samples are still there
    EXPECT_EQ(volume.state(1)[0], in[399]);
    volume.prepareForPlay();
    EXPECT_EQ(volume.state(1)[0], 0.0F);
}

// What is too small for a normal float is forgotten: no volume makes it heard.
TEST(BiquadFilter, LetsItsTailEnd)
{
    CHP_LPFilter filter;
    filter.prepareForPlay();
    constexpr std::array<float, 64> silence{};
    std::array<float, 64> out{1.0F};
    filter.processInterleaved(out.data(), out.data(), 1, 64, 0);
    while (std::ranges::any_of(out, [](float fSample) { return std::abs(fSample) >= FLT_MIN; })) {
        out = silence;
        filter.processInterleaved(out.data(), out.data(), 1, 64, 0);
    }
    filter.setParameter(MULTIFILTER_VOLUME, FLT_MAX);
    out = silence;
    filter.processInterleaved(out.data(), out.data(), 1, 64, 0);
    EXPECT_EQ(out, silence);
}

TEST(BiquadFilter, BeginsWithCoefficientsOfOneAndWorksThemOutWhenPrepared)
{
    CHP_LPFilter filter;
    for (const CModuleCoefficient& coefficient : filter.coefficients())
        EXPECT_EQ(*coefficient.m_pValue, 1.0F) << coefficient.m_sLabel;
    EXPECT_EQ(filter.processSample(0.5F, filter.state(0), 0), 1.0F); // dry and wet
    filter.prepareForPlay();
    EXPECT_EQ(*filter.coefficients()[7].m_pValue, 0.0F);
    const float fB1 = *filter.coefficients()[3].m_pValue;
    filter.m_nSampleRate = 96000;
    filter.prepareForPlay();
    EXPECT_LT(*filter.coefficients()[3].m_pValue, fB1);
}

TEST(BiquadFilter, TracesTheFirstSamplesOfTheLeftChannel)
{
    CHP_LPFilter filter;
    filter.prepareForPlay();
    auto in = test::noise(200);
    std::vector<float> out(in.size());
    filter.processInterleaved(in.data(), out.data(), 2, 200, 0);
    ASSERT_EQ(filter.trace().count(), 64);
    const CFloatArray& table = filter.trace().table();
    EXPECT_EQ(table.get(0, 0), -1.0F);
    const auto coefficients = filter.coefficients();
    for (int n = 2; n < 64; ++n) {
        const auto u = static_cast<std::size_t>(2 * n);
        const float expected[] = {static_cast<float>(n),
                                  in[u],
                                  *coefficients[0].m_pValue * in[u],
                                  *coefficients[1].m_pValue * in[u - 2],
                                  *coefficients[2].m_pValue * in[u - 4],
                                  *coefficients[3].m_pValue * out[u - 2],
                                  *coefficients[4].m_pValue * out[u - 4],
                                  out[u],
                                  out[u],
                                  out[u],
                                  0.0F,
                                  out[u],
                                  out[u]};
        for (int nColumn = 0; nColumn < CTraceTable::COLUMNS; ++nColumn)
            ASSERT_NEAR(table.get(n + 1, nColumn), expected[nColumn], 1e-6F) << n << ", " << nColumn;
    }
    filter.reset();
    EXPECT_EQ(filter.trace().count(), 0);
    filter.processSample(1.0F, filter.state(1), 1);
    EXPECT_EQ(filter.trace().count(), 0);
    filter.processSample(1.0F, filter.state(0), 0);
    EXPECT_EQ(filter.trace().count(), 1);
}

// Every control of every type goes up and down, a step with each buffer, for ten seconds of noise.
TEST(BiquadFilter, StaysBoundedWhileItsControlsAreSwept)
{
    constexpr UINT FRAMES = 64;
    auto in = test::noise(2 * FRAMES * 64);
    std::vector<float> out(2 * FRAMES);
    for (const int nRate : {22050, 48000})
        for (const auto& pFilter : allFilters()) {
            const auto pType = dynamic_cast<CMultiFilter*>(pFilter.get());
            const UINT uTypes = pType ? static_cast<UINT>(pFilter->m_ControlList.back()->m_Enum.size()) : 1;
            const UINT uSliders = pFilter->countControls(FILTER_CONTROL_CONTINUOUSLY_VARIABLE);
            for (UINT u = 0; u < uTypes * uSliders; ++u) {
                const UINT uControl = u % uSliders;
                SCOPED_TRACE(testing::Message() << pFilter->m_sName << ", type " << u / uSliders << ", "
                                                << pFilter->m_ControlList[uControl]->m_sName);
                pFilter->resetToDefaults();
                if (pType)
                    pFilter->setControlText(pFilter->m_ControlList.back()->uControlId,
                                            std::to_string(u / uSliders), false);
                pFilter->m_nSampleRate = nRate;
                pFilter->prepareForPlay();
                float fHighest = 0.0F;
                for (int nBlock = 0; nBlock * int(FRAMES) < 10 * nRate; ++nBlock) {
                    pFilter->setControlPosition(600 + uControl, std::abs(nBlock % 512 - 256));
                    const test::CAllocationGuard allocations;
                    const test::CLockGuardCounter locks;
                    ASSERT_TRUE(pFilter->processInterleaved(in.data() + nBlock % 64 * 2 * FRAMES, out.data(),
                                                            2, 2 * FRAMES, 0));
                    ASSERT_EQ(allocations.count() + locks.count(), 0U);
                    for (const float fSample : out)
                        fHighest = std::isfinite(fSample) ? std::max(fHighest, std::abs(fSample)) : 1e9F;
                }
                EXPECT_LT(fHighest, 100.0F);
                EXPECT_GT(fHighest, 0.01F);
            }
        }
}

std::array<float, 4> impulseResponse(CMultiFilter& filter)
{
    std::array<float, 4> samples = {1.0F};
    std::fill_n(filter.state(0), 4, 0.0F);
    filter.processInterleaved(samples.data(), samples.data(), 1, 4, 0);
    return samples;
}

// While one thread moves the type, the other never hears a mixture of two.
TEST(BiquadFilter, TakesUpWholeSetsOfCoefficients)
{
    CMultiFilter filter;
    filter.setParameter(MULTIFILTER_FC, 5000.0F);
    filter.setParameter(MULTIFILTER_BOOST_CUT, 12.0F);
    filter.prepareForPlay();
    const auto low = impulseResponse(filter);
    filter.setType(FILTER_GRAPHIC_B);
    const auto band = impulseResponse(filter);
    ASSERT_NE(low, band);
    std::atomic<bool> bStop = false;
    std::thread mover([&] {
        for (UINT u = 0; !bStop; ++u)
            filter.setType(u % 2 ? FILTER_LOW_SHELF : FILTER_GRAPHIC_B);
    });
    for (int n = 0; n < 20000; ++n) {
        const auto response = impulseResponse(filter);
        EXPECT_TRUE(response == low || response == band);
    }
    bStop = true;
    mover.join();
}

} // namespace
} // namespace velmora

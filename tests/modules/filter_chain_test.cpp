#include "dsp/modules/filter_chain.h"
#include "dsp/modules/hf_exciter.h"
#include "dsp/modules/hf_exciter_2.h"
#include "dsp/modules/hf_exciter_xm1.h"
#include "dsp/modules/lwr_bpf.h"
#include "dsp/modules/module_registry.h"
#include "dsp/modules/multi_filter.h"
#include "dsp/modules/stereo_delay.h"
#include "dsp/modules/ten_band_graphic_eq.h"
#include "host/control_walk.h"
#include "noise_samples.h"
#include "support/allocation_guard.h"
#include "transfer_functions.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <set>

namespace velmora {
namespace {

using namespace test;

TEST(TenBandEQ, HasTheResponseOfItsTwelveSections)
{
    const double frequencies[] = {32, 64, 125, 250, 500, 1000, 2000, 4000, 8000, 16000};
    for (const std::vector<double>& gains :
         {std::vector<double>(12, 0.0), {0.5, -12, 12, 0, 1, -3, 6, 0.99, -6, 12, 9, -7}}) {
        CTenBandGraphicEQ eq;
        for (UINT u = 0; u < 12; ++u)
            ASSERT_TRUE(eq.setControlText(600 + u, std::to_string(gains[u]), false));
        expectResponse(eq, [&](double dRate, double w) {
            CComplex product =
                lowShelf({dRate, 100.0, gains[10]}).at(w) * highShelf({dRate, 10000.0, gains[11]}).at(w);
            for (UINT u = 0; u < 10; ++u)
                product *= graphicB({dRate, frequencies[u], gains[u]}).at(w);
            return product;
        });
    }
    CTenBandGraphicEQ eq;
    eq.prepareForPlay();
    auto in = test::noise(2000);
    const auto before = in;
    std::vector<float> out(in.size());
    ASSERT_TRUE(eq.processInterleaved(in.data(), out.data(), 2, 2000, 0));
    for (UINT u = 0; u < in.size(); ++u) {
        ASSERT_EQ(in[u], before[u] / 4.0F);
        ASSERT_NEAR(out[u], before[u], 2e-4);
    }
    EXPECT_FALSE(eq.processBuffer(in.data(), out.data(), 3, 3, 0));
}

TEST(LinkwitzRileyBPF, IsAHighPassAndThenALowPass)
{
    for (const auto& [low, high] : {std::pair{500.0, 2000.0}, {4000.0, 300.0}})
        for (const bool bReverses : {false, true}) {
            CLWR_BPF filter;
            filter.setControlText(600, std::to_string(low), false);
            filter.setControlText(601, std::to_string(high), false);
            filter.setReversePhase(bReverses);
            expectResponse(filter, [&](double dRate, double w) {
                return (bReverses ? -1.0 : 1.0) * linkwitzRileyHighPass({dRate, low}).at(w) *
                       linkwitzRileyLowPass({dRate, high}).at(w);
            });
            filter.resetToDefaults();
            EXPECT_EQ(filter.childAt(0).parameter(MULTIFILTER_FC), 500.0F);
            EXPECT_EQ(filter.childAt(1).parameter(MULTIFILTER_FC), 2000.0F);
            EXPECT_EQ(filter.childAt(0).choice(0), UINT{FILTER_LINKWITZ_RILEY_HPF});
        }
}

TEST(Exciters, HaveTheResponsesOfTheirPaths)
{
    const auto pair = [](double dRate, double w) {
        return std::pow(secondAllPass({dRate, 1000.0, 0.0, 5000.0}).at(w), 2);
    };
    const auto shelves = [](double dRate, double w) {
        return lowShelf({dRate, 100.0, 3.0}).at(w) * highShelf({dRate, 5000.0, 8.0}).at(w);
    };
    const CResponse responses[] = {
        [&](double dRate, double w) { return 0.5 * (pair(dRate, w) + shelves(dRate, w)); },
        [&](double dRate, double w) { return 0.5 * shelves(dRate, w); },
        [&](double dRate, double w) { return 0.5 / 3.0 * (pair(dRate, w) + shelves(dRate, w) + 1.0); }};
    for (const UINT uType : {330U, 331U, 332U}) {
        CHF_Exciter_2 exciter;
        exciter.childAt(2).setParameter(MULTIFILTER_BOOST_CUT, 3.0F);
        exciter.childAt(3).setParameter(MULTIFILTER_BOOST_CUT, 8.0F);
        ASSERT_TRUE(exciter.setExciterType(uType));
        expectResponse(exciter, responses[uType - 330]);
    }
    for (const auto& [uType, dSign] : {std::pair{330U, 1.0}, {331U, 0.0}, {332U, -1.0}}) {
        CHF_Exciter_XM1 exciter;
        ASSERT_TRUE(exciter.setExciterType(uType));
        expectResponse(exciter, [&](double dRate, double w) {
            return 0.5 * 0.50118723 *
                   (dSign * 0.15848932 * secondAllPass({dRate, 560.80078125, 0.0, 234.296875}).at(w) *
                        secondAllPass({dRate, 2164.453125, 0.0, 300.0}).at(w) +
                    lowShelf({dRate, 458.59375, 6.0}).at(w) * highShelf({dRate, 3363.28125, 12.0}).at(w));
        });
    }
    CHF_Exciter exciter;
    exciter.childAt(0).setParameter(STEREODELAY_DELAY, 3.0F);
    exciter.childAt(3).setParameter(STEREODELAY_DELAY, 7.0F);
    exciter.childAt(1).setParameter(MULTIFILTER_FC, 900.0F);
    expectResponse(exciter, [](double dRate, double w) {
        return 0.5 * highShelf({dRate, 5000.0, 6.0}).at(w) *
               (firstHighPass({dRate, 3000.0}).at(w) * std::polar(1.0, -3.0 * w) +
                firstLowPass({dRate, 900.0}).at(w) * std::polar(1.0, -7.0 * w));
    });
}

// Child by child with the shaper's equation in between; loud, so that it bends.
TEST(Exciters, ShapeTheTurnedSoundInTypeD)
{
    CHF_Exciter_2 exciter, parts;
    exciter.setExciterType(EXCITER_TYPE_D);
    exciter.setBufferSize(64); // goes through its buffers in pieces
    exciter.prepareForPlay();
    parts.prepareForPlay();
    auto in = test::noise(3000);
    auto expected = in;
    std::vector<float> out(in.size());
    for (float& fSample : expected)
        fSample *= 0.5F;
    for (const UINT uChild : {0U, 1U, 2U, 3U}) {
        if (uChild == 2)
            for (float& fSample : expected) {
                const double u = std::clamp(2.0 * fSample, -3.0, 3.0);
                fSample = static_cast<float>(u * (27.0 + u * u) / (27.0 + 9.0 * u * u) / 2.0);
            }
        parts.childAt(uChild).processInterleaved(expected.data(), expected.data(), 2, 3000, 0);
    }
    exciter.processInterleaved(in.data(), out.data(), 2, 3000, 0);
    for (UINT u = 0; u < out.size(); ++u)
        ASSERT_NEAR(out[u], expected[u], 1e-6) << u;
}

TEST(Exciters, KeepTheDifferencesOfTheirStoredSettings)
{
    CHF_Exciter_XM1 exciter;
    const auto values = [&] {
        std::vector<float> list;
        for (const auto& [uChild, uParameter] : {std::pair{0U, MULTIFILTER_FC},
                                                 {0U, MULTIFILTER_VOLUME},
                                                 {1U, MULTIFILTER_Q},
                                                 {1U, MULTIFILTER_VOLUME},
                                                 {2U, MULTIFILTER_Q},
                                                 {3U, MULTIFILTER_BOOST_CUT}})
            list.push_back(exciter.childAt(uChild).parameter(uParameter));
        list.push_back(exciter.parameter(0));
        return list;
    };
    EXPECT_EQ(values(), (std::vector{560.80078125F, 1.0F, 300.0F, 0.15848932F, 1.0F, 12.0F, 0.50118723F}));
    exciter.resetToDefaults();
    EXPECT_EQ(values(), (std::vector{560.800781F, 1.0F, 300.0F, 0.25F, 1.0F, 12.0F, 0.794328F}));
    for (const char* pWrong : {"", "1,2,3", "1,2,3,4,5,6,7,8,9,10,11,x", "1,2,3,4,5,6,7,8,9,10,11,12,13"})
        EXPECT_FALSE(exciter.setValues(pWrong) || exciter.loadPreset(pWrong));
    EXPECT_EQ(values()[3], 0.25F);
    EXPECT_TRUE(exciter.loadPreset(exciter.presetNames().front()));
    EXPECT_EQ(values(), (std::vector{561.0F, 1.0F, 300.0F, 0.15848932F, 1.0F, 12.0F, 0.50118723F}));
}

TEST(ModuleRegistry, OffersTheModulesInOrderAndByTheirBeginnings)
{
    CModuleList modules;
    addBuiltInModules(modules);
    std::vector<std::string> names;
    for (int n = 0; n < modules.count(); ++n)
        names.push_back(modules.at(n)->m_sName);
    EXPECT_EQ(names, (std::vector<std::string>{"MultiFilter", "StereoDelay", "HP/LP Filter", "AllpassFilter",
                                               "SmoothingFilter", "Linkwitz-Riley Filter",
                                               "Ten Band EQ + shelving", "Linkwitz-Riley BPF", "HF Exciter",
                                               "HF Exciter 2", "HF Exciter XM1", "Volume"}));
    for (const auto& [pBeginning, nIndex] : {std::pair{"ten", 6},
                                             {"HF Exciter", 8},
                                             {"hf exciter x", 10},
                                             {"Linkwitz-Riley B", 7},
                                             {"S", -1},
                                             {"", -1},
                                             {"Reverb", -1}})
        EXPECT_EQ(chooseModule(modules, pBeginning).m_nIndex, nIndex) << pBeginning;
    EXPECT_EQ(chooseModule(modules, "s").m_sReason,
              "\"s\" is the beginning of more than one built-in module: \"StereoDelay\", "
              "\"SmoothingFilter\". Give more of the name.");
}

TEST(ModuleRegistry, ItsControlsAreNumberedWithoutAGapAndMove)
{
    CModuleList modules;
    addBuiltInModules(modules);
    for (int n = 0; n < modules.count(); ++n) {
        CDSPFilter& filter = *modules.at(n);
        SCOPED_TRACE(filter.m_sName);
        filter.createControls(); // a second time, as when it is selected
        const auto controls = controlsOf(filter);
        ASSERT_FALSE(controls.empty());
        std::set<UINT> types;
        for (UINT u = 0; u < controls.size(); ++u) {
            ASSERT_EQ(controls[u]->uControlId, 600 + u);
            ASSERT_EQ(filter.getControlById(600 + u), controls[u]);
            types.insert(controls[u]->uControlType);
            for (const int nPos : {0, 255, 128}) {
                ASSERT_TRUE(filter.setControlPosition(600 + u, nPos));
                ASSERT_EQ(controls[u]->m_nPos, nPos);
            }
        }
        UINT uFound = 0;
        for (const UINT uType : types) {
            UINT uCount = 0;
            for (UINT uPos = 600; filter.findNextControl(uType, &uPos);)
                ++uCount;
            EXPECT_EQ(filter.countControls(uType), uCount);
            uFound += uCount;
        }
        EXPECT_EQ(uFound, controls.size());
        const auto uEnd = 600 + static_cast<UINT>(controls.size());
        EXPECT_FALSE(filter.setControlPosition(uEnd, 0));
        EXPECT_FALSE(filter.setControlText(uEnd, "1", false));
        EXPECT_FALSE(filter.controlChanged(CDSPFilter::NO_CONTROL));
    }
    std::vector<std::string> labels;
    for (const CDSPFilterControl* pControl : controlsOf(*modules.at(10)))
        labels.push_back(pControl->m_sName);
    EXPECT_EQ(labels, (std::vector<std::string>{"APF1 fc", "APF1 BW", "APF2 fc", "APF2 BW", "Process",
                                                "Lo fc", "Hi fc", "Out Level", "Exciter Type"}));
}

// Every control sweeps over its range, each at its own pace, while ten seconds of noise pass.
TEST(ModuleRegistry, StaysFiniteAndAllocatesNothingWhileControlsSweep)
{
    constexpr UINT BLOCK = 512;
    CModuleList modules;
    addBuiltInModules(modules);
    const auto samples = test::noise(BLOCK * 2);
    for (int n = 0; n < modules.count(); ++n) {
        CDSPFilter& filter = *modules.at(n);
        filter.m_nSampleRate = 48000;
        filter.setBufferSize(BLOCK);
        filter.prepareForPlay();
        const auto controls = controlsOf(filter);
        std::vector<float> out(samples.size());
        float fPeak = 0.0F;
        for (UINT uBlock = 0; uBlock < 10 * 48000 / BLOCK; ++uBlock) {
            for (UINT u = 0; u < controls.size(); ++u) {
                const int nEdge = controls[u]->m_sName == "Feedback" ? 1 : 0; // at 1 it never ends growing
                const auto nPos = static_cast<int>((uBlock * (2 * u + 3)) % 513);
                filter.setControlPosition(controls[u]->uControlId,
                                          std::clamp(std::min(nPos, 512 - nPos), nEdge, 256 - nEdge));
            }
            auto in = samples;
            const test::CAllocationGuard guard;
            ASSERT_TRUE(filter.processInterleaved(in.data(), out.data(), 2, BLOCK * 2, 0));
            ASSERT_EQ(guard.count(), 0UL) << filter.m_sName;
            for (const float fSample : out) {
                ASSERT_TRUE(std::isfinite(fSample)) << filter.m_sName << ", block " << uBlock;
                fPeak = std::max(fPeak, std::abs(fSample));
            }
        }
        EXPECT_LT(fPeak, 1000.0F) << filter.m_sName; // 60 dB
        EXPECT_GT(fPeak, 0.01F) << filter.m_sName;
        RecordProperty("peak of " + std::to_string(n), std::to_string(fPeak));
    }
}

} // namespace
} // namespace velmora

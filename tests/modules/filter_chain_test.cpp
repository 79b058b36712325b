#include "analyzer/response_measurement.h"
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

#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <gtest/gtest.h>
#include <numbers>
#include <set>

namespace velmora {
namespace {

using std::numbers::pi;
using CComplex = std::complex<double>;
using CResponse = std::function<CComplex(double dHz, double dRate)>;

CComplex biquad(double dHz, double dRate, double a0, double a1, double a2, double b1, double b2)
{
    const CComplex z = std::polar(1.0, -2.0 * pi * dHz / dRate);
    return (a0 + z * (a1 + z * a2)) / (1.0 + z * (b1 + z * b2));
}

CComplex band(double dHz, double dRate, double fc, double gain)
{
    const double k = std::tan(pi * fc / dRate), q = 1.414, v = std::pow(10.0, gain / 20.0);
    const bool bBoosts = gain >= 1.0;
    const double n = bBoosts ? v : 1.0, d = bBoosts ? 1.0 : 1.0 / v, e = 1.0 + d * k / q + k * k;
    const double b = 2.0 * (k * k - 1.0) / e;
    return biquad(dHz, dRate, (1.0 + n * k / q + k * k) / e, b, (1.0 - n * k / q + k * k) / e, b,
                  (1.0 - d * k / q + k * k) / e);
}

CComplex shelf(double dHz, double dRate, double fc, double gain, bool bHigh)
{
    const double v = std::pow(10.0, gain / 20.0), k = bHigh ? (1.0 + v) / 4.0 : 4.0 / (1.0 + v);
    const double t = k * std::tan(pi * fc / dRate), g = (1.0 - t) / (1.0 + t);
    const double d = (bHigh ? 1.0 + g : 1.0 - g) / 2.0;
    return 1.0 + (v - 1.0) * biquad(dHz, dRate, d, bHigh ? -d : d, 0.0, -g, 0.0);
}

CComplex allPass(double dHz, double dRate, double fc, double width)
{
    const double t = std::tan(pi * width / dRate), alpha = (t - 1.0) / (t + 1.0);
    const double b = -std::cos(2.0 * pi * fc / dRate) * (1.0 - alpha);
    return biquad(dHz, dRate, -alpha, b, 1.0, b, -alpha);
}

CComplex crossover(double dHz, double dRate, double fc, bool bHigh)
{
    const double w = pi * fc, k = w / std::tan(pi * fc / dRate), d = (k + w) * (k + w);
    const double a = (bHigh ? k * k : w * w) / d;
    return biquad(dHz, dRate, a, bHigh ? -2.0 * a : 2.0 * a, a, 2.0 * (w * w - k * k) / d,
                  (k - w) * (k - w) / d);
}

CComplex firstOrder(double dHz, double dRate, double fc, bool bHigh)
{
    const double w = 2.0 * pi * fc / dRate, g = std::cos(w) / (1.0 + std::sin(w));
    const double a = (bHigh ? 1.0 + g : 1.0 - g) / 2.0;
    return biquad(dHz, dRate, a, bHigh ? -a : a, 0.0, -g, 0.0);
}

// 0.01 dB of the magnitude, and as much of the phase, from 20 Hz to 20 kHz.
void expectResponse(CDSPFilter& filter, const CResponse& expected)
{
    for (const double dRate : {44100.0, 48000.0, 96000.0}) {
        CResponseMeasurement measurement;
        ASSERT_TRUE(measurement.measureImpulseLong(&filter, false, 1 << 17, dRate));
        for (const int nChannel : {0, 1}) {
            const auto samples = measurement.channel(nChannel);
            const auto magnitude = frequencyResponse(samples, dRate);
            const auto phase = phaseResponse(samples);
            const double dBin = dRate / 2.0 / static_cast<double>(phase.size());
            for (std::size_t u = 64; u * dBin <= 20000.0; u += 1 + u / 64) {
                const auto target = 32767.0 / 32768.0 * expected(u * dBin, dRate);
                const auto measured =
                    std::polar(std::pow(10.0, magnitude.m_dB[u] / 20.0), phase[u] * pi / 180.0);
                ASSERT_LT(std::abs(measured - target), 0.00115 * std::abs(target) + 1e-7)
                    << filter.m_sName << ", " << u * dBin << " Hz at " << dRate;
            }
        }
    }
}

TEST(TenBandEQ, HasTheResponseOfItsTwelveSections)
{
    const double frequencies[] = {32, 64, 125, 250, 500, 1000, 2000, 4000, 8000, 16000};
    for (const std::vector<double>& gains :
         {std::vector<double>(12, 0.0), {0.5, -12, 12, 0, 1, -3, 6, 0.99, -6, 12, 9, -7}}) {
        CTenBandGraphicEQ eq;
        for (UINT u = 0; u < 12; ++u)
            ASSERT_TRUE(eq.setControlText(600 + u, std::to_string(gains[u]), false));
        expectResponse(eq, [&](double dHz, double dRate) {
            CComplex product =
                shelf(dHz, dRate, 100.0, gains[10], false) * shelf(dHz, dRate, 10000.0, gains[11], true);
            for (UINT u = 0; u < 10; ++u)
                product *= band(dHz, dRate, frequencies[u], gains[u]);
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
            expectResponse(filter, [&](double dHz, double dRate) {
                return (bReverses ? -1.0 : 1.0) * crossover(dHz, dRate, low, true) *
                       crossover(dHz, dRate, high, false);
            });
            filter.resetToDefaults();
            EXPECT_EQ(filter.childAt(0).parameter(MULTIFILTER_FC), 500.0F);
            EXPECT_EQ(filter.childAt(1).parameter(MULTIFILTER_FC), 2000.0F);
            EXPECT_EQ(filter.childAt(0).choice(0), UINT{FILTER_LINKWITZ_RILEY_HPF});
        }
}

TEST(Exciters, HaveTheResponsesOfTheirPaths)
{
    const auto pair = [](double dHz, double dRate) {
        return allPass(dHz, dRate, 1000, 5000) * allPass(dHz, dRate, 1000, 5000);
    };
    const auto shelves = [](double dHz, double dRate) {
        return shelf(dHz, dRate, 100, 3, false) * shelf(dHz, dRate, 5000, 8, true);
    };
    const CResponse responses[] = {
        [&](double dHz, double dRate) { return 0.5 * (pair(dHz, dRate) + shelves(dHz, dRate)); },
        [&](double dHz, double dRate) { return 0.5 * shelves(dHz, dRate); },
        [&](double dHz, double dRate) { return 0.5 / 3.0 * (pair(dHz, dRate) + shelves(dHz, dRate) + 1.0); }};
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
        expectResponse(exciter, [&](double dHz, double dRate) {
            return 0.5 * 0.50118723 *
                   (dSign * 0.15848932 * allPass(dHz, dRate, 560.80078125, 234.296875) *
                        allPass(dHz, dRate, 2164.453125, 300) +
                    shelf(dHz, dRate, 458.59375, 6, false) * shelf(dHz, dRate, 3363.28125, 12, true));
        });
    }
    CHF_Exciter exciter;
    exciter.childAt(0).setParameter(STEREODELAY_DELAY, 3.0F);
    exciter.childAt(3).setParameter(STEREODELAY_DELAY, 7.0F);
    exciter.childAt(1).setParameter(MULTIFILTER_FC, 900.0F);
    expectResponse(exciter, [&](double dHz, double dRate) {
        const auto delay = [&](double d) { return std::polar(1.0, -2.0 * pi * d * dHz / dRate); };
        return 0.5 * shelf(dHz, dRate, 5000, 6, true) *
               (firstOrder(dHz, dRate, 3000, true) * delay(3) +
                firstOrder(dHz, dRate, 900, false) * delay(7));
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
        EXPECT_FALSE(exciter.loadPreset(pWrong));
    EXPECT_EQ(values()[3], 0.25F);
    EXPECT_TRUE(exciter.loadPreset(CHF_Exciter_XM1::PRESET));
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
                const bool bFeedback = controls[u]->m_sName == "Feedback"; // at 1 it never ends growing
                const auto nPos = static_cast<int>((uBlock * (2 * u + 3)) % 513);
                filter.setControlPosition(controls[u]->uControlId,
                                          bFeedback ? 128 + nPos % 64 : std::min(nPos, 512 - nPos));
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

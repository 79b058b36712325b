#include "dsp/modules/all_pass_filter.h"
#include "dsp/modules/biquad_designs.h"
#include "dsp/modules/hp_lp_filter.h"
#include "dsp/modules/linkwitz_riley_filter.h"
#include "dsp/modules/volume_ctrl.h"
#include "transfer_functions.h"

#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace velmora {
namespace {

using namespace test;

struct CType
{
    UINT m_uCode;
    std::function<std::unique_ptr<CMultiFilter>()> m_make;
    std::function<CTransferFunction(const CSetting&)> m_transferFunction;
};

template <class Filter>
std::unique_ptr<CMultiFilter> make()
{
    return std::make_unique<Filter>();
}

const CType TYPES[] = {
    {300, make<CMultiFilter>, lowShelf},
    {301, make<CMultiFilter>, highShelf},
    {302, make<CMultiFilter>, graphicB},
    {303, make<CMultiFilter>, graphicA},
    {304, make<CHP_LPFilter>, firstHighPass},
    {305, make<CHP_LPFilter>, firstLowPass},
    {306, make<CHP_LPFilter>, [](const CSetting& s) { return secondOrder(s, -1); }},
    {307, make<CHP_LPFilter>, [](const CSetting& s) { return secondOrder(s, 1); }},
    {308, make<CAllPassFilter>, firstAllPass},
    {309, make<CAllPassFilter>, secondAllPass},
    {310, make<CLinkwitzRileyFilter>, linkwitzRileyLowPass},
    {311, make<CLinkwitzRileyFilter>, linkwitzRileyHighPass},
};

TEST(FilterResponse, IsThatOfTheDescribedCoefficients)
{
    for (const CType& type : TYPES) {
        const bool bAllPass = type.m_uCode == 308 || type.m_uCode == 309;
        for (const auto& [fc, gain, q] :
             {std::tuple{1000.0, 0.5, 0.9}, std::tuple{3000.0, 12.0, 5.0}, std::tuple{400.0, -9.0, 1.414},
              std::tuple{9000.0, 1.0, 0.8}, std::tuple{60.0, 0.0, 2.0}}) {
            SCOPED_TRACE(testing::Message() << type.m_uCode << ", fc " << fc);
            const double dQ = bAllPass ? 1000.0 * q : q;
            const auto pFilter = type.m_make();
            ASSERT_TRUE(pFilter->setType(type.m_uCode));
            pFilter->setParameter(MULTIFILTER_FC, static_cast<float>(fc));
            pFilter->setParameter(MULTIFILTER_BOOST_CUT, static_cast<float>(gain));
            pFilter->setParameter(MULTIFILTER_Q, static_cast<float>(dQ));
            expectResponse(*pFilter, [&](double dRate, double dRadians) {
                return type.m_transferFunction({dRate, fc, gain, dQ}).at(dRadians);
            });
            EXPECT_EQ(pFilter->parameter(MULTIFILTER_Q), static_cast<float>(dQ));
        }
    }
}

TEST(FilterResponse, OfTheVolumeIsALowShelfTimesTheVolume)
{
    for (const double dGain : {-12.0, 0.0, 6.0}) {
        CVolumeCtrl volume;
        volume.setParameter(VOLUME_OUTPUT, 0.25F);
        volume.setParameter(VOLUME_SHELF_FC, 300.0F);
        volume.setParameter(VOLUME_BOOST_CUT, static_cast<float>(dGain));
        expectResponse(volume, [&](double dRate, double dRadians) {
            return 0.25 * lowShelf({dRate, 300.0, dGain}).at(dRadians);
        });
    }
}

// The two halves of a crossover, one of them reversed, add up to a first-order all-pass.
TEST(FilterResponse, OfLinkwitzRileyHalvesIsAnAllPassWithOneReversed)
{
    CLinkwitzRileyFilter low;
    CLinkwitzRileyFilter high;
    high.setType(FILTER_LINKWITZ_RILEY_HPF);
    high.setReversePhase(true);
    std::vector<float> in(1 << 14), out(in.size());
    in[0] = 1.0F;
    for (CLinkwitzRileyFilter* pFilter : {&low, &high}) {
        pFilter->prepareForPlay();
        pFilter->processInterleaved(in.data(), out.data(), 1, static_cast<UINT>(out.size()),
                                    pFilter == &high);
    }
    for (const double dB : frequencyResponse(std::vector<double>(out.begin(), out.end()), 44100.0).m_dB)
        ASSERT_NEAR(dB, 0.0, 0.001);
    EXPECT_EQ(high.processSample(1.0F, high.state(1), 1),
              -high.CMultiFilter::processSample(1.0F, std::array<float, 4>{}.data(), 1));
}

} // namespace
} // namespace velmora

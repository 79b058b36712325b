#include "panel/led_scale.h"
#include "panel/panel_laws.h"
#include "panel/panel_meters.h"
#include "panel_test_support.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(PanelLaws, FadersRunFromTheTop)
{
    for (const auto& [nPos, dGain] : {std::pair{0, 12.0}, {32, 3.0}, {128, -24.0}, {256, -60.0}}) {
        EXPECT_EQ(faderDecibels(nPos), dGain);
        EXPECT_EQ(faderPosition(dGain), nPos);
    }
    EXPECT_EQ(faderPosition(99.0), 0);
    EXPECT_EQ(faderPosition(-99.0), 256);
    EXPECT_EQ(faderDecibels(-5), 12.0);
}

TEST(PanelLaws, RoutingPairsHaveACodeAndAChannelMode)
{
    // By routing code: channels and channel mode.
    const std::pair<ERoutingChannels, unsigned> cases[] = {{ROUTING_2_TO_2, 2}, {ROUTING_1_TO_2, 1},
                                                           {ROUTING_1_TO_1, 0}, {ROUTING_2_TO_2, 5},
                                                           {ROUTING_1_TO_2, 4}, {ROUTING_1_TO_1, 3}};
    for (unsigned uCode = 0; uCode < 6; ++uCode) {
        const CRouting routing = {uCode < 3 ? ROUTING_INSERT : ROUTING_AUX_FX, cases[uCode].first};
        EXPECT_EQ(routingCode(routing), uCode);
        EXPECT_EQ(routingOfCode(uCode), routing);
        EXPECT_EQ(channelModeOf(routing), cases[uCode].second) << uCode;
    }
    EXPECT_FALSE(routingOfCode(6));
}

TEST(PanelLaws, LEDsShareTheHeightAndOnlyChangedOnesAreDrawn)
{
    const CLEDScale scale;
    EXPECT_EQ(scale.ledHeight(164), 6); // (164 - 44) / 20
    EXPECT_EQ(scale.ledHeight(183), 6);
    EXPECT_EQ(scale.ledHeight(10), 0);
    EXPECT_EQ(scale.ledTop(19, 164, false), scale.ledTop(0, 164, true));
    EXPECT_LE(scale.ledTop(0, 164, false) + scale.ledHeight(164), 164);

    const auto changed = [&](float fOld, float fNew) {
        const auto [nFirst, nEnd] = scale.changedLEDs(fOld, fNew);
        return std::pair(nFirst, nEnd);
    };
    EXPECT_EQ(changed(0.0F, 0.5F), std::pair(0, 10));
    EXPECT_EQ(changed(0.99F, 0.42F), std::pair(8, 19));
    EXPECT_TRUE(scale.changedLEDs(0.5F, 0.549F).isEmpty());
    EXPECT_EQ(changed(7.0F, 1.0F), std::pair(20, 20));
    EXPECT_EQ(changed(-3.0F, 2.0F), std::pair(0, 20));
    EXPECT_EQ(ledColours(5, 3, 20), (CLEDColours{0x00008B, 0xADD8E6}));
    for (const UINT uScheme : {0U, 7U}) {
        EXPECT_EQ(ledColours(uScheme, 0, 20), (CLEDColours{0xD3D3D3, 0x006400}));
        EXPECT_EQ(ledColours(uScheme, 19, 20), (CLEDColours{0xD3D3D3, 0x8B0000}));
    }
}

TEST(PanelMeters, FixedOnesAndThoseOfThePlugInAreLimited)
{
    constexpr UINT METER = FILTER_CONTROL_LED_METER;
    test::CPanelPlugIn plugIn({{50, METER, floatData, 0, 1, 0}, // raw
                               {52, METER, UINTData, 0, 1, 0},  // root mean square, shown without its root
                               {51, FILTER_CONTROL_CONTINUOUSLY_VARIABLE, floatData, 0, 1, 1}});
    CUserDSPFilter filter;
    filter.attachPlugIn(&plugIn);
    filter.createControls();
    const float fixed[METER_COUNT] = {0.1F, 0.2F, 1.3F, -0.4F, 0.5F, 0.6F};
    CPanelMeters meters([&](EMeter eMeter) { return fixed[eMeter]; }, 40.0F);
    meters.setFilter(&filter);
    plugIn.m_variables[0].m_fValue = 1.5F;
    plugIn.m_variables[1].m_fValue = 0.5F;
    EXPECT_EQ(meters.tick(), (CPanelMeters::CLevels{0.1F, 0.2F, 1.0F, 0.0F, 1.0F, 0.0F, 0.25F}));
    plugIn.m_variables[1].m_fValue = 0.0F; // releases in 500 ms of the timer's time: 20 ticks to 36.7 %
    for (int i = 0; i < 20; ++i)
        meters.tick();
    EXPECT_NEAR(meters.levels()[6], 0.25F * 0.367F, 0.001F);
    meters.setFilter(nullptr);
    EXPECT_EQ(meters.tick(), (CPanelMeters::CLevels{0.1F, 0.2F, 1.0F, 0.0F}));
}

} // namespace
} // namespace velmora

#include "dsp/modules/oscillator.h"
#include "dsp/modules/oscillator_law.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace velmora {
namespace {

UINT idOf(EOscillatorParameter eParameter)
{
    return COscillator::FIRST_CONTROL_ID + eParameter;
}

void expectControls(COscillator& oscillator, const std::vector<CModuleRange>& ranges)
{
    ASSERT_EQ(oscillator.m_ControlList.size(), ranges.size() + 2);
    for (UINT u = 0; u < ranges.size(); ++u) {
        SCOPED_TRACE(u);
        const CDSPFilterControl& control = *oscillator.m_ControlList[u];
        EXPECT_EQ(control.uControlId, 600 + u);
        EXPECT_EQ(control.m_pFilter, &oscillator);
        EXPECT_EQ(control.cookedValue(), ranges[u].m_fDefault);
        EXPECT_EQ(control.fUserDisplayDataLoLimit, ranges[u].m_fLow);
        EXPECT_EQ(control.fUserDisplayDataHiLimit, ranges[u].m_fHigh);
        EXPECT_EQ(oscillator.parameter(EOscillatorParameter(u)), ranges[u].m_fDefault);
    }
    EXPECT_EQ(oscillator.kind(), 703U);
    EXPECT_EQ(oscillator.oscillatorClass(), OSCILLATOR_STANDARD);
}

TEST(OscillatorControls, HaveTwoSetsOfDefaults)
{
    const std::vector<CModuleRange> atConstruction = {
        {0.5F, 0.0F, 1.0F},    {1000.0F, 20.0F, 22050.0F}, {2.0F, 0.1F, 10.0F}, {50.0F, 1.0F, 99.0F},
        {-6.0F, -60.0F, 0.0F}, {20.0F, 2.0F, 60.0F},       {1.0F, 0.0F, 1.0F}};
    auto afterReset = atConstruction;
    afterReset[OSCILLATOR_FREQUENCY] = {1000.0F, 2.0F, 2000.0F};
    afterReset[OSCILLATOR_AMPLITUDE] = {-6.0F, -96.0F, 0.0F};
    afterReset[OSCILLATOR_SWEEP_PERIOD] = {10.0F, 0.0F, 1.0F};

    COscillator oscillator;
    EXPECT_EQ(oscillator.m_sName, "Oscillator");
    EXPECT_EQ(COscillator::FILTER_ID, 1009U);
    expectControls(oscillator, atConstruction);
    oscillator.setKind(715);
    oscillator.setClass(712);
    for (UINT u = 0; u < OSCILLATOR_PARAMETER_COUNT; ++u)
        oscillator.setParameter(EOscillatorParameter(u), 1.5F);
    oscillator.reset();
    expectControls(oscillator, afterReset);
    EXPECT_EQ(oscillator.frequencyLow(), 2.0F);
    EXPECT_EQ(oscillator.frequencyHigh(), 2000.0F);
    oscillator.createControls();
    expectControls(oscillator, afterReset);
}

TEST(OscillatorControls, MoveTheSettingsAndFollowThem)
{
    COscillator oscillator;
    EXPECT_TRUE(oscillator.setControlPosition(idOf(OSCILLATOR_FREQUENCY), 256));
    EXPECT_NEAR(oscillator.getFrequency(), 22050.0F, 5.0F);
    EXPECT_TRUE(oscillator.setControlPosition(idOf(OSCILLATOR_FREQUENCY), 128));
    EXPECT_NEAR(oscillator.getFrequency(), std::sqrt(20.0F * 22050.0F), 0.5F);
    EXPECT_TRUE(oscillator.setControlText(idOf(OSCILLATOR_FREQUENCY), "440 Hz", false));
    EXPECT_EQ(oscillator.getFrequency(), 440.0F);
    EXPECT_TRUE(oscillator.setControlText(idOf(OSCILLATOR_AMPLITUDE), "-1000", true));
    EXPECT_EQ(oscillator.getAmplitude(), -60.0F);
    EXPECT_FALSE(oscillator.setControlPosition(12, 0));
    EXPECT_FALSE(oscillator.setControlText(CDSPFilter::NO_CONTROL, "1", false));

    oscillator.setFrequencyRange(100.0F, 1600.0F);
    oscillator.setFrequency(400.0F);
    EXPECT_EQ(oscillator.getControlById(601)->m_sValue, "400.00");
    EXPECT_NEAR(oscillator.getControlById(601)->m_nPos, 128, 1);
    oscillator.setFrequency(30000.0F); // taken whatever the range
    EXPECT_EQ(oscillator.getFrequency(), 30000.0F);
    oscillator.setFrequency(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(oscillator.getFrequency(), 30000.0F);
}

TEST(OscillatorControls, ChooseKindAndClassByCodeOrPosition)
{
    COscillator oscillator;
    const UINT codes[] = {703, 713, 705, 704, 715, 707, 714}; // in the order of the buttons
    CDSPFilterControl& kind = *oscillator.getControlById(COscillator::KIND_CONTROL_ID);
    ASSERT_EQ(kind.m_Enum.size(), std::size(codes));
    for (UINT u = 0; u < std::size(codes); ++u) {
        oscillator.setControlText(COscillator::KIND_CONTROL_ID, std::to_string(u), false);
        EXPECT_EQ(oscillator.kind(), codes[u]);
        oscillator.setKind(codes[0]);
        EXPECT_TRUE(oscillator.setKind(codes[u]));
        EXPECT_EQ(kind.cookedValue(), u);
        EXPECT_FALSE(oscillator.setKind(702));
        EXPECT_EQ(oscillator.kind(), codes[u]);
    }
    EXPECT_TRUE(oscillator.setClass(712));
    EXPECT_EQ(oscillator.getControlById(COscillator::CLASS_CONTROL_ID)->cookedValue(), 1U);
    EXPECT_FALSE(oscillator.setClass(703));
    EXPECT_EQ(oscillator.oscillatorClass(), OSCILLATOR_SWEEP);
    kind.setCookedValue(99.0); // out of the table
    EXPECT_EQ(oscillator.kind(), 703U);
}

TEST(OscillatorLaw, FrequencySliderHasEqualRatios)
{
    struct CCase
    {
        float m_fLow, m_fHigh, m_fPosition, m_fFrequency;
    };
    for (const auto& [fLow, fHigh, fPosition, fFrequency] : {CCase{20, 20480, 0.0F, 20},
                                                             {20, 20480, 0.1F, 40},
                                                             {20, 20480, 1.0F, 20480},
                                                             {0, 2000, 0.25F, 500}}) {
        EXPECT_NEAR(frequencyAtPosition(fLow, fHigh, fPosition), fFrequency, 1e-4F * fFrequency);
        EXPECT_NEAR(positionOfFrequency(fLow, fHigh, fFrequency), fPosition, 1e-5F);
    }
}

} // namespace
} // namespace velmora

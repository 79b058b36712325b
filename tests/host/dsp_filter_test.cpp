#include "host/dsp_filter.h"

#include <gtest/gtest.h>

namespace velmora {

namespace {

void addControl(CDSPFilter& filter, UINT uType, UINT uId)
{
    auto pControl = std::make_unique<CDSPFilterControl>();
    pControl->uControlType = uType;
    pControl->uControlId = uId;
    filter.m_ControlList.push_back(std::move(pControl));
}

TEST(DSPFilter, PassesAudioThrough)
{
    CDSPFilter filter;
    float in[] = {1.0F, -2.0F, 3.0F};
    float out[] = {9.0F, 9.0F, 9.0F};
    EXPECT_TRUE(filter.processBuffer(in, out, 1, 2, 0));
    EXPECT_EQ(out[1], -2.0F);
    EXPECT_EQ(out[2], 9.0F);
    EXPECT_TRUE(filter.processInterleaved(in, out, 2, 3, 0));
    EXPECT_EQ(out[2], 3.0F);
    EXPECT_TRUE(filter.processInterleaved(in, in, 1, 3, 0)); // in place
    EXPECT_EQ(in[0], 1.0F);
    EXPECT_TRUE(filter.processSample(0.5F, out));
    EXPECT_EQ(out[0], 0.5F);
}

TEST(DSPFilter, FindsControls)
{
    CDSPFilter filter;
    filter.m_nFirstControlID = 600;
    addControl(filter, 100, 11);
    addControl(filter, 102, 12);
    addControl(filter, 100, 13);

    EXPECT_EQ(filter.getControlByIndex(602)->uControlId, 13U);
    EXPECT_EQ(filter.getControlByIndex(603), nullptr);
    EXPECT_EQ(filter.getControlByIndex(0), nullptr);
    EXPECT_EQ(filter.getControlById(12)->uControlType, 102U);
    EXPECT_EQ(filter.getControlById(14), nullptr);
    EXPECT_EQ(filter.countControls(100), 2U);

    UINT uPos = 600;
    EXPECT_EQ(filter.findNextControl(100, &uPos)->uControlId, 11U);
    EXPECT_EQ(uPos, 601U);
    EXPECT_EQ(filter.findNextControl(100, &uPos)->uControlId, 13U);
    EXPECT_EQ(uPos, 603U);
    EXPECT_EQ(filter.findNextControl(100, &uPos), nullptr);
    EXPECT_EQ(uPos, 2U);
}

TEST(DSPFilter, SetsStates)
{
    CDSPFilter filter;
    filter.setRunMode(203);
    EXPECT_TRUE(filter.m_bRunning);
    filter.setRunMode(202);
    EXPECT_TRUE(filter.m_bRunning);
    filter.setRunMode(201);
    EXPECT_FALSE(filter.m_bRunning);
    filter.setBitDepth(24);
    EXPECT_EQ(filter.m_nBitDepth, 24);
    EXPECT_EQ(filter.getFirstControlID(), 600U);
    EXPECT_FALSE(filter.usesFile(0));
}

TEST(DSPFilter, TakesTypedText)
{
    CDSPFilter filter;
    addControl(filter, 100, 5);
    float fVariable = 0.0F;
    CDSPFilterControl& control = *filter.m_ControlList.front();
    control.uUserDataType = floatData;
    control.m_pUserCookedFloatData = &fVariable;
    control.fUserDisplayDataHiLimit = 10.0F;
    EXPECT_TRUE(filter.setControlText(5, "2.5", false));
    EXPECT_EQ(fVariable, 2.5F);
    EXPECT_FALSE(filter.setControlText(6, "2.5", false));
}

} // namespace

} // namespace velmora

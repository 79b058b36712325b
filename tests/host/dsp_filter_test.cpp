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
    EXPECT_TRUE(filter.processInterleaved(in, in, 1, 3, 0)); // in place
    EXPECT_EQ(in[0], 1.0F);
    const std::pair<UINT, bool> modes[] = {{203, true}, {202, true}, {201, false}, {202, false}};
    for (const auto& [uMode, bRunning] : modes) {
        filter.setRunMode(uMode);
        EXPECT_EQ(filter.m_bRunning, bRunning) << uMode;
    }
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

} // namespace
} // namespace velmora

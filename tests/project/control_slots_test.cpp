#include "project/control_slots.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(ControlSlots, Table)
{
    struct CCase
    {
        UINT m_uId;
        UINT m_uControlType; // 0: no slot
        std::string_view m_sCaption;
        std::size_t m_uMaxItems;
    };
    const CCase cases[] = {
        {0, 100, "Control 0", 256},
        {39, 100, "Control 39", 256},
        {40, 0, "", 0},
        {41, 102, "Bank 0", 8},
        {44, 102, "Bank 3", 8},
        {45, 102, "SW 1", 2},
        {48, 102, "SW 4", 2},
        {49, 0, "", 0},
        {50, 103, "", 0},
        {59, 103, "", 0},
        {60, 104, "A", 256},
        {63, 104, "D", 256},
        {64, 0, "", 0},
        {69, 0, "", 0},
        {70, 104, "CMBO1", 256},
        {73, 104, "CMBO4", 256},
        {74, 0, "", 0},
        {99, 0, "", 0},
        {100, 100, "", 256},
        {1123, 100, "", 256},
        {1124, 0, "", 0},
        {0x10000, 0, "", 0},
    };
    for (const CCase& test : cases) {
        const CControlSlots* pSlots = findControlSlots(test.m_uId);
        ASSERT_EQ(pSlots != nullptr, test.m_uControlType != 0) << test.m_uId;
        EXPECT_EQ(slotCaption(test.m_uId), test.m_sCaption);
        if (pSlots) {
            EXPECT_EQ(pSlots->m_uControlType, test.m_uControlType);
            EXPECT_EQ(pSlots->m_uMaxItems, test.m_uMaxItems);
        }
    }
}

TEST(ControlSlots, AlphaWheelIdsRunOut)
{
    CUIControlList list;
    CUICtrl item;
    for (item.uControlId = 1123; item.uControlId >= 100; --item.uControlId)
        list.insertAtHead(item);
    EXPECT_EQ(freeAlphaWheelId(list), std::nullopt);
    list.remove(700);
    EXPECT_EQ(freeAlphaWheelId(list), 700U);
    list.remove(100);
    EXPECT_EQ(freeAlphaWheelId(list), 100U);
}

} // namespace
} // namespace velmora

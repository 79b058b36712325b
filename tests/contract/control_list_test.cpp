#include "contract_members.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

namespace {

CUICtrl controlWithId(UINT uId, const char* pName = "")
{
    CUICtrl control;
    control.uControlId = uId;
    control.cControlName = pName;
    return control;
}

std::vector<UINT> idsOf(const CUIControlList& list)
{
    std::vector<UINT> ids;
    for (UINT i = 0; i < list.count(); i++)
        ids.push_back(list.getAt(i)->uControlId);
    return ids;
}

using Ids = std::vector<UINT>;

TEST(ControlList, KeepsTheOrderOfItsOperations)
{
    CUIControlList list;
    EXPECT_EQ(list.getAt(0), nullptr);
    EXPECT_FALSE(list.insertAfter(0, controlWithId(9)));
    EXPECT_FALSE(list.remove(9));

    list.append(controlWithId(2));
    list.insertAtHead(controlWithId(1));
    list.append(controlWithId(4));
    EXPECT_TRUE(list.insertAfter(1, controlWithId(3)));
    EXPECT_TRUE(list.insertAfter(3, controlWithId(5)));
    EXPECT_FALSE(list.insertAfter(5, controlWithId(9)));
    EXPECT_EQ(idsOf(list), (Ids{1, 2, 3, 4, 5}));
    EXPECT_EQ(list.getAt(5), nullptr);
    EXPECT_EQ(list.getAt(0xFFFFFFFFu), nullptr);

    EXPECT_TRUE(list.replace(3, controlWithId(30, "thirty")));
    EXPECT_FALSE(list.replace(3, controlWithId(9)));
    EXPECT_STREQ(list.getAt(2)->cControlName, "thirty");
    for (const UINT uId : {1u, 30u, 5u})
        EXPECT_TRUE(list.remove(uId)) << uId;
    EXPECT_EQ(idsOf(list), (Ids{2, 4}));

    list.clear();
    EXPECT_EQ(list.count(), 0u);
    list.append(controlWithId(7));
    EXPECT_EQ(idsOf(list), (Ids{7}));
}

TEST(ControlList, OwnsCopiesAndMayBeGivenItsOwnElements)
{
    CUIControlList list;
    list.append(controlWithId(1, std::string("Cutoff").c_str()));
    list.append(*list.getAt(0));
    EXPECT_TRUE(list.replace(1, *list.getAt(0)));
    for (const UINT uAt : {0u, 1u})
        EXPECT_STREQ(list.getAt(uAt)->cControlName, "Cutoff");
    EXPECT_NE(list.getAt(0)->cControlName, list.getAt(1)->cControlName);
    ASSERT_TRUE(list.replace(1, controlWithId(1, "first")));
    EXPECT_TRUE(list.remove(1)); // the first of two with one id
    EXPECT_STREQ(list.getAt(0)->cControlName, "Cutoff");
}

// The five text pointers and the buffers that they belong to.
struct CTextMember
{
    const char* CUICtrl::*m_pText;
    char (CUICtrl::*m_pBuffer)[CONTROL_TEXT_SIZE];
};

const CTextMember TEXT_MEMBERS[] = {
    {&CUICtrl::cControlName, &CUICtrl::m_cControlNameText},
    {&CUICtrl::cControlUnits, &CUICtrl::m_cControlUnitsText},
    {&CUICtrl::cVariableName, &CUICtrl::m_cVariableNameText},
    {&CUICtrl::cEnumeratedList, &CUICtrl::m_cEnumeratedListText},
    {&CUICtrl::cMeterVariableName, &CUICtrl::m_cMeterVariableNameText},
};

TEST(ControlCopy, TextsAreCutAndAimedAtTheCopysOwnBuffers)
{
    const std::tuple<std::string, size_t> cases[] = {{"", 0},
                                                     {"dB", 2},
                                                     {std::string(1022, 'a'), 1022},
                                                     {std::string(1023, 'b'), 1023},
                                                     {std::string(1024, 'c'), 1023},
                                                     {std::string(5000, 'd'), 1023}};
    for (const auto& [sText, uKept] : cases) {
        CUICtrl original;
        for (const CTextMember& text : TEXT_MEMBERS)
            original.*text.m_pText = sText.c_str();
        const CUICtrl constructed(original);
        CUICtrl assigned = controlWithId(1, "something longer");
        assigned = original;
        for (const CUICtrl* pCopy : {&constructed, &static_cast<const CUICtrl&>(assigned)})
            for (const CTextMember& text : TEXT_MEMBERS) {
                EXPECT_EQ(pCopy->*text.m_pText, pCopy->*text.m_pBuffer);
                EXPECT_EQ(std::string(pCopy->*text.m_pText), sText.substr(0, uKept));
            }
    }
}

TEST(ControlCopy, NullTextsBecomeEmptyAndSelfAssignmentChangesNothing)
{
    CUICtrl control;
    for (const CTextMember& text : TEXT_MEMBERS)
        control.*text.m_pText = nullptr;
    const CUICtrl copy(control);
    for (const CTextMember& text : TEXT_MEMBERS)
        EXPECT_STREQ(copy.*text.m_pText, "");
    CUICtrl named(controlWithId(5, "Drive"));
    CUICtrl& same = named;
    named = same;
    EXPECT_STREQ(named.cControlName, "Drive");
}

// Fills every member outside the text pointers, so that one left out of the copy shows. The flags hold 1
// to stay valid.
TEST(ControlCopy, TakesEveryValue)
{
    CUICtrl original;
    char* pBytes = reinterpret_cast<char*>(&original);
    std::memset(pBytes, 0x11, offsetof(CUICtrl, cControlName));
    std::memset(pBytes + offsetof(CUICtrl, bOwnerControl), 1,
                sizeof(CUICtrl) - offsetof(CUICtrl, bOwnerControl));
    const CUICtrl constructed(original);
    CUICtrl assigned;
    assigned = original;
    for (const CMemberRow& row : CONTRACT_ROWS) {
        const std::string sName = row.m_pName;
        if (!sName.starts_with("CUICtrl::") || sName.starts_with("CUICtrl::c") || sName.ends_with("Text"))
            continue;
        for (const CUICtrl* pCopy : {&constructed, &static_cast<const CUICtrl&>(assigned)})
            EXPECT_EQ(std::memcmp(reinterpret_cast<const char*>(pCopy) + row.m_uOffset,
                                  pBytes + row.m_uOffset, row.m_uSize),
                      0)
                << sName;
    }
}

} // namespace

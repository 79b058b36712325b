#include "document/control_values.h"
#include "plugin.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

namespace velmora {
namespace {

using testing::ElementsAre;

// One control of each data type, bound to variables of its own.
class CBoundPlugIn : public CPlugIn
{
  public:
    CUICtrl& add(const char* pVariable, UINT uDataType, float fLow = 0.0F, float fHigh = 0.0F)
    {
        CUICtrl control;
        control.uControlId = m_UIControlList.count();
        control.cVariableName = pVariable;
        control.uUserDataType = uDataType;
        control.fUserDisplayDataLoLimit = fLow;
        control.fUserDisplayDataHiLimit = fHigh;
        control.m_pUserCookedIntData = uDataType == intData ? &m_nInt : nullptr;
        control.m_pUserCookedFloatData = uDataType == floatData ? &m_fFloat : nullptr;
        control.m_pUserCookedDoubleData = uDataType == doubleData ? &m_dDouble : nullptr;
        control.m_pUserCookedUINTData = uDataType == UINTData ? &m_uUINT : nullptr;
        m_UIControlList.append(control);
        return *m_UIControlList.getAt(m_UIControlList.count() - 1);
    }
    bool userInterfaceChange(int nControlIndex) override
    {
        m_changed.push_back(nControlIndex);
        return true;
    }

    int m_nInt = 0;
    float m_fFloat = 0.0F;
    double m_dDouble = 0.0;
    UINT m_uUINT = 0;
    std::vector<int> m_changed;
};

TEST(ControlValues, FollowTheirVariablesNameIntoTheNextBuild)
{
    CBoundPlugIn before;
    before.add("gone", doubleData);
    before.add("typeChanges", floatData);
    before.add("rangeShrinks", UINTData);
    before.m_dDouble = 4.0;
    before.m_fFloat = 2.6F;
    before.m_uUINT = 7;

    CBoundPlugIn after;
    after.add("rangeShrinks", UINTData, 0.0F, 3.0F);
    after.add("typeChanges", intData, -10.0F, 10.0F);
    after.add("appears", doubleData, 0.0F, 1.0F);
    after.add("meterWithoutVariable", 4);
    after.m_dDouble = 0.25;

    const CControlChanges changes = CControlValues(before).applyTo(after);
    EXPECT_THAT(changes.m_carried, ElementsAre("rangeShrinks", "typeChanges"));
    EXPECT_THAT(changes.m_new, ElementsAre("appears"));
    EXPECT_THAT(changes.m_dropped, ElementsAre("gone"));
    EXPECT_EQ(after.m_uUINT, 3U) << "limited to the new range";
    EXPECT_EQ(after.m_nInt, 3) << "rounded to the new type";
    EXPECT_EQ(after.m_dDouble, 0.25) << "a new control keeps its initial value";
    EXPECT_THAT(after.m_changed, ElementsAre(0, 1));
}

TEST(ControlValues, LeaveOutWhatNoVariableCanTake)
{
    CBoundPlugIn before;
    before.add("broken", floatData);
    before.add("huge", doubleData);
    before.m_fFloat = std::numeric_limits<float>::quiet_NaN();
    before.m_dDouble = 1e300;

    CBoundPlugIn after;
    after.add("broken", floatData);
    after.add("huge", UINTData);
    after.m_fFloat = 1.0F;
    const CControlChanges changes = CControlValues(before).applyTo(after);
    EXPECT_THAT(changes.m_carried, ElementsAre("huge"));
    EXPECT_EQ(after.m_fFloat, 1.0F);
    EXPECT_EQ(after.m_uUINT, std::numeric_limits<UINT>::max());
}

} // namespace
} // namespace velmora

#include "examples/example_plugin.h"
#include "support/test_support.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

namespace velmora::test {
namespace {

// Whether the panel has a slot of that control type with that id.
bool isSlotOf(UINT uType, UINT uId)
{
    switch (uType) {
    case FILTER_CONTROL_CONTINUOUSLY_VARIABLE:
        return uId <= 39;
    case FILTER_CONTROL_RADIO_SWITCH_VARIABLE:
        return uId >= 41 && uId <= 48;
    case FILTER_CONTROL_LED_METER:
        return uId >= 50 && uId <= 59;
    case FILTER_CONTROL_COMBO_VARIABLE:
        return uId >= 70 && uId <= 73;
    default:
        return false;
    }
}

// Whether a class has a member of that type and name, with a start value.
bool declares(const std::string& sHeader, const std::string& sType, const std::string& sName)
{
    return sHeader.find(" " + sType + " " + sName + " = ") != std::string::npos;
}

void checkMeter(const CUICtrl& meter, const std::string& sHeader)
{
    EXPECT_NE(meter.m_pCurrentMeterValue, nullptr);
    EXPECT_TRUE(meter.bUseMeter);
    EXPECT_EQ(meter.uDetectorMode, DETECT_MODE_NONE);
    EXPECT_EQ(*meter.m_pCurrentMeterValue, 0.0f);
    EXPECT_TRUE(declares(sHeader, "float", meter.cMeterVariableName));
}

void checkVariable(const CUICtrl& control, const std::string& sHeader)
{
    const void* pointers[] = {control.m_pUserCookedIntData, control.m_pUserCookedFloatData,
                              control.m_pUserCookedDoubleData, control.m_pUserCookedUINTData};
    const char* types[] = {"int", "float", "double", "UINT"};
    ASSERT_LE(control.uUserDataType, static_cast<UINT>(UINTData));
    for (UINT i = 0; i < 4; ++i)
        EXPECT_EQ(pointers[i] != nullptr, i == control.uUserDataType) << types[i];
    EXPECT_TRUE(declares(sHeader, types[control.uUserDataType], control.cVariableName));
}

void checkRange(const CUICtrl& control, double dStart)
{
    const float fLow = control.fUserDisplayDataLoLimit;
    const float fHigh = control.fUserDisplayDataHiLimit;
    EXPECT_LT(fLow, fHigh);
    EXPECT_GE(dStart, fLow);
    EXPECT_LE(dStart, fHigh);
    EXPECT_FALSE(control.bExpSlider && fLow <= 0.0f) << "an exponential slider needs a low limit above 0";
    for (double dPreset : control.dPresetData)
        EXPECT_TRUE(dPreset == 0.0 || (dPreset >= fLow && dPreset <= fHigh)) << dPreset;

    if (control.uUserDataType == UINTData) {
        const std::string sItems = control.cEnumeratedList;
        EXPECT_EQ(fLow, 0.0f);
        EXPECT_EQ(fHigh, static_cast<float>(std::ranges::count(sItems, ','))) << sItems;
    } else {
        EXPECT_STRNE(control.cControlUnits, "");
    }
}

} // namespace

class ExampleControls : public testing::TestWithParam<const char*>
{
};

TEST_P(ExampleControls, areCompleteAndMatchSourceAndReadMe)
{
    const std::string sName = GetParam();
    CExamplePlugIn plugIn(sName);
    const std::string sFolder = std::string(EXAMPLES_SOURCE) + "/" + sName + "/";
    const std::string sHeader = readFile(sFolder + sName + ".h");
    const std::string sReadMe = readFile(sFolder + "README.md");

    EXPECT_EQ(plugIn->m_PlugInName, sName);
    EXPECT_EQ(plugIn->m_uPlugInVersion, PLUGIN_API_VERSION);
    EXPECT_EQ(plugIn->m_bOutputOnlyPlugIn, sName == "PolySynth");

    std::set<UINT> ids;
    for (const CUICtrl* pControl : plugIn.controls()) {
        SCOPED_TRACE(sName + ": " + pControl->cControlName);
        EXPECT_TRUE(ids.insert(pControl->uControlId).second) << "id used twice";
        EXPECT_TRUE(isSlotOf(pControl->uControlType, pControl->uControlId)) << pControl->uControlId;
        EXPECT_NE(sReadMe.find("| " + std::to_string(pControl->uControlId) + " | " + pControl->cControlName),
                  std::string::npos)
            << "not in the README's table";
        if (pControl->uControlType == FILTER_CONTROL_LED_METER) {
            checkMeter(*pControl, sHeader);
        } else {
            checkVariable(*pControl, sHeader);
            checkRange(*pControl, plugIn.value(pControl->uControlId));
        }
    }
    EXPECT_FALSE(ids.empty());
}

INSTANTIATE_TEST_SUITE_P(All, ExampleControls, testing::ValuesIn(EXAMPLE_NAMES),
                         [](const auto& info) { return std::string(info.param); });

} // namespace velmora::test

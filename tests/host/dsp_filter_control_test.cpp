#include "host/dsp_filter_control.h"

#include <gtest/gtest.h>
#include <limits>

namespace velmora {
namespace {

// Variables of all types with a record that is bound to the one of its type.
struct CBoundRecord
{
    CBoundRecord(UINT uDataType, float fLo, float fHi, float fStart)
    {
        m_record.uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
        m_record.uControlId = 7;
        m_record.uUserDataType = uDataType;
        m_record.fUserDisplayDataLoLimit = fLo;
        m_record.fUserDisplayDataHiLimit = fHi;
        m_record.fInitUserIntValue = uDataType == intData ? fStart : 55.0F;
        m_record.fInitUserFloatValue = uDataType == floatData ? fStart : 55.0F;
        m_record.fInitUserDoubleValue = uDataType == doubleData ? fStart : 55.0F;
        m_record.fInitUserUINTValue = uDataType == UINTData ? fStart : 55.0F;
        m_record.m_pUserCookedIntData = uDataType == intData ? &m_nVariable : nullptr;
        m_record.m_pUserCookedFloatData = uDataType == floatData ? &m_fVariable : nullptr;
        m_record.m_pUserCookedDoubleData = uDataType == doubleData ? &m_dVariable : nullptr;
        m_record.m_pUserCookedUINTData = uDataType == UINTData ? &m_uVariable : nullptr;
    }

    CUICtrl m_record;
    int m_nVariable = 99;
    float m_fVariable = 99.0F;
    double m_dVariable = 99.0;
    UINT m_uVariable = 99;
};

TEST(DSPFilterControl, BindingWritesTheStartValue)
{
    constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
    struct CCase
    {
        UINT m_uDataType;
        float m_fStart;
        double m_dExpected;
        int m_nPos; // in a range from 0 to 8
        const char* m_pText;
    };
    const CCase cases[] = {
        {intData, 2.9F, 2.0, 64, "2"},
        {intData, -2.9F, -2.0, -64, "-2"},
        {intData, NOT_A_NUMBER, 0.0, 0, "0"},
        {intData, 3e9F, std::numeric_limits<int>::max(), std::numeric_limits<int>::max(), "2147483647"},
        {floatData, 2.9F, 2.9F, 92, "2.90"},
        {doubleData, 2.5F, 2.5, 80, "2.500"},
        {UINTData, 2.9F, 2.0, 64, "2"},
        {UINTData, -2.9F, 0.0, 0, "0"},
    };
    for (const CCase& test : cases) {
        CBoundRecord bound(test.m_uDataType, 0.0F, 8.0F, test.m_fStart);
        CDSPFilterControl control;
        control.bindTo(bound.m_record);
        EXPECT_EQ(control.cookedValue(), test.m_dExpected);
        EXPECT_EQ(control.m_nPos, test.m_nPos);
        EXPECT_EQ(control.m_sValue, test.m_pText);
        EXPECT_EQ(control.uControlId, 7U);
    }
}

TEST(DSPFilterControl, WithoutAVariableNothingIsWritten)
{
    for (const UINT uDataType : {0U, 1U, 2U, 3U, 4U}) {
        CBoundRecord bound(4, 0.0F, 8.0F, 1.0F);
        bound.m_record.uUserDataType = uDataType;
        CDSPFilterControl control;
        control.bindTo(bound.m_record);
        EXPECT_EQ(control.cookedValue(), std::nullopt);
        EXPECT_EQ(control.m_nPos, 100);
        control.setPosition(128);
        EXPECT_EQ(control.m_fNormalized, 0.5F);
        EXPECT_FALSE(control.setText("3"));
        EXPECT_EQ(control.m_sValue, "");
        EXPECT_EQ(bound.m_fVariable, 99.0F);
    }
}

TEST(DSPFilterControl, TextsAndItems)
{
    CBoundRecord bound(UINTData, 0.0F, 2.0F, 1.0F);
    bound.m_record.cControlName = "Mode";
    bound.m_record.cControlUnits = "  0123456789 0123456789 0123456  beyond the limit";
    bound.m_record.cEnumeratedList = "LPF,HPF,BPF";
    CDSPFilterControl control;
    control.bindTo(bound.m_record);
    EXPECT_EQ(control.m_sName, "Mode");
    EXPECT_EQ(control.m_sUnits, "0123456789 0123456789 0123456");
    EXPECT_EQ(control.m_Enum, (std::vector<std::string>{"LPF", "HPF", "BPF"}));
    control.setPosition(200);
    EXPECT_EQ(bound.m_uVariable, 2U);
    EXPECT_EQ(control.m_sValue, "2");

    bound.m_record.cControlName = bound.m_record.cControlUnits = bound.m_record.cEnumeratedList = nullptr;
    control.bindTo(bound.m_record);
    EXPECT_EQ(control.m_sName + control.m_sUnits + control.cEnumeratedList, "");
}

TEST(DSPFilterControl, MovesByPositionValueAndText)
{
    CBoundRecord bound(floatData, -60.0F, 12.0F, 0.0F);
    bound.m_record.cControlUnits = "dB";
    CDSPFilterControl control;
    control.bindTo(bound.m_record);

    control.setPosition(64);
    EXPECT_EQ(bound.m_fVariable, -42.0F);
    EXPECT_EQ(control.m_sValue, "-42.00");
    control.setPosition(1000); // a position is limited
    EXPECT_EQ(bound.m_fVariable, 12.0F);
    EXPECT_EQ(control.m_nPos, 256);
    control.setPosition(-1);
    EXPECT_EQ(bound.m_fVariable, -60.0F);
    control.setNormalized(1.5); // a value is not
    EXPECT_EQ(bound.m_fVariable, 48.0F);
    EXPECT_EQ(control.m_nPos, 384);

    EXPECT_TRUE(control.setText("-24 dB"));
    EXPECT_EQ(bound.m_fVariable, -24.0F);
    EXPECT_EQ(control.m_nPos, 128);
    EXPECT_TRUE(control.setText("99"));
    EXPECT_EQ(bound.m_fVariable, 12.0F);
    EXPECT_FALSE(control.setText("silence"));
    EXPECT_EQ(bound.m_fVariable, 12.0F);
    EXPECT_EQ(control.m_sValue, "12.00");

    bound.m_fVariable = -60.0F; // the plug-in moved it
    control.updateFromVariable();
    EXPECT_EQ(control.m_nPos, 0);
    EXPECT_EQ(control.m_sValue, "-60.00");
    control.setCookedValue(20.0);
    EXPECT_EQ(bound.m_fVariable, 20.0F);

    control.m_nPosMin = 64; // the travel is measured from 0, whatever the lowest position
    control.m_nPosMax = 320;
    control.setPosition(0);
    EXPECT_EQ(bound.m_fVariable, -42.0F);
}

TEST(DSPFilterControl, MeterIsRawOrSmoothed)
{
    float fMeter = 0.0F;
    CBoundRecord bound(4, 0.0F, 0.0F, 0.0F);
    CDSPFilterControl control;
    const auto bind = [&](UINT uMode, float* pMeter) {
        bound.m_record.uDetectorMode = uMode;
        bound.m_record.m_pCurrentMeterValue = pMeter;
        control.bindTo(bound.m_record);
    };
    const auto level = [&](float fValue) {
        fMeter = fValue;
        return control.meterLevel();
    };
    bind(DETECT_MODE_NONE, &fMeter);
    EXPECT_EQ(level(0.25F), 0.25F);
    EXPECT_EQ(level(1.5F), 1.0F);
    EXPECT_EQ(level(-1.0F), 0.0F);
    EXPECT_EQ(level(std::numeric_limits<float>::quiet_NaN()), 0.0F);

    bind(DETECT_MODE_PEAK, &fMeter);
    EXPECT_LT(level(1.0F), 0.1F);
    control.initMeter(100.0F); // attack 10 ms, release 500 ms: one and fifty calls
    const float fRisen = level(1.0F);
    EXPECT_GT(fRisen, 0.5F);
    EXPECT_LT(fRisen, 1.0F);
    const float fFallen = level(0.0F);
    EXPECT_GT(fFallen, 0.9F * fRisen);
    EXPECT_LT(fFallen, fRisen);

    bind(DETECT_MODE_NONE, nullptr);
    EXPECT_EQ(control.meterLevel(), 0.0F);
}

} // namespace
} // namespace velmora

#include "project/control_list.h"
#include "project/user_variables.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

constexpr std::string_view CHARACTERS =
    "Variable name can only contain letters, numbers and the underscore symbol, no spaces are allowed.";
constexpr std::string_view NOT_NUMERIC = "Initial value must be numeric.";
constexpr std::string_view IN_USE = "Variable name is already in use.";

TEST(UserVariables, ChecksInTheirOrder)
{
    CDSPProject project;
    CUICtrl slider, user;
    slider.uControlId = 3;
    slider.cVariableName = "m_fGain";
    slider.bUseMeter = true;
    slider.cMeterVariableName = "m_fMeter";
    user.uControlId = FIRST_USER_VARIABLE_ID;
    user.uControlType = USER_VARIABLE_TYPE;
    user.cVariableName = "m_nSeed";
    project.m_UIControlList.append(slider);
    project.m_UIControlList.append(user);

    struct CCase
    {
        UINT m_uDataType;
        std::string m_sName;
        std::string m_sValue;
        std::string_view m_sMessage;
    };
    const CCase cases[] = {
        {1, "", "x", "Variable name can not be blank."},
        {1, "a b", "x", CHARACTERS},
        {1, "a\tb", "x", CHARACTERS},
        {1, "a=b", "x", CHARACTERS},
        {1, "2nd", "x", CHARACTERS},
        {1, "while", "x", CHARACTERS},
        {1, "m_nSeed", "x", "Variable name is already in use as a user-variable."},
        {0, "m_fGain", "x", "Variable name is already in use as a Velmora control variable."},
        {1, "m_x", "2.5x", NOT_NUMERIC},
        {1, "m_x", "", NOT_NUMERIC},
        {1, "m_x", "  ", NOT_NUMERIC},
        {1, "m_x", ".0", NOT_NUMERIC},
        {1, "m_x", "-0", NOT_NUMERIC},
        {1, "m_x", "nan", NOT_NUMERIC},
        {1, "m_x", "inf", NOT_NUMERIC},
        {2, "m_x", "1e39", NOT_NUMERIC}, // values are kept as floats
        {3, "m_x", "-0.5", "Initial value must be non-negative for the UINT datatype."},
        {3, "m_nSampleRate", "-1", "Initial value must be non-negative for the UINT datatype."},
        {1, "m_nSampleRate", "1", IN_USE},
        {1, "m_fMeter", "1", IN_USE},
        {1, "ui7", "1", IN_USE},
        {1, std::string(1024, 'a'), "1", "Variable name can not be longer than 1023 characters."},
        {5, "m_x", "1", "The datatype must be one of integer, float, double, UINT and VSTGUI."},
        {0, "m_x", "3e9", "Initial value is too large for the datatype."},
        {3, "m_x", "4294967295", "Initial value is too large for the datatype."}, // rounds up as a float
        {0, "m_x", "-3", ""},
        {1, "m_x", " \t 2.5\t ", ""},
        {1, "m_x", "  0", ""},
        {1, "m_x", "+.5e1", ""},
    };
    for (const CCase& test : cases)
        EXPECT_EQ(checkUserVariable(project, {test.m_uDataType, test.m_sName, test.m_sValue}),
                  test.m_sMessage)
            << test.m_sName << " = " << test.m_sValue;
}

TEST(UserVariables, Records)
{
    for (UINT uType = 0; uType < USER_VARIABLE_DATA_TYPES.size(); ++uType) {
        CDSPProject project;
        const CUICtrl record = makeUserVariable(project, {uType, "m_fExtra", " 7.5 "});
        const bool bVSTGUI = USER_VARIABLE_DATA_TYPES[uType] == "VSTGUI";
        EXPECT_EQ(record.uControlType, bVSTGUI ? 106U : 105U);
        EXPECT_EQ(record.uUserDataType, bVSTGUI ? 1U : uType);
        EXPECT_STREQ(record.cControlName, "User");
        EXPECT_STREQ(record.cVariableName, "m_fExtra");
        for (const float fValue : {record.fInitUserIntValue, record.fInitUserFloatValue,
                                   record.fInitUserDoubleValue, record.fInitUserUINTValue})
            EXPECT_EQ(fValue, 7.5F);

        EXPECT_EQ(record.uControlId, 0x10000U);
        project.m_UIControlList.append(record);
        EXPECT_EQ(makeUserVariable(project, {0, "m_nOther", "1"}).uControlId, 0x10001U);
    }
}

} // namespace
} // namespace velmora

#include "host/settings_value.h"

#include <gtest/gtest.h>
#include <tuple>

namespace velmora {
namespace {

using enum ESettingType;

TEST(SettingsValue, ReadsLeniently)
{
    struct CCase
    {
        ESettingType m_eType;
        const char* m_pText;
        const char* m_pExpected; // as written back
    };
    const CCase cases[] = {
        {Unsigned, "64", "64"},
        {Unsigned, " \t64 ", "64"},
        {Unsigned, "", "0"},
        {Unsigned, "many", "0"},
        {Unsigned, "12 frames", "12"},
        {Unsigned, "-1", "4294967295"},
        {Unsigned, "99999999999999999999999999", "4294967295"},
        {Signed, "-12", "-12"},
        {Signed, "99999999999999999999999999", "2147483647"},
        {Signed, "-99999999999999999999999999", "-2147483648"},
        {Bool, "TRUE", "true"},
        {Bool, "True", "true"},
        {Bool, "yes", "false"},
        {Bool, "", "false"},
        {Double, " 44100.0 ", "44100"},
        {Double, "22050.5", "22050.5"},
        {Double, "0.1", "0.1"},
        {Double, "1e999", "0"},
        {Double, "nan", "0"},
        {Double, "", "0"},
        {String, " as it stands ", " as it stands "},
    };
    for (const CCase& test : cases)
        EXPECT_EQ(settingText(parsedSetting(test.m_eType, test.m_pText)), test.m_pExpected) << test.m_pText;
}

TEST(SettingsValue, JudgesEnteredTextStrictly)
{
    const std::tuple<ESettingType, std::string, bool> cases[] = {
        {Unsigned, "4294967295", true},
        {Unsigned, "4294967296", false},
        {Unsigned, "-1", false},
        {Unsigned, "", false},
        {Unsigned, "1.5", false},
        {Signed, "-2147483648", true},
        {Signed, "2147483648", false},
        {Bool, "False", true},
        {Bool, "1", false},
        {Double, "48000", true},
        {Double, "inf", false},
        {Double, "48 kHz", false},
        {String, "", true},
        {String, "two\nlines", false},
        {UserFolderPath, "a\r", false},
        {String, std::string(8192, 'x'), true},
        {String, std::string(8193, 'x'), false},
    };
    for (const auto& [eType, sText, bTaken] : cases)
        EXPECT_EQ(whatSettingTakes(eType, sText).empty(), bTaken) << sText;
}

} // namespace
} // namespace velmora

#include "host/settings_table.h"
#include "support/test_support.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <set>

namespace velmora {
namespace {

TEST(SettingsTable, LinesAreInOrderAndNamesUnique)
{
    std::set<std::string_view> names;
    int nLine = 0;
    for (const CSettingRow& row : settingsTable()) {
        EXPECT_EQ(row.m_nLine, ++nLine);
        EXPECT_TRUE(names.insert(row.m_sName).second) << row.m_sName;
        EXPECT_EQ(settingLine(row.m_sName), row.m_nLine);
        EXPECT_TRUE(row.m_sMeaning.ends_with('.')) << row.m_sName;
        // The letter behind m_ tells the type.
        EXPECT_EQ(row.m_sName[2], std::string_view("unbdss")[static_cast<std::size_t>(row.m_eType)]);
    }
    EXPECT_EQ(settingLine("m_sNoSuchSetting"), 0);
}

TEST(SettingsTable, DocumentationIsUpToDate)
{
    if (std::getenv("VELMORA_UPDATE_DOCS"))
        test::writeFile(SETTINGS_PAGE, settingsTableAsMarkdown());
    EXPECT_EQ(test::readFile(SETTINGS_PAGE), settingsTableAsMarkdown())
        << "Run this test with VELMORA_UPDATE_DOCS=1 to renew the page.";
}

} // namespace
} // namespace velmora

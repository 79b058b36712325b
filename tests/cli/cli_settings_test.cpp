#include "cli_program.h"
#include "host/settings_table.h"

namespace velmora::test {

namespace {

using CCliSettingsTest = CCliTest;

TEST_F(CCliSettingsTest, ShowsEveryLineAndMakesTheFile)
{
    const CJsonValue result = runForJson({"settings", "show"});
    EXPECT_EQ(result["path"].text(), (userFolder() / "socket.log").string());
    ASSERT_EQ(result["lines"].elements().size(), SETTING_COUNT);
    for (const CSettingRow& row : settingsTable()) {
        const CJsonValue& line = result["lines"][static_cast<std::size_t>(row.m_nLine - 1)];
        EXPECT_EQ(line["line"].number(), row.m_nLine);
        EXPECT_EQ(line["name"].text(), row.m_sName);
        EXPECT_EQ(line["value"].text(), settingDefault(row, userFolder()));
    }
    EXPECT_TRUE(std::filesystem::exists(userFolder() / "PlugIns"));

    const CProgramEnd table = run({"settings", "show"});
    EXPECT_NE(table.m_sOutput.find("\n  10  m_uFramesPerBuffer           64\n"), std::string::npos)
        << table.m_sOutput;
}

TEST_F(CCliSettingsTest, SetsALineByNumberOrName)
{
    EXPECT_EQ(runForJson({"settings", "set", "10", "256"})["lines"][9]["value"].text(), "256");
    EXPECT_EQ(
        runForJson({"settings", "set", "m_sCompanyName", "M\xC3\xBCller & S\xF6hne"})["lines"][65]["value"]
            .text(),
        "M\xC3\xBCller & S\xC3\xB6hne");
    const CJsonValue shown = runForJson({"settings", "set", "62", "-7"});
    EXPECT_EQ(shown["lines"][61]["value"].text(), "-7");
    EXPECT_EQ(shown["lines"][9]["value"].text(), "256"); // kept in the file in between

    const std::string sBefore = readFile(userFolder() / "socket.log");
    expectFailure({"settings", "set", "10", "many"}, 1, {"many"});
    expectFailure({"settings", "set", "10", "-1"}, 1, {"-1"});
    expectFailure({"settings", "set", "72", "1"}, 2, {"\"72\"", "1 to 71", "Usage:"});
    expectFailure({"settings", "set", "0", "1"}, 2, {"\"0\""});
    expectFailure({"settings", "set", "1.5", "1"}, 2, {"\"1.5\""});
    expectFailure({"settings", "set", "m_uNothing", "1"}, 2, {"m_uNothing"});
    EXPECT_EQ(readFile(userFolder() / "socket.log"), sBefore);
}

TEST_F(CCliSettingsTest, PreferencesStandBesideTheLines)
{
    EXPECT_EQ(runForJson({"settings", "show"})["preferences"][0]["value"].text(), "false");
    const CJsonValue shown = runForJson({"settings", "set", "startFromInitialValues", "true"});
    EXPECT_EQ(shown["preferences"][0]["name"].text(), "startFromInitialValues");
    EXPECT_EQ(runForJson({"settings", "show"})["preferences"][0]["value"].text(), "true");
    expectFailure({"settings", "set", "startFromInitialValues", "perhaps"}, 1, {"\"perhaps\""});
}

TEST_F(CCliSettingsTest, TakesAnotherUserFolder)
{
    const CJsonValue result = runForJson({"settings", "show", "--user-folder", "mine"});
    EXPECT_EQ(result["path"].text(), (m_folder / "mine/socket.log").string());
    EXPECT_FALSE(std::filesystem::exists(userFolder()));

    writeFile(m_folder / "file", "");
    expectFailure({"settings", "show", "--user-folder=file"}, 1, {(m_folder / "file").string()});
    expectFailure({"settings", "show", "--user-folder=file/below"}, 1, {"file/below"});

    std::filesystem::create_directories(m_folder / "odd/socket.log");
    expectFailure({"settings", "show", "--user-folder=odd"}, 1, {"socket.log"});
}

TEST_F(CCliSettingsTest, ReportsAResultThatCannotBeWritten)
{
    m_start.m_sStandardOutput = "/dev/full";
    const CProgramEnd end = run({"settings", "show"});
    EXPECT_EQ(end.m_nExitStatus, 1);
    EXPECT_NE(end.m_sErrors.find("The result cannot be written"), std::string::npos) << end.m_sErrors;
}

} // namespace

} // namespace velmora::test

#include "base/text.h"
#include "host/settings.h"
#include "support/full_disk.h"
#include "support/test_support.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tuple>

namespace velmora {
namespace {

class Settings : public ::testing::Test
{
  protected:
    bool load(const std::string& sContents)
    {
        test::writeFile(m_file, sContents);
        return m_settings.load(m_file, "/user", m_sError);
    }

    // Line nLine of the file, without its end.
    [[nodiscard]] std::string written(int nLine) const
    {
        return split(test::readFile(m_file), '\n').at(static_cast<std::size_t>(nLine) - 1);
    }

    test::CTemporaryFolder m_folder;
    std::filesystem::path m_file = m_folder / "socket.log";
    CSettings m_settings;
    std::string m_sError;
};

// The first lines of a file in which every value differs from its default.
std::string otherFile(int nLines)
{
    std::string sContents;
    for (const CSettingRow& row : settingsTable()) {
        if (row.m_nLine > nLines)
            break;
        switch (row.m_eType) {
        case ESettingType::Bool:
            sContents += row.m_sDefault == "true" ? "false" : "true";
            break;
        case ESettingType::String:
        case ESettingType::UserFolderPath:
            sContents += row.m_nLine == 9 ? "/dev/null" : "text " + std::to_string(row.m_nLine);
            break;
        default:
            sContents += std::to_string(7000 + row.m_nLine);
        }
        sContents += "\n";
    }
    return sContents;
}

TEST_F(Settings, AMissingFileIsMadeWithTheDefaults)
{
    const auto file = m_folder / "new" / "socket.log";
    ASSERT_TRUE(m_settings.load(file, "/user", m_sError)) << m_sError;
    const auto lines = split(test::readFile(file), '\n');
    ASSERT_EQ(lines.size(), SETTING_COUNT + 1); // the last line ends, too
    EXPECT_EQ(lines[0], "4098");
    EXPECT_EQ(lines[1], "/user/VelmoraProjects");
    EXPECT_EQ(lines[4], "4010");
    EXPECT_EQ(lines[26], "8421504");
    EXPECT_EQ(lines[56], "None");
    EXPECT_EQ(lines[58], "44100");
    EXPECT_EQ(lines[70], "false");
    EXPECT_EQ(lines[71], "");
    EXPECT_EQ(test::entriesOf(m_folder / "new"), (std::vector<std::string>{"socket.log"}));
}

TEST_F(Settings, EveryLineSurvivesReadingAndWriting)
{
    ASSERT_TRUE(load(otherFile(71))) << m_sError;
    std::string sExpected = otherFile(71);
    EXPECT_EQ(m_settings.formatVersionRead(), 7001U);
    EXPECT_EQ(test::readFile(m_file), sExpected.replace(0, 4, "4098"));
    EXPECT_EQ(m_settings.text(66), "text 66");
    EXPECT_EQ(m_settings.text(0) + m_settings.text(72), "");
}

TEST_F(Settings, AShortFileKeepsTheOtherDefaults)
{
    // Line 40 has no end of its own in one of the two.
    for (const std::string& sContents : {otherFile(40), otherFile(39) + "7040"}) {
        ASSERT_TRUE(load(sContents)) << m_sError;
        EXPECT_EQ(m_settings.unsignedValue(40), 7040U);
        EXPECT_EQ(m_settings.unsignedValue(41), 0U);
        EXPECT_EQ(m_settings.unsignedValue(44), 139U);
        EXPECT_EQ(split(test::readFile(m_file), '\n').size(), SETTING_COUNT + 1);
        EXPECT_EQ(written(71), "false");
    }
    // Reading over another file begins with the defaults again.
    ASSERT_TRUE(load("4098\n"));
    EXPECT_EQ(m_settings.unsignedValue(40), 0U);
}

TEST_F(Settings, LinesAreRepaired)
{
    ASSERT_TRUE(load("x\r\n/projects\r\r\n\r\n \r\n\r\nTRUE\r\nfalse \r\n")) << m_sError;
    EXPECT_EQ(m_settings.formatVersionRead(), 0U);
    EXPECT_EQ(m_settings.defaultProjectFolder(), "/projects");
    EXPECT_EQ(m_settings.defaultWAVFolder(), "");
    EXPECT_EQ(m_settings.codeBlocksFolder(), " ");
    EXPECT_EQ(m_settings.compilerId(), 0U);
    EXPECT_TRUE(m_settings.boolValue(6));
    EXPECT_FALSE(m_settings.boolValue(7));
    EXPECT_EQ(test::readFile(m_file).find('\r'), std::string::npos);
}

TEST_F(Settings, AVanishedDefaultWaveFileIsCleared)
{
    const std::string sEight = "4098\n\n\n\n4010\ntrue\ntrue\ntrue\n";
    ASSERT_TRUE(load(sEight + (m_folder / "gone.wav").string() + "\n"));
    EXPECT_EQ(m_settings.defaultWAVFile(), "");
    EXPECT_EQ(written(9), "");
    const std::string sThere = (m_folder / "there.wav").string();
    test::writeFile(sThere, "");
    ASSERT_TRUE(load(sEight + sThere + "\n"));
    EXPECT_EQ(m_settings.defaultWAVFile(), sThere);
}

TEST_F(Settings, HostileFilesAreLeftAlone)
{
    const std::tuple<std::string, const char*> cases[] = {
        {std::string(1024 * 1024 + 1, '\n'), "larger than 1 MiB"},
        {"4098\n" + std::string(8193, 'x') + "\n", "line 2 is longer than 8192 bytes"},
    };
    for (const auto& [sContents, pReason] : cases) {
        EXPECT_FALSE(load(sContents));
        EXPECT_NE(m_sError.find(pReason), std::string::npos) << m_sError;
        EXPECT_EQ(m_settings.defaultProjectFolder(), "/user/VelmoraProjects");
        EXPECT_FALSE(m_settings.save(m_file, m_sError));
        EXPECT_EQ(test::readFile(m_file), sContents);
    }
    // NUL bytes do no harm and are kept.
    const std::string sZeros("4098\n\0\0\n", 8);
    ASSERT_TRUE(load(sZeros));
    EXPECT_EQ(m_settings.defaultProjectFolder().size(), 2U);

    std::filesystem::remove(m_file);
    ASSERT_EQ(::mkfifo(m_file.c_str(), 0600), 0);
    EXPECT_FALSE(m_settings.load(m_file, "/user", m_sError));
    EXPECT_NE(m_sError.find("not a regular file"), std::string::npos) << m_sError;
    EXPECT_TRUE(std::filesystem::is_fifo(m_file));
}

TEST_F(Settings, AFailedWriteLeavesTheOldFile)
{
    const std::string sOld = "4098\n/mine\n";
    test::writeFile(m_file, sOld);
    {
        const test::CFullDisk noRoom(0);
        EXPECT_FALSE(m_settings.load(m_file, "/user", m_sError));
    }
    EXPECT_NE(m_sError.find(m_file.string()), std::string::npos) << m_sError;
    EXPECT_NE(m_sError.find("could not be written: File too large"), std::string::npos) << m_sError;
    EXPECT_EQ(m_settings.defaultProjectFolder(), "/mine"); // what was read holds
    EXPECT_EQ(test::readFile(m_file), sOld);
    EXPECT_EQ(test::entriesOf(m_folder.path()), (std::vector<std::string>{"socket.log"}));

    EXPECT_FALSE(m_settings.save(m_file / "below a file" / "socket.log", m_sError));
    EXPECT_NE(m_sError.find("could not be written"), std::string::npos) << m_sError;
}

TEST_F(Settings, SetTakesOnlyTheLinesType)
{
    struct CCase
    {
        int m_nLine;
        const char* m_pText;
        const char* m_pError; // a part of the message; empty: taken
    };
    const CCase cases[] = {
        {10, "128", ""},
        {10, "a few",
         "Line 10 (m_uFramesPerBuffer) takes a whole number from 0 to 4294967295, not \"a few\"."},
        {6, "FALSE", ""},
        {6, "off", "takes true or false"},
        {59, "48000.5", ""},
        {59, "fast", "takes a number"},
        {66, "Loud & Co.", ""},
        {66, "a\nb", "without line ends"},
        {1, "4098", ""},
        {1, "5000", "takes only 4098"},
        {0, "1", "lines 1 to 71"},
        {72, "1", "lines 1 to 71"},
        {-3, "1", "lines 1 to 71"},
    };
    for (const CCase& test : cases) {
        const std::string sBefore = m_settings.text(test.m_nLine);
        m_sError.clear();
        const bool bTaken = std::string_view(test.m_pError).empty();
        EXPECT_EQ(m_settings.set(test.m_nLine, test.m_pText, m_sError), bTaken) << test.m_pText;
        EXPECT_NE(m_sError.find(test.m_pError), std::string::npos) << m_sError;
        if (!bTaken) {
            EXPECT_EQ(m_settings.text(test.m_nLine), sBefore);
        }
    }
    EXPECT_EQ(m_settings.framesPerBuffer(), 128U);
    EXPECT_EQ(m_settings.text(6), "false");
    EXPECT_EQ(m_settings.sampleRate(), 48000.5);
    EXPECT_EQ(m_settings.companyName(), "Loud & Co.");
}

TEST_F(Settings, NamedAccessorsFindTheirLines)
{
    m_settings.setCompilerId(4011);
    m_settings.setInputDeviceName("Mic\n");
    m_settings.setOutputDeviceName("Speaker");
    m_settings.setDUTDeviceName("Box");
    m_settings.setSampleRate(96000.0);
    ASSERT_TRUE(m_settings.save(m_file, m_sError));
    const std::pair<int, const char*> lines[] = {
        {5, "4011"}, {57, "Mic"}, {58, "Speaker"}, {67, "Box"}, {59, "96000"}};
    for (const auto& [nLine, pText] : lines)
        EXPECT_EQ(written(nLine), pText);
}

} // namespace
} // namespace velmora

#include "project/compiler/build_log.h"
#include "project/compiler/build_watch.h"
#include "project/compiler/compiler_table.h"
#include "project/dsp_project.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

std::string asUTF16(const std::string& sText)
{
    std::string sResult = "\xFF\xFE";
    for (const char cByte : sText)
        sResult += std::string{cByte, '\0'};
    return sResult;
}

class BuildWatchTest : public testing::Test
{
  protected:
    BuildWatchTest()
    {
        m_project.m_sProjectFolder = m_folder.path().string();
        m_project.m_sProjectName = "Gain";
    }

    test::CTemporaryFolder m_folder;
    CDSPProject m_project;
};

TEST_F(BuildWatchTest, ReadsEachFamilysResultAndGoesOnBuildingWithoutALog)
{
    constexpr EBuildEvent BUILDING = EBuildEvent::building;
    constexpr EBuildEvent GOOD = EBuildEvent::succeeded;
    constexpr EBuildEvent BAD = EBuildEvent::failed;
    const struct
    {
        int m_nCompilerId;
        std::string m_sLog;
        EBuildEvent m_eEvent;
        EBuildEvent m_eEventWithMarker;
    } cases[] = {
        {4000, asUTF16("Gain - 0 error(s), 2 warning(s)"), GOOD, GOOD},
        {4003, asUTF16("Gain - 10 error(s), 0 warning(s)"), BAD, BAD},
        {4003, asUTF16("Compiling \xE4..."), BUILDING, BUILDING},
        {4003, "Gain - 0 error(s)", GOOD, GOOD},
        {4002, "  Gain.vcxproj -> C:\\VELM\\PlugIns\\Gain.dll\r\n", GOOD, BUILDING},
        {4009, "  Gain.vcxproj -> C:\\VELM\\PlugIns/Gain.dll\r\n", GOOD, BUILDING},
        {4006, "  Gain.vcxproj -> C:\\Other\\Gain.dll\r\n", BUILDING, BUILDING},
        {4007, "x.cpp(3): error C2065: 'y'\n  Gain.vcxproj -> C:\\VELM\\PlugIns\\Gain.dll\n", BAD, BAD},
        {4005, "LINK : fatal error LNK1104: cannot open file\n", BAD, BAD},
        {4001, "g++ ...\nGain.cbp -> C:\\VELM\\PlugIns/Gain.so\n", GOOD, BUILDING},
        {4001, "make: *** [Makefile:9: x.o] Error 127\n", BAD, BAD},
        {4010, "Gain.cmake -> C:\\VELM\\PlugIns/Gain.so\n", GOOD, BUILDING},
        {4010, "Gain.cbp -> C:\\VELM\\PlugIns/Gain.so\n", BUILDING, BUILDING},
        {4010,
         "x.cpp:1:2: warning: odd\n    f(); // note: error: here\nGain.cmake -> C:\\VELM\\PlugIns/Gain.so\n",
         GOOD, BUILDING},
        {4011, "x.cpp:1:2: error: bad\n", BAD, BAD},
        {4011, "Gain.cmake : error : The compilation was stopped.\n", BAD, BAD},
        {4999, "Gain.cmake -> C:\\VELM\\PlugIns/Gain.so\n", BUILDING, BUILDING},
    };
    for (const auto& entry : cases) {
        SCOPED_TRACE(std::to_string(entry.m_nCompilerId) + " " + entry.m_sLog);
        const auto result = [&](const char* pFolder) {
            return readBuildResult(entry.m_nCompilerId, m_project, pFolder);
        };
        EXPECT_EQ(result("C:\\VELM\\PlugIns\\"), BUILDING);
        if (findCompiler(entry.m_nCompilerId))
            test::writeFile(buildLogPath(entry.m_nCompilerId, m_project), entry.m_sLog);
        EXPECT_EQ(result("C:\\VELM\\PlugIns\\"), entry.m_eEvent);
        EXPECT_EQ(result("C:\\VELM\\PlugIns"), entry.m_eEvent);
        test::writeFile(buildMarkerPath(m_project), "");
        EXPECT_EQ(result("C:\\VELM\\PlugIns"), entry.m_eEventWithMarker);
        deleteBuildResults(entry.m_nCompilerId, m_project);
        EXPECT_TRUE(test::entriesOf(m_folder.path()).empty());
    }
}

TEST_F(BuildWatchTest, TheCompilerTableKnowsEveryIdOnce)
{
    int nExpected = 4000;
    for (const CCompiler& compiler : compilers()) {
        EXPECT_EQ(compiler.m_nId, nExpected) << compiler.m_pName;
        EXPECT_EQ(findCompiler(compiler.m_nId), &compiler);
        EXPECT_TRUE(isCompilerOfFamily(compiler.m_nId, compiler.m_eFamily));
        ++nExpected;
    }
    EXPECT_EQ(nExpected, 4012);
    EXPECT_TRUE(isCompilerOfFamily(4003, ECompilerFamily::visualStudio2008));
    EXPECT_FALSE(isCompilerOfFamily(3999, ECompilerFamily::visualStudio2008));
}

} // namespace
} // namespace velmora

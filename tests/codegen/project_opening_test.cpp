#include "codegen/compiler_file_texts.h"
#include "codegen/project_folder_fixture.h"
#include "project/codegen/linker_settings.h"
#include "project/codegen/project_opening.h"
#include "project/codegen/project_update.h"
#include "project/project_file.h"

#include <gmock/gmock.h>

namespace velmora::test {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

namespace {

constexpr const char* LINKER_UPDATED = "Visual Studio Linker settings have been updated - did you switch "
                                       "compilers? Anser YES if prompted to reload the "
                                       "solution in Visual Studio.";
constexpr const char* NO_STRING_END = "\n\n Can not continue with operation. Please alert Orin Halvek.";

class CProjectOpening : public CProjectFolderTest
{
  protected:
    COpenedProject open(const std::string& sName)
    {
        m_dialogs.m_messages.clear();
        m_dialogs.m_questions.clear();
        return openProjectFile(file(sName, ".prj"), m_environment, m_dialogs);
    }

    // A project as a Windows program left it years ago: its own compiler files, few base files.
    void makeOldProject(unsigned uVersion, unsigned uLayer, bool bVSTCompatible)
    {
        const auto pProject = create(request("Echo"));
        for (const char* pName : {"lookuptables.h", "synthfunctions.h", "Makefile"})
            std::filesystem::remove(m_folder / "Echo" / pName);
        writeFile(file("Echo", ".vcproj"), asWindowsText(OLD_VCPROJ));
        writeFile(file("Echo", ".vcproj.user"), asWindowsText(OLD_VCPROJ_USER));
        writeFile(file("Echo", ".vcxproj"), asWindowsText(OLD_VCXPROJ));
        writeFile(file("Echo", ".vcxproj.user"), asWindowsText(OLD_VCXPROJ_USER));
        pProject->m_sProjectFolder = "C:\\Users\\me\\Echo";
        pProject->m_sProjectFile = "C:\\Users\\me\\Echo\\Echo.prj";
        pProject->m_sSolutionFile = "C:\\Users\\me\\Echo\\Echo.sln";
        pProject->m_sSidechainFile = "C:\\gone.wav";
        pProject->m_uPlugInEx[0] = uVersion;
        pProject->m_uPlugInEx[1] = uLayer;
        pProject->m_bVSTCompatible = bVSTCompatible;
        ASSERT_TRUE(saveProject(*pProject, file("Echo", ".prj"), m_dialogs));
    }
};

} // namespace

TEST_F(CProjectOpening, AFreshProjectIsLeftAsItIs)
{
    ASSERT_TRUE(create(request("Echo")));
    const COpenedProject opened = open("Echo");
    ASSERT_TRUE(opened.m_pProject);
    EXPECT_THAT(opened.m_changed, IsEmpty());
    EXPECT_THAT(m_dialogs.m_messages, IsEmpty());
}

TEST_F(CProjectOpening, AnOldProjectIsRepairedOnceAndKeepsItsLineEnds)
{
    makeOldProject(7000, 422, false);
    writeFile(file("Echo", ".pdb"), "old");
    m_environment.m_eFamily = ECompilerFamily::visualStudio2013;
    const COpenedProject opened = open("Echo");
    ASSERT_TRUE(opened.m_pProject);
    EXPECT_THAT(m_dialogs.m_messages, ElementsAre(LINKER_UPDATED));
    for (const char* pSuffix : {".prj", ".pdb", ".vcproj", ".vcproj.user", ".vcxproj", ".vcxproj.user"})
        EXPECT_THAT(opened.m_changed, Contains(file("Echo", pSuffix))) << pSuffix;
    for (const char* pName : {"lookuptables.h", "synthfunctions.h", "Makefile"})
        EXPECT_THAT(opened.m_changed, Contains(m_folder / "Echo" / pName));
    EXPECT_EQ(opened.m_pProject->m_sProjectFolder, m_folder / "Echo");
    EXPECT_EQ(opened.m_pProject->m_sSolutionFile, file("Echo", ".sln"));
    EXPECT_EQ(opened.m_pProject->m_sSidechainFile, "");
    EXPECT_FALSE(std::filesystem::exists(file("Echo", ".pdb")));

    const std::string sPlace = "/opt/velmora &amp; co\\PlugIns\\";
    const std::string sVcproj = readFile(file("Echo", ".vcproj"));
    EXPECT_EQ(countOf(sVcproj, "OutputFile=\"" + sPlace + "$(ProjectName).dll\""), 2U);
    EXPECT_THAT(sVcproj, HasSubstr("OutputFile=\"$(OutDir)/keep.bsc\""));
    EXPECT_THAT(sVcproj, HasSubstr("</File>\r\n\t\t\t<File RelativePath=\"pluginobjects.cpp\"></File>\r\n"));
    EXPECT_EQ(countOf(sVcproj, "lookuptables.h"), 1U);
    EXPECT_EQ(countOf(sVcproj, "plugin.h\""), 1U); // listed as ".\plugin.h"
    const std::string sUser = readFile(file("Echo", ".vcproj.user"));
    EXPECT_THAT(sUser,
                AllOf(HasSubstr("Command=\"/opt/velmora &amp; co/velmora\""), HasSubstr("D:\\mine.exe")));
    const std::string sVcxproj = readFile(file("Echo", ".vcxproj"));
    EXPECT_THAT(sVcxproj, Not(HasSubstr("Old Place")));
    EXPECT_EQ(countOf(sVcxproj, ">" + sPlace + "</OutDir>"), 3U);
    EXPECT_EQ(countOf(sVcxproj, "<OutputFile>" + sPlace + "$(ProjectName).dll</OutputFile>"), 2U);
    EXPECT_THAT(sVcxproj,
                HasSubstr("    </ClCompile>\r\n    <ClCompile Include=\"pluginobjects.cpp\" />\r\n"));
    EXPECT_THAT(readFile(file("Echo", ".vcxproj.user")),
                HasSubstr("<LocalDebuggerCommand>/opt/velmora &amp; co/velmora</LocalDebuggerCommand>"));
    for (const char* pSuffix : {".vcproj", ".vcproj.user", ".vcxproj", ".vcxproj.user"})
        EXPECT_TRUE(isWindowsText(readFile(file("Echo", pSuffix)))) << pSuffix;

    EXPECT_THAT(open("Echo").m_changed, IsEmpty());
    EXPECT_THAT(m_dialogs.m_messages, IsEmpty());

    // The folder that builds write to has another place now; a line of the user's own stays, and so does what
    // he removed.
    std::filesystem::remove(m_folder / "Echo/.clang-format");
    m_environment.m_plugInsFolder = m_folder / "Elsewhere";
    writeFile(m_folder / "Echo/CMakeLists.txt", "set(PLUGINS_FOLDER mine)\n");
    EXPECT_THAT(open("Echo").m_changed, ElementsAre(m_folder / "Echo/Makefile"));
    EXPECT_THAT(readFile(m_folder / "Echo/Makefile"),
                HasSubstr("\n" + (m_folder / "Elsewhere").string() + "\nendef"));
}

TEST_F(CProjectOpening, AMissingSolutionIsMadeOrChosen)
{
    ASSERT_TRUE(create(request("Echo")));
    const auto solution = file("Echo", ".sln");
    std::filesystem::remove(solution);
    m_dialogs.m_openFile = m_folder / "All.txt";
    EXPECT_TRUE(open("Echo").m_pProject);
    EXPECT_THAT(m_dialogs.m_questions,
                ElementsAre(HasSubstr("Do you want to create a default .sln file?\n\nChoose")));
    EXPECT_THAT(m_dialogs.m_messages, ElementsAre("Not a .sln file."));

    m_dialogs.m_openFile = m_folder / "All.sln";
    writeFile(*m_dialogs.m_openFile, asWindowsText(TWO_PROJECT_SOLUTION));
    EXPECT_EQ(open("Echo").m_pProject->m_sSolutionFile, *m_dialogs.m_openFile);
    EXPECT_THAT(open("Echo").m_changed, IsEmpty());
    EXPECT_EQ(readFile(*m_dialogs.m_openFile), asWindowsText(TWO_PROJECT_SOLUTION));

    std::filesystem::remove(*m_dialogs.m_openFile);
    m_dialogs.m_bAnswer = true;
    EXPECT_THAT(open("Echo").m_changed, ElementsAre(solution, file("Echo", ".prj")));
    EXPECT_THAT(m_dialogs.m_messages, ElementsAre("Created default .sln file for project."));
    EXPECT_TRUE(std::filesystem::exists(solution));
}

// Nothing outside the folder is ever touched on behalf of a file from elsewhere, and odd compiler files are
// told of.
TEST_F(CProjectOpening, HostileFilesAreRefusedOrLeftAlone)
{
    const auto pProject = create(request("Echo"));
    writeFile(m_folder / "Victim.pdb", "keep");
    for (const char* pName : {"../Victim", "a\\b", ".."}) {
        pProject->m_sProjectName = pName;
        ASSERT_TRUE(saveProject(*pProject, file("Echo", ".prj"), m_dialogs));
        EXPECT_FALSE(open("Echo").m_pProject) << pName;
        EXPECT_THAT(m_dialogs.m_messages, ElementsAre(HasSubstr("no file of its own folder"))) << pName;
    }
    EXPECT_EQ(readFile(m_folder / "Victim.pdb"), "keep");

    pProject->m_sProjectName = "Echo";
    ASSERT_TRUE(saveProject(*pProject, file("Echo", ".prj"), m_dialogs));
    m_environment.m_eFamily = ECompilerFamily::visualStudio2015;
    for (const std::string sText : {"", "no project at all", "<ClCompile Include=\"", "<OutDir>"}) {
        writeFile(file("Echo", ".vcxproj"), sText);
        EXPECT_TRUE(open("Echo").m_pProject);
        EXPECT_THAT(m_dialogs.m_messages, Not(IsEmpty()));
        EXPECT_EQ(readFile(file("Echo", ".vcxproj")), sText);
    }
    std::filesystem::resize_file(file("Echo", ".vcxproj"), 5ULL << 30); // sparse: read, it would take 5 GB
    EXPECT_TRUE(open("Echo").m_pProject);
    EXPECT_THAT(m_dialogs.m_messages, Contains(StartsWith("Empty file string found in: ")));
}

TEST_F(CProjectOpening, TheLinkerFollowsTheCompiler)
{
    makeOldProject(7000, 422, true);
    const auto pProject = open("Echo").m_pProject;
    const struct
    {
        ECompilerFamily m_eFamily;
        const char* m_pToolset;
        const char* m_pDebug;
        const char* m_pRelease;
    } rows[] = {
        {ECompilerFamily::visualStudio2013, "v120", "Port2VST3d_vc12.lib;base_vc12d.lib",
         "Port2VST3_vc12.lib;base_vc12.lib"},
        {ECompilerFamily::visualStudio2015, "v140", "Port2VST3d_vc14.lib;base_vc14d.lib",
         "Port2VST3_vc14.lib;base_vc14.lib"},
        {ECompilerFamily::visualStudio2013, "v120", "Port2VST3d_vc12.lib;base_vc12d.lib",
         "Port2VST3_vc12.lib;base_vc12.lib"},
        {ECompilerFamily::visualStudio2010, "v100", "Port2VST3d_vc10.lib;base_vc10d.lib",
         "Port2VST3_vc10.lib;base_vc10.lib"},
        {ECompilerFamily::visualStudio2012, "v110", "Port2VST3d_vc11.lib;base_vc11d.lib",
         "Port2VST3_vc11.lib;base_vc11.lib"},
    };
    for (const auto& row : rows)
        for (const bool bAgain : {false, true}) {
            m_environment.m_eFamily = row.m_eFamily;
            m_dialogs.m_messages.clear();
            std::vector<std::filesystem::path> changed;
            EXPECT_TRUE(updateLinkerSettings(*pProject, m_environment, m_dialogs, changed));
            EXPECT_EQ(changed.size(), bAgain ? 0U : 1U) << row.m_pToolset;
            EXPECT_EQ(m_dialogs.m_messages.size(), bAgain ? 0U : 1U);
            const std::string sText = readFile(file("Echo", ".vcxproj"));
            EXPECT_TRUE(isWindowsText(sText));
            EXPECT_EQ(countOf(sText, std::string("<PlatformToolset>") + row.m_pToolset + "<"), 2U);
            EXPECT_EQ(countOf(sText, "<PlatformToolset>"), 2U);
            for (const char* pLibraries : {row.m_pDebug, row.m_pRelease})
                EXPECT_EQ(countOf(sText, std::string("<AdditionalDependencies>") + pLibraries +
                                             ";.\\resources\\Port2VST3.res;%(AdditionalDependencies)"
                                             "</AdditionalDependencies>\r\n"),
                          1U);
        }

    // Without a place for the libraries the file stays as it is; other compilers have no part in it.
    writeFile(file("Echo", ".vcxproj"), "<PlatformToolset>v100</PlatformToolset>");
    m_environment.m_eFamily = ECompilerFamily::visualStudio2015;
    std::vector<std::filesystem::path> changed;
    EXPECT_FALSE(updateLinkerSettings(*pProject, m_environment, m_dialogs, changed));
    EXPECT_EQ(
        m_dialogs.m_messages.back(),
        "Failed to find critical string <ItemDefinitionGroup Condition=\"'$(Configuration)|$(Platform)'=='"
        "Debug|Win32'\"> in the file: " +
            file("Echo", ".vcxproj").string() + NO_STRING_END);
    m_environment.m_eFamily = ECompilerFamily::commandLine;
    EXPECT_TRUE(updateLinkerSettings(*pProject, m_environment, m_dialogs, changed));
    EXPECT_THAT(changed, IsEmpty());
}

TEST_F(CProjectOpening, TheUpdateRunsTheBlocksThatAreDueAndAdvancesTheirWords)
{
    const std::string sNew =
        "New VELM version detected; Velmora will now update your project files. This may take a moment.";
    const std::string sLayer =
        "New VSTGUI4 version detected; Velmora will now update your project files. This may take a moment.";
    const std::string sDone =
        "Upgraded Visual Studio project to latest version: 7.0.0.0\n\nAnswer YES if Visual Studio "
        "prompts you to Reload the solution.";
    const struct
    {
        unsigned m_uVersion;
        unsigned m_uLayer;
        bool m_bVSTCompatible;
        std::vector<std::string> m_messages;
        unsigned m_uNewVersion;
    } rows[] = {
        {7000, 422, true, {}, 7000},
        {6603, 422, true, {}, 6603},
        {6500, 422, false, {}, 6500},
        {0, 422, true, {}, 0},
        {6500, 422, true, {sNew, sDone}, 7000},
        {6500, 400, true, {sNew, sLayer, sDone}, 7000},
        {0, 0, false, {sNew, sLayer, sDone}, 0},
    };
    for (const auto& row : rows) {
        makeOldProject(row.m_uVersion, row.m_uLayer, row.m_bVSTCompatible);
        auto opened = open("Echo");
        ASSERT_TRUE(opened.m_pProject);
        EXPECT_EQ(m_dialogs.m_messages, row.m_messages) << row.m_uVersion << ' ' << row.m_uLayer;
        EXPECT_EQ(opened.m_pProject->m_uPlugInEx[0], row.m_uNewVersion);
        EXPECT_EQ(opened.m_pProject->m_uPlugInEx[1], 422U);
        for (const char* pSuffix : {".vcproj", ".vcxproj"})
            EXPECT_TRUE(isWindowsText(readFile(file("Echo", pSuffix))));
        EXPECT_THAT(open("Echo").m_changed, IsEmpty());
        std::filesystem::remove_all(m_folder / "Echo");
    }
}

TEST_F(CProjectOpening, TheUpdatesTextsAreThoseOfTheCompilers)
{
    makeOldProject(6500, 0, true);
    writeFile(m_folder / "Echo/Velmora.uidesc", asWindowsText("<a>\n <bitmaps>\n </bitmaps>\n</a>\n"));
    writeFile(m_folder / "Echo/VelmoraDLL.cpp", "// mine\n");
    writeFile(m_folder / "Echo/plugin.h", "// of an old version\n");
    ASSERT_TRUE(open("Echo").m_pProject);

    const std::string sVcproj = readFile(file("Echo", ".vcproj"));
    for (const char* pText :
         {"PreprocessorDefinitions=\"WIN32;_WINDOWS;WINDOWS=1;DEVELOPMENT=1\"",
          "PreprocessorDefinitions=\"WIN32;_WINDOWS;WINDOWS=1;RELEASE=1\"",
          "AdditionalDependencies=\"Port2VST3d.lib base_vc9d.lib .\\resources\\Port2VST3.res\"",
          "AdditionalDependencies=\"Port2VST3.lib base_vc9.lib .\\resources\\Port2VST3.res\"",
          "\t\t<Filter Name=\"Resources\">\r\n\t\t\t<File "
          "RelativePath=\".\\resources\\knobvst.png\"></File>\r\n"
          "\t\t\t<File RelativePath=\".\\Echo.rc\"></File>\r\n"})
        EXPECT_EQ(countOf(sVcproj, pText), 1U) << pText;
    EXPECT_EQ(countOf(sVcproj, "ModuleDefinitionFile=\"vst3plug.def\""), 2U);
    const std::string sVcxproj = readFile(file("Echo", ".vcxproj"));
    for (const char* pText :
         {">WIN32;_WINDOWS;WINDOWS=1;DEVELOPMENT=1;%(PreprocessorDefinitions)</PreprocessorDefinitions>",
          "   <PreprocessorDefinitions>WIN32=1;_WINDOWS;WINDOWS=1;RELEASE=1;%(PreprocessorDefinitions)"
          "</PreprocessorDefinitions>\r\n     </ClCompile>",
          "VelmoraDLL.h\" />\r\n    <ClInclude Include=\"resource.h\" />\r\n",
          "  <ItemGroup>\r\n    <Image Include=\"resources\\knobvst.png\" />\r\n  </ItemGroup>\r\n",
          "    <ResourceCompile Include=\"Echo.rc\" />\r\n"})
        EXPECT_EQ(countOf(sVcxproj, pText), 1U) << pText;
    const std::string sDocument = readFile(m_folder / "Echo/Velmora.uidesc");
    EXPECT_TRUE(isWindowsText(sDocument));
    EXPECT_EQ(countOf(sDocument, "<bitmap name="), 6U);
    EXPECT_THAT(sDocument, HasSubstr("velmtype=\"horizswitch\" />\r\n </bitmaps>"));
    EXPECT_THAT(
        readFile(m_folder / "Echo/VelmoraDLL.cpp"),
        HasSubstr(
            "static float g_fMUResult;\n#define stringCompanyName \"Velmora User\"\nunsigned long uPCID1"));
    EXPECT_EQ(readFile(m_folder / "Echo/plugin.h"), readFile(m_environment.m_baseClassFolder / "plugin.h"));
    EXPECT_TRUE(std::filesystem::exists(m_folder / "Echo/.velmora/history"));
}

TEST_F(CProjectOpening, AnUpdateThatLacksAMarkerIsTriedAgain)
{
    makeOldProject(6500, 422, true);
    std::string sBroken = OLD_VCXPROJ;
    sBroken.replace(sBroken.find("=='Release|Win32'\">\n    <ClCompile>"), 19, "=='Other'\">");
    writeFile(file("Echo", ".vcxproj"), sBroken);
    const auto opened = open("Echo");
    EXPECT_THAT(m_dialogs.m_messages,
                Contains(HasSubstr("Failed to find critical string <ItemDefinitionGroup")));
    EXPECT_EQ(opened.m_pProject->m_uPlugInEx[0], 6500U);
    EXPECT_THAT(readFile(file("Echo", ".vcxproj")), HasSubstr("WIN32;_DEBUG;"));

    writeFile(file("Echo", ".vcxproj"), OLD_VCXPROJ);
    EXPECT_EQ(open("Echo").m_pProject->m_uPlugInEx[0], 7000U);
    EXPECT_THAT(m_dialogs.m_messages, SizeIs(2));
}

} // namespace velmora::test

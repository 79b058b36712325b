#include "base/platform_child_process.h"
#include "codegen/compiler_file_texts.h"
#include "codegen/project_folder_fixture.h"
#include "project/codegen/linux_project_files.h"
#include "project/codegen/module_files.h"
#include "project/codegen/product_version.h"
#include "project/codegen/project_text.h"
#include "project/codegen/skeleton.h"
#include "project/codegen/solution_file.h"
#include "project/project_file.h"

#include <gmock/gmock.h>
#include <map>
#include <nlohmann/json.hpp>

namespace velmora::test {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

using CProjectCreation = CProjectFolderTest;

// The text with the numbers of GUIDs and class ids taken out.
std::string withoutIds(std::string sText)
{
    constexpr std::size_t GUID_LENGTH = 38;
    for (auto i = sText.find('{'); i != sText.npos; i = sText.find('{', i + 1))
        if (i + GUID_LENGTH <= sText.size() && sText[i + 9] == '-' && sText[i + GUID_LENGTH - 1] == '}')
            sText.replace(i, GUID_LENGTH, "{ID}");
    for (const char* pName : {"unsigned long uPCID", "unsigned long uCCID"})
        for (auto i = sText.find(pName); i != sText.npos; i = sText.find(pName, i + 1))
            sText.erase(i + 23, sText.find(';', i) - i - 23);
    return sText;
}

std::map<std::string, std::string> textsWithoutIds(const std::filesystem::path& folder)
{
    std::map<std::string, std::string> texts;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.is_regular_file())
            texts[entry.path().filename()] = withoutIds(readFile(entry.path()));
    return texts;
}

} // namespace

TEST_F(CProjectCreation, EveryFileIsThereWithoutTokensAndTheSameEachTime)
{
    CNewProjectRequest echo = request("MyVolumePlugIn");
    echo.m_sCompanyName = "A \"B\" \\ Co\n";
    echo.m_sLatency = "64.5";
    echo.m_bOutputOnlyPlugIn = echo.m_bUseCustomVSTGUI = echo.m_bSidechainEnabled = true;
    const auto pProject = create(echo);
    ASSERT_TRUE(pProject);
    EXPECT_THAT(m_dialogs.m_messages, IsEmpty());

    const auto texts = textsWithoutIds(echo.folder());
    for (const char* pName : {".h", ".cpp", ".prj", ".sln", ".vcproj", ".vcproj.user", ".vcxproj",
                              ".vcxproj.user", ".vcxproj.filters", ".layout", ".cbp"})
        EXPECT_EQ(texts.count(std::string("MyVolumePlugIn") + pName), 1U) << pName;
    for (const char* pName :
         {"plugin.h", "plugin.cpp", "pluginobjects.cpp", "pluginconstants.h", "synthfunctions.h",
          "lookuptables.h", "VelmoraDLL.h", "VelmoraDLL.cpp", "Makefile", "velmora-build.sh",
          "CMakeLists.txt", ".clang-format", ".gitignore"})
        EXPECT_EQ(texts.count(pName), 1U) << pName;
    for (const auto& [sName, sText] : texts)
        for (const char* pToken : {"***GUID", "********", "***PlugInsDir", "VELMORAEXECUTABLE", "MyMy"})
            EXPECT_THAT(sText, Not(HasSubstr(pToken))) << sName;
    EXPECT_TRUE(std::filesystem::is_directory(echo.folder() / "Presets"));

    EXPECT_THAT(texts.at("MyVolumePlugIn.h"), HasSubstr("class CMyVolumePlugIn : public CPlugIn"));
    const std::string& sSource = texts.at("MyVolumePlugIn.cpp");
    for (const char* pText :
         {"#include \"MyVolumePlugIn.h\"", "m_PlugInName = \"MyVolumePlugIn\"", "m_bOutputOnlyPlugIn = true;",
          "m_bUseCustomVSTGUI = true;", "m_bUserCustomGUI = false;"})
        EXPECT_THAT(sSource, HasSubstr(pText));
    const std::string& sLibrary = texts.at("VelmoraDLL.cpp");
    EXPECT_THAT(sLibrary,
                HasSubstr("static float g_fMUResult;\nunsigned long uPCID1 = ;\nunsigned long uPCID2 = ;\n"));
    EXPECT_THAT(sLibrary, HasSubstr("// --- VSTCompatibility: DISABLED --- //\n"));
    EXPECT_THAT(sLibrary, HasSubstr(R"("A \"B\" \\ Co ")"));
    EXPECT_THAT(texts.at("VelmoraDLL.h"), HasSubstr("#include \"MyVolumePlugIn.h\""));
    EXPECT_THAT(texts.at("MyVolumePlugIn.vcproj"),
                HasSubstr("OutputFile=\"/opt/velmora &amp; co\\PlugIns\\$(ProjectName).dll\""));

    EXPECT_EQ(pProject->m_sProjectFile, file("MyVolumePlugIn", ".prj"));
    EXPECT_EQ(pProject->m_uPlugInEx[0], 7000U);
    EXPECT_EQ(pProject->m_uPlugInEx[1], 422U);
    EXPECT_EQ(pProject->m_uPlugInEx[4], 1U);
    EXPECT_EQ(pProject->m_fPlugInEx[0], 64.5f);
    CDSPProject read;
    ASSERT_TRUE(loadProject(read, pProject->m_sProjectFile, m_dialogs));
    EXPECT_EQ(read.m_sSolutionFile, file("MyVolumePlugIn", ".sln"));

    std::filesystem::remove_all(echo.folder());
    ASSERT_TRUE(create(echo));
    EXPECT_EQ(textsWithoutIds(echo.folder()), texts);
}

TEST_F(CProjectCreation, ACompilersFamilyShowsInItsFiles)
{
    const struct
    {
        ECompilerFamily m_eFamily;
        const char* m_pFormat;
        const char* m_pProduct;
        const char* m_pProjectFile;
        const char* m_pToolset;
        bool m_bSafeHandlers;
    } rows[] = {
        {ECompilerFamily::visualStudio2008, "10.00\n", "2008\n", "Echo.vcproj\"", ">v100<", false},
        {ECompilerFamily::visualStudio2010, "11.00\n", "2010\n", "Echo.vcxproj\"", ">v100<", true},
        {ECompilerFamily::visualStudio2012, "12.00\n", "2012\n", "Echo.vcxproj\"", ">v110<", true},
        {ECompilerFamily::visualStudio2013, "12.00\n", "2012\n", "Echo.vcxproj\"", ">v120<", true},
        {ECompilerFamily::visualStudio2015, "12.00\n", "2012\n", "Echo.vcxproj\"", ">v140<", true},
        {ECompilerFamily::commandLine, "12.00\n", "2012\n", "Echo.vcxproj\"", ">v100<", false},
    };
    for (const auto& row : rows) {
        m_environment.m_eFamily = row.m_eFamily;
        CNewProjectRequest echo = request("Echo");
        echo.m_bVSTCompatible = true;
        ASSERT_TRUE(createProjectFiles(echo, m_environment, m_dialogs));
        const std::string sSolution = readFile(file("Echo", ".sln"));
        EXPECT_THAT(sSolution, HasSubstr(std::string("Format Version ") + row.m_pFormat +
                                         "# Visual C++ Express " + row.m_pProduct));
        EXPECT_THAT(sSolution, HasSubstr(row.m_pProjectFile));
        const std::string sProject = readFile(file("Echo", ".vcxproj"));
        EXPECT_EQ(countOf(sProject, row.m_pToolset), 2U);
        EXPECT_EQ(
            countOf(sProject,
                    "<ImageHasSafeExceptionHandlers>false</ImageHasSafeExceptionHandlers>\n    </Link>"),
            row.m_bSafeHandlers ? 2U : 0U);
        for (const char* pText : {">Port2VST310d.lib;Port2VST310.res;base_vc10d.lib<",
                                  ">Port2VST310.lib;Port2VST310.res;base_vc10.lib<"})
            EXPECT_EQ(countOf(sProject, pText), 1U);
        EXPECT_EQ(countOf(sProject, ">vst3plug.def<"), 2U);
        EXPECT_THAT(readFile(m_folder / "Echo/VelmoraDLL.cpp"), HasSubstr("VSTCompatibility: ENABLED"));
        std::filesystem::remove_all(echo.folder());
    }
}

// Modules of both kinds, FFT and stock objects, in a project that is then built with its own Makefile into a
// folder whose name make, shell and CMake could trip over.
TEST_F(CProjectCreation, ModulesAndStockObjectsAreCopiedListedIncludedAndBuilt)
{
    ASSERT_TRUE(create(request("Echo")));
    writeFile(m_folder / "Echo/Helper.cpp", "#include \"Helper.h\"\nint helper() { return 1; }\n");
    writeFile(m_folder / "Echo/Helper.h", "#pragma once\nint helper();\n");
    writeFile(m_folder / "Echo/Gate.cpp", "int gate = 0; // another project's own name\n");

    CNewProjectRequest gate = request("Gate");
    gate.m_modules = {file("Echo", ".prj")};
    gate.m_bIncludeFFT = true;
    gate.m_stockObjects = {"LPFCombFilter"};
    ASSERT_TRUE(create(gate));
    EXPECT_THAT(m_dialogs.m_notes, ElementsAre(HasSubstr("Gate.cpp was not copied")));

    const std::string sHeader = readFile(file("Gate", ".h"));
    EXPECT_THAT(sHeader, HasSubstr("#include \"plugin.h\"\n#include \"Echo.h\"\n#include \"FFT.h\"\n"
                                   "#include \"LPFCombFilter.h\"\n"));
    const std::string sOld = readFile(file("Gate", ".vcproj"));
    const std::string sNew = readFile(file("Gate", ".vcxproj"));
    const std::string sCodeBlocks = readFile(file("Gate", ".cbp"));
    for (const std::string sName : {"Echo.h", "Echo.cpp", "Helper.h", "Helper.cpp", "FFT.h", "FFT.cpp",
                                    "LPFCombFilter.h", "LPFCombFilter.cpp"}) {
        EXPECT_TRUE(std::filesystem::exists(m_folder / "Gate" / sName)) << sName;
        EXPECT_EQ(countOf(sOld, "\n\t\t\t<File RelativePath=\"" + sName + "\"></File>\n"), 1U) << sName;
        EXPECT_EQ(countOf(sNew, (sName.ends_with(".h") ? "    <ClInclude Include=\""
                                                       : "    <ClCompile Include=\"") +
                                    sName + "\" />\n"),
                  1U)
            << sName;
        EXPECT_EQ(countOf(sCodeBlocks, "\t\t<Unit filename=\"" + sName + "\" />\n"), 1U) << sName;
    }
    EXPECT_LT(sOld.find("RelativePath=\"Gate.cpp\""), sOld.find("RelativePath=\"Echo.cpp\""));
    EXPECT_LT(sOld.find("RelativePath=\"Echo.cpp\""), sOld.find("RelativePath=\"FFT.cpp\""));

    const CChildResult build =
        CChildProcess({"make", "-s", "-j2", "-C", (m_folder / "Gate").string(), "CXXFLAGS=-O0"}).run();
    EXPECT_TRUE(build.succeeded()) << build.m_sOutput;
    EXPECT_TRUE(std::filesystem::exists(m_environment.m_plugInsFolder / "Gate.so"));
}

TEST_F(CProjectCreation, ModulesSourcesComeFromTheProjectThatTheirSolutionTellsOf)
{
    ASSERT_TRUE(create(request("Echo")));
    const auto folder = m_folder / "Echo";
    for (const char* pName : {"Old.cpp", "New.cpp", "New.h"})
        writeFile(folder / pName, "// one\n");
    writeFile(m_folder / "Outside.cpp", "// not the module's\n");
    writeFile(file("Echo", ".vcproj"),
              R"(RelativePath=".\Old.cpp" RelativePath="plugin.cpp" RelativePath="Gone.cpp")");
    writeFile(
        file("Echo", ".vcxproj"),
        R"(<ClInclude Include="New.h" /><ClCompile Include="..\Outside.cpp" /><ClCompile Include="New.cpp" />)");

    // What is listed comes first, then what only lies in the folder; neither contract nor what lies outside.
    const auto filesOf = [&] { return findModuleFiles(file("Echo", ".prj"), m_dialogs)->m_files; };
    writeFile(file("Echo", ".sln"), "Format Version 10.00");
    EXPECT_THAT(filesOf(), ElementsAre("Echo.h", "Echo.cpp", "Old.cpp", "New.cpp", "New.h"));
    writeFile(file("Echo", ".sln"), "Format Version 12.00");
    EXPECT_THAT(filesOf(), ElementsAre("Echo.h", "Echo.cpp", "New.h", "New.cpp", "Old.cpp"));
    std::filesystem::remove(file("Echo", ".sln"));
    std::filesystem::remove(file("Echo", ".vcxproj"));
    EXPECT_THAT(filesOf(), ElementsAre("Echo.h", "Echo.cpp", "New.cpp", "New.h", "Old.cpp"));
}

TEST_F(CProjectCreation, AnExistingSolutionKeepsItsProjectsAndGetsOneMore)
{
    CNewProjectRequest echo = request("Echo");
    echo.m_bCreateNewSolution = false;
    echo.m_existingSolution = m_folder / "All.sln";
    writeFile(echo.m_existingSolution, asWindowsText(TWO_PROJECT_SOLUTION));
    ASSERT_TRUE(create(echo));
    const std::string sText = readFile(echo.m_existingSolution);
    EXPECT_TRUE(isWindowsText(sText));
    EXPECT_EQ(countOf(sText, "Project(\"{8BC9CEB8-8B4A-11D0-8D11-00A0C91BC942}\") = "), 3U);
    EXPECT_THAT(sText, HasSubstr("= \"Echo\", \"" + (m_folder / "Echo/Echo").string() + ".vcproj\", \"{"));
    EXPECT_THAT(sText, HasSubstr("}\"\r\nEndProject\r\nGlobal\r\n\tGlobalSection"));

    const struct
    {
        std::string m_sText;
        const char* m_pMessage;
    } refused[] = {
        {"Project(\"{8BC9}\") = \"GlobalMixer\"\n",
         "The solution file was not a valid .sln file: misssing Global and EndGlobal."},
        {"Global\nEndGlobal\n", "The solution file was not a valid .sln file: project GUID not found."},
    };
    for (const auto& row : refused) {
        CNewProjectRequest gate = request("Gate");
        gate.m_bCreateNewSolution = false;
        gate.m_existingSolution = echo.m_existingSolution;
        writeFile(gate.m_existingSolution, row.m_sText);
        m_dialogs.m_messages.clear();
        EXPECT_FALSE(createProject(gate, m_environment, m_dialogs));
        EXPECT_THAT(m_dialogs.m_messages,
                    ElementsAre(row.m_pMessage,
                                "Could not create/copy project files. Check directory/disc structure'"));
        EXPECT_EQ(readFile(gate.m_existingSolution), row.m_sText);
        std::filesystem::remove_all(gate.folder());
    }
}

TEST_F(CProjectCreation, TheDialogsChecksComeInTheirOrder)
{
    std::filesystem::create_directory(m_folder / "Taken");
    const struct
    {
        const char* m_pName;
        const char* m_pLatency;
        const char* m_pCompany;
        const char* m_pMessage; // its beginning; null when all is well
    } rows[] = {
        {"My_Plugin", "-1", "",
         "Invalid Project Name - the project name can not contain numbers, spaces, punctuation characters, "
         "or symbols; "
         "suggest using MyPlugin instead.\n\nThis is because"},
        {"Taken", "-1", "", "Latency can not be less than zero."},
        {"Taken", "x", "",
         "This project already exists; delete it's folder first, or choose a different Project Name."},
        {"Fresh", "0", "", "Please enter a company name for VST/AU Exports."},
        {"Fresh", "0", "Me", nullptr},
    };
    for (const auto& row : rows) {
        CNewProjectRequest checked = request(row.m_pName);
        checked.m_sLatency = row.m_pLatency;
        checked.m_sCompanyName = row.m_pCompany;
        m_dialogs.m_messages.clear();
        EXPECT_EQ(checkNewProject(checked, true, m_dialogs), row.m_pMessage == nullptr);
        if (row.m_pMessage) {
            EXPECT_THAT(m_dialogs.m_messages, ElementsAre(HasSubstr(row.m_pMessage)));
        }
        if (checked.m_sProjectName != row.m_pName) {
            EXPECT_EQ(checked.m_sSourceFile, "MyPlugin.cpp");
        }
    }
    CNewProjectRequest taken = request("Taken");
    EXPECT_FALSE(createProjectFiles(taken, m_environment, m_dialogs));
    EXPECT_EQ(m_dialogs.m_messages.back(), "Could not create project folder. Check permissions.");

    m_environment.m_baseClassFolder = m_folder / "none";
    EXPECT_FALSE(createProjectFiles(request("Fresh"), m_environment, m_dialogs));
    EXPECT_FALSE(std::filesystem::exists(m_folder / "Fresh"));
    m_environment.m_baseClassFolder = BASE_CLASS_FOLDER;

    EXPECT_FALSE(checkVSTFiles(m_environment, m_dialogs));
    EXPECT_THAT(m_dialogs.m_messages.back(),
                HasSubstr("copy the following files to the " + m_environment.m_vstFilesFolder.string() +
                          " folder:\n\n\t"));
    EXPECT_THAT(stockObjectNames(m_environment),
                ElementsAre("CombFilter", "Delay", "DelayAPF", "FFT", "LPFCombFilter", "OnePoleLPF"));
}

TEST_F(CProjectCreation, CompileCommandsNameEverySourceAndChangeOnlyWhenTheyMust)
{
    const auto folder = m_folder / "a \"b\"";
    std::filesystem::create_directory(folder);
    for (const char* pName : {"b.cpp", "a.cpp", "a.h", ".hidden.cpp"})
        writeFile(folder / pName, "\n");
    const std::vector<std::string> flags = {"-std=c++20", "-DX=\"y\\z\""};
    EXPECT_TRUE(writeCompileCommands(folder, "/usr/bin/g++", flags));
    EXPECT_FALSE(writeCompileCommands(folder, "/usr/bin/g++", flags));

    const auto commands = nlohmann::json::parse(readFile(folder / "compile_commands.json"));
    ASSERT_EQ(commands.size(), 2U);
    EXPECT_EQ(commands[0]["directory"], folder.string());
    EXPECT_EQ(commands[0]["file"], (folder / "a.cpp").string());
    EXPECT_EQ(commands[1]["arguments"], (std::vector<std::string>{"/usr/bin/g++", flags[0], flags[1], "-c",
                                                                  (folder / "b.cpp").string()}));
}

TEST(Skeleton, TokensAreReplacedInOnePassTheFirstOfTheListFirst)
{
    const CToken tokens[] = {{"CVol", "CMyVol"}, {"Vol", "MyVol"}, {"x", "xx"}, {"", "never"}};
    EXPECT_EQ(instantiateSkeleton("CVol Vol xCVolx", tokens), "CMyVol MyVol xxCMyVolxx");
    EXPECT_EQ(instantiateSkeleton("", tokens), "");
    EXPECT_EQ(versionNumber("6.6.1.3"), 6613U);
}

} // namespace velmora::test

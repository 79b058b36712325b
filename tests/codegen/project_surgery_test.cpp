#include "codegen/compiler_file_texts.h"
#include "codegen/project_folder_fixture.h"
#include "project/codegen/added_files.h"
#include "project/codegen/base_files.h"
#include "project/codegen/library_files.h"
#include "project/codegen/plugin_sources.h"
#include "project/codegen/project_text.h"
#include "project/codegen/vcproj_text.h"
#include "project/codegen/vcxproj_text.h"
#include "project/codegen/visual_studio_files.h"
#include "project/codegen/vst_migration.h"

#include <functional>
#include <gmock/gmock.h>
#include <set>

namespace velmora::test {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

using CProjectSurgery = CProjectFolderTest;

// Answers whether the operation says that it was done.
using COperation = std::function<bool(std::string&)>;

bool setDefinitions(std::string& sText)
{
    return setVcxprojElement(sText, "Release", "PreprocessorDefinitions", "A", " </ClCompile>", "", "")
        .empty();
}

} // namespace

// A file that is cut anywhere gives no fault; what cannot be done leaves it as it is, and what was done is
// not done twice.
TEST_F(CProjectSurgery, EveryOperationBearsATextThatIsCutAnywhere)
{
    const struct
    {
        const char* m_pText;
        COperation m_operation;
    } rows[] = {
        {OLD_VCPROJ, [](auto& s) { return addVcprojFile(s, "Dly.cpp"); }},
        {OLD_VCPROJ, [](auto& s) { return addVcprojFile(s, "Dly.h", "Echo.h"); }},
        {OLD_VCPROJ,
         [](auto& s) { return setVcprojAttribute(s, "Debug", "ModuleDefinitionFile", "a", "VCLinkerTool"); }},
        {OLD_VCPROJ, [](auto& s) { return setVcprojOutputFolder(s, "/<here>/"), true; }},
        {OLD_VCPROJ_USER, [](auto& s) { return setVcprojUserCommand(s, "velmora"), true; }},
        {OLD_VCXPROJ, [](auto& s) { return addVcxprojFile(s, "Dly.cpp"); }},
        {OLD_VCXPROJ, [](auto& s) { return addVcxprojFile(s, "Dly.h", "Echo.h"); }},
        {OLD_VCXPROJ, setDefinitions},
        {OLD_VCXPROJ,
         [](auto& s) { return setVcxprojLinkElement(s, "Release", "ModuleDefinitionFile", "a").empty(); }},
        {OLD_VCXPROJ, [](auto& s) { return setVcxprojToolset(s, "<PlatformToolset>v140"), true; }},
        {OLD_VCXPROJ, [](auto& s) { return setVcxprojOutputFolder(s, "/<here>/", true), true; }},
        {OLD_VCXPROJ_USER, [](auto& s) { return setVcxprojUserCommand(s, "velmora"), true; }},
    };
    for (const auto& row : rows) {
        const std::string sWhole = asWindowsText(row.m_pText);
        for (std::size_t uLength = 0; uLength <= sWhole.size(); ++uLength) {
            const std::string sCut = sWhole.substr(0, uLength);
            std::string sText = sCut;
            const bool bDone = row.m_operation(sText);
            if (!bDone) {
                ASSERT_EQ(sText, sCut) << &row - rows << ' ' << uLength;
            }
            const std::string sOnce = sText;
            ASSERT_EQ(row.m_operation(sText), bDone);
            ASSERT_EQ(sText, sOnce) << &row - rows << ' ' << uLength;
        }
        std::string sText = sWhole;
        EXPECT_TRUE(row.m_operation(sText)) << &row - rows;
        EXPECT_NE(sText, sWhole) << &row - rows;
        EXPECT_TRUE(isWindowsText(sText)) << &row - rows;
    }
}

TEST_F(CProjectSurgery, ListsOfFilesAreWholeAndWhatIsMissingIsPassedOver)
{
    std::set<std::string_view> names;
    for (const auto eFamily : {ECompilerFamily::visualStudio2008, ECompilerFamily::visualStudio2010,
                               ECompilerFamily::visualStudio2012, ECompilerFamily::visualStudio2013,
                               ECompilerFamily::visualStudio2015})
        names.insert(librarySet(eFamily).begin(), librarySet(eFamily).end());
    EXPECT_EQ(names.size(), 40U);
    EXPECT_THAT(librarySet(ECompilerFamily::commandLine), IsEmpty());
    EXPECT_TRUE(isBaseFile("PlugIn.h") && isBaseFile("VelmoraDLL.cpp") && !isBaseFile("Echo.cpp"));

    m_environment.m_baseClassFolder = m_folder / "base";
    for (const char* pFolder : {"base", "base/resources", "VSTFiles", "project"})
        std::filesystem::create_directory(m_folder / pFolder);
    for (const char* pName : {"base/Port2VST3d_vc12.lib", "base/resources/Port2VST3.res",
                              "base/TemplatePlugIn.rc", "VSTFiles/vst3plug.def"})
        writeFile(m_folder / pName, "text");
    std::vector<std::filesystem::path> changed;
    const auto folder = m_folder / "project";
    copyVSTFiles(m_environment, folder, "Echo", changed);
    EXPECT_THAT(changed,
                ::testing::UnorderedElementsAre(folder / "Port2VST3d_vc12.lib", folder / "vst3plug.def",
                                                folder / "resources/Port2VST3.res", folder / "Echo.rc"));
}

TEST_F(CProjectSurgery, IncludesAndFlagsGoWhereTheyBelong)
{
    std::string sHeader = "#include \"plugin.h\"\r\n#include \"B.h\"\r\n";
    EXPECT_TRUE(addIncludes(sHeader, std::vector<std::string>{"A.h", "B.h", "A.h"}));
    EXPECT_EQ(sHeader, "#include \"plugin.h\"\r\n#include \"A.h\"\r\n#include \"B.h\"\r\n");
    std::string sNone = "#include <plugin.h>\n";
    EXPECT_FALSE(addIncludes(sNone, std::vector<std::string>{"A.h"}));

    // The line for the own GUI is put outside the region, which is written anew.
    const std::string sRegion = "// **--0xDEA7--**\nm_bUseCustomVSTGUI = false;\n// **--0xEDA5--**\n";
    CNewProjectRequest echo = request("Echo");
    echo.m_bUserCustomGUI = true;
    std::string sSource = sRegion + "m_bUseCustomVSTGUI = false;\n";
    switchFlags(sSource, echo);
    EXPECT_EQ(sSource, sRegion + "m_bUseCustomVSTGUI = false;\n\n\tm_bUserCustomGUI = true;\n");
}

TEST_F(CProjectSurgery, AMissingPlaceOrSkeletonIsToldAndNothingIsWritten)
{
    const auto pProject = create(request("Echo"));
    std::vector<std::filesystem::path> changed;
    writeFile(file("Echo", ".cbp"), "<Project></Project>");
    EXPECT_FALSE(listFiles(m_folder / "Echo", "Echo", {"A.cpp"}, m_dialogs, changed));
    EXPECT_THAT(m_dialogs.m_messages,
                ElementsAre(HasSubstr("critical string <Unit filename=\" in the file: ")));
    EXPECT_THAT(changed, ElementsAre(file("Echo", ".vcproj"), file("Echo", ".vcxproj")));

    std::string sText = "<Project>";
    EXPECT_FALSE(setVSTLinkEntries(sText, "Echo.vcxproj", m_dialogs));
    EXPECT_EQ(sText, "<Project>");
    m_environment.m_baseClassFolder = m_folder / "none";
    EXPECT_FALSE(writeLibraryFiles({m_folder / "Echo", "Echo", "Echo.h", "", false}, m_environment, m_dialogs,
                                   changed));
    EXPECT_THAT(m_dialogs.m_messages.back(), HasSubstr("Empty file string found in: "));
    EXPECT_THAT(readFile(m_folder / "Echo/VelmoraDLL.cpp"), HasSubstr("CEcho"));
}

TEST_F(CProjectSurgery, AMigrationThatIsRunAgainAddsNothing)
{
    const auto pProject = create(request("Echo"));
    writeFile(file("Echo", ".vcproj"), asWindowsText(OLD_VCPROJ));
    writeFile(file("Echo", ".vcxproj"), asWindowsText(OLD_VCXPROJ));
    for (const bool bAgain : {false, true}) {
        std::vector<std::filesystem::path> changed;
        CVSTMigration migration(*pProject, m_environment, m_dialogs, changed);
        EXPECT_TRUE(migration.updateDefinitions() && migration.migrate() && migration.updateGUILayer());
        const auto library = m_folder / "Echo/VelmoraDLL.cpp"; // fresh ids each time
        if (bAgain)
            EXPECT_THAT(changed, ElementsAre(library));
        else
            EXPECT_THAT(changed, ElementsAre(file("Echo", ".vcproj"), file("Echo", ".vcxproj"), library));
    }
    EXPECT_THAT(m_dialogs.m_messages, IsEmpty());
}

} // namespace velmora::test

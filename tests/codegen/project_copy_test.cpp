#include "codegen/compiler_file_texts.h"
#include "codegen/project_folder_fixture.h"
#include "project/codegen/code_central_services.h"
#include "project/codegen/code_synchronisation.h"
#include "project/codegen/control_import.h"
#include "project/codegen/project_copy.h"
#include "project/codegen/project_editing.h"
#include "project/control_list.h"
#include "project/project_file.h"

#include <gmock/gmock.h>

namespace velmora::test {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

class CProjectCopy : public CProjectFolderTest
{
  protected:
    // A project with a slider whose variable has the project's name as a part of its own, code and further
    // files.
    void makeEcho()
    {
        CNewProjectRequest echo = request("Echo");
        echo.m_stockObjects = {"Delay"};
        m_pEcho = create(echo);
        ASSERT_TRUE(m_pEcho);
        CUICtrl control;
        control.uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;
        control.uControlId = 3;
        control.uUserDataType = floatData;
        control.cVariableName = "m_fEcho";
        control.cControlName = "Echo";
        m_pEcho->m_UIControlList.append(control);
        m_pEcho->m_AssignButton2Name = "Freeze";
        m_pEcho->setTextLabel(5, "a label");
        m_pEcho->m_uControlTheme[7] = 77;
        m_pEcho->m_pVectorJSProgram[16] = 0.25f;
        CCodeCentralServices services(nullptr, m_dialogs);
        ASSERT_TRUE(services.writeCodeRegions(m_pEcho.get()));
        ASSERT_TRUE(saveProject(*m_pEcho, m_pEcho->m_sProjectFile, m_dialogs));
        writeFile(m_folder / "Echo/Extra.cpp",
                  "#include \"Echo.h\"\nint extra(CEcho& echo) { return echo.m_nIRLength; }\n");
        writeFile(m_folder / "Echo/notes.txt", "remember");
        writeFile(m_folder / "Echo/Presets/One.spf", "preset");
        std::filesystem::create_directories(m_folder / "Echo/Debug");
        writeFile(m_folder / "Echo/Debug/x.txt", "built");
        writeFile(m_folder / "Echo/Echo.log", "log");
        writeFile(m_folder / "Echo/base_vc9.lib", "library");
        writeFile(m_folder / "Echo/Velmora.uidesc", "<echo/>");
    }

    std::unique_ptr<CDSPProject> m_pEcho;
};

} // namespace

TEST_F(CProjectCopy, TheCopyHasTheNewNameThroughoutAndNoBuildProducts)
{
    makeEcho();
    writeFile(file("Echo", ".vcxproj"), asWindowsText(OLD_VCXPROJ));
    writeFile(file("Echo", ".vcproj"), asWindowsText(OLD_VCPROJ));
    const std::string sBefore = readFile(file("Echo", ".prj"));
    for (const bool bEntire : {false, true}) {
        m_dialogs.m_messages.clear();
        const auto copied =
            copyProject(*m_pEcho, {"Reverb", m_folder.path(), bEntire, true}, m_environment, m_dialogs);
        ASSERT_EQ(copied, file("Reverb", ".prj"));
        EXPECT_THAT(m_dialogs.m_messages, ElementsAre("Project saved!"));
        EXPECT_EQ(readFile(file("Echo", ".prj")), sBefore);

        CDSPProject reverb;
        ASSERT_TRUE(loadProject(reverb, *copied, m_dialogs));
        EXPECT_EQ(reverb.m_sSourceFile, "Reverb.cpp");
        EXPECT_EQ(reverb.m_sSolutionFile, file("Reverb", ".sln"));
        EXPECT_EQ(reverb.m_UIControlList.count(), 1U);
        const std::string sSource = readFile(file("Reverb", ".cpp"));
        for (const char* pText :
             {"#include \"Reverb.h\"", "CReverb::CReverb()", "m_PlugInName = \"Reverb\"", "m_fEcho"})
            EXPECT_THAT(sSource, HasSubstr(pText));
        EXPECT_THAT(sSource, Not(HasSubstr("CEcho")));
        EXPECT_THAT(readFile(file("Reverb", ".h")), HasSubstr("#ifndef CReverb_h"));
        EXPECT_THAT(readFile(m_folder / "Reverb/Extra.cpp"),
                    HasSubstr("#include \"Reverb.h\"\nint extra(CReverb& echo)"));
        const std::string sVcxproj = readFile(file("Reverb", ".vcxproj"));
        EXPECT_TRUE(isWindowsText(sVcxproj));
        EXPECT_THAT(sVcxproj, Not(HasSubstr("Echo")));
        const std::string sVcproj = readFile(file("Reverb", ".vcproj"));
        EXPECT_THAT(sVcproj, Not(HasSubstr("Echo")));
        EXPECT_THAT(sVcproj, HasSubstr("\tName=\"Reverb\"\r\n\tRootNamespace=\"Reverb\""));
        EXPECT_THAT(readFile(file("Reverb", ".cbp")), HasSubstr("<Unit filename=\"Delay.cpp\" />"));

        for (const char* pName :
             {"Debug", "Reverb.log", "Echo.log", "Echo.prj", "Echo.cbp", "base_vc9.lib", ".velmora"})
            EXPECT_FALSE(std::filesystem::exists(m_folder / "Reverb" / pName)) << pName;
        for (const char* pName : {"notes.txt", "Presets/One.spf"})
            EXPECT_EQ(std::filesystem::exists(m_folder / "Reverb" / pName), bEntire) << pName;
        // The code was written under the new name already.
        CCodeCentralServices services(nullptr, m_dialogs);
        EXPECT_TRUE(services.writeCodeRegions(&reverb));
        EXPECT_THAT(services.written(), IsEmpty());
        std::filesystem::remove_all(m_folder / "Reverb");
    }
}

TEST_F(CProjectCopy, NamesThatCannotBeTakenAreRefused)
{
    makeEcho();
    const struct
    {
        const char* m_pName;
        const char* m_pMessage;
    } rows[] = {
        {"", "New Project Name is empty!"},
        {"Echo", "New Project Name must be different from curent Project Name!"},
        {"VSTFiles", "This project directory already exists."},
        {"../Echo", "Invalid Project Name - "},
    };
    std::filesystem::create_directory(m_folder / "VSTFiles");
    for (const auto& row : rows) {
        m_dialogs.m_messages.clear();
        EXPECT_FALSE(
            copyProject(*m_pEcho, {row.m_pName, m_folder.path(), true, false}, m_environment, m_dialogs));
        EXPECT_THAT(m_dialogs.m_messages, ElementsAre(HasSubstr(row.m_pMessage)));
    }
}

TEST_F(CProjectCopy, ControlsAreImportedWithAllThatBelongsToThem)
{
    makeEcho();
    const auto pGate = create(request("Gate"));
    CUICtrl own;
    own.uControlId = 9;
    pGate->m_UIControlList.append(own);
    pGate->setTextLabel(1, "goes");
    writeFile(m_folder / "Gate/Velmora.uidesc", "<gate/>");

    EXPECT_FALSE(importControls(*pGate, m_folder / "Echo/Echo.cpp", m_dialogs));
    EXPECT_FALSE(importControls(*pGate, m_folder / "None.prj", m_dialogs));
    EXPECT_EQ(m_dialogs.m_messages.front(), "Not a .PRJ file.");
    EXPECT_EQ(pGate->m_UIControlList.count(), 1U);

    ASSERT_TRUE(importControls(*pGate, file("Echo", ".prj"), m_dialogs));
    ASSERT_EQ(pGate->m_UIControlList.count(), 1U);
    EXPECT_STREQ(pGate->m_UIControlList.getAt(0)->cVariableName, "m_fEcho");
    EXPECT_EQ(pGate->m_TextLabels[1], nullptr);
    EXPECT_STREQ(pGate->m_TextLabels[5], "a label");
    EXPECT_EQ(pGate->m_AssignButton2Name, "Freeze");
    EXPECT_EQ(pGate->m_uControlTheme[7], 77U);
    EXPECT_EQ(pGate->m_pVectorJSProgram[16], 0.25f);
    EXPECT_EQ(pGate->m_sProjectName, "Gate");
    EXPECT_EQ(pGate->m_uPlugInEx[1], 422U);
    EXPECT_EQ(readFile(m_folder / "Gate/Velmora.uidesc"), "<echo/>");

    clearControls(*pGate);
    EXPECT_EQ(pGate->m_UIControlList.count(), 0U);
}

TEST_F(CProjectCopy, EditingAddsWhatIsNewAndSwitchesFlags)
{
    makeEcho();
    ASSERT_TRUE(create(request("Gate")));
    CNewProjectRequest edited = requestOfProject(*m_pEcho, m_environment, m_dialogs);
    EXPECT_THAT(edited.m_stockObjects, ElementsAre("Delay"));
    EXPECT_FALSE(edited.m_bIncludeFFT || edited.m_bIncludeReverbObjects || edited.m_bUseCustomVSTGUI ||
                 edited.m_bVSTCompatible);

    // Source of a version that had no flag of its own for the plug-in's GUI.
    std::string sSource = readFile(file("Echo", ".cpp"));
    sSource.erase(sSource.find("\tm_bUserCustomGUI = false;"), 26);
    writeFile(file("Echo", ".cpp"), sSource);
    writeFile(m_folder / "Echo/Delay.h", readFile(m_folder / "Echo/Delay.h") + "// mine\n");
    edited.m_modules = {file("Gate", ".prj")};
    edited.m_bIncludeReverbObjects = edited.m_bIncludeFFT = true;
    edited.m_bUserCustomGUI = edited.m_bOutputOnlyPlugIn = true;
    edited.m_sLatency = "12";
    std::vector<std::filesystem::path> changed;
    ASSERT_TRUE(editProject(*m_pEcho, edited, m_environment, nullptr, m_dialogs, changed));

    EXPECT_EQ(m_pEcho->m_fPlugInEx[0], 12.0f);
    EXPECT_TRUE(m_pEcho->m_bOutputOnlyPlugIn);
    const std::string sHeader = readFile(file("Echo", ".h"));
    for (const char* pName : {"Gate.h", "FFT.h", "CombFilter.h", "Delay.h", "OnePoleLPF.h"})
        EXPECT_EQ(countOf(sHeader, std::string("#include \"") + pName + "\"\n"), 1U) << pName;
    sSource = readFile(file("Echo", ".cpp"));
    EXPECT_THAT(sSource, HasSubstr("m_bUseCustomVSTGUI = false;\n\n\tm_bUserCustomGUI = true;"));
    EXPECT_THAT(sSource, HasSubstr("m_bOutputOnlyPlugIn = true;"));
    EXPECT_THAT(readFile(m_folder / "Echo/Delay.h"), HasSubstr("// mine"));
    EXPECT_EQ(countOf(readFile(file("Echo", ".vcxproj")), "Include=\"Gate.cpp\" />"), 1U);
    EXPECT_TRUE(requestOfProject(*m_pEcho, m_environment, m_dialogs).m_bIncludeReverbObjects);

    // The same again changes nothing.
    changed.clear();
    ASSERT_TRUE(editProject(*m_pEcho, edited, m_environment, nullptr, m_dialogs, changed));
    EXPECT_THAT(changed, IsEmpty());
    EXPECT_THAT(m_dialogs.m_messages, IsEmpty());
}

TEST_F(CProjectCopy, SynchronisingRenewsTheContract)
{
    makeEcho();
    EXPECT_THAT(synchroniseFiles(*m_pEcho, m_environment), IsEmpty());
    writeFile(m_folder / "Echo/plugin.cpp", "// old\n");
    EXPECT_THAT(synchroniseFiles(*m_pEcho, m_environment), ElementsAre(m_folder / "Echo/plugin.cpp"));
}

} // namespace velmora::test

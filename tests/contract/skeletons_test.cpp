#include "plugin.h"
#include "support/program_runner.h"
#include "support/test_support.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>

namespace {

using velmora::test::CProgramEnd;
using velmora::test::CTemporaryFolder;
using velmora::test::readFile;
using velmora::test::runProgram;
using velmora::test::writeFile;
using Path = std::filesystem::path;

const Path BASE = CONTRACT_FOLDER;

std::string replaced(std::string sText, const std::string& sFrom, const std::string& sTo)
{
    for (auto u = sText.find(sFrom); u != std::string::npos; u = sText.find(sFrom, u + sTo.size()))
        sText.replace(u, sFrom.size(), sTo);
    return sText;
}

// One line for each region, as the code writer leaves it behind: every kind of line that can draw a warning.
const struct
{
    const char* m_pFile;
    std::string m_sBegin;
    std::string m_sEnd;
    std::string m_sLeader;
    std::string m_sBody;
} REGIONS[] = {
    {"Gain.h", "**--0x07FD--**", "**--0x1A7F--**", "\t// ",
     "\tfloat m_fVolume;\n\tUINT m_uMode;\n\tenum{OFF,ON};\n\tUINT m_uPlain;\n\tenum{};\n"
     "\tfloat m_fMeter;\n\tdouble m_dOwn;// *** user-Variable\n"},
    {"Gain.cpp", "**--0xDEA7--**", "**--0xEDA5--**", "\t// ",
     "\tm_fVolume = 0.500000;\n\tm_uMode = 1;\n\tm_uPlain = 0;\n\tm_fMeter = 0.0;\n\tm_dOwn = 1.000000;\n"
     "\tCUICtrl* ui0 = new CUICtrl;\n\tui0->m_pUserCookedFloatData = &m_fVolume;\n"
     "\tui0->m_pUserCookedUINTData = NULL;\n\tui0->cControlName = \"Volume\";\n"
     "\tm_UIControlList.append(*ui0);\n\tdelete ui0;\n\n\n\tm_uX_TrackPadIndex = -1;\n"
     "\tfloat* pJSProg = NULL;\n"
     "\tpJSProg = new float[MAX_JS_PROGRAM_STEPS*MAX_JS_PROGRAM_STEP_VARS];\n"
     "\tpJSProg[JS_PROG_INDEX(0,0)] = 0.000000;\n\tm_PresetJSPrograms[0] = pJSProg;\n"},
    {"Gain.cpp", "**--0x2983--**", "**--0xFFDD--**", "\t", "\tm_fVolume                        0\n"},
};

// The project Gain, made of the skeletons as New Project makes it.
class CSkeletonProject
{
  public:
    CSkeletonProject()
    {
        std::filesystem::create_directories(m_folder);
        for (const char* pName : {"plugin.h", "plugin.cpp", "pluginobjects.cpp", "pluginconstants.h",
                                  "synthfunctions.h", "lookuptables.h"})
            std::filesystem::copy(BASE / pName, m_folder);
        const std::map<std::string, std::string> names = {{"TemplatePlugIn.h", "Gain.h"},
                                                          {"TemplatePlugIn.cpp", "Gain.cpp"},
                                                          {"skel.Makefile", "Makefile"},
                                                          {"skel.build.sh", "velmora-build.sh"},
                                                          {"skel.CMakeLists.txt", "CMakeLists.txt"},
                                                          {"skel.clang-format", ".clang-format"},
                                                          {"skel.gitignore", ".gitignore"}};
        for (const auto& entry : std::filesystem::directory_iterator(BASE)) {
            const std::string sName = entry.path().filename();
            if (names.contains(sName))
                writeFile(m_folder / names.at(sName), instantiated(entry.path()));
            else if (sName.starts_with("skel."))
                writeFile(m_folder / ("Gain" + sName.substr(4)), instantiated(entry.path()));
            else if (sName.starts_with("VelmoraDLL."))
                writeFile(m_folder / sName, instantiated(entry.path()));
        }
    }

    void fillRegions() const
    {
        for (const auto& region : REGIONS) {
            std::string sText = readFile(m_folder / region.m_pFile);
            const auto uBegin = sText.find(region.m_sBegin) + region.m_sBegin.size();
            sText.replace(uBegin, sText.find(region.m_sEnd) - uBegin,
                          "\n\n" + region.m_sBody + "\n" + region.m_sLeader);
            writeFile(m_folder / region.m_pFile, sText);
        }
    }

    [[nodiscard]] CProgramEnd build() const
    {
        return runProgram("/bin/sh", {(m_folder / "velmora-build.sh").string()});
    }

    const CTemporaryFolder m_temporary;
    const Path m_folder = m_temporary.path() / "pro ject & more";
    const Path m_output = m_temporary.path() / "out $HOME #'\"; put";
    const Path m_library = m_output / "Gain.so";

  private:
    [[nodiscard]] std::string instantiated(const Path& skeleton) const
    {
        std::string sText = replaced(readFile(skeleton), "VolumePlugIn", "Gain");
        sText = replaced(sText, "volumeplugin", skeleton.filename() == "VelmoraDLL.h" ? "Gain" : "gain");
        sText = replaced(sText, "static float g_fMUResult;",
                         "static float g_fMUResult;\nunsigned long uPCID1 = 4294967295;\n// --- "
                         "VSTCompatibility: DISABLED --- //\n");
        sText = replaced(sText, "***GUID_", "{12345678-0000-0000-0000-00000000000");
        return replaced(replaced(sText, "Velmora User", "A \\\"Company\\\""), "***PlugInsDir***",
                        m_output.string());
    }
};

// The fixed texts that code generation seeks, each in its skeleton.
TEST(Skeletons, HoldWhatIsSoughtInThem)
{
    const std::string sDebug = "Condition=\"'$(Configuration)|$(Platform)'=='Debug|Win32'\">";
    const std::string sRelease = "Condition=\"'$(Configuration)|$(Platform)'=='Release|Win32'\">";
    const std::map<std::string, std::vector<std::string>> sought = {
        {"TemplatePlugIn.h",
         {"\n#include \"plugin.h\"\n", "CVolumePlugIn", "**--0x07FD--**\n\n\t// **--0x1A7F--**"}},
        {"TemplatePlugIn.cpp",
         {"CVolumePlugIn", "cvolumeplugin", "\"VolumePlugIn\"", " volumeplugin",
          "m_bOutputOnlyPlugIn = false;", "\tm_bUseCustomVSTGUI = false;\n\n\tm_bUserCustomGUI = false;",
          "\tm_PlugInName = \"VolumePlugIn\";", "\t// **--0xDEA7--**\n\n\t// **--0xEDA5--**\n",
          "\t**--0x2983--**\n\n\t**--0xFFDD--**\n"}},
        {"VelmoraDLL.h", {"#include \"volumeplugin.h\"", "// **--0xFEED--**\n", "// **--0xDEEF--**\n"}},
        {"VelmoraDLL.cpp", {"CVolumePlugIn", "\"Velmora User\"", "\nstatic float g_fMUResult;\n"}},
        {"skel.vcproj",
         {"RelativePath=\"VolumePlugIn.cpp\"", "RelativePath=\"VolumePlugIn.h\"", "\tName=\"VolumePlugIn\"",
          "RootNamespace=\"VolumePlugIn\"", "Name=\"Debug|Win32\"", "Name=\"Release|Win32\"",
          "OutputFile=\"********.dll\"", "PreprocessorDefinitions=\"", "AdditionalDependencies=\"",
          "ModuleDefinitionFile=\"", "\n\t</Files>", "$(ProjectDir)BuildLog.htm"}},
        {"skel.vcproj.user", {"\tCommand=\"VELMORAEXECUTABLE\"", "Name=\"Debug|Win32\""}},
        {"skel.vcxproj",
         {"    <ClCompile Include=\"VolumePlugIn.cpp\" />\n",
          "    <ClInclude Include=\"VolumePlugIn.h\" />\n", "<OutDir " + sDebug + "***PlugInsDir***</OutDir>",
          "<OutDir " + sRelease + "***PlugInsDir***</OutDir>", "<OutputFile>********.dll</OutputFile>",
          "<PlatformToolset>v100</PlatformToolset>", "<ItemDefinitionGroup " + sDebug,
          "<ItemDefinitionGroup " + sRelease, "\n    </Link>\n", "\n    </ClCompile>\n",
          "<PreprocessorDefinitions>", "<AdditionalDependencies>", "<ModuleDefinitionFile>",
          "<RootNamespace>VolumePlugIn</RootNamespace>", "<ClInclude Include=\"VelmoraDLL.h\" />",
          "\n  <Import Project=\"$(VCTargetsPath)\\Microsoft.Cpp.targets\""}},
        {"skel.vcxproj.user", {"<LocalDebuggerCommand>VELMORAEXECUTABLE</LocalDebuggerCommand>"}},
        {"skel.vcxproj.filters", {"***GUID_1***", "***GUID_2***", "***GUID_3***", "\"VolumePlugIn.cpp\""}},
        {"skel.layout", {"VolumePlugIn"}},
        {"skel.sln",
         {"\nMicrosoft Visual Studio Solution File, Format Version 10.00\n# Visual C++ Express "
          "2008\nProject(\"{",
          "\"VolumePlugIn\", \"VolumePlugIn.vcproj\", \"***GUID_1***\"\nEndProject\n", "\nGlobal\n",
          "\nEndGlobal\n", "***GUID_2***"}},
        {"skel.Makefile", {"\ndefine PLUGINS_FOLDER\n***PlugInsDir***\nendef\n"}},
        {"skel.CMakeLists.txt", {"\nset(PLUGINS_FOLDER [==[***PlugInsDir***]==])\n"}},
    };
    for (const auto& [sFile, texts] : sought) {
        const std::string sText = readFile(BASE / sFile);
        for (const std::string& sSought : texts)
            EXPECT_NE(sText.find(sSought), std::string::npos) << sFile << ": " << sSought;
    }
    for (const char* pFile : {"skel.vcproj", "skel.vcxproj", "skel.vcxproj.filters", "skel.cbp"})
        for (const char* pListed : {"plugin.h", "plugin.cpp", "pluginobjects.cpp", "pluginconstants.h",
                                    "synthfunctions.h", "lookuptables.h", "VelmoraDLL.h", "VelmoraDLL.cpp"})
            EXPECT_NE(readFile(BASE / pFile).find("\"" + std::string(pListed) + "\""), std::string::npos)
                << pFile << " " << pListed;
}

TEST(Skeletons, AreWellFormedAndFormatted)
{
    const CSkeletonProject project;
    for (const char* pName : {"Gain.vcproj", "Gain.vcproj.user", "Gain.vcxproj", "Gain.vcxproj.user",
                              "Gain.vcxproj.filters", "Gain.cbp", "Gain.layout"}) {
        std::string sText = readFile(project.m_folder / pName); // a folder's "&" is its writer's to escape
        writeFile(project.m_folder / "check.xml", replaced(sText, project.m_output.string(), "out"));
        const auto end = runProgram(XMLLINT, {"--noout", (project.m_folder / "check.xml").string()});
        EXPECT_EQ(end.m_nExitStatus, 0) << pName << end.m_sErrors;
    }
    for (const char* pName : {"Gain.h", "Gain.cpp", "VelmoraDLL.h", "VelmoraDLL.cpp"}) {
        const auto end =
            runProgram(CLANG_FORMAT, {"--dry-run", "-Werror", (project.m_folder / pName).string()});
        EXPECT_EQ(end.m_nExitStatus, 0) << pName << end.m_sErrors;
    }
}

// With empty regions and with full ones, with all stock objects included, in the oldest and the newest
// language.
TEST(Skeletons, CompileWithoutWarnings)
{
    const CSkeletonProject project;
    for (const bool bFull : {false, true}) {
        if (bFull) {
            project.fillRegions();
            std::string sIncludes = "#include \"plugin.h\"\n#include \"synthfunctions.h\"\n";
            for (const char* pStock :
                 {"CombFilter", "Delay", "DelayAPF", "FFT", "LPFCombFilter", "OnePoleLPF"})
                sIncludes += "#include \"" + (BASE / "StockObjects" / pStock).string() + ".h\"\n";
            writeFile(project.m_folder / "Gain.h",
                      replaced(readFile(project.m_folder / "Gain.h"), "#include \"plugin.h\"\n", sIncludes));
        }
        for (const char* pCompiler : {GCC, CLANG})
            for (const char* pLanguage : {"-std=c++98", "-std=c++20"})
                for (const char* pFile : {"Gain.cpp", "VelmoraDLL.cpp"}) {
                    const auto end =
                        runProgram(pCompiler, {pLanguage, "-Wall", "-Wextra", "-Werror", "-O1", "-fPIC",
                                               "-I" + project.m_folder.string(), "-c",
                                               (project.m_folder / pFile).string(), "-o", "/dev/null"});
                    EXPECT_EQ(end.m_nExitStatus, 0)
                        << pCompiler << pLanguage << pFile << (bFull ? " full" : " empty") << end.m_sErrors;
                }
    }
}

void expectWorkingLibrary(const Path& library)
{
    const std::unique_ptr<void, int (*)(void*)> handle(dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL),
                                                       dlclose);
    ASSERT_TRUE(handle) << dlerror();
    const auto symbol = [&](const char* pName) { return dlsym(handle.get(), pName); };
    EXPECT_EQ(reinterpret_cast<getAPIVersionFunction>(symbol("getAPIVersion"))(), 61u);
    EXPECT_STREQ(reinterpret_cast<const char* (*)()>(symbol("getCompanyName"))(), "A \"Company\"");
    EXPECT_EQ(symbol("uPCID1"), nullptr); // only the exports are seen

    const std::unique_ptr<CPlugIn> plugIn(reinterpret_cast<createObjectFunction>(symbol("createObject"))());
    EXPECT_GE(reinterpret_cast<float (*)()>(symbol("getMemoryUse"))(), sizeof(CPlugIn) / 1024.0f);
    EXPECT_STREQ(plugIn->m_PlugInName, "Gain");
    EXPECT_EQ(plugIn->m_UIControlList.count(), 0u);
    EXPECT_TRUE(plugIn->prepareForPlay() && plugIn->userInterfaceChange(50) &&
                plugIn->midiNoteOn(0, 60, 100));
    float input[] = {0.5f, -1.0f};
    const struct
    {
        UINT m_uInputs;
        UINT m_uOutputs;
        float m_fLeft;
        float m_fRight;
    } cases[] = {{1, 1, 0.25f, 9.0f}, {1, 2, 0.25f, 0.25f}, {2, 2, 0.25f, -0.5f}, {2, 1, 0.25f, 9.0f}};
    for (const auto& [uInputs, uOutputs, fLeft, fRight] : cases) {
        float output[] = {9.0f, 9.0f};
        plugIn->processAudioFrame(input, output, uInputs, uOutputs);
        EXPECT_EQ(output[0], fLeft) << uInputs << uOutputs;
        EXPECT_EQ(output[1], fRight) << uInputs << uOutputs;
    }
}

TEST(Skeletons, BuildForAnEditorAndTellHowItWent)
{
    const CSkeletonProject project;
    const Path marker = project.m_folder / "Gain.unsuccessfulbuild";
    const std::string sSuccess =
        "\nGain.cbp -> " + project.m_library.string() + "\nGain: build ends with status 0\n";
    const auto expectBuild = [&](bool bSucceeds, bool bCompiles) {
        const CProgramEnd end = project.build();
        const std::string sLog = readFile(project.m_folder / "Gain.log");
        EXPECT_EQ(end.m_nExitStatus, bSucceeds ? 0 : 2) << end.m_sErrors;
        EXPECT_EQ(end.m_sOutput, sLog);
        EXPECT_TRUE(sLog.starts_with("Gain: build begins\n"));
        EXPECT_EQ(sLog.ends_with(sSuccess), bSucceeds) << sLog;
        EXPECT_EQ(sLog.find(": error ") != std::string::npos, !bSucceeds) << sLog;
        EXPECT_EQ(sLog.ends_with("\nGain: build ends with status 2\n"), !bSucceeds);
        EXPECT_EQ(sLog.find(" -c ") != std::string::npos, bCompiles) << sLog;
        EXPECT_EQ(std::filesystem::exists(marker), !bSucceeds);
    };
    expectBuild(true, true);
    expectWorkingLibrary(project.m_library);
    expectBuild(true, false);

    std::filesystem::remove(project.m_library); // comes back without compiling
    expectBuild(true, false);
    EXPECT_EQ(velmora::test::entriesOf(project.m_output), std::vector<std::string>{"Gain.so"});

    const std::string sGood = readFile(project.m_folder / "Gain.cpp");
    writeFile(project.m_folder / "Gain.cpp", sGood + "int broken = ;\n");
    expectBuild(false, true);
    EXPECT_NE(readFile(project.m_folder / "Gain.log").find("Gain.cpp:"), std::string::npos);
    writeFile(project.m_folder / "Gain.cpp", sGood);
    expectBuild(true, true);

    writeFile(project.m_folder / "pluginconstants.h",
              readFile(project.m_folder / "pluginconstants.h") + "\n");
    expectBuild(true, true); // headers count
    writeFile(project.m_folder / "extra.cpp", "int undefined();\nint user() { return undefined(); }\n");
    expectBuild(false, true); // a source more, and a symbol that is nowhere
    std::filesystem::remove(project.m_folder / "extra.cpp");
    expectBuild(true, true);
}

TEST(Skeletons, BuildWithCMake)
{
    const CSkeletonProject project;
    const Path build = project.m_temporary.path() / "bu ild";
    const auto configured =
        runProgram(CMAKE, {"-G", "Ninja", "-S", project.m_folder.string(), "-B", build.string()});
    ASSERT_EQ(configured.m_nExitStatus, 0) << configured.m_sErrors;
    const auto built = runProgram(CMAKE, {"--build", build.string()});
    ASSERT_EQ(built.m_nExitStatus, 0) << built.m_sOutput;
    expectWorkingLibrary(project.m_library);
    EXPECT_NE(readFile(build / "compile_commands.json").find("Gain.cpp"), std::string::npos);
    EXPECT_EQ(velmora::test::entriesOf(project.m_output), std::vector<std::string>{"Gain.so"});
}

} // namespace

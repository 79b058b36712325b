#include "codegen/code_project.h"
#include "project/codegen/code_central_services.h"
#include "project/codegen/compiler_access.h"
#include "project/codegen/control_table_region.h"
#include "project/codegen/header_region.h"
#include "project/codegen/init_ui_region.h"
#include "project/codegen/project_history.h"
#include "project/codegen/project_values_region.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using test::CCodeProject;
using test::makeControl;
using testing::ElementsAre;
using testing::HasSubstr;

// "<array>0] = <value><end><array>1] = <value><end>..."
std::string longLine(const std::string& sArray, int nCount, const std::string& sValue,
                     const char* pEnd = "; ")
{
    std::string sLine;
    for (int i = 0; i < nCount; ++i)
        sLine += sArray + std::to_string(i) + "] = " + sValue + pEnd;
    return sLine;
}

TEST(HeaderRegion, DeclaresByType)
{
    CDSPProject project;
    CUIControlList& list = project.m_UIControlList;
    list.append(makeControl(100, 1, 0, "nCount"));
    list.append(makeControl(100, 2, 1, "fGain"));
    list.append(makeControl(101, 3, 2, "dTime"));
    list.append(makeControl(102, 41, 3, "uFirst", "A,B"));
    list.append(makeControl(104, 65, 3, "uSecond", "A,B"));
    list.append(makeControl(104, 66, 4, "noType"));
    list.append(makeControl(105, 0x10000, 3, "uUser"));
    list.append(makeControl(106, 0x10001, 1, "fGUI"));
    CUICtrl meter = makeControl(103, 90, 1, "notDeclared");
    meter.bUseMeter = true;
    meter.cMeterVariableName = "fMeter";
    list.append(meter);
    meter.uControlTheme[CONTROL_THEME_BINDING] = 1;
    meter.cMeterVariableName = "unbound";
    list.append(meter);
    EXPECT_EQ(headerRegionBody(project), "\tint nCount;\n\tfloat fGain;\n\tdouble dTime;\n"
                                         "\tUINT uFirst;\n\tenum{A,B};\n\tUINT uSecond;\n"
                                         "\tUINT uUser;// *** user-Variable\n\tenum{};\n"
                                         "\tfloat fGUI;// *** user-Variable\n\tfloat fMeter;\n");
}

TEST(InitUIRegion, WritesEachLineOfASlider)
{
    CDSPProject project;
    project.m_UIControlList.append(makeControl(100, 1, 1, "fVolume"));
    CCompiledPresets presets;
    presets[1] = CPreset("Two\n1\n1:0.25\n");
    const std::string sBody = initUIBody(project, presets);
    std::string sPresets = longLine("ui0->dPresetData[", 16, "0.000000", ";");
    sPresets.replace(sPresets.find("[1] = 0.000000"), 14, "[1] = 0.250000");
    const std::string sExpected =
        "\tfVolume = 0.500000;\n\tCUICtrl* ui0 = new CUICtrl;\n"
        "\tui0->uControlType = FILTER_CONTROL_CONTINUOUSLY_VARIABLE;\n\tui0->uControlId = 1;\n"
        "\tui0->bLogSlider = false;\n\tui0->bExpSlider = false;\n"
        "\tui0->fUserDisplayDataLoLimit = 0.000000;\n\tui0->fUserDisplayDataHiLimit = 1.000000;\n"
        "\tui0->uUserDataType = floatData;\n\tui0->fInitUserIntValue = 0;\n"
        "\tui0->fInitUserFloatValue = 0.500000;\n\tui0->fInitUserDoubleValue = 0;\n"
        "\tui0->fInitUserUINTValue = 0;\n\tui0->m_pUserCookedIntData = NULL;\n"
        "\tui0->m_pUserCookedFloatData = &fVolume;\n\tui0->m_pUserCookedDoubleData = NULL;\n"
        "\tui0->m_pUserCookedUINTData = NULL;\n\tui0->cControlUnits = \"\";\n"
        "\tui0->cVariableName = \"fVolume\";\n\tui0->cEnumeratedList = \"\";\n\t" +
        sPresets +
        "\n\tui0->cControlName = \"Name\";\n\tui0->bOwnerControl = false;\n\tui0->bMIDIControl = false;\n"
        "\tui0->uMIDIControlCommand = 176;\n\tui0->uMIDIControlName = 3;\n"
        "\tui0->uMIDIControlChannel = 0;\n\tui0->nGUIRow = -1;\n\tui0->nGUIColumn = -1;\n\t" +
        longLine("ui0->uControlTheme[", 32, "0") + "\n\t" + longLine("ui0->uFluxCapControl[", 64, "0") +
        "\n\t" + longLine("ui0->fFluxCapData[", 64, "0.000000") +
        "\n\tm_UIControlList.append(*ui0);\n\tdelete ui0;\n\n\n\tm_uX_TrackPadIndex = -1;\n";
    EXPECT_EQ(sBody.substr(0, sExpected.size()), sExpected);
}

TEST(InitUIRegion, WritesMetersAndUnboundControls)
{
    CDSPProject project;
    CUICtrl meter = makeControl(103, 90, 1, "unused");
    meter.bUseMeter = true;
    meter.cMeterVariableName = "fMeter";
    meter.fMeterRelease_ms = 500.25f;
    project.m_UIControlList.append(meter);
    CUICtrl unbound = makeControl(105, 0x10000, 0, "nFree");
    unbound.fInitUserIntValue = -2.9f;
    unbound.uControlTheme[CONTROL_THEME_BINDING] = 1;
    project.m_UIControlList.append(unbound);
    std::string sBody = initUIBody(project, {});
    for (const char* pArray : {"\tui0->dPresetData[", "\tui1->dPresetData["}) {
        const auto uLine = sBody.find(pArray);
        sBody.erase(uLine, sBody.find('\n', uLine) + 1 - uLine);
    }
    EXPECT_THAT(sBody, HasSubstr("\tfMeter = 0.0;\n\tCUICtrl* ui0 = new CUICtrl;\n"
                                 "\tui0->uControlType = FILTER_CONTROL_LED_METER;\n\tui0->uControlId = 90;\n"
                                 "\tui0->bLogSlider = false;\n\tui0->bExpSlider = false;\n"
                                 "\tui0->cControlName = \"Name\";\n"));
    EXPECT_THAT(sBody, HasSubstr("\tui0->bUseMeter = true;\n\tui0->bUpsideDownMeter = false;\n"
                                 "\tui0->bLogMeter = false;\n\tui0->uDetectorMode = 2;\n"
                                 "\tui0->uMeterColorScheme = 0;\n"));
    EXPECT_THAT(sBody, HasSubstr("\tui0->fMeterRelease_ms = 500.250000;\n"
                                 "\tui0->cMeterVariableName = \"fMeter\";\n"
                                 "\tui0->m_pCurrentMeterValue = &fMeter;\n\tui0->nGUIRow = -1;\n"));
    EXPECT_THAT(sBody, HasSubstr("\tdelete ui0;\n\n\n\tCUICtrl* ui1 = new CUICtrl;\n"
                                 "\tui1->uControlType = 105;\n\tui1->uControlId = 65536;\n"));
    EXPECT_THAT(sBody, HasSubstr("\tui1->fInitUserIntValue = -2.900000;\n\tui1->fInitUserFloatValue = 0;\n"
                                 "\tui1->fInitUserDoubleValue = 0;\n\tui1->fInitUserUINTValue = 0;\n"
                                 "\tui1->cControlUnits = \"\";\n"));
}

TEST(InitUIRegion, WritesProjectValues)
{
    CDSPProject project;
    project.m_uX_TrackPadIndex = 7;
    project.m_bLatchingAssignButton2 = true;
    project.m_uControlTheme[0] = 0;
    project.m_uPlugInEx[0] = 7000;
    project.m_fPlugInEx[0] = 64.0f;
    project.setTextLabel(63, "\"end\"");
    project.m_pVectorJSProgram[JS_PROG_INDEX(15, 6)] = 0.12345f;
    CCompiledPresets presets;
    presets[15] = CPreset("Last\n0\n0\n0\n16\n0.5\n" + [] {
        std::string sRest;
        for (int i = 0; i < 111; ++i)
            sRest += "0\n";
        return sRest;
    }() + "0:1.5\n1:2.5\n");
    const std::string sBody = initUIBody(project, presets);
    std::string sWords = longLine("m_uPlugInEx[", 64, "0");
    sWords.replace(0, 18, "m_uPlugInEx[0] = 7000");
    std::string sNumbers = longLine("m_fPlugInEx[", 64, "0.000000");
    sNumbers.replace(0, 25, "m_fPlugInEx[0] = 64.000000");
    std::string sLabels = longLine("m_TextLabels[", 64, "\"\"");
    sLabels.replace(sLabels.size() - 4, 2, "\"\\\"end\\\"\"");
    std::string sProgram;
    std::string sPresetProgram = "\t";
    for (int s = 0; s < 16; ++s)
        for (int v = 0; v < 7; ++v) {
            const std::string sIndex =
                "[JS_PROG_INDEX(" + std::to_string(s) + "," + std::to_string(v) + ")] = ";
            sProgram += "\tm_pVectorJSProgram" + sIndex + "0.0000;\n";
            sPresetProgram += "pJSProg" + sIndex + "0.000000;";
        }
    sProgram.replace(sProgram.size() - 8, 6, "0.1235");
    const auto axis = [](const std::string& sAxis, const std::string& sName, const char* pController) {
        return "\tm_JS_" + sAxis + "Ctrl.cControlName = \"MIDI JS " + sName + "\";\n\tm_JS_" + sAxis +
               "Ctrl.uControlId = 0;\n\tm_JS_" + sAxis + "Ctrl.bMIDIControl = false;\n\tm_JS_" + sAxis +
               "Ctrl.uMIDIControlCommand = 176;\n\tm_JS_" + sAxis + "Ctrl.uMIDIControlName = " + pController +
               ";\n\tm_JS_" + sAxis + "Ctrl.uMIDIControlChannel = 0;\n\n\n";
    };
    std::string sExpected = "\tm_uX_TrackPadIndex = 7;\n\tm_uY_TrackPadIndex = -1;\n\n"
                            "\tm_AssignButton1Name = \"B1\";\n\tm_AssignButton2Name = "
                            "\"B2\";\n\tm_AssignButton3Name = \"B3\";\n\n"
                            "\tm_bLatchingAssignButton1 = false;\n\tm_bLatchingAssignButton2 = true;\n"
                            "\tm_bLatchingAssignButton3 = false;\n\n"
                            "\tm_nGUIType = -1;\n\tm_nGUIThemeID = -1;\n\tm_bUseCustomVSTGUI = false;\n\n\t" +
                            longLine("m_uControlTheme[", 64, "0") + "\n\n" + sWords + "\n" + sNumbers +
                            "\n\n" + sLabels + "\n\n" + longLine("m_uLabelCX[", 64, "0") + "\n" +
                            longLine("m_uLabelCY[", 64, "0") + "\n\n" + sProgram + "\n\n" +
                            axis("X", "X", "16") + axis("Y", "Y", "17") + "\tfloat* pJSProg = NULL;\n";
    for (int p = 0; p < 16; ++p) {
        const std::string sIndex = "[" + std::to_string(p) + "] = ";
        std::string sValues = sPresetProgram;
        if (p == 15)
            sValues.replace(sValues.find("0.000000"), 8, "0.500000");
        sExpected += "\tm_PresetNames" + sIndex + (p == 15 ? "\"Last\"" : "\"\"") +
                     ";\n\tpJSProg = new float[MAX_JS_PROGRAM_STEPS*MAX_JS_PROGRAM_STEP_VARS];\n" + sValues +
                     "\n\tm_PresetJSPrograms" + sIndex + "pJSProg;\n\n";
    }
    sExpected += "\t// Additional Preset Support (avanced)\n\tfloat* pPreset15 = new float[2];\n"
                 "\tpPreset15[0] = 1.500000; pPreset15[1] = 2.500000; \n"
                 "\tm_AddlPresetValues[15] = pPreset15;\n\n\n";
    EXPECT_EQ(sBody, sExpected);
}

TEST(ControlTableRegion, PadsNames)
{
    CDSPProject project;
    project.m_UIControlList.append(makeControl(100, 1, 1, "fVolume"));
    project.m_UIControlList.append(makeControl(100, 2, 1, "aNameThatIsLongerThanThirtyThreeCharacters"));
    project.m_AssignButton1Name = "*/ x\n";
    const std::string sRule = "-----------------------------------------------\n";
    EXPECT_EQ(controlTableBody(project),
              "\tVariable Name                    Index\n" + sRule + "\tfVolume" + std::string(26, ' ') +
                  " 1\n\taNameThatIsLongerThanThirtyThreeCharacters 2\n\n"
                  "\tAssignable Buttons               Index\n" +
                  sRule + "\t* / x " + std::string(27, ' ') + " 50\n\tB2" + std::string(31, ' ') +
                  " 51\n\tB3" + std::string(31, ' ') + " 52\n\n" + sRule +
                  "Joystick Drop List Boxes          Index\n" + sRule + "\t Drop List A" +
                  std::string(20, ' ') + " 60\n\t Drop List B" + std::string(20, ' ') +
                  " 61\n\t Drop List C" + std::string(20, ' ') + " 62\n\t Drop List D" +
                  std::string(20, ' ') + " 63\n\n" + sRule);
}

TEST(CodeCentralServices, ReplacesTheRegionsAlone)
{
    CCodeProject code("a\r\n// **--0x07FD--**old\n// **--0x1A7F--** \xFF"
                      " b\r\nno end",
                      "\xEF\xBB\xBF"
                      "c\n\t// **--0xDEA7--**\r\n**--0xEDA5--** d\n**--0x2983--** **--0xFFDD--**x");
    code.m_project.m_UIControlList.append(makeControl(100, 2, 1, "fSecond"));
    code.m_project.m_UIControlList.append(makeControl(100, 1, 1, "fFirst"));
    const std::string sOldSource = code.source();
    ASSERT_TRUE(code.write());
    EXPECT_EQ(code.header(), "a\r\n// **--0x07FD--**\r\n\r\n\tfloat fFirst;\r\n\tfloat fSecond;\r\n\r\n"
                             "\t// **--0x1A7F--** \xFF"
                             " b\r\nno end");
    const std::string sSource = code.source();
    EXPECT_EQ(sSource.substr(0, 39), "\xEF\xBB\xBF"
                                     "c\n\t// **--0xDEA7--**\n\n\tfFirst = 0.50");
    EXPECT_THAT(sSource, HasSubstr("\n\n\n\t// **--0xEDA5--** d\n**--0x2983--**\n\n\tVariable Name"));
    EXPECT_TRUE(sSource.ends_with("---\n\n\t**--0xFFDD--**x"));
    EXPECT_THAT(code.m_services.written(),
                ElementsAre(code.m_project.headerPath(), code.m_project.sourcePath()));

    ASSERT_TRUE(code.write());
    EXPECT_EQ(code.source(), sSource);
    EXPECT_TRUE(code.m_services.written().empty());
    const CProjectHistory history(code.m_folder.path());
    ASSERT_EQ(history.entries().size(), 2u);
    EXPECT_EQ(history.text(2), sOldSource);
}

TEST(CodeCentralServices, AnswersOddSourcesAsDescribed)
{
    const std::string sHeader = "// **--0x07FD--**\n// **--0x1A7F--**\n";
    const std::string sRegions = "**--0xDEA7--****--0xEDA5--****--0x2983--****--0xFFDD--**";
    struct CCase
    {
        std::string m_sHeader;
        std::string m_sSource;
        std::string m_sMessage; // PATH stands for the file's path without its extension
        std::size_t m_uWritten;
    };
    const CCase cases[] = {
        {"", sRegions, "Critical error: 009 - alert OrinH; sFileString.IsEmpty() PATH.h", 0},
        {"**--0x1A7F--** **--0x07FD--**", sRegions, "ERROR 001 while parsing .h file", 0},
        {"**--0x07FD--**", sRegions, "ERROR 001 while parsing .h file", 0},
        {sHeader, "",
         "Error: 009 PATH.cpp.h is empty, most likely because the compiler is not ready or busy. Please make "
         "sure the compiler is not busy and try again.",
         1},
        {sHeader, "**--0x2983--****--0xFFDD--**", "ERROR 001 while parsing .cpp file", 1},
        {sHeader, "**--0xDEA7--****--0xEDA5--****--0x2983--**", "ERROR 002 while parsing .cpp file", 2},
    };
    for (const CCase& test : cases) {
        CCodeProject code(test.m_sHeader, test.m_sSource);
        code.m_project.m_UIControlList.append(makeControl(100, 1, 1, "fGain"));
        EXPECT_FALSE(code.write());
        std::string sMessage = test.m_sMessage;
        if (const auto uPath = sMessage.find("PATH"); uPath != std::string::npos)
            sMessage.replace(uPath, 4, (code.m_folder / "Gain").string());
        EXPECT_THAT(code.m_dialogs.m_messages, ElementsAre(sMessage));
        EXPECT_EQ(code.m_services.written().size(), test.m_uWritten);
        EXPECT_TRUE(code.m_patience.m_waits.empty());
    }

    // A begin marker that is missing, or quoted ahead of the real one, costs the text in between: it is asked
    // first, and the history has it.
    for (const std::string sSource :
         {"// the first lines\nint n;\n", "// see **--0x07FD--**\nint n;\n**--0x07FD--**"}) {
        CCodeProject code(sSource + "**--0x1A7F--** rest", sRegions);
        EXPECT_FALSE(code.write());
        EXPECT_EQ(code.header(), sSource + "**--0x1A7F--** rest");
        EXPECT_EQ(code.source(), sRegions);
        EXPECT_THAT(code.m_dialogs.m_questions, ElementsAre(testing::HasSubstr("the mark **--0x07FD--** ")));
        code.m_dialogs.m_bAnswer = true;
        ASSERT_TRUE(code.write());
        EXPECT_EQ(code.header().substr(0, 6), sSource.substr(0, 6));
        EXPECT_TRUE(code.header().ends_with("\n\t// **--0x1A7F--** rest"));
        EXPECT_EQ(code.header().find("int n"), std::string::npos);
        EXPECT_EQ(CProjectHistory(code.m_folder.path()).text(1), sSource + "**--0x1A7F--** rest");
    }
    EXPECT_FALSE(CCodeProject().m_services.writeCodeRegions(nullptr));
}

// Records what it was asked in one list with the rest.
class CRecordingCompiler : public ICompilerAccess
{
  public:
    bool makeAvailable(const CDSPProject&) override
    {
        m_calls.emplace_back("makeAvailable");
        return m_bAvailable;
    }
    bool saveAll() override
    {
        m_calls.emplace_back("saveAll");
        if (!m_typed.empty())
            test::writeFile(m_typed, "typed // **--0x07FD--** **--0x1A7F--**\n");
        return true;
    }
    void returnFocus() override { m_calls.emplace_back("returnFocus"); }

    bool m_bAvailable = true;
    std::filesystem::path m_typed; // a source with text that the user has not saved yet
    std::vector<std::string> m_calls;
};

TEST(CodeCentralServices, HasTheCompilerSaveFirst)
{
    CCodeProject code;
    CRecordingCompiler compiler;
    compiler.m_typed = code.m_project.headerPath();
    CCodeCentralServices services(&compiler, code.m_dialogs);
    EXPECT_TRUE(services.writeCodeRegions(&code.m_project));
    EXPECT_EQ(code.header(), "typed // **--0x07FD--**\n\n\n\t// **--0x1A7F--**\n");
    EXPECT_THAT(compiler.m_calls, ElementsAre("makeAvailable", "saveAll", "returnFocus"));

    compiler.m_bAvailable = false;
    EXPECT_FALSE(services.writeCodeRegions(&code.m_project));
    EXPECT_FALSE(services.updateProcessSignatures(&code.m_project));
    const char* pMessage =
        "Could not create process for VCExpress.exe - Make sure it is installed on this computer!";
    EXPECT_THAT(code.m_dialogs.m_messages, ElementsAre(pMessage, pMessage));
}

TEST(CodeCentralServices, RepairsSignatures)
{
    const std::string sParameters = "(float* pInputBuffer, float* pOutputBuffer, UINT ";
    CCodeProject code("bool processAudioFrame" + sParameters + " uNumChannels);\r\nbool processAudioBuffer" +
                          sParameters + "uNumChannels, UINT uBufferSize);",
                      "CGain::processAudioFrame" + sParameters + "uNumChannels)\nCGain::processAudioBuffer" +
                          sParameters + "uNumChannels, UINT uBufferSize)");
    CRecordingCompiler compiler;
    CCodeCentralServices services(&compiler, code.m_dialogs);
    EXPECT_TRUE(services.updateProcessSignatures(&code.m_project));
    EXPECT_EQ(code.header(),
              "bool processAudioFrame" + sParameters +
                  "uNumInputChannels, UINT uNumOutputChannels);\r\nbool processSocketAudioBuffer" +
                  sParameters + "uNumChannels, UINT uBufferSize);");
    EXPECT_EQ(code.source(), "CGain::processAudioFrame" + sParameters +
                                 "uNumChannels, UINT uNumOutputChannels)\nCGain::processSocketAudioBuffer" +
                                 sParameters + "uNumChannels, UINT uBufferSize)");
    EXPECT_THAT(compiler.m_calls, ElementsAre("makeAvailable", "saveAll", "saveAll"));
    EXPECT_EQ(CProjectHistory(code.m_folder.path()).entries().size(), 2u);

    test::writeFile(code.m_project.sourcePath(), "");
    EXPECT_FALSE(services.updateProcessSignatures(&code.m_project));
    EXPECT_TRUE(services.written().empty());
    EXPECT_THAT(code.m_dialogs.m_messages,
                ElementsAre("Critical error: 009B - alert OrinH; sFileString.IsEmpty() " +
                            code.m_project.sourcePath().string()));
}

TEST(CodeCentralServices, LeavesTheFileWithoutAHistory)
{
    CCodeProject code;
    const std::string sHeader = code.header();
    test::writeFile(code.m_folder / ".velmora", "in the way");
    code.m_project.m_UIControlList.append(makeControl(100, 1, 1, "fGain"));
    EXPECT_FALSE(code.write());
    EXPECT_EQ(code.header(), sHeader);
    EXPECT_THAT(code.m_dialogs.m_messages, ElementsAre(HasSubstr("could not be kept")));
}

} // namespace
} // namespace velmora

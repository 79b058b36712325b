// What the code writer wrote, given to real compilers and run.

#include "base/platform_child_process.h"
#include "codegen/code_project.h"
#include "host/plugin_library.h"
#include "project/control_list.h"
#include "project/control_slots.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <span>

namespace velmora {
namespace {

const std::string HOSTILE =
    "\"; } system(\"x\"); /* */ // ?\?/ \\ ?\?' **--0xEDA5--** **--0xFFDD--** -- 0xAF66 --"
    "\r\n#error\t\x01 \xB0 \xE2\x80\xAE \xC2\xB5s %s \\u0041 \\";

// The text as the program should see it.
std::string inOneLine(std::string sText)
{
    std::erase(sText, '\r');
    std::ranges::replace(sText, '\n', ' ');
    return sText;
}

std::string skeleton(const char* pName)
{
    return test::readFile(std::filesystem::path(BASE_CLASS_FOLDER) / pName);
}

// Fills every field that the code bears with something of its own.
CUICtrl busyControl(UINT uType, UINT uId, UINT uDataType)
{
    const std::string sId = std::to_string(uId) + "_" + std::to_string(uDataType);
    CUICtrl control = test::makeControl(uType, uId, uDataType, "", "");
    const std::string sVariable = "fVar" + sId;
    const std::string sMeter = "fMeter" + sId;
    const std::string sList = "A" + sId + ", B" + sId;
    control.cVariableName = sVariable.c_str();
    control.cMeterVariableName = sMeter.c_str();
    control.cControlUnits = HOSTILE.c_str();
    control.cControlName = HOSTILE.c_str();
    control.cEnumeratedList = uDataType == UINTData ? sList.c_str() : "";
    control.fUserDisplayDataLoLimit = -0.25f;
    control.fUserDisplayDataHiLimit = 1e30f;
    control.fInitUserIntValue = -3.0f;
    control.fInitUserDoubleValue = 1.0f / 1024;
    control.fInitUserUINTValue = 4e9f;
    control.bUseMeter = uType == FILTER_CONTROL_LED_METER;
    control.bLogMeter = control.bOwnerControl = control.bMIDIControl = true;
    control.bLogSlider = uId % 2 == 0;
    control.uDetectorMode = DETECT_MODE_RMS;
    control.fMeterAttack_ms = 12.5f;
    control.uMIDIControlName = uId % 128;
    control.nGUIColumn = 4;
    control.uControlTheme[31] = control.uFluxCapControl[63] = 0xFFFFFFFF;
    control.fFluxCapData[0] = -1.5f;
    return CUICtrl(control); // the copy owns its texts
}

// A control of every data type on the first and the last slot of each kind, and user variables of both kinds.
void addEveryKind(CUIControlList& list)
{
    for (const CControlSlots& slots : controlSlots())
        for (UINT uType = intData; uType <= UINTData; ++uType)
            for (const UINT uId : {slots.m_uFirstId + uType, slots.m_uLastId - uType})
                if (uId >= slots.m_uFirstId && uId <= slots.m_uLastId && !findControl(list, uId))
                    list.append(busyControl(slots.m_uControlType, uId, uType));
    list.append(busyControl(FILTER_CONTROL_DIRECT_DATA_ENTRY, 64, floatData));
    for (UINT uType = intData; uType <= UINTData; ++uType)
        list.append(busyControl(USER_VARIABLE_TYPE, FIRST_USER_VARIABLE_ID + uType, uType));
    list.append(busyControl(VSTGUI_VARIABLE_TYPE, FIRST_USER_VARIABLE_ID + 9, floatData));
    CUICtrl unbound = busyControl(FILTER_CONTROL_CONTINUOUSLY_VARIABLE, 30, floatData);
    unbound.uControlTheme[CONTROL_THEME_BINDING] = 1;
    list.append(unbound);
}

// Records that no dialog makes, only a file from elsewhere.
void addHostileRecords(CUIControlList& list)
{
    constexpr float INFINITE = std::numeric_limits<float>::infinity();
    UINT uId = 200;
    for (const char* pName : {"class", "1st", "", "int x; }; /*", "a\nb", "\xC3\xA4"}) {
        CUICtrl control = busyControl(100, uId, uId % 4);
        control.cVariableName = pName;
        control.cEnumeratedList = uId % 4 == 3 ? "1,2,,new,}; int y; enum{z," : HOSTILE.c_str();
        control.fUserDisplayDataHiLimit = INFINITE;
        control.fUserDisplayDataLoLimit = std::numeric_limits<float>::quiet_NaN();
        control.fInitUserIntValue = control.fInitUserFloatValue = -INFINITE;
        control.fInitUserDoubleValue = control.fInitUserUINTValue = INFINITE;
        list.append(control);
        ++uId;
    }
}

struct CGeneratedProject : test::CCodeProject
{
    CGeneratedProject() : CCodeProject(skeleton("TemplatePlugIn.h"), skeleton("TemplatePlugIn.cpp"))
    {
        std::filesystem::rename(m_project.headerPath(), m_folder / "VolumePlugIn.h");
        std::filesystem::rename(m_project.sourcePath(), m_folder / "VolumePlugIn.cpp");
        m_project.m_sHeaderFile = "VolumePlugIn.h";
        m_project.m_sSourceFile = "VolumePlugIn.cpp";
        m_project.m_AssignButton2Name = HOSTILE;
        m_project.setTextLabel(3, HOSTILE);
        std::filesystem::create_directory(m_folder / "Presets");
        test::writeFile(m_folder / "Presets/15.spf",
                        "Name \"x\" ?\?/\n2\n0:0.75\n1:-1e300\n0\n0\n16\n0.25\n");
        test::writeFile(m_folder / "exports.cpp",
                        "#include \"VolumePlugIn.h\"\nVELMORA_EXPORT_PLUGIN(CVolumePlugIn)\n");
    }

    [[nodiscard]] CChildResult compile(std::vector<std::string> arguments) const
    {
        const std::string sContract = BASE_CLASS_FOLDER;
        arguments.insert(arguments.end(), {"-Wall", "-Wextra", "-Werror", "-I", sContract,
                                           (m_folder / "VolumePlugIn.cpp").string()});
        return CChildProcess(arguments).run();
    }
};

TEST(GeneratedCode, CompilesWithoutWarnings)
{
    CGeneratedProject code;
    addEveryKind(code.m_project.m_UIControlList);
    addHostileRecords(code.m_project.m_UIControlList);
    ASSERT_TRUE(code.write());
    const std::string sHeader = code.header();
    const std::string sSource = code.source();
    ASSERT_TRUE(code.write());
    EXPECT_EQ(code.header(), sHeader);
    EXPECT_EQ(code.source(), sSource);

    ASSERT_FALSE(CChildProcess::findProgram("g++").empty());
    for (const char* pCompiler : {"g++", "clang++"})
        for (const char* pStandard : {"-std=c++98", "-std=c++20"})
            if (!CChildProcess::findProgram(pCompiler).empty()) {
                const CChildResult result = code.compile({pCompiler, pStandard, "-fsyntax-only"});
                EXPECT_TRUE(result.succeeded()) << pCompiler << ' ' << pStandard << '\n' << result.m_sOutput;
            }
}

void expectSameControl(const CUICtrl& actual, const CUICtrl& record)
{
    const bool bMeter = record.uControlType == FILTER_CONTROL_LED_METER;
    const bool bBound = !bMeter && record.uControlTheme[CONTROL_THEME_BINDING] == 0;
    EXPECT_EQ(actual.uControlType, record.uControlType);
    EXPECT_EQ(actual.uControlId, record.uControlId);
    EXPECT_EQ(actual.cControlName, inOneLine(record.cControlName));
    EXPECT_EQ(actual.bLogSlider, record.bLogSlider);
    EXPECT_EQ(actual.bOwnerControl, record.bOwnerControl);
    EXPECT_EQ(actual.bMIDIControl, record.bMIDIControl);
    EXPECT_EQ(actual.uMIDIControlName, record.uMIDIControlName);
    EXPECT_EQ(actual.nGUIColumn, record.nGUIColumn);
    EXPECT_TRUE(std::ranges::equal(actual.uControlTheme, record.uControlTheme));
    EXPECT_TRUE(std::ranges::equal(actual.uFluxCapControl, record.uFluxCapControl));
    EXPECT_TRUE(std::ranges::equal(actual.fFluxCapData, record.fFluxCapData));
    EXPECT_EQ(actual.m_pUserCookedIntData != nullptr, bBound && record.uUserDataType == intData);
    EXPECT_EQ(actual.m_pUserCookedFloatData != nullptr, bBound && record.uUserDataType == floatData);
    EXPECT_EQ(actual.m_pUserCookedDoubleData != nullptr, bBound && record.uUserDataType == doubleData);
    EXPECT_EQ(actual.m_pUserCookedUINTData != nullptr, bBound && record.uUserDataType == UINTData);
    EXPECT_EQ(actual.m_pCurrentMeterValue != nullptr, bMeter);
    if (bMeter) {
        EXPECT_STREQ(actual.cMeterVariableName, record.cMeterVariableName);
        EXPECT_EQ(actual.uDetectorMode, record.uDetectorMode);
        EXPECT_EQ(actual.fMeterAttack_ms, record.fMeterAttack_ms);
        EXPECT_EQ(actual.bLogMeter, record.bLogMeter);
        return;
    }
    EXPECT_EQ(actual.cControlUnits, inOneLine(record.cControlUnits));
    EXPECT_STREQ(actual.cVariableName, record.cVariableName);
    EXPECT_STREQ(actual.cEnumeratedList, record.cEnumeratedList);
    EXPECT_EQ(actual.uUserDataType, record.uUserDataType);
    EXPECT_EQ(actual.fUserDisplayDataLoLimit, record.fUserDisplayDataLoLimit);
    EXPECT_EQ(actual.fUserDisplayDataHiLimit, record.fUserDisplayDataHiLimit);
    if (!bBound)
        return;
    switch (record.uUserDataType) {
    case intData:
        EXPECT_EQ(*actual.m_pUserCookedIntData, -3);
        break;
    case floatData:
        EXPECT_EQ(*actual.m_pUserCookedFloatData, 0.5f);
        break;
    case doubleData:
        EXPECT_NEAR(*actual.m_pUserCookedDoubleData, 1.0 / 1024, 5e-7);
        break;
    default:
        EXPECT_EQ(*actual.m_pUserCookedUINTData, 4000000000u);
    }
}

TEST(GeneratedCode, RunsWithTheProjectsRecords)
{
    CGeneratedProject code;
    addEveryKind(code.m_project.m_UIControlList);
    ASSERT_TRUE(code.write());
    const std::string sContract = BASE_CLASS_FOLDER;
    const CChildResult result =
        code.compile({"g++", "-O0", "-shared", "-fPIC", "-o", (code.m_folder / "Volume.so").string(),
                      (code.m_folder / "exports.cpp").string(), sContract + "/plugin.cpp",
                      sContract + "/pluginobjects.cpp"});
    ASSERT_TRUE(result.succeeded()) << result.m_sOutput;
    std::string sError;
    const auto pLibrary = CPlugInLibrary::load(code.m_folder / "Volume.so", sError);
    ASSERT_TRUE(pLibrary) << sError;
    const std::unique_ptr<CPlugIn> pPlugIn(pLibrary->makeObject(sError));
    ASSERT_TRUE(pPlugIn) << sError;

    const auto actual = controlsOf(pPlugIn->m_UIControlList);
    const auto records = controlsOf(code.m_project.m_UIControlList);
    ASSERT_EQ(actual.size(), records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        SCOPED_TRACE(records[i]->cVariableName);
        expectSameControl(*actual[i], *records[i]);
    }
    EXPECT_EQ(findControl(pPlugIn->m_UIControlList, 0)->dPresetData[15], 0.75);
    EXPECT_EQ(findControl(pPlugIn->m_UIControlList, 1)->dPresetData[15], -1e300);
    EXPECT_STREQ(pPlugIn->m_PresetNames[15], "Name \"x\" ?\?/");
    EXPECT_EQ(pPlugIn->m_PresetJSPrograms[15][0], 0.25f);
    EXPECT_EQ(pPlugIn->m_AssignButton2Name, inOneLine(HOSTILE));
    EXPECT_EQ(pPlugIn->m_TextLabels[3], inOneLine(HOSTILE));
    EXPECT_STREQ(pPlugIn->m_TextLabels[4], "");
    EXPECT_EQ(pPlugIn->m_uX_TrackPadIndex, 0xFFFFFFFFu);
}

} // namespace
} // namespace velmora
